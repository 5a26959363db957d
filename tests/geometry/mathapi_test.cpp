// The tsMath_ values, angles and lines: wrap of angles and factorials, the
// quadrant logic of azimuths, the one-way wrap of near-equal angles, sides
// and offsets (positive on the right), crossings and the non-commuting
// overlap of segments. Expected values are worked by hand beside each row.
#include <tessar/mathapi.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
constexpr double kDeg = kPi / 180.0;
constexpr double kEps = 1e-12;

TEST(MathValues, NormalizeAngleKeepsNegativeZeroAndWrapsOnce)
{
    // fmod(-0.0, 2 pi) is -0.0, which is not below 0: it comes back as is.
    const double negativeZero = tsMath_normalizeAngle(-0.0);
    EXPECT_EQ(negativeZero, 0.0);
    EXPECT_TRUE(std::signbit(negativeZero));
    struct Row {
        double in, out;
    } rows[] = {{-kPi / 2, 1.5 * kPi}, {7.0, 7.0 - 2 * kPi}, {2 * kPi, 0.0}, {-13.0, 6 * kPi - 13.0}};
    for (const Row &r : rows)
        EXPECT_NEAR(tsMath_normalizeAngle(r.in), r.out, kEps) << r.in;
    EXPECT_NEAR(tsMath_normalizeAngleDegree(-90.0), 270.0, 1e-10);
    EXPECT_NEAR(tsMath_normalizeAngleDegree(720.5), 0.5, 1e-10);
}

TEST(MathValues, FactorialsWrapIn32BitArithmetic)
{
    // 13! = 6227020800 = 1932053504 + 2^32. 34! holds 2^32 (17+8+4+2+1 = 32
    // factors of two), so it wraps to 0.
    struct Row {
        int32_t n;
        double out;
    } rows[] = {{-3, 1.0}, {0, 1.0}, {1, 1.0}, {5, 120.0}, {12, 479001600.0}, {13, 1932053504.0}, {34, 0.0}};
    for (const Row &r : rows)
        EXPECT_EQ(tsMath_factorial(r.n), r.out) << r.n;
    // 17! mod 2^32 = 4006445056 unsigned, -288522240 as signed 32-bit.
    EXPECT_EQ(tsMath_factorial(17), 4006445056.0);
    EXPECT_EQ(tsMath_factorialDivision(17, 0), -288522240.0);
    EXPECT_EQ(tsMath_factorialDivision(0, 17), 1.0 / -288522240.0);
    EXPECT_EQ(tsMath_factorialDivision(5, 2), 60.0);  // 5 * 4 * 3
    EXPECT_EQ(tsMath_factorialDivision(2, 5), 1.0 / 60.0);
    EXPECT_EQ(tsMath_factorialDivision(4, 4), 1.0);
}

TEST(MathValues, SignsExtremesAndInterpolation)
{
    EXPECT_EQ(tsMath_doubleGetSign(std::numeric_limits<double>::quiet_NaN()), -1);
    EXPECT_EQ(tsMath_doubleGetSign(-0.0), 0);
    EXPECT_EQ(tsMath_doubleGetSign(1e-300), 1);
    // Ties go to b in both: visible on the sign of a zero.
    EXPECT_TRUE(std::signbit(tsMath_doubleMax(0.0, -0.0)));
    EXPECT_TRUE(std::signbit(tsMath_doubleMin(0.0, -0.0)));
    EXPECT_EQ(tsMath_interpolateDoubles(0.0, 10.0, 5.0, 10.0, 20.0), 15.0);
    EXPECT_EQ(tsMath_interpolateDoubles(3.0, 10.0, 5.0, 3.0, 20.0), 10.0);  // vertical: no division
    EXPECT_EQ(tsMath_distance3d(1, 2, 3, 3, 5, 9), 7.0);                    // (2, 3, 6)
}

