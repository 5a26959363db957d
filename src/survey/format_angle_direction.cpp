// Direction text: the quadrant of a direction, the angle that each direction
// style prints (conventional, azimuth, bearing), the cardinal index read from
// the printed text, and the assembly with quadrant letters or cardinal names.
#include <tessar/format.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <tessar/conversion.h>
#include <tessar/frame.h>
#include <tessar/mathapi.h>

#include "survey/format_angle.hpp"

using namespace tessar::detail;

namespace {

enum DirectionStyle : int32_t {
    kConventional = 1,
    kAzimuth = 2,
    kBearing = 3,
    kReversedAzimuth = 5,
    kEasternBearing = 6,
};

enum Quadrant : int32_t { kNorthEast = 1, kSouthEast = 2, kSouthWest = 3, kNorthWest = 4 };
enum Cardinal : int32_t { kOffAxis = -1, kNorth = 1, kEast = 2, kSouth = 3, kWest = 4 };

// A direction this close below west or east still counts to the northern
// quadrant on that axis.
constexpr double kAxisSnap = 1e-5;
constexpr std::size_t kTableEntryBytes = 33;

double threePiOver2()
{
    return dc_piover2 * 3.0;
}

// Quadrant of a normalised direction, or 0 outside 0 up to 2 pi.
int32_t quadrantOf(double a)
{
    if (a >= 0.0 && a < dc_piover2) return kNorthEast;
    if (a >= dc_piover2 && a < dc_pi) return kNorthWest;
    if (a >= dc_pi && a < threePiOver2()) return std::fabs(a - dc_pi) < kAxisSnap ? kNorthWest : kSouthWest;
    if (a >= threePiOver2() && a < dc_2pi) return std::fabs(a - dc_2pi) < kAxisSnap ? kNorthEast : kSouthEast;
    return 0;
}

// The whole value that the printed pieces show, when they show one: the
// integral value in decimal degrees and grads, the degrees when the finer
// fields read 0. Radians and other modes show none.
bool printedWholeValue(const char *first, const char *second, const char *third, int32_t mode, double &whole)
{
    switch (mode) {
    case kDecimalDegrees:
    case kGrads:
        whole = std::strtod(first, nullptr);
        return whole == std::trunc(whole);
    case kDegreesMinutes:
        if (std::strtod(first, nullptr) != 0.0) return false;
        whole = std::strtod(second, nullptr);
        return true;
    case kDegreesMinutesSeconds:
        if (std::strtod(first, nullptr) != 0.0 || std::strtod(second, nullptr) != 0.0) return false;
        whole = std::strtod(third, nullptr);
        return true;
    default:
        return false;
    }
}

// The cardinal index of the printed pieces: the whole value as a number of
// quarter turns (90 degrees, 100 grads) picks its entry of the style's
// table; values off the quarter turns, and quarter turns beyond the table,
// give kOffAxis.
template <std::size_t N>
int32_t cardinalOf(const char *first, const char *second, const char *third, int32_t mode,
                   const int32_t (&byQuarter)[N])
{
    double whole = 0.0;
    if (!printedWholeValue(first, second, third, mode, whole)) return kOffAxis;
    const double quarter = mode == kGrads ? 100.0 : 90.0;
    for (std::size_t k = 0; k < N; ++k)
        if (whole == quarter * static_cast<double>(k)) return byQuarter[k];
    return kOffAxis;
}

// Styles 5 and 6 turn the direction as an azimuth. Style 5: the reversed
// line.
double reversedLine(double direction)
{
    double azimuth = tsConversion_azimuthToDirection(direction);
    azimuth = azimuth < dc_pi ? azimuth + dc_pi : azimuth - dc_pi;
    return tsConversion_azimuthToDirection(azimuth);
}

// Style 6: an azimuth above pi / 2 and below pi gains pi, one from pi up to
// below 3 pi / 2 loses pi; the others stay.
double turnedEast(double direction)
{
    double azimuth = tsConversion_azimuthToDirection(direction);
    if (azimuth > dc_piover2 && azimuth < dc_pi)
        azimuth += dc_pi;
    else if (azimuth >= dc_pi && azimuth < threePiOver2())
        azimuth -= dc_pi;
    return tsConversion_azimuthToDirection(azimuth);
}

// The style whose pieces a direction style prints: the reversed azimuth
// prints as an azimuth, the turned bearing as a bearing.
int32_t piecesStyle(int32_t style)
{
    if (style == kReversedAzimuth) return kAzimuth;
    if (style == kEasternBearing) return kBearing;
    return style;
}

// Copies a fixed 33-byte table entry, which need not be terminated.
void copyEntry(char *buffer, const char *entry)
{
    const std::size_t n = strnlen(entry, kTableEntryBytes - 1);
    std::memcpy(buffer, entry, n);
    buffer[n] = '\0';
}

// A bearing: first letter, angle, second letter, by quadrant.
void writeBearing(char *buffer, const char *angle, int32_t quadrant,
                  const char (&letters)[4][kTableEntryBytes], bool noBlank)
{
    const bool north = quadrant == kNorthEast || quadrant == kNorthWest;
    const bool east = quadrant == kNorthEast || quadrant == kSouthEast;
    const char *separator = noBlank ? "" : " ";
    std::sprintf(buffer, "%s%s%s%s%s", letters[north ? 0 : 2], separator, angle, separator,
                 letters[east ? 1 : 3]);
}

}  // namespace

