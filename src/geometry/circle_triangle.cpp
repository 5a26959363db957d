// Overlap tests of the kernel: a segment against a triangle, two triangles,
// and the segment of a circle cut off by a chord against a triangle. A
// triangle's sense is non-zero when its vertices run clockwise, so that an
// interior point has a positive power against each edge line, 0 when they
// run counter-clockwise.
//
// The tests are not symmetric textbook tests: their steps, shortcuts and
// the repeated line of the triangle test are the behaviour callers rely on.
#include <cmath>

#include <tessar/circle.h>
#include <tessar/polyline.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

// Each test keeps the highest y of its triangle in a process-wide variable of
// its own. Like the error word, they are neither locked nor per thread.
double segmentTriangleHighestY = 0.0;
double twoTrianglesHighestY = 0.0;
double circleTriangleHighestY = 0.0;

struct Box {
    double minX, minY, maxX, maxY;
};

Box boxOf(const dpoint2d &a, const dpoint2d &b)
{
    return {std::fmin(a.x, b.x), std::fmin(a.y, b.y), std::fmax(a.x, b.x), std::fmax(a.y, b.y)};
}

Box boxOf(const dpoint2d &a, const dpoint2d &b, const dpoint2d &c)
{
    const Box ab = boxOf(a, b);
    return {std::fmin(ab.minX, c.x), std::fmin(ab.minY, c.y), std::fmax(ab.maxX, c.x),
            std::fmax(ab.maxY, c.y)};
}

// The boxes lie apart beyond tol. The comparisons run in a fixed order:
// lowest x of the first against highest x of the second, lowest y against
// highest y (read from the test's scratch variable), highest x against
// lowest x, highest y against lowest y.
bool boxesApart(const Box &first, const Box &second, double &highestY, double tol)
{
    highestY = second.maxY;
    return sup(first.minX, second.maxX, tol) || sup(first.minY, highestY, tol) ||
           inf(first.maxX, second.minX, tol) || inf(first.maxY, second.minY, tol);
}

double power(const UTMAT_Droite &line, const dpoint2d &p)
{
    return line.a * p.x + line.b * p.y + line.c;
}

bool isZeroLine(const UTMAT_Droite &line)
{
    return line.a == 0.0 && line.b == 0.0 && line.c == 0.0;
}

// The unit line from p to q; false, with the error set, for p = q.
bool edgeLine(const dpoint2d &p, const dpoint2d &q, UTMAT_Droite &line)
{
    UTMAT_CalculerDroite2Pt(&p, &q, &line);
    return !nestedFailed();
}

// A point lies inside a triangle when its powers against the three edge
// lines are all above -tol for a clockwise triangle, all below tol for a
// counter-clockwise one.
bool insideByPowers(const double (&powers)[3], int32_t sense, double tol)
{
    for (const double s : powers) {
        if (sense != 0 ? !(s > -tol) : !(s < tol)) return false;
    }
    return true;
}

// The same for the triangle test, whose counter-clockwise form asks that no
// power be at least tol.
bool insideTriangleA(const double (&powers)[3], int32_t sense, double tol)
{
    for (const double s : powers) {
        if (sense != 0 ? !(s > -tol) : s >= tol) return false;
    }
    return true;
}

/* ---- Circle segment ---- */

// The figure of the circle test: the circle, and the chord that cuts it
// (none when its line is (0, 0, 0): then the whole circle counts).
struct CircleSegment {
    dpoint2d centre;
    double R;
    const dpoint2d &chordA;
    const dpoint2d &chordB;
    const UTMAT_Droite &chordLine;
    bool hasChord;
};

// The flags of an edge end: inside the circle, beyond the chord.
struct EndFlags {
    bool inside, beyond;
};

bool onChord(const CircleSegment &fig, const dpoint2d &p, double prec)
{
    int32_t sur = 0;
    UTMAT_ComparerPointASegment(&p, &fig.chordA, &fig.chordB, prec, &sur);
    return sur != 0;
}

