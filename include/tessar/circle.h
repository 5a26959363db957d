/*
 * Tessar: circles, roots and triangle tests of the UTMAT kernel.
 *
 * A point against a circle, the crossings of a line with a circle and of two
 * circles, the real roots of a quadratic (the solver every tangent-circle
 * and parabola construction stands on), the complex roots of a polynomial by
 * Laguerre's method, overlap tests between segments, triangles and circle
 * segments, and a few small numeric functions.
 *
 * A circle is a centre (dpoint2d) and a radius (double); there is no circle
 * record. A triangle is three dpoint2d vertices and a sense: non-zero when
 * the vertices run clockwise, so that an interior point has a positive power
 * against each edge line (see vector.h for the orientation of UTMAT_Droite),
 * 0 when they run counter-clockwise. A complex number is a dpoint2d with the
 * real part in x and the imaginary part in y. Angles are radians,
 * counter-clockwise from the x axis.
 *
 * Every UTMAT_* function clears the kernel's error word on entry and stores
 * 32768 on failure (see frame.h); a construction without a solution gives a
 * count of 0 and is no failure. Where a function "tests" a pointer, a null
 * one fails and nothing is written. The triangle tests keep one scratch
 * value in process-wide state: like the error word, they are for one thread
 * at a time.
 */
#ifndef TESSAR_CIRCLE_H
#define TESSAR_CIRCLE_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Points and circles ---- */

/**
 * The point of the circle (centre, R) in the direction of p.
 * \param[out] point centre + R (cos a, sin a), a = atan2 of p - centre
 * \param[out] angle optional (may be null): a
 * Tests p, centre and point.
 */
TESSAR_API void UTMAT_ProjeterPtSurCercle(const dpoint2d *centre, double R, const dpoint2d *p,
                                          dpoint2d *point, double *angle);

/** out = centre + R (cos(angle), sin(angle)). Tests out and centre. */
TESSAR_API void UTMAT_CalculerPtSurCercleAngle(const dpoint2d *centre, double R, double angle, dpoint2d *out);

/**
 * \return with e = |p - centre| - R: -1 when e is below -tol (inside), 1 when
 * above tol (outside), else 0 (on the circle). Tests centre and p (a null
 * one gives 0).
 */
TESSAR_API int32_t UTMAT_CalculerClassePtCercle(const dpoint2d *centre, const dpoint2d *p, double R,
                                                double tol);

/* ---- Intersections ---- */

/**
 * The crossings of a line and a circle.
 * \param[in,out] line normalised in place (also when there is no crossing)
 * \param[out] out   the points: the first forward of the foot of the centre
 *                   along the line's direction (-b, a), the second behind it
 * \param[out] count 0, 1 for a tangent within tol (the foot), or 2
 * A degenerate line sets 32768 and leaves count unwritten.
 */
TESSAR_API void UTMAT_CalculerIntersectionDroiteCercle(UTMAT_Droite *line, const dpoint2d *centre, double R,
                                                       double tol, dpoint2d out[2], int32_t *count);

/**
 * The crossings of two circles, the first to the left of the direction from
 * c1 to c2.
 * \param[out] out   the points
 * \param[out] count 0, 1 or 2; -1 when the circles coincide (squared distance
 *                   of the centres not above tol, radii equal within tol);
 *                   0 for concentric circles of different radii (no error)
 * A degenerate radical line sets 32768.
 */
TESSAR_API void UTMAT_CalculerIntersection2Cercle(const dpoint2d *c1, double R1, const dpoint2d *c2,
                                                  double R2, double tol, dpoint2d out[2], int32_t *count);

/* ---- Roots ---- */

/**
 * The real roots of a x x + b x + c = 0, with a tolerance on the discriminant
 * propagated from a relative error of 1e-12 on each coefficient.
 * \param[in]  unused  accepted and ignored
 * \param[out] roots   two roots: the larger by magnitude first
 * \param[out] count   0 (no real root, or a = b = 0), 1 (linear or double
 *                     root) or 2. Tests count: a null one sets 32768.
 */
TESSAR_API void UTMAT_ResoudreEquation2Degre(double a, double b, double c, double unused, double roots[2],
                                             int32_t *count);