int32_t format_quadrantNumberConventional(char *first, char *second, char *third, int32_t *cardinal,
                                          double direction, int32_t mode, int32_t /*unused*/,
                                          int32_t decimals, int32_t truncate, int32_t pad, int32_t keep,
                                          int32_t plus)
{
    static constexpr int32_t kByQuarter[] = {kEast, kNorth, kWest, kSouth};
    format_getAngleStrings(first, second, third, direction, mode, decimals, truncate, kDegreeWidth, pad, keep,
                           plus);
    *cardinal = cardinalOf(first, second, third, mode, kByQuarter);
    return 0;
}

int32_t format_quadrantNumberAzimuth(char *first, char *second, char *third, int32_t *cardinal,
                                     double direction, int32_t mode, int32_t /*unused*/, int32_t decimals,
                                     int32_t truncate, int32_t pad, int32_t keep, int32_t plus)
{
    static constexpr int32_t kByQuarter[] = {kNorth, kEast, kSouth, kWest};
    format_getAngleStrings(first, second, third, tsConversion_azimuthToDirection(direction), mode, decimals,
                           truncate, kDegreeWidth, pad, keep, plus);
    *cardinal = cardinalOf(first, second, third, mode, kByQuarter);
    return 0;
}

// The acute angle from north or south: from the axis that the quadrant's
// bearing starts on. Quadrant 1 counts from north (pi / 2) clockwise, 2 from
// south (3 pi / 2) counter-clockwise, 3 from south clockwise, 4 from north
// counter-clockwise.
int32_t format_quadrantNumberBearing(char *first, char *second, char *third, int32_t *cardinal,
                                     double direction, int32_t quadrant, int32_t mode, int32_t /*unused*/,
                                     int32_t decimals, int32_t truncate, int32_t pad, int32_t keep,
                                     int32_t plus)
{
    // Index of a bearing of 0 and of 90 (100 grads), quadrant by quadrant.
    static constexpr int32_t kByQuarter[4][2] = {
        {kNorth, kEast}, {kSouth, kEast}, {kSouth, kWest}, {kNorth, kWest}};
    double bearing = 0.0;
    switch (quadrant) {
    case kNorthEast:
        bearing = dc_piover2 - direction;
        break;
    case kSouthEast:
        bearing = direction - threePiOver2();
        break;
    case kSouthWest:
        bearing = threePiOver2() - direction;
        break;
    case kNorthWest:
        bearing = direction - dc_piover2;
        break;
    default:
        return TESSAR_FAILURE;
    }
    format_getAngleStrings(first, second, third, bearing, mode, decimals, truncate, kBearingDegreeWidth, pad,
                           keep, plus);
    *cardinal = cardinalOf(first, second, third, mode, kByQuarter[quadrant - 1]);
    return 0;
}

