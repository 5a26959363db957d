// Tokens, delimited lists and comma-separated string arrays. Expected token
// sets and offsets are traced by hand over the texts in the rows.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/memory.h>
#include <tessar/tokens.h>

namespace {

constexpr int32_t kFail = 32768;

std::vector<std::string> elements(char **array, int32_t count)
{
    std::vector<std::string> out;
    for (int32_t i = 0; i < count; ++i)
        out.emplace_back(array[i]);
    return out;
}

using Strings = std::vector<std::string>;

TEST(ParseTokens, WalksByOffsetBehindEachTerminator)
{
    // "  ab,,c d": "ab" at 2, its terminator at 4, so the walk goes on at 5;
    // "c" at 6, terminator at 7, next 8; "d" at 8 ends the text, next 10.
    char text[] = "  ab,,c d";
    const int32_t length = 9;
    int32_t offset = 0;
    const char *expected[] = {"ab", "c", "d"};
    const int32_t offsets[] = {5, 8, 10};
    for (int i = 0; i < 3; ++i) {
        const char *token = tsString_parseTokens(text, &offset, length, ", ");
        ASSERT_NE(token, nullptr);
        EXPECT_STREQ(token, expected[i]);
        EXPECT_EQ(offset, offsets[i]);
    }
    EXPECT_EQ(tsString_parseTokens(text, &offset, length, ", "), nullptr);
    EXPECT_EQ(offset, 10);
}

TEST(ParseTokens, RefusesBadArguments)
{
    char text[] = "a,b";
    int32_t offset = 0;
    EXPECT_EQ(tsString_parseTokens(nullptr, &offset, 3, ","), nullptr);
    EXPECT_EQ(tsString_parseTokens(text, nullptr, 3, ","), nullptr);
    EXPECT_EQ(tsString_parseTokens(text, &offset, 3, nullptr), nullptr);
    EXPECT_EQ(tsString_parseTokens(text, &offset, 0, ","), nullptr);
    offset = 3;
    EXPECT_EQ(tsString_parseTokens(text, &offset, 3, ","), nullptr);
    EXPECT_STREQ(text, "a,b");  // nothing was tokenised
}

TEST(ParseTokens, WalkSurvivesOtherTokenisingInBetween)
{
    char text[] = "north,east,height";
    const auto length = static_cast<int32_t>(std::strlen(text));
    int32_t offset = 0;
    EXPECT_STREQ(tsString_parseTokens(text, &offset, length, ","), "north");

    // The walk and these calls share the C library's hidden position.
    char other[] = "x y z";
    EXPECT_STREQ(std::strtok(other, " "), "x");
    EXPECT_STREQ(std::strtok(nullptr, " "), "y");
    char list[] = "p,q,r";
    EXPECT_EQ(tsString_removeToken(list, ",", "q"), 0);

    EXPECT_STREQ(tsString_parseTokens(text, &offset, length, ","), "east");
    EXPECT_STREQ(tsString_parseTokens(text, &offset, length, ","), "height");
    EXPECT_EQ(tsString_parseTokens(text, &offset, length, ","), nullptr);
}

struct ParsedSet {
    int32_t status = 0;
    std::vector<std::string> tokens;
    std::string introducers;
    std::vector<int32_t> flags;
};

ParsedSet parseGroups(std::string text, const char *delimiters, const char *groups)
{
    std::vector<char *> tokens(text.size() + 1);
    std::vector<char> introducers(text.size() + 1);
    std::vector<int32_t> flags(text.size() + 1);
    int32_t count = -7;
    ParsedSet set;
    set.status = tsString_parseTokenGroups(text.data(), delimiters, groups, &count, tokens.data(),
                                           introducers.data(), flags.data());
    for (int32_t i = 0; i < count; ++i) {
        set.tokens.emplace_back(tokens[i]);
        set.introducers += introducers[i] == '\0' ? '0' : introducers[i];
        set.flags.push_back(flags[i]);
    }
    return set;
}

TEST(ParseTokenGroups, TokensGroupsAndTheirIntroducers)
{
    struct Row {
        const char *text, *delimiters, *groups;
        Strings tokens;
        const char *introducers;  // '0' stands for no introducer
        std::vector<int32_t> flags;
    };
    const Row rows[] = {
        {"a,(b,c),d", ",", "()", {"a", "b,c", "d"}, "0(,", {0, 1, 0}},
        // Groups nest on their own opening character.
        {"x(a(b)c)y", ",", "()", {"x", "a(b)c", "y"}, "0(0", {0, 1, 0}},
        // Equal characters do not nest: the closing test comes first.
        {"\"a,b\",c,\"d\"", ",", "\"\"", {"a,b", "c", "d"}, "\",\"", {1, 0, 1}},
        // Blanks between delimiters are a token; an empty field is none.
        {"a, ,,b", ",", nullptr, {"a", " ", "b"}, "0,,", {0, 0, 0}},
        // Without delimiters, text outside groups is ignored.
        {"x(a)y[b]z", nullptr, "()[]", {"a", "b"}, "([", {1, 1}},
        // A group left open runs to the end of the text.
        {"k(ab", ",", "()", {"k", "ab"}, "0(", {0, 1}},
        // A closing character met first opens a group whose closing
        // character is the end of the group string: it never closes.
        {"a)b,c", ",", "()", {"a", "b,c"}, "0)", {0, 1}},
        {"", ",", "()", {}, "", {}},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.text);
        const ParsedSet set = parseGroups(r.text, r.delimiters, r.groups);
        EXPECT_EQ(set.status, 0);
        EXPECT_EQ(set.tokens, r.tokens);
        EXPECT_EQ(set.introducers, r.introducers);
        EXPECT_EQ(set.flags, r.flags);
    }
}

