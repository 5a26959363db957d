// Parabolic arcs through points and tangent to lines, each reduced to one
// quadratic. In the frame of the point passed through, S.y = -S.x^2 / (2 R),
// and the tangency to y = m x + k becomes
//     S.x^2 + 2 m R S.x + m^2 R^2 + 2 k R = 0,
// quadratic in S.x for a given R, in R for a given S.x; where R is linear in
// S.x, R = alpha - beta S.x, it stays quadratic in S.x:
//     (1 - m beta)^2 S.x^2 + 2 (m alpha (1 - m beta) - k beta) S.x
//         + alpha (m^2 alpha + 2 k) = 0.
#include <array>

#include <tessar/parabola.h>

#include "curves/parabola.hpp"
#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

// The k that counts as a line through the local origin.
constexpr double kThroughOriginBand = 1e-12;

// The tolerance of the slopes taken as opposite.
constexpr double kOppositeSlopeBand = 1e-12;

// The tangency condition above with R = alpha - beta S.x, as a quadratic in S.x.
Roots solveWithLinearRadius(double m, double k, double alpha, double beta)
{
    const double e = 1.0 - m * beta;
    return solveQuadratic(e * e, 2.0 * (m * alpha * e - k * beta), alpha * (m * m * alpha + 2.0 * k));
}

}  // namespace

void UTMAT_CalculerArcParTg1DteRayon(const UTMAT_Droite *d, const dpoint2d *p, double R, dpoint2d *S,
                                     dpoint2d *T, int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, nullptr, T, 1, count};
    outputs.clear(2);
    const ArcFrame frame{*p};
    UTMAT_Droite local{};
    if (!frame.lineToLocal(*d, true, local)) return;
    double m = 0.0, k = 0.0;
    if (!slopeForm(local, m, k)) return;
    if (tsMath_doublesNearEqual(k, 0.0, kThroughOriginBand)) k = 0.0;

    std::array<ArcSolution, 2> found{};
    int n = 0;
    for (const double x : solveQuadratic(1.0, 2.0 * m * R, 2.0 * R * k + m * m * R * R)) {
        ArcSolution s;
        s.R = R;
        s.S = vertexOnTangent(x, R, m, k);
        if (tangencyWithLine(s.S, R, m, s.T[0])) found[n++] = s;
    }
    outputs.storeAll(found, n, frame);
}

// Level points put the vertex midway, S.x = X / 2, and leave R to the
// quadratic; otherwise the passage through p2 = (X, Y) gives
// R = X^2 / (2 Y) - S.x X / Y.
void UTMAT_CalculerArcParTg1DtePs2Pt(const UTMAT_Droite *d, const dpoint2d *p1, const dpoint2d *p2,
                                     dpoint2d *S, double *R, dpoint2d *T, int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, R, T, 1, count};
    outputs.clear(2);
    const ArcFrame frame{*p1};
    UTMAT_Droite local{};
    if (!frame.lineToLocal(*d, false, local)) return;
    if (egal(local.b, 0.0, utmatCalculPrec)) return;
    double m = 0.0, k = 0.0;
    if (!slopeForm(local, m, k)) return;
    if (egal(k, 0.0, 10.0 * utmatCalculPrec)) k = 0.0;
    const dpoint2d q = frame.toLocal(*p2);
    const double X = q.x, Y = q.y;

    std::array<ArcSolution, 2> found{};
    int n = 0;
    if (egal(Y, 0.0, utmatCalculPrec)) {
        const double x = X / 2.0;
        for (const double radius : solveQuadratic(m * m, 2.0 * (m * x + k), x * x)) {
            ArcSolution s;
            s.R = radius;
            if (egal(radius, 0.0, utmatCalculPrec) || !levelVertex(X, radius, s.S)) continue;
            if (tangencyWithLine(s.S, radius, m, s.T[0])) found[n++] = s;
        }
    } else {
        double alpha = 0.0, beta = 0.0;
        if (!guardedDivide(X * X, 2.0 * Y, alpha) || !guardedDivide(X, Y, beta)) return;
        for (const double x : solveWithLinearRadius(m, k, alpha, beta)) {
            double shift = 0.0, ratio = 0.0;
            if (!guardedDivide(x * X, Y, shift)) continue;
            ArcSolution s;
            s.R = alpha - shift;
            if (egal(s.R, 0.0, utmatCalculPrec)) continue;
            if (!guardedDivide(x * x, s.R, ratio)) continue;
            s.S = {x, -ratio / 2.0};
            if (tangencyWithLine(s.S, s.R, m, s.T[0])) found[n++] = s;
        }
    }
    outputs.storeAll(found, n, frame);
}

// Subtracting the two tangency conditions,
//     k1 - k2 = (m2 - m1) S.x + (m2^2 - m1^2) R / 2:
// opposite slopes fix S.x at (k2 - k1) / (2 m1), any others make R linear in
// S.x, R = w - 2 S.x / (m1 + m2).
void UTMAT_CalculerArcParTg2DtePs1Pt(const UTMAT_Droite *d1, const UTMAT_Droite *d2, const dpoint2d *p,
                                     dpoint2d *S, double *R, dpoint2d *T, int32_t *count)
{
    enterKernel();
    const ArcOutputs outputs{S, R, T, 2, count};
    outputs.clear(2);
    const ArcFrame frame{*p};
    UTMAT_Droite l1{}, l2{};
    if (!frame.lineToLocal(*d1, true, l1) || !frame.lineToLocal(*d2, true, l2)) return;
    double m1 = 0.0, k1 = 0.0, m2 = 0.0, k2 = 0.0;
    if (!slopeForm(l1, m1, k1) || !slopeForm(l2, m2, k2)) return;
    if (tsMath_doublesNearEqual(k1, 0.0, kThroughOriginBand)) k1 = 0.0;
    if (tsMath_doublesNearEqual(k2, 0.0, kThroughOriginBand)) k2 = 0.0;

    std::array<ArcSolution, 2> found{};
    int n = 0;
    const auto keep = [&](ArcSolution &s) {
        if (tangencyWithLine(s.S, s.R, m1, s.T[0]) && tangencyWithLine(s.S, s.R, m2, s.T[1])) found[n++] = s;
    };
    if (tsMath_doublesNearEqual(m1, -m2, kOppositeSlopeBand)) {
        double x = 0.0;
        if (!guardedDivide(k2 - k1, 2.0 * m1, x)) return;
        // Through the origin, S.x^2 + 2 R S.y = 0 with S.y on the tangent d2.
        for (const double radius : solveQuadratic(m1 * m1, 2.0 * (k2 - x * m1), x * x)) {
            ArcSolution s;
            s.R = radius;
            s.S = {x, radius * m1 * m1 / 2.0 + k2 - x * m1};
            keep(s);
        }
    } else {
        double w = 0.0, beta = 0.0;
        if (!guardedDivide(2.0 * (k2 - k1), m1 * m1 - m2 * m2, w) || !guardedDivide(2.0, m1 + m2, beta))
            return;
        for (const double x : solveWithLinearRadius(m1, k1, w, beta)) {
            double shift = 0.0;
            if (!guardedDivide(x * 2.0, m1 + m2, shift)) continue;
            ArcSolution s;
            s.R = w - shift;
            s.S = vertexOnTangent(x, s.R, m1, k1);
            keep(s);
        }
    }
    outputs.storeAll(found, n, frame);
}
