// Connecting whole strings into one walk. Every ordered pair of string ends
// gives a connector; a plane sweep refuses the connectors that cross a
// string; a depth-first search over the strings, from the leftmost end with
// a connector, then looks for the walk with the shortest plan length whose
// connectors do not cross each other.
#include <algorithm>
#include <cstddef>
#include <new>
#include <optional>
#include <vector>

#include <tessar/linestring.h>
#include <tessar/mathapi.h>
#include <tessar/system.h>

#include "linestring/assemble.hpp"
#include "linestring/linestring.hpp"

namespace tessar::detail {

namespace {

constexpr int32_t kCallerSegment = 1;
constexpr int32_t kConnectorSegment = 2;
constexpr int32_t kNoEnd = -888888;
// Connectors of all ordered pairs of ends are numbered in an int32_t.
constexpr size_t kMostEnds = 46340;

// An end of a string of non-zero length. The ends of the j-th such string
// are 2j (its first point) and 2j + 1 (its last point).
struct StringEnd {
    dpoint3d point;
    double stringLength;  // plan length of the string
    int32_t string;       // the string's index among the caller's
};

// The other end of the same string: e + 1 for an even e, e - 1 for an odd e.
int32_t otherEnd(int32_t end) noexcept
{
    return end ^ 1;
}

double planDistance(const dpoint3d &a, const dpoint3d &b) noexcept
{
    return tsMath_distance2d(a.x, a.y, b.x, b.y);
}

// The side of p from the line a to b: the sign of (b - a) x (p - a), 0 on
// the line.
int side(const dpoint3d &a, const dpoint3d &b, const dpoint3d &p) noexcept
{
    const double cross = (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    return (cross > 0.0) - (cross < 0.0);
}

bool samePlanPoint(const dpoint3d &a, const dpoint3d &b) noexcept
{
    return a.x == b.x && a.y == b.y;
}

// Step 3: two ends for each string of non-zero plan length. Strings of
// length 0 get none, so they shift the end numbers of the strings after
// them.
std::vector<StringEnd> makeEnds(std::span<tsLineString *const> strings)
{
    std::vector<StringEnd> ends;
    for (size_t k = 0; k < strings.size(); ++k) {
        const tsLineString &string = *strings[k];
        double length = 0.0;
        for (int32_t i = 1; i < string.count; ++i)
            length += planDistance(string.points[i - 1], string.points[i]);
        if (length == 0.0) continue;
        const auto index = static_cast<int32_t>(k);
        ends.push_back({string.points[0], length, index});
        ends.push_back({string.points[string.count - 1], length, index});
    }
    return ends;
}

// The number of the connector from one end to another, in the order of all
// ordered pairs of different ends: by from, then by to.
size_t connectorIndex(int32_t from, int32_t to, size_t endCount) noexcept
{
    const auto f = static_cast<size_t>(from);
    const auto t = static_cast<size_t>(to);
    return f * (endCount - 1) + (t < f ? t : t - 1);
}

// A connector that meets a string's segment is no crossing when the two
// have exactly one point in common and it is an end of the segment: the
// connector leaves from the string's end, or passes exactly through one of
// its vertices. Collinear pieces that overlap, identical ones included,
// always count.
bool meetsOnlyAtSegmentEnd(const SweepSegment &segment, const SweepSegment &connector) noexcept
{
    const int leftSide = side(connector.left, connector.right, segment.left);
    const int rightSide = side(connector.left, connector.right, segment.right);
    if (leftSide != 0 && rightSide != 0) return false;
    if (leftSide != rightSide) return true;
    // Collinear (or a connector of no length): along the line, the left to
    // right order is the order of the points, so they share one point only
    // end to end.
    return samePlanPoint(segment.right, connector.left) || samePlanPoint(connector.right, segment.left);
}

// Steps 4 to 6: the connectors of all ordered pairs of ends, swept with the
// strings' segments; a connector is refused when it meets a segment
// anywhere but at the segment's end. Connectors are not tested with each
// other here.
std::vector<uint8_t> findRefusedConnectors(std::span<tsLineString *const> strings,
                                           const std::vector<StringEnd> &ends)
{
    const size_t endCount = ends.size();
    if (endCount > kMostEnds) throw std::bad_alloc();
    std::vector<SweepSegment> segments;
    for (size_t k = 0; k < strings.size(); ++k) {
        const tsLineString &string = *strings[k];
        for (int32_t i = 0; i + 1 < string.count; ++i)
            segments.push_back(makeSweepSegment(static_cast<int32_t>(k), i, kCallerSegment, string.points[i],
                                                string.points[i + 1]));
    }
    for (int32_t from = 0; from < static_cast<int32_t>(endCount); ++from)
        for (int32_t to = 0; to < static_cast<int32_t>(endCount); ++to)
            if (to != from)
                segments.push_back(makeSweepSegment(
                    -1, static_cast<int32_t>(connectorIndex(from, to, endCount)), kConnectorSegment,
                    ends[static_cast<size_t>(from)].point, ends[static_cast<size_t>(to)].point));
    sortSweepSegments(segments);

    std::vector<uint8_t> refused(endCount * (endCount - 1), 0);
    sweepSegments(segments, [&refused](const SweepSegment &older, const SweepSegment &newer) {
        if (older.kind == newer.kind || !segmentsMeet(older, newer)) return;
        const bool olderIsString = older.kind == kCallerSegment;
        const SweepSegment &segment = olderIsString ? older : newer;
        const SweepSegment &connector = olderIsString ? newer : older;
        if (!meetsOnlyAtSegmentEnd(segment, connector)) refused[static_cast<size_t>(connector.segment)] = 1;
    });
    return refused;
}

// Step 7: the connectors that are not refused, as edges listed per end in
// the order of their targets.
struct EdgeGraph {
    std::vector<size_t> first;  // the edges of end e are first[e] to first[e + 1]
    std::vector<int32_t> target;
    std::vector<uint8_t> used;

    bool hasEdge(int32_t end) const noexcept
    {
        return first[static_cast<size_t>(end)] < first[static_cast<size_t>(end) + 1];
    }
};

EdgeGraph makeGraph(const std::vector<uint8_t> &refused, size_t endCount)
{
    EdgeGraph graph;
    graph.first.reserve(endCount + 1);
    for (int32_t from = 0; from < static_cast<int32_t>(endCount); ++from) {
        graph.first.push_back(graph.target.size());
        for (int32_t to = 0; to < static_cast<int32_t>(endCount); ++to)
            if (to != from && !refused[connectorIndex(from, to, endCount)]) graph.target.push_back(to);
    }
    graph.first.push_back(graph.target.size());
    graph.used.assign(graph.target.size(), 0);
    return graph;
}

// Step 8: the end with an edge that has the smallest x, and the smallest y
// among equal x; kNoEnd when no end has an edge.
int32_t startEnd(const std::vector<StringEnd> &ends, const EdgeGraph &graph) noexcept
{
    int32_t start = kNoEnd;
    for (int32_t e = 0; e < static_cast<int32_t>(ends.size()); ++e) {
        if (!graph.hasEdge(e)) continue;
        const dpoint3d &p = ends[static_cast<size_t>(e)].point;
        if (start == kNoEnd) {
            start = e;
            continue;
        }
        const dpoint3d &best = ends[static_cast<size_t>(start)].point;
        if (p.x < best.x || (p.x == best.x && p.y < best.y)) start = e;
    }
    return start;
}

// Proper crossing of the connectors p to q and r to s: r and s strictly on
// different sides of pq, and p and q strictly on different sides of rs.
bool connectorsCross(const dpoint3d &p, const dpoint3d &q, const dpoint3d &r, const dpoint3d &s) noexcept
{
    return side(p, q, r) * side(p, q, s) < 0 && side(r, s, p) * side(r, s, q) < 0;
}

// A walk as the search holds it: the start end, whose own edges lead on,
// then the end at which each further string is entered.
struct Walk {
    std::vector<int32_t> stack;
    double length;
};

// The walk as an order of entry ends. The first connector leaves from the
// start end itself, so the first string is walked towards the start end and
// entered at its other end.
std::vector<int32_t> walkOrder(const std::vector<int32_t> &stack)
{
    std::vector<int32_t> order = stack;
    order.front() = otherEnd(order.front());
    return order;
}

// Whether the connector from one end to another crosses a connector of the
// walk on the stack.
bool crossesWalk(const std::vector<int32_t> &stack, const std::vector<StringEnd> &ends, int32_t from,
                 int32_t to) noexcept
{
    const dpoint3d &p = ends[static_cast<size_t>(from)].point;
    const dpoint3d &q = ends[static_cast<size_t>(to)].point;
    int32_t exit = stack.front();
    for (size_t i = 1; i < stack.size(); ++i) {
        if (connectorsCross(p, q, ends[static_cast<size_t>(exit)].point,
                            ends[static_cast<size_t>(stack[i])].point))
            return true;
        exit = otherEnd(stack[i]);
    }
    return false;
}

void logWalk(const std::vector<int32_t> &stack)
{
    const std::vector<int32_t> order = walkOrder(stack);
    for (size_t i = 0; i < order.size(); ++i)
        tsLogFile_write("Line[%4ld] ** %4ld", static_cast<long>(i), static_cast<long>(order[i]));
}

// Step 9: the depth-first walk over the strings from the start end, with
// backtracking. An edge taken stays used while the string it left from is
// on the stack, so that a string popped back to is not entered again the
// same way; popping a string frees the edges out of its exit. A walk that
// holds all strings is refused if two of its connectors cross; otherwise
// the first is kept and a strictly shorter one replaces it. The first walk
// found goes to the log file once.
//
// Two cuts leave the result as it is: a connector that crosses one already
// on the stack would refuse every walk through it, and a walk whose length
// so far is not below the best cannot end strictly shorter (the length adds
// up, in walk order, string length and connector length, all not negative).
// Either way the edge is marked used and nothing is pushed, which is what
// the full search leaves behind once it has come back from that string.
std::optional<Walk> searchWalks(int32_t start, const std::vector<StringEnd> &ends, EdgeGraph &graph,
                                bool &logged)
{
    std::fill(graph.used.begin(), graph.used.end(), 0);
    std::vector<uint8_t> visited(ends.size(), 0);
    const auto mark = [&visited](int32_t end, uint8_t value) {
        visited[static_cast<size_t>(end)] = value;
        visited[static_cast<size_t>(otherEnd(end))] = value;
    };
    std::vector<int32_t> stack{start};
    std::vector<double> lengths{ends[static_cast<size_t>(start)].stringLength};
    mark(start, 1);
    const auto pop = [&] {
        mark(stack.back(), 0);
        stack.pop_back();
        lengths.pop_back();
    };

    std::optional<Walk> best;
    while (!stack.empty()) {
        if (2 * stack.size() == ends.size()) {
            if (!logged) logWalk(stack);
            logged = true;
            if (!best || lengths.back() < best->length) best = Walk{stack, lengths.back()};
            pop();
            continue;
        }
        const int32_t exit = stack.size() == 1 ? start : otherEnd(stack.back());
        const size_t begin = graph.first[static_cast<size_t>(exit)];
        const size_t end = graph.first[static_cast<size_t>(exit) + 1];
        size_t edge = begin;
        while (edge < end && (graph.used[edge] || visited[static_cast<size_t>(graph.target[edge])]))
            ++edge;
        if (edge == end) {
            std::fill(graph.used.begin() + static_cast<std::ptrdiff_t>(begin),
                      graph.used.begin() + static_cast<std::ptrdiff_t>(end), 0);
            pop();
            continue;
        }
        graph.used[edge] = 1;
        const int32_t target = graph.target[edge];
        const double length =
            lengths.back() +
            planDistance(ends[static_cast<size_t>(exit)].point, ends[static_cast<size_t>(target)].point) +
            ends[static_cast<size_t>(target)].stringLength;
        if ((best && length >= best->length) || crossesWalk(stack, ends, exit, target)) continue;
        stack.push_back(target);
        lengths.push_back(length);
        mark(target, 1);
    }
    return best;
}

// Whether a last connector, from the exit of the walk back to its first
// end, would be allowed: it crosses no string and no connector of the walk.
int32_t closingAllowed(const Walk &walk, const std::vector<StringEnd> &ends,
                       const std::vector<uint8_t> &refused)
{
    const int32_t first = otherEnd(walk.stack.front());
    const int32_t exit = walk.stack.size() == 1 ? walk.stack.front() : otherEnd(walk.stack.back());
    if (refused[connectorIndex(exit, first, ends.size())]) return 0;
    return crossesWalk(walk.stack, ends, exit, first) ? 0 : 1;
}

}  // namespace

ConnectResult connectStrings(std::span<tsLineString *const> strings)
{
    ConnectResult result;
    for (tsLineString *string : strings)
        tsLineString_removeDuplicatesPointArray(string->points, &string->count, 0.0);
    if (!findStringIntersections({strings.data(), strings.size()}).empty()) {
        result.status = kStringsIntersect;
        return result;
    }
    const std::vector<StringEnd> ends = makeEnds(strings);
    if (ends.size() < 2) {
        result.status = kNothingToConnect;
        return result;
    }
    const std::vector<uint8_t> refused = findRefusedConnectors(strings, ends);
    EdgeGraph graph = makeGraph(refused, ends.size());

    // Step 8: from the start end, then from the other end of its string;
    // the shorter walk wins, the first on a tie.
    const int32_t start = startEnd(ends, graph);
    if (start == kNoEnd) return result;
    bool logged = false;
    std::optional<Walk> walk = searchWalks(start, ends, graph, logged);
    if (graph.hasEdge(otherEnd(start))) {
        std::optional<Walk> other = searchWalks(otherEnd(start), ends, graph, logged);
        if (other && (!walk || other->length < walk->length)) walk = std::move(other);
    }
    if (!walk) return result;
    result.order = walkOrder(walk->stack);
    result.length = walk->length;
    result.closed = closingAllowed(*walk, ends, refused);
    return result;
}

}  // namespace tessar::detail