TEST(ParseTokenGroups, RejectsUnusableCharacterSets)
{
    struct Row {
        const char *delimiters, *groups;
        int32_t status;
    };
    const Row rows[] = {
        {nullptr, nullptr, -1}, {",", ",;", -2},
        {";", "(;)", -2},  // also odd: the shared character is tested first
        {",", "(", -3},         {nullptr, "()[", -3},
    };
    for (const Row &r : rows) {
        std::string text = "a,b";
        int32_t count = 0;
        char *tokens[4];
        char introducers[4];
        int32_t flags[4];
        EXPECT_EQ(tsString_parseTokenGroups(text.data(), r.delimiters, r.groups, &count, tokens, introducers,
                                            flags),
                  r.status)
            << (r.groups ? r.groups : "(null)");
        EXPECT_EQ(text, "a,b");
    }
}

TEST(GetTokenIndex, FirstPlainTokenContainingTheNeedle)
{
    char a[] = "alpha", b[] = "beta", c[] = "gamma";
    char *tokens[] = {a, b, c};
    const int32_t flags[] = {0, 1, 0};
    struct Row {
        const char *needle;
        int32_t status, index;
    };
    const Row rows[] = {
        {"a", 0, 0},           // "alpha" first
        {"mm", 0, 2},          //
        {"et", kFail, -1},     // only in the group
        {"delta", kFail, -1},  //
    };
    for (const Row &r : rows) {
        int32_t index = 99;
        EXPECT_EQ(tsString_getTokenIndex(r.needle, &index, 3, tokens, flags), r.status) << r.needle;
        EXPECT_EQ(index, r.index) << r.needle;
    }
    int32_t index = 99;
    EXPECT_EQ(tsString_getTokenIndex("a", &index, 0, tokens, flags), kFail);
    EXPECT_EQ(tsString_getTokenIndex(nullptr, &index, 3, tokens, flags), kFail);
    EXPECT_EQ(tsString_getTokenIndex("a", &index, 3, nullptr, flags), kFail);
    EXPECT_EQ(index, 99);  // argument failures leave the index alone
    EXPECT_EQ(tsString_getTokenIndex("mm", nullptr, 3, tokens, flags), 0);
}

TEST(AppendToken, EachPieceOnlyIfLengthStaysBelowCapacity)
{
    struct Row {
        const char *before;
        int32_t capacity;
        const char *separator, *token;
        int32_t status;
        const char *after;
    };
    const Row rows[] = {
        {"", 10, ",", "a", 0, ",a"},  // the separator even on an empty buffer
        {"a", 10, ",", "b", 0, "a,b"},     {"a", 10, nullptr, "b", 0, "ab"},
        {"ab", 4, nullptr, "c", 0, "abc"},  // 2 + 1 = 3, below 4
        {"a", 3, ",", "b", kFail, "a,"},    // separator 1 + 1 < 3 fits, token 2 + 1 does not
        {"a", 2, ",", "b", kFail, "a"},     // separator 1 + 1 = 2 does not fit
        {"a", 10, ",", "", kFail, "a"},    {"a", 0, ",", "b", kFail, "a"},
    };
    for (const Row &r : rows) {
        char buffer[16];
        std::strcpy(buffer, r.before);
        EXPECT_EQ(tsString_appendToken(buffer, r.capacity, r.separator, r.token), r.status) << r.before;
        EXPECT_STREQ(buffer, r.after) << r.before << " + " << r.token;
    }
    EXPECT_EQ(tsString_appendToken(nullptr, 10, ",", "a"), kFail);
    char buffer[8] = "a";
    EXPECT_EQ(tsString_appendToken(buffer, 8, ",", nullptr), kFail);
}

