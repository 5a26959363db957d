// Comparison, copying, searching and editing of 8-bit text: null taken as empty, the "remove" functions that
// only blank, quotes, and replace-all.
#include <cstdint>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/memory.h>
#include <tessar/text.h>

namespace {

constexpr int32_t kFail = 32768;

const auto sign = [](int v) { return (v > 0) - (v < 0); };

TEST(StringCompare, NullIsEmptyAndSensesOfEachCompare)
{
    // Each row: a, b, exact and case-blind order; bytes unsigned ("\xe9" above "z"), a prefix first, case
    // folded to lower case for the blind one ("[" 0x5B above "A", below "a").
    const std::tuple<const char *, const char *, int, int> rows[] = {
        {nullptr, "", 0, 0},    {nullptr, nullptr, 0, 0}, {"a", nullptr, 1, 1},
        {nullptr, "a", -1, -1}, {"abc", "ABC", 1, 0},     {"ab", "abc", -1, -1},
        {"\xe9", "z", 1, 1},    {"Z", "a", -1, 1},        {"[", "A", 1, -1},
    };
    for (const auto &[a, b, exact, caseBlind] : rows) {
        SCOPED_TRACE(std::string(a ? a : "(null)") + " / " + (b ? b : "(null)"));
        EXPECT_EQ(tsString_strcmp(a, b), exact);
        EXPECT_EQ(sign(tsString_mbscmp(a, b)), exact);
        EXPECT_EQ(sign(tsString_strcmpi(a, b)), caseBlind);
        EXPECT_EQ(sign(tsString_mbscmpi(a, b)), caseBlind);
        EXPECT_EQ(tsString_match(a, b), exact == 0 ? 1 : 0);
        EXPECT_EQ(tsString_matchi(a, b), caseBlind == 0 ? 1 : 0);
    }
    // Leading characters after upper-casing: false if either is shorter than n, true for n below 1.
    const std::tuple<const char *, const char *, int32_t, int32_t> leading[] = {
        {"abc", "ABD", 2, 1}, {"abc", "ABD", 3, 0},      {"ab", "abc", 3, 0},  {nullptr, "x", 0, 1},
        {"abc", "abc", 4, 0}, {nullptr, nullptr, -5, 1}, {nullptr, "x", 1, 0},
    };
    for (const auto &[a, b, n, expected] : leading)
        EXPECT_EQ(tsString_strnieql(a, b, n), expected) << (a ? a : "(null)") << " " << n;
    // Against wide text, units compared as unsigned; only 512 units are widened: 600 x's equal 512 of them,
    // not 513.
    const std::string longText(600, 'x');
    const std::u16string wide512(512, u'x'), wide513(513, u'x');
    EXPECT_EQ((std::vector{tsString_cmpMbsToWcs("abc", u"abc"), tsString_cmpMbsToWcs("abc", u"abd"),
                           tsString_cmpMbsToWcs("abd", u"abc"), tsString_cmpMbsToWcs(nullptr, u""),
                           tsString_cmpMbsToWcs("a", nullptr), tsString_cmpMbsToWcs("b", u"\xFFFF"),
                           tsString_cmpMbsToWcs(longText.c_str(), wide512.c_str()),
                           tsString_cmpMbsToWcs(longText.c_str(), wide513.c_str())}),
              (std::vector{0, -1, 1, 0, 1, -1, 0, -1}));
}

TEST(StringCopy, NullGuardsBoundsAndTheHeapCopy)
{
    char dst[16];
    EXPECT_EQ(tsString_strlen(nullptr), 0);
    EXPECT_EQ(tsString_strlen("abc"), 3);
    EXPECT_EQ(tsString_strcpy(dst, "P12"), dst);
    EXPECT_STREQ(dst, "P12");
    for (char *result : {tsString_strcpy(nullptr, "a"), tsString_mbscpy(dst, nullptr),
                         tsString_strncpy(nullptr, "a", 4), tsString_strcat(nullptr, "x"),
                         tsString_safeCopy(nullptr, "a", 4), tsString_safeCopy(dst, nullptr, 4)})
        EXPECT_EQ(result, nullptr);
    // The bounded copy writes no terminator when src fills n, and pads a shorter one.
    std::memset(dst, '#', sizeof dst);
    EXPECT_EQ(tsString_strncpy(dst, "abcdef", 3), dst);
    EXPECT_EQ(std::string(dst, 4), "abc#");
    tsString_strncpy(dst, "ab", 4);
    EXPECT_EQ(std::string(dst, 5), std::string("ab\0\0#", 5));
    EXPECT_EQ(tsString_strcat(dst, nullptr), dst);
    EXPECT_STREQ(tsString_strcat(dst, "cd"), "abcd");
    // The safe copy always terminates; a negative capacity is the room "12345" takes: 6.
    EXPECT_STREQ(tsString_safeCopy(dst, "abcdef", 4), "abc");
    EXPECT_STREQ(tsString_safeCopy(dst, "abcdef", 1), "");
    std::strcpy(dst, "12345");
    EXPECT_STREQ(tsString_safeCopy(dst, "abcdefgh", -1), "abcde");
    // The duplicate's address is cleared before the source is tested.
    char stale = 0, *copy = &stale;
    EXPECT_EQ(tsString_duplicate(nullptr, "a"), kFail);
    EXPECT_EQ(tsString_duplicate(&copy, nullptr), kFail);
    EXPECT_EQ(copy, nullptr);
    ASSERT_EQ(tsString_duplicate(&copy, dst), 0);
    EXPECT_NE(copy, dst);
    EXPECT_STREQ(copy, "abcde");
    EXPECT_EQ(tsMem_free(copy), 0);
}

TEST(StringSearch, CaseInsensitiveFindsPointIntoTheHaystack)
{
    const char *text = "Station 12+500", *mixed = "aAbXB", *road = "Road CL offset";
    // Upper-cased heap copies; "ab" is found at 1, as the first 'a' fails at 'A'/'b'.
    const std::tuple<const char *, const char *, const char *> rows[] = {
        {text, "STATION", text},  {text, "12+5", text + 8}, {mixed, "ab", mixed + 1},
        {mixed, "xb", mixed + 3}, {mixed, "bxbx", nullptr}, {mixed, "", nullptr},
        {"", "a", nullptr},       {nullptr, "a", nullptr},  {mixed, nullptr, nullptr},
    };
    for (const auto &[haystack, needle, found] : rows)
        EXPECT_EQ(tsString_strstri(haystack, needle), found) << (needle ? needle : "(null)");
    // The stack-copy form: absent gives a meaningless value, never null; only the first 128 characters are
    // searched.
    const std::string head120 = std::string(120, 'a') + "XY", head130 = std::string(130, 'a') + "XY";
    EXPECT_EQ(tsString_stristr(road, "cl"), road + 5);
    EXPECT_NE(tsString_stristr(road, "zz"), nullptr);
    EXPECT_EQ(tsString_stristr(head120.c_str(), "xy"), head120.c_str() + 120);
    EXPECT_NE(tsString_stristr(head130.c_str(), "xy"), head130.c_str() + 130);
    EXPECT_EQ((std::vector{tsString_getCharCount("a-b-c", '-'), tsString_getCharCount(nullptr, 'a'),
                           tsString_getCharCount("", 'a')}),
              (std::vector{2, 0, 0}));
}

TEST(StringSearch, WordAroundAFoundText)
{
    // Each row: text, needle, index of the word start (-1: one before the text), count. The word runs back
    // from the needle to white space, a tab included; with none the start is one before the text and the
    // count one more.
    const std::tuple<const char *, const char *, int, int32_t> rows[] = {
        {"copy C:\\data\\road.dat now", "road", 5, 8},
        {"a\tb.x", ".x", 2, 1},
        {"road.dat", ".dat", -1, 5},
        {"road", "road", -1, 1},
    };
    for (const auto &[text, needle, startIndex, count] : rows) {
        char *start = nullptr;
        EXPECT_EQ(tsString_findFilename(text, &start, needle), count) << text;
        // The address one before the text is formed on integers, as the library forms it.
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(start),
                  reinterpret_cast<std::uintptr_t>(text) + startIndex)
            << text;
        EXPECT_EQ(tsString_findFilename(text, nullptr, needle), count);
    }
    const char *text = "a b";
    char *start = const_cast<char *>(text);
    EXPECT_EQ(tsString_findFilename(text, &start, "z"), 0);
    EXPECT_EQ(start, nullptr);
    EXPECT_EQ((std::vector{tsString_findFilename(nullptr, nullptr, "a"),
                           tsString_findFilename("", nullptr, "a"), tsString_findFilename("a", nullptr, "")}),
              (std::vector{0, 0, 0}));
}

