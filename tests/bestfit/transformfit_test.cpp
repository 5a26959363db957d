// Plane transform fits: known transforms applied to control points and fitted
// back, noisy pairs against least squares solved by hand, the quality
// figures, degenerate inputs, and the fit as the literal sequence of dense
// tsMatrix products, which the library must reproduce bit for bit.
#include <tessar/bestfit.h>
#include <tessar/transform.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Xy {
    double x, y;
};

// A site grid (metres) of a road job, in the source system.
const std::vector<Xy> kSource{{102.5, 210.0}, {348.0, 75.5}, {421.0, 388.0}, {150.0, 412.5},
                              {262.0, 251.0}, {35.0, 305.0}, {480.5, 160.0}, {305.0, 470.0}};

// Small deterministic errors, a few millimetres.
double noise(int k)
{
    return 0.004 * std::sin(1.7 * k + 0.3);
}

using Model = Xy (*)(const std::vector<double> &, Xy);

Xy similarity(const std::vector<double> &p, Xy s)
{
    return {p[0] * s.x - p[1] * s.y + p[2], p[1] * s.x + p[0] * s.y + p[3]};
}
Xy affine(const std::vector<double> &p, Xy s)
{
    return {p[0] * s.x + p[1] * s.y + p[2], p[3] * s.x + p[4] * s.y + p[5]};
}
Xy projective(const std::vector<double> &p, Xy s)
{
    const double D = p[6] * s.x + p[7] * s.y + 1.0;
    return {(p[0] * s.x + p[1] * s.y + p[2]) / D, (p[3] * s.x + p[4] * s.y + p[5]) / D};
}

// Control pairs: the first n source points, their images, noise added to the
// images if asked, one sigma on every coordinate.
std::vector<double> pairsOf(Model model, const std::vector<double> &p, int n, bool noisy, double sigma = 0.01)
{
    std::vector<double> pairs;
    for (int i = 0; i < n; ++i) {
        const Xy s = kSource[i];
        Xy t = model(p, s);
        if (noisy) t = {t.x + noise(2 * i), t.y + noise(2 * i + 1)};
        pairs.insert(pairs.end(), {s.x, sigma, s.y, sigma, t.x, sigma, t.y, sigma});
    }
    return pairs;
}

struct Fit {
    int32_t status;
    std::vector<double> p;
    double variance = -1.0, rms = -1.0;
};

// Runs the fit with k parameters; outputs start at 7.0 so untouched ones show.
Fit fit(int k, int n, const double *pairs)
{
    Fit r{0, std::vector<double>(8, 7.0), 7.0, 7.0};
    double *q = r.p.data();
    if (k == 4) r.status = tsBestFit_transform2d(q, q + 1, q + 2, q + 3, &r.variance, &r.rms, n, pairs);
    if (k == 6)
        r.status =
            tsBestFit_transformAffine2d(q, q + 1, q + 2, q + 3, q + 4, q + 5, &r.variance, &r.rms, n, pairs);
    if (k == 8)
        r.status = tsBestFit_transformProjective2d(q, q + 1, q + 2, q + 3, q + 4, q + 5, q + 6, q + 7,
                                                   &r.variance, &r.rms, n, pairs);
    r.p.resize(k);
    return r;
}

const std::vector<double> kSimilarity{0.9996 * std::cos(0.3), 0.9996 * std::sin(0.3), 512300.0, 4123400.0};
const std::vector<double> kAffine{1.0012, 0.0150, 512300.0, -0.0210, 0.9987, 4123400.0};
const std::vector<double> kProjective{1.02, 0.05, 1200.0, -0.03, 0.98, 800.0, 2e-4, -1e-4};

