// The parallel copy of a point array by offset segments: every segment is
// moved sideways by the distance, neighbours are cut at the crossing of
// their lines, and a segment that turned over (the offset was larger than
// it could bear: its start went past its end) is dropped, the nearest valid
// segments on either side being joined over the gap.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <span>
#include <vector>

#include <tessar/frame.h>
#include <tessar/mathapi.h>
#include <tessar/memory.h>
#include <tessar/point.h>
#include <tessar/pointarray.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// A point projected on a parallel neighbour that lies nearer than this to
// its line is taken to be on it.
constexpr double kOnLine = 1e-6;

// An offset segment: its line, and the positions on it where the copy
// begins and ends (fractions of the line's length).
struct OffsetSegment {
    tsLine line;
    double start;
    double end;
    int32_t active;
};

bool isValid(const OffsetSegment &s) noexcept
{
    return !(s.start > s.end);
}

dpoint3d pointAt(const OffsetSegment &s, double position) noexcept
{
    dpoint3d p{0.0, 0.0, 0.0};
    tsLine_getPointAtPosition(&s.line, &p, position);
    return p;
}

// The segment from p to q moved by d along its right normal (ux, uy) ->
// (uy, -ux); z plays no part. False for a segment of no length.
bool makeOffsetSegment(const dpoint3d &p, const dpoint3d &q, double d, OffsetSegment &s) noexcept
{
    double ux = q.x - p.x;
    double uy = q.y - p.y;
    tsMath_normalizeVector2d(&ux, &uy);
    const dpoint3d a{p.x + uy * d, p.y - ux * d, 0.0};
    const dpoint3d b{q.x + uy * d, q.y - ux * d, 0.0};
    s.start = 0.0;
    s.end = 1.0;
    s.active = 1;
    return tsLine_createBy2points(&s.line, &a, &b) == 0;
}

// Neighbours end and begin at the crossing of their lines; parallel ones
// keep their ends.
void cutNeighbours(OffsetSegment &a, OffsetSegment &b) noexcept
{
    double p = 0.0;
    double q = 0.0;
    if (tsLine_intersectLineWithLine2d(nullptr, &p, &q, &a.line, &b.line) == 0) {
        a.end = p;
        b.start = q;
    }
}

// The position of the foot of p on s, when p lies on s's line and the foot
// strictly within s's range.
bool footWithin(const OffsetSegment &s, const dpoint3d &p, double &position) noexcept
{
    double offset = 0.0;
    double at = 0.0;
    tsLine_projectPointOnLine2d(nullptr, &offset, &at, &p, &s.line);
    if (!(std::fabs(offset) < kOnLine && s.start < at && at < s.end)) return false;
    position = at;
    return true;
}

// Joins j (before the gap) with k (after it): at the crossing of their
// lines when it lies strictly within both; for parallel lines, where the end
// of either falls on the other. The second test takes the end of k, not its
// start: that is how the join is made, and the result keeps it.
bool join(OffsetSegment &j, OffsetSegment &k) noexcept
{
    double p = 0.0;
    double q = 0.0;
    if (tsLine_intersectLineWithLine2d(nullptr, &p, &q, &j.line, &k.line) == 0) {
        if (!(j.start < p && p < j.end && k.start < q && q < k.end)) return false;
        j.end = p;
        k.start = q;
        return true;
    }
    bool fitted = false;
    double position = 0.0;
    if (footWithin(k, pointAt(j, j.end), position)) {
        k.start = position;
        fitted = true;
    }
    if (footWithin(j, pointAt(k, k.end), position)) {
        j.end = position;
        fitted = true;
    }
    return fitted;
}

// Walks over the segments, round the ring when closed.
class SegmentWalk
{
  public:
    SegmentWalk(int32_t m, bool closed) : m_(m), closed_(closed) {}
    int32_t down(int32_t j) const { return closed_ && j == 0 ? m_ - 1 : j - 1; }
    int32_t up(int32_t k) const { return closed_ && k == m_ - 1 ? 0 : k + 1; }
    // Where a walk from i stops: past the first or last segment, or back at
    // i on a ring.
    int32_t belowEnd(int32_t i) const { return closed_ ? i : -1; }
    int32_t aboveEnd(int32_t i) const { return closed_ ? i : m_; }
    bool closed() const { return closed_; }
    int32_t count() const { return m_; }

