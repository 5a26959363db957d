// Point names and their lists: the split of a name, natural order, expansion
// and compression of lists, and the integer readers. Expected texts are
// worked by hand from the list grammar in the comments of each row; the
// round trips check that a compressed field book expands to the names typed.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <string>
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

// The heap text of an expansion or compression, taken over and freed.
struct ListResult {
    int32_t status;
    std::string text;  // empty when *result stayed null
};

ListResult take(int32_t status, char *result)
{
    ListResult r{status, result != nullptr ? result : ""};
    if (result != nullptr) tsMem_free(result);
    return r;
}

ListResult expand(const char *text, const char *delimiters = ",", const char *separator = ",")
{
    char *result = nullptr;
    const int32_t status = tsString_expandAlphaNumeric(&result, text, delimiters, separator);
    return take(status, result);
}

ListResult compress(const char *list, const char *separator = ",")
{
    char *result = nullptr;
    const int32_t status = tsString_compressAlphaNumeric(&result, list, separator);
    return take(status, result);
}

TEST(PointName, SplitsLettersFromNumber)
{
    struct Row {
        const char *name, *prefix;
        int32_t number;
    };
    const Row rows[] = {
        {"A12", "A", 12},  {"CL101", "CL", 101},
        {"007", "", 7},    {"AB", "AB", -1},  // nothing behind the letters
        {"12AB", "AB", 0},                    // skips two characters: "AB" reads as 0
        {"1A2", "A", 0},                      // skips one character: "A2" reads as 0
        {"P-3", "P", -3},                     // the text behind the letter is "-3"
        {"", "", 0},                          // no letters: the whole (empty) name reads as 0
        {"-5", "", -5},
    };
    for (const Row &row : rows) {
        char prefix[32] = "junk";
        int32_t number = 12345;
        tsString_splitPointName(row.name, prefix, &number);
        EXPECT_STREQ(prefix, row.prefix) << row.name;
        EXPECT_EQ(number, row.number) << row.name;
    }
}

int32_t sign(int32_t v)
{
    return (v > 0) - (v < 0);
}

TEST(PointName, NaturalOrderOfPairs)
{
    // Fields of 15: "A2" -> "A             2", "a10" -> "a            10".
    struct Row {
        const char *a, *b;
        int32_t sign;
    };
    const Row rows[] = {
        {"A2", "a10", -1},
        {"9", "10", -1},
        {"10", "A1", -1},  // all-number names first
        {"a5", "A5", 0},
        {"B3", "BM1", -1},  // "B   3" against "BM  1"
        {"CL10", "CL9", 1},
        {"007", "7", 1},  // "  007" against "    7"
        // Names of 15 characters and more are cut, not moved.
        {"ABCDEFGHIJKLMNOP", "ABCDEFGHIJKLMNOQ", 0},
    };
    for (const Row &row : rows)
        EXPECT_EQ(sign(tsString_lexicographicalComparePointName(row.a, row.b)), row.sign)
            << row.a << " " << row.b;
}

TEST(PointName, SortsAFieldBookIntoHandOrder)
{
    const std::vector<std::string> ordered = {"1",  "2",   "9",   "10",   "100",  "A1",    "a2", "A10",
                                              "B3", "BM1", "CL9", "CL10", "cl11", "CL101", "EP2"};
    std::vector<std::string> names = ordered;
    std::mt19937 shuffle(7);
    for (int round = 0; round < 5; ++round) {
        std::shuffle(names.begin(), names.end(), shuffle);
        std::sort(names.begin(), names.end(), [](const std::string &a, const std::string &b) {
            return tsString_lexicographicalComparePointName(a.c_str(), b.c_str()) < 0;
        });
        EXPECT_EQ(names, ordered);
    }
}

