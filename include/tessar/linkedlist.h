/*
 * Tessar: linked list and iterator.
 *
 * tsLinkedList_* is a doubly linked ring with a sentinel node, holding copies
 * of fixed-size elements: each element is copied in on insertion and copied
 * out on reading, so callers never see node memory. A list carries a sorted
 * flag, 1 for a new list: merging and ordered insertion are allowed only on
 * a list known to be sorted, and every change that can break the order
 * clears the flag. The order is that of the list's comparison, or, without
 * one, a byte comparison of the elements.
 *
 * tsLListIterator_* walks a list. An iterator stands before the start (a
 * flag, set on a new iterator), on an element's node, or on the sentinel,
 * which is the position after the last element. It is valid only while the
 * node it stands on lives. The list functions that take an iterator as a
 * position take one before the start as standing on the sentinel.
 *
 * Lists and iterators are opaque records held in the caller's handle
 * variables: create fills a handle holding null, destroy frees the record and
 * clears the handle. A list owns its element copies; what they point to stays
 * the caller's. Lists and iterators belong to one thread at a time.
 *
 * Results: 0 for success; 32768 for a bad argument or, where stated, an
 * unsorted list; -1 for an iterator before the start or on the sentinel
 * where an element is needed; -2 for a step back from the first element.
 * A function that adds elements gives 32768 when there is no memory or the
 * list would pass 2^60 - 1 elements, and then leaves the list as it was
 * (tsLinkedList_appendCopy keeps what it added before the failure).
 */
#ifndef TESSAR_LINKEDLIST_H
#define TESSAR_LINKEDLIST_H

#include <stddef.h>
#include <stdint.h>

#include <tessar/export.h>

TESSAR_BEGIN_DECLS

/* ---- Records and callbacks ---- */

/** A linked list: opaque, held through a handle variable. */
typedef struct tsLinkedList tsLinkedList;

/** An iterator over a linked list: opaque, held through a handle variable. */
typedef struct tsLListIterator tsLListIterator;

/**
 * Orders two elements of a list.
 * \param[in] a    address of the first element
 * \param[in] b    address of the second element
 * \param[in] list the list being ordered
 * \return negative, 0 or positive as a lies before, with or after b.
 */
typedef int32_t (*tsLinkedListCompareFunc)(const void *a, const void *b, const tsLinkedList *list);

/**
 * Action on a list element, called by tsLinkedList_performAction.
 * \param[in] element  a copy of the element, in one buffer reused for every
 *                     call: changes to it do not reach the list
 * \param[in] userData the caller's data given to the walk
 * \return 0 to go on; non-zero stops the walk.
 */
typedef int32_t (*tsLinkedListElementAction)(void *element, void *userData);

/* ---- Lists: creation and destruction ---- */

/**
 * Creates an empty, sorted list without a comparison.
 * \param[in,out] list        address of a handle holding null
 * \param[in]     elementSize bytes per element, not 0
 * \return 0 in all cases; on a bad argument or no memory nothing is done.
 */
TESSAR_API int32_t tsLinkedList_create(tsLinkedList **list, size_t elementSize);

/**
 * Frees all elements and the list, and clears the handle.
 * \return 0; 32768 for a null address or handle.
 */
TESSAR_API int32_t tsLinkedList_destroy(tsLinkedList **list);

/** Removes all elements; the sorted flag stays as it is. \return 0; 32768 for a null list. */
TESSAR_API int32_t tsLinkedList_clear(tsLinkedList *list);

/**
 * Sets the comparison; null restores the byte comparison. The sorted flag
 * stays as it is.
 * \return 0; 32768 for a null list.
 */
TESSAR_API int32_t tsLinkedList_setCompareFunction(tsLinkedList *list, tsLinkedListCompareFunc compare);

/* ---- Lists: reading ---- */

/** \return the number of elements; 0 for a null list. */
TESSAR_API size_t tsLinkedList_size(const tsLinkedList *list);

