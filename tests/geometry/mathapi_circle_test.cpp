// tsMath_ circles, arcs and tangent constructions, with road scenarios; values
// worked by hand or checked by distances and right angles computed here.
#include <tessar/mathapi.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <tuple>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
constexpr double kDeg = kPi / 180.0;
constexpr double kSentinel = -777.0;

double dist(double x1, double y1, double x2, double y2)
{
    return std::hypot(x2 - x1, y2 - y1);
}

TEST(MathCircles, FootAndCurveThroughThreePoints)
{
    double x = 0, y = 0, angle = 0, cx = kSentinel, cy = kSentinel, radius = 0;
    EXPECT_EQ(tsMath_projectPointOnCircle2d(&x, &y, &angle, 1, -3, 1, 1, 2), 0);
    EXPECT_TRUE(std::fabs(x - 1) < 1e-12 && std::fabs(y + 1) < 1e-12);
    EXPECT_EQ(angle, -kPi / 2);  // atan2's range, not 3 pi / 2

    // In line: 1e100, and the centre is not written.
    EXPECT_EQ(tsMath_computeCurveRadiusFromThreePoints(10, 5, 20, 5, 40, 5, &cx, &cy, &radius), 0);
    EXPECT_EQ(radius, 1e100);
    EXPECT_TRUE(cx == kSentinel && cy == kSentinel);
    // Centre (100, 200), radius 50 (3-4-5 offsets): the middle point on the
    // minor and on the major arc, in either order.
    for (const auto &[x1, y1, x2, y2, x3, y3] :
         {std::tuple{150, 200, 130, 240, 100, 250}, {100, 250, 60, 170, 150, 200}}) {
        EXPECT_EQ(tsMath_computeCurveRadiusFromThreePoints(x1, y1, x2, y2, x3, y3, &cx, &cy, &radius), 0);
        EXPECT_NEAR(radius, 50.0, 1e-9) << x1 << " " << x2;
        EXPECT_TRUE(std::fabs(cx - 100) < 1e-9 && std::fabs(cy - 200) < 1e-9) << x1 << " " << x2;
    }
}

TEST(MathCircles, LineCrossingCountsAndUntouchedSlots)
{
    // Circle (0, 0) radius 5, lines a x + b y + c = 0 running along (-b, a):
    // y = 3 (direction -x), x = 3 (+y), tangent within the tolerance 1e-4, and apart.
    using R = std::tuple<double, double, double, int32_t, double, double, double, double>;
    for (const auto &[a, b, c, count, x1, y1, x2, y2] :
         {R{0.0, 1.0, -3.0, 2, -4.0, 3.0, 4.0, 3.0}, R{1.0, 0.0, -3.0, 2, 3.0, 4.0, 3.0, -4.0},
          R{0.0, 1.0, -5.00005, 1, 0.0, 5.00005, kSentinel, kSentinel},
          R{0.0, 1.0, -6.0, 0, kSentinel, kSentinel, kSentinel, kSentinel}}) {
        double ox1 = kSentinel, oy1 = kSentinel, ox2 = kSentinel, oy2 = kSentinel;
        int32_t n = -1;
        EXPECT_EQ(
            tsMath_calculateIntersectionLineCircle2d(&ox1, &oy1, &ox2, &oy2, &n, a, b, c, 0, 0, 5, 1e-4), 0);
        EXPECT_EQ(n, count) << c;
        EXPECT_TRUE(std::fabs(ox1 - x1) < 1e-12 && std::fabs(oy1 - y1) < 1e-12) << c;
        EXPECT_TRUE(ox2 == x2 && oy2 == y2) << c;
    }
    double x = 0;
    int32_t count = -1;
    EXPECT_EQ(tsMath_calculateIntersectionLineCircle2d(&x, &x, &x, &x, &count, 0, 0, 1, 0, 0, 5, 1e-4),
              kFail);
}

