/*
 * Tessar: formatting of survey values.
 *
 * Text output of numbers, slopes, angles, directions and stations for
 * reports and dialogs, and the thin entries that read angles, directions and
 * stations back from 8-bit text through the value parser (parse.h).
 *
 * Units and senses. Angles and directions are radians; a direction is
 * mathematical (counter-clockwise from the x axis, east); an azimuth runs
 * clockwise from north. Quadrants are 1 NE, 2 SE, 3 SW, 4 NW; cardinal
 * indices 1 north, 2 east, 3 south, 4 west, -1 off the axes.
 *
 * Modes and styles:
 *  - angle modes: 1 decimal degrees, 2 degrees and decimal minutes,
 *    3 degrees, minutes and decimal seconds, 4 grads, 5 radians;
 *  - direction styles: 1 conventional, 2 azimuth, 3 bearing (acute angle
 *    from north or south with quadrant letters), 5 azimuth of the reversed
 *    line, 6 bearing turned into the eastern half;
 *  - slope modes: 1 run to rise "%.*lf:1" of 1 / slope, 2 rise to run
 *    "%.*lf:1", 3 percent, 4 plain ratio, 5 per mille ("%o");
 *  - station styles: 0 plain number, 2 hundreds (1234.56 reads 12+34.56),
 *    3 thousands (1+234.56); leading styles for a station below one full
 *    station: 0 bare remainder, 1 "+r", 2 "0+r".
 *
 * Angle and direction flags, a mask: 2 truncate decimals instead of
 * rounding; 4 zero-pad degrees to the degree width (3, or 2 in bearings),
 * minutes and seconds to 2 digits; 8 keep angles above 2 pi (otherwise 2 pi
 * is taken off once); 16 no blank between the fields of an angle; 32 no
 * blank between quadrant letters and angle; 64 "+" before positive angles.
 *
 * Labels are format strings printed once ("%%" gives one percent sign),
 * each up to 255 bytes. The degree label "GraphicCircle" is replaced by the
 * text "%%d", the drawing code of a degree sign. Quadrant and cardinal
 * tables are four fixed records of 33 bytes each, ordered north, east,
 * south, west; a null table means the letters N, E, S, W and no cardinal
 * names.
 *
 * Buffers. Every destination is the caller's, and no function checks its
 * capacity. Text is 8-bit, except the slope text, which is 16-bit.
 *
 * State. Number text follows the process locale. tsFormat_HonorMachineLocale
 * and tsFormat_RestoreDefaultLocale change the locale of the whole process,
 * and with it every number printed or parsed on every thread: call them only
 * when no other thread formats or parses. The remembered locale is one
 * library-wide slot, so the two calls do not nest. Truncating output looks
 * for a point as the decimal mark and must not be used under a locale with
 * another mark. Nothing else here keeps state.
 */
#ifndef TESSAR_FORMAT_H
#define TESSAR_FORMAT_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Numbers ---- */

/**
 * Prints value cut, without rounding, behind the given number of decimals
 * (1.999 with 2 reads "1.99"; with 0 decimals the point goes as well).
 * \param[out] buffer   the text; must not be null
 * \param[in]  value    the number
 * \param[in]  decimals digits behind the point
 * \return 0.
 */
TESSAR_API int32_t tsFormat_doubleByDecimalDigits(char *buffer, double value, int32_t decimals);

/**
 * Prints value rounded to the given number of decimals, "%.*lf"
 * (1.999 with 2 reads "2.00").
 * \param[out] buffer   the text; must not be null
 * \return 0.
 */
TESSAR_API int32_t tsFormat_doubleByDecimalDigitsNoTrunc(char *buffer, double value, int32_t decimals);

/**
 * The number core.
 * \param[out] buffer   the text; must not be null
 * \param[in]  value    the number
 * \param[in]  decimals digits behind the point
 * \param[in]  truncate non-zero: cut behind the decimals instead of rounding
 * \param[in]  pad      non-zero: zeros in front up to width digits before the
 *                      point (a minus counts as a digit and the zeros go
 *                      before it, so only unsigned values pad well; 7.5 with
 *                      1 decimal and width 3 reads "007.5")
 * \param[in]  width    digits before the point when padding
 * \return 0.
 */
TESSAR_API int32_t tsFormat_doubleByDecimalDigitsExt(char *buffer, double value, int32_t decimals,
                                                     int32_t truncate, int32_t pad, int32_t width);

