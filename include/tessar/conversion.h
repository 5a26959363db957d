/*
 * Tessar: elementary conversions of surveying.
 *
 * Angle units and their sexagesimal splitting, azimuth against mathematical
 * direction, the international and US survey feet, the degree of curve
 * against the radius, and rounding to a step. Every function is pure and
 * keeps no state.
 *
 * Angles called radians are radians. A direction is mathematical: 0 towards
 * east, growing counter-clockwise, kept in 0 up to 2 pi. An azimuth is 0
 * towards north and grows clockwise. Quadrants are those of surveying: 1
 * north-east, 2 south-east, 3 south-west, 4 north-west. The degree of curve
 * is taken on a reference length of 100 units: by arc, the central angle of
 * an arc 100 long; by chord, that of a chord 100 long.
 *
 * One tolerance, 5e-8, serves as the angular and the rounding tolerance of
 * the whole family. None of these functions fails.
 */
#ifndef TESSAR_CONVERSION_H
#define TESSAR_CONVERSION_H

#include <stdint.h>

#include <tessar/export.h>

TESSAR_BEGIN_DECLS

/* ---- Angle units ---- */

/** \return angle (degrees) times pi over 180: radians. */
TESSAR_API double tsConversion_degreeToRadian(double angle);

/** \return angle (radians) times 180 over pi: degrees. */
TESSAR_API double tsConversion_radianToDegree(double angle);

/** \return pi times 0.005 times angle (grads): radians. */
TESSAR_API double tsConversion_gradToRadian(double angle);

/** \return 200 over pi times angle (radians): grads. */
TESSAR_API double tsConversion_radianToGrad(double angle);

/* ---- Azimuth and direction ---- */

/**
 * Turns an azimuth into a mathematical direction, or back: the mapping
 * pi / 2 - angle is its own inverse.
 * \param[in] angle azimuth (or direction), radians
 * \return the direction (or azimuth) in 0 up to 2 pi.
 */
TESSAR_API double tsConversion_azimuthToDirection(double angle);

/** The same as tsConversion_azimuthToDirection: direction to azimuth, radians. */
TESSAR_API double tsConversion_directionToAzimuth(double angle);

/**
 * tsConversion_azimuthToDirection in degrees on both sides.
 * \param[in] angle azimuth (or direction), degrees
 * \return the direction (or azimuth) in 0 up to 360 degrees.
 */
TESSAR_API double tsConversion_azimuthToDirectionDegree(double angle);

/** The same as tsConversion_azimuthToDirectionDegree: direction to azimuth, degrees. */
TESSAR_API double tsConversion_directionToAzimuthDegree(double angle);

/**
 * The surveying quadrant of a direction. The direction is first brought into
 * 0 up to 2 pi; every boundary then lies 5e-8 before its round value, so a
 * direction a hair short of north already counts as north-west.
 * \param[in] direction radians
 * \return 1 (NE), 2 (SE), 3 (SW), 4 (NW), or 0 for a direction within 5e-8
 *         below 2 pi (a hair short of east lies in no quadrant).
 */
TESSAR_API int32_t tsConversion_quadrantNumber(double direction);

/* ---- Sexagesimal splitting ---- */

/**
 * Splits decimal degrees into whole degrees (truncated toward zero) and
 * minutes, both with the sign of the value. Minutes strictly within 5e-8 of
 * 60 (or -60) carry into the degrees and become 0.
 * \param[out] degrees whole degrees, or null
 * \param[out] minutes minutes, or null
 * \param[in]  value   decimal degrees
 * \return 0, always.
 */
TESSAR_API int32_t tsConversion_degreeToDM(int32_t *degrees, double *minutes, double value);

/**
 * Splits decimal degrees into whole degrees, whole minutes and seconds, all
 * truncated toward zero and with the sign of the value. Seconds strictly
 * within 5e-8 of 60 (or -60) carry into the minutes, and minutes of exactly
 * 60 (or -60) then carry into the degrees.
 * \param[out] degrees whole degrees, or null
 * \param[out] minutes whole minutes, or null
 * \param[out] seconds seconds, or null
 * \param[in]  value   decimal degrees
 * \return 0, always.
 */
