// Number and slope text: the truncating and rounding core, zero padding,
// significant digits, prefixed numbers, padded integers, the five slope
// notations, and the switch to the machine's locale. Expected texts are
// written out by hand.
#include <tessar/format.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr int32_t kFailure = 32768;

TEST(FormatNumber, TruncatingAndRoundingCore)
{
    // clang-format off
    const struct Row {
        double value;
        int32_t decimals, truncate, pad, width;
        const char *expected;
    } rows[] = {
        {1.999, 2, 1, 0, 0, "1.99"}, {1.999, 2, 0, 0, 0, "2.00"},  // cut, or rounded
        {1.5, 0, 1, 0, 0, "1"}, {-1.999, 1, 1, 0, 0, "-1.9"}, {2.0, 3, 1, 0, 0, "2.000"},  // no point at 0 decimals
        {0.3, 20, 1, 0, 0, "0.3000000000000000"},  // no more than the sixteen printed
        {7.5, 1, 0, 1, 3, "007.5"}, {7.5, 1, 1, 1, 3, "007.5"}, {7.5, 1, 0, 0, 3, "7.5"},  // padding needs the flag
        {-5.0, 0, 0, 1, 3, "0-5"},   // the minus counts as a digit, and the zeros go before it
        {42.0, 0, 1, 1, 4, "0042"}, {123.4, 1, 0, 1, 2, "123.4"}};  // without a point the whole length counts
    // clang-format on
    for (const Row &r : rows) {
        char text[64] = "garbage";
        EXPECT_EQ(tsFormat_doubleByDecimalDigitsExt(text, r.value, r.decimals, r.truncate, r.pad, r.width),
                  0);
        EXPECT_STREQ(text, r.expected) << r.value << " " << r.decimals;
    }
    char text[64];
    char other[64];
    tsFormat_doubleByDecimalDigits(text, 1.999, 2);
    tsFormat_doubleByDecimalDigitsNoTrunc(other, 1.999, 2);
    EXPECT_EQ(std::string(text) + " " + other, "1.99 2.00");
}

TEST(FormatNumber, SignificantDigitsCutRatherThanRound)
{
    // clang-format off
    const struct Row { double value; int32_t digits; const char *expected; } rows[] = {
        {123456.7, 2, "120000"},   // k = 6: 123456 / 10^4 = 12, times 10^4
        {1234.567, 6, "1234.56"}, {-98765.4, 3, "-98700"}, {99.99, 2, "99"},  // k = 4: two decimals; k = 2: none
        {0.5, 3, "0.500"}, {0.0123, 2, "0.01"},  // k = 0 from 0.01 up to 1: the digits count from the point
        {0.005, 2, "0.005"}, {5.0, 0, "0"}, {0.0, 4, "0"}};  // k = -1: three decimals; k = 1, no digits kept
    // clang-format on
    for (const Row &r : rows) {
        char text[64];
        EXPECT_EQ(tsFormat_doubleBySignificantDigits(text, r.value, r.digits), 0);
        EXPECT_STREQ(text, r.expected) << r.value << " " << r.digits;
    }
    EXPECT_EQ(tsFormat_doubleBySignificantDigits(nullptr, 1.0, 2), kFailure);
}

