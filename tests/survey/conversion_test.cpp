// Conversions of surveying: angle units, azimuth and direction, quadrants,
// sexagesimal splitting, rounding to a step, feet and the degree of curve;
// expected values are closed forms or worked by hand.
#include <tessar/conversion.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numbers>
#include <string>

namespace {

constexpr double kPi = std::numbers::pi;

TEST(ConversionAngles, UnitsAgainstClosedForms)
{
    EXPECT_DOUBLE_EQ(tsConversion_degreeToRadian(180.0), kPi);
    EXPECT_DOUBLE_EQ(tsConversion_degreeToRadian(-45.0), -kPi / 4.0);
    EXPECT_DOUBLE_EQ(tsConversion_radianToDegree(kPi / 2.0), 90.0);
    EXPECT_DOUBLE_EQ(tsConversion_gradToRadian(50.0), kPi / 4.0);
    EXPECT_DOUBLE_EQ(tsConversion_radianToGrad(kPi), 200.0);
}

// Azimuth clockwise from north against direction counter-clockwise from east,
// in radians and in degrees.
TEST(ConversionAzimuth, NorthIsUpAndEastIsZero)
{
    // clang-format off
    const struct Row { double azimuth, direction; } rows[] = {
        {0.0, kPi / 2.0}, {kPi / 2.0, 0.0}, {kPi, 3.0 * kPi / 2.0}, {-kPi / 2.0, kPi},  // N, E, S, W from below 0
        {kPi / 4.0, kPi / 4.0}, {3.0 * kPi / 4.0, 7.0 * kPi / 4.0},  // north-east is its own image
        {2.0 * kPi + kPi / 2.0, 0.0}};                               // more than a turn
    // clang-format on
    for (const Row &r : rows) {
        const double azimuth = std::fmod(r.azimuth + 4.0 * kPi, 2.0 * kPi), toDeg = 180.0 / kPi;
        EXPECT_NEAR(tsConversion_azimuthToDirection(r.azimuth), r.direction, 1e-14) << r.azimuth;
        EXPECT_NEAR(tsConversion_directionToAzimuth(r.direction), azimuth, 1e-14) << r.direction;
        EXPECT_NEAR(tsConversion_azimuthToDirectionDegree(r.azimuth * toDeg), r.direction * toDeg, 1e-12);
        EXPECT_NEAR(tsConversion_directionToAzimuthDegree(r.direction * toDeg), azimuth * toDeg, 1e-12);
    }
    for (double a = 0.0; a < 2.0 * kPi; a += 0.0137) {
        const double d = tsConversion_azimuthToDirection(a);
        EXPECT_TRUE(d >= 0.0 && d < 2.0 * kPi) << a;  // stays in one turn
    }
}

TEST(ConversionQuadrant, BoundariesLieTheToleranceEarly)
{
    // clang-format off
    const struct Row { double direction; int32_t quadrant; } rows[] = {
        {0.0, 1}, {kPi / 2.0 - 6e-8, 1}, {kPi / 2.0 - 1e-8, 4},  // NE beyond the tolerance before north, NW within
        {3.0, 4}, {kPi - 1e-8, 3}, {4.0, 3}, {3.0 * kPi / 2.0 - 1e-8, 2}, {2.0 * kPi - 6e-8, 2},
        {2.0 * kPi - 1e-8, 0}, {-1e-8, 0},  // a hair short of east, from either side, is in no quadrant
        {2.0 * kPi + 0.1, 1}, {-kPi / 4.0, 2}};  // normalised first
    // clang-format on
    for (const Row &r : rows)
        EXPECT_EQ(tsConversion_quadrantNumber(r.direction), r.quadrant) << r.direction;
}

TEST(ConversionSexagesimal, DegreesToDegreesAndMinutes)
{
    // clang-format off
    const struct Row { double value; int32_t degrees; double minutes; } rows[] = {
        {10.5, 10, 30.0}, {-10.5, -10, -30.0}, {-0.25, 0, -15.0},  // both with the sign of the value
        {10.9999999999, 11, 0.0}, {-10.9999999999, -11, 0.0},     // minutes within 5e-8 of +-60
        {10.999999, 10, 59.99994}};                                // 6e-5 short of 60: left alone
    // clang-format on
    for (const Row &r : rows) {
        int32_t d = -99;
        double m = -99.0;
        EXPECT_EQ(tsConversion_degreeToDM(&d, &m, r.value), 0);
        EXPECT_TRUE(d == r.degrees && std::fabs(m - r.minutes) < 1e-9) << r.value << ": " << d << " " << m;
    }
    EXPECT_EQ(tsConversion_degreeToDM(nullptr, nullptr, 12.3), 0);
}

TEST(ConversionSexagesimal, DegreesToDegreesMinutesSeconds)
{
    // clang-format off
    const struct Row { double value; int32_t degrees, minutes; double seconds; } rows[] = {
        {12.5125, 12, 30, 45.0}, {-12.5125, -12, -30, -45.0}, {45.0, 45, 0, 0.0},  // 0.5125 deg = 30' 45"
        // Seconds within the tolerance of 60 carry through the minutes into the degrees.
        {10.99999999999999, 11, 0, 0.0}, {-10.99999999999999, -11, 0, 0.0},
        {5.0 + 58.0 / 60.0 + 59.99999999 / 3600.0, 5, 59, 0.0},  // carries into the minutes only
        {20.0 / 60.0 + 59.9999999996 / 3600.0, 0, 21, 0.0}};      // the minutes become 21
    // clang-format on
    for (const Row &r : rows) {
        int32_t d = -99, m = -99;
        double s = -99.0;
        EXPECT_EQ(tsConversion_degreeToDMS(&d, &m, &s, r.value), 0);
        EXPECT_TRUE(d == r.degrees && m == r.minutes && std::fabs(s - r.seconds) < 1e-8)
            << r.value << ": " << d << " " << m << " " << s;
    }
    int32_t m = 0;
    EXPECT_TRUE(tsConversion_degreeToDMS(nullptr, &m, nullptr, 1.5) == 0 && m == 30);
}

TEST(ConversionSexagesimal, JoiningHasNoSignLogic)
{
    double out = 0.0;
    EXPECT_TRUE(tsConversion_DMToDegree(&out, 10, 30.0) == 10.5 && out == 10.5);
    EXPECT_DOUBLE_EQ(tsConversion_DMToDegree(nullptr, -10, 30.0), -9.5);  // not -10.5
    EXPECT_DOUBLE_EQ(tsConversion_DMSTodegree(&out, 12.0, 30.0, 45.0), 12.5125);
    EXPECT_EQ(out, tsConversion_DMSTodegree(nullptr, 12.0, 30.0, 45.0));
    EXPECT_DOUBLE_EQ(tsConversion_DMSTodegree(nullptr, -10.0, 30.0, 36.0), -9.49);
}

TEST(ConversionRounding, ToAStep)
{
    // clang-format off
    const struct Row { double value, step; int32_t mode; double expected; } rows[] = {
        // Halves go up, also for negatives (toward plus infinity); within 5e-8
        // below the half: up, 1e-7 below: down; the band widens upward for negatives.
        {2.5, 1.0, 3, 3.0}, {-2.5, 1.0, 3, -2.0}, {-2.6, 1.0, 3, -3.0}, {2.4, 1.0, 3, 2.0},
        {2.49999996, 1.0, 3, 3.0}, {2.4999999, 1.0, 3, 2.0}, {-2.50000001, 1.0, 3, -2.0}, {-2.5000001, 1.0, 3, -3.0},
        // Mode 1 the upper neighbour, mode 2 the lower, numerically, not by magnitude.
        {2.5, 1.0, 1, 3.0}, {2.5, 1.0, 2, 2.0}, {-2.5, 1.0, 1, -2.0}, {-2.5, 1.0, 2, -3.0},
        {7.3, -0.5, 1, 7.5}, {7.3, 0.5, 2, 7.0},  // the step is taken by its absolute value
        // Already a multiple (within the tolerance), or no step: unchanged; unknown mode: 0 if anything to round.
        {7.0, 0.5, 1, 7.0}, {7.00000001, 0.5, 1, 7.00000001}, {7.3, 0.0, 1, 7.3}, {7.3, 1e-9, 3, 7.3},
        {7.3, 0.5, 4, 0.0}, {7.0, 0.5, 4, 7.0}, {1234.5678, 100.0, 3, 1200.0}};
    // clang-format on
    for (const Row &r : rows) {
        double out = -99.0;
        const double got = tsConversion_roundDouble(&out, r.value, r.step, r.mode);
        EXPECT_NEAR(got, r.expected, 1e-12) << r.value << " step " << r.step << " mode " << r.mode;
        EXPECT_EQ(out, got);
    }
    // The rounding path skips a null result address.
    EXPECT_DOUBLE_EQ(tsConversion_roundDouble(nullptr, 2.5, 1.0, 3), 3.0);
}

TEST(ConversionRounding, ByDecimalDigits)
{
    double out = 0.0;
    EXPECT_NEAR(tsConversion_roundDoubleByDecimalDigits(&out, 1.23456, 2, 3), 1.23, 1e-12);
    EXPECT_NEAR(out, 1.23, 1e-12);
    // 1.235 is stored a hair below the half; the tolerance still takes it up.
    EXPECT_NEAR(tsConversion_roundDoubleByDecimalDigits(nullptr, 1.235, 2, 3), 1.24, 1e-12);
    EXPECT_NEAR(tsConversion_roundDoubleByDecimalDigits(nullptr, 1.231, 2, 1), 1.24, 1e-12);
    EXPECT_NEAR(tsConversion_roundDoubleByDecimalDigits(nullptr, 1234.0, -2, 2), 1200.0, 1e-9);
    EXPECT_NEAR(tsConversion_roundDoubleByDecimalDigits(nullptr, -0.0449, 1, 3), 0.0, 1e-12);
    // A null result is accepted also where nothing is to be rounded: 1.5 is a
    // multiple of 0.1 within the tolerance, 1200 one of 100, and 7 of 10^0.
    EXPECT_DOUBLE_EQ(tsConversion_roundDoubleByDecimalDigits(nullptr, 1.5, 1, 3), 1.5);
    EXPECT_DOUBLE_EQ(tsConversion_roundDoubleByDecimalDigits(nullptr, 1200.0, -2, 1), 1200.0);
    EXPECT_DOUBLE_EQ(tsConversion_roundDoubleByDecimalDigits(nullptr, 7.0, 0, 4), 7.0);
    // A step below the tolerance (10^-8) leaves the value as it is.
    EXPECT_DOUBLE_EQ(tsConversion_roundDoubleByDecimalDigits(nullptr, 1.23456789012, 8, 3), 1.23456789012);
}

TEST(ConversionFeet, AgainstTheDefinitions)
{
    // International foot: 0.3048 m exactly. US survey foot: 1200/3937 m.
    EXPECT_DOUBLE_EQ(tsConversion_internationalFootToMeter(1000.0), 304.8);
    EXPECT_NEAR(tsConversion_usfootToMeter(3937.0), 1200.0, 1e-10);
    EXPECT_NEAR(tsConversion_meterToUsFoot(1200.0), 3937.0, 1e-10);
    EXPECT_NEAR(tsConversion_meterToInternationalFoot(304.8), 1000.0, 1e-10);
    // One US survey foot is (1200/3937)/0.3048 international feet, and back.
    EXPECT_NEAR(tsConversion_usFootToInternationalFoot(1.0e6), 1.0e6 * 1200.0 / 3937.0 / 0.3048, 1e-6);
    EXPECT_NEAR(tsConversion_internationalFootToUsFoot(1.0e6), 1.0e6 * 0.3048 * 3937.0 / 1200.0, 1e-6);
}

TEST(ConversionDegreeOfCurve, ByArcAndByChord)
{
    // An arc of 100 with a central angle of 1 degree has R = 18000 / pi.
    const double oneDegree = 18000.0 / kPi;
    EXPECT_NEAR(tsConversion_radiusToDegree(oneDegree), 1.0, 1e-14);
    EXPECT_NEAR(tsConversion_radiusToDegree(-oneDegree / 4.0), -4.0, 1e-13);  // keeps the sign
    EXPECT_NEAR(tsConversion_degreeToRadius(1.0), oneDegree, 1e-10);
    EXPECT_NEAR(tsConversion_degreeToRadius(-2.0), -oneDegree / 2.0, 1e-10);
    EXPECT_TRUE(tsConversion_radiusToDegree(5e-8) == 0.0 && tsConversion_radiusToDegree(-4e-8) == 0.0);
    EXPECT_TRUE(tsConversion_degreeToRadius(5e-8) == 0.0 && tsConversion_degreeToRadius(6e-8) != 0.0);

    // A chord of 100 in a radius of 100 spans 60 degrees; in a radius of 50, a half turn.
    EXPECT_NEAR(tsConversion_radiusToDegreeChord(100.0), 60.0, 1e-12);
    EXPECT_DOUBLE_EQ(tsConversion_radiusToDegreeChord(50.0), 180.0);
    EXPECT_DOUBLE_EQ(tsConversion_radiusToDegreeChord(-50.0), -180.0);
    EXPECT_TRUE(tsConversion_radiusToDegreeChord(49.0) == 0.0 &&
                tsConversion_radiusToDegreeChord(-49.999) == 0.0);  // the chord does not fit
    EXPECT_NEAR(tsConversion_degreeToRadiusChord(60.0), 100.0, 1e-12);
    EXPECT_NEAR(tsConversion_degreeToRadiusChord(180.0), 50.0, 1e-12);
    EXPECT_TRUE(tsConversion_degreeToRadiusChord(0.0) == 0.0 &&
                tsConversion_degreeToRadiusChord(-5e-8) == 0.0);
    // The chord form gives a slightly larger degree than the arc form.
    EXPECT_GT(tsConversion_radiusToDegreeChord(500.0), tsConversion_radiusToDegree(500.0));
}

TEST(ConversionText, DecimalsAreLimitedToZeroToEight)
{
    const struct Row {
        double value;
        int32_t decimals;
        const char *text;
    } rows[] = {{kPi, 12, "3.14159265"},  // 12 decimals print 8
                {kPi, 8, "3.14159265"},  {kPi, 3, "3.142"},       {kPi, 0, "3"},
                {kPi, -3, "3"},          {-1234.5, 2, "-1234.50"}};
    for (const Row &r : rows) {
        char buffer[64];
        std::memset(buffer, 'x', sizeof buffer);
        const int32_t length = tsConversion_doubleToString(buffer, r.value, r.decimals);
        EXPECT_TRUE(std::string(buffer) == r.text && length == int32_t(std::strlen(r.text))) << buffer;
    }
}

}  // namespace
