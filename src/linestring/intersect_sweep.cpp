// The segment records of the plane sweep: their left-right form, the sweep
// order, and the exact test of whether two segments meet.
#include "linestring/linestring.hpp"

namespace tessar::detail {

namespace {

// Left of b: smaller x, or equal x and smaller y.
bool leftOf(const dpoint3d &a, const dpoint3d &b) noexcept
{
    return a.x < b.x || (a.x == b.x && a.y < b.y);
}

// The side of p from the line a to b: the sign of (b - a) x (p - a), 0 on the
// line.
int side(const dpoint3d &a, const dpoint3d &b, const dpoint3d &p) noexcept
{
    const double cross = (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    return (cross > 0.0) - (cross < 0.0);
}

// Both ends of other strictly on one side of the line of s.
bool bothOnOneSide(const SweepSegment &s, const SweepSegment &other) noexcept
{
    return side(s.left, s.right, other.left) * side(s.left, s.right, other.right) > 0;
}

bool boxesOverlap(const SweepSegment &a, const SweepSegment &b) noexcept
{
    const auto [aLow, aHigh] = std::minmax(a.left.y, a.right.y);
    const auto [bLow, bHigh] = std::minmax(b.left.y, b.right.y);
    return a.left.x <= b.right.x && b.left.x <= a.right.x && aLow <= bHigh && bLow <= aHigh;
}

}  // namespace

SweepSegment makeSweepSegment(int32_t string, int32_t segment, int32_t kind, const dpoint3d &a,
                              const dpoint3d &b) noexcept
{
    if (leftOf(b, a)) return {string, segment, kind, kOrientationSwapped, b, a};
    return {string, segment, kind, kOrientationAsGiven, a, b};
}

int compareSweepSegments(const SweepSegment &a, const SweepSegment &b) noexcept
{
    if (a.left.x < b.left.x) return -1;
    if (a.left.x > b.left.x) return 1;
    // Left y of the one against right y of the other, as it stands.
    if (a.left.y < b.right.y) return -1;
    if (a.left.y > b.right.y) return 1;
    return 0;
}

void sortSweepSegments(std::vector<SweepSegment> &segments)
{
    mergeSort(segments, compareSweepSegments);
}

bool segmentsMeet(const SweepSegment &a, const SweepSegment &b) noexcept
{
    return boxesOverlap(a, b) && !bothOnOneSide(a, b) && !bothOnOneSide(b, a);
}

}  // namespace tessar::detail
