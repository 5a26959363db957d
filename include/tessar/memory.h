/*
 * Tessar: memory and growable tables.
 *
 * tsMem_* is the library's one allocation interface: whatever the library
 * hands to a caller can be freed through it, on the same heap. Its functions
 * report by their return value only.
 *
 * MEM_* keeps growable tables: a pointer to contiguous elements and a signed
 * 32-bit count, both owned by the caller, with no hidden header. The element
 * size goes with every call and must not change for one table. The capacity
 * is derived from the count, never stored: 1 for one element, otherwise the
 * count rounded up to a multiple of ten. Every MEM_* function clears the
 * table layer's error word (see MEM_GetErreur) and stores 32768 there on
 * failure. After a failed resize the count has already changed: treat the
 * table as lost.
 */
#ifndef TESSAR_MEMORY_H
#define TESSAR_MEMORY_H

#include <stddef.h>
#include <stdint.h>

#include <tessar/export.h>

TESSAR_BEGIN_DECLS

/* ---- Heap ---- */

/** Allocates size bytes. \return the block, or null. */
TESSAR_API void *tsMem_malloc(size_t size);

/** Allocates count * size zeroed bytes. \return the block, or null. */
TESSAR_API void *tsMem_calloc(size_t count, size_t size);

/** Resizes a block. \return the new block, or null (the old block then survives). */
TESSAR_API void *tsMem_realloc(void *block, size_t size);

/** Frees a block. \return 0, or 32768 for a null block. */
TESSAR_API int32_t tsMem_free(void *block);

/**
 * Frees the block held at an address and stores null there.
 * \return 0, or 32768 if the address or the pointer held there is null.
 */
TESSAR_API int32_t tsMem_freeAndClear(void **address);

/**
 * Frees and clears every slot of an array of pointers, passing null slots
 * over; the array itself is not freed.
 * \return 0, or 32768 if the array is null or count is below 1.
 */
TESSAR_API int32_t tsMem_freeAndClearArray(void **array, int32_t count);

/**
 * Reads the usable size of a heap block.
 * \param[in]  block the block
 * \param[out] size  set to 0 first, then to the usable size in bytes
 * \return 0, or 32768 if size or block is null.
 */
TESSAR_API int32_t tsMem_getSize(const void *block, size_t *size);

/**
 * Measures the largest block the heap gives, up to 64000000 bytes. When the
 * full 64000000 bytes can be had at once, that block is kept, not freed.
 * \return the byte count found.
 */
TESSAR_API uint32_t tsMem_getMaximumAllocatableHeapMemory(void);

/* ---- Growable tables ----
 * table: address of the table's pointer; size: element size in bytes;
 * count: address of the caller's element count. */

/**
 * Creates a table of n zeroed elements. n = 0 stores null and succeeds.
 * Fails if *table already holds a pointer or the allocation fails.
 */
TESSAR_API void MEM_CreerTableau(void **table, size_t size, int32_t n);

/**
 * Resizes a table to n elements; new elements are not cleared. n = 0 stores
 * null without freeing the block (free it first). Fails on a null *table or
 * a failed reallocation (null is then stored).
 */
TESSAR_API void MEM_ModifierTailleTableau(void **table, size_t size, int32_t n);

/**
 * Finds the first element bytewise equal to *element.
 * \param[out] rank its index, or -1 when none is equal (not a failure)
 * Fails on a null rank pointer.
 */
TESSAR_API void MEM_RecupererRang(const void *table, int32_t count, size_t size, const void *element,
                                  int32_t *rank);

/** Frees a table and stores null; fails if *table is null. The count is the caller's to reset. */
TESSAR_API void MEM_LibererTableau(void **table);

/** Appends one zeroed element and steps *count up by one. */
TESSAR_API void MEM_EtendreTableau(void **table, size_t size, int32_t *count);

/** Appends n zeroed elements and adds n to *count; grows an empty table in one allocation. */
TESSAR_API void MEM_EtendreTableauParBloc(void **table, size_t size, int32_t *count, int32_t n);

/**
 * Opens one slot at index (index = *count appends); the slot keeps whatever
 * bytes it held and is for the caller to write.
 */
TESSAR_API void MEM_InsererElementDansTableau(void **table, size_t size, int32_t *count, int32_t index);

/** Opens n slots at index (index = *count appends); the slots are not cleared. */
TESSAR_API void MEM_InsererElementsDansTableau(void **table, size_t size, int32_t *count, int32_t index,
                                               int32_t n);

/** Removes the element at index; removing the last one frees the table. */
TESSAR_API void MEM_SupprimerElementDansTableau(void **table, size_t size, int32_t *count, int32_t index);

/** Removes the elements first to last, both included; removing all frees the table. */
TESSAR_API void MEM_SupprimerElementsDansTableau(void **table, size_t size, int32_t *count, int32_t first,
                                                 int32_t last);

TESSAR_END_DECLS

#endif /* TESSAR_MEMORY_H */
