// Crossings of line strings with each other and with themselves: a plane
// sweep over all segments in x, the exact meeting test, the crossing seen
// from both segments with their levels exchanged, and the insertion of the
// crossings as vertices.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>

#include <tessar/frame.h>
#include <tessar/linestring.h>
#include <tessar/mathapi.h>
#include <tessar/memory.h>

#include "linestring/linestring.hpp"

namespace tessar::detail {

namespace {

constexpr int32_t kPlainSegment = 1;
// The first and the last segment of a closed string (first and last points
// equal in x and y); they meet at the closing point, which is no crossing.
constexpr int32_t kClosingSegment = 2;

bool isClosed(const tsLineString &string) noexcept
{
    const dpoint3d &first = string.points[0];
    const dpoint3d &last = string.points[string.count - 1];
    return first.x == last.x && first.y == last.y;
}

size_t segmentCount(std::span<const tsLineString *const> strings) noexcept
{
    size_t total = 0;
    for (const tsLineString *string : strings)
        if (string->count > 1) total += static_cast<size_t>(string->count - 1);
    return total;
}

// Step 1: one sweep record per segment of every string.
std::vector<SweepSegment> makeSweepSegments(std::span<const tsLineString *const> strings)
{
    std::vector<SweepSegment> segments;
    segments.reserve(segmentCount(strings));
    for (size_t s = 0; s < strings.size(); ++s) {
        const tsLineString &string = *strings[s];
        if (string.count < 2) continue;
        const int32_t last = string.count - 2;
        const bool closed = isClosed(string);
        for (int32_t i = 0; i <= last; ++i) {
            const int32_t kind = closed && (i == 0 || i == last) ? kClosingSegment : kPlainSegment;
            segments.push_back(
                makeSweepSegment(static_cast<int32_t>(s), i, kind, string.points[i], string.points[i + 1]));
        }
    }
    return segments;
}

// Step 4: neighbours in one string share a vertex, and so do the two closing
// segments of a closed string; neither pair is a crossing.
bool passedBy(const SweepSegment &a, const SweepSegment &b) noexcept
{
    if (a.string != b.string) return false;
    if (std::abs(a.segment - b.segment) < 2) return true;
    return a.kind == kClosingSegment && b.kind == kClosingSegment;
}

bool sameEnd(const dpoint3d &a, const dpoint3d &b) noexcept
{
    return a.x == b.x && a.y == b.y;
}

// Signed plan offset of p from the line of s; 0.0 for an s of no length,
// where p is taken to lie on it.
double offsetFrom(const SweepSegment &s, double length, const dpoint3d &p) noexcept
{
    const double cross =
        (s.right.x - s.left.x) * (p.y - s.left.y) - (s.right.y - s.left.y) * (p.x - s.left.x);
    return tsMath_isDivisionPossible(cross, length) ? cross / length : 0.0;
}

// Step 6: where two meeting segments cross. A shared end is taken exactly.
// Otherwise the crossing divides the second segment as the offsets of its
// ends from the first: in the ratio |o1| / (|o1| + |o2|). Collinear segments
// (both offsets 0) give the end of the second nearer to the left point of
// the first, its left end on a tie.
dpoint3d crossingPoint(const SweepSegment &first, const SweepSegment &second) noexcept
{
    for (const dpoint3d *a : {&first.left, &first.right})
        for (const dpoint3d *b : {&second.left, &second.right})
            if (sameEnd(*a, *b)) return *a;

    const double length = tsMath_distance2d(first.left.x, first.left.y, first.right.x, first.right.y);
    const double o1 = offsetFrom(first, length, second.left);
    const double o2 = offsetFrom(first, length, second.right);
    if (o1 == 0.0 && o2 == 0.0) {
        const double toLeft = tsMath_distance2d(first.left.x, first.left.y, second.left.x, second.left.y);
        const double toRight = tsMath_distance2d(first.left.x, first.left.y, second.right.x, second.right.y);
        return toRight < toLeft ? second.right : second.left;
    }
    const double ratio = std::fabs(o1) / (std::fabs(o1) + std::fabs(o2));
    return {second.left.x + ratio * (second.right.x - second.left.x),
            second.left.y + ratio * (second.right.y - second.left.y), 0.0};
}

// The crossing seen from segment s: the plan distance from the segment's
// original start, and the level there, linear in that distance.
tsStringIntersection seenFrom(const SweepSegment &s, const SweepSegment &other,
                              const dpoint3d &crossing) noexcept
{
    const dpoint3d &start = originalStart(s);
    const dpoint3d &end = originalEnd(s);
    const double distance = tsMath_distance2d(start.x, start.y, crossing.x, crossing.y);
    const double length = tsMath_distance2d(start.x, start.y, end.x, end.y);
    const double z = tsMath_isDivisionPossible(distance, length)
                         ? start.z + (end.z - start.z) * (distance / length)
                         : start.z;
    return {s.string, s.segment, other.string, other.segment, distance, crossing.x, crossing.y, z, 0.0};
}

// Step 8: by string, then segment, then distance.
int compareCrossings(const tsStringIntersection &a, const tsStringIntersection &b) noexcept
{
    if (a.string != b.string) return a.string < b.string ? -1 : 1;
    if (a.segment != b.segment) return a.segment < b.segment ? -1 : 1;
    if (a.distance < b.distance) return -1;
    if (a.distance > b.distance) return 1;
    return 0;
}

}  // namespace

std::vector<tsStringIntersection> findStringIntersections(std::span<const tsLineString *const> strings)
{
    std::vector<SweepSegment> segments = makeSweepSegments(strings);
    sortSweepSegments(segments);

    std::vector<tsStringIntersection> crossings;
    sweepSegments(segments, [&crossings](const SweepSegment &older, const SweepSegment &newer) {
        if (passedBy(older, newer) || !segmentsMeet(older, newer)) return;
        const dpoint3d crossing = crossingPoint(older, newer);
        tsStringIntersection a = seenFrom(older, newer, crossing);
        tsStringIntersection b = seenFrom(newer, older, crossing);
        a.otherZ = b.z;
        b.otherZ = a.z;
        crossings.push_back(a);
        crossings.push_back(b);
    });
    mergeSort(crossings, compareCrossings);
    return crossings;
}

bool insertStringIntersections(std::span<tsLineString *const> strings,
                               std::span<const tsStringIntersection> crossings)
{
    struct Replacement {
        tsLineString *string;
        LibraryArray<dpoint3d> points;
        int32_t count;
    };
    std::vector<Replacement> replacements;

    // The crossings come grouped by string, and within a string by segment
    // and distance, so one pass over each string places them.
    for (size_t c = 0; c < crossings.size();) {
        tsLineString &string = *strings[static_cast<size_t>(crossings[c].string)];
        size_t end = c;
        while (end < crossings.size() && crossings[end].string == crossings[c].string)
            ++end;
        LibraryArray<dpoint3d> points =
            allocateLibraryArray<dpoint3d>(static_cast<size_t>(string.count) + (end - c));
        if (!points) return false;
        int32_t n = 0;
        for (int32_t i = 0; i < string.count; ++i) {
            points[n++] = string.points[i];
            for (; c < end && crossings[c].segment == i; ++c)
                points[n++] = {crossings[c].x, crossings[c].y, crossings[c].z};
        }
        tsLineString_removeDuplicatesPointArray(points.get(), &n, 0.0);
        replacements.push_back({&string, std::move(points), n});
        c = end;
    }

    for (Replacement &r : replacements) {
        tsMem_free(r.string->points);
        r.string->points = r.points.release();
        r.string->count = r.count;
    }
    return true;
}

bool clearIntersectionOutput(tsStringIntersection **intersections, int32_t *count) noexcept
{
    if (!intersections || !count) return false;
    if (*intersections) tsMem_free(*intersections);
    *intersections = nullptr;
    *count = 0;
    return true;
}

bool handOverIntersections(const std::vector<tsStringIntersection> &crossings,
                           tsStringIntersection **intersections, int32_t *count) noexcept
{
    if (crossings.empty()) return true;
    LibraryArray<tsStringIntersection> array = allocateLibraryArray<tsStringIntersection>(crossings.size());
    if (!array) return false;
    std::memcpy(array.get(), crossings.data(), crossings.size() * sizeof(tsStringIntersection));
    *intersections = array.release();
    *count = static_cast<int32_t>(crossings.size());
    return true;
}

}  // namespace tessar::detail