// Each row of the editing tables: the text, the result of the edit, the text after.
using Edit = std::tuple<const char *, int32_t, const char *>;

template <class F> void expectEdits(std::initializer_list<Edit> rows, F edit)
{
    for (const auto &[before, result, after] : rows) {
        char s[32];
        std::strcpy(s, before);
        EXPECT_EQ(edit(s), result) << before;
        EXPECT_STREQ(s, after) << before;
    }
}

TEST(StringEdit, RemovingBlankingStrippingAndQuotes)
{
    // The "remove" functions that only blank, and the one that deletes.
    expectEdits({{"a-b", 3, "a b"}}, [](char *s) { return tsString_removeChar(s, '-'); });
    expectEdits({{"a-b", 1, "ab"}, {"--x--", 4, "x"}},
                [](char *s) { return tsString_removeCharacter(s, '-'); });
    expectEdits({{"a\tb\r\n", 5, "a b  "}}, tsString_removeNoPrintable);
    expectEdits({{" a \t b\r\n", 0, "ab"}}, [](char *s) { return tsString_removeBlanks(s), 0; });
    EXPECT_EQ((std::vector{tsString_removeNoPrintable(nullptr), tsString_removeChar(nullptr, 'a')}),
              (std::vector{0, 0}));
    tsString_removeBlanks(nullptr);
    // Blanks, tabs and quotes at the ends: a tab is not a blank; the strips of the end give the length
    // before.
    expectEdits({{"  \tx ", 0, "\tx "}}, [](char *s) { return tsString_stripLeadingBlanks(s), 0; });
    expectEdits({{"x \t  ", 5, "x \t"}}, tsString_stripTrailingBlanks);
    expectEdits({{"x \t\t", 4, "x "}}, tsString_stripTrailingTabs);
    expectEdits({{"\"\"x\"", 2, "x\""}}, tsString_stripLeadingQuotes);
    expectEdits({{"  a b  ", 0, "a b"}, {"\t a \t", 0, "\t a \t"}}, tsString_stripSurroundingWhiteSpace);
    for (const auto &[limit, deleted, left] :
         {std::tuple{0, 0, "x\"\"\""}, {2, 2, "x\""}, {-1, 3, "x"}, {5, 3, "x"}})
        expectEdits({{"x\"\"\"", deleted, left}},
                    [limit = limit](char *s) { return tsString_stripTrailingQuotes(s, limit); });
    // As many trailing quotes go as were opened, so an unopened one stays.
    expectEdits(
        {{"\"abc\"\"", 1, "abc\""}, {"  \"P 12\"  ", 1, "P 12"}, {"abc\"", 0, "abc\""}, {"\"\"", 2, ""}},
        tsString_stripSurroundingQuotes);
    expectEdits({{"Pt 12a", 0, "PT 12A"}}, [](char *s) { return int32_t(tsString_uppercase(s) != s); });
    expectEdits({{"Pt 12a", 0, "pt 12a"}}, [](char *s) { return int32_t(tsString_lowercase(s) != s); });
    expectEdits({{"  a\tb  ", 0, "a b"}}, [](char *s) { return tsString_clean(s, 1, 1, 1); });
    expectEdits({{"  a\tb  ", 0, "a\tb  "}}, [](char *s) { return tsString_clean(s, 0, 1, 0); });
    // The white test blanks the control characters it passes, up to the first other character.
    expectEdits({{"", 1, ""}, {" \t ", 1, "   "}, {" \tx\t", 0, "  x\t"}}, tsString_isStrWhite);
    EXPECT_EQ((std::vector{tsString_stripSurroundingQuotes(nullptr), tsString_isStrWhite(nullptr),
                           tsString_stripSurroundingWhiteSpace(nullptr), tsString_clean(nullptr, 1, 1, 1)}),
              (std::vector{0, 1, kFail, kFail}));
    EXPECT_EQ(tsString_uppercase(nullptr), nullptr);
}

