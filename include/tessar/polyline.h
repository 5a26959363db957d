/*
 * Tessar: the polyline engine of the UTMAT kernel.
 *
 * Polylines in plan and in section: queries, intersections, cuts, closed
 * outlines, the difference of two profiles, masks, tunnels, offsets and the
 * interpolation triangle.
 *
 * A polyline has no header record: it is a pointer to n consecutive points
 * and a signed 32-bit n, passed side by side (pts, n). Segment i joins vertex
 * i and vertex i + 1. Vertices are used in array order and never sorted; a
 * closed outline (contour) repeats its first vertex as its last, and n counts
 * the repetition. In a profile x is an abscissa across or along the work and
 * y a level, and the polyline is expected to run toward increasing x;
 * vertical steps (two vertices with the same x) are allowed. The curvilinear
 * abscissa of a position is the plan length of the polyline from vertex 0 up
 * to it; it is computed, never stored. Coordinates, tolerances, lengths and
 * areas are in the caller's units; tol is a distance in those units.
 *
 * Every UTMAT_* function here returns nothing, clears the kernel's error word
 * on entry and stores 32768 there on failure (see frame.h); results go
 * through pointers. A function without a tol argument either compares
 * exactly or uses UTMAT_getCalculPrec; each says which. A table failure is
 * copied into the error word from MEM_GetErreur.
 *
 * Ownership. Input polylines stay the caller's. A polyline or table that a
 * function hands back is a MEM_ table (see memory.h): passed as the address
 * of its pointer (dpoint2d **, ...) with the address of its count, created or
 * grown by the library, and owned by the caller from then on, who frees it
 * with MEM_LibererTableau. Fixed result tables (the intersection functions)
 * are the caller's own arrays, passed with their capacity.
 *
 * Shared state. Besides the error word and the settings, the intersection
 * functions that pick one result, and UTMAT_CalculerIntersectionPolylignePolyligne,
 * work in fixed tables of 50 entries held by the library, and
 * UTMAT_SegmentDansContour keeps one index between its internal steps. None
 * of this is per thread: use the kernel from one thread at a time.
 */
#ifndef TESSAR_POLYLINE_H
#define TESSAR_POLYLINE_H

#include <stddef.h>
#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Codes ---- */

/* Position of a point against a run of a profile (UTMAT_ComparerPositionPointPolyligne). */
#define TESSAR_POLY_BEFORE 4   /**< x before the run */
#define TESSAR_POLY_BEYOND 2   /**< x beyond the run */
#define TESSAR_POLY_ABOVE 1    /**< above the polyline by more than tol */
#define TESSAR_POLY_ON 0       /**< on the polyline within tol, a vertical step included */
#define TESSAR_POLY_BELOW (-1) /**< below the polyline by more than tol */

/*
 * Class of an end of segment 2 against the x range of segment 1
 * (UTMAT_ComparerPosition2Segments). The code is ten times the class of the
 * start of segment 2 plus the class of its end: 44 and 22 mean no common
 * interval.
 */
#define TESSAR_SEG_CLASS_BEFORE 4 /**< x below the start of segment 1 */
#define TESSAR_SEG_CLASS_WITHIN 3 /**< x within segment 1, ends included */
#define TESSAR_SEG_CLASS_BEYOND 2 /**< x above the end of segment 1 */

/* Flags of UTMAT_ComparerPosition2Segments; a, b is segment 1 and c, d segment 2. */
#define TESSAR_SEG_C_AT_START 1 /**< c.x equals a.x */
#define TESSAR_SEG_C_AT_END 2   /**< c.x equals b.x */
#define TESSAR_SEG_D_AT_START 4 /**< d.x equals a.x */
#define TESSAR_SEG_D_AT_END 8   /**< d.x equals b.x: both segments end at the same x */
#define TESSAR_SEG_VERTICAL2 32 /**< segment 2 is vertical */

/* Status of UTMAT_CalculerInterpolationCurviligneDuZ. */
#define TESSAR_ZINTERP_DONE 0         /**< levels of the unknown points computed */
#define TESSAR_ZINTERP_TOO_FEW 1      /**< fewer than 2 points */
#define TESSAR_ZINTERP_ALL_KNOWN (-1) /**< every level is given */
#define TESSAR_ZINTERP_NONE_KNOWN 2   /**< no level is given */
#define TESSAR_ZINTERP_TOO_CLOSE 3    /**< two successive points nearer in plan than UTMAT_getCalculPrec */