TEST(RemoveToken, ExactTokenWithItsDelimiter)
{
    struct Row {
        const char *list, *delimiters, *token;
        int32_t status;
        const char *after;
    };
    const Row rows[] = {
        {"a,b,c", ",", "b", 0, "a,c"},
        {"a,b,c", ",", "a", 0, "b,c"},
        {"a,b,c", ",", "c", 0, "a,b"},
        {"a,b,c", ",", "d", kFail, "a,b,c"},
        {"a,b,c", ",", "B", kFail, "a,b,c"},  // case counts
        {"a", ",", "a", 0, ""},               // first and last: the list ends there
        {"a,b,", ",", "b", 0, "a"},           // the last token drops what follows it too
        {"b,a,b", ",", "b", 0, "a,b"},        // the first exact match goes
        {"a, b, c", ", ", "b", 0, "a, c"},    // two delimiter characters go with it
        {"a, b, c", ", ", "a", 0, "b, c"},
    };
    for (const Row &r : rows) {
        char list[16];
        std::strcpy(list, r.list);
        EXPECT_EQ(tsString_removeToken(list, r.delimiters, r.token), r.status) << r.list << " - " << r.token;
        EXPECT_STREQ(list, r.after) << r.list << " - " << r.token;
    }
    char list[] = "a,b";
    EXPECT_EQ(tsString_removeToken(nullptr, ",", "a"), kFail);
    EXPECT_EQ(tsString_removeToken(list, ",", nullptr), kFail);
    EXPECT_EQ(tsString_removeToken(list, ",", ""), kFail);
    EXPECT_STREQ(list, "a,b");
}

TEST(ParseOutToken, DropsCleanedTokensEqualApartFromCaseAndJoinsWithCommas)
{
    struct Row {
        const char *list, *delimiters, *token;
        const char *after;
        int32_t found;
    };
    const Row rows[] = {
        {"a, B ,c", ",", "b", "a,c", 1},
        {"x; y", ";", "z", "x,y", 0},  // rebuilt cleaned and with commas even with nothing dropped
        {"b;B", ";", "b", "", 1},
        {"", ",", "a", "", 0},        // no tokens: left alone
        {";;;", ";", "a", ";;;", 0},  // no tokens either
    };
    for (const Row &r : rows) {
        char list[16];
        std::strcpy(list, r.list);
        int32_t found = -1;
        EXPECT_EQ(tsString_parseOutToken(list, &found, r.delimiters, r.token), 0) << r.list;
        EXPECT_STREQ(list, r.after) << r.list;
        EXPECT_EQ(found, r.found) << r.list;
    }
    char list[] = "a";
    EXPECT_EQ(tsString_parseOutToken(list, nullptr, ",", "a"), kFail);
    EXPECT_STREQ(list, "a");
}

TEST(ExtractFirstString, FirstTokenAndTheRestFromItsDelimiter)
{
    struct Row {
        const char *text, *delimiters;
        int32_t status;
        const char *first, *rest;
    };
    const Row rows[] = {
        {" ab, cd", ", ", 0, "ab", ", cd"}, {"abc", ",", 0, "abc", ""}, {",,x,", ",", 0, "x", ","},
        {",,,", ",", kFail, "?", "?"},      {"", ",", kFail, "?", "?"},
    };
    for (const Row &r : rows) {
        char first[16] = "?", rest[16] = "?";
        EXPECT_EQ(tsString_extractFirstStringBetweenDelimiters(r.text, r.delimiters, first, rest), r.status)
            << r.text;
        EXPECT_STREQ(first, r.first) << r.text;
        EXPECT_STREQ(rest, r.rest) << r.text;
    }
    char first[8], rest[8];
    EXPECT_EQ(tsString_extractFirstStringBetweenDelimiters(nullptr, ",", first, rest), kFail);
    EXPECT_EQ(tsString_extractFirstStringBetweenDelimiters("a", nullptr, first, rest), kFail);
    EXPECT_EQ(tsString_extractFirstStringBetweenDelimiters("a", ",", nullptr, rest), kFail);
    EXPECT_EQ(tsString_extractFirstStringBetweenDelimiters("a", ",", first, nullptr), kFail);
}

