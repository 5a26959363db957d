// Where two segments meet, and where half-lines meet a segment or each
// other. The segment pair is the only geometry of the intersection layers:
// every polyline walk classifies its pairs here.
#include <algorithm>
#include <cmath>

#include <tessar/polyline.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

// A segment as the classification sees it: its start, its length and its
// unit direction, and the line that carries it.
struct Carrier {
    dpoint2d start;
    double length;
    dpoint2d unit;
    UTMAT_Droite line;
};

// Builds the carrier of the segment from s to e. The line comes from
// UTMAT_CalculerDroitePtVecteur, which refuses the zero vector of a segment
// of zero length: the error word is then set and false returned.
bool makeCarrier(const dpoint2d &s, const dpoint2d &e, Carrier &out)
{
    out.start = s;
    UTMAT_CalculerVecteur(&s, &e, &out.unit);
    out.length = UTMAT_CalculerNormeVecteur(&out.unit);
    UTMAT_NormerVecteur(&out.unit);
    UTMAT_CalculerDroitePtVecteur(&s, &out.unit, &out.line);
    return !nestedFailed();
}

// The abscissa of q along the carrier: u dotted with q - start.
double along(const Carrier &c, const dpoint2d &q)
{
    const dpoint2d v{q.x - c.start.x, q.y - c.start.y};
    return UTMAT_CalculerProduitScalaire(&c.unit, &v);
}

template <class T> void put(T *out, std::size_t k, T value)
{
    if (out != nullptr) out[k] = value;
}

// Segment 2 projected on segment 1, for two segments on the same line: e is
// the length of segment 1 as the dot product gives it, tMin and tMax the
// smaller and larger projections of c and d, reversed when c projects beyond d.
struct Projection {
    double e;
    double tMin;
    double tMax;
    bool reversed;
};

Projection project(const Carrier &s1, const dpoint2d &b, const dpoint2d &c, const dpoint2d &d)
{
    const double e = along(s1, b);
    const double pc = along(s1, c);
    const double pd = along(s1, d);
    return {e, std::min(pc, pd), std::max(pc, pd), pc > pd};
}

// The two ends of a shared stretch. Each end is an end of segment 1 when
// segment 2 reaches it within tol, otherwise an end of segment 2.
void overlapEnds(const dpoint2d &a, const dpoint2d &b, const dpoint2d &c, const dpoint2d &d, double L1,
                 double L2, const Projection &j, double tol, dpoint2d *ends, double *abs1, double *abs2)
{
    if (infOuEgal(j.tMin, 0.0, tol)) {
        put(ends, 0, a);
        put(abs1, 0, 0.0);
        put(abs2, 0, j.reversed ? j.tMax : std::fabs(j.tMin));
    } else {
        put(ends, 0, j.reversed ? d : c);
        put(abs1, 0, j.tMin);
        put(abs2, 0, j.reversed ? L2 : 0.0);
    }
    if (supOuEgal(j.tMax, j.e, tol)) {
        put(ends, 1, b);
        put(abs1, 1, L1);
        // Kept as it stands: tMin enters the sum signed, also where segment 2
        // reaches back beyond a, so that this abscissa is right only where
        // segment 2 starts level with a.
        put(abs2, 1, j.reversed ? L2 - (j.tMin + L1) : j.tMin + L1);
    } else {
        put(ends, 1, j.reversed ? c : d);
        put(abs1, 1, j.tMax);
        put(abs2, 1, j.reversed ? 0.0 : L2);
    }
}

}  // namespace

/* ---- Two segments ---- */

