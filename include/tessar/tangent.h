/*
 * Tessar: circles through points and tangent to lines and circles.
 *
 * The UTMAT_CalculerCer* family constructs every circle fixed by three
 * conditions among: passing through a point, tangent to a line, tangent to a
 * circle, of a given radius. Each function returns all the solutions, with
 * their tangency points, in a fixed order and with repeats removed, so that
 * a design application can offer them all. (The circle through a point
 * tangent to a clothoid is in ovoid.h.)
 *
 * Inputs: dpoint2d points, UTMAT_Droite lines (need not be normalised; never
 * changed) and circles as a centre and a radius. Outputs go to parallel
 * arrays that the caller provides and sizes (nothing is allocated and no
 * capacity is checked): the centres; the radii where the radius is unknown;
 * the tangency points, one dpoint2d per solution for one tangency, or a pair
 * per solution for two (pair i at [2 i] and [2 i + 1], the first point on
 * the first element of the function's name). Each function states the most
 * solutions it can store. A tangency point on a line is the foot of the
 * centre on it; on a circle of centre C, the point of the solution circle
 * towards C.
 *
 * Order of solutions: the sign loops (-1 then 1; for two elements the first
 * element's sign outermost) choose the side of each line and whether each
 * circle is touched from outside or inside; within one combination the roots
 * come larger magnitude first; a repeat of a solution already stored (centre,
 * and radius where it is an output, equal within UTMAT_getCalculPrec) is
 * dropped, so a solution stays at the place of its first finding.
 *
 * Every function clears the kernel's error word, sets the count to 0 first
 * and follows the kernel's call frame (see frame.h). No solution is a count
 * of 0 with the error word at 0, as is a given radius not above 0 within
 * UTMAT_getCalculPrec (|R| in UTMAT_CalculerCerTgDtePs1PtRayon). 32768
 * comes only from a degenerate line (a and b both 0), and from a null p1 in
 * UTMAT_CalculerCerPs3Pt; the count then stands at the solutions stored so
 * far.
 */
#ifndef TESSAR_TANGENT_H
#define TESSAR_TANGENT_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Through points ---- */

/**
 * The circle through three points.
 * \param[out] centre the centre
 * \param[out] radius the radius
 * \param[out] count  1, or 0 for points in line or coincident (no error)
 * Tests p1 only.
 */
TESSAR_API void UTMAT_CalculerCerPs3Pt(const dpoint2d *p1, const dpoint2d *p2, const dpoint2d *p3,
                                       dpoint2d *centre, double *radius, int32_t *count);

/**
 * The circles of radius R through two points.
 * \param[out] centres room for 2
 * \param[out] count   0 (points further apart than 2 R, or coincident), 1 or 2
 */
TESSAR_API void UTMAT_CalculerCerPs2PtRayon(const dpoint2d *p1, const dpoint2d *p2, double R,
                                            dpoint2d *centres, int32_t *count);

/* ---- Tangent to lines ---- */

/**
 * The circles of radius R tangent to two lines, in the sign order (-1, -1),
 * (-1, 1), (1, -1), (1, 1).
 * \param[out] centres room for 4
 * \param[out] points  room for 4 pairs: the point on d1, then on d2
 * \param[out] count   0 for parallel lines (no error)
 */
TESSAR_API void UTMAT_CalculerCerTg2DteRayon(const UTMAT_Droite *d1, const UTMAT_Droite *d2, double R,
                                             dpoint2d *centres, dpoint2d *points, int32_t *count);

/**
 * The circles tangent to two lines through a point.
 * \param[out] centres room for 8
 * \param[out] radii   room for 8
 * \param[out] points  room for 8 pairs: the point on d1, then on d2
 * \param[out] count   the number stored (at most 4 once repeats are removed)
 */
TESSAR_API void UTMAT_CalculerCerTg2DtePs1Pt(const UTMAT_Droite *d1, const UTMAT_Droite *d2,
                                             const dpoint2d *p, dpoint2d *centres, double *radii,
                                             dpoint2d *points, int32_t *count);