/**
 * Prints value to n significant digits, cutting rather than rounding:
 * 123456.7 with 2 digits reads "120000", 1234.567 with 6 reads "1234.56".
 * \param[out] buffer the text
 * \param[in]  value  the number; 0 prints "0"
 * \param[in]  digits significant digits
 * \return 0, or 32768 for a null buffer.
 */
TESSAR_API int32_t tsFormat_doubleBySignificantDigits(char *buffer, double value, int32_t digits);

/**
 * Prints prefix, value rounded to the decimals (leading blanks stripped)
 * and suffix. The number text holds up to 143 bytes, the whole up to 263.
 * \param[out] buffer   the text
 * \param[in]  prefix   optional text in front
 * \param[in]  suffix   optional text behind
 * \param[in]  decimals digits behind the point
 * \param[in]  value    the number
 * \return 0, or 32768 for a null buffer.
 */
TESSAR_API int32_t tsFormat_doubleWithPrefixSuffix(char *buffer, const char *prefix, const char *suffix,
                                                   int32_t decimals, double value);

/**
 * Prints an integer zero-filled to width digits (42 with width 5 reads
 * "00042"); a width below 1 prints it plainly.
 * \return 0, or 32768 for a null buffer.
 */
TESSAR_API int32_t tsFormat_getPaddedInteger(char *buffer, int32_t value, int32_t width);

/**
 * Prints a slope in the notation of a slope mode (0.5 with 2 decimals reads
 * "2.00:1" in mode 1, "50.00%" in mode 3, "500.00%o" in mode 5). A slope
 * not above -1e100 reads "-oo", one of 1e100 or more "oo"; a mode outside 1
 * to 5 leaves the text empty.
 * \param[out] buffer   16-bit text of at least 256 units, cleared first; a
 *                      null buffer does nothing
 * \param[in]  slope    rise over run
 * \param[in]  mode     slope mode, 1 to 5
 * \param[in]  decimals digits behind the point
 */
TESSAR_API void tsFormat_slopeToString(char16_t *buffer, double slope, int32_t mode, int32_t decimals);

/* ---- Locale ---- */

/**
 * Remembers the current locale and selects the machine's locale for all
 * categories. A second call overwrites the remembered one.
 * \return what the locale selection returns: the new locale's name, or null
 *         when it fails. The text belongs to the C library.
 */
TESSAR_API char *tsFormat_HonorMachineLocale(void);

/**
 * Selects the locale remembered by tsFormat_HonorMachineLocale again; before
 * any such call it only queries the current locale.
 * \return what the locale selection returns, as above.
 */
TESSAR_API char *tsFormat_RestoreDefaultLocale(void);

/* ---- Angles ---- */

/**
 * Fills the text pieces of an angle in a mode: mode 1, 4 and 5 the value in
 * first; mode 2 minutes in first, degrees in second; mode 3 seconds in
 * first, minutes in second, degrees in third. Carries keep minutes and
 * seconds from reading 60. A negative angle shows its sign in the degrees
 * only. Any other mode writes nothing.
 * \param[out] first, second, third the pieces
 * \param[in]  angle       radians
 * \param[in]  mode        angle mode
 * \param[in]  decimals    digits behind the point of the finest piece, the
 *                         one in first (minutes and degrees of modes 2 and 3
 *                         have none)
 * \param[in]  truncate    non-zero: cut instead of rounding
 * \param[in]  degreeWidth width of the degrees when padding
 * \param[in]  pad         non-zero: zero-pad the pieces
 * \param[in]  keep        non-zero: keep an angle above 2 pi as it is
 * \param[in]  plus        non-zero: "+" before a positive value
 * \return 0.
 */
TESSAR_API int32_t format_getAngleStrings(char *first, char *second, char *third, double angle, int32_t mode,
                                          int32_t decimals, int32_t truncate, int32_t degreeWidth,
                                          int32_t pad, int32_t keep, int32_t plus);

/**
 * Prints an angle with labels: tsFormat_getFormattedAngleExt with no flags
 * and no grad label.
 * \param[out] buffer       the text
 * \param[in]  angle        radians
 * \param[in]  mode         angle mode; in mode 5 the buffer keeps its contents
 * \param[in]  decimals     digits behind the point
 * \param[in]  degreeLabel  optional label after the degrees
 * \param[in]  minutesLabel optional label after the minutes
 * \param[in]  secondsLabel optional label after the seconds
 * \return 0, or 32768 for a null buffer.
 */
TESSAR_API int32_t tsFormat_getFormattedAngle(char *buffer, double angle, int32_t mode, int32_t decimals,
                                              const char *degreeLabel, const char *minutesLabel,
                                              const char *secondsLabel);

