// tsMem_*: the library's one allocation interface, over the C heap, so that
// whatever one module hands out a caller can free through the same calls.
// These report by their return value only and touch no error word.
#include <malloc.h>

#include <cstdlib>

#include <tessar/memory.h>

#include "frame/kernel.hpp"

using tessar::detail::kFailure;

void *tsMem_malloc(size_t size)
{
    return std::malloc(size);
}

void *tsMem_calloc(size_t count, size_t size)
{
    return std::calloc(count, size);
}

void *tsMem_realloc(void *block, size_t size)
{
    return std::realloc(block, size);
}

int32_t tsMem_free(void *block)
{
    if (block == nullptr) return kFailure;
    std::free(block);
    return 0;
}

int32_t tsMem_freeAndClear(void **address)
{
    if (address == nullptr || *address == nullptr) return kFailure;
    std::free(*address);
    *address = nullptr;
    return 0;
}

int32_t tsMem_freeAndClearArray(void **array, int32_t count)
{
    if (array == nullptr || count < 1) return kFailure;
    // Null slots fail individually and are passed over: the statuses are ignored.
    for (int32_t i = 0; i < count; ++i)
        (void)tsMem_freeAndClear(&array[i]);
    return 0;
}

int32_t tsMem_getSize(const void *block, size_t *size)
{
    if (size == nullptr) return kFailure;
    *size = 0;
    if (block == nullptr) return kFailure;
    // The heap's query takes a plain pointer but only reads the block's header.
    *size = malloc_usable_size(const_cast<void *>(block));
    return 0;
}

namespace {

constexpr uint32_t kHeapProbeCeiling = 64000000;

// Blocks kept by successful first probes, chained through their first bytes
// so that they stay reachable for the life of the process.
void *keptProbeBlocks = nullptr;

}  // namespace

uint32_t tsMem_getMaximumAllocatableHeapMemory(void)
{
    // When the whole ceiling can be had at once, the block is kept, not
    // freed: such a call costs the process that memory, by design.
    if (void *block = std::malloc(kHeapProbeCeiling)) {
        *static_cast<void **>(block) = keptProbeBlocks;
        keptProbeBlocks = block;
        return kHeapProbeCeiling;
    }
    // Otherwise bisect on what the heap will give, freeing each probe.
    uint32_t lo = 0;
    uint32_t hi = kHeapProbeCeiling;
    uint32_t best = 0;
    while (hi > lo + 1) {
        const uint32_t mid = (hi + lo) / 2;
        if (void *probe = std::malloc(mid)) {
            std::free(probe);
            lo = mid;
            if (mid > best) best = mid;
        } else {
            hi = mid;
        }
    }
    return best;
}
