// Latitudes and longitudes: degrees, minutes and whole seconds with the
// hemisphere letter, and the reading of the hemisphere from such a text.
#include <tessar/format.h>

#include <cmath>
#include <cstdio>
#include <cstring>

#include <tessar/frame.h>
#include <tessar/text.h>

#include "survey/format_angle.hpp"

using namespace tessar::detail;

namespace {

enum OrdinateKind : int32_t { kLatitude = 0, kLongitude = 1 };

// The 8-bit labels of a geodetic ordinate: the degree sign 0xB0, minutes and seconds.
constexpr const char *kDegreeSign = "\xB0";
constexpr const char *kMinuteSign = "'";
constexpr const char *kSecondSign = "\"";

// The hemisphere sign of the last letter of a text of a kind: +1 for N or E,
// -1 for S or W (either case), 0 for no such letter.
int hemisphereOf(char last, int32_t kind)
{
    const char c = static_cast<char>(last >= 'a' && last <= 'z' ? last - 'a' + 'A' : last);
    if (kind == kLatitude) return c == 'N' ? 1 : c == 'S' ? -1 : 0;
    return c == 'E' ? 1 : c == 'W' ? -1 : 0;
}

}  // namespace

// Printed as a conventional direction of the absolute value, which below
// 2 pi is the angle itself; the sign goes into the hemisphere letter.
int32_t tsFormat_getFormattedGeodeticOrdinate(char *buffer, int32_t kind, double value)
{
    if (buffer == nullptr) return TESSAR_FAILURE;
    char angle[kAngleTextBytes];
    const int32_t status = tsFormat_getFormattedDirectionExt(
        angle, std::fabs(value), kDegreesMinutesSeconds, 1, 0, kFlagKeepFullCircle, kDegreeSign, kMinuteSign,
        kSecondSign, nullptr, nullptr, nullptr);
    if (status != 0) return TESSAR_FAILURE;
    const bool positive = value >= 0.0;  // 0 counts as north or east
    if (kind == kLatitude)
        std::sprintf(buffer, positive ? "%s N" : "%s S", angle);
    else if (kind == kLongitude)
        std::sprintf(buffer, positive ? "%s E" : "%s W", angle);
    else
        std::sprintf(buffer, "%s", angle);
    return 0;
}

// Only the hemisphere is read: the number is never scanned, so the result
// is a zero that carries the sign of the hemisphere (+0.0 or -0.0).
int32_t tsFormat_getDoubleGeodeticOrdinate(double *result, int32_t kind, char *text)
{
    *result = 0.0;
    if (text == nullptr) return TESSAR_FAILURE;
    tsString_clean(text, 1, 1, 1);
    if (text[0] == '\0' || (kind != kLatitude && kind != kLongitude)) return TESSAR_FAILURE;
    const std::size_t length = std::strlen(text);
    int sign = hemisphereOf(text[length - 1], kind);
    if (sign != 0) {
        text[length - 1] = '\0';
    } else if (text[0] == '-') {
        sign = -1;
        std::memmove(text, text + 1, length);
    } else {
        sign = 1;
    }
    *result *= sign;
    return 0;
}