// Both ends outside the circle, the line within reach of it. Without an end
// beyond the chord the edge meets the circle when the foot of the centre
// falls on it. Otherwise it meets the figure where it crosses the chord
// ((0, 0) stands for the crossing when there is no chord or the lines are
// parallel), or when the foot of the centre lies on the edge and on the
// circle's side of the chord.
int32_t outsideEdgeMeets(const CircleSegment &fig, const dpoint2d &p, const dpoint2d &q, EndFlags fp,
                         EndFlags fq, const UTMAT_Droite &line)
{
    const double prec = utmatCalculPrec;
    const dpoint2d pq{q.x - p.x, q.y - p.y};
    const double n = std::sqrt(pq.x * pq.x + pq.y * pq.y);
    const double inverse = 1.0 / n;
    const dpoint2d unit{pq.x * inverse, pq.y * inverse};
    const double t = (fig.centre.x - p.x) * unit.x + (fig.centre.y - p.y) * unit.y;
    if (!fp.beyond && !fq.beyond) return appartenirAIntFerme(t, 0.0, n, prec);

    dpoint2d crossing{0.0, 0.0};
    if (fig.hasChord) {
        int32_t count = 0;
        UTMAT_CalculerIntersection2Droite(&line, &fig.chordLine, &crossing, &count);
        if (nestedFailed()) return 0;
    }
    const bool crossesChord = onChord(fig, crossing, prec);
    if (nestedFailed()) return 0;
    if (crossesChord) return 1;
    const dpoint2d foot{p.x + t * unit.x, p.y + t * unit.y};
    return power(fig.chordLine, foot) >= -prec && appartenirAIntFerme(t, 0.0, n, prec);
}

// Exactly one end inside the circle: the edge leaves the circle, so it meets
// the figure unless the chord cuts it off. f tells whether the edge crosses
// the chord within it. An end p inside and on the circle's side (or outside
// and beyond) decides by f alone; otherwise a crossing at an end of the
// chord, or one off the chord, counts as a meeting.
int32_t insideEdgeMeets(const CircleSegment &fig, EndFlags fp, const UTMAT_Droite &line)
{
    const double prec = utmatCalculPrec;
    if (!fig.hasChord) return 1;
    dpoint2d crossing{0.0, 0.0};
    int32_t count = 0;
    UTMAT_CalculerIntersection2Droite(&line, &fig.chordLine, &crossing, &count);
    if (nestedFailed()) return 0;
    if (count == 0) return 1;  // parallel to the chord
    const bool f = onChord(fig, crossing, prec);
    if (nestedFailed()) return 0;
    if (fp.inside == fp.beyond) return f ? 1 : 0;
    const bool atChordEnd =
        pointsIdentiques(crossing, fig.chordA, prec) || pointsIdentiques(crossing, fig.chordB, prec);
    return atChordEnd || !f ? 1 : 0;
}

// Whether the edge p q meets the circle segment. The edge's line is built
// first, always, and left in line for the caller's last step.
int32_t edgeMeetsCircleSegment(const CircleSegment &fig, const dpoint2d &p, const dpoint2d &q, EndFlags fp,
                               EndFlags fq, UTMAT_Droite &line)
{
    if (!edgeLine(p, q, line)) return 0;
    if ((fp.beyond && fq.beyond) || (fp.inside && fq.inside)) return 0;
    // The distance of the centre from the edge's unit line against R.
    if (std::fabs(power(line, fig.centre)) - fig.R > utmatCalculPrec) return 0;
    if (!fp.inside && !fq.inside) return outsideEdgeMeets(fig, p, q, fp, fq, line);
    return insideEdgeMeets(fig, fp, line);
}

}  // namespace

/* ---- Segment and triangle ---- */

int32_t UTMAT_TesterIntersectionSegmentTriangle(const dpoint2d *p1, const dpoint2d *p2,
                                                const UTMAT_Droite *line, const dpoint2d *t1,
                                                const dpoint2d *t2, const dpoint2d *t3, int32_t sense,
                                                double tol)
{
    enterKernel();
    if (boxesApart(boxOf(*p1, *p2), boxOf(*t1, *t2, *t3), segmentTriangleHighestY, tol)) return 0;

    // The triangle wholly on one side of the segment's line misses it. A zero
    // line has no side: its powers count as 0.
    double s1 = 0.0;
    double s2 = 0.0;
    if (!isZeroLine(*line)) {
        s1 = power(*line, *t1);
        s2 = power(*line, *t2);
        const double s3 = power(*line, *t3);
        if ((s1 > tol && s2 > tol && s3 > tol) || (s1 < -tol && s2 < -tol && s3 < -tol)) return 0;
    }
    // Shortcut on the first edge only: t1 and t2 on one side beyond tol (so
    // t3 on the other) is taken as a meeting, even when the segment stays
    // clear of the triangle inside its box.
    if ((s1 >= tol && s2 >= tol) || (s1 <= -tol && s2 <= -tol)) return 1;

    // An edge line that does not leave p1 and p2 strictly on one side counts
    // as a crossing.
    const dpoint2d *corners[] = {t1, t2, t3, t1};
    double q1[3];
    for (int e = 0; e < 3; ++e) {
        UTMAT_Droite edge;
        if (!edgeLine(*corners[e], *corners[e + 1], edge)) return 0;  // error set, no defined result
        q1[e] = power(edge, *p1);
        const double q2 = power(edge, *p2);
        if ((q1[e] < tol && q2 > -tol) || (q1[e] > -tol && q2 < tol)) return 1;
    }
    // Otherwise the segment meets the triangle only by lying wholly inside.
    return insideByPowers(q1, sense, tol) ? 1 : 0;
}

