// Tangent constructions of road design: points of a vertical parabola whose
// tangent passes through a point, the length of a symmetric vertical curve
// through a point, and the radius of a circular curve through a point
// between two tangents.
#include <cmath>

#include <tessar/frame.h>
#include <tessar/mathapi.h>
#include <tessar/transform.h>

namespace {

// The root solver's tolerance in these constructions: a coefficient of at
// most this magnitude counts as absent.
constexpr double kRootTolerance = 1e-5;

// How far the perpendicular from the point is drawn to find its foot on a
// tangent; any length serves, the foot comes from a crossing of lines.
constexpr double kFootReach = 10000.0;

// The unsigned angle at v between the directions to p1 and p2, folded into
// [0, pi]. A point at v leaves it 0.
double foldedSweepAt(double vx, double vy, double x1, double y1, double x2, double y2)
{
    double sweep = 0.0;
    tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, vx, vy, x1, y1, x2, y2, 1);
    double m = std::fabs(sweep);
    if (m > dc_pi) m = dc_2pi - m;
    return m;
}

}  // namespace

/* ---- Vertical parabolas ---- */

// The tangent condition is solved as a t^2 - 2 a dx t + (py - y0 - dx g1) = 0
// with a = (g2 - g1) / L, and each point's height is taken as
// (a x + g1) x + y0 at the absolute x = t + x0, not at t. The g1 = -g2 test
// is kept although the grades' sum plays no part in the construction.
int32_t tsMath_parabolaTangentsToPoint(double *x1, double *y1, double *x2, double *y2, double g1, double g2,
                                       double length, double x0, double y0, double px, double py)
{
    double *xs[2] = {x1, x2};
    double *ys[2] = {y1, y2};
    for (int j = 0; j < 2; ++j) {
        if (xs[j]) *xs[j] = 0.0;
        if (ys[j]) *ys[j] = 0.0;
    }
    if (!(length > 0.0) || tsUtil_equalDouble(g1, -g2, 0.0)) return 0;
    const double a = (g2 - g1) / length;
    const double dx = px - x0;
    const double coefficients[4] = {py - y0 - dx * g1, -2.0 * a * dx, a, 0.0};
    double roots[3] = {0.0, 0.0, 0.0};
    const int32_t count = tsMath_solvePolynomialEquation(coefficients, roots, kRootTolerance);
    const int32_t found = count < 2 ? count : 2;
    for (int32_t j = 0; j < found; ++j) {
        const double x = roots[j] + x0;
        if (xs[j]) *xs[j] = x;
        if (ys[j]) *ys[j] = (a * x + g1) * x + y0;
    }
    return found;
}

// With t half the curve's length and dx = P.x - V.x, a symmetric parabola
// through P satisfies (P.y - V.y - g1 dx) 4 t / (g2 - g1) = (dx + t)^2, that
// is t^2 + (2 dx - 4 (P.y - V.y - g1 dx) / (g2 - g1)) t + dx^2 = 0. The
// larger non-negative root is taken. Grades that cannot be formed stop with
// 0; so do equal and opposite grades, by the test as it stands.
int32_t tsMath_passTangentParabolaThruPoint(double *length, double Ay, double Ax, double By, double Bx,
                                            double Vy, double Vx, double Py, double Px)
{
    *length = 0.0;
    if (!tsMath_isDivisionPossible(Vy - Ay, Vx - Ax) || !tsMath_isDivisionPossible(Vy - By, Vx - Bx))
        return 0;
    const double g1 = (Vy - Ay) / (Vx - Ax);
    const double g2 = (Vy - By) / (Vx - Bx);
    if (tsUtil_equalDouble(g1, -g2, 0.0)) return 0;
    const double dx = Px - Vx;
    const double coefficients[4] = {dx * dx, 2.0 * dx - 4.0 * (Py - Vy - g1 * dx) / (g2 - g1), 1.0, 0.0};
    double roots[3] = {0.0, 0.0, 0.0};
    const int32_t count = tsMath_solvePolynomialEquation(coefficients, roots, kRootTolerance);
    for (int32_t j = 0; j < count; ++j)
        if (roots[j] >= 0.0) *length = 2.0 * roots[j];
    return count;
}

/* ---- Circular curves ---- */

// The circle tangent to both lines has its centre on the bisector at
// R / cos h from V, h being half the deflection. Measured from the tangent
// nearer to P (angle t at V), the angle w at the centre from the point of
// contact to P satisfies cos(w -+ t) = cos(h + t) / cos h, with w + t for one
// circle (flag set) and w - t for the other. P lies R (1 - cos w) from that
// tangent, which gives R from P's distance to its foot.
void tsMath_passTangentCurveThruPoint(double *radius, double Ay, double Ax, double By, double Bx, double Vy,
                                      double Vx, double Py, double Px, int32_t flag)
{
    const double dA = tsMath_direction2d(Vx, Vy, Ax, Ay);
    const double dB = tsMath_direction2d(Vx, Vy, Bx, By);
    const double m = foldedSweepAt(Vx, Vy, Ax, Ay, Bx, By);
    const double h = std::fabs(dc_pi - m) / 2.0;

    double t = foldedSweepAt(Vx, Vy, Px, Py, Bx, By);
    const bool useA = t > dc_piover2 - h;
    if (useA) t = foldedSweepAt(Vx, Vy, Px, Py, Ax, Ay);

    double w = std::acos(std::cos(h + t) / std::cos(h));
    w = flag ? w + t : w - t;

    double across = (useA ? dA : dB) + dc_piover2;
    if (across >= dc_2pi) across -= dc_2pi;
    double qx = Px, qy = Py;
    tsMath_locateByDistanceDirection2d(&qx, &qy, Px, Py, kFootReach, across);
    // The crossing's status is not looked at: a tangent of no length (V on A
    // or B) leaves the foot at P itself.
    double footX = Px, footY = Py;
    const double tx = useA ? Ax : Bx;
    const double ty = useA ? Ay : By;
    tsMath_intersectLineWithLine2d(&footX, &footY, Vx, Vy, tx, ty, Px, Py, qx, qy);

    if (w == 0.0)
        *radius = 0.0;
    else
        *radius = tsMath_distance2d(Px, Py, footX, footY) / (1.0 - std::cos(w));
}
