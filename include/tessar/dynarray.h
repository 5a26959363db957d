/*
 * Tessar: dynamic array.
 *
 * tsDynArray_* is a resizable array of fixed-size elements, copied in and out
 * by value, for callers that keep records behind a handle without knowing
 * their count ahead. The capacity is not stored: it follows from the count n
 * and the array's block number b (1 for n = 1, n when n is a multiple of b,
 * else the next multiple of b above n), so the block is reallocated only when
 * a change of count crosses a block boundary, growing and shrinking alike.
 * The default block number is 10 elements for elements below 129 bytes,
 * otherwise 1.
 *
 * Indices are signed 32-bit, from 0. The index -1 means the last element in
 * get, set and delete, and the end in insert; indices below -1 are outside
 * the contract and not tested.
 *
 * The array is an opaque record held in the caller's handle variable:
 * tsDynArray_create fills the handle, tsDynArray_destroy frees the array and
 * clears it. The array owns its block of elements; what the elements point
 * to stays the caller's. An array belongs to one thread at a time.
 *
 * Results: 0 for success, 32768 for a bad argument.
 */
#ifndef TESSAR_DYNARRAY_H
#define TESSAR_DYNARRAY_H

#include <stddef.h>
#include <stdint.h>

#include <tessar/export.h>

TESSAR_BEGIN_DECLS

/* ---- Records and callbacks ---- */

/** A dynamic array: opaque, held through a handle variable. */
typedef struct tsDynArray tsDynArray;

/**
 * Action on an array element; also the shape of the predicate of
 * tsDynArray_findElement.
 * \param[in] element  address of the element inside the array's block
 * \param[in] userData the caller's data given to the walk
 * \return 0 to go on; non-zero stops the walk (or, for a predicate, marks a match).
 */
typedef int32_t (*tsDynArrayElementAction)(void *element, void *userData);

/**
 * Orders two elements, given their addresses.
 * \return negative, 0 or positive as a lies before, with or after b.
 */
typedef int32_t (*tsDynArrayCompareFunc)(const void *a, const void *b);

/* ---- Creation and destruction ---- */

/**
 * Creates an empty array with the default block number.
 * \param[out] array       address of the handle; must be valid
 * \param[in]  elementSize bytes per element
 * \return 0; the handle holds null if there was no memory.
 */
TESSAR_API int32_t tsDynArray_create(tsDynArray **array, size_t elementSize);

/**
 * Creates an empty array with a given block number.
 * \param[out] array       address of the handle
 * \param[in]  elementSize bytes per element
 * \param[in]  blockNumber allocation granularity, in elements; below 1 the
 *                         block holds exactly the elements in use
 * \return 0, the handle holding null if there was no memory; 32768 for a
 *         null address.
 */
TESSAR_API int32_t tsDynArray_createWithMinBlockNumberAllocated(tsDynArray **array, size_t elementSize,
                                                                int32_t blockNumber);

/**
 * Frees the elements' block and the array, and clears the handle.
 * \param[in,out] array address of the handle
 * \return 0; 32768 for a null handle.
 */
TESSAR_API int32_t tsDynArray_destroy(tsDynArray **array);

/** Removes all elements and frees the block. \return 0; 32768 for a null array. */
TESSAR_API int32_t tsDynArray_clear(tsDynArray *array);

/**
 * Makes a new array with the same element size, block number and count, and
 * a byte copy of the elements.
 * \param[out] clone  address of the new handle
 * \param[in]  source the array to copy
 * \return 0; 32768 for a null argument, or no memory (the new handle then
 *         holds null).
 */
TESSAR_API int32_t tsDynArray_clone(tsDynArray **clone, const tsDynArray *source);

/** \return the number of elements; 0 for a null array. */
TESSAR_API int32_t tsDynArray_getSize(const tsDynArray *array);

/* ---- Insertion and deletion ---- */

