// Roots: the real roots of a quadratic, the solver of every tangent-circle
// and parabola construction, and the complex roots of a polynomial with
// complex coefficients by Laguerre's method, with deflation and an optional
// polish against the original coefficients. A complex number is a dpoint2d,
// the real part in x and the imaginary part in y.
#include <alloca.h>

#include <cmath>

#include <tessar/circle.h>

#include "frame/kernel.hpp"
#include "geometry/circle.hpp"

using namespace tessar::detail;

/* ---- Quadratic ---- */

namespace tessar::detail {

// The discriminant's tolerance t bounds the error that the coefficient
// errors ea, eb, ec carry into b b - 4 a c. Of the two roots the one of
// larger magnitude, -(b + sign(b) r) / 2a, adds quantities of one sign and
// suffers no cancellation; the other follows from the product c / a.
void quadraticRoots(double a, double b, double c, double *out, std::int32_t *count) noexcept
{
    if (count == nullptr) return (void)fail();
    *count = 0;
    if (a == 0.0) {
        if (b == 0.0) return;
        out[0] = -c / b;
        *count = 1;
        return;
    }
    const double disc = b * b - 4.0 * a * c;
    const double ea = std::fabs(a * kCoefficientError);
    const double eb = std::fabs(b * kCoefficientError);
    const double ec = std::fabs(c * kCoefficientError);
    const double t = 4.0 * (ec * (std::fabs(a) + ea) + std::fabs(c) * ea) + (2.0 * std::fabs(b) + eb) * eb;
    if (egal(disc, 0.0, t)) {
        out[0] = -b / (2.0 * a);
        *count = 1;
    } else if (sup(disc, 0.0, t)) {
        const double r = std::sqrt(disc);
        const double q = supOuEgal(b, 0.0, t) ? (r + b) / (2.0 * a) : (b - r) / (2.0 * a);
        out[0] = -q;
        out[1] = c / (-q * a);
        *count = 2;
    }
}

}  // namespace tessar::detail

void UTMAT_ResoudreEquation2Degre(double a, double b, double c, double /*unused*/, double roots[2],
                                  int32_t *count)
{
    enterKernel();
    quadraticRoots(a, b, c, roots, count);
}

/* ---- Complex arithmetic ---- */