/**
 * Copies out the element at an index, walking from the first element.
 * \param[out] destination receives the element
 * \param[in]  index       from 0
 * \return 0, also for a null list (nothing stored); 32768 for an index out of
 *         range, and at once for a list of exactly 32768 elements.
 */
TESSAR_API int32_t tsLinkedList_getValueByIndex(const tsLinkedList *list, void *destination, int32_t index);

/* ---- Lists: adding and removing ---- */

/** Adds a copy of the element before the first. Clears sorted. \return 0; 32768 for a null argument. */
TESSAR_API int32_t tsLinkedList_pushFront(tsLinkedList *list, const void *element);

/** Adds a copy of the element after the last. Clears sorted. \return 0; 32768 for a null argument. */
TESSAR_API int32_t tsLinkedList_pushBack(tsLinkedList *list, const void *element);

/** Removes the first element, if any. \return 0, also for an empty list; 32768 for a null list. */
TESSAR_API int32_t tsLinkedList_popFront(tsLinkedList *list);

/** Removes the last element, if any. \return 0, also for an empty list; 32768 for a null list. */
TESSAR_API int32_t tsLinkedList_popBack(tsLinkedList *list);

/**
 * Inserts a copy of the element before the iterator's node (on the sentinel,
 * or before the start: at the end); the iterator then stands on the new
 * node. Clears sorted.
 * \param[in,out] iterator the position, or null for the first node
 * \return 0; 32768 for a null list or no memory.
 */
TESSAR_API int32_t tsLinkedList_insert(tsLinkedList *list, tsLListIterator *iterator, const void *element);

/**
 * Inserts a copy of the element after any equal elements of a sorted list,
 * which stays sorted.
 * \return 0; 32768 for a null list or a list that is not sorted.
 */
TESSAR_API int32_t tsLinkedList_insertInOrder(tsLinkedList *list, const void *element);

/**
 * Removes the iterator's element; the iterator moves to the next node.
 * \return 0; -1 for an iterator on the sentinel or before the start; 32768
 *         for a null list or iterator.
 */
TESSAR_API int32_t tsLinkedList_eraseElement(tsLinkedList *list, tsLListIterator *iterator);

/**
 * Removes the elements from first up to, not including, last; both iterators
 * then stand on the node after the gap.
 * \param[in,out] first the first element removed, or null for the start
 * \param[in,out] last  the element after the last removed, or null for the end
 * \return 0; -1 when first is on the sentinel; 32768 for a null list.
 */
TESSAR_API int32_t tsLinkedList_eraseElements(tsLinkedList *list, tsLListIterator *first,
                                              tsLListIterator *last);

/* ---- Lists: walks and order ---- */

/**
 * Calls action(copy of the element, userData) on the elements from first up
 * to, not including, last, until an answer is non-zero.
 * \param[in] first the first element, or null for the start
 * \param[in] last  where the walk ends, or null for the end of the list
 * \return 0, also when an answer stopped the walk; -1 when first is on the
 *         sentinel (an empty list gives -1); 32768 for a null list.
 */
TESSAR_API int32_t tsLinkedList_performAction(const tsLinkedList *list, tsLinkedListElementAction action,
                                              void *userData, const tsLListIterator *first,
                                              const tsLListIterator *last);

/**
 * Sorts by relinking nodes (stable merge sort, no element is copied) and sets
 * the sorted flag.
 * \return 0; 32768 for a null list.
 */
TESSAR_API int32_t tsLinkedList_sort(tsLinkedList *list);

/** Reverses the order of the elements and clears sorted, whatever the length. \return 0; 32768 for null. */
TESSAR_API int32_t tsLinkedList_reverse(tsLinkedList *list);

/**
 * Removes each element equal to the one before it: compare(element kept,
 * next element) == 0. \return 0; 32768 for a null list.
 */
TESSAR_API int32_t tsLinkedList_unique(tsLinkedList *list);

