// Joining loose 3-D lines into chains: the line ends are sorted by their
// coordinates, ends of different lines that are each other's nearest
// partner within the tolerance are linked, and the links are walked into
// chains, each handed out as a list of joined lines.
#include <algorithm>
#include <cmath>
#include <new>
#include <span>
#include <vector>

#include <tessar/frame.h>
#include <tessar/linestring.h>
#include <tessar/mathapi.h>
#include <tessar/memory.h>

#include "linestring/assemble.hpp"
#include "linestring/linestring.hpp"

namespace tessar::detail {

namespace {

constexpr int32_t kNoLink = -1;
constexpr int32_t kStartKind = 1;
constexpr int32_t kEndKind = 2;

// One end of a line. Positions (other, link) are positions in the sorted
// table of ends.
struct LineEnd {
    int32_t lineIndex;
    int32_t endId;  // 2 * lineIndex, plus 1 for the far end
    int32_t kind;   // kStartKind or kEndKind
    int32_t other;  // the other end of the same line
    int32_t open;   // 1 while not yet walked
    int32_t link;   // the end that this end joins; kNoLink if none
    dpoint3d point;
};

// One line of a chain.
struct ChainLine {
    int32_t lineIndex;
    int32_t reversed;
};

using Chain = std::vector<ChainLine>;

bool samePoint(const dpoint3d &a, const dpoint3d &b) noexcept
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

// By x, then y, then z, all exact.
int compareByPoint(const LineEnd &a, const LineEnd &b) noexcept
{
    for (const auto field : {&dpoint3d::x, &dpoint3d::y, &dpoint3d::z}) {
        if (a.point.*field < b.point.*field) return -1;
        if (a.point.*field > b.point.*field) return 1;
    }
    return 0;
}

// Steps 1 and 2: two ends a line, sorted by their points, with each end
// knowing the position of its partner on the same line. A line of no length
// keeps both its ends; step 3 links them to each other.
std::vector<LineEnd> makeSortedEnds(std::span<const tsLine> lines)
{
    std::vector<LineEnd> ends;
    ends.reserve(2 * lines.size());
    for (size_t i = 0; i < lines.size(); ++i) {
        dpoint3d start{};
        dpoint3d end{};
        tsLine_getEndPoints(&lines[i], &start, &end);
        const auto line = static_cast<int32_t>(i);
        ends.push_back({line, 2 * line, kStartKind, 0, 1, kNoLink, start});
        ends.push_back({line, 2 * line + 1, kEndKind, 0, 1, kNoLink, end});
    }
    mergeSort(ends, compareByPoint);

    std::vector<int32_t> positionOfEnd(ends.size());
    for (size_t p = 0; p < ends.size(); ++p)
        positionOfEnd[static_cast<size_t>(ends[p].endId)] = static_cast<int32_t>(p);
    for (LineEnd &end : ends)
        end.other = positionOfEnd[static_cast<size_t>(end.endId ^ 1)];
    return ends;
}

void link(std::vector<LineEnd> &ends, int32_t a, int32_t b) noexcept
{
    ends[static_cast<size_t>(a)].link = b;
    ends[static_cast<size_t>(b)].link = a;
}

// Step 3: the two ends of a line of no length join each other.
void linkDegenerateLines(std::vector<LineEnd> &ends) noexcept
{
    for (size_t p = 0; p < ends.size(); ++p) {
        LineEnd &end = ends[p];
        if (end.link == kNoLink && samePoint(end.point, ends[static_cast<size_t>(end.other)].point))
            link(ends, static_cast<int32_t>(p), end.other);
    }
}

// Step 4: the nearest free end of another line, walking the sorted table
// from the end's position down and then up, each way until the x difference
// exceeds tol. The match measure is sqrt(dz dx^2 + dy^2 + dx^2), this end
// minus the candidate: the height difference enters multiplied by dx^2, so
// the measure is not symmetrical and can be no number at all; a measure that
// is no number passes both the tolerance and the nearer-than-best test. The
// first of equal measures stays. kNoLink when there is none.
int32_t nearestPartner(const std::vector<LineEnd> &ends, size_t position, double tol) noexcept
{
    const LineEnd &self = ends[position];
    int32_t best = kNoLink;
    double bestMeasure = 0.0;
    // False once the walk in this direction has left the tolerance in x.
    const auto consider = [&](size_t p) {
        const LineEnd &candidate = ends[p];
        const double dx = self.point.x - candidate.point.x;
        const double dy = self.point.y - candidate.point.y;
        const double dz = self.point.z - candidate.point.z;
        if (std::fabs(dx) > tol) return false;
        if (candidate.lineIndex == self.lineIndex || candidate.link != kNoLink) return true;
        const double measure = std::sqrt(dz * (dx * dx) + dy * dy + dx * dx);
        if (measure > tol) return true;
        if (best != kNoLink && measure >= bestMeasure) return true;
        best = static_cast<int32_t>(p);
        bestMeasure = measure;
        return true;
    };
    for (size_t p = position; p-- > 0 && consider(p);) {
    }
    for (size_t p = position + 1; p < ends.size() && consider(p); ++p) {
    }
    return best;
}

// Step 5: ends are linked only as mutual nearest partners. An end whose
// choice prefers another end stays free and is offered no second choice.
void linkNearestPartners(std::vector<LineEnd> &ends, double tol) noexcept
{
    for (size_t p = 0; p < ends.size(); ++p) {
        if (ends[p].link != kNoLink) continue;
        const int32_t partner = nearestPartner(ends, p, tol);
        if (partner != kNoLink &&
            nearestPartner(ends, static_cast<size_t>(partner), tol) == static_cast<int32_t>(p))
            link(ends, static_cast<int32_t>(p), partner);
    }
}

// Step 6, the head: from the start's other end the links are followed line
// by line to a free end, where the chain begins; a walk that comes back to
// the start has found a closed chain, which begins at the start.
int32_t chainHead(const std::vector<LineEnd> &ends, int32_t start) noexcept
{
    int32_t entry = start;
    for (;;) {
        const int32_t exit = ends[static_cast<size_t>(entry)].other;
        const int32_t next = ends[static_cast<size_t>(exit)].link;
        if (next == kNoLink) return exit;
        if (next == start) return start;
        entry = next;
    }
}

// Step 6, the emission: line after line from the head, each reversed when it
// is entered at its far end, until a free end or the head again; the lines
// walked are closed.
Chain walkChain(std::vector<LineEnd> &ends, int32_t head)
{
    Chain chain;
    int32_t entry = head;
    do {
        LineEnd &in = ends[static_cast<size_t>(entry)];
        LineEnd &out = ends[static_cast<size_t>(in.other)];
        chain.push_back({in.lineIndex, in.kind == kStartKind ? 0 : 1});
        in.open = 0;
        out.open = 0;
        entry = out.link;
    } while (entry != kNoLink && entry != head);
    return chain;
}

// Steps 6 to 8: the linked chains in the sorted order of their first open
// end, then every line without a neighbour as a chain of its own; a chain
// of only reversed lines is turned round.
std::vector<Chain> walkChains(std::vector<LineEnd> &ends)
{
    std::vector<Chain> chains;
    for (size_t p = 0; p < ends.size(); ++p)
        if (ends[p].open && ends[p].link != kNoLink)
            chains.push_back(walkChain(ends, chainHead(ends, static_cast<int32_t>(p))));
    for (LineEnd &end : ends) {
        if (!end.open || end.link != kNoLink) continue;
        chains.push_back({{end.lineIndex, 0}});
        end.open = 0;
        ends[static_cast<size_t>(end.other)].open = 0;
    }
    for (Chain &chain : chains) {
        bool allReversed = true;
        for (const ChainLine &line : chain)
            allReversed = allReversed && line.reversed == 1;
        if (!allReversed) continue;
        std::reverse(chain.begin(), chain.end());
        for (ChainLine &line : chain)
            line.reversed = 0;
    }
    return chains;
}

// Step 9: the chain as a list, reversed lines turned. A connector goes in
// where the plan gap from the previous end exceeds tol; a smaller gap stays.
OwnedList chainList(const Chain &chain, std::span<const tsLine> lines, double tol) noexcept
{
    OwnedList list = createJoinedLineList();
    if (!list) return list;
    dpoint3d previousEnd{};
    for (size_t i = 0; i < chain.size(); ++i) {
        const tsLine &given = lines[static_cast<size_t>(chain[i].lineIndex)];
        const tsLine line = chain[i].reversed ? turnedLine(given) : given;
        const dpoint3d start = startOf(line);
        if (i > 0 && tsMath_distance2d(previousEnd.x, previousEnd.y, start.x, start.y) > tol &&
            !appendConnector(list.get(), previousEnd, start))
            return {};
        if (!appendJoinedLine(list.get(), chain[i].lineIndex, chain[i].reversed, line)) return {};
        previousEnd = endOf(line);
    }
    return list;
}

// The lists of all chains in a new library array; false, with nothing handed
// out, when there is no memory.
bool handOverChains(const std::vector<Chain> &chains, std::span<const tsLine> lines, double tol,
                    int32_t *listCount, tsLinkedList ***lists)
{
    std::vector<OwnedList> made;
    made.reserve(chains.size());
    for (const Chain &chain : chains) {
        made.push_back(chainList(chain, lines, tol));
        if (!made.back()) return false;
    }
    LibraryArray<tsLinkedList *> array = allocateLibraryArray<tsLinkedList *>(made.size());
    if (!array) return false;
    for (size_t i = 0; i < made.size(); ++i)
        array[i] = made[i].release();
    *lists = array.release();
    *listCount = static_cast<int32_t>(made.size());
    return true;
}

}  // namespace

}  // namespace tessar::detail

using namespace tessar::detail;

int32_t tsJoinLines_linesDline3d(int32_t n, const tsLine *lines, double tol, int32_t *listCount,
                                 tsLinkedList ***lists)
{
    // The array held on entry is freed (the lists in it stay the caller's).
    if (*lists) tsMem_free(*lists);
    *lists = nullptr;
    *listCount = 0;
    if (n < 1 || !lines) return TESSAR_FAILURE;
    if (tol < 0.0) tol = 0.0;
    try {
        const std::span<const tsLine> given{lines, static_cast<size_t>(n)};
        std::vector<LineEnd> ends = makeSortedEnds(given);
        linkDegenerateLines(ends);
        linkNearestPartners(ends, tol);
        const std::vector<Chain> chains = walkChains(ends);
        return handOverChains(chains, given, tol, listCount, lists) ? 0 : TESSAR_FAILURE;
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}