/* Answer of UTMAT_PointDansContour; a point on edge k (the edge ending at vertex k) gives -k. */
#define TESSAR_CONTOUR_INSIDE 1
#define TESSAR_CONTOUR_OUTSIDE 2

/* Selection mode of UTMAT_SegmentDansContour. */
#define TESSAR_CONTOUR_PIECES_INSIDE 1              /**< strictly inside */
#define TESSAR_CONTOUR_PIECES_OUTSIDE 2             /**< strictly outside */
#define TESSAR_CONTOUR_PIECES_INSIDE_OR_ALONG (-1)  /**< inside or along the contour */
#define TESSAR_CONTOUR_PIECES_OUTSIDE_OR_ALONG (-2) /**< outside or along the contour */

/*
 * Type word of a meeting point of two profiles (UTMAT_CalculerDifference2Polylignes
 * and its kin): one low flag for the stretch just before the point and one high
 * flag for the stretch just after it, telling where polyline 2 lies against
 * polyline 1.
 */
#define TESSAR_DIFF_BEFORE_EQUAL 0x1u    /**< before: the polylines coincide */
#define TESSAR_DIFF_BEFORE_BELOW 0x2u    /**< before: polyline 2 below polyline 1 */
#define TESSAR_DIFF_BEFORE_ABOVE 0x4u    /**< before: polyline 2 above polyline 1 */
#define TESSAR_DIFF_BEFORE_MASK 0x7u     /**< the low flag */
#define TESSAR_DIFF_AFTER_EQUAL 0x10000u /**< after: the polylines coincide */
#define TESSAR_DIFF_AFTER_BELOW 0x20000u /**< after: polyline 2 below polyline 1 */
#define TESSAR_DIFF_AFTER_ABOVE 0x40000u /**< after: polyline 2 above polyline 1 */
#define TESSAR_DIFF_AFTER_MASK 0x70000u  /**< the high flag */

/*
 * Measure across a tunnel (UTMAT_AppliquerTunnelAPolyligne); any other mode is
 * the plain distance. A divided measure is 0 where the component is near-equal
 * to 0 within UTMAT_getCalculPrec.
 */
#define TESSAR_TUNNEL_DISTANCE 0 /**< distance from the axis */
#define TESSAR_TUNNEL_ACROSS_Y 1 /**< distance divided by the y component of the axis direction */
#define TESSAR_TUNNEL_ACROSS_X 2 /**< distance divided by the x component of the axis direction */

/* ---- Records ---- */

/**
 * Parameters of the polyline against polyline intersections, filled in by
 * the caller. The library never writes through the pointers.
 */
typedef struct ParamIntersectionPolylignes {
    const dpoint2d *points1;  /**< vertices of polyline 1 */
    int32_t nbPoints1;        /**< number of vertices of polyline 1 */
    const dpoint2d *points2;  /**< vertices of polyline 2 */
    int32_t nbPoints2;        /**< number of vertices of polyline 2 */
    double tolerance;         /**< tolerance of every comparison of the segment layer */
    int32_t nbMax;            /**< capacity of the caller's result tables */
    const double *abscisses1; /**< a non-decreasing measure per vertex of polyline 1 (AvecAbscisses only) */
    const double *abscisses2; /**< the same for polyline 2 */
} ParamIntersectionPolylignes;

/**
 * Attribute of a mask vertex: one per input vertex, and one per output vertex
 * of UTMAT_AppliquerMasque.
 */
typedef struct UTMAT_AttributMasque {
    uint32_t valeur; /**< the caller's value, carried along with the vertex */
    uint8_t dessus;  /**< output only: 1 if the vertex comes from polyline 1, lying above there, else 0 */
} UTMAT_AttributMasque;

/* ---- Polyline queries ---- */

/**
 * Bounding box of a polyline, without tolerance.
 * \param[out] min lower-left corner
 * \param[out] max upper-right corner
 * Fails on a null pts, min or max (outputs untouched). n must be at least 1.
 */
TESSAR_API void UTMAT_RecupererEnglobantPolyligne(const dpoint2d *pts, int32_t n, dpoint2d *min,
                                                  dpoint2d *max);

