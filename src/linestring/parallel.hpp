// Internal pieces of the parallel copy by offset vertices: the coordinate
// rounding that makes values from different paths compare equal, and the
// vertex offset with its joins.
#pragma once

#include <cstdint>

#include <tessar/types.h>

namespace tessar::detail {

// Join types of the vertex offset; any other value is a mitre.
inline constexpr int32_t kMitreJoin = 1;
inline constexpr int32_t kRoundJoin = 2;

// Replaces every x, y and z of the n points with (c * (1 / M)) * M, M the
// largest magnitude among them: the size of a value stays, its last bits go.
// With M = 0 every coordinate becomes NaN. Returns 32768 for null points or
// a negative count; a count of 0 does nothing.
int32_t tsLineString_normalizeCoordinates(dpoint3d *points, int32_t n) noexcept;

// The offset of the n points (n at least 2, no repeated neighbours) by
// distance, into a new array from the C library's allocator held at result
// with its count; a closed string is first made counter-clockwise in place,
// and its result turned back. Returns 32768 when the array cannot grow (the
// part built so far stays at result).
int32_t offsetVertices(dpoint3d *points, int32_t n, double distance, int32_t joinType, double arcStep,
                       dpoint3d **result, int32_t *count) noexcept;

}  // namespace tessar::detail
