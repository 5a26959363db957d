/*
 * Tessar: angles and angular sectors.
 *
 * Angular bookkeeping of the kernel: bringing an angle into a range, the
 * angle between two vectors or two lines, the angle at a circle's centre, and
 * the algebra of angular sectors (ranking two sectors on the circle, their
 * common part and the smallest sector that holds both).
 *
 * Angles are radians, counter-clockwise from the positive x axis. A sector
 * is a direction and a sweep: it starts at the direction and opens
 * counter-clockwise by the sweep (clockwise for a negative sweep, where a
 * function allows one). The length of a direction vector plays no part.
 *
 * The sector algebra exists twice with the same logic: the UTMAT_* forms take
 * their directions as dpoint2d by pointer, clear the kernel's error word on
 * entry and store 32768 there on failure (see frame.h); the tsMath_* forms
 * take the same numbers by value, return a status (0, or 32768) and leave the
 * error word alone. All records are the caller's; nothing is kept between
 * calls apart from the kernel's error word.
 *
 * Ranking two sectors gives, for each, its start angle (in 0 up to 2 pi) and
 * its end angle = start + sweep (which may exceed 2 pi). The first of the
 * ranked pair is the sector with the smaller start; on equal starts it is
 * the second sector given. The relation of the ranked pair (s1, e1, s2, e2)
 * is one of the TESSAR_SECTORS_* classes below, tested exactly, in order.
 */
#ifndef TESSAR_ANGLE_H
#define TESSAR_ANGLE_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Codes ---- */

/** Mode of UTMAT_NormaliserAngle: into the range above -pi up to pi. */
#define TESSAR_ANGLE_SIGNED 0
/** Mode of UTMAT_NormaliserAngle: into the range 0 up to 2 pi. */
#define TESSAR_ANGLE_POSITIVE 1
/** Mode of UTMAT_NormaliserAngle: clamped to -2 pi .. 2 pi, without wrapping. */
#define TESSAR_ANGLE_CLAMPED 2

/** Sector class: e1 >= e2, the second sector lies within the first. */
#define TESSAR_SECTORS_INSIDE 1
/** Sector class: they overlap once, on the second's start side. */
#define TESSAR_SECTORS_OVERLAP 2
/** Sector class: they overlap at both ends (the second runs round past the first's start). */
#define TESSAR_SECTORS_OVERLAP_BOTH_ENDS 3
/** Sector class: they do not touch. */
#define TESSAR_SECTORS_APART 4
/** Sector class: the second runs round the circle into the first. */
#define TESSAR_SECTORS_WRAP_INTO_FIRST 5
/** Sector class: the second runs round the circle and contains the first. */
#define TESSAR_SECTORS_WRAP_AROUND_FIRST 6

/* ---- Normalising ---- */

/**
 * Brings an angle into the range that mode selects: 0 above -pi up to pi,
 * 1 from 0 up to 2 pi (both by fmod), 2 clamped to -2 pi .. 2 pi.
 * \return the angle in range; an unknown mode sets 32768 and returns the
 * angle unchanged.
 */
TESSAR_API double UTMAT_NormaliserAngle(int32_t mode, double angle);

/* ---- Angles of vectors, lines and points ---- */

/**
 * \return the counter-clockwise angle from v1 to v2, in 0 up to 2 pi; 0 when
 * either vector is zero (not a failure). Tests v1 and v2: a null one sets
 * 32768.
 */
TESSAR_API double UTMAT_CalculerAngleV1V2(const dpoint2d *v1, const dpoint2d *v2);

/**
 * The counter-clockwise angle from the direction (-b1, a1) of d1 to the
 * direction (-b2, a2) of d2, in 0 up to 2 pi.
 * \param[out] out the angle
 * Tests all three pointers: a null one sets 32768.
 */
TESSAR_API void UTMAT_CalculerAngleD1D2(const UTMAT_Droite *d1, const UTMAT_Droite *d2, double *out);

/**
 * The angle at centre from p1 to p2.
 * \param[in] sense non-zero: the counter-clockwise sweep (0 up to 2 pi);
 *                  0: the clockwise sweep as a negative number
 * \return the sweep; 0.0 with 32768 when p1 or p2 is exactly the centre.
 * Tests all three points.
 */
TESSAR_API double UTMAT_CalculerAngleAuCentre(const dpoint2d *centre, const dpoint2d *p1, const dpoint2d *p2,
                                              int32_t sense);

/**
 * The polar coordinates of p about centre.
 * \param[out] angle  atan2 of p - centre; 0 when p is exactly the centre
 * \param[out] radius the distance from centre to p
 * Tests all four pointers.
 */
TESSAR_API void UTMAT_CalculerAngleRayonPtCentre(const dpoint2d *centre, const dpoint2d *p, double *angle,
                                                 double *radius);

