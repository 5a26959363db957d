/*
 * Tessar: one-dimensional range tree.
 *
 * tsRangeTree1D_* answers which ranges of a list overlap a point or a span.
 * The caller gives a linked list (linkedlist.h) whose 8-byte elements are
 * references to its ranges, and a function that reads the two ends of a
 * range. The tree indexes the distinct end points of all ranges on a
 * balanced tree of double keys; each end point lists the ranges that cover
 * the span from it up to the next end point. Ranges are half-open: a range
 * is listed from its low end up to, not including, its high end.
 *
 * The tree is an opaque record held in the caller's handle variable:
 * tsRangeTree1D_create fills the handle, tsRangeTree1D_destroy frees the
 * tree and clears it. The caller owns the list and the ranges, which must
 * outlive the tree, and each result list, which it destroys with
 * tsLinkedList_destroy. A tree belongs to one thread at a time, queries
 * included.
 *
 * Results: 0 for success, 32768 for a bad argument.
 */
#ifndef TESSAR_RANGETREE_H
#define TESSAR_RANGETREE_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/linkedlist.h>

TESSAR_BEGIN_DECLS

/** A range tree: opaque, held through a handle variable. */
typedef struct tsRangeTree1D tsRangeTree1D;

/**
 * Reads the two ends of a range.
 * \param[in]  range an element of the caller's list: the reference to a range
 * \param[out] low   the low end
 * \param[out] high  the high end
 * \return ignored.
 */
typedef int32_t (*tsRangeTree1DGetRangeFunc)(void *range, double *low, double *high);

/* ---- Creation and destruction ---- */

/**
 * Builds the index of a list of ranges.
 * \param[in,out] tree     address of a handle holding null
 * \param[in]     ranges   a linked list of 8-byte range references
 * \param[in]     getRange reads the ends of a range
 * \return 0; 32768 if the handle does not hold null, or on a bad argument.
 */
TESSAR_API int32_t tsRangeTree1D_create(tsRangeTree1D **tree, const tsLinkedList *ranges,
                                        tsRangeTree1DGetRangeFunc getRange);

/**
 * Destroys the range list of every end point, frees the tree's header and
 * clears the handle. The nodes of the index itself are not released: their
 * memory is given up.
 * \param[in,out] tree address of the handle
 * \return 0; 32768 for a null address or handle.
 */
TESSAR_API int32_t tsRangeTree1D_destroy(tsRangeTree1D **tree);

/* ---- Queries ----
 * The result is a new sorted list of 8-byte range references, without
 * repeats, holding the ranges that share an elementary span with the query;
 * null when none overlaps. */

/**
 * Finds the ranges that overlap the span from point - tolerance to point + tolerance.
 * \param[out] result receives the new list, or null
 * \return 0; 32768 for a null tree.
 */
TESSAR_API int32_t tsRangeTree1D_getPonctualOverlap(tsRangeTree1D *tree, tsLinkedList **result, double point,
                                                    double tolerance);

/**
 * Finds the ranges that overlap the span from *low - tolerance to
 * *high + tolerance.
 * \param[out] result receives the new list, or null
 * \param[in]  low    the low end, or null to leave that side open
 * \param[in]  high   the high end, or null to leave that side open
 * \return 0; 32768 for a null tree.
 */
TESSAR_API int32_t tsRangeTree1D_getRangeOverlap(tsRangeTree1D *tree, tsLinkedList **result,
                                                 const double *low, const double *high, double tolerance);

/* ---- Printing ---- */

/**
 * Prints the index to the standard output: for each end point in order
 * "station = %f", then "range (%f,%f)," for each range it lists.
 * \return 0; 32768 for a null tree.
 */
TESSAR_API int32_t tsRangeTree1D_print(const tsRangeTree1D *tree);

TESSAR_END_DECLS

#endif /* TESSAR_RANGETREE_H */
