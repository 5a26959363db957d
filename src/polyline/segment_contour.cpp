// What lies inside a closed contour: a point, by a ray toward increasing x,
// and the pieces of a segment, from the events where the contour meets the
// line of the segment.
#include <algorithm>
#include <cmath>

#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/polyline.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"
#include "polyline/segment.hpp"

namespace tessar::detail {

/* ---- A point against a contour ---- */

std::int32_t positionDansContour(const dpoint2d &p, const dpoint2d *pts, std::int32_t n, double tol) noexcept
{
    if (n < 2) return TESSAR_CONTOUR_OUTSIDE;
    std::int32_t crossings = 0;
    for (std::int32_t k = 1; k < n; ++k) {
        const dpoint2d &c = pts[k - 1];
        const dpoint2d &d = pts[k];
        if ((inf(c.x, p.x, tol) && inf(d.x, p.x, tol)) || (sup(c.y, p.y, tol) && sup(d.y, p.y, tol)) ||
            (inf(c.y, p.y, tol) && inf(d.y, p.y, tol)))
            continue;
        std::int32_t sur = 0;
        UTMAT_ComparerPointASegment(&p, &c, &d, tol, &sur);
        if (sur) return -k;
        if (c.y == p.y && d.y == p.y) continue;
        if (p.y == c.y && c.x > p.x) {
            // The ray runs through a vertex: half-open, so each passage counts once.
            if (d.y > p.y) ++crossings;
        } else if (p.y == d.y && d.x > p.x) {
            if (c.y > p.y) ++crossings;
        } else if (egal(c.y, d.y, utmatCalculPrec)) {
            ++crossings;
        } else {
            const double x = c.x + (p.y - c.y) * (d.x - c.x) / (d.y - c.y);
            if (x > p.x) ++crossings;
        }
    }
    return crossings % 2 == 1 ? TESSAR_CONTOUR_INSIDE : TESSAR_CONTOUR_OUTSIDE;
}

std::int32_t utmat_TronconSurContour(const dpoint2d &p, const dpoint2d &q, const dpoint2d *pts,
                                     std::int32_t n, double tol) noexcept
{
    const std::int32_t atP = positionDansContour(p, pts, n, tol);
    if (atP > 0) return 0;
    if (pointsIdentiques(p, q, tol)) return 1;
    const std::int32_t atQ = positionDansContour(q, pts, n, tol);
    if (atQ > 0) return 0;
    if (atP == atQ) return 1;
    const dpoint2d mid{(p.x + q.x) / 2.0, (p.y + q.y) / 2.0};
    const std::int32_t first = utmat_TronconSurContour(p, mid, pts, n, tol);
    const std::int32_t second = utmat_TronconSurContour(mid, q, pts, n, tol);
    return first == 1 && second == 1 ? 1 : 0;
}

namespace {

/* ---- The event table of a segment ---- */

enum class EventKind { Crossing, Touch, Along };
enum class EventAction { Open, Insert, Close };

// The entry made for vertex 0 of the contour when it lies on the line, kept
// between insertions so that the last edge can fall on it; the close resets it.
std::int32_t indexEvenementOuverture = 0;

// Three parallel MEM_ tables sorted by t, with the entries of a (start) and
// b (end) and the entry of the last event (cursor).
struct EventTable {
    double *t = nullptr;
    std::int32_t *crossing = nullptr;   // 1 where the contour changes side; later the parity
    std::int32_t *onContour = nullptr;  // 1 where the stretch that starts here runs along the contour
    std::int32_t count = 0;
    std::int32_t start = 0;
    std::int32_t end = 1;
    std::int32_t cursor = 0;

    bool create(double length) noexcept
    {
        MEM_CreerTableau(reinterpret_cast<void **>(&t), sizeof(double), 2);
        if (tableFailed()) return false;
        MEM_CreerTableau(reinterpret_cast<void **>(&crossing), sizeof(std::int32_t), 2);
        if (tableFailed()) return false;
        MEM_CreerTableau(reinterpret_cast<void **>(&onContour), sizeof(std::int32_t), 2);
        if (tableFailed()) return false;
        count = 2;
        t[1] = length;
        return true;
    }
    bool insertAt(std::int32_t index) noexcept
    {
        std::int32_t n = count;
        MEM_InsererElementDansTableau(reinterpret_cast<void **>(&t), sizeof(double), &n, index);
        if (tableFailed()) return false;
        n = count;
        MEM_InsererElementDansTableau(reinterpret_cast<void **>(&crossing), sizeof(std::int32_t), &n, index);
        if (tableFailed()) return false;
        MEM_InsererElementDansTableau(reinterpret_cast<void **>(&onContour), sizeof(std::int32_t), &count,
                                      index);
        return !tableFailed();
    }
    bool removeAt(std::int32_t index) noexcept
    {
        std::int32_t n = count;
        MEM_SupprimerElementDansTableau(reinterpret_cast<void **>(&t), sizeof(double), &n, index);
        if (tableFailed()) return false;
        n = count;
        MEM_SupprimerElementDansTableau(reinterpret_cast<void **>(&crossing), sizeof(std::int32_t), &n,
                                        index);
        if (tableFailed()) return false;
        MEM_SupprimerElementDansTableau(reinterpret_cast<void **>(&onContour), sizeof(std::int32_t), &count,
                                        index);
        return !tableFailed();
    }
    void release() noexcept
    {
        MEM_LibererTableau(reinterpret_cast<void **>(&t));
        MEM_LibererTableau(reinterpret_cast<void **>(&crossing));
        MEM_LibererTableau(reinterpret_cast<void **>(&onContour));
    }
};

// The segment ab as a measured line: a, the unit vector u toward b, and the
// line itself for the offsets of the contour's vertices.
struct Ray {
    dpoint2d a, b, u;
    UTMAT_Droite line;

