// Real roots of polynomials up to the third degree in closed form: the
// degree is found by dropping leading coefficients not above the tolerance,
// and a cubic is solved by Cardano's formula (one real root) or the
// trigonometric form (three), each root then given one Newton step.
#include <cmath>
#include <utility>

#include <tessar/frame.h>
#include <tessar/transform.h>

namespace {

constexpr double kOneThird = 1.0 / 3.0;
constexpr double kOneSixth = 1.0 / 6.0;

// A coefficient equal to the tolerance counts as zero.
bool present(double c, double tolerance)
{
    return std::fabs(c) > tolerance;
}

// The real cube root as pow(|x|, 1/3) with the sign put back; the sign is
// plus only for x strictly above 0.
double realCubeRoot(double x)
{
    const double r = std::pow(std::fabs(x), kOneThird);
    return x > 0.0 ? r : -r;
}

// c0 + c1 x = 0.
int32_t linearRoot(const double c[4], double roots[3], double tolerance)
{
    if (!present(c[1], tolerance)) return 0;
    roots[0] = -c[0] / c[1];
    return 1;
}

// x^2 + 2 h x + q = 0 after division by c2: x = -h -+ sqrt(h^2 - q).
int32_t quadraticRoots(const double c[4], double roots[3])
{
    const double i = 1.0 / c[2];
    const double q = i * c[0];
    const double h = i * c[1] * 0.5;
    const double d = h * h - q;
    if (!(d >= 0.0)) return 0;
    roots[1] = std::sqrt(d) - h;
    roots[0] = -h - std::sqrt(d);
    return 2;
}

void sortThree(double roots[3])
{
    if (roots[0] > roots[1]) std::swap(roots[0], roots[1]);
    if (roots[1] > roots[2]) std::swap(roots[1], roots[2]);
    if (roots[0] > roots[1]) std::swap(roots[0], roots[1]);
}

// With x = t - a, a = c2 / (3 c3), the cubic becomes t^3 + 3 p t - 2 q = 0,
// whose discriminant is d = q^2 + p^3. For d >= 0 there is one real root,
// Cardano's cbrt(q + sqrt d) + cbrt(q - sqrt d) (a double root merges into
// it and is not reported); for d < 0 the three roots are
// 2 sqrt(-p) cos((phi + 2 k pi) / 3), phi = acos(q / sqrt(-p^3)).
int32_t cubicRoots(const double c[4], double roots[3], double tolerance)
{
    const double i = 1.0 / (3.0 * c[3]);
    const double a = i * c[2];
    const double p = c[1] * i - a * a;
    const double q = -0.5 * (2.0 * a * a * a - (c[1] * a - c[0]) / c[3]);
    const double d = q * q + p * p * p;
    if (d >= 0.0) {
        const double s = std::sqrt(d);
        roots[0] = realCubeRoot(s + q) + realCubeRoot(q - s) - a;
        return 1;
    }
    double x = q / std::sqrt(-p * p * p);
    if (x < -1.0) x = -1.0;
    if (x > 1.0) x = 1.0;
    const double phi = std::acos(x);
    const double m = std::pow(-p * p * p, kOneSixth);
    for (int k = 0; k < 3; ++k)
        roots[k] = std::cos((2.0 * k * dc_pi + phi) / 3.0) * 2.0 * m - a;
    sortThree(roots);
    for (int k = 0; k < 3; ++k)
        if (!present(roots[k], tolerance)) roots[k] = 0.0;
    return 3;
}

// One Newton step on each root, in place, where the derivative is not
// exactly zero. This may leave sorted roots out of order.
void polish(const double c[4], double roots[], int32_t count)
{
    for (int32_t k = 0; k < count; ++k) {
        const double r = roots[k];
        const double slope = (3.0 * c[3] * r + 2.0 * c[2]) * r + c[1];
        if (slope != 0.0) roots[k] = r - (((c[3] * r + c[2]) * r + c[1]) * r + c[0]) / slope;
    }
}

}  // namespace

// The linear and quadratic cases are neither polished nor filtered.
int32_t tsMath_solvePolynomialEquation(const double c[4], double roots[3], double tolerance)
{
    if (!present(c[3], tolerance)) {
        if (!present(c[2], tolerance)) return linearRoot(c, roots, tolerance);
        return quadraticRoots(c, roots);
    }
    const int32_t count = cubicRoots(c, roots, tolerance);
    polish(c, roots, count);
    return count;
}
