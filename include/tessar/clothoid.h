/*
 * Tessar: the clothoid (spiral) of road design.
 *
 * A clothoid is a transition curve whose curvature grows linearly with the
 * distance run along it. It is described by its signed parameter A, with
 * A * A = R * s at every point: a positive A turns left (towards positive y),
 * a negative A turns right. In its own frame the origin is the point of zero
 * curvature and the x axis the tangent there. At an abscissa s (L for the
 * full length) the radius is R = A * A / s, the deflection (tangent angle)
 * tau = s * s / (2 * A * A) radians, and the shift p = y(s) - R (1 - cos tau)
 * is the distance between the x axis and the circle tangent at s. An offset d
 * is measured from the curve, positive to the right of the direction of
 * travel.
 *
 * Points are computed from series in the normalised variable
 * b = s / (sqrt(2) |A|), with b * b = tau. Two series exist, chosen
 * process-wide for the UTMAT_* functions by UTMAT_SetQuorrelSpiralFormula (1,
 * the short form: four terms of each series, used at every s) and
 * UTMAT_SetVelloraSpiralFormula (2, the default: nine terms up to
 * tau = 3.4394 and an asymptotic far-field form beyond it, which does not
 * join the series continuously). Tangents are unit vectors
 * (cos tau, sign * sin tau), sign being 1 for a positive A and -1 otherwise.
 *
 * Every UTMAT_* function here clears the kernel's error word on entry and
 * stores 32768 on failure (see frame.h); output pointers are not tested
 * unless a comment says they are optional. The ts* functions report through
 * their result and leave the error word alone. Angles are radians.
 */
#ifndef TESSAR_CLOTHOID_H
#define TESSAR_CLOTHOID_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Points on a clothoid ---- */

/**
 * The point at abscissa s and offset d of a clothoid, and its tangent.
 * \param[out] outX, outY    optional: the offset point, (x + sin d, y - cos d)
 * \param[out] outCos        optional: cos(tau)
 * \param[out] outSin        optional: sin(tau), with the sign of A
 * \param[in]  A             the clothoid's parameter
 * \param[in]  s             the abscissa from the origin
 * \param[in]  d             the offset, positive to the right
 * \param[in]  formula       1 short series, 2 long series; any other value counts as 1
 * \return 0, or 32768 when A is exactly 0 (nothing is stored then).
 */
TESSAR_API int32_t tsMath_calculateSpiralPointByDistanceAndOffset(double *outX, double *outY, double *outCos,
                                                                  double *outSin, double A, double s,
                                                                  double d, int32_t formula);

/**
 * The point at abscissa s and offset d of a clothoid, by the kernel's
 * selected series.
 * \param[out] point   optional: the offset point
 * \param[out] tangent optional: the unit tangent (cos tau, sign * sin tau)
 * The error word is left at 0 even for an A of exactly 0, and the outputs
 * then hold no meaningful value: callers keep A non-zero.
 */
TESSAR_API void UTMAT_CalculerPosPointArcClotAbscisse(double A, double s, double d, dpoint2d *point,
                                                      dpoint2d *tangent);

/**
 * UTMAT_CalculerPosPointArcClotAbscisse as a function with a status.
 * \return the kernel's error word after the evaluation, which is always 0.
 */
TESSAR_API int32_t vlrUtmat_CalculateSpiralPointAtDistance(double A, double s, double d, dpoint2d *point,
                                                           dpoint2d *tangent);

/**
 * The first and second derivatives of (x, y) with respect to the normalised
 * variable b = s / (sqrt(2) |A|) (not with respect to s), as series used at
 * every s; the long series adds five terms to each.
 * \param[out] first, second the derivatives (neither is tested)
 * Fails when A is exactly 0; a very small A overflows to infinities.
 */
TESSAR_API void UTMAT_CalculerDeriveePremEtSecClot(double A, double s, dpoint2d *first, dpoint2d *second);

/* ---- Conversions between A, L, R, tau and p ---- */

