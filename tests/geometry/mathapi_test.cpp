// tsMath_ values, angles and lines: wraps, azimuth quadrants, sides (positive on
// the right) and the non-commuting segment overlap. Worked by hand.
#include <tessar/mathapi.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <tuple>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
constexpr double kDeg = kPi / 180.0;
constexpr double kEps = 1e-12;

TEST(MathValues, AnglesFactorialsSignsAndInterpolation)
{
    EXPECT_TRUE(std::signbit(tsMath_normalizeAngle(-0.0)));  // -0.0 is not below 0
    for (const auto &[in, out] : {std::pair{-kPi / 2, 1.5 * kPi}, {2 * kPi, 0.0}, {-13.0, 6 * kPi - 13.0}})
        EXPECT_NEAR(tsMath_normalizeAngle(in), out, kEps) << in;
    EXPECT_NEAR(tsMath_normalizeAngleDegree(-90.0), 270.0, 1e-10);

    // 13! = 6227020800 = 1932053504 + 2^32; 34! holds 2^32 and wraps to 0;
    // 17! mod 2^32 is 4006445056 unsigned, -288522240 signed.
    for (const auto &[n, out] :
         {std::pair{-3, 1.0}, {1, 1.0}, {12, 479001600.0}, {13, 1932053504.0}, {17, 4006445056.0}, {34, 0.0}})
        EXPECT_EQ(tsMath_factorial(n), out) << n;
    EXPECT_EQ(tsMath_factorialDivision(17, 0), -288522240.0);
    EXPECT_EQ(tsMath_factorialDivision(2, 5), 1.0 / 60.0);  // 1 / (5 * 4 * 3)
    EXPECT_EQ(tsMath_factorialDivision(4, 4), 1.0);

    EXPECT_EQ(tsMath_doubleGetSign(std::numeric_limits<double>::quiet_NaN()), -1);
    EXPECT_EQ(tsMath_doubleGetSign(-0.0), 0);
    EXPECT_TRUE(std::signbit(tsMath_doubleMax(0.0, -0.0)));  // ties go to b in both
    EXPECT_TRUE(std::signbit(tsMath_doubleMin(0.0, -0.0)));
    EXPECT_EQ(tsMath_interpolateDoubles(0.0, 10.0, 5.0, 10.0, 20.0), 15.0);
    EXPECT_EQ(tsMath_interpolateDoubles(3.0, 10.0, 5.0, 3.0, 20.0), 10.0);  // vertical: no division
}

TEST(MathAngles, TurnsAndAzimuthQuadrants)
{
    EXPECT_NEAR(tsMath_angleBetweenDirections(0.1, 6.2), 6.1 - 2 * kPi, kEps);
    EXPECT_NEAR(tsMath_angleBetweenDirections(kPi, 0.0), kPi, kEps);  // -pi comes out as +pi
    // Clockwise from azimuth a to b, in degrees: same quadrant ahead and behind
    // (the long way), into the next, across north into a lower one, west to east.
    for (const auto &[a, b, out] :
         {std::tuple{10, 20, 10}, {20, 10, 350}, {80, 100, 20}, {350, 10, 20}, {270, 90, 180}})
        EXPECT_NEAR(tsMath_angleRightBetweenAzimuths(a * kDeg, b * kDeg), out * kDeg, 1e-12) << a << " " << b;
}

TEST(MathAngles, NearEqualAndParallelAcrossTheWrap)
{
    const double tol = 0.01;
    EXPECT_EQ(tsMath_anglesNearEqual(1.0, 1.005, tol), 1);
    EXPECT_EQ(tsMath_anglesNearEqual(1.0, 1.02, tol), 0);
    EXPECT_EQ(tsMath_anglesNearEqual(0.003, 2 * kPi - 0.004, tol), 1);  // a near 0: 2 pi - b + a
    EXPECT_EQ(tsMath_anglesNearEqual(-0.004, 0.003, tol), 1);           // b near 0: 2 pi - a + b
    EXPECT_EQ(tsMath_anglesNearEqual(0.003, 2 * kPi - 0.02, tol), 0);
    // Same sense, opposite sense, folded across 0, and the smaller of 0.9 and pi - 0.9.
    using R = std::tuple<double, double, int32_t, double>;
    for (const auto &[a, b, parallel, difference] :
         {R{0.1, 0.105, 1, 0.005}, R{0.1, 0.1 + kPi + 0.001, 1, 0.001}, R{0.0, 2 * kPi - 0.002, 1, 0.002},
          R{0.1, 1.0, 0, 0.9}}) {
        double d = -1.0;
        EXPECT_EQ(tsMath_directionsNearParallel(&d, a, b, tol), parallel) << b;
        EXPECT_NEAR(d, difference, 1e-12) << b;
    }
    EXPECT_EQ(tsMath_directionsNearParallel(nullptr, 0.1, 0.1 + kPi, tol), 1);
}

