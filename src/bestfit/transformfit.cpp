// Plane coordinate transformations fitted to control pairs: similarity,
// affine and projective models, their exact start values, their application
// to a point, and the iterated adjustment in which both the source (x, y) and
// the target (X, Y) of every pair carry errors.
#include <tessar/bestfit.h>
#include <tessar/frame.h>
#include <tessar/transform.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <new>
#include <span>

#include "bestfit/transformfit.hpp"

namespace {

using tessar::detail::ConditionAdjustment;
using tessar::detail::MatrixRecord;

constexpr int32_t kFailure = TESSAR_FAILURE;
constexpr int32_t kTooFewAffinePairs = 1;  // the affine fit's own answer to too few pairs
constexpr int32_t kMaximumPasses = 10;
constexpr double kConvergence = 1e-5;

/* ---- The models ---- */

double similarityX(double a, double b, double c, double x, double y)
{
    return a * x - b * y + c;
}
double similarityY(double a, double b, double d, double x, double y)
{
    return b * x + a * y + d;
}
// Also the numerators P and R of the projective model.
double affineRow(double a, double b, double c, double x, double y)
{
    return a * x + b * y + c;
}
double projectiveDenominator(double g, double h, double x, double y)
{
    return g * x + h * y + 1.0;
}

// One control pair as stored: x, sigma x, y, sigma y, X, sigma X, Y, sigma Y.
struct ControlPair {
    const double *v;
    double x() const { return v[0]; }
    double y() const { return v[2]; }
    double X() const { return v[4]; }
    double Y() const { return v[6]; }
    double sigma(int32_t column) const { return v[2 * column + 1]; }  // column 0..3: x, y, X, Y
};

ControlPair pairAt(const double *pairs, int32_t i)
{
    return ControlPair{pairs + static_cast<std::ptrdiff_t>(i) * TESSAR_BESTFIT_PAIR_SIZE};
}

/* ---- Exact start values ---- */

// Solves the square system S p = rhs by inverting S (the inversion's status is
// not looked at) and writes p. False only if the heap is exhausted.
template <size_t N>
bool solveExactly(const std::array<std::array<double, N>, N> &rows, const std::array<double, N> &rhs,
                  std::array<double, N> &solution)
{
    const auto n = static_cast<int32_t>(N);
    MatrixRecord system;
    MatrixRecord right;
    if (!system.allocate(n, n) || !right.allocate(n, 1)) return false;
    for (int32_t i = 0; i < n; ++i) {
        for (int32_t j = 0; j < n; ++j)
            system(i, j) = rows[i][j];
        right(i, 0) = rhs[i];
    }
    tsMatrix_invertMatrix(&system.record());
    MatrixRecord product;
    product.product(0, system.record(), 0, right.record());
    for (int32_t i = 0; i < n; ++i)
        solution[i] = product(i, 0);
    return true;
}

// The similarity through two pairs: unknowns a, b, c, d.
bool similarityThrough(std::array<double, 4> &p, double x1, double y1, double X1, double Y1, double x2,
                       double y2, double X2, double Y2)
{
    const std::array<std::array<double, 4>, 4> rows{{
        {x1, -y1, 1.0, 0.0},
        {y1, x1, 0.0, 1.0},
        {x2, -y2, 1.0, 0.0},
        {y2, x2, 0.0, 1.0},
    }};
    return solveExactly<4>(rows, {X1, Y1, X2, Y2}, p);
}

// The affine transform through three pairs. The unknowns stand in the order
// a, d, b, e, c, f, so that each pair gives the rows (x, 0, y, 0, 1, 0) and
// (0, x, 0, y, 0, 1); p is handed back as a, b, c, d, e, f.
bool affineThrough(std::array<double, 6> &p, ControlPair p1, ControlPair p2, ControlPair p3)
{
    std::array<std::array<double, 6>, 6> rows{};
    std::array<double, 6> rhs{};
    const std::array<ControlPair, 3> three{p1, p2, p3};
    for (size_t k = 0; k < 3; ++k) {
        const ControlPair &q = three[k];
        rows[2 * k] = {q.x(), 0.0, q.y(), 0.0, 1.0, 0.0};
        rows[2 * k + 1] = {0.0, q.x(), 0.0, q.y(), 0.0, 1.0};
        rhs[2 * k] = q.X();
        rhs[2 * k + 1] = q.Y();
    }
    std::array<double, 6> adbecf{};
    if (!solveExactly<6>(rows, rhs, adbecf)) return false;
    p = {adbecf[0], adbecf[2], adbecf[4], adbecf[1], adbecf[3], adbecf[5]};
    return true;
}

/* ---- Rows of A, B and w for one pair ---- */

// Each model fills, for pair i at the parameters p, the rows 2i (X) and
// 2i + 1 (Y) of A and w, and the B rows with the columns x, y, X, Y.
struct Similarity {
    static constexpr int32_t kParameters = 4;
    using Parameters = std::array<double, kParameters>;