namespace {

// Neither routine clears the error word; each returns false on failure,
// with 32768 set.

// out = a b, through a temporary so that out may be a or b.
bool complexMultiply(const dpoint2d *a, const dpoint2d *b, dpoint2d *out)
{
    if (failIfNull(a, b, out)) return false;
    const dpoint2d product{a->x * b->x - a->y * b->y, a->x * b->y + a->y * b->x};
    *out = product;
    return true;
}

// out = a / b = a conj(b) / |b|^2, by multiplying with 1 / |b|^2.
bool complexDivide(const dpoint2d *a, const dpoint2d *b, dpoint2d *out)
{
    const double n = b->x * b->x + b->y * b->y;
    if (n == 0.0) {
        fail();
        return false;
    }
    const double inverse = 1.0 / n;
    const dpoint2d quotient{(a->x * b->x + a->y * b->y) * inverse, (a->y * b->x - a->x * b->y) * inverse};
    *out = quotient;
    return true;
}

dpoint2d times(const dpoint2d &a, const dpoint2d &b)
{
    dpoint2d out;
    complexMultiply(&a, &b, &out);
    return out;
}

dpoint2d plus(const dpoint2d &a, const dpoint2d &b)
{
    return {a.x + b.x, a.y + b.y};
}

dpoint2d minus(const dpoint2d &a, const dpoint2d &b)
{
    return {a.x - b.x, a.y - b.y};
}

dpoint2d scaled(double s, const dpoint2d &a)
{
    return {s * a.x, s * a.y};
}

double modulus(const dpoint2d &z)
{
    return std::hypot(z.x, z.y);
}

/* ---- Laguerre iteration ---- */

// Relative rounding of the evaluation below which the value counts as 0.
constexpr double kEvaluationEpsilon = 6e-08;
// A logarithmic derivative beyond this means x already sits on a root.
constexpr double kLargestRatio = 1e15;
// A Laguerre denominator below m times this cannot be divided by.
constexpr double kSmallestDenominator = 1e-35;
constexpr int kMaxSteps = 100;

// The square root of w with the sign of its imaginary part taken from w.y
// (negative also when w.y is 0).
dpoint2d laguerreSquareRoot(const dpoint2d &w)
{
    const double s = w.y > 0.0 ? 1.0 : -1.0;
    const double mw = modulus(w);
    return {std::sqrt((mw + w.x) / 2.0), s * std::sqrt((mw - w.x) / 2.0)};
}

// Improves the estimate x of a root of a[0] + a[1] z + ... + a[m] z^m.
// ok = 0 when the step cannot be formed (the caller restarts elsewhere). A
// failed division returns at once with the error word set.
void laguerreRoot(const dpoint2d *a, int32_t m, dpoint2d &x, int32_t &ok, bool polish)
{
    const double md = static_cast<double>(m);
    ok = 1;
    double previous = modulus(x);
    for (int i = 0;;) {
        // Synthetic division: b = p(x), d = p'(x), f = p''(x) / 2, and e a
        // bound on the rounding error of b.
        dpoint2d b = a[m];
        dpoint2d d{0.0, 0.0};
        dpoint2d f{0.0, 0.0};
        double e = modulus(b);
        const double modX = modulus(x);
        for (int32_t j = m - 1; j >= 0; --j) {
            f = plus(times(x, f), d);
            d = plus(times(x, d), b);
            b = plus(times(x, b), a[j]);
            e = modulus(b) + modX * e;
        }
        if (!(modulus(b) > e * kEvaluationEpsilon)) return;  // a root to machine accuracy

        // g = p'/p, h = g^2 - p''/p, and the step m / (g +- sqrt((m-1)(m h - g^2))).
        dpoint2d g;
        if (!complexDivide(&d, &b, &g)) return;
        if (modulus(g) > kLargestRatio) return;
        const dpoint2d twoF = scaled(2.0, f);
        dpoint2d twoFOverB;
        if (!complexDivide(&twoF, &b, &twoFOverB)) return;
        const dpoint2d gg = times(g, g);
        const dpoint2d h = minus(gg, twoFOverB);
        const dpoint2d w = scaled(md - 1.0, minus(scaled(md, h), gg));
        const dpoint2d root = laguerreSquareRoot(w);
        const dpoint2d gp = plus(g, root);
        const dpoint2d gm = minus(g, root);
        const dpoint2d denominator = modulus(gp) < modulus(gm) ? gm : gp;
        if (modulus(denominator) < md * kSmallestDenominator) {
            ok = 0;
            return;
        }
        const dpoint2d mComplex{md, 0.0};
        dpoint2d dx;
        if (!complexDivide(&mComplex, &denominator, &dx)) return;
        const dpoint2d x1 = minus(x, dx);
        if (x1.x == x.x && x1.y == x.y) return;

        x = x1;
        const double c = modulus(dx);
        if (i > 6 && c >= previous) return;  // the steps no longer shrink
        previous = c;
        // The estimate's modulus is compared with itself, not with the step:
        // with a calcul precision below 1 this stops only at x = 0. It is the
        // test as the iteration defines it.
        if (!polish && !(modulus(x) > modulus(x) * utmatCalculPrec)) return;
        if (++i == kMaxSteps) return;
    }
}

/* ---- Roots of a polynomial ---- */

// The real start values tried after a failed start: -1, 2, -2, 3, -3, ...
double nextStart(double start)
{
    return start < 0.0 ? -start + 1.0 : -start;
}

// A root whose imaginary part is negligible against its real part is real.
void makeNearlyRealRootReal(dpoint2d &x)
{
    if (!(std::fabs(x.y) > std::fabs(x.x) * utmatCalculPrec * utmatCalculPrec * 2.0)) x.y = 0.0;
}

// Divides w[0..j+1] by (z - x) in place: the quotient is w[0..j].
void deflate(dpoint2d *w, int32_t j, const dpoint2d &x)
{
    dpoint2d b = w[j + 1];
    for (int32_t k = j; k >= 0; --k) {
        const dpoint2d c = w[k];
        w[k] = b;
        b = plus(times(x, b), c);
    }
}

// Insertion by increasing real part; equal real parts keep their order.
void sortByRealPart(dpoint2d *roots, int32_t n)
{
    for (int32_t i = 1; i < n; ++i) {
        const dpoint2d v = roots[i];
        int32_t k = i - 1;
        while (k >= 0 && roots[k].x > v.x) {
            roots[k + 1] = roots[k];
            --k;
        }
        roots[k + 1] = v;
    }
}

}  // namespace

// Each root is found on the deflated polynomial, from 0 or, when the step
// cannot be formed there, from the next real start value; the restarts have
// no limit. Degree 0 (or less) has no root and writes nothing.
void UTMAT_CalculerRacinePolynomeLaguerre(const dpoint2d *coefficients, int32_t degree, dpoint2d *roots,
                                          int32_t polish)
{
    enterKernel();
    if (degree < 1) return;
    // The working copy lives on the stack, sized by the degree: no heap.
    auto *work = static_cast<dpoint2d *>(alloca(sizeof(dpoint2d) * (static_cast<size_t>(degree) + 1)));
    for (int32_t k = 0; k <= degree; ++k)
        work[k] = coefficients[k];

    for (int32_t j = degree - 1; j >= 0; --j) {
        dpoint2d x{0.0, 0.0};
        int32_t ok = 0;
        laguerreRoot(work, j + 1, x, ok, false);
        if (nestedFailed()) return;
        for (double start = -1.0; ok == 0; start = nextStart(start)) {
            x = {start, 0.0};
            laguerreRoot(work, j + 1, x, ok, false);
            if (nestedFailed()) return;
        }
        makeNearlyRealRootReal(x);
        roots[j] = x;
        deflate(work, j, x);
    }

    if (polish != 0) {
        for (int32_t j = 0; j < degree; ++j) {
            int32_t ok = 0;
            laguerreRoot(coefficients, degree, roots[j], ok, true);
            if (nestedFailed()) return;
        }
    }
    if (degree >= 2) sortByRealPart(roots, degree);
}