/**
 * Inserts count elements before index, or at the end for index -1 or an
 * empty array. Elements appended at the end are zeroed; slots opened in the
 * middle keep their old bytes until set. An index outside 0 to the count,
 * or a negative count in the middle, inserts nothing; without memory the
 * array stays as it was.
 * \return 0, also when the index was refused; 32768 for a null array.
 */
TESSAR_API int32_t tsDynArray_insertElements(tsDynArray *array, int32_t index, int32_t count);

/** Inserts one element before index, as tsDynArray_insertElements. \return as that function. */
TESSAR_API int32_t tsDynArray_insertElement(tsDynArray *array, int32_t index);

/**
 * Inserts one element before index (-1: at the end) and copies the element
 * into it.
 * \param[in] element elementSize bytes to store
 * \return 0; 32768 for a null array, or when nothing was inserted (an index
 *         outside 0 to the count, or no memory), in which case nothing is
 *         copied.
 */
TESSAR_API int32_t tsDynArray_insertAndSetElement(tsDynArray *array, int32_t index, const void *element);

/**
 * Removes the element at index (-1: the last). Removing the only element
 * frees the block.
 * \return 0; 32768 for a null array or an index above the last (-1 on an
 *         empty array, which has no last element).
 */
TESSAR_API int32_t tsDynArray_deleteElement(tsDynArray *array, int32_t index);

/**
 * Inserts an element in order, if no equal element exists. The elements are
 * scanned from the start with compare(existing, element): 0 means an equal
 * element exists and nothing is inserted; exactly 1 means the existing
 * element lies after the new one, which is inserted before it; any other
 * answer goes on. At the end the element is appended.
 * \return 0; 32768 for a null array.
 */
TESSAR_API int32_t tsDynArray_insertElementByOrder(tsDynArray *array, const void *element,
                                                   tsDynArrayCompareFunc compare);

/* ---- Element access ---- */

/**
 * Copies an element out.
 * \param[in]  index       the element; -1 for the last
 * \param[out] destination receives elementSize bytes
 * \return 0; 32768 for a null array or an index above the last (-1 on an
 *         empty array, which has no last element).
 */
TESSAR_API int32_t tsDynArray_getElement(const tsDynArray *array, int32_t index, void *destination);

/**
 * Copies an element in.
 * \param[in] index  the element; -1 for the last
 * \param[in] source elementSize bytes
 * \return 0; 32768 for a null array or an index above the last (-1 on an
 *         empty array, which has no last element).
 */
TESSAR_API int32_t tsDynArray_setElement(tsDynArray *array, int32_t index, const void *source);

/**
 * \return the address of an element inside the array's block (-1: the last),
 *         or null; valid until the next change of count.
 */
TESSAR_API void *tsDynArray_getElementAdd(tsDynArray *array, int32_t index);

/* ---- Search, order and walks ---- */

/**
 * Finds the first element for which predicate(element address, userData) is non-zero.
 * \param[out] index that element's index, or -1
 * \return 0; 32768 for a null array.
 */
TESSAR_API int32_t tsDynArray_findElement(tsDynArray *array, tsDynArrayElementAction predicate,
                                          void *userData, int32_t *index);

/** Sorts in place with the C library's quick sort (not stable). \return 0; 32768 for a null array. */
TESSAR_API int32_t tsDynArray_sort(tsDynArray *array, tsDynArrayCompareFunc compare);

/**
 * Calls action(element address, userData) on the elements until an answer is
 * non-zero. The bounds are only checked (-1 for first stands for 0, -1 for
 * last for the last index): the walk always runs over all elements from
 * index 0.
 * \return 0, also when an action stopped the walk; 32768 for a null array,
 *         first below 0 or last at or above the count.
 */
TESSAR_API int32_t tsDynArray_performAction(tsDynArray *array, tsDynArrayElementAction action, void *userData,
                                            int32_t first, int32_t last);

TESSAR_END_DECLS

#endif /* TESSAR_DYNARRAY_H */
