// MEM_*: growable tables. A table is a pointer and a count owned by the
// caller; its capacity is derived from the count, never stored (see
// tableCapacity), so every change of count goes through tableResize.
#include <cstring>

#include <tessar/memory.h>

#include "frame/kernel.hpp"
#include "frame/table.hpp"

using tessar::detail::kFailure;
using tessar::detail::memErreur;
using tessar::detail::tableCapacity;

namespace {

using Bytes = unsigned char *;

void memFail()
{
    memErreur = kFailure;
}

size_t bytesFor(int32_t elements, size_t size)
{
    return static_cast<size_t>(elements) * size;
}

// Changes the count of a table that is not empty by delta and moves the block
// to the new capacity when that differs. The count stays changed when this
// fails: callers treat the table as lost. Growth within a block of ten is
// free; a table shrinks as soon as its count falls to a smaller capacity.
void tableResize(void **table, size_t size, int32_t *count, int32_t delta)
{
    memErreur = 0;
    const int32_t oldCapacity = tableCapacity(*count);
    *count += delta;
    const int32_t newCapacity = tableCapacity(*count);
    if (oldCapacity == newCapacity) return;
    if (*count <= 0) return memFail();
    void *block = tsMem_realloc(*table, bytesFor(newCapacity, size));
    if (block == nullptr) return memFail();
    *table = block;
}

// The first allocation of a table of n elements (one element exactly, or
// whole blocks of ten). The caller has already stored the count.
void allocateFirst(void **table, size_t size, int32_t elements)
{
    *table = tsMem_calloc(static_cast<size_t>(elements), size);
    if (*table == nullptr) memFail();
}

}  // namespace

void MEM_CreerTableau(void **table, size_t size, int32_t n)
{
    memErreur = 0;
    if (n == 0) {
        *table = nullptr;
        return;
    }
    if (*table != nullptr) return memFail();
    allocateFirst(table, size, tableCapacity(n));
}

void MEM_ModifierTailleTableau(void **table, size_t size, int32_t n)
{
    memErreur = 0;
    // A size of 0 drops the pointer without freeing the block: a caller who
    // wants the memory back frees it first.
    if (n == 0) {
        *table = nullptr;
        return;
    }
    if (*table == nullptr) return memFail();
    // The result is stored even when null, losing the old block.
    *table = tsMem_realloc(*table, bytesFor(tableCapacity(n), size));
    if (*table == nullptr) memFail();
}

void MEM_RecupererRang(const void *table, int32_t count, size_t size, const void *element, int32_t *rank)
{
    memErreur = 0;
    if (rank == nullptr) return memFail();
    *rank = -1;
    const auto *bytes = static_cast<const unsigned char *>(table);
    for (int32_t i = 0; i < count; ++i) {
        if (std::memcmp(bytes + bytesFor(i, size), element, size) == 0) {
            *rank = i;
            return;
        }
    }
}

void MEM_LibererTableau(void **table)
{
    memErreur = 0;
    if (*table == nullptr) return memFail();
    tsMem_free(*table);
    *table = nullptr;
}

void MEM_EtendreTableau(void **table, size_t size, int32_t *count)
{
    memErreur = 0;
    if (*count == 0) {
        // Whatever the table pointer held is overwritten.
        *count = 1;
        return allocateFirst(table, size, 1);
    }
    if (*table == nullptr) return memFail();
    tableResize(table, size, count, 1);
    if (memErreur != 0) return;
    if (*table == nullptr) return memFail();
    std::memset(static_cast<Bytes>(*table) + bytesFor(*count - 1, size), 0, size);
}

void MEM_EtendreTableauParBloc(void **table, size_t size, int32_t *count, int32_t n)
{
    memErreur = 0;
    if (*count == 0) {
        // The count stays stored if the allocation fails.
        *count = n;
        return allocateFirst(table, size, tableCapacity(n));
    }
    if (*table == nullptr) return memFail();
    tableResize(table, size, count, n);
    if (memErreur != 0) return;
    if (*table == nullptr) return memFail();
    std::memset(static_cast<Bytes>(*table) + bytesFor(*count - n, size), 0, bytesFor(n, size));
}

namespace {

// Opens n slots at index; single is true for the one-element form, whose
// empty table is allocated exactly. Opened slots keep their former bytes.
void insertSlots(void **table, size_t size, int32_t *count, int32_t index, int32_t n, bool single)
{
    memErreur = 0;
    if (count == nullptr || table == nullptr || *count < 0 || index < 0 || index > *count) return memFail();
    if (*count == 0) {
        if (*table != nullptr) return memFail();
        *count = n;
        return allocateFirst(table, size, single ? 1 : tableCapacity(n));
    }
    if (*table == nullptr) return memFail();
    tableResize(table, size, count, n);
    if (memErreur != 0) return;
    if (*table == nullptr) return memFail();
    const auto base = static_cast<Bytes>(*table);
    std::memmove(base + bytesFor(index + n, size), base + bytesFor(index, size),
                 bytesFor(*count - index - n, size));
}

// Removes the elements first to last; single is true for the one-element
// form, which steps the count down where the range form sets it to 0.
void removeSlots(void **table, size_t size, int32_t *count, int32_t first, int32_t last, bool single)
{
    if (first == 0 && last == *count - 1) {
        MEM_LibererTableau(table);
        if (memErreur != 0) return;
        *count = single ? *count - 1 : 0;
        return;
    }
    const auto base = static_cast<Bytes>(*table);
    std::memmove(base + bytesFor(first, size), base + bytesFor(last + 1, size),
                 bytesFor(*count - last - 1, size));
    tableResize(table, size, count, -(last - first + 1));
    if (memErreur != 0) return;
    if (*table == nullptr) memFail();
}

}  // namespace

void MEM_InsererElementDansTableau(void **table, size_t size, int32_t *count, int32_t index)
{
    insertSlots(table, size, count, index, 1, true);
}

void MEM_InsererElementsDansTableau(void **table, size_t size, int32_t *count, int32_t index, int32_t n)
{
    insertSlots(table, size, count, index, n, false);
}

void MEM_SupprimerElementDansTableau(void **table, size_t size, int32_t *count, int32_t index)
{
    memErreur = 0;
    if (*count < 0 || index < 0 || index >= *count || *table == nullptr) return memFail();
    removeSlots(table, size, count, index, index, true);
}

void MEM_SupprimerElementsDansTableau(void **table, size_t size, int32_t *count, int32_t first, int32_t last)
{
    memErreur = 0;
    if (*count < 0 || first < 0 || last < first || last >= *count || *table == nullptr) return memFail();
    removeSlots(table, size, count, first, last, false);
}
