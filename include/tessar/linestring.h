/*
 * Tessar: line strings.
 *
 * Building, ordering and cleaning strings of space points (tsLineString, a
 * point array and its count; see types.h):
 *   - the parallel copy by offset vertices, with mitred or rounded joins;
 *   - joining loose 3-D lines, given in any order and direction, into
 *     chains whose ends meet within a tolerance (tsJoinLines_*);
 *   - connecting whole strings that do not touch, in the order and direction
 *     that make the added connectors shortest in total without crossing a
 *     string or each other (tsConnectLines_*);
 *   - crossings of strings with each other and with themselves (knots),
 *     listed, inserted as vertices, or used to cut loops away;
 *   - the removal of repeated points, and the continuous string made from
 *     loose segments by cutting neighbours with each other.
 * Work is in the plan on x and y; z is carried along or interpolated. A
 * positive offset lies to the right of the direction of travel.
 *
 * Ownership. Every array that a function here hands out comes from the
 * library's allocator and is released with tsMem_free (memory.h); lists are
 * released with tsLinkedList_destroy (linkedlist.h). An output pointer that
 * already holds an array on entry is freed first, so it must hold null or
 * such an array; the result list of
 * tsConnectLines_dline3dAssembleLinkedListLineStrings must hold null. One
 * exception: the result of tsLineString_copyParallel2d comes from the system
 * allocator, and the caller releases it with the C library's free. An empty
 * result leaves a null pointer and a count of 0.
 *
 * Results: 0 for success, 32768 for a bad argument or no memory. The
 * connecting functions also give a status: 0 a result exists, 1 the given
 * strings intersect each other, 2 nothing could be connected. Nothing here
 * keeps state; when the caller has opened the log file (system.h),
 * connecting writes the first walk it finds to it, one line per string:
 * "Line[%4ld] ** %4ld" with the position and the end index.
 */
#ifndef TESSAR_LINESTRING_H
#define TESSAR_LINESTRING_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/linkedlist.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Records ---- */

/**
 * One element of the linked lists that joining and connecting build; the
 * lists' element size is sizeof(tsJoinedLine), 64 bytes.
 */
typedef struct tsJoinedLine {
    int32_t lineIndex; /**< index of the line in the caller's array; -1 for a connector the library added */
    int32_t reversed;  /**< 1 if the line runs against its original direction */
    tsLine line;       /**< the line as it stands in the chain, already turned if reversed */
} tsJoinedLine;

/**
 * One crossing as seen from one of the two segments; every crossing gives two
 * records, one from each side, which exchange their levels.
 */
typedef struct tsStringIntersection {
    int32_t string;       /**< index of the string */
    int32_t segment;      /**< index of the segment in that string */
    int32_t otherString;  /**< index of the other string */
    int32_t otherSegment; /**< index of the other segment */
    double distance;      /**< plan distance from the original start of the segment to the crossing */
    double x;             /**< the crossing */
    double y;             /**< the crossing */
    double z;             /**< level on this segment at the crossing, linear in distance */
    double otherZ;        /**< level on the other segment */
} tsStringIntersection;

/* ---- Parallel copy ---- */

/**
 * Copies a string at a constant plan offset by offsetting its vertices, with
 * a mitred or rounded join at each outer corner; the loops of the inner
 * corners are cut away with tsLineString_removeKnots. A closed string (first
 * and last points equal in x and y) is walked counter-clockwise, so a
 * positive distance goes outward whatever its direction. A string that
 * crosses itself has no parallel copy.
 * The input is not constant: it is rounded, compacted and, if closed and
 * clockwise, reversed in place, while the count n is not updated.
 * \param[in,out] points   the string
 * \param[in]     n        its point count
 * \param[in]     distance the offset; positive to the right, 0.0 copies the string
 * \param[in]     joinType 2 for round joins; any other value for mitred joins
 * \param[in]     arcStep  arc step of round joins: neighbouring arc points lie
 *                         atan(arcStep / |distance|) apart; 0 or a negative step
 *                         puts no points between the ends and the bisector
 * \param[in,out] result   an array held on entry is released with free; receives
 *                         a new array from the system allocator, to be released with free
 * \param[out]    count    its point count
 * \return 0; 32768 for null points, n below 2, fewer than 2 points left
 *         after repeated points are removed, a string with knots or no
 *         memory (the result is then null and the count 0).
 */
