// Where a segment meets a polyline and where two polylines meet: walks over
// the segments of one figure, or of both, that classify each pair with
// UTMAT_CalculerIntersectionSegmentSegment and accumulate the curvilinear
// abscissas of the figures into the caller's tables.
#include <tessar/polyline.h>

#include "frame/kernel.hpp"
#include "polyline/intersect.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

// The work tables of the inner step of UTMAT_CalculerIntersectionPolylignePolyligne.
InternalTables innerTables;

// What one segment pair gives, and which of it is asked for: the outputs
// of the classification that the caller's groups want, null otherwise.
struct PairResult {
    int32_t found = 0;
    dpoint2d point{};
    double abs1 = 0.0, abs2 = 0.0;
    int32_t foundOverlap = 0;
    dpoint2d overlap[2]{};
    double overlapAbs1[2]{}, overlapAbs2[2]{};

    ResultTables points;
    ResultTables overlaps;

    PairResult(const ResultGroup &pt, const ResultGroup &ov) noexcept
        : points{pt.tables.points ? &point : nullptr, pt.tables.abs1 ? &abs1 : nullptr,
                 pt.tables.abs2 ? &abs2 : nullptr},
          overlaps{ov.tables.points ? overlap : nullptr, ov.tables.abs1 ? overlapAbs1 : nullptr,
                   ov.tables.abs2 ? overlapAbs2 : nullptr}
    {
    }

    // Classifies the pair; false when the segment layer fails.
    bool classify(const dpoint2d *segment1, const dpoint2d *segment2, double tol)
    {
        UTMAT_CalculerIntersectionSegmentSegment(segment1, segment2, tol, &found, points.points, points.abs1,
                                                 points.abs2, &foundOverlap, overlaps.points, overlaps.abs1,
                                                 overlaps.abs2);
        return !nestedFailed();
    }

    // The pair's results go to the caller's groups, with the given base abscissas.
    void gather(const ResultGroup &pt, const ResultGroup &ov, double tol, int32_t nbMax, double base1,
                double base2) const
    {
        if (found) gatherPoints(pt, tol, nbMax, 1, base1, base2, points);
        if (foundOverlap) gatherOverlaps(ov, nbMax, 1, base1, base2, overlaps);
    }
};

// A segment of exactly zero length gives nothing and is passed over.
bool zeroLength(const dpoint2d *segment)
{
    return pointsIdentiques(segment[0], segment[1], 0.0);
}

double segmentLength(const dpoint2d *segment)
{
    return planDistance(segment[0], segment[1]);
}

}  // namespace

/* ---- Adding results ---- */

void tessar::detail::utmat_AjouterIntersectionsPoints(const ResultGroup &dest, double tol, int32_t nbMax,
                                                      int32_t nbNew, double base1, double base2,
                                                      const ResultTables &src)
{
    const ResultTables &to = dest.tables;
    int32_t &count = *dest.count;
    for (int32_t k = 0; k < nbNew; ++k) {
        if (src.points != nullptr && to.points != nullptr) {
            bool known = false;
            for (int32_t j = 0; j < count && !known; ++j)
                known = pointsIdentiques(src.points[k], to.points[j], tol);
            if (known) continue;
        }
        const int32_t at = count++;
        if (to.points != nullptr) to.points[at] = src.points[k];
        if (to.abs1 != nullptr) to.abs1[at] = src.abs1[k] + base1;
        if (to.abs2 != nullptr) to.abs2[at] = src.abs2[k] + base2;
        if (count == nbMax) return;
    }
}

void tessar::detail::utmat_AjouterIntersectionsTroncons(const ResultGroup &dest, int32_t nbMax, int32_t nbNew,
                                                        double base1, double base2, const ResultTables &src)
{
    const ResultTables &to = dest.tables;
    int32_t &count = *dest.count;
    for (int32_t k = 0; k < nbNew; ++k) {
        const int32_t at = count++;
        for (int32_t end = 0; end < 2; ++end) {
            if (to.points != nullptr) to.points[2 * at + end] = src.points[2 * k + end];
            if (to.abs1 != nullptr) to.abs1[2 * at + end] = src.abs1[2 * k + end] + base1;
            if (to.abs2 != nullptr) to.abs2[2 * at + end] = src.abs2[2 * k + end] + base2;
        }
        if (count == nbMax) return;
    }
}

void tessar::detail::gatherPoints(const ResultGroup &dest, double tol, int32_t nbMax, int32_t nbNew,
                                  double base1, double base2, const ResultTables &src)
{
    *dest.found = 1;
    if (dest.count == nullptr || *dest.count >= nbMax) return;
    if (!dest.tables.any()) {
        ++*dest.count;
        return;
    }
    utmat_AjouterIntersectionsPoints(dest, tol, nbMax, nbNew, base1, base2, src);
}

void tessar::detail::gatherOverlaps(const ResultGroup &dest, int32_t nbMax, int32_t nbNew, double base1,
                                    double base2, const ResultTables &src)
{
    *dest.found = 1;
    if (dest.count == nullptr || *dest.count >= nbMax) return;
    if (!dest.tables.any()) {
        ++*dest.count;
        return;
    }
    utmat_AjouterIntersectionsTroncons(dest, nbMax, nbNew, base1, base2, src);
}

/* ---- A segment against a polyline ---- */

