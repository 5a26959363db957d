/*
 * Tessar: the tsMath_ family of small geometric functions.
 *
 * Stateless functions on plain doubles for angles, distances, lines, circles,
 * arcs and two tangent constructions of road design. Points are passed as
 * separate x and y doubles and results come back through pointers. The
 * record forms on dpoint3d are in point.h; sector tests in angle.h; the
 * tolerant comparisons in frame.h; the cubic solver in transform.h.
 *
 * Angles are radians. A direction is measured counter-clockwise from the
 * positive x axis and is normalised into 0 up to but not including 2 pi by
 * tsMath_normalizeAngle. An azimuth is the survey angle, clockwise from
 * north. An offset is positive to the right of a line's direction and
 * negative to its left. A plane line equation is a x + b y + c = 0.
 *
 * Statuses are 0, or 32768 for a bad argument or an impossible case, unless
 * a function says otherwise. The guard against an impossible division is
 * that of tsMath_isDivisionPossible: the magnitude of the denominator must
 * exceed that of the numerator times 1e-100. Nothing here touches the
 * kernel's error word or keeps any state: all functions are re-entrant.
 */
#ifndef TESSAR_MATHAPI_H
#define TESSAR_MATHAPI_H

#include <stdint.h>

#include <tessar/export.h>

TESSAR_BEGIN_DECLS

/* ---- Values ---- */

/** \return a if a is greater than b, else b. */
TESSAR_API double tsMath_doubleMax(double a, double b);

/** \return b if a is at least b, else a. */
TESSAR_API double tsMath_doubleMin(double a, double b);

/** \return 1, 0 or -1 by the sign of a; -1 for a not-a-number. */
TESSAR_API int32_t tsMath_doubleGetSign(double a);

/** \return fmod(a, 2 pi), plus 2 pi if negative: 0 up to 2 pi (-0.0 stays -0.0). */
TESSAR_API double tsMath_normalizeAngle(double a);

/** \return an angle in degrees normalised into 0 up to 360, through radians. */
TESSAR_API double tsMath_normalizeAngleDegree(double degrees);

/** \return atan2(y, x) of the C library. */
TESSAR_API double tsMath_atan2(double y, double x);

/** \return the plane distance from (x1, y1) to (x2, y2). */
TESSAR_API double tsMath_distance2d(double x1, double y1, double x2, double y2);

/** \return the distance in space from (x1, y1, z1) to (x2, y2, z2). */
TESSAR_API double tsMath_distance3d(double x1, double y1, double z1, double x2, double y2, double z2);

/** \return the direction from (x1, y1) to (x2, y2), normalised into 0 up to 2 pi. */
TESSAR_API double tsMath_direction2d(double x1, double y1, double x2, double y2);

/** \return the dot product x1 x2 + y1 y2. */
TESSAR_API double tsMath_scalarProduct2d(double x1, double y1, double x2, double y2);

/** \return the plane cross product x1 y2 - y1 x2. */
TESSAR_API double tsMath_crossProduct2d(double x1, double y1, double x2, double y2);

/** \return the signed turn from direction a to direction b, above -pi up to pi. */
TESSAR_API double tsMath_angleBetweenDirections(double a, double b);

/** \return the clockwise angle from azimuth a to azimuth b, worked out by quadrant. */
TESSAR_API double tsMath_angleRightBetweenAzimuths(double a, double b);

/**
 * \return 1 when the normalised angles a and b differ by less than tolerance,
 * else 0. The wrap at 0 is handled in one direction only.
 */
TESSAR_API int32_t tsMath_anglesNearEqual(double a, double b, double tolerance);

/**
 * Tests whether directions a and b are parallel, in the same or the opposite
 * sense, within tolerance.
 * \param[out] difference optional (may be null): the smaller angular gap
 * \return 1 when parallel, else 0.
 */
TESSAR_API int32_t tsMath_directionsNearParallel(double *difference, double a, double b, double tolerance);

