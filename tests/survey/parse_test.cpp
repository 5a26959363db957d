// Value parsing: values as people type them, with units, sexagesimal angles,
// bearings, slopes, radii and stations, expressions over them, and rejected
// inputs. Expected values are worked by hand: a US survey foot is 1200/3937 m.
#include <tessar/format.h>
#include <tessar/parse.h>

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <iterator>
#include <numbers>
#include <string>

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kFoot = 1200.0 / 3937.0;
constexpr int32_t kFail = static_cast<int32_t>(0x80004005u);

double deg(double d)
{
    return d * kPi / 180.0;
}

// Text, the argument of the entry, and the value (ignored when rejected).
struct Row {
    const char16_t *text;
    double unit;
    bool ok;
    double expected;
};

template <class Parse> void checkRows(const Row *rows, std::size_t n, Parse parse, double tolerance = 1e-12)
{
    for (std::size_t i = 0; i < n; ++i) {
        const Row &r = rows[i];
        double value = -1.0;
        const int32_t status = parse(&value, r.text, r.unit);
        if (r.ok)
            EXPECT_TRUE(status == 0 &&
                        std::fabs(value - r.expected) <= tolerance * std::fmax(1.0, std::fabs(r.expected)))
                << "row " << i << ": " << status << " " << value;
        else
            EXPECT_EQ(status, kFail) << "row " << i;
    }
}

// "2 * -3": a plain factor takes its own sign; ".25": a number may start with
// the mark; "5 / 0 * 2": the failed division is passed over, the last operand
// decides; "\x01" is of no class and ends the text; "5E" without sign or digit is a word.
TEST(ParseNumber, ExpressionsAndRejections)
{
    const Row rows[] = {
        // clang-format off
        {u"2 * (3 + 4)", 0, true, 14.0}, {u"  42  ", 0, true, 42.0}, {u"-2 + 3", 0, true, 1.0},
        {u"7 / 2 - 1", 0, true, 2.5}, {u"2 * -3", 0, true, -6.0}, {u"1.5e3", 0, true, 1500.0},
        {u".25", 0, true, 0.25}, {u"((1))", 0, true, 1.0}, {u"5 / 0 * 2", 0, true, 10.0},
        {u"5\x01 junk", 0, true, 5.0}, {u"", 0, false, 0}, {u"abc", 0, false, 0}, {u"2 +", 0, false, 0},
        {u"(1 + 2", 0, false, 0}, {u"1 2", 0, false, 0}, {u"4 / 0", 0, false, 0}, {u"5E", 0, false, 0},
        {u"3 %", 0, false, 0}};
    // clang-format on
    checkRows(rows, std::size(rows),
              [](double *v, const char16_t *t, double) { return tsParse_stringToDouble(v, t); });
}

TEST(ParseNumber, NullTextFailsAndClearsTheResult)
{
    double value = 7.0;
    EXPECT_TRUE(tsParse_stringToDouble(&value, nullptr) == kFail && value == 0.0);
    EXPECT_EQ(tsParse_stringToLinear(&value, nullptr, 1.0), kFail);
    int32_t region = 9;
    EXPECT_EQ(tsParse_stringToStationByIndex(&value, &region, nullptr, 1.0), kFail);
}

// "1 in / 2": the unit goes with the first factor; "1 mile" is not the whole
// word MILES but an M word, metres; "5 6": a second part without a unit takes
// the unit too; "(1 + 2) M": 3 inside, then a word with no atom.
TEST(ParseLinear, FieldBookOfLengths)
{
    // clang-format off
    const Row rows[] = {
        {u"12.5 ft", 1.0, true, 12.5 * kFoot}, {u"3'6\"", 1.0, true, 3.5 * kFoot},
        {u"5' 6\"", 1.0, true, 5.5 * kFoot}, {u"3 FT", 1.0, true, 3.0 * kFoot},
        {u"3 feet", 1.0, true, 3.0 * kFoot}, {u"2", 0.3048, true, 0.6096}, {u"18 in", 1.0, true, 1.5 * kFoot},
        {u"1 in / 2", 1.0, true, kFoot / 24.0}, {u"2 yd", 1.0, true, 6.0 * kFoot},
        {u"1 miles", 1.0, true, 5280.0 * kFoot}, {u"1 mile", 1.0, true, 1.0}, {u"25 mm", 1.0, true, 0.025},
        {u"7 cm", 1.0, true, 0.07}, {u"4 dm", 1.0, true, 0.4}, {u"3 km", 1.0, true, 3000.0},
        {u"2 M * 3", 1.0, true, 6.0}, {u"10 M - 2 FT", 1.0, true, 10.0 - 2.0 * kFoot},
        {u"1 KM + 250", 2.0, true, 1500.0}, {u"5 6", 2.0, true, 22.0}, {u"1/2 in", 1.0, false, 0},
        {u"(1 + 2) M", 1.0, false, 0}, {u"5 * 2 M", 1.0, false, 0}, {u"5 parsecs", 1.0, false, 0},
        {u"5 M 6 M 7", 1.0, false, 0}, {u"FT", 1.0, false, 0}};
    // clang-format on
    checkRows(rows, std::size(rows), tsParse_stringToLinear);
}