/* ---- Two triangles ---- */

int32_t UTMAT_TesterIntersection2Triangle(const dpoint2d *a1, const dpoint2d *a2, const dpoint2d *a3,
                                          int32_t senseA, const dpoint2d *b1, const dpoint2d *b2,
                                          const dpoint2d *b3, int32_t senseB, double tol)
{
    enterKernel();
    if (boxesApart(boxOf(*a1, *a2, *a3), boxOf(*b1, *b2, *b3), twoTrianglesHighestY, tol)) return 0;

    // The edges of A against B. The line given with the third edge (a3, a1)
    // is that of (a2, a3) again: the test repeats the second line, as it is
    // defined to.
    const dpoint2d *edges[3][2] = {{a1, a2}, {a2, a3}, {a3, a1}};
    const dpoint2d *lineEnds[3][2] = {{a1, a2}, {a2, a3}, {a2, a3}};
    UTMAT_Droite lines[3];
    for (int e = 0; e < 3; ++e) {
        if (!edgeLine(*lineEnds[e][0], *lineEnds[e][1], lines[e])) return 0;
        const int32_t met = UTMAT_TesterIntersectionSegmentTriangle(edges[e][0], edges[e][1], &lines[e], b1,
                                                                    b2, b3, senseB, tol);
        if (met != 0) return met;
        if (nestedFailed()) return 0;
    }
    // No edge crosses: B meets A only by lying inside it, judged from b1.
    const double powers[3] = {power(lines[0], *b1), power(lines[1], *b1), power(lines[2], *b1)};
    return insideTriangleA(powers, senseA, tol) ? 1 : 0;
}

/* ---- Circle segment and triangle ---- */

int32_t UTMAT_TesterIntersectionCercleTriangle(const dpoint2d *centre, double R, const dpoint2d *chordA,
                                               const dpoint2d *chordB, const dpoint2d *boxMin,
                                               const dpoint2d *boxMax, const UTMAT_Droite *chordLine,
                                               const dpoint2d *t1, const dpoint2d *t2, const dpoint2d *t3,
                                               int32_t sense, double tol)
{
    enterKernel();
    if (failIfNull(centre)) return 0;
    const Box figureBox{boxMin->x, boxMin->y, boxMax->x, boxMax->y};
    if (boxesApart(figureBox, boxOf(*t1, *t2, *t3), circleTriangleHighestY, tol)) return 0;

    const CircleSegment fig{*centre, R, *chordA, *chordB, *chordLine, !isZeroLine(*chordLine)};
    const dpoint2d *t[3] = {t1, t2, t3};
    EndFlags flags[3];
    double d[3];

    // Vertices beyond the chord, then vertices inside the circle: a triangle
    // wholly on either side of the figure's boundary misses it.
    for (int i = 0; i < 3; ++i)
        flags[i].beyond = fig.hasChord && power(*chordLine, *t[i]) < -tol;
    if (flags[0].beyond && flags[1].beyond && flags[2].beyond) return 0;
    for (int i = 0; i < 3; ++i) {
        const double dx = t[i]->x - centre->x;
        const double dy = t[i]->y - centre->y;
        d[i] = std::sqrt(dx * dx + dy * dy);
        flags[i].inside = d[i] - R < -tol;
    }
    if (flags[0].inside && flags[1].inside && flags[2].inside) return 0;

    // An edge from inside the circle to outside it, with neither end beyond
    // the chord, crosses the arc.
    for (int i = 0; i < 3; ++i) {
        const EndFlags p = flags[i];
        const EndFlags q = flags[(i + 1) % 3];
        if (p.inside != q.inside && !p.beyond && !q.beyond) return 1;
    }
    // A vertex beyond the chord but on the circle.
    for (int i = 0; i < 3; ++i) {
        if (flags[i].beyond && egal(d[i], R, tol)) return 1;
    }
    UTMAT_Droite edgeLines[3];
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3;
        const int32_t met = edgeMeetsCircleSegment(fig, *t[i], *t[j], flags[i], flags[j], edgeLines[i]);
        if (nestedFailed()) return 0;
        if (met != 0) return met;
    }
    // Last, the figure may lie inside the triangle: judged from chordA.
    const double powers[3] = {power(edgeLines[0], *chordA), power(edgeLines[1], *chordA),
                              power(edgeLines[2], *chordA)};
    return insideByPowers(powers, sense, tol) ? 1 : 0;
}
