// Two profile segments compared over their common x interval: the class of
// each end of segment 2 against the x range of segment 1, the ordinates of
// both at the ends of the interval, the side on which segment 2 lies at each
// end, and the point where they cross or meet. All comparisons are exact:
// the difference of two profiles and the masks build on this and keep their
// own tolerances.
#include <algorithm>

#include <tessar/polyline.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

// Class of the abscissa x of an end of segment 2 against [a.x, b.x]; within
// the range, an end on a.x or on b.x raises the flag given for it.
std::int32_t classOfAbscissa(double x, const dpoint2d &a, const dpoint2d &b, std::int32_t flagAtStart,
                             std::int32_t flagAtEnd, std::int32_t &flags)
{
    if (x < a.x) return kClassBefore;
    if (x > b.x) return kClassBeyond;
    if (x == a.x) flags |= flagAtStart;
    if (x == b.x) flags |= flagAtEnd;
    return kClassWithin;
}

void setInterval(SegmentComparison &s, double xStart, double xEnd, double y1Start, double y1End,
                 double y2Start, double y2End)
{
    s.xStart = xStart;
    s.xEnd = xEnd;
    s.y1Start = y1Start;
    s.y1End = y1End;
    s.y2Start = y2Start;
    s.y2End = y2End;
}

// The common interval and the ordinates of both segments at its ends. A
// vertical segment 1 (a.x equal to b.x) shrinks the interval to the one
// abscissa, where segment 1 spans a.y to b.y and segment 2 has the level of
// its end on that abscissa. Codes 23, 24 and 34 come only from a segment 2
// running backward and fill in nothing.
void fillCommonInterval(const dpoint2d &a, const dpoint2d &b, const dpoint2d &c, const dpoint2d &d,
                        SegmentComparison &s)
{
    const bool vertical1 = a.x == b.x;
    switch (s.code) {
    case kCodeStartInEndBeyond:
        if (vertical1)
            setInterval(s, a.x, a.x, a.y, b.y, c.y, c.y);
        else
            setInterval(s, c.x, b.x, ordinateOnSegment(a, b, c.x), b.y, c.y, ordinateOnSegment(c, d, b.x));
        break;
    case kCodeBothIn:
        setInterval(s, c.x, d.x, ordinateOnSegment(a, b, c.x), ordinateOnSegment(a, b, d.x), c.y, d.y);
        break;
    case kCodeCovers:
        setInterval(s, a.x, b.x, a.y, b.y, ordinateOnSegment(c, d, a.x), ordinateOnSegment(c, d, b.x));
        break;
    case kCodeStartBeforeEndIn:
        if (vertical1)
            setInterval(s, a.x, a.x, a.y, b.y, d.y, d.y);
        else
            setInterval(s, a.x, d.x, a.y, ordinateOnSegment(a, b, d.x), ordinateOnSegment(c, d, a.x), d.y);
        break;
    default:
        break;
    }
}

// Where the level y lies against the span of a vertical segment 1: 1 strictly
// above both ends, -1 strictly below both, 0 on the span.
std::int32_t relationToSpan(double y, const dpoint2d &a, const dpoint2d &b)
{
    if (y > a.y && y > b.y) return 1;
    if (y < a.y && y < b.y) return -1;
    return 0;
}

// Code 33 with a vertical segment 1: all four abscissas are equal, so both
// segments lie on one vertical. They meet unless segment 2 lies wholly above
// or wholly below the span of segment 1; the meeting point is c when c is on
// the span, else the end of the span that segment 2 reaches from c's side.
void settleVerticalOverlap(const dpoint2d &a, const dpoint2d &b, const dpoint2d &c, const dpoint2d &d,
                           SegmentComparison &s)
{
    s.xStart = a.x;
    s.xEnd = a.x;
    s.relStart = relationToSpan(c.y, a, b);
    s.relEnd = relationToSpan(d.y, a, b);
    if (s.relStart == s.relEnd && s.relStart != 0) return;
    s.found = 1;
    s.inter.x = a.x;
    if (s.relStart == 0)
        s.inter.y = c.y;
    else if (s.relStart == 1)
        s.inter.y = std::max(a.y, b.y);
    else
        s.inter.y = std::min(a.y, b.y);
}

