// Circles tangent to circles: to two circles or to a circle and a line with a
// radius, or through points. A circle is touched from outside with its
// radius r and from inside with -r; the sign loops visit -r first.
#include <tessar/tangent.h>
#include <tessar/vector.h>

#include "curves/tangent.hpp"
#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

bool noRadius(double R)
{
    return infOuEgal(R, 0.0, utmatCalculPrec);
}

// The circles of radius R tangent to the circles of signed radii r1 and r2,
// the first centred at the origin and the second at C2. The centre lies at
// d1 = r1 + R from the origin and d2 = r2 + R from C2; the difference of
// the two circle equations is the radical line
// 2 X x + 2 Y y + (d2 d2 - d1 d1 - X X - Y Y) = 0.
int cerTg2CerRayonSolve(double r1, const dpoint2d &C2, double r2, double R, std::array<Candidate, 2> &out)
{
    const double d1 = r1 + R;
    const double d2 = r2 + R;
    std::array<dpoint2d, 2> centres{};
    const double T = d2 * d2 - d1 * d1 - C2.x * C2.x - C2.y * C2.y;
    const int n = solveForCentre(2.0 * C2.x, 2.0 * C2.y, T, d1, centres);
    for (int i = 0; i < n; ++i) {
        const dpoint2d &c = centres[i];
        out[i] = {c, R, {{{c.x * r1 / d1, c.y * r1 / d1}, pointOnCircle(C2, r2, c, d2)}}};
    }
    return n;
}

// The circles of radius R through the origin (the point p) tangent to the
// circle of centre C and signed radius r: at R from the origin and at
// d = r + R from C. A d near 0 is the circle itself, touched everywhere: the
// tangency point is then given p's coordinates as the caller gave them, and
// the move back to the caller's frame still adds p to them.
int cerTgCerPs1PtRayonSolve(const dpoint2d &p, const dpoint2d &C, double r, double R,
                            std::array<Candidate, 2> &out)
{
    const double d = r + R;
    std::array<dpoint2d, 2> centres{};
    const double T = d * d - R * R - C.x * C.x - C.y * C.y;
    const int n = solveForCentre(2.0 * C.x, 2.0 * C.y, T, R, centres);
    for (int i = 0; i < n; ++i) {
        const dpoint2d point = egal(d, 0.0, utmatCalculPrec) ? p : pointOnCircle(C, r, centres[i], d);
        out[i] = {centres[i], R, {{point, {0.0, 0.0}}}};
    }
    return n;
}

}  // namespace

/* ---- Tangent to circles with a radius ---- */

void UTMAT_CalculerCerTg2CerRayon(const dpoint2d *c1, double r1, const dpoint2d *c2, double r2, double R,
                                  dpoint2d *centres, dpoint2d *points, int32_t *count)
{
    enterKernel();
    *count = 0;
    if (noRadius(R)) return;
    const LocalFrame frame(*c1);
    const dpoint2d C2 = frame.toLocal(*c2);
    Solutions out(frame, Sameness::XAndY, 2, centres, nullptr, points, count);
    for (const double s1 : kSides) {
        for (const double s2 : kSides) {
            std::array<Candidate, 2> found;
            const int n = cerTg2CerRayonSolve(s1 * r1, C2, s2 * r2, R, found);
            for (int i = 0; i < n; ++i)
                out.gather(found[i]);
            out.closeRound();
        }
    }
}

// The centre lies at s r + R from c (the origin) and on the parallel to d at
// s2 R.
void UTMAT_CalculerCerTgCerDteRayon(const dpoint2d *c, double r, const UTMAT_Droite *d, double R,
                                    dpoint2d *centres, dpoint2d *points, int32_t *count)
{
    enterKernel();
    *count = 0;
    if (noRadius(R)) return;
    const LocalFrame frame(*c);
    UTMAT_Droite l;
    double n = 0.0;
    if (!frame.line(*d, l, n)) return;
    Solutions out(frame, Sameness::XAndY, 2, centres, nullptr, points, count);
    for (const double s : kSides) {
        const double rs = s * r;
        const double K = rs + R;
        for (const double s2 : kSides) {
            std::array<dpoint2d, 2> found{};
            const int k = solveForCentre(l.a, l.b, l.c - s2 * n * R, K, found);
            for (int i = 0; i < k; ++i) {
                Candidate cand{found[i], R, {{{found[i].x * rs / K, found[i].y * rs / K}, {0.0, 0.0}}}};
                if (!footOn(l, cand.centre, cand.points[1])) return;
                out.gather(cand);
            }
        }
        out.closeRound();
    }
}