/**
 * The complex roots of a polynomial by Laguerre's method with deflation.
 * \param[in]  coefficients degree + 1 complex coefficients, the constant first
 * \param[out] roots        degree complex roots, by increasing real part;
 *                          nearly real roots are made real
 * \param[in]  polish       non-zero: refine each root against the coefficients
 * The iteration stops once the value is within 6e-8 of its rounding bound,
 * so roots are good to about 1e-7 relative (a double root to its square
 * root). Fails only on a division by zero inside. Degree 0 writes nothing.
 */
TESSAR_API void UTMAT_CalculerRacinePolynomeLaguerre(const dpoint2d *coefficients, int32_t degree,
                                                     dpoint2d *roots, int32_t polish);

/* ---- Distances and overlap tests ---- */

/**
 * \return the distance from p to the rectangle of corners lowerLeft and
 * upperRight: 0.0 inside or on it. Tests all three (a null one gives 0.0).
 */
TESSAR_API double UTMAT_CalculerDistancePtRectangle(const dpoint2d *p, const dpoint2d *lowerLeft,
                                                    const dpoint2d *upperRight);

/**
 * Tests whether the segment p1 p2, whose line is line, meets the triangle
 * t1 t2 t3 (sense as above), within tol. The test is deliberately
 * asymmetric: a segment clear of the triangle but inside its box is reported
 * when t1 and t2 lie on one side of its line beyond tol.
 * \return 1 or 0. A degenerate triangle edge sets 32768, with no defined result.
 */
TESSAR_API int32_t UTMAT_TesterIntersectionSegmentTriangle(const dpoint2d *p1, const dpoint2d *p2,
                                                           const UTMAT_Droite *line, const dpoint2d *t1,
                                                           const dpoint2d *t2, const dpoint2d *t3,
                                                           int32_t sense, double tol);

/**
 * Tests whether triangle A meets triangle B, within tol, through their edges
 * and then whether B lies inside A. The line used for A's third edge repeats
 * that of its second edge.
 * \return 1 or 0. A degenerate edge sets 32768.
 */
TESSAR_API int32_t UTMAT_TesterIntersection2Triangle(const dpoint2d *a1, const dpoint2d *a2,
                                                     const dpoint2d *a3, int32_t senseA, const dpoint2d *b1,
                                                     const dpoint2d *b2, const dpoint2d *b3, int32_t senseB,
                                                     double tol);

/**
 * Tests whether the segment of the circle (centre, R) cut off by a chord
 * meets the triangle t1 t2 t3, within tol.
 * \param[in] chordA, chordB the ends of the chord
 * \param[in] boxMin, boxMax the box of the figure
 * \param[in] chordLine the chord's line; (0, 0, 0) for no chord (the whole circle)
 * A triangle with all three vertices inside the circle, or all beyond the
 * chord, gives 0: the test looks for the triangle crossing the figure's
 * boundary, then for chordA inside the triangle.
 * \return 1 or 0; 0 for a null centre.
 */
TESSAR_API int32_t UTMAT_TesterIntersectionCercleTriangle(const dpoint2d *centre, double R,
                                                          const dpoint2d *chordA, const dpoint2d *chordB,
                                                          const dpoint2d *boxMin, const dpoint2d *boxMax,
                                                          const UTMAT_Droite *chordLine, const dpoint2d *t1,
                                                          const dpoint2d *t2, const dpoint2d *t3,
                                                          int32_t sense, double tol);

/* ---- Small numeric functions ---- */

/**
 * \return y0 when |dx| is greater than x * 1.0000000000000001e-39, else
 * x / dx * (y1 - y0) + y0. The guard is inverted on purpose: ordinary
 * arguments return y0 uninterpolated.
 */
TESSAR_API double UTMAT_CalculerInterpolationLineaire(double x, double dx, double y0, double y1);

/** \return n! as a product of doubles; 1.0 for n below 1. */
TESSAR_API double UTMAT_DFactorielle(int32_t n);

/** \return n! / k!, the product of k + 1 up to n; 1.0 for n = k; n below k sets 32768 and returns 1.0. */
TESSAR_API double UTMAT_FactorielleDivision(int32_t n, int32_t k);

TESSAR_END_DECLS

#endif /* TESSAR_CIRCLE_H */
