/*
 * Tessar: point arrays and polygons.
 *
 * Operations on packed arrays of dpoint3d with a signed 32-bit count:
 * copying and releasing, polygon area, centroid and direction, the
 * point-in-polygon classifier, closing a polygon, three thinning filters and
 * the parallel copy by offset segments. All of them work in the plane on x
 * and y unless stated; z is only carried along. Nothing here keeps state, and
 * in-place functions need exclusive use of their array.
 *
 * Ownership. The caller's arrays stay the caller's. An array that a function
 * here hands out comes from the library's allocator (tsMem_*, see memory.h)
 * and is released with tsPointArray_free, which clears the pointer, or with
 * tsMem_free.
 *
 * Polygons are point arrays. The algebraic area and the direction walk the
 * edges between consecutive points and add no closing edge, so the polygon
 * must arrive closed (last point equal to the first); the classifier and the
 * centroid add the closing edge themselves. A clockwise polygon has a
 * positive algebraic area here, the opposite of the usual convention, and
 * its direction is reported as 1. A positive offset lies to the right of the
 * direction of travel.
 *
 * Results: 0 for success, 32768 for a bad argument, as each function states.
 * The tsPoint_* forms at the end are older names that forward to a
 * tsPointArray_* function with their arguments in another order.
 */
#ifndef TESSAR_POINTARRAY_H
#define TESSAR_POINTARRAY_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Copying, releasing and editing ---- */

/**
 * Moves n points from source to destination; the ranges may overlap.
 * \return 0; 32768 for a null pointer or n below 1.
 */
TESSAR_API int32_t tsPointArray_copy(dpoint3d *destination, int32_t n, const dpoint3d *source);

/**
 * Copies n points into a new array from tsMem_calloc.
 * \param[out] clone  receives the new array
 * \param[in]  source the points
 * \param[in]  n      their count, at least 1
 * \return 0; 32768 for a null pointer, n below 1 or no memory.
 */
TESSAR_API int32_t tsPointArray_clone(dpoint3d **clone, const dpoint3d *source, int32_t n);

/**
 * Frees an array that the library handed out, if the pointer is not null,
 * and clears the pointer.
 * \param[in,out] array address of the array pointer
 * \return 0; 32768 for a null address.
 */
TESSAR_API int32_t tsPointArray_free(dpoint3d **array);

/** Sets z in all n points. \return 0; 32768 for a null array. */
TESSAR_API int32_t tsPointArray_setZ(dpoint3d *array, int32_t n, double z);

/** Reverses the order of n points in place. */
TESSAR_API void tsPointArray_reverse(dpoint3d *array, int32_t n);

/**
 * Reads x and y of one point; the index is not checked against any bound.
 * \param[out] x, y the point's coordinates
 * \return 0; 32768 for a null pointer.
 */
TESSAR_API int32_t tsPointArray_getCoordsByIndex2d(const dpoint3d *array, double *x, double *y,
                                                   int32_t index);

/**
 * Writes the closed rectangle with the diagonal p1 p2: p1, (p2.x, p1.y, p1.z),
 * p2, (p1.x, p2.y, p2.z), p1. Each corner carries the z of the point whose y
 * it shares.
 * \param[out] out room for 5 points
 * \return 0; 32768 for a null pointer.
 */
TESSAR_API int32_t tsPointArray_blockPointsFromDiagonal(dpoint3d *out, const dpoint3d *p1,
                                                        const dpoint3d *p2);

/* ---- Polygon measures ---- */

/**
 * Signed area: 0.5 times the sum over consecutive points of
 * x[i + 1] y[i] - x[i] y[i + 1], with no closing term; positive for a
 * clockwise ring, 0.0 for n below 2.
 * \param[out] area the signed area
 * \return 0; 32768 for a null pointer.
 */
TESSAR_API int32_t tsPointArray_computeSimplePolygonAlgebricArea2d(const dpoint3d *array, int32_t n,
                                                                   double *area);

/**
 * The magnitude of the signed area above. The arguments are not checked and
 * must be valid.
 * \param[out] area the area
 * \return 0 always.
 */
