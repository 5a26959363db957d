// Token walking and group parsing: the offset walker over the C library's
// tokeniser, the one-pass parser that knows bracket-like groups, and the
// search of a plain token in a parsed set.
#include <cstring>

#include <tessar/frame.h>
#include <tessar/tokens.h>

namespace {

// Introducer of a token when no delimiter has been seen yet.
constexpr char kNoIntroducer = '\0';

constexpr int32_t kNoParts = -1;
constexpr int32_t kGroupIsDelimiter = -2;
constexpr int32_t kUnpairedGroups = -3;

bool sharesCharacter(const char *a, const char *b) noexcept
{
    return std::strpbrk(a, b) != nullptr;
}

// The token set being filled by tsString_parseTokenGroups.
struct TokenSet {
    int32_t *count;
    char **tokens;
    char *introducers;
    int32_t *groupFlags;

    void record(char *token, char introducer, int32_t group) const noexcept
    {
        tokens[*count] = token;
        introducers[*count] = introducer;
        groupFlags[*count] = group;
        ++*count;
    }
};

int32_t checkPartCharacters(const char *delimiters, const char *groups) noexcept
{
    if (delimiters == nullptr && groups == nullptr) return kNoParts;
    if (delimiters != nullptr && groups != nullptr && sharesCharacter(groups, delimiters))
        return kGroupIsDelimiter;
    // Group characters come in pairs: opening, then closing.
    if (groups != nullptr && std::strlen(groups) % 2 != 0) return kUnpairedGroups;
    return 0;
}

}  // namespace

char *tsString_parseTokens(char *text, int32_t *offset, int32_t length, const char *delimiters)
{
    if (text == nullptr || offset == nullptr || delimiters == nullptr) return nullptr;
    if (length < 1 || *offset >= length) return nullptr;
    // The tokeniser is restarted from the explicit offset at every call, so
    // the walk does not depend on its hidden position.
    char *token = std::strtok(text + *offset, delimiters);
    if (token == nullptr) return nullptr;
    // Behind the terminator that strtok wrote (or behind the text's own end,
    // which then lies at or beyond length and ends the walk).
    *offset = static_cast<int32_t>(token - text) + static_cast<int32_t>(std::strlen(token)) + 1;
    return token;
}

int32_t tsString_parseTokenGroups(char *text, const char *delimiters, const char *groups, int32_t *count,
                                  char **tokens, char *introducers, int32_t *groupFlags)
{
    if (const int32_t status = checkPartCharacters(delimiters, groups); status != 0) return status;
    const TokenSet set{count, tokens, introducers, groupFlags};
    *count = 0;

    int32_t depth = 0;
    char opening = '\0';
    char closing = '\0';
    char introducer = kNoIntroducer;
    bool plainOpen = false;
    for (char *p = text; *p != '\0'; ++p) {
        const char c = *p;
        if (depth == 0 && groups != nullptr) {
            if (const char *hit = std::strchr(groups, c)) {
                // The character after the hit closes the group. A closing
                // character met first opens a group too, and the one after it
                // (the next pair's opening one, or the end of the group
                // string, which never matches) closes that.
                opening = c;
                closing = hit[1];
                if (plainOpen) {
                    *p = '\0';
                    plainOpen = false;
                }
                set.record(p + 1, c, 1);
                depth = 1;
                continue;
            }
        }
        if (depth > 0) {
            // The closing character is tested first, so that a pair of equal
            // characters (double quotes) does not nest.
            if (c == closing) {
                if (--depth == 0) *p = '\0';
            } else if (c == opening) {
                ++depth;
            }
            continue;
        }
        // Outside groups, text is ignored when there are no delimiters.
        if (delimiters == nullptr) continue;
        if (std::strchr(delimiters, c) != nullptr) {
            if (plainOpen) {
                *p = '\0';
                plainOpen = false;
            }
            introducer = c;
        } else if (!plainOpen) {
            set.record(p, introducer, 0);
            plainOpen = true;
        }
    }
    return 0;
}

int32_t tsString_getTokenIndex(const char *needle, int32_t *index, int32_t count, char **tokens,
                               const int32_t *groupFlags)
{
    if (count < 1 || tokens == nullptr || groupFlags == nullptr || needle == nullptr) return TESSAR_FAILURE;
    for (int32_t i = 0; i < count; ++i) {
        if (groupFlags[i] != 0 || std::strstr(tokens[i], needle) == nullptr) continue;
        if (index != nullptr) *index = i;
        return 0;
    }
    if (index != nullptr) *index = -1;
    return TESSAR_FAILURE;
}
