// Internal pieces of the line strings shared by the crossing search, the
// knots and the assembly of strings: the segment record of the plane sweep,
// its ordering, the exact crossing test, the sweep itself, and arrays owned
// through the library's allocator.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include <tessar/linestring.h>
#include <tessar/memory.h>
#include <tessar/types.h>

namespace tessar::detail {

/* ---- Library arrays ---- */

struct LibraryFree {
    void operator()(void *block) const noexcept { tsMem_free(block); }
};

// An array from tsMem_*, released with tsMem_free unless handed over.
template <class T> using LibraryArray = std::unique_ptr<T[], LibraryFree>;

// A new uninitialised array of count elements from tsMem_malloc; empty on
// failure.
template <class T> LibraryArray<T> allocateLibraryArray(size_t count)
{
    return LibraryArray<T>(static_cast<T *>(tsMem_malloc(count * sizeof(T))));
}

/* ---- Sweep records ---- */

// Orientation of a sweep record: the ends as given, or swapped so that the
// left point comes first.
inline constexpr int32_t kOrientationAsGiven = 1;
inline constexpr int32_t kOrientationSwapped = 2;

// One segment of the sweep. The left point has the smaller x, and on equal x
// the smaller y; kind is the caller's classification of the segment.
struct SweepSegment {
    int32_t string;
    int32_t segment;
    int32_t kind;
    int32_t orientation;
    dpoint3d left;
    dpoint3d right;
};

// The record of the segment from a to b, its ends put in left-right order.
SweepSegment makeSweepSegment(int32_t string, int32_t segment, int32_t kind, const dpoint3d &a,
                              const dpoint3d &b) noexcept;

// The start and end of the segment as it was given.
inline const dpoint3d &originalStart(const SweepSegment &s) noexcept
{
    return s.orientation == kOrientationSwapped ? s.right : s.left;
}
inline const dpoint3d &originalEnd(const SweepSegment &s) noexcept
{
    return s.orientation == kOrientationSwapped ? s.left : s.right;
}

// The sweep order: by left x, and on equal left x by the left y of a against
// the right y of b. The second key is deliberately asymmetrical; it is not
// an ordering, so only sortSweepSegments may sort with it.
int compareSweepSegments(const SweepSegment &a, const SweepSegment &b) noexcept;

// Natural merge sort by a three-way comparison, as the C library sorts: it
// asks nothing of the comparison's consistency (so the asymmetrical sweep
// order, or NaN keys, cannot take it out of bounds), and equal elements keep
// their order. Stretches already in order are found first and only merged,
// so the segments of strings that run one way in x cost little. Throws
// std::bad_alloc.
template <class T, class Compare> void mergeSort(std::vector<T> &items, Compare compare)
{
    const size_t n = items.size();
    if (n < 2) return;
    std::vector<size_t> runs{0};
    for (size_t i = 1; i < n; ++i)
        if (compare(items[i - 1], items[i]) > 0) runs.push_back(i);
    runs.push_back(n);

    if (runs.size() == 2) return;
    std::vector<T> merged(n);
    std::vector<size_t> next;
    while (runs.size() > 2) {
        next.assign(1, 0);
        for (size_t r = 0; r + 1 < runs.size(); r += 2) {
            const size_t low = runs[r];
            const size_t middle = runs[r + 1];
            const size_t high = r + 2 < runs.size() ? runs[r + 2] : middle;
            size_t i = low, j = middle, out = low;
            while (i < middle && j < high)
                merged[out++] = compare(items[i], items[j]) <= 0 ? items[i++] : items[j++];
            while (i < middle)
                merged[out++] = items[i++];
            while (j < high)
                merged[out++] = items[j++];
            next.push_back(high);
        }
        items.swap(merged);
        runs.swap(next);
    }
}

// Sorts sweep records into the sweep order. Throws std::bad_alloc.
void sortSweepSegments(std::vector<SweepSegment> &segments);

// The exact test of two segments: their bounding boxes overlap, and neither
// has both ends strictly on one side of the other (the side being the sign
// of the cross product, 0 on the line). Touching and collinear overlapping
// segments pass.
bool segmentsMeet(const SweepSegment &a, const SweepSegment &b) noexcept;

// The plane sweep over records in the sweep order. Each record in turn
// retires the active records whose right x is strictly below its left x,
// joins the active list (which keeps no order), and is offered with every
// other active record to meet(active, record). The older record always comes
// first. Throws std::bad_alloc.
template <class Meet> void sweepSegments(std::span<const SweepSegment> sorted, Meet meet)
{
    std::vector<size_t> active;
    for (size_t i = 0; i < sorted.size(); ++i) {
        const SweepSegment &record = sorted[i];
        std::erase_if(active, [&](size_t j) { return sorted[j].right.x < record.left.x; });
        active.push_back(i);
        for (size_t k = 0; k + 1 < active.size(); ++k)
            meet(sorted[active[k]], record);
    }
}

/* ---- Crossings ---- */

// The crossings of the strings, two records each, sorted by string, segment
// and distance. Throws std::bad_alloc.
std::vector<tsStringIntersection> findStringIntersections(std::span<const tsLineString *const> strings);

// Gives every string that has crossings a new library array with the
// crossings after the vertices of their segments and repeated points
// removed, and frees its old array. All new arrays are made before any
// string is touched: false, with nothing changed, when one cannot be.
// Throws std::bad_alloc.
bool insertStringIntersections(std::span<tsLineString *const> strings,
                               std::span<const tsStringIntersection> crossings);

// Frees the array held at an output and clears it and its count; false when
// either output is null.
bool clearIntersectionOutput(tsStringIntersection **intersections, int32_t *count) noexcept;

// Hands the crossings over as a new library array cut to size (null for
// none); false when it cannot be allocated.
bool handOverIntersections(const std::vector<tsStringIntersection> &crossings,
                           tsStringIntersection **intersections, int32_t *count) noexcept;

/* ---- Knots ---- */

// Cuts the loops of a string whose knots are already vertices, in place; the
// knots are the crossings found on it. Returns the number of points kept.
// Throws std::bad_alloc.
int32_t cutKnotLoops(std::span<dpoint3d> points, std::span<const tsStringIntersection> knots);

}  // namespace tessar::detail
