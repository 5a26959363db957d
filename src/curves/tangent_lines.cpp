// Circles through points and tangent to lines: the circle through three
// points, through two points with a radius, the fillet of radius R between
// two lines, and the circles tangent to one or two lines through points.
#include <cmath>

#include <tessar/tangent.h>
#include <tessar/vector.h>

#include "curves/tangent.hpp"
#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

bool nearZero(double value)
{
    return egal(value, 0.0, utmatCalculPrec);
}

// A given radius at or below 0 within the precision has no circle.
bool noRadius(double R)
{
    return infOuEgal(R, 0.0, utmatCalculPrec);
}

// The centre of the circle through the origin, u and v: the chords of u and
// of v, 2 u.x x + 2 u.y y - u.u = 0 and 2 v.x x + 2 v.y y - v.v = 0, the
// second replaced by its difference with the first. False for points in line
// or coincident.
bool circumcentre(const dpoint2d &u, const dpoint2d &v, dpoint2d &centre)
{
    const double m = 2.0 * u.x;
    const double n = 2.0 * u.y;
    const double t = -(u.x * u.x) - u.y * u.y;
    const double w = u.x * u.x + u.y * u.y - v.x * v.x - v.y * v.y;
    const double dx = 2.0 * (v.x - u.x);
    const double dy = 2.0 * (v.y - u.y);
    if (!nearZero(m) && !egal(dy * m, dx * n, utmatCalculPrec)) {
        centre.y = (dx * t - w * m) / (dy * m - dx * n);
        centre.x = -(n * centre.y + t) / m;
        return true;
    }
    if (nearZero(m) && !nearZero(dx) && !nearZero(n)) {
        centre.y = -t / n;
        centre.x = (dy * t - w * n) / (dx * n);
        return true;
    }
    return false;
}

// The crossing of the parallels a1 x + b1 y + C1 = 0 and a2 x + b2 y + C2 = 0
// by elimination of x through the first; false for parallel lines.
bool crossParallels(const UTMAT_Droite &l1, double C1, const UTMAT_Droite &l2, double C2, dpoint2d &out)
{
    if (!nearZero(l1.a)) {
        const double det = l2.b - l1.b * l2.a / l1.a;
        if (nearZero(det)) return false;
        out.y = -(C2 - l2.a * C1 / l1.a) / det;
        out.x = -(l1.b * out.y + C1) / l1.a;
        return true;
    }
    if (nearZero(l2.a)) return false;
    out.y = -C1 / l1.b;
    out.x = -(l2.b * out.y + C2) / l2.a;
    return true;
}

}  // namespace

/* ---- Through points ---- */

void UTMAT_CalculerCerPs3Pt(const dpoint2d *p1, const dpoint2d *p2, const dpoint2d *p3, dpoint2d *centre,
                            double *radius, int32_t *count)
{
    enterKernel();
    *count = 0;
    if (failIfNull(p1)) return;
    const LocalFrame frame(*p1);
    const dpoint2d u = frame.toLocal(*p2);
    const dpoint2d v = frame.toLocal(*p3);
    dpoint2d c{0.0, 0.0};
    if (!circumcentre(u, v, c)) return;
    *radius = UTMAT_CalculerDistance2Pt(&c, &v);
    *centre = frame.toCaller(c);
    *count = 1;
}

void UTMAT_CalculerCerPs2PtRayon(const dpoint2d *p1, const dpoint2d *p2, double R, dpoint2d *centres,
                                 int32_t *count)
{
    enterKernel();
    *count = 0;
    if (noRadius(R)) return;
    const LocalFrame frame(*p1);
    // The centre lies on the chord's bisector at distance R from p1.
    const Condition chord = passingThrough(frame.toLocal(*p2));
    std::array<dpoint2d, 2> found{};
    const int n = solveForCentre(chord.a, chord.b, chord.c, R, found);
    Solutions out(frame, Sameness::None, 0, centres, nullptr, nullptr, count);
    for (int i = 0; i < n; ++i)
        out.gather({found[i], R, {}});
    out.closeRound();
}

/* ---- Tangent to lines ---- */