/* ---- Lists: combining ----
 * The source is only read: copies of its elements go into the destination. */

/** Adds copies of all source elements at the end. Clears sorted. \return 0; 32768 for a null list. */
TESSAR_API int32_t tsLinkedList_append(tsLinkedList *destination, const tsLinkedList *source);

/**
 * Adds copies of all source elements at the end, element by element. Clears
 * sorted. \return 0; 32768 for a null list.
 */
TESSAR_API int32_t tsLinkedList_appendCopy(tsLinkedList *destination, const tsLinkedList *source);

/**
 * When both lists are sorted, merges copies of the source elements in, by
 * the destination's comparison: a source element goes before a destination
 * element only when compare(source element, destination element) < 0, so
 * of equal elements the destination's come first. Otherwise nothing happens.
 * \return 0 either way; 32768 for a null list, or no memory.
 */
TESSAR_API int32_t tsLinkedList_merge(tsLinkedList *destination, const tsLinkedList *source);

/**
 * tsLinkedList_merge, then tsLinkedList_unique on the destination.
 * \return 0; 32768 for a null list.
 */
TESSAR_API int32_t tsLinkedList_mergeCopyUnique(tsLinkedList *destination, const tsLinkedList *source);

/* ---- Iterators ----
 * Every iterator function gives 32768 for a null iterator. */

/**
 * Creates an iterator over a list, standing before the start.
 * \param[in,out] iterator address of a handle holding null
 * \param[in]     list     the list to walk
 * \return 0; 32768 for a bad argument or no memory.
 */
TESSAR_API int32_t tsLListIterator_create(tsLListIterator **iterator, tsLinkedList *list);

/** Frees the iterator and clears the handle. \return 0; 32768 for a null address or handle. */
TESSAR_API int32_t tsLListIterator_destroy(tsLListIterator **iterator);

/** Puts the iterator before the start. \return 0. */
TESSAR_API int32_t tsLListIterator_reset(tsLListIterator *iterator);

/** Puts the iterator on the first node (the sentinel for an empty list). \return 0. */
TESSAR_API int32_t tsLListIterator_begin(tsLListIterator *iterator);

/** Puts the iterator on the sentinel, after the last element. \return 0. */
TESSAR_API int32_t tsLListIterator_end(tsLListIterator *iterator);

/**
 * Moves to the next node; from before the start, to the first node; from
 * the sentinel, round the ring to the first node again.
 * \return 0; -1 when the iterator lands on the sentinel.
 */
TESSAR_API int32_t tsLListIterator_next(tsLListIterator *iterator);

/**
 * Moves one node back; from the sentinel, to the last element.
 * \return 0; -2 before the start or on the first node.
 */
TESSAR_API int32_t tsLListIterator_previous(tsLListIterator *iterator);

/**
 * Copies out the element the iterator stands on.
 * \param[out] destination receives the element
 * \return 0; -1 before the start or on the sentinel.
 */
TESSAR_API int32_t tsLListIterator_getCurrent(const tsLListIterator *iterator, void *destination);

/**
 * Searches from the first node for an element equal to the given one, by the
 * list's comparison (compare(list element, element) == 0), and stands on it.
 * \return 0; 32768 for a null argument, or when not found (the iterator then
 *         stays where it was).
 */
TESSAR_API int32_t tsLListIterator_find(tsLListIterator *iterator, const void *element);

/**
 * Does not rebind the iterator: the iterator's own list is emptied and
 * refilled with copies of the given list's elements, and takes its element
 * size, sorted flag and comparison; the iterator then stands before the
 * start. When both are the same list, only the flags are taken (the sorted
 * flag, and the iterator stands before the start).
 * \return 0; 32768 for a null argument, or no memory (the own list then
 *         stays as it was).
 */
TESSAR_API int32_t tsLListIterator_setLinkedList(tsLListIterator *iterator, const tsLinkedList *list);

TESSAR_END_DECLS

#endif /* TESSAR_LINKEDLIST_H */