TEST(MathAngles, TurnsAndAzimuthQuadrants)
{
    EXPECT_NEAR(tsMath_angleBetweenDirections(0.1, 6.2), 6.1 - 2 * kPi, kEps);
    EXPECT_NEAR(tsMath_angleBetweenDirections(kPi, 0.0), kPi, kEps);  // -pi comes out as +pi
    // Clockwise from azimuth a to azimuth b, in degrees.
    struct Row {
        double a, b, out;
    } rows[] = {
        {10, 20, 10},    // same quadrant, ahead
        {20, 10, 350},   // same quadrant, behind: the long way round
        {80, 100, 20},   // into the next quadrant
        {350, 10, 20},   // across north into a lower quadrant
        {270, 90, 180},  // west to east
    };
    for (const Row &r : rows)
        EXPECT_NEAR(tsMath_angleRightBetweenAzimuths(r.a * kDeg, r.b * kDeg), r.out * kDeg, 1e-12) << r.a;
}

TEST(MathAngles, NearEqualAndParallelAcrossTheWrap)
{
    const double tol = 0.01;
    EXPECT_EQ(tsMath_anglesNearEqual(1.0, 1.005, tol), 1);
    EXPECT_EQ(tsMath_anglesNearEqual(1.0, 1.02, tol), 0);
    EXPECT_EQ(tsMath_anglesNearEqual(0.003, 2 * kPi - 0.004, tol), 1);  // a near 0: 2 pi - b + a
    EXPECT_EQ(tsMath_anglesNearEqual(-0.004, 0.003, tol), 1);           // b near 0: 2 pi - a + b
    EXPECT_EQ(tsMath_anglesNearEqual(0.003, 2 * kPi - 0.02, tol), 0);

    struct Row {
        double a, b;
        int32_t parallel;
        double difference;
    } rows[] = {
        {0.1, 0.105, 1, 0.005},              // same sense
        {0.1, 0.1 + kPi + 0.001, 1, 0.001},  // opposite sense
        {0.0, 2 * kPi - 0.002, 1, 0.002},    // folded across 0
        {0.1, 1.0, 0, 0.9},                  // the smaller of 0.9 and pi - 0.9
    };
    for (const Row &r : rows) {
        double difference = -1.0;
        EXPECT_EQ(tsMath_directionsNearParallel(&difference, r.a, r.b, tol), r.parallel) << r.b;
        EXPECT_NEAR(difference, r.difference, 1e-12) << r.b;
    }
    EXPECT_EQ(tsMath_directionsNearParallel(nullptr, 0.1, 0.1 + kPi, tol), 1);
}

TEST(MathAngles, SweepsBetweenVectorsAndFromACentre)
{
    struct Row {
        double x1, y1, x2, y2, out;
        double tol;
    } rows[] = {{1, 0, 0, 1, kPi / 2, kEps},
                {1, 0, 0, -1, 1.5 * kPi, kEps},
                {1, 0, -1, 0, kPi, kEps},
                {1, 0, -1, 1, 0.75 * kPi, kEps},
                {1, 0, -1, -1, 1.25 * kPi, kEps},
                // The angle comes from asin of the sine: near a right angle a
                // sine one ulp short of 1 costs about sqrt(2 eps) = 2e-8.
                {1, 1, -2, 2, kPi / 2, 3e-8}};
    for (const Row &r : rows)
        EXPECT_NEAR(tsMath_getSweepAngleBetweenVectors2d(r.x1, r.y1, r.x2, r.y2), r.out, r.tol) << r.x1;
    EXPECT_EQ(tsMath_getSweepAngleBetweenVectors2d(0, 0, 1, 0), 32768.0);

    // Seen from (1, 1): (2, 1) is east, (1, 2) north.
    double sweep = 9.0;
    EXPECT_EQ(tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, 1, 1, 2, 1, 1, 2, 1), 0);
    EXPECT_NEAR(sweep, kPi / 2, kEps);
    EXPECT_EQ(tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, 1, 1, 2, 1, 1, 2, 0), 0);
    EXPECT_NEAR(sweep, -1.5 * kPi, kEps);
    // Equal directions: 0 one way, a whole clockwise turn the other.
    EXPECT_EQ(tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, 1, 1, 2, 1, 3, 1, 1), 0);
    EXPECT_EQ(sweep, 0.0);
    EXPECT_EQ(tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, 1, 1, 2, 1, 3, 1, 0), 0);
    EXPECT_NEAR(sweep, -2 * kPi, kEps);
    sweep = 9.0;
    EXPECT_EQ(tsMath_calculateSweepAngleTwoPointsFromCenter(&sweep, 1, 1, 1, 1, 3, 1, 1), kFail);
    EXPECT_EQ(sweep, 9.0);
}

