/*
 * Tessar: least-squares fits.
 *
 * Fits of surveyed data: a straight line in plan and a plane z = a x + b y + c,
 * circles in plan and parabolic vertical curves in section, a vertical
 * alignment inside a tolerance band around a long section, and plane
 * coordinate transformations from control pairs.
 *
 * Observations are flat arrays of doubles with a sigma beside each coordinate:
 * TESSAR_BESTFIT_OBSERVATION_SIZE doubles per point (x, sigma x, y, sigma y)
 * for lines and curves, TESSAR_BESTFIT_PAIR_SIZE per control pair (x, sigma x,
 * y, sigma y, X, sigma X, Y, sigma Y) for transforms. For a vertical curve x
 * is the chainage and y the level. Plane coefficients are always the three
 * doubles a, b, c in that order. Grades are ratios, not percent; lengths and
 * coordinates are in the caller's units. The standard error of the line,
 * plane and vertical curve fits is sqrt(sum of squared residuals) / n.
 *
 * Every function but tsBestFit_verticalProfileInitialize, which returns
 * nothing, returns a signed 32-bit status: 0 on success, 32768 on failure,
 * and 1 where a function says so. Singular systems are not reported: they
 * show as a failure to converge or as meaningless values.
 *
 * Ownership. Arrays that a function hands out come from tsMem_* and are freed
 * with tsMem_free. Inputs stay the caller's; tsBestFit_horzCurveCalc changes
 * its observation array while it runs.
 *
 * Shared state. The vertical profile fit (tsBestFit_verticalProfileInitialize,
 * tsBestFit_verticalComputeProfile, tsPoint_verticalComputeProfile) keeps its
 * parameters and working state in the process: one caller at a time, and each
 * caller initialises first. Every other function here is re-entrant on
 * distinct data.
 */
#ifndef TESSAR_BESTFIT_H
#define TESSAR_BESTFIT_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/** Doubles in one observation of the line and curve fits: x, sigma x, y, sigma y. */
#define TESSAR_BESTFIT_OBSERVATION_SIZE 4

/** Doubles in one control pair of the transform fits: x, sigma x, y, sigma y, X, sigma X, Y, sigma Y. */
#define TESSAR_BESTFIT_PAIR_SIZE 8

/* ---- Lines and planes ---- */

/**
 * Fits a line in plan to weighted points by the principal axis, as a segment
 * whose ends cover the data (with a margin of 0.001 where an extreme point
 * lies off the line).
 * \param[out] x1, y1, x2, y2 the ends of the segment
 * \param[out] standardError  the standard error of the offsets
 * \param[in]  n              number of observations
 * \param[in]  observations   n records (x, sigma x, y, sigma y); the weight is
 *                            1 / sigma x squared, sigma y is not read
 * \return 0; 32768 if n is below 2 (outputs untouched) or the slope is not a number.
 */
TESSAR_API int32_t tsBestFit_lineCalc(double *x1, double *y1, double *x2, double *y2, double *standardError,
                                      int32_t n, const double *observations);

/**
 * Fits the plane z = a x + b y + c to points by normal equations.
 * \param[out] centroidX, centroidY the mean of x and of y
 * \param[out] centroidZ the plane's height at the centroid (not the mean of z)
 * \param[out] a, b, c   the coefficients
 * \param[out] standardError the standard error of z (may be null)
 * \return 0; 32768 if n is below 3. All outputs are zeroed first. Points on
 *         one line give 0 with meaningless coefficients.
 */
TESSAR_API int32_t tsBestFit_planeCalc(double *centroidX, double *centroidY, double *centroidZ, double *a,
                                       double *b, double *c, double *standardError, int32_t n,
                                       const dpoint3d *points);

/**
 * Fits a line in plan to points with one sigma each (used for x and y).
 * \param[out] start (may be null) the first end, with the z of the first point
 * \param[out] end   (may be null) the second end, with the z of the last point
 * \param[out] standardError (may be null)
 * \param[in]  points, sigmas n points and n sigmas, not tested for null
 * \return the result of tsBestFit_lineCalc, or 32768 if scratch memory ran out.
 */