/**
 * \return the side of (px, py) from the line (x1, y1) to (x2, y2): 1 right,
 * -1 left, 0 on the line (the sign of (y2 - y1)(px - x2) - (x2 - x1)(py - y2)).
 */
TESSAR_API int32_t tsMath_sideOfLine2d(double x1, double y1, double x2, double y2, double px, double py);

/**
 * \return n! computed in unsigned 32-bit arithmetic with wrap-around (13 and
 * above wrap), then converted; 1.0 for n below 2.
 */
TESSAR_API double tsMath_factorial(int32_t n);

/**
 * \return a! / b! from the product over the difference in signed 32-bit
 * arithmetic: the product if a exceeds b, 1.0 if equal, 1.0 over it if b exceeds a.
 */
TESSAR_API double tsMath_factorialDivision(int32_t a, int32_t b);

/**
 * \return the value at x on the line through (x0, y0) and (x1, y1); y0 when
 * x0 equals x1 or y0 equals y1.
 */
TESSAR_API double tsMath_interpolateDoubles(double x0, double y0, double x, double x1, double y1);

/**
 * \return the counter-clockwise angle from (x1, y1) to (x2, y2), in 0 up to
 * 2 pi; 32768.0 (the status, as a double) when a vector cannot be normalised.
 */
TESSAR_API double tsMath_getSweepAngleBetweenVectors2d(double x1, double y1, double x2, double y2);

/* ---- Point location ---- */

/**
 * (x, y) = (ox + distance cos(direction), oy + distance sin(direction)).
 * \param[out] x, y either may be null
 * \return 0, or 32768 when both are null.
 */
TESSAR_API int32_t tsMath_locateByDistanceDirection2d(double *x, double *y, double ox, double oy,
                                                      double distance, double direction);

/**
 * (x, y) = (ox + distance tx, oy + distance ty).
 * \param[out] x, y either may be null
 * \return 0, or 32768 when both are null.
 */
TESSAR_API int32_t tsMath_locateByDistanceTangent2d(double *x, double *y, double ox, double oy,
                                                    double distance, double tx, double ty);

/**
 * (x, y) = (px, py) turned by angle about the origin, then moved by (tx, ty).
 * \param[out] x, y either may be null
 * \return 0, or 32768 when both are null.
 */
TESSAR_API int32_t tsMath_locateByTranslationRotation2d(double *x, double *y, double px, double py, double tx,
                                                        double ty, double angle);

/* ---- Lines ---- */

/**
 * The line through (ox, oy) with direction (dx, dy): a = dy, b = -dx,
 * c = -a ox - b oy (not normalised).
 * \return 0, or 32768 when dx and dy are both exactly 0.
 */
TESSAR_API int32_t tsMath_calculateLineEquationFromOriginAndDirection2d(double *a, double *b, double *c,
                                                                        double ox, double oy, double dx,
                                                                        double dy);

/**
 * \param[out] distance the signed distance (a x + b y + c) / sqrt(a a + b b)
 * \return 0, or 32768 when sqrt(a a + b b) is 0.
 */
TESSAR_API int32_t tsMath_calculerDistancePtLineEquation2d(double *distance, double a, double b, double c,
                                                           double x, double y);

/**
 * \param[out] offset the signed distance of (px, py) from the line (x1, y1)
 *                    to (x2, y2), positive on the right; set to 0.0 first
 * \return 0, or 32768 when offset is null or the division guard fails (a
 * line of no length).
 */
TESSAR_API int32_t tsMath_offsetToLine2d(double *offset, double px, double py, double x1, double y1,
                                         double x2, double y2);

/**
 * The foot of the perpendicular from (px, py) on the line (x1, y1) to (x2, y2).
 * \param[out] x, y, offset any may be null; offset is positive on the right
 * \return 0, or 32768 when the line has no length.
 */
TESSAR_API int32_t tsMath_projectOnLine2d(double *x, double *y, double *offset, double px, double py,
                                          double x1, double y1, double x2, double y2);

