// Number text: the fixed-decimal core that truncates or rounds and can
// zero-pad, significant digits, a number between a prefix and a suffix, and
// zero-filled integers.
#include <tessar/format.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include <tessar/frame.h>
#include <tessar/text.h>

namespace {

// Work buffers of the number text.
constexpr std::size_t kWorkBytes = 264;
constexpr std::size_t kNumberBytes = 144;

// Cuts a number text behind the given decimals, without rounding; with no
// decimals the point goes as well. The cut looks for a point: under a locale
// whose decimal mark is another character the text stays as printed.
void cutBehindDecimals(char *text, int32_t decimals)
{
    char *point = std::strchr(text, '.');
    if (point == nullptr) return;
    if (decimals <= 0) {
        *point = '\0';
        return;
    }
    if (std::strlen(point + 1) > static_cast<std::size_t>(decimals)) point[1 + decimals] = '\0';
}

// Characters before the point, a minus sign included; the whole length
// when there is no point.
std::size_t digitsBeforePoint(const char *text)
{
    const char *point = std::strchr(text, '.');
    return point != nullptr ? static_cast<std::size_t>(point - text) : std::strlen(text);
}

}  // namespace

int32_t tsFormat_doubleByDecimalDigitsExt(char *buffer, double value, int32_t decimals, int32_t truncate,
                                          int32_t pad, int32_t width)
{
    char work[kWorkBytes];
    if (truncate != 0) {
        // Sixteen decimals, then cut: 1.999 with 2 decimals reads 1.99.
        std::snprintf(work, sizeof work, "%.16f", value);
        cutBehindDecimals(work, decimals);
    } else {
        std::snprintf(work, sizeof work, "%.*lf", decimals, value);
    }
    const std::size_t digits = digitsBeforePoint(work);
    if (pad == 0 || width <= 0 || digits >= static_cast<std::size_t>(width)) {
        std::strcpy(buffer, work);
        return 0;
    }
    // The zeros go in front of everything, a minus sign too: -5 with width
    // 3 reads 0-5.
    const std::size_t zeros = static_cast<std::size_t>(width) - digits;
    std::memset(buffer, '0', zeros);
    std::strcpy(buffer + zeros, work);
    return 0;
}

int32_t tsFormat_doubleByDecimalDigits(char *buffer, double value, int32_t decimals)
{
    return tsFormat_doubleByDecimalDigitsExt(buffer, value, decimals, 1, 0, 0);
}

int32_t tsFormat_doubleByDecimalDigitsNoTrunc(char *buffer, double value, int32_t decimals)
{
    std::sprintf(buffer, "%.*lf", decimals, value);
    return 0;
}

// k, the integer part of log10 |value| + 1, counts the integer digits of a
// value of 1 and above; it is 0 from 0.01 up to 1 and negative below. With
// fewer digits than k the integer part is cut to n digits (123456.7 with 2
// reads 120000); otherwise the core cuts n - k decimals (1234.567 with 6
// reads 1234.56).
int32_t tsFormat_doubleBySignificantDigits(char *buffer, double value, int32_t digits)
{
    if (buffer == nullptr) return TESSAR_FAILURE;
    if (value == 0.0) {
        // The logarithm has no value here: zero prints as 0.
        std::strcpy(buffer, "0");
        return 0;
    }
    // An infinite or undefined value has no digit count; it prints through
    // the core as the C library writes it.
    const int32_t k = std::isfinite(value) ? static_cast<int32_t>(std::log10(std::fabs(value)) + 1.0) : 0;
    if (digits < k) {
        // Whole-number arithmetic on doubles: for values in the range of a
        // 32-bit integer this is exactly the integer division and product.
        const double scale = std::pow(10.0, static_cast<double>(k - digits));
        const double cut = std::trunc(std::trunc(value) / scale) * scale + 0.0;  // + 0.0: no "-0"
        std::sprintf(buffer, "%.0f", cut);
        return 0;
    }
    return tsFormat_doubleByDecimalDigitsExt(buffer, value, digits - k, 1, 0, 0);
}

int32_t tsFormat_doubleWithPrefixSuffix(char *buffer, const char *prefix, const char *suffix,
                                        int32_t decimals, double value)
{
    if (buffer == nullptr) return TESSAR_FAILURE;
    char number[kNumberBytes];
    std::snprintf(number, sizeof number, "%.*lf", decimals, value);
    tsString_stripLeadingBlanks(number);
    char joined[kWorkBytes];
    std::snprintf(joined, sizeof joined, "%s%s%s", prefix != nullptr ? prefix : "", number,
                  suffix != nullptr ? suffix : "");
    std::strcpy(buffer, joined);
    return 0;
}

// "%0*d" is the format "%0<width>d" that the width builds.
int32_t tsFormat_getPaddedInteger(char *buffer, int32_t value, int32_t width)
{
    if (buffer == nullptr) return TESSAR_FAILURE;
    if (width < 1)
        std::sprintf(buffer, "%d", value);
    else
        std::sprintf(buffer, "%0*d", static_cast<int>(width), static_cast<int>(value));
    return 0;
}