TEST(TransformFit, ExactPairsAreRecovered)
{
    struct Row {
        int k, n;
        Model model;
        const std::vector<double> *truth;
        bool zeroVariance;  // n is not above the model's divisor limit
    };
    const Row rows[] = {
        {4, 2, similarity, &kSimilarity, true}, {4, 8, similarity, &kSimilarity, false},
        {6, 3, affine, &kAffine, true},         {6, 8, affine, &kAffine, false},
        {8, 4, projective, &kProjective, true}, {8, 8, projective, &kProjective, false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(testing::Message() << row.k << " parameters, " << row.n << " pairs");
        const std::vector<double> pairs = pairsOf(row.model, *row.truth, row.n, false);
        const Fit f = fit(row.k, row.n, pairs.data());
        ASSERT_EQ(f.status, 0);
        for (int j = 0; j < row.k; ++j)
            EXPECT_NEAR(f.p[j], (*row.truth)[j], 1e-7 * std::max(1.0, std::fabs((*row.truth)[j]))) << j;
        if (row.zeroVariance) {
            EXPECT_EQ(f.variance, 0.0);
        }
        EXPECT_LT(f.variance, 1e-12);
        EXPECT_LT(f.rms, 1e-6);
    }
}

TEST(TransformFit, ProjectiveFitOfAffineDataHasNoPerspective)
{
    const std::vector<double> pairs = pairsOf(affine, kAffine, 8, true);
    const Fit f = fit(8, 8, pairs.data());
    ASSERT_EQ(f.status, 0);
    EXPECT_LT(std::fabs(f.p[6]), 1e-5);
    EXPECT_LT(std::fabs(f.p[7]), 1e-5);
}

// Equal sigmas make M a multiple of the identity (similarity) or the same
// 2 x 2 block for every pair (affine), so the fit is the ordinary least
// squares solution of X and Y on the source coordinates.
TEST(TransformFit, NoisySimilarityIsOrdinaryLeastSquares)
{
    const int n = 8;
    const double sigma = 0.01;
    const std::vector<double> pairs = pairsOf(similarity, kSimilarity, n, true, sigma);
    // Centred normal equations, solved by hand:
    // a = sum(x'X' + y'Y') / S, b = sum(x'Y' - y'X') / S, S = sum(x'^2 + y'^2).
    double mx = 0, my = 0, mX = 0, mY = 0;
    for (int i = 0; i < n; ++i) {
        mx += pairs[8 * i] / n, my += pairs[8 * i + 2] / n, mX += pairs[8 * i + 4] / n,
            mY += pairs[8 * i + 6] / n;
    }
    double S = 0, Sa = 0, Sb = 0;
    for (int i = 0; i < n; ++i) {
        const double x = pairs[8 * i] - mx, y = pairs[8 * i + 2] - my;
        const double X = pairs[8 * i + 4] - mX, Y = pairs[8 * i + 6] - mY;
        S += x * x + y * y, Sa += x * X + y * Y, Sb += x * Y - y * X;
    }
    const double a = Sa / S, b = Sb / S, c = mX - a * mx + b * my, d = mY - b * mx - a * my;
    double ssr = 0;
    for (int i = 0; i < n; ++i) {
        const Xy t = similarity({a, b, c, d}, {pairs[8 * i], pairs[8 * i + 2]});
        ssr += std::pow(pairs[8 * i + 4] - t.x, 2) + std::pow(pairs[8 * i + 6] - t.y, 2);
    }
    const Fit f = fit(4, n, pairs.data());
    ASSERT_EQ(f.status, 0);
    EXPECT_NEAR(f.p[0], a, 1e-10);
    EXPECT_NEAR(f.p[1], b, 1e-10);
    EXPECT_NEAR(f.p[2], c, 1e-6);
    EXPECT_NEAR(f.p[3], d, 1e-6);
    // M = I / (sigma^2 (1 + a^2 + b^2)); the divisor is 2n - 4.
    EXPECT_NEAR(f.variance, ssr / (sigma * sigma * (1 + a * a + b * b)) / (2 * n - 4), 1e-6 * f.variance);
    EXPECT_NEAR(f.rms, std::sqrt(ssr) / n * 2.0, 1e-9);
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
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j)
                k[i][j] = j == c ? r[i] : m[i][j];
        s[c] = det(k) / det(m);
    }
    return s;
}

