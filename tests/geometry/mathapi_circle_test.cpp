// The tsMath_ circles, arcs and tangent constructions: crossings with their
// counts and untouched slots, the circle through three surveyed points, the
// asymmetric extremes of an arc's box, vertical curves and a circular curve
// through a point, and two road scenarios. Expected values are worked by hand
// or checked by distances and right angles computed here.
#include <tessar/mathapi.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
constexpr double kDeg = kPi / 180.0;
constexpr double kSentinel = -777.0;

double dist(double x1, double y1, double x2, double y2)
{
    return std::hypot(x2 - x1, y2 - y1);
}

TEST(MathCircles, FootOnACircleKeepsTheRawAngle)
{
    double x = 0, y = 0, angle = 0;
    EXPECT_EQ(tsMath_projectPointOnCircle2d(&x, &y, &angle, 1, -3, 1, 1, 2), 0);
    EXPECT_NEAR(x, 1.0, 1e-12);
    EXPECT_NEAR(y, -1.0, 1e-12);
    EXPECT_EQ(angle, -kPi / 2);  // atan2's range, not 3 pi / 2
}

TEST(MathCircles, CurveThroughThreePoints)
{
    // Points of the circle of centre (100, 200) and radius 50 (3-4-5 offsets),
    // with the middle point on the minor and on the major arc, both orders.
    struct Row {
        double x1, y1, x2, y2, x3, y3;
    } rows[] = {{150, 200, 130, 240, 100, 250},
                {100, 250, 130, 240, 150, 200},
                {150, 200, 60, 170, 100, 250},
                {100, 250, 60, 170, 150, 200}};
    for (const Row &r : rows) {
        double cx = 0, cy = 0, radius = 0;
        EXPECT_EQ(
            tsMath_computeCurveRadiusFromThreePoints(r.x1, r.y1, r.x2, r.y2, r.x3, r.y3, &cx, &cy, &radius),
            0);
        EXPECT_NEAR(radius, 50.0, 1e-9) << r.x2;
        EXPECT_NEAR(cx, 100.0, 1e-9) << r.x2;
        EXPECT_NEAR(cy, 200.0, 1e-9) << r.x2;
    }
    // In line: 1e100, and the centre is not written.
    double cx = kSentinel, cy = kSentinel, radius = 0;
    EXPECT_EQ(tsMath_computeCurveRadiusFromThreePoints(10, 5, 20, 5, 40, 5, &cx, &cy, &radius), 0);
    EXPECT_EQ(radius, 1e100);
    EXPECT_EQ(cx, kSentinel);
    EXPECT_EQ(cy, kSentinel);
}

TEST(MathCircles, LineCrossingCountsAndUntouchedSlots)
{
    // Circle of centre (0, 0), radius 5. The line's direction is (-b, a).
    struct Row {
        double a, b, c;
        int32_t count;
        double x1, y1, x2, y2;
    } rows[] = {
        {0, 1, -3, 2, -4, 3, 4, 3},                             // y = 3, direction -x
        {1, 0, -3, 2, 3, 4, 3, -4},                             // x = 3, direction +y
        {0, 1, -5.00005, 1, 0, 5.00005, kSentinel, kSentinel},  // tangent within 1e-4
        {0, 1, -6, 0, kSentinel, kSentinel, kSentinel, kSentinel},
    };
    for (const Row &r : rows) {
        double x1 = kSentinel, y1 = kSentinel, x2 = kSentinel, y2 = kSentinel;
        int32_t count = -1;
        EXPECT_EQ(tsMath_calculateIntersectionLineCircle2d(&x1, &y1, &x2, &y2, &count, r.a, r.b, r.c, 0, 0, 5,
                                                           1e-4),
                  0);
        EXPECT_EQ(count, r.count) << r.c;
        EXPECT_NEAR(x1, r.x1, 1e-12) << r.c;
        EXPECT_NEAR(y1, r.y1, 1e-12) << r.c;
        EXPECT_EQ(x2, r.x2) << r.c;
        EXPECT_EQ(y2, r.y2) << r.c;
    }
    double x = 0;
    int32_t count = -1;
    EXPECT_EQ(tsMath_calculateIntersectionLineCircle2d(&x, &x, &x, &x, &count, 0, 0, 1, 0, 0, 5, 1e-4),
              kFail);
    EXPECT_EQ(count, -1);
}

