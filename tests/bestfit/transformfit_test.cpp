// Plane transform fits: known transforms applied to control points and fitted
// back, noisy pairs against least squares solved by hand, the quality
// figures, degenerate inputs, and the fit as the literal sequence of dense
// tsMatrix products, which the library must reproduce bit for bit.
#include <tessar/bestfit.h>
#include <tessar/transform.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
using Params = std::vector<double>;

struct Xy {
    double x, y;
};

// A site grid (metres) of a road job, in the source system.
const Xy kSource[8] = {{102.5, 210.0}, {348.0, 75.5}, {421.0, 388.0}, {150.0, 412.5},
                       {262.0, 251.0}, {35.0, 305.0}, {480.5, 160.0}, {305.0, 470.0}};

const Params kSimilarity{0.9996 * std::cos(0.3), 0.9996 * std::sin(0.3), 512300.0, 4123400.0};
const Params kAffine{1.0012, 0.0150, 512300.0, -0.0210, 0.9987, 4123400.0};
const Params kProjective{1.02, 0.05, 1200.0, -0.03, 0.98, 800.0, 2e-4, -1e-4};

// The model of 4, 6 or 8 parameters at a source point.
Xy apply(const Params &p, Xy s)
{
    if (p.size() == 4) return {p[0] * s.x - p[1] * s.y + p[2], p[1] * s.x + p[0] * s.y + p[3]};
    const double D = p.size() == 8 ? p[6] * s.x + p[7] * s.y + 1.0 : 1.0;
    return {(p[0] * s.x + p[1] * s.y + p[2]) / D, (p[3] * s.x + p[4] * s.y + p[5]) / D};
}

// Control pairs: the first n source points and their images, with a few
// millimetres of deterministic error on the images if asked.
std::vector<double> pairsOf(const Params &p, int n, bool noisy, double sigma = 0.01)
{
    std::vector<double> pairs;
    for (int i = 0; i < n; ++i) {
        const Xy t = apply(p, kSource[i]);
        const double ex = noisy ? 0.004 * std::sin(3.4 * i + 0.3) : 0.0,
                     ey = noisy ? 0.004 * std::sin(3.4 * i + 2) : 0.0;
        pairs.insert(pairs.end(),
                     {kSource[i].x, sigma, kSource[i].y, sigma, t.x + ex, sigma, t.y + ey, sigma});
    }
    return pairs;
}

struct Fit {
    int32_t status;
    Params p;
    double variance, rms;
};

// The fit of k parameters; every output starts at 7.0 so untouched ones show.
Fit fit(int k, int n, const double *pairs)
{
    Fit r{0, Params(8, 7.0), 7.0, 7.0};
    double *q = r.p.data(), *v = &r.variance, *s = &r.rms;
    r.status = k == 4   ? tsBestFit_transform2d(q, q + 1, q + 2, q + 3, v, s, n, pairs)
               : k == 6 ? tsBestFit_transformAffine2d(q, q + 1, q + 2, q + 3, q + 4, q + 5, v, s, n, pairs)
                        : tsBestFit_transformProjective2d(q, q + 1, q + 2, q + 3, q + 4, q + 5, q + 6, q + 7,
                                                          v, s, n, pairs);
    r.p.resize(k);
    return r;
}

void expectParams(const Params &got, const Params &want, double tol)
{
    for (size_t j = 0; j < want.size(); ++j)
        EXPECT_NEAR(got[j], want[j], tol * std::max(1.0, std::fabs(want[j]))) << "parameter " << j;
}

TEST(TransformFit, ExactPairsAreRecovered)
{
    const struct {
        const Params *truth;
        int n;
    } rows[] = {{&kSimilarity, 2}, {&kSimilarity, 8}, {&kAffine, 3},
                {&kAffine, 8},     {&kProjective, 4}, {&kProjective, 8}};
    for (const auto &row : rows) {
        const int k = static_cast<int>(row.truth->size());
        SCOPED_TRACE(testing::Message() << k << " parameters, " << row.n << " pairs");
        const std::vector<double> pairs = pairsOf(*row.truth, row.n, false);
        const Fit f = fit(k, row.n, pairs.data());
        ASSERT_EQ(f.status, 0);
        expectParams(f.p, *row.truth, 1e-7);
        // At the fewest pairs the variance is 0.0 by definition, not by rounding.
        EXPECT_TRUE(row.n == k / 2 ? f.variance == 0.0 : f.variance < 1e-12);
        EXPECT_LT(f.rms, 1e-6);
    }
    // A projective fit of noisy affine data finds no perspective.
    const std::vector<double> pairs = pairsOf(kAffine, 8, true);
    const Fit f = fit(8, 8, pairs.data());
    EXPECT_TRUE(f.status == 0 && std::fabs(f.p[6]) < 1e-5 && std::fabs(f.p[7]) < 1e-5);
}

