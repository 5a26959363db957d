// Angles of the ts layer. A direction is kept in [0, 2 pi) by
// tsMath_normalizeAngle; turns between directions are signed, and azimuths
// (clockwise from north) are compared quadrant by quadrant.
#include <cmath>

#include <tessar/frame.h>
#include <tessar/mathapi.h>

namespace {

// The quadrant of an azimuth, found by adding pi/2 until the value reaches
// 2 pi and counting down from 5: [0, pi/2) is 1 up to [3 pi/2, 2 pi) as 4,
// and 2 pi or more is 5.
// An azimuth so far below 0 that adding pi/2 no longer changes it (or minus
// infinity) would never reach 2 pi: the count stops there.
int azimuthQuadrant(double azimuth)
{
    int quadrant = 5;
    for (double v = azimuth; v < dc_2pi; v += dc_piover2) {
        --quadrant;
        if (v + dc_piover2 == v) break;
    }
    return quadrant;
}

// The gap between two normalised directions, folded into [0, pi].
double foldedGap(double a, double b)
{
    double d = std::fabs(a - b);
    if (d > dc_pi) d = dc_2pi - d;
    return d;
}

}  // namespace

/* ---- Normalising ---- */

// fmod keeps the sign of its argument, so a negative remainder moves up one
// turn. -0.0 is not below 0 and stays -0.0.
double tsMath_normalizeAngle(double a)
{
    double r = std::fmod(a, dc_2pi);
    if (r < 0.0) r += dc_2pi;
    return r;
}

double tsMath_normalizeAngleDegree(double degrees)
{
    return tsMath_normalizeAngle(degrees * dc_pi / 180.0) / dc_pi * 180.0;
}

/* ---- Directions ---- */

double tsMath_atan2(double y, double x)
{
    return std::atan2(y, x);
}

double tsMath_direction2d(double x1, double y1, double x2, double y2)
{
    return tsMath_normalizeAngle(std::atan2(y2 - y1, x2 - x1));
}

// The turn from a to b in (-pi, pi]: counter-clockwise positive.
double tsMath_angleBetweenDirections(double a, double b)
{
    double turn = tsMath_normalizeAngle(b - a);
    if (turn > dc_pi) turn -= dc_2pi;
    return turn;
}

// The clockwise angle from azimuth a to azimuth b. Within one quadrant a b
// behind a goes the long way round; across quadrants the quadrant numbers
// decide whether b lies ahead or one turn on.
double tsMath_angleRightBetweenAzimuths(double a, double b)
{
    const int qa = azimuthQuadrant(a);
    const int qb = azimuthQuadrant(b);
    if (qa == qb) return b >= a ? b - a : b + dc_2pi - a;
    if (qb > qa) return b - a;
    return dc_2pi - (a - b);
}

// Wrap at 0: when a lies near 0 the gap is measured as b below 2 pi reaching
// a; when b does, as a below 2 pi reaching b. The first of the two tests
// decides, so a near 0 with b well above 0 is measured one way only.
int32_t tsMath_anglesNearEqual(double a, double b, double tolerance)
{
    a = tsMath_normalizeAngle(a);
    b = tsMath_normalizeAngle(b);
    double d = std::fabs(a - b);
    if (d < tolerance) return 1;
    if (tsMath_doublesNearEqual(a, 0.0, tolerance))
        d = dc_2pi - b + a;
    else if (tsMath_doublesNearEqual(b, 0.0, tolerance))
        d = dc_2pi - a + b;
    return d < tolerance ? 1 : 0;
}

// Parallel in the same sense (gap d) or the opposite sense (gap e from b
// turned by pi). The stored gap is the smaller one, but only e decides once
// the same-sense test has failed.
int32_t tsMath_directionsNearParallel(double *difference, double a, double b, double tolerance)
{
    a = tsMath_normalizeAngle(a);
    b = tsMath_normalizeAngle(b);
    double d = foldedGap(a, b);
    if (d < tolerance) {
        if (difference) *difference = d;
        return 1;
    }
    const double e = foldedGap(a, tsMath_normalizeAngle(b + dc_pi));
    d = tsMath_doubleMin(d, e);
    if (difference) *difference = d;
    return e < tolerance ? 1 : 0;
}

/* ---- Sweeps ---- */

// The counter-clockwise angle from the first vector to the second, from the
// sine (cross product of the unit vectors) and the sign of the cosine. A
// vector that cannot be normalised gives its status, 32768.0.
double tsMath_getSweepAngleBetweenVectors2d(double x1, double y1, double x2, double y2)
{
    if (const int32_t status = tsMath_normalizeVector2d(&x1, &y1); status != 0)
        return static_cast<double>(status);
    if (const int32_t status = tsMath_normalizeVector2d(&x2, &y2); status != 0)
        return static_cast<double>(status);
    double sine = tsMath_crossProduct2d(x1, y1, x2, y2);
    if (sine > 1.0) sine = 1.0;
    if (sine < -1.0) sine = -1.0;
    const double a =
        tsMath_scalarProduct2d(x1, y1, x2, y2) >= 0.0 ? std::asin(sine) : dc_pi - std::asin(sine);
    return tsMath_normalizeAngle(a);
}