TEST(MathCircles, CircleCrossings)
{
    double x1, y1, x2, y2;
    int32_t count = -1;
    EXPECT_EQ(tsMath_calculateIntersectionCircleCircle2d(&x1, &y1, &x2, &y2, &count, 3, 4, 5, 3, 4, 5, 1e-6),
              2);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(tsMath_calculateIntersectionCircleCircle2d(&x1, &y1, &x2, &y2, &count, 3, 4, 5, 3, 4, 6, 1e-6),
              0);
    EXPECT_EQ(count, 0);

    // (0, 0) r 5 and (8, 0) r 5 meet at (4, 3) then (4, -3) (hand-worked).
    EXPECT_EQ(tsMath_calculateIntersectionCircleCircle2d(&x1, &y1, &x2, &y2, &count, 0, 0, 5, 8, 0, 5, 1e-6),
              0);
    ASSERT_EQ(count, 2);
    EXPECT_NEAR(x1, 4.0, 1e-12);
    EXPECT_NEAR(y1, 3.0, 1e-12);
    EXPECT_NEAR(x2, 4.0, 1e-12);
    EXPECT_NEAR(y2, -3.0, 1e-12);

    // Radical line on the far side of the first centre (r1^2 + d^2 < r2^2),
    // off the axes: both points lie on both circles.
    const double c1x = 2, c1y = 1, c2x = 2 + 4 * 0.6, c2y = 1 + 4 * 0.8;
    EXPECT_EQ(tsMath_calculateIntersectionCircleCircle2d(&x1, &y1, &x2, &y2, &count, c1x, c1y, 3, c2x, c2y, 6,
                                                         1e-6),
              0);
    ASSERT_EQ(count, 2);
    for (const auto &[x, y] : {std::pair{x1, y1}, std::pair{x2, y2}}) {
        EXPECT_NEAR(dist(x, y, c1x, c1y), 3.0, 1e-9);
        EXPECT_NEAR(dist(x, y, c2x, c2y), 6.0, 1e-9);
    }
    EXPECT_GT(dist(x1, y1, x2, y2), 1.0);
}

TEST(MathCircles, ArcBoxHasAsymmetricExtremes)
{
    // Centre (10, 20), radius 5.
    const double c = 5 * std::cos(0.1), s = 5 * std::sin(0.1), h = 5 * std::sqrt(0.5);
    struct Row {
        double start, sweep, minX, minY, maxX, maxY;
    } rows[] = {
        {0, 2 * kPi, 5, 15, 15, 25},                          // the full circle
        {-0.1, 0.2, 10 + c, 20 - s, 10 + c, 20 + s},          // 2 pi only: rightmost point missed
        {0.1, -0.2, 10 + c, 20 - s, 15, 20 + s},              // 0 is tested: reached
        {kPi / 4, kPi / 2, 10 - h, 20 + h, 10 + h, 25},       // over north
        {3 * kPi / 4, -kPi / 2, 10 - h, 20 + h, 10 + h, 25},  // the same, clockwise
        {2 * kPi - 0.1, 0.2, 10 + c, 20 - s, 15, 20 + s},     // 2 pi inside [start, start + sweep]
    };
    for (const Row &r : rows) {
        double minX, minY, maxX, maxY;
        EXPECT_EQ(tsMath_arcGetRange2d(&minX, &minY, &maxX, &maxY, 10, 20, r.start, r.sweep, 5), 0);
        EXPECT_NEAR(minX, r.minX, 1e-12) << r.start << " " << r.sweep;
        EXPECT_NEAR(minY, r.minY, 1e-12) << r.start << " " << r.sweep;
        EXPECT_NEAR(maxX, r.maxX, 1e-12) << r.start << " " << r.sweep;
        EXPECT_NEAR(maxY, r.maxY, 1e-12) << r.start << " " << r.sweep;
    }
    double minX = 0, maxY = 0;
    EXPECT_EQ(tsMath_arcGetRange2d(&minX, nullptr, nullptr, &maxY, 10, 20, 0, 1, 0), kFail);
    EXPECT_EQ(minX, 10.0);
    EXPECT_EQ(maxY, 20.0);
}

