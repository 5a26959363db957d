// Wild-card matching, number recognition and number text, the line reader, the growing heap text, and a field
// book read from a file.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/memory.h>
#include <tessar/text.h>

namespace {

constexpr int32_t kFail = 32768;
using Wild = std::tuple<const char *, const char *, int32_t>;

TEST(StringWildCard, CaseExactRows)
{
    // Each row: subject, pattern, result. A literal difference with no wild card passed gives -1 when the
    // subject's character (signed) is not below the pattern's, else 1. Sets have no ranges; a closing "["
    // takes all; a negated set accepts the exhausted subject.
    const Wild rows[] = {
        {"abc", "a?c", 0},        {"abc", "!a*", 1},  {"abc", "abd", 1},
        {"abd", "abc", -1},       {"abc", "abc", 0},  {"ab", "abc", 1},
        {"abc", "ab", -1},        {"b", "[a-c]", 1},  {"-", "[a-c]", 0},
        {"c", "[a-c]", 0},        {"abc", "a*", 0},   {"abc", "*c", 0},
        {"abc", "*b", 1},         {"abc", "a**c", 0}, {"aXbXc", "a*b*c", 0},
        {"abcbd", "*bd", 0},      {"", "*", 0},       {"", "*a", 1},
        {"ab", "a?", 0},          {"a", "a?", 1},     {"abc", "??", 1},
        {"xyz", "x[", 0},         {"x", "x[", 0},     {"xa", "x[!", 1},
        {"xb", "x[!a]", 0},       {"xa", "x[!a]", 1}, {"x", "x[!a]", 0},
        {"x", "x[a]", 1},         {"b", "[abc", 0},   {"a", "[]", 1},
        {"a", "[!]", 0},          {"\xe9", "a", 1},   {"a", "\xe9", -1},
        {"!abc", "!!abc", 1},     {"abc", "!x*", 0},  {"P1023", "P10[12]3", 0},
        {"P1033", "P10[12]3", 1},
    };
    for (const auto &[subject, pattern, expected] : rows) {
        char writable[32];
        std::strcpy(writable, pattern);
        EXPECT_EQ(tsString_strcmpWildCardMatch(subject, writable), expected) << subject << " ~ " << pattern;
        EXPECT_STREQ(writable, pattern);  // a set's "]" is put back
    }
    const Wild blind[] = {
        {"abc", "A?C", 0}, {"Pt12", "p[T]1*", 0},   {"abd", "ABC", -1}, {"abc", "abd", 1},
        {"abc", "!A*", 1}, {"road", "[r]OAD", 0},   {"PP", "p[!p]", 1}, {"bm7", "BM[!8]", 0},
        {"ABC", "*b*", 0}, {"stA 12", "STA ??", 0},
    };
    for (const auto &[subject, pattern, expected] : blind)
        EXPECT_EQ(tsString_strcmpiWildCardMatch(subject, pattern), expected) << subject << " ~ " << pattern;
}

TEST(StringNumbers, RecognitionTable)
{
    // Each row: text, then integer, positive, negative integer, real, positive, negative real. A real holds
    // exactly one point with a character after it.
    const std::tuple<const char *, std::string> rows[] = {
        {"12", "110000"},    {"  -12  ", "101000"}, {"+12", "110000"},     {"-", "000000"},
        {"+", "000000"},     {"", "000000"},        {"   ", "000000"},     {"1 2", "000000"},
        {"\t12", "000000"},  {"12a", "000000"},     {"-+1", "000000"},     {"5.", "000000"},
        {".5", "000110"},    {"-.5", "000101"},     {" +3.25 ", "000110"}, {"-12.750", "000101"},
        {"1.2.3", "000000"}, {"1e5", "000000"},     {"-.", "000000"},      {". 5", "000000"},
    };
    for (const auto &[text, expected] : rows) {
        const std::string got = {
            char('0' + tsString_isInteger(text)),         char('0' + tsString_isPositiveInteger(text)),
            char('0' + tsString_isNegativeInteger(text)), char('0' + tsString_isReal(text)),
            char('0' + tsString_isPositiveReal(text)),    char('0' + tsString_isNegativeReal(text))};
        EXPECT_EQ(got, expected) << "'" << text << "'";
        EXPECT_EQ(tsString_isNumeric(text), expected[0] == '1' || expected[3] == '1') << "'" << text << "'";
    }
    for (auto *test :
         {tsString_isDigit, tsString_isInteger, tsString_isPositiveInteger, tsString_isNegativeInteger,
          tsString_isReal, tsString_isPositiveReal, tsString_isNegativeReal, tsString_isNumeric})
        EXPECT_EQ(test(nullptr), 0);
    EXPECT_EQ((std::vector{tsString_isDigit("7x"), tsString_isDigit("x7"), tsString_isDigit("")}),
              (std::vector{1, 0, 0}));
}

TEST(StringNumbers, IntegersToAndFromText)
{
    EXPECT_EQ((std::vector<int64_t>{tsString_toInt64(nullptr), tsString_toInt64(""), tsString_toInt64("abc"),
                                    tsString_toInt64("42abc"), tsString_toInt64("  +7"),
                                    tsString_toInt64("-9223372036854775808"),
                                    tsString_toInt64("9223372036854775807")}),
              (std::vector<int64_t>{0, 0, 0, 42, 7, INT64_MIN, INT64_MAX}));
    EXPECT_EQ((std::vector<uint32_t>{tsString_toULong(nullptr), tsString_toULong(""), tsString_toULong("x"),
                                     tsString_toULong("123l"), tsString_toULong("4294967295")}),
              (std::vector<uint32_t>{0, 0, 0, 123, 4294967295u}));
    // Cut to size characters, so size + 1 bytes are written.
    char buffer[24];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(tsString_fromInt64(buffer, 3, 12345), 0);
    EXPECT_EQ(std::string(buffer, 5), std::string("123\0#", 5));
    EXPECT_EQ(tsString_fromInt64(buffer, 20, -42), 0);
    EXPECT_STREQ(buffer, "-42");
    // The print format's trailing letter stays in the text: "123l".
    const std::tuple<int32_t, uint32_t, const char *> ulongs[] = {
        {20, 123, "123l"}, {3, 123, "123"}, {20, 0, "0l"}};
    for (const auto &[size, value, text] : ulongs) {
        EXPECT_EQ(tsString_fromULong(buffer, size, value), 0);
        EXPECT_STREQ(buffer, text);
    }
    for (int32_t status : {tsString_fromInt64(nullptr, 20, 1), tsString_fromInt64(buffer, 0, 1),
                           tsString_fromULong(nullptr, 20, 1), tsString_fromULong(buffer, -1, 1)})
        EXPECT_EQ(status, kFail);
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
    // Each row: bytes, buffer size, then the lines read until 0 ("$": the call gave 0). A last line without
    // line feed is not a line; with 5 bytes stored the fourth becomes the terminator and the rest is the next
    // line; a true 0xFF byte ends the line and takes the character before it.
    const std::tuple<std::string, int32_t, std::vector<std::string>> rows[] = {
        {"ab\r\nc\n\nlast", 16, {"ab", "c", "", "$"}},
        {"abcdefgh\nabc\n", 5, {"abc", "fgh", "abc", "$"}},
        {"ab\377cd\n", 16, {"a", "cd", "$"}},
        {"", 16, {"$"}},
    };
    for (const auto &[bytes, size, lines] : rows) {
        Stream stream(bytes);
        std::vector<std::string> read;
        char buffer[16];
        for (int32_t got = 1; got == 1 && read.size() < 8;)
            read.push_back((got = tsString_fgets(buffer, size, stream.file)) == 1 ? buffer : "$");
        EXPECT_EQ(read, lines);
    }
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
    ASSERT_EQ(tsString_addToBuffer("", 0, &text, &size), 0);
    EXPECT_STREQ(text, "P1\nP2");
    EXPECT_EQ(size, 6u);
    tsMem_free(text);
    // Without a size the length of the text stands for it.
    text = nullptr;
    ASSERT_EQ(tsString_addToBuffer("a", 0, &text, nullptr), 0);
    ASSERT_EQ(tsString_addToBuffer("bc", 1, &text, nullptr), 0);
    EXPECT_STREQ(text, "abc\n");
    tsMem_free(text);
}

// A field book as exported from a data collector: a quoted header, blanks and tabs around fields, Windows
// line ends, a benchmark with no elevation, and a last line cut off without its line feed. The cleaned point
// lines whose names fit "P100?" (any case) and carry a real elevation are gathered with the code word "road"
// shortened to "RD".
TEST(StringScenario, FieldBookSelection)
{
    Stream book("\"PT\",\"X\",\"Y\",\"Z\",\"CODE\"\r\n"
                "  P1001 , 1000.000 , 2000.000 , 100.25 , road cl\r\n"
                "P1002,1010.500,2000.000,100.30,ROAD EP\r\n"
                "\tBM1,995.000,1990.000,-,bench\n"
                "p1003,1021.000,2000.000,100.35,Road CL\n"
                "P2001,1100.000,2100.000,101.00,road cl");
    char line[128], *gathered = nullptr;
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
        const std::string fields(line), name = fields.substr(0, fields.find(','));
        const std::string z = fields.substr(fields.find(',', fields.find(',', fields.find(',') + 1) + 1) + 1);
        if (tsString_strcmpiWildCardMatch(name.c_str(), "P100?") != 0 ||
            !tsString_isReal(z.substr(0, z.find(',')).c_str())) {
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
