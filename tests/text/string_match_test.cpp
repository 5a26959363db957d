// Wild-card matching in both case senses, number recognition and number
// text, the line reader, the growing heap text, and a field book read from a
// file as a surveyor's export would give it. Expected values are worked by
// hand in the rows.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/memory.h>
#include <tessar/text.h>

namespace {

constexpr int32_t kFail = 32768;

struct WildRow {
    const char *subject, *pattern;
    int32_t expected;
};

TEST(StringWildCard, CaseExactRows)
{
    const WildRow rows[] = {
        {"abc", "a?c", 0},
        {"abc", "!a*", 1},
        {"abc", "abd", 1},   // 'c' below 'd'
        {"abd", "abc", -1},  // 'd' above 'c', no wild card passed
        {"abc", "abc", 0},
        {"ab", "abc", 1},
        {"abc", "ab", -1},  // the terminator is below 'c'
        {"b", "[a-c]", 1},
        {"-", "[a-c]", 0},
        {"c", "[a-c]", 0},  // no ranges: the set is a, -, c
        {"abc", "a*", 0},
        {"abc", "*c", 0},
        {"abc", "*b", 1},
        {"abc", "a**c", 0},
        {"aXbXc", "a*b*c", 0},
        {"abcbd", "*bd", 0},
        {"", "*", 0},
        {"", "*a", 1},
        {"ab", "a?", 0},
        {"a", "a?", 1},
        {"abc", "??", 1},
        {"xyz", "x[", 0},  // a closing "[" takes all
        {"x", "x[", 0},
        {"xa", "x[!", 1},
        {"xb", "x[!a]", 0},
        {"xa", "x[!a]", 1},
        {"x", "x[!a]", 0},  // a negated set accepts the exhausted subject
        {"x", "x[a]", 1},
        {"b", "[abc", 0},
        {"a", "[]", 1},
        {"a", "[!]", 0},
        {"\xe9", "a", 1},  // 0xE9 is below 'a' as a signed character
        {"a", "\xe9", -1},
        {"!abc", "!!abc", 1},
        {"abc", "!x*", 0},
        {"P1023", "P10[12]3", 0},
        {"P1033", "P10[12]3", 1},
    };
    for (const WildRow &r : rows) {
        char pattern[32];
        std::strcpy(pattern, r.pattern);
        EXPECT_EQ(tsString_strcmpWildCardMatch(r.subject, pattern), r.expected)
            << "'" << r.subject << "' against '" << r.pattern << "'";
        EXPECT_STREQ(pattern, r.pattern);  // a set's "]" is put back
    }
}

TEST(StringWildCard, CaseBlindRows)
{
    const WildRow rows[] = {
        {"abc", "A?C", 0}, {"Pt12", "p[T]1*", 0}, {"abd", "ABC", -1},      {"abc", "abd", 1},
        {"abc", "!A*", 1}, {"road", "[r]OAD", 0}, {"PP", "p[!p]", 1},      {"bm7", "BM[!8]", 0},
        {"abc", "a?c", 0}, {"ABC", "*b*", 0},     {"stA 12", "STA ??", 0},
    };
    for (const WildRow &r : rows)
        EXPECT_EQ(tsString_strcmpiWildCardMatch(r.subject, r.pattern), r.expected)
            << "'" << r.subject << "' against '" << r.pattern << "'";
}

TEST(StringNumbers, RecognitionTable)
{
    struct Row {
        const char *text;
        int32_t integer, positiveInteger, negativeInteger, real, positiveReal, negativeReal;
    };
    const Row rows[] = {
        {"12", 1, 1, 0, 0, 0, 0},      {"  -12  ", 1, 0, 1, 0, 0, 0}, {"+12", 1, 1, 0, 0, 0, 0},
        {"-", 0, 0, 0, 0, 0, 0},       {"+", 0, 0, 0, 0, 0, 0},       {"", 0, 0, 0, 0, 0, 0},
        {"   ", 0, 0, 0, 0, 0, 0},     {"1 2", 0, 0, 0, 0, 0, 0},     {"\t12", 0, 0, 0, 0, 0, 0},
        {"12a", 0, 0, 0, 0, 0, 0},     {"-+1", 0, 0, 0, 0, 0, 0},     {"5.", 0, 0, 0, 0, 0, 0},
        {".5", 0, 0, 0, 1, 1, 0},      {"-.5", 0, 0, 0, 1, 0, 1},     {" +3.25 ", 0, 0, 0, 1, 1, 0},
        {"-12.750", 0, 0, 0, 1, 0, 1}, {"1.2.3", 0, 0, 0, 0, 0, 0},   {"1e5", 0, 0, 0, 0, 0, 0},
        {"-.", 0, 0, 0, 0, 0, 0},      {". 5", 0, 0, 0, 0, 0, 0},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(std::string("'") + r.text + "'");
        EXPECT_EQ(tsString_isInteger(r.text), r.integer);
        EXPECT_EQ(tsString_isPositiveInteger(r.text), r.positiveInteger);
        EXPECT_EQ(tsString_isNegativeInteger(r.text), r.negativeInteger);
        EXPECT_EQ(tsString_isReal(r.text), r.real);
        EXPECT_EQ(tsString_isPositiveReal(r.text), r.positiveReal);
        EXPECT_EQ(tsString_isNegativeReal(r.text), r.negativeReal);
        EXPECT_EQ(tsString_isNumeric(r.text), r.integer | r.real);
    }
    for (auto *test :
         {tsString_isDigit, tsString_isInteger, tsString_isPositiveInteger, tsString_isNegativeInteger,
          tsString_isReal, tsString_isPositiveReal, tsString_isNegativeReal, tsString_isNumeric})
        EXPECT_EQ(test(nullptr), 0);
    EXPECT_EQ(tsString_isDigit("7x"), 1);
    EXPECT_EQ(tsString_isDigit("x7"), 0);
    EXPECT_EQ(tsString_isDigit(""), 0);
}

TEST(StringNumbers, IntegersToAndFromText)
{
    EXPECT_EQ(tsString_toInt64(nullptr), 0);
    EXPECT_EQ(tsString_toInt64(""), 0);
    EXPECT_EQ(tsString_toInt64("abc"), 0);
    EXPECT_EQ(tsString_toInt64("42abc"), 42);
    EXPECT_EQ(tsString_toInt64("  +7"), 7);
    EXPECT_EQ(tsString_toInt64("-9223372036854775808"), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(tsString_toInt64("9223372036854775807"), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(tsString_toULong(nullptr), 0u);
    EXPECT_EQ(tsString_toULong(""), 0u);
    EXPECT_EQ(tsString_toULong("x"), 0u);
    EXPECT_EQ(tsString_toULong("123l"), 123u);
    EXPECT_EQ(tsString_toULong("4294967295"), 4294967295u);

    // Cut to size characters, so size + 1 bytes are written.
    char buffer[24];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(tsString_fromInt64(buffer, 3, 12345), 0);
    EXPECT_EQ(std::string(buffer, 5), std::string("123\0#", 5));
    EXPECT_EQ(tsString_fromInt64(buffer, 20, -42), 0);
    EXPECT_STREQ(buffer, "-42");
    EXPECT_EQ(tsString_fromInt64(nullptr, 20, 1), kFail);
    EXPECT_EQ(tsString_fromInt64(buffer, 0, 1), kFail);

    EXPECT_EQ(tsString_fromULong(buffer, 20, 123), 0);
    EXPECT_STREQ(buffer, "123l");  // the format's trailing letter stays in the text
    EXPECT_EQ(tsString_fromULong(buffer, 3, 123), 0);
    EXPECT_STREQ(buffer, "123");
    EXPECT_EQ(tsString_fromULong(buffer, 20, 0), 0);
    EXPECT_STREQ(buffer, "0l");
    EXPECT_EQ(tsString_fromULong(nullptr, 20, 1), kFail);
    EXPECT_EQ(tsString_fromULong(buffer, -1, 1), kFail);
}

// A temporary stream holding bytes, rewound for reading.
struct Stream {
    FILE *file = std::tmpfile();
    explicit Stream(const std::string &bytes)
    {
        std::fwrite(bytes.data(), 1, bytes.size(), file);
        std::rewind(file);
    }
    ~Stream() { std::fclose(file); }
};

TEST(StringLines, LineEndsLongLinesAndTheLastLine)
{
    Stream lines("ab\r\nc\n\nlast");
    char buffer[16];
    ASSERT_EQ(tsString_fgets(buffer, 16, lines.file), 1);
    EXPECT_STREQ(buffer, "ab");
    ASSERT_EQ(tsString_fgets(buffer, 16, lines.file), 1);
    EXPECT_STREQ(buffer, "c");
    ASSERT_EQ(tsString_fgets(buffer, 16, lines.file), 1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(tsString_fgets(buffer, 16, lines.file), 0);  // no line feed: not a line

    // Five bytes stored, "abcde": the fourth becomes the terminator.
    Stream longLine("abcdefgh\nabc\n");
    ASSERT_EQ(tsString_fgets(buffer, 5, longLine.file), 1);
    EXPECT_STREQ(buffer, "abc");
    ASSERT_EQ(tsString_fgets(buffer, 5, longLine.file), 1);
    EXPECT_STREQ(buffer, "fgh");
    ASSERT_EQ(tsString_fgets(buffer, 5, longLine.file), 1);  // the line feed is the fourth byte
    EXPECT_STREQ(buffer, "abc");

    // A true 0xFF byte ends the line and takes the character before it.
    Stream stop("ab\xff"
                "cd\n");
    ASSERT_EQ(tsString_fgets(buffer, 16, stop.file), 1);
    EXPECT_STREQ(buffer, "a");
    ASSERT_EQ(tsString_fgets(buffer, 16, stop.file), 1);
    EXPECT_STREQ(buffer, "cd");

    Stream empty("");
    EXPECT_EQ(tsString_fgets(buffer, 16, empty.file), 0);
}

TEST(StringBuffer, GrowingHeapText)
{
    char *text = nullptr;
    size_t size = 0;
    EXPECT_EQ(tsString_addToBuffer(nullptr, 1, &text, &size), kFail);
    EXPECT_EQ(tsString_addToBuffer("x", 1, nullptr, &size), kFail);
    ASSERT_EQ(tsString_addToBuffer("P1", 1, &text, &size), 0);
    EXPECT_STREQ(text, "P1\n");
    EXPECT_EQ(size, 4u);  // two characters, the line feed, the terminator
    ASSERT_EQ(tsString_addToBuffer("P2", 0, &text, &size), 0);
    EXPECT_STREQ(text, "P1\nP2");
    EXPECT_EQ(size, 6u);
    ASSERT_EQ(tsString_addToBuffer("", 0, &text, &size), 0);
    EXPECT_EQ(size, 6u);
    tsMem_free(text);

    // Without a size the length of the text stands for it.
    text = nullptr;
    ASSERT_EQ(tsString_addToBuffer("a", 0, &text, nullptr), 0);
    ASSERT_EQ(tsString_addToBuffer("bc", 1, &text, nullptr), 0);
    EXPECT_STREQ(text, "abc\n");
    tsMem_free(text);
}

// A field book as exported from a data collector: a quoted header, blanks
// and tabs around fields, Windows line ends, a benchmark with no elevation,
// and a last line cut off without its line feed. The cleaned point lines whose
// names fit "P100?" (any case) and carry a real elevation are gathered with
// the code word "road" shortened to "RD".
TEST(StringScenario, FieldBookSelection)
{
    Stream book("\"PT\",\"X\",\"Y\",\"Z\",\"CODE\"\r\n"
                "  P1001 , 1000.000 , 2000.000 , 100.25 , road cl\r\n"
                "P1002,1010.500,2000.000,100.30,ROAD EP\r\n"
                "\tBM1,995.000,1990.000,-,bench\n"
                "p1003,1021.000,2000.000,100.35,Road CL\n"
                "P2001,1100.000,2100.000,101.00,road cl");
    char line[128];
    char *gathered = nullptr;
    size_t size = 0;
    std::vector<std::string> rejected;
    int32_t lines = 0;
    while (tsString_fgets(line, sizeof line, book.file) == 1) {
        ++lines;
        ASSERT_EQ(tsString_clean(line, 1, 1, 1), 0);
        if (tsString_isStrWhite(line)) continue;
        if (line[0] == '"') {
            EXPECT_EQ(tsString_stripSurroundingQuotes(line), 1);
            EXPECT_STREQ(line, "PT\",\"X\",\"Y\",\"Z\",\"CODE");
            continue;
        }
        ASSERT_EQ(tsString_replaceAllSubstrings(line, " , ", ","), 0);
        ASSERT_EQ(tsString_getCharCount(line, ','), 4) << line;
        const std::string fields(line);
        const std::string name = fields.substr(0, fields.find(','));
        const std::string z = fields.substr(fields.find(',', fields.find(',', fields.find(',') + 1) + 1) + 1);
        const std::string elevation = z.substr(0, z.find(','));
        if (tsString_strcmpiWildCardMatch(name.c_str(), "P100?") != 0 ||
            !tsString_isReal(elevation.c_str())) {
            rejected.push_back(name);
            continue;
        }
        ASSERT_EQ(tsString_replaceAllSubstringsi(line, "road", "RD"), 0);
        ASSERT_EQ(tsString_addToBuffer(tsString_uppercase(line), 1, &gathered, &size), 0);
    }
    EXPECT_EQ(lines, 5);  // the sixth line has no line feed
    EXPECT_EQ(rejected, std::vector<std::string>{"BM1"});
    ASSERT_NE(gathered, nullptr);
    EXPECT_STREQ(gathered, "P1001,1000.000,2000.000,100.25,RD CL\n"
                           "P1002,1010.500,2000.000,100.30,RD EP\n"
                           "P1003,1021.000,2000.000,100.35,RD CL\n");
    EXPECT_EQ(size, std::strlen(gathered) + 1);
    tsMem_free(gathered);
}

}  // namespace
