// The straight line in plan fitted to weighted points by the principal axis,
// given back as a segment whose ends cover the data, and its point-record
// form.
//
// The axis angle comes from the weighted second moments; which of the two
// perpendicular axes that angle names is settled by the chord between the two
// most widely spaced points. The segment's ends are the feet of those two
// points, pushed outwards where an extreme point lies on the outer side of
// the line, so that the segment covers the data.
#include <tessar/bestfit.h>
#include <tessar/frame.h>
#include <tessar/mathapi.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

namespace {

constexpr int32_t kFailure = TESSAR_FAILURE;

constexpr double kAxisParallel = 0.0001;    // |theta| below this: the line is parallel to an axis
constexpr double kVerticalChord = 1e-11;    // |dx| of the chord below this: a vertical chord
constexpr double kVerticalSlope = 1e17;     // the slope that stands for vertical
constexpr double kInverseVertical = 1e-17;  // its inverse, as a literal
constexpr double kEndMargin = 0.001;        // how far an end is pushed past its extreme point's foot

struct PlanePoint {
    double x;
    double y;
};

// Record i of a flat observation array: x, sigma x, y, sigma y.
const double *observationAt(const double *observations, int32_t i)
{
    return observations + static_cast<std::ptrdiff_t>(i) * TESSAR_BESTFIT_OBSERVATION_SIZE;
}

PlanePoint pointOf(const double *observation)
{
    return {observation[0], observation[2]};
}

// The weighted sums of step 1, w = 1 / sigma x squared; sigma y is not read
// and a sigma of 0 gives an infinite weight, unguarded.
struct WeightedSums {
    double w = 0.0, x = 0.0, y = 0.0, xy = 0.0, xx = 0.0, yy = 0.0;
};

WeightedSums accumulate(int32_t n, const double *observations)
{
    WeightedSums s;
    for (int32_t i = 0; i < n; ++i) {
        const double *o = observationAt(observations, i);
        const double x = o[0];
        const double y = o[2];
        const double w = 1.0 / (o[1] * o[1]);
        s.w += w;
        s.x += w * x;
        s.y += w * y;
        s.xy += w * x * y;
        s.xx += w * x * x;
        s.yy += w * y * y;
    }
    return s;
}

// The two most widely spaced points, in two passes that share one best
// distance: B is the point farthest from the first point, then A the point
// farther from B than that, if any. Ties keep the earlier choice.
std::pair<PlanePoint, PlanePoint> widestPair(int32_t n, const double *observations)
{
    PlanePoint a = pointOf(observationAt(observations, 0));
    PlanePoint b = a;
    double best = 0.0;
    for (int32_t i = 0; i < n; ++i) {
        const PlanePoint p = pointOf(observationAt(observations, i));
        const double d = tsMath_distance2d(a.x, a.y, p.x, p.y);
        if (d > best) {
            b = p;
            best = d;
        }
    }
    for (int32_t i = 0; i < n; ++i) {
        const PlanePoint p = pointOf(observationAt(observations, i));
        const double d = tsMath_distance2d(b.x, b.y, p.x, p.y);
        if (d > best) {
            a = p;
            best = d;
        }
    }
    return {a, b};
}

// theta = t / 2 with t = atan(2 (Sw Sxy - Sx Sy) / (D2 - D1)). D2 stands first
// in the denominator, so theta has the opposite sign of the usual principal
// axis angle; the slope table below rests on that.
double axisAngle(const WeightedSums &s)
{
    const double d1 = s.w * s.xx - s.x * s.x;
    const double d2 = s.w * s.yy - s.y * s.y;
    double t;
    if (d1 != d2)
        t = std::atan(2.0 * (s.w * s.xy - s.x * s.y) / (d2 - d1));
    else
        t = std::atan(1.0) * 4.0 / 2.0;  // pi / 2, with pi as atan(1) * 4
    return t / 2.0;
}

double chordSlope(PlanePoint a, PlanePoint b)
{
    if (std::fabs(b.x - a.x) >= kVerticalChord) return (b.y - a.y) / (b.x - a.x);
    return kVerticalSlope;
}

// The fitted slope from the axis angle and the chord's slope m. Every row is
// tried in order and a later match overrides an earlier one; the rows meet
// where m is 0 on purpose. theta is not 0 here.
double slopeFromAxis(double theta, double m)
{
    const double halfPi = std::atan(1.0) * 4.0 / 2.0;
    const double absTheta = std::fabs(theta);
    const double absM = std::fabs(m);
    const double along = std::tan(absTheta);            // the axis taken as it is
    const double across = std::tan(halfPi - absTheta);  // the axis perpendicular to it
    double s = 0.0;
    if (m >= 0.0 && theta < 0.0 && absM < 1.5) s = along;     // 1
    if (m <= 0.0 && theta >= 0.0 && absM < 1.5) s = -along;   // 2
    if (m >= 0.0 && theta >= 0.0 && absM >= 0.5) s = across;  // 3
    if (m <= 0.0 && theta < 0.0 && absM >= 0.5) s = -across;  // 4
    if (m >= 0.0 && theta < 0.0 && absM >= 1.5) s = -across;  // 5
    if (m <= 0.0 && theta > 0.0 && absM >= 1.5) s = across;   // 6
    if (m >= 0.0 && theta >= 0.0 && absM < 0.5) s = -along;   // 7
    if (m <= 0.0 && theta < 0.0 && absM < 0.5) s = along;     // 8
    return s;
}

struct Segment {
    double x1, y1, x2, y2;
};

// y = s x + c over x, for |s| not above 1: the ends are ordered by x, and an
// end whose point lies on the outer side of the line moves outwards by
// k |offset in y| + the margin, k = cos a sin a with a = atan |s|.
Segment segmentByX(PlanePoint a, PlanePoint b, double s, double c, double k)
{
    if (a.x > b.x) std::swap(a, b);
    double yA = a.x * s + c;
    if ((s > 0.0 && a.y < yA) || (s < 0.0 && a.y > yA)) {
        a.x = a.x - k * std::fabs(a.y - yA) - kEndMargin;
        yA = a.x * s + c;
    }
    double yB = b.x * s + c;
    if ((s > 0.0 && b.y > yB) || (s < 0.0 && b.y < yB)) {
        b.x = b.x + k * std::fabs(b.y - yB) + kEndMargin;
        yB = b.x * s + c;
    }
    return {a.x, yA, b.x, yB};
}

// The same rule mirrored for |s| above 1: x = (y - c) / s over y.
Segment segmentByY(PlanePoint a, PlanePoint b, double s, double c, double k)
{
    if (a.y > b.y) std::swap(a, b);
    const double r = 1.0 / s;
    double xA = (a.y - c) * r;
    if ((s > 0.0 && a.x < xA) || (s < 0.0 && a.x > xA)) {
        a.y = a.y - k * std::fabs(a.x - xA) - kEndMargin;
        xA = (a.y - c) * r;
    }
    double xB = (b.y - c) * r;
    if ((s > 0.0 && b.x > xB) || (s < 0.0 && b.x < xB)) {
        b.y = b.y + k * std::fabs(b.x - xB) + kEndMargin;
        xB = (b.y - c) * r;
    }
    return {xA, a.y, xB, b.y};
}

// A line parallel to an axis: the ends keep the order of the widest pair.
// A steep chord gives the line of slope 1e17 through the weighted mean; a
// flat one the level line at the weighted mean of y.
Segment segmentParallelToAxis(PlanePoint a, PlanePoint b, double m, const WeightedSums &s)
{
    if (std::fabs(m) > 1.0) {
        const double c = s.y / s.w - (s.x / s.w) * kVerticalSlope;
        return {(a.y - c) * kInverseVertical, a.y, (b.y - c) * kInverseVertical, b.y};
    }
    const double level = s.y / s.w;
    return {a.x, level, b.x, level};
}

// sqrt(sum of squared offsets) / n, the division outside the root; a point
// whose offset cannot be taken (a segment of no length) adds nothing.
double standardErrorOf(const Segment &g, int32_t n, const double *observations)
{
    double sum = 0.0;
    for (int32_t i = 0; i < n; ++i) {
        const PlanePoint p = pointOf(observationAt(observations, i));
        double offset = 0.0;
        if (tsMath_offsetToLine2d(&offset, p.x, p.y, g.x1, g.y1, g.x2, g.y2) == 0) sum += offset * offset;
    }
    return std::sqrt(sum) / n;
}

}  // namespace

