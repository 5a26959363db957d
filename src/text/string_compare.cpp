// Comparisons of 8-bit text with null taken as empty, the comparison of 8-bit
// with 16-bit text, and case changes in place.
#include <array>
#include <cstring>
#include <cuchar>
#include <cwchar>

#include <tessar/text.h>

#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

// The platform's case-blind compare: ASCII letters folded to lower case, the
// result the difference of the first folded bytes that differ.
int32_t compareAsciiCaseBlind(const char *a, const char *b) noexcept
{
    const auto *p = reinterpret_cast<const unsigned char *>(orEmpty(a));
    const auto *q = reinterpret_cast<const unsigned char *>(orEmpty(b));
    for (;; ++p, ++q) {
        const int32_t d = int32_t{asciiLower(*p)} - int32_t{asciiLower(*q)};
        if (d != 0 || *p == '\0') return d;
    }
}

constexpr std::size_t kWideLimit = 512;

// Widens a in the process locale into at most kWideLimit units. A byte that
// the locale cannot decode is taken as the unit of the same value, so that
// 8-bit text in the C locale widens byte for byte.
void widen(const char *a, std::array<char16_t, kWideLimit + 1> &wide) noexcept
{
    std::mbstate_t state{};
    const char *end = a + std::strlen(a);
    std::size_t count = 0;
    while (count < kWideLimit && a < end) {
        char16_t unit = 0;
        const std::size_t used = std::mbrtoc16(&unit, a, static_cast<std::size_t>(end - a), &state);
        if (used == static_cast<std::size_t>(-3)) {
            wide[count++] = unit;  // second half of a surrogate pair: no byte consumed
        } else if (used == static_cast<std::size_t>(-1) || used == static_cast<std::size_t>(-2)) {
            wide[count++] = static_cast<unsigned char>(*a++);
            state = std::mbstate_t{};
        } else {
            wide[count++] = unit;
            a += used;
        }
    }
    wide[count] = u'\0';
}

}  // namespace

int32_t tsString_strcmp(const char *a, const char *b)
{
    // The C library compares the bytes as unsigned characters.
    const int r = std::strcmp(orEmpty(a), orEmpty(b));
    return (r > 0) - (r < 0);
}

int32_t tsString_strcmpi(const char *a, const char *b)
{
    return compareAsciiCaseBlind(a, b);
}

int32_t tsString_mbscmp(const char *a, const char *b)
{
    return std::strcmp(orEmpty(a), orEmpty(b));
}

int32_t tsString_mbscmpi(const char *a, const char *b)
{
    return compareAsciiCaseBlind(a, b);
}

int32_t tsString_match(const char *a, const char *b)
{
    return tsString_strcmp(a, b) == 0 ? 1 : 0;
}

int32_t tsString_matchi(const char *a, const char *b)
{
    return tsString_strcmpi(a, b) == 0 ? 1 : 0;
}

int32_t tsString_strnieql(const char *a, const char *b, int32_t n)
{
    // No string is shorter than a count below 1, so the order of the two
    // tests does not matter.
    if (n < 1) return 1;
    const auto count = static_cast<std::size_t>(n);
    a = orEmpty(a);
    b = orEmpty(b);
    if (strnlen(a, count) < count || strnlen(b, count) < count) return 0;
    for (std::size_t i = 0; i < count; ++i)
        if (upper(a[i]) != upper(b[i])) return 0;
    return 1;
}

int32_t tsString_cmpMbsToWcs(const char *a, const char16_t *b)
{
    std::array<char16_t, kWideLimit + 1> wide{};
    widen(orEmpty(a), wide);
    const char16_t *q = b != nullptr ? b : u"";
    for (const char16_t *p = wide.data();; ++p, ++q) {
        if (*p != *q) return *p < *q ? -1 : 1;
        if (*p == u'\0') return 0;
    }
}

char *tsString_uppercase(char *s)
{
    if (s == nullptr) return s;
    for (char *p = s; *p != '\0'; ++p)
        *p = upper(*p);
    return s;
}

char *tsString_lowercase(char *s)
{
    if (s == nullptr) return s;
    for (char *p = s; *p != '\0'; ++p)
        *p = lower(*p);
    return s;
}
