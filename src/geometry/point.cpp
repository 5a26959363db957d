// Point records: setting and copying, exact and tolerant comparisons, the
// disconnect marker, the odd range test, and plane distances and directions.
// Plane functions read x and y and say what they do with z.
#include <cfloat>
#include <cmath>
#include <utility>

#include <tessar/frame.h>
#include <tessar/mathapi.h>
#include <tessar/point.h>

#include "geometry/point.hpp"

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// Within kDisconnectBand of the largest double, either sign.
bool isDisconnectCoordinate(double c)
{
    using tessar::detail::kDisconnectBand;
    return tsMath_doublesNearEqual(c, DBL_MAX, kDisconnectBand) ||
           tsMath_doublesNearEqual(c, -DBL_MAX, kDisconnectBand);
}

// How far v lies outside [low, high]: 0 inside or on an end.
double outside(double v, double low, double high)
{
    if (v < low) return low - v;
    if (v > high) return v - high;
    return 0.0;
}

}  // namespace

/* ---- Setting and copying ---- */

int32_t tsPoint_copy(dpoint3d *destination, const dpoint3d *source)
{
    if (!destination || !source) return kFail;
    *destination = *source;
    return 0;
}

int32_t tsPoint_setValue(dpoint3d *point, double x, double y, double z)
{
    if (!point) return kFail;
    *point = {x, y, z};
    return 0;
}

int32_t tsPoint_clear(dpoint3d *point)
{
    return tsPoint_setValue(point, 0.0, 0.0, 0.0);
}

int32_t tsPoint_swap(dpoint3d *a, dpoint3d *b)
{
    if (!a || !b) return kFail;
    std::swap(*a, *b);
    return 0;
}

void tsPoint_setZvalue(int32_t n, dpoint3d *array, double z)
{
    for (int32_t i = 0; i < n; ++i)
        array[i].z = z;
}

void tsPoint_initialize2d(dpoint3d *point)
{
    if (!point) return;
    *point = {0.0, 0.0, tessar::detail::kNoElevation};
}

/* ---- Comparisons ---- */

int32_t tsPoint_equal2d(const dpoint3d *a, const dpoint3d *b)
{
    return a->x == b->x && a->y == b->y ? 1 : 0;
}

int32_t tsPoint_equal3d(const dpoint3d *a, const dpoint3d *b)
{
    return a->x == b->x && a->y == b->y && a->z == b->z ? 1 : 0;
}

int32_t tsPoint_nearEqual2d(const dpoint3d *a, const dpoint3d *b, double tolerance)
{
    if (!a || !b) return 0;
    return tsMath_distance2d(a->x, a->y, b->x, b->y) > tolerance ? 0 : 1;
}

int32_t tsPoint_nearEqual3d(const dpoint3d *a, const dpoint3d *b, double tolerance)
{
    if (!a || !b) return 0;
    return tsMath_distance3d(a->x, a->y, a->z, b->x, b->y, b->z) > tolerance ? 0 : 1;
}

int32_t tsPoint_isDisconnect(const dpoint3d *point)
{
    if (!point) return 0;
    return isDisconnectCoordinate(point->x) || isDisconnectCoordinate(point->y) ||
                   isDisconnectCoordinate(point->z)
               ? 1
               : 0;
}

// y is held between low.y and low.y: the high corner's y is never read, so
// only a y exactly on low.y is in range. Callers rely on this as it stands.
int32_t tsPoint_isInRange2d(const dpoint3d *point, const dpoint3d *low, const dpoint3d *high)
{
    if (!point || !low || !high) return kFail;
    if (point->x < low->x || point->x > high->x) return 0;
    if (point->y < low->y || point->y > low->y) return 0;
    return 1;
}

/* ---- Distances and directions ---- */

double tsPoint_distance2d(const dpoint3d *a, const dpoint3d *b)
{
    if (!a || !b) return 0.0;
    return tsMath_distance2d(a->x, a->y, b->x, b->y);
}

double tsPoint_distance3d(const dpoint3d *a, const dpoint3d *b)
{
    if (!a || !b) return 0.0;
    return tsMath_distance3d(a->x, a->y, a->z, b->x, b->y, b->z);
}

double tsPoint_direction2d(const dpoint3d *a, const dpoint3d *b)
{
    return tsMath_direction2d(a->x, a->y, b->x, b->y);
}

int32_t tsPoint_distanceDirection2d(double *distance, double *direction, const dpoint3d *a, const dpoint3d *b)
{
    if (!a || !b) {
        if (distance) *distance = 0.0;
        if (direction) *direction = 0.0;
        return kFail;
    }
    if (distance) *distance = tsMath_distance2d(a->x, a->y, b->x, b->y);
    if (direction) *direction = tsMath_direction2d(a->x, a->y, b->x, b->y);
    return 0;
}

// A vector too short to divide by keeps its raw components.
double tsPoint_getDirectionVector2d(const dpoint3d *from, dpoint3d *out, const dpoint3d *to)
{
    if (!from || !out || !to) return static_cast<double>(kFail);
    *out = {to->x - from->x, to->y - from->y, 0.0};
    tsMath_normalizeVector2d(&out->x, &out->y);
    return 0.0;
}

// The gaps outside the rectangle along each axis: one of them alone is the
// distance to a side, both together the distance to a corner.
double tsPoint_getDistanceToRectangle2d(const dpoint3d *point, const dpoint3d *low, const dpoint3d *high)
{
    if (!point || !low || !high) return 0.0;
    const double dx = outside(point->x, low->x, high->x);
    const double dy = outside(point->y, low->y, high->y);
    if (dx == 0.0) return dy;
    if (dy == 0.0) return dx;
    return std::sqrt(dx * dx + dy * dy);
}
