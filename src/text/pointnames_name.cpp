// Point names one at a time: the split into letters and number, the natural
// order of two names, and the character tests of integer texts.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <tessar/frame.h>
#include <tessar/pointnames.h>
#include <tessar/text.h>

#include "text/pointnames.hpp"
#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

// The text-to-long conversion of the platform, whose long has 32 bits: blanks
// skipped, an optional sign, the digits; out-of-range values saturate.
int32_t textToLong(const char *s) noexcept
{
    const long value = std::strtol(s, nullptr, 10);
    return static_cast<int32_t>(
        std::clamp<long>(value, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

// Natural order: a name sits right-aligned in a field of 15 characters.
constexpr std::size_t kFieldWidth = 15;
using Field = std::array<char, kFieldWidth + 1>;

// Result of the comparison when a name cannot be set in its field.
constexpr int32_t kNotNormalised = 2;

// Moves the run of letters at the start of the right-aligned name to the
// field's start, blanks taking its place: "     AB12" becomes "AB     12".
// The scan for the name's first character must stop inside the field; a
// field of blanks alone fails.
int32_t moveLettersToFront(Field &field) noexcept
{
    std::size_t start = 0;
    while (start < kFieldWidth && field[start] == kBlank)
        ++start;
    if (start == kFieldWidth) return TESSAR_FAILURE;
    std::size_t end = start;
    while (end < kFieldWidth && isNameLetter(field[end]))
        ++end;
    const std::size_t letters = end - start;
    std::memmove(field.data(), field.data() + start, letters);
    std::memset(field.data() + letters, kBlank, start);
    return 0;
}

// Sets a name in its field: right-aligned and cut to 15 characters, and a
// leading run of letters at the front when the name is shorter than the field.
int32_t normalisePointName(const char *name, Field &field) noexcept
{
    std::snprintf(field.data(), field.size(), "%15.15s", name);
    if (isNameLetter(name[0]) && std::strlen(name) < kFieldWidth) return moveLettersToFront(field);
    return 0;
}

}  // namespace

namespace tessar::detail {

int32_t pointNameNumber(const char *name, std::size_t letters) noexcept
{
    if (letters == 0) return textToLong(name);
    // The digits are taken to follow the letters: as many characters are
    // skipped as there are letters, wherever the letters stood.
    const char *digits = name + letters;
    if (*digits == '\0') return -1;
    return textToLong(digits);
}

char *stripBlanksInPlace(char *s) noexcept
{
    while (*s == kBlank)
        ++s;
    std::size_t length = std::strlen(s);
    while (length > 0 && s[length - 1] == kBlank)
        --length;
    s[length] = '\0';
    return s;
}

}  // namespace tessar::detail

void tsString_splitPointName(const char *name, char *prefix, int32_t *number)
{
    char *out = prefix;
    *out = '\0';
    *number = tessar::detail::splitPointName(name, [&out](char c) { *out++ = c; });
    *out = '\0';
}

int32_t tsString_lexicographicalComparePointName(const char *a, const char *b)
{
    Field fieldA;
    Field fieldB;
    if (normalisePointName(a, fieldA) != 0 || normalisePointName(b, fieldB) != 0) return kNotNormalised;
    // A blank sorts below digits and letters: numbers right-aligned sort by
    // value, and a name without letters before one with letters.
    return tsString_strcmpi(fieldA.data(), fieldB.data());
}

int32_t tsString_isIntegerOrRange(const char *text)
{
    if (text == nullptr || !isDecimalDigit(*text)) return 0;
    // Any arrangement of digits and minus signs after the first digit passes:
    // "1-5-9" and "1-" too.
    for (const char *p = text + 1; *p != '\0'; ++p)
        if (!isDecimalDigit(*p) && *p != '-') return 0;
    return 1;
}

int32_t tsString_isCharacterAnInteger(const char *c)
{
    return isDecimalDigit(*c) ? 1 : 0;
}