TEST(MathAngles, SweepsBetweenVectorsAndFromACentre)
{
    // asin of the sine: near a right angle a sine one ulp short of 1 costs 2e-8.
    using R = std::tuple<double, double, double, double>;
    for (const auto &[x2, y2, out, tol] : {R{0.0, -1.0, 1.5 * kPi, kEps}, R{-1.0, 0.0, kPi, kEps},
                                           R{-1.0, 1.0, 0.75 * kPi, kEps}, R{-1.0, -1.0, 1.25 * kPi, kEps}})
        EXPECT_NEAR(tsMath_getSweepAngleBetweenVectors2d(1, 0, x2, y2), out, tol) << x2 << " " << y2;
    EXPECT_NEAR(tsMath_getSweepAngleBetweenVectors2d(1, 1, -2, 2), kPi / 2, 3e-8);
    EXPECT_EQ(tsMath_getSweepAngleBetweenVectors2d(0, 0, 1, 0), 32768.0);  // the status as a double

    // Seen from (1, 1): (2, 1) is east, (1, 2) north, (3, 1) east again.
    double sweep = 9.0;
    EXPECT_EQ(tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, 1, 1, 2, 1, 1, 2, 0), 0);
    EXPECT_NEAR(sweep, -1.5 * kPi, kEps);
    EXPECT_EQ(tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, 1, 1, 2, 1, 3, 1, 1), 0);
    EXPECT_EQ(sweep, 0.0);  // equal directions: 0 one way, a whole clockwise turn the other
    EXPECT_EQ(tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, 1, 1, 2, 1, 3, 1, 0), 0);
    EXPECT_NEAR(sweep, -2 * kPi, kEps);
    EXPECT_EQ(tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, 1, 1, 1, 1, 3, 1, 1), kFail);
    EXPECT_NEAR(sweep, -2 * kPi, kEps);  // not written
}

TEST(MathLines, SidesOffsetsFeetAndEquations)
{
    // Along +x from (0, 0) to (10, 0) the right side is y < 0.
    EXPECT_EQ(tsMath_sideOfLine2d(0, 0, 10, 0, 5, -1), 1);
    EXPECT_EQ(tsMath_sideOfLine2d(0, 0, 10, 0, 5, 1), -1);
    EXPECT_EQ(tsMath_sideOfLine2d(0, 0, 10, 0, 20, 0), 0);
    double offset = 9.0, x = 0, y = 0, position = 0;
    EXPECT_EQ(tsMath_offsetToLine2d(&offset, 1, -3, 0, 0, 4, 0), 0);
    EXPECT_NEAR(offset, 3.0, kEps);
    EXPECT_EQ(tsMath_offsetToLine2d(&offset, 1, 2, 4, 4, 4, 4), kFail);
    EXPECT_EQ(offset, 0.0);  // cleared before the failure

    // (0, 4) against the diagonal (0, 0)-(4, 4): foot (2, 2), 2 sqrt 2 on the left.
    EXPECT_EQ(tsMath_projectOnLine2d(&x, &y, &offset, 0, 4, 0, 0, 4, 4), 0);
    EXPECT_TRUE(std::fabs(x - 2) < kEps && std::fabs(y - 2) < kEps);
    EXPECT_NEAR(offset, -2.0 * std::sqrt(2.0), kEps);
    EXPECT_EQ(tsMath_projectOnLine2d(&x, nullptr, nullptr, 0, 4, 1, 1, 1, 1), kFail);
    // P = O + 5 T + 2 N with T = (0.6, 0.8) and its right normal N = (0.8, -0.6).
    EXPECT_EQ(
        tsMath_projectOnLineDefinedByPointAndTangent2d(&x, &y, &position, &offset, 5.6, 3.8, 1, 1, 0.6, 0.8),
        0);
    EXPECT_TRUE(std::fabs(x - 4) < kEps && std::fabs(y - 5) < kEps);
    EXPECT_NEAR(position, 5.0, kEps);
    EXPECT_NEAR(offset, 2.0, kEps);
    EXPECT_EQ(tsMath_projectOnLineDefinedByPointAndTangent2d(&x, &y, &position, &offset, 5, 3, 1, 1, 0, 0),
              kFail);

    // Through (1, 2) along (3, 4): 4 x - 3 y + 2 = 0; a zero direction leaves the outputs.
    double a = 7, b = 7, c = 7;
    EXPECT_EQ(tsMath_calculateLineEquationFromOriginAndDirection2d(&a, &b, &c, 1, 2, 0, 0), kFail);
    EXPECT_EQ(a + b + c, 21.0);
    EXPECT_EQ(tsMath_calculateLineEquationFromOriginAndDirection2d(&a, &b, &c, 1, 2, 3, 4), 0);
    EXPECT_TRUE(a == 4 && b == -3 && c == 2);
    EXPECT_EQ(tsMath_calculerDistancePtLineEquation2d(&offset, 3, 4, -10, 0, 0), 0);
    EXPECT_EQ(offset, -2.0);  // -10 / 5, signed
    EXPECT_EQ(tsMath_calculerDistancePtLineEquation2d(&offset, 0, 0, -10, 0, 0), kFail);
}

