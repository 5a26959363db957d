// Plain values of the ts layer: extremes and signs, distances and products,
// factorials in the wrapping integer arithmetic that callers rely on, and
// linear interpolation.
#include <cmath>
#include <cstdint>

#include <tessar/mathapi.h>

namespace {

// The running product lo * (lo + 1) * ... * hi in 32-bit arithmetic that
// wraps around instead of overflowing; 1 for an empty range. Once the
// product has wrapped to 0 it stays 0, so the walk stops there.
std::uint32_t wrappingProduct(std::int64_t lo, std::int64_t hi)
{
    std::uint32_t product = 1;
    for (std::int64_t i = hi; i >= lo && product != 0; --i)
        product *= static_cast<std::uint32_t>(i);
    return product;
}

}  // namespace

/* ---- Extremes and signs ---- */

double tsMath_doubleMax(double a, double b)
{
    return a > b ? a : b;
}

double tsMath_doubleMin(double a, double b)
{
    return a >= b ? b : a;
}

// A not-a-number is neither above nor equal to 0, so it counts as negative.
int32_t tsMath_doubleGetSign(double a)
{
    if (a > 0.0) return 1;
    if (a == 0.0) return 0;
    return -1;
}

/* ---- Distances and products ---- */

double tsMath_distance2d(double x1, double y1, double x2, double y2)
{
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    return std::sqrt(dx * dx + dy * dy);
}

double tsMath_distance3d(double x1, double y1, double z1, double x2, double y2, double z2)
{
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double dz = z2 - z1;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

double tsMath_scalarProduct2d(double x1, double y1, double x2, double y2)
{
    return x1 * x2 + y1 * y2;
}

double tsMath_crossProduct2d(double x1, double y1, double x2, double y2)
{
    return x1 * y2 - y1 * x2;
}

// The sign of the cross product of the line's direction with the point seen
// from the line's end: positive on the right of the direction of travel.
int32_t tsMath_sideOfLine2d(double x1, double y1, double x2, double y2, double px, double py)
{
    return tsMath_doubleGetSign((y2 - y1) * (px - x2) - (x2 - x1) * (py - y2));
}

/* ---- Factorials ---- */

// Unsigned 32-bit product with wrap-around: 13! and above are the true value
// modulo 2^32 (13! gives 1932053504).
double tsMath_factorial(int32_t n)
{
    if (n < 2) return 1.0;
    return static_cast<double>(wrappingProduct(2, n));
}

// a! / b! as the product of the factors that do not cancel, taken in signed
// 32-bit arithmetic (two's complement wrap), and its reciprocal when b > a.
double tsMath_factorialDivision(int32_t a, int32_t b)
{
    if (a == b) return 1.0;
    if (a > b) return static_cast<double>(static_cast<int32_t>(wrappingProduct(std::int64_t{b} + 1, a)));
    return 1.0 / static_cast<double>(static_cast<int32_t>(wrappingProduct(std::int64_t{a} + 1, b)));
}

/* ---- Interpolation ---- */

// A vertical or a flat pair of points gives y0 without dividing.
double tsMath_interpolateDoubles(double x0, double y0, double x, double x1, double y1)
{
    if (x0 == x1 || y0 == y1) return y0;
    return y0 + (x - x0) / (x1 - x0) * (y1 - y0);
}
