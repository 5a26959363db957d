// Angle text: the pieces of an angle in the five angle modes, with the carries
// that keep minutes and seconds from reading 60, their assembly with caller
// labels, and the entries that read angles and directions back from 8-bit
// text through the value parser.
#include <tessar/format.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <tessar/conversion.h>
#include <tessar/frame.h>
#include <tessar/parse.h>

#include "survey/format_angle.hpp"

using namespace tessar::detail;

namespace {

// Minutes and seconds are printed two digits wide.
constexpr int32_t kSexagesimalWidth = 2;

// The settings of the number core shared by the pieces of one angle.
struct Core {
    int32_t decimals;
    int32_t truncate;
    int32_t pad;
    int32_t degreeWidth;
    bool plus;
};

// The integer part of a printed number: its leading digits.
std::string_view integerPart(const char *text)
{
    return {text, std::strspn(text, "0123456789")};
}

// The plus rule: "+" in front when asked for and the value is above 0.
void withPlus(char *piece, const char *text, bool plus, double value)
{
    std::sprintf(piece, plus && value > 0.0 ? "+%s" : "%s", text);
}

// A value in one unit (degrees, grads or radians), at the degree width.
void decimalPiece(char *piece, double value, const Core &core)
{
    char work[kPieceBytes];
    tsFormat_doubleByDecimalDigitsExt(work, value, core.decimals, core.truncate, core.pad, core.degreeWidth);
    withPlus(piece, work, core.plus, value);
}

// Whole degrees, at the degree width, through the plus rule of the angle's
// degrees before splitting.
void degreePiece(char *piece, int32_t degrees, double unsplit, const Core &core)
{
    char work[kPieceBytes];
    tsFormat_doubleByDecimalDigitsExt(work, static_cast<double>(degrees), 0, 0, core.pad, core.degreeWidth);
    withPlus(piece, work, core.plus, unsplit);
}

// Degrees and decimal minutes. Minutes that print as 60 become "00" and
// carry one degree. The carry adds 1 whatever the sign of the degrees.
void degreesMinutes(char *minutesPiece, char *degreesPiece, double degrees, const Core &core)
{
    int32_t d = 0;
    double m = 0.0;
    tsConversion_degreeToDM(&d, &m, degrees);
    tsFormat_doubleByDecimalDigitsExt(minutesPiece, std::fabs(m), core.decimals, core.truncate, core.pad,
                                      kSexagesimalWidth);
    if (integerPart(minutesPiece) == "60") {
        std::strcpy(minutesPiece, "00");
        d += 1;
    }
    degreePiece(degreesPiece, d, degrees, core);
}

// Degrees, whole minutes and decimal seconds. Seconds whose integer part
// contains 60 are printed again as 0 and carry one minute; minutes of 60
// then carry one degree. The carries add 1 whatever the sign of the angle.
void degreesMinutesSeconds(char *secondsPiece, char *minutesPiece, char *degreesPiece, double degrees,
                           const Core &core)
{
    int32_t d = 0;
    int32_t m = 0;
    double s = 0.0;
    tsConversion_degreeToDMS(&d, &m, &s, degrees);
    tsFormat_doubleByDecimalDigitsExt(secondsPiece, std::fabs(s), core.decimals, core.truncate, core.pad,
                                      kSexagesimalWidth);
    if (integerPart(secondsPiece).find("60") != std::string_view::npos) {
        tsFormat_doubleByDecimalDigitsExt(secondsPiece, 0.0, core.decimals, core.truncate, core.pad,
                                          kSexagesimalWidth);
        m += 1;
        if (m == 60) {
            m = 0;
            d += 1;
        }
    }
    tsFormat_doubleByDecimalDigitsExt(minutesPiece, static_cast<double>(std::abs(m)), 0, 0, core.pad,
                                      kSexagesimalWidth);
    degreePiece(degreesPiece, d, degrees, core);
}

// A label is a format printed with no arguments: "%%" gives one percent
// sign. Any other character, a lone "%" too, is copied as it stands, there
// being no argument for a conversion to print.
void printLabel(char (&out)[kLabelBytes], const char *label)
{
    std::size_t n = 0;
    for (const char *c = label; c != nullptr && *c != '\0' && n < kLabelBytes - 1; ++c) {
        if (c[0] == '%' && c[1] == '%') ++c;
        out[n++] = *c;
    }
    out[n] = '\0';
}

// The degree label "GraphicCircle" stands for the drawing code of a degree
// sign, the text "%%d", which is put in as it is.
void printDegreeLabel(char (&out)[kLabelBytes], const char *label)
{
    if (label != nullptr && std::strcmp(label, "GraphicCircle") == 0)
        std::strcpy(out, "%%d");
    else
        printLabel(out, label);
}

}  // namespace