TEST(MathLines, SidesOffsetsAndFeet)
{
    // Along +x from (0, 0) to (10, 0) the right side is y < 0.
    EXPECT_EQ(tsMath_sideOfLine2d(0, 0, 10, 0, 5, -1), 1);
    EXPECT_EQ(tsMath_sideOfLine2d(0, 0, 10, 0, 5, 1), -1);
    EXPECT_EQ(tsMath_sideOfLine2d(0, 0, 10, 0, 20, 0), 0);

    double offset = 9.0;
    EXPECT_EQ(tsMath_offsetToLine2d(&offset, 1, -3, 0, 0, 4, 0), 0);
    EXPECT_NEAR(offset, 3.0, kEps);
    EXPECT_EQ(tsMath_offsetToLine2d(&offset, 1, 2, 0, 0, 4, 0), 0);
    EXPECT_NEAR(offset, -2.0, kEps);
    EXPECT_EQ(tsMath_offsetToLine2d(&offset, 1, 2, 4, 4, 4, 4), kFail);
    EXPECT_EQ(offset, 0.0);  // cleared before the failure
    EXPECT_EQ(tsMath_offsetToLine2d(nullptr, 1, 2, 0, 0, 4, 0), kFail);

    // (0, 4) against the diagonal (0, 0)-(4, 4): foot (2, 2), 2 sqrt 2 on the left.
    double x = 0, y = 0;
    EXPECT_EQ(tsMath_projectOnLine2d(&x, &y, &offset, 0, 4, 0, 0, 4, 4), 0);
    EXPECT_NEAR(x, 2.0, kEps);
    EXPECT_NEAR(y, 2.0, kEps);
    EXPECT_NEAR(offset, -2.0 * std::sqrt(2.0), kEps);
    EXPECT_EQ(tsMath_projectOnLine2d(&x, nullptr, nullptr, 0, 4, 1, 1, 1, 1), kFail);

    // P = O + 5 T + 2 N with T = (0.6, 0.8) and its right normal N = (0.8, -0.6).
    double position = 0;
    EXPECT_EQ(
        tsMath_projectOnLineDefinedByPointAndTangent2d(&x, &y, &position, &offset, 5.6, 3.8, 1, 1, 0.6, 0.8),
        0);
    EXPECT_NEAR(position, 5.0, kEps);
    EXPECT_NEAR(x, 4.0, kEps);
    EXPECT_NEAR(y, 5.0, kEps);
    EXPECT_NEAR(offset, 2.0, kEps);
    EXPECT_EQ(tsMath_projectOnLineDefinedByPointAndTangent2d(&x, &y, &position, &offset, 5, 3, 1, 1, 0, 0),
              kFail);
}

TEST(MathLines, EquationsAndDistances)
{
    // Through (1, 2) along (3, 4): 4 x - 3 y + 2 = 0.
    double a = 7, b = 7, c = 7;
    EXPECT_EQ(tsMath_calculateLineEquationFromOriginAndDirection2d(&a, &b, &c, 1, 2, 3, 4), 0);
    EXPECT_EQ(a, 4.0);
    EXPECT_EQ(b, -3.0);
    EXPECT_EQ(c, 2.0);
    a = b = c = 7;
    EXPECT_EQ(tsMath_calculateLineEquationFromOriginAndDirection2d(&a, &b, &c, 1, 2, 0, 0), kFail);
    EXPECT_EQ(a + b + c, 21.0);

    double distance = 0;
    EXPECT_EQ(tsMath_calculerDistancePtLineEquation2d(&distance, 3, 4, -10, 0, 0), 0);
    EXPECT_EQ(distance, -2.0);  // -10 / 5
    EXPECT_EQ(tsMath_calculerDistancePtLineEquation2d(&distance, 0, 0, -10, 0, 0), kFail);
}