// The 3 x 3 system by Cramer's rule.
std::vector<double> cramer3(const double m[3][3], const double r[3])
{
    auto det = [](const double k[3][3]) {
        return k[0][0] * (k[1][1] * k[2][2] - k[1][2] * k[2][1]) -
               k[0][1] * (k[1][0] * k[2][2] - k[1][2] * k[2][0]) +
               k[0][2] * (k[1][0] * k[2][1] - k[1][1] * k[2][0]);
    };
    std::vector<double> s(3);
    for (int c = 0; c < 3; ++c) {
        double k[3][3];
        for (int i = 0; i < 9; ++i)
            k[i / 3][i % 3] = i % 3 == c ? r[i / 3] : m[i / 3][i % 3];
        s[c] = det(k) / det(m);
    }
    return s;
}

// Equal sigmas give every pair the same weight block, W = sigma^2 [[a^2+b^2+1,
// ad+be], [ad+be, d^2+e^2+1]]: the fit is ordinary least squares per coordinate.
TEST(TransformFit, NoisyAffineIsOrdinaryLeastSquaresPerCoordinate)
{
    const int n = 8;
    const double sigma = 0.02;
    const std::vector<double> q = pairsOf(kAffine, n, true, sigma);
    const double x0 = q[0], y0 = q[2];
    double m[3][3] = {}, rX[3] = {}, rY[3] = {};
    for (int i = 0; i < n; ++i) {
        const double row[3] = {q[8 * i] - x0, q[8 * i + 2] - y0, 1.0};
        for (int j = 0; j < 3; ++j) {
            for (int k = 0; k < 3; ++k)
                m[j][k] += row[j] * row[k];
            rX[j] += row[j] * q[8 * i + 4], rY[j] += row[j] * q[8 * i + 6];
        }
    }
    const std::vector<double> u = cramer3(m, rX), v = cramer3(m, rY);
    const Params p{u[0], u[1], u[2] - u[0] * x0 - u[1] * y0, v[0], v[1], v[2] - v[0] * x0 - v[1] * y0};
    const double s2 = sigma * sigma, w11 = s2 * (p[0] * p[0] + p[1] * p[1] + 1),
                 w12 = s2 * (p[0] * p[3] + p[1] * p[4]), w22 = s2 * (p[3] * p[3] + p[4] * p[4] + 1);
    double R = 0, ssr = 0;
    for (int i = 0; i < n; ++i) {
        const Xy t = apply(p, {q[8 * i], q[8 * i + 2]});
        const double vx = q[8 * i + 4] - t.x, vy = q[8 * i + 6] - t.y;
        R += (vx * vx * w22 - 2 * vx * vy * w12 + vy * vy * w11) / (w11 * w22 - w12 * w12);
        ssr += vx * vx + vy * vy;
    }
    const Fit f = fit(6, n, q.data());
    ASSERT_EQ(f.status, 0);
    expectParams(f.p, p, 1e-10);
    EXPECT_NEAR(f.variance, R / (n - 3), 1e-6 * f.variance);  // n - 3, not 2n - 6
    EXPECT_NEAR(f.rms, std::sqrt(ssr) / n * 2.0, 1e-9);
}

TEST(TransformFit, TooFewPairsLeaveEveryOutputUntouched)
{
    const std::vector<double> pairs = pairsOf(kAffine, 4, false);
    for (const auto [k, n, status] :
         {std::array{4, 1, kFail}, {4, 0, kFail}, {6, 2, 1}, {6, -1, 1}, {8, 3, kFail}}) {
        const Fit f = fit(k, n, pairs.data());
        EXPECT_EQ(f.status, status) << k << " parameters, " << n << " pairs";
        EXPECT_TRUE(f.p == Params(k, 7.0) && f.variance == 7.0 && f.rms == 7.0);
    }
}

// Sigmas of 0 make M and then N zero: both inversions fail without a word,
// delta is 0, and the fit "converges" on its start, the similarity through
// the first two pairs, with variance 0.
TEST(TransformFit, ZeroSigmasStopAtTheStartValues)
{
    const std::vector<double> q = pairsOf(kSimilarity, 5, true, 0.0);
    Params start(4);
    tsBestFit_transformCalcParam2d(&start[0], &start[1], &start[2], &start[3], q[0], q[2], q[4], q[6], q[8],
                                   q[10], q[12], q[14]);
    const Fit f = fit(4, 5, q.data());
    EXPECT_TRUE(f.status == 0 && f.p == start && f.variance == 0.0);
}