/**
 * Projects (px, py) on the line through (ox, oy) with tangent (tx, ty), a
 * unit vector for position and offset to be lengths.
 * \param[out] x, y     the foot O + t T, t = (P - O) . T
 * \param[out] position t
 * \param[out] offset   the signed offset, positive on the right
 * Any output may be null. \return 0, or 32768 when the tangent is zero.
 */
TESSAR_API int32_t tsMath_projectOnLineDefinedByPointAndTangent2d(double *x, double *y, double *position,
                                                                  double *offset, double px, double py,
                                                                  double ox, double oy, double tx, double ty);

/**
 * The point of the line (x1, y1) to (x2, y2) that lies at the given signed
 * offset from the line (px, py) to (qx, qy).
 * \param[out] x, y either may be null
 * \return 0, or 32768 when the lines are parallel.
 */
TESSAR_API int32_t tsMath_projectOnLineByOffsetToLine2d(double *x, double *y, double px, double py, double qx,
                                                        double qy, double x1, double y1, double x2, double y2,
                                                        double offset);

/**
 * The crossing of the line (x1, y1) to (x2, y2) with the line (x3, y3) to (x4, y4).
 * \param[out] x, y either may be null
 * \return 0, or 1 (not 32768) when the lines are parallel.
 */
TESSAR_API int32_t tsMath_intersectLineWithLine2d(double *x, double *y, double x1, double y1, double x2,
                                                  double y2, double x3, double y3, double x4, double y4);

/**
 * Tests whether segment CD (x3, y3)-(x4, y4) overlaps segment AB (x1, y1)-(x2, y2):
 * collinear within tolerance (on unnormalised cross products, so the
 * tolerance scales with the lengths) and C or D at a parameter t on AB with
 * tolerance <= t <= 1 - tolerance. Not symmetric: a CD that covers AB gives 0.
 * \return 1 or 0.
 */
TESSAR_API int32_t tsMath_overlapLineSegments(double x1, double y1, double x2, double y2, double x3,
                                              double y3, double x4, double y4, double tolerance);

/**
 * Scales (x, y) to unit length in place.
 * \return 0, or 32768 for a null pointer or a vector too short to divide by.
 */
TESSAR_API int32_t tsMath_normalizeVector2d(double *x, double *y);

/**
 * Scales (x, y, z) to unit length in place.
 * \return 0, or 32768 for a null pointer or a vector too short to divide by.
 */
TESSAR_API int32_t tsMath_normalizeVector3d(double *x, double *y, double *z);

/* ---- Circles and arcs ---- */

/**
 * The point of the circle (cx, cy, radius) in the direction of (px, py).
 * \param[out] x, y  the point; any output may be null
 * \param[out] angle atan2 from the centre to (px, py), not normalised
 * \return 0, always.
 */
TESSAR_API int32_t tsMath_projectPointOnCircle2d(double *x, double *y, double *angle, double px, double py,
                                                 double cx, double cy, double radius);

/**
 * The sweep at the centre (cx, cy) from (x1, y1) to (x2, y2).
 * \param[out] sweep counter-clockwise (0 up to 2 pi) with counterClockwise
 *                   non-zero, else clockwise as a negative number
 * \return 0, or 32768 when a point is exactly at the centre.
 */
TESSAR_API int32_t tsMath_calculateSweepAngleTwoPointsFromCenter(double *sweep, double cx, double cy,
                                                                 double x1, double y1, double x2, double y2,
                                                                 int32_t counterClockwise);

/**
 * The circle through three points, worked out with survey azimuths.
 * \param[out] cx, cy the centre; not written for points in line
 * \param[out] radius the radius; 1e100 for points in line
 * \return 0, always.
 */
TESSAR_API int32_t tsMath_computeCurveRadiusFromThreePoints(double x1, double y1, double x2, double y2,
                                                            double x3, double y3, double *cx, double *cy,
                                                            double *radius);

