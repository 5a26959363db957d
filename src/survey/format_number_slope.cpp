// Slope text in the five notations of the slope modes, as 16-bit text.
#include <tessar/format.h>

#include <cstdio>

namespace {

constexpr std::size_t kSlopeUnits = 256;
// Beyond these a slope is vertical: "oo" or "-oo".
constexpr double kVertical = 1e100;

enum SlopeMode : int32_t {
    kRunToRise = 1,  // 1 over the slope, "n:1"
    kRiseToRun = 2,  // the slope, "n:1"
    kPercent = 3,
    kRatio = 4,
    kPerMille = 5,
};

// The 8-bit text of a slope; empty for a mode outside the table.
void printSlope(char *text, std::size_t size, double slope, int32_t mode, int32_t decimals)
{
    text[0] = '\0';
    if (slope <= -kVertical) {
        std::snprintf(text, size, "-oo");
        return;
    }
    if (slope >= kVertical) {
        std::snprintf(text, size, "oo");
        return;
    }
    switch (mode) {
    case kRunToRise:
        std::snprintf(text, size, "%.*lf:1", decimals, slope == 0.0 ? 0.0 : 1.0 / slope);
        break;
    case kRiseToRun:
        std::snprintf(text, size, "%.*lf:1", decimals, slope);
        break;
    case kPercent:
        std::snprintf(text, size, "%.*lf%%", decimals, slope * 100.0);
        break;
    case kRatio:
        std::snprintf(text, size, "%.*lf", decimals, slope);
        break;
    case kPerMille:
        std::snprintf(text, size, "%.*lf%%o", decimals, slope * 1000.0);
        break;
    default:
        break;
    }
}

}  // namespace

void tsFormat_slopeToString(char16_t *buffer, double slope, int32_t mode, int32_t decimals)
{
    if (buffer == nullptr) return;
    char text[kSlopeUnits];
    printSlope(text, sizeof text, slope, mode, decimals);
    // The bytes of the printed number widen one to one.
    std::size_t i = 0;
    for (; text[i] != '\0'; ++i)
        buffer[i] = static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    buffer[i] = 0;
}