    dpoint2d at(double t) const noexcept { return {a.x + t * u.x, a.y + t * u.y}; }
    // Plan distance from a, negative behind a.
    double signedDistance(const dpoint2d &v) const noexcept
    {
        const double d = planDistance(a, v);
        return (b.x - a.x) * (v.x - a.x) + (b.y - a.y) * (v.y - a.y) < 0.0 ? -d : d;
    }
};

bool utmat_InsererEvenementContour(double t, EventKind kind, EventAction action, EventTable &ev) noexcept
{
    std::int32_t index = 0;
    if (action == EventAction::Close) {
        // No new entry: the event falls on the entry that vertex 0 opened.
        index = indexEvenementOuverture;
        indexEvenementOuverture = 0;
    } else {
        index = ev.count;
        while (index > 0 && ev.t[index - 1] > t)
            --index;
        if (!ev.insertAt(index)) return false;
        ev.t[index] = t;
        ev.onContour[index] = index > 0 ? ev.onContour[index - 1] : ev.onContour[index + 1];
        if (index <= ev.start) ++ev.start;
        if (index <= ev.end) ++ev.end;
        if (index <= ev.cursor) ++ev.cursor;
        if (action == EventAction::Open) indexEvenementOuverture = index;
    }
    ev.crossing[index] = kind == EventKind::Crossing ? 1 : 0;
    if (kind == EventKind::Along)
        for (std::int32_t k = std::min(ev.cursor, index); k < std::max(ev.cursor, index); ++k)
            ev.onContour[k] = 1;
    ev.cursor = index;
    return true;
}

// Where a vertex lies against the line: in the band of width tol on either
// side, or beyond it on the side of positive offsets (above) or negative (below).
enum class Band { Above, In, Below };

Band bandOf(const Ray &ray, const dpoint2d &v, double tol) noexcept
{
    double offset = 0.0;
    UTMAT_CalculerDeportPtDroite(&ray.line, &v, &offset);
    if (!(std::fabs(offset) > tol)) return Band::In;
    return offset > 0.0 ? Band::Above : Band::Below;
}

// The event of an edge from p to q against the band, or false for none.
// A vertex in the band counts as lying below the line, so each passage
// through the line counts once. tLast is the t last computed (that of p when
// p is in the band) and takes the t of the event.
bool edgeEvent(const Ray &ray, const dpoint2d &p, const dpoint2d &q, Band bandP, Band bandQ, double &tLast,
               EventKind &kind) noexcept
{
    if (bandP == bandQ && bandP != Band::In) return false;  // wholly on one side
    if (bandP == Band::In && bandQ == Band::Below) return false;
    kind = EventKind::Crossing;
    if (bandP == Band::In && bandQ == Band::Above) return true;  // leaves at p
    if (bandP != Band::In && bandQ != Band::In) {
        // Crosses from one side to the other: where the edge meets the line.
        const double du = (q.y - p.y) * ray.u.x - (q.x - p.x) * ray.u.y;
        tLast = ((p.x - ray.a.x) * (q.y - p.y) - (p.y - ray.a.y) * (q.x - p.x)) / du;
        return true;
    }
    tLast = ray.signedDistance(q);
    if (bandP == Band::In)
        kind = EventKind::Along;
    else if (bandP == Band::Below)
        kind = EventKind::Touch;
    return true;
}

// Steps 3 and 4: vertex 0 opens an entry when it lies in the band; then one
// event per edge, the last edge falling on that entry when it ends in the band.
bool collectEvents(const Ray &ray, const dpoint2d *pts, std::int32_t n, double tol, EventTable &ev) noexcept
{
    double tLast = 0.0;
    Band bandP = bandOf(ray, pts[0], tol);
    if (bandP == Band::In) {
        tLast = ray.signedDistance(pts[0]);
        if (!utmat_InsererEvenementContour(tLast, EventKind::Touch, EventAction::Open, ev)) return false;
    }
    for (std::int32_t i = 0; i + 1 < n; ++i) {
        const Band bandQ = bandOf(ray, pts[i + 1], tol);
        EventKind kind = EventKind::Crossing;
        const bool event = edgeEvent(ray, pts[i], pts[i + 1], bandP, bandQ, tLast, kind);
        bandP = bandQ;
        if (!event) continue;
        const bool closing = i + 1 == n - 1 && bandQ == Band::In;
        if (!utmat_InsererEvenementContour(tLast, kind, closing ? EventAction::Close : EventAction::Insert,
                                           ev))
            return false;
    }
    return true;
}

// Step 6: stretches not yet known to run along the contour are asked.
void utmat_MarquerTronconsSurContour(const Ray &ray, const dpoint2d *pts, std::int32_t n, double tol,
                                     EventTable &ev) noexcept
{
    for (std::int32_t k = ev.start; k < ev.end; ++k)
        if (ev.onContour[k] == 0)
            ev.onContour[k] = utmat_TronconSurContour(ray.at(ev.t[k]), ray.at(ev.t[k + 1]), pts, n, tol);
}

bool selects(std::int32_t mode, bool inside, bool along) noexcept
{
    switch (mode) {
    case TESSAR_CONTOUR_PIECES_INSIDE:
        return inside && !along;
    case TESSAR_CONTOUR_PIECES_OUTSIDE:
        return !inside && !along;
    case TESSAR_CONTOUR_PIECES_INSIDE_OR_ALONG:
        return inside || along;
    case TESSAR_CONTOUR_PIECES_OUTSIDE_OR_ALONG:
        return !inside || along;
    default:
        return false;
    }
}

struct Pieces {
    dpoint2d **points;
    double **abscissas;
    std::int32_t nPoints = 0;
    std::int32_t nAbscissas = 0;

