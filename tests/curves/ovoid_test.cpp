// Ovoid parameters and the circle through a point osculating a clothoid,
// checked against A^2 = R s, tau = s^2 / 2A^2 and an integrated clothoid.
#include <cmath>
#include <cstdint>
#include <numbers>

#include <gtest/gtest.h>

#include <tessar/clothoid.h>
#include <tessar/frame.h>
#include <tessar/ovoid.h>

namespace {

using Real = long double;
constexpr int32_t kFail = TESSAR_FAILURE;

// The error word after a call, the word first set to 32768 (unknown code 10).
template <class Call> int32_t errorAfter(Call call)
{
    double ignored = 0.0;
    UTMAT_CalculerParametreClot(10, 1.0, 1.0, &ignored);
    call();
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// The clothoid at s by composite Simpson on x = int cos(u^2 / 2A^2),
// y = sign(A) int sin(u^2 / 2A^2); with R, the centre of curvature R there.
dpoint2d integrated(double A, double s, double R = 0.0)
{
    const int n = 4000;  // even
    const Real h = Real(s) / n, k = 1 / (2 * Real(A) * A), sign = A > 0 ? 1 : -1, tau = Real(s) * s * k;
    Real cx = 0, sy = 0;
    for (int i = 0; i <= n; ++i) {
        const Real u = h * i, w = (i == 0 || i == n) ? 1 : (i % 2 == 1 ? 4 : 2);
        cx += w * std::cos(u * u * k);
        sy += w * std::sin(u * u * k);
    }
    return {double(cx * h / 3 - R * std::sin(tau)), double(sign * (sy * h / 3 + R * std::cos(tau)))};
}

double distance(const dpoint2d &a, const dpoint2d &b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

/* ---- Parameter of an ovoid ---- */

struct Ovoid {
    double A = 12.5;
    int32_t valid = 7, error = -1;
};

Ovoid ovoid(int32_t code, double R1, double R2, double v)
{
    Ovoid o;
    o.error = errorAfter([&] { UTMAT_CalculerParametreOve(code, R1, R2, v, &o.A, &o.valid); });
    return o;
}

// The radii lie at s = A^2 / R (0 for R1 = 0), between which the length or
// tau = s^2 / 2A^2 changes by v, whatever the order and signs.
TEST(OvoidParameter, LengthAndDeflectionFollowTheClothoidRelations)
{
    const int32_t L = TESSAR_OVOID_LENGTH, D = TESSAR_OVOID_DEFLECTION;
    const double rows[][4] = {{L, 300, 200, 60},    {L, 200, 300, 60},  {L, -300, 200, -60},
                              {L, 1000, 450, 85.5}, {D, 300, 200, 0.1}, {D, 450, -1000, 0.25},
                              {L, 0, 100, 50},      {D, 0, 250, 0.2}};
    for (const auto &[code, R1, R2, v] : rows) {
        const Ovoid o = ovoid(int32_t(code), R1, R2, v);
        ASSERT_TRUE(o.error == 0 && o.valid == 1 && o.A > 0.0) << code << ": " << R1 << " " << R2 << " " << v;
        const double s1 = R1 == 0.0 ? 0.0 : o.A * o.A / std::fabs(R1), s2 = o.A * o.A / std::fabs(R2);
        const double change = code == L ? s2 - s1 : (s2 * s2 - s1 * s1) / (2 * o.A * o.A);
        EXPECT_NEAR(std::fabs(change), std::fabs(v), 1e-12 * std::fabs(v)) << code << ": " << R1 << " " << R2;
    }
    EXPECT_DOUBLE_EQ(ovoid(L, 0.0, 100.0, 50.0).A, std::sqrt(5000.0));  // A^2 = R2 L
    EXPECT_DOUBLE_EQ(ovoid(D, 300.0, 200.0, 0.1).A, 120.0);  // A^2 = 2 0.1 300^2 200^2 / (300^2 - 200^2)
}

// Radii equal within 1e-4 leave A alone, valid; unknown codes fail.
TEST(OvoidParameter, EqualRadiiAndUnknownCodes)
{
    for (int32_t code : {TESSAR_OVOID_LENGTH, TESSAR_OVOID_DEFLECTION})
        for (double R2 : {150.0, 150.00005, -150.0}) {
            const Ovoid o = ovoid(code, 150.0, R2, 30.0);
            EXPECT_TRUE(o.A == 12.5 && o.valid == 1 && o.error == 0) << code << " " << R2;
        }
    for (int32_t code : {0, 4, -1}) {
        const Ovoid o = ovoid(code, 300.0, 200.0, 60.0);
        EXPECT_TRUE(o.A == 12.5 && o.valid == 0 && o.error == kFail) << code;
    }
}

// From R1 = 0 the gap is the shift y(L) - R2 (1 - cos tau), L = A^2 / R2 (a gap
// of 0: A = 0, still valid); else larger R - distance of centres - smaller R.
// A smaller radius near 0 fails in the nested conversion, A left alone.
TEST(OvoidParameter, GapMeasuredOnTheIntegratedCurve)
{
    for (double shift : {0.25, 1.0, 3.0}) {
        const Ovoid o = ovoid(TESSAR_OVOID_GAP, 0.0, 200.0, shift);
        const double L = o.A * o.A / 200.0, tau = L * L / (2 * o.A * o.A);
        ASSERT_TRUE(o.error == 0 && o.valid == 1);
        EXPECT_NEAR(integrated(o.A, L).y - 200.0 * (1 - std::cos(tau)), shift, 1.5e-4) << shift;
    }
    const Ovoid zero = ovoid(TESSAR_OVOID_GAP, 0.0, 200.0, 0.0);
    EXPECT_TRUE(zero.A == 0.0 && zero.valid == 1 && zero.error == 0);
    const double rows[][3] = {{300.0, 150.0, 0.5}, {1200.0, 400.0, 2.0}, {500.0, 450.0, 0.05}};
    for (const auto &[R1, R2, gap] : rows) {
        const Ovoid o = ovoid(TESSAR_OVOID_GAP, R1, R2, gap);
        ASSERT_TRUE(o.error == 0 && o.valid == 1);
        EXPECT_EQ(ovoid(TESSAR_OVOID_GAP, -R2, R1, -gap).A, o.A);
        const dpoint2d c1 = integrated(o.A, o.A * o.A / R1, R1), c2 = integrated(o.A, o.A * o.A / R2, R2);
        EXPECT_NEAR(R1 - distance(c1, c2) - R2, gap, 1.5e-4) << R1 << " " << R2;
    }
    const Ovoid o = ovoid(TESSAR_OVOID_GAP, 300.0, 0.00005, 1.0);
    EXPECT_TRUE(o.error == kFail && o.valid == 0 && o.A == 12.5);
}

/* ---- Circle through a point osculating a clothoid ---- */

struct Circle {
    dpoint2d centre{0, 0}, tangency{0, 0};
    double R = -1.0;
    int32_t count = -1, error = -1;
};

Circle osculating(double A, double s1, double s2, dpoint2d p)
{
    Circle c;
    c.error = errorAfter(
        [&] { UTMAT_CalculerCerTgClotPs1Pt(A, s1, s2, &p, &c.centre, &c.R, &c.tangency, &c.count); });
    return c;
}

// The circle passes through p and osculates the integrated clothoid at A^2 / R.
void expectOsculatingThrough(double A, const Circle &c, const dpoint2d &p)
{
    ASSERT_TRUE(c.count == 1 && c.error == 0);
    const double s = A * A / c.R;
    EXPECT_LT(distance(c.tangency, integrated(A, s)), 1e-9);
    EXPECT_LT(distance(c.centre, integrated(A, s, c.R)), 1e-9);
    EXPECT_NEAR(distance(c.centre, p), c.R, 1.5e-4);
}

// The far end of the diameter at s = 80 (R = 125), either turn; then points
// on both sides, behind the origin and next to it (radius 0 there: no snap).
TEST(OsculatingCircle, ThroughPointsAcrossTheReachOfTheSearch)
{
    for (double A : {100.0, -100.0}) {
        const dpoint2d centre = integrated(A, 80.0, 125.0), foot = integrated(A, 80.0);
        const dpoint2d p{2 * centre.x - foot.x, 2 * centre.y - foot.y};
        const Circle c = osculating(A, 0.0, 300.0, p);
        expectOsculatingThrough(A, c, p);
        EXPECT_NEAR(c.R, 125.0, 2e-4) << A;
    }
    for (const dpoint2d &p :
         {dpoint2d{20.0, 150.0}, {30.0, 1000.0}, {150.0, 10.0}, {-20.0, 30.0}, {1.0, 0.5}}) {
        SCOPED_TRACE(testing::Message() << "p " << p.x << ", " << p.y);
        expectOsculatingThrough(100.0, osculating(100.0, 0.0, 150.0, p), p);
    }
}

// Within the tolerance 2 of an end: the circle there (R = 100^2 / 50, or / 150);
// with 0.5 the same p is searched for.
TEST(OsculatingCircle, PointNearAnEndSnapsToIt)
{
    const double A = 100.0;
    const dpoint2d P1 = integrated(A, 50.0), P2 = integrated(A, 150.0), p{P1.x + 0.6, P1.y - 0.8};
    const Circle c1 = osculating(A, 50.0, 150.0, p), c2 = osculating(A, 50.0, 150.0, {P2.x - 1.5, P2.y});
    ASSERT_TRUE(c1.count == 1 && c2.count == 1);
    EXPECT_NEAR(c1.R, 200.0, 1e-9);
    EXPECT_LT(distance(c1.tangency, P1), 1e-9);
    EXPECT_LT(distance(c1.centre, integrated(A, 50.0, 200.0)), 1e-9);
    EXPECT_NEAR(c2.R, 10000.0 / 150.0, 1e-9);
    EXPECT_LT(distance(c2.tangency, P2), 1e-9);
    UTMAT_setDistanceTolerance(0.5);
    const Circle c3 = osculating(A, 50.0, 150.0, p);
    UTMAT_setDistanceTolerance(2.0);
    expectOsculatingThrough(A, c3, p);
    EXPECT_GT(std::fabs(c3.R - 200.0), 1.0);
}

// No solution, no error: inside the circle of tau = pi/2 (R = A / sqrt(pi)) or
// far on the convex side. A = 0 gives nothing; A near 0 fails.
TEST(OsculatingCircle, NoSolutionAndDegenerateParameters)
{
    const double A = 100.0, Ra = A / std::sqrt(std::numbers::pi);
    const dpoint2d smallest = integrated(A, A * std::sqrt(std::numbers::pi), Ra);
    ASSERT_LT(distance({60.0, 40.0}, smallest), Ra);
    for (const dpoint2d &p : {smallest, dpoint2d{60.0, 40.0}, {0.0, -5000.0}}) {
        const Circle c = osculating(A, -1.0, -1.0, p);
        EXPECT_TRUE(c.count == 0 && c.R == 0.0 && c.error == 0) << p.x << ", " << p.y;
    }
    const Circle zero = osculating(0.0, 0.0, 100.0, {1.0, 1.0});
    EXPECT_TRUE(zero.count == 0 && zero.R == 0.0 && zero.error == 0);
    const Circle tiny = osculating(5e-5, 0.0, 1.0, {1.0, 1.0});
    EXPECT_TRUE(tiny.count == 0 && tiny.error == kFail);
}

}  // namespace
