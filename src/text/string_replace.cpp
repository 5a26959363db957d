// Insertion and replacement inside the caller's buffer, which must have the
// room that a longer result takes.
#include <array>
#include <cstring>

#include <tessar/frame.h>
#include <tessar/text.h>

#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

// The most that tsString_replaceSubstring handles: the text from the
// replaced position plus the replaced count.
constexpr std::size_t kReplaceLimit = 256;

// Replaces every occurrence of find, as located by findFirst(text, find),
// with replacement. After each replacement the search starts again: the
// design restarts at the beginning of s, and this restarts find's length
// minus one characters before the replaced place, which finds the same
// occurrence, since any occurrence that starts earlier lies wholly in the
// unchanged front and would have been found before this one.
template <class FindFirst>
int32_t replaceAll(char *s, const char *find, const char *replacement, FindFirst findFirst)
{
    if (s == nullptr || find == nullptr || replacement == nullptr || *s == '\0' || *find == '\0')
        return TESSAR_FAILURE;
    const std::size_t findLength = std::strlen(find);
    const std::size_t replacementLength = std::strlen(replacement);
    std::size_t length = std::strlen(s);
    std::size_t from = 0;
    while (char *at = findFirst(s + from, find)) {
        const auto position = static_cast<std::size_t>(at - s);
        // Equal lengths overwrite; otherwise the tail, terminator included,
        // moves right or left by the difference.
        if (replacementLength != findLength)
            std::memmove(at + replacementLength, at + findLength, length - position - findLength + 1);
        std::memcpy(at, replacement, replacementLength);
        length = length - findLength + replacementLength;
        from = position + 1 > findLength ? position + 1 - findLength : 0;
    }
    return 0;
}

char *findExact(char *s, const char *find) noexcept
{
    return std::strstr(s, find);
}

}  // namespace

int32_t tsString_insertString(char *s, const char *text, int32_t index)
{
    if (s == nullptr || text == nullptr || index < 0) return TESSAR_FAILURE;
    const std::size_t added = std::strlen(text);
    if (added == 0) return 0;
    const std::size_t length = std::strlen(s);
    const auto at = static_cast<std::size_t>(index);
    if (at <= length) std::memmove(s + at + added, s + at, length - at + 1);
    // Past the end nothing moves, and the text still lands at index, beyond
    // the terminator: the string reads as before.
    std::memcpy(s + at, text, added);
    return 0;
}

int32_t tsString_replaceSubstring(const char *s, char *position, int32_t count, const char *replacement)
{
    // s is only a null guard: the work is done at position.
    if (s == nullptr || count < 1) return TESSAR_FAILURE;
    const std::size_t fromPosition = std::strlen(position);
    const auto replaced = static_cast<std::size_t>(count);
    if (fromPosition + replaced > kReplaceLimit) return TESSAR_FAILURE;
    // The tail after the replaced characters waits in a stack buffer. A count
    // that reaches past the terminator leaves no tail.
    std::array<char, kReplaceLimit + 1> tail{};
    if (replaced < fromPosition) std::memcpy(tail.data(), position + replaced, fromPosition - replaced);
    std::strcpy(position, replacement);
    std::strcat(position, tail.data());
    return 0;
}

int32_t tsString_replaceAllSubstrings(char *s, const char *find, const char *replacement)
{
    return replaceAll(s, find, replacement, findExact);
}

int32_t tsString_replaceAllSubstringsi(char *s, const char *find, const char *replacement)
{
    return replaceAll(s, find, replacement, tsString_strstri);
}
