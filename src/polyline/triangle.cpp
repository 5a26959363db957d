// The interpolation triangle: two points p1 and p2, each with a unit tangent
// v1 and v2, to be joined by a two-piece curve. The test tells whether the
// joint is needed: a figure whose two tangents both lie along the chord p1 p2
// is a straight piece already.
#include <algorithm>
#include <cmath>

#include <tessar/angle.h>
#include <tessar/polyline.h>

#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

// The angles of the test are compared with a fixed 1e-6 rad, whatever the
// kernel's precision.
constexpr double kAngleTolerance = 1e-6;

// The counter-clockwise angle from u to v, brought into (-pi, pi] so that a
// direction just clockwise of u reads as a small negative angle rather than
// one just short of a full turn. False, with the error word set, when the
// angle cannot be formed. The word is read before normalising, which clears it.
bool signedAngle(const dpoint2d *u, const dpoint2d *v, double &angle) noexcept
{
    const double ccw = UTMAT_CalculerAngleV1V2(u, v);
    if (nestedFailed()) return false;
    angle = UTMAT_NormaliserAngle(TESSAR_ANGLE_SIGNED, ccw);
    return true;
}

bool nearZero(double angle) noexcept
{
    return egal(angle, 0.0, kAngleTolerance);
}

}  // namespace

void UTMAT_VerifierTriangleInterpolation(const dpoint2d *p1, const dpoint2d *v1, const dpoint2d *p2,
                                         const dpoint2d *v2, int32_t *valide)
{
    enterKernel();
    double a = 0.0;  // from v1 to v2
    if (!signedAngle(v1, v2, a)) return;
    const dpoint2d w{p2->x - p1->x, p2->y - p1->y};  // the chord
    double b = 0.0;                                  // from v1 to the chord
    if (!signedAngle(v1, &w, b)) return;
    if (!nearZero(a) || !nearZero(b)) {
        *valide = 1;
        return;
    }
    // Both tangents turn by no more than the tolerance from the chord: the
    // figure is flat when twice the larger deviation is still within it.
    double c = 0.0;  // from v2 to the chord
    if (!signedAngle(v2, &w, c)) return;
    const double deviation = std::max(std::fabs(b), std::fabs(c));
    *valide = nearZero(2.0 * deviation) ? 0 : 1;
}
