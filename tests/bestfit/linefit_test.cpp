// Lines and planes fitted to survey points: exact data, noisy data against
// least squares solved here by other means, degenerate inputs, and the
// point-against-plane queries.
#include <tessar/bestfit.h>
#include <tessar/memory.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kMargin = 0.001;

struct Segment {
    double x1 = 7, y1 = 7, x2 = 7, y2 = 7, error = 7;
};

int32_t fitLine(Segment &g, const std::vector<dpoint3d> &p, const std::vector<double> &sigma)
{
    std::vector<double> o;
    for (size_t i = 0; i < p.size(); ++i)
        o.insert(o.end(), {p[i].x, sigma[i], p[i].y, 99.0});  // sigma y is never read
    return tsBestFit_lineCalc(&g.x1, &g.y1, &g.x2, &g.y2, &g.error, int32_t(p.size()), o.data());
}

// Offset of (x, y) from the line through the segment.
double offsetFrom(const Segment &g, double x, double y)
{
    const double dx = g.x2 - g.x1, dy = g.y2 - g.y1;
    return ((x - g.x1) * dy - (y - g.y1) * dx) / std::hypot(dx, dy);
}

// The weighted principal axis: centroid and the eigenvector of the largest
// eigenvalue of the weighted scatter matrix.
struct Axis {
    double cx, cy, ux, uy;
};

Axis principalAxis(const std::vector<dpoint3d> &p, const std::vector<double> &sigma)
{
    double sw = 0, sx = 0, sy = 0;
    for (size_t i = 0; i < p.size(); ++i) {
        const double w = 1 / (sigma[i] * sigma[i]);
        sw += w, sx += w * p[i].x, sy += w * p[i].y;
    }
    const double cx = sx / sw, cy = sy / sw;
    double cxx = 0, cyy = 0, cxy = 0;
    for (size_t i = 0; i < p.size(); ++i) {
        const double w = 1 / (sigma[i] * sigma[i]), dx = p[i].x - cx, dy = p[i].y - cy;
        cxx += w * dx * dx, cyy += w * dy * dy, cxy += w * dx * dy;
    }
    const double l = (cxx + cyy) / 2 + std::hypot((cxx - cyy) / 2, cxy);
    double ux = cxy, uy = l - cxx;
    if (std::hypot(ux, uy) < 1e-12 * l) ux = l - cyy, uy = cxy;
    const double len = std::hypot(ux, uy);
    return {cx, cy, ux / len, uy / len};
}

/* ---- Line ---- */

// Exact lines of each kind of slope: through every point, ends at the extreme
// points or at most the margin beyond them.
TEST(LineFit, ExactLinesAreRecovered)
{
    // clang-format off
    const struct Row { const char *name; int n; double x0, y0, dx, dy; } rows[] = {
        {"gentle rising", 6, 1000, 2000, 10, 3}, {"steep rising", 6, 1000, 2000, 3, 10},
        {"gentle falling", 6, 1000, 2000, 10, -4}, {"steep falling", 6, 1000, 2000, -2, 9},
        {"45 degrees", 4, 0, 0, 1, 1}, {"-45 degrees", 4, 0, 3, 1, -1}, {"two points", 2, 0, 0, 10, 5},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.name);
        std::vector<dpoint3d> p;
        for (int i = 0; i < r.n; ++i)
            p.push_back({r.x0 + i * r.dx, r.y0 + i * r.dy, 0});
        Segment g;
        ASSERT_EQ(fitLine(g, p, std::vector<double>(r.n, 0.01)), 0);
        EXPECT_LT(g.error, 1e-9);
        for (const dpoint3d &q : p)
            EXPECT_NEAR(offsetFrom(g, q.x, q.y), 0.0, 1e-9);
        // The ends match the first and last points in some order.
        const dpoint3d &a = p.front(), &b = p.back();
        const bool same = std::hypot(g.x1 - a.x, g.y1 - a.y) < std::hypot(g.x1 - b.x, g.y1 - b.y);
        const dpoint3d &e1 = same ? a : b, &e2 = same ? b : a;
        EXPECT_LE(std::max(std::hypot(g.x1 - e1.x, g.y1 - e1.y), std::hypot(g.x2 - e2.x, g.y2 - e2.y)),
                  kMargin * 1.5);
    }
}