// The caller's segment is figure 1 (base abscissa 0), the polyline figure 2
// (base abscissa: its running length up to the segment in hand).
void UTMAT_CalculerIntersectionSegmentPolyligne(const dpoint2d *segment, const dpoint2d *pts, int32_t n,
                                                double tol, int32_t nbMax, int32_t *found, int32_t *count,
                                                dpoint2d *points, double *abs1, double *abs2,
                                                int32_t *foundOverlap, int32_t *overlapCount,
                                                dpoint2d *overlapPoints, double *overlapAbs1,
                                                double *overlapAbs2)
{
    enterKernel();
    const ResultGroup pt(found, count, points, abs1, abs2);
    const ResultGroup ov(foundOverlap, overlapCount, overlapPoints, overlapAbs1, overlapAbs2);
    pt.clear();
    ov.clear();
    PairResult pair(pt, ov);
    double acc = 0.0;
    for (int32_t i = 0; i + 1 < n; ++i) {
        const dpoint2d *side = &pts[i];
        if (zeroLength(side)) continue;
        if (!pair.classify(segment, side, tol)) return;
        pair.gather(pt, ov, tol, nbMax, 0.0, acc);
        if (pt.complete(nbMax) && ov.complete(nbMax)) return;
        acc += segmentLength(side);
    }
}

/* ---- Two polylines ---- */

// Each segment of polyline 1 against the whole of polyline 2, through the
// library's inner tables of 50; the inner results are then merged with base
// abscissas acc1 (polyline 1) and 0 (polyline 2 already counts from its start).
void UTMAT_CalculerIntersectionPolylignePolyligne(const ParamIntersectionPolylignes *param, int32_t *found,
                                                  int32_t *count, dpoint2d *points, double *abs1,
                                                  double *abs2, int32_t *foundOverlap, int32_t *overlapCount,
                                                  dpoint2d *overlapPoints, double *overlapAbs1,
                                                  double *overlapAbs2)
{
    enterKernel();
    const ResultGroup pt(found, count, points, abs1, abs2);
    const ResultGroup ov(foundOverlap, overlapCount, overlapPoints, overlapAbs1, overlapAbs2);
    pt.clear();
    ov.clear();
    // The inner step asks for exactly the counts and tables the caller wants.
    InternalTables &in = innerTables;
    int32_t *innerCount = count != nullptr ? &in.count : nullptr;
    int32_t *innerOverlapCount = overlapCount != nullptr ? &in.overlapCount : nullptr;
    const ResultTables innerPoints = in.pointTables(pt.tables);
    const ResultTables innerOverlaps = in.overlapTables(ov.tables);
    const int32_t innerCapacity = (count != nullptr || overlapCount != nullptr) ? kInternalCapacity : 0;
    const double tol = param->tolerance;
    const int32_t nbMax = param->nbMax;

    double acc1 = 0.0;
    for (int32_t i = 0; i + 1 < param->nbPoints1; ++i) {
        const dpoint2d *side = &param->points1[i];
        if (zeroLength(side)) continue;
        int32_t innerFound = 0, innerFoundOverlap = 0;
        UTMAT_CalculerIntersectionSegmentPolyligne(
            side, param->points2, param->nbPoints2, tol, innerCapacity, &innerFound, innerCount,
            innerPoints.points, innerPoints.abs1, innerPoints.abs2, &innerFoundOverlap, innerOverlapCount,
            innerOverlaps.points, innerOverlaps.abs1, innerOverlaps.abs2);
        if (nestedFailed()) return;
        if (innerFound) gatherPoints(pt, tol, nbMax, in.count, acc1, 0.0, innerPoints);
        if (innerFoundOverlap) gatherOverlaps(ov, nbMax, in.overlapCount, acc1, 0.0, innerOverlaps);
        if (pt.complete(nbMax) && ov.complete(nbMax)) return;
        acc1 += segmentLength(side);
    }
}

// A merge of the two segment sequences along their shared measure: a pair
// is compared only when the measure intervals of its segments meet. The
// measure steers the walk; the abscissas returned are plan lengths.
void UTMAT_CalculerIntersectionPolylignePolyligneAvecAbscisses(const ParamIntersectionPolylignes *param,
                                                               int32_t *found, int32_t *count,
                                                               dpoint2d *points, double *abs1, double *abs2,
                                                               int32_t *foundOverlap, int32_t *overlapCount,
                                                               dpoint2d *overlapPoints, double *overlapAbs1,
                                                               double *overlapAbs2)
{
    enterKernel();
    const ResultGroup pt(found, count, points, abs1, abs2);
    const ResultGroup ov(foundOverlap, overlapCount, overlapPoints, overlapAbs1, overlapAbs2);
    pt.clear();
    ov.clear();
    const dpoint2d *p1 = param->points1, *p2 = param->points2;
    const double *m1 = param->abscisses1, *m2 = param->abscisses2;
    const int32_t last1 = param->nbPoints1 - 1, last2 = param->nbPoints2 - 1;
    PairResult pair(pt, ov);
    int32_t i = 0, j = 0;
    double acc1 = 0.0, acc2 = 0.0;
    // Each advance adds the finished segment's length; false when its figure is done.
    const auto next1 = [&] {
        acc1 += segmentLength(&p1[i]);
        return ++i < last1;
    };
    const auto next2 = [&] {
        acc2 += segmentLength(&p2[j]);
        return ++j < last2;
    };

    while (i < last1 && j < last2) {
        while (m1[i + 1] < m2[j])
            if (!next1()) return;
        while (m2[j + 1] < m1[i])
            if (!next2()) return;
        // No zero-length test here: such a segment fails in the segment layer.
        if (!pair.classify(&p1[i], &p2[j], param->tolerance)) return;
        pair.gather(pt, ov, param->tolerance, param->nbMax, acc1, acc2);
        if (pt.complete(param->nbMax) && ov.complete(param->nbMax)) return;
        // The segment whose measure ends first is finished; on a tie, segment i.
        if (m1[i + 1] > m2[j + 1] ? !next2() : !next1()) return;
    }
}