/**
 * The circles of radius R tangent to a line through a point. Only |R| is
 * tested against 0, so a negative R is not refused.
 * \param[out] centres room for 4
 * \param[out] points  room for 4: the points on d
 * \param[out] count   the number stored
 */
TESSAR_API void UTMAT_CalculerCerTgDtePs1PtRayon(const UTMAT_Droite *d, const dpoint2d *p, double R,
                                                 dpoint2d *centres, dpoint2d *points, int32_t *count);

/**
 * The circles tangent to a line through two points.
 * \param[out] centres room for 4
 * \param[out] radii   room for 4
 * \param[out] points  room for 4: the points on d
 * \param[out] count   the number stored
 */
TESSAR_API void UTMAT_CalculerCerTgDtePs2Pt(const UTMAT_Droite *d, const dpoint2d *p1, const dpoint2d *p2,
                                            dpoint2d *centres, double *radii, dpoint2d *points,
                                            int32_t *count);

/* ---- Tangent to circles ---- */

/**
 * The circles of radius R tangent to the circles (c1, r1) and (c2, r2).
 * \param[out] centres room for 8
 * \param[out] points  room for 8 pairs: the point on the first circle, then on the second
 * \param[out] count   the number stored
 */
TESSAR_API void UTMAT_CalculerCerTg2CerRayon(const dpoint2d *c1, double r1, const dpoint2d *c2, double r2,
                                             double R, dpoint2d *centres, dpoint2d *points, int32_t *count);

/**
 * The circles of radius R tangent to the circle (c, r) and to the line d.
 * \param[out] centres room for 8
 * \param[out] points  room for 8 pairs: the point on the circle, then on the line
 * \param[out] count   the number stored
 */
TESSAR_API void UTMAT_CalculerCerTgCerDteRayon(const dpoint2d *c, double r, const UTMAT_Droite *d, double R,
                                               dpoint2d *centres, dpoint2d *points, int32_t *count);

/**
 * The circles tangent to the circles (c1, r1) and (c2, r2) through p.
 * \param[out] centres room for 8
 * \param[out] radii   room for 8
 * \param[out] points  room for 8 pairs: the point on the first circle, then on the second
 * \param[out] count   the number stored
 */
TESSAR_API void UTMAT_CalculerCerTg2CerPs1Pt(const dpoint2d *c1, double r1, const dpoint2d *c2, double r2,
                                             const dpoint2d *p, dpoint2d *centres, double *radii,
                                             dpoint2d *points, int32_t *count);

/**
 * The circles tangent to the circle (c, r) and to the line d through p.
 * \param[out] centres room for 8
 * \param[out] radii   room for 8
 * \param[out] points  room for 8 pairs: the point on the circle, then on the line
 * \param[out] count   the number stored
 */
TESSAR_API void UTMAT_CalculerCerTgCerDtePs1Pt(const dpoint2d *c, double r, const UTMAT_Droite *d,
                                               const dpoint2d *p, dpoint2d *centres, double *radii,
                                               dpoint2d *points, int32_t *count);

/**
 * The circles of radius R tangent to the circle (c, r) through p. With p on
 * the circle and R equal to r within UTMAT_getCalculPrec, the circle itself
 * is a solution, touched everywhere: its tangency point is then p's
 * coordinates shifted once more by p (2 p), not p.
 * \param[out] centres room for 4
 * \param[out] points  room for 4: the points on the circle
 * \param[out] count   the number stored
 */
TESSAR_API void UTMAT_CalculerCerTgCerPs1PtRayon(const dpoint2d *c, double r, const dpoint2d *p, double R,
                                                 dpoint2d *centres, dpoint2d *points, int32_t *count);

/**
 * The circles tangent to the circle (c, r) through two points.
 * \param[out] centres room for 4
 * \param[out] radii   room for 4
 * \param[out] points  room for 4: the points on the circle
 * \param[out] count   the number stored
 */
TESSAR_API void UTMAT_CalculerCerTgCerPs2Pt(const dpoint2d *c, double r, const dpoint2d *p1,
                                            const dpoint2d *p2, dpoint2d *centres, double *radii,
                                            dpoint2d *points, int32_t *count);

TESSAR_END_DECLS

#endif /* TESSAR_TANGENT_H */