/**
 * The sweep from the direction offset to the direction of p1 - p2 (taken in
 * 0 up to 2 pi): counter-clockwise, in 0 up to 2 pi, with a non-zero sense;
 * clockwise as a negative number with sense 0.
 * \return the sweep. Tests p1 and p2.
 */
TESSAR_API double UTMAT_CalculerAnglePtOffsetAngle(const dpoint2d *p1, const dpoint2d *p2, double offset,
                                                   int32_t sense);

/* ---- An angle against a sector ---- */

/**
 * Tests whether angle lies in the sector (start, sweep), within tol; a
 * negative sweep opens clockwise.
 * \param[out] inside 1 when the angle lies in the sector, else 0
 * \param[out] delta  the angle less start, moved by 2 pi to the sweep's side
 * Tests inside and delta (both required): a null one sets 32768.
 */
TESSAR_API void UTMAT_ComparerAngleASecteurAngulaire(double angle, double start, double sweep, double tol,
                                                     int32_t *inside, double *delta);

/**
 * The same test as UTMAT_ComparerAngleASecteurAngulaire, without the error word.
 * \param[out] inside 1 when direction lies in the sector, else 0
 * \param[out] delta  optional (may be null): direction less start, as above
 * \return 0, always.
 */
TESSAR_API int32_t tsMath_compareDirectionToSector(int32_t *inside, double *delta, double direction,
                                                   double start, double sweep, double tol);

/* ---- Sector algebra (kernel) ---- */

/**
 * Ranks two sectors and classifies their relation. Tests no pointer.
 * \param[out] firstDir, firstStart, firstEnd    the sector with the smaller start
 * \param[out] secondDir, secondStart, secondEnd the other one
 * \param[out] relation one of TESSAR_SECTORS_*; an unclassifiable case (a
 *             not-a-number operand) stores 0 and sets 32768
 */
TESSAR_API void UTMAT_Classer2Secteurs(const dpoint2d *dir1, double sweep1, const dpoint2d *dir2,
                                       double sweep2, dpoint2d *firstDir, double *firstStart,
                                       double *firstEnd, dpoint2d *secondDir, double *secondStart,
                                       double *secondEnd, int32_t *relation);

/**
 * The common part of two sectors, its sweep in 0 up to 2 pi. Where they
 * overlap at both ends only the piece that starts at the second's start is
 * given.
 * \param[out] direction the start direction of the common part; (0, 0) when none
 * \param[out] sweep     its sweep; 0 when none
 * \param[out] count     1, or 0 for sectors that do not touch (not a failure)
 * Sectors that cannot be classified (a not-a-number operand) set 32768 and
 * the function returns at once.
 */
TESSAR_API void UTMAT_CalculerProduitSecteur(const dpoint2d *dir1, double sweep1, const dpoint2d *dir2,
                                             double sweep2, dpoint2d *direction, double *sweep,
                                             int32_t *count);

/**
 * The smallest sector that holds both. A sum that covers the whole circle
 * is reported with sweep 0.
 * \param[out] direction its start direction (one of the two given)
 * \param[out] sweep     its sweep, in 0 up to 2 pi
 * Sectors that cannot be classified (a not-a-number operand) set 32768 and
 * the function returns at once.
 */
TESSAR_API void UTMAT_CalculerSommeSecteur(const dpoint2d *dir1, double sweep1, const dpoint2d *dir2,
                                           double sweep2, dpoint2d *direction, double *sweep);

/* ---- Sector algebra (by value) ---- */

/**
 * UTMAT_CalculerProduitSecteur on directions (x1, y1) and (x2, y2), without
 * the error word.
 * \param[out] x, y, sweep the common part; count 1, or 0 when none
 * \return 0, or 32768 when the sectors cannot be classified (a not-a-number
 * operand), with all four outputs zeroed.
 */
TESSAR_API int32_t tsMath_calculateAngularSectorProduct(double *x, double *y, double *sweep, int32_t *count,
                                                        double x1, double y1, double sweep1, double x2,
                                                        double y2, double sweep2);

/**
 * UTMAT_CalculerSommeSecteur on directions (x1, y1) and (x2, y2), without
 * the error word.
 * \param[out] x, y, sweep the enclosing sector (sweep 0 for the whole circle)
 * \return 0, or 32768 when the sectors cannot be classified (a not-a-number
 * operand), with the outputs zeroed.
 */
TESSAR_API int32_t tsMath_calculateAngularSectorSum(double *x, double *y, double *sweep, double x1, double y1,
                                                    double sweep1, double x2, double y2, double sweep2);

TESSAR_END_DECLS

#endif /* TESSAR_ANGLE_H */
