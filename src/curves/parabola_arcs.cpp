// Parabolic arcs tangent to other parabolas, each reduced to one quadratic.
// Where the new arc passes through the local origin, S.y = -S.x^2 / (2 R),
// the tangency to (X0, Y0, R0) becomes
//     R0 S.x^2 - 2 X0 R S.x + (X0^2 + 2 Y0 R0) R - 2 Y0 R^2 = 0,
// and with the origin at a vertex (X0 = Y0 = 0) it is S.x^2 = -2 (R - R0) S.y.
#include <array>

#include <tessar/parabola.h>
#include <tessar/vector.h>

#include "curves/parabola.hpp"
#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

// The tolerance of the vertices taken as one and of the radii taken as equal.
constexpr double kSameArcBand = 1e-12;

// Solutions (R = Ra - Rb S.x, S.y = Ya + Yb S.x) of S.x^2 + 2 R S.y = 0.
Roots solveThroughOrigin(double Ra, double Rb, double Ya, double Yb)
{
    return solveQuadratic(1.0 - 2.0 * Yb * Rb, 2.0 * (Yb * Ra - Ya * Rb), 2.0 * Ya * Ra);
}

}  // namespace

// Through p1 (the origin) and p2 = (X, Y): level points fix S.x = X / 2 and
// the quadratic is in R; otherwise R = X^2 / (2 Y) - S.x X / Y = alpha -
// beta S.x and the quadratic is in S.x.
void UTMAT_CalculerArcParTg1ArcParPs2Pt(const dpoint2d *S0, double R0, const dpoint2d *p1, const dpoint2d *p2,
                                        dpoint2d *S, double *R, dpoint2d *T, int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, R, T, 1, count};
    outputs.clear(2);
    if (egal(R0, 0.0, utmatCalculPrec)) return;
    const ArcFrame frame{*p1};
    const dpoint2d c0 = frame.toLocal(*S0);
    const dpoint2d q = frame.toLocal(*p2);
    const double X0 = c0.x, Y0 = c0.y, X = q.x, Y = q.y;
    const double g = X0 * X0 + 2.0 * Y0 * R0;

    std::array<ArcSolution, 2> found{};
    int n = 0;
    const auto keep = [&](ArcSolution &s) {
        if (tangencyWithArc(c0, R0, s.S, s.R, s.T[0])) found[n++] = s;
    };
    if (egal(Y, 0.0, utmatCalculPrec)) {
        const double x = X / 2.0;
        for (const double radius : solveQuadratic(-2.0 * Y0, g - 2.0 * X0 * x, R0 * x * x)) {
            ArcSolution s;
            s.R = radius;
            if (!egal(radius, 0.0, utmatCalculPrec) && levelVertex(X, radius, s.S)) keep(s);
        }
    } else {
        double alpha = 0.0, beta = 0.0;
        if (!guardedDivide(X * X, 2.0 * Y, alpha) || !guardedDivide(X, Y, beta)) return;
        const Roots roots = solveQuadratic(R0 + 2.0 * X0 * beta - 2.0 * Y0 * beta * beta,
                                           -2.0 * X0 * alpha - g * beta + 4.0 * Y0 * alpha * beta,
                                           g * alpha - 2.0 * Y0 * alpha * alpha);
        for (const double x : roots) {
            double shift = 0.0, ratio = 0.0;
            if (!guardedDivide(x * X, Y, shift)) continue;
            ArcSolution s;
            s.R = alpha - shift;
            if (egal(s.R, 0.0, utmatCalculPrec) || !guardedDivide(x * x, s.R, ratio)) continue;
            s.S = {x, -ratio / 2.0};
            keep(s);
        }
    }
    outputs.storeAll(found, n, frame);
}