using namespace tessar::detail;

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

}  // namespace

int32_t tsLineString_detectStringIntersections(tsLineString *const *strings, int32_t n,
                                               tsStringIntersection **intersections, int32_t *count)
{
    if (!clearIntersectionOutput(intersections, count)) return kFail;
    if (n < 1 || !strings) return kFail;
    try {
        const std::vector<tsStringIntersection> crossings =
            findStringIntersections({strings, static_cast<size_t>(n)});
        return handOverIntersections(crossings, intersections, count) ? 0 : kFail;
    } catch (const std::bad_alloc &) {
        return kFail;
    }
}

int32_t tsLineString_insertStringIntersections(tsLineString *const *strings, int32_t n,
                                               tsStringIntersection **intersections, int32_t *count)
{
    if (!clearIntersectionOutput(intersections, count)) return kFail;
    if (n < 1 || !strings) return kFail;
    try {
        const std::span<tsLineString *const> all{strings, static_cast<size_t>(n)};
        const std::vector<tsStringIntersection> crossings = findStringIntersections(all);
        // The list is handed over first, so that a failure leaves the strings
        // as they were.
        if (handOverIntersections(crossings, intersections, count) &&
            insertStringIntersections(all, crossings))
            return 0;
    } catch (const std::bad_alloc &) {
    }
    clearIntersectionOutput(intersections, count);
    return kFail;
}
