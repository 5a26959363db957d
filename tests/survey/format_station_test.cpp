// Station text: styles 0, 2 and 3 with leading styles, negative stations and
// the rounding before the split, regions, tick labels of a series, and the
// reading of stations by characters and through the value parser. Expected
// texts are worked by hand.
#include <tessar/format.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <utility>

namespace {

constexpr int32_t kFailure = 32768;
constexpr int32_t kParseFailure = static_cast<int32_t>(0x80004005u);

TEST(FormatStation, StylesLeadingAndNegativeStations)
{
    // clang-format off
    const struct Row {
        double value;
        int32_t decimals, style, leading, signedRemainder;
        const char *expected;
    } rows[] = {
        {1234.56, 2, 2, 0, 0, "12+34.56"}, {1234.56, 2, 3, 0, 0, "1+234.56"}, {1234.56, 2, 0, 0, 0, "1234.56"},
        {1205.0, 2, 2, 0, 0, "12+05.00"}, {1205.0, 2, 3, 0, 0, "1+205.00"}, {1005.0, 1, 3, 0, 0, "1+005.0"},
        {123456.789, 0, 3, 0, 0, "123+457"},
        // Below one station: bare, "+r" and "0+r", padded except when bare.
        {35.0, 2, 2, 0, 0, "35.00"}, {35.0, 2, 2, 1, 0, "+35.00"}, {35.0, 2, 2, 2, 0, "0+35.00"},
        {5.0, 2, 2, 2, 0, "0+05.00"}, {5.0, 2, 3, 2, 0, "0+005.00"}, {5.0, 2, 2, 0, 0, "5.00"},
        {0.0, 3, 2, 1, 0, "+00.000"},
        // Rounding before the split: 1299.999 is 13 stations and -0.001.
        {1299.999, 2, 2, 0, 0, "13+00.00"}, {99.999, 2, 2, 0, 0, "1+00.00"},
        // A remainder that prints as 10.00 (or 100.00) gets no zero.
        {9.999, 2, 2, 1, 0, "+10.00"}, {99.996, 2, 3, 1, 0, "+100.00"},
        // -5: no whole station, remainder -5 printed as 0; thousands have no "-0+".
        {-5.0, 2, 2, 2, 0, "-0+00.00"}, {-5.0, 2, 3, 2, 0, "0+000.00"},
        // -150 in hundreds: -1 station and -50, cleared or made positive.
        {-150.0, 2, 2, 0, 0, "-1+00.00"}, {-150.0, 2, 2, 0, 1, "-1+50.00"},
        // Thousands take the absolute remainder only beside whole stations.
        {-1150.0, 2, 3, 0, 1, "-1+150.00"}, {-1150.0, 2, 3, 0, 0, "-1+000.00"},
        {-150.0, 2, 3, 0, 1, "-150.00"}, {-150.0, 2, 3, 0, 0, "0.00"}};
    // clang-format on
    for (const Row &r : rows) {
        char text[64] = "garbage";
        EXPECT_EQ(
            tsFormat_getFormattedStationEx(text, r.value, r.decimals, r.style, r.leading, r.signedRemainder),
            0);
        EXPECT_STREQ(text, r.expected) << r.value << " style " << r.style;
    }
    char text[64];
    EXPECT_TRUE(tsFormat_getFormattedStation(text, -150.0, 2, 2, 0) == 0 && std::string(text) == "-1+00.00");
    EXPECT_EQ(tsFormat_getFormattedStation(text, 1.0, 2, 1, 0), kFailure);
    EXPECT_EQ(tsFormat_getFormattedStationEx(nullptr, 1.0, 2, 2, 0, 0), kFailure);
}

TEST(FormatStation, StakingEveryTenthAccumulatesOntoFullStations)
{
    // A thousand steps of 0.1 sum to 99.9999999999986; rounding comes first.
    double station = 0.0;
    for (int i = 0; i < 1000; ++i)
        station += 0.1;
    char text[64];
    tsFormat_getFormattedStation(text, station, 2, 2, 2);
    EXPECT_STREQ(text, "1+00.00");
}

TEST(FormatStation, RegionsAfterTheStation)
{
    char text[64];
    for (const auto &[region, expected] :
         {std::pair{0, "12+34.56"}, {1, "12+34.56"}, {3, "12+34.56 R 3"}, {-2, "12+34.56 R -2"}}) {
        EXPECT_EQ(tsFormat_getFormattedStationRegion(text, 1234.56, region, 2, 2), 0);
        EXPECT_STREQ(text, expected);
    }
    EXPECT_EQ(tsFormat_getFormattedStationRegion(text, 1.0, 3, 2, 5), kFailure);
}

TEST(FormatStation, SeriesLabelsShowPartOfTheStation)
{
    // clang-format off
    const struct { int32_t format; double value; const char *expected; } rows[] = {
        {0, 1234.56, ""},       {1, 1234.56, "2"},      {2, 1234.56, "12"},         {13, 12345.6, "2"},
        {14, 1234.56, "1"},     {3, 1234.56, "12+35"},  {7, 1234.56, "12+34.5600"}, {8, 1234.56, "35"},
        {12, 1205.5, "5.5000"}, {15, 1234.56, "1+235"}, {22, 12345.678, "345.68"},  {29, 1.23456, "1.2346"},
        {30, 5.0, ""},  // outside the table
    };
    // clang-format on
    for (const auto &r : rows) {
        char text[64] = "garbage";
        EXPECT_EQ(tsFormat_getFormattedStationForSeries(text, r.value, r.format), 0);
        EXPECT_STREQ(text, r.expected) << "format " << r.format;
    }
    EXPECT_EQ(tsFormat_getFormattedStationForSeries(nullptr, 1.0, 1), kFailure);
}

TEST(FormatStation, TakingApartPrefixStationRegionAndSuffix)
{
    // Outputs that a failure does not reach keep -1, -7 and "?".
    const struct Row {
        const char *text;
        int32_t status;
        double value;
        int32_t region;
        const char *prefix, *station, *suffix;
    } rows[] = {
        {"PRE 12+34.56 R 2 SUF", 0, 1234.56, 2, "PRE ", "12+34.56 R 2", " SUF"},
        {"  12+34.56\tR\t2 ", 0, 1234.56, 2, "", "12+34.56 R 2", ""},  // tabs clean to blanks
        {"A12+34", 0, 1234.0, 0, "", "12+34", ""},                     // one character is no prefix
        {"STA 1+2 R 12X", 0, 12.0, 12, "STA ", "1+2 R 12", "X"},
        {"KM 3+050.5 R 5", 0, 3050.5, 5, "KM ", "3+050.5 R 5", ""},
        {"1234.5", 2, -1.0, -7, "", "1234.5", ""},  // no station
        {"12+34.5.6", 2, -1.0, -7, "", "12+34.5.6", "?"},
        {"X 12+34. R 2", 2, -1.0, -7, "X ", "12+34. R 2", ""},  // 1234. is no number
    };
    for (const Row &r : rows) {
        double value = -1.0;
        int32_t region = -7;
        char prefix[64] = "?", station[64] = "?", suffix[64] = "?";
        EXPECT_EQ(tsFormat_getDoubleStationRegionExt(r.text, &value, &region, prefix, station, suffix),
                  r.status)
            << r.text;
        EXPECT_TRUE(std::fabs(value - r.value) < 1e-9 && region == r.region)
            << r.text << ": " << value << " R " << region;
        EXPECT_EQ(std::string(prefix) + "|" + station + "|" + suffix,
                  std::string(r.prefix) + "|" + r.station + "|" + r.suffix);
    }
    EXPECT_EQ(tsFormat_getDoubleStationRegionExt("PRE 1+5 SUF", nullptr, nullptr, nullptr, nullptr, nullptr),
              0);
    EXPECT_EQ(tsFormat_getDoubleStationRegionExt(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              kFailure);
}

TEST(FormatStation, RoundTripsThroughTheParser)
{
    double value = 0.0;
    int32_t region = 0;
    EXPECT_EQ(tsFormat_getDoubleStationRegion(&value, &region, "12+34.56 R 2"), 0);
    EXPECT_TRUE(std::fabs(value - 1234.56) < 1e-9 && region == 2);
    EXPECT_TRUE(tsFormat_getDoubleStationRegion(&value, nullptr, "R 3 1+234.5") == 0 &&
                std::fabs(value - 1234.5) < 1e-9);
    EXPECT_EQ(tsFormat_getDoubleStationRegion(&value, &region, "12+"), kParseFailure);

    for (double station : {0.5, 1234.567, 98765.432}) {
        for (int32_t style : {2, 3}) {
            char text[64];
            tsFormat_getFormattedStationRegion(text, station, 4, 2, style);
            region = 0;
            ASSERT_EQ(tsFormat_getDoubleStationRegion(&value, &region, text), 0) << text;
            EXPECT_TRUE(std::fabs(value - station) <= 0.005 && region == 4) << text;
        }
    }
}

}  // namespace