    bool add(const Ray &ray, double t) noexcept
    {
        if (!appendPoint(points, &nPoints, ray.at(t))) return false;
        MEM_EtendreTableau(reinterpret_cast<void **>(abscissas), sizeof(double), &nAbscissas);
        if (tableFailed()) return false;
        (*abscissas)[nAbscissas - 1] = t;
        return true;
    }
};

// Step 8: parity of the crossings, merge of entries one within the kernel's
// precision, then the pieces that the mode selects between start and end.
bool utmat_ExtraireTronconsSegment(const Ray &ray, std::int32_t mode, EventTable &ev, Pieces &out,
                                   std::int32_t &count) noexcept
{
    std::int32_t parity = 0;
    for (std::int32_t k = 0; k < ev.count; ++k) {
        if (ev.crossing[k] == 1) parity = 1 - parity;
        ev.crossing[k] = parity;
    }
    for (bool merged = true; merged;) {
        merged = false;
        for (std::int32_t k = 0; k + 1 < ev.count; ++k) {
            if (!egal(ev.t[k], ev.t[k + 1], utmatCalculPrec)) continue;
            if (!ev.removeAt(k)) return false;
            if (ev.start >= k + 1) --ev.start;
            if (ev.end >= k + 1) --ev.end;
            merged = true;
            break;
        }
    }
    bool open = false;
    for (std::int32_t k = ev.start; k <= ev.end; ++k) {
        const bool selected = k < ev.end && selects(mode, ev.crossing[k] == 1, ev.onContour[k] == 1);
        if (selected == open) continue;
        if (selected) ++count;
        if (!out.add(ray, ev.t[k])) return false;
        open = selected;
    }
    return true;
}

}  // namespace
}  // namespace tessar::detail

using namespace tessar::detail;

void UTMAT_PointDansContour(const dpoint2d *p, const dpoint2d *pts, int32_t n, double tol, int32_t *position)
{
    enterKernel();
    *position = positionDansContour(*p, pts, n, tol);
}

void UTMAT_SegmentDansContour(const dpoint2d *a, const dpoint2d *b, const dpoint2d *pts, int32_t n,
                              int32_t mode, double tol, dpoint2d **pieces, double **abscissas, int32_t *count)
{
    enterKernel();
    *count = 0;
    Ray ray{*a, *b, {}, {}};
    UTMAT_CalculerDroite2Pt(a, b, &ray.line);
    if (nestedFailed()) return;
    const double length = planDistance(*a, *b);
    if (egal(length, 0.0, utmatCalculPrec)) {
        *count = -1;
        return;
    }
    ray.u = {(b->x - a->x) / length, (b->y - a->y) / length};
    // On a table failure the event tables are left as they are, not freed.
    EventTable ev;
    if (!ev.create(length) || !collectEvents(ray, pts, n, tol, ev)) return;
    utmat_MarquerTronconsSurContour(ray, pts, n, tol, ev);
    Pieces out{pieces, abscissas};
    if (!utmat_ExtraireTronconsSegment(ray, mode, ev, out, *count)) return;
    ev.release();
}
