// Tokens of the value parser: white space, operators, numbers with the
// locale's decimal mark, words and punctuation, and the case-blind
// comparisons of words with the unit names.
#include "survey/parse.hpp"

#include <cstdio>
#include <cstdlib>
#include <cwctype>

namespace tessar::detail {

namespace {

inline bool isDigit(char16_t c) noexcept
{
    return c >= u'0' && c <= u'9';
}

// The character classes of the platform's wide functions, so that letters
// and punctuation outside ASCII follow the locale.
inline bool isSpace(char16_t c) noexcept
{
    return std::iswspace(static_cast<wint_t>(c)) != 0;
}

inline bool isLetter(char16_t c) noexcept
{
    return std::iswalpha(static_cast<wint_t>(c)) != 0;
}

inline bool isPunctuation(char16_t c) noexcept
{
    return std::iswpunct(static_cast<wint_t>(c)) != 0;
}

constexpr char16_t kDegreeSign = 0xB0;

// Case folding of the platform's wide case-blind compare: ASCII letters only.
inline char16_t foldCase(char16_t c) noexcept
{
    return (c >= u'a' && c <= u'z') ? static_cast<char16_t>(c - u'a' + u'A') : c;
}

// The unit of a token at i, with the terminator beyond its end, as the
// compare of a zero-terminated copy would see it.
inline char16_t unitAt(const Token &t, std::size_t i) noexcept
{
    return i < t.length ? t.text[i] : char16_t{0};
}

}  // namespace

bool Token::spells(const char *s) const noexcept
{
    std::size_t i = 0;
    for (; s[i] != '\0'; ++i)
        if (i >= length || text[i] != static_cast<unsigned char>(s[i])) return false;
    return i == length;
}

bool wordEquals(const Token &t, const char *word) noexcept
{
    if (!t.is(TokenKind::Word)) return false;
    std::size_t i = 0;
    for (; word[i] != '\0'; ++i)
        if (foldCase(unitAt(t, i)) != foldCase(static_cast<unsigned char>(word[i]))) return false;
    return i == t.length;
}

bool wordStartsWith(const Token &t, const char *prefix, std::size_t n) noexcept
{
    if (!t.is(TokenKind::Word)) return false;
    for (std::size_t i = 0; i < n; ++i)
        if (foldCase(unitAt(t, i)) != foldCase(static_cast<unsigned char>(prefix[i]))) return false;
    return true;
}

char16_t localeDecimalMark() noexcept
{
    char sample[64];
    std::snprintf(sample, sizeof sample, "%lf", 1.1);
    const char *p = sample;
    while (*p >= '0' && *p <= '9')
        ++p;
    return static_cast<char16_t>(static_cast<unsigned char>(*p));
}

Lexer::Lexer(const char16_t *text, char16_t decimalMark) noexcept : next_(text), mark_(decimalMark)
{
    advance();
}

// Digits, a decimal mark with the digits behind it, and an exponent: an E
// or e that a sign or a digit follows (otherwise the E is a word of its own).
std::size_t Lexer::numberLength(const char16_t *p, bool &real) const noexcept
{
    const char16_t *q = p;
    real = false;
    while (isDigit(*q))
        ++q;
    if (*q == mark_) {
        real = true;
        ++q;
        while (isDigit(*q))
            ++q;
    }
    if ((*q == u'E' || *q == u'e') && (q[1] == u'+' || q[1] == u'-' || isDigit(q[1]))) {
        real = true;
        q += (q[1] == u'+' || q[1] == u'-') ? 2 : 1;
        while (isDigit(*q))
            ++q;
    }
    return static_cast<std::size_t>(q - p);
}

Token Lexer::scan() noexcept
{
    while (isSpace(*next_))
        ++next_;
    Token t;
    t.text = next_;
    const char16_t c = *next_;
    if (c == 0) return t;

    t.length = 1;
    switch (c) {
    case u'+':
        t.kind = TokenKind::Plus;
        break;
    case u'-':
        t.kind = TokenKind::Minus;
        break;
    case u'/':
        t.kind = TokenKind::Slash;
        break;
    case u'*':
        t.kind = TokenKind::Star;
        break;
    case u'(':
        t.kind = TokenKind::Open;
        break;
    case u')':
        t.kind = TokenKind::Close;
        break;
    default:
        if (isDigit(c) || (c == mark_ && isDigit(next_[1]))) {
            bool real = false;
            t.length = numberLength(next_, real);
            t.kind = real ? TokenKind::Real : TokenKind::Integer;
        } else if (isLetter(c)) {
            std::size_t n = 1;
            while (isLetter(next_[n]))
                ++n;
            t.length = n;
            t.kind = TokenKind::Word;
        } else if (isPunctuation(c)) {
            t.kind = TokenKind::Punct;
        } else if (c == kDegreeSign) {
            t.kind = TokenKind::Degree;
        } else {
            // A character of no class reads as the end of the text: the
            // grammar stops before it, and nothing after it is looked at.
            t.length = 0;
            return t;
        }
    }
    next_ += t.length;
    return t;
}

std::size_t appendNarrow(char *text, std::size_t length, std::size_t capacity, const Token &t) noexcept
{
    for (std::size_t i = 0; i < t.length && length + 1 < capacity; ++i)
        text[length++] = static_cast<char>(t.text[i]);
    text[length] = '\0';
    return length;
}

double numberValue(const Token &t) noexcept
{
    char text[kTokenUnits];
    appendNarrow(text, 0, sizeof text, t);
    return std::strtod(text, nullptr);
}

}  // namespace tessar::detail