TEST(MathLines, CrossingsAndOffsetLines)
{
    double x = 0, y = 0;
    EXPECT_EQ(tsMath_intersectLineWithLine2d(&x, &y, 0, 0, 2, 2, 0, 2, 2, 0), 0);
    EXPECT_NEAR(x, 1.0, kEps);
    EXPECT_NEAR(y, 1.0, kEps);
    EXPECT_EQ(tsMath_intersectLineWithLine2d(nullptr, &y, 0, 0, 2, 0, 0, 1, 5, 1), 1);  // parallel: 1

    // 2 to the right of (0, 0)-(10, 0) is y = -2; the vertical x = 3 meets it at (3, -2).
    EXPECT_EQ(tsMath_projectOnLineByOffsetToLine2d(&x, &y, 0, 0, 10, 0, 3, 5, 3, -5, 2.0), 0);
    EXPECT_NEAR(x, 3.0, kEps);
    EXPECT_NEAR(y, -2.0, kEps);
    EXPECT_EQ(tsMath_projectOnLineByOffsetToLine2d(&x, &y, 0, 0, 10, 0, 0, 5, 10, 5, 2.0), kFail);
}

TEST(MathLines, OverlapTestsOnlyTheEndsOfTheSecondSegment)
{
    const double tol = 1e-6;
    struct Row {
        double x1, y1, x2, y2, x3, y3, x4, y4;
        int32_t out;
    } rows[] = {
        {1, 0, 2, 0, 0, 0, 3, 0, 0},     // AB inside CD: C and D both off AB
        {0, 0, 3, 0, 1, 0, 2, 0, 1},     // swapped: C at t = 1/3
        {0, 0, 10, 0, 5, 0, 20, 0, 1},   // C inside
        {0, 0, 10, 0, 10, 0, 20, 0, 0},  // touching at an end: t = 1 is beyond 1 - tol
        {0, 0, 10, 0, 2, 1, 5, 1, 0},    // parallel, one apart
        {0, 0, 10, 0, 2, 0, 5, 0.1, 0},  // not parallel
    };
    for (const Row &r : rows)
        EXPECT_EQ(tsMath_overlapLineSegments(r.x1, r.y1, r.x2, r.y2, r.x3, r.y3, r.x4, r.y4, tol), r.out)
            << r.x3 << " " << r.x4;
}

TEST(MathLines, UnitVectorsAndPlacedPoints)
{
    double x = 3, y = 4, z = 0;
    EXPECT_EQ(tsMath_normalizeVector2d(&x, &y), 0);
    EXPECT_NEAR(x, 0.6, kEps);
    EXPECT_NEAR(y, 0.8, kEps);
    x = 2, y = 3, z = 6;  // length 7
    EXPECT_EQ(tsMath_normalizeVector3d(&x, &y, &z), 0);
    EXPECT_NEAR(z, 6.0 / 7.0, kEps);
    x = y = z = 0;
    EXPECT_EQ(tsMath_normalizeVector3d(&x, &y, &z), kFail);
    EXPECT_EQ(tsMath_normalizeVector2d(&x, nullptr), kFail);

    EXPECT_EQ(tsMath_locateByDistanceDirection2d(nullptr, nullptr, 0, 0, 1, 0), kFail);
    y = 0;
    EXPECT_EQ(tsMath_locateByDistanceDirection2d(nullptr, &y, 1, 1, 2, kPi / 2), 0);
    EXPECT_NEAR(y, 3.0, kEps);
    EXPECT_EQ(tsMath_locateByTranslationRotation2d(&x, &y, 1, 0, 10, 20, kPi / 2), 0);
    EXPECT_NEAR(x, 10.0, kEps);
    EXPECT_NEAR(y, 21.0, kEps);
}

}  // namespace
