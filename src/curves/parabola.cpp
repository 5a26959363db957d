// Parabolic arcs fixed without a quadratic: through three points, through two
// points with a radius, by vertex and a point, a line or another parabola,
// and tangent to two lines with a radius or a length. Also the frame, slope
// and tangency steps that the whole family shares.
#include <tessar/parabola.h>
#include <tessar/vector.h>

#include "curves/parabola.hpp"
#include "frame/kernel.hpp"
#include "geometry/circle.hpp"

using namespace tessar::detail;

/* ---- Shared steps ---- */

namespace tessar::detail {

dpoint2d ArcFrame::toLocal(const dpoint2d &p) const noexcept
{
    dpoint2d out{};
    UTMAT_ChangerRepere(&p, &origin, 0.0, &out);
    return out;
}

dpoint2d ArcFrame::toCaller(const dpoint2d &p) const noexcept
{
    const dpoint2d back{-origin.x, -origin.y};
    dpoint2d out{};
    UTMAT_ChangerRepere(&p, &back, 0.0, &out);
    return out;
}

bool ArcFrame::lineToLocal(const UTMAT_Droite &d, bool normalise, UTMAT_Droite &out) const noexcept
{
    const dpoint2d back{-origin.x, -origin.y};
    UTMAT_TranslaterDroite(&d, &back, &out);
    if (normalise) UTMAT_NormerDroite(&out, nullptr);
    return !nestedFailed();
}

bool pointOnArc(const dpoint2d &S, double R, double x, dpoint2d &T) noexcept
{
    const double dx = x - S.x;
    double rise = 0.0;
    if (!guardedDivide(dx * dx / 2.0, R, rise)) return false;
    T = {x, S.y + rise};
    return true;
}

bool tangencyWithLine(const dpoint2d &S, double R, double m, dpoint2d &T) noexcept
{
    return pointOnArc(S, R, S.x + R * m, T);
}

bool tangencyWithArc(const dpoint2d &S0, double R0, const dpoint2d &S, double R, dpoint2d &T) noexcept
{
    double x = 0.0;
    return guardedDivide(R0 * S.x - R * S0.x, R0 - R, x) && pointOnArc(S, R, x, T);
}

Roots solveQuadratic(double a, double b, double c) noexcept
{
    Roots roots;
    quadraticRoots(a, b, c, roots.x.data(), &roots.n);
    return roots;
}

void ArcOutputs::clear(int capacity) const noexcept
{
    *count = 0;
    for (int i = 0; i < capacity; ++i) {
        S[i] = {0.0, 0.0};
        if (R != nullptr) R[i] = 0.0;
        for (int j = 0; j < tangencies; ++j)
            T[tangencies * i + j] = {0.0, 0.0};
    }
}

void ArcOutputs::store(int i, const ArcSolution &s, const ArcFrame &frame) const noexcept
{
    S[i] = frame.toCaller(s.S);
    if (R != nullptr) R[i] = s.R;
    for (int j = 0; j < tangencies; ++j)
        T[tangencies * i + j] = frame.toCaller(s.T[j]);
}

}  // namespace tessar::detail

/* ---- Through points ---- */

// With p2 as origin, the passages through p1 and p3 are linear in R and S.x:
// 2 y R + 2 x S.x = x^2 for (x, y) = p1 and p3; det is their determinant,
// negated.
void UTMAT_CalculerArcParPs3Pt(const dpoint2d *p1, const dpoint2d *p2, const dpoint2d *p3, dpoint2d *S,
                               double *R, int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, R, nullptr, 0, count};
    outputs.clear(1);
    const ArcFrame frame{*p2};
    const dpoint2d q1 = frame.toLocal(*p1);
    const dpoint2d q3 = frame.toLocal(*p3);
    const double x1 = q1.x, y1 = q1.y, x3 = q3.x, y3 = q3.y;

    const double det = 4.0 * y1 * (x1 - x3) - 4.0 * x1 * (y1 - y3);
    if (egal(det, 0.0, utmatCalculPrec)) return;
    const double i = 1.0 / det;
    const double A = x1 * x1;
    const double B = x1 * x1 - x3 * x3;
    ArcSolution s;
    s.R = 2.0 * i * (A * (x1 - x3) - B * x1);
    // The radius stays stored even when it is then found to be near 0.
    *R = s.R;
    if (egal(s.R, 0.0, utmatCalculPrec)) return;
    s.S.x = 2.0 * i * (B * y1 - A * (y1 - y3));
    s.S.y = y3 - (x3 - s.S.x) * (x3 - s.S.x) / s.R / 2.0;
    outputs.storeAll(std::array{s}, 1, frame);
}

// With p2 as origin and p1 at (lx, ly): ly = (lx^2 - 2 lx S.x) / (2 R), so
// S.x = lx / 2 - (ly / lx) R; level points put the vertex midway.
void UTMAT_CalculerArcParPs2PtRayon(const dpoint2d *p1, const dpoint2d *p2, double R, dpoint2d *S,
                                    int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, nullptr, nullptr, 0, count};
    outputs.clear(1);
    const ArcFrame frame{*p2};
    const dpoint2d l = frame.toLocal(*p1);
    double slope = 0.0;
    if (!guardedDivide(l.y, l.x, slope)) return;
    ArcSolution s;
    s.S.x = l.x / 2.0 - slope * R;
    double rise = 0.0;
    if (!guardedDivide((l.x - s.S.x) * (l.x - s.S.x) / 2.0, R, rise)) return;
    s.S.y = l.y - rise;
    outputs.storeAll(std::array{s}, 1, frame);
}