/**
 * The crossings of the line a x + b y + c = 0 with a circle.
 * \param[out] x1, y1 the first point (F + h T, T = the line's unit direction),
 *                    not written when count is 0
 * \param[out] x2, y2 the second point, written only when count is 2
 * \param[out] count  0, 1 (tangent within tolerance) or 2
 * \return 0, or 32768 when a and b are both 0.
 */
TESSAR_API int32_t tsMath_calculateIntersectionLineCircle2d(double *x1, double *y1, double *x2, double *y2,
                                                            int32_t *count, double a, double b, double c,
                                                            double cx, double cy, double radius,
                                                            double tolerance);

/**
 * The crossings of two circles.
 * \param[out] x1, y1, x2, y2 the points
 * \param[out] count          how many points were found (0 to 2)
 * \return 0; 2 when the two circles coincide (count 0).
 */
TESSAR_API int32_t tsMath_calculateIntersectionCircleCircle2d(double *x1, double *y1, double *x2, double *y2,
                                                              int32_t *count, double c1x, double c1y,
                                                              double r1, double c2x, double c2y, double r2,
                                                              double tolerance);

/**
 * The points of contact of the two tangents from (px, py) to a circle, the
 * first on the left seen from the point towards the centre.
 * \param[out] x1, y1, x2, y2 set to (px, py) first; both stay so when the
 *                            point is exactly on the circle
 * \return 0, or 32768 when the point is inside the circle or two points
 * were not found.
 */
TESSAR_API int32_t tsMath_lineTangentToCircleByPoint(double *x1, double *y1, double *x2, double *y2,
                                                     double cx, double cy, double radius, double px,
                                                     double py, double tolerance);

/**
 * The box of the arc of centre (cx, cy) from angle start by sweep (signed).
 * Only certain extreme directions are tested (a positive arc across angle 0
 * does not reach the rightmost point of the circle).
 * \param[out] minX, minY, maxX, maxY any may be null
 * \return 0, or 32768 when radius is not above 0 (all four set to the centre).
 */
TESSAR_API int32_t tsMath_arcGetRange2d(double *minX, double *minY, double *maxX, double *maxY, double cx,
                                        double cy, double start, double sweep, double radius);

/* ---- Tangent constructions ---- */

/**
 * The points of a vertical parabola (grades g1 in, g2 out, length length,
 * starting at (x0, y0)) whose tangent passes through (px, py).
 * \param[out] x1, y1, x2, y2 any may be null; zeroed first
 * \return the number of points found, 0 to 2; 0 when length is not above 0
 * or g1 equals -g2.
 */
TESSAR_API int32_t tsMath_parabolaTangentsToPoint(double *x1, double *y1, double *x2, double *y2, double g1,
                                                  double g2, double length, double x0, double y0, double px,
                                                  double py);

/**
 * The length of the symmetric vertical parabola with vertex V, tangent to
 * the lines V-A and V-B, through P. Each point is given y first, then x.
 * \param[out] length twice the larger non-negative root; 0.0 when there is
 *                    none, when a grade cannot be formed or when the grades
 *                    are equal and opposite
 * \return the number of roots of the solver; 0 when a grade cannot be
 * formed or the grades are equal and opposite.
 */
TESSAR_API int32_t tsMath_passTangentParabolaThruPoint(double *length, double Ay, double Ax, double By,
                                                       double Bx, double Vy, double Vx, double Py, double Px);

/**
 * The radius of the circular curve tangent to the lines V-A and V-B through
 * P. Each point is given y first, then x.
 * \param[out] radius the radius; 0.0 when the angle at the centre is 0
 * \param[in]  flag   which branch: the angle at the centre is worked out
 *                    plus (non-zero) or minus (0) P's angle at V from the
 *                    nearer tangent
 */
TESSAR_API void tsMath_passTangentCurveThruPoint(double *radius, double Ay, double Ax, double By, double Bx,
                                                 double Vy, double Vx, double Py, double Px, int32_t flag);

TESSAR_END_DECLS

#endif /* TESSAR_MATHAPI_H */
