// The dynamic array's record and its capacity rule, for the array functions
// and for the containers that keep a dynamic array inside them.
#pragma once

#include <cstddef>
#include <cstdint>

#include <tessar/dynarray.h>

// Called with an element's address before the element is dropped.
using tsDynArrayFreeElement = std::int32_t (*)(void *element);

struct tsDynArray {
    std::int32_t count;                 // elements in use
    std::size_t elementSize;            // bytes per element
    void *data;                         // block from tsMem_calloc, null when empty
    tsDynArrayFreeElement freeElement;  // no function of the interface sets it: null
    std::int32_t blockNumber;           // allocation granularity in elements
};

namespace tessar::detail {

// Elements below this size are allocated ten at a time, larger ones singly.
inline constexpr std::size_t kDynArrayLargeElement = 129;
inline constexpr std::int32_t kDynArraySmallBlock = 10;
inline constexpr std::int32_t kDynArrayLargeBlock = 1;

constexpr std::int32_t dynArrayDefaultBlock(std::size_t elementSize) noexcept
{
    return elementSize < kDynArrayLargeElement ? kDynArraySmallBlock : kDynArrayLargeBlock;
}

// The number of elements the block of an array of n elements holds, never
// stored: exactly 1 for one element, otherwise n rounded up to a whole number
// of blocks. A block number below 1 cannot round anything and allocates
// exactly, as a block of 1.
constexpr std::int64_t dynArrayCapacity(std::int32_t n, std::int32_t blockNumber) noexcept
{
    if (n == 1) return 1;
    const std::int64_t b = blockNumber < 1 ? 1 : blockNumber;
    const std::int64_t q = n / b;
    const std::int64_t r = n - b * q;
    return r >= 1 ? b * (q + 1) : n;
}

static_assert(dynArrayCapacity(0, 10) == 0 && dynArrayCapacity(1, 10) == 1 && dynArrayCapacity(2, 10) == 10);
static_assert(dynArrayCapacity(10, 10) == 10 && dynArrayCapacity(11, 10) == 20);
static_assert(dynArrayCapacity(5, 1) == 5 && dynArrayCapacity(1, 4) == 1 && dynArrayCapacity(5, 4) == 8);

}  // namespace tessar::detail