/**
 * Tells whether a profile turns back in x. The general direction is toward
 * increasing x when the last vertex lies strictly right of the first, else
 * toward decreasing x; a step against it by more than tol is a retour.
 * \param[out] retour 1 when some step runs against the general direction, else 0
 * Fails on a null pts. n must be at least 1.
 */
TESSAR_API void UTMAT_TesterRetourEnAbscissePolyligne(const dpoint2d *pts, int32_t n, double tol,
                                                      int32_t *retour);

/**
 * Tells whether x never goes back by more than tol (equal abscissas allowed).
 * \param[out] croissant 1 when no step goes back, else 0; 1 for n at most 1
 * Fails on a null pts.
 */
TESSAR_API void UTMAT_VerifierCroissanceAbscissePolyligne(const dpoint2d *pts, int32_t n, double tol,
                                                          int32_t *croissant);

/**
 * Removes repeated vertices in place: each run of vertices within tol of its
 * first vertex collapses to that first vertex.
 * \param[in,out] pts address of the polyline's MEM_ table
 * \param[in,out] n   address of its count
 * A table failure stops the work; vertices already removed stay removed.
 */
TESSAR_API void UTMAT_PurgerPolyligne(dpoint2d **pts, int32_t *n, double tol);

/**
 * Binary search of the interval that holds x, on vertices monotonic in x
 * (either sense), within UTMAT_getCalculPrec.
 * \param[in]  points dpoint3d records when is3d is non-zero, else dpoint2d
 * \param[out] index  the vertex near-equal to x (the last one included), or the
 *                    start of the interval holding x; untouched when not found
 * \param[out] found  1 when x lies within the polyline, else 0
 * Does not test its pointers.
 */
TESSAR_API void UTMAT_RecupererDebutIntervalleContenantAbscisse(const void *points, uint8_t is3d, int32_t n,
                                                                double x, int32_t *index, int32_t *found);

/**
 * Finds where p lies on a polyline, first segment in array order first.
 * \param[out] index1 the vertex p stands on, or the start of the segment holding it; -1 if none
 * \param[out] index2 the end of that segment; -1 when p is on a vertex or nowhere
 * Nothing is compared for n below 2. Does not test its pointers.
 */
TESSAR_API void UTMAT_PointSurPolyligne(const dpoint2d *pts, int32_t n, const dpoint2d *p, double tol,
                                        int32_t *index1, int32_t *index2);

/**
 * Tells whether p lies on segment ab within tol.
 * \param[out] sur 1 when p is on the segment or within tol of an end, else 0;
 *                 untouched when a line primitive fails
 */
TESSAR_API void UTMAT_ComparerPointASegment(const dpoint2d *p, const dpoint2d *a, const dpoint2d *b,
                                            double tol, int32_t *sur);

/**
 * Position of p against the vertices first..last of a profile.
 * \param[out] position TESSAR_POLY_BEFORE or _BEYOND (exact test on x), else
 *                      _ABOVE, _BELOW or _ON within tol; a point on a vertical
 *                      step is on the polyline; untouched when no segment of
 *                      the run holds p.x
 * Fails (output untouched) unless 0 <= first <= last <= n - 1.
 */
TESSAR_API void UTMAT_ComparerPositionPointPolyligne(const dpoint2d *pts, int32_t n, const dpoint2d *p,
                                                     int32_t first, int32_t last, double tol,
                                                     int32_t *position);

/**
 * Compares two segments that run toward increasing x over their common x
 * interval, with exact comparisons.
 * \param[in]  segment1 two consecutive points a, b
 * \param[in]  segment2 two consecutive points c, d
 * \param[out] found    1 when the segments cross or meet within the interval
 * \param[out] inter    the meeting point, when found
 * \param[out] relStart where segment 2 lies against segment 1 at the start of
 *                      the interval: 1 above, -1 below, 0 equal
 * \param[out] relEnd   the same at the end of the interval
 * \param[out] xStart, xEnd the common interval
 * \param[out] y1Start, y1End ordinates of segment 1 at xStart and xEnd
 * \param[out] y2Start, y2End ordinates of segment 2 at xStart and xEnd
 * \param[out] flags    TESSAR_SEG_* flags
 * \param[out] code     ten times the class of c plus the class of d
 *                      (TESSAR_SEG_CLASS_*); with 44 or 22 (no common interval)
 *                      found is 0 and only code and flags are set
 * Two segments that coincide over the whole interval have no meeting point.
 */
