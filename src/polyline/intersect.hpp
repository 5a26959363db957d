// The result tables of the intersection functions and the steps that fill
// them, shared by the segment, polyline and nearest-result layers.
//
// Two kinds of result never mix: an isolated point (one point, one abscissa
// on each figure) and an overlap (a shared stretch of positive length: two
// end points, start and end in the direction of figure 1, and two abscissas
// on each figure). The caller's tables are plain arrays of a capacity nbMax
// (twice that for overlap ends), never checked; nothing here allocates.
#pragma once

#include <array>
#include <cstdint>

#include <tessar/polyline.h>
#include <tessar/types.h>

namespace tessar::detail {

/* ---- Result groups ---- */

// The three optional tables of one kind of result. For overlaps every entry
// takes two rows: start at [2k], end at [2k + 1].
struct ResultTables {
    dpoint2d *points = nullptr;
    double *abs1 = nullptr;  // abscissas on figure 1
    double *abs2 = nullptr;  // abscissas on figure 2

    bool any() const noexcept { return points != nullptr || abs1 != nullptr || abs2 != nullptr; }
};

// A result group as the caller hands it over: the found flag (required), the
// count (optional) and the tables. Without a count no table is filled, so
// the tables of such a group are dropped at once and never asked for.
struct ResultGroup {
    std::int32_t *found;
    std::int32_t *count;
    ResultTables tables;

    ResultGroup(std::int32_t *found_, std::int32_t *count_, dpoint2d *points, double *abs1,
                double *abs2) noexcept
        : found(found_), count(count_),
          tables(count_ != nullptr ? ResultTables{points, abs1, abs2} : ResultTables{})
    {
    }

    // The flag and the count are cleared on entry of every walk.
    void clear() const noexcept
    {
        *found = 0;
        if (count != nullptr) *count = 0;
    }

    // A walk may stop once the flag is set and the count, if given, is full.
    bool complete(std::int32_t nbMax) const noexcept
    {
        return *found != 0 && (count == nullptr || *count >= nbMax);
    }
};

/* ---- Adding results ---- */

// Appends nbNew isolated points from src to the group's tables, each
// abscissa plus its base. A point identical within tol to any point already
// stored is dropped, the first stored one winning: a meeting on a shared
// vertex comes from the two segments around it and is kept once. Returns as
// soon as the count equals nbMax.
void utmat_AjouterIntersectionsPoints(const ResultGroup &dest, double tol, std::int32_t nbMax,
                                      std::int32_t nbNew, double base1, double base2,
                                      const ResultTables &src);

// Appends nbNew overlaps (two rows each) the same way, with no search for
// duplicates: an overlap running through a vertex stays two overlaps.
void utmat_AjouterIntersectionsTroncons(const ResultGroup &dest, std::int32_t nbMax, std::int32_t nbNew,
                                        double base1, double base2, const ResultTables &src);

// Steps common to every walk: a hit sets the flag; while the count is below
// nbMax the hit is merged into the tables, or, with no table wanted, the
// count simply rises by one (so a bare count counts hits, not points).
void gatherPoints(const ResultGroup &dest, double tol, std::int32_t nbMax, std::int32_t nbNew, double base1,
                  double base2, const ResultTables &src);
void gatherOverlaps(const ResultGroup &dest, std::int32_t nbMax, std::int32_t nbNew, double base1,
                    double base2, const ResultTables &src);

/* ---- The library's own tables ---- */

inline constexpr std::int32_t kInternalCapacity = 50;

// A fixed set of result tables of 50 entries, held by the library for the
// functions that gather into a table of their own before they merge or pick
// one result. One process-wide instance per such function; not re-entrant.
struct InternalTables {
    std::int32_t count;
    std::int32_t overlapCount;
    std::array<dpoint2d, kInternalCapacity> points;
    std::array<double, kInternalCapacity> abs1;
    std::array<double, kInternalCapacity> abs2;
    std::array<dpoint2d, 2 * kInternalCapacity> overlapPoints;
    std::array<double, 2 * kInternalCapacity> overlapAbs1;
    std::array<double, 2 * kInternalCapacity> overlapAbs2;

    // The isolated-point tables of this set that match the non-null ones of wanted.
    ResultTables pointTables(const ResultTables &wanted) noexcept
    {
        return {wanted.points ? points.data() : nullptr, wanted.abs1 ? abs1.data() : nullptr,
                wanted.abs2 ? abs2.data() : nullptr};
    }
    // The same for the overlap tables.
    ResultTables overlapTables(const ResultTables &wanted) noexcept
    {
        return {wanted.points ? overlapPoints.data() : nullptr, wanted.abs1 ? overlapAbs1.data() : nullptr,
                wanted.abs2 ? overlapAbs2.data() : nullptr};
    }
};

}  // namespace tessar::detail
