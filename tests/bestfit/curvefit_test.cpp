// Curve fits: circles through three points against worked circles, a circle
// adjusted to a roundabout kerb against the geometric fit computed here, and
// vertical curves adjusted to levels against least squares solved by hand.
#include <tessar/bestfit.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;

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

TEST(CurveFit, CircleThroughThreePoints)
{
    const struct Row {
        double x1, y1, x2, y2, x3, y3;
        int32_t status, matrixStatus;
        double cx, cy, r;
    } rows[] = {
        {8, 4, 3, 9, -2, 4, 0, 0, 3, 4, 5},              // centre (3, 4), radius 5
        {0, 0, 2, 0, 0, 2, 0, 0, 1, 1, std::sqrt(2.0)},  // right angle at the origin
        {0, 0, 1, 1, 2, 2, kFail, kFail, 7, 7, 0},       // on one line
        {0, 0, 0, 0, 4, 0, kFail, kFail, 7, 7, 0},       // two points the same
        {0, 0, 1, 0, 2, 1e-10, kFail, 0, 7, 7, 0},       // determinant 1e-10, below the fixed limit
    };
    for (const Row &t : rows) {
        SCOPED_TRACE(testing::Message() << t.x2 << "," << t.y2 << " " << t.x3 << "," << t.y3);
        // Failures: radius 0.0 and the centre untouched; the matrix form leaves all three.
        double cx = 7, cy = 7, r = 7;
        EXPECT_EQ(tsBestFit_horz3PtCurveCalc(&cx, &cy, &r, t.x1, t.y1, t.x2, t.y2, t.x3, t.y3), t.status);
        EXPECT_TRUE(std::fabs(cx - t.cx) < 1e-12 && std::fabs(cy - t.cy) < 1e-12 &&
                    std::fabs(r - t.r) < 1e-12);
        EXPECT_EQ(tsBestFit_horz3PtCurveCalc(nullptr, nullptr, &r, t.x1, t.y1, t.x2, t.y2, t.x3, t.y3),
                  t.status);
        cx = cy = r = 7;
        EXPECT_EQ(tsBestFit_horz3PtCurveCalcMatrix(&cx, &cy, &r, t.x1, t.y1, t.x2, t.y2, t.x3, t.y3),
                  t.matrixStatus);
        if (t.status == t.matrixStatus) {
            EXPECT_TRUE(std::fabs(cx - t.cx) < 1e-12 && std::fabs(cy - t.cy) < 1e-12 &&
                        std::fabs(r - (t.status == 0 ? t.r : 7.0)) < 1e-12);
        }
    }
}

// A roundabout island, radius 14 m on a national grid, surveyed every 25
// degrees over 300, exactly and with millimetres of error. With equal sigmas
// the adjustment is the geometric fit to second order in the errors; that fit
// is computed here by Gauss-Newton on d_i - r. Outputs: northing, easting, radius.
TEST(CurveFit, RoundaboutKerbAgainstTheGeometricFit)
{
    const double cx0 = 512345.678, cy0 = 4123456.789, r0 = 14.0;
    const int n = 13;
    for (const double error : {0.0, 0.006}) {
        std::vector<double> obs;
        for (int i = 0; i < n; ++i) {
            const double t = (25.0 * i) * M_PI / 180.0, e = error * std::sin(2.3 * i + 0.4);
            obs.insert(obs.end(), {cx0 + (r0 + e) * std::cos(t), 0.005, cy0 + (r0 + e) * std::sin(t), 0.005});
        }
        double cx = cx0 + 0.5, cy = cy0 - 0.5, r = 13.0;
        for (int it = 0; it < 20; ++it) {
            double m[3][3] = {}, g[3] = {};
            for (int i = 0; i < n; ++i) {
                const double dx = obs[4 * i] - cx, dy = obs[4 * i + 2] - cy, d = std::hypot(dx, dy);
                const double J[3] = {-dx / d, -dy / d, -1.0};
                for (int j = 0; j < 3; ++j) {
                    for (int k = 0; k < 3; ++k)
                        m[j][k] += J[j] * J[k];
                    g[j] -= J[j] * (d - r);
                }
            }
            const std::vector<double> s = cramer3(m, g);
            cx += s[0], cy += s[1], r += s[2];
        }
        const std::vector<double> before = obs;
        double first = 0, second = 0, radius = 0;
        ASSERT_EQ(tsBestFit_horzCurveCalc(&first, &second, &radius, n, obs.data()), 0);
        EXPECT_NEAR(first, cy, 1e-5);
        EXPECT_NEAR(second, cx, 1e-5);
        EXPECT_NEAR(radius, r, 1e-5);
        for (size_t k = 0; k < obs.size(); ++k)
            EXPECT_NEAR(obs[k], before[k], 1e-9) << k;  // restored, up to rounding
    }
}