// Subtracting the passage through p from the tangency leaves S.y linear in
// S.x: S.y = m S.x + q.
void UTMAT_CalculerArcParTg1ArcParPs1PtRayon(const dpoint2d *S0, double R0, const dpoint2d *p, double R,
                                             dpoint2d *S, dpoint2d *T, int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, nullptr, T, 1, count};
    outputs.clear(2);
    const ArcFrame frame{*p};
    const dpoint2d c0 = frame.toLocal(*S0);
    const double X0 = c0.x, Y0 = c0.y;
    double m = 0.0, q = 0.0;
    if (!guardedDivide(-X0, R0, m) || !guardedDivide((X0 * X0 - 2.0 * R * Y0) / 2.0, R0, q)) return;
    q += Y0;

    std::array<ArcSolution, 2> found{};
    int n = 0;
    for (const double x : solveQuadratic(1.0, 2.0 * m * R, 2.0 * q * R)) {
        ArcSolution s;
        s.R = R;
        s.S = {x, m * x + q};
        // A refused division at any root fails the whole construction: the
        // count is written only once every solution has gone back.
        if (!tangencyWithArc(c0, R0, s.S, R, s.T[0])) return;
        found[n++] = s;
    }
    outputs.storeAll(found, n, frame);
}

// The two tangencies, with S.x^2 = -2 R S.y, are linear in R and S.y:
//     2 Yi R + 2 Ri S.y = Xi^2 + 2 Ri Yi - 2 Xi S.x,
// solved by Cramer's rule with the determinant D.
void UTMAT_CalculerArcParTg2ArcParPs1Pt(const dpoint2d *S1, double R1, const dpoint2d *S2, double R2,
                                        const dpoint2d *p, dpoint2d *S, double *R, dpoint2d *T,
                                        int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, R, T, 2, count};
    outputs.clear(2);
    const ArcFrame frame{*p};
    const dpoint2d c1 = frame.toLocal(*S1);
    const dpoint2d c2 = frame.toLocal(*S2);
    const double X1 = c1.x, Y1 = c1.y, X2 = c2.x, Y2 = c2.y;
    const double t1 = X1 * X1 - X2 * X2 + 2.0 * Y1 * R1 - 2.0 * Y2 * R2;
    const double t2 = X2 * X2 + 2.0 * Y2 * R2;
    const double e = -2.0 * X2;
    const double f = 2.0 * (X2 - X1);
    const double D = 4.0 * (Y1 * R2 - Y2 * R1);
    double Ra = 0.0, Rb = 0.0, Ya = 0.0, Yb = 0.0;
    if (!guardedDivide(2.0 * (t1 * R2 - t2 * R1 + t2 * R2), D, Ra) ||
        !guardedDivide(2.0 * (e * R1 - f * R2 - e * R2), D, Rb) ||
        !guardedDivide(2.0 * (e * Y1 - e * Y2 - Y2 * f), D, Yb) ||
        !guardedDivide(2.0 * (t2 * Y1 - t2 * Y2 - Y2 * t1), D, Ya))
        return;

    std::array<ArcSolution, 2> found{};
    int n = 0;
    for (const double x : solveThroughOrigin(Ra, Rb, Ya, Yb)) {
        ArcSolution s;
        s.R = Ra - Rb * x;
        s.S = {x, Ya + Yb * x};
        // A refused division stops everything: the count keeps the roots
        // finished so far, whose slots still hold zeros, nothing having been
        // moved back yet.
        if (!tangencyWithArc(c1, R1, s.S, s.R, s.T[0]) || !tangencyWithArc(c2, R2, s.S, s.R, s.T[1])) return;
        found[n] = s;
        *count = ++n;
    }
    for (int i = 0; i < n; ++i)
        outputs.store(i, found[i], frame);
}

// With S1 as origin and S2 at (X, Y): the difference of the tangencies gives
// S.y = u S.x + v, and S.x^2 + 2 (R - R1) S.y = 0 the quadratic. Equal radii
// cancel S.y and fix S.x instead.
void UTMAT_CalculerArcParTg2ArcParRayon(const dpoint2d *S1, double R1, const dpoint2d *S2, double R2,
                                        double R, dpoint2d *S, dpoint2d *T, int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, nullptr, T, 2, count};
    outputs.clear(2);
    if (UTMAT_PointsIdentiques(S1, S2, kSameArcBand) != 0) return;
    const ArcFrame frame{*S1};
    const dpoint2d c1 = frame.toLocal(*S1);
    const dpoint2d c2 = frame.toLocal(*S2);
    const double X = c2.x, Y = c2.y;

    std::array<ArcSolution, 2> found{};
    int n = 0;
    const auto keep = [&](ArcSolution &s) {
        if (tangencyWithArc(c1, R1, s.S, R, s.T[0]) && tangencyWithArc(c2, R2, s.S, R, s.T[1]))
            found[n++] = s;
    };
    if (!tsMath_doublesNearEqual(R1, R2, kSameArcBand)) {
        double u = 0.0, v = 0.0;
        if (!guardedDivide(X, R1 - R2, u) || !guardedDivide(2.0 * (R - R2) * Y - X * X, 2.0 * (R1 - R2), v))
            return;
        for (const double x : solveQuadratic(1.0, 2.0 * (R - R1) * u, 2.0 * (R - R1) * v)) {
            ArcSolution s;
            s.R = R;
            s.S = {x, u * x + v};
            keep(s);
        }
    } else {
        ArcSolution s;
        s.R = R;
        double drop = 0.0;
        if (!guardedDivide(X * X - 2.0 * Y * (R - R1), 2.0 * X, s.S.x)) return;
        if (!guardedDivide(s.S.x * s.S.x, 2.0 * (R - R1), drop)) return;
        s.S.y = -drop;
        keep(s);
    }
    outputs.storeAll(found, n, frame);
}