TEST(MathLines, CrossingsOffsetLinesAndUnitVectors)
{
    double x = 0, y = 0, z = 0;
    EXPECT_EQ(tsMath_intersectLineWithLine2d(&x, &y, 0, 0, 2, 2, 0, 2, 2, 0), 0);
    EXPECT_TRUE(std::fabs(x - 1) < kEps && std::fabs(y - 1) < kEps);
    EXPECT_EQ(tsMath_intersectLineWithLine2d(nullptr, &y, 0, 0, 2, 0, 0, 1, 5, 1), 1);  // parallel: 1
    // 2 to the right of (0, 0)-(10, 0) is y = -2; the vertical x = 3 meets it at (3, -2).
    EXPECT_EQ(tsMath_projectOnLineByOffsetToLine2d(&x, &y, 0, 0, 10, 0, 3, 5, 3, -5, 2.0), 0);
    EXPECT_TRUE(std::fabs(x - 3) < kEps && std::fabs(y + 2) < kEps);
    EXPECT_EQ(tsMath_projectOnLineByOffsetToLine2d(&x, &y, 0, 0, 10, 0, 0, 5, 10, 5, 2.0), kFail);

    x = 2, y = 3, z = 6;  // length 7
    EXPECT_EQ(tsMath_normalizeVector3d(&x, &y, &z), 0);
    EXPECT_NEAR(z, 6.0 / 7.0, kEps);
    x = y = z = 0;
    EXPECT_EQ(tsMath_normalizeVector3d(&x, &y, &z), kFail);
    EXPECT_EQ(tsMath_normalizeVector2d(&x, nullptr), kFail);
    EXPECT_EQ(tsMath_locateByDistanceDirection2d(nullptr, nullptr, 0, 0, 1, 0), kFail);
    EXPECT_EQ(tsMath_locateByDistanceDirection2d(nullptr, &y, 1, 1, 2, kPi / 2), 0);  // one output is enough
    EXPECT_NEAR(y, 3.0, kEps);
    EXPECT_EQ(tsMath_locateByTranslationRotation2d(&x, &y, 1, 0, 10, 20, kPi / 2), 0);  // turned, then moved
    EXPECT_TRUE(std::fabs(x - 10) < kEps && std::fabs(y - 21) < kEps);
}

TEST(MathLines, OverlapTestsOnlyTheEndsOfTheSecondSegment)
{
    // AB inside CD: C and D both off AB; swapped, C lies on AB at t = 1/3; C
    // inside; touching at an end (t = 1 beyond 1 - tol); parallel one apart; not parallel.
    using R = std::tuple<double, double, double, double, double, double, int32_t>;
    for (const auto &[ax, bx, cx, cy, dx, dy, out] :
         {R{1.0, 2.0, 0.0, 0.0, 3.0, 0.0, 0}, R{0.0, 3.0, 1.0, 0.0, 2.0, 0.0, 1},
          R{0.0, 10.0, 5.0, 0.0, 20.0, 0.0, 1}, R{0.0, 10.0, 10.0, 0.0, 20.0, 0.0, 0},
          R{0.0, 10.0, 2.0, 1.0, 5.0, 1.0, 0}, R{0.0, 10.0, 2.0, 0.0, 5.0, 0.1, 0}})
        EXPECT_EQ(tsMath_overlapLineSegments(ax, 0, bx, 0, cx, cy, dx, dy, 1e-6), out) << cx << " " << dx;
}

}  // namespace
