// Relative file paths on Windows path rules: the backslash separates
// components, a drive letter ends in a colon, case does not count. These are
// text rules only; nothing here touches the file system.
#include <cstdio>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include <tessar/frame.h>
#include <tessar/system.h>
#include <tessar/text.h>

#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

constexpr char kSeparator = '\\';
constexpr char kSeparators[] = "\\";
constexpr char kDriveEnd = ':';
constexpr char kParentStep[] = "\\..";
constexpr std::size_t kParentStepLength = sizeof(kParentStep) - 1;
constexpr std::size_t kJoinBuffer = 264;

// The common directory of a and b, in a's spelling.
std::string_view commonPath(const char *a, const char *b) noexcept
{
    const std::string_view left(a);
    if (tsString_matchi(a, b)) return left;
    std::size_t shared = 0;
    while (a[shared] != '\0' && upper(a[shared]) == upper(b[shared]))
        ++shared;
    // Back to the last backslash (dropped) or colon (kept) of the prefix.
    for (std::size_t k = shared; k-- > 0;) {
        if (a[k] == kSeparator) return left.substr(0, k);
        if (a[k] == kDriveEnd) return left.substr(0, k + 1);
    }
    return {};
}

std::string upperCased(const char *s)
{
    std::string copy(s);
    (void)tsString_uppercase(copy.data());
    return copy;
}

// a's tail under b when b occurs in a (taking b to be a's start), else the
// way up from b to a when a occurs in b; nothing when neither holds.
std::optional<std::string> relativePath(const char *a, const char *b)
{
    const std::string upperA = upperCased(a);
    std::string upperB = upperCased(b);
    if (upperA.find(upperB) != std::string::npos) return std::string(a + std::strlen(b));
    if (upperB.find(upperA) == std::string::npos) return std::nullopt;
    // One "\.." for each component of b behind a's length.
    std::string up;
    char *tail = upperB.data() + upperA.size();
    for (char *c = std::strtok(tail, kSeparators); c != nullptr; c = std::strtok(nullptr, kSeparators))
        up += kParentStep;
    return up;
}

void copyOut(char *output, std::string_view text) noexcept
{
    // An empty view may have no data pointer at all.
    if (!text.empty()) std::memmove(output, text.data(), text.size());
    output[text.size()] = '\0';
}

enum class ParentStep { removed, cut, none, stopped };

// Removes the first "\.." of path with the component before it. With no
// backslash before it, path is cut at the "\.." instead. The removal goes
// through tsString_replaceSubstring, which refuses (and so stops the
// shortening) when 256 characters or more are concerned.
ParentStep removeParentStep(char *path)
{
    char *step = tsString_strstri(path, kParentStep);
    if (step == nullptr) return ParentStep::none;
    char *component = nullptr;
    for (char *p = step; p != path;) {
        if (*--p == kSeparator) {
            component = p;
            break;
        }
    }
    if (component == nullptr) {
        *step = '\0';
        return ParentStep::cut;
    }
    const auto removed = static_cast<int32_t>(step + kParentStepLength - component);
    if (tsString_replaceSubstring(path, component, removed, "") != 0) return ParentStep::stopped;
    return ParentStep::removed;
}

}  // namespace

int32_t tsFilename_getCommonPath(char *output, const char *a, const char *b)
{
    if (output == nullptr || a == nullptr || b == nullptr) return TESSAR_FAILURE;
    if (*a == '\0' || *b == '\0') return TESSAR_FAILURE;
    copyOut(output, commonPath(a, b));
    return 0;
}

int32_t tsFilename_getRelativePath(char *output, const char *a, const char *b)
{
    if (output == nullptr || a == nullptr || b == nullptr) return TESSAR_FAILURE;
    try {
        const std::optional<std::string> relative = relativePath(a, b);
        if (!relative) return TESSAR_FAILURE;
        copyOut(output, *relative);
        return 0;
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}

int32_t tsFilename_expressUsingRelativePath(char *output, const char *base, const char *target)
{
    if (output == nullptr || base == nullptr || target == nullptr || *base == '\0' || *target == '\0')
        return TESSAR_FAILURE;
    try {
        const std::string common(commonPath(base, target));
        if (common.empty()) return TESSAR_FAILURE;
        // The way up from base to the common path, then target below it.
        const std::optional<std::string> up = relativePath(common.c_str(), base);
        if (!up) return TESSAR_FAILURE;
        std::sprintf(output, "%s%s", up->c_str(), target + common.size());
        return 0;
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}

int32_t tsFilename_resolveRelativePath(char *output, char *path)
{
    if (output == nullptr || path == nullptr) return TESSAR_FAILURE;
    copyOut(output, path);
    // The first round works on the given path, which keeps that one removal
    // (or is left cut when no component stands before the "\..", while the
    // output keeps the copy).
    if (removeParentStep(path) != ParentStep::removed) return 0;
    copyOut(output, path);
    // Later rounds work on the output alone, by the same rule: a "\.." with
    // no component before it leaves the output cut there.
    while (removeParentStep(output) == ParentStep::removed) {
    }
    return 0;
}

int32_t tsFilename_fromRelativePath(char *output, const char *base, const char *relative)
{
    if (output == nullptr || base == nullptr || relative == nullptr) return TESSAR_FAILURE;
    *output = '\0';
    // The join is cut to the buffer's 263 characters.
    char joined[kJoinBuffer];
    std::snprintf(joined, sizeof joined, "%s%s", base, relative);
    if (joined[0] == '\0') return TESSAR_FAILURE;
    return tsFilename_resolveRelativePath(output, joined);
}
