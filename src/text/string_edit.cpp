// Cleaning in place: characters blanked or deleted, blanks, tabs and quotes
// stripped from the ends, and the white-text test.
#include <cstring>

#include <tessar/frame.h>
#include <tessar/text.h>

#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

// Deletes every character for which drop is true, keeping the order of the
// rest. Returns the number deleted.
template <class Drop> int32_t deleteWhere(char *s, Drop drop) noexcept
{
    char *out = s;
    const char *in = s;
    for (; *in != '\0'; ++in)
        if (!drop(*in)) *out++ = *in;
    *out = '\0';
    return static_cast<int32_t>(in - out);
}

// Deletes the leading run of c. Returns the number deleted.
int32_t stripLeading(char *s, char c) noexcept
{
    std::size_t n = 0;
    while (s[n] == c)
        ++n;
    if (n > 0) eraseAt(s, n);
    return static_cast<int32_t>(n);
}

// Deletes the trailing run of c, at most limit characters (all when limit is
// negative). Returns the number deleted.
int32_t stripTrailing(char *s, char c, int32_t limit) noexcept
{
    std::size_t length = std::strlen(s);
    int32_t deleted = 0;
    while (length > 0 && s[length - 1] == c && (limit < 0 || deleted < limit)) {
        --length;
        ++deleted;
    }
    s[length] = '\0';
    return deleted;
}

}  // namespace

int32_t tsString_removeNoPrintable(char *s)
{
    if (s == nullptr) return 0;
    // Control characters become blanks: nothing is actually removed.
    char *p = s;
    for (; *p != '\0'; ++p)
        if (isControl(*p)) *p = kBlank;
    return static_cast<int32_t>(p - s);
}

int32_t tsString_removeChar(char *s, char c)
{
    if (s == nullptr) return 0;
    // Every c becomes a blank: despite the name nothing is removed.
    char *p = s;
    for (; *p != '\0'; ++p)
        if (*p == c) *p = kBlank;
    return static_cast<int32_t>(p - s);
}

int32_t tsString_removeCharacter(char *s, char c)
{
    return deleteWhere(s, [c](char x) { return x == c; });
}

void tsString_removeBlanks(char *s)
{
    if (s != nullptr) deleteWhere(s, isWhiteSpace);
}

void tsString_stripLeadingBlanks(char *s)
{
    stripLeading(s, kBlank);
}

int32_t tsString_stripTrailingBlanks(char *s)
{
    const auto length = static_cast<int32_t>(std::strlen(s));
    stripTrailing(s, kBlank, -1);
    return length;
}

int32_t tsString_stripTrailingTabs(char *s)
{
    const auto length = static_cast<int32_t>(std::strlen(s));
    stripTrailing(s, kTab, -1);
    return length;
}

int32_t tsString_stripLeadingQuotes(char *s)
{
    return stripLeading(s, kQuote);
}

int32_t tsString_stripTrailingQuotes(char *s, int32_t limit)
{
    if (limit == 0) return 0;
    return stripTrailing(s, kQuote, limit);
}

int32_t tsString_stripSurroundingWhiteSpace(char *s)
{
    if (s == nullptr) return TESSAR_FAILURE;
    // Blanks only, despite the name.
    tsString_stripLeadingBlanks(s);
    tsString_stripTrailingBlanks(s);
    return 0;
}

int32_t tsString_stripSurroundingQuotes(char *s)
{
    if (s == nullptr) return 0;
    tsString_stripSurroundingWhiteSpace(s);
    // Only as many closing quotes go as opening ones went, so a closing
    // quote that was never opened stays.
    const int32_t opened = tsString_stripLeadingQuotes(s);
    tsString_stripTrailingQuotes(s, opened);
    return opened;
}

int32_t tsString_clean(char *s, int32_t printable, int32_t leading, int32_t trailing)
{
    if (s == nullptr) return TESSAR_FAILURE;
    if (printable != 0) tsString_removeNoPrintable(s);
    if (leading != 0) tsString_stripLeadingBlanks(s);
    if (trailing != 0) tsString_stripTrailingBlanks(s);
    return 0;
}

int32_t tsString_isStrWhite(char *s)
{
    if (s == nullptr) return 1;
    // The test writes as it reads: each control character passed over is
    // turned into a blank (and so counts as one), up to the first character
    // that is not blank.
    for (; *s != '\0'; ++s) {
        if (isControl(*s)) *s = kBlank;
        if (*s != kBlank) return 0;
    }
    return 1;
}