// Level and plumb lines take the axis-parallel branch, where the ends keep
// the order in which the widest pair was found.
TEST(LineFit, AxisParallelLines)
{
    // Level: A is the first point (5, 2); B the farthest from it, (1, 2),
    // the first at distance 4; then (9, 2), 8 from B, replaces A.
    Segment g;
    ASSERT_EQ(fitLine(g, {{5, 2, 0}, {1, 2, 0}, {9, 2, 0}, {3, 2, 0}}, {1, 1, 1, 1}), 0);
    EXPECT_TRUE(g.x1 == 9.0 && g.x2 == 1.0 && g.y1 == 2.0 && g.y2 == 2.0);

    // Nearly level, slope about 4e-6: y = the weighted mean of y,
    // (10 + 4 * 10.0002 + 10 + 4 * 10.0002) / 10 = 10.00016.
    ASSERT_EQ(fitLine(g, {{0, 10, 0}, {10, 10.0002, 0}, {20, 10, 0}, {30, 10.0002, 0}}, {1, 0.5, 1, 0.5}), 0);
    EXPECT_TRUE(g.x1 == 0.0 && g.x2 == 30.0);
    EXPECT_TRUE(std::fabs(g.y1 - 10.00016) < 1e-12 && std::fabs(g.y2 - 10.00016) < 1e-12);

    // Plumb at x = 5: the ends' x is the mean x to within 1e-17 of the span
    // and the rounding of 5e17.
    ASSERT_EQ(fitLine(g, {{5, 0, 0}, {5, 10, 0}, {5, 20, 0}, {5, 30, 0}}, {1, 1, 1, 1}), 0);
    EXPECT_TRUE(std::fabs(g.x1 - 5.0) < 1e-14 && std::fabs(g.x2 - 5.0) < 1e-14);
    EXPECT_TRUE(g.y1 == 0.0 && g.y2 == 30.0 && std::fabs(g.error) < 1e-12);
}

TEST(LineFit, TooFewPointsLeaveOutputsUntouched)
{
    for (const int n : {1, 0, -3}) {
        Segment g;
        const double one[4] = {1, 1, 2, 1};
        EXPECT_EQ(tsBestFit_lineCalc(&g.x1, &g.y1, &g.x2, &g.y2, &g.error, n, one), kFail);
        EXPECT_EQ(g.x1 + g.y1 + g.x2 + g.y2 + g.error, 35.0);
        dpoint3d s{7, 7, 7};
        double e = 7, sigma = 1;
        const dpoint3d p{1, 2, 3};
        EXPECT_EQ(tsPoint_computeLineLeastSquares(&s, nullptr, &e, &p, &sigma, n), kFail);
        EXPECT_EQ(s.x + s.y + s.z + e, 28.0);
    }
}