TESSAR_API int32_t tsConversion_degreeToDMS(int32_t *degrees, int32_t *minutes, double *seconds,
                                            double value);

/**
 * degrees + minutes / 60, with no sign logic: the minutes are added as given,
 * also to negative degrees.
 * \param[out] result the value, or null
 * \return the value.
 */
TESSAR_API double tsConversion_DMToDegree(double *result, int32_t degrees, double minutes);

/**
 * seconds / 3600 + minutes / 60 + degrees, with no sign logic.
 * \param[out] result the value, or null
 * \return the value.
 */
TESSAR_API double tsConversion_DMSTodegree(double *result, double degrees, double minutes, double seconds);

/* ---- Rounding ---- */

/**
 * Rounds value to a multiple of the absolute step.
 * \param[out] result the rounded value. When the step is below 5e-8 or the
 *        value already lies within 5e-8 of a multiple, the value is stored
 *        unchanged and this pointer must be valid; on the rounding path a
 *        null pointer is skipped.
 * \param[in] value the value
 * \param[in] step  the step, taken by its absolute value
 * \param[in] mode  1 up (toward plus infinity), 2 down, 3 nearest with halves
 *        (within 5e-8) going up, for negative values too
 * \return the result; 0.0 for any other mode when rounding was needed.
 */
TESSAR_API double tsConversion_roundDouble(double *result, double value, double step, int32_t mode);

/**
 * tsConversion_roundDouble with the step 10 to the power of -digits.
 * \param[out] result the rounded value, or null (on every path)
 * \return the result.
 */
TESSAR_API double tsConversion_roundDoubleByDecimalDigits(double *result, double value, int32_t digits,
                                                          int32_t mode);

/* ---- Feet and metres (stored factors, not each other's reciprocals) ---- */

/** \return feet (US survey) times 0.3048006096012192: metres. */
TESSAR_API double tsConversion_usfootToMeter(double feet);

/** \return feet (international) times 0.3048: metres. */
TESSAR_API double tsConversion_internationalFootToMeter(double feet);

/** \return metres times 3.2808333333333333: US survey feet. */
TESSAR_API double tsConversion_meterToUsFoot(double meters);

/** \return metres times 3.280839895013123: international feet. */
TESSAR_API double tsConversion_meterToInternationalFoot(double meters);

/** \return US survey feet times 1.000002000004: international feet. */
TESSAR_API double tsConversion_usFootToInternationalFoot(double feet);

/** \return international feet times 0.999998: US survey feet. */
TESSAR_API double tsConversion_internationalFootToUsFoot(double feet);

/* ---- Degree of curve ---- */

/**
 * The degree of curve by arc of a radius: 36000 / (2 pi radius) degrees, with
 * the sign of the radius.
 * \return the degree, or 0 for a radius of at most 5e-8 in magnitude.
 */
TESSAR_API double tsConversion_radiusToDegree(double radius);

/**
 * The degree of curve by chord of a radius: 2 asin(50 / radius) in degrees.
 * \return the degree, or 0 for a radius below 50 in magnitude (a chord of 100
 *         does not fit).
 */
TESSAR_API double tsConversion_radiusToDegreeChord(double radius);

/**
 * The radius of a degree of curve by arc: 36000 / (degree 2 pi).
 * \return the radius, or 0 for a degree of at most 5e-8 in magnitude.
 */
TESSAR_API double tsConversion_degreeToRadius(double degree);

/**
 * The radius of a degree of curve by chord: 50 / sin(degree / 2).
 * \return the radius, or 0 for a degree of at most 5e-8 in magnitude.
 */
TESSAR_API double tsConversion_degreeToRadiusChord(double degree);

/* ---- Text ---- */

/**
 * Prints value with the format "%-.*lf".
 * \param[out] buffer the caller's buffer, large enough for the text (not checked)
 * \param[in]  value    the value
 * \param[in]  decimals decimals, limited to 0 to 8
 * \return the printed length.
 */
TESSAR_API int32_t tsConversion_doubleToString(char *buffer, double value, int32_t decimals);

TESSAR_END_DECLS

#endif /* TESSAR_CONVERSION_H */