TESSAR_API void UTMAT_ComparerPosition2Segments(const dpoint2d *segment1, const dpoint2d *segment2,
                                                int32_t *found, dpoint2d *inter, int32_t *relStart,
                                                int32_t *relEnd, double *xStart, double *xEnd,
                                                double *y1Start, double *y1End, double *y2Start,
                                                double *y2End, int32_t *flags, int32_t *code);

/**
 * Fills in the levels of the points whose z is not given, along the chain by
 * plan length: flat, straight, parabolic or cubic depending on the known
 * levels and slopes on each side of a run of unknown points.
 * \param[in,out] points n space points; z of the unknown points is rewritten
 * \param[in]     known  n flags, non-zero where z is given
 * \param[out]    status TESSAR_ZINTERP_* (never reported through the error word)
 * Does not test its pointers.
 */
TESSAR_API void UTMAT_CalculerInterpolationCurviligneDuZ(dpoint3d *points, int32_t n, const int32_t *known,
                                                         int32_t *status);

/**
 * Ordinates on a polyline increasing in x of a sorted run of abscissas, from
 * index start on; resumable over polylines placed end to end.
 * \param[in,out] xy    count points; y is written where the polyline covers x
 * \param[out]    done  count flags; done[start..count - 1] cleared, then 1 where y was written
 * \param[out]    last  index of the last element dealt with (call again with start = last + 1)
 * Fails on a null pts. n must be at least 1.
 */
TESSAR_API void UTMAT_CalculerTableauYSurPolyligne(const dpoint2d *pts, int32_t n, dpoint2d *xy,
                                                   int32_t *done, int32_t count, int32_t start, double tol,
                                                   int32_t *last);

/**
 * Ordinates on any polyline, not necessarily a function of x: for each
 * element the ordinate over its x nearest to its own y.
 * \param[in,out] xy   count points; y is read and replaced where some segment covers x
 * \param[out]    done count flags, 1 where y was replaced, else 0
 * Fails on a null pts.
 */
TESSAR_API void UTMAT_CalculerTableauYSurPolylignePlusProche(const dpoint2d *pts, int32_t n, dpoint2d *xy,
                                                             int32_t *done, int32_t count, double tol);

/**
 * Area of a simple polygon, as tsPointArray_computeSimplePolygonArea2d gives it
 * (a clockwise ring has positive area).
 * \param[out] area the area
 * Fails on a table failure.
 */
TESSAR_API void UTMAT_CalculerSurfacePolygone(const dpoint2d *pts, int32_t n, double *area);

/* ---- Intersections ----
 * Two kinds of result never mix: an isolated point, with its curvilinear
 * abscissa on each figure, and an overlap (a stretch of positive length shared
 * by both figures), with two end points, start and end in the direction of
 * figure 1, and two abscissas on each figure. In a segment call figure 1 is
 * the segment; a segment is a pointer to two consecutive points.
 *
 * Result groups: found (required), count (optional: null fills no table),
 * then the tables points, abs1, abs2, each optional. The overlap group is the
 * same with two entries per overlap. The caller's tables hold at least nbMax
 * entries, overlap tables twice that; nothing checks their size. Results
 * beyond nbMax are dropped without error, the found flags still set. */

/**
 * Classifies two segments.
 * \param[out] found        1 for an isolated point (required)
 * \param[out] p, abs1, abs2 the point and its abscissas (optional); the
 *                          abscissas may lie up to tol outside the segments
 * \param[out] foundOverlap 1 for a shared stretch longer than tol (required)
 * \param[out] overlap, overlapAbs1, overlapAbs2 its two ends and their
 *                          abscissas, two entries each (optional)
 * Segments that only touch end to end give an isolated point. Fails on a
 * zero-length segment (both flags 0).
 */
TESSAR_API void UTMAT_CalculerIntersectionSegmentSegment(const dpoint2d *segment1, const dpoint2d *segment2,
                                                         double tol, int32_t *found, dpoint2d *p,
                                                         double *abs1, double *abs2, int32_t *foundOverlap,
                                                         dpoint2d *overlap, double *overlapAbs1,
                                                         double *overlapAbs2);

