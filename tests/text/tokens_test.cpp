// Tokens, delimited lists and comma-separated string arrays. Expected token sets and offsets are traced by
// hand over the texts in the rows.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/memory.h>
#include <tessar/tokens.h>

namespace {

constexpr int32_t kFail = 32768;
using Strings = std::vector<std::string>;
using Ints = std::vector<int32_t>;

const auto elements = [](char **array, int32_t count) {
    return count > 0 ? Strings(array, array + count) : Strings{};
};

// A non-null value that a call must overwrite.
template <class T> T *const stale = reinterpret_cast<T *>(std::uintptr_t{8});

TEST(ParseTokens, WalksByOffsetBehindEachTerminator)
{
    // "  ab,,c d": "ab" at 2, its terminator at 4, so the walk goes on at 5; "c" at 6, terminator at 7, next
    // 8; "d" at 8 ends the text, next 10.
    char text[] = "  ab,,c d", bad[] = "a,b";
    int32_t offset = 0;
    const std::pair<const char *, int32_t> steps[] = {{"ab", 5}, {"c", 8}, {"d", 10}};
    for (const auto &[token, next] : steps) {
        EXPECT_STREQ(tsString_parseTokens(text, &offset, 9, ", "), token);
        EXPECT_EQ(offset, next);
    }
    EXPECT_EQ(tsString_parseTokens(text, &offset, 9, ", "), nullptr);
    EXPECT_EQ(offset, 10);
    // Null arguments, a length below 1 or an offset at the length: null, and nothing tokenised.
    int32_t three = 3;
    for (char *token :
         {tsString_parseTokens(nullptr, &offset, 3, ","), tsString_parseTokens(bad, nullptr, 3, ","),
          tsString_parseTokens(bad, &offset, 3, nullptr), tsString_parseTokens(bad, &offset, 0, ","),
          tsString_parseTokens(bad, &three, 3, ",")})
        EXPECT_EQ(token, nullptr);
    EXPECT_STREQ(bad, "a,b");
    // The walk restarts from its offset, so it survives other tokenising, which shares the C library's hidden
    // position, between its calls.
    char walked[] = "north,east,height", other[] = "x y z", list[] = "p,q,r";
    const auto length = static_cast<int32_t>(std::strlen(walked));
    offset = 0;
    EXPECT_STREQ(tsString_parseTokens(walked, &offset, length, ","), "north");
    EXPECT_STREQ(std::strtok(other, " "), "x");
    EXPECT_STREQ(std::strtok(nullptr, " "), "y");
    EXPECT_EQ(tsString_removeToken(list, ",", "q"), 0);
    EXPECT_STREQ(tsString_parseTokens(walked, &offset, length, ","), "east");
    EXPECT_STREQ(tsString_parseTokens(walked, &offset, length, ","), "height");
    EXPECT_EQ(tsString_parseTokens(walked, &offset, length, ","), nullptr);
}

TEST(ParseTokenGroups, TokensGroupsAndTheirIntroducers)
{
    // Each row: text, delimiters, groups, tokens, introducers ('0': none), flags. Groups nest on their
    // opening character, equal characters do not; blanks are a token, an empty field none; without delimiters
    // text outside groups is ignored; an open group runs to the end; a closing character met first opens a
    // group closed by the end of the group string, that is never.
    const std::tuple<const char *, const char *, const char *, Strings, const char *, Ints> rows[] = {
        {"a,(b,c),d", ",", "()", {"a", "b,c", "d"}, "0(,", {0, 1, 0}},
        {"x(a(b)c)y", ",", "()", {"x", "a(b)c", "y"}, "0(0", {0, 1, 0}},
        {"\"a,b\",c,\"d\"", ",", "\"\"", {"a,b", "c", "d"}, "\",\"", {1, 0, 1}},
        {"a, ,,b", ",", nullptr, {"a", " ", "b"}, "0,,", {0, 0, 0}},
        {"x(a)y[b]z", nullptr, "()[]", {"a", "b"}, "([", {1, 1}},
        {"k(ab", ",", "()", {"k", "ab"}, "0(", {0, 1}},
        {"a)b,c", ",", "()", {"a", "b,c"}, "0)", {0, 1}},
        {"", ",", "()", {}, "", {}},
    };
    for (const auto &[input, delimiters, groups, tokens, introducers, flags] : rows) {
        std::string text = input;
        std::vector<char *> found(text.size() + 1);
        std::string seen(text.size() + 1, '?');
        Ints groupFlags(text.size() + 1);
        int32_t count = -7;
        EXPECT_EQ(tsString_parseTokenGroups(text.data(), delimiters, groups, &count, found.data(),
                                            seen.data(), groupFlags.data()),
                  0);
        EXPECT_EQ(Strings(found.begin(), found.begin() + count), tokens) << input;
        std::replace(seen.begin(), seen.end(), '\0', '0');
        EXPECT_EQ(seen.substr(0, size_t(count)), introducers) << input;
        EXPECT_EQ(Ints(groupFlags.begin(), groupFlags.begin() + count), flags) << input;
    }
    // Both sets null: -1; a group character among the delimiters: -2, tested before an odd number of group
    // characters: -3.
    const std::tuple<const char *, const char *, int32_t> bad[] = {
        {nullptr, nullptr, -1}, {",", ",;", -2}, {";", "(;)", -2}, {",", "(", -3}, {nullptr, "()[", -3}};
    for (const auto &[delimiters, groups, status] : bad) {
        char text[] = "a,b", *tokens[4], introducers[4];
        int32_t count = 0, flags[4];
        EXPECT_EQ(tsString_parseTokenGroups(text, delimiters, groups, &count, tokens, introducers, flags),
                  status);
        EXPECT_STREQ(text, "a,b");
    }
}

TEST(GetTokenIndex, FirstPlainTokenContainingTheNeedle)
{
    char a[] = "alpha", b[] = "beta", c[] = "gamma";
    char *tokens[] = {a, b, c};
    const int32_t flags[] = {0, 1, 0};
    // "et" only lies in the group.
    const std::tuple<const char *, int32_t, int32_t> rows[] = {
        {"a", 0, 0}, {"mm", 0, 2}, {"et", kFail, -1}, {"delta", kFail, -1}};
    for (const auto &[needle, status, found] : rows) {
        int32_t index = 99;
        EXPECT_EQ(tsString_getTokenIndex(needle, &index, 3, tokens, flags), status) << needle;
        EXPECT_EQ(index, found) << needle;
    }
    int32_t index = 99;  // argument failures leave the index alone
    EXPECT_EQ((Ints{tsString_getTokenIndex("a", &index, 0, tokens, flags),
                    tsString_getTokenIndex(nullptr, &index, 3, tokens, flags),
                    tsString_getTokenIndex("a", &index, 3, nullptr, flags),
                    tsString_getTokenIndex("mm", nullptr, 3, tokens, flags)}),
              (Ints{kFail, kFail, kFail, 0}));
    EXPECT_EQ(index, 99);
}

TEST(AppendToken, EachPieceOnlyIfLengthStaysBelowCapacity)
{
    // Each row: buffer, capacity, separator, token, status, buffer after; "a" + "," + "b" in 3: the separator
    // (1 + 1 < 3) fits, the token (2 + 1) does not.
    const std::tuple<const char *, int32_t, const char *, const char *, int32_t, const char *> rows[] = {
        {"", 10, ",", "a", 0, ",a"},        {"a", 10, ",", "b", 0, "a,b"},
        {"a", 10, nullptr, "b", 0, "ab"},   {"ab", 4, nullptr, "c", 0, "abc"},
        {"a", 3, ",", "b", kFail, "a,"},    {"a", 2, ",", "b", kFail, "a"},
        {"a", 10, ",", "", kFail, "a"},     {"a", 0, ",", "b", kFail, "a"},
        {"a", 8, ",", nullptr, kFail, "a"},
    };
    for (const auto &[before, capacity, separator, token, status, after] : rows) {
        char buffer[16];
        std::strcpy(buffer, before);
        EXPECT_EQ(tsString_appendToken(buffer, capacity, separator, token), status)
            << before << " " << capacity;
        EXPECT_STREQ(buffer, after) << before << " " << capacity;
    }
    EXPECT_EQ(tsString_appendToken(nullptr, 10, ",", "a"), kFail);
}

TEST(RemoveToken, ExactTokenWithItsDelimiter)
{
    // Each row: list, delimiters, token, status, list after. Case counts; the first exact match goes; the
    // last token drops what follows it too.
    const std::tuple<const char *, const char *, const char *, int32_t, const char *> rows[] = {
        {"a,b,c", ",", "b", 0, "a,c"},       {"a,b,c", ",", "a", 0, "b,c"},
        {"a,b,c", ",", "c", 0, "a,b"},       {"a,b,c", ",", "d", kFail, "a,b,c"},
        {"a,b,c", ",", "B", kFail, "a,b,c"}, {"a", ",", "a", 0, ""},
        {"a,b,", ",", "b", 0, "a"},          {"b,a,b", ",", "b", 0, "a,b"},
        {"a, b, c", ", ", "b", 0, "a, c"},   {"a, b, c", ", ", "a", 0, "b, c"},
        {"a,b", ",", "", kFail, "a,b"},      {"a,b", ",", nullptr, kFail, "a,b"},
    };
    for (const auto &[input, delimiters, token, status, after] : rows) {
        char list[16];
        std::strcpy(list, input);
        EXPECT_EQ(tsString_removeToken(list, delimiters, token), status) << input << " - " << token;
        EXPECT_STREQ(list, after) << input << " - " << token;
    }
    EXPECT_EQ(tsString_removeToken(nullptr, ",", "a"), kFail);
}

TEST(ParseOutToken, DropsCleanedTokensEqualApartFromCaseAndJoinsWithCommas)
{
    // Each row: list, delimiters, token, list after, found. The list is rebuilt cleaned and with commas even
    // when nothing is dropped; with no tokens it is left alone.
    const std::tuple<const char *, const char *, const char *, const char *, int32_t> rows[] = {
        {"a, B ,c", ",", "b", "a,c", 1}, {"x; y", ";", "z", "x,y", 0}, {"b;B", ";", "b", "", 1},
        {"", ",", "a", "", 0},           {";;;", ";", "a", ";;;", 0},
    };
    for (const auto &[input, delimiters, token, after, found] : rows) {
        char list[16];
        std::strcpy(list, input);
        int32_t flag = -1;
        EXPECT_EQ(tsString_parseOutToken(list, &flag, delimiters, token), 0) << input;
        EXPECT_STREQ(list, after) << input;
        EXPECT_EQ(flag, found) << input;
    }
    char list[] = "a";
    EXPECT_EQ(tsString_parseOutToken(list, nullptr, ",", "a"), kFail);
    EXPECT_STREQ(list, "a");
}

TEST(ExtractFirstString, FirstTokenAndTheRestFromItsDelimiter)
{
    const std::tuple<const char *, const char *, int32_t, const char *, const char *> rows[] = {
        {" ab, cd", ", ", 0, "ab", ", cd"}, {"abc", ",", 0, "abc", ""}, {",,x,", ",", 0, "x", ","},
        {",,,", ",", kFail, "?", "?"},      {"", ",", kFail, "?", "?"},
    };
    for (const auto &[text, delimiters, status, first, rest] : rows) {
        char head[16] = "?", tail[16] = "?";
        EXPECT_EQ(tsString_extractFirstStringBetweenDelimiters(text, delimiters, head, tail), status) << text;
        EXPECT_STREQ(head, first) << text;
        EXPECT_STREQ(tail, rest) << text;
    }
    char first[8], rest[8];
    EXPECT_EQ((Ints{tsString_extractFirstStringBetweenDelimiters(nullptr, ",", first, rest),
                    tsString_extractFirstStringBetweenDelimiters("a", nullptr, first, rest),
                    tsString_extractFirstStringBetweenDelimiters("a", ",", nullptr, rest),
                    tsString_extractFirstStringBetweenDelimiters("a", ",", first, nullptr)}),
              Ints(4, kFail));
}

TEST(ReplaceStringForKeyword, WholeTokensApartFromCaseKeepingDelimiters)
{
    // Each row: text, delimiters, keyword, replacement, output, count; part of a token is no hit.
    const std::tuple<const char *, const char *, const char *, const char *, const char *, int32_t> rows[] = {
        {"x + ab + AB", "+ ", "ab", "q", "x + q + q", 2},
        {"abc + ab", "+ ", "ab", "q", "abc + q", 1},
        {"ab ab ab", " ", "AB", "long", "long long long", 3},
        {"x*y", "*", "z", "w", "x*y", 0},
        {"", "*", "z", "w", "", 0},
    };
    for (const auto &[input, delimiters, keyword, replacement, output, count] : rows) {
        char text[32], result[64] = "?";
        std::strcpy(text, input);
        int32_t replaced = -1;
        EXPECT_EQ(tsString_replaceStringForKeyword(text, delimiters, keyword, replacement, result, &replaced),
                  0);
        EXPECT_STREQ(result, output) << input;
        EXPECT_EQ(replaced, count) << input;
        EXPECT_STREQ(text, input);  // cut for a moment, then restored
    }
    char text[] = "ab", output[8];
    int32_t count = -1;
    EXPECT_EQ(tsString_replaceStringForKeyword(text, " ", nullptr, "q", output, &count), kFail);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(tsString_replaceStringForKeyword(text, " ", "ab", "q", output, nullptr), 0);
    EXPECT_STREQ(output, "q");
}

TEST(StringArrayFromCSV, RunsOfCommasAreOneSeparatorInTheSimpleForm)
{
    // Each row: text, then its fields in the simple form and in the ordered form, which keeps every field,
    // the empty ones too, in one block.
    const std::tuple<const char *, Strings, Strings> rows[] = {
        {"a,,b", {"a", "b"}, {"a", "", "b"}},
        {",a,", {"a"}, {"", "a", ""}},
        {"point 1,N, E ", {"point 1", "N", " E "}, {"point 1", "N", " E "}},
        {",,,", {}, {"", "", "", ""}},
    };
    for (const auto &[text, simple, ordered] : rows) {
        char **array = stale<char *>;
        int32_t count = -1;
        ASSERT_EQ(tsStringArray_getFromCSVString(&array, &count, text), 0) << text;
        EXPECT_EQ(elements(array, count), simple) << text;
        EXPECT_TRUE(count == 0 ? array == nullptr : tsStringArray_destroy(&array, &count) == 0) << text;
        ASSERT_EQ(tsStringArray_getFromOrderedCSVString(&array, &count, text), 0) << text;
        EXPECT_EQ(elements(array, count), ordered) << text;
        for (int32_t i = 1; i < count; ++i)  // one field behind the other
            EXPECT_EQ(array[i], array[i - 1] + std::strlen(array[i - 1]) + 1);
        EXPECT_EQ(tsMem_free(array[0]), 0);
        EXPECT_EQ(tsMem_free(array), 0);
    }
    // Refused texts and null addresses; the array and the counts given are cleared first.
    char **array = stale<char *>;
    int32_t counts[] = {-1, -1, -1};
    EXPECT_EQ((Ints{tsStringArray_getFromCSVString(&array, &counts[0], ""),
                    tsStringArray_getFromOrderedCSVString(&array, &counts[1], nullptr),
                    tsStringArray_getFromCSVString(nullptr, &counts[2], "a"),
                    tsStringArray_getFromCSVString(&array, nullptr, nullptr),
                    tsStringArray_getFromOrderedCSVString(nullptr, nullptr, "a")}),
              Ints(5, kFail));
    EXPECT_EQ(array, nullptr);
    EXPECT_EQ(Ints(counts, counts + 3), Ints(3, 0));
}

TEST(StringArrayCopies, JoinCloneMergeAndDestroy)
{
    char a[] = "a", empty[] = "", b[] = "b", c[] = "c";
    char *one[] = {a}, *three[] = {a, empty, b}, *first[] = {a, b}, *second[] = {c},
         *nullFirst[] = {nullptr, b};
    // Joined with commas, no comma after a single element.
    for (const auto &[array, count, text] : {std::tuple{one, 1, "a"}, {three, 3, "a,,b"}}) {
        char *joined = stale<char>;
        ASSERT_EQ(tsStringArray_putToCSVString(array, count, &joined), 0);
        EXPECT_STREQ(joined, text);
        tsMem_free(joined);
    }
    char *joined = stale<char>;
    EXPECT_EQ((Ints{tsStringArray_putToCSVString(three, 0, &joined),
                    tsStringArray_putToCSVString(nullptr, 2, &joined),
                    tsStringArray_putToCSVString(three, 3, nullptr)}),
              Ints(3, kFail));
    EXPECT_EQ(joined, nullptr);
    // A deep clone, destroyed with its count cleared.
    char **clone = nullptr;
    int32_t cloneCount = 2;
    ASSERT_EQ(tsStringArray_clone(&clone, first, 2), 0);
    EXPECT_EQ(elements(clone, 2), (Strings{"a", "b"}));
    EXPECT_NE(clone[0], first[0]);
    EXPECT_EQ(tsStringArray_destroy(&clone, &cloneCount), 0);
    EXPECT_EQ(clone, nullptr);
    EXPECT_EQ(cloneCount, 0);
    EXPECT_EQ(tsStringArray_destroy(&clone, &cloneCount), kFail);
    clone = stale<char *>;
    EXPECT_EQ((Ints{tsStringArray_clone(&clone, nullFirst, 2), tsStringArray_clone(&clone, first, 0),
                    tsStringArray_clone(nullptr, first, 2)}),
              Ints(3, kFail));
    EXPECT_EQ(clone, nullptr);
    // Merged: a null array counts no elements, and a total of 0 allocates nothing.
    const std::tuple<char **, int32_t, char **, int32_t, Strings> rows[] = {
        {first, 2, second, 1, {"a", "b", "c"}},
        {nullptr, 5, second, 1, {"c"}},
        {first, 2, nullptr, 3, {"a", "b"}},
        {nullptr, 0, nullptr, 0, {}},
    };
    for (const auto &[x, countX, y, countY, expected] : rows) {
        char **merged = stale<char *>;
        int32_t count = -1;
        ASSERT_EQ(tsStringArray_merge(&merged, &count, x, countX, y, countY), 0);
        EXPECT_EQ(elements(merged, count), expected);
        EXPECT_TRUE(count == 0 ? merged == nullptr : tsStringArray_destroy(&merged, &count) == 0);
    }
    int32_t count = 0;
    EXPECT_EQ((Ints{tsStringArray_merge(nullptr, &count, first, 2, second, 1),
                    tsStringArray_destroy(nullptr, &count)}),
              Ints(2, kFail));
}

TEST(StringArrayScenario, FieldBookLineReadEditedAndWrittenBack)
{
    // A point record typed as CSV, with a stray empty field; a code column is appended from a second array
    // and the line written back.
    char **record = nullptr, **line = nullptr, code[] = "EP", *codes[] = {code}, *text = nullptr;
    int32_t count = 0, lineCount = 0;
    ASSERT_EQ(tsStringArray_getFromCSVString(&record, &count, "P101,,5012.345,2011.870,98.20"), 0);
    ASSERT_EQ(count, 4);
    ASSERT_EQ(tsStringArray_merge(&line, &lineCount, record, count, codes, 1), 0);
    ASSERT_EQ(tsStringArray_putToCSVString(line, lineCount, &text), 0);
    EXPECT_STREQ(text, "P101,5012.345,2011.870,98.20,EP");
    tsMem_free(text);
    EXPECT_EQ(tsStringArray_destroy(&line, &lineCount), 0);
    EXPECT_EQ(tsStringArray_destroy(&record, &count), 0);
}

}  // namespace
