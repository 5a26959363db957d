// Points placed by distance and direction, plane line equations, projections
// on lines, crossings and overlaps of segments, and unit vectors. A line
// a x + b y + c = 0 built from a direction (dx, dy) has the normal
// (a, b) = (dy, -dx) on the right of the direction of travel, so the power
// a x + b y + c of a point is its offset, positive on the right, whenever
// the direction is a unit vector.
#include <algorithm>
#include <cmath>

#include <tessar/frame.h>
#include <tessar/mathapi.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// Both outputs null is a bad argument; a single null output is skipped.
int32_t storePoint(double *x, double *y, double px, double py)
{
    if (!x && !y) return kFail;
    if (x) *x = px;
    if (y) *y = py;
    return 0;
}

}  // namespace

/* ---- Point location ---- */

int32_t tsMath_locateByDistanceDirection2d(double *x, double *y, double ox, double oy, double distance,
                                           double direction)
{
    return storePoint(x, y, ox + distance * std::cos(direction), oy + distance * std::sin(direction));
}

int32_t tsMath_locateByDistanceTangent2d(double *x, double *y, double ox, double oy, double distance,
                                         double tx, double ty)
{
    return storePoint(x, y, ox + distance * tx, oy + distance * ty);
}

// Counter-clockwise rotation about the origin, then the translation.
int32_t tsMath_locateByTranslationRotation2d(double *x, double *y, double px, double py, double tx, double ty,
                                             double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return storePoint(x, y, px * c - py * s + tx, px * s + py * c + ty);
}

/* ---- Line equations ---- */

int32_t tsMath_calculateLineEquationFromOriginAndDirection2d(double *a, double *b, double *c, double ox,
                                                             double oy, double dx, double dy)
{
    if (dx == 0.0 && dy == 0.0) return kFail;
    *a = dy;
    *b = -dx;
    *c = -*a * ox - *b * oy;
    return 0;
}

int32_t tsMath_calculerDistancePtLineEquation2d(double *distance, double a, double b, double c, double x,
                                                double y)
{
    const double norm = std::sqrt(a * a + b * b);
    if (norm == 0.0) return kFail;
    *distance = (a * x + b * y + c) / norm;
    return 0;
}

/* ---- Projections ---- */

// t = (P - O) . T and the foot O + t T; the offset is the power of P in the
// line equation of O and T, a length when T is a unit vector.
int32_t tsMath_projectOnLineDefinedByPointAndTangent2d(double *x, double *y, double *position, double *offset,
                                                       double px, double py, double ox, double oy, double tx,
                                                       double ty)
{
    double a = 0.0, b = 0.0, c = 0.0;
    if (tsMath_calculateLineEquationFromOriginAndDirection2d(&a, &b, &c, ox, oy, tx, ty) != 0) return kFail;
    const double t = tsMath_scalarProduct2d(px - ox, py - oy, tx, ty);
    if (x) *x = ox + t * tx;
    if (y) *y = oy + t * ty;
    if (position) *position = t;
    if (offset) *offset = a * px + b * py + c;
    return 0;
}

// The line 1 to 2 with its unit direction; a line too short to divide by is
// one of no length.
int32_t tsMath_projectOnLine2d(double *x, double *y, double *offset, double px, double py, double x1,
                               double y1, double x2, double y2)
{
    double tx = x2 - x1, ty = y2 - y1;
    if (tsMath_normalizeVector2d(&tx, &ty) != 0) return kFail;
    return tsMath_projectOnLineDefinedByPointAndTangent2d(x, y, nullptr, offset, px, py, x1, y1, tx, ty);
}

// The offset is cleared before anything can fail.
int32_t tsMath_offsetToLine2d(double *offset, double px, double py, double x1, double y1, double x2,
                              double y2)
{
    if (!offset) return kFail;
    *offset = 0.0;
    return tsMath_projectOnLine2d(nullptr, nullptr, offset, px, py, x1, y1, x2, y2);
}