TESSAR_API int32_t tsPointArray_computeSimplePolygonArea2d(const dpoint3d *array, int32_t n, double *area);

/**
 * The centroid of the polygon, closing edge included, with z = 0; (0, 0, 0)
 * when the enclosed area is below 1e-10.
 * \param[out] centroid the centroid
 * \return 0.
 */
TESSAR_API int32_t tsPointArray_getCentroid(const dpoint3d *array, int32_t n, dpoint3d *centroid);

/**
 * The direction of a closed polygon, by the trapezoid sum over its edges.
 * \param[out] direction 1 for a sum at or above 0.0 (clockwise, or
 *                       degenerate), otherwise 0
 * \return 0.
 */
TESSAR_API int32_t tsPointArray_getPolygonDirection(const dpoint3d *array, int32_t n, int32_t *direction);

/* ---- Closing and classifying ---- */

/**
 * \return 1 when the first and last points lie within tolerance of each other
 *         in the plane (tsPoint_nearEqual2d), else 0; 0 for a null array.
 */
TESSAR_API int32_t tsPointArray_isClosed(const dpoint3d *array, int32_t n, double tolerance);

/**
 * Closes a polygon. If it is closed within tolerance, the last point becomes
 * an exact copy of the first, z included, and n stays. Otherwise the array
 * grows by one point with tsMem_realloc, the first point is appended, n rises
 * by one and the pointer is updated.
 * \param[in,out] array address of the array pointer (a library array)
 * \param[in,out] n     address of the count
 * \return 0; 32768 for a null address or a failed growth (array and count unchanged).
 */
TESSAR_API int32_t tsPointArray_closePolygon(dpoint3d **array, int32_t *n, double tolerance);

/**
 * Classifies a point against a polygon by an exact crossing count along a ray
 * to lower x; the closing edge is added. Exact boundary results come only
 * from vertices and from horizontal and vertical edges; a point on a slanted
 * edge is decided by parity. A point with x exactly 0.0 is reported on the
 * boundary as soon as an edge that is not horizontal (slanted or vertical)
 * spans its y and reaches the crossing test, whether the point lies inside
 * or not.
 * \return 0 outside, 1 inside, 2 on the boundary; 0 for a null pointer.
 */
TESSAR_API int32_t tsPointArray_isPointInsidePolygon(const dpoint3d *array, int32_t n, const dpoint3d *point);

/**
 * Classifies every point with tsPointArray_isPointInsidePolygon, counting
 * the boundary as inside.
 * \param[out] result 0 all points outside, 1 no point outside, 2 some inside
 *                    and some outside; -1 not determined (bad argument)
 * \param[in]  points the points, n of them
 * \param[in]  polygon the polygon, m points
 * \return 0; 32768 for a null result pointer, or, with the result set to -1,
 *         for a null pointer or a count below 1.
 */
TESSAR_API int32_t tsPointArray_isArrayWithinPolygon(int32_t *result, const dpoint3d *points, int32_t n,
                                                     const dpoint3d *polygon, int32_t m);

/* ---- Thinning filters ---- */

/**
 * Removes in place each point that lies within tolerance (tsPoint_nearEqual2d)
 * of the last kept point; the first point is compared with the reference,
 * if given. A run of points within tolerance of one kept point collapses onto
 * that point.
 * \param[in,out] array     the points
 * \param[out]    count     the number kept; may be null
 * \param[in]     n         the number of points
 * \param[in]     reference the point before the first; may be null
 * \return 0; 32768 for a null array or n below 1.
 */
TESSAR_API int32_t tsPointArray_removeRedundantPoints(dpoint3d *array, int32_t *count, int32_t n,
                                                      const dpoint3d *reference, double tolerance);

/**
 * Removes in place the points that lie within tolerance of the line from the
 * last kept anchor to a later point; the first and last points stay. Places
 * after the new count hold unspecified values.
 * \param[out] count the number kept; may be null, and not written for n
 *                   below 3 or a null array
 * \return 0 always.
 */