TEST(ReplaceStringForKeyword, WholeTokensApartFromCaseKeepingDelimiters)
{
    struct Row {
        const char *text, *delimiters, *keyword, *replacement, *output;
        int32_t count;
    };
    const Row rows[] = {
        {"x + ab + AB", "+ ", "ab", "q", "x + q + q", 2},
        {"abc + ab", "+ ", "ab", "q", "abc + q", 1},  // part of a token is no hit
        {"ab ab ab", " ", "AB", "long", "long long long", 3},
        {"x*y", "*", "z", "w", "x*y", 0},
        {"", "*", "z", "w", "", 0},
    };
    for (const Row &r : rows) {
        char text[32];
        std::strcpy(text, r.text);
        char output[64] = "?";
        int32_t count = -1;
        EXPECT_EQ(
            tsString_replaceStringForKeyword(text, r.delimiters, r.keyword, r.replacement, output, &count),
            0);
        EXPECT_STREQ(output, r.output) << r.text;
        EXPECT_EQ(count, r.count) << r.text;
        EXPECT_STREQ(text, r.text);  // cut for a moment, then restored
    }
    char text[] = "ab";
    char output[8];
    int32_t count = -1;
    EXPECT_EQ(tsString_replaceStringForKeyword(text, " ", nullptr, "q", output, &count), kFail);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(tsString_replaceStringForKeyword(text, " ", "ab", "q", output, nullptr), 0);
    EXPECT_STREQ(output, "q");
}

TEST(StringArrayFromCSV, RunsOfCommasAreOneSeparator)
{
    struct Row {
        const char *text;
        Strings fields;
    };
    const Row rows[] = {
        {"a,,b", {"a", "b"}},
        {",a,", {"a"}},
        {"point 1,N, E ", {"point 1", "N", " E "}},
        {",,,", {}},
    };
    for (const Row &r : rows) {
        char **array = reinterpret_cast<char **>(1);
        int32_t count = -1;
        ASSERT_EQ(tsStringArray_getFromCSVString(&array, &count, r.text), 0) << r.text;
        EXPECT_EQ(elements(array, count), r.fields) << r.text;
        if (count == 0) {
            EXPECT_EQ(array, nullptr);  // nothing allocated
        } else {
            EXPECT_EQ(tsStringArray_destroy(&array, &count), 0);
        }
    }
    char **array = reinterpret_cast<char **>(1);
    int32_t count = -1;
    EXPECT_EQ(tsStringArray_getFromCSVString(&array, &count, ""), kFail);
    EXPECT_EQ(array, nullptr);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(tsStringArray_getFromCSVString(&array, nullptr, nullptr), kFail);
    count = -1;
    EXPECT_EQ(tsStringArray_getFromCSVString(nullptr, &count, "a"), kFail);
    EXPECT_EQ(count, 0);
}

TEST(StringArrayFromOrderedCSV, EveryFieldInOneBlock)
{
    struct Row {
        const char *text;
        Strings fields;
    };
    const Row rows[] = {
        {"a,,b", {"a", "", "b"}},
        {",a,", {"", "a", ""}},
        {"abc", {"abc"}},
    };
    for (const Row &r : rows) {
        char **array = nullptr;
        int32_t count = -1;
        ASSERT_EQ(tsStringArray_getFromOrderedCSVString(&array, &count, r.text), 0) << r.text;
        EXPECT_EQ(elements(array, count), r.fields) << r.text;
        // All fields lie in the block of element 0, one behind the other.
        for (int32_t i = 1; i < count; ++i)
            EXPECT_EQ(array[i], array[i - 1] + std::strlen(array[i - 1]) + 1);
        EXPECT_EQ(tsMem_free(array[0]), 0);
        EXPECT_EQ(tsMem_free(array), 0);
    }
    char **array = nullptr;
    int32_t count = -1;
    EXPECT_EQ(tsStringArray_getFromOrderedCSVString(&array, &count, nullptr), kFail);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(tsStringArray_getFromOrderedCSVString(nullptr, nullptr, "a"), kFail);
}

