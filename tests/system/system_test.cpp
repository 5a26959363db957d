// Platform utilities: path rules as text, guids and their text, the log
// file, the system query, process creation and the value helpers. Paths are
// raw strings so that the backslashes read as they are typed.
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/system.h>

namespace {

constexpr int32_t kFail = 32768;
constexpr int32_t kGuidFail = static_cast<int32_t>(0x80004005u);

// A fresh directory under the test temp dir, removed with its files.
class TempDir
{
  public:
    TempDir()
    {
        std::string pattern = testing::TempDir() + "tessar_system_XXXXXX";
        if (mkdtemp(pattern.data()) != nullptr) path_ = pattern;
    }
    ~TempDir()
    {
        std::error_code ignored;
        if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
    }
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;
    bool ok() const { return !path_.empty(); }
    std::string file(const char *name) const { return (path_ / name).string(); }

  private:
    std::filesystem::path path_;
};

std::string readFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/* ---- Paths ---- */

TEST(FilenameCommonPath, PrefixCutBackToBackslashOrColon)
{
    struct Row {
        const char *a, *b;
        int32_t status;
        const char *common;
    };
    const Row rows[] = {
        {R"(C:\a\b)", R"(c:\A\c)", 0, R"(C:\a)"},                      // a's spelling, backslash dropped
        {R"(C:\x)", R"(D:\x)", 0, ""},                                 // nothing in common
        {R"(C:\Dir\F.txt)", R"(c:\dir\f.TXT)", 0, R"(C:\Dir\F.txt)"},  // equal apart from case: a
        {R"(C:\ab)", R"(C:\ac)", 0, "C:"},                             // prefix C:\a, back to its backslash
        {"C:abc", "C:abd", 0, "C:"},                                   // a colon is kept
        {R"(C:\a)", R"(C:\a\b)", 0, "C:"},                             // a whole prefix is cut back too
        {R"(\\srv\share\x)", R"(\\srv\share\y)", 0, R"(\\srv\share)"},
        {"", "x", kFail, "?"},
        {"x", "", kFail, "?"},
    };
    for (const Row &r : rows) {
        char output[64] = "?";
        EXPECT_EQ(tsFilename_getCommonPath(output, r.a, r.b), r.status) << r.a << " | " << r.b;
        EXPECT_STREQ(output, r.common) << r.a << " | " << r.b;
    }
    char output[8];
    EXPECT_EQ(tsFilename_getCommonPath(output, nullptr, "x"), kFail);
    EXPECT_EQ(tsFilename_getCommonPath(nullptr, "x", "x"), kFail);
}

TEST(FilenameRelativePath, TailUnderTheOtherOrTheWayUp)
{
    struct Row {
        const char *a, *b;
        int32_t status;
        const char *relative;
    };
    const Row rows[] = {
        {R"(C:\a\b\c)", R"(C:\a)", 0, R"(\b\c)"},
        {R"(c:\A\b)", R"(C:\a)", 0, R"(\b)"},  // compared in upper case, a's own spelling out
        {R"(C:\a)", R"(C:\a\b\c)", 0, R"(\..\..)"},
        {R"(C:\a)", R"(C:\a\)", 0, ""},   // no component behind a
        {R"(X\a\b)", "a", 0, R"(\a\b)"},  // b found inside a is still taken as a's start
        {R"(C:\x)", R"(D:\y)", kFail, "?"},
    };
    for (const Row &r : rows) {
        char output[64] = "?";
        EXPECT_EQ(tsFilename_getRelativePath(output, r.a, r.b), r.status) << r.a << " | " << r.b;
        EXPECT_STREQ(output, r.relative) << r.a << " | " << r.b;
    }
    char output[8];
    EXPECT_EQ(tsFilename_getRelativePath(output, "a", nullptr), kFail);
}

TEST(FilenameExpressRelative, WayUpToTheCommonPathThenTheTargetTail)
{
    struct Row {
        const char *base, *target;
        int32_t status;
        const char *relative;
    };
    const Row rows[] = {
        // Common C:\a; one component (b) up from the base; the tail \c\d.txt.
        {R"(C:\a\b)", R"(C:\a\c\d.txt)", 0, R"(\..\c\d.txt)"},
        {R"(C:\p\q)", R"(c:\P\Q)", 0, ""},
        {R"(C:\x)", R"(D:\x)", kFail, "?"},
    };
    for (const Row &r : rows) {
        char output[64] = "?";
        EXPECT_EQ(tsFilename_expressUsingRelativePath(output, r.base, r.target), r.status) << r.base;
        EXPECT_STREQ(output, r.relative) << r.base;
    }
}

TEST(FilenameResolve, RemovesEachParentStepWithItsComponent)
{
    struct Row {
        std::string path, output, pathAfter;
    };
    const std::string y124(124, 'y'), y125(125, 'y');
    const Row rows[] = {
        {R"(a\b\..\c)", R"(a\c)", R"(a\c)"},
        // Two rounds; the given path keeps only the first removal.
        {R"(C:\a\b\..\..\c)", R"(C:\c)", R"(C:\a\..\c)"},
        // No backslash before the "\..": the path is cut, the output is the copy.
        {R"(a\..\b)", R"(a\..\b)", "a"},
        // The same met in a later round cuts the output, which that round works on.
        {R"(a\b\..\..\c)", "a", R"(a\..\c)"},
        {R"(..\a)", R"(..\a)", R"(..\a)"},
        {"", "", ""},
        // The removal goes through the 256-character limit of
        // tsString_replaceSubstring: from the backslash, the text left
        // (2 + k + 2 characters with k y's) plus the count removed (the
        // same) must not be above 256, so k = 124 is shortened and 125 not.
        {"p\\" + y124 + R"(\..)", "p", "p"},
        {"p\\" + y125 + R"(\..)", "p\\" + y125 + R"(\..)", "p\\" + y125 + R"(\..)"},
    };
    for (const Row &r : rows) {
        std::string path = r.path;
        std::vector<char> output(path.size() + 1, '?');
        EXPECT_EQ(tsFilename_resolveRelativePath(output.data(), path.data()), 0) << r.path;
        EXPECT_STREQ(output.data(), r.output.c_str()) << r.path;
        EXPECT_STREQ(path.c_str(), r.pathAfter.c_str()) << r.path;
    }
    char path[] = "a";
    EXPECT_EQ(tsFilename_resolveRelativePath(nullptr, path), kFail);
}

TEST(FilenameFromRelative, JoinsThenResolves)
{
    char output[64] = "?";
    EXPECT_EQ(tsFilename_fromRelativePath(output, R"(C:\a\b)", R"(\..\c\d.txt)"), 0);
    EXPECT_STREQ(output, R"(C:\a\c\d.txt)");
    std::strcpy(output, "?");
    EXPECT_EQ(tsFilename_fromRelativePath(output, "", ""), kFail);
    EXPECT_STREQ(output, "");  // cleared before the join
    EXPECT_EQ(tsFilename_fromRelativePath(output, nullptr, "x"), kFail);
}

TEST(FilenameScenario, ProjectFileStoredRelativeAndFoundAgain)
{
    // A project in C:\jobs\road\design refers to survey points in
    // C:\jobs\survey. Common path C:\jobs; two components up from the
    // project; stored as \..\..\survey\pts.csv and joined back.
    const char *project = R"(C:\jobs\road\design)";
    char stored[128];
    ASSERT_EQ(tsFilename_expressUsingRelativePath(stored, project, R"(C:\jobs\survey\pts.csv)"), 0);
    EXPECT_STREQ(stored, R"(\..\..\survey\pts.csv)");
    char found[128];
    ASSERT_EQ(tsFilename_fromRelativePath(found, project, stored), 0);
    EXPECT_STREQ(found, R"(C:\jobs\survey\pts.csv)");
}

/* ---- Guids ---- */

// data1 12345678, data2 9ABC, data3 DEF0, data4 01 23 45 67 89 AB CD EF.
const tsGuid kSample = {0x12345678u, 0x9ABCu, 0xDEF0u, {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}};

TEST(Guid, TextFormsOfAKnownGuid)
{
    char16_t text[40];
    EXPECT_EQ(tsGuid_toString(text, &kSample), 0);
    EXPECT_EQ(std::u16string(text), u"{12345678-9ABC-DEF0-0123-456789ABCDEF}");
    EXPECT_EQ(tsGuid_toStringNoBrackets(text, &kSample), 0);
    EXPECT_EQ(std::u16string(text), u"12345678-9ABC-DEF0-0123-456789ABCDEF");

    const tsGuid small = {0xAu, 0x1u, 0x0u, {0, 0, 0, 0, 0, 0, 0, 0xF}};
    EXPECT_EQ(tsGuid_toString(text, &small), 0);
    EXPECT_EQ(std::u16string(text), u"{0000000A-0001-0000-0000-00000000000F}");  // leading zeros kept
}

TEST(Guid, ParsesEitherCaseAndRoundTrips)
{
    tsGuid g{};
    EXPECT_EQ(tsGuid_fromString(&g, u"{12345678-9abc-def0-0123-456789abcdef}"), 0);
    EXPECT_EQ(tsGuid_equal(&g, &kSample), 1);
    for (int i = 0; i < 20; ++i) {
        tsGuid fresh{}, back{};
        ASSERT_EQ(tsGuid_generate(&fresh), 0);
        char16_t text[40];
        tsGuid_toString(text, &fresh);
        ASSERT_EQ(tsGuid_fromString(&back, text), 0);
        EXPECT_EQ(tsGuid_equal(&fresh, &back), 1);
    }
}

TEST(Guid, ParserRejectsOtherForms)
{
    const char16_t *rejected[] = {
        u"",
        u"12345678-9ABC-DEF0-0123-456789ABCDEF",     // no braces
        u"{12345678-9ABC-DEF0-0123-456789ABCDEF",    // one short
        u"{12345678-9ABC-DEF0-0123-456789ABCDEF}x",  // one long
        u"{12345678-9ABC-DEF0-0123-456789ABCDEG}",   // not hex
        u"{123456789ABC-DEF0-0123-456789ABCDEF-}",   // dash out of place
        u"{12345678-9ABC-DEF0-012345-6789ABCDEF}",   // data4 split in the wrong place
        u"{12345678 9ABC-DEF0-0123-456789ABCDEF}",
        u"(12345678-9ABC-DEF0-0123-456789ABCDEF)",
    };
    for (const char16_t *text : rejected) {
        tsGuid g = kSample;
        EXPECT_EQ(tsGuid_fromString(&g, text), kGuidFail);
        EXPECT_EQ(tsGuid_equal(&g, &kSample), 1);  // left as it was
    }
    tsGuid g{};
    EXPECT_EQ(tsGuid_fromString(&g, nullptr), kGuidFail);
}

TEST(Guid, GeneratedGuidsAreRandomVersionFour)
{
    tsGuid a{}, b{};
    ASSERT_EQ(tsGuid_generate(&a), 0);
    ASSERT_EQ(tsGuid_generate(&b), 0);
    EXPECT_EQ(tsGuid_equal(&a, &b), 0);
    EXPECT_EQ(tsGuid_isClear(&a), 0);
    for (const tsGuid &g : {a, b}) {
        EXPECT_EQ(g.data3 >> 12, 4);       // version 4
        EXPECT_EQ(g.data4[0] >> 6, 0b10);  // the standard variant
    }
}

TEST(Guid, ByteWiseOrderClearAndCopy)
{
    // data1 = 1 is stored 01 00 00 00 and 0x100 is 00 01 00 00: byte by
    // byte the first is greater, though the number is smaller.
    const tsGuid one = {1u, 0, 0, {0}};
    const tsGuid big = {0x100u, 0, 0, {0}};
    EXPECT_GT(tsGuid_compare(&one, &big), 0);
    EXPECT_LT(tsGuid_compare(&big, &one), 0);
    EXPECT_EQ(tsGuid_compare(&one, &one), 0);

    tsGuid g = kSample;
    EXPECT_EQ(tsGuid_isClear(&g), 0);
    EXPECT_EQ(tsGuid_clear(&g), 0);
    EXPECT_EQ(tsGuid_isClear(&g), 1);
    EXPECT_EQ(tsGuid_clear(nullptr), 0);
    EXPECT_EQ(tsGuid_copy(&g, &kSample), 0);
    EXPECT_EQ(tsGuid_equal(&g, &kSample), 1);
    EXPECT_EQ(tsGuid_copy(nullptr, &kSample), 0);
    EXPECT_EQ(tsGuid_copy(&g, nullptr), 0);
    EXPECT_EQ(tsGuid_equal(&g, &kSample), 1);
}

/* ---- Log file ---- */

TEST(LogFile, LinesWrittenAndFlushedAsTheyCome)
{
    TempDir dir;
    ASSERT_TRUE(dir.ok());
    const std::string path = dir.file("run.log");
    ASSERT_EQ(tsLogFile_open(path.c_str()), 0);
    EXPECT_EQ(tsLogFile_write("strings %d joined", 3), 0);
    // Flushed at once: readable before the close.
    EXPECT_EQ(readFile(path), "strings 3 joined\n");
    EXPECT_EQ(tsLogFile_write("%s at %.2f", "knot", 12.5), 0);
    EXPECT_EQ(tsLogFile_close(), 0);
    EXPECT_EQ(readFile(path), "strings 3 joined\nknot at 12.50\n");

    EXPECT_EQ(tsLogFile_write("lost"), kFail);
    EXPECT_EQ(tsLogFile_close(), kFail);

    // "w+" replaces an earlier file.
    ASSERT_EQ(tsLogFile_open(path.c_str()), 0);
    EXPECT_EQ(tsLogFile_close(), 0);
    EXPECT_EQ(readFile(path), "");
}

TEST(LogFile, SecondOpenAbandonsTheFirstAndAFailedOpenLeavesNone)
{
    TempDir dir;
    ASSERT_TRUE(dir.ok());
    const std::string first = dir.file("first.log"), second = dir.file("second.log");
    ASSERT_EQ(tsLogFile_open(first.c_str()), 0);
    EXPECT_EQ(tsLogFile_write("one"), 0);
    ASSERT_EQ(tsLogFile_open(second.c_str()), 0);
    EXPECT_EQ(tsLogFile_write("two"), 0);
    EXPECT_EQ(tsLogFile_close(), 0);
    EXPECT_EQ(readFile(first), "one\n");
    EXPECT_EQ(readFile(second), "two\n");

    ASSERT_EQ(tsLogFile_open(first.c_str()), 0);
    EXPECT_EQ(tsLogFile_open(dir.file("missing/x.log").c_str()), kFail);
    EXPECT_EQ(tsLogFile_write("nowhere"), kFail);
    EXPECT_EQ(tsLogFile_close(), kFail);
}

/* ---- System ---- */

TEST(System, QueryReportsAnotherPlatformThanTheOldOnes)
{
    EXPECT_EQ(tsUtil_getOperatingSystem(), 2);
    EXPECT_EQ(tsUtil_isOperatingSystemWindowsXP(), 0);
}

TEST(System, ProcessStartsDetachedAndIsNotWaitedFor)
{
    TempDir dir;
    ASSERT_TRUE(dir.ok());
    const std::string marker = dir.file("started.txt");
    const std::string command = "echo started > '" + marker + "'";
    ASSERT_EQ(tsUtil_createWindowsProcess(command.c_str()), 0);
    std::string seen;
    for (int i = 0; i < 200 && seen != "started\n"; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(25));
        seen = readFile(marker);
    }
    EXPECT_EQ(seen, "started\n");
    EXPECT_EQ(tsUtil_createWindowsProcess(nullptr), kFail);
}

