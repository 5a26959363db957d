// The point-in-polygon classifier: an exact crossing count along the ray
// from the point towards lower x, over the ring with its closing edge, and
// the classification of a whole array against a polygon.
#include <algorithm>
#include <cmath>

#include <tessar/frame.h>
#include <tessar/pointarray.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

enum Place : int32_t { kOutside = 0, kInside = 1, kOnBoundary = 2 };

// What one edge A->B does to the ray from (px, py) towards lower x.
enum class EdgeResult { kPass, kCross, kBoundary };

bool strictlyOppositeSides(double y1, double y2, double py)
{
    return (y1 < py && y2 > py) || (y1 > py && y2 < py);
}

// x where the edge A->B meets the level py, from A by the run that the
// slope gives; a vertical edge meets it at A.x.
double crossingX(const dpoint3d &a, const dpoint3d &b, double py)
{
    const double dy = std::fabs(b.y - a.y);
    const double dx = std::fabs(b.x - a.x);
    const double t = (dx != 0.0 && dy != 0.0) ? std::fabs(py - a.y) / (dy / dx) : 0.0;
    if (b.x > a.x) return a.x + t;
    if (b.x < a.x) return a.x - t;
    return a.x;
}

// One edge A->B of the ring, with yPrev the y of the vertex before A and C
// the vertex after B. Comparisons are exact throughout.
EdgeResult classifyEdge(const dpoint3d &a, const dpoint3d &b, const dpoint3d &c, double yPrev, double px,
                        double py)
{
    // The level py misses the edge.
    if (py < std::min(a.y, b.y) || py > std::max(a.y, b.y)) return EdgeResult::kPass;
    if (a.x == px && a.y == py) return EdgeResult::kBoundary;
    // The ring touches the ray at A, a peak or a valley, without crossing.
    if (py == a.y && ((yPrev > py && b.y > py) || (yPrev < py && b.y < py))) return EdgeResult::kPass;
    if (a.x == b.x) {
        if (py == b.y) return EdgeResult::kPass;
        if (a.x == px) return EdgeResult::kBoundary;
    }
    if (a.y == b.y) {
        // A horizontal edge on the ray: inside it is the boundary. It counts
        // once unless the ring goes on through it, in which case the edge
        // after it does the counting.
        if (std::min(a.x, b.x) < px && px < std::max(a.x, b.x)) return EdgeResult::kBoundary;
        if (!strictlyOppositeSides(yPrev, c.y, py) && a.x < px) return EdgeResult::kCross;
        return EdgeResult::kPass;
    }
    // A vertex is counted by the edge that starts there.
    if (py == b.y) return EdgeResult::kPass;
    const bool crosses = crossingX(a, b, py) < px;
    // The test is on the point's own x, not on its distance from the
    // crossing: any point with x exactly 0.0 that gets this far is reported
    // on the boundary. Callers have lived with this and it is kept.
    if (px == 0.0) return EdgeResult::kBoundary;
    return crosses ? EdgeResult::kCross : EdgeResult::kPass;
}

}  // namespace

int32_t tsPointArray_isPointInsidePolygon(const dpoint3d *array, int32_t n, const dpoint3d *point)
{
    if (!array || !point) return kOutside;
    const double px = point->x;
    const double py = point->y;
    int32_t crossings = 0;
    // Edge i runs from vertex i to vertex i + 1, the last one back to vertex
    // 0; its neighbours are the vertices before and after it, round the ring.
    for (int32_t i = 0; i < n; ++i) {
        const int32_t next = i + 1 < n ? i + 1 : 0;
        const int32_t after = next + 1 < n ? next + 1 : 0;
        const int32_t before = i > 0 ? i - 1 : n - 1;
        switch (classifyEdge(array[i], array[next], array[after], array[before].y, px, py)) {
        case EdgeResult::kBoundary:
            return kOnBoundary;
        case EdgeResult::kCross:
            ++crossings;
            break;
        case EdgeResult::kPass:
            break;
        }
    }
    return crossings % 2 == 1 ? kInside : kOutside;
}

int32_t tsPointArray_isArrayWithinPolygon(int32_t *result, const dpoint3d *points, int32_t n,
                                          const dpoint3d *polygon, int32_t m)
{
    if (!result) return kFail;
    if (!points || !polygon || n < 1 || m < 1) {
        *result = -1;
        return kFail;
    }
    // The boundary counts as inside.
    int32_t inside = 0;
    int32_t outside = 0;
    for (int32_t i = 0; i < n && (inside == 0 || outside == 0); ++i) {
        if (tsPointArray_isPointInsidePolygon(polygon, m, &points[i]) == kOutside)
            ++outside;
        else
            ++inside;
    }
    *result = (inside != 0 && outside != 0) ? 2 : (inside != 0 ? 1 : 0);
    return 0;
}
