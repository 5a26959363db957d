// Tunnels along a 3-D chain: a corridor from the last kept vertex toward the
// next vertex, of a given width across and length along. Vertices that lie in
// it, together with every vertex dropped since the last kept one, can be
// dropped from the chain.
#include <cmath>

#include <tessar/frame.h>
#include <tessar/polyline.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"
#include "polyline/mask.hpp"

using namespace tessar::detail;

namespace {

// The measure across the tunnel: the distance from the axis, or that
// distance divided by one component of the axis direction (0 where the
// component vanishes within the kernel's precision).
double measureAcross(double distance, const dpoint3d &direction, std::int32_t mode)
{
    double component = 0.0;
    if (mode == TESSAR_TUNNEL_ACROSS_Y)
        component = direction.y;
    else if (mode == TESSAR_TUNNEL_ACROSS_X)
        component = direction.x;
    else
        return distance;
    return egal(component, 0.0, utmatCalculPrec) ? 0.0 : distance / component;
}

// p in the tunnel from points[from] toward points[toward]. False, with the
// error word set, when the line primitive fails.
bool inTunnel(const dpoint3d *points, std::int32_t from, std::int32_t toward, std::int32_t p, double width,
              double length, std::int32_t mode, bool &inside)
{
    std::int32_t flag = 0;
    utmat_PointEstDansTunnel(&points[from], &points[toward], &points[p], width, length, mode, &flag);
    inside = flag != 0;
    return !nestedFailed();
}

}  // namespace

namespace tessar::detail {

void utmat_PointEstDansTunnel(const dpoint3d *a, const dpoint3d *b, const dpoint3d *p, double width,
                              double length, std::int32_t mode, std::int32_t *inside) noexcept
{
    enterKernel();
    *inside = 0;
    UTMAT_Droite3d axis{};
    UTMAT_CalculerDroite2Pt3d(a, b, &axis);
    if (nestedFailed()) return;
    double distance = 0.0;
    UTMAT_CalculerDeportPtDroite3d(&axis, p, &distance);
    if (nestedFailed()) return;
    const double measure = measureAcross(distance, axis.direction, mode);
    if (!(std::fabs(measure) < width / 2.0)) return;
    const double along = UTMAT_CalculerDistance2Pt3d(a, p);
    if (nestedFailed()) return;
    if (along < length) *inside = 1;
}

}  // namespace tessar::detail

// Only vertices found in a tunnel get their flag written; the rest of the
// array is the caller's zero fill, and the last vertex always stays.
void UTMAT_AppliquerTunnelAPolyligne(const dpoint3d *points, int32_t n, double width, double length,
                                     int32_t mode, int32_t *flags)
{
    enterKernel();
    if (n < 1) return;
    flags[0] = 0;
    std::int32_t kept = 0;
    for (std::int32_t i = 1; i < n - 1; ++i) {
        bool inside = false;
        if (!inTunnel(points, kept, i + 1, i, width, length, mode, inside)) return;
        if (!inside) {
            kept = i;
            continue;
        }
        // Every vertex dropped since the last kept one must fit the new tunnel too.
        bool allInside = true;
        for (std::int32_t k = i - 1; k >= 0 && flags[k] != 0 && allInside; --k)
            if (!inTunnel(points, kept, i + 1, k, width, length, mode, allInside)) return;
        flags[i] = allInside ? 1 : 0;
        if (!allInside) kept = i;
    }
}
