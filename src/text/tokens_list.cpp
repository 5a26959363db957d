// Editing of delimited lists: appending, removing and filtering tokens,
// splitting off the first token, and the replacement of a keyword wherever
// it stands as a whole token.
#include <algorithm>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include <tessar/frame.h>
#include <tessar/text.h>
#include <tessar/tokens.h>

#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

// The join of a list rebuilt by tsString_parseOutToken.
constexpr char kListJoin = ',';

bool appendIfRoom(char *buffer, std::size_t &length, const char *piece, int32_t capacity) noexcept
{
    const std::size_t pieceLength = std::strlen(piece);
    if (length + pieceLength >= static_cast<std::size_t>(capacity)) return false;
    std::memcpy(buffer + length, piece, pieceLength + 1);
    length += pieceLength;
    return true;
}

// Where tokens stand in a list, as the C library's tokeniser walks it.
struct TokenPlace {
    std::size_t offset;
    std::size_t index;  // rank in the walk
};

// The place of the list's last token, from a walk over a heap copy.
std::optional<TokenPlace> lastTokenPlace(const char *list, const char *delimiters)
{
    std::string copy(list);
    std::optional<TokenPlace> last;
    std::size_t index = 0;
    for (char *t = std::strtok(copy.data(), delimiters); t != nullptr; t = std::strtok(nullptr, delimiters))
        last = TokenPlace{static_cast<std::size_t>(t - copy.data()), index++};
    return last;
}

// The place of the first token equal to token, case included, from a walk
// over a fresh heap copy.
std::optional<TokenPlace> exactTokenPlace(const char *list, const char *delimiters, const char *token)
{
    std::string copy(list);
    std::size_t index = 0;
    for (char *t = std::strtok(copy.data(), delimiters); t != nullptr; t = std::strtok(nullptr, delimiters)) {
        if (std::strcmp(t, token) == 0) return TokenPlace{static_cast<std::size_t>(t - copy.data()), index};
        ++index;
    }
    return std::nullopt;
}

// The text with every whole token equal to keyword (apart from case)
// replaced. Each hit is one level of recursion on the text behind it; the
// text is cut at the hit for a moment and restored.
std::string replacedKeyword(char *text, const char *delimiters, const char *keyword, const char *replacement,
                            int32_t &count)
{
    count = 0;
    std::string work(text);
    char *hit = std::strtok(work.data(), delimiters);
    while (hit != nullptr && !tsString_matchi(hit, keyword))
        hit = std::strtok(nullptr, delimiters);
    if (hit == nullptr) return std::string(text);

    char *at = text + (hit - work.data());
    int32_t behindCount = 0;
    const std::string behind =
        replacedKeyword(at + std::strlen(hit), delimiters, keyword, replacement, behindCount);
    const char kept = *at;
    *at = '\0';
    std::string result = std::string(text) + replacement + behind;
    *at = kept;
    count = 1 + behindCount;
    return result;
}

}  // namespace

int32_t tsString_appendToken(char *buffer, int32_t capacity, const char *separator, const char *token)
{
    if (buffer == nullptr || token == nullptr || capacity < 1 || *token == '\0') return TESSAR_FAILURE;
    std::size_t length = std::strlen(buffer);
    // The separator goes in even on an empty buffer, and stays there when
    // only the token does not fit.
    if (separator != nullptr && !appendIfRoom(buffer, length, separator, capacity)) return TESSAR_FAILURE;
    if (!appendIfRoom(buffer, length, token, capacity)) return TESSAR_FAILURE;
    return 0;
}

int32_t tsString_removeToken(char *list, const char *delimiters, const char *token)
{
    if (list == nullptr || token == nullptr || *token == '\0') return TESSAR_FAILURE;
    try {
        const std::optional<TokenPlace> last = lastTokenPlace(list, delimiters);
        const std::optional<TokenPlace> found = exactTokenPlace(list, delimiters, token);
        if (!found) return TESSAR_FAILURE;

        // As many characters go with the token as the delimiter string has:
        // made for lists with one delimiter between tokens. The first token
        // takes the ones after it, any other the ones before it.
        const std::size_t n = std::strlen(delimiters);
        const std::size_t tokenLength = std::strlen(token);
        const std::size_t length = std::strlen(list);
        std::size_t from = found->offset;
        std::size_t to = found->offset + tokenLength;
        if (found->index == 0)
            to += n;
        else
            from = from >= n ? from - n : 0;
        if (last && last->offset == found->offset) {
            // The last token: the list ends where the removal starts.
            list[from] = '\0';
        } else {
            eraseAt(list + from, std::min(to, length) - from);
        }
        return 0;
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}

int32_t tsString_parseOutToken(char *list, int32_t *found, const char *delimiters, const char *token)
{
    if (found == nullptr) return TESSAR_FAILURE;
    *found = 0;
    try {
        // A null list reads as empty: an empty token set.
        std::string copy(orEmpty(list));
        // A list of L characters has at most L tokens.
        std::vector<char *> tokens(copy.size() + 1);
        std::vector<char> introducers(copy.size() + 1);
        std::vector<int32_t> groupFlags(copy.size() + 1);
        int32_t count = 0;
        (void)tsString_parseTokenGroups(copy.data(), delimiters, nullptr, &count, tokens.data(),
                                        introducers.data(), groupFlags.data());
        if (count == 0) return 0;

        std::string rebuilt;
        for (int32_t i = 0; i < count; ++i) {
            char *t = tokens[static_cast<std::size_t>(i)];
            (void)tsString_clean(t, 1, 1, 1);
            if (tsString_strcmpi(t, token) == 0) {
                *found = 1;
                continue;
            }
            if (!rebuilt.empty()) rebuilt += kListJoin;
            rebuilt += t;
        }
        // One comma between tokens never takes more room than the
        // delimiters between them did.
        std::memcpy(list, rebuilt.c_str(), rebuilt.size() + 1);
        return 0;
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}

int32_t tsString_extractFirstStringBetweenDelimiters(const char *text, const char *delimiters, char *first,
                                                     char *rest)
{
    if (text == nullptr || delimiters == nullptr || first == nullptr || rest == nullptr)
        return TESSAR_FAILURE;
    // The first token of the text's first 499 characters, which is what a
    // tokeniser run over a 500-byte copy finds.
    constexpr std::size_t kCopyLength = 499;
    const std::size_t length = strnlen(text, kCopyLength);
    const std::size_t start = std::min(std::strspn(text, delimiters), length);
    if (start == length) return TESSAR_FAILURE;
    const std::size_t tokenLength = std::min(std::strcspn(text + start, delimiters), length - start);
    std::memcpy(first, text + start, tokenLength);
    first[tokenLength] = '\0';
    // The rest starts at the delimiter behind the token, from the given text.
    std::strcpy(rest, text + start + tokenLength);
    return 0;
}

int32_t tsString_replaceStringForKeyword(char *text, const char *delimiters, const char *keyword,
                                         const char *replacement, char *output, int32_t *count)
{
    if (count != nullptr) *count = 0;
    if (text == nullptr || delimiters == nullptr || keyword == nullptr || replacement == nullptr ||
        output == nullptr)
        return TESSAR_FAILURE;
    try {
        int32_t replaced = 0;
        const std::string result = replacedKeyword(text, delimiters, keyword, replacement, replaced);
        std::memcpy(output, result.c_str(), result.size() + 1);
        if (count != nullptr) *count = replaced;
        return 0;
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}