// Crossing lines give a point when it lies on both segments within tol;
// parallel lines at an offset within tol are one line, on which the segments
// share a stretch longer than tol (an overlap), touch end to end (a point),
// or miss each other.
void UTMAT_CalculerIntersectionSegmentSegment(const dpoint2d *segment1, const dpoint2d *segment2, double tol,
                                              int32_t *found, dpoint2d *p, double *abs1, double *abs2,
                                              int32_t *foundOverlap, dpoint2d *overlap, double *overlapAbs1,
                                              double *overlapAbs2)
{
    enterKernel();
    *found = 0;
    *foundOverlap = 0;
    const dpoint2d &a = segment1[0], &b = segment1[1];
    const dpoint2d &c = segment2[0], &d = segment2[1];
    Carrier s1{}, s2{};
    if (!makeCarrier(a, b, s1) || !makeCarrier(c, d, s2)) return;
    dpoint2d crossing{};
    int32_t crossings = 0;
    UTMAT_CalculerIntersection2Droite(&s1.line, &s2.line, &crossing, &crossings);
    if (nestedFailed()) return;
    const double L1 = s1.length, L2 = s2.length;

    if (crossings == 1) {
        // The abscissas are not clamped: they may lie up to tol outside.
        const double t1 = along(s1, crossing);
        const double t2 = along(s2, crossing);
        if (appartenirAIntFerme(t1, 0.0, L1, tol) && appartenirAIntFerme(t2, 0.0, L2, tol)) {
            *found = 1;
            put(p, 0, crossing);
            put(abs1, 0, t1);
            put(abs2, 0, t2);
        }
        return;
    }

    double offset = 0.0;
    UTMAT_CalculerDeportPtDroite(&s1.line, &c, &offset);
    if (nestedFailed() || !egal(offset, 0.0, tol)) return;

    const Projection j = project(s1, b, c, d);
    if (!infOuEgal(j.e, j.tMin, tol) && !supOuEgal(0.0, j.tMax, tol)) {
        *foundOverlap = 1;
        if (overlap == nullptr && overlapAbs1 == nullptr && overlapAbs2 == nullptr) return;
        overlapEnds(a, b, c, d, L1, L2, j, tol, overlap, overlapAbs1, overlapAbs2);
        return;
    }
    // No shared stretch: the segments may still touch end to end, b on the
    // start of segment 2, or a on its end. Both tests are made in turn.
    if (egal(j.e, j.tMin, tol)) {
        *found = 1;
        put(p, 0, b);
        put(abs1, 0, L1);
        put(abs2, 0, j.reversed ? L2 : 0.0);
    }
    if (egal(0.0, j.tMax, tol)) {
        *found = 1;
        put(p, 0, a);
        put(abs1, 0, 0.0);
        put(abs2, 0, j.reversed ? 0.0 : L2);
    }
}

/* ---- Half-lines ---- */

// Exact comparisons throughout. A non-vertical segment is taken as
// y = a.y + m (x - a.x) and cut with the half-line o + t v.
void UTMAT_CalculerIntersectionDemiDroiteAvecSegment(const dpoint2d *origin, const dpoint2d *direction,
                                                     const dpoint2d *a, const dpoint2d *b, dpoint2d *p,
                                                     int32_t *found)
{
    enterKernel();
    if (failIfNull(origin)) return;
    const dpoint2d &o = *origin, &v = *direction;
    double t = 0.0, u = 0.0;
    if (b->x != a->x) {
        const double m = (b->y - a->y) / (b->x - a->x);
        const double w = v.y - v.x * m;
        if (w == 0.0) return (void)(*found = 0);
        t = ((o.x - a->x) * m + (a->y - o.y)) / w;
        if (t < 0.0) return (void)(*found = 0);
        // Kept as it stands: v.x is added before the product by t, so the
        // position along ab is right only where o.x equals a.x (or t is 0).
        u = ((o.x - a->x) + v.x) * t / (b->x - a->x);
    } else {
        if (v.x == 0.0) return (void)(*found = 0);
        t = (a->x - o.x) / v.x;
        if (t < 0.0 || b->y == a->y) return (void)(*found = 0);
        u = (t * v.y + (o.y - a->y)) / (b->y - a->y);
    }
    if (u < 0.0 || u > 1.0) return (void)(*found = 0);
    *p = {o.x + t * v.x, o.y + t * v.y};
    *found = 1;
}

// o1 + t v1 = o2 + s v2, solved by Cramer's rule on det = v1 x v2; both
// parameters must be non-negative.
void UTMAT_CalculerIntersectionDeuxDemiDroites(const dpoint2d *origin1, const dpoint2d *direction1,
                                               const dpoint2d *origin2, const dpoint2d *direction2,
                                               dpoint2d *p, int32_t *found)
{
    enterKernel();
    if (failIfNull(origin1, origin2)) return;
    const dpoint2d &o1 = *origin1, &v1 = *direction1, &o2 = *origin2, &v2 = *direction2;
    const double det = v1.x * v2.y - v2.x * v1.y;
    if (det == 0.0) return (void)(*found = 0);
    double s = 0.0, t = 0.0;
    if (v1.x != 0.0) {
        s = ((o1.y - o2.y) * v1.x + (o2.x - o1.x) * v1.y) / det;
        t = (v2.x * s + (o2.x - o1.x)) / v1.x;
    } else {
        t = (o1.x - o2.x) * v2.y / (v1.y * v2.x) + (o2.y - o1.y) / v1.y;
        s = (o1.x - o2.x) / v2.x;
    }
    if (s < 0.0 || t < 0.0) return (void)(*found = 0);
    *p = {o1.x + t * v1.x, o1.y + t * v1.y};
    *found = 1;
}
