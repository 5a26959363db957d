// The value parser behind tsParse_stringTo*: a tokeniser over 16-bit text and
// one recursive-descent grammar of sums and products, whose atom (the value
// with its unit) each entry chooses. Every value is converted to internal
// units as its atom is read, so that the arithmetic works in metres, radians,
// seconds and metres per second.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tessar::detail {

// The one failure of the parser, 0x80004005, as its bit pattern in 32 bits.
inline constexpr int32_t kParseFailure = static_cast<int32_t>(0x80004005u);
inline constexpr int32_t kParseOk = 0;

inline bool parseFailed(int32_t status) noexcept
{
    return status != kParseOk;
}

// Token kinds; the numbers are the classes of the grammar.
enum class TokenKind : int32_t {
    End = 0,  // end of text, or a character of no other class
    Plus = 1,
    Minus = 2,
    Slash = 3,
    Star = 4,
    Open = 5,
    Close = 6,
    Integer = 7,  // digits
    Real = 8,     // digits with a decimal mark or an exponent
    Word = 9,     // letters
    Punct = 10,   // any other punctuation, one character
    Degree = 11,  // the degree sign, where the locale does not class it as punctuation
};

// A token is a view into the caller's text: kind, first unit and length.
struct Token {
    TokenKind kind = TokenKind::End;
    const char16_t *text = nullptr;
    std::size_t length = 0;

    bool is(TokenKind k) const noexcept { return kind == k; }
    bool isNumber() const noexcept { return kind == TokenKind::Integer || kind == TokenKind::Real; }
    // A one-character punctuation token c.
    bool isPunct(char16_t c) const noexcept { return kind == TokenKind::Punct && text[0] == c; }
    bool isPunctOrDegree() const noexcept { return kind == TokenKind::Punct || kind == TokenKind::Degree; }
    // The token's text is exactly the ASCII text s.
    bool spells(const char *s) const noexcept;
};

// Case-blind comparisons of a word token with an ASCII word, ASCII letters
// folded: the whole word, or its first n letters (a shorter word differs).
bool wordEquals(const Token &t, const char *word) noexcept;
bool wordStartsWith(const Token &t, const char *prefix, std::size_t n) noexcept;
inline bool wordBeginsWith(const Token &t, char letter) noexcept
{
    const char s[2] = {letter, '\0'};
    return t.is(TokenKind::Word) && wordStartsWith(t, s, 1);
}

// The decimal mark of the process locale: the first non-digit of 1.1
// printed with "%lf".
char16_t localeDecimalMark() noexcept;

// The tokeniser: the current token, and the way to the next. It is a small
// value, so that a copy saves a position and an assignment restores it.
class Lexer
{
  public:
    Lexer(const char16_t *text, char16_t decimalMark) noexcept;

    const Token &token() const noexcept { return current_; }
    void advance() noexcept { current_ = scan(); }
    // The token after the current one, the position left as it is.
    Token peek() const noexcept
    {
        Lexer ahead = *this;
        ahead.advance();
        return ahead.current_;
    }

  private:
    Token scan() noexcept;
    std::size_t numberLength(const char16_t *p, bool &real) const noexcept;

    const char16_t *next_;
    char16_t mark_;
    Token current_;
};

// Value of a number token's text, scanned as "%lf" does; text past 511
// units is not read.
double numberValue(const Token &t) noexcept;

// Appends the token's text to an 8-bit text of capacity units (ASCII
// narrowing; number texts are ASCII but for the locale's mark). Returns the
// new length; the text stays terminated and is cut at the capacity.
std::size_t appendNarrow(char *text, std::size_t length, std::size_t capacity, const Token &t) noexcept;

inline constexpr std::size_t kTokenUnits = 512;
inline constexpr std::size_t kStationNameUnits = 64;

// The parser state, one record on the stack of each entry.
struct ParseState {
    double linearUnit = 1.0;     // a length without a unit word; base of areas, volumes, stations
    double timeUnit = 1.0;       // a time without a unit word
    double velocityUnit = 1.0;   // a velocity without a unit word
    double curveLength = 0.0;    // reference length of a degree of curve
    double slopeLength = 1.0;    // divisor of a slope written with R
    double baseDirection = 0.0;  // back direction of an azimuth entry
    int32_t baseSense = 1;       // 0: angles count against the base direction's sense
    int32_t angleMode = 3;
    int32_t directionStyle = 1;
    int32_t slopeMode = 3;
    int32_t radiusMode = 1;  // 3: degree of curve by chord
    char16_t stationName[kStationNameUnits] = {};
    int32_t region = 0;
};

class Parser;
// An atom reader: reads one value of its kind at the current token.
using Atom = int32_t (Parser::*)(double &value);

class Parser
{
  public:
    Parser(const char16_t *text, ParseState &state) noexcept;

    // The whole text as one expression of the atom, followed by the end.
    int32_t whole(Atom atom, double &value) noexcept;

    // Atoms, in internal units.
    int32_t number(double &value) noexcept;
    int32_t length(double &value) noexcept;
    int32_t area(double &value) noexcept;
    int32_t volume(double &value) noexcept;
    int32_t time(double &value) noexcept;
    int32_t velocity(double &value) noexcept;
    int32_t slope(double &value) noexcept;
    int32_t angle(double &value) noexcept;
    int32_t direction(double &value) noexcept;
    int32_t radius(double &value) noexcept;
    int32_t stationWithRegion(double &value) noexcept;
    int32_t stationWithName(double &value) noexcept;

  private:
    int32_t expression(Atom atom, double &value) noexcept;
    int32_t term(Atom atom, double &value) noexcept;
    int32_t factor(Atom atom, double &value) noexcept;

    // Unit words: true and the factor in metres when the current token is
    // one (it is then consumed); false and the token left otherwise.
    bool lengthUnit(double &metres) noexcept;
    bool areaUnit(double &metres) noexcept;
    bool volumeUnit(double &metres) noexcept;
    bool timeUnit(double &seconds) noexcept;
    bool velocityUnit(double &metresPerSecond) noexcept;

    // A distance over a time, 100 FT / 2 S.
    int32_t distanceOverTime(double &value) noexcept;
    // The sexagesimal forms that a whole number opens; fills d, m, s.
    void sexagesimal(double first, double &d, double &m, double &s) noexcept;
    // A "-" that is followed by a number: a field separator in 45-30-15.
    bool atDashBeforeNumber() const noexcept;
    // The quadrant code after a direction's angle, 1 to 4, or 0 for none.
    int32_t quadrantCode() noexcept;
    // "R" and an integer: the region of a station.
    int32_t regionWord() noexcept;
    int32_t stationCore(double &value) noexcept;

    const Token &token() const noexcept { return lexer_.token(); }
    void advance() noexcept { lexer_.advance(); }

    Lexer lexer_;
    ParseState &state_;
};

}  // namespace tessar::detail