    static bool start(Parameters &p, const double *pairs)
    {
        const ControlPair p0 = pairAt(pairs, 0);
        const ControlPair p1 = pairAt(pairs, 1);
        return similarityThrough(p, p0.x(), p0.y(), p0.X(), p0.Y(), p1.x(), p1.y(), p1.X(), p1.Y());
    }

    static void fill(ConditionAdjustment &adj, int32_t i, ControlPair q, const Parameters &p)
    {
        const auto [a, b, c, d] = p;
        const double x = q.x();
        const double y = q.y();
        const std::array<double, kParameters> rowX{x, -y, 1.0, 0.0};
        const std::array<double, kParameters> rowY{y, x, 0.0, 1.0};
        for (int32_t k = 0; k < kParameters; ++k) {
            adj.setDesign(2 * i, k, rowX[k]);
            adj.setDesign(2 * i + 1, k, rowY[k]);
        }
        const std::array<double, 4> conditionX{a, -b, -1.0, 0.0};
        const std::array<double, 4> conditionY{b, a, 0.0, -1.0};
        for (int32_t k = 0; k < 4; ++k) {
            adj.setCondition(i, 0, k, conditionX[k]);
            adj.setCondition(i, 1, k, conditionY[k]);
        }
        adj.setMisclosure(2 * i, q.X() - similarityX(a, b, c, x, y));
        adj.setMisclosure(2 * i + 1, q.Y() - similarityY(a, b, d, x, y));
    }

    // The divisor is twice the pairs less the four parameters.
    static double variance(double weightedSum, int32_t n)
    {
        return n > 2 ? std::pow(std::sqrt(weightedSum / static_cast<double>(2 * n - 4)), 2.0) : 0.0;
    }
};

struct Affine {
    static constexpr int32_t kParameters = 6;
    using Parameters = std::array<double, kParameters>;

    static bool start(Parameters &p, const double *pairs)
    {
        return affineThrough(p, pairAt(pairs, 0), pairAt(pairs, 1), pairAt(pairs, 2));
    }

    static void fill(ConditionAdjustment &adj, int32_t i, ControlPair q, const Parameters &p)
    {
        const auto [a, b, c, d, e, f] = p;
        const double x = q.x();
        const double y = q.y();
        const std::array<double, kParameters> rowX{x, y, 1.0, 0.0, 0.0, 0.0};
        const std::array<double, kParameters> rowY{0.0, 0.0, 0.0, x, y, 1.0};
        for (int32_t k = 0; k < kParameters; ++k) {
            adj.setDesign(2 * i, k, rowX[k]);
            adj.setDesign(2 * i + 1, k, rowY[k]);
        }
        const std::array<double, 4> conditionX{a, b, -1.0, 0.0};
        const std::array<double, 4> conditionY{d, e, 0.0, -1.0};
        for (int32_t k = 0; k < 4; ++k) {
            adj.setCondition(i, 0, k, conditionX[k]);
            adj.setCondition(i, 1, k, conditionY[k]);
        }
        adj.setMisclosure(2 * i, q.X() - affineRow(a, b, c, x, y));
        adj.setMisclosure(2 * i + 1, q.Y() - affineRow(d, e, f, x, y));
    }

    // The divisor is the pairs less three, not twice the pairs less the six
    // parameters: that is this fit's figure and it stays so.
    static double variance(double weightedSum, int32_t n)
    {
        return n > 3 ? std::pow(std::sqrt(weightedSum / static_cast<double>(n - 3)), 2.0) : 0.0;
    }
};

struct Projective {
    static constexpr int32_t kParameters = 8;
    using Parameters = std::array<double, kParameters>;