// The centre lies on the parallels to d1 and d2 at the signed distances
// s1 R and s2 R, so the fillet's four centres are the crossings of the
// parallels; there is no frame move.
void UTMAT_CalculerCerTg2DteRayon(const UTMAT_Droite *d1, const UTMAT_Droite *d2, double R, dpoint2d *centres,
                                  dpoint2d *points, int32_t *count)
{
    enterKernel();
    *count = 0;
    if (noRadius(R)) return;
    const LocalFrame frame;
    UTMAT_Droite l1;
    UTMAT_Droite l2;
    double n1 = 0.0;
    double n2 = 0.0;
    if (!frame.line(*d1, l1, n1) || !frame.line(*d2, l2, n2)) return;
    Solutions out(frame, Sameness::Centre, 2, centres, nullptr, points, count);
    for (const double s1 : kSides) {
        for (const double s2 : kSides) {
            Candidate c;
            if (!crossParallels(l1, l1.c - s1 * n1 * R, l2, l2.c - s2 * n2 * R, c.centre)) continue;
            c.radius = R;
            if (!footOn(l1, c.centre, c.points[0]) || !footOn(l2, c.centre, c.points[1])) return;
            out.gather(c);
        }
        out.closeRound();
    }
}

// Eliminating rho between the two tangencies, k2 (d1) - k1 (d2) = 0 with
// k = s n, gives a bisector of the lines; the passage through p (the origin)
// gives the quadratic. (s1, s2) and (-s1, -s2) share the bisector and give
// the same centres with rho negated, which the radius filter drops.
void UTMAT_CalculerCerTg2DtePs1Pt(const UTMAT_Droite *d1, const UTMAT_Droite *d2, const dpoint2d *p,
                                  dpoint2d *centres, double *radii, dpoint2d *points, int32_t *count)
{
    enterKernel();
    *count = 0;
    const LocalFrame frame(*p);
    UTMAT_Droite l1;
    UTMAT_Droite l2;
    double n1 = 0.0;
    double n2 = 0.0;
    if (!frame.line(*d1, l1, n1) || !frame.line(*d2, l2, n2)) return;
    Solutions out(frame, Sameness::CentreAndRadius, 2, centres, radii, points, count);
    for (const double s1 : kSides) {
        for (const double s2 : kSides) {
            const Condition first = tangentToLine(l1, n1, s1);
            std::array<Candidate, 2> found;
            const int n = solveForRadius(eliminateRadius(first, tangentToLine(l2, n2, s2)), first, found);
            for (int i = 0; i < n; ++i) {
                Candidate &c = found[i];
                if (!footOn(l1, c.centre, c.points[0]) || !footOn(l2, c.centre, c.points[1])) return;
                out.gather(c);
            }
        }
        out.closeRound();
    }
}

// The centre lies on the parallel to d at s R and at distance R from p. Only
// |R| is tested: a negative R is taken as it stands, and only swaps the
// sides the sign loop visits.
void UTMAT_CalculerCerTgDtePs1PtRayon(const UTMAT_Droite *d, const dpoint2d *p, double R, dpoint2d *centres,
                                      dpoint2d *points, int32_t *count)
{
    enterKernel();
    *count = 0;
    if (noRadius(std::fabs(R))) return;
    const LocalFrame frame(*p);
    UTMAT_Droite l;
    double n = 0.0;
    if (!frame.line(*d, l, n)) return;
    Solutions out(frame, Sameness::Centre, 1, centres, nullptr, points, count);
    for (const double s : kSides) {
        std::array<dpoint2d, 2> found{};
        const int k = solveForCentre(l.a, l.b, l.c - s * n * R, R, found);
        for (int i = 0; i < k; ++i) {
            Candidate c{found[i], R, {}};
            if (!footOn(l, c.centre, c.points[0])) return;
            out.gather(c);
        }
        out.closeRound();
    }
}

// The chord of p1 p2 (p1 at the origin) is the relation free of rho; the
// tangency to d gives rho.
void UTMAT_CalculerCerTgDtePs2Pt(const UTMAT_Droite *d, const dpoint2d *p1, const dpoint2d *p2,
                                 dpoint2d *centres, double *radii, dpoint2d *points, int32_t *count)
{
    enterKernel();
    *count = 0;
    const LocalFrame frame(*p1);
    UTMAT_Droite l;
    double n = 0.0;
    if (!frame.line(*d, l, n)) return;
    const Condition chord = passingThrough(frame.toLocal(*p2));
    Solutions out(frame, Sameness::CentreAndRadius, 1, centres, radii, points, count);
    for (const double s : kSides) {
        std::array<Candidate, 2> found;
        const int k = solveForRadius(chord, tangentToLine(l, n, s), found);
        for (int i = 0; i < k; ++i) {
            if (!footOn(l, found[i].centre, found[i].points[0])) return;
            out.gather(found[i]);
        }
        out.closeRound();
    }
}
