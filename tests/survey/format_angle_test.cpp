// Angle and direction text: pieces and carries, labels and flags, the
// direction styles by quadrant, cardinal indices read from the printed text,
// geodetic ordinates, and round trips through the value parser. Angles are
// given in degrees and converted here; expected texts are worked by hand.
#include <tessar/format.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

namespace {

constexpr int32_t kFailure = 32768;
constexpr double kPi = 3.14159265358979323846;

double rad(double degrees)
{
    return degrees * kPi / 180.0;
}

TEST(FormatAngle, PiecesCarryAtSixtyAndShowTheSignInTheDegrees)
{
    // clang-format off
    const struct Row { double degrees; int32_t mode, decimals, truncate, pad, keep, plus;
                       const char *first, *second, *third; } rows[] = {
        // 10.99999999 = 10 59' 59.999964": seconds print 60.00 and carry twice;
        // the minutes 59.9999994 print 60.00 and carry once, but not at 6 decimals.
        {10.99999999, 3, 2, 0, 1, 0, 0, "00.00", "00", "011"}, {10.99999999, 3, 2, 0, 0, 0, 0, "0.00", "0", "11"},
        {10.99999999, 2, 2, 0, 0, 0, 0, "00", "11", "-"}, {10.99999999, 2, 6, 0, 0, 0, 0, "59.999999", "10", "-"},
        {45.50416666666667, 3, 1, 0, 0, 0, 0, "15.0", "30", "45"},  // 45 30' 15"
        // The sign shows in the degrees only: that of -0.5 is lost.
        {-0.5, 3, 0, 0, 0, 0, 0, "0", "30", "0"}, {-10.5, 2, 1, 0, 0, 0, 0, "30.0", "-10", "-"},
        {-10.5, 1, 1, 0, 0, 0, 0, "-10.5", "-", "-"}, {45.0, 1, 0, 0, 0, 0, 1, "+45", "-", "-"},
        {45.5, 3, 0, 0, 0, 0, 1, "0", "30", "+45"}, {10.999, 1, 2, 1, 0, 0, 0, "10.99", "-", "-"},
        {10.999, 1, 2, 0, 0, 0, 0, "11.00", "-", "-"}, {7.5, 1, 1, 0, 1, 0, 0, "007.5", "-", "-"},
        // Without keep, 2 pi comes off once.
        {370.0, 1, 0, 0, 0, 0, 0, "10", "-", "-"}, {370.0, 1, 0, 0, 0, 1, 0, "370", "-", "-"},
        {730.0, 1, 0, 0, 0, 0, 0, "370", "-", "-"}, {90.0, 4, 2, 0, 0, 0, 0, "100.00", "-", "-"},
        {57.29577951308232, 5, 3, 0, 0, 0, 0, "1.000", "-", "-"}, {45.0, 6, 2, 0, 0, 0, 0, "-", "-", "-"}};
    // One radian in mode 5; mode 6 does not exist.
    // clang-format on
    for (const Row &r : rows) {
        char first[64] = "-", second[64] = "-", third[64] = "-";
        EXPECT_EQ(format_getAngleStrings(first, second, third, rad(r.degrees), r.mode, r.decimals, r.truncate,
                                         3, r.pad, r.keep, r.plus),
                  0);
        EXPECT_EQ(std::string(first) + "|" + second + "|" + third,
                  std::string(r.first) + "|" + r.second + "|" + r.third)
            << r.degrees << " mode " << r.mode;
    }
}

TEST(FormatAngle, LabelsFlagsAndModes)
{
    // clang-format off
    const struct Row { double degrees; int32_t mode, decimals, flags; const char *degreeLabel, *expected; } rows[] = {
        {45.50416666666667, 3, 2, 0, "d", "45d 30' 15.00\""}, {45.50416666666667, 3, 2, 16, "d", "45d30'15.00\""},
        {45.50416666666667, 3, 0, 4, "d", "045d 30' 15\""}, {45.5, 2, 1, 0, "d", "45d 30.0'"},
        {45.5, 1, 2, 0, "d", "45.50d"}, {45.0, 1, 0, 64, "d", "+45d"}, {10.999, 1, 2, 2, "d", "10.99d"},
        {90.0, 4, 1, 0, "d", "100.0g"},
        {45.0, 1, 0, 0, "deg%%", "45deg%"},  // a label is a format: %% is one percent sign
        {45.0, 1, 0, 0, "GraphicCircle", "45%%d"}, {45.0, 1, 0, 0, nullptr, "45"}};
    // clang-format on
    for (const Row &r : rows) {
        char text[128];
        EXPECT_EQ(tsFormat_getFormattedAngleExt(text, rad(r.degrees), r.mode, r.decimals, r.flags,
                                                r.degreeLabel, "'", "\"", "g"),
                  0);
        EXPECT_STREQ(text, r.expected);
    }
    char text[64] = "kept", other[64];
    EXPECT_EQ(tsFormat_getFormattedAngle(text, 1.0, 5, 3, "d", "'", "\""),
              0);  // radians have no labelled form
    EXPECT_EQ(tsFormat_doubleAngleToFormattedAngle(other, rad(45.5), 2, 0, "d", "m", nullptr), 0);
    EXPECT_EQ(std::string(text) + "|" + other, "kept|45d 30m");
    EXPECT_EQ(tsFormat_getFormattedAngle(nullptr, 1.0, 1, 3, nullptr, nullptr, nullptr), kFailure);
}

TEST(FormatDirection, StylesByQuadrant)
{
    // clang-format off
    // Directions counter-clockwise from east.
    const struct Row { double degrees; int32_t mode, style, decimals, flags; const char *expected; } rows[] = {
        {45.0, 1, 3, 0, 0, "N 45 E"}, {60.0, 1, 3, 0, 0, "N 30 E"}, {120.0, 1, 3, 0, 0, "N 30 W"},
        {200.0, 1, 3, 0, 0, "S 70 W"}, {300.0, 1, 3, 0, 0, "S 30 E"}, {45.0, 4, 3, 0, 0, "N 50 E"},
        {45.5, 3, 3, 0, 4, "N 44 30 00 E"}, {45.0, 1, 3, 0, 32, "N45E"},  // bearing degrees pad to 2
        // Azimuths, clockwise from north; conventional directions normalised.
        {0.0, 1, 2, 1, 0, "90.0"}, {300.0, 1, 2, 0, 0, "150"}, {90.0, 3, 2, 0, 0, "0 0 0"},
        {123.5, 1, 1, 1, 0, "123.5"}, {-90.0, 1, 1, 0, 0, "270"},
        // Style 5, the reversed line: azimuth 45 reads 225, azimuth 200 reads 20.
        {45.0, 1, 5, 0, 0, "225"}, {250.0, 1, 5, 0, 0, "20"},
        // Style 6 turns azimuths above 90 and below 270 by half a turn:
        // 200 (S 20 W) becomes 20, 120 (S 60 E) becomes 300; 300 and 45 stay.
        {250.0, 1, 6, 0, 0, "N 20 E"}, {330.0, 1, 6, 0, 0, "N 60 W"}, {150.0, 1, 6, 0, 0, "N 60 W"},
        {45.0, 1, 6, 0, 0, "N 45 E"}, {45.0, 1, 4, 0, 0, ""}};  // no pieces for style 4
    // clang-format on
    for (const Row &r : rows) {
        char text[128] = "garbage";
        EXPECT_EQ(tsFormat_getFormattedDirectionExt(text, rad(r.degrees), r.mode, r.style, r.decimals,
                                                    r.flags, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                    nullptr),
                  0);
        EXPECT_STREQ(text, r.expected) << r.degrees << " style " << r.style;
    }
    char text[128];
    tsFormat_getFormattedDirection(text, rad(45.0), 1, 3, 0, "d", nullptr, nullptr);
    EXPECT_STREQ(text, "N 45d E");
    const char letters[4][33] = {"Nord", "Est", "Sud", "Ouest"};
    tsFormat_getFormattedDirectionExt(text, rad(200.0), 3, 3, 0, 0, "d", "'", "\"", nullptr, letters,
                                      nullptr);
    EXPECT_STREQ(text, "Sud 70d 0' 0\" Ouest");
    EXPECT_EQ(tsFormat_getFormattedDirection(nullptr, 0.0, 1, 1, 0, nullptr, nullptr, nullptr), kFailure);
}

TEST(FormatDirection, CardinalIndexIsReadFromThePrintedText)
{
    // clang-format off
    const struct Row { double degrees; int32_t mode, style, decimals, quadrant, cardinal; } rows[] = {
        {90.0, 1, 1, 0, 4, 1},  // pi / 2 opens quadrant 4; 90 is north
        {89.6, 1, 1, 0, 1, 1}, {89.6, 1, 1, 1, 1, -1},  // prints 90, then 89.6
        {180.0, 1, 3, 0, 4, 4},  // on west: quadrant 4, bearing 90
        {180.0005, 1, 3, 2, 4, 4}, {180.001, 1, 3, 2, 3, 4},  // 8.7e-6 rad past pi: quadrant 4; 1.7e-5: 3
        {260.0, 1, 3, 0, 3, -1}, {0.0, 1, 2, 0, 1, 2}, {90.0, 4, 1, 0, 4, 1}, {90.0, 3, 1, 0, 4, 1},
        {90.5, 2, 1, 0, 4, -1}, {90.0, 5, 1, 2, 4, -1}, {30.0, 1, 3, 0, 1, -1}};  // radians: no whole value
    // clang-format on
    for (const Row &r : rows) {
        char a[64], b[64], c[64];
        int32_t quadrant = 0, cardinal = 0;
        EXPECT_EQ(format_quadrantNumber(a, b, c, &quadrant, &cardinal, rad(r.degrees), r.mode, r.style,
                                        r.decimals, 0, 0, 0, 0),
                  0);
        EXPECT_TRUE(quadrant == r.quadrant && cardinal == r.cardinal)
            << r.degrees << " mode " << r.mode << ": " << quadrant << " " << cardinal;
    }
    char a[64], b[64], c[64];
    int32_t cardinal = 0;
    EXPECT_EQ(format_quadrantNumber(a, b, c, nullptr, nullptr, 1.0, 1, 5, 0, 0, 0, 0, 0), kFailure);
    EXPECT_EQ(format_quadrantNumber(a, b, c, nullptr, nullptr, NAN, 1, 1, 0, 0, 0, 0, 0), kFailure);
    EXPECT_EQ(format_quadrantNumberBearing(a, b, c, &cardinal, 1.0, 5, 1, 0, 0, 0, 0, 0, 0), kFailure);

    // With a cardinal table an axis prints the table's name, if the printed
    // azimuth reads a whole quarter turn: 0.001 prints 0.00, 359.999 360.00.
    const char names[4][33] = {"North", "East", "South", "West"};
    // clang-format off
    const struct { double degrees; int32_t style; const char *expected; } named[] = {{90.0, 2, "North"},
        {89.999, 2, "North"}, {90.001, 2, "360.00"}, {0.0, 1, "East"}, {270.0, 3, "South"}, {200.0, 3, "S 70.00 W"}};
    // clang-format on
    for (const auto &n : named) {
        char text[64];
        tsFormat_getFormattedDirectionExt(text, rad(n.degrees), 1, n.style, 2, 0, nullptr, nullptr, nullptr,
                                          nullptr, nullptr, names);
        EXPECT_STREQ(text, n.expected) << n.degrees;
    }
}

TEST(FormatGeodetic, OrdinatesWithHemisphere)
{
    // clang-format off
    const struct { int32_t kind; double degrees; const char *expected; } rows[] = {
        {0, 45.50416666666667, "45\xB0 30' 15\" N"}, {0, -33.5, "33\xB0 30' 0\" S"},
        {1, -122.25, "122\xB0 15' 0\" W"}, {1, 0.0, "0\xB0 0' 0\" E"}, {7, 12.5, "12\xB0 30' 0\""},
        {0, 10.99988888888889, "11\xB0 0' 0\" N"}};  // 10 59' 59.6" rounds up and carries
    // clang-format on
    for (const auto &r : rows) {
        char text[64];
        EXPECT_EQ(tsFormat_getFormattedGeodeticOrdinate(text, r.kind, rad(r.degrees)), 0);
        EXPECT_STREQ(text, r.expected);
    }
    EXPECT_EQ(tsFormat_getFormattedGeodeticOrdinate(nullptr, 0, 1.0), kFailure);
}

TEST(FormatGeodetic, ReadingGivesOnlyTheSignedZeroOfTheHemisphere)
{
    // clang-format off
    const struct { int32_t kind; const char *text; int32_t status; bool negative; const char *rest; } rows[] = {
        {0, " 45 30 15 N ", 0, false, "45 30 15 "}, {0, "45 30 s", 0, true, "45 30 "},
        {1, "122 15 W", 0, true, "122 15 "}, {1, "8 e", 0, false, "8 "}, {0, "-33 30", 0, true, "33 30"},
        {0, "10 W", 0, false, "10 W"},  // W is no latitude letter
        {2, "10 N", kFailure, false, "10 N"}, {0, "   ", kFailure, false, ""}};
    // clang-format on
    for (const auto &r : rows) {
        char text[64];
        std::strcpy(text, r.text);
        double value = 99.0;
        EXPECT_EQ(tsFormat_getDoubleGeodeticOrdinate(&value, r.kind, text), r.status) << r.text;
        EXPECT_TRUE(value == 0.0 && std::signbit(value) == r.negative && std::string(text) == r.rest)
            << r.text;
    }
    double value = 1.0;
    EXPECT_EQ(tsFormat_getDoubleGeodeticOrdinate(&value, 0, nullptr), kFailure);
}

TEST(FormatAngle, RoundTripsThroughTheParser)
{
    // An angle read back lies within half a unit of the last printed digit.
    // clang-format off
    const struct { double degrees; int32_t mode, decimals; double halfUnitDegrees; } angles[] = {
        {123.7519, 3, 2, 0.005 / 3600}, {-10.5, 3, 2, 0.005 / 3600}, {123.75, 2, 0, 0.5 / 60},
        {123.7519, 1, 3, 0.0005}, {123.7519, 4, 4, 0.00005 * 0.9}};
    // clang-format on
    for (const auto &a : angles) {
        char text[64];
        tsFormat_getFormattedAngle(text, rad(a.degrees), a.mode, a.decimals, nullptr, nullptr, nullptr);
        double back = 0.0;
        ASSERT_EQ(tsFormat_getDoubleAngleExt(&back, a.mode, text), 0) << text;
        EXPECT_NEAR(back, rad(a.degrees), rad(a.halfUnitDegrees)) << text;
    }
    // Bearings and azimuths read back as the same direction.
    for (double degrees : {10.0, 100.25, 200.5, 300.75}) {
        for (int32_t style : {3, 2}) {
            char text[64];
            tsFormat_getFormattedDirection(text, rad(degrees), 3, style, 1, nullptr, nullptr, nullptr);
            double back = 0.0;
            ASSERT_EQ(tsFormat_getDoubleDirectionExt(&back, style == 3 ? 3 : 4, 3, text), 0) << text;
            EXPECT_NEAR(back, rad(degrees), rad(0.05 / 3600)) << text;
        }
    }
    char text[64];
    tsFormat_getFormattedAngle(text, rad(45.50416666666667), 3, 2, "\xB0", "'", "\"");
    EXPECT_STREQ(text, "45\xB0 30' 15.00\"");
    double back = 0.0;
    EXPECT_TRUE(tsFormat_getDoubleAngle(&back, text) == 0 &&
                std::fabs(back - rad(45.50416666666667)) < 1e-12);
    EXPECT_TRUE(tsFormat_getDoubleDirection(&back, "N 45 30 00 W") == 0 &&
                std::fabs(back - rad(135.5)) < 1e-12);  // azimuth 314.5
    EXPECT_NE(tsFormat_getDoubleAngle(&back, nullptr), 0);
}

}  // namespace
