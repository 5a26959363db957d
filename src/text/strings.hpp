// Character classes and small steps shared by the tsString_* sources.
// Case changes and the classes of white space and control characters follow
// the process locale, as the C library's <cctype> does; the case-blind
// comparisons that stand in for the platform's fold ASCII letters only.
#pragma once

#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tessar::detail {

inline constexpr char kBlank = ' ';
inline constexpr char kTab = '\t';
inline constexpr char kQuote = '"';

// Null taken as the empty string, for the null-tolerant functions.
inline const char *orEmpty(const char *s) noexcept
{
    return s != nullptr ? s : "";
}

inline char upper(char c) noexcept
{
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

inline char lower(char c) noexcept
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// White space: blank, tab, the line ends (and the other C-library spaces).
inline bool isWhiteSpace(char c) noexcept
{
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

inline bool isControl(char c) noexcept
{
    return std::iscntrl(static_cast<unsigned char>(c)) != 0;
}

inline bool isDecimalDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

inline unsigned char asciiLower(unsigned char c) noexcept
{
    return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c - 'A' + 'a') : c;
}

// An upper-cased copy of at most Length characters of s, in a buffer of the
// caller's frame (text beyond Length is cut off).
template <std::size_t Length> std::array<char, Length + 1> upperCasedCopy(const char *s) noexcept
{
    std::array<char, Length + 1> copy;
    const std::size_t length = strnlen(s, Length);
    for (std::size_t i = 0; i < length; ++i)
        copy[i] = upper(s[i]);
    copy[length] = '\0';
    return copy;
}

// Deletes count bytes at `at`, moving the tail and its terminator left.
inline void eraseAt(char *at, std::size_t count) noexcept
{
    std::memmove(at, at + count, std::strlen(at + count) + 1);
}

// The C library's pointer arithmetic where the design hands out an address
// that lies outside the caller's array (one before a text, or an offset taken
// from a null find): done on integers, so that forming it is well defined.
inline char *offsetAddress(const char *base, std::intptr_t offset) noexcept
{
    return reinterpret_cast<char *>(reinterpret_cast<std::uintptr_t>(base) +
                                    static_cast<std::uintptr_t>(offset));
}

// First occurrence of a non-empty needle in haystack, comparing upper-cased
// characters: the position that a search of upper-cased copies would find.
const char *findUpperCased(const char *haystack, const char *needle) noexcept;

}  // namespace tessar::detail
