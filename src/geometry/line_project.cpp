// Points projected on bounded lines and crossings of two lines, in the
// plane. Positions on a line are fractions of its length, found from plane
// distances to the line's two ends.
#include <cmath>

#include <tessar/frame.h>
#include <tessar/mathapi.h>
#include <tessar/point.h>

#include "geometry/point.hpp"

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// How far along its direction the second point of an extended line lies.
constexpr double kExtension = 10000.0;

// The position of X on the line by distances alone (X is taken to be on
// the line, which is not tested): d0 from the origin over the plane length,
// negative when X is nearer the origin than the end and further from the
// end than the whole line, i.e. behind the origin.
int32_t positionOfPoint(const tsLine *line, const dpoint3d *x, double *position)
{
    if (!line || !x || !position) return kFail;
    const dpoint3d end = tessar::detail::lineEnd(*line);
    const double d0 = tsMath_distance2d(line->origin.x, line->origin.y, x->x, x->y);
    const double d1 = tsMath_distance2d(end.x, end.y, x->x, x->y);
    const double planeLength = tsLine_distance2d(line);
    *position = (d0 < d1 && d1 > planeLength) ? -d0 / planeLength : d0 / planeLength;
    return 0;
}

}  // namespace

/* ---- Projections ---- */

// A line that climbs has a plane direction shorter than 1: it is made a unit
// vector so that the projection length is a plane length, and the position
// divides by the plane length. A level line divides by its own length.
int32_t tsLine_projectPoint2d(const tsLine *line, dpoint3d *foot, double *offset, double *position,
                              const dpoint3d *point)
{
    if (!line || !point) return kFail;
    const bool climbs = line->direction.z != 0.0;
    double ux = line->direction.x, uy = line->direction.y;
    if (climbs && tsMath_normalizeVector2d(&ux, &uy) != 0) return kFail;

    double fx = 0.0, fy = 0.0, along = 0.0, side = 0.0;
    if (tsMath_projectOnLineDefinedByPointAndTangent2d(&fx, &fy, &along, &side, point->x, point->y,
                                                       line->origin.x, line->origin.y, ux, uy) != 0)
        return kFail;
    if (foot) *foot = {fx, fy, point->z};
    if (offset) *offset = side;
    if (position) *position = along / (climbs ? tsLine_distance2d(line) : line->length);
    return 0;
}

// The status of the projection is not looked at: a line with no plane
// direction leaves the foot at (0, 0) and the offset at 0.0.
int32_t tsLine_projectPointOnLine2d(dpoint3d *foot, double *offset, double *position, const dpoint3d *point,
                                    const tsLine *line)
{
    const double x2 = line->origin.x + kExtension * line->direction.x;
    const double y2 = line->origin.y + kExtension * line->direction.y;
    dpoint3d onLine = {0.0, 0.0, 0.0};
    double side = 0.0;
    tsMath_projectOnLine2d(&onLine.x, &onLine.y, &side, point->x, point->y, line->origin.x, line->origin.y,
                           x2, y2);
    if (foot) {
        foot->x = onLine.x;
        foot->y = onLine.y;
    }
    if (offset) *offset = side;
    if (position) positionOfPoint(line, &onLine, position);
    return 0;
}

/* ---- Crossings ---- */

int32_t tsLine_intersectLineWithLine2d(dpoint3d *point, double *positionA, double *positionB, const tsLine *a,
                                       const tsLine *b)
{
    if (!a || !b) return kFail;
    const dpoint3d endA = tessar::detail::lineEnd(*a);
    const dpoint3d endB = tessar::detail::lineEnd(*b);
    dpoint3d crossing = {0.0, 0.0, 0.0};
    // The plane routine reports parallel lines as 1; here they are a failure.
    if (tsMath_intersectLineWithLine2d(&crossing.x, &crossing.y, a->origin.x, a->origin.y, endA.x, endA.y,
                                       b->origin.x, b->origin.y, endB.x, endB.y) != 0)
        return kFail;
    if (point) {
        point->x = crossing.x;
        point->y = crossing.y;
    }
    if (positionA) positionOfPoint(a, &crossing, positionA);
    if (positionB) positionOfPoint(b, &crossing, positionB);
    return 0;
}

int32_t tsLine_intersectWithLine2d(const tsLine *a, dpoint3d *point, double *positionA, double *positionB,
                                   const tsLine *b)
{
    return tsLine_intersectLineWithLine2d(point, positionA, positionB, a, b);
}