TEST(MathCircles, CircleCrossings)
{
    double x1, y1, x2, y2;
    int32_t count = -1;
    const auto meet = [&](double ax, double ay, double ar, double bx, double by, double br) {
        return tsMath_calculateIntersectionCircleCircle2d(&x1, &y1, &x2, &y2, &count, ax, ay, ar, bx, by, br,
                                                          1e-6);
    };
    EXPECT_EQ(meet(3, 4, 5, 3, 4, 5), 2);  // the same circle
    EXPECT_EQ(count, 0);
    EXPECT_EQ(meet(3, 4, 5, 3, 4, 6), 0);  // concentric
    EXPECT_EQ(count, 0);
    // (0, 0) r 5 and (8, 0) r 5 meet at (4, 3) then (4, -3).
    EXPECT_EQ(meet(0, 0, 5, 8, 0, 5), 0);
    ASSERT_EQ(count, 2);
    EXPECT_TRUE(std::fabs(x1 - 4) + std::fabs(y1 - 3) + std::fabs(x2 - 4) + std::fabs(y2 + 3) < 1e-12);
    // The radical line on the far side of the first centre (r1^2 + d^2 < r2^2),
    // off the axes: both points lie on both circles.
    const double c1x = 2, c1y = 1, c2x = 2 + 4 * 0.6, c2y = 1 + 4 * 0.8;
    EXPECT_EQ(meet(c1x, c1y, 3, c2x, c2y, 6), 0);
    ASSERT_EQ(count, 2);
    for (const auto &[x, y] : {std::pair{x1, y1}, std::pair{x2, y2}}) {
        EXPECT_NEAR(dist(x, y, c1x, c1y), 3.0, 1e-9);
        EXPECT_NEAR(dist(x, y, c2x, c2y), 6.0, 1e-9);
    }
}

TEST(MathCircles, ArcBoxHasAsymmetricExtremes)
{
    // Centre (10, 20), radius 5: the full circle; 2 pi alone tested for max x
    // on a positive sweep, so the rightmost point is missed from -0.1 to 0.1
    // but reached backwards (0 is tested) and from 2 pi - 0.1; over north both ways.
    const double c = 5 * std::cos(0.1), s = 5 * std::sin(0.1), h = 5 * std::sqrt(0.5);
    using R = std::tuple<double, double, double, double, double, double>;
    for (const auto &[start, sweep, minX, minY, maxX, maxY] :
         {R{0.0, 2 * kPi, 5.0, 15.0, 15.0, 25.0}, R{-0.1, 0.2, 10 + c, 20 - s, 10 + c, 20 + s},
          R{0.1, -0.2, 10 + c, 20 - s, 15.0, 20 + s}, R{2 * kPi - 0.1, 0.2, 10 + c, 20 - s, 15.0, 20 + s},
          R{kPi / 4, kPi / 2, 10 - h, 20 + h, 10 + h, 25.0},
          R{3 * kPi / 4, -kPi / 2, 10 - h, 20 + h, 10 + h, 25.0}}) {
        double box[4];
        EXPECT_EQ(tsMath_arcGetRange2d(&box[0], &box[1], &box[2], &box[3], 10, 20, start, sweep, 5), 0);
        const double expected[4] = {minX, minY, maxX, maxY};
        for (int k = 0; k < 4; ++k)
            EXPECT_NEAR(box[k], expected[k], 1e-12) << start << " " << sweep << " side " << k;
    }
    double minX = 0, maxY = 0;
    EXPECT_EQ(tsMath_arcGetRange2d(&minX, nullptr, nullptr, &maxY, 10, 20, 0, 1, 0), kFail);
    EXPECT_TRUE(minX == 10.0 && maxY == 20.0);  // the centre
}