TEST(ExpandList, RangesGapsAndPadding)
{
    struct Row {
        const char *text;
        int32_t status;
        const char *expanded;
    };
    const Row rows[] = {
        {"1-3,,7", 0, "1,2,3,GAP,7,"},
        {"a1-A3", 0, "a1,a2,a3,"},  // prefixes agree apart from case; the left one is written
        {"5-5", 0, "5,"},
        {"B12-B9", 0, "B12,B11,B10,B9,"},
        {"01-10", 0, "01,02,03,04,05,06,07,08,09,10,"},
        {"10-01", 0, "10,09,08,07,06,05,04,03,02,01,"},      // right padded, descending, same width
        {"007-009", 0, "007,008,009,"},                      // both padded, same width
        {"CL099-CL101", 0, "CL099,CL100,CL101,"},            // left padded to the right's width
        {"ABCDEFGH1-ABCDEFGH2", 0, "ABCDEFGH1,ABCDEFGH2,"},  // left name of 9 characters
        {" P1 - P2 ,P9", 0, "P1,P2,P9,"},                    // sides and names are stripped
        {"4,,", 0, "4,GAP,,"},  // the gap token is "+", blanked and then written as an empty name
        {"A1-B3", 2, ""},
        {"A1-3", 2, ""},                   // prefix lengths differ
        {"ABCDEFGHI1-ABCDEFGHI2", 2, ""},  // left name of 10 characters
        {"7-", 2, ""},
        {"7- ", 2, ""},  // no right name
        {"001-10", 3, ""},
        {"1-010", 3, ""},
        {"010-1", 3, ""},
        {"100-01", 3, ""},   // right padded, descending, widths 3 and 2
        {"007-0010", 3, ""}  // both padded, widths 3 and 4
    };
    for (const Row &row : rows) {
        const ListResult r = expand(row.text);
        EXPECT_EQ(r.status, row.status) << row.text;
        if (row.status == 0) {
            EXPECT_EQ(r.text, row.expanded) << row.text;
        }
    }
}

TEST(ExpandList, DelimitersAndSeparatorAreTheCallers)
{
    EXPECT_EQ(expand("P1-P3, P7", ", ", " ").text, "P1 P2 P3 P7 ");
    // The gap mark is ",," whatever the delimiters are.
    EXPECT_EQ(expand("1-2,,5", " ", ";").text, "1;2;GAP;5;");
    EXPECT_EQ(expand("1-2", ",", " / ").text, "1 / 2 / ");
}

TEST(ExpandList, BadRangeLeavesThePartialResult)
{
    char *result = nullptr;
    EXPECT_EQ(tsString_expandAlphaNumeric(&result, "1,2-B3,4", ",", ","), 2);
    ASSERT_NE(result, nullptr);
    EXPECT_STREQ(result, "1,");
    tsMem_free(result);
    result = nullptr;
    EXPECT_EQ(tsString_expandAlphaNumeric(&result, "A1-A2,001-10", ",", ","), 3);
    ASSERT_NE(result, nullptr);
    EXPECT_STREQ(result, "A1,A2,");
    tsMem_free(result);
}

TEST(CompressList, RunsPrefixesAndGaps)
{
    struct Row {
        const char *list;
        const char *compressed;
    };
    const Row rows[] = {
        {"A1 A2 A3 B7", "A1-A3, B7,"},  // the ascending form with a prefix ends in a blank
        {"A3 A2 A1 B1", "A3-A1,B1,"},   // the descending one does not
        {"1 2 3 GAP 7 8", "1-3,,7-8,"},
        {"5 4 3", "5-3,"},
        {"1 2 1", "2-1,"},  // the direction is the last step's
        {"A09 A10", "A09,A10,"},
        {"A007 A008", "A007-A008,"},  // same padding: prefix "A00"
        {"1 2 GAP", "1-2,,1-2,"},     // the open run is written again at the end
        {"4 GAP 6", "4,,6,"},
        {"0 GAP 6", "0,,6,"},  // before a gap a single 0 is written
        {"0 5", "5,"},         // elsewhere it gives nothing
        {"P0", "P"},
        {"A1 A2 gap A5", "A1-A2,, A5,"},
        {"ABC DEF", "ABCDEF"},  // names without numbers run together
        {"1 1 2", "1,1-2,"},
        {"1-3 7", "1-3,7,"},  // expanded first
        {"", ""},
    };
    for (const Row &row : rows) {
        const ListResult r = compress(row.list);
        EXPECT_EQ(r.status, 0) << row.list;
        EXPECT_EQ(r.text, row.compressed) << row.list;
    }
    EXPECT_EQ(compress("1 2 3 9", ";").text, "1-3;9;");
}

TEST(CompressList, FailedExpansionStepGivesMinusTwo)
{
    char *result = nullptr;
    EXPECT_EQ(tsString_compressAlphaNumeric(&result, "A1-B3 C4", ","), -2);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(tsString_compressAlphaNumeric(&result, "001-10", ","), -2);
    EXPECT_EQ(result, nullptr);
}