// The parallel to P-Q at the offset (P and Q moved along the right normal
// of P-Q) crossed with the line 1 to 2.
int32_t tsMath_projectOnLineByOffsetToLine2d(double *x, double *y, double px, double py, double qx, double qy,
                                             double x1, double y1, double x2, double y2, double offset)
{
    double ux = qx - px, uy = qy - py;
    if (tsMath_normalizeVector2d(&ux, &uy) != 0) return kFail;
    const double nx = uy * offset;
    const double ny = -ux * offset;
    double cx = 0.0, cy = 0.0;
    if (tsMath_intersectLineWithLine2d(&cx, &cy, x1, y1, x2, y2, px + nx, py + ny, qx + nx, qy + ny) != 0)
        return kFail;
    if (x) *x = cx;
    if (y) *y = cy;
    return 0;
}

/* ---- Crossings and overlaps ---- */

// P = P1 + t (P2 - P1) with t = ((P3 - P1) x D2) / (D1 x D2). Parallel lines
// fail the division guard and give 1, not the usual 32768.
int32_t tsMath_intersectLineWithLine2d(double *x, double *y, double x1, double y1, double x2, double y2,
                                       double x3, double y3, double x4, double y4)
{
    const double d1x = x2 - x1, d1y = y2 - y1;
    const double d2x = x4 - x3, d2y = y4 - y3;
    const double denominator = tsMath_crossProduct2d(d1x, d1y, d2x, d2y);
    const double numerator = tsMath_crossProduct2d(x3 - x1, y3 - y1, d2x, d2y);
    if (!tsMath_isDivisionPossible(numerator, denominator)) return 1;
    const double t = numerator / denominator;
    if (x) *x = x1 + t * d1x;
    if (y) *y = y1 + t * d1y;
    return 0;
}

// Collinearity is tested on unnormalised cross products, so the tolerance
// scales with the lengths. Only the ends of CD are placed on AB: a CD that
// covers AB entirely does not overlap it here, and the arguments do not
// commute.
int32_t tsMath_overlapLineSegments(double x1, double y1, double x2, double y2, double x3, double y3,
                                   double x4, double y4, double tolerance)
{
    const double abx = x2 - x1, aby = y2 - y1;
    const double cdx = x4 - x3, cdy = y4 - y3;
    if (std::fabs(tsMath_crossProduct2d(abx, aby, cdx, cdy)) > tolerance) return 0;
    if (std::fabs(tsMath_crossProduct2d(cdx, cdy, x1 - x3, y1 - y3)) > tolerance) return 0;
    const double length2 = abx * abx + aby * aby;
    const auto endOnAB = [&](double ex, double ey) {
        const double t = tsMath_scalarProduct2d(ex - x1, ey - y1, abx, aby) / length2;
        return t >= tolerance && t <= 1.0 - tolerance;
    };
    return endOnAB(x3, y3) || endOnAB(x4, y4) ? 1 : 0;
}

/* ---- Unit vectors ---- */

// The guard: the length must exceed the largest component times 1e-100.
int32_t tsMath_normalizeVector2d(double *x, double *y)
{
    if (!x || !y) return kFail;
    const double length = std::sqrt(*x * *x + *y * *y);
    if (!tsMath_isDivisionPossible(std::max(std::fabs(*x), std::fabs(*y)), length)) return kFail;
    *x /= length;
    *y /= length;
    return 0;
}

int32_t tsMath_normalizeVector3d(double *x, double *y, double *z)
{
    if (!x || !y || !z) return kFail;
    const double length = std::sqrt(*x * *x + *y * *y + *z * *z);
    if (!tsMath_isDivisionPossible(std::max({std::fabs(*x), std::fabs(*y), std::fabs(*z)}), length))
        return kFail;
    *x /= length;
    *y /= length;
    *z /= length;
    return 0;
}
