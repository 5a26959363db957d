// Expansion of a compressed point-name list into the plain form: ranges
// first-last become every name between, in either direction, with the zero
// padding of the range's ends carried over; a gap ",," becomes the word GAP.
#include <array>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include <tessar/pointnames.h>
#include <tessar/system.h>
#include <tessar/text.h>

#include "text/pointnames.hpp"
#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

constexpr int32_t kNoMemoryForResult = -1;
constexpr int32_t kNoWorkingMemory = -2;
constexpr int32_t kBadRange = 2;
constexpr int32_t kPaddingDisagrees = 3;

// The left name of a range has at most 9 characters, as typed.
constexpr std::size_t kLeftNameLimit = 10;

constexpr const char *kGapMark = ",,";
constexpr char kGapToken = '+';
constexpr const char *kGapWord = "GAP";

// One end of a range: the letters of its name, its number, and the length of
// its numeric text (what follows the letters), which is zero padded when it
// has more characters than the number has digits.
struct RangeEnd {
    std::string prefix;
    int32_t number = -1;
    std::size_t textLength = 0;
    bool padded = false;
};

void readRangeEnd(const char *name, RangeEnd &end)
{
    end.prefix.clear();
    end.number = splitPointName(name, [&end](char c) { end.prefix.push_back(c); });
    end.textLength = std::strlen(name) - end.prefix.size();
    end.padded = end.textLength > static_cast<std::size_t>(tsUtil_numberOfDigit(end.number));
}

// Both ends carry prefixes of one length that agree apart from case.
bool samePrefix(const RangeEnd &left, const RangeEnd &right)
{
    if (left.prefix.size() != right.prefix.size()) return false;
    return left.prefix.empty() || tsString_matchi(left.prefix.c_str(), right.prefix.c_str()) != 0;
}

// Zero padding on one end must be readable as a fixed width for the whole
// run: 01-10 and 10-01 are, 001-10, 1-010 and 010-1 are not.
bool paddingAgrees(const RangeEnd &left, const RangeEnd &right)
{
    const bool descending = left.number > right.number;
    if (left.padded && right.padded) return left.textLength == right.textLength;
    if (right.padded) return descending && left.textLength == right.textLength;
    if (left.padded) return !descending && left.textLength <= right.textLength;
    return true;
}

// Every name from the left end to the right one, by steps of one, with the
// left prefix in its case. When padding is in play, a value with fewer
// digits than the left numeric text is zero filled to that text's width.
int32_t emitRun(const RangeEnd &left, const RangeEnd &right, const char *separator, ResultText &out)
{
    const bool padded = left.padded || right.padded;
    const auto width = static_cast<int32_t>(left.textLength);
    std::array<char, 32> zeroFilled;
    std::snprintf(zeroFilled.data(), zeroFilled.size(), "%%s%%0%dd%%s", width);
    const char *prefix = left.prefix.c_str();
    const int32_t step = left.number > right.number ? -1 : 1;
    for (int32_t value = left.number;; value += step) {
        const bool ok = padded && width > tsUtil_numberOfDigit(value)
                            ? out.append(zeroFilled.data(), prefix, value, separator)
                            : out.append("%s%d%s", prefix, value, separator);
        if (!ok) return kNoMemoryForResult;
        if (value == right.number) return 0;
    }
}

// A range token, cut at its first "-" into the left and the right name.
int32_t expandRange(char *token, char *dash, const char *separator, ResultText &out, RangeEnd &left,
                    RangeEnd &right)
{
    *dash = '\0';
    if (std::strlen(token) >= kLeftNameLimit) return kBadRange;
    const char *leftName = stripBlanksInPlace(token);
    const char *rightName = stripBlanksInPlace(dash + 1);
    if (*rightName == '\0') return kBadRange;
    readRangeEnd(leftName, left);
    readRangeEnd(rightName, right);
    if (!samePrefix(left, right)) return kBadRange;
    if (!paddingAgrees(left, right)) return kPaddingDisagrees;
    return emitRun(left, right, separator, out);
}

int32_t expandElement(char *token, const char *separator, ResultText &out, RangeEnd &left, RangeEnd &right)
{
    if (*token == kGapToken) {
        if (!out.append("%s%s", kGapWord, separator)) return kNoMemoryForResult;
        *token = kBlank;
    }
    char *dash = std::strchr(token, '-');
    if (dash != nullptr) return expandRange(token, dash, separator, out, left, right);
    return out.append("%s%s", stripBlanksInPlace(token), separator) ? 0 : kNoMemoryForResult;
}

// Each ",," becomes the first delimiter and "+": the delimiter ends the
// element before, and the "+" opens a token that stands for the gap.
void markGaps(std::string &copy, char firstDelimiter)
{
    for (std::size_t at = copy.find(kGapMark); at != std::string::npos; at = copy.find(kGapMark, at + 2)) {
        copy[at] = firstDelimiter;
        copy[at + 1] = kGapToken;
    }
}

}  // namespace

int32_t tsString_expandAlphaNumeric(char **result, const char *text, const char *delimiters,
                                    const char *separator)
{
    try {
        // The working copy is released on every way out, failures included.
        std::string copy(text);
        RangeEnd left;
        RangeEnd right;
        ResultText out(result);
        if (!out.open()) return kNoMemoryForResult;
        markGaps(copy, delimiters[0]);
        // The C library's tokeniser walks the copy: its hidden position is
        // held across the whole loop.
        for (char *token = std::strtok(copy.data(), delimiters); token != nullptr;
             token = std::strtok(nullptr, delimiters)) {
            if (const int32_t status = expandElement(token, separator, out, left, right); status != 0)
                return status;
        }
        return 0;
    } catch (const std::bad_alloc &) {
        return kNoWorkingMemory;
    }
}
