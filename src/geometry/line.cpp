// Bounded lines (tsLine): built from two points, from a point and a vector,
// or from a point, a direction and two distances along it; and read back as
// plane length, plane direction, end points and points at a position.
#include <algorithm>
#include <cmath>

#include <tessar/frame.h>
#include <tessar/mathapi.h>
#include <tessar/point.h>

#include "geometry/point.hpp"

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// The complete record of a line of no length from origin.
void setDegenerate(tsLine &line, const dpoint3d &origin)
{
    line.origin = origin;
    line.direction = {1.0, 0.0, 0.0};
    line.length = 0.0;
}

}  // namespace

/* ---- Building lines ---- */

// A missing elevation at either end makes the line level. The division test
// takes the largest of dx, dy, dz (signed, as it stands) over L; it only
// fails for L of 0. A degenerate record is still written in full.
int32_t tsLine_createBy2points(tsLine *line, const dpoint3d *p, const dpoint3d *q)
{
    using tessar::detail::kNoElevation;
    if (!line || !p || !q) return kFail;
    const double dx = q->x - p->x;
    const double dy = q->y - p->y;
    const double dz = (p->z == kNoElevation || q->z == kNoElevation) ? 0.0 : q->z - p->z;
    const double length = std::sqrt(dx * dx + dy * dy + dz * dz);
    if (!tsMath_isDivisionPossible(std::max({dx, dy, dz}), length)) {
        setDegenerate(*line, *p);
        return kFail;
    }
    line->origin = *p;
    line->direction = {dx / length, dy / length, dz / length};
    line->length = length;
    return 0;
}

// A vector too short to divide by still gives a usable record, and no failure.
int32_t tsLine_createByStartPointAndDirectionVector(tsLine *line, const dpoint3d *point,
                                                    const dpoint3d *vector)
{
    if (!line || !point || !vector) return kFail;
    dpoint3d unit = *vector;
    if (tsMath_normalizeVector3d(&unit.x, &unit.y, &unit.z) != 0) {
        setDegenerate(*line, *point);
        return 0;
    }
    line->origin = *point;
    line->direction = unit;
    line->length = std::sqrt(vector->x * vector->x + vector->y * vector->y + vector->z * vector->z);
    return 0;
}

// With start beyond end the line runs back, direction + pi; the origin is
// then taken start along that reversed direction from point, as it stands.
int32_t tsLine_createByPointDirectionParameter2d(tsLine *line, const dpoint3d *point, double direction,
                                                 double start, double end)
{
    if (!line || !point) return kFail;
    const double a = start > end ? direction + dc_pi : direction;
    const double c = std::cos(a);
    const double s = std::sin(a);
    line->origin = {point->x + start * c, point->y + start * s, point->z};
    line->direction = {c, s, 0.0};
    line->length = std::fabs(end - start);
    return 0;
}

/* ---- Reading lines ---- */

double tsLine_distance2d(const tsLine *line)
{
    if (!line) return static_cast<double>(kFail);
    const dpoint3d end = tessar::detail::lineEnd(*line);
    return tsMath_distance2d(line->origin.x, line->origin.y, end.x, end.y);
}

double tsLine_direction2d(const tsLine *line)
{
    if (!line) return static_cast<double>(kFail);
    return tsMath_direction2d(0.0, 0.0, line->direction.x, line->direction.y);
}

int32_t tsLine_getEndPoints(const tsLine *line, dpoint3d *start, dpoint3d *end)
{
    if (!line) return kFail;
    if (start) *start = line->origin;
    if (end) *end = tessar::detail::lineEnd(*line);
    return 0;
}

int32_t tsLine_getPointAtPosition(const tsLine *line, dpoint3d *out, double position)
{
    if (!out) return kFail;
    const double along = position * line->length;
    out->x = line->origin.x + along * line->direction.x;
    out->y = line->origin.y + along * line->direction.y;
    return 0;
}

// A direction within the tolerance of 2 pi is the direction 0, so that lines
// either side of east compare as one.
int32_t tsLine_areSameDirection(const tsLine *a, const tsLine *b, double tolerance)
{
    if (!a || !b) return 0;
    const auto folded = [tolerance](double d) {
        return tsMath_doublesNearEqual(d, dc_2pi, tolerance) ? 0.0 : d;
    };
    return tsMath_doublesNearEqual(folded(tsLine_direction2d(a)), folded(tsLine_direction2d(b)), tolerance);
}