    // The affine transform through the first three pairs, and no perspective.
    static bool start(Parameters &p, const double *pairs)
    {
        Affine::Parameters affine{};
        if (!Affine::start(affine, pairs)) return false;
        p = {affine[0], affine[1], affine[2], affine[3], affine[4], affine[5], 0.0, 0.0};
        return true;
    }

    // With D = g x + h y + 1, P = a x + b y + c and R = d x + e y + f:
    // X = P / D, Y = R / D, differentiated by the parameters (A) and by x and
    // y (the first two columns of B).
    static void fill(ConditionAdjustment &adj, int32_t i, ControlPair q, const Parameters &p)
    {
        const auto [a, b, c, d, e, f, g, h] = p;
        const double x = q.x();
        const double y = q.y();
        const double D = projectiveDenominator(g, h, x, y);
        const double D2 = D * D;
        const double P = affineRow(a, b, c, x, y);
        const double R = affineRow(d, e, f, x, y);
        const std::array<double, kParameters> rowX{x / D, y / D, 1.0 / D,     0.0,
                                                   0.0,   0.0,   -x * P / D2, -y * P / D2};
        const std::array<double, kParameters> rowY{0.0,   0.0,     0.0,         x / D,
                                                   y / D, 1.0 / D, -x * R / D2, -y * R / D2};
        for (int32_t k = 0; k < kParameters; ++k) {
            adj.setDesign(2 * i, k, rowX[k]);
            adj.setDesign(2 * i + 1, k, rowY[k]);
        }
        const std::array<double, 4> conditionX{((h * y + 1.0) * a - (b * y + c) * g) / D2,
                                               ((g * x + 1.0) * b - (a * x + c) * h) / D2, -1.0, 0.0};
        const std::array<double, 4> conditionY{((h * y + 1.0) * d - (e * y + f) * g) / D2,
                                               ((g * x + 1.0) * e - (d * x + f) * h) / D2, 0.0, -1.0};
        for (int32_t k = 0; k < 4; ++k) {
            adj.setCondition(i, 0, k, conditionX[k]);
            adj.setCondition(i, 1, k, conditionY[k]);
        }
        adj.setMisclosure(2 * i, q.X() - P / D);
        adj.setMisclosure(2 * i + 1, q.Y() - R / D);
    }

    // The pairs less four, as the affine fit's figure is the pairs less three.
    static double variance(double weightedSum, int32_t n)
    {
        return n > 4 ? std::pow(std::sqrt(weightedSum / static_cast<double>(n - 4)), 2.0) : 0.0;
    }
};

/* ---- The adjustment ---- */

// Runs at most ten passes from the model's start values, adding each pass's
// correction to the parameters, until every correction is below 1e-5 in
// magnitude. The quality figures come from the last pass whether or not it
// converged: V = A delta - w, variance from V^T M V, rms = sqrt(V^T V) / n * 2.
// Parameters are written on convergence and zeroed otherwise. Only an
// exhausted heap leaves every output untouched.
template <class Model>
int32_t fitTransform(std::span<double *const, Model::kParameters> out, double *variance, double *rms,
                     int32_t n, const double *pairs)
{
    typename Model::Parameters p{};
    if (!Model::start(p, pairs)) return kFailure;

    ConditionAdjustment adj(n, 2, 4, Model::kParameters);
    if (!adj.allocated()) return kFailure;
    for (int32_t i = 0; i < n; ++i) {
        const ControlPair q = pairAt(pairs, i);
        for (int32_t column = 0; column < 4; ++column)
            adj.setVariance(i, column, q.sigma(column) * q.sigma(column));
    }

    bool converged = false;
    for (int32_t pass = 0; pass < kMaximumPasses && !converged; ++pass) {
        for (int32_t i = 0; i < n; ++i)
            Model::fill(adj, i, pairAt(pairs, i), p);
        if (!adj.solve()) return kFailure;
        converged = true;
        for (int32_t k = 0; k < Model::kParameters; ++k) {
            const double delta = adj.correction(k);
            p[k] = p[k] + delta;
            if (!(std::fabs(delta) < kConvergence)) converged = false;
        }
    }

    if (!adj.formResiduals()) return kFailure;
    *variance = Model::variance(adj.weightedResidualSquareSum(), n);
    *rms = std::sqrt(adj.residualSquareSum()) / static_cast<double>(n) * 2.0;

    for (int32_t k = 0; k < Model::kParameters; ++k)
        *out[k] = converged ? p[k] : 0.0;
    return converged ? 0 : kFailure;
}

template <class Model>
int32_t fitTransformGuarded(std::span<double *const, Model::kParameters> out, double *variance, double *rms,
                            int32_t n, const double *pairs)
{
    try {
        return fitTransform<Model>(out, variance, rms, n, pairs);
    } catch (const std::bad_alloc &) {
        return kFailure;
    }
}

}  // namespace

