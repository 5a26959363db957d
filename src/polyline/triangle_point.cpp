// The joint of the interpolation triangle. From p1 along v1 and from p2 back
// along v2 by the same step t, the points a = p1 + t v1 and b = p2 - t v2 are
// to lie exactly 2t apart: then a two-piece curve turns from v1 to the
// direction a b at the middle m of a b, and on to v2. With S = v1 + v2 and
// D = p2 - p1, |D - t S|^2 = 4 t^2 reads
//     (|S|^2 - 4) t^2 - 2 (D.S) t + |D|^2 = 0.
#include <algorithm>

#include <tessar/polyline.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"
#include "geometry/circle.hpp"

using namespace tessar::detail;

namespace {

// The roots of the step equation, by the kernel's quadratic solver: none,
// one (also when |S| = 2 makes it of first degree) or two.
std::int32_t stepRoots(const dpoint2d &p1, const dpoint2d &v1, const dpoint2d &p2, const dpoint2d &v2,
                       double roots[2]) noexcept
{
    const dpoint2d s{v1.x + v2.x, v1.y + v2.y};
    const dpoint2d d{p2.x - p1.x, p2.y - p1.y};
    const double a = (s.x * s.x + s.y * s.y) - 4.0;
    const double b = -2.0 * (d.x * s.x + d.y * s.y);
    const double c = d.x * d.x + d.y * d.y;
    std::int32_t count = 0;
    quadraticRoots(a, b, c, roots, &count);
    return count;
}

// How far a step may run: up to the farther of p1 and p2 from the crossing I
// of the two tangent lines, or the chord p1 p2 when the tangents are parallel.
// False, with the error word set, when a tangent is a zero vector.
bool stepLimit(const dpoint2d &p1, const dpoint2d &v1, const dpoint2d &p2, const dpoint2d &v2,
               double &limit) noexcept
{
    UTMAT_Droite line1{};
    UTMAT_Droite line2{};
    UTMAT_CalculerDroitePtVecteur(&p1, &v1, &line1);
    if (nestedFailed()) return false;
    UTMAT_CalculerDroitePtVecteur(&p2, &v2, &line2);
    if (nestedFailed()) return false;
    dpoint2d crossing{};
    std::int32_t count = 0;
    UTMAT_CalculerIntersection2Droite(&line1, &line2, &crossing, &count);
    if (nestedFailed()) return false;
    if (count == 1) {
        limit =
            std::max(UTMAT_CalculerDistance2Pt(&p1, &crossing), UTMAT_CalculerDistance2Pt(&p2, &crossing));
    } else {
        limit = UTMAT_CalculerDistance2Pt(&p1, &p2);
    }
    return true;
}

// An admissible step runs forward and does not pass the limit (exact tests).
bool admissible(double t, double limit) noexcept
{
    return t >= 0.0 && t <= limit;
}

// Of two roots, the one admissible alone; when both or neither are, the larger.
bool chooseStep(const dpoint2d &p1, const dpoint2d &v1, const dpoint2d &p2, const dpoint2d &v2,
                const double roots[2], double &t) noexcept
{
    double limit = 0.0;
    if (!stepLimit(p1, v1, p2, v2, limit)) return false;
    const bool first = admissible(roots[0], limit);
    const bool second = admissible(roots[1], limit);
    if (first != second) {
        t = first ? roots[0] : roots[1];
    } else {
        t = std::max(roots[0], roots[1]);
    }
    return true;
}

}  // namespace

void UTMAT_CalculerPointInterpolation(const dpoint2d *p1, const dpoint2d *v1, const dpoint2d *p2,
                                      const dpoint2d *v2, dpoint2d *m, dpoint2d *tangent, double *t)
{
    enterKernel();
    if (failIfNull(p1, v1, p2, v2, m, tangent, t)) return;
    double roots[2] = {0.0, 0.0};
    const std::int32_t count = stepRoots(*p1, *v1, *p2, *v2, roots);
    if (count == 0) return (void)fail();
    double step = roots[0];
    if (count == 2 && !chooseStep(*p1, *v1, *p2, *v2, roots, step)) return;

    const dpoint2d a{p1->x + step * v1->x, p1->y + step * v1->y};
    const dpoint2d b{p2->x - step * v2->x, p2->y - step * v2->y};
    // a and b coincide only for a zero step; that division is left unguarded.
    const double ab = UTMAT_CalculerDistance2Pt(&a, &b);
    *t = step;
    *m = dpoint2d{(a.x + b.x) / 2.0, (a.y + b.y) / 2.0};
    *tangent = dpoint2d{(b.x - a.x) / ab, (b.y - a.y) / ab};
}
