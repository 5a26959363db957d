// Cutting the loops of a string at its knots. Every vertex carries a mark:
// 0 for a plain vertex, k for a passage through knot k, -1 for a vertex to
// be dropped. A loop runs from one passage of a knot to the next; the
// vertex of the first passage stays, as a plain vertex, and the loop after
// it goes. In a closed string the shorter of the two parts goes.
#include <cstdint>
#include <functional>
#include <limits>
#include <unordered_map>

#include <tessar/mathapi.h>

#include "linestring/linestring.hpp"

namespace tessar::detail {

namespace {

constexpr int32_t kPlain = 0;
constexpr int32_t kDropped = -1;
constexpr size_t kNone = std::numeric_limits<size_t>::max();

// A plan position compared exactly; -0.0 and 0.0 are one position.
struct PlanKey {
    double x;
    double y;
    bool operator==(const PlanKey &) const = default;
};

struct PlanKeyHash {
    size_t operator()(const PlanKey &k) const noexcept
    {
        const std::hash<double> hash;
        return hash(k.x + 0.0) * 31u ^ hash(k.y + 0.0);
    }
};

class LoopCutter
{
  public:
    LoopCutter(std::span<dpoint3d> points, std::span<const tsStringIntersection> knots)
        : points_(points), mark_(points.size(), kPlain)
    {
        markKnots(knots);
        // Step 2.
        closed_ = points.front().x == points.back().x && points.front().y == points.back().y;
    }

    // Step 5: the passes are repeated until one changes nothing.
    int32_t run()
    {
        bool changed = false;
        do {
            changed = false;
            while (cutNeighbouringPassages())
                changed = true;
            if (giveUpNestedKnots()) changed = true;
            while (cutSameKnotPassages())
                changed = true;
        } while (changed);
        return keepMarked();
    }

  private:
    // Step 1: knots at one position are one knot, numbered from 1 in the
    // order of the list; its first two passages among the vertices, by exact
    // x and y, carry its number.
    void markKnots(std::span<const tsStringIntersection> knots)
    {
        std::unordered_map<PlanKey, int32_t, PlanKeyHash> number;
        for (const tsStringIntersection &k : knots)
            number.try_emplace({k.x, k.y}, static_cast<int32_t>(number.size()) + 1);
        std::vector<int32_t> passages(number.size() + 1, 0);
        for (size_t v = 0; v < points_.size(); ++v) {
            const auto found = number.find({points_[v].x, points_[v].y});
            if (found == number.end() || passages[static_cast<size_t>(found->second)] == 2) continue;
            ++passages[static_cast<size_t>(found->second)];
            mark_[v] = found->second;
        }
    }

    // The next vertex after from with a knot mark, or with the given one.
    size_t nextMarked(size_t from) const
    {
        for (size_t v = from + 1; v < mark_.size(); ++v)
            if (mark_[v] > 0) return v;
        return kNone;
    }
    size_t nextWithMark(size_t from, int32_t mark) const
    {
        for (size_t v = from + 1; v < mark_.size(); ++v)
            if (mark_[v] == mark) return v;
        return kNone;
    }

    // Plan length of the kept vertices from one kept vertex to another.
    double keptLength(size_t from, size_t to) const
    {
        double length = 0.0;
        size_t previous = from;
        for (size_t v = from + 1; v <= to; ++v) {
            if (mark_[v] == kDropped) continue;
            length += tsMath_distance2d(points_[previous].x, points_[previous].y, points_[v].x, points_[v].y);
            previous = v;
        }
        return length;
    }

    size_t firstKept() const
    {
        size_t v = 0;
        while (mark_[v] == kDropped)
            ++v;
        return v;
    }
    size_t lastKept() const
    {
        size_t v = mark_.size() - 1;
        while (mark_[v] == kDropped)
            --v;
        return v;
    }

    // Step 3's cut of the loop from passage p to passage q: p stays as a
    // plain vertex and all after it up to q go. In a closed string the loop
    // is first weighed against the rest: if it is at least as long, the rest
    // goes instead, and p and q, one position, close what is left.
    void cutLoop(size_t p, size_t q)
    {
        if (closed_) {
            const double loop = keptLength(p, q);
            const double rest = keptLength(firstKept(), p) + keptLength(q, lastKept());
            if (loop >= rest) {
                for (size_t v = 0; v < p; ++v)
                    mark_[v] = kDropped;
                for (size_t v = q + 1; v < mark_.size(); ++v)
                    mark_[v] = kDropped;
                mark_[p] = kPlain;
                mark_[q] = kPlain;
                return;
            }
        }
        mark_[p] = kPlain;
        for (size_t v = p + 1; v <= q; ++v)
            mark_[v] = kDropped;
    }

    // Step 3, one pass: two passages of one knot with no other knot between
    // them enclose a loop.
    bool cutNeighbouringPassages()
    {
        bool changed = false;
        for (size_t p = 0; p < mark_.size(); ++p) {
            if (mark_[p] <= 0) continue;
            const size_t q = nextMarked(p);
            if (q == kNone || mark_[q] != mark_[p]) continue;
            cutLoop(p, q);
            changed = true;
        }
        return changed;
    }

    // Step 4, the nested pattern a, b, ..., b, a: knot a is given up at its
    // first passage, so that the next pass cuts the loop of b alone.
    bool giveUpNestedKnots()
    {
        bool changed = false;
        for (size_t p = 0; p < mark_.size(); ++p) {
            if (mark_[p] <= 0) continue;
            const size_t q = nextMarked(p);
            if (q == kNone) continue;
            const size_t r = nextWithMark(q, mark_[q]);
            if (r == kNone) continue;
            const size_t s = nextMarked(r);
            if (s == kNone || mark_[s] != mark_[p]) continue;
            mark_[p] = kPlain;
            changed = true;
        }
        return changed;
    }

    // Step 4's pass: each passage is cut with the next passage of its own
    // knot, whatever other knots lie between.
    bool cutSameKnotPassages()
    {
        bool changed = false;
        for (size_t p = 0; p < mark_.size(); ++p) {
            if (mark_[p] <= 0) continue;
            const size_t q = nextWithMark(p, mark_[p]);
            if (q == kNone) continue;
            cutLoop(p, q);
            changed = true;
        }
        return changed;
    }

    // Step 6: the vertices not dropped move down in order.
    int32_t keepMarked()
    {
        size_t kept = 0;
        for (size_t v = 0; v < points_.size(); ++v)
            if (mark_[v] != kDropped) points_[kept++] = points_[v];
        return static_cast<int32_t>(kept);
    }

    std::span<dpoint3d> points_;
    std::vector<int32_t> mark_;
    bool closed_ = false;
};

}  // namespace

int32_t cutKnotLoops(std::span<dpoint3d> points, std::span<const tsStringIntersection> knots)
{
    if (points.empty()) return 0;
    return LoopCutter(points, knots).run();
}

}  // namespace tessar::detail