TEST(StringReplace, InsertAndReplaceAtAPosition)
{
    for (const auto &[text, index, result] :
         {std::tuple{"cd", 2, "abcdef"}, {"cd", 0, "cdabef"}, {"cd", 4, "abefcd"}, {"", 1, "abef"}})
        expectEdits({{"abef", 0, result}},
                    [text = text, index = index](char *s) { return tsString_insertString(s, text, index); });
    // Past the end nothing moves; the text lands beyond the terminator.
    char s[300] = "ab";
    EXPECT_EQ(tsString_insertString(s, "X", 4), 0);
    EXPECT_STREQ(s, "ab");
    EXPECT_EQ(s[4], 'X');
    EXPECT_EQ((std::vector{tsString_insertString(nullptr, "X", 0), tsString_insertString(s, nullptr, 0),
                           tsString_insertString(s, "X", -1)}),
              (std::vector{kFail, kFail, kFail}));
    // Count characters at a position replaced; the length from the position plus the count may reach 256, not
    // more.
    std::strcpy(s, "Sta 12+500");
    EXPECT_EQ(tsString_replaceSubstring(s, s + 4, 2, "13"), 0);
    EXPECT_STREQ(s, "Sta 13+500");
    EXPECT_EQ(tsString_replaceSubstring(s, s + 4, 2, "1300"), 0);
    EXPECT_STREQ(s, "Sta 1300+500");
    EXPECT_EQ(tsString_replaceSubstring(s, s + 4, 0, "x"), kFail);
    EXPECT_EQ(tsString_replaceSubstring(nullptr, s + 4, 2, "x"), kFail);
    const std::string text(250, 'a');
    std::strcpy(s, text.c_str());
    EXPECT_EQ(tsString_replaceSubstring(s, s, 7, "b"), kFail);
    EXPECT_STREQ(s, text.c_str());
    EXPECT_EQ(tsString_replaceSubstring(s, s, 6, "b"), 0);
    EXPECT_EQ(std::string(s), "b" + std::string(244, 'a'));
}