TESSAR_API int32_t tsLineString_copyParallel2d(dpoint3d *points, int32_t n, double distance, int32_t joinType,
                                               double arcStep, dpoint3d **result, int32_t *count);

/* ---- Joining and connecting ---- */

/**
 * Joins loose lines into chains: line ends that are mutual nearest neighbours
 * within tol are linked, and each chain becomes one list of tsJoinedLine. A
 * chain of only reversed lines is turned round. Where the plan gap between
 * consecutive lines exceeds tol, a connector element is added between them;
 * a gap within tol stays, and no end is moved.
 * \param[in]  n         the number of lines, at least 1
 * \param[in]  lines     the lines
 * \param[in]  tol       the match tolerance (a negative one counts as 0)
 * \param[out] listCount the number of lists
 * \param[out] lists     receives a new array of listCount list pointers; an
 *                       array held on entry is freed, not the lists in it
 * \return 0; 32768 for n below 1, null lines or no memory.
 */
TESSAR_API int32_t tsJoinLines_linesDline3d(int32_t n, const tsLine *lines, double tol, int32_t *listCount,
                                            tsLinkedList ***lists);

/**
 * Connects whole strings into one walk. Each string first loses its repeated
 * points (in place); then the order and direction with the shortest total
 * length are sought in which the connectors cross neither a string nor each
 * other.
 * \param[in,out] strings    n pointers to the strings
 * \param[in]     n          the number of strings
 * \param[out]    status     0 result, 1 the strings intersect, 2 nothing to connect
 * \param[out]    closed     whether a last connector back to the first end would be allowed
 * \param[out]    length     plan length of the strings and connectors
 * \param[out]    points     receives all strings in order, each forward or
 *                           backward; when no walk meets the conditions, an
 *                           array that holds nothing
 * \param[out]    pointCount its point count
 * \param[out]    order      receives the end indices in walk order: for end e,
 *                           string e / 2, forward if e is even, backward if odd.
 *                           The walk's first connector leaves from the leftmost
 *                           end that has one, so the first string is walked
 *                           into that end. A string of plan length 0 has no
 *                           ends and shifts the strings after it: pass none.
 * \param[out]    orderCount its count; 0 when no path meets the conditions
 * \return 0, also with status 1 or 2; 32768 for a bad argument, or with
 *         status 2 for no memory.
 */
TESSAR_API int32_t tsConnectLines_dpoint3dLineStrings(tsLineString *const *strings, int32_t n,
                                                      int32_t *status, int32_t *closed, double *length,
                                                      dpoint3d **points, int32_t *pointCount, int32_t **order,
                                                      int32_t *orderCount);

/**
 * Connects chains of lines, as tsConnectLines_dpoint3dLineStrings connects
 * strings, and merges them into one new list of tsJoinedLine. Chains walked
 * backward have each line turned and its reversed flag flipped; a connector
 * (lineIndex -1, reversed 0) goes before the first line of every chain but
 * the first.
 * \param[in]  lists  n lists of tsJoinedLine, none empty
 * \param[in]  n      the number of lists, at least 2
 * \param[out] result address of a handle holding null; receives the new list
 * \param[out] status 0 result, 1 the chains intersect, 2 nothing to connect
 * \param[out] closed as for tsConnectLines_dpoint3dLineStrings
 * \param[out] length plan length of the chains and connectors
 * \return 0, also with status 1 or 2; 32768 for n below 2 or a null array;
 *         32768 with status 2 for a result handle not null on entry, an
 *         empty list or no memory.
 */
TESSAR_API int32_t tsConnectLines_dline3dAssembleLinkedListLineStrings(tsLinkedList *const *lists, int32_t n,
                                                                       tsLinkedList **result, int32_t *status,
                                                                       int32_t *closed, double *length);

/* ---- Repeated points ---- */

/**
 * Drops in place each point whose plan distance from the last kept point,
 * and |dx| and |dy|, do not exceed tol; z is not looked at.
 * \param[in,out] points the points
 * \param[in,out] n      their count; becomes the number kept (set to 1 when it was at most 1)
 * \param[in]     tol    the tolerance (a negative one counts as 0)
 * \return 0; 32768 for a null argument.
 */
