/*
 * Tessar: points and bounded lines (tsPoint_*, tsLine_*).
 *
 * The arithmetic of mathapi.h carried over to records: tsPoint_* works on
 * dpoint3d, tsLine_* on tsLine, with null checks and the handling of z. The
 * plane ("2d") functions read and write x and y and say what they do with z.
 * Array, polygon and fitting forms of these families are in their own
 * headers.
 *
 * Angles are radians, counter-clockwise from the positive x axis; offsets
 * are positive to the right of a line's direction. Two markers live in
 * dpoint3d (types.h): a z of 3.4028234663852886e38 means "no elevation",
 * and any coordinate within 1.0 of the largest double, either sign, marks a
 * disconnect.
 *
 * A tsLine is an origin, a unit direction in space ((1, 0, 0) for a
 * degenerate line) and a length (0.0 for a degenerate line); its end is
 * origin + length * direction. A position on a line is a fraction of its
 * length: 0.0 at the origin, 1.0 at the end, negative behind the origin.
 *
 * Unless a function says otherwise, a null required pointer gives 32768 and
 * success gives 0; optional outputs may be null. Functions that return a
 * double give 0.0 or 32768.0 for a bad argument, as each one states. All
 * records are the caller's, except the array that the tangent search hands
 * over. Everything here is re-entrant and leaves the kernel's error word
 * alone.
 */
#ifndef TESSAR_POINT_H
#define TESSAR_POINT_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Setting and copying ---- */

/** Copies the three coordinates of source into destination. \return 0, or 32768 on a null pointer. */
TESSAR_API int32_t tsPoint_copy(dpoint3d *destination, const dpoint3d *source);

/** Sets the three coordinates. \return 0, or 32768 for a null point. */
TESSAR_API int32_t tsPoint_setValue(dpoint3d *point, double x, double y, double z);

/** Sets all three coordinates to 0. \return 0, or 32768 for a null point. */
TESSAR_API int32_t tsPoint_clear(dpoint3d *point);

/** Exchanges a and b. \return 0, or 32768 on a null pointer. */
TESSAR_API int32_t tsPoint_swap(dpoint3d *a, dpoint3d *b);

/** Sets z of the n points of array. Note the count first (unlike tsPoint_setZValue). */
TESSAR_API void tsPoint_setZvalue(int32_t n, dpoint3d *array, double z);

/** Sets x = y = 0.0 and z to the no-elevation marker; a null point is ignored. */
TESSAR_API void tsPoint_initialize2d(dpoint3d *point);

/* ---- Comparisons ---- */

/** \return 1 when x and y are exactly equal, else 0. No null check. */
TESSAR_API int32_t tsPoint_equal2d(const dpoint3d *a, const dpoint3d *b);

/** \return 1 when x, y and z are exactly equal, else 0. No null check. */
TESSAR_API int32_t tsPoint_equal3d(const dpoint3d *a, const dpoint3d *b);

/** \return 1 when neither is null and their plane distance does not exceed tolerance, else 0. */
TESSAR_API int32_t tsPoint_nearEqual2d(const dpoint3d *a, const dpoint3d *b, double tolerance);

/** \return 1 when neither is null and their distance in space does not exceed tolerance, else 0. */
TESSAR_API int32_t tsPoint_nearEqual3d(const dpoint3d *a, const dpoint3d *b, double tolerance);

/** \return 1 when a coordinate marks a disconnect, else 0 (also for null). */
TESSAR_API int32_t tsPoint_isDisconnect(const dpoint3d *point);

/**
 * \return 1 when low.x <= x <= high.x and low.y <= y <= low.y, else 0;
 * 32768 on a null pointer. The high corner's y is not used, so only a y
 * exactly equal to low.y is in range.
 */
TESSAR_API int32_t tsPoint_isInRange2d(const dpoint3d *point, const dpoint3d *low, const dpoint3d *high);

/* ---- Distances and directions ---- */