TEST(StringReplace, ReplaceAllRestartsAtTheBeginning)
{
    // Each row: text, find, replacement, text after. "aab" -> "ab" -> "b": the restart finds the new "ab".
    const std::tuple<const char *, const char *, const char *, const char *> exact[] = {
        {"a,b,c", ",", ";", "a;b;c"}, {"a, b, c", ", ", ",", "a,b,c"}, {"a;b", ";", " - ", "a - b"},
        {"xaay", "a", "", "xy"},      {"abc", "z", "y", "abc"},        {"aab", "ab", "b", "b"},
    };
    const std::tuple<const char *, const char *, const char *, const char *> caseBlind[] = {
        {"Road road ROAD", "road", "Rd", "Rd Rd Rd"},
        {"aAB", "ab", "b", "b"},
        {"Road", "ROADS", "x", "Road"}};
    for (const auto &[text, find, replacement, after] : exact)
        expectEdits({{text, 0, after}}, [&, find = find, replacement = replacement](char *s) {
            return tsString_replaceAllSubstrings(s, find, replacement);
        });
    for (const auto &[text, find, replacement, after] : caseBlind)
        expectEdits({{text, 0, after}}, [&, find = find, replacement = replacement](char *s) {
            return tsString_replaceAllSubstringsi(s, find, replacement);
        });
    char s[8] = "abc", empty[1] = "";
    for (auto *replaceAll : {tsString_replaceAllSubstrings, tsString_replaceAllSubstringsi})
        for (int32_t status :
             {replaceAll(nullptr, "a", "b"), replaceAll(s, nullptr, "b"), replaceAll(s, "a", nullptr),
              replaceAll(empty, "a", "b"), replaceAll(s, "", "b")})
            EXPECT_EQ(status, kFail);
    EXPECT_STREQ(s, "abc");
}

}  // namespace
