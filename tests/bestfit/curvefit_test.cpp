// Curve fits: circles through three points against worked circles, a circle
// adjusted to points surveyed on a roundabout kerb against the geometric
// (orthogonal distance) fit computed here, and vertical curves adjusted to
// levels against least squares solved by hand.
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
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j)
                k[i][j] = j == c ? r[i] : m[i][j];
        s[c] = det(k) / det(m);
    }
    return s;
}

/* ---- Circle through three points ---- */

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
        SCOPED_TRACE(testing::Message()
                     << t.x1 << "," << t.y1 << " " << t.x2 << "," << t.y2 << " " << t.x3 << "," << t.y3);
        // Failures: radius 0.0 and the centre untouched; the matrix form leaves all three.
        double cx = 7, cy = 7, r = 7;
        EXPECT_EQ(tsBestFit_horz3PtCurveCalc(&cx, &cy, &r, t.x1, t.y1, t.x2, t.y2, t.x3, t.y3), t.status);
        EXPECT_NEAR(cx, t.cx, 1e-12);
        EXPECT_NEAR(cy, t.cy, 1e-12);
        EXPECT_NEAR(r, t.r, 1e-12);
        EXPECT_EQ(tsBestFit_horz3PtCurveCalc(nullptr, nullptr, &r, t.x1, t.y1, t.x2, t.y2, t.x3, t.y3),
                  t.status);
        cx = cy = r = 7;
        EXPECT_EQ(tsBestFit_horz3PtCurveCalcMatrix(&cx, &cy, &r, t.x1, t.y1, t.x2, t.y2, t.x3, t.y3),
                  t.matrixStatus);
        if (t.status == t.matrixStatus) {
            EXPECT_NEAR(cx, t.cx, 1e-12);
            EXPECT_NEAR(cy, t.cy, 1e-12);
            EXPECT_NEAR(r, t.status == 0 ? t.r : 7.0, 1e-12);
        }
    }
}

/* ---- Circle adjusted to many points ---- */

// A roundabout on a national grid: the island's kerb, radius 14 m, surveyed
// at every 25 degrees over 300 degrees (the entry is not surveyed), exactly
// and with a few millimetres of error. With equal sigmas the adjustment
// weighs (d^2 - r^2) by 1 / (4 d^2), which is the geometric fit to second
// order in the errors; that fit is computed here by Gauss-Newton on the
// distances d_i - r. The outputs come as northing, easting, radius.
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
    EXPECT_EQ(y, 7.0);
    EXPECT_EQ(x, 7.0);
    EXPECT_EQ(r, 7.0);
    EXPECT_EQ(line, before);

    // The first triple is collinear, so the start circle comes from points
    // 1, 2, 3; the four points lie on no one circle and are still fitted.
    std::vector<double> bent{0, 0.01, 0, 0.01, 5, 0.01, 0, 0.01, 20, 0.01, 0, 0.01, 10, 0.01, 10, 0.01};
    EXPECT_EQ(tsBestFit_horzCurveCalc(&y, &x, &r, 4, bent.data()), 0);
    EXPECT_GT(r, 0.0);
}

/* ---- Vertical curve ---- */

// A sag from -2 % to +3 % over 200 m starting at chainage 1000 m, level 50 m:
// y = 50 - 0.02 (x - 1000) + 1.25e-4 (x - 1000)^2
//   = 1.25e-4 x^2 - 0.27 x + 195 in the caller's chainages.
double sag(double x)
{
    return 50.0 - 0.02 * (x - 1000.0) + 1.25e-4 * (x - 1000.0) * (x - 1000.0);
}

TEST(CurveFit, ThreeLevelsOnAParabola)
{
    const std::vector<double> obs{1000,      0.0,   sag(1000), 0.001, 1100,      0.0,
                                  sag(1100), 0.001, 1200,      0.0,   sag(1200), 0.001};
    double a, b, c, g0, g1, L, k, se;
    ASSERT_EQ(tsBestFit_vertCurveCalc(&a, &b, &c, &g0, &g1, &L, &k, &se, 3, obs.data()), 0);
    EXPECT_NEAR(a, 1.25e-4, 1e-12);
    EXPECT_NEAR(b, -0.27, 1e-9);
    EXPECT_NEAR(c, 195.0, 1e-6);
    EXPECT_NEAR(g0, -0.02, 1e-9);
    EXPECT_NEAR(g1, 0.03, 1e-9);
    EXPECT_EQ(L, 200.0);
    EXPECT_NEAR(k, 2.5e-4, 1e-12);
    EXPECT_LT(se, 1e-8);
}

// Levels of a crest every 10 m with a few millimetres of error, chainages
// taken as exact (sigma x = 0): the fit is the ordinary least squares
// parabola, solved here in chainages reduced to the first one.
TEST(CurveFit, LevelsOfACrestAgainstLeastSquares)
{
    const int n = 15;
    const double x0 = 2340.0;
    std::vector<double> obs;
    for (int i = 0; i < n; ++i) {
        const double t = 10.0 * i;
        obs.insert(obs.end(),
                   {x0 + t, 0.0, 82.4 + 0.025 * t - 1.4e-4 * t * t + 0.004 * std::sin(1.9 * i), 0.005});
    }
    double m[3][3] = {}, rhs[3] = {};
    for (int i = 0; i < n; ++i) {
        const double t = obs[4 * i] - x0, row[3] = {t * t, t, 1.0};
        for (int j = 0; j < 3; ++j) {
            for (int k = 0; k < 3; ++k)
                m[j][k] += row[j] * row[k];
            rhs[j] += row[j] * obs[4 * i + 2];
        }
    }
    const std::vector<double> s = cramer3(m, rhs);  // y = s0 t^2 + s1 t + s2
    double ssr = 0;
    for (int i = 0; i < n; ++i) {
        const double t = obs[4 * i] - x0;
        ssr += std::pow(obs[4 * i + 2] - (s[0] * t * t + s[1] * t + s[2]), 2);
    }
    double a, b, c, g0, g1, L, k, se;
    ASSERT_EQ(tsBestFit_vertCurveCalc(&a, &b, &c, &g0, &g1, &L, &k, &se, n, obs.data()), 0);
    EXPECT_NEAR(a, s[0], 1e-12);
    EXPECT_NEAR(k, 2 * s[0], 1e-12);
    EXPECT_NEAR(g0, s[1], 1e-8);
    EXPECT_NEAR(g1, s[1] + 2 * s[0] * 140.0, 1e-8);
    EXPECT_EQ(L, 140.0);
    EXPECT_NEAR(a * x0 * x0 + b * x0 + c, s[2], 1e-6);  // level at the first chainage
    EXPECT_NEAR(se, std::sqrt(ssr) / n, 1e-8);
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
    for (double v : out)
        EXPECT_EQ(v, 7.0);
    // Every level at one chainage: no curve, all eight outputs 0.0.
    EXPECT_EQ(fit(4, {100, 0, 5, 0.01, 100, 0, 5.1, 0.01, 100, 0, 5.2, 0.01, 100, 0, 5.05, 0.01}), kFail);
    for (double v : out)
        EXPECT_EQ(v, 0.0);
}

}  // namespace
