// Station text: a distance along an alignment written as whole stations of
// 100 or 1000 units and a zero-padded remainder (1234.56 reads 12+34.56 or
// 1+234.56), with an optional region, and the partial stations that tick
// labels of a series show.
#include <tessar/format.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include <tessar/frame.h>

namespace {

enum StationStyle : int32_t { kPlain = 0, kHundreds = 2, kThousands = 3 };
enum LeadingStyle : int32_t { kBareRemainder = 0, kPlusRemainder = 1, kZeroPlusRemainder = 2 };

// The printed remainder (a station of any size prints in full), and with
// its padding zeros.
constexpr std::size_t kRemainderBytes = 400;
constexpr std::size_t kPaddedBytes = kRemainderBytes + 2;

// Truncation toward zero to a whole count. Counts beyond the 64-bit range,
// which no station reaches, saturate instead of overflowing.
int64_t wholeCount(double v)
{
    constexpr double kLimit = 9.0e18;
    if (std::isnan(v)) return 0;
    return static_cast<int64_t>(std::clamp(v, -kLimit, kLimit));
}

// A number scaled to the decimals and rounded half up, as a whole count.
int64_t scaledCount(double scale, double value)
{
    return wholeCount(scale * value + 0.5);
}

// Zeros that bring the remainder to the station's integer digits: 2 in
// hundreds, 3 in thousands. Compared in scaled counts, so a remainder that
// prints as 10.00 gets no zero.
const char *remainderZeros(int32_t style, double p, double r)
{
    const int64_t scaled = scaledCount(p, r);
    if (scaled < scaledCount(p, 10.0)) return style == kHundreds ? "0" : "00";
    if (style == kThousands && scaled < scaledCount(p, 100.0)) return "0";
    return "";
}

}  // namespace

// Rounding comes before the split into whole stations s and remainder r:
// 99.999 at 2 decimals in hundreds is one station and a remainder of
// -0.001. The remainder of a negative station is negative as well.
int32_t tsFormat_getFormattedStationEx(char *buffer, double value, int32_t decimals, int32_t style,
                                       int32_t leading, int32_t signedRemainder)
{
    if (buffer == nullptr) return TESSAR_FAILURE;
    if (style != kPlain && style != kHundreds && style != kThousands) return TESSAR_FAILURE;
    if (style == kPlain) {
        std::sprintf(buffer, "%.*lf", decimals, value);
        return 0;
    }
    // The split and the padding work with 0 to 15 decimals, the digits that a
    // double holds; so P is at least 1 and P times U fits in 64 bits.
    const double p = std::pow(10.0, std::clamp(decimals, 0, 15));
    const int64_t P = wholeCount(p + 0.5);
    const int64_t U = style == kHundreds ? 100 : 1000;
    const int64_t s = wholeCount(static_cast<double>(P) * value + 0.5) / (P * U);
    double r = value - static_cast<double>(s * U);

    // A negative remainder prints as 0 without the flag; with it, as its
    // absolute value, always in hundreds but in thousands only beside whole
    // stations. The two styles differ here on purpose.
    if (r < 0.0) {
        if (signedRemainder == 0)
            r = 0.0;
        else if (style == kHundreds || s != 0)
            r = std::fabs(r);
    }
    char printed[kRemainderBytes];
    std::snprintf(printed, sizeof printed, "%.*lf", decimals, r);
    char padded[kPaddedBytes];
    std::snprintf(padded, sizeof padded, "%s%s", remainderZeros(style, p, r), printed);

    if (s != 0) {
        std::sprintf(buffer, "%lld+%s", static_cast<long long>(s), padded);
        return 0;
    }
    switch (leading) {
    case kBareRemainder:
        std::strcpy(buffer, printed);  // no padding at all
        break;
    case kPlusRemainder:
        std::sprintf(buffer, "+%s", padded);
        break;
    case kZeroPlusRemainder:
        // Thousands have no negative form.
        std::sprintf(buffer, style == kHundreds && value < 0.0 ? "-0+%s" : "0+%s", padded);
        break;
    default:
        std::strcpy(buffer, padded);
        break;
    }
    return 0;
}

int32_t tsFormat_getFormattedStation(char *buffer, double value, int32_t decimals, int32_t style,
                                     int32_t leading)
{
    return tsFormat_getFormattedStationEx(buffer, value, decimals, style, leading, 0);
}

// Regions 0 and 1 are the alignment's first part and are not written.
int32_t tsFormat_getFormattedStationRegion(char *buffer, double value, int32_t region, int32_t decimals,
                                           int32_t style)
{
    const int32_t status = tsFormat_getFormattedStationEx(buffer, value, decimals, style, kBareRemainder, 0);
    if (status != 0) return status;
    if (region != 0 && region != 1) std::sprintf(buffer + std::strlen(buffer), " R %d", region);
    return 0;
}

namespace {

// What a tick label of a series shows: decimals, station style, the power
// of ten the value is reduced modulo (0: none) and the power of ten it is
// divided by, keeping the whole quotient (0: none).
struct SeriesFormat {
    int32_t decimals;
    int32_t style;
    int32_t modulusExponent;
    int32_t divisorExponent;
};

// Formats 1 to 29; in each run of five the decimals go from 0 to 4.
SeriesFormat seriesFormat(int32_t format)
{
    struct Run {
        int32_t firstFormat;
        int32_t count;
        SeriesFormat base;
    };
    static constexpr Run kRuns[] = {
        {1, 1, {0, kPlain, 3, 2}},      {2, 1, {0, kPlain, 0, 2}},      {3, 5, {0, kHundreds, 0, 0}},
        {8, 5, {0, kHundreds, 2, 0}},   {13, 1, {0, kPlain, 4, 3}},     {14, 1, {0, kPlain, 0, 3}},
        {15, 5, {0, kThousands, 0, 0}}, {20, 5, {0, kThousands, 3, 0}}, {25, 5, {0, kPlain, 0, 0}},
    };
    for (const Run &run : kRuns)
        if (format >= run.firstFormat && format < run.firstFormat + run.count) {
            SeriesFormat f = run.base;
            f.decimals = format - run.firstFormat;
            return f;
        }
    return {};
}

}  // namespace

int32_t tsFormat_getFormattedStationForSeries(char *buffer, double value, int32_t format)
{
    if (buffer == nullptr) return TESSAR_FAILURE;
    buffer[0] = '\0';
    // Format 0 is the empty label; formats outside 1 to 29 have no values and
    // are given the empty label as well.
    if (format < 1 || format > 29) return 0;
    const SeriesFormat f = seriesFormat(format);
    double x = value;
    if (f.modulusExponent > 0) x = std::fmod(x, std::pow(10.0, f.modulusExponent));
    if (f.divisorExponent > 0) {
        // The rest goes first, so that the quotient is exact: 234.56 less
        // 34.56 is exactly 200.
        const double divisor = std::pow(10.0, f.divisorExponent);
        x = std::trunc((x - std::fmod(x, divisor)) / divisor);
    }
    return tsFormat_getFormattedStationEx(buffer, x, f.decimals, f.style, kBareRemainder, 0);
}
