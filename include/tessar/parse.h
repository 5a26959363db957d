/*
 * Tessar: parsing of survey values.
 *
 * tsParse_stringTo* turn what a user types into a number: an arithmetic
 * expression with "+", "-", "*", "/" and parentheses over values with
 * units, such as 5' 6" + 2 M, 12+34.56 R 2, N 45 30 00 E, D 1 30 00 or 1:2.
 * Each entry reads its own kind of value as the atom of the expression; only
 * the first factor of a product carries a unit (5 M * 2 is allowed, 5 * 2 M
 * is not). The whole text must be one expression; a character that is
 * neither white space, a digit, a letter, punctuation nor the degree sign
 * (a control character, say) ends the text as its end does. In a product a
 * division by a divisor too small for the quotient fails, but an operand
 * after it that reads well clears the failure (5 / 0 * 2 reads 10).
 *
 * Input is 16-bit text. Results are in internal units: metres for lengths,
 * square and cubic metres, radians for angles and directions
 * (counter-clockwise from east), seconds for time, metres per second for
 * velocity. Feet are US survey feet. A value typed without a unit word is
 * scaled by the unit argument of the entry. Angle modes, direction styles
 * and slope modes are those of format.h.
 *
 * Status. 0 on success; for every failure, null text included, the one
 * status 0x80004005, returned in an int32_t as that bit pattern
 * (-2147467259). The result is cleared first, and on failure holds 0 or a
 * partial value: look at the status. No message and no position are given.
 *
 * State. None: all parser state is on the stack, and the functions are
 * re-entrant. The decimal mark and the letter classes follow the process
 * locale (see tsFormat_HonorMachineLocale in format.h), so input and output
 * agree in either state.
 */
#ifndef TESSAR_PARSE_H
#define TESSAR_PARSE_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Plain numbers ---- */

/**
 * Reads an expression of plain numbers ("2 * (3 + 4)" gives 14).
 * \param[out] result the value
 * \param[in]  text   16-bit text
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToDouble(double *result, const char16_t *text);

/* ---- Quantities with units ---- */

/**
 * Reads a length. Unit words, case-blind: ' and F... feet, " and I... inches,
 * Y... yards, MILES, DM, CM, MM, KM, M... metres. A second number may follow
 * with its own unit and is added (5' 6").
 * \param[out] result     metres
 * \param[in]  text       16-bit text
 * \param[in]  linearUnit metres of a length without a unit word
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToLinear(double *result, const char16_t *text, double linearUnit);

/**
 * Reads an area: a number and a unit word (SQF, SQI, SQY, SQMILES, ACRES,
 * HECTARES, SQDM, SQCM, SQMM, SQM, SQKM); without a word the square of
 * linearUnit applies.
 * \param[out] result     square metres
 * \param[in]  text       16-bit text
 * \param[in]  linearUnit metres of the length whose square is the default unit
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToArea(double *result, const char16_t *text, double linearUnit);

/**
 * Reads a volume: a number and a whole unit word (CF, CI, CY, CDM, CCM, CMM,
 * CM); without a word the cube of linearUnit applies.
 * \param[out] result     cubic metres
 * \param[in]  text       16-bit text
 * \param[in]  linearUnit metres of the length whose cube is the default unit
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToVolume(double *result, const char16_t *text, double linearUnit);

/**
 * Reads a time: a number and an optional word S..., M... or H....
 * \param[out] result   seconds
 * \param[in]  text     16-bit text
 * \param[in]  timeUnit seconds of a time without a unit word
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToTime(double *result, const char16_t *text, double timeUnit);

/**
 * Reads a velocity: a length over a time (100 FT / 2 S), or a number and a
 * word MPS, FPS, MPH or KMPH.
 * \param[out] result       metres per second
 * \param[in]  text         16-bit text
 * \param[in]  velocityUnit metres per second of a velocity without a unit word
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToVelocity(double *result, const char16_t *text, double velocityUnit);

/**
 * Reads a slope: "5%" is 0.05, "5%O" 0.005, "1:2" 0.5 (2 in slope mode 1),
 * "3 R" 3 / slopeLength; a bare number follows the mode (times 0.01 in mode
 * 3, times 0.001 in mode 5, as it is otherwise).
 * \param[out] result      rise over run
 * \param[in]  text        16-bit text
 * \param[in]  slopeMode   slope mode, 1 to 5
 * \param[in]  slopeLength divisor of a slope written with R
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToSlope(double *result, const char16_t *text, int32_t slopeMode,
                                         double slopeLength);

/* ---- Angles and directions ---- */