/** \return the plane distance from a to b; 0.0 if either is null. */
TESSAR_API double tsPoint_distance2d(const dpoint3d *a, const dpoint3d *b);

/** \return the distance in space from a to b; 0.0 if either is null. */
TESSAR_API double tsPoint_distance3d(const dpoint3d *a, const dpoint3d *b);

/** \return the direction from a to b, 0 up to 2 pi. No null check. */
TESSAR_API double tsPoint_direction2d(const dpoint3d *a, const dpoint3d *b);

/**
 * \param[out] distance  optional: the plane distance from a to b
 * \param[out] direction optional: the direction from a to b
 * \return 0, or 32768 (both outputs 0.0) when a or b is null.
 */
TESSAR_API int32_t tsPoint_distanceDirection2d(double *distance, double *direction, const dpoint3d *a,
                                               const dpoint3d *b);

/**
 * out = to - from in the plane with z = 0, made a unit vector when its length
 * can be divided by, else left as it is.
 * \return 0.0, or 32768.0 on a null pointer.
 */
TESSAR_API double tsPoint_getDirectionVector2d(const dpoint3d *from, dpoint3d *out, const dpoint3d *to);

/**
 * \return the plane distance from point to the rectangle of corners low and
 * high: 0.0 inside, on the edge, or for a null pointer.
 */
TESSAR_API double tsPoint_getDistanceToRectangle2d(const dpoint3d *point, const dpoint3d *low,
                                                   const dpoint3d *high);

/* ---- Locating and moving points ---- */

/** out = origin moved by distance in direction; out's z = origin's z. No null check. \return 0. */
TESSAR_API int32_t tsPoint_locatePointByDistanceDirection2d(dpoint3d *out, double distance, double direction,
                                                            const dpoint3d *origin);

/**
 * out = origin + distance * (tangent.x, tangent.y); out's z = origin's z.
 * \return 0, or 32768 on a null pointer.
 */
TESSAR_API int32_t tsPoint_locatePointByDistanceTangent2d(dpoint3d *out, double distance,
                                                          const dpoint3d *tangent, const dpoint3d *origin);

/**
 * out = point turned by angle about the origin, then moved by (tx, ty); out's
 * z is not set. \return 0, or 32768 on a null pointer.
 */
TESSAR_API int32_t tsPoint_locatePointByTranslationRotation2d(const dpoint3d *point, double tx, double ty,
                                                              double angle, dpoint3d *out);

/** Turns point by angle about the origin, in place; z unchanged. \return 0, or 32768 for a null point. */
TESSAR_API int32_t tsPoint_rotateByAngle2d(dpoint3d *point, double angle);

/* ---- Arcs and circles ---- */

/**
 * The sweep at centre from p1 to p2, as tsMath_calculateSweepAngleTwoPointsFromCenter.
 * \param[out] out counter-clockwise with counterClockwise non-zero, else clockwise (negative)
 * \return 0, or 32768 on a null pointer or a point at the centre.
 */
TESSAR_API int32_t tsPoint_calculateSweepAngle2d(const dpoint3d *centre, double *out, const dpoint3d *p1,
                                                 const dpoint3d *p2, int32_t counterClockwise);

/**
 * The arc from points[0] through points[1] to points[2].
 * \param[out] centre         optional; its z is not written
 * \param[out] radius         optional
 * \param[out] startDirection optional: the direction from the centre to points[0]
 * \param[out] sweep          optional: signed, negative when points[1] lies
 *                            left of the chord; beyond pi in magnitude the long way round
 * \return 0, or 32768 for a null array, points in line (middle point within
 * 1e-7 of the chord) or a failed fit.
 */
TESSAR_API int32_t tsPoint_calculateArcInfoFor3pts(dpoint3d *centre, double *radius, double *startDirection,
                                                   double *sweep, const dpoint3d *points);

/**
 * out = the point at arcLength along the circle about centre from point,
 * counter-clockwise, or clockwise when clockwise is non-zero; out's z = centre's z.
 * \return 0, or 32768 when point is at the centre or a pointer is null.
 */
