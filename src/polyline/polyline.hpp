// The polyline of the kernel and the comparison of two profile segments,
// shared by every part of the polyline engine.
//
// A polyline has no record: it is n consecutive plane points and a signed
// 32-bit n, side by side. Segment i joins vertex i and vertex i + 1, so there
// are n - 1 segments. Vertices are taken in array order and never sorted; a
// closed contour repeats its first vertex as its last. In a profile x is an
// abscissa and y a level, and the polyline runs toward increasing x, vertical
// steps allowed. The curvilinear abscissa is the plan length from vertex 0,
// summed segment by segment with planDistance; it is never stored.
//
// Every comparison here goes through the kernel's wrappers, so that it
// leaves the error word at 0 as the exported comparisons do.
#pragma once

#include <cstdint>

#include <tessar/frame.h>
#include <tessar/polyline.h>
#include <tessar/types.h>
#include <tessar/vector.h>

namespace tessar::detail {

/* ---- Vertices ---- */

// Two vertices are one when their plan distance is near-equal to 0 within tol.
inline bool pointsIdentiques(const dpoint2d &a, const dpoint2d &b, double tol) noexcept
{
    return UTMAT_PointsIdentiques(&a, &b, tol) != 0;
}

// The plan length of a segment: the step of the curvilinear abscissa.
inline double planDistance(const dpoint2d &a, const dpoint2d &b) noexcept
{
    return UTMAT_CalculerDistance2Pt(&a, &b);
}

// The ordinate at x of the segment from a to b, by linear interpolation:
// a.y + (b.y - a.y)(x - a.x) / (b.x - a.x), evaluated in that order. The
// segment must not be vertical.
inline double ordinateOnSegment(const dpoint2d &a, const dpoint2d &b, double x) noexcept
{
    return a.y + (b.y - a.y) * (x - a.x) / (b.x - a.x);
}

// x within [lo - t, hi + t], by the kernel's closed-interval wrapper.
inline bool appartenirAIntFerme(double x, double lo, double hi, double t) noexcept
{
    return UTMAT_AppartenirAIntFerme(x, lo, hi, t) != 0;
}

/* ---- Two segments over their common x interval ---- */

// Class of an end of segment 2 (c, d) against the x range of segment 1 (a, b).
inline constexpr std::int32_t kClassBefore = TESSAR_SEG_CLASS_BEFORE;  // below a.x
inline constexpr std::int32_t kClassWithin = TESSAR_SEG_CLASS_WITHIN;  // a.x to b.x, ends included
inline constexpr std::int32_t kClassBeyond = TESSAR_SEG_CLASS_BEYOND;  // above b.x

// The code is ten times the class of c plus the class of d.
constexpr std::int32_t segmentCode(std::int32_t classOfC, std::int32_t classOfD) noexcept
{
    return 10 * classOfC + classOfD;
}

inline constexpr std::int32_t kCodeAllBefore = segmentCode(kClassBefore, kClassBefore);  // 44: no common x
inline constexpr std::int32_t kCodeAllBeyond = segmentCode(kClassBeyond, kClassBeyond);  // 22: no common x
inline constexpr std::int32_t kCodeStartInEndBeyond = segmentCode(kClassWithin, kClassBeyond);  // 32
inline constexpr std::int32_t kCodeBothIn = segmentCode(kClassWithin, kClassWithin);            // 33
inline constexpr std::int32_t kCodeCovers = segmentCode(kClassBefore, kClassBeyond);            // 42
inline constexpr std::int32_t kCodeStartBeforeEndIn = segmentCode(kClassBefore, kClassWithin);  // 43

inline constexpr bool haveCommonInterval(std::int32_t code) noexcept
{
    return code != kCodeAllBefore && code != kCodeAllBeyond;
}

// The outputs of the comparison. The worker writes only what its case fills
// in; every other field keeps what it held.
struct SegmentComparison {
    std::int32_t found;     // 1 when the segments cross or meet within the interval
    dpoint2d inter;         // the meeting point, when found
    std::int32_t relStart;  // segment 2 against segment 1 at xStart: 1 above, -1 below, 0 equal
    std::int32_t relEnd;    // the same at xEnd
    double xStart, xEnd;    // the common interval
    double y1Start, y1End;  // ordinates of segment 1 at xStart and xEnd
    double y2Start, y2End;  // ordinates of segment 2 at xStart and xEnd
    std::int32_t flags;     // TESSAR_SEG_* flags
    std::int32_t code;      // segmentCode of the two ends of segment 2
};

// The relation of two segments a, b and c, d that run toward increasing x,
// over their common x interval, with exact comparisons throughout. It does
// not clear the error word; a failing line primitive inside it leaves its
// error set and the comparison returns with found 0.
void utmat_ComparerPosition4Points(const dpoint2d &a, const dpoint2d &b, const dpoint2d &c, const dpoint2d &d,
                                   SegmentComparison &out) noexcept;

// Opposite relations at the two ends of the interval: the segments cross.
inline constexpr bool relationsCross(std::int32_t relStart, std::int32_t relEnd) noexcept
{
    return (relStart == 1 && relEnd == -1) || (relStart == -1 && relEnd == 1);
}

}  // namespace tessar::detail