TEST(MathTangents, TangentsFromAPointToARoundabout)
{
    // Island of radius 25 at (500, 300), approach from 65 m away: tangent
    // length 60, contacts at 25 (5/13, -+12/13). Looking at the centre (west)
    // the left one, south, comes first.
    double x1, y1, x2, y2;
    EXPECT_EQ(tsMath_lineTangentToCircleByPoint(&x1, &y1, &x2, &y2, 500, 300, 25, 565, 300, 1e-9), 0);
    EXPECT_NEAR(x1, 500 + 125.0 / 13, 1e-9);
    EXPECT_NEAR(y1, 300 - 300.0 / 13, 1e-9);
    EXPECT_NEAR(x2, 500 + 125.0 / 13, 1e-9);
    EXPECT_NEAR(y2, 300 + 300.0 / 13, 1e-9);
    // On the circle both contacts are the point; inside, failure with the point.
    EXPECT_EQ(tsMath_lineTangentToCircleByPoint(&x1, &y1, &x2, &y2, 500, 300, 25, 525, 300, 1e-9), 0);
    EXPECT_TRUE(x1 == 525 && x2 == 525 && y1 == 300 && y2 == 300);
    EXPECT_EQ(tsMath_lineTangentToCircleByPoint(&x1, &y1, &x2, &y2, 500, 300, 25, 510, 300, 1e-9), kFail);
    EXPECT_TRUE(x1 == 510 && x2 == 510 && y1 == 300 && y2 == 300);
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
    x1 = y1 = x2 = y2 = kSentinel;  // equal and opposite grades: 0, the outputs zeroed
    EXPECT_EQ(tsMath_parabolaTangentsToPoint(&x1, &y1, &x2, &y2, 0.02, -0.02, 100, 10, 1, 60, 0), 0);
    EXPECT_TRUE(x1 == 0 && y1 == 0 && x2 == 0 && y2 == 0);
    EXPECT_EQ(tsMath_parabolaTangentsToPoint(nullptr, &y1, nullptr, nullptr, 0.0, 0.04, 0.0, 10, 1, 60, 0),
              0);

    // Vertex (0, 0), grades 0.02 in and -0.04 out (A = (-100, -2), B = (100, -4)),
    // arguments y first. A curve of length L passes 50 past the vertex at
    // g1 50 + (g2 - g1) (50 + L/2)^2 / (2 L): -2.375 for L = 200.
    double length = -1;
    EXPECT_EQ(tsMath_passTangentParabolaThruPoint(&length, -2, -100, -4, 100, 0, 0, -2.375, 50), 2);
    EXPECT_NEAR(length, 200.0, 1e-9);
    EXPECT_EQ(tsMath_passTangentParabolaThruPoint(&length, -2, -100, -2, 100, 0, 0, -1.5, 0), 0);  // +-0.02
    EXPECT_EQ(length, 0.0);
}

TEST(MathTangents, CircularCurveThroughAPoint)
{
    // Tangents along +x (B) and +y (A) from V = (0, 0): circles tangent to both
    // through (2, 1) have centres (R, R) with (2 - R)^2 + (1 - R)^2 = R^2, R = 1
    // (beyond the contacts, flag set) or 5 (flag clear); (1, 2), nearer A, the same.
    for (const auto &[px, py, flag, expected] :
         {std::tuple{2.0, 1.0, 1, 1.0}, {2.0, 1.0, 0, 5.0}, {1.0, 2.0, 1, 1.0}, {1.0, 2.0, 0, 5.0}}) {
        double radius = -1;
        tsMath_passTangentCurveThruPoint(&radius, 100, 0, 0, 100, 0, 0, py, px, flag);
        EXPECT_NEAR(radius, expected, 1e-9) << px << " " << flag;
    }
    // A road bend turning left by 40 degrees at V = (1000, 2000): the 300 m
    // curve has its centre on the bisector (110 degrees) at 300 / cos 20 from V;
    // a point of it 15 degrees round from the first contact gives 300, flag clear.
    const double vx = 1000, vy = 2000, d = 300 / std::cos(20 * kDeg);
    const double ox = vx + d * std::cos(110 * kDeg), oy = vy + d * std::sin(110 * kDeg);
    const double px = ox + 300 * std::cos(285 * kDeg), py = oy + 300 * std::sin(285 * kDeg);
    double radius = -1;
    tsMath_passTangentCurveThruPoint(&radius, vy, vx - 500, vy + 500 * std::sin(40 * kDeg),
                                     vx + 500 * std::cos(40 * kDeg), vy, vx, py, px, 0);
    EXPECT_NEAR(radius, 300.0, 1e-7);
}

}  // namespace
