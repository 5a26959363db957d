/*
 * Tessar: parabolic arcs of a vertical alignment.
 *
 * Vertical curves of a road profile are arcs of parabola with a vertical
 * axis. The UTMAT_CalculerArcPar* family constructs such a parabola from
 * conditions (through a point, tangent to a line, tangent to another
 * parabola, given vertex, radius or length); the functions after it
 * construct the tangent lines to a parabola and intersect parabolas with
 * lines and with each other.
 *
 * A parabola is its vertex S (dpoint2d) and its signed radius R at the
 * vertex: y = S.y + (x - S.x)^2 / (2 R), the slope at x being (x - S.x) / R.
 * A positive R opens upwards. x is the running abscissa of the profile and
 * y the level. There is no record: S and R are separate arguments. A line
 * (UTMAT_Droite, never changed) is turned into the slope form y = m x + k,
 * so a vertical or almost vertical line gives no solution.
 *
 * Outputs go to caller arrays, as in tangent.h: vertices, radii where the
 * radius is unknown, and tangency points, one dpoint2d per solution, or a
 * pair per solution (pair i at [2 i] and [2 i + 1], the first on the first
 * element of the name) where there are two tangencies. Each function zeroes
 * its count and output arrays first, so unused slots hold zeros; at most 2
 * solutions are stored. Roots come larger magnitude first, measured in the
 * function's local frame; repeated solutions are not removed.
 *
 * Every function clears the kernel's error word and takes the count last.
 * Failure is silent: an impossible configuration or a failed division guard
 * gives a smaller count with the error word at 0. 32768 comes only from a
 * degenerate line in a normalising step and from a null d1 in
 * UTMAT_CalculerArcParTg2DteRayon. A radius may have been stored before a
 * later guard failed: the count is what tells.
 */
#ifndef TESSAR_PARABOLA_H
#define TESSAR_PARABOLA_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Parabolas through points and with a given vertex ---- */

/**
 * The parabola through three points.
 * \param[out] S, R  its vertex and radius
 * \param[out] count 1, or 0 for points in line or a radius near 0
 */
TESSAR_API void UTMAT_CalculerArcParPs3Pt(const dpoint2d *p1, const dpoint2d *p2, const dpoint2d *p3,
                                          dpoint2d *S, double *R, int32_t *count);

/**
 * The parabola of radius R through two points.
 * \param[out] S     its vertex
 * \param[out] count 1, or 0 for points with equal x or a failed guard on R
 */
TESSAR_API void UTMAT_CalculerArcParPs2PtRayon(const dpoint2d *p1, const dpoint2d *p2, double R, dpoint2d *S,
                                               int32_t *count);

/**
 * The radius of the parabola whose vertex is first and which passes through
 * second.
 * \param[out] R     the radius (0 first)
 * \param[out] count 1, or 0 when the points are level
 */
TESSAR_API void UTMAT_CalculerArcParPs1PtSommet(const dpoint2d *first, const dpoint2d *second, double *R,
                                                int32_t *count);

/**
 * The parabola of vertex S tangent to the line d. The slope takes the a of d
 * as given with the b of d normalised: pass a normalised line.
 * \param[in,out] S  the vertex, written back unchanged
 * \param[out] R, T  the radius and the tangency point
 * \param[out] count 1 or 0
 */
TESSAR_API void UTMAT_CalculerArcParTg1DteSommet(const UTMAT_Droite *d, dpoint2d *S, double *R, dpoint2d *T,
                                                 int32_t *count);

/**
 * The parabola of vertex S tangent to the parabola (S0, R0).
 * \param[out] R     the radius, stored even when a later guard gives count 0
 * \param[out] T     the tangency point
 * \param[out] count 1 or 0
 */
TESSAR_API void UTMAT_CalculerArcParTg1ArcParSommet(const dpoint2d *S0, double R0, const dpoint2d *S,
                                                    double *R, dpoint2d *T, int32_t *count);

/* ---- Parabolas tangent to lines ---- */

/**
 * The parabola of radius R tangent to two lines (taken as given, not
 * normalised). Tests d1 only.
 * \param[out] S      the vertex
 * \param[out] T1, T2 the tangency points on d1 and on d2
 * \param[out] count  1 or 0
 */