TESSAR_API int32_t tsLineString_removeDuplicatesPointArray(dpoint3d *points, int32_t *n, double tol);

/* ---- Crossings and knots ----
 * Crossings come sorted by string, then segment, then distance. A string's
 * own consecutive segments are never reported, nor the first and last
 * segments of a closed string at their shared point. */

/**
 * Finds the crossings of strings with each other and with themselves.
 * \param[in]     strings       n pointers to the strings
 * \param[in]     n             the number of strings, at least 1
 * \param[in,out] intersections receives a new array of crossings, two records each
 * \param[out]    count         its count
 * \return 0; 32768 for a bad argument or no memory.
 */
TESSAR_API int32_t tsLineString_detectStringIntersections(tsLineString *const *strings, int32_t n,
                                                          tsStringIntersection **intersections,
                                                          int32_t *count);

/**
 * As tsLineString_detectStringIntersections, and inserts the crossings as
 * vertices: each string with crossings gets a new point array (repeated
 * points removed) and its old array, which must be a library array, is freed.
 */
TESSAR_API int32_t tsLineString_insertStringIntersections(tsLineString *const *strings, int32_t n,
                                                          tsStringIntersection **intersections,
                                                          int32_t *count);

/**
 * Finds the crossings of one string with itself; n at most 2 gives no result.
 * \param[in,out] knots receives a new array of crossings
 * \param[out]    count its count
 * \return 0; 32768 for a bad argument or no memory.
 */
TESSAR_API int32_t tsLineString_detectKnotsPointArray(const dpoint3d *points, int32_t n,
                                                      tsStringIntersection **knots, int32_t *count);

/**
 * As tsLineString_detectKnotsPointArray, and inserts the knots as vertices.
 * The array goes in by value: when knots are found, the caller's array (a
 * library array) is released by the call, and the enlarged one, which cannot
 * be handed back, is released too; with no knot the array stays the
 * caller's. Use tsLineString_insertStringIntersections to get the enlarged
 * string.
 */
TESSAR_API int32_t tsLineString_insertKnots(dpoint3d *points, int32_t n, tsStringIntersection **knots,
                                            int32_t *count);

/**
 * Cuts the loops of a string away: repeated points are removed, the knots are
 * inserted as vertices, and the stretch between the two passages of each knot
 * is dropped; in a closed string the shorter part goes.
 * \param[in,out] points address of the points (a library array); may be replaced
 * \param[in,out] n      their count; updated (nothing happens below 3)
 * \param[in,out] knots  receives a new array of the knots found
 * \param[out]    count  its count
 * \return 0; 32768 for null points or no memory.
 */
TESSAR_API int32_t tsLineString_removeKnots(dpoint3d **points, int32_t *n, tsStringIntersection **knots,
                                            int32_t *count);

/* ---- Continuous string from segments ---- */

/**
 * Makes one continuous string from loose segments: each segment is cut with
 * its neighbours at the intersections of their lines (where two neighbouring
 * lines are parallel, the end stays where it was); a segment that its
 * neighbours eat (its cut piece no longer has its direction within tol) is
 * removed, and the cutting starts over. A cut end keeps the level of the end
 * it replaced.
 * \param[in,out] points      receives the string: the start of each kept segment and the end of the last
 * \param[out]    pointCount  its count
 * \param[in,out] indices     receives the original index of each kept segment; may be null
 * \param[out]    indexCount  its count; may be null with indices
 * \param[in]     segments    the segments, two points each
 * \param[in]     pointsGiven the number of points in segments, at least 1
 * \param[in]     tol         the direction tolerance
 * \param[in]     closed      non-zero to cut the last segment with the first as well
 * \return 0; 32768 for a null output or input, pointsGiven below 1, no
 *         whole segment (a single point), all segments removed, or no memory.
 */
TESSAR_API int32_t tsLine_createStreamFromSegmentArray(dpoint3d **points, int32_t *pointCount,
                                                       int32_t **indices, int32_t *indexCount,
                                                       const dpoint3d *segments, int32_t pointsGiven,
                                                       double tol, int32_t closed);

TESSAR_END_DECLS

#endif /* TESSAR_LINESTRING_H */
