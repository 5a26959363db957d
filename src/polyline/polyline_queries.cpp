// Queries on a whole polyline: the bounding box, the checks of the order of
// abscissas, the clean-up of repeated vertices, the search of the interval
// holding an abscissa and the area of a closed outline.
#include <tessar/memory.h>
#include <tessar/pointarray.h>
#include <tessar/polyline.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

// The abscissa of vertex i of an array of plane or space points.
double abscissaOf(const void *points, bool is3d, std::int32_t i)
{
    return is3d ? static_cast<const dpoint3d *>(points)[i].x : static_cast<const dpoint2d *>(points)[i].x;
}

}  // namespace

/* ---- Bounding box ---- */

void UTMAT_RecupererEnglobantPolyligne(const dpoint2d *pts, int32_t n, dpoint2d *min, dpoint2d *max)
{
    enterKernel();
    if (failIfNull(pts, min, max)) return;
    *min = pts[0];
    *max = pts[0];
    for (int32_t i = 1; i < n; ++i) {
        if (pts[i].x < min->x) min->x = pts[i].x;
        if (pts[i].y < min->y) min->y = pts[i].y;
        if (pts[i].x > max->x) max->x = pts[i].x;
        if (pts[i].y > max->y) max->y = pts[i].y;
    }
}

/* ---- Order of the abscissas ---- */

// The general direction is toward increasing x only when the last vertex lies
// strictly right of the first; a polyline with equal end abscissas counts as
// running back, so any rise in it by more than tol is a retour. A polyline
// that runs wholly backward has no retour.
void UTMAT_TesterRetourEnAbscissePolyligne(const dpoint2d *pts, int32_t n, double tol, int32_t *retour)
{
    enterKernel();
    if (failIfNull(pts)) return;
    const bool forward = pts[n - 1].x > pts[0].x;
    for (int32_t i = 1; i < n; ++i) {
        const bool against = forward ? inf(pts[i].x, pts[i - 1].x, tol) : sup(pts[i].x, pts[i - 1].x, tol);
        if (against) {
            *retour = 1;
            return;
        }
    }
    *retour = 0;
}

// One direction only: a step back by more than tol fails; equal abscissas
// and steps back within tol pass.
void UTMAT_VerifierCroissanceAbscissePolyligne(const dpoint2d *pts, int32_t n, double tol, int32_t *croissant)
{
    enterKernel();
    if (failIfNull(pts)) return;
    *croissant = 0;
    for (int32_t i = 1; i < n; ++i)
        if (inf(pts[i].x, pts[i - 1].x, tol)) return;
    *croissant = 1;
}

/* ---- Repeated vertices ---- */

// Each vertex identical to the one kept before it is removed, and the kept
// vertex stays the reference, so a run collapses to its first vertex even
// when the run drifts. The table shrinks block by block as it goes; on a
// table failure the work stops with the removals made so far.
void UTMAT_PurgerPolyligne(dpoint2d **pts, int32_t *n, double tol)
{
    enterKernel();
    int32_t i = 0;
    while (i < *n - 1) {
        if (pointsIdentiques((*pts)[i], (*pts)[i + 1], tol)) {
            MEM_SupprimerElementDansTableau(reinterpret_cast<void **>(pts), sizeof(dpoint2d), n, i + 1);
            if (tableFailed()) return;
        } else {
            ++i;
        }
    }
}

/* ---- Interval holding an abscissa ---- */

// Binary search on vertices monotonic in x, descending when the last vertex
// lies strictly left of the first. A vertex within the precision of x is the
// answer itself, the last vertex included; otherwise the search narrows to
// the two vertices around x, or runs off one end.
void UTMAT_RecupererDebutIntervalleContenantAbscisse(const void *points, uint8_t is3d, int32_t n, double x,
                                                     int32_t *index, int32_t *found)
{
    enterKernel();
    const bool space = is3d != 0;
    const double prec = utmatCalculPrec;
    *found = 0;
    int32_t lo = 0;
    int32_t hi = n - 1;
    if (hi < 0) return;
    const bool descending = abscissaOf(points, space, n - 1) < abscissaOf(points, space, 0);
    while (lo <= hi) {
        const int32_t mid = (lo + hi) / 2;
        const double xMid = abscissaOf(points, space, mid);
        if (egal(x, xMid, prec)) {
            *index = mid;
            *found = 1;
            return;
        }
        const bool left = descending ? sup(x, xMid, prec) : inf(x, xMid, prec);
        if (left)
            hi = mid - 1;
        else
            lo = mid + 1;
    }
    if (hi >= 0 && lo < n) {
        *index = lo - 1;
        *found = 1;
    }
}

/* ---- Area ---- */

// The area of the point arrays, over a space copy with z = 0. That area adds
// no closing edge: a closed outline repeats its first vertex as its last.
void UTMAT_CalculerSurfacePolygone(const dpoint2d *pts, int32_t n, double *area)
{
    enterKernel();
    dpoint3d *ring = nullptr;
    MEM_CreerTableau(reinterpret_cast<void **>(&ring), sizeof(dpoint3d), n);
    if (tableFailed()) return;
    for (int32_t i = 0; i < n; ++i)
        ring[i] = {pts[i].x, pts[i].y, 0.0};
    tsPointArray_computeSimplePolygonArea2d(ring, n, area);
    // An empty polyline has no table (the creation leaves null) and nothing to free.
    if (ring == nullptr) return;
    MEM_LibererTableau(reinterpret_cast<void **>(&ring));
    tableFailed();
}
