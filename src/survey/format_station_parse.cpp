// Reading stations from 8-bit text: through the value parser, or taken apart
// by characters into prefix, station with region, and suffix, as in
// "PRE 12+34.56 R 2 SUF".
#include <tessar/format.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include <tessar/frame.h>
#include <tessar/parse.h>
#include <tessar/text.h>

#include "survey/format_angle.hpp"

namespace {

// The result of a text that holds no readable station.
constexpr int32_t kNoStation = 2;
// Longest number text and region text that are read.
constexpr std::size_t kNumberChars = 31;
constexpr std::size_t kRegionChars = 7;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// Copies a part of the cleaned text to an output that may be null.
void put(char *out, std::string_view part)
{
    if (out == nullptr) return;
    if (!part.empty()) std::memcpy(out, part.data(), part.size());
    out[part.size()] = '\0';
}

// The first "+" directly followed by a digit, or npos.
std::size_t stationPlus(std::string_view t)
{
    for (std::size_t i = 0; i + 1 < t.size(); ++i)
        if (t[i] == '+' && isDigit(t[i + 1])) return i;
    return std::string_view::npos;
}

// Where the pieces of a station lie in the text: [start, numberEnd) is the
// number with its plus, [regionStart, regionEnd) the region text after " R ".
struct StationSpan {
    std::size_t start = 0;
    std::size_t numberEnd = 0;
    std::size_t regionStart = 0;
    std::size_t regionEnd = 0;
    bool secondPoint = false;
    std::size_t end() const { return regionEnd > numberEnd ? regionEnd : numberEnd; }
};

// From the plus: back over the integer digits, forward over the digits and
// one decimal point. A second point ends the scan behind the digits that
// follow it. Then " R " and one character, and a second one if it is a
// digit, make the region.
StationSpan scanStation(std::string_view t, std::size_t plus)
{
    StationSpan span;
    span.start = plus;
    while (span.start > 0 && isDigit(t[span.start - 1]))
        --span.start;
    std::size_t i = plus + 1;
    bool point = false;
    while (i < t.size()) {
        if (isDigit(t[i])) {
            ++i;
        } else if (t[i] == '.' && !point) {
            point = true;
            ++i;
        } else if (t[i] == '.') {
            span.secondPoint = true;
            ++i;
            while (i < t.size() && isDigit(t[i]))
                ++i;
            break;
        } else {
            break;
        }
    }
    span.numberEnd = i;
    span.regionStart = span.regionEnd = i;
    if (!span.secondPoint && t.substr(i, 3) == " R ") {
        span.regionStart = span.regionEnd = i + 3;
        if (span.regionEnd < t.size()) ++span.regionEnd;
        if (span.regionEnd < t.size() && isDigit(t[span.regionEnd])) ++span.regionEnd;
    }
    return span;
}

int32_t takeApart(std::string_view t, double *value, int32_t *region, char *prefix, char *station,
                  char *suffix)
{
    const std::size_t plus = stationPlus(t);
    if (plus == std::string_view::npos) {
        put(prefix, {});
        put(station, t);
        put(suffix, {});
        return kNoStation;
    }
    const StationSpan span = scanStation(t, plus);
    // The prefix keeps the character that separates it from the station;
    // a single character alone is no prefix.
    put(prefix, span.start == 1 ? std::string_view{} : t.substr(0, span.start));
    put(station, t.substr(span.start, span.end() - span.start));
    if (span.secondPoint) return kNoStation;
    put(suffix, t.substr(span.end()));

    char number[kNumberChars + 1];
    std::size_t length = 0;
    for (char c : t.substr(span.start, span.numberEnd - span.start).substr(0, kNumberChars))
        if (c != '+') number[length++] = c;
    number[length] = '\0';
    if (tsString_isPositiveReal(number) == 0 && tsString_isPositiveInteger(number) == 0) return kNoStation;
    // Read by characters with the point as decimal mark, whatever the locale.
    if (value != nullptr) std::from_chars(number, number + length, *value);
    if (region != nullptr) {
        const std::string_view text = t.substr(span.regionStart, span.regionEnd - span.regionStart);
        *region = 0;
        std::from_chars(text.data(), text.data() + std::min(text.size(), kRegionChars), *region);
    }
    return 0;
}

}  // namespace

int32_t tsFormat_getDoubleStationRegion(double *value, int32_t *region, const char *text)
{
    char16_t wide[tessar::detail::kWideUnits];
    return tsParse_stringToStationByIndex(value, region, tessar::detail::widenText(wide, text), 1.0);
}

// Works on a cleaned copy, released on every path.
int32_t tsFormat_getDoubleStationRegionExt(const char *text, double *value, int32_t *region, char *prefix,
                                           char *station, char *suffix)
{
    if (text == nullptr) return TESSAR_FAILURE;
    try {
        std::string copy(text);
        tsString_clean(copy.data(), 1, 1, 1);
        copy.resize(std::strlen(copy.c_str()));
        return takeApart(copy, value, region, prefix, station, suffix);
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}
