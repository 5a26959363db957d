// Comparison, copying, searching and editing of 8-bit text: null taken as
// empty, the "remove" functions that only blank, quotes, insertion and the
// restarting replace-all. Expected values are worked by hand in the rows.
#include <cstdint>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include <tessar/memory.h>
#include <tessar/text.h>

namespace {

constexpr int32_t kFail = 32768;

int sign(int v)
{
    return (v > 0) - (v < 0);
}

// The address one before p, formed on integers as the library forms it.
const char *oneBefore(const char *p)
{
    return reinterpret_cast<const char *>(reinterpret_cast<std::uintptr_t>(p) - 1);
}

TEST(StringCompare, NullIsEmptyAndSensesOfEachCompare)
{
    struct Row {
        const char *a, *b;
        int exact, caseBlind;
    };
    const Row rows[] = {
        {nullptr, "", 0, 0},    {nullptr, nullptr, 0, 0}, {"a", nullptr, 1, 1},
        {nullptr, "a", -1, -1}, {"abc", "ABC", 1, 0},  // 'a' 0x61 above 'A' 0x41; equal once folded
        {"ab", "abc", -1, -1},                         // a prefix sorts first
        {"\xe9", "z", 1, 1},                           // 0xE9 is above 'z' as an unsigned byte
        {"Z", "a", -1, 1},                             // 'Z' 0x5A below 'a'; folded 'z' above 'a'
        {"[", "A", 1, -1},                             // '[' 0x5B above 'A', below the folded 'a' 0x61
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(std::string(r.a ? r.a : "(null)") + " / " + (r.b ? r.b : "(null)"));
        EXPECT_EQ(tsString_strcmp(r.a, r.b), r.exact);
        EXPECT_EQ(sign(tsString_mbscmp(r.a, r.b)), r.exact);
        EXPECT_EQ(sign(tsString_strcmpi(r.a, r.b)), r.caseBlind);
        EXPECT_EQ(sign(tsString_mbscmpi(r.a, r.b)), r.caseBlind);
        EXPECT_EQ(tsString_match(r.a, r.b), r.exact == 0 ? 1 : 0);
        EXPECT_EQ(tsString_matchi(r.a, r.b), r.caseBlind == 0 ? 1 : 0);
    }
}

TEST(StringCompare, LeadingCharactersAfterUpperCasing)
{
    struct Row {
        const char *a, *b;
        int32_t n, expected;
    };
    const Row rows[] = {
        {"abc", "ABD", 2, 1}, {"abc", "ABD", 3, 0},      {"ab", "abc", 3, 0},  // a is shorter than n
        {nullptr, "x", 0, 1}, {nullptr, nullptr, -5, 1},                       // below 1: always true
        {nullptr, "x", 1, 0}, {"abc", "abc", 4, 0},                            // both shorter than n
    };
    for (const Row &r : rows)
        EXPECT_EQ(tsString_strnieql(r.a, r.b, r.n), r.expected) << r.a << " " << r.n;
}

TEST(StringCompare, EightBitAgainstWideText)
{
    EXPECT_EQ(tsString_cmpMbsToWcs("abc", u"abc"), 0);
    EXPECT_EQ(tsString_cmpMbsToWcs("abc", u"abd"), -1);
    EXPECT_EQ(tsString_cmpMbsToWcs("abd", u"abc"), 1);
    EXPECT_EQ(tsString_cmpMbsToWcs(nullptr, u""), 0);
    EXPECT_EQ(tsString_cmpMbsToWcs("a", nullptr), 1);
    EXPECT_EQ(tsString_cmpMbsToWcs("b", u"\xFFFF"), -1);  // units compare as unsigned
    // Only 512 units are widened: 600 x's equal 512 of them, not 513.
    const std::string longText(600, 'x');
    const std::u16string wide512(512, u'x'), wide513(513, u'x');
    EXPECT_EQ(tsString_cmpMbsToWcs(longText.c_str(), wide512.c_str()), 0);
    EXPECT_EQ(tsString_cmpMbsToWcs(longText.c_str(), wide513.c_str()), -1);
}

TEST(StringCopy, NullGuardsAndBounds)
{
    char dst[16];
    EXPECT_EQ(tsString_strlen(nullptr), 0);
    EXPECT_EQ(tsString_strlen("abc"), 3);
    EXPECT_EQ(tsString_strcpy(nullptr, "a"), nullptr);
    EXPECT_EQ(tsString_mbscpy(dst, nullptr), nullptr);
    EXPECT_EQ(tsString_strcpy(dst, "P12"), dst);
    EXPECT_STREQ(dst, "P12");

    // The bounded copy writes no terminator when src fills n, and pads a shorter one.
    std::memset(dst, '#', sizeof dst);
    EXPECT_EQ(tsString_strncpy(dst, "abcdef", 3), dst);
    EXPECT_EQ(std::string(dst, 4), "abc#");
    std::memset(dst, '#', sizeof dst);
    tsString_strncpy(dst, "ab", 4);
    EXPECT_EQ(std::string(dst, 5), std::string("ab\0\0#", 5));
    EXPECT_EQ(tsString_strncpy(nullptr, "ab", 4), nullptr);

    std::strcpy(dst, "ab");
    EXPECT_EQ(tsString_strcat(nullptr, "x"), nullptr);
    EXPECT_EQ(tsString_strcat(dst, nullptr), dst);
    EXPECT_STREQ(tsString_strcat(dst, "cd"), "abcd");
}

TEST(StringCopy, SafeCopyAlwaysTerminates)
{
    char dst[16];
    EXPECT_STREQ(tsString_safeCopy(dst, "abcdef", 4), "abc");
    EXPECT_STREQ(tsString_safeCopy(dst, "abcdef", 1), "");
    std::strcpy(dst, "12345");  // a negative capacity is the room "12345" takes: 6
    EXPECT_STREQ(tsString_safeCopy(dst, "abcdefgh", -1), "abcde");
    EXPECT_EQ(tsString_safeCopy(nullptr, "a", 4), nullptr);
    EXPECT_EQ(tsString_safeCopy(dst, nullptr, 4), nullptr);
}

TEST(StringCopy, DuplicateOnTheLibraryHeap)
{
    EXPECT_EQ(tsString_duplicate(nullptr, "a"), kFail);
    char stale = 0;
    char *copy = &stale;
    EXPECT_EQ(tsString_duplicate(&copy, nullptr), kFail);
    EXPECT_EQ(copy, nullptr);  // cleared before the source is tested
    const char *src = "BM 12";
    ASSERT_EQ(tsString_duplicate(&copy, src), 0);
    EXPECT_NE(copy, src);
    EXPECT_STREQ(copy, src);
    EXPECT_EQ(tsMem_free(copy), 0);
}

TEST(StringSearch, CaseInsensitiveFindsPointIntoHaystack)
{
    const char *text = "Station 12+500";
    EXPECT_EQ(tsString_strstri(text, "STATION"), text);
    EXPECT_EQ(tsString_strstri(text, "12+5"), text + 8);
    const char *mixed = "aAbXB";
    EXPECT_EQ(tsString_strstri(mixed, "ab"), mixed + 1);  // the first 'a' fails at 'A'/'b'
    EXPECT_EQ(tsString_strstri(mixed, "xb"), mixed + 3);
    EXPECT_EQ(tsString_strstri(mixed, "bxbx"), nullptr);
    EXPECT_EQ(tsString_strstri(mixed, ""), nullptr);
    EXPECT_EQ(tsString_strstri("", "a"), nullptr);
    EXPECT_EQ(tsString_strstri(nullptr, "a"), nullptr);
    EXPECT_EQ(tsString_strstri(mixed, nullptr), nullptr);

    const char *road = "Road CL offset";
    EXPECT_EQ(tsString_stristr(road, "cl"), road + 5);
    EXPECT_NE(tsString_stristr(road, "zz"), nullptr);  // absent: meaningless, never null
    // Only the first 128 characters are searched.
    const std::string head120 = std::string(120, 'a') + "XY", head130 = std::string(130, 'a') + "XY";
    EXPECT_EQ(tsString_stristr(head120.c_str(), "xy"), head120.c_str() + 120);
    EXPECT_NE(tsString_stristr(head130.c_str(), "xy"), head130.c_str() + 130);
}

TEST(StringSearch, WordAroundAFoundText)
{
    struct Row {
        const char *text, *needle;
        int startIndex;  // -1: one before the text
        int32_t count;
    };
    const Row rows[] = {
        {"copy C:\\data\\road.dat now", "road", 5, 8},  // word "C:\data\" after the blank at 4
        {"a\tb.x", ".x", 2, 1},                         // a tab is white space
        {"road.dat", ".dat", -1, 5},                    // no white space: start one before, count + 1
        {"road", "road", -1, 1},                        // found at the very start
    };
    for (const Row &r : rows) {
        char *start = nullptr;
        EXPECT_EQ(tsString_findFilename(r.text, &start, r.needle), r.count) << r.text;
        EXPECT_EQ(start, r.startIndex < 0 ? oneBefore(r.text) : r.text + r.startIndex) << r.text;
        EXPECT_EQ(tsString_findFilename(r.text, nullptr, r.needle), r.count);
    }
    const char *text = "a b";
    char *start = const_cast<char *>(text);
    EXPECT_EQ(tsString_findFilename(text, &start, "z"), 0);
    EXPECT_EQ(start, nullptr);
    EXPECT_EQ(tsString_findFilename(nullptr, nullptr, "a"), 0);
    EXPECT_EQ(tsString_findFilename("", nullptr, "a"), 0);
    EXPECT_EQ(tsString_findFilename("a", nullptr, ""), 0);

    EXPECT_EQ(tsString_getCharCount("a-b-c", '-'), 2);
    EXPECT_EQ(tsString_getCharCount(nullptr, 'a'), 0);
    EXPECT_EQ(tsString_getCharCount("", 'a'), 0);
}

TEST(StringEdit, RemoveFunctionsThatOnlyBlank)
{
    char s[32];
    std::strcpy(s, "a-b");
    EXPECT_EQ(tsString_removeChar(s, '-'), 3);
    EXPECT_STREQ(s, "a b");
    std::strcpy(s, "a-b");
    EXPECT_EQ(tsString_removeCharacter(s, '-'), 1);
    EXPECT_STREQ(s, "ab");
    std::strcpy(s, "--x--");
    EXPECT_EQ(tsString_removeCharacter(s, '-'), 4);
    EXPECT_STREQ(s, "x");
    std::strcpy(s, "a\tb\r\n");
    EXPECT_EQ(tsString_removeNoPrintable(s), 5);
    EXPECT_STREQ(s, "a b  ");
    EXPECT_EQ(tsString_removeNoPrintable(nullptr), 0);
    EXPECT_EQ(tsString_removeChar(nullptr, 'a'), 0);
    std::strcpy(s, " a \t b\r\n");
    tsString_removeBlanks(s);
    EXPECT_STREQ(s, "ab");
    tsString_removeBlanks(nullptr);
    std::strcpy(s, "Pt 12a");
    EXPECT_STREQ(tsString_uppercase(s), "PT 12A");
    EXPECT_STREQ(tsString_lowercase(s), "pt 12a");
    EXPECT_EQ(tsString_uppercase(nullptr), nullptr);
}

TEST(StringEdit, BlanksTabsAndQuotesAtTheEnds)
{
    char s[32];
    std::strcpy(s, "  \tx ");
    tsString_stripLeadingBlanks(s);
    EXPECT_STREQ(s, "\tx ");  // a tab is not a blank
    std::strcpy(s, "x \t  ");
    EXPECT_EQ(tsString_stripTrailingBlanks(s), 5);
    EXPECT_STREQ(s, "x \t");
    std::strcpy(s, "x \t\t");
    EXPECT_EQ(tsString_stripTrailingTabs(s), 4);
    EXPECT_STREQ(s, "x ");
    std::strcpy(s, "\"\"x\"");
    EXPECT_EQ(tsString_stripLeadingQuotes(s), 2);
    EXPECT_STREQ(s, "x\"");

    struct Row {
        int32_t limit, deleted;
        const char *left;
    };
    for (const Row r : {Row{0, 0, "x\"\"\""}, Row{2, 2, "x\""}, Row{-1, 3, "x"}, Row{5, 3, "x"}}) {
        std::strcpy(s, "x\"\"\"");
        EXPECT_EQ(tsString_stripTrailingQuotes(s, r.limit), r.deleted) << r.limit;
        EXPECT_STREQ(s, r.left) << r.limit;
    }

    std::strcpy(s, "  a b  ");
    EXPECT_EQ(tsString_stripSurroundingWhiteSpace(s), 0);
    EXPECT_STREQ(s, "a b");
    std::strcpy(s, "\t a \t");
    tsString_stripSurroundingWhiteSpace(s);
    EXPECT_STREQ(s, "\t a \t");
    EXPECT_EQ(tsString_stripSurroundingWhiteSpace(nullptr), kFail);
}

TEST(StringEdit, SurroundingQuotesKeepAnUnopenedOne)
{
    struct Row {
        const char *text, *left;
        int32_t opened;
    };
    const Row rows[] = {
        {"\"abc\"\"", "abc\"", 1},  // one opened, two closing: one stays
        {"  \"P 12\"  ", "P 12", 1},
        {"abc\"", "abc\"", 0},
        {"\"\"", "", 2},
    };
    for (const Row &r : rows) {
        char s[32];
        std::strcpy(s, r.text);
        EXPECT_EQ(tsString_stripSurroundingQuotes(s), r.opened) << r.text;
        EXPECT_STREQ(s, r.left);
    }
    EXPECT_EQ(tsString_stripSurroundingQuotes(nullptr), 0);
}

TEST(StringEdit, CleanAndWhiteTest)
{
    char s[32];
    std::strcpy(s, "  a\tb  ");
    EXPECT_EQ(tsString_clean(s, 1, 1, 1), 0);
    EXPECT_STREQ(s, "a b");
    std::strcpy(s, "  a\tb  ");
    tsString_clean(s, 0, 1, 0);
    EXPECT_STREQ(s, "a\tb  ");
    EXPECT_EQ(tsString_clean(nullptr, 1, 1, 1), kFail);

    EXPECT_EQ(tsString_isStrWhite(nullptr), 1);
    std::strcpy(s, "");
    EXPECT_EQ(tsString_isStrWhite(s), 1);
    std::strcpy(s, " \t ");
    EXPECT_EQ(tsString_isStrWhite(s), 1);
    EXPECT_STREQ(s, "   ");  // the tab passed over became a blank
    std::strcpy(s, " \tx\t");
    EXPECT_EQ(tsString_isStrWhite(s), 0);
    EXPECT_STREQ(s, "  x\t");  // the tab after the first non-blank is untouched
}

TEST(StringReplace, InsertMovesTheTail)
{
    struct Row {
        const char *s, *text;
        int32_t index;
        const char *result;
    };
    const Row rows[] = {
        {"abef", "cd", 2, "abcdef"},
        {"abef", "cd", 0, "cdabef"},
        {"abef", "cd", 4, "abefcd"},
        {"abef", "", 1, "abef"},
    };
    for (const Row &r : rows) {
        char s[16];
        std::strcpy(s, r.s);
        EXPECT_EQ(tsString_insertString(s, r.text, r.index), 0);
        EXPECT_STREQ(s, r.result);
    }
    // Past the end nothing moves; the text lands beyond the terminator.
    char s[16] = "ab";
    EXPECT_EQ(tsString_insertString(s, "X", 4), 0);
    EXPECT_STREQ(s, "ab");
    EXPECT_EQ(s[4], 'X');
    EXPECT_EQ(tsString_insertString(nullptr, "X", 0), kFail);
    EXPECT_EQ(tsString_insertString(s, nullptr, 0), kFail);
    EXPECT_EQ(tsString_insertString(s, "X", -1), kFail);
}

TEST(StringReplace, ReplaceCountCharactersAtAPosition)
{
    char s[300] = "Sta 12+500";
    EXPECT_EQ(tsString_replaceSubstring(s, s + 4, 2, "13"), 0);
    EXPECT_STREQ(s, "Sta 13+500");
    EXPECT_EQ(tsString_replaceSubstring(s, s + 4, 2, "1300"), 0);
    EXPECT_STREQ(s, "Sta 1300+500");
    EXPECT_EQ(tsString_replaceSubstring(s, s + 4, 0, "x"), kFail);
    EXPECT_EQ(tsString_replaceSubstring(nullptr, s + 4, 2, "x"), kFail);
    // The length from position plus count may reach 256, not more.
    std::string text(250, 'a');
    std::strcpy(s, text.c_str());
    EXPECT_EQ(tsString_replaceSubstring(s, s, 7, "b"), kFail);
    EXPECT_STREQ(s, text.c_str());
    EXPECT_EQ(tsString_replaceSubstring(s, s, 6, "b"), 0);
    EXPECT_EQ(std::string(s), "b" + std::string(244, 'a'));
}

TEST(StringReplace, ReplaceAllRestartsAtTheBeginning)
{
    struct Row {
        const char *s, *find, *replacement, *result;
    };
    const Row exact[] = {
        {"a,b,c", ",", ";", "a;b;c"},
        {"a, b, c", ", ", ",", "a,b,c"},
        {"a;b", ";", " - ", "a - b"},
        {"xaay", "a", "", "xy"},
        {"abc", "z", "y", "abc"},
        {"aab", "ab", "b", "b"},  // "aab" -> "ab" -> "b": the restart finds the new "ab"
    };
    for (const Row &r : exact) {
        char s[32];
        std::strcpy(s, r.s);
        EXPECT_EQ(tsString_replaceAllSubstrings(s, r.find, r.replacement), 0) << r.s;
        EXPECT_STREQ(s, r.result) << r.s;
    }
    const Row caseBlind[] = {
        {"Road road ROAD", "road", "Rd", "Rd Rd Rd"},
        {"aAB", "ab", "b", "b"},
        {"Road", "ROADS", "x", "Road"},
    };
    for (const Row &r : caseBlind) {
        char s[32];
        std::strcpy(s, r.s);
        EXPECT_EQ(tsString_replaceAllSubstringsi(s, r.find, r.replacement), 0) << r.s;
        EXPECT_STREQ(s, r.result) << r.s;
    }
    char s[8] = "abc";
    char empty[1] = "";
    for (auto *replaceAll : {tsString_replaceAllSubstrings, tsString_replaceAllSubstringsi}) {
        EXPECT_EQ(replaceAll(nullptr, "a", "b"), kFail);
        EXPECT_EQ(replaceAll(s, nullptr, "b"), kFail);
        EXPECT_EQ(replaceAll(s, "a", nullptr), kFail);
        EXPECT_EQ(replaceAll(empty, "a", "b"), kFail);
        EXPECT_EQ(replaceAll(s, "", "b"), kFail);
    }
    EXPECT_STREQ(s, "abc");
}

}  // namespace