/**
 * All results of a segment against a polyline, in polyline order. Polyline
 * segments of zero length are skipped; a point found on a vertex is kept once,
 * with the abscissas of the first segment (a bare count counts it twice).
 * Fails on a zero-length caller's segment; what was gathered stays.
 */
TESSAR_API void UTMAT_CalculerIntersectionSegmentPolyligne(const dpoint2d *segment, const dpoint2d *pts,
                                                           int32_t n, double tol, int32_t nbMax,
                                                           int32_t *found, int32_t *count, dpoint2d *points,
                                                           double *abs1, double *abs2, int32_t *foundOverlap,
                                                           int32_t *overlapCount, dpoint2d *overlapPoints,
                                                           double *overlapAbs1, double *overlapAbs2);

/**
 * All results of two polylines, in the order of polyline 1 and within one of
 * its segments in the order of polyline 2. One segment of polyline 1 gives at
 * most 50 results. Uses the library's internal tables: not re-entrant.
 * \param[in] param polylines, tolerance and nbMax (the abscissa fields are not read)
 */
TESSAR_API void UTMAT_CalculerIntersectionPolylignePolyligne(const ParamIntersectionPolylignes *param,
                                                             int32_t *found, int32_t *count, dpoint2d *points,
                                                             double *abs1, double *abs2,
                                                             int32_t *foundOverlap, int32_t *overlapCount,
                                                             dpoint2d *overlapPoints, double *overlapAbs1,
                                                             double *overlapAbs2);

/**
 * The same for two polylines that share a running measure (abscisses1,
 * abscisses2 of param): only segments whose measure intervals meet are
 * compared, in one linear merge. The abscissas returned are plan lengths.
 * Fails on a zero-length segment; what was gathered stays.
 */
TESSAR_API void UTMAT_CalculerIntersectionPolylignePolyligneAvecAbscisses(
    const ParamIntersectionPolylignes *param, int32_t *found, int32_t *count, dpoint2d *points, double *abs1,
    double *abs2, int32_t *foundOverlap, int32_t *overlapCount, dpoint2d *overlapPoints, double *overlapAbs1,
    double *overlapAbs2);

/**
 * The result of a segment against a polyline nearest in plan to ref: an
 * isolated point, or an end of an overlap if strictly nearer.
 * \param[in]  acceptRef    0 passes over points within tol of ref (not overlap ends)
 * \param[out] p            the result (required)
 * \param[out] abs1, abs2   its abscissas on the segment and the polyline (optional)
 * \param[out] foundPoint   1 when p is an isolated point (required)
 * \param[out] foundOverlap 1 when p is an overlap end (required)
 * Uses the library's internal tables: not re-entrant.
 */
TESSAR_API void UTMAT_CalculerIntersectionSegmentPolylignePlusProche(
    const dpoint2d *segment, const dpoint2d *pts, int32_t n, double tol, const dpoint2d *ref,
    int32_t acceptRef, dpoint2d *p, double *abs1, double *abs2, int32_t *foundPoint, int32_t *foundOverlap);

/**
 * The result of two polylines nearest in plan to ref; arguments and outputs
 * as in UTMAT_CalculerIntersectionSegmentPolylignePlusProche. Not re-entrant.
 */
TESSAR_API void UTMAT_CalculerIntersectionPolylignePolylignePlusProche(
    const dpoint2d *pts1, int32_t n1, const dpoint2d *pts2, int32_t n2, double tol, const dpoint2d *ref,
    int32_t acceptRef, dpoint2d *p, double *abs1, double *abs2, int32_t *foundPoint, int32_t *foundOverlap);

/**
 * The result of two polylines of smallest abscissa on polyline 1; an overlap
 * end wins only if strictly smaller.
 * \param[out] p (required), abs1, abs2 (optional), foundPoint, foundOverlap (required)
 * Not re-entrant.
 */
TESSAR_API void UTMAT_CalculerPremiereIntersectionPolyligneAvecPolyligne(
    const dpoint2d *pts1, int32_t n1, const dpoint2d *pts2, int32_t n2, double tol, dpoint2d *p, double *abs1,
    double *abs2, int32_t *foundPoint, int32_t *foundOverlap);