/** A second name of tsFormat_getFormattedAngle. */
TESSAR_API int32_t tsFormat_doubleAngleToFormattedAngle(char *buffer, double angle, int32_t mode,
                                                        int32_t decimals, const char *degreeLabel,
                                                        const char *minutesLabel, const char *secondsLabel);

/**
 * Prints an angle with labels and flags, degree width 3: mode 1 value and
 * degree label; mode 2 degrees, label, minutes, label; mode 3 degrees,
 * minutes and seconds with their labels; mode 4 value and grad label. The
 * fields are separated by a blank unless flag 16 is set. Mode 5 or another
 * mode writes nothing: the buffer keeps its contents.
 * \param[out] buffer       the text
 * \param[in]  angle        radians
 * \param[in]  mode         angle mode
 * \param[in]  decimals     digits behind the point
 * \param[in]  flags        mask of flags 2, 4, 8, 16 and 64
 * \param[in]  degreeLabel  optional; "GraphicCircle" gives "%%d"
 * \param[in]  minutesLabel optional
 * \param[in]  secondsLabel optional
 * \param[in]  gradLabel    optional
 * \return 0, or 32768 for a null buffer.
 */
TESSAR_API int32_t tsFormat_getFormattedAngleExt(char *buffer, double angle, int32_t mode, int32_t decimals,
                                                 int32_t flags, const char *degreeLabel,
                                                 const char *minutesLabel, const char *secondsLabel,
                                                 const char *gradLabel);

/* ---- Directions ---- */

/**
 * Prints a direction in a style, with no flags and blanks between fields
 * (pi / 4 in mode 1, style 3, 0 decimals reads "N 45 E").
 * \param[out] buffer       the text
 * \param[in]  direction    radians, counter-clockwise from east
 * \param[in]  mode         angle mode
 * \param[in]  style        direction style
 * \param[in]  decimals     digits behind the point
 * \param[in]  degreeLabel  optional
 * \param[in]  minutesLabel optional
 * \param[in]  secondsLabel optional
 * \return 0, or 32768 for a null buffer.
 */
TESSAR_API int32_t tsFormat_getFormattedDirection(char *buffer, double direction, int32_t mode, int32_t style,
                                                  int32_t decimals, const char *degreeLabel,
                                                  const char *minutesLabel, const char *secondsLabel);

/**
 * Prints a direction in a style with flags, labels and tables. A direction
 * on an axis, with a cardinal table given, prints the table's name alone.
 * Bearings (styles 3 and 6) read first letter, angle, second letter, with
 * the letters of the quadrant table. Styles 5 and 6 are turned first, as
 * azimuths: style 5 prints the azimuth of the reversed line, style 6 the
 * bearing of the turned direction (azimuths above 90 and below 270 degrees
 * turn by half a turn). Any other style prints the empty text.
 * \param[out] buffer         the text, cleared first
 * \param[in]  direction      radians, counter-clockwise from east
 * \param[in]  mode           angle mode
 * \param[in]  style          direction style
 * \param[in]  decimals       digits behind the point
 * \param[in]  flags          mask of flags 2, 4, 8, 16, 32 and 64
 * \param[in]  degreeLabel    optional
 * \param[in]  minutesLabel   optional
 * \param[in]  secondsLabel   optional
 * \param[in]  gradLabel      optional
 * \param[in]  quadrantTable  optional: the four quadrant letters, north, east, south, west
 * \param[in]  cardinalTable  optional: the four names of the axes, north, east, south, west
 * \return 0, or 32768 for a null buffer.
 */
TESSAR_API int32_t tsFormat_getFormattedDirectionExt(char *buffer, double direction, int32_t mode,
                                                     int32_t style, int32_t decimals, int32_t flags,
                                                     const char *degreeLabel, const char *minutesLabel,
                                                     const char *secondsLabel, const char *gradLabel,
                                                     const char quadrantTable[4][33],
                                                     const char cardinalTable[4][33]);

/**
 * Finds the quadrant of a direction and fills the angle pieces for a style
 * through the three functions below. Quadrant 1 from 0 up to pi / 2, 4 from
 * pi / 2 up to pi, 3 from pi up to 3 pi / 2 (4 within 1e-5 of pi), 2 from
 * 3 pi / 2 up to 2 pi (1 within 1e-5 of 2 pi).
 * \param[out] first, second, third the angle pieces, as format_getAngleStrings
 * \param[out] quadrant  optional: the quadrant, 1 to 4
 * \param[out] cardinal  optional: the cardinal index, -1 off the axes
 * \param[in]  direction radians, counter-clockwise from east
 * \param[in]  mode      angle mode
 * \param[in]  style     direction style 1, 2 or 3
 * \param[in]  decimals, truncate, pad, keep, plus as format_getAngleStrings
 * \return 0, or 32768 for another style or a direction out of range.
 */
