// Searching: case-insensitive search in its two forms, the word around a
// found text, and counting a character.
#include <array>
#include <cstring>

#include <tessar/text.h>

#include "text/strings.hpp"

using namespace tessar::detail;

namespace tessar::detail {

const char *findUpperCased(const char *haystack, const char *needle) noexcept
{
    const char first = upper(*needle);
    for (; *haystack != '\0'; ++haystack) {
        if (upper(*haystack) != first) continue;
        std::size_t k = 1;
        while (needle[k] != '\0' && upper(haystack[k]) == upper(needle[k]))
            ++k;
        if (needle[k] == '\0') return haystack;
        // The haystack ran out before the needle: no later start can hold it.
        if (haystack[k] == '\0') return nullptr;
    }
    return nullptr;
}

}  // namespace tessar::detail

namespace {

constexpr std::size_t kStackCopy = 128;

}  // namespace

char *tsString_strstri(const char *haystack, const char *needle)
{
    if (haystack == nullptr || needle == nullptr || *haystack == '\0' || *needle == '\0') return nullptr;
    // Comparing upper-cased characters finds the same place as a search of
    // upper-cased copies, without making the copies.
    return const_cast<char *>(findUpperCased(haystack, needle));
}

char *tsString_stristr(const char *haystack, const char *needle)
{
    // Upper-cased stack copies of the first kStackCopy characters of each.
    const auto head = upperCasedCopy<kStackCopy>(haystack);
    const auto word = upperCasedCopy<kStackCopy>(needle);
    const char *found = std::strstr(head.data(), word.data());
    // The offset of the find in the copy is applied to the caller's text.
    // Absence is not told apart: the offset is then taken from a null find,
    // and the address handed back is meaningless (though never null).
    const auto offset = static_cast<std::intptr_t>(reinterpret_cast<std::uintptr_t>(found) -
                                                   reinterpret_cast<std::uintptr_t>(head.data()));
    return offsetAddress(haystack, offset);
}

int32_t tsString_findFilename(const char *text, char **wordStart, const char *needle)
{
    if (text == nullptr || needle == nullptr || *text == '\0' || *needle == '\0') return 0;
    const char *found = std::strstr(text, needle);
    if (found == nullptr) {
        if (wordStart != nullptr) *wordStart = nullptr;
        return 0;
    }
    // Walk back from the character before needle to the nearest white space.
    std::ptrdiff_t i = found - text - 1;
    while (i >= 0 && !isWhiteSpace(text[i]))
        --i;
    // The word starts after that white space. With none, the walk stops one
    // place before the text and the start is left there: one before the
    // text's first character, with a count one larger.
    const std::ptrdiff_t start = i >= 0 ? i + 1 : i;
    if (wordStart != nullptr) *wordStart = offsetAddress(text, start);
    return static_cast<int32_t>((found - text) - start);
}

int32_t tsString_getCharCount(const char *s, char c)
{
    int32_t count = 0;
    for (s = orEmpty(s); *s != '\0'; ++s)
        if (*s == c) ++count;
    return count;
}