// Noisy road edges with varying sigma: the line is the weighted principal
// axis, its error sqrt(sum of squared offsets) / n, its ends cover the feet of
// all points. The fit uses raw weighted sums, so on national grid coordinates
// ten digits cancel: the direction is held to 1e-5 there.
TEST(LineFit, NoisyRoadEdgeAgainstPrincipalAxis)
{
    const struct Site {
        double x0, y0, direction, length;
    } sites[] = {{120.0, 80.0, 1e-9, 1e-7}, {512300.0, 4123400.0, 1e-5, 1e-3}};
    for (const Site &site : sites)
        for (const double slope : {0.35, -0.8, 2.7, -6.0}) {
            SCOPED_TRACE(testing::Message() << site.x0 << " slope " << slope);
            const int n = 40;
            std::vector<dpoint3d> p;
            std::vector<double> sigma;
            const double len = std::hypot(1.0, slope);
            for (int i = 0; i < n; ++i) {
                const double t = 2.5 * i, e = 0.004 * std::sin(1.9 * i + 0.2);
                p.push_back({site.x0 + (t - e * slope) / len, site.y0 + (t * slope + e) / len, 0});
                sigma.push_back(0.005 + 0.015 * (i % 3) / 2.0);
            }
            Segment g;
            ASSERT_EQ(fitLine(g, p, sigma), 0);
            const Axis ax = principalAxis(p, sigma);
            const double gl = std::hypot(g.x2 - g.x1, g.y2 - g.y1);
            EXPECT_NEAR(((g.x2 - g.x1) * ax.uy - (g.y2 - g.y1) * ax.ux) / gl, 0.0,
                        site.direction);                                 // parallel
            EXPECT_NEAR(offsetFrom(g, ax.cx, ax.cy), 0.0, site.length);  // through the weighted centroid
            double sum = 0;
            for (const dpoint3d &q : p) {
                const double d = (q.x - ax.cx) * ax.uy - (q.y - ax.cy) * ax.ux;
                sum += d * d;
            }
            EXPECT_NEAR(g.error, std::sqrt(sum) / n, site.direction);

            // The ends from the extreme points (first and last here) and their feet.
            const bool byX = std::fabs(slope) <= 1.0;
            const bool frontLow = byX ? p.front().x < p.back().x : p.front().y < p.back().y;
            const dpoint3d &lo = frontLow ? p.front() : p.back(), &hi = frontLow ? p.back() : p.front();
            auto foot = [&](const dpoint3d &q) {
                const double t = (q.x - ax.cx) * ax.ux + (q.y - ax.cy) * ax.uy;
                return dpoint3d{ax.cx + t * ax.ux, ax.cy + t * ax.uy, 0};
            };
            // Along the run axis: the point's own coordinate when its foot lies
            // beyond it, else the foot's plus the margin outward.
            const double l = byX ? lo.x : lo.y, fl = byX ? foot(lo).x : foot(lo).y;
            const double h = byX ? hi.x : hi.y, fh = byX ? foot(hi).x : foot(hi).y;
            EXPECT_NEAR(byX ? g.x1 : g.y1, fl < l ? fl - kMargin : l, site.length);
            EXPECT_NEAR(byX ? g.x2 : g.y2, fh > h ? fh + kMargin : h, site.length);
            for (const dpoint3d &q : p) {
                const double t = ((q.x - g.x1) * (g.x2 - g.x1) + (q.y - g.y1) * (g.y2 - g.y1)) / gl;
                EXPECT_TRUE(t >= 0.0 && t <= gl) << t;
            }
        }
}

// The point form: one sigma for x and y, and the z of the first and last points.
TEST(LineFit, PointFormCarriesHeights)
{
    const std::vector<dpoint3d> p{{0, 0, 101.5}, {10, 5, 90}, {20, 10, 102.25}};
    const std::vector<double> sigma{0.01, 0.01, 0.01};
    Segment g;
    ASSERT_EQ(fitLine(g, p, sigma), 0);
    dpoint3d s{}, e{};
    double error = 7;
    ASSERT_EQ(tsPoint_computeLineLeastSquares(&s, &e, &error, p.data(), sigma.data(), 3), 0);
    EXPECT_TRUE(s.x == g.x1 && s.y == g.y1 && e.x == g.x2 && e.y == g.y2 && error == g.error);
    EXPECT_TRUE(s.z == 101.5 && e.z == 102.25);
    EXPECT_EQ(tsPoint_computeLineLeastSquares(nullptr, nullptr, nullptr, p.data(), sigma.data(), 3), 0);
}

/* ---- Plane ---- */

// Least squares of z = a x + b y + c about the mean point: a and b solve the
// 2 by 2 system of the centred sums, and the plane passes through the mean.
std::vector<double> planeAboutMean(const std::vector<dpoint3d> &p)
{
    double mx = 0, my = 0, mz = 0;
    for (const dpoint3d &q : p)
        mx += q.x / p.size(), my += q.y / p.size(), mz += q.z / p.size();
    double xx = 0, xy = 0, yy = 0, xz = 0, yz = 0;
    for (const dpoint3d &q : p) {
        const double dx = q.x - mx, dy = q.y - my, dz = q.z - mz;
        xx += dx * dx, xy += dx * dy, yy += dy * dy, xz += dx * dz, yz += dy * dz;
    }
    const double det = xx * yy - xy * xy, a = (xz * yy - yz * xy) / det, b = (yz * xx - xz * xy) / det;
    return {a, b, mz - a * mx - b * my};
}