int32_t format_quadrantNumber(char *first, char *second, char *third, int32_t *quadrant, int32_t *cardinal,
                              double direction, int32_t mode, int32_t style, int32_t decimals,
                              int32_t truncate, int32_t pad, int32_t keep, int32_t plus)
{
    const double a = tsMath_normalizeAngle(direction);
    const int32_t q = quadrantOf(a);
    if (q == 0) return TESSAR_FAILURE;
    int32_t index = kOffAxis;
    switch (style) {
    case kConventional:
        format_quadrantNumberConventional(first, second, third, &index, a, mode, 0, decimals, truncate, pad,
                                          keep, plus);
        break;
    case kAzimuth:
        format_quadrantNumberAzimuth(first, second, third, &index, a, mode, 0, decimals, truncate, pad, keep,
                                     plus);
        break;
    case kBearing:
        format_quadrantNumberBearing(first, second, third, &index, a, q, mode, 0, decimals, truncate, pad,
                                     keep, plus);
        break;
    default:
        return TESSAR_FAILURE;
    }
    if (quadrant != nullptr) *quadrant = q;
    if (cardinal != nullptr) *cardinal = index;
    return 0;
}

int32_t tsFormat_getFormattedDirectionExt(char *buffer, double direction, int32_t mode, int32_t style,
                                          int32_t decimals, int32_t flags, const char *degreeLabel,
                                          const char *minutesLabel, const char *secondsLabel,
                                          const char *gradLabel, const char quadrantTable[4][33],
                                          const char cardinalTable[4][33])
{
    if (buffer == nullptr) return TESSAR_FAILURE;
    char letters[4][kTableEntryBytes] = {"N", "E", "S", "W"};
    if (quadrantTable != nullptr)
        for (int i = 0; i < 4; ++i)
            copyEntry(letters[i], quadrantTable[i]);

    if (style == kReversedAzimuth) direction = reversedLine(direction);
    if (style == kEasternBearing) direction = turnedEast(direction);
    direction = tsMath_normalizeAngle(direction);
    buffer[0] = '\0';

    AnglePieces pieces;
    int32_t quadrant = 0;
    int32_t cardinal = kOffAxis;
    // A style that has no pieces leaves the text empty.
    if (format_quadrantNumber(pieces.first, pieces.second, pieces.third, &quadrant, &cardinal, direction,
                              mode, piecesStyle(style), decimals, hasFlag(flags, kFlagTruncate),
                              hasFlag(flags, kFlagPad), hasFlag(flags, kFlagKeepFullCircle),
                              hasFlag(flags, kFlagPlus)) != 0)
        return 0;

    if (cardinalTable != nullptr && cardinal >= kNorth && cardinal <= kWest) {
        copyEntry(buffer, cardinalTable[cardinal - 1]);
        return 0;
    }
    char angle[kAngleTextBytes] = "";
    assembleAngle(angle, pieces, mode, {degreeLabel, minutesLabel, secondsLabel, gradLabel},
                  hasFlag(flags, kFlagNoFieldBlank));
    if (style == kBearing || style == kEasternBearing)
        writeBearing(buffer, angle, quadrant, letters, hasFlag(flags, kFlagNoLetterBlank));
    else
        std::strcpy(buffer, angle);
    return 0;
}

int32_t tsFormat_getFormattedDirection(char *buffer, double direction, int32_t mode, int32_t style,
                                       int32_t decimals, const char *degreeLabel, const char *minutesLabel,
                                       const char *secondsLabel)
{
    return tsFormat_getFormattedDirectionExt(buffer, direction, mode, style, decimals, 0, degreeLabel,
                                             minutesLabel, secondsLabel, nullptr, nullptr, nullptr);
}