TEST(MathTangents, TangentsFromAPointToARoundabout)
{
    // Roundabout island of radius 25 at (500, 300), approach from 65 m away:
    // tangent length sqrt(65^2 - 25^2) = 60; contacts at 25 (5/13, -+12/13).
    double x1, y1, x2, y2;
    EXPECT_EQ(tsMath_lineTangentToCircleByPoint(&x1, &y1, &x2, &y2, 500, 300, 25, 565, 300, 1e-9), 0);
    // Looking from the point at the centre (west), the left one is south.
    EXPECT_NEAR(x1, 500 + 125.0 / 13, 1e-9);
    EXPECT_NEAR(y1, 300 - 300.0 / 13, 1e-9);
    EXPECT_NEAR(x2, 500 + 125.0 / 13, 1e-9);
    EXPECT_NEAR(y2, 300 + 300.0 / 13, 1e-9);

    // The same from an approach road at 35 degrees: contacts at right angles,
    // 60 from the point, the first with the centre on the left of the way in.
    const double px = 500 + 65 * std::cos(35 * kDeg), py = 300 + 65 * std::sin(35 * kDeg);
    EXPECT_EQ(tsMath_lineTangentToCircleByPoint(&x1, &y1, &x2, &y2, 500, 300, 25, px, py, 1e-9), 0);
    for (const auto &[x, y] : {std::pair{x1, y1}, std::pair{x2, y2}}) {
        EXPECT_NEAR(dist(x, y, px, py), 60.0, 1e-9);
        EXPECT_NEAR((x - 500) * (x - px) + (y - 300) * (y - py), 0.0, 1e-7);
    }
    EXPECT_GT((500 - px) * (y1 - py) - (300 - py) * (x1 - px), 0.0);  // left of P -> centre

    // On the circle: both contacts are the point; inside: failure, still the point.
    EXPECT_EQ(tsMath_lineTangentToCircleByPoint(&x1, &y1, &x2, &y2, 500, 300, 25, 525, 300, 1e-9), 0);
    EXPECT_EQ(x1 + x2 + y1 + y2, 2 * 525.0 + 2 * 300.0);
    EXPECT_EQ(tsMath_lineTangentToCircleByPoint(&x1, &y1, &x2, &y2, 500, 300, 25, 510, 300, 1e-9), kFail);
    EXPECT_EQ(x1 + x2 + y1 + y2, 2 * 510.0 + 2 * 300.0);
}

TEST(MathTangents, CurveThroughThreeSurveyedPoints)
{
    // Three shots on a 400 m curve centred at (2000, 1000), at 200, 230 and
    // 250 degrees from the centre: the radius, the centre and the sweep of
    // 50 degrees (arc length 400 * 50 pi / 180 = 349.066 m) come back.
    const auto at = [](double deg, double &x, double &y) {
        x = 2000 + 400 * std::cos(deg * kDeg);
        y = 1000 + 400 * std::sin(deg * kDeg);
    };
    double x1, y1, x2, y2, x3, y3;
    at(200, x1, y1);
    at(230, x2, y2);
    at(250, x3, y3);
    double cx = 0, cy = 0, radius = 0, sweep = 0;
    EXPECT_EQ(tsMath_computeCurveRadiusFromThreePoints(x1, y1, x2, y2, x3, y3, &cx, &cy, &radius), 0);
    EXPECT_NEAR(radius, 400.0, 1e-8);
    EXPECT_NEAR(cx, 2000.0, 1e-8);
    EXPECT_NEAR(cy, 1000.0, 1e-8);
    EXPECT_EQ(tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, cx, cy, x1, y1, x3, y3, 1), 0);
    EXPECT_NEAR(radius * sweep, 349.0658503988659, 1e-7);
}

TEST(MathTangents, VerticalParabolaTangentsThroughAPoint)
{
    // g1 = 0, g2 = 0.04, L = 100: a = 0.0004; from (10, 1) through (60, 0),
    // dx = 50: 0.0004 t^2 - 0.04 t - 1 = 0, t = 50 -+ 50 sqrt 2. Each point is
    // at x = t + 10 with y = 0.0004 x^2 + 1, taken at x and not at t.
    double x1, y1, x2, y2;
    EXPECT_EQ(tsMath_parabolaTangentsToPoint(&x1, &y1, &x2, &y2, 0.0, 0.04, 100, 10, 1, 60, 0), 2);
    const double t1 = 50 - 50 * std::sqrt(2.0), t2 = 50 + 50 * std::sqrt(2.0);
    EXPECT_NEAR(x1, t1 + 10, 1e-9);
    EXPECT_NEAR(x2, t2 + 10, 1e-9);
    EXPECT_NEAR(y1, 0.0004 * (t1 + 10) * (t1 + 10) + 1, 1e-9);
    EXPECT_NEAR(y2, 0.0004 * (t2 + 10) * (t2 + 10) + 1, 1e-9);

    // No length, or equal and opposite grades: 0, and the outputs zeroed.
    x1 = y1 = x2 = y2 = kSentinel;
    EXPECT_EQ(tsMath_parabolaTangentsToPoint(&x1, &y1, &x2, &y2, 0.02, -0.02, 100, 10, 1, 60, 0), 0);
    EXPECT_EQ(x1 + y1 + x2 + y2, 0.0);
    EXPECT_EQ(tsMath_parabolaTangentsToPoint(nullptr, &y1, nullptr, nullptr, 0.0, 0.04, 0.0, 10, 1, 60, 0),
              0);
}

