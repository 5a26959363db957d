// Wild-card matching of a subject against a pattern of "?", "*" and
// "[...]" sets, answered in the manner of a comparison: 0 on a match.
#include <array>
#include <cstring>

#include <tessar/text.h>

#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

constexpr int32_t kMatch = 0;

// The upper-cased copies of the case-blind form hold 255 characters.
constexpr std::size_t kCaseBlindLength = 255;

// Matches subject against pattern (without its inverting "!"). The direction
// value starts at 1 and becomes 0 once a wild card is passed, or when a
// literal difference has the subject's character below the pattern's; a
// failed match answers -1 while it is 1 and 1 once it is 0.
int32_t matchWildCards(const char *subject, char *pattern)
{
    int32_t direction = 1;
    const auto noMatch = [&direction] { return direction != 0 ? -1 : 1; };
    for (;;) {
        switch (*pattern) {
        case '?':
            // A run of "?" takes one subject character each.
            direction = 0;
            for (; *pattern == '?'; ++pattern, ++subject)
                if (*subject == '\0') return noMatch();
            break;

        case '[': {
            // A set of literal characters up to "]", or to the end of the
            // pattern when none closes it; there are no ranges.
            direction = 0;
            char *set = pattern + 1;
            if (*set == '\0') return kMatch;  // a closing "[" matches whatever follows
            const bool negated = *set == '!';
            if (negated) {
                ++set;
                if (*set == '\0') return noMatch();  // a closing "[!" matches nothing
            }
            // The set is read as a string of its own: its "]" is overwritten
            // with a terminator for the look-up and put back at once, so the
            // pattern must be writable.
            char *close = std::strchr(set, ']');
            if (close != nullptr) *close = '\0';
            const bool inSet = *subject != '\0' && std::strchr(set, *subject) != nullptr;
            pattern = close != nullptr ? close + 1 : set + std::strlen(set);
            if (close != nullptr) *close = ']';
            if (inSet == negated) return noMatch();
            // The set takes one subject character. A negated set also accepts
            // an exhausted subject, which then stays at its end.
            if (*subject != '\0') ++subject;
            break;
        }

        case '*':
            direction = 0;
            while (*pattern == '*')
                ++pattern;
            if (*pattern == '\0') return kMatch;  // a closing star takes all that remains
            if (*subject == '\0') return noMatch();
            // The rest of the pattern is tried at each remaining subject
            // position in turn; the first that matches decides.
            for (; *subject != '\0'; ++subject)
                if (matchWildCards(subject, pattern) == kMatch) return kMatch;
            return noMatch();

        default:
            if (*subject == *pattern) {
                if (*pattern == '\0') return kMatch;
                ++subject;
                ++pattern;
                break;
            }
            // Characters are compared as signed here, so bytes above 0x7F
            // count as below every ASCII character.
            if (static_cast<signed char>(*subject) < static_cast<signed char>(*pattern)) direction = 0;
            return noMatch();
        }
    }
}

}  // namespace

int32_t tsString_strcmpWildCardMatch(const char *subject, char *pattern)
{
    // A leading "!" inverts the test: 1 on a match, 0 otherwise.
    if (*pattern == '!') return matchWildCards(subject, pattern + 1) == kMatch ? 1 : 0;
    return matchWildCards(subject, pattern);
}

int32_t tsString_strcmpiWildCardMatch(const char *subject, const char *pattern)
{
    const auto subjectCopy = upperCasedCopy<kCaseBlindLength>(subject);
    auto patternCopy = upperCasedCopy<kCaseBlindLength>(pattern);
    return tsString_strcmpWildCardMatch(subjectCopy.data(), patternCopy.data());
}
