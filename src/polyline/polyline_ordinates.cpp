// Ordinates read off a polyline at given abscissas: a forward merge of a
// sorted run of abscissas with a profile increasing in x, resumable over
// profiles placed end to end, and the nearest ordinate on any polyline.
#include <cmath>

#include <tessar/polyline.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

// The nearest-ordinate search starts farther than any real distance.
constexpr double kFarthest = 1e31;

// The element at x on the last vertex, within tol: it takes that vertex's
// level and is the last one dealt with.
bool takeLastVertex(const dpoint2d *pts, int32_t n, dpoint2d &q, int32_t &done, int32_t index, double tol,
                    int32_t &last)
{
    if (!egal(q.x, pts[n - 1].x, tol)) return false;
    q.y = pts[n - 1].y;
    done = 1;
    last = index;
    return true;
}

// The candidate ordinate of segment k - 1..k at qx: a near-vertical segment
// gives the end nearer to qy (the first end when they are as near within
// tol), an abscissa on an end gives that end, anything else the line.
double candidateOrdinate(const dpoint2d &p0, const dpoint2d &p1, double qx, double qy, double tol)
{
    if (egal(p0.x, p1.x, tol)) return inf(std::fabs(p0.y - qy), std::fabs(p1.y - qy), tol) ? p0.y : p1.y;
    if (egal(qx, p0.x, tol)) return p0.y;
    if (egal(qx, p1.x, tol)) return p1.y;
    return ordinateOnSegment(p0, p1, qx);
}

}  // namespace

/* ---- A sorted run of abscissas on a profile ---- */

// One forward pass over both sorted sequences. Elements before the profile
// are passed over (last follows them, so that a sweep resumes after them);
// the first element beyond it ends the pass with last on the element before.
void UTMAT_CalculerTableauYSurPolyligne(const dpoint2d *pts, int32_t n, dpoint2d *xy, int32_t *done,
                                        int32_t count, int32_t start, double tol, int32_t *last)
{
    enterKernel();
    if (failIfNull(pts)) return;
    for (int32_t i = start; i < count; ++i)
        done[i] = 0;
    if (start >= count) return;

    int32_t i = start;
    while (inf(xy[i].x, pts[0].x, tol)) {
        *last = i;
        if (++i == count) return;
    }
    if (sup(xy[i].x, pts[n - 1].x, tol)) {
        *last = i - 1;
        return;
    }
    if (takeLastVertex(pts, n, xy[i], done[i], i, tol, *last)) return;

    // The segment that starts the element's interval: the last vertex not
    // right of it within tol, stopping at the first that is.
    int32_t k = 0;
    while (k + 1 < n && supOuEgal(xy[i].x, pts[k + 1].x, tol))
        ++k;

    for (;;) {
        xy[i].y = egal(xy[i].x, pts[k].x, tol) ? pts[k].y : ordinateOnSegment(pts[k], pts[k + 1], xy[i].x);
        done[i] = 1;
        *last = i;
        if (i == count - 1) return;
        if (!inf(xy[i + 1].x, pts[k + 1].x, tol)) {
            while (k + 1 < n && supOuEgal(xy[i + 1].x, pts[k + 1].x, tol))
                ++k;
            if (k == n - 1) {
                // Past the last segment: only an element on the last vertex is covered.
                takeLastVertex(pts, n, xy[i + 1], done[i + 1], i + 1, tol, *last);
                return;
            }
        }
        ++i;
    }
}

/* ---- Nearest ordinate on any polyline ---- */

// Every segment whose x range holds the element within tol offers a
// candidate, in array order; the candidate nearest to the element's own y
// wins, the first of equally near ones staying. A segment that runs backward
// by more than twice tol never holds anything.
void UTMAT_CalculerTableauYSurPolylignePlusProche(const dpoint2d *pts, int32_t n, dpoint2d *xy, int32_t *done,
                                                  int32_t count, double tol)
{
    enterKernel();
    if (failIfNull(pts)) return;
    for (int32_t e = 0; e < count; ++e)
        done[e] = 0;
    for (int32_t e = 0; e < count; ++e) {
        const double qx = xy[e].x;
        const double qy = xy[e].y;
        double best = qy;
        double bestDistance = kFarthest;
        for (int32_t k = 1; k < n; ++k) {
            if (!appartenirAIntFerme(qx, pts[k - 1].x, pts[k].x, tol)) continue;
            done[e] = 1;
            const double c = candidateOrdinate(pts[k - 1], pts[k], qx, qy, tol);
            if (std::fabs(c - qy) < bestDistance) {
                bestDistance = std::fabs(c - qy);
                best = c;
            }
        }
        if (done[e]) xy[e].y = best;
    }
}