TESSAR_API int32_t tsPoint_computeLineLeastSquares(dpoint3d *start, dpoint3d *end, double *standardError,
                                                   const dpoint3d *points, const double *sigmas, int32_t n);

/**
 * Fits the plane z = a x + b y + c to points.
 * \param[out] centroid      (may be null) the centroid, z on the plane
 * \param[out] coefficients  (may be null) a, b, c
 * \param[out] standardError (may be null)
 * \return the result of tsBestFit_planeCalc; 32768 if n is below 3.
 */
TESSAR_API int32_t tsPoint_computePlane(dpoint3d *centroid, double coefficients[3], double *standardError,
                                        const dpoint3d *points, int32_t n);

/** The same as tsPoint_computePlane, to which it forwards. */
TESSAR_API int32_t tsApiPoint_computePlane(dpoint3d *centroid, double coefficients[3], double *standardError,
                                           const dpoint3d *points, int32_t n);

/**
 * The point of the plane z = a x + b y + c above or below a point.
 * \param[out] difference (may be null) the point's z minus the plane's z
 * \param[out] out        (may be null) (x, y, plane's z)
 * \return 0; 32768 if point or coefficients is null.
 */
TESSAR_API int32_t tsPoint_computeOnPlaneGivenXY(double *difference, dpoint3d *out, const dpoint3d *point,
                                                 const double coefficients[3]);

/**
 * The foot of the perpendicular from a point to the plane z = a x + b y + c.
 * \param[out] signedDistance (may be null) the space distance to the foot,
 *                            negative for a point below the plane
 * \param[out] foot           (may be null) the foot
 * \return 0; 32768 if point or coefficients is null.
 */
TESSAR_API int32_t tsPoint_computeMinimumDistancefromPlane(double *signedDistance, dpoint3d *foot,
                                                           const dpoint3d *point,
                                                           const double coefficients[3]);

/**
 * Simplifies a point string into fitted segments within a standard error of
 * tolerance.
 * \param[out] points address of the result, n + 1 points at most (tsMem_free)
 * \param[out] count  its count
 * \param[in]  input, sigmas n points and n sigmas
 * \return 0, or 32768 for a null argument, n below 2, a tolerance not above 0,
 *         or memory exhausted. In this release the recursive fit stops at its
 *         first step on every call, so valid arguments also end with null,
 *         0 and 32768.
 */
TESSAR_API int32_t tsLine_computeSmoothLineStringLeastSquares(dpoint3d **points, int32_t *count,
                                                              const dpoint3d *input, const double *sigmas,
                                                              int32_t n, double tolerance);

/* ---- Curves ----
 * The circle is x^2 + y^2 + D x + E y + F = 0; the vertical curve is
 * y = a x^2 + b x + c in the caller's own chainages. */

/**
 * The circle through three points.
 * \param[out] centreX, centreY (may be null) the centre
 * \param[out] radius the radius; 0.0 on failure
 * \return 0; 32768 if the points are collinear (absolute limit 1e-9 on the determinant).
 */
TESSAR_API int32_t tsBestFit_horz3PtCurveCalc(double *centreX, double *centreY, double *radius, double x1,
                                              double y1, double x2, double y2, double x3, double y3);

/**
 * The circle through three points, by inverting the general circle's 3 by 3 system.
 * \param[out] centreX, centreY, radius the circle
 * \return 0; 32768 if the system is singular (outputs untouched).
 */
TESSAR_API int32_t tsBestFit_horz3PtCurveCalcMatrix(double *centreX, double *centreY, double *radius,
                                                    double x1, double y1, double x2, double y2, double x3,
                                                    double y3);