/**
 * A half-line from origin in direction (not necessarily unit) against segment
 * ab, with exact comparisons.
 * \param[out] p     the meeting point, when found
 * \param[out] found 1 when they meet, else 0
 * Fails on a null origin (found untouched).
 */
TESSAR_API void UTMAT_CalculerIntersectionDemiDroiteAvecSegment(const dpoint2d *origin,
                                                                const dpoint2d *direction, const dpoint2d *a,
                                                                const dpoint2d *b, dpoint2d *p,
                                                                int32_t *found);

/**
 * Two half-lines, with exact comparisons.
 * \param[out] p     the meeting point, when found
 * \param[out] found 1 when they meet, 0 for parallel or diverging half-lines
 * Fails on a null origin (found untouched).
 */
TESSAR_API void UTMAT_CalculerIntersectionDeuxDemiDroites(const dpoint2d *origin1, const dpoint2d *direction1,
                                                          const dpoint2d *origin2, const dpoint2d *direction2,
                                                          dpoint2d *p, int32_t *found);

/* ---- Segmentation and contours ----
 * The halves are new MEM_ tables of points, each with its count; an empty
 * half is a null pointer with a count of 0. */

/**
 * Cuts a polyline monotonic in x at a point on it (its y taken as given);
 * both halves hold the cut, a vertex at the cut is not doubled, and on a
 * vertical step the vertices before the cut stay in the first half.
 * \param[out] first, n1  the part from vertex 0 to the cut (cleared first)
 * \param[out] second, n2 the part from the cut to the last vertex (cleared first)
 * Fails, outputs untouched, when cut.x lies beyond the ends by more than tol.
 */
TESSAR_API void UTMAT_SegmenterPolyligne(const dpoint2d *pts, int32_t n, const dpoint2d *cut, double tol,
                                         dpoint2d **first, int32_t *n1, dpoint2d **second, int32_t *n2);

/**
 * Cuts a polyline monotonic in x at the abscissa x (exact comparisons, y
 * interpolated). A vertical step at x belongs to neither half. The first
 * half is always the part of smaller abscissas, each half in the polyline's
 * own direction.
 * \param[out] low, n1  the part below x (cleared first)
 * \param[out] high, n2 the part above x (cleared first)
 * Fails when x lies outside the ends.
 */
TESSAR_API void UTMAT_SegmenterPolyligneAAbscisse(const dpoint2d *pts, int32_t n, double x, dpoint2d **low,
                                                  int32_t *n1, dpoint2d **high, int32_t *n2);

/**
 * Cuts a contour along the vertical at x into a closed outline on each side
 * (exact comparisons); only the first and last contacts on each side count,
 * and the vertical chord closes each outline. A contour wholly on one side, or
 * touching the vertical from one side, goes whole to that side.
 * \param[out] left, n1  the outline left of x; *left must be null on entry
 * \param[out] right, n2 the outline right of x; *right must be null on entry
 */
TESSAR_API void UTMAT_SegmenterContourParVerticale(const dpoint2d *pts, int32_t n, double x, dpoint2d **left,
                                                   int32_t *n1, dpoint2d **right, int32_t *n2);

/**
 * Position of a point against a contour, by a ray toward increasing x.
 * \param[out] position TESSAR_CONTOUR_INSIDE, TESSAR_CONTOUR_OUTSIDE, or -k for
 *                      a point on edge k (the edge ending at vertex k, first
 *                      such edge); outside for n below 2
 */
TESSAR_API void UTMAT_PointDansContour(const dpoint2d *p, const dpoint2d *pts, int32_t n, double tol,
                                       int32_t *position);

/**
 * The pieces of segment ab that a contour selects.
 * \param[in]  mode      TESSAR_CONTOUR_PIECES_*; any other value selects nothing
 * \param[out] pieces    MEM_ table of two points per piece; pass null
 * \param[out] abscissas MEM_ table of two plan distances from a per piece; pass null
 * \param[out] count     number of pieces; -1 when a and b lie within UTMAT_getCalculPrec
 * Fails when a and b are equal. Not re-entrant.
 */