TEST(TransformFit, NoisyAffineIsOrdinaryLeastSquaresPerCoordinate)
{
    const int n = 8;
    const double sigma = 0.02;
    const std::vector<double> pairs = pairsOf(affine, kAffine, n, true, sigma);
    // Normal equations of X (and of Y) on (x, y, 1), in coordinates reduced
    // to the first point so that Cramer's rule stays well conditioned.
    const double x0 = pairs[0], y0 = pairs[2];
    double m[3][3] = {}, rX[3] = {}, rY[3] = {};
    for (int i = 0; i < n; ++i) {
        const double row[3] = {pairs[8 * i] - x0, pairs[8 * i + 2] - y0, 1.0};
        for (int j = 0; j < 3; ++j) {
            for (int k = 0; k < 3; ++k)
                m[j][k] += row[j] * row[k];
            rX[j] += row[j] * pairs[8 * i + 4];
            rY[j] += row[j] * pairs[8 * i + 6];
        }
    }
    const std::vector<double> pX = cramer3(m, rX), pY = cramer3(m, rY);
    const std::vector<double> p{pX[0], pX[1], pX[2] - pX[0] * x0 - pX[1] * y0,
                                pY[0], pY[1], pY[2] - pY[0] * x0 - pY[1] * y0};
    const Fit f = fit(6, n, pairs.data());
    ASSERT_EQ(f.status, 0);
    for (int j = 0; j < 6; ++j)
        EXPECT_NEAR(f.p[j], p[j], j % 3 == 2 ? 1e-5 : 1e-10) << j;
    // Every pair has the weight W^-1, W = sigma^2 [[a^2+b^2+1, ad+be], [ad+be, d^2+e^2+1]];
    // the divisor is n - 3.
    const double w11 = sigma * sigma * (p[0] * p[0] + p[1] * p[1] + 1),
                 w22 = sigma * sigma * (p[3] * p[3] + p[4] * p[4] + 1);
    const double w12 = sigma * sigma * (p[0] * p[3] + p[1] * p[4]), det = w11 * w22 - w12 * w12;
    double R = 0, ssr = 0;
    for (int i = 0; i < n; ++i) {
        const Xy t = affine(p, {pairs[8 * i], pairs[8 * i + 2]});
        const double vx = pairs[8 * i + 4] - t.x, vy = pairs[8 * i + 6] - t.y;
        R += (vx * vx * w22 - 2 * vx * vy * w12 + vy * vy * w11) / det;
        ssr += vx * vx + vy * vy;
    }
    EXPECT_NEAR(f.variance, R / (n - 3), 1e-6 * f.variance);
    EXPECT_NEAR(f.rms, std::sqrt(ssr) / n * 2.0, 1e-9);
}

TEST(TransformFit, TooFewPairsLeaveEveryOutputUntouched)
{
    const std::vector<double> pairs = pairsOf(affine, kAffine, 4, false);
    const struct {
        int k, n;
        int32_t status;
    } rows[] = {{4, 1, kFail}, {4, 0, kFail}, {6, 2, 1}, {6, -1, 1}, {8, 3, kFail}};
    for (const auto &row : rows) {
        const Fit f = fit(row.k, row.n, pairs.data());
        EXPECT_EQ(f.status, row.status) << row.k << " parameters, " << row.n << " pairs";
        for (double v : f.p)
            EXPECT_EQ(v, 7.0);
        EXPECT_EQ(f.variance, 7.0);
        EXPECT_EQ(f.rms, 7.0);
    }
}

