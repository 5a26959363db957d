// Compression of a plain, blank-separated point-name list into runs: names
// with one prefix and consecutive numbers join into first-last, a GAP word
// closes a run with ",,".
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include <tessar/memory.h>
#include <tessar/pointnames.h>
#include <tessar/system.h>
#include <tessar/text.h>

#include "text/pointnames.hpp"
#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

constexpr int32_t kNoMemoryForResult = -1;
constexpr int32_t kNoWorkingMemory = -2;

constexpr const char *kBlankText = " ";
constexpr const char *kGapWord = "GAP";
constexpr char kPaddingZero = '0';

// A name read for compression: its prefix, which takes the leading zeros of
// the number (A007 reads as A00 and 7), and its number.
struct Name {
    std::string prefix;
    int32_t number = -1;
};

void readName(char *token, Name &name)
{
    const char *text = stripBlanksInPlace(token);
    name.prefix.clear();
    name.number = splitPointName(text, [&name](char c) { name.prefix.push_back(c); });
    // Characters that neither the prefix nor the number's digits account for
    // are the number's leading zeros: names join only with equal padding.
    const std::size_t accounted =
        name.prefix.size() + static_cast<std::size_t>(tsUtil_numberOfDigit(name.number));
    const std::size_t length = std::strlen(text);
    if (accounted < length) name.prefix.append(length - accounted, kPaddingZero);
}

// The run being gathered: its lowest and highest numbers, the number last
// added, and the direction of the last step (not of the whole run: 1 2 1
// leaves 1 to 2, descending).
struct Run {
    int32_t low = -1;
    int32_t high = -1;
    int32_t last = -1;
    bool descending = false;

    void open(int32_t number) noexcept
    {
        low = high = last = number;
        descending = false;
    }
};

// A run is written right behind its prefix, which stands in the result
// already: the first number, then the rest of the form.
bool emitRun(const Run &run, const std::string &prefix, const char *separator, ResultText &out)
{
    // A name without a number wrote its prefix only, with nothing after it.
    if (run.low == -1 || run.high == -1) return true;
    const char *p = prefix.c_str();
    if (run.low < run.high) {
        if (prefix.empty())
            return run.descending ? out.append("%d-%d%s", run.high, run.low, separator)
                                  : out.append("%d-%d%s", run.low, run.high, separator);
        // The ascending form with a prefix ends in a blank that the
        // descending one lacks, so that ascending runs read "A1-A3, B7,".
        return run.descending ? out.append("%d-%s%d%s", run.high, p, run.low, separator)
                              : out.append("%d-%s%d%s ", run.low, p, run.high, separator);
    }
    // A single name numbered below 1 contributes its prefix alone.
    if (run.last < 1) return true;
    return out.append("%d%s", run.last, separator);
}

// The same forms with the gap ending ",," in place of the separator; here a
// single number is written whatever its value.
bool emitRunBeforeGap(const Run &run, const std::string &prefix, ResultText &out)
{
    if (run.low == -1 || run.high == -1) return true;
    const char *p = prefix.c_str();
    if (run.low < run.high) {
        if (prefix.empty())
            return run.descending ? out.append("%d-%d,,", run.high, run.low)
                                  : out.append("%d-%d,,", run.low, run.high);
        return run.descending ? out.append("%d-%s%d,,", run.high, p, run.low)
                              : out.append("%d-%s%d,, ", run.low, p, run.high);
    }
    return out.append("%d,,", run.last);
}

// The walk over the names, with the tokeniser's hidden position held from
// the first name to the last.
int32_t compressNames(char *list, const char *separator, ResultText &out)
{
    Name name;
    std::string current;
    Run run;

    char *token = std::strtok(list, kBlankText);
    if (token != nullptr) {
        readName(token, name);
        current = name.prefix;
        if (!out.append("%s", current.c_str())) return kNoMemoryForResult;
        run.open(name.number);
    }
    while ((token = std::strtok(nullptr, kBlankText)) != nullptr) {
        if (tsString_matchi(stripBlanksInPlace(token), kGapWord) != 0) {
            if (!emitRunBeforeGap(run, current, out)) return kNoMemoryForResult;
            // The name after the gap opens a new run at once. When the list
            // ends on the gap, the run stays open and is written once more
            // at the end: "1 2 GAP" gives "1-2,,1-2,".
            token = std::strtok(nullptr, kBlankText);
            if (token == nullptr) break;
            readName(token, name);
            current = name.prefix;
            if (!out.append("%s", current.c_str())) return kNoMemoryForResult;
            run.open(name.number);
            continue;
        }
        readName(token, name);
        const int64_t number = name.number;
        if (name.prefix != current) {
            if (!emitRun(run, current, separator, out)) return kNoMemoryForResult;
            current = name.prefix;
            if (!out.append("%s", current.c_str())) return kNoMemoryForResult;
            run.open(name.number);
        } else if (number == int64_t{run.last} + 1) {
            run.high = run.last = name.number;
            run.descending = false;
        } else if (number == int64_t{run.last} - 1) {
            run.low = run.last = name.number;
            run.descending = true;
        } else {
            if (!emitRun(run, current, separator, out)) return kNoMemoryForResult;
            if (!out.append("%s", current.c_str())) return kNoMemoryForResult;
            run.open(name.number);
        }
    }
    if (!emitRun(run, current, separator, out)) return kNoMemoryForResult;
    out.stripBlanks();
    return 0;
}

struct MemFree {
    void operator()(char *block) const noexcept { tsMem_free(block); }
};
using HeapText = std::unique_ptr<char, MemFree>;

// The list to walk: a list that holds ranges is expanded first, with blanks
// between the names; any other is copied. Null on failure.
HeapText workingList(const char *list)
{
    char *text = nullptr;
    if (std::strchr(list, '-') != nullptr) {
        const int32_t status = tsString_expandAlphaNumeric(&text, list, kBlankText, kBlankText);
        HeapText expanded(text);
        return status == 0 ? std::move(expanded) : HeapText{};
    }
    (void)tsString_duplicate(&text, list);
    return HeapText(text);
}

}  // namespace

int32_t tsString_compressAlphaNumeric(char **result, const char *list, const char *separator)
{
    try {
        const HeapText names = workingList(list);
        if (names == nullptr) return kNoWorkingMemory;
        ResultText out(result);
        if (!out.open()) return kNoMemoryForResult;
        return compressNames(names.get(), separator, out);
    } catch (const std::bad_alloc &) {
        return kNoWorkingMemory;
    }
}