/* ---- Values ---- */

TEST(Digits, CountsWithTheSignAsOneMore)
{
    struct Row {
        int32_t value, digits;
    };
    const Row rows[] = {
        {0, 1},
        {9, 1},
        {10, 2},
        {99, 2},
        {-99, 3},
        {999, 3},
        {1000, 4},
        {-1, 2},
        {100000, 6},
        {99999, 5},
        {std::numeric_limits<int32_t>::max(), 10},  // 2147483647
        {std::numeric_limits<int32_t>::min(), 11},  // -2147483648
    };
    for (const Row &r : rows)
        EXPECT_EQ(tsUtil_numberOfDigit(r.value), r.digits) << r.value;
}

TEST(Digits, IntegerDigitsAndDecimalsLeftOfSixteen)
{
    struct Row {
        double value;
        int32_t integer, decimals;
    };
    const Row rows[] = {
        {0.5, 1, 15},      // floor 0
        {99.9, 2, 14},     //
        {123.456, 3, 13},  //
        {1000.0, 4, 12},   //
        {-0.5, 2, 14},     // floor -1: a digit and the sign
        {-99.5, 4, 12},    // floor -100: three digits and the sign
    };
    for (const Row &r : rows) {
        EXPECT_EQ(tsUtil_numberOfMantissaDigit(r.value), r.integer) << r.value;
        EXPECT_EQ(tsUtil_numberOfDecimalsDigit(r.value), r.decimals) << r.value;
    }
}