// Points on one line fix a similarity but make the affine normal equations
// singular: it gives up after ten passes, as it does on a coordinate NaN.
TEST(TransformFit, CollinearOrUnreadablePairsDoNotConverge)
{
    std::vector<double> pairs;
    for (double x : {0.0, 10.0, 20.0, 30.0, 45.0}) {
        const Xy t = apply(kSimilarity, {x, 2 * x + 1});
        pairs.insert(pairs.end(), {x, 0.01, 2 * x + 1, 0.01, t.x, 0.01, t.y, 0.01});
    }
    expectParams(fit(4, 5, pairs.data()).p, kSimilarity, 1e-9);
    const Fit a = fit(6, 5, pairs.data());
    EXPECT_TRUE(a.status == kFail && a.p == Params(6, 0.0));

    pairs = pairsOf(kAffine, 5, true);
    pairs[8 * 4 + 4] = std::numeric_limits<double>::quiet_NaN();
    for (int k : {4, 6, 8}) {
        const Fit f = fit(k, 5, pairs.data());
        EXPECT_TRUE(f.status == kFail && f.p == Params(k, 0.0)) << k;
        EXPECT_TRUE(std::isnan(f.variance) && std::isnan(f.rms));  // written all the same
    }
}

TEST(TransformFit, ExactStartValuesAndPointTransforms)
{
    const Xy p0 = kSource[0], p1 = kSource[1], p2 = kSource[2];
    const Xy q0 = apply(kSimilarity, p0), q1 = apply(kSimilarity, p1);
    const Xy r0 = apply(kAffine, p0), r1 = apply(kAffine, p1), r2 = apply(kAffine, p2);
    Params u(4), v(6);
    EXPECT_EQ(tsBestFit_transformCalcParam2d(&u[0], &u[1], &u[2], &u[3], p0.x, p0.y, q0.x, q0.y, p1.x, p1.y,
                                             q1.x, q1.y),
              0);
    EXPECT_EQ(tsBestFit_transformCalcParamAffine2d(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5], p0.x, p0.y, r0.x,
                                                   r0.y, p1.x, p1.y, r1.x, r1.y, p2.x, p2.y, r2.x, r2.y),
              0);
    expectParams(u, kSimilarity, 1e-7);
    expectParams(v, kAffine, 1e-7);
    // Point transforms against the models above; g = h = 0 divides by exactly 1.
    const Params &s = kSimilarity, &t = kAffine, &w = kProjective;
    double X, Y;
    auto at = [&](Xy a) { return X == a.x && Y == a.y; };
    for (const Xy &p : kSource) {
        EXPECT_TRUE(tsBestFit_transformPtBy2d(&X, &Y, s[0], s[1], s[2], s[3], p.x, p.y) == 0 &&
                    at(apply(s, p)));
        EXPECT_TRUE(tsBestFit_transformPtByAffine2d(&X, &Y, t[0], t[1], t[2], t[3], t[4], t[5], p.x, p.y) ==
                        0 &&
                    at(apply(t, p)));
        tsBestFit_transformPtByProjective2d(&X, &Y, t[0], t[1], t[2], t[3], t[4], t[5], 0, 0, p.x, p.y);
        EXPECT_TRUE(at(apply(t, p)));
        EXPECT_TRUE(tsBestFit_transformPtByProjective2d(&X, &Y, w[0], w[1], w[2], w[3], w[4], w[5], w[6],
                                                        w[7], p.x, p.y) == 0 &&
                    at(apply(w, p)));
    }
    tsBestFit_transformPtByProjective2d(&X, &Y, 1, 0, 0, 0, 1, 0, 1, -2, 1, 1);  // D = 0 is not tested
    EXPECT_TRUE(std::isinf(X));
}

/* ---- The literal dense adjustment ---- */

struct M {
    tsMatrix m{0, 0, nullptr};
    M() = default;
    M(int r, int c) { tsMatrix_memMatrix(&m, r, c); }
    M(int tA, const M &A, int tB, const M &B) { tsMatrix_multMatrix(&m, tA, &A.m, tB, &B.m); }
    M(M &&o) noexcept : m(std::exchange(o.m, tsMatrix{0, 0, nullptr})) {}
    M &operator=(M &&o) noexcept { return std::swap(m, o.m), *this; }
    ~M()
    {
        if (m.data != nullptr) tsMatrix_freeMatrix(&m);
    }
    double &operator()(int i, int j) { return m.data[m.rows * j + i]; }
};