TEST(CompressList, FieldBookCompressesAsWorkedByHand)
{
    // A traverse 1..200, the centre line CL100..CL180, edge points picked up
    // backwards EP40..EP1, a break, two benchmarks and a check shot.
    std::string list;
    for (int i = 1; i <= 200; ++i)
        list += std::to_string(i) + " ";
    for (int i = 100; i <= 180; ++i)
        list += "CL" + std::to_string(i) + " ";
    for (int i = 40; i >= 1; --i)
        list += "EP" + std::to_string(i) + " ";
    list += "GAP BM1 BM2 500";
    const ListResult r = compress(list.c_str());
    ASSERT_EQ(r.status, 0);
    EXPECT_EQ(r.text, "1-200,CL100-CL180, EP40-EP1,,BM1-BM2, 500,");

    // Back to the plain form, with blanks between the names.
    const ListResult back = expand(r.text.c_str(), ",", " ");
    ASSERT_EQ(back.status, 0);
    EXPECT_EQ(back.text, list + " ");
}

TEST(CompressList, RoundTripsAGeneratedSurvey)
{
    // Runs up and down, prefixes, names padded to three digits and breaks,
    // drawn at random. Each run changes prefix, so that no run joins the one
    // before it; numbers start at 1, since a lone name numbered 0 keeps only
    // its prefix.
    std::mt19937 draw(2024);
    const char *formats[] = {"%d", "CL%d", "EP%d", "P%03d", "TN%d"};
    std::string list;
    std::size_t kind = 0;
    char name[16];
    for (int run = 0; run < 300; ++run) {
        kind = (kind + 1 + draw() % 4) % 5;
        const int start = 1 + static_cast<int>(draw() % 150);
        const int length = 1 + static_cast<int>(draw() % 8);
        const int step = draw() % 3 == 0 ? -1 : 1;
        for (int k = 0; k < length && start + step * k >= 1; ++k) {
            std::snprintf(name, sizeof name, formats[kind], start + step * k);
            list += std::string(name) + " ";
        }
        if (draw() % 10 == 0) list += "GAP ";
    }
    list += "Z1";
    const ListResult c = compress(list.c_str());
    ASSERT_EQ(c.status, 0);
    EXPECT_LT(c.text.size(), list.size());
    const ListResult e = expand(c.text.c_str(), ",", " ");
    ASSERT_EQ(e.status, 0);
    EXPECT_EQ(e.text, list + " ");
}

TEST(IntegerText, FirstRunOfDigits)
{
    struct Row {
        const char *text;
        int32_t value;
    };
    const Row rows[] = {{"PT-12a3", 12}, {"-7", 7}, {"  42 ", 42}, {"abc", 0}, {"", 0}};
    for (const Row &row : rows) {
        int32_t value = -99;
        EXPECT_EQ(tsString_extractInteger(&value, row.text), 0);
        EXPECT_EQ(value, row.value) << row.text;
    }
    int32_t value = -99;
    EXPECT_EQ(tsString_extractInteger(&value, nullptr), kFail);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(tsString_extractInteger(nullptr, "12"), kFail);
}

TEST(IntegerText, Ranges)
{
    struct Row {
        const char *text;
        int32_t low, high;
    };
    const Row rows[] = {
        {"-5", -5, -5}, {"3 - 9", 3, 9}, {"12", 12, 12},
        {"4-8", 4, 8},  {"-5-9", -5, 9}, {"\t7\n", 7, 7},  // control characters blanked and stripped
    };
    for (const Row &row : rows) {
        int32_t low = -99;
        int32_t high = -99;
        EXPECT_EQ(tsString_extractIntegerRange(row.text, &low, &high), 0);
        EXPECT_EQ(low, row.low) << row.text;
        EXPECT_EQ(high, row.high) << row.text;
    }
    int32_t high = 0;
    EXPECT_EQ(tsString_extractIntegerRange("2-6", nullptr, &high), 0);
    EXPECT_EQ(high, 6);
    EXPECT_EQ(tsString_extractIntegerRange(nullptr, &high, &high), kFail);
    EXPECT_EQ(tsString_extractIntegerRange("", &high, &high), kFail);
}