// A hectare is read as 4356000 square feet, a hundred acres; "1 sqmi" is not
// SQMILES but the SQM prefix, square metres.
TEST(ParseArea, UnitWordsByTheirFirstLetters)
{
    const double f2 = kFoot * kFoot;
    // clang-format off
    const Row rows[] = {
        {u"1 HECTARES", 1.0, true, 4356000.0 * f2}, {u"2 acres", 1.0, true, 2.0 * 43560.0 * f2},
        {u"100 sqft", 1.0, true, 100.0 * f2}, {u"144 SQIN", 1.0, true, f2}, {u"1 sqyd", 1.0, true, 9.0 * f2},
        {u"1 sqmiles", 1.0, true, 5280.0 * 5280.0 * f2}, {u"1 sqmi", 1.0, true, 1.0},
        {u"250 SQM", 1.0, true, 250.0}, {u"2 sqkm", 1.0, true, 2.0e6}, {u"300 sqcm", 1.0, true, 0.03},
        {u"5", 2.0, true, 20.0}, {u"1 ha", 1.0, false, 0}};
    // clang-format on
    checkRows(rows, std::size(rows), tsParse_stringToArea);
}

// Volumes take whole words (CM is the cubic metre), times seconds; a velocity
// without a word reads metres over seconds, whatever the unit.
TEST(ParseQuantities, VolumeTimeAndVelocity)
{
    const double f3 = kFoot * kFoot * kFoot;
    const Row volumes[] = {
        {u"2 CY", 1.0, true, 2.0 * 27.0 * f3}, {u"10 cf", 1.0, true, 10.0 * f3}, {u"1 CM", 1.0, true, 1.0},
        {u"1000 CCM", 1.0, true, 0.001},       {u"3", 2.0, true, 24.0},          {u"1 CYD", 1.0, false, 0}};
    checkRows(volumes, std::size(volumes), tsParse_stringToVolume);
    const Row times[] = {{u"2 H", 1.0, true, 7200.0},        {u"1.5 min", 1.0, true, 90.0},
                         {u"30 s", 60.0, true, 30.0},        {u"10", 60.0, true, 600.0},
                         {u"1 H + 30 M", 1.0, true, 5400.0}, {u"1 day", 1.0, false, 0}};
    checkRows(times, std::size(times), tsParse_stringToTime);
    // clang-format off
    const Row velocities[] = {
        {u"100 FT / 2 S", 1.0, true, 50.0 * kFoot}, {u"100 / 2", 7.0, true, 50.0},
        {u"60 MPH", 1.0, true, 88.0 * kFoot}, {u"36 kmph", 1.0, true, 10.0}, {u"3 MPS", 1.0, true, 3.0},
        {u"10 fps", 1.0, true, 10.0 * kFoot}, {u"5", 2.0, true, 10.0}, {u"10 M / 0 S", 1.0, false, 0},
        {u"5 knots", 1.0, false, 0}};
    // clang-format on
    checkRows(velocities, std::size(velocities), tsParse_stringToVelocity);
}

