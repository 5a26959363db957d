// Polygon measures over point arrays: the signed area and the direction of a
// closed ring (no closing edge added), the perimeter, area and centroid of a
// ring (closing edge added), and closing a ring. A clockwise ring has a
// positive signed area here.
#include <cmath>
#include <cstddef>

#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/point.h>
#include <tessar/pointarray.h>

#include "linestring/pointarray.hpp"

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// Below this magnitude of the trapezoid sum a ring encloses nothing, and its
// centroid is not taken.
constexpr double kLeastArea = 1e-10;

constexpr double kSixth = 1.0 / 6.0;
constexpr double kMinusSixth = -1.0 / 6.0;

double lowestY(const dpoint3d *array, int32_t n)
{
    double low = array[0].y;
    for (int32_t i = 1; i < n; ++i)
        if (array[i].y < low) low = array[i].y;
    return low;
}

// Sums of one ring: the trapezoids S = sum of (y0 + y1 - m) dx / 2 above the
// lowest y m, the first moments Mx = -sum of (x0^2 + x0 x1 + x1^2) dy / 6
// and My = sum of (y0^2 + y0 y1 + y1^2) dx / 6, which are the area and the
// moments of a clockwise ring; and the perimeter when it is wanted.
struct RingSums {
    double perimeter = 0.0;
    double area = 0.0;
    double momentX = 0.0;
    double momentY = 0.0;
};

RingSums ringSums(const dpoint3d *array, int32_t n, bool withPerimeter)
{
    RingSums sums;
    if (n < 1) return sums;
    // One m for all edges: on a closed ring its terms cancel, so it only
    // keeps the trapezoids small.
    const double m = lowestY(array, n);
    for (int32_t i = 0; i < n; ++i) {
        const dpoint3d &a = array[i];
        const dpoint3d &b = array[i + 1 < n ? i + 1 : 0];
        const double dx = b.x - a.x;
        const double dy = b.y - a.y;
        if (withPerimeter) sums.perimeter += std::sqrt(dx * dx + dy * dy);
        sums.area += (a.y + b.y - m) * dx * 0.5;
        sums.momentX += ((a.x + b.x) * a.x + b.x * b.x) * dy * kMinusSixth;
        sums.momentY += (a.y * a.y + (a.y + b.y) * b.y) * dx * kSixth;
    }
    return sums;
}

}  // namespace

namespace tessar::detail {

void tsPointArray_computePolygonProperties(double *perimeter, double *area, dpoint3d *centroid,
                                           const dpoint3d *array, int32_t n)
{
    const RingSums sums = ringSums(array, n, perimeter != nullptr);
    const bool encloses = std::fabs(sums.area) >= kLeastArea;
    if (centroid)
        *centroid = encloses ? dpoint3d{sums.momentX / sums.area, sums.momentY / sums.area, 0.0}
                             : dpoint3d{0.0, 0.0, 0.0};
    if (area) *area = encloses ? std::fabs(sums.area) : 0.0;
    if (perimeter) *perimeter = sums.perimeter;
}

}  // namespace tessar::detail

/* ---- Polygon measures ---- */

// 0.5 times the sum of x[i + 1] y[i] - x[i] y[i + 1]: the usual shoelace sum
// negated, so a clockwise ring is positive, and with no closing term.
int32_t tsPointArray_computeSimplePolygonAlgebricArea2d(const dpoint3d *array, int32_t n, double *area)
{
    if (!array || !area) return kFail;
    double sum = 0.0;
    for (int32_t i = 0; i + 1 < n; ++i)
        sum += array[i + 1].x * array[i].y - array[i].x * array[i + 1].y;
    *area = sum * 0.5;
    return 0;
}

// The status of the signed area is not looked at: the caller must pass valid
// arguments, and a null array leaves the magnitude of 0.0.
int32_t tsPointArray_computeSimplePolygonArea2d(const dpoint3d *array, int32_t n, double *area)
{
    double signedArea = 0.0;
    tsPointArray_computeSimplePolygonAlgebricArea2d(array, n, &signedArea);
    *area = std::fabs(signedArea);
    return 0;
}

int32_t tsPointArray_getCentroid(const dpoint3d *array, int32_t n, dpoint3d *centroid)
{
    tessar::detail::tsPointArray_computePolygonProperties(nullptr, nullptr, centroid, array, n);
    return 0;
}

// The trapezoid rule over the edges between consecutive points: the sum of
// the mean height times the run is positive for a clockwise ring, and a sum
// of exactly 0.0 (a degenerate ring) also reports 1.
int32_t tsPointArray_getPolygonDirection(const dpoint3d *array, int32_t n, int32_t *direction)
{
    double sum = 0.0;
    for (int32_t i = 1; i < n; ++i)
        sum += (array[i - 1].y + 0.5 * (array[i].y - array[i - 1].y)) * (array[i].x - array[i - 1].x);
    *direction = sum >= 0.0 ? 1 : 0;
    return 0;
}

/* ---- Closing ---- */

int32_t tsPointArray_isClosed(const dpoint3d *array, int32_t n, double tolerance)
{
    if (!array) return 0;
    return tsPoint_nearEqual2d(&array[0], &array[n - 1], tolerance);
}

// A ring closed within tolerance gets an exact copy of its first point as
// its last; any other grows by one point. A failed growth changes nothing.
int32_t tsPointArray_closePolygon(dpoint3d **array, int32_t *n, double tolerance)
{
    if (!array || !n) return kFail;
    if (tsPointArray_isClosed(*array, *n, tolerance)) {
        (*array)[*n - 1] = (*array)[0];
        return 0;
    }
    const size_t grown = static_cast<size_t>(*n) + 1;
    auto *points = static_cast<dpoint3d *>(tsMem_realloc(*array, grown * sizeof(dpoint3d)));
    if (!points) return kFail;
    points[*n] = points[0];
    *array = points;
    *n += 1;
    return 0;
}