TEST(MathTangents, SymmetricVerticalCurveThroughAPoint)
{
    // Vertex (0, 0), grades 0.02 in and -0.04 out (A = (-100, -2), B = (100, -4)).
    // A curve of length L has external E = (g2 - g1) L / 8 at the vertex and
    // y(50) = g1 50 + (g2 - g1) (50 + L/2)^2 / (2 L); for L = 200: -1.5 and -2.375.
    // Arguments are y first, then x.
    double length = -1;
    EXPECT_EQ(tsMath_passTangentParabolaThruPoint(&length, -2, -100, -4, 100, 0, 0, -1.5, 0), 2);
    EXPECT_NEAR(length, 200.0, 1e-9);
    EXPECT_EQ(tsMath_passTangentParabolaThruPoint(&length, -2, -100, -4, 100, 0, 0, -2.375, 50), 2);
    EXPECT_NEAR(length, 200.0, 1e-9);
    // Equal and opposite grades, 0.02 and -0.02, stop at 0.
    length = -1;
    EXPECT_EQ(tsMath_passTangentParabolaThruPoint(&length, -2, -100, -2, 100, 0, 0, -1.5, 0), 0);
    EXPECT_EQ(length, 0.0);
    // A vertical tangent has no grade.
    length = -1;
    tsMath_passTangentParabolaThruPoint(&length, -2, 0, -4, 100, 0, 0, -1.5, 0);
    EXPECT_EQ(length, 0.0);
}

TEST(MathTangents, CircularCurveThroughAPoint)
{
    // Tangents along +x (B) and +y (A) from V = (0, 0). The circles tangent to
    // both through (2, 1) have centres (R, R) with (2 - R)^2 + (1 - R)^2 = R^2:
    // R = 1 (the point beyond the contacts, flag set) or 5 (flag clear).
    // (1, 2) is nearer the A tangent and gives the same pair.
    struct Row {
        double px, py;
        int32_t flag;
        double radius;
    } rows[] = {{2, 1, 1, 1.0}, {2, 1, 0, 5.0}, {1, 2, 1, 1.0}, {1, 2, 0, 5.0}};
    for (const Row &r : rows) {
        double radius = -1;
        tsMath_passTangentCurveThruPoint(&radius, 100, 0, 0, 100, 0, 0, r.py, r.px, r.flag);
        EXPECT_NEAR(radius, r.radius, 1e-9) << r.px << " " << r.flag;
    }

    // A road bend: back tangent from the west into V = (1000, 2000), turning
    // left by 40 degrees. The 300 m curve has its centre on the bisector (110
    // degrees) at 300 / cos 20 from V; a point of the curve between the
    // contacts, 15 degrees round from the first, gives 300 with the flag clear.
    const double vx = 1000, vy = 2000, h = 20 * kDeg;
    const double ax = vx - 500, ay = vy;
    const double bx = vx + 500 * std::cos(40 * kDeg), by = vy + 500 * std::sin(40 * kDeg);
    const double ox = vx + 300 / std::cos(h) * std::cos(110 * kDeg);
    const double oy = vy + 300 / std::cos(h) * std::sin(110 * kDeg);
    const double px = ox + 300 * std::cos(285 * kDeg), py = oy + 300 * std::sin(285 * kDeg);
    double radius = -1;
    tsMath_passTangentCurveThruPoint(&radius, ay, ax, by, bx, vy, vx, py, px, 0);
    EXPECT_NEAR(radius, 300.0, 1e-7);
}

}  // namespace