TESSAR_API int32_t tsPoint_calculatePointAlongArc(dpoint3d *out, const dpoint3d *point,
                                                  const dpoint3d *centre, double arcLength,
                                                  int32_t clockwise);

/**
 * The points of contact of the tangents from point to the circle, as
 * tsMath_lineTangentToCircleByPoint; z of both outputs = 0.
 * \return 0, or 32768 on a null pointer, a point inside the circle or no two points found.
 */
TESSAR_API int32_t tsPoint_lineTangentToCircleByPoint(dpoint3d *tangent1, dpoint3d *tangent2,
                                                      const dpoint3d *centre, double radius,
                                                      const dpoint3d *point, double tolerance);

/**
 * The radius of the curve tangent to V-A and V-B through P, by
 * tsMath_passTangentCurveThruPoint. radius is set to 0.0 first and left so
 * when a point is null.
 */
TESSAR_API void tsPoint_passTangentCurveThruPoint(double *radius, const dpoint3d *A, const dpoint3d *B,
                                                  const dpoint3d *V, const dpoint3d *P, int32_t flag);

/**
 * The length of the symmetric vertical parabola tangent to V-A and V-B
 * through P, by tsMath_passTangentParabolaThruPoint (x is the abscissa, y
 * the level). length is set to 0.0 first and left so when a point is null.
 */
TESSAR_API void tsPoint_passTangentParabolaThruPoint(double *length, const dpoint3d *A, const dpoint3d *B,
                                                     const dpoint3d *V, const dpoint3d *P);

/* ---- Text ---- */

/**
 * Reads "y x [z]" separated by spaces, after cleaning the text; z is 0.0
 * when absent.
 * \return 0, or 32768 for a null point, null or empty text, or a missing x or y.
 */
TESSAR_API int32_t tsPoint_setFromYXZString(dpoint3d *point, const char *text);

/* ---- Collinearity ---- */

/**
 * Tests whether n points lie on one line, in either direction from the first
 * point, within tolerance (used both as a distance and as an angle in
 * radians; directions either side of 0 do not wrap).
 * \param[out] result 1 when collinear, else 0 (not checked for null)
 * \return 0, or 32768 for a null array or a failed allocation.
 */
TESSAR_API int32_t tsPoint_checkForColinear2D(int32_t n, const dpoint3d *array, double tolerance,
                                              uint8_t *result);

/** As tsPoint_checkForColinear2D, but points going back towards the first make the result 0. */
TESSAR_API int32_t tsPoint_checkForColinear2DInSameDir(int32_t n, const dpoint3d *array, double tolerance,
                                                       uint8_t *result);

/* ---- Projection on a sampled string ---- */

/**
 * Searches a sampled string for the samples that answer point: those at
 * which the tip of the sample's tangent changes side (1 to -1 or back),
 * seen from the line from point to the sample, against the previous sample
 * of the pass, and those within 0.001 of point. The side is that of a cross
 * product, so it turns where a sample's tangent line passes through point;
 * a point beside a straight string is found only on it.
 * \param[out] result    receives a new array (tsMem_calloc; free with
 *                       tsMem_free) of the string points found, copied as
 *                       they stand
 * \param[in]  seed      optional: a distance near the expected answer; with
 *                       it, only the hit nearest the seed is kept
 * \param[in]  points, tangents, distances n parallel entries: the string's
 *                       points, their unit tangents, ascending distances
 * \return the number of points found (up to 20); 0, with nothing written,
 * for none, a null pointer, n below 1 or a failed allocation.
 */
TESSAR_API int32_t tsPoint_projectPointOnTangentUsingXYTanDistArraysIteration(
    dpoint3d **result, const double *seed, const dpoint3d *point, const dpoint3d *points,
    const dpoint3d *tangents, const double *distances, int32_t n);

/* ---- Building lines ---- */

/**
 * The line from p to q; the height difference is 0 when either z is the
 * no-elevation marker.
 * \return 0, or 32768 on a null pointer or for coincident points (the line is
 * then still complete: origin p, direction (1, 0, 0), length 0).
 */
