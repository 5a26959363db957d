// The parallel copy of a string by offset vertices: the input is rounded and
// cleaned of repeated points, refused if it crosses itself, offset vertex by
// vertex, and the loops that the inner corners made are cut away as knots.
// The result is the one array of the library that comes from the C
// library's allocator and goes back to the caller's free.
#include <cmath>
#include <cstdlib>

#include <tessar/frame.h>
#include <tessar/linestring.h>
#include <tessar/memory.h>

#include "linestring/parallel.hpp"

namespace tessar::detail {

int32_t tsLineString_normalizeCoordinates(dpoint3d *points, int32_t n) noexcept
{
    if (!points || n < 0) return TESSAR_FAILURE;
    if (n == 0) return 0;
    double largest = 0.0;
    for (int32_t i = 0; i < n; ++i)
        largest = std::fmax(largest, std::fmax(std::fabs(points[i].x),
                                               std::fmax(std::fabs(points[i].y), std::fabs(points[i].z))));
    const double inverse = 1.0 / largest;
    for (int32_t i = 0; i < n; ++i) {
        points[i].x = (points[i].x * inverse) * largest;
        points[i].y = (points[i].y * inverse) * largest;
        points[i].z = (points[i].z * inverse) * largest;
    }
    return 0;
}

}  // namespace tessar::detail

namespace {

using tessar::detail::tsLineString_normalizeCoordinates;

constexpr int32_t kFail = TESSAR_FAILURE;

// The steps after the old result is released; the caller's failure exit
// clears the result and releases the knot list.
int32_t copyParallel(dpoint3d *points, int32_t n, double distance, int32_t joinType, double arcStep,
                     dpoint3d **result, int32_t *count, tsStringIntersection **knots, int32_t *knotCount)
{
    // A zero distance copies the string, whose coordinates are then not
    // rounded on the way in.
    if (distance != 0.0) tsLineString_normalizeCoordinates(points, n);
    int32_t kept = n;
    if (tsLineString_removeDuplicatesPointArray(points, &kept, 0.0) != 0 || kept < 2) return kFail;

    // A string with knots has no parallel copy here.
    if (tsLineString_detectKnotsPointArray(points, kept, knots, knotCount) != 0 || *knotCount > 0)
        return kFail;

    if (tessar::detail::offsetVertices(points, kept, distance, joinType, arcStep, result, count) != 0)
        return kFail;

    // The inner corners' loops. The knot removal may replace the array with
    // one from tsMem_*, which is the C library's heap, so the result stays
    // for the caller's free.
    if (tsLineString_removeKnots(result, count, knots, knotCount) != 0) return kFail;

    // The final rounding runs whatever the distance, so that the points of
    // two paths that met compare equal and the repeats drop out.
    if (tsLineString_normalizeCoordinates(*result, *count) != 0) return kFail;
    return tsLineString_removeDuplicatesPointArray(*result, count, 0.0);
}

}  // namespace

int32_t tsLineString_copyParallel2d(dpoint3d *points, int32_t n, double distance, int32_t joinType,
                                    double arcStep, dpoint3d **result, int32_t *count)
{
    tsStringIntersection *knots = nullptr;
    int32_t knotCount = 0;
    if (points && n >= 2) {
        std::free(*result);
        *result = nullptr;
        *count = 0;
        if (copyParallel(points, n, distance, joinType, arcStep, result, count, &knots, &knotCount) == 0) {
            tsMem_free(knots);
            return 0;
        }
    }
    *count = 0;
    std::free(*result);
    *result = nullptr;
    tsMem_free(knots);
    return kFail;
}