TEST(ParseSlope, EveryNotationAndMode)
{
    const Row rows[] = {{u"5%", 3, true, 0.05},    {u"2.5%", 1, true, 0.025}, {u"5%O", 3, true, 0.005},
                        {u"5 %o", 4, true, 0.005}, {u"-2%", 3, true, -0.02},  {u"5% + 2%", 3, true, 0.07},
                        {u"1:2", 3, true, 0.5},    {u"1:2", 1, true, 2.0},    {u"3:1", 2, true, 3.0},
                        {u"5", 3, true, 0.05},     {u"5", 5, true, 0.005},    {u"5", 4, true, 5.0},
                        {u"0.5", 2, true, 0.5},    {u"1:0", 3, false, 0},     {u"0:1", 1, false, 0},
                        {u"5 % 2", 3, false, 0},   {u"steep", 3, false, 0}};
    auto slope = [](double *v, const char16_t *t, double mode) {
        return tsParse_stringToSlope(v, t, static_cast<int32_t>(mode), 1.0);
    };
    checkRows(rows, std::size(rows), slope, 1e-15);
    double v = 0.0;
    EXPECT_TRUE(tsParse_stringToSlope(&v, u"3 R", 3, 100.0) == 0 && std::fabs(v - 0.03) < 1e-15);
}

// The unit field holds the angle mode. "45.5": only a whole number opens the
// sexagesimal reading; "-90": the sign is the expression's, after
// normalisation, while "- -90" normalises the atom's own sign (270 degrees);
// "90 - 30": a dash before a number separates fields; radians read the first number alone.
TEST(ParseAngle, DecimalAndSexagesimalForms)
{
    const double dms = deg(45.0 + 30.0 / 60.0 + 15.0 / 3600.0);
    // clang-format off
    const Row rows[] = {
        {u"45 30 15", 3, true, dms}, {u"45-30-15", 3, true, dms}, {u"45\u00B030'15\"", 3, true, dms},
        {u"45:30:15", 2, true, dms}, {u"30'", 3, true, deg(0.5)}, {u"30'36\"", 3, true, deg(0.51)},
        {u"36\"", 3, true, deg(0.01)}, {u"45.5", 3, true, deg(45.5)}, {u"45.5\u00B0", 1, true, deg(45.5)},
        {u"-90", 3, true, -kPi / 2.0}, {u"450", 3, true, kPi / 2.0}, {u"- -90", 3, true, -1.5 * kPi},
        {u"10 + 20", 3, true, deg(30.0)}, {u"90 - 30", 3, true, deg(90.5)}, {u"(90) - 30", 3, true, deg(60.0)},
        {u"100", 4, true, kPi / 2.0}, {u"100 50 20", 4, true, 100.502 * kPi / 200.0}, {u"1.5", 5, true, 1.5},
        {u"2 30", 5, true, 2.0}, {u"45 30.5", 3, false, 0}, {u"NE", 3, false, 0}};
    // clang-format on
    checkRows(rows, std::size(rows), [](double *v, const char16_t *t, double mode) {
        return tsParse_stringToAngle(v, t, static_cast<int32_t>(mode));
    });
}

TEST(ParseDirection, BearingsQuadrantsAndStyles)
{
    // clang-format off
    const Row rows[] = {
        {u"N 45 00 00 W", 3, true, 0.75 * kPi}, {u"N 45 00 00 W", 1, true, 1.75 * kPi},
        {u"N 45 E", 3, true, 0.25 * kPi}, {u"N 30 E", 4, true, deg(60.0)},
        {u"S 45 E", 3, true, 1.75 * kPi}, {u"s 45 w", 3, true, 1.25 * kPi},  // azimuths 135, 225
        {u"South 10 West", 3, true, deg(260.0)}, {u"45 00 00 2", 3, true, 1.75 * kPi},  // quadrant 2, azimuth 135
        {u"45 2", 3, true, deg(90.0 - 45.0 - 2.0 / 60.0)},  // 2 is a minute here
        {u"45 00 00 .3", 3, true, 1.25 * kPi}, {u"45 30' . 4", 3, true, deg(135.5)},  // azimuth 314.5
        {u"30", 2, true, deg(60.0)}, {u"30", 5, true, deg(240.0)},  // an azimuth; that of the reversed line, 210
        {u"30", 1, true, deg(30.0)}, {u"30.0 4", 1, true, deg(330.0)}, {u"E 45 N", 3, false, 0},
        {u"N 45", 3, false, 0}, {u"N 45 X", 3, false, 0}, {u"/ 45", 3, false, 0}};
    // clang-format on
    checkRows(rows, std::size(rows), [](double *v, const char16_t *t, double style) {
        return tsParse_stringToDirection(v, t, 3, static_cast<int32_t>(style));
    });
}

