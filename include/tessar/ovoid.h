/*
 * Tessar: ovoid transitions.
 *
 * An ovoid is a piece of clothoid that joins two circles of different radii,
 * one inside the other, turning the same way. UTMAT_CalculerParametreOve
 * finds the clothoid's parameter from the two radii and a third quantity;
 * UTMAT_CalculerCerTgClotPs1Pt finds the circle through a point that
 * osculates a given clothoid. Both rest on the clothoid functions.
 *
 * A clothoid is its signed parameter A, in its own frame; positions on it
 * are abscissas (lengths along the curve from its origin). Radii are
 * doubles; a first radius of exactly 0 stands for an infinite radius, making
 * the ovoid a plain clothoid from its origin. Angles are radians.
 *
 * Both functions clear the kernel's error word and store 32768 on failure
 * (see frame.h); no solution is a count of 0 with the error word at 0.
 * UTMAT_CalculerCerTgClotPs1Pt is the one construction that uses the
 * distance tolerance (UTMAT_getDistanceTolerance): a point within it of an
 * end of the clothoid piece snaps to that end.
 */
#ifndef TESSAR_OVOID_H
#define TESSAR_OVOID_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Codes ---- */

/** Third quantity of UTMAT_CalculerParametreOve: the length of the transition along the curve. */
#define TESSAR_OVOID_LENGTH 1
/** Third quantity of UTMAT_CalculerParametreOve: the change of tangent angle along the transition. */
#define TESSAR_OVOID_DEFLECTION 2
/** Third quantity of UTMAT_CalculerParametreOve: the gap, the smallest distance between the two circles. */
#define TESSAR_OVOID_GAP 3

/* ---- Ovoids ---- */

/**
 * The parameter of the ovoid between the radii R1 and R2 (absolute values
 * are taken of R1, R2 and v).
 * \param[in]  code  TESSAR_OVOID_LENGTH, _DEFLECTION or _GAP: what v is
 * \param[out] A     the parameter; not written for radii equal within
 *                   UTMAT_getCalculPrec (codes 1 and 2, R1 not 0)
 * \param[out] valid 1 on every path without error, else 0
 * An unknown code, or a failed step of the search by gap, sets 32768.
 */
TESSAR_API void UTMAT_CalculerParametreOve(int32_t code, double R1, double R2, double v, double *A,
                                           int32_t *valid);

/* ---- Circles osculating a clothoid ---- */

/**
 * The circle through p that osculates the clothoid of parameter A, found by
 * bisection on the abscissa between the deflections 0.001 and pi / 2,
 * whatever s1 and s2 are. s1 and s2, the abscissas of the ends of the piece,
 * serve for the snap: a p within the distance tolerance of an end gives the
 * circle osculating there.
 * \param[out] centre, R the circle (R is 0 first)
 * \param[out] tangency  the point of the clothoid it osculates
 * \param[out] count     1, or 0 (also for A exactly 0)
 */
TESSAR_API void UTMAT_CalculerCerTgClotPs1Pt(double A, double s1, double s2, const dpoint2d *p,
                                             dpoint2d *centre, double *R, dpoint2d *tangency, int32_t *count);

TESSAR_END_DECLS

#endif /* TESSAR_OVOID_H */