TESSAR_API void UTMAT_CalculerArcParTg2DteRayon(const UTMAT_Droite *d1, const UTMAT_Droite *d2, double R,
                                                dpoint2d *S, dpoint2d *T1, dpoint2d *T2, int32_t *count);

/**
 * The parabolas of radius R tangent to d through p.
 * \param[out] S     room for 2 vertices
 * \param[out] T     room for 2 tangency points on d
 * \param[out] count 0 to 2
 */
TESSAR_API void UTMAT_CalculerArcParTg1DteRayon(const UTMAT_Droite *d, const dpoint2d *p, double R,
                                                dpoint2d *S, dpoint2d *T, int32_t *count);

/**
 * The parabolas tangent to d through p1 and p2.
 * \param[out] S, R  room for 2 vertices and radii
 * \param[out] T     room for 2 tangency points on d
 * \param[out] count 0 to 2
 */
TESSAR_API void UTMAT_CalculerArcParTg1DtePs2Pt(const UTMAT_Droite *d, const dpoint2d *p1, const dpoint2d *p2,
                                                dpoint2d *S, double *R, dpoint2d *T, int32_t *count);

/**
 * The parabolas tangent to two lines through p.
 * \param[out] S, R  room for 2 vertices and radii
 * \param[out] T     room for 2 pairs: the point on d1, then on d2
 * \param[out] count 0 to 2
 */
TESSAR_API void UTMAT_CalculerArcParTg2DtePs1Pt(const UTMAT_Droite *d1, const UTMAT_Droite *d2,
                                                const dpoint2d *p, dpoint2d *S, double *R, dpoint2d *T,
                                                int32_t *count);

/**
 * The parabolas tangent to two lines whose tangency points lie the
 * horizontal distance L apart: first with -L, then with L.
 * \param[out] S, R  room for 2 vertices and radii
 * \param[out] T     room for 2 pairs: the point on d1, then on d2
 * \param[out] count 0 to 2; 0 for parallel lines
 */
TESSAR_API void UTMAT_CalculerArcParTg2DteLongueur(const UTMAT_Droite *d1, const UTMAT_Droite *d2, double L,
                                                   dpoint2d *S, double *R, dpoint2d *T, int32_t *count);

/* ---- Parabolas tangent to parabolas ---- */

/**
 * The parabolas tangent to the parabola (S0, R0) through p1 and p2.
 * \param[out] S, R  room for 2 vertices and radii
 * \param[out] T     room for 2 tangency points on (S0, R0)
 * \param[out] count 0 to 2
 */
TESSAR_API void UTMAT_CalculerArcParTg1ArcParPs2Pt(const dpoint2d *S0, double R0, const dpoint2d *p1,
                                                   const dpoint2d *p2, dpoint2d *S, double *R, dpoint2d *T,
                                                   int32_t *count);

/**
 * The parabolas of radius R tangent to the parabola (S0, R0) through p.
 * \param[out] S     room for 2 vertices
 * \param[out] T     room for 2 tangency points on (S0, R0)
 * \param[out] count 0 to 2; 0 when a guard fails at any root
 */
TESSAR_API void UTMAT_CalculerArcParTg1ArcParPs1PtRayon(const dpoint2d *S0, double R0, const dpoint2d *p,
                                                        double R, dpoint2d *S, dpoint2d *T, int32_t *count);

/**
 * The parabolas tangent to the parabolas (S1, R1) and (S2, R2) through p.
 * \param[out] S, R  room for 2 vertices and radii
 * \param[out] T     room for 2 pairs: the point on (S1, R1), then on (S2, R2)
 * \param[out] count 0 to 2; a guard that fails at a root stops the function
 *                   with the count of the roots finished, whose slots still
 *                   hold zeros
 */
TESSAR_API void UTMAT_CalculerArcParTg2ArcParPs1Pt(const dpoint2d *S1, double R1, const dpoint2d *S2,
                                                   double R2, const dpoint2d *p, dpoint2d *S, double *R,
                                                   dpoint2d *T, int32_t *count);

