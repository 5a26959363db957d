// Circles of the kernel: a point against a circle, the crossings of a line
// and a circle and of two circles, and the small numeric functions (distance
// to a rectangle, the guarded interpolation, factorials). A circle is a
// centre and a radius passed side by side; there is no record.
#include <cmath>

#include <tessar/circle.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

// The scale-relative zero of the interpolation's guard; it does not follow
// the kernel's settings.
constexpr double kDivisionGuard = 1.0000000000000001e-39;

double squaredDistance(const dpoint2d &p, const dpoint2d &q)
{
    const double dx = p.x - q.x;
    const double dy = p.y - q.y;
    return dx * dx + dy * dy;
}

// centre + R (cos angle, sin angle), read before the write so that out may
// be the centre itself.
void pointAtAngle(const dpoint2d &centre, double R, double angle, dpoint2d &out)
{
    const dpoint2d c = centre;
    out.x = c.x + R * std::cos(angle);
    out.y = c.y + R * std::sin(angle);
}

// How far x lies outside the interval [lo, hi]: 0 within or on it.
double gapOutside(double x, double lo, double hi)
{
    if (x < lo) return lo - x;
    if (x > hi) return x - hi;
    return 0.0;
}

}  // namespace

/* ---- Points and circles ---- */

void UTMAT_ProjeterPtSurCercle(const dpoint2d *centre, double R, const dpoint2d *p, dpoint2d *point,
                               double *angle)
{
    enterKernel();
    if (failIfNull(p, centre, point)) return;
    const double a = std::atan2(p->y - centre->y, p->x - centre->x);
    if (angle != nullptr) *angle = a;
    pointAtAngle(*centre, R, a, *point);
}

void UTMAT_CalculerPtSurCercleAngle(const dpoint2d *centre, double R, double angle, dpoint2d *out)
{
    enterKernel();
    if (failIfNull(out, centre)) return;
    pointAtAngle(*centre, R, angle, *out);
}

int32_t UTMAT_CalculerClassePtCercle(const dpoint2d *centre, const dpoint2d *p, double R, double tol)
{
    enterKernel();
    if (failIfNull(centre, p)) return 0;
    const double e = std::sqrt(squaredDistance(*p, *centre)) - R;
    if (e < -tol) return -1;
    if (e > tol) return 1;
    return 0;
}

/* ---- Intersections ---- */

// With f the foot of the centre on the unit line and q its squared distance
// from the centre, the crossings are f -+ h (-b, a), h = sqrt(R R - q): the
// first forward of the foot along the line's direction (-b, a), the second
// behind it. A line within tol of tangency gives the foot alone, which then
// need not lie on the circle.
void UTMAT_CalculerIntersectionDroiteCercle(UTMAT_Droite *line, const dpoint2d *centre, double R, double tol,
                                            dpoint2d out[2], int32_t *count)
{
    enterKernel();
    UTMAT_NormerDroite(line, nullptr);
    if (nestedFailed()) return;
    dpoint2d f;
    UTMAT_ProjeterPtSurDroite(line, centre, &f);
    if (nestedFailed()) return;

    const double q = squaredDistance(f, *centre);
    const double e = std::sqrt(q) - R;
    if (e > tol) {
        *count = 0;
    } else if (e >= -tol) {
        *count = 1;
        out[0] = f;
    } else {
        *count = 2;
        const double h = std::sqrt(R * R - q);
        const double a = line->a;
        const double b = line->b;
        out[0] = {f.x - h * b, f.y + h * a};
        out[1] = {f.x + h * b, f.y - h * a};
    }
}

// The crossings lie on the radical line, the difference of the two circle
// equations: d.x x + d.y y + c = 0 with d = c2 - c1. Its normal d makes its
// direction point to the left of c1 -> c2, so the first crossing is the left
// one. Note that the coincidence test compares the squared distance of the
// centres with tol.
void UTMAT_CalculerIntersection2Cercle(const dpoint2d *c1, double R1, const dpoint2d *c2, double R2,
                                       double tol, dpoint2d out[2], int32_t *count)
{
    enterKernel();
    *count = 0;
    const dpoint2d d{c2->x - c1->x, c2->y - c1->y};
    const double q = d.x * d.x + d.y * d.y;
    if (!(q > tol)) {
        if (egal(R1, R2, tol)) *count = -1;  // the circles coincide
        return;
    }
    UTMAT_Droite radical{d.x, d.y, -(c1->x * d.x) - (c1->y * d.y) - (R1 * R1 - R2 * R2 + q) / 2.0};
    UTMAT_CalculerIntersectionDroiteCercle(&radical, c1, R1, tol, out, count);
}

/* ---- Distances ---- */

// The gaps outside the rectangle along x and y: beside a side only one is
// non-zero, diagonal to a corner the distance is their hypotenuse.
double UTMAT_CalculerDistancePtRectangle(const dpoint2d *p, const dpoint2d *lowerLeft,
                                         const dpoint2d *upperRight)
{
    enterKernel();
    if (failIfNull(p, lowerLeft, upperRight)) return 0.0;
    const double dx = gapOutside(p->x, lowerLeft->x, upperRight->x);
    const double dy = gapOutside(p->y, lowerLeft->y, upperRight->y);
    if (dx == 0.0) return dy;
    if (dy == 0.0) return dx;
    return std::sqrt(dx * dx + dy * dy);
}

/* ---- Small numeric functions ---- */

// The guard is inverted, as the function is defined: any dx that is not
// vanishing against x returns y0 uninterpolated, and the division runs only
// for a dx that is.
double UTMAT_CalculerInterpolationLineaire(double x, double dx, double y0, double y1)
{
    enterKernel();
    if (std::fabs(dx) > x * kDivisionGuard) return y0;
    return x / dx * (y1 - y0) + y0;
}

double UTMAT_DFactorielle(int32_t n)
{
    enterKernel();
    double product = 1.0;
    for (int64_t i = 2; i <= n; ++i)
        product *= static_cast<double>(i);
    return product;
}

double UTMAT_FactorielleDivision(int32_t n, int32_t k)
{
    enterKernel();
    if (n < k) return fail(), 1.0;
    double product = 1.0;
    for (int64_t i = int64_t{k} + 1; i <= n; ++i)
        product *= static_cast<double>(i);
    return product;
}