TESSAR_API void UTMAT_SegmentDansContour(const dpoint2d *a, const dpoint2d *b, const dpoint2d *pts, int32_t n,
                                         int32_t mode, double tol, dpoint2d **pieces, double **abscissas,
                                         int32_t *count);

/* ---- Differences of two profiles ----
 * Both polylines run toward increasing x; the difference is y on polyline 1
 * minus y on polyline 2, measured exactly (nothing is sampled). Lengths and
 * areas "above" are where polyline 1 lies above polyline 2; a stretch of
 * equal levels counts as below (a mean height near-equal to 0 within
 * UTMAT_getCalculPrec counts as no area). Each sum output may be null. Tables are MEM_
 * tables: their pointers and all counts and sums are cleared on entry (free
 * any previous table first). Meeting points come in increasing x, with a
 * type word of TESSAR_DIFF_* flags. */

/**
 * Sums of two profiles and their meeting points.
 * \param[out] lengthAbove, areaAbove, lengthBelow, areaBelow the sums
 * \param[out] points, types, count the meeting points and their type words;
 *             recorded only when all three are given
 */
TESSAR_API void UTMAT_CalculerDifference2Polylignes(const dpoint2d *pts1, int32_t n1, const dpoint2d *pts2,
                                                    int32_t n2, double *lengthAbove, double *areaAbove,
                                                    double *lengthBelow, double *areaBelow, dpoint2d **points,
                                                    uint32_t **types, int32_t *count);

/**
 * Everything about two profiles.
 * \param[out] points, types, count the meeting points, as above
 * \param[out] areas  count + 1 signed areas: entry k runs from the previous
 *                    meeting point to meeting point k, the last one after the
 *                    last point; *areas must be null on entry
 * \param[out] pieces, signs, pieceCount the pieces of polyline 1 between
 *             meeting points, two points each, with 1 where polyline 1 is
 *             above, -1 below, 0 equal; recorded only when all three are given
 */
TESSAR_API void UTMAT_CalculateDiff2Lines(const dpoint2d *pts1, int32_t n1, const dpoint2d *pts2, int32_t n2,
                                          double *lengthAbove, double *areaAbove, double *lengthBelow,
                                          double *areaBelow, dpoint2d **points, uint32_t **types,
                                          double **areas, int32_t *count, dpoint2d **pieces, int32_t **signs,
                                          int32_t *pieceCount);

/**
 * As UTMAT_CalculerDifference2Polylignes, keeping only the meeting points at
 * which a stretch of non-zero area begins or ends: a side of a point whose
 * area is near-equal to 0 counts as equal levels, and a point with equal
 * levels on both sides is removed. points, types and count are required
 * (not tested).
 */
TESSAR_API void UTMAT_CalculerDifference2PolylignesAvecControleSurface(const dpoint2d *pts1, int32_t n1,
                                                                       const dpoint2d *pts2, int32_t n2,
                                                                       double *lengthAbove, double *areaAbove,
                                                                       double *lengthBelow, double *areaBelow,
                                                                       dpoint2d **points, uint32_t **types,
                                                                       int32_t *count);

/**
 * The stretches in which the difference D lies in the bracket low < D <= high.
 * D is sampled at the vertices of either polyline that the other covers (exact
 * comparisons), in increasing x, until either polyline is used up; between two
 * samples D is linear, and a stretch starts or ends where it crosses a bound.
 * Two samples on one x (a vertical step) are crossed where D, linear along the
 * step, reaches the bound.
 * \param[out] out1  MEM_ table of two points per stretch (start, end) on polyline 1,
 *                   or null; *out1 should be null on entry
 * \param[out] out2  the same on polyline 2, or null
 * \param[out] count number of stretches (cleared first)
 * Fails when out1 and out2 are both null, on a null polyline, and on an
 * inconsistent walk (the stretches stored so far stay).
 */
TESSAR_API void UTMAT_CalculerIntervDiffPolylignesDansFourchette(const dpoint2d *pts1, int32_t n1,
                                                                 const dpoint2d *pts2, int32_t n2, double low,
                                                                 double high, dpoint2d **out1,
                                                                 dpoint2d **out2, int32_t *count);

/* ---- Masks, tunnels and offsets ---- */

