// tsDynArray_*: a resizable array of fixed-size elements copied in and out by
// value. The capacity is derived from the count and the block number (see
// dynArrayCapacity), so every change of count goes through resizeBy, which
// moves the block only when the count crosses a block boundary, up or down.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <tessar/dynarray.h>
#include <tessar/memory.h>

#include "containers/dynarray.hpp"
#include "frame/kernel.hpp"

using tessar::detail::dynArrayCapacity;
using tessar::detail::dynArrayDefaultBlock;
using tessar::detail::kFailure;

namespace {

constexpr int32_t kNoElement = -1;

unsigned char *bytes(const tsDynArray *array)
{
    return static_cast<unsigned char *>(array->data);
}

size_t bytesFor(int64_t elements, const tsDynArray *array)
{
    return static_cast<size_t>(elements) * array->elementSize;
}

unsigned char *addressOf(const tsDynArray *array, int32_t index)
{
    return bytes(array) + bytesFor(index, array);
}

int32_t capacityOf(const tsDynArray *array, int32_t count)
{
    return static_cast<int32_t>(dynArrayCapacity(count, array->blockNumber));
}

// The index of an existing element, with -1 standing for the last, or
// kNoElement when there is no such element (above the last, or -1 on an
// empty array, which has no last).
int32_t existingIndex(const tsDynArray *array, int32_t index)
{
    if (index == -1) index = array->count - 1;
    if (index > array->count - 1 || index < 0) return kNoElement;
    return index;
}

void dropElement(const tsDynArray *array, int32_t index)
{
    if (array->freeElement != nullptr) (void)array->freeElement(addressOf(array, index));
}

// Changes the count by delta and moves the block to the new capacity when
// that differs from the old one. A count that falls below 1 is stored and
// never reaches the reallocation: the step fails with the count changed.
// A failed reallocation keeps the old block; the count falls back when the
// array was growing, as the old block cannot hold it, and keeps its smaller
// value when shrinking, as the larger block still holds it.
int32_t resizeBy(tsDynArray *array, int32_t delta)
{
    const int32_t oldCount = array->count;
    const int32_t oldCapacity = capacityOf(array, oldCount);
    array->count = static_cast<int32_t>(int64_t{oldCount} + delta);
    const int32_t newCapacity = capacityOf(array, array->count);
    if (oldCapacity == newCapacity) return 0;
    if (array->count < 1) return kFailure;
    // Never ask for 0 bytes (elements of size 0): realloc would free the block.
    void *block = tsMem_realloc(array->data, std::max<size_t>(bytesFor(newCapacity, array), 1));
    if (block == nullptr) {
        if (delta > 0) array->count = oldCount;
        return kFailure;
    }
    array->data = block;
    return 0;
}

// Step 1 of an insertion: k elements at the end, zeroed. An array without a
// block gets a fresh zeroed block of capacity(k); its count is stored only
// once the block exists, so that no count ever runs past a missing block.
void appendElements(tsDynArray *array, int32_t k)
{
    if (array->data == nullptr) {
        void *block = tsMem_calloc(std::max<size_t>(static_cast<size_t>(capacityOf(array, k)), 1),
                                   std::max<size_t>(array->elementSize, 1));
        if (block == nullptr) return;
        array->data = block;
        array->count = k;
        return;
    }
    const int32_t oldCount = array->count;
    if (resizeBy(array, k) != 0) return;
    if (k > 0) std::memset(addressOf(array, oldCount), 0, bytesFor(k, array));
}

// Step 2 of an insertion: k slots opened at index, the tail moved up. The
// opened slots are not cleared: they keep their old bytes until set.
void openSlots(tsDynArray *array, int32_t index, int32_t k)
{
    const int32_t oldCount = array->count;
    if (resizeBy(array, k) != 0) return;
    std::memmove(addressOf(array, index + k), addressOf(array, index), bytesFor(oldCount - index, array));
}

void freeBlock(tsDynArray *array)
{
    if (array->data != nullptr) tsMem_free(array->data);
    array->data = nullptr;
}

tsDynArray *newArray(size_t elementSize, int32_t blockNumber)
{
    auto *array = static_cast<tsDynArray *>(tsMem_malloc(sizeof(tsDynArray)));
    if (array == nullptr) return nullptr;
    *array = tsDynArray{0, elementSize, nullptr, nullptr, blockNumber};
    return array;
}

}  // namespace

int32_t tsDynArray_create(tsDynArray **array, size_t elementSize)
{
    // The address is not tested; the handle holds null when there is no memory.
    *array = newArray(elementSize, dynArrayDefaultBlock(elementSize));
    return 0;
}

int32_t tsDynArray_createWithMinBlockNumberAllocated(tsDynArray **array, size_t elementSize,
                                                     int32_t blockNumber)
{
    if (array == nullptr) return kFailure;
    *array = newArray(elementSize, blockNumber);
    return 0;
}

int32_t tsDynArray_destroy(tsDynArray **array)
{
    if (array == nullptr || *array == nullptr) return kFailure;
    // The elements are dropped without freeElement, unlike tsDynArray_clear.
    freeBlock(*array);
    tsMem_free(*array);
    *array = nullptr;
    return 0;
}

int32_t tsDynArray_clear(tsDynArray *array)
{
    if (array == nullptr) return kFailure;
    if (array->data != nullptr) {
        for (int32_t i = 0; i < array->count; ++i)
            dropElement(array, i);
    }
    array->count = 0;
    freeBlock(array);
    return 0;
}