TEST(ParseDirection, FromABackDirectionAndRadii)
{
    double v = 0.0;
    auto parsed = [&](int32_t status, double want, double tolerance) {
        EXPECT_TRUE(status == 0 && std::fabs(v - want) <= tolerance) << status << " " << v;
    };
    // 30 from a base of 90: azimuth 120, direction -30; against the sense
    // 360 - 30 + 90 = 420, direction -330; outside style 2 no base.
    parsed(tsParse_stringToDirection2(&v, u"30", 3, 2, kPi / 2.0, 1), deg(330.0), 1e-12);
    parsed(tsParse_stringToDirection2(&v, u"30", 3, 2, kPi / 2.0, 0), deg(30.0), 1e-12);
    parsed(tsParse_stringToDirection2(&v, u"30", 3, 3, kPi / 2.0, 0), deg(60.0), 1e-12);
    // Radii: 2 degrees of curve by arc (2864.79) and by chord (2864.93) of 100.
    parsed(tsParse_stringToRadius(&v, u"D 2 00 00", 1.0, 1, 100.0, 3), 100.0 / deg(2.0), 1e-9);
    parsed(tsParse_stringToRadius(&v, u"D 2 00 00", 1.0, 3, 100.0, 3), 50.0 / std::sin(deg(1.0)), 1e-9);
    parsed(tsParse_stringToRadius(&v, u"D 0", 1.0, 1, 100.0, 3), 0.0, 0);
    parsed(tsParse_stringToRadius(&v, u"R 500", 0.5, 1, 100.0, 3), 250.0, 1e-12);
    parsed(tsParse_stringToRadius(&v, u"500 FT", 1.0, 1, 100.0, 3), 500.0 * kFoot, 1e-12);
    EXPECT_EQ(tsParse_stringToRadius(&v, u"D", 1.0, 1, 100.0, 3), kFail);
}

TEST(ParseStation, RegionBeforeOrAfter)
{
    // Only the first plus is the station's; "12+5" joins to 125.
    // clang-format off
    const struct StationRow { const char16_t *text; double unit; bool ok; double expected; int32_t region; } rows[] = {
        {u"12+34.56 R 2", 1.0, true, 1234.56, 2}, {u"R 2 12+34.56", 1.0, true, 1234.56, 2},
        {u"12+34.56 + 10", 1.0, true, 1244.56, 0}, {u"12+34.56", kFoot, true, 1234.56 * kFoot, 0},
        {u"12+34.56 M", kFoot, true, 1234.56, 0}, {u"1234.56", 1.0, true, 1234.56, 0},
        {u"-1+50", 1.0, true, -150.0, 0}, {u"12+5", 1.0, true, 125.0, 0}, {u"12+34.56 R", 1.0, false, 0, 0},
        {u"12+34.56 R X", 1.0, false, 0, 0}, {u"12+", 1.0, false, 0, 0}, {u"KP 12+00", 1.0, false, 0, 0}};
    // clang-format on
    for (const StationRow &r : rows) {
        double value = -1.0;
        int32_t region = -1;
        const int32_t status = tsParse_stringToStationByIndex(&value, &region, r.text, r.unit);
        if (r.ok)
            EXPECT_TRUE(status == 0 && std::fabs(value - r.expected) < 1e-9 && region == r.region) << value;
        else
            EXPECT_EQ(status, kFail);
    }
    double value = 0.0;
    EXPECT_TRUE(tsParse_stringToStationByIndex(&value, nullptr, u"3+00 R 4", 1.0) == 0 && value == 300.0);
}

