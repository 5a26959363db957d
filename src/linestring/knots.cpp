// Knots, the crossings of a string with itself: found, inserted as vertices,
// or used to cut the loops away; and the removal of repeated points that
// comes before.
#include <cmath>
#include <new>

#include <tessar/frame.h>
#include <tessar/linestring.h>
#include <tessar/mathapi.h>
#include <tessar/memory.h>

#include "linestring/linestring.hpp"

namespace {

using tessar::detail::clearIntersectionOutput;

constexpr int32_t kFail = TESSAR_FAILURE;

// A point repeats the last kept one when |dx|, |dy| and the plan distance
// all stay within tol; z is not looked at.
bool repeats(const dpoint3d &kept, const dpoint3d &p, double tol)
{
    return std::fabs(p.x - kept.x) <= tol && std::fabs(p.y - kept.y) <= tol &&
           tsMath_distance2d(kept.x, kept.y, p.x, p.y) <= tol;
}

}  // namespace

int32_t tsLineString_removeDuplicatesPointArray(dpoint3d *points, int32_t *n, double tol)
{
    if (tol < 0.0) tol = 0.0;
    if (!points || !n) return kFail;
    // An empty or negative count comes back as 1, as for a single point.
    if (*n <= 1) {
        *n = 1;
        return 0;
    }
    int32_t kept = 1;
    for (int32_t i = 1; i < *n; ++i)
        if (!repeats(points[kept - 1], points[i], tol)) points[kept++] = points[i];
    *n = kept;
    return 0;
}

int32_t tsLineString_detectKnotsPointArray(const dpoint3d *points, int32_t n, tsStringIntersection **knots,
                                           int32_t *count)
{
    if (!clearIntersectionOutput(knots, count)) return kFail;
    if (n <= 2) return 0;
    // Detection only reads the points.
    tsLineString string{const_cast<dpoint3d *>(points), n};
    tsLineString *const strings[] = {&string};
    return tsLineString_detectStringIntersections(strings, 1, knots, count);
}

int32_t tsLineString_insertKnots(dpoint3d *points, int32_t n, tsStringIntersection **knots, int32_t *count)
{
    if (!clearIntersectionOutput(knots, count)) return kFail;
    if (n <= 2) return 0;
    tsLineString string{points, n};
    tsLineString *const strings[] = {&string};
    const int32_t status = tsLineString_insertStringIntersections(strings, 1, knots, count);
    // When knots were inserted, the caller's array has been released and the
    // enlarged one has taken its place here. The array came in by value, so
    // the enlarged one cannot reach the caller: it is released too rather
    // than lost.
    if (string.points != points) tsMem_free(string.points);
    return status;
}

int32_t tsLineString_removeKnots(dpoint3d **points, int32_t *n, tsStringIntersection **knots, int32_t *count)
{
    if (!clearIntersectionOutput(knots, count)) return kFail;
    if (!points || !*points || !n) return kFail;
    if (*n < 3) return 0;

    tsLineString_removeDuplicatesPointArray(*points, n, 0.0);
    tsLineString string{*points, *n};
    tsLineString *const strings[] = {&string};
    if (tsLineString_insertStringIntersections(strings, 1, knots, count) != 0) return kFail;
    *points = string.points;
    *n = string.count;
    if (*count == 0) return 0;

    try {
        *n = tessar::detail::cutKnotLoops({*points, static_cast<size_t>(*n)},
                                          {*knots, static_cast<size_t>(*count)});
    } catch (const std::bad_alloc &) {
        clearIntersectionOutput(knots, count);
        return kFail;
    }
    return 0;
}