/**
 * The parabolas of radius R tangent to the parabolas (S1, R1) and (S2, R2).
 * \param[out] S     room for 2 vertices
 * \param[out] T     room for 2 pairs: the point on (S1, R1), then on (S2, R2)
 * \param[out] count 0 to 2; 0 when S1 and S2 coincide
 */
TESSAR_API void UTMAT_CalculerArcParTg2ArcParRayon(const dpoint2d *S1, double R1, const dpoint2d *S2,
                                                   double R2, double R, dpoint2d *S, dpoint2d *T,
                                                   int32_t *count);

/**
 * The parabolas tangent to the parabola (S0, R0) and to the line d through p.
 * \param[out] S, R  room for 2 vertices and radii
 * \param[out] T     room for 2 pairs: the point on the parabola, then on the line
 * \param[out] count 0 to 2
 */
TESSAR_API void UTMAT_CalculerArcParTgArcParDtePs1Pt(const dpoint2d *S0, double R0, const UTMAT_Droite *d,
                                                     const dpoint2d *p, dpoint2d *S, double *R, dpoint2d *T,
                                                     int32_t *count);

/**
 * The parabolas of radius R tangent to the parabola (S0, R0) and to the line d.
 * \param[out] S     room for 2 vertices
 * \param[out] T     room for 2 pairs: the point on the parabola, then on the line
 * \param[out] count 0 to 2
 */
TESSAR_API void UTMAT_CalculerArcParTgArcParDteRayon(const dpoint2d *S0, double R0, const UTMAT_Droite *d,
                                                     double R, dpoint2d *S, dpoint2d *T, int32_t *count);

/* ---- Tangent lines ---- */

/**
 * The line of slope m tangent to the parabola (S, R), normalised.
 * \param[out] out   the line
 * \param[out] T     the tangency point
 * \param[out] count 1, or 0 for R near 0
 */
TESSAR_API void UTMAT_CalculerDroiteTg1ArcParPente(const dpoint2d *S, double R, double m, UTMAT_Droite *out,
                                                   dpoint2d *T, int32_t *count);

/**
 * The tangents from p to the parabola (S, R), normalised, the steeper first;
 * a horizontal tangent is not reported.
 * \param[out] out   room for 2 lines
 * \param[out] T     room for 2 tangency points
 * \param[out] count 0 to 2
 */
TESSAR_API void UTMAT_CalculerDroiteTg1ArcParPs1Pt(const dpoint2d *p, const dpoint2d *S, double R,
                                                   UTMAT_Droite out[2], dpoint2d *T, int32_t *count);

/**
 * The common tangents of the parabolas (S1, R1) and (S2, R2), normalised; a
 * horizontal tangent is not reported.
 * \param[out] out   room for 2 lines
 * \param[out] T     room for 2 pairs: the point on (S1, R1), then on (S2, R2)
 * \param[out] count 0 to 2; 0 for R1 near 0
 */
TESSAR_API void UTMAT_CalculerDroiteTg2ArcPar(const dpoint2d *S1, double R1, const dpoint2d *S2, double R2,
                                              UTMAT_Droite out[2], dpoint2d *T, int32_t *count);

/* ---- Intersections ---- */

/**
 * The crossings of the line d with the parabola (S, R); a vertical line gives
 * its one point.
 * \param[out] out   room for 2 points
 * \param[out] count 0 to 2; 0 for R near 0
 */
TESSAR_API void UTMAT_CalculerIntersectionDroiteParabole(const UTMAT_Droite *d, const dpoint2d *S, double R,
                                                         dpoint2d out[2], int32_t *count);

/**
 * The crossings of the parabolas (S1, R1) and (S2, R2); equal radii give the
 * single crossing.
 * \param[out] out   room for 2 points
 * \param[out] count 0 to 2; 0 for a radius near 0 or equal parabolas
 */
TESSAR_API void UTMAT_CalculerIntersection2Parabole(const dpoint2d *S1, double R1, const dpoint2d *S2,
                                                    double R2, dpoint2d out[2], int32_t *count);

TESSAR_END_DECLS

#endif /* TESSAR_PARABOLA_H */