TESSAR_API int32_t format_quadrantNumber(char *first, char *second, char *third, int32_t *quadrant,
                                         int32_t *cardinal, double direction, int32_t mode, int32_t style,
                                         int32_t decimals, int32_t truncate, int32_t pad, int32_t keep,
                                         int32_t plus);

/**
 * Fills the pieces of a conventional direction (degree width 3) and its
 * cardinal index, read from the printed text: 0 east (2), 90 north (1),
 * 180 west (4), 270 south (3), in grads 0, 100, 200, 300; else -1.
 * \param[out] first, second, third the angle pieces
 * \param[out] cardinal  the cardinal index
 * \param[in]  direction radians
 * \param[in]  mode      angle mode
 * \param[in]  unused    not used
 * \param[in]  decimals, truncate, pad, keep, plus as format_getAngleStrings
 * \return 0.
 */
TESSAR_API int32_t format_quadrantNumberConventional(char *first, char *second, char *third,
                                                     int32_t *cardinal, double direction, int32_t mode,
                                                     int32_t unused, int32_t decimals, int32_t truncate,
                                                     int32_t pad, int32_t keep, int32_t plus);

/**
 * Fills the pieces of the azimuth of a direction (degree width 3) and its
 * cardinal index, read from the printed text: 0 north (1), 90 east (2),
 * 180 south (3), 270 west (4), in grads 0, 100, 200, 300; else -1.
 * Arguments as format_quadrantNumberConventional. \return 0.
 */
TESSAR_API int32_t format_quadrantNumberAzimuth(char *first, char *second, char *third, int32_t *cardinal,
                                                double direction, int32_t mode, int32_t unused,
                                                int32_t decimals, int32_t truncate, int32_t pad, int32_t keep,
                                                int32_t plus);

/**
 * Fills the pieces of the bearing of a direction in a quadrant (degree width
 * 2) and its cardinal index, read from the printed text (0 or 90 on the
 * axes of that quadrant, else -1).
 * \param[out] first, second, third the angle pieces
 * \param[out] cardinal  the cardinal index
 * \param[in]  direction radians
 * \param[in]  quadrant  1 to 4
 * \param[in]  mode      angle mode
 * \param[in]  unused    not used
 * \param[in]  decimals, truncate, pad, keep, plus as format_getAngleStrings
 * \return 0, or 32768 for a quadrant other than 1 to 4.
 */
TESSAR_API int32_t format_quadrantNumberBearing(char *first, char *second, char *third, int32_t *cardinal,
                                                double direction, int32_t quadrant, int32_t mode,
                                                int32_t unused, int32_t decimals, int32_t truncate,
                                                int32_t pad, int32_t keep, int32_t plus);

/* ---- Geodetic ordinates ---- */

/**
 * Prints a latitude or longitude in degrees, minutes and whole seconds with
 * the 8-bit labels 0xB0, "'" and '"', then its hemisphere: " N" or " S" for
 * a latitude, " E" or " W" for a longitude (0 counts as N or E).
 * \param[out] buffer the text
 * \param[in]  kind   0 latitude, 1 longitude, other: no hemisphere
 * \param[in]  value  the signed angle, in radians like all directions
 * \return 0, or 32768 for a null buffer or a failure of the printing.
 */
TESSAR_API int32_t tsFormat_getFormattedGeodeticOrdinate(char *buffer, int32_t kind, double value);

/**
 * Reads the hemisphere of a latitude or longitude text: a last letter N or E
 * (either case) is positive, S or W negative; without one a leading "-" is
 * negative. The number itself is not read, so the result is always a zero
 * carrying that sign: callers take the hemisphere from the sign of the zero.
 * \param[out]    result cleared first, then +0.0 or -0.0
 * \param[in]     kind   0 latitude, 1 longitude
 * \param[in,out] text   the text; it is cleaned in place, and the hemisphere
 *                       letter or the minus is cut off it
 * \return 0, or 32768 for a null or (after cleaning) empty text or a kind
 *         other than 0 or 1.
 */
TESSAR_API int32_t tsFormat_getDoubleGeodeticOrdinate(double *result, int32_t kind, char *text);

/* ---- Reading angles and directions ---- */

/** tsFormat_getDoubleAngleExt in mode 3. */
TESSAR_API int32_t tsFormat_getDoubleAngle(double *result, const char *text);