TESSAR_API int32_t tsPointArray_removeCoLinearPoints2d(dpoint3d *array, int32_t *count, int32_t n,
                                                       double tolerance);

/**
 * Marks the points of a section (x chainage, y level) that a horizontal and
 * vertical tolerance allow to drop; the points are not changed.
 * \param[out] flags                n flags: 1 the point may go, 0 it stays
 * \param[in]  points               the points
 * \param[in]  fixed                n flags, non-zero for points that must stay; may be null
 * \param[in]  n                    the number of points
 * \param[in]  horizontalTolerance  a distance in x; may be null for none
 * \param[in]  verticalTolerance    an offset from the chord; must not be null
 * \return 0; 32768 for a null flag array or null points.
 */
TESSAR_API int32_t tsPointArray_filterByHorVerTolerance2d(int32_t *flags, const dpoint3d *points,
                                                          const int32_t *fixed, int32_t n,
                                                          const double *horizontalTolerance,
                                                          const double *verticalTolerance);

/**
 * The convex hull has no implementation in this library: this function reads
 * nothing and fails, whatever the caller intends.
 * \return 32768 always.
 */
TESSAR_API int32_t tsPointArray_computeConvexHull2d(void);

/* ---- Parallel copy ---- */

/**
 * Copies a string at a constant plan offset by offsetting its segments,
 * intersecting neighbours and dropping segments that turned over. The z of
 * the result is not defined.
 * \param[in]  points   the string
 * \param[in]  n        its point count; below 2 gives a null result, count 0
 * \param[out] result   receives a new array from tsMem_malloc / tsMem_realloc
 * \param[out] count    its point count
 * \param[in]  distance the offset; positive to the right of the direction of travel
 * \param[in]  closed   non-zero to join the last segment with the first
 * \return 0; 32768 if two adjacent points are equal (the outputs are then untouched).
 */
TESSAR_API int32_t tsPointArray_copyParallel2d(const dpoint3d *points, int32_t n, dpoint3d **result,
                                               int32_t *count, double distance, int32_t closed);

/* ---- Older forms ---- */

/** tsPointArray_copy(destination, n, source). */
TESSAR_API int32_t tsPoint_copyMultiple(dpoint3d *destination, const dpoint3d *source, int32_t n);

/** tsPointArray_free(array). */
TESSAR_API int32_t tsPoint_freeArray(dpoint3d **array);

/** tsPointArray_computeSimplePolygonArea2d(array, n, area). */
TESSAR_API int32_t tsPoint_computeSimplePolygonArea2d(double *area, const dpoint3d *array, int32_t n);

/** The same stub as tsPointArray_computeConvexHull2d. \return 32768 always. */
TESSAR_API int32_t tsPoint_computeConvexHull2d(void);

/**
 * tsPointArray_blockPointsFromDiagonal(out, p1, p2).
 * \return out, or null on failure.
 */
TESSAR_API dpoint3d *tsPoint_blockPointsFromDiagonal(dpoint3d *out, const dpoint3d *p1, const dpoint3d *p2);

/** tsPointArray_getCoordsByIndex2d(array, x, y, index). */
TESSAR_API int32_t tsPoint_getCoordsFromPointArray(double *x, double *y, const dpoint3d *array,
                                                   int32_t index);

/** tsPointArray_isPointInsidePolygon(array, n, point). */
TESSAR_API int32_t tsPoint_isInsidePolygon(const dpoint3d *point, const dpoint3d *array, int32_t n);

/** tsPointArray_removeRedundantPoints(array, count, n, reference, tolerance). */
TESSAR_API int32_t tsPoint_removeRedundantPointsFromArray(int32_t *count, dpoint3d *array,
                                                          const dpoint3d *reference, int32_t n,
                                                          double tolerance);

/** tsPointArray_setZ(array, n, z). */
TESSAR_API int32_t tsPoint_setZValue(dpoint3d *array, int32_t n, double z);

TESSAR_END_DECLS

#endif /* TESSAR_POINTARRAY_H */