TEST(IntegerText, SortsTokensIntoNumbersAndStrings)
{
    // Quoted tokens keep their quotes and commas; blanks stay; the empty
    // field gives nothing.
    char input[] = "12,\"ab,c\",x1, 3.5 ,,\"7\"";
    char numbers[64] = "old";
    char strings[64] = "old";
    EXPECT_EQ(tsString_extractIntegerAndStringExpressions(numbers, strings, nullptr, input), 0);
    EXPECT_STREQ(numbers, "12, 3.5 ");
    EXPECT_STREQ(strings, "\"ab,c\",x1,\"7\"");

    char onlyNumbers[] = "1,2";
    EXPECT_EQ(tsString_extractIntegerAndStringExpressions(numbers, strings, nullptr, onlyNumbers), 0);
    EXPECT_STREQ(numbers, "1,2");
    EXPECT_STREQ(strings, "");

    char empty[] = "";
    EXPECT_EQ(tsString_extractIntegerAndStringExpressions(numbers, strings, nullptr, empty), kFail);
    char some[] = "1";
    std::strcpy(strings, "old");
    EXPECT_EQ(tsString_extractIntegerAndStringExpressions(nullptr, strings, nullptr, some), kFail);
    EXPECT_STREQ(strings, "");  // the given output is cleared first
    EXPECT_EQ(tsString_extractIntegerAndStringExpressions(numbers, strings, nullptr, nullptr), kFail);
}

TEST(IntegerText, CharacterTests)
{
    struct Row {
        const char *text;
        int32_t isRange;
    };
    const Row rows[] = {{"1-5-9", 1}, {"1-", 1}, {"12", 1}, {"-1", 0}, {"1a", 0}, {"1 - 5", 0}, {"", 0}};
    for (const Row &row : rows)
        EXPECT_EQ(tsString_isIntegerOrRange(row.text), row.isRange) << row.text;
    EXPECT_EQ(tsString_isIntegerOrRange(nullptr), 0);
    for (const char c : std::string("/0459:a"))
        EXPECT_EQ(tsString_isCharacterAnInteger(&c), c >= '0' && c <= '9' ? 1 : 0) << c;
}

#if defined(POINTNAMES_TEST_SANITIZED)
TEST(ListMemory, FailuresOfTheResultAndOfTheWorkingCopy)
{
    GTEST_SKIP() << "the address sanitizer reserves more address space than the cap allows";
}
#else
// Runs call in a child process whose address space is capped at what it
// uses now plus headroom, and returns the call's status (as a byte).
int statusUnderMemoryCap(std::size_t headroom, const std::function<int32_t()> &call)
{
    const pid_t child = fork();
    if (child == 0) {
        long pages = 0;
        if (FILE *statm = std::fopen("/proc/self/statm", "r")) {
            if (std::fscanf(statm, "%ld", &pages) != 1) pages = 0;
            std::fclose(statm);
        }
        const rlim_t used = static_cast<rlim_t>(pages) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
        const rlimit cap{used + headroom, used + headroom};
        if (pages == 0 || setrlimit(RLIMIT_AS, &cap) != 0) _exit(100);
        _exit(call() & 0xFF);
    }
    int waited = 0;
    waitpid(child, &waited, 0);
    return WIFEXITED(waited) ? WEXITSTATUS(waited) : -1;
}

constexpr int kMinusOne = 0xFF;
constexpr int kMinusTwo = 0xFE;
constexpr std::size_t kMiB = std::size_t{1} << 20;

// What a call returns, when it leaves nothing in the caller's variable.
int32_t expandFailure(const char *text)
{
    char *result = nullptr;
    const int32_t status = tsString_expandAlphaNumeric(&result, text, ",", ",");
    return result == nullptr ? status : 0;
}

int32_t compressFailure(const char *list)
{
    char *result = nullptr;
    const int32_t status = tsString_compressAlphaNumeric(&result, list, ",");
    return result == nullptr ? status : 0;
}

TEST(ListMemory, FailuresOfTheResultAndOfTheWorkingCopy)
{
    // "1 3 1 3 ...": 64 MiB in which no two names join, so that its
    // compression is as long as the list.
    std::string list;
    list.reserve(64 * kMiB);
    while (list.size() < 64 * kMiB)
        list += "1 3 ";
    const char *names = list.c_str();
    // Working copies of 64 MiB do not fit in 16 MiB of headroom.
    EXPECT_EQ(statusUnderMemoryCap(16 * kMiB, [=] { return expandFailure(names); }), kMinusTwo);
    EXPECT_EQ(statusUnderMemoryCap(16 * kMiB, [=] { return compressFailure(names); }), kMinusTwo);
    // The working copy fits, the result cannot grow to the list's size; nor
    // can the result of a short range of thirty million names.
    EXPECT_EQ(statusUnderMemoryCap(72 * kMiB, [=] { return compressFailure(names); }), kMinusOne);
    EXPECT_EQ(statusUnderMemoryCap(16 * kMiB, [] { return expandFailure("1-30000000"); }), kMinusOne);
}
#endif

}  // namespace