TEST(Swaps, LongIsThirtyTwoBitAndMemoryBlocksSwapWhole)
{
    int32_t i1 = 7, i2 = -8;
    tsUtil_swapLong(&i1, &i2);
    EXPECT_EQ(i1, -8);
    EXPECT_EQ(i2, 7);
    double d1 = 1.5, d2 = -2.25;
    tsUtil_swapDouble(&d1, &d2);
    EXPECT_EQ(d1, -2.25);
    EXPECT_EQ(d2, 1.5);

    char a[] = "abc", b[] = "xyz";
    tsUtil_swapMem(a, b, 3);
    EXPECT_STREQ(a, "xyz");
    EXPECT_STREQ(b, "abc");
}

TEST(Swaps, BytesOfAShortOnlyForACountOfOne)
{
    struct Row {
        int32_t count;
        uint16_t expected;
    };
    const Row rows[] = {{1, 0x3412}, {2, 0x1234}, {0, 0x1234}, {-1, 0x1234}};
    for (const Row &r : rows) {
        int16_t values[2] = {0x1234, 0x5678};
        tsUtil_swapBytesShortArray(values, 0, r.count);
        EXPECT_EQ(static_cast<uint16_t>(values[0]), r.expected) << r.count;
        EXPECT_EQ(values[1], 0x5678) << r.count;
    }
}