// With the tangent y = m x + k, S.y = k + m S.x + R m^2 / 2; put into the
// tangency to (X0, Y0, R0) it leaves R and S.y linear in S.x, with
// D = m^2 R0 + 2 Y0. The line is translated to p, not normalised.
void UTMAT_CalculerArcParTgArcParDtePs1Pt(const dpoint2d *S0, double R0, const UTMAT_Droite *d,
                                          const dpoint2d *p, dpoint2d *S, double *R, dpoint2d *T,
                                          int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, R, T, 2, count};
    outputs.clear(2);
    const ArcFrame frame{*p};
    UTMAT_Droite local{};
    if (!frame.lineToLocal(*d, false, local)) return;
    double m = 0.0, k = 0.0;
    if (!slopeForm(local, m, k)) return;
    const dpoint2d c0 = frame.toLocal(*S0);
    const double X0 = c0.x, Y0 = c0.y;
    const double D = m * m * R0 + 2.0 * Y0;
    double Ra = 0.0, Rb = 0.0, Ya = 0.0, Yb = 0.0;
    if (!guardedDivide(X0 * X0 + 2.0 * Y0 * R0 - 2.0 * k * R0, D, Ra) ||
        !guardedDivide(2.0 * X0 + 2.0 * m * R0, D, Rb) || !guardedDivide((2.0 * Y0 - X0 * m) * m, D, Yb) ||
        !guardedDivide(2.0 * Y0 * k + X0 * X0 * m * m / 2.0 + Y0 * m * m * R0, D, Ya))
        return;

    std::array<ArcSolution, 2> found{};
    int n = 0;
    for (const double x : solveThroughOrigin(Ra, Rb, Ya, Yb)) {
        ArcSolution s;
        s.R = Ra - Rb * x;
        s.S = {x, Ya + Yb * x};
        if (tangencyWithArc(c0, R0, s.S, s.R, s.T[0]) && tangencyWithLine(s.S, s.R, m, s.T[1]))
            found[n++] = s;
    }
    outputs.storeAll(found, n, frame);
}

// With S0 as origin: S.x^2 + 2 (R - R0) S.y = 0 and S.y on the tangent,
// S.y = (S.x + m R / 2) m + k.
void UTMAT_CalculerArcParTgArcParDteRayon(const dpoint2d *S0, double R0, const UTMAT_Droite *d, double R,
                                          dpoint2d *S, dpoint2d *T, int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, nullptr, T, 2, count};
    outputs.clear(2);
    const ArcFrame frame{*S0};
    UTMAT_Droite local{};
    if (!frame.lineToLocal(*d, true, local)) return;
    double m = 0.0, k = 0.0;
    if (!slopeForm(local, m, k)) return;
    const dpoint2d c0 = frame.toLocal(*S0);

    std::array<ArcSolution, 2> found{};
    int n = 0;
    for (const double x : solveQuadratic(1.0, 2.0 * m * (R - R0), (m * m * R + 2.0 * k) * (R - R0))) {
        ArcSolution s;
        s.R = R;
        s.S = vertexOnTangent(x, R, m, k);
        if (tangencyWithArc(c0, R0, s.S, R, s.T[0]) && tangencyWithLine(s.S, R, m, s.T[1])) found[n++] = s;
    }
    outputs.storeAll(found, n, frame);
}