// The projective fit with full Q, B and M written out, from the affine start
// through the first three pairs.
Fit denseProjective(int n, const double *q)
{
    std::vector<double> p(8, 0.0);
    tsBestFit_transformCalcParamAffine2d(&p[0], &p[1], &p[2], &p[3], &p[4], &p[5], q[0], q[2], q[4], q[6],
                                         q[8], q[10], q[12], q[14], q[16], q[18], q[20], q[22]);
    M Q(4 * n, 4 * n), A(0, 0), w(0, 0), Mw(0, 0), delta(0, 0);
    for (int k = 0; k < 4 * n; ++k)
        Q(k, k) = q[2 * k + 1] * q[2 * k + 1];
    bool converged = false;
    for (int pass = 0; pass < 10 && !converged; ++pass) {
        A = M(2 * n, 8), w = M(2 * n, 1);
        M B(2 * n, 4 * n);
        for (int i = 0; i < n; ++i) {
            const double x = q[8 * i], y = q[8 * i + 2], X = q[8 * i + 4], Y = q[8 * i + 6];
            const double a = p[0], b = p[1], c = p[2], d = p[3], e = p[4], f = p[5], g = p[6], h = p[7];
            const double D = g * x + h * y + 1.0, D2 = D * D, P = a * x + b * y + c, R = d * x + e * y + f;
            const double rX[8] = {x / D, y / D, 1.0 / D, 0, 0, 0, -x * P / D2, -y * P / D2};
            const double rY[8] = {0, 0, 0, x / D, y / D, 1.0 / D, -x * R / D2, -y * R / D2};
            for (int k = 0; k < 8; ++k)
                A(2 * i, k) = rX[k], A(2 * i + 1, k) = rY[k];
            B(2 * i, 4 * i) = ((h * y + 1.0) * a - (b * y + c) * g) / D2;
            B(2 * i, 4 * i + 1) = ((g * x + 1.0) * b - (a * x + c) * h) / D2;
            B(2 * i, 4 * i + 2) = -1.0;
            B(2 * i + 1, 4 * i) = ((h * y + 1.0) * d - (e * y + f) * g) / D2;
            B(2 * i + 1, 4 * i + 1) = ((g * x + 1.0) * e - (d * x + f) * h) / D2;
            B(2 * i + 1, 4 * i + 3) = -1.0;
            w(2 * i, 0) = X - P / D, w(2 * i + 1, 0) = Y - R / D;
        }
        M T(0, B, 0, Q);
        Mw = M(0, T, 1, B);
        tsMatrix_invertMatrix(&Mw.m);
        M T2(1, A, 0, Mw);
        M N(0, T2, 0, A), u(0, T2, 0, w);
        tsMatrix_invertMatrix(&N.m);
        delta = M(0, N, 0, u);
        converged = true;
        for (int k = 0; k < 8; ++k) {
            p[k] = p[k] + delta(k, 0);
            converged = converged && std::fabs(delta(k, 0)) < 1e-5;
        }
    }
    M Ad(0, A, 0, delta), V;
    tsMatrix_subtractMatrix(&V.m, &Ad.m, &w.m);
    M VM(1, V, 0, Mw);
    M R(0, VM, 0, V);
    double ss = 0.0;
    for (int i = 0; i < 2 * n; ++i)
        ss += V(i, 0) * V(i, 0);
    Fit f{converged ? 0 : kFail, p, n > 4 ? std::pow(std::sqrt(R(0, 0) / (n - 4)), 2.0) : 0.0,
          std::sqrt(ss) / n * 2.0};
    if (!converged) f.p.assign(8, 0.0);
    return f;
}

// Unequal sigmas with one source point held fixed run block by block; a pair
// with no sigma makes M singular and the pass falls back to dense matrices.
TEST(TransformFit, BlockwisePassesEqualTheDenseMatricesBitForBit)
{
    for (const int zeroPair : {5, 3}) {
        SCOPED_TRACE(zeroPair);
        std::vector<double> pairs = pairsOf(kProjective, 8, true);
        for (size_t k = 1; k < pairs.size(); k += 2)
            pairs[k] = 0.005 + 0.001 * double(k % 7);
        for (int c = 0; c < (zeroPair == 5 ? 2 : 4); ++c)
            pairs[8 * zeroPair + 2 * c + 1] = 0.0;
        const Fit dense = denseProjective(8, pairs.data());
        const Fit f = fit(8, 8, pairs.data());
        EXPECT_EQ(f.status, dense.status);
        EXPECT_EQ(f.p, dense.p);  // bit for bit
        EXPECT_TRUE(f.variance == dense.variance && f.rms == dense.rms);
    }
}

}  // namespace