TEST(FormatNumber, PrefixSuffixAndPaddedIntegers)
{
    char text[512];
    EXPECT_TRUE(tsFormat_doubleWithPrefixSuffix(text, "L=", " m", 2, 12.3456) == 0 &&
                std::string(text) == "L=12.35 m");
    EXPECT_TRUE(tsFormat_doubleWithPrefixSuffix(text, nullptr, nullptr, 0, -3.6) == 0 &&
                std::string(text) == "-4");
    // The joined text holds 263 bytes at most.
    const std::string prefix(300, 'p');
    EXPECT_TRUE(tsFormat_doubleWithPrefixSuffix(text, prefix.c_str(), "x", 1, 1.0) == 0 &&
                std::strlen(text) == 263u);
    EXPECT_EQ(tsFormat_doubleWithPrefixSuffix(nullptr, "a", "b", 1, 1.0), kFailure);

    const struct Row {
        int32_t value, width;
        const char *expected;
    } rows[] = {{42, 5, "00042"}, {42, 0, "42"}, {7, -3, "7"}, {-42, 5, "-0042"}, {123456, 3, "123456"}};
    for (const Row &r : rows)
        EXPECT_TRUE(tsFormat_getPaddedInteger(text, r.value, r.width) == 0 && std::string(text) == r.expected)
            << text;
    EXPECT_EQ(tsFormat_getPaddedInteger(nullptr, 1, 2), kFailure);
}

TEST(FormatSlope, FiveNotationsAndVerticals)
{
    // clang-format off
    const struct Row { double slope; int32_t mode, decimals; const char16_t *expected; } rows[] = {
        {0.5, 1, 2, u"2.00:1"}, {0.5, 2, 2, u"0.50:1"}, {0.5, 3, 2, u"50.00%"}, {0.5, 4, 2, u"0.50"},
        {0.5, 5, 2, u"500.00%o"}, {0.0, 1, 2, u"0.00:1"}, {-0.25, 1, 1, u"-4.0:1"}, {-0.02, 3, 0, u"-2%"},
        {1e100, 3, 2, u"oo"}, {-1e100, 3, 2, u"-oo"}, {2e100, 9, 2, u"oo"}, {9.9e99, 0, 2, u""}, {0.5, 6, 2, u""}};
    // clang-format on
    for (const Row &r : rows) {
        char16_t text[256];
        std::fill(std::begin(text), std::end(text), u'#');
        tsFormat_slopeToString(text, r.slope, r.mode, r.decimals);
        EXPECT_EQ(std::u16string(text), r.expected) << r.slope << " mode " << r.mode;
    }
    tsFormat_slopeToString(nullptr, 0.5, 3, 2);  // does nothing
}

// The switch remembers the locale in force and restores it; the tests leave
// the "C" locale behind them.
TEST(FormatLocale, HonorAndRestoreTheRememberedLocale)
{
    std::setlocale(LC_ALL, "C");
    EXPECT_NE(tsFormat_HonorMachineLocale(), nullptr);
    const char *restored = tsFormat_RestoreDefaultLocale();
    ASSERT_NE(restored, nullptr);
    EXPECT_TRUE(std::string(restored) == "C" && std::string(std::setlocale(LC_ALL, nullptr)) == "C");
    // Restoring again selects the same slot again.
    EXPECT_STREQ(tsFormat_RestoreDefaultLocale(), "C");
}

// With a machine locale of decimal comma, number text follows it; the test
// is skipped where no such locale is installed.
TEST(FormatLocale, MachineLocaleWithADecimalComma)
{
    std::setlocale(LC_ALL, "C");
    const char *old = std::getenv("LC_ALL");
    const std::string saved = old != nullptr ? old : "";
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    const char *selected = tsFormat_HonorMachineLocale();
    char rounded[64] = "", cut[64] = "";
    if (selected != nullptr) {
        tsFormat_doubleByDecimalDigitsNoTrunc(rounded, 2.25, 1);
        tsFormat_doubleByDecimalDigitsExt(cut, 7.5, 1, 0, 1, 3);
    }
    tsFormat_RestoreDefaultLocale();
    if (old != nullptr)
        setenv("LC_ALL", saved.c_str(), 1);
    else
        unsetenv("LC_ALL");
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    if (selected == nullptr) GTEST_SKIP() << "no de_DE.UTF-8 locale";
    // 2.25 is exact: the tie goes to even. Padding counts the characters before
    // a point; with a comma there is none, and the text is as long as the width.
    EXPECT_EQ(std::string(rounded) + " " + cut, "2,2 7,5");
}

}  // namespace