/**
 * Fits a circle to weighted points by iterated least squares (at most 20 passes).
 * Note the order: the centre's y comes first.
 * \param[out] centreY, centreX the centre; radius the radius (all 0.0 if not converged)
 * \param[in,out] observations n records (x, sigma x, y, sigma y); reduced to
 *                their minima during the call and restored afterwards, up to rounding
 * \return 0; 32768 if n is below 3, if all successive triples are collinear
 *         (outputs untouched) or if the fit did not converge.
 */
TESSAR_API int32_t tsBestFit_horzCurveCalc(double *centreY, double *centreX, double *radius, int32_t n,
                                           double *observations);

/**
 * Fits a parabolic vertical curve y = a x^2 + b x + c to weighted (chainage,
 * level) points by iterated least squares (at most 15 passes).
 * \param[out] a, b, c       the coefficients
 * \param[out] startGrade    2 a x0 + b at the first chainage
 * \param[out] endGrade      the same at the last chainage
 * \param[out] length        last chainage minus first (1e-5 if smaller in size)
 * \param[out] rateOfChange  2 a
 * \param[out] standardError the standard error
 * \return 0; 1 if n is below 3; 32768 if not converged (all eight outputs 0.0).
 */
TESSAR_API int32_t tsBestFit_vertCurveCalc(double *a, double *b, double *c, double *startGrade,
                                           double *endGrade, double *length, double *rateOfChange,
                                           double *standardError, int32_t n, const double *observations);

/* ---- Vertical profile ----
 * Designs a vertical alignment inside a band around a surveyed long section:
 * intersection points (IPs) joined by grades, with a parabolic curve at every
 * interior IP whose length comes from a K value (curve length per percent of
 * grade change). The first and last IPs have curve length 0. A level of
 * -999.0 marks a missing level. */

/**
 * Stores the parameters of the following profile fits; they last until the
 * next call.
 * \param[in] upTol, loTol     height of the band above and depth below each level
 * \param[in] hogK, sagK       K values of crests and sags
 * \param[in] vcMinimumLength  the shortest curve that K sizing gives
 * \param[in] cogFilter        starting value, in percent, of the change-of-grade filter
 * \param[in] fixStartGrade    non-zero: the first grade follows the first two input points
 * \param[in] fixEndGrade      non-zero: the last grade follows the last two input points
 * \param[in] debug            1 writes a trace file "C:\BestFit_Vertical_Debug.txt"
 *                             (skipped quietly, and turned off, when it cannot be opened)
 */
TESSAR_API void tsBestFit_verticalProfileInitialize(double upTol, double loTol, double hogK, double sagK,
                                                    double vcMinimumLength, double cogFilter,
                                                    int32_t fixStartGrade, int32_t fixEndGrade,
                                                    int32_t debug);

/**
 * Fits a vertical profile with the parameters last stored.
 * \param[out] stations, levels, lengths addresses of three new arrays of the
 *             IPs' chainage, level and curve length (tsMem_free each)
 * \param[out] count number of IPs
 * \param[in]  inStations, inLevels n chainages and levels; n at least 1
 * \return 0 for at least two IPs; otherwise null arrays, count 0 and 32768.
 * Not re-entrant.
 */
TESSAR_API int32_t tsBestFit_verticalComputeProfile(double **stations, double **levels, double **lengths,
                                                    int32_t *count, const double *inStations,
                                                    const double *inLevels, int32_t n);

/**
 * Point-array form of the vertical profile fit, parameters included.
 * \param[out] result address of a new array of IPs (tsMem_free): x the
 *             chainage, y the level, z the curve length
 * \param[out] count  number of IPs
 * \param[in]  points n points
 * \param[in]  useDistance non-zero: chainage is the running plan distance and
 *             level the z; zero: chainage is x and level the y
 * The remaining arguments are those of tsBestFit_verticalProfileInitialize.
 * \return the result of tsBestFit_verticalComputeProfile; 32768 at once for a
 *         null pointer or n below 2. Not re-entrant.
 */
