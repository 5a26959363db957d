// Internal pieces shared by the point and line records: the markers that
// live in dpoint3d and the plane end of a tsLine.
#pragma once

#include <cstdint>

#include <tessar/frame.h>
#include <tessar/types.h>

namespace tessar::detail {

// A z equal to this (the largest single-precision value, as a double) means
// that the point has no elevation.
inline constexpr double kNoElevation = 3.4028234663852886e38;

// How near a coordinate must come to the largest double, either sign, to
// mark a disconnect.
inline constexpr double kDisconnectBand = 1.0;

// The end of a line: origin + length * direction, in space.
inline dpoint3d lineEnd(const tsLine &line) noexcept
{
    return {line.origin.x + line.length * line.direction.x, line.origin.y + line.length * line.direction.y,
            line.origin.z + line.length * line.direction.z};
}

}  // namespace tessar::detail
