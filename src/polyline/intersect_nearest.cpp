// One result out of many: the meeting of a segment or a polyline with a
// polyline that lies nearest to a reference point, and the first meeting of
// two polylines along polyline 1. Each function gathers every result, up to
// 50 of each kind, into a table set of its own, then picks.
#include <tessar/polyline.h>

#include "frame/kernel.hpp"
#include "polyline/intersect.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

// The work tables of each picking function, one set each.
InternalTables segmentNearestTables;
InternalTables polylineNearestTables;
InternalTables firstTables;

// Larger than any distance or abscissa that a figure can give.
constexpr double kNoBest = 1e31;

// The entry chosen among one kind of result.
struct Best {
    double value = kNoBest;
    int32_t index = -1;
};

// The gathered entries nearest to ref, by strict improvement in table order,
// so that the first of equally near entries stays. With skipNearRef, an entry
// within tol of ref is passed over. The search ends once an entry within tol
// of ref is taken.
Best nearestTo(const dpoint2d &ref, const dpoint2d *points, int32_t n, double tol, bool skipNearRef)
{
    Best best;
    for (int32_t k = 0; k < n; ++k) {
        if (skipNearRef && pointsIdentiques(points[k], ref, tol)) continue;
        const double d = planDistance(ref, points[k]);
        if (d < best.value) best = {d, k};
        if (egal(best.value, 0.0, tol)) break;
    }
    return best;
}

// The gathered entry of strictly smallest abscissa, the first one on a tie.
Best smallest(const double *abscissas, int32_t n)
{
    Best best;
    for (int32_t k = 0; k < n; ++k)
        if (abscissas[k] < best.value) best = {abscissas[k], k};
    return best;
}

// The outputs of a picking function.
struct Pick {
    dpoint2d *p;
    double *abs1;
    double *abs2;
    int32_t *foundPoint;
    int32_t *foundOverlap;

    void clear() const noexcept { *foundPoint = *foundOverlap = 0; }

    // An overlap end wins only when strictly better than the isolated point;
    // with no entry taken at all nothing is written.
    void choose(const InternalTables &t, const ResultTables &asked, Best point, Best end) const
    {
        if (point.index < 0 && end.index < 0) return;
        const bool overlapWins = end.value < point.value;
        const int32_t k = overlapWins ? end.index : point.index;
        const dpoint2d *points = overlapWins ? t.overlapPoints.data() : t.points.data();
        const double *a1 = overlapWins ? t.overlapAbs1.data() : t.abs1.data();
        const double *a2 = overlapWins ? t.overlapAbs2.data() : t.abs2.data();
        *(overlapWins ? foundOverlap : foundPoint) = 1;
        *p = points[k];
        if (abs1 != nullptr && asked.abs1 != nullptr) *abs1 = a1[k];
        if (abs2 != nullptr && asked.abs2 != nullptr) *abs2 = a2[k];
    }
};

// Two polylines into the given table set, through the full polyline walk.
void gatherPolylines(const dpoint2d *pts1, int32_t n1, const dpoint2d *pts2, int32_t n2, double tol,
                     InternalTables &t, const ResultTables &asked, int32_t &found, int32_t &foundOverlap)
{
    const ParamIntersectionPolylignes param{pts1, n1, pts2, n2, tol, kInternalCapacity, nullptr, nullptr};
    const ResultTables points = t.pointTables(asked);
    const ResultTables ends = t.overlapTables(asked);
    UTMAT_CalculerIntersectionPolylignePolyligne(&param, &found, &t.count, points.points, points.abs1,
                                                 points.abs2, &foundOverlap, &t.overlapCount, ends.points,
                                                 ends.abs1, ends.abs2);
}

// Picks the result nearest to ref among those gathered in t.
void pickNearest(const Pick &out, const InternalTables &t, const ResultTables &asked, const dpoint2d &ref,
                 double tol, int32_t acceptRef)
{
    const Best point = nearestTo(ref, t.points.data(), t.count, tol, acceptRef == 0);
    // acceptRef does not apply to overlap ends.
    const Best end = nearestTo(ref, t.overlapPoints.data(), 2 * t.overlapCount, tol, false);
    out.choose(t, asked, point, end);
}

}  // namespace

/* ---- Nearest to a reference point ---- */

// With acceptRef 0 a result within tol of ref is not taken: a caller walking
// along a figure thus finds the next meeting, not the one it stands on.
void UTMAT_CalculerIntersectionSegmentPolylignePlusProche(const dpoint2d *segment, const dpoint2d *pts,
                                                          int32_t n, double tol, const dpoint2d *ref,
                                                          int32_t acceptRef, dpoint2d *p, double *abs1,
                                                          double *abs2, int32_t *foundPoint,
                                                          int32_t *foundOverlap)
{
    enterKernel();
    const Pick out{p, abs1, abs2, foundPoint, foundOverlap};
    out.clear();
    InternalTables &t = segmentNearestTables;
    const ResultTables asked{p, abs1, abs2};
    const ResultTables points = t.pointTables(asked);
    const ResultTables ends = t.overlapTables(asked);
    int32_t found = 0, foundOverlapAny = 0;
    UTMAT_CalculerIntersectionSegmentPolyligne(segment, pts, n, tol, kInternalCapacity, &found, &t.count,
                                               points.points, points.abs1, points.abs2, &foundOverlapAny,
                                               &t.overlapCount, ends.points, ends.abs1, ends.abs2);
    if (nestedFailed() || (!found && !foundOverlapAny)) return;
    pickNearest(out, t, asked, *ref, tol, acceptRef);
}

void UTMAT_CalculerIntersectionPolylignePolylignePlusProche(const dpoint2d *pts1, int32_t n1,
                                                            const dpoint2d *pts2, int32_t n2, double tol,
                                                            const dpoint2d *ref, int32_t acceptRef,
                                                            dpoint2d *p, double *abs1, double *abs2,
                                                            int32_t *foundPoint, int32_t *foundOverlap)
{
    enterKernel();
    const Pick out{p, abs1, abs2, foundPoint, foundOverlap};
    out.clear();
    InternalTables &t = polylineNearestTables;
    const ResultTables asked{p, abs1, abs2};
    int32_t found = 0, foundOverlapAny = 0;
    gatherPolylines(pts1, n1, pts2, n2, tol, t, asked, found, foundOverlapAny);
    if (nestedFailed() || (!found && !foundOverlapAny)) return;
    pickNearest(out, t, asked, *ref, tol, acceptRef);
}

/* ---- First along polyline 1 ---- */

// The abscissas on polyline 1 are always gathered, since they decide.
void UTMAT_CalculerPremiereIntersectionPolyligneAvecPolyligne(const dpoint2d *pts1, int32_t n1,
                                                              const dpoint2d *pts2, int32_t n2, double tol,
                                                              dpoint2d *p, double *abs1, double *abs2,
                                                              int32_t *foundPoint, int32_t *foundOverlap)
{
    enterKernel();
    const Pick out{p, abs1, abs2, foundPoint, foundOverlap};
    out.clear();
    InternalTables &t = firstTables;
    const ResultTables asked{p, t.abs1.data(), abs2};
    int32_t found = 0, foundOverlapAny = 0;
    gatherPolylines(pts1, n1, pts2, n2, tol, t, asked, found, foundOverlapAny);
    if (nestedFailed() || (!found && !foundOverlapAny)) return;
    out.choose(t, asked, smallest(t.abs1.data(), t.count),
               smallest(t.overlapAbs1.data(), 2 * t.overlapCount));
}