/**
 * Reads an angle. A real number is a value in the unit of the mode; a whole
 * number opens the sexagesimal forms (45 30 15, 45-30-15, 30', and 45
 * 30'15" with the degree sign 0xB0 after the 45).
 * Each angle is normalised to 0 to 2 pi on its own, before the sign of the
 * expression applies ("-90" gives -pi / 2).
 * \param[out] result    radians
 * \param[in]  text      16-bit text
 * \param[in]  angleMode angle mode; 4 reads grads (degrees, 0.01 minutes,
 *                       0.0001 seconds), 5 radians
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToAngle(double *result, const char16_t *text, int32_t angleMode);

/**
 * Reads a direction, written as a bearing (N 45 30 00 E) or as an angle with
 * an optional quadrant code 1 to 4 (or .1 to .4), and turns it into a
 * mathematical direction by the style: style 1 takes the angle as the
 * direction itself; the other styles take it as an azimuth (style 5 that of
 * the reversed line).
 * \param[out] result         radians, counter-clockwise from east
 * \param[in]  text           16-bit text
 * \param[in]  angleMode      angle mode
 * \param[in]  directionStyle direction style
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToDirection(double *result, const char16_t *text, int32_t angleMode,
                                             int32_t directionStyle);

/**
 * tsParse_stringToDirection with a back direction: in style 2 the angle read
 * is counted from baseDirection, and against its sense when baseSense is 0.
 * \param[out] result         radians, counter-clockwise from east
 * \param[in]  text           16-bit text
 * \param[in]  angleMode      angle mode
 * \param[in]  directionStyle direction style
 * \param[in]  baseDirection  back direction, added in style 2
 * \param[in]  baseSense      0: angles count against the base direction's sense
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToDirection2(double *result, const char16_t *text, int32_t angleMode,
                                              int32_t directionStyle, double baseDirection,
                                              int32_t baseSense);

/**
 * Reads a radius: a length, optionally after a word (R 500), or a degree of
 * curve after a word D... (D 2 00 00): curveLength / A on the arc, or
 * (curveLength / 2) / sin(A / 2) on the chord; 0 for A not above 0.
 * \param[out] result      metres
 * \param[in]  text        16-bit text
 * \param[in]  linearUnit  metres of a length without a unit word
 * \param[in]  radiusMode  3: degree of curve by chord; otherwise by arc
 * \param[in]  curveLength reference length of a degree of curve
 * \param[in]  angleMode   angle mode of the degree of curve
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToRadius(double *result, const char16_t *text, double linearUnit,
                                          int32_t radiusMode, double curveLength, int32_t angleMode);

/* ---- Stations ---- */

/**
 * Reads a station after an optional name word: 12+34.56 is 1234.56, and
 * the expression goes on after it (12+34.56 + 10 adds ten).
 * \param[out] result     the station, in metres
 * \param[out] name       the name word read before the station, cut to 63
 *                        units and terminated, empty if none; 64 units, not
 *                        null; written also when the text fails
 * \param[in]  text       16-bit text
 * \param[in]  linearUnit metres of a length without a unit word
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToStationByName(double *result, char16_t *name, const char16_t *text,
                                                 double linearUnit);

/**
 * Reads a station with a region written "R n", before or after it
 * (12+34.56 R 2 and R 2 12+34.56 both give 1234.56 and region 2).
 * \param[out] result     the station, in metres
 * \param[out] region     optional: the region, 0 when none is written
 * \param[in]  text       16-bit text
 * \param[in]  linearUnit metres of a length without a unit word
 * \return 0, or 0x80004005.
 */
TESSAR_API int32_t tsParse_stringToStationByIndex(double *result, int32_t *region, const char16_t *text,
                                                  double linearUnit);

TESSAR_END_DECLS

#endif /* TESSAR_PARSE_H */