/**
 * Upper envelope of two profiles running toward increasing x (exact
 * comparisons). Where only one polyline exists, it is the result.
 * \param[in]  attributes1 one record per vertex of polyline 1 (valeur carried)
 * \param[in]  attributes2 one record per vertex of polyline 2
 * \param[out] points      MEM_ table of the envelope, built from empty (pass null)
 * \param[out] attributes  MEM_ table of one record per envelope vertex, or null
 * \param[out] count       number of envelope vertices (cleared first)
 */
TESSAR_API void UTMAT_AppliquerMasque(const dpoint2d *pts1, const UTMAT_AttributMasque *attributes1,
                                      int32_t n1, const dpoint2d *pts2,
                                      const UTMAT_AttributMasque *attributes2, int32_t n2, dpoint2d **points,
                                      UTMAT_AttributMasque **attributes, int32_t *count);

/**
 * Marks the vertices of a 3-D chain that lie in the tunnel from the last
 * kept vertex toward the next vertex: across it the measure of mode
 * (TESSAR_TUNNEL_*) is strictly below width / 2, along it the space distance
 * strictly below length.
 * \param[out] flags n flags, zero-filled by the caller; flags[0] is set to 0,
 *                   flags[i] to 1 for a droppable vertex; the last is never written
 * A failing line primitive ends the walk, the flags keeping what they hold.
 */
TESSAR_API void UTMAT_AppliquerTunnelAPolyligne(const dpoint3d *points, int32_t n, double width,
                                                double length, int32_t mode, int32_t *flags);

/**
 * Moves each segment by a vector of its own and joins the moved segments end
 * to end: a connecting segment where two successive vectors differ by more
 * than tol.
 * \param[in]  vectors n - 1 vectors, one per segment
 * \param[out] points  MEM_ table of the result; *points must be null on entry
 * \param[out] count   its count, n to 2n - 2
 */
TESSAR_API void UTMAT_TranslationComplexePolyligne(const dpoint2d *pts, const dpoint2d *vectors, int32_t n,
                                                   double tol, dpoint2d **points, int32_t *count);

/**
 * Offsets a profile segment by segment, by a thickness measured across each
 * segment (positive toward smaller y), and resolves the joints into one
 * polyline. A polyline running backward gives a result running backward.
 * \param[in,out] pts           the profile; its x are negated during the call
 *                              when it runs backward, and stay so on failure
 * \param[in]     attributes    one opaque record per segment, or null
 * \param[in]     attributeSize size in bytes of one record
 * \param[in]     thicknesses   n - 1 thicknesses, one per segment
 * \param[out]    points        MEM_ table of the result, built from empty (pass null)
 * \param[out]    attributeTable MEM_ table of one byte copy of a segment's
 *                              record per result vertex, or null
 * \param[out]    count         number of result vertices (cleared first)
 * Fails on a zero-length segment; a vertical one gives an infinite offset.
 */
TESSAR_API void UTMAT_TranslationPolyligneParEpaisseurs(dpoint2d *pts, const void *attributes,
                                                        size_t attributeSize, const double *thicknesses,
                                                        int32_t n, double tol, dpoint2d **points,
                                                        void **attributeTable, int32_t *count);

/* ---- Triangle interpolation ----
 * Two points, each with a unit tangent, and a common step t along both
 * tangents such that the two points reached lie 2t apart: the joint of a
 * two-piece curve between the given points. */

/**
 * Tells whether the figure needs and allows an interpolation (tolerance 1e-6 on angles).
 * \param[out] valide 0 when both tangents lie along the chord p1 p2, else 1;
 *                    untouched when a primitive fails
 */
TESSAR_API void UTMAT_VerifierTriangleInterpolation(const dpoint2d *p1, const dpoint2d *v1,
                                                    const dpoint2d *p2, const dpoint2d *v2, int32_t *valide);

/**
 * The joint of the interpolation triangle.
 * \param[out] m       the intermediate point
 * \param[out] tangent the unit tangent at m
 * \param[out] t       the step
 * Fails, outputs untouched, on a null argument or when no step exists.
 */
TESSAR_API void UTMAT_CalculerPointInterpolation(const dpoint2d *p1, const dpoint2d *v1, const dpoint2d *p2,
                                                 const dpoint2d *v2, dpoint2d *m, dpoint2d *tangent,
                                                 double *t);

TESSAR_END_DECLS

#endif /* TESSAR_POLYLINE_H */