TEST(CurveFit, CircleFitDegenerateInputs)
{
    double y = 7, x = 7, r = 7;
    std::vector<double> line{0, 0.01, 0, 0.01, 10, 0.01, 5, 0.01, 20, 0.01, 10, 0.01, 30, 0.01, 15, 0.01};
    const std::vector<double> before = line;
    EXPECT_EQ(tsBestFit_horzCurveCalc(&y, &x, &r, 2, line.data()), kFail);
    EXPECT_EQ(tsBestFit_horzCurveCalc(&y, &x, &r, 4, line.data()), kFail);  // every triple collinear
    EXPECT_TRUE(y == 7.0 && x == 7.0 && r == 7.0);
    EXPECT_EQ(line, before);
    // The first triple is collinear, so the start circle comes from points 1, 2, 3.
    std::vector<double> bent{0, 0.01, 0, 0.01, 5, 0.01, 0, 0.01, 20, 0.01, 0, 0.01, 10, 0.01, 10, 0.01};
    EXPECT_EQ(tsBestFit_horzCurveCalc(&y, &x, &r, 4, bent.data()), 0);
    EXPECT_GT(r, 0.0);
}

// Levels with millimetres of error (or none), chainages exact (sigma x = 0):
// the fit is the ordinary least squares parabola, solved here in chainages
// reduced to the first. The exact case is a sag -2 % to +3 % over 200 m
// from chainage 1000, level 50: y = 1.25e-4 x^2 - 0.27 x + 195.
TEST(CurveFit, VerticalCurveAgainstLeastSquares)
{
    const struct Row {
        int n;
        double x0, step, level, grade, half, noise, L;
    } rows[] = {{3, 1000, 100, 50, -0.02, 1.25e-4, 0, 200}, {15, 2340, 10, 82.4, 0.025, -1.4e-4, 0.004, 140}};
    for (const Row &t : rows) {
        std::vector<double> obs;
        for (int i = 0; i < t.n; ++i) {
            const double d = t.step * i;
            obs.insert(
                obs.end(),
                {t.x0 + d, 0.0, t.level + t.grade * d + t.half * d * d + t.noise * std::sin(1.9 * i), 0.005});
        }
        double m[3][3] = {}, rhs[3] = {};
        for (int i = 0; i < t.n; ++i) {
            const double d = obs[4 * i] - t.x0, row[3] = {d * d, d, 1.0};
            for (int j = 0; j < 3; ++j) {
                for (int k = 0; k < 3; ++k)
                    m[j][k] += row[j] * row[k];
                rhs[j] += row[j] * obs[4 * i + 2];
            }
        }
        const std::vector<double> s = cramer3(m, rhs);  // y = s0 d^2 + s1 d + s2
        double ssr = 0;
        for (int i = 0; i < t.n; ++i) {
            const double d = obs[4 * i] - t.x0;
            ssr += std::pow(obs[4 * i + 2] - (s[0] * d * d + s[1] * d + s[2]), 2);
        }
        double a, b, c, g0, g1, L, k, se;
        ASSERT_EQ(tsBestFit_vertCurveCalc(&a, &b, &c, &g0, &g1, &L, &k, &se, t.n, obs.data()), 0);
        EXPECT_NEAR(a, s[0], 1e-12);
        EXPECT_NEAR(k, 2 * s[0], 1e-12);
        EXPECT_NEAR(g0, s[1], 1e-8);
        EXPECT_NEAR(g1, s[1] + 2 * s[0] * t.L, 1e-8);
        EXPECT_EQ(L, t.L);
        EXPECT_NEAR(a * t.x0 * t.x0 + b * t.x0 + c, s[2], 1e-6);  // level at the first chainage
        EXPECT_NEAR(se, std::sqrt(ssr) / t.n, 1e-8);
        if (t.n == 3) {
            EXPECT_TRUE(std::fabs(a - 1.25e-4) < 1e-12 && std::fabs(b + 0.27) < 1e-9 &&
                        std::fabs(c - 195) < 1e-6);
        }
    }
}

TEST(CurveFit, VerticalCurveDegenerateInputs)
{
    double out[8] = {7, 7, 7, 7, 7, 7, 7, 7};
    auto fit = [&](int n, const std::vector<double> &obs) {
        return tsBestFit_vertCurveCalc(&out[0], &out[1], &out[2], &out[3], &out[4], &out[5], &out[6], &out[7],
                                       n, obs.data());
    };
    // Too few: 1, as the affine transform fit answers, outputs untouched.
    EXPECT_EQ(fit(2, {100, 0, 5, 0.01, 110, 0, 5.2, 0.01}), 1);
    EXPECT_EQ(std::vector<double>(out, out + 8), std::vector<double>(8, 7.0));
    // Every level at one chainage: no curve, all eight outputs 0.0.
    EXPECT_EQ(fit(4, {100, 0, 5, 0.01, 100, 0, 5.1, 0.01, 100, 0, 5.2, 0.01, 100, 0, 5.05, 0.01}), kFail);
    EXPECT_EQ(std::vector<double>(out, out + 8), std::vector<double>(8, 0.0));
}

}  // namespace