TEST(ParseStation, NameWord)
{
    char16_t name[64];
    double value = 0.0;
    EXPECT_EQ(tsParse_stringToStationByName(&value, name, u"STA 12+34.56", 1.0), 0);
    EXPECT_TRUE(std::fabs(value - 1234.56) < 1e-9 && std::u16string(name) == u"STA");
    EXPECT_EQ(tsParse_stringToStationByName(&value, name, u"0+50", 1.0), 0);
    EXPECT_TRUE(value == 50.0 && std::u16string(name).empty());
    // A name longer than the field keeps its first 63 letters.
    const std::u16string longName(70, u'K');
    EXPECT_EQ(tsParse_stringToStationByName(&value, name, (longName + u" 1+00").c_str(), 1.0), 0);
    EXPECT_EQ(std::u16string(name), longName.substr(0, 63));
}

// A page of a field book as typed into the dialogs of a road design: every
// value goes through the entry of its kind.
TEST(ParseScenario, FieldBookPage)
{
    double v = 0.0;
    auto parsed = [&](int32_t status, double want, double tolerance) {
        EXPECT_TRUE(status == 0 && std::fabs(v - want) <= tolerance) << status << " " << v;
    };
    // Pavement: 0.25 ft of asphalt on 8 inches of base on 1 ft of subbase.
    parsed(tsParse_stringToLinear(&v, u"0.25 FT + 8\" + 1'", 1.0), (0.25 + 8.0 / 12.0 + 1.0) * kFoot, 1e-12);
    // Two cross slopes and a ditch back slope of 3:1 in run-to-rise mode.
    parsed(tsParse_stringToSlope(&v, u"-2%", 3, 1.0), -0.02, 1e-15);
    parsed(tsParse_stringToSlope(&v, u"1:3", 1, 1.0), 3.0, 1e-15);
    // A tangent bearing and its deflection at the PI.
    parsed(tsParse_stringToDirection(&v, u"N 89\u00B059'59.5\" E", 3, 3), deg(0.5 / 3600.0), 1e-12);
    parsed(tsParse_stringToAngle(&v, u"12-30-00 + 0 15 00", 3), deg(12.75), 1e-12);
    // The PI station in feet, a curve of 3 degrees, a quantity and a speed.
    parsed(tsParse_stringToStationByIndex(&v, nullptr, u"(105+20.75) - 50", kFoot), 10470.75 * kFoot, 1e-9);
    parsed(tsParse_stringToRadius(&v, u"D 3", kFoot, 1, 100.0 * kFoot, 3), 100.0 * kFoot / deg(3.0), 1e-9);
    parsed(tsParse_stringToVolume(&v, u"1250 CY", 1.0), 1250.0 * 27.0 * kFoot * kFoot * kFoot, 1e-9);
    parsed(tsParse_stringToVelocity(&v, u"45 MPH", 1.0), 66.0 * kFoot, 1e-12);  // 66 feet a second
}

TEST(ParseRoundTrip, FormattedSlopesReadBack)
{
    const double slopes[] = {0.5, -0.02, 0.3333, 2.0, 0.0125};
    for (int32_t mode = 1; mode <= 5; ++mode) {
        for (const double s : slopes) {
            char16_t text[256];
            tsFormat_slopeToString(text, s, mode, 6);
            double back = 0.0;
            ASSERT_EQ(tsParse_stringToSlope(&back, text, mode, 1.0), 0) << mode;
            // Six decimals of the printed figure; mode 1 prints 1 / s.
            const double tolerance = mode == 1 ? 5e-7 * s * s : mode == 3 ? 5e-9 : mode == 5 ? 5e-10 : 5e-7;
            EXPECT_NEAR(back, s, tolerance * 1.01 + 1e-15) << mode << " " << s;
        }
    }
}

// The decimal mark follows the process locale. The test needs a locale with
// a decimal comma; it is skipped where none is installed.
TEST(ParseLocale, DecimalCommaUnderAMachineLocale)
{
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) GTEST_SKIP() << "no de_DE.UTF-8 locale";
    double v = 0.0;
    const int32_t comma = tsParse_stringToDouble(&v, u"1,5 * 2");
    const double commaValue = v;
    const int32_t point = tsParse_stringToDouble(&v, u"1.5");
    char16_t slope[256];
    tsFormat_slopeToString(slope, 0.025, 3, 2);
    std::setlocale(LC_ALL, "C");
    EXPECT_TRUE(comma == 0 && commaValue == 3.0);
    EXPECT_EQ(point, kFail);  // the point is punctuation there
    EXPECT_EQ(std::u16string(slope), u"2,50%");
}

}  // namespace