// Sigmas of 0 make M and then N zero: both inversions fail without a word,
// delta is 0, and the fit "converges" on its start, the similarity through
// the first two pairs, with variance 0.
TEST(TransformFit, ZeroSigmasStopAtTheStartValues)
{
    const int n = 5;
    const std::vector<double> pairs = pairsOf(similarity, kSimilarity, n, true, 0.0);
    // Through two pairs: (a + i b) = (Z2 - Z1) / (z2 - z1) in complex numbers.
    const double dx = pairs[8] - pairs[0], dy = pairs[10] - pairs[2];
    const double dX = pairs[12] - pairs[4], dY = pairs[14] - pairs[6];
    const double a = (dX * dx + dY * dy) / (dx * dx + dy * dy), b = (dY * dx - dX * dy) / (dx * dx + dy * dy);
    const std::vector<double> start{a, b, pairs[4] - a * pairs[0] + b * pairs[2],
                                    pairs[6] - b * pairs[0] - a * pairs[2]};
    double ssr = 0;
    for (int i = 0; i < n; ++i) {
        const Xy t = similarity(start, {pairs[8 * i], pairs[8 * i + 2]});
        ssr += std::pow(pairs[8 * i + 4] - t.x, 2) + std::pow(pairs[8 * i + 6] - t.y, 2);
    }
    const Fit f = fit(4, n, pairs.data());
    EXPECT_EQ(f.status, 0);
    for (int j = 0; j < 4; ++j)
        EXPECT_NEAR(f.p[j], start[j], 1e-6) << j;
    EXPECT_EQ(f.variance, 0.0);
    EXPECT_NEAR(f.rms, std::sqrt(ssr) / n * 2.0, 1e-6);
}

// Source points along one road centreline (y = 2 x + 1): two points fix a
// similarity, so it is recovered; the affine normal equations are singular,
// the corrections grow without bound, and the fit gives up after ten passes.
TEST(TransformFit, CollinearControlPoints)
{
    std::vector<double> pairs;
    for (double x : {0.0, 10.0, 20.0, 30.0, 45.0}) {
        const Xy t = similarity(kSimilarity, {x, 2 * x + 1});
        pairs.insert(pairs.end(), {x, 0.01, 2 * x + 1, 0.01, t.x, 0.01, t.y, 0.01});
    }
    const Fit s = fit(4, 5, pairs.data());
    EXPECT_EQ(s.status, 0);
    for (int j = 0; j < 4; ++j)
        EXPECT_NEAR(s.p[j], kSimilarity[j], 1e-6) << j;
    const Fit a = fit(6, 5, pairs.data());
    EXPECT_EQ(a.status, kFail);
    for (double v : a.p)
        EXPECT_EQ(v, 0.0);
}

TEST(TransformFit, NotConvergedZeroesTheParameters)
{
    std::vector<double> pairs = pairsOf(affine, kAffine, 5, true);
    pairs[8 * 4 + 4] = kNaN;  // one target X unreadable
    for (int k : {4, 6, 8}) {
        const Fit f = fit(k, 5, pairs.data());
        EXPECT_EQ(f.status, kFail) << k;
        for (double v : f.p)
            EXPECT_EQ(v, 0.0);
        EXPECT_TRUE(std::isnan(f.variance));
        EXPECT_TRUE(std::isnan(f.rms));
    }
}