// Spot heights over a car park 60 m by 40 m falling 2 % east and rising
// 1 % north, exactly and with a few millimetres of levelling error.
TEST(PlaneFit, SpotHeightsAgainstNormalEquations)
{
    for (const double error : {0.0, 0.005}) {
        SCOPED_TRACE(error);
        std::vector<dpoint3d> p;
        for (int i = 0; i < 7; ++i)
            for (int j = 0; j < 5; ++j) {
                const double x = 2000.0 + 10.0 * i + 0.3 * j, y = 5000.0 + 10.0 * j;
                p.push_back(
                    {x, y, 55.0 - 0.02 * (x - 2000.0) + 0.01 * (y - 5000.0) + error * std::sin(3.1 * i + j)});
            }
        const int n = int(p.size());
        const std::vector<double> s = planeAboutMean(p);
        double coef[3], se = 7;
        dpoint3d centroid{};
        ASSERT_EQ(tsPoint_computePlane(&centroid, coef, &se, p.data(), n), 0);
        EXPECT_TRUE(std::fabs(coef[0] - s[0]) < 1e-9 && std::fabs(coef[1] - s[1]) < 1e-9);
        EXPECT_NEAR(coef[2], s[2], 1e-6);
        double sx = 0, sy = 0, sz = 0, sum = 0, sumDiff = 0;
        for (const dpoint3d &q : p) {
            const double r = q.z - (s[0] * q.x + s[1] * q.y + s[2]);
            sx += q.x, sy += q.y, sz += q.z, sum += r * r;
            double diff = 0;
            ASSERT_EQ(tsPoint_computeOnPlaneGivenXY(&diff, nullptr, &q, coef), 0);
            sumDiff += diff;
        }
        EXPECT_NEAR(se, std::sqrt(sum) / n, 1e-9);  // not the root mean square
        EXPECT_NEAR(sumDiff, 0.0, n * 1e-9);        // residuals of a fit with a constant sum to 0
        // The plane passes through the mean point.
        EXPECT_TRUE(std::fabs(centroid.x - sx / n) < 1e-9 && std::fabs(centroid.y - sy / n) < 1e-9 &&
                    std::fabs(centroid.z - sz / n) < 1e-9);

        double cx, cy, cz, a, b, c;
        ASSERT_EQ(tsBestFit_planeCalc(&cx, &cy, &cz, &a, &b, &c, nullptr, n, p.data()), 0);
        double api[3];
        ASSERT_EQ(tsApiPoint_computePlane(nullptr, api, nullptr, p.data(), n), 0);
        EXPECT_TRUE(api[0] == a && api[1] == b && api[2] == c);
    }
}

TEST(PlaneFit, DegenerateInputs)
{
    const dpoint3d p[3] = {{0, 0, 1}, {1, 1, 2}, {2, 2, 3}};  // on one line
    double v[7] = {7, 7, 7, 7, 7, 7, 7};
    EXPECT_EQ(tsBestFit_planeCalc(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6], 2, p), kFail);
    for (const double x : v)
        EXPECT_EQ(x, 0.0);  // zeroed before the count is tested
    EXPECT_EQ(tsBestFit_planeCalc(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5], nullptr, 3, p), 0);
    EXPECT_TRUE(v[0] == 1.0 && v[1] == 1.0);  // the centroid is still the mean

    dpoint3d centroid{7, 7, 7};
    double coef[3] = {7, 7, 7}, se = 7;
    EXPECT_EQ(tsPoint_computePlane(&centroid, coef, &se, p, 2), kFail);
    EXPECT_EQ(tsApiPoint_computePlane(&centroid, coef, &se, p, -1), kFail);
    EXPECT_EQ(centroid.x + coef[0] + se, 21.0);
}