TEST(Values, ExactComparatorOfDoubles)
{
    const double nan = std::nan("");
    struct Row {
        double a, b;
        int32_t order;
    };
    const Row rows[] = {
        {1.0, 2.0, -1}, {2.0, 1.0, 1},          {2.0, 2.0, 0},
        {-0.0, 0.0, 0}, {1.0, 1.0 + 1e-15, -1},                  // exact: no tolerance
        {nan, 1.0, -1}, {1.0, nan, -1},         {nan, nan, -1},  // unordered pairs
    };
    for (const Row &r : rows)
        EXPECT_EQ(tsUtil_compareDoubleByPointer(&r.a, &r.b), r.order) << r.a << " " << r.b;

    double levels[] = {98.2, 97.5, 101.0, 99.75, 97.5};
    std::qsort(levels, 5, sizeof(double),
               [](const void *a, const void *b) -> int { return tsUtil_compareDoubleByPointer(a, b); });
    EXPECT_EQ(std::vector<double>(levels, levels + 5), (std::vector<double>{97.5, 97.5, 98.2, 99.75, 101.0}));
}

TEST(Values, DuplicatesRemovedKeepingFirstOccurrences)
{
    struct Row {
        std::vector<int32_t> in, out;
    };
    const Row rows[] = {
        {{1, 2, 1, 3, 2}, {1, 2, 3}},
        {{5, 5, 5}, {5}},
        {{3, 1, 2}, {3, 1, 2}},
        {{}, {}},
    };
    for (const Row &r : rows) {
        std::vector<int32_t> values = r.in;
        values.push_back(-77);  // a guard behind the count
        auto count = static_cast<int32_t>(r.in.size());
        EXPECT_EQ(tsUtil_removeDuplicatesFromLongArray(values.data(), &count), 0);
        EXPECT_EQ(std::vector<int32_t>(values.begin(), values.begin() + count), r.out);
        EXPECT_EQ(values.back(), -77);
    }
    int32_t count = 1, value = 1;
    EXPECT_EQ(tsUtil_removeDuplicatesFromLongArray(nullptr, &count), kFail);
    EXPECT_EQ(tsUtil_removeDuplicatesFromLongArray(&value, nullptr), kFail);
}