int32_t tsDynArray_clone(tsDynArray **clone, const tsDynArray *source)
{
    if (clone == nullptr || source == nullptr) return kFailure;
    tsDynArray *copy = newArray(source->elementSize, source->blockNumber);
    if (copy != nullptr && source->data != nullptr && source->count > 0) {
        copy->data = tsMem_calloc(static_cast<size_t>(capacityOf(source, source->count)),
                                  std::max<size_t>(source->elementSize, 1));
        if (copy->data == nullptr) {
            tsMem_free(copy);
            copy = nullptr;
        } else {
            copy->count = source->count;
            std::memcpy(copy->data, source->data, bytesFor(source->count, source));
        }
    }
    *clone = copy;
    return copy == nullptr ? kFailure : 0;
}

int32_t tsDynArray_getSize(const tsDynArray *array)
{
    return array == nullptr ? 0 : array->count;
}

int32_t tsDynArray_insertElements(tsDynArray *array, int32_t index, int32_t count)
{
    if (array == nullptr) return kFailure;
    if (index == -1 || array->data == nullptr) {
        appendElements(array, count);
    } else if (index >= 0 && index <= array->count && count >= 0) {
        // A negative count in the middle would move the tail below the index:
        // it is refused like an index out of range.
        openSlots(array, index, count);
    }
    // The outcome of the steps is not passed on: a refused index also gives 0.
    return 0;
}

int32_t tsDynArray_insertElement(tsDynArray *array, int32_t index)
{
    return tsDynArray_insertElements(array, index, 1);
}

int32_t tsDynArray_insertAndSetElement(tsDynArray *array, int32_t index, const void *element)
{
    if (array == nullptr) return kFailure;
    const int32_t before = array->count;
    tsDynArray_insertElement(array, index);
    // A refused index or a failed allocation inserted nothing: nothing to set.
    if (array->count != before + 1) return kFailure;
    return tsDynArray_setElement(array, index, element);
}

int32_t tsDynArray_deleteElement(tsDynArray *array, int32_t index)
{
    if (array == nullptr) return kFailure;
    index = existingIndex(array, index);
    if (index == kNoElement) return kFailure;
    dropElement(array, index);
    if (array->count == 1) {
        freeBlock(array);
        array->count = 0;
        return 0;
    }
    std::memmove(addressOf(array, index), addressOf(array, index + 1),
                 bytesFor(array->count - index - 1, array));
    // A failed shrink keeps the larger block, which still holds the array.
    (void)resizeBy(array, -1);
    return 0;
}

int32_t tsDynArray_getElement(const tsDynArray *array, int32_t index, void *destination)
{
    if (array == nullptr) return kFailure;
    index = existingIndex(array, index);
    if (index == kNoElement) return kFailure;
    std::memcpy(destination, addressOf(array, index), array->elementSize);
    return 0;
}

int32_t tsDynArray_setElement(tsDynArray *array, int32_t index, const void *source)
{
    if (array == nullptr) return kFailure;
    index = existingIndex(array, index);
    if (index == kNoElement) return kFailure;
    std::memcpy(addressOf(array, index), source, array->elementSize);
    return 0;
}

void *tsDynArray_getElementAdd(tsDynArray *array, int32_t index)
{
    if (array == nullptr) return nullptr;
    index = existingIndex(array, index);
    if (index == kNoElement) return nullptr;
    return addressOf(array, index);
}

int32_t tsDynArray_findElement(tsDynArray *array, tsDynArrayElementAction predicate, void *userData,
                               int32_t *index)
{
    if (array == nullptr) return kFailure;
    *index = -1;
    for (int32_t i = 0; i < array->count; ++i) {
        if (predicate(addressOf(array, i), userData) != 0) {
            *index = i;
            break;
        }
    }
    return 0;
}

int32_t tsDynArray_sort(tsDynArray *array, tsDynArrayCompareFunc compare)
{
    if (array == nullptr) return kFailure;
    if (array->count > 1)
        std::qsort(array->data, static_cast<size_t>(array->count), array->elementSize, compare);
    return 0;
}

int32_t tsDynArray_performAction(tsDynArray *array, tsDynArrayElementAction action, void *userData,
                                 int32_t first, int32_t last)
{
    if (array == nullptr) return kFailure;
    if (first == -1) first = 0;
    if (last == -1) last = array->count - 1;
    if (first < 0 || last >= array->count) return kFailure;
    // The bounds are only checked: the walk always covers every element from
    // index 0, as callers of this array have always seen it do.
    for (int32_t i = 0; i < array->count; ++i) {
        if (action(addressOf(array, i), userData) != 0) break;
    }
    return 0;
}

int32_t tsDynArray_insertElementByOrder(tsDynArray *array, const void *element, tsDynArrayCompareFunc compare)
{
    if (array == nullptr) return kFailure;
    for (int32_t i = 0; i < array->count; ++i) {
        const int32_t order = compare(addressOf(array, i), element);
        if (order == 0) return 0;  // an equal element is already there
        // Only exactly 1 places the new element here; -1 and any other
        // positive answer go on to the next element.
        if (order == 1) return tsDynArray_insertAndSetElement(array, i, element);
    }
    return tsDynArray_insertAndSetElement(array, -1, element);
}