// Against the plane z = 0.5 x - 0.25 y + 10 and the plane z = x, whose
// distance from (x, y, z) is |x - z| / sqrt 2.
TEST(PlaneFit, PointAgainstPlane)
{
    const double tilted[3] = {0.5, -0.25, 10}, diagonal[3] = {1, 0, 0};
    const dpoint3d p{4, 8, 12};
    double diff = 7;
    dpoint3d out{};
    ASSERT_EQ(tsPoint_computeOnPlaneGivenXY(&diff, &out, &p, tilted), 0);
    EXPECT_TRUE(out.x == 4.0 && out.y == 8.0 && out.z == 10.0 && diff == 2.0);  // z = 2 - 2 + 10

    // clang-format off
    const struct Row { dpoint3d p; double d; dpoint3d foot; } rows[] = {
        {{0, 0, 2}, std::sqrt(2.0), {1, 0, 1}},   // above
        {{2, 0, 0}, -std::sqrt(2.0), {1, 0, 1}},  // below
        {{3, 5, 3}, 0.0, {3, 5, 3}},              // on it
    };
    // clang-format on
    for (const Row &r : rows) {
        double d = 7;
        dpoint3d foot{};
        ASSERT_EQ(tsPoint_computeMinimumDistancefromPlane(&d, &foot, &r.p, diagonal), 0);
        EXPECT_NEAR(d, r.d, 1e-15);
        EXPECT_TRUE(std::fabs(foot.x - r.foot.x) < 1e-15 && std::fabs(foot.y - r.foot.y) < 1e-15 &&
                    std::fabs(foot.z - r.foot.z) < 1e-15);
    }
    EXPECT_EQ(tsPoint_computeMinimumDistancefromPlane(nullptr, nullptr, &p, tilted), 0);
    EXPECT_EQ(tsPoint_computeMinimumDistancefromPlane(&diff, nullptr, nullptr, tilted), kFail);
    EXPECT_EQ(tsPoint_computeMinimumDistancefromPlane(&diff, nullptr, &p, nullptr), kFail);
    EXPECT_EQ(tsPoint_computeOnPlaneGivenXY(&diff, nullptr, nullptr, tilted), kFail);
    EXPECT_EQ(tsPoint_computeOnPlaneGivenXY(&diff, nullptr, &p, nullptr), kFail);
}

/* ---- Smoothing ---- */

// The recursive fit turns every run away at its first step: valid arguments
// end with no string, count 0 and 32768; bad ones leave the outputs alone.
TEST(SmoothLineString, NoStringIsReturned)
{
    std::vector<dpoint3d> p;
    std::vector<double> sigma;
    for (int i = 0; i < 30; ++i) {
        p.push_back({100.0 + 5.0 * i, 200.0 + 0.01 * i * i + 0.003 * std::sin(2.0 * i), 40.0 + 0.1 * i});
        sigma.push_back(0.005);
    }
    dpoint3d stale{};
    dpoint3d *out = &stale;
    int32_t count = 7;
    EXPECT_EQ(tsLine_computeSmoothLineStringLeastSquares(&out, &count, p.data(), sigma.data(), 30, 0.01),
              kFail);
    EXPECT_TRUE(out == nullptr && count == 0);

    for (int bad = 0; bad < 8; ++bad) {  // null out, count, input, sigma; n 1; tolerance 0, -1, NaN
        const double tolerance[] = {0.01, 0.01, 0.01, 0.01, 0.01, 0.0, -1, std::nan("")};
        dpoint3d *o = p.data();
        int32_t c = 7;
        EXPECT_EQ(tsLine_computeSmoothLineStringLeastSquares(
                      bad == 0 ? nullptr : &o, bad == 1 ? nullptr : &c, bad == 2 ? nullptr : p.data(),
                      bad == 3 ? nullptr : sigma.data(), bad == 4 ? 1 : 30, tolerance[bad]),
                  kFail)
            << bad;
        EXPECT_TRUE(o == p.data() && c == 7);
    }
}

}  // namespace
