// Circles and arcs of the ts layer: feet on a circle, sweeps seen from a
// centre, the circle through three surveyed points, crossings of a circle
// with a line or another circle, tangents from a point and the box of an arc.
#include <array>
#include <cmath>

#include <tessar/conversion.h>
#include <tessar/frame.h>
#include <tessar/mathapi.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// Returned when the two circles of a crossing are one and the same.
constexpr int32_t kSameCircle = 2;

// The radius that stands for a straight line through three points.
constexpr double kStraightRadius = 1e100;

// The survey azimuth from one point to another.
double azimuth(double x1, double y1, double x2, double y2)
{
    return tsConversion_directionToAzimuth(tsMath_direction2d(x1, y1, x2, y2));
}

// The directions of a circle's extremes that an arc is tested for, side by
// side, as they stand. They are not symmetric: a positive arc tests 2 pi
// alone for the rightmost point (listed twice), so a positive arc across
// angle 0 does not reach it.
struct ExtremeAngles {
    std::array<double, 2> maxX, maxY, minX, minY;
};

ExtremeAngles extremeAngles(bool positiveSweep)
{
    if (positiveSweep)
        return {
            {dc_2pi, dc_2pi}, {dc_piover2, 2.5 * dc_pi}, {dc_pi, 3.0 * dc_pi}, {1.5 * dc_pi, 3.5 * dc_pi}};
    return {{0.0, 0.0}, {dc_piover2, -1.5 * dc_pi}, {-dc_pi, dc_pi}, {-dc_piover2, 1.5 * dc_pi}};
}

}  // namespace

/* ---- Points on a circle ---- */

int32_t tsMath_projectPointOnCircle2d(double *x, double *y, double *angle, double px, double py, double cx,
                                      double cy, double radius)
{
    const double a = std::atan2(py - cy, px - cx);
    if (x) *x = cx + radius * std::cos(a);
    if (y) *y = cy + radius * std::sin(a);
    if (angle) *angle = a;
    return 0;
}

// s = a2 - a1, one turn up when a1 > a2; the clockwise sweep is s - 2 pi, so
// equal directions give 0 counter-clockwise but -2 pi clockwise.
int32_t tsMath_calculateSweepAngleTwoPointsFromCenter(double *sweep, double cx, double cy, double x1,
                                                      double y1, double x2, double y2,
                                                      int32_t counterClockwise)
{
    if ((x1 == cx && y1 == cy) || (x2 == cx && y2 == cy)) return kFail;
    const double a1 = std::atan2(y1 - cy, x1 - cx);
    const double a2 = std::atan2(y2 - cy, x2 - cx);
    double s = a2 - a1;
    if (a1 > a2) s += dc_2pi;
    *sweep = counterClockwise ? s : s - dc_2pi;
    return 0;
}

/* ---- Circle through three points ---- */

// v is the clockwise angle at P2 from P1 to P3, the inscribed angle over the
// chord P1 P3, so R = |P1 P3| / (2 sin |v - pi|). The centre lies off the
// chord's azimuth by pi/2 less the inscribed angle, on the side that v says.
// Points in line give v = pi exactly only when the azimuths cancel exactly;
// then the radius is 1e100 and the centre is not written.
int32_t tsMath_computeCurveRadiusFromThreePoints(double x1, double y1, double x2, double y2, double x3,
                                                 double y3, double *cx, double *cy, double *radius)
{
    const double v = tsMath_angleRightBetweenAzimuths(azimuth(x2, y2, x1, y1), azimuth(x2, y2, x3, y3));
    if (v == dc_pi) {
        *radius = kStraightRadius;
        return 0;
    }
    *radius = tsMath_distance2d(x1, y1, x3, y3) / (2.0 * std::sin(std::fabs(v - dc_pi)));
    double toCentre = azimuth(x1, y1, x3, y3);
    if (v > dc_pi)
        toCentre += 1.5 * dc_pi - v;
    else
        toCentre -= v - dc_piover2;
    if (toCentre < 0.0)
        toCentre += dc_2pi;
    else if (toCentre > dc_2pi)
        toCentre -= dc_2pi;
    tsMath_locateByDistanceDirection2d(cx, cy, x1, y1, *radius, tsConversion_azimuthToDirection(toCentre));
    return 0;
}

/* ---- Crossings ---- */

// The line is normalised and anchored at its crossing with the axis it is
// less steep to; the centre's foot F and distance d on it give the half
// chord h = sqrt(r^2 - d^2), and the points F + h T and F - h T along the
// line's unit direction T = (-nb, na). Within the tolerance of tangency the
// one point is F, and the second outputs are not touched.
int32_t tsMath_calculateIntersectionLineCircle2d(double *x1, double *y1, double *x2, double *y2,
                                                 int32_t *count, double a, double b, double c, double cx,
                                                 double cy, double radius, double tolerance)
{
    if (a == 0.0 && b == 0.0) return kFail;
    const double i = 1.0 / std::sqrt(a * a + b * b);
    const double na = a * i;
    const double nb = b * i;
    double ox = 0.0, oy = 0.0;
    if (!(std::fabs(na) > std::fabs(nb))) {
        if (nb == 0.0) return kFail;
        oy = -(c * i) / nb;
    } else {
        ox = -(c * i) / na;
    }
    double fx = 0.0, fy = 0.0, offset = 0.0;
    tsMath_projectOnLineDefinedByPointAndTangent2d(&fx, &fy, nullptr, &offset, cx, cy, ox, oy, -nb, na);
    const double d = std::fabs(offset);
    double h = 0.0;
    if (d - radius > tolerance) {
        *count = 0;
        return 0;
    }
    if (d - radius >= -tolerance) {
        *count = 1;
    } else {
        *count = 2;
        h = std::sqrt(radius * radius - d * d);
    }
    *x1 = fx + h * -nb;
    *y1 = fy + h * na;
    if (*count == 2) {
        *x2 = fx - h * -nb;
        *y2 = fy - h * na;
    }
    return 0;
}