// The first point is the vertex, the second the point passed through:
// R = (lx^2 / 2) / -ly with (lx, ly) = first - second.
void UTMAT_CalculerArcParPs1PtSommet(const dpoint2d *first, const dpoint2d *second, double *R, int32_t *count)
{
    enterKernel();
    *count = 0;
    *R = 0.0;
    const ArcFrame frame{*second};
    const dpoint2d l = frame.toLocal(*first);
    if (!guardedDivide(l.x * l.x / 2.0, -l.y, *R)) return;
    *count = 1;
}

/* ---- Given vertex ---- */

// With S as origin the tangency to y = m x + k reads k = -R m^2 / 2, so
// R = 2 u / m / m with u = c' / b' = -k.
void UTMAT_CalculerArcParTg1DteSommet(const UTMAT_Droite *d, dpoint2d *S, double *R, dpoint2d *T,
                                      int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, R, T, 1, count};
    *count = 0;
    *R = 0.0;
    *T = {0.0, 0.0};
    const ArcFrame frame{*S};
    ArcSolution s;
    s.S = frame.toLocal(*S);
    UTMAT_Droite local{};
    if (!frame.lineToLocal(*d, true, local)) return;
    // The slope takes the caller's a with the normalised b': the two agree
    // only for a normalised line, and a line of another scale gives another
    // radius. Kept as it is.
    double m = 0.0, u = 0.0, twoUOverM = 0.0;
    if (!guardedDivide(-d->a, local.b, m) || !guardedDivide(local.c, local.b, u)) return;
    if (!guardedDivide(2.0 * u, m, twoUOverM) || !guardedDivide(twoUOverM, m, s.R)) return;
    if (!tangencyWithLine(s.S, s.R, m, s.T[0])) return;
    // S goes back through the frame, unchanged.
    outputs.storeAll(std::array{s}, 1, frame);
}

// With S as origin and S0 at (lx, ly): lx^2 = 2 (R - R0) ly.
void UTMAT_CalculerArcParTg1ArcParSommet(const dpoint2d *S0, double R0, const dpoint2d *S, double *R,
                                         dpoint2d *T, int32_t *count)
{
    enterKernel();
    *count = 0;
    *R = 0.0;
    *T = {0.0, 0.0};
    const ArcFrame frame{*S};
    const dpoint2d l = frame.toLocal(*S0);
    double offset = 0.0;
    if (!guardedDivide(l.x * l.x / 2.0, l.y, offset)) return;
    const double radius = offset + R0;
    // Stored at once: it stays when the tangency point fails below.
    *R = radius;
    dpoint2d t{};
    if (!tangencyWithArc(l, R0, frame.toLocal(*S), radius, t)) return;
    *T = frame.toCaller(t);
    *count = 1;
}

/* ---- Tangent to two lines ---- */

// The lines as given, not normalised. Subtracting the two tangency
// conditions: S.x = x0 - (m1 + m2) R / 2, x0 being the crossing of the lines.
void UTMAT_CalculerArcParTg2DteRayon(const UTMAT_Droite *d1, const UTMAT_Droite *d2, double R, dpoint2d *S,
                                     dpoint2d *T1, dpoint2d *T2, int32_t *count)
{
    enterKernel();
    if (failIfNull(d1)) return;
    *count = 0;
    *S = {0.0, 0.0};
    *T1 = {0.0, 0.0};
    *T2 = {0.0, 0.0};
    double m1 = 0.0, k1 = 0.0, m2 = 0.0, k2 = 0.0, x0 = 0.0;
    if (!slopeForm(*d1, m1, k1) || !slopeForm(*d2, m2, k2)) return;
    if (!guardedDivide(k2 - k1, m1 - m2, x0)) return;
    dpoint2d vertex{};
    vertex.x = x0 - (m1 + m2) * R / 2.0;
    vertex.y = (vertex.x + m1 * R / 2.0) * m1 + k1;
    dpoint2d t1{}, t2{};
    if (!tangencyWithLine(vertex, R, m1, t1) || !tangencyWithLine(vertex, R, m2, t2)) return;
    *S = vertex;
    *T1 = t1;
    *T2 = t2;
    *count = 1;
}

// The tangency points lie (m2 - m1) R apart in x, so R = L' / (m1 - m2) for
// L' = -L, then L, each radius handed to the construction with a radius.
void UTMAT_CalculerArcParTg2DteLongueur(const UTMAT_Droite *d1, const UTMAT_Droite *d2, double L, dpoint2d *S,
                                        double *R, dpoint2d *T, int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, R, T, 2, count};
    outputs.clear(2);
    double m1 = 0.0, k1 = 0.0, m2 = 0.0, k2 = 0.0;
    if (!slopeForm(*d1, m1, k1) || !slopeForm(*d2, m2, k2)) return;
    const double dm = m1 - m2;
    int32_t n = 0;
    for (const double length : {-L, L}) {
        double radius = 0.0;
        if (!guardedDivide(length, dm, radius)) return;
        int32_t found = 0;
        UTMAT_CalculerArcParTg2DteRayon(d1, d2, radius, &S[n], &T[2 * n], &T[2 * n + 1], &found);
        if (found == 1) {
            R[n] = radius;
            *count = ++n;
        }
    }
}
