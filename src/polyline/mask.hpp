// The tunnel test behind UTMAT_AppliquerTunnelAPolyligne.
#pragma once

#include <cstdint>

#include <tessar/types.h>

namespace tessar::detail {

// inside is 1 when p lies in the tunnel from a toward b: across the axis a b
// the measure of mode (TESSAR_TUNNEL_*) is strictly below width / 2, and the
// space distance from a to p strictly below length; else 0. Clears the error
// word on entry; a failing line primitive leaves its error set.
void utmat_PointEstDansTunnel(const dpoint3d *a, const dpoint3d *b, const dpoint3d *p, double width,
                              double length, std::int32_t mode, std::int32_t *inside) noexcept;

}  // namespace tessar::detail