// The crossings lie on the radical line (X - C1) . D = q / 2, D = C2 - C1,
// q = r1^2 - r2^2 + d^2, written as D . X + k + |q| s / 2 = 0 with its sign s
// chosen from h = q / (2 d) and checked against the side of C2; that line is
// then crossed with the first circle. Concentric circles have no radical
// line: equal radii are the same circle (2), others have no crossing.
int32_t tsMath_calculateIntersectionCircleCircle2d(double *x1, double *y1, double *x2, double *y2,
                                                   int32_t *count, double c1x, double c1y, double r1,
                                                   double c2x, double c2y, double r2, double tolerance)
{
    *count = 0;
    const double d = tsMath_distance2d(c1x, c1y, c2x, c2y);
    if (!(d > tolerance)) return tsUtil_equalDouble(r1, r2, tolerance) ? kSameCircle : 0;
    const double q = r1 * r1 - r2 * r2 + d * d;
    const double h = q / (2.0 * d);
    const double dx = c2x - c1x;
    const double dy = c2y - c1y;
    const double k = -dx * c1x - dy * c1y;
    double s = h > 0.0 ? -1.0 : 1.0;
    if (dx * c2x + dy * c2y + k < 0.0) s = -s;
    const double c = k + std::fabs(q) * s / 2.0;
    return tsMath_calculateIntersectionLineCircle2d(x1, y1, x2, y2, count, dx, dy, c, c1x, c1y, r1,
                                                    tolerance);
}

/* ---- Tangents from a point ---- */

// The points of contact lie on the circle about the point whose radius is
// the tangent length sqrt(d^2 - r^2). The first output is the one with the
// centre on the left of the way from it to the point.
int32_t tsMath_lineTangentToCircleByPoint(double *x1, double *y1, double *x2, double *y2, double cx,
                                          double cy, double radius, double px, double py, double tolerance)
{
    *x1 = px;
    *y1 = py;
    *x2 = px;
    *y2 = py;
    const double d = tsMath_distance2d(cx, cy, px, py);
    if (d < radius) return kFail;
    if (d == radius) return 0;
    double tx[2] = {0.0, 0.0}, ty[2] = {0.0, 0.0};
    int32_t count = 0;
    tsMath_calculateIntersectionCircleCircle2d(&tx[0], &ty[0], &tx[1], &ty[1], &count, cx, cy, radius, px, py,
                                               std::sqrt(d * d - radius * radius), tolerance);
    if (count < 2) return kFail;
    const int first = tsMath_sideOfLine2d(tx[0], ty[0], px, py, cx, cy) == -1 ? 0 : 1;
    *x1 = tx[first];
    *y1 = ty[first];
    *x2 = tx[1 - first];
    *y2 = ty[1 - first];
    return 0;
}

/* ---- Box of an arc ---- */

// The box of the two end points, widened to the circle's extreme on a side
// when one of that side's listed directions falls inside the arc's closed
// angular interval (exact test, tolerance 0).
int32_t tsMath_arcGetRange2d(double *minX, double *minY, double *maxX, double *maxY, double cx, double cy,
                             double start, double sweep, double radius)
{
    const auto store = [&](double x0, double y0, double x1, double y1) {
        if (minX) *minX = x0;
        if (minY) *minY = y0;
        if (maxX) *maxX = x1;
        if (maxY) *maxY = y1;
    };
    if (!(radius > 0.0)) {
        store(cx, cy, cx, cy);
        return kFail;
    }
    const double end = start + sweep;
    const double p0x = cx + radius * std::cos(start), p0y = cy + radius * std::sin(start);
    const double p1x = cx + radius * std::cos(end), p1y = cy + radius * std::sin(end);
    double loX = tsMath_doubleMin(p0x, p1x), hiX = tsMath_doubleMax(p0x, p1x);
    double loY = tsMath_doubleMin(p0y, p1y), hiY = tsMath_doubleMax(p0y, p1y);

    const bool positive = sweep > 0.0;
    const double lo = positive ? start : end;
    const double hi = positive ? end : start;
    const auto inside = [&](const std::array<double, 2> &angles) {
        for (const double angle : angles)
            if (tsUtil_belongToClosedIntervalDouble(angle, lo, hi, 0.0)) return true;
        return false;
    };
    const ExtremeAngles e = extremeAngles(positive);
    if (inside(e.maxX)) hiX = cx + radius;
    if (inside(e.maxY)) hiY = cy + radius;
    if (inside(e.minX)) loX = cx - radius;
    if (inside(e.minY)) loY = cy - radius;
    store(loX, loY, hiX, hiY);
    return 0;
}