// Where segment 2 lies against segment 1 at one end of the interval, exactly.
std::int32_t relation(double y1, double y2)
{
    if (y1 < y2) return 1;
    if (y1 > y2) return -1;
    return 0;
}

// The segments change sides within the interval: the crossing of their lines.
// Lines whose determinant vanishes against the line crossing's guard count as
// parallel, and the middle of segment 2 over the interval then stands for the
// crossing.
void crossing(const dpoint2d &a, const dpoint2d &b, const dpoint2d &c, const dpoint2d &d,
              SegmentComparison &s)
{
    UTMAT_Droite line1{};
    UTMAT_Droite line2{};
    UTMAT_CalculerDroite2Pt(&a, &b, &line1);
    if (nestedFailed()) return;
    UTMAT_CalculerDroite2Pt(&c, &d, &line2);
    if (nestedFailed()) return;
    dpoint2d point{};
    std::int32_t count = 0;
    UTMAT_CalculerIntersection2Droite(&line1, &line2, &point, &count);
    if (nestedFailed()) return;
    if (count == 0) {
        point.x = (s.xStart + s.xEnd) / 2.0;
        point.y = (s.y2Start + s.y2End) / 2.0;
    } else if (s.flags & TESSAR_SEG_VERTICAL2) {
        point.x = c.x;  // the crossing lies on the vertical whatever the rounding of the lines
    }
    s.inter = point;
    s.found = 1;
}

}  // namespace

namespace tessar::detail {

void utmat_ComparerPosition4Points(const dpoint2d &a, const dpoint2d &b, const dpoint2d &c, const dpoint2d &d,
                                   SegmentComparison &s) noexcept
{
    s.found = 0;
    s.flags = 0;
    if (c.x == d.x) s.flags |= TESSAR_SEG_VERTICAL2;
    const std::int32_t classOfC =
        classOfAbscissa(c.x, a, b, TESSAR_SEG_C_AT_START, TESSAR_SEG_C_AT_END, s.flags);
    const std::int32_t classOfD =
        classOfAbscissa(d.x, a, b, TESSAR_SEG_D_AT_START, TESSAR_SEG_D_AT_END, s.flags);
    s.code = segmentCode(classOfC, classOfD);
    if (!haveCommonInterval(s.code)) return;

    // Both segments on one vertical: settled before any ordinate is
    // interpolated, since segment 1 has no ordinate as a function of x.
    if (s.code == kCodeBothIn && a.x == b.x) {
        settleVerticalOverlap(a, b, c, d, s);
        return;
    }

    fillCommonInterval(a, b, c, d, s);
    s.relStart = relation(s.y1Start, s.y2Start);
    s.relEnd = relation(s.y1End, s.y2End);

    if (relationsCross(s.relStart, s.relEnd)) {
        crossing(a, b, c, d, s);
    } else if (s.relStart != 0 && s.relEnd == 0) {
        s.found = 1;
        s.inter = {s.xEnd, s.y2End};
    } else if (s.relStart == 0 && s.relEnd != 0) {
        s.found = 1;
        s.inter = {s.xStart, s.y2Start};
    }
    // Both relations 0 (the segments coincide over the interval) or the same
    // side at both ends: no meeting point.
}

}  // namespace tessar::detail

// The worker writes only the outputs that its case fills in, so the caller's
// values pass through it and the others come back as they were.
void UTMAT_ComparerPosition2Segments(const dpoint2d *segment1, const dpoint2d *segment2, int32_t *found,
                                     dpoint2d *inter, int32_t *relStart, int32_t *relEnd, double *xStart,
                                     double *xEnd, double *y1Start, double *y1End, double *y2Start,
                                     double *y2End, int32_t *flags, int32_t *code)
{
    enterKernel();
    SegmentComparison s{*found,   *inter, *relStart, *relEnd, *xStart, *xEnd,
                        *y1Start, *y1End, *y2Start,  *y2End,  *flags,  *code};
    utmat_ComparerPosition4Points(segment1[0], segment1[1], segment2[0], segment2[1], s);
    *found = s.found;
    *inter = s.inter;
    *relStart = s.relStart;
    *relEnd = s.relEnd;
    *xStart = s.xStart;
    *xEnd = s.xEnd;
    *y1Start = s.y1Start;
    *y1End = s.y1End;
    *y2Start = s.y2Start;
    *y2End = s.y2End;
    *flags = s.flags;
    *code = s.code;
}