TEST(StringArrayToCSV, JoinsWithCommas)
{
    char a[] = "a", empty[] = "", b[] = "b";
    char *one[] = {a};
    char *three[] = {a, empty, b};
    char *joined = reinterpret_cast<char *>(1);
    ASSERT_EQ(tsStringArray_putToCSVString(one, 1, &joined), 0);
    EXPECT_STREQ(joined, "a");
    tsMem_free(joined);
    ASSERT_EQ(tsStringArray_putToCSVString(three, 3, &joined), 0);
    EXPECT_STREQ(joined, "a,,b");
    tsMem_free(joined);

    joined = reinterpret_cast<char *>(1);
    EXPECT_EQ(tsStringArray_putToCSVString(three, 0, &joined), kFail);
    EXPECT_EQ(joined, nullptr);
    EXPECT_EQ(tsStringArray_putToCSVString(nullptr, 2, &joined), kFail);
    EXPECT_EQ(tsStringArray_putToCSVString(three, 3, nullptr), kFail);
}

TEST(StringArrayCopies, CloneMergeAndDestroy)
{
    char a[] = "a", b[] = "b", c[] = "c";
    char *first[] = {a, b};
    char *second[] = {c};

    char **clone = nullptr;
    ASSERT_EQ(tsStringArray_clone(&clone, first, 2), 0);
    EXPECT_EQ(elements(clone, 2), (Strings{"a", "b"}));
    EXPECT_NE(clone[0], first[0]);  // deep
    int32_t cloneCount = 2;
    EXPECT_EQ(tsStringArray_destroy(&clone, &cloneCount), 0);
    EXPECT_EQ(clone, nullptr);
    EXPECT_EQ(cloneCount, 0);
    EXPECT_EQ(tsStringArray_destroy(&clone, &cloneCount), kFail);

    char *nullFirst[] = {nullptr, b};
    clone = reinterpret_cast<char **>(1);
    EXPECT_EQ(tsStringArray_clone(&clone, nullFirst, 2), kFail);
    EXPECT_EQ(clone, nullptr);
    EXPECT_EQ(tsStringArray_clone(&clone, first, 0), kFail);
    EXPECT_EQ(tsStringArray_clone(nullptr, first, 2), kFail);

    struct Row {
        char **a;
        int32_t countA;
        char **b;
        int32_t countB;
        Strings merged;
    };
    const Row rows[] = {
        {first, 2, second, 1, {"a", "b", "c"}},
        {nullptr, 5, second, 1, {"c"}},  // a null array counts no elements
        {first, 2, nullptr, 3, {"a", "b"}},
        {nullptr, 0, nullptr, 0, {}},
    };
    for (const Row &r : rows) {
        char **merged = reinterpret_cast<char **>(1);
        int32_t count = -1;
        ASSERT_EQ(tsStringArray_merge(&merged, &count, r.a, r.countA, r.b, r.countB), 0);
        EXPECT_EQ(elements(merged, count), r.merged);
        if (count == 0)
            EXPECT_EQ(merged, nullptr);
        else
            EXPECT_EQ(tsStringArray_destroy(&merged, &count), 0);
    }
    int32_t count = 0;
    EXPECT_EQ(tsStringArray_merge(nullptr, &count, first, 2, second, 1), kFail);
    EXPECT_EQ(tsStringArray_destroy(nullptr, &count), kFail);
}

TEST(StringArrayScenario, FieldBookLineReadEditedAndWrittenBack)
{
    // A point record typed as CSV, with a stray empty field; a code column
    // is appended from a second array and the line written back.
    char **record = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsStringArray_getFromCSVString(&record, &count, "P101,,5012.345,2011.870,98.20"), 0);
    ASSERT_EQ(count, 4);
    char code[] = "EP";
    char *codes[] = {code};
    char **line = nullptr;
    int32_t lineCount = 0;
    ASSERT_EQ(tsStringArray_merge(&line, &lineCount, record, count, codes, 1), 0);
    char *text = nullptr;
    ASSERT_EQ(tsStringArray_putToCSVString(line, lineCount, &text), 0);
    EXPECT_STREQ(text, "P101,5012.345,2011.870,98.20,EP");
    tsMem_free(text);
    EXPECT_EQ(tsStringArray_destroy(&line, &lineCount), 0);
    EXPECT_EQ(tsStringArray_destroy(&record, &count), 0);
}

}  // namespace