int32_t tsBestFit_lineCalc(double *x1, double *y1, double *x2, double *y2, double *standardError, int32_t n,
                           const double *observations)
{
    if (n < 2) return kFailure;
    *standardError = 0.0;
    const WeightedSums sums = accumulate(n, observations);
    const auto [a, b] = widestPair(n, observations);
    const double theta = axisAngle(sums);
    const double m = chordSlope(a, b);

    Segment segment;
    if (std::fabs(theta) >= kAxisParallel) {
        const double s = slopeFromAxis(theta, m);
        const double inverseW = 1.0 / sums.w;
        const double c = inverseW * sums.y - inverseW * sums.x * s;
        const double angle = std::atan(std::fabs(s));
        const double k = std::cos(angle) * std::sin(angle);
        if (std::fabs(s) <= 1.0)
            segment = segmentByX(a, b, s, c, k);
        else if (std::fabs(s) > 1.0)
            segment = segmentByY(a, b, s, c, k);
        else
            return kFailure;  // s is not a number
    } else {
        // Also taken by a theta that is not a number (an infinite weight).
        segment = segmentParallelToAxis(a, b, m, sums);
    }

    *x1 = segment.x1;
    *y1 = segment.y1;
    *x2 = segment.x2;
    *y2 = segment.y2;
    *standardError = standardErrorOf(segment, n, observations);
    return 0;
}

// Both sigma fields of a record come from the one sigma of its point; the
// fit does not see z, which the ends take from the first and last points.
int32_t tsPoint_computeLineLeastSquares(dpoint3d *start, dpoint3d *end, double *standardError,
                                        const dpoint3d *points, const double *sigmas, int32_t n)
{
    std::vector<double> observations;
    try {
        if (n > 0) observations.resize(static_cast<size_t>(n) * TESSAR_BESTFIT_OBSERVATION_SIZE);
    } catch (const std::bad_alloc &) {
        return kFailure;
    }
    for (int32_t i = 0; i < n; ++i) {
        double *o = observations.data() + static_cast<std::ptrdiff_t>(i) * TESSAR_BESTFIT_OBSERVATION_SIZE;
        o[0] = points[i].x;
        o[1] = sigmas[i];
        o[2] = points[i].y;
        o[3] = sigmas[i];
    }
    double x1 = 0.0, y1 = 0.0, x2 = 0.0, y2 = 0.0, error = 0.0;
    const int32_t status = tsBestFit_lineCalc(&x1, &y1, &x2, &y2, &error, n, observations.data());
    if (status != 0) return status;
    if (start) *start = {x1, y1, points[0].z};
    if (end) *end = {x2, y2, points[n - 1].z};
    if (standardError) *standardError = error;
    return 0;
}