TEST(TransformFit, ExactStartValuesAndPointTransforms)
{
    const std::vector<double> s = kSimilarity, t = kAffine;
    const Xy p0 = kSource[0], p1 = kSource[1], p2 = kSource[2];
    const Xy q0 = similarity(s, p0), q1 = similarity(s, p1);
    double a, b, c, d, e, f;
    EXPECT_EQ(tsBestFit_transformCalcParam2d(&a, &b, &c, &d, p0.x, p0.y, q0.x, q0.y, p1.x, p1.y, q1.x, q1.y),
              0);
    EXPECT_NEAR(a, s[0], 1e-10);
    EXPECT_NEAR(b, s[1], 1e-10);
    EXPECT_NEAR(c, s[2], 1e-7);
    EXPECT_NEAR(d, s[3], 1e-7);
    const Xy r0 = affine(t, p0), r1 = affine(t, p1), r2 = affine(t, p2);
    EXPECT_EQ(tsBestFit_transformCalcParamAffine2d(&a, &b, &c, &d, &e, &f, p0.x, p0.y, r0.x, r0.y, p1.x, p1.y,
                                                   r1.x, r1.y, p2.x, p2.y, r2.x, r2.y),
              0);
    const double got[6] = {a, b, c, d, e, f};
    for (int j = 0; j < 6; ++j)
        EXPECT_NEAR(got[j], t[j], 1e-7 * std::max(1.0, std::fabs(t[j]))) << j;
    // Coincident pairs: meaningless values, status 0 all the same.
    EXPECT_EQ(tsBestFit_transformCalcParam2d(&a, &b, &c, &d, 1, 2, 3, 4, 1, 2, 3, 4), 0);

    // A similarity is the affine (a, -b, c, b, a, d); a projective transform
    // without perspective (g = h = 0, D = 1 exactly) is its affine part.
    double X1, Y1, X2, Y2, X3, Y3;
    for (const Xy &p : kSource) {
        tsBestFit_transformPtBy2d(&X1, &Y1, s[0], s[1], s[2], s[3], p.x, p.y);
        tsBestFit_transformPtByAffine2d(&X2, &Y2, s[0], -s[1], s[2], s[1], s[0], s[3], p.x, p.y);
        EXPECT_EQ(X1, X2);
        EXPECT_EQ(Y1, Y2);
        tsBestFit_transformPtByAffine2d(&X2, &Y2, t[0], t[1], t[2], t[3], t[4], t[5], p.x, p.y);
        EXPECT_EQ(
            tsBestFit_transformPtByProjective2d(&X3, &Y3, t[0], t[1], t[2], t[3], t[4], t[5], 0, 0, p.x, p.y),
            0);
        EXPECT_EQ(X2, X3);
        EXPECT_EQ(Y2, Y3);
    }
    // (1 x + 0 y + 0) / (x - 2 y + 1) at (1, 1): D = 0 is not tested.
    EXPECT_EQ(tsBestFit_transformPtByProjective2d(&X3, &Y3, 1, 0, 0, 0, 1, 0, 1, -2, 1, 1), 0);
    EXPECT_TRUE(std::isinf(X3));
}

/* ---- The literal dense adjustment ---- */

struct M {
    tsMatrix m{0, 0, nullptr};
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

// The projective fit with full Q, B and M, as its design writes it, from the
// affine start through the first three pairs.
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
    M Ad(0, A, 0, delta), V(0, 0);
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
// with no sigma at all makes M singular, and the library then runs the pass
// on the dense matrices, whose failed inversion it must reproduce too.
TEST(TransformFit, BlockwisePassesEqualTheDenseMatricesBitForBit)
{
    for (const int zeroPair : {5, 3}) {
        SCOPED_TRACE(zeroPair);
        std::vector<double> pairs = pairsOf(projective, kProjective, 8, true);
        for (size_t k = 1; k < pairs.size(); k += 2)
            pairs[k] = 0.005 + 0.001 * double(k % 7);
        for (int c = 0; c < (zeroPair == 5 ? 2 : 4); ++c)
            pairs[8 * zeroPair + 2 * c + 1] = 0.0;
        const Fit dense = denseProjective(8, pairs.data());
        const Fit f = fit(8, 8, pairs.data());
        EXPECT_EQ(f.status, dense.status);
        for (int j = 0; j < 8; ++j)
            EXPECT_EQ(f.p[j], dense.p[j]) << j;
        EXPECT_EQ(f.variance, dense.variance);
        EXPECT_EQ(f.rms, dense.rms);
    }
}

}  // namespace