/* ---- Fits ---- */

int32_t tsBestFit_transform2d(double *a, double *b, double *c, double *d, double *variance, double *rms,
                              int32_t n, const double *pairs)
{
    if (n < 2) return kFailure;
    const std::array<double *, Similarity::kParameters> out{a, b, c, d};
    return fitTransformGuarded<Similarity>(out, variance, rms, n, pairs);
}

int32_t tsBestFit_transformAffine2d(double *a, double *b, double *c, double *d, double *e, double *f,
                                    double *variance, double *rms, int32_t n, const double *pairs)
{
    // 1, not 32768, for too few pairs: the settled answer of this fit.
    if (n < 3) return kTooFewAffinePairs;
    const std::array<double *, Affine::kParameters> out{a, b, c, d, e, f};
    return fitTransformGuarded<Affine>(out, variance, rms, n, pairs);
}

int32_t tsBestFit_transformProjective2d(double *a, double *b, double *c, double *d, double *e, double *f,
                                        double *g, double *h, double *variance, double *rms, int32_t n,
                                        const double *pairs)
{
    if (n < 4) return kFailure;
    const std::array<double *, Projective::kParameters> out{a, b, c, d, e, f, g, h};
    return fitTransformGuarded<Projective>(out, variance, rms, n, pairs);
}

/* ---- Exact start values ---- */

// Always 0: a singular system is not reported, and an exhausted heap leaves
// the outputs as they were.
int32_t tsBestFit_transformCalcParam2d(double *a, double *b, double *c, double *d, double x1, double y1,
                                       double X1, double Y1, double x2, double y2, double X2, double Y2)
{
    std::array<double, 4> p{};
    if (similarityThrough(p, x1, y1, X1, Y1, x2, y2, X2, Y2)) {
        *a = p[0];
        *b = p[1];
        *c = p[2];
        *d = p[3];
    }
    return 0;
}

int32_t tsBestFit_transformCalcParamAffine2d(double *a, double *b, double *c, double *d, double *e, double *f,
                                             double x1, double y1, double X1, double Y1, double x2, double y2,
                                             double X2, double Y2, double x3, double y3, double X3, double Y3)
{
    // Three records laid out as control pairs, sigmas unused.
    const std::array<double, 3 * TESSAR_BESTFIT_PAIR_SIZE> records{
        x1, 0.0, y1, 0.0, X1, 0.0, Y1, 0.0, x2, 0.0, y2, 0.0,
        X2, 0.0, Y2, 0.0, x3, 0.0, y3, 0.0, X3, 0.0, Y3, 0.0,
    };
    std::array<double, 6> p{};
    if (affineThrough(p, pairAt(records.data(), 0), pairAt(records.data(), 1), pairAt(records.data(), 2))) {
        *a = p[0];
        *b = p[1];
        *c = p[2];
        *d = p[3];
        *e = p[4];
        *f = p[5];
    }
    return 0;
}

/* ---- Applying a transform ---- */

int32_t tsBestFit_transformPtBy2d(double *X, double *Y, double a, double b, double c, double d, double x,
                                  double y)
{
    *X = similarityX(a, b, c, x, y);
    *Y = similarityY(a, b, d, x, y);
    return 0;
}

int32_t tsBestFit_transformPtByAffine2d(double *X, double *Y, double a, double b, double c, double d,
                                        double e, double f, double x, double y)
{
    *X = affineRow(a, b, c, x, y);
    *Y = affineRow(d, e, f, x, y);
    return 0;
}

// D is not tested against 0: the quotient follows the floating-point rules.
int32_t tsBestFit_transformPtByProjective2d(double *X, double *Y, double a, double b, double c, double d,
                                            double e, double f, double g, double h, double x, double y)
{
    const double D = projectiveDenominator(g, h, x, y);
    *X = affineRow(a, b, c, x, y) / D;
    *Y = affineRow(d, e, f, x, y) / D;
    return 0;
}