  private:
    int32_t m_;
    bool closed_;
};

// The first valid k above i, from near to far, that joins with j; k is left
// at the last one tried, or at the end of the walk.
bool joinAbove(std::span<OffsetSegment> s, int32_t i, int32_t j, int32_t &k, const SegmentWalk &walk) noexcept
{
    for (k = walk.up(i); k != walk.aboveEnd(i); k = walk.up(k))
        if (isValid(s[k]) && join(s[j], s[k])) return true;
    return false;
}

// Drops the turned-over segment i and joins the nearest valid segments j
// below and k above it, trying every k for each j from near to far; the
// segments strictly between j and k go too. When no pair joins, j has run
// out, so everything below i goes, and everything up to the last k tried.
void resolveTurnedOver(std::span<OffsetSegment> s, int32_t i, const SegmentWalk &walk) noexcept
{
    s[i].active = 0;
    if (!walk.closed() && i == 0) return;
    int32_t j = walk.down(i);
    int32_t k = walk.up(i);  // no k tried yet
    for (; j != walk.belowEnd(i); j = walk.down(j)) {
        if (!isValid(s[j])) continue;
        // The last segment of an open string has nothing after it: j keeps
        // its end, and only the segments between go.
        if (!walk.closed() && i == walk.count() - 1) break;
        if (joinAbove(s, i, j, k, walk)) break;
    }
    for (int32_t t = walk.down(i); t != j; t = walk.down(t))
        s[t].active = 0;
    for (int32_t t = walk.up(i); t != k; t = walk.up(t))
        s[t].active = 0;
}

// The start of the first active segment and the end of every active one.
// An unresolved join of parallel neighbours thus runs straight from the
// previous end to the next end.
std::vector<dpoint3d> activePoints(std::span<const OffsetSegment> s)
{
    std::vector<dpoint3d> points;
    for (const OffsetSegment &segment : s) {
        if (!segment.active) continue;
        if (points.empty()) points.push_back(pointAt(segment, segment.start));
        points.push_back(pointAt(segment, segment.end));
    }
    return points;
}

// All steps but the hand-over; false for a segment of no length.
bool offsetSegments(std::span<const dpoint3d> points, double distance, bool closed,
                    std::vector<dpoint3d> &copy)
{
    const auto m = static_cast<int32_t>(points.size() - 1);
    std::vector<OffsetSegment> s(static_cast<size_t>(m), OffsetSegment{});
    for (int32_t i = 0; i < m; ++i)
        if (!makeOffsetSegment(points[i], points[i + 1], distance, s[i])) return false;

    for (int32_t i = 0; i + 1 < m; ++i)
        cutNeighbours(s[i], s[i + 1]);
    if (closed) cutNeighbours(s[m - 1], s[0]);

    const SegmentWalk walk(m, closed);
    for (int32_t i = 0; i < m; ++i)
        if (s[i].start > s[i].end) resolveTurnedOver(s, i, walk);

    copy = activePoints(s);
    return true;
}

}  // namespace

int32_t tsPointArray_copyParallel2d(const dpoint3d *points, int32_t n, dpoint3d **result, int32_t *count,
                                    double distance, int32_t closed)
{
    if (n < 2) {
        *result = nullptr;
        *count = 0;
        return 0;
    }
    std::vector<dpoint3d> copy;
    try {
        if (!offsetSegments({points, static_cast<size_t>(n)}, distance, closed != 0, copy)) return kFail;
    } catch (const std::bad_alloc &) {
        return kFail;
    }
    // No segment left active gives an empty result.
    dpoint3d *handed = nullptr;
    if (!copy.empty()) {
        handed = static_cast<dpoint3d *>(tsMem_malloc(copy.size() * sizeof(dpoint3d)));
        if (!handed) return kFail;
        std::copy(copy.begin(), copy.end(), handed);
    }
    *result = handed;
    *count = static_cast<int32_t>(copy.size());
    return 0;
}