namespace tessar::detail {

bool assembleAngle(char *text, const AnglePieces &pieces, int32_t mode, const AngleLabels &labels,
                   bool noBlank) noexcept
{
    if (mode < kDecimalDegrees || mode > kGrads) return false;
    char degree[kLabelBytes];
    char minutes[kLabelBytes];
    char seconds[kLabelBytes];
    char grad[kLabelBytes];
    printDegreeLabel(degree, labels.degree);
    printLabel(minutes, labels.minutes);
    printLabel(seconds, labels.seconds);
    printLabel(grad, labels.grad);
    const char *separator = noBlank ? "" : " ";
    char out[kAngleTextBytes];
    switch (mode) {
    case kDecimalDegrees:
        std::snprintf(out, sizeof out, "%s%s", pieces.first, degree);
        break;
    case kDegreesMinutes:
        std::snprintf(out, sizeof out, "%s%s%s%s%s", pieces.second, degree, separator, pieces.first, minutes);
        break;
    case kDegreesMinutesSeconds:
        std::snprintf(out, sizeof out, "%s%s%s%s%s%s%s%s", pieces.third, degree, separator, pieces.second,
                      minutes, separator, pieces.first, seconds);
        break;
    default:  // grads
        std::snprintf(out, sizeof out, "%s%s", pieces.first, grad);
        break;
    }
    std::strcpy(text, out);
    return true;
}

}  // namespace tessar::detail

int32_t format_getAngleStrings(char *first, char *second, char *third, double angle, int32_t mode,
                               int32_t decimals, int32_t truncate, int32_t degreeWidth, int32_t pad,
                               int32_t keep, int32_t plus)
{
    if (keep == 0 && angle > dc_2pi) angle -= dc_2pi;  // once only
    const Core core{decimals, truncate, pad, degreeWidth, plus != 0};
    const double degrees = tsConversion_radianToDegree(angle);
    switch (mode) {
    case kDecimalDegrees:
        decimalPiece(first, degrees, core);
        break;
    case kDegreesMinutes:
        degreesMinutes(first, second, degrees, core);
        break;
    case kDegreesMinutesSeconds:
        degreesMinutesSeconds(first, second, third, degrees, core);
        break;
    case kGrads:
        decimalPiece(first, tsConversion_radianToGrad(angle), core);
        break;
    case kRadians:
        decimalPiece(first, angle, core);
        break;
    default:
        break;
    }
    return 0;
}

int32_t tsFormat_getFormattedAngleExt(char *buffer, double angle, int32_t mode, int32_t decimals,
                                      int32_t flags, const char *degreeLabel, const char *minutesLabel,
                                      const char *secondsLabel, const char *gradLabel)
{
    if (buffer == nullptr) return TESSAR_FAILURE;
    AnglePieces pieces;
    format_getAngleStrings(pieces.first, pieces.second, pieces.third, angle, mode, decimals,
                           hasFlag(flags, kFlagTruncate), kDegreeWidth, hasFlag(flags, kFlagPad),
                           hasFlag(flags, kFlagKeepFullCircle), hasFlag(flags, kFlagPlus));
    // Radians and unknown modes have no text form here: the buffer keeps its contents.
    assembleAngle(buffer, pieces, mode, {degreeLabel, minutesLabel, secondsLabel, gradLabel},
                  hasFlag(flags, kFlagNoFieldBlank));
    return 0;
}

int32_t tsFormat_getFormattedAngle(char *buffer, double angle, int32_t mode, int32_t decimals,
                                   const char *degreeLabel, const char *minutesLabel,
                                   const char *secondsLabel)
{
    return tsFormat_getFormattedAngleExt(buffer, angle, mode, decimals, 0, degreeLabel, minutesLabel,
                                         secondsLabel, nullptr);
}

int32_t tsFormat_doubleAngleToFormattedAngle(char *buffer, double angle, int32_t mode, int32_t decimals,
                                             const char *degreeLabel, const char *minutesLabel,
                                             const char *secondsLabel)
{
    return tsFormat_getFormattedAngle(buffer, angle, mode, decimals, degreeLabel, minutesLabel, secondsLabel);
}

/* ---- Reading angles and directions ---- */

int32_t tsFormat_getDoubleAngleExt(double *result, int32_t mode, const char *text)
{
    char16_t wide[kWideUnits];
    return tsParse_stringToAngle(result, widenText(wide, text), mode);
}

int32_t tsFormat_getDoubleAngle(double *result, const char *text)
{
    return tsFormat_getDoubleAngleExt(result, kDegreesMinutesSeconds, text);
}

int32_t tsFormat_getDoubleDirectionExt(double *result, int32_t style, int32_t mode, const char *text)
{
    char16_t wide[kWideUnits];
    return tsParse_stringToDirection(result, widenText(wide, text), mode, style);
}

// Style 4 reads an azimuth (or a bearing with its letters) into a direction.
int32_t tsFormat_getDoubleDirection(double *result, const char *text)
{
    return tsFormat_getDoubleDirectionExt(result, 4, kDegreesMinutesSeconds, text);
}