TESSAR_API int32_t tsLine_createBy2points(tsLine *line, const dpoint3d *p, const dpoint3d *q);

/**
 * The line from point along vector, whose length becomes the line's length.
 * A vector too short to divide by gives direction (1, 0, 0) and length 0.
 * \return 0 (also for the short vector), or 32768 on a null pointer.
 */
TESSAR_API int32_t tsLine_createByStartPointAndDirectionVector(tsLine *line, const dpoint3d *point,
                                                               const dpoint3d *vector);

/**
 * A plane line from a direction and two distances: with a = direction, or
 * direction + pi when start is greater than end, the unit vector is
 * (cos a, sin a, 0), the origin point + start (cos a, sin a) with point's z,
 * and the length |end - start|.
 * \return 0, or 32768 on a null pointer.
 */
TESSAR_API int32_t tsLine_createByPointDirectionParameter2d(tsLine *line, const dpoint3d *point,
                                                            double direction, double start, double end);

/* ---- Reading lines ---- */

/** \return the plane length of the line; 32768.0 for null. */
TESSAR_API double tsLine_distance2d(const tsLine *line);

/** \return the plane direction of the line's unit vector; 32768.0 for null. */
TESSAR_API double tsLine_direction2d(const tsLine *line);

/**
 * \param[out] start optional: the origin
 * \param[out] end   optional: origin + length * direction
 * \return 0, or 32768 for a null line.
 */
TESSAR_API int32_t tsLine_getEndPoints(const tsLine *line, dpoint3d *start, dpoint3d *end);

/**
 * Writes x and y of the point at position into out; out's z is left as it
 * was. The line is not checked. \return 0, or 32768 for a null out.
 */
TESSAR_API int32_t tsLine_getPointAtPosition(const tsLine *line, dpoint3d *out, double position);

/**
 * \return 1 when the plane directions of a and b agree within tolerance (a
 * direction within tolerance of 2 pi counts as 0), else 0; 0 if either is null.
 */
TESSAR_API int32_t tsLine_areSameDirection(const tsLine *a, const tsLine *b, double tolerance);

/* ---- Projections and intersections ---- */

/**
 * Projects point on the line in the plane.
 * \param[out] foot     optional: the foot, with point's own z
 * \param[out] offset   optional: signed, positive on the right
 * \param[out] position optional: the fraction of the line's length
 * \return 0, or 32768 on a null pointer or a vertical line.
 */
TESSAR_API int32_t tsLine_projectPoint2d(const tsLine *line, dpoint3d *foot, double *offset, double *position,
                                         const dpoint3d *point);

/**
 * Projects point on the line extended in the plane.
 * \param[out] foot     optional: x and y only
 * \param[out] offset   optional: signed, positive on the right
 * \param[out] position optional: the position of the foot on the line
 * \return 0, always; the line is not checked (one with no plane direction
 * gives the foot (0, 0) and the offset 0.0).
 */
TESSAR_API int32_t tsLine_projectPointOnLine2d(dpoint3d *foot, double *offset, double *position,
                                               const dpoint3d *point, const tsLine *line);

/**
 * The crossing of the lines a and b in the plane.
 * \param[out] point     optional: x and y only
 * \param[out] positionA optional: its position on a
 * \param[out] positionB optional: its position on b
 * \return 0, or 32768 when a or b is null or the lines are parallel.
 */
TESSAR_API int32_t tsLine_intersectLineWithLine2d(dpoint3d *point, double *positionA, double *positionB,
                                                  const tsLine *a, const tsLine *b);

/** tsLine_intersectLineWithLine2d with the line a first; an inner failure's status is passed through. */
TESSAR_API int32_t tsLine_intersectWithLine2d(const tsLine *a, dpoint3d *point, double *positionA,
                                              double *positionB, const tsLine *b);

TESSAR_END_DECLS

#endif /* TESSAR_POINT_H */