TEST(Values, ReverseArrayOfAnyElementSize)
{
    int32_t odd[] = {1, 2, 3, 4, 5};
    tsUtil_reverseArray(odd, 5, sizeof(int32_t));
    EXPECT_EQ(std::vector<int32_t>(odd, odd + 5), (std::vector<int32_t>{5, 4, 3, 2, 1}));
    int32_t even[] = {1, 2, 3, 4};
    tsUtil_reverseArray(even, 4, sizeof(int32_t));
    EXPECT_EQ(std::vector<int32_t>(even, even + 4), (std::vector<int32_t>{4, 3, 2, 1}));

    // Three-byte elements abc def ghi: whole elements move, bytes keep order.
    char bytes[] = "abcdefghi";
    tsUtil_reverseArray(bytes, 3, 3);
    EXPECT_STREQ(bytes, "ghidefabc");

    // A polyline's vertices, as the kernel reverses them.
    dpoint2d line[] = {{0.0, 1.0}, {2.0, 3.0}, {4.0, 5.0}};
    tsUtil_reverseArray(line, 3, sizeof(dpoint2d));
    EXPECT_EQ(line[0].x, 4.0);
    EXPECT_EQ(line[0].y, 5.0);
    EXPECT_EQ(line[2].x, 0.0);
    EXPECT_EQ(line[2].y, 1.0);

    int32_t one[] = {9};
    tsUtil_reverseArray(one, 1, sizeof(int32_t));
    tsUtil_reverseArray(one, 0, sizeof(int32_t));
    EXPECT_EQ(one[0], 9);
}

}  // namespace
