// Point names and their lists: split, natural order, expansion and compression (worked by hand from the list
// grammar), the integer readers.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/memory.h>
#include <tessar/pointnames.h>

#if defined(__SANITIZE_ADDRESS__)
#define POINTNAMES_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define POINTNAMES_TEST_SANITIZED 1
#endif
#endif

namespace {

constexpr int32_t kFail = 32768;

// The status and the heap text of an expansion or compression (empty when the result stayed null), the text
// taken over and freed.
std::pair<int32_t, std::string> take(int32_t status, char *result)
{
    std::pair<int32_t, std::string> r{status, result != nullptr ? result : ""};
    if (result != nullptr) tsMem_free(result);
    return r;
}

std::pair<int32_t, std::string> expand(const char *text, const char *delimiters = ",",
                                       const char *separator = ",")
{
    char *result = nullptr;
    const int32_t status = tsString_expandAlphaNumeric(&result, text, delimiters, separator);
    return take(status, result);
}

std::pair<int32_t, std::string> compress(const char *list, const char *separator = ",")
{
    char *result = nullptr;
    const int32_t status = tsString_compressAlphaNumeric(&result, list, separator);
    return take(status, result);
}

TEST(PointName, SplitsLettersFromNumber)
{
    // The letters, wherever they stand, make the prefix; the number is read behind as many characters as
    // there were letters ("12AB" reads "AB": 0; "P-3" reads "-3"); without letters the whole name is read.
    const std::tuple<const char *, const char *, int32_t> rows[] = {
        {"A12", "A", 12}, {"CL101", "CL", 101}, {"007", "", 7}, {"AB", "AB", -1}, {"12AB", "AB", 0},
        {"1A2", "A", 0},  {"P-3", "P", -3},     {"", "", 0},    {"-5", "", -5},
    };
    for (const auto &[name, expectedPrefix, expectedNumber] : rows) {
        char prefix[32] = "junk";
        int32_t number = 12345;
        tsString_splitPointName(name, prefix, &number);
        EXPECT_STREQ(prefix, expectedPrefix) << name;
        EXPECT_EQ(number, expectedNumber) << name;
    }
}

TEST(PointName, NaturalOrderInFieldsOfFifteen)
{
    // Fields of 15: "A2" -> "A             2", "a10" -> "a            10"; all-number names first; "B   3"
    // before "BM  1"; "  007" after "    7"; names of 15 characters and more are cut, not moved.
    const std::tuple<const char *, const char *, int32_t> rows[] = {
        {"A2", "a10", -1}, {"9", "10", -1},    {"10", "A1", -1}, {"a5", "A5", 0},
        {"B3", "BM1", -1}, {"CL10", "CL9", 1}, {"007", "7", 1},  {"ABCDEFGHIJKLMNOP", "ABCDEFGHIJKLMNOQ", 0},
    };
    for (const auto &[a, b, sign] : rows) {
        const int32_t order = tsString_lexicographicalComparePointName(a, b);
        EXPECT_EQ((order > 0) - (order < 0), sign) << a << " " << b;
    }
}

TEST(ExpandList, RangesGapsAndPadding)
{
    // Prefixes agree apart from case, the left one is written; a right padded end descends at its width, a
    // left padded end fills to its width; the gap token "+" is written as an empty name. Refused: prefixes
    // differ, a left name of 10 characters, no right name (2); paddings disagree (3).
    const std::tuple<const char *, int32_t, const char *> rows[] = {
        {"1-3,,7", 0, "1,2,3,GAP,7,"},
        {"a1-A3", 0, "a1,a2,a3,"},
        {"5-5", 0, "5,"},
        {"B12-B9", 0, "B12,B11,B10,B9,"},
        {"01-10", 0, "01,02,03,04,05,06,07,08,09,10,"},
        {"10-01", 0, "10,09,08,07,06,05,04,03,02,01,"},
        {"007-009", 0, "007,008,009,"},
        {"CL099-CL101", 0, "CL099,CL100,CL101,"},
        {"ABCDEFGH1-ABCDEFGH2", 0, "ABCDEFGH1,ABCDEFGH2,"},
        {" P1 - P2 ,P9", 0, "P1,P2,P9,"},
        {"4,,", 0, "4,GAP,,"},
    };
    for (const auto &[text, status, expanded] : rows)
        EXPECT_EQ(expand(text), std::pair(status, std::string(expanded))) << text;
    for (const char *bad : {"A1-B3", "A1-3", "ABCDEFGHI1-ABCDEFGHI2", "7-", "7- "})
        EXPECT_EQ(expand(bad).first, 2) << bad;
    for (const char *bad : {"001-10", "1-010", "010-1", "100-01", "007-0010"})
        EXPECT_EQ(expand(bad).first, 3) << bad;
    // A refused range leaves the result so far in the caller's variable.
    EXPECT_EQ(expand("1,2-B3,4"), std::pair(2, std::string("1,")));
    EXPECT_EQ(expand("A1-A2,001-10"), std::pair(3, std::string("A1,A2,")));
    // The delimiters and the separator are the caller's; the gap mark is ",," whatever they are.
    EXPECT_EQ(expand("P1-P3, P7", ", ", " ").second, "P1 P2 P3 P7 ");
    EXPECT_EQ(expand("1-2,,5", " ", ";").second, "1;2;GAP;5;");
    EXPECT_EQ(expand("1-2", ",", " / ").second, "1 / 2 / ");
}

TEST(CompressList, RunsPrefixesAndGaps)
{
    // The ascending form with a prefix ends in a blank; the direction is the last step's; padding belongs to
    // the prefix ("A007": "A00", 7); an open run before a final gap is written again; a single 0 only before
    // a gap; names without numbers run together; ranges are expanded first.
    const std::pair<const char *, const char *> rows[] = {
        {"A1 A2 A3 B7", "A1-A3, B7,"},
        {"A3 A2 A1 B1", "A3-A1,B1,"},
        {"1 2 3 GAP 7 8", "1-3,,7-8,"},
        {"5 4 3", "5-3,"},
        {"1 2 1", "2-1,"},
        {"A09 A10", "A09,A10,"},
        {"A007 A008", "A007-A008,"},
        {"1 2 GAP", "1-2,,1-2,"},
        {"4 GAP 6", "4,,6,"},
        {"0 GAP 6", "0,,6,"},
        {"0 5", "5,"},
        {"P0", "P"},
        {"A1 A2 gap A5", "A1-A2,, A5,"},
        {"ABC DEF", "ABCDEF"},
        {"1 1 2", "1,1-2,"},
        {"1-3 7", "1-3,7,"},
    };
    for (const auto &[list, compressed] : rows)
        EXPECT_EQ(compress(list), std::pair(0, std::string(compressed))) << list;
    EXPECT_EQ(compress(""), std::pair(0, std::string()));
    EXPECT_EQ(compress("1 2 3 9", ";").second, "1-3;9;");
    // A failed expansion step gives -2 and no result.
    EXPECT_EQ(compress("A1-B3 C4"), std::pair(-2, std::string()));
    EXPECT_EQ(compress("001-10"), std::pair(-2, std::string()));
}

TEST(CompressList, FieldBooksCompressAndExpandBack)
{
    // A traverse 1..200, the centre line CL100..CL180, edge points picked up backwards EP40..EP1, a break,
    // two benchmarks and a check shot.
    std::string list;
    for (int i = 1; i <= 200; ++i)
        list += std::to_string(i) + " ";
    for (int i = 100; i <= 180; ++i)
        list += "CL" + std::to_string(i) + " ";
    for (int i = 40; i >= 1; --i)
        list += "EP" + std::to_string(i) + " ";
    list += "GAP BM1 BM2 500";
    const auto [status, compressed] = compress(list.c_str());
    EXPECT_EQ(status, 0);
    EXPECT_EQ(compressed, "1-200,CL100-CL180, EP40-EP1,,BM1-BM2, 500,");
    EXPECT_EQ(expand(compressed.c_str(), ",", " "), std::pair(0, list + " "));

    // Generated surveys: runs up and down, prefixes, names padded to three digits and breaks. Each run
    // changes prefix, so that no run joins the one before it; numbers start at 1, as a lone name numbered 0
    // keeps only its prefix.
    std::mt19937 draw(2024);
    const char *formats[] = {"%d", "CL%d", "EP%d", "P%03d", "TN%d"};
    std::string survey;
    char name[16];
    for (size_t run = 0, kind = 0; run < 300; ++run) {
        kind = (kind + 1 + draw() % 4) % 5;
        const int start = 1 + static_cast<int>(draw() % 150), length = 1 + static_cast<int>(draw() % 8);
        const int step = draw() % 3 == 0 ? -1 : 1;
        for (int k = 0; k < length && start + step * k >= 1; ++k) {
            std::snprintf(name, sizeof name, formats[kind], start + step * k);
            survey += std::string(name) + " ";
        }
        if (draw() % 10 == 0) survey += "GAP ";
    }
    survey += "Z1";
    const auto [surveyStatus, surveyCompressed] = compress(survey.c_str());
    ASSERT_EQ(surveyStatus, 0);
    EXPECT_LT(surveyCompressed.size(), survey.size());
    EXPECT_EQ(expand(surveyCompressed.c_str(), ",", " "), std::pair(0, survey + " "));
}

TEST(IntegerText, ReadersAndCharacterTests)
{
    // The first run of digits, a "-" not being a sign.
    for (const auto &[text, expected] :
         {std::pair{"PT-12a3", 12}, {"-7", 7}, {"  42 ", 42}, {"abc", 0}, {"", 0}}) {
        int32_t value = -99;
        EXPECT_EQ(tsString_extractInteger(&value, text), 0);
        EXPECT_EQ(value, expected) << text;
    }
    int32_t value = -99, low = -99, high = -99;
    EXPECT_EQ((std::vector{tsString_extractInteger(&value, nullptr), tsString_extractInteger(nullptr, "12")}),
              (std::vector{kFail, kFail}));
    EXPECT_EQ(value, 0);
    // Ranges: a "-" only at the start is a sign and gives one value for both ends; control characters are
    // blanked and stripped.
    const std::tuple<const char *, int32_t, int32_t> ranges[] = {
        {"-5", -5, -5}, {"3 - 9", 3, 9}, {"12", 12, 12}, {"4-8", 4, 8}, {"-5-9", -5, 9}, {"\t7\n", 7, 7}};
    for (const auto &[text, expectedLow, expectedHigh] : ranges) {
        EXPECT_EQ(tsString_extractIntegerRange(text, &low, &high), 0);
        EXPECT_EQ(std::pair(low, high), std::pair(expectedLow, expectedHigh)) << text;
    }
    EXPECT_EQ((std::vector{tsString_extractIntegerRange("2-6", nullptr, &high),
                           tsString_extractIntegerRange(nullptr, &low, &high),
                           tsString_extractIntegerRange("", &low, &high)}),
              (std::vector{0, kFail, kFail}));
    EXPECT_EQ(high, 6);
    // A digit first, then digits or "-" only.
    for (const auto &[text, isRange] :
         {std::pair{"1-5-9", 1}, {"1-", 1}, {"12", 1}, {"-1", 0}, {"1a", 0}, {"1 - 5", 0}, {"", 0}})
        EXPECT_EQ(tsString_isIntegerOrRange(text), isRange) << text;
    EXPECT_EQ(tsString_isIntegerOrRange(nullptr), 0);
    for (const char c : std::string("/0459:a"))
        EXPECT_EQ(tsString_isCharacterAnInteger(&c), c >= '0' && c <= '9' ? 1 : 0) << c;
}

TEST(IntegerText, SortsTokensIntoNumbersAndStrings)
{
    // Quoted tokens keep their quotes and commas; blanks stay; the empty field gives nothing.
    char input[] = "12,\"ab,c\",x1, 3.5 ,,\"7\"", onlyNumbers[] = "1,2", empty[] = "", some[] = "1";
    char numbers[64] = "old", strings[64] = "old";
    EXPECT_EQ(tsString_extractIntegerAndStringExpressions(numbers, strings, nullptr, input), 0);
    EXPECT_STREQ(numbers, "12, 3.5 ");
    EXPECT_STREQ(strings, "\"ab,c\",x1,\"7\"");
    EXPECT_EQ(tsString_extractIntegerAndStringExpressions(numbers, strings, nullptr, onlyNumbers), 0);
    EXPECT_STREQ(numbers, "1,2");
    EXPECT_STREQ(strings, "");
    std::strcpy(strings, "old");
    EXPECT_EQ((std::vector{tsString_extractIntegerAndStringExpressions(nullptr, strings, nullptr, some),
                           tsString_extractIntegerAndStringExpressions(numbers, strings, nullptr, empty),
                           tsString_extractIntegerAndStringExpressions(numbers, strings, nullptr, nullptr)}),
              (std::vector{kFail, kFail, kFail}));
    EXPECT_STREQ(strings, "");  // the given output is cleared first
}

#if !defined(POINTNAMES_TEST_SANITIZED)  // the address sanitizer reserves more than the cap allows
// Runs call in a child process whose address space is capped at what it uses now plus headroom, and gives the
// call's status as a byte (0xFF: -1, 0xFE: -2), or 0 when the call left a result in the caller's variable.
int statusUnderMemoryCap(std::size_t headroomMiB, const std::function<int32_t(char **)> &call)
{
    const pid_t child = fork();
    if (child == 0) {
        long pages = 0;
        if (FILE *statm = std::fopen("/proc/self/statm", "r")) {
            if (std::fscanf(statm, "%ld", &pages) != 1) pages = 0;
            std::fclose(statm);
        }
        const rlim_t limit = rlim_t(pages) * rlim_t(sysconf(_SC_PAGESIZE)) + (rlim_t(headroomMiB) << 20);
        const rlimit cap{limit, limit};
        if (pages == 0 || setrlimit(RLIMIT_AS, &cap) != 0) _exit(100);
        char *result = nullptr;
        const int32_t status = call(&result);
        _exit(result == nullptr ? status & 0xFF : 0);
    }
    int waited = 0;
    waitpid(child, &waited, 0);
    return WIFEXITED(waited) ? WEXITSTATUS(waited) : -1;
}

TEST(ListMemory, FailuresOfTheResultAndOfTheWorkingCopy)
{
    // "1 3 1 3 ...": 64 MiB in which no two names join, so that its compression is as long as the list.
    std::string list;
    list.reserve(std::size_t{64} << 20);
    while (list.size() < (std::size_t{64} << 20))
        list += "1 3 ";
    const char *names = list.c_str();
    auto expandNames = [=](char **result) { return tsString_expandAlphaNumeric(result, names, ",", ","); };
    auto compressNames = [=](char **result) { return tsString_compressAlphaNumeric(result, names, ","); };
    // Working copies of 64 MiB do not fit in 16 MiB of headroom.
    EXPECT_EQ(statusUnderMemoryCap(16, expandNames), 0xFE);
    EXPECT_EQ(statusUnderMemoryCap(16, compressNames), 0xFE);
    // The working copy fits, the result cannot grow to the list's size; nor can the result of a short range
    // of thirty million names.
    EXPECT_EQ(statusUnderMemoryCap(72, compressNames), 0xFF);
    EXPECT_EQ(
        statusUnderMemoryCap(
            16, [](char **result) { return tsString_expandAlphaNumeric(result, "1-30000000", ",", ","); }),
        0xFF);
}
#endif

}  // namespace