TESSAR_API int32_t tsPoint_verticalComputeProfile(dpoint3d **result, int32_t *count, const dpoint3d *points,
                                                  int32_t n, int32_t useDistance, double upTol, double loTol,
                                                  double hogK, double sagK, double vcMinimumLength,
                                                  double cogFilter, int32_t fixStartGrade,
                                                  int32_t fixEndGrade, int32_t debug);

/* ---- Plane transforms ----
 * From (x, y) in the source system to (X, Y) in the target system:
 * similarity X = a x - b y + c, Y = b x + a y + d;
 * affine     X = a x + b y + c, Y = d x + e y + f;
 * projective X = (a x + b y + c) / D, Y = (d x + e y + f) / D, D = g x + h y + 1.
 * The fits iterate at most 10 passes, until every correction is below 1e-5.
 * variance and rms are written whether or not the fit converged; on failure
 * to converge the parameters are set to 0.0. A fit with too few pairs leaves
 * every output untouched. */

/**
 * Fits a similarity to control pairs.
 * \param[out] a, b, c, d the parameters
 * \param[out] variance, rms quality figures
 * \param[in]  pairs n records of TESSAR_BESTFIT_PAIR_SIZE doubles
 * \return 0 on convergence; 32768 if n is below 2 or not converged.
 */
TESSAR_API int32_t tsBestFit_transform2d(double *a, double *b, double *c, double *d, double *variance,
                                         double *rms, int32_t n, const double *pairs);

/**
 * Fits an affine transform to control pairs.
 * \return 0 on convergence; 1 if n is below 3; 32768 if not converged.
 */
TESSAR_API int32_t tsBestFit_transformAffine2d(double *a, double *b, double *c, double *d, double *e,
                                               double *f, double *variance, double *rms, int32_t n,
                                               const double *pairs);

/**
 * Fits a projective transform to control pairs.
 * \return 0 on convergence; 32768 if n is below 4 or not converged.
 */
TESSAR_API int32_t tsBestFit_transformProjective2d(double *a, double *b, double *c, double *d, double *e,
                                                   double *f, double *g, double *h, double *variance,
                                                   double *rms, int32_t n, const double *pairs);

/**
 * The similarity through two exact pairs (x1, y1) -> (X1, Y1), (x2, y2) -> (X2, Y2).
 * \return 0 always; coincident pairs give meaningless values.
 */
TESSAR_API int32_t tsBestFit_transformCalcParam2d(double *a, double *b, double *c, double *d, double x1,
                                                  double y1, double X1, double Y1, double x2, double y2,
                                                  double X2, double Y2);

/**
 * The affine transform through three exact pairs.
 * \return 0 always; collinear pairs give meaningless values.
 */
TESSAR_API int32_t tsBestFit_transformCalcParamAffine2d(double *a, double *b, double *c, double *d, double *e,
                                                        double *f, double x1, double y1, double X1, double Y1,
                                                        double x2, double y2, double X2, double Y2, double x3,
                                                        double y3, double X3, double Y3);

/** Applies a similarity to (x, y). \param[out] X, Y the image. \return 0 always. */
TESSAR_API int32_t tsBestFit_transformPtBy2d(double *X, double *Y, double a, double b, double c, double d,
                                             double x, double y);

/** Applies an affine transform to (x, y). \param[out] X, Y the image. \return 0 always. */
TESSAR_API int32_t tsBestFit_transformPtByAffine2d(double *X, double *Y, double a, double b, double c,
                                                   double d, double e, double f, double x, double y);

/**
 * Applies a projective transform to (x, y); D is not tested against 0.
 * \param[out] X, Y the image. \return 0 always.
 */
TESSAR_API int32_t tsBestFit_transformPtByProjective2d(double *X, double *Y, double a, double b, double c,
                                                       double d, double e, double f, double g, double h,
                                                       double x, double y);

TESSAR_END_DECLS

#endif /* TESSAR_BESTFIT_H */
