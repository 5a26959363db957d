// Number text: recognition of integers and reals as people type them, and the
// conversions of 64-bit and unsigned 32-bit integers to and from text.
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <tessar/frame.h>
#include <tessar/text.h>

#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

// The recognition tests work on a copy in a 264-byte buffer, so they see at
// most the first 263 characters. The text is taken as it stands (a percent
// sign is an ordinary character here), which is what the copy would hold.
constexpr std::size_t kWorkingLength = 263;

// The tested text: at most kWorkingLength characters, blanks stripped at both ends.
std::string_view strippedText(const char *s) noexcept
{
    std::string_view text(s, strnlen(s, kWorkingLength));
    const std::size_t first = text.find_first_not_of(kBlank);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

std::string_view withoutSign(std::string_view text) noexcept
{
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) text.remove_prefix(1);
    return text;
}

bool allDigits(std::string_view text) noexcept
{
    for (const char c : text)
        if (!isDecimalDigit(c)) return false;
    return true;
}

// An optional sign, then at least one digit and nothing else.
bool isIntegerText(std::string_view text) noexcept
{
    const std::string_view digits = withoutSign(text);
    return !digits.empty() && allDigits(digits);
}

// Exactly one point with at least one character after it; after an optional
// sign, only digits and that point. So ".5" is a real, "5." and "5" are not.
bool isRealText(std::string_view text) noexcept
{
    const std::size_t point = text.find('.');
    if (point == std::string_view::npos || point + 1 == text.size()) return false;
    if (text.find('.', point + 1) != std::string_view::npos) return false;
    for (const char c : withoutSign(text))
        if (c != '.' && !isDecimalDigit(c)) return false;
    return true;
}

bool startsWithMinus(std::string_view text) noexcept
{
    return !text.empty() && text.front() == '-';
}

// Prints into buffer, cut to size characters: size + 1 bytes at most.
template <class Value> int32_t printCut(char *buffer, int32_t size, const char *format, Value value)
{
    if (buffer == nullptr || size < 1) return TESSAR_FAILURE;
    std::snprintf(buffer, static_cast<std::size_t>(size) + 1, format, value);
    return 0;
}

}  // namespace

int32_t tsString_isDigit(const char *s)
{
    return s != nullptr && isDecimalDigit(*s) ? 1 : 0;
}

int32_t tsString_isInteger(const char *s)
{
    return s != nullptr && isIntegerText(strippedText(s)) ? 1 : 0;
}

int32_t tsString_isPositiveInteger(const char *s)
{
    if (s == nullptr) return 0;
    const std::string_view text = strippedText(s);
    return isIntegerText(text) && !startsWithMinus(text) ? 1 : 0;
}

int32_t tsString_isNegativeInteger(const char *s)
{
    if (s == nullptr) return 0;
    const std::string_view text = strippedText(s);
    return isIntegerText(text) && startsWithMinus(text) ? 1 : 0;
}

int32_t tsString_isReal(const char *s)
{
    return s != nullptr && isRealText(strippedText(s)) ? 1 : 0;
}

int32_t tsString_isPositiveReal(const char *s)
{
    if (s == nullptr) return 0;
    const std::string_view text = strippedText(s);
    return isRealText(text) && !startsWithMinus(text) ? 1 : 0;
}

int32_t tsString_isNegativeReal(const char *s)
{
    if (s == nullptr) return 0;
    const std::string_view text = strippedText(s);
    return isRealText(text) && startsWithMinus(text) ? 1 : 0;
}

int32_t tsString_isNumeric(const char *s)
{
    return tsString_isInteger(s) != 0 || tsString_isReal(s) != 0 ? 1 : 0;
}

int64_t tsString_toInt64(const char *s)
{
    if (s == nullptr || *s == '\0') return 0;
    // The scan of a decimal 64-bit integer: leading white space, a sign and
    // digits; 0 when nothing scans. Out-of-range text gives the nearest limit.
    return static_cast<int64_t>(std::strtoll(s, nullptr, 10));
}

int32_t tsString_fromInt64(char *buffer, int32_t size, int64_t value)
{
    return printCut(buffer, size, "%" PRId64, value);
}

uint32_t tsString_toULong(const char *s)
{
    if (s == nullptr || *s == '\0') return 0;
    // The scan format is "%ul": an unsigned number followed by a literal "l"
    // that only has to match for the scan's count, never for the value, so it
    // is not looked for. As with the unsigned scan, "-5" wraps around, and
    // text beyond 32 bits keeps its low 32 bits.
    return static_cast<uint32_t>(std::strtoull(s, nullptr, 10));
}

int32_t tsString_fromULong(char *buffer, int32_t size, uint32_t value)
{
    // The print format is the literal "%ul": the number followed by the
    // letter l, so 123 prints "123l".
    return printCut(buffer, size, "%ul", static_cast<unsigned int>(value));
}
