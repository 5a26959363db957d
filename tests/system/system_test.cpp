// Platform utilities: paths (raw strings, so that backslashes read as typed),
// guids, the log file, the system query, processes and the value helpers.
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

#include <tessar/system.h>

namespace {

constexpr int32_t kFail = 32768;
constexpr int32_t kGuidFail = static_cast<int32_t>(0x80004005u);

// A file in the test temp dir, named for this process.
std::string tempFile(const std::string &name)
{
    return testing::TempDir() + "tessar_system_" + std::to_string(getpid()) + "_" + name;
}

std::string readFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/* ---- Paths ---- */

struct PathRow {
    const char *a, *b;
    int32_t status;
    const char *expected;
};

// Runs f(output, a, b) on each row, from an output of "?".
template <class F> void expectPaths(F f, std::initializer_list<PathRow> rows)
{
    for (const PathRow &r : rows) {
        char output[64] = "?";
        EXPECT_EQ(f(output, r.a, r.b), r.status) << r.a << " | " << r.b;
        EXPECT_STREQ(output, r.expected) << r.a << " | " << r.b;
    }
}

TEST(Filename, CommonRelativeAndExpressedPaths)
{
    // The common prefix apart from case, in a's spelling, cut back to the
    // last backslash (dropped) or colon (kept); paths equal apart from case
    // give a; an empty path fails.
    expectPaths(tsFilename_getCommonPath, {{R"(C:\a\b)", R"(c:\A\c)", 0, R"(C:\a)"},
                                           {R"(C:\x)", R"(D:\x)", 0, ""},
                                           {R"(C:\Dir\F.txt)", R"(c:\dir\f.TXT)", 0, R"(C:\Dir\F.txt)"},
                                           {R"(C:\ab)", R"(C:\ac)", 0, "C:"},
                                           {"C:abc", "C:abd", 0, "C:"},
                                           {R"(C:\a)", R"(C:\a\b)", 0, "C:"},
                                           {R"(\\srv\share\x)", R"(\\srv\share\y)", 0, R"(\\srv\share)"},
                                           {"", "x", kFail, "?"},
                                           {"x", "", kFail, "?"}});
    // a's tail under b (b found anywhere in a is taken as a's start), or the
    // way up from b to a; compared in upper case, a's spelling out.
    expectPaths(tsFilename_getRelativePath, {{R"(C:\a\b\c)", R"(C:\a)", 0, R"(\b\c)"},
                                             {R"(c:\A\b)", R"(C:\a)", 0, R"(\b)"},
                                             {R"(C:\a)", R"(C:\a\b\c)", 0, R"(\..\..)"},
                                             {R"(C:\a)", R"(C:\a\)", 0, ""},
                                             {R"(X\a\b)", "a", 0, R"(\a\b)"},
                                             {R"(C:\x)", R"(D:\y)", kFail, "?"}});
    // Up from the base to the common path (C:\a: one step), then the target's tail.
    expectPaths(tsFilename_expressUsingRelativePath, {{R"(C:\a\b)", R"(C:\a\c\d.txt)", 0, R"(\..\c\d.txt)"},
                                                      {R"(C:\p\q)", R"(c:\P\Q)", 0, ""},
                                                      {R"(C:\x)", R"(D:\x)", kFail, "?"}});
    char output[8];
    EXPECT_EQ(tsFilename_getCommonPath(output, nullptr, "x"), kFail);
    EXPECT_EQ(tsFilename_getCommonPath(nullptr, "x", "x"), kFail);
    EXPECT_EQ(tsFilename_getRelativePath(output, "a", nullptr), kFail);
}

TEST(Filename, ResolveRemovesEachParentStepWithItsComponent)
{
    // Removals go through the 256-character limit of the replacement: the text
    // left (2 + k + 2 with k y's) and the count removed must not pass 256.
    const std::string y124(124, 'y'), y125 = "p\\" + std::string(125, 'y') + R"(\..)";
    const struct {
        std::string path, output, pathAfter;
    } rows[] = {
        {R"(a\b\..\c)", R"(a\c)", R"(a\c)"},
        {R"(C:\a\b\..\..\c)", R"(C:\c)", R"(C:\a\..\c)"},  // two rounds; the path keeps the first only
        {R"(a\..\b)", R"(a\..\b)", "a"},       // no backslash before "\..": path cut, output the copy
        {R"(a\b\..\..\c)", "a", R"(a\..\c)"},  // the same in a later round cuts the output
        {R"(..\a)", R"(..\a)", R"(..\a)"},
        {"", "", ""},
        {"p\\" + y124 + R"(\..)", "p", "p"},
        {y125, y125, y125},
    };
    for (const auto &r : rows) {
        std::string path = r.path;
        std::vector<char> output(path.size() + 1, '?');
        EXPECT_EQ(tsFilename_resolveRelativePath(output.data(), path.data()), 0) << r.path;
        EXPECT_STREQ(output.data(), r.output.c_str()) << r.path;
        EXPECT_STREQ(path.c_str(), r.pathAfter.c_str()) << r.path;
    }
    char path[] = "a";
    EXPECT_EQ(tsFilename_resolveRelativePath(nullptr, path), kFail);
}

// A project in C:\jobs\road\design refers to survey points in C:\jobs\survey:
// common path C:\jobs, two steps up, stored relative and joined back. An
// empty join fails, with the output cleared first.
TEST(Filename, ProjectFileStoredRelativeAndFoundAgain)
{
    const char *project = R"(C:\jobs\road\design)";
    char stored[128], found[128] = "?";
    ASSERT_EQ(tsFilename_expressUsingRelativePath(stored, project, R"(C:\jobs\survey\pts.csv)"), 0);
    EXPECT_STREQ(stored, R"(\..\..\survey\pts.csv)");
    ASSERT_EQ(tsFilename_fromRelativePath(found, project, stored), 0);
    EXPECT_STREQ(found, R"(C:\jobs\survey\pts.csv)");
    std::strcpy(found, "?");
    EXPECT_EQ(tsFilename_fromRelativePath(found, "", ""), kFail);
    EXPECT_STREQ(found, "");
    EXPECT_EQ(tsFilename_fromRelativePath(found, nullptr, "x"), kFail);
}

/* ---- Guids ---- */

// data1 12345678, data2 9ABC, data3 DEF0, data4 01 23 45 67 89 AB CD EF.
const tsGuid kSample = {0x12345678u, 0x9ABCu, 0xDEF0u, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};

TEST(Guid, TextFormsParsingAndRoundTrips)
{
    char16_t text[40];
    const tsGuid small = {0xAu, 0x1u, 0x0u, {0, 0, 0, 0, 0, 0, 0, 0xF}};
    EXPECT_EQ(tsGuid_toString(text, &kSample), 0);
    EXPECT_EQ(std::u16string(text), u"{12345678-9ABC-DEF0-0123-456789ABCDEF}");
    EXPECT_EQ(tsGuid_toStringNoBrackets(text, &kSample), 0);
    EXPECT_EQ(std::u16string(text), u"12345678-9ABC-DEF0-0123-456789ABCDEF");
    EXPECT_EQ(tsGuid_toString(text, &small), 0);
    EXPECT_EQ(std::u16string(text), u"{0000000A-0001-0000-0000-00000000000F}");  // leading zeros kept

    tsGuid g{};
    EXPECT_EQ(tsGuid_fromString(&g, u"{12345678-9abc-def0-0123-456789abcdef}"), 0);  // either case
    EXPECT_EQ(tsGuid_equal(&g, &kSample), 1);
    // Other forms fail and leave the guid as it was: no braces, one short,
    // one long, not hex, dashes out of place, data4 split elsewhere, other delimiters.
    for (const char16_t *rejected :
         {u"", u"12345678-9ABC-DEF0-0123-456789ABCDEF", u"{12345678-9ABC-DEF0-0123-456789ABCDEF",
          u"{12345678-9ABC-DEF0-0123-456789ABCDEF}x", u"{12345678-9ABC-DEF0-0123-456789ABCDEG}",
          u"{123456789ABC-DEF0-0123-456789ABCDEF-}", u"{12345678-9ABC-DEF0-012345-6789ABCDEF}",
          u"{12345678 9ABC-DEF0-0123-456789ABCDEF}", u"(12345678-9ABC-DEF0-0123-456789ABCDEF)",
          static_cast<const char16_t *>(nullptr)}) {
        g = kSample;
        EXPECT_EQ(tsGuid_fromString(&g, rejected), kGuidFail);
        EXPECT_EQ(tsGuid_equal(&g, &kSample), 1);
    }
    // Generated guids are random, of version 4 and the standard variant, and
    // come back from their text.
    tsGuid previous{};
    for (int i = 0; i < 20; ++i) {
        tsGuid fresh{}, back{};
        ASSERT_EQ(tsGuid_generate(&fresh), 0);
        EXPECT_TRUE(fresh.data3 >> 12 == 4 && fresh.data4[0] >> 6 == 0b10);
        EXPECT_EQ(tsGuid_equal(&fresh, &previous), 0);
        tsGuid_toString(text, &fresh);
        ASSERT_EQ(tsGuid_fromString(&back, text), 0);
        EXPECT_EQ(tsGuid_equal(&fresh, &back), 1);
        previous = fresh;
    }
}

TEST(Guid, ByteWiseOrderClearAndCopy)
{
    // data1 = 1 is stored 01 00 00 00 and 0x100 is 00 01 00 00: byte by byte
    // the first is greater, though the number is smaller.
    const tsGuid one = {1u, 0, 0, {0}}, big = {0x100u, 0, 0, {0}};
    EXPECT_TRUE(tsGuid_compare(&one, &big) > 0 && tsGuid_compare(&big, &one) < 0 &&
                tsGuid_compare(&one, &one) == 0);
    tsGuid g = kSample;
    EXPECT_EQ(tsGuid_isClear(&g), 0);
    EXPECT_EQ(tsGuid_clear(&g), 0);
    EXPECT_EQ(tsGuid_isClear(&g), 1);
    EXPECT_EQ(tsGuid_clear(nullptr), 0);
    EXPECT_TRUE(tsGuid_copy(&g, &kSample) == 0 && tsGuid_copy(nullptr, &kSample) == 0 &&
                tsGuid_copy(&g, nullptr) == 0);
    EXPECT_EQ(tsGuid_equal(&g, &kSample), 1);
}

/* ---- Log file ---- */

// Lines are flushed as they come; "w+" replaces an earlier file; a second
// open abandons the first stream; a failed open leaves none.
TEST(LogFile, LinesFlushedAsTheyComeAndOneStreamAtATime)
{
    const std::string first = tempFile("first.log"), second = tempFile("second.log");
    ASSERT_EQ(tsLogFile_open(first.c_str()), 0);
    EXPECT_EQ(tsLogFile_write("strings %d joined", 3), 0);
    EXPECT_EQ(readFile(first), "strings 3 joined\n");  // before the close
    EXPECT_EQ(tsLogFile_write("%s at %.2f", "knot", 12.5), 0);
    EXPECT_EQ(tsLogFile_close(), 0);
    EXPECT_EQ(readFile(first), "strings 3 joined\nknot at 12.50\n");
    EXPECT_EQ(tsLogFile_write("lost"), kFail);
    EXPECT_EQ(tsLogFile_close(), kFail);

    ASSERT_EQ(tsLogFile_open(first.c_str()), 0);
    EXPECT_EQ(tsLogFile_write("one"), 0);
    ASSERT_EQ(tsLogFile_open(second.c_str()), 0);
    EXPECT_EQ(tsLogFile_write("two"), 0);
    EXPECT_EQ(tsLogFile_close(), 0);
    EXPECT_EQ(readFile(first), "one\n");
    EXPECT_EQ(readFile(second), "two\n");

    ASSERT_EQ(tsLogFile_open(first.c_str()), 0);
    EXPECT_EQ(tsLogFile_open(tempFile("missing/x.log").c_str()), kFail);
    EXPECT_EQ(tsLogFile_write("nowhere"), kFail);
    EXPECT_EQ(tsLogFile_close(), kFail);
    for (const std::string &file : {first, second})
        std::filesystem::remove(file);
}

/* ---- System ---- */

TEST(System, QueryAndADetachedProcessThatIsNotWaitedFor)
{
    EXPECT_EQ(tsUtil_getOperatingSystem(), 2);  // another platform than the old ones
    EXPECT_EQ(tsUtil_isOperatingSystemWindowsXP(), 0);
    const std::string marker = tempFile("started.txt"), command = "echo started > '" + marker + "'";
    ASSERT_EQ(tsUtil_createWindowsProcess(command.c_str()), 0);
    std::string seen;
    for (int i = 0; i < 200 && seen != "started\n"; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
        seen = readFile(marker);
    }
    EXPECT_EQ(seen, "started\n");
    EXPECT_EQ(tsUtil_createWindowsProcess(nullptr), kFail);
    std::filesystem::remove(marker);
}

/* ---- Values ---- */

// Digits with the sign as one more; integer digits of the floor, and the
// decimals left of 16.
TEST(Values, Digits)
{
    const int32_t rows[][2] = {{0, 1},    {9, 1},  {10, 2},     {99, 2},    {-99, 3},        {999, 3},
                               {1000, 4}, {-1, 2}, {100000, 6}, {99999, 5}, {INT32_MAX, 10}, {INT32_MIN, 11}};
    for (const auto &[value, digits] : rows)
        EXPECT_EQ(tsUtil_numberOfDigit(value), digits) << value;
    // floor -1 is a digit and the sign; floor -100 three and the sign.
    const double mantissa[][2] = {{0.5, 1}, {99.9, 2}, {123.456, 3}, {1000.0, 4}, {-0.5, 2}, {-99.5, 4}};
    for (const auto &[value, digits] : mantissa) {
        EXPECT_EQ(tsUtil_numberOfMantissaDigit(value), digits) << value;
        EXPECT_EQ(tsUtil_numberOfDecimalsDigit(value), 16 - digits) << value;
    }
}

// Long is 32-bit; memory blocks swap whole; the bytes of a short swap only
// for a count of exactly 1.
TEST(Values, Swaps)
{
    int32_t i1 = 7, i2 = -8;
    double d1 = 1.5, d2 = -2.25;
    char a[] = "abc", b[] = "xyz";
    tsUtil_swapLong(&i1, &i2);
    tsUtil_swapDouble(&d1, &d2);
    tsUtil_swapMem(a, b, 3);
    EXPECT_TRUE(i1 == -8 && i2 == 7 && d1 == -2.25 && d2 == 1.5);
    EXPECT_EQ(std::string(a) + b, "xyzabc");
    for (const auto &[count, expected] : {std::pair{1, 0x3412}, {2, 0x1234}, {0, 0x1234}, {-1, 0x1234}}) {
        int16_t values[2] = {0x1234, 0x5678};
        tsUtil_swapBytesShortArray(values, 0, count);
        EXPECT_TRUE(uint16_t(values[0]) == expected && values[1] == 0x5678) << count;
    }
}

// Exact, with -1 for an unordered pair; it sorts levels with qsort.
TEST(Values, ExactComparatorOfDoubles)
{
    const double nan = std::nan("");
    const double rows[][3] = {{1.0, 2.0, -1},         {2.0, 1.0, 1},  {2.0, 2.0, 0},  {-0.0, 0.0, 0},
                              {1.0, 1.0 + 1e-15, -1}, {nan, 1.0, -1}, {1.0, nan, -1}, {nan, nan, -1}};
    for (const auto &r : rows)
        EXPECT_EQ(tsUtil_compareDoubleByPointer(&r[0], &r[1]), r[2]) << r[0] << " " << r[1];
    double levels[] = {98.2, 97.5, 101.0, 99.75, 97.5};
    std::qsort(levels, 5, sizeof(double),
               [](const void *a, const void *b) -> int { return tsUtil_compareDoubleByPointer(a, b); });
    EXPECT_EQ(std::vector<double>(levels, levels + 5), (std::vector<double>{97.5, 97.5, 98.2, 99.75, 101.0}));
}

TEST(Values, DuplicatesRemovedKeepingFirstOccurrences)
{
    const std::vector<int32_t> rows[][2] = {
        {{1, 2, 1, 3, 2}, {1, 2, 3}}, {{5, 5, 5}, {5}}, {{3, 1, 2}, {3, 1, 2}}, {{}, {}}};
    for (const auto &[in, out] : rows) {
        std::vector<int32_t> values = in;
        values.push_back(-77);  // a guard behind the count
        auto count = int32_t(in.size());
        EXPECT_EQ(tsUtil_removeDuplicatesFromLongArray(values.data(), &count), 0);
        EXPECT_EQ(std::vector<int32_t>(values.begin(), values.begin() + count), out);
        EXPECT_EQ(values.back(), -77);
    }
    int32_t count = 1, value = 1;
    EXPECT_EQ(tsUtil_removeDuplicatesFromLongArray(nullptr, &count), kFail);
    EXPECT_EQ(tsUtil_removeDuplicatesFromLongArray(&value, nullptr), kFail);
}

// Whole elements move and their bytes keep their order: odd and even counts,
// three-byte elements, a polyline's vertices; 1 and 0 change nothing.
TEST(Values, ReverseArrayOfAnyElementSize)
{
    int32_t odd[] = {1, 2, 3, 4, 5}, even[] = {1, 2, 3, 4}, one[] = {9};
    char bytes[] = "abcdefghi";
    dpoint2d line[] = {{0.0, 1.0}, {2.0, 3.0}, {4.0, 5.0}};
    tsUtil_reverseArray(odd, 5, sizeof(int32_t));
    tsUtil_reverseArray(even, 4, sizeof(int32_t));
    tsUtil_reverseArray(bytes, 3, 3);
    tsUtil_reverseArray(line, 3, sizeof(dpoint2d));
    tsUtil_reverseArray(one, 1, sizeof(int32_t));
    tsUtil_reverseArray(one, 0, sizeof(int32_t));
    EXPECT_EQ(std::vector<int32_t>(odd, odd + 5), (std::vector<int32_t>{5, 4, 3, 2, 1}));
    EXPECT_EQ(std::vector<int32_t>(even, even + 4), (std::vector<int32_t>{4, 3, 2, 1}));
    EXPECT_STREQ(bytes, "ghidefabc");
    EXPECT_TRUE(line[0].x == 4.0 && line[0].y == 5.0 && line[1].x == 2.0 && line[2].x == 0.0 &&
                line[2].y == 1.0);
    EXPECT_EQ(one[0], 9);
}

}  // namespace
