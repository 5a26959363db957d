// Where a point lies: on a segment, on a polyline, or above, below, before or
// beyond a run of a profile.
#include <algorithm>

#include <tessar/polyline.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

// The levels of a profile run at the abscissa px: one level on a sloping
// segment, the two ends of a vertical step that stands on px.
struct LevelsAt {
    bool found;
    double upper;
    double lower;
};

// Walks the segments first..last - 1 and takes the first that holds px: a
// vertical step exactly on px, or a segment with px from its smaller x
// (included) to its larger x (excluded).
LevelsAt levelsOnRun(const dpoint2d *pts, int32_t first, int32_t last, double px)
{
    for (int32_t k = first; k < last; ++k) {
        const dpoint2d &p0 = pts[k];
        const dpoint2d &p1 = pts[k + 1];
        if (p0.x == p1.x && p0.x == px) return {true, std::max(p0.y, p1.y), std::min(p0.y, p1.y)};
        if (px >= std::min(p0.x, p1.x) && px < std::max(p0.x, p1.x)) {
            const double y = ordinateOnSegment(p0, p1, px);
            return {true, y, y};
        }
    }
    return {false, 0.0, 0.0};
}

}  // namespace

/* ---- A point on a segment ---- */

// p is on ab when it is one of the ends within tol, or when it projects
// strictly inside ab (both dot products positive) at an offset near 0 from
// the line. A segment of zero length has zero products, so only its end
// matches.
void UTMAT_ComparerPointASegment(const dpoint2d *p, const dpoint2d *a, const dpoint2d *b, double tol,
                                 int32_t *sur)
{
    enterKernel();
    if (pointsIdentiques(*p, *a, tol) || pointsIdentiques(*p, *b, tol)) {
        *sur = 1;
        return;
    }
    const dpoint2d ab{b->x - a->x, b->y - a->y};
    const dpoint2d ap{p->x - a->x, p->y - a->y};
    const dpoint2d pb{b->x - p->x, b->y - p->y};
    const double fromA = UTMAT_CalculerProduitScalaire(&ab, &ap);
    const double toB = UTMAT_CalculerProduitScalaire(&ab, &pb);
    if (!(fromA > 0.0 && toB > 0.0)) {
        *sur = 0;
        return;
    }
    UTMAT_Droite line{};
    UTMAT_CalculerDroite2Pt(a, b, &line);
    if (nestedFailed()) return;
    double offset = 0.0;
    UTMAT_CalculerDeportPtDroite(&line, p, &offset);
    if (nestedFailed()) return;
    *sur = egal(offset, 0.0, tol) ? 1 : 0;
}

/* ---- A point on a polyline ---- */

// Segments in array order, the first match wins: a vertex gives its index
// alone, the inside of a segment gives both ends.
void UTMAT_PointSurPolyligne(const dpoint2d *pts, int32_t n, const dpoint2d *p, double tol, int32_t *index1,
                             int32_t *index2)
{
    enterKernel();
    *index1 = -1;
    *index2 = -1;
    for (int32_t i = 0; i + 1 < n; ++i) {
        if (pointsIdentiques(*p, pts[i], tol)) {
            *index1 = i;
            return;
        }
        if (pointsIdentiques(*p, pts[i + 1], tol)) {
            *index1 = i + 1;
            return;
        }
        int32_t sur = 0;
        UTMAT_ComparerPointASegment(p, &pts[i], &pts[i + 1], tol, &sur);
        if (nestedFailed()) return;
        if (sur) {
            *index1 = i;
            *index2 = i + 1;
            return;
        }
    }
}

/* ---- A point against a profile run ---- */

// Before and beyond are exact tests on x against the run's range. At exactly
// the larger end of the range the level is that of vertex last, even where
// the run goes backward and the larger x belongs to vertex first: the end of
// the range is taken, not the vertex that owns it.
void UTMAT_ComparerPositionPointPolyligne(const dpoint2d *pts, int32_t n, const dpoint2d *p, int32_t first,
                                          int32_t last, double tol, int32_t *position)
{
    enterKernel();
    if (first < 0 || first > last || last > n - 1) {
        fail();
        return;
    }
    const double lo = std::min(pts[first].x, pts[last].x);
    const double hi = std::max(pts[first].x, pts[last].x);
    if (p->x < lo) {
        *position = TESSAR_POLY_BEFORE;
        return;
    }
    if (p->x > hi) {
        *position = TESSAR_POLY_BEYOND;
        return;
    }
    const LevelsAt levels =
        p->x == hi ? LevelsAt{true, pts[last].y, pts[last].y} : levelsOnRun(pts, first, last, p->x);
    if (!levels.found) return;
    if (sup(p->y, levels.upper, tol))
        *position = TESSAR_POLY_ABOVE;
    else if (inf(p->y, levels.lower, tol))
        *position = TESSAR_POLY_BELOW;
    else
        *position = TESSAR_POLY_ON;
}