/*
 * Codes of the conversions (a, b -> result). Signs of a and b are ignored.
 * Codes 3, 5, 6, 9, 13 and 16 search by bisection on the shift (at most 5000
 * halvings, to within the calculation precision); the others are closed forms.
 *
 *   1  R, L   -> A      7  A, R   -> L     14  A, L   -> tau
 *   2  L, tau -> A      8  A, tau -> L     15  A, R   -> tau
 *   3  L, p   -> A      9  A, p   -> L     16  A, p   -> tau
 *   4  R, tau -> A     11  A, L   -> R     17  A, L   -> p
 *   5  R, p   -> A     12  A, tau -> R     18  A, R   -> p
 *   6  tau, p -> A     13  A, p   -> R     19  A, tau -> p
 *
 * An a within the calculation precision of 0 makes every result invalid. A
 * b within it makes the result invalid for codes 1 to 6 and a valid 0 for
 * the others, except codes 8 and 14, which compute with it. A shift beyond
 * that of a quarter-turn clothoid gives a valid 0 for the bisections other
 * than code 6. A code of 0 or less, 10 or above 19 fails.
 */

/**
 * Converts between the describing quantities of a clothoid.
 * \param[in]  code the conversion (table above)
 * \param[in]  a, b the two given quantities
 * \param[out] out  the result, 0 when invalid
 * Fails for an unknown code, for an invalid result and when a nested
 * conversion of a search fails.
 */
TESSAR_API void UTMAT_CalculerParametreClot(int32_t code, double a, double b, double *out);

/**
 * The same conversion, reporting an invalid result in valid instead of the
 * error word.
 * \param[out] out   the result, 0 when invalid
 * \param[out] valid 1 when out holds a result, else 0
 * Fails for an unknown code and when a nested conversion of a search fails.
 */
TESSAR_API void UTMAT_CalculerParametreClotValide(int32_t code, double a, double b, double *out,
                                                  int32_t *valid);

/* ---- Tangents of offset curves ---- */

/*
 * An offset curve here is a curve at offset d from an arc or a clothoid,
 * where the offset changes by g per unit of abscissa (g = dd/ds). Its tangent
 * differs from the base curve's by an angle that depends on d, g and the
 * radius.
 */

/**
 * The angle from the tangent of a circular arc of radius R to that of its
 * offset curve at offset d with rate g.
 * \param[out] out the angle: 0 for g = 0 unless the offset passes the centre
 *                 (then pi); -pi/2 or pi/2 at the centre itself
 */
TESSAR_API void UTMAT_CalculerDifferenceTgArcCerTgOffCer(double R, double d, double g, double *out);

/**
 * The same angle on a clothoid at abscissa s.
 * \param[out] out the angle; atan(-g) at an abscissa of 0 or less, where the
 *                 radius is infinite
 */
TESSAR_API void UTMAT_CalculerDifferenceTgArcClotTgOffClt(double A, double s, double d, double g,
                                                          double *out);

/**
 * The unit tangent of the offset curve of a circular arc at abscissa s.
 * \param[in]  R      the radius
 * \param[in]  angle0 the direction from the centre to the start of the arc
 * \param[in]  sense  non-zero for the forward direction
 * \param[in]  s, g, d the abscissa, the rate of the offset and the offset
 * \param[out] out    the tangent, pointing backwards when sense is 0
 */
TESSAR_API void UTMAT_CalculerTangenteOffCer(double R, double angle0, int32_t sense, double s, double g,
                                             double d, dpoint2d *out);

/**
 * The unit tangent of the offset curve of a clothoid at abscissa s.
 * \param[in]  A      the clothoid's parameter
 * \param[in]  angle0 the direction of the clothoid's tangent at its origin
 * \param[in]  sense  non-zero for the forward direction
 * \param[in]  s, g, d the abscissa, the rate of the offset and the offset
 * \param[out] out    the tangent, pointing backwards when sense is 0
 */
TESSAR_API void UTMAT_CalculerTangenteOffClt(double A, double angle0, int32_t sense, double s, double g,
                                             double d, dpoint2d *out);

/* ---- Spiral length ---- */

/**
 * The length of a spiral joining two tangents, from the deflection between
 * them and the radii at its two ends: 2 |w| / (1 / R1 + 1 / R2), w being the
 * deflection brought into [-pi, pi].
 * \param[in] azimuth1, azimuth2 the tangents' azimuths (clockwise from north)
 * \param[in] R1, R2 the signed radii; a radius of 0 counts as infinite
 * \return the length, or 0.0 when the curvatures add up to 0.
 */
TESSAR_API double tsMath_spiralLength(double azimuth1, double azimuth2, double R1, double R2);

TESSAR_END_DECLS

#endif /* TESSAR_CLOTHOID_H */