void UTMAT_CalculerCerTgCerPs1PtRayon(const dpoint2d *c, double r, const dpoint2d *p, double R,
                                      dpoint2d *centres, dpoint2d *points, int32_t *count)
{
    enterKernel();
    *count = 0;
    if (noRadius(R)) return;
    const LocalFrame frame(*p);
    const dpoint2d C = frame.toLocal(*c);
    Solutions out(frame, Sameness::Centre, 1, centres, nullptr, points, count);
    for (const double s : kSides) {
        std::array<Candidate, 2> found;
        const int n = cerTgCerPs1PtRayonSolve(*p, C, s * r, R, found);
        for (int i = 0; i < n; ++i)
            out.gather(found[i]);
        out.closeRound();
    }
}

/* ---- Tangent to circles through points ---- */

// Eliminating rho between the two tangencies gives the relation; the
// passage through p (the origin) the quadratic.
void UTMAT_CalculerCerTg2CerPs1Pt(const dpoint2d *c1, double r1, const dpoint2d *c2, double r2,
                                  const dpoint2d *p, dpoint2d *centres, double *radii, dpoint2d *points,
                                  int32_t *count)
{
    enterKernel();
    *count = 0;
    const LocalFrame frame(*p);
    const dpoint2d C1 = frame.toLocal(*c1);
    const dpoint2d C2 = frame.toLocal(*c2);
    Solutions out(frame, Sameness::CentreAndRadius, 2, centres, radii, points, count);
    for (const double s1 : kSides) {
        for (const double s2 : kSides) {
            const double rs1 = s1 * r1;
            const double rs2 = s2 * r2;
            const Condition first = tangentToCircle(C1, rs1);
            std::array<Candidate, 2> found;
            const int n = solveForRadius(eliminateRadius(first, tangentToCircle(C2, rs2)), first, found);
            for (int i = 0; i < n; ++i) {
                Candidate &cand = found[i];
                cand.points[0] = pointOnCircle(C1, rs1, cand.centre, rs1 + cand.radius);
                cand.points[1] = pointOnCircle(C2, rs2, cand.centre, rs2 + cand.radius);
                out.gather(cand);
            }
            out.closeRound();
        }
    }
}

void UTMAT_CalculerCerTgCerDtePs1Pt(const dpoint2d *c, double r, const UTMAT_Droite *d, const dpoint2d *p,
                                    dpoint2d *centres, double *radii, dpoint2d *points, int32_t *count)
{
    enterKernel();
    *count = 0;
    const LocalFrame frame(*p);
    const dpoint2d C = frame.toLocal(*c);
    UTMAT_Droite l;
    double n = 0.0;
    if (!frame.line(*d, l, n)) return;
    Solutions out(frame, Sameness::CentreAndRadius, 2, centres, radii, points, count);
    for (const double s : kSides) {
        const double rs = s * r;
        const Condition first = tangentToCircle(C, rs);
        for (const double s2 : kSides) {
            std::array<Candidate, 2> found;
            const int k = solveForRadius(eliminateRadius(first, tangentToLine(l, n, s2)), first, found);
            for (int i = 0; i < k; ++i) {
                Candidate &cand = found[i];
                cand.points[0] = pointOnCircle(C, rs, cand.centre, rs + cand.radius);
                if (!footOn(l, cand.centre, cand.points[1])) return;
                out.gather(cand);
            }
        }
        out.closeRound();
    }
}

// The chord of p1 p2 (p1 at the origin) is the relation free of rho; the
// tangency to the circle gives rho.
void UTMAT_CalculerCerTgCerPs2Pt(const dpoint2d *c, double r, const dpoint2d *p1, const dpoint2d *p2,
                                 dpoint2d *centres, double *radii, dpoint2d *points, int32_t *count)
{
    enterKernel();
    *count = 0;
    const LocalFrame frame(*p1);
    const dpoint2d C = frame.toLocal(*c);
    const Condition chord = passingThrough(frame.toLocal(*p2));
    Solutions out(frame, Sameness::CentreAndRadius, 1, centres, radii, points, count);
    for (const double s : kSides) {
        const double rs = s * r;
        std::array<Candidate, 2> found;
        const int k = solveForRadius(chord, tangentToCircle(C, rs), found);
        for (int i = 0; i < k; ++i) {
            found[i].points[0] = pointOnCircle(C, rs, found[i].centre, rs + found[i].radius);
            out.gather(found[i]);
        }
        out.closeRound();
    }
}