/**
 * Widens at most 255 characters of text and reads them with
 * tsParse_stringToAngle.
 * \param[out] result the angle in radians
 * \param[in]  mode   angle mode
 * \param[in]  text   8-bit text
 * \return the parser's status: 0, or 0x80004005 as int32_t.
 */
TESSAR_API int32_t tsFormat_getDoubleAngleExt(double *result, int32_t mode, const char *text);

/** tsFormat_getDoubleDirectionExt with style 4 and mode 3. */
TESSAR_API int32_t tsFormat_getDoubleDirection(double *result, const char *text);

/**
 * Widens at most 255 characters of text and reads them with
 * tsParse_stringToDirection.
 * \param[out] result the direction in radians, counter-clockwise from east
 * \param[in]  style  direction style
 * \param[in]  mode   angle mode
 * \param[in]  text   8-bit text
 * \return the parser's status: 0, or 0x80004005 as int32_t.
 */
TESSAR_API int32_t tsFormat_getDoubleDirectionExt(double *result, int32_t style, int32_t mode,
                                                  const char *text);

/* ---- Stations ---- */

/**
 * Prints a station. Rounding to the decimals comes before the split into
 * whole stations and remainder (99.999 with 2 decimals in hundreds reads
 * "1+00.00"); the remainder is zero-padded to 2 (hundreds) or 3 (thousands)
 * integer digits.
 * \param[out] buffer          the text
 * \param[in]  value           station value
 * \param[in]  decimals        digits behind the point
 * \param[in]  style           station style 0, 2 or 3
 * \param[in]  leading         leading style 0, 1 or 2, for less than one station
 *                             (another value prints the padded remainder alone)
 * \param[in]  signedRemainder non-zero: a negative remainder prints as its
 *                             absolute value, in hundreds always, in
 *                             thousands only when the whole-station count
 *                             is not 0 (else it stays negative); zero: a
 *                             negative remainder prints as 0
 * \return 0, or 32768 for a null buffer or another style.
 */
TESSAR_API int32_t tsFormat_getFormattedStationEx(char *buffer, double value, int32_t decimals, int32_t style,
                                                  int32_t leading, int32_t signedRemainder);

/** tsFormat_getFormattedStationEx with the signed-remainder flag 0. */
TESSAR_API int32_t tsFormat_getFormattedStation(char *buffer, double value, int32_t decimals, int32_t style,
                                                int32_t leading);

/**
 * Prints a station with leading style 0, then " R " and the region unless
 * the region is 0 or 1 ("12+34.56 R 3").
 * \return 0, or 32768 as tsFormat_getFormattedStationEx.
 */
TESSAR_API int32_t tsFormat_getFormattedStationRegion(char *buffer, double value, int32_t region,
                                                      int32_t decimals, int32_t style);

/**
 * Prints the part of a station that a tick label of a series shows. Format
 * 0 gives the empty text; formats 1 to 29 fix decimals, style, and the
 * powers of ten by which the value is reduced (modulo) and divided (whole
 * quotient). Formats outside 0 to 29 are outside the contract and give the
 * empty text.
 * \return 0, or 32768 for a null buffer.
 */
TESSAR_API int32_t tsFormat_getFormattedStationForSeries(char *buffer, double value, int32_t format);

/**
 * Widens at most 255 characters of text and reads them with
 * tsParse_stringToStationByIndex and the unit 1.0.
 * \param[out] value  the station
 * \param[out] region optional: the region
 * \param[in]  text   8-bit text
 * \return the parser's status: 0, or 0x80004005 as int32_t.
 */
TESSAR_API int32_t tsFormat_getDoubleStationRegion(double *value, int32_t *region, const char *text);

/**
 * Takes apart a text such as "PRE 12+34.56 R 2 SUF", working on a cleaned
 * copy. The station is found by its first "+" followed by a digit.
 * \param[in]  text    the text
 * \param[out] value   optional: the station value, "+" removed
 * \param[out] region  optional: the region, 0 when none
 * \param[out] prefix  optional: the text before the station (a single
 *                     character counts as none)
 * \param[out] station optional: the station with its region text
 * \param[out] suffix  optional: the text after station and region
 * \return 0; 2 when the text holds no station (the station output then
 *         takes the whole text), has a second point, or does not read as a
 *         positive number; 32768 for a null text.
 */
TESSAR_API int32_t tsFormat_getDoubleStationRegionExt(const char *text, double *value, int32_t *region,
                                                      char *prefix, char *station, char *suffix);

TESSAR_END_DECLS

#endif /* TESSAR_FORMAT_H */
