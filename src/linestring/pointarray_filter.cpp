// The horizontal and vertical tolerance filter of section data: x is the
// chainage, y the level. Points are weighed against the chord from the last
// point kept to the next point; a point may go when its offset from the
// chord, with what was already dropped around it, stays below the vertical
// tolerance, and, where a horizontal tolerance is given, it lies nearer than
// that in x to one end of the chord.
#include <cmath>
#include <new>
#include <vector>

#include <tessar/frame.h>
#include <tessar/point.h>
#include <tessar/pointarray.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// Points nearer than this in the plane are one point of the section.
constexpr double kSamePoint = 1e-6;

// A point of the compacted section: where it came from and whether it must stay.
struct SectionPoint {
    int32_t source;
    bool fixed;
};

// The chord of one step: from ref, the last point kept, to next, the point
// after the one being weighed.
struct Chord {
    dpoint3d ref;
    dpoint3d next;
    tsLine line;
};

Chord makeChord(const dpoint3d &ref, const dpoint3d &next)
{
    Chord chord{ref, next, {}};
    // A degenerate chord still gives a usable line, so the status is not read.
    tsLine_createBy2points(&chord.line, &chord.ref, &chord.next);
    return chord;
}

// Nearer than the horizontal tolerance in x to one end of the chord.
bool nearAnEnd(const Chord &chord, const dpoint3d &p, double horizontal)
{
    return std::fabs(chord.ref.x - p.x) < horizontal || std::fabs(p.x - chord.next.x) < horizontal;
}

// Decides whether p stays (true) or may go, and leaves in slot the vertical
// distance that p stands for. With an addend (what a later dropped point
// stands for), the slot grows by it first, and if the sum is still below the
// vertical tolerance the decision is made on x alone.
bool keepsPoint(const Chord &chord, const dpoint3d &p, const double *horizontal, double vertical,
                double &slot, const double *addend)
{
    // A vertical tolerance of exactly 0.0 keeps everything and measures nothing.
    if (vertical == 0.0) return true;
    if (addend) {
        slot += *addend;
        if (slot < vertical) return horizontal ? !nearAnEnd(chord, p, *horizontal) : false;
    }
    // A line with no plane direction cannot project: its offset is 0.0.
    double offset = 0.0;
    tsLine_projectPoint2d(&chord.line, nullptr, &offset, nullptr, &p);
    slot = std::fabs(offset);
    if (horizontal && std::fabs(chord.ref.x - p.x) >= *horizontal &&
        std::fabs(p.x - chord.next.x) >= *horizontal)
        return true;
    return slot >= vertical;
}

// Drops points within kSamePoint of the last kept one. A fixed duplicate of
// a point that is not fixed takes its place, so what must stay stays.
std::vector<SectionPoint> compactSection(const dpoint3d *points, const int32_t *fixed, int32_t n)
{
    const auto isFixed = [fixed](int32_t i) { return fixed != nullptr && fixed[i] != 0; };
    std::vector<SectionPoint> section;
    section.reserve(static_cast<size_t>(n));
    section.push_back({0, isFixed(0)});
    const dpoint3d *ref = &points[0];
    for (int32_t i = 1; i < n; ++i) {
        if (!tsPoint_nearEqual2d(&points[i], ref, kSamePoint)) {
            section.push_back({i, isFixed(i)});
            ref = &points[i];
        } else if (isFixed(i) && !section.back().fixed) {
            section.back() = {i, true};
            ref = &points[i];
        }
    }
    return section;
}

// Marks the compacted points that may go. The running sum is what the points
// dropped since the last kept one stand for; a point is dropped while that
// sum stays below the vertical tolerance, and every dropped point behind it
// takes on its distance. When the sum would reach the tolerance, the dropped
// points behind are weighed again against the new chord, and the first of
// them that must stay keeps the current point too.
std::vector<unsigned char> markRemovals(const dpoint3d *points, const std::vector<SectionPoint> &section,
                                        const double *horizontal, double vertical)
{
    const auto m = static_cast<int32_t>(section.size());
    const auto at = [&](int32_t i) -> const dpoint3d & {
        return points[section[static_cast<size_t>(i)].source];
    };
    std::vector<unsigned char> removed(section.size(), 0);
    std::vector<double> distance(section.size(), 0.0);
    dpoint3d ref = at(0);
    ref.z = 0.0;
    double running = 0.0;
    for (int32_t i = 1; i + 1 < m; ++i) {
        const dpoint3d &p = at(i);
        const Chord chord = makeChord(ref, at(i + 1));
        double &own = distance[static_cast<size_t>(i)];
        const bool keep = keepsPoint(chord, p, horizontal, vertical, own, nullptr);
        if (!keep && !section[static_cast<size_t>(i)].fixed) {
            if (running + own < vertical) {
                removed[static_cast<size_t>(i)] = 1;
                running += own;
                for (int32_t k = i - 1; k >= 0 && removed[static_cast<size_t>(k)]; --k)
                    distance[static_cast<size_t>(k)] += own;
                continue;
            }
            running = own;
            bool behindKept = false;
            for (int32_t k = i - 1; k >= 0 && removed[static_cast<size_t>(k)]; --k) {
                double &slot = distance[static_cast<size_t>(k)];
                const bool keepBehind = keepsPoint(chord, at(k), horizontal, vertical, slot, &own);
                if (slot > running) running = slot;
                // The point behind stays weighed as dropped; it is p that stays.
                if (keepBehind) {
                    behindKept = true;
                    break;
                }
            }
            if (!behindKept) {
                removed[static_cast<size_t>(i)] = 1;
                continue;
            }
        }
        running = 0.0;
        ref = p;
    }
    return removed;
}

}  // namespace

// Flags start at 1 (may go); the points of the compacted section that are
// not marked removed get 0. Duplicates dropped by the compaction keep 1.
int32_t tsPointArray_filterByHorVerTolerance2d(int32_t *flags, const dpoint3d *points, const int32_t *fixed,
                                               int32_t n, const double *horizontalTolerance,
                                               const double *verticalTolerance)
{
    if (!flags || !points) return kFail;
    for (int32_t i = 0; i < n; ++i)
        flags[i] = 1;
    if (n < 1) return 0;
    try {
        const std::vector<SectionPoint> section = compactSection(points, fixed, n);
        const std::vector<unsigned char> removed =
            markRemovals(points, section, horizontalTolerance, *verticalTolerance);
        for (size_t i = 0; i < section.size(); ++i)
            if (!removed[i]) flags[section[i].source] = 0;
    } catch (const std::bad_alloc &) {
        return kFail;
    }
    return 0;
}
