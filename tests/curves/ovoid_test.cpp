// Ovoid parameters and the circle through a point that osculates a clothoid,
// checked against the clothoid relations A^2 = R s and tau = s^2 / (2 A^2)
// and against clothoid points integrated numerically in the test itself.
#include <cmath>
#include <cstdint>
#include <numbers>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/ovoid.h>

namespace {

using Real = long double;

constexpr int32_t kFail = TESSAR_FAILURE;
constexpr double kPi = std::numbers::pi;

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// Leaves 32768 in the error word (an unknown ovoid code).
void provokeFailure()
{
    double A = 0.0;
    int32_t valid = 0;
    UTMAT_CalculerParametreOve(9, 1.0, 2.0, 1.0, &A, &valid);
    ASSERT_EQ(errorWord(), kFail);
}

// ---- A clothoid integrated in the test ----

// The clothoid of parameter A at abscissa s, by composite Simpson on
// x = integral cos(u^2 / 2A^2), y = sign(A) integral sin(u^2 / 2A^2).
struct CurvePoint {
    Real x, y, tau;
};

CurvePoint integrated(double A, double s)
{
    const int n = 4000;  // even
    const Real h = Real(s) / n;
    const Real k = 1 / (2 * Real(A) * A);
    Real cx = 0, sy = 0;
    for (int i = 0; i <= n; ++i) {
        const Real u = h * i;
        const Real w = (i == 0 || i == n) ? 1 : (i % 2 == 1 ? 4 : 2);
        cx += w * std::cos(u * u * k);
        sy += w * std::sin(u * u * k);
    }
    const Real sign = A > 0 ? 1 : -1;
    return {cx * h / 3, sign * sy * h / 3, Real(s) * s * k};
}

// The centre of the circle of radius R osculating at abscissa s: R along
// the normal on the side the curve turns to, (-sin tau, cos tau) for a
// positive A and its mirror (-sin tau, -cos tau) for a negative one.
dpoint2d centreAt(double A, double s, double R)
{
    const CurvePoint p = integrated(A, s);
    const Real sign = A > 0 ? 1 : -1;
    return {double(p.x - R * std::sin(p.tau)), double(p.y + R * sign * std::cos(p.tau))};
}

dpoint2d pointAt(double A, double s)
{
    const CurvePoint p = integrated(A, s);
    return {double(p.x), double(p.y)};
}

double distance(const dpoint2d &a, const dpoint2d &b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

/* ---- Parameter of an ovoid ---- */

TEST(OvoidParameter, LengthAndDeflectionFollowTheClothoidRelations)
{
    struct Row {
        int32_t code;
        double R1, R2, v;
    };
    const Row rows[] = {
        {TESSAR_OVOID_LENGTH, 300.0, 200.0, 60.0},    // A^2 = 300 200 60 / 100 = 36000
        {TESSAR_OVOID_LENGTH, 200.0, 300.0, 60.0},    // the order of the radii plays no part
        {TESSAR_OVOID_LENGTH, -300.0, 200.0, -60.0},  // nor their signs
        {TESSAR_OVOID_LENGTH, 1000.0, 450.0, 85.5},
        {TESSAR_OVOID_DEFLECTION, 300.0, 200.0, 0.1},  // A^2 = 2 0.1 9e4 4e4 / 5e4
        {TESSAR_OVOID_DEFLECTION, 450.0, -1000.0, 0.25},
        {TESSAR_OVOID_LENGTH, 0.0, 100.0, 50.0},     // from the origin: L = A^2 / R2
        {TESSAR_OVOID_DEFLECTION, 0.0, 250.0, 0.2},  // from the origin: tau = A^2 / (2 R2^2)
    };
    for (const Row &row : rows) {
        double A = -1.0;
        int32_t valid = -1;
        provokeFailure();
        UTMAT_CalculerParametreOve(row.code, row.R1, row.R2, row.v, &A, &valid);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(valid, 1);
        ASSERT_GT(A, 0.0);
        // The abscissas where the clothoid has the two radii: s = A^2 / R,
        // with s = 0 at an infinite radius.
        const double r1 = std::fabs(row.R1), r2 = std::fabs(row.R2), v = std::fabs(row.v);
        const double s1 = r1 == 0.0 ? 0.0 : A * A / r1;
        const double s2 = A * A / r2;
        if (row.code == TESSAR_OVOID_LENGTH) {
            EXPECT_NEAR(std::fabs(s2 - s1), v, 1e-12 * v) << row.R1 << " " << row.R2;
        } else {
            const double tau1 = s1 * s1 / (2 * A * A), tau2 = s2 * s2 / (2 * A * A);
            EXPECT_NEAR(std::fabs(tau2 - tau1), v, 1e-12 * v) << row.R1 << " " << row.R2;
        }
    }
}

TEST(OvoidParameter, HandWorkedValues)
{
    double A = 0.0;
    int32_t valid = 0;
    UTMAT_CalculerParametreOve(TESSAR_OVOID_LENGTH, 0.0, 100.0, 50.0, &A, &valid);
    EXPECT_DOUBLE_EQ(A, std::sqrt(5000.0));
    UTMAT_CalculerParametreOve(TESSAR_OVOID_LENGTH, 300.0, 200.0, 60.0, &A, &valid);
    EXPECT_DOUBLE_EQ(A, std::sqrt(36000.0));
    // 2 * 0.1 * 300^2 * 200^2 / (300^2 - 200^2) = 14400
    UTMAT_CalculerParametreOve(TESSAR_OVOID_DEFLECTION, 300.0, 200.0, 0.1, &A, &valid);
    EXPECT_DOUBLE_EQ(A, 120.0);
}

TEST(OvoidParameter, EqualRadiiLeaveTheParameterAsItWas)
{
    // Equal within the precision 1e-4: no transition; valid all the same.
    for (int32_t code : {TESSAR_OVOID_LENGTH, TESSAR_OVOID_DEFLECTION}) {
        for (double R2 : {150.0, 150.00005, -150.0}) {
            double A = 12.5;
            int32_t valid = 0;
            UTMAT_CalculerParametreOve(code, 150.0, R2, 30.0, &A, &valid);
            EXPECT_EQ(A, 12.5);
            EXPECT_EQ(valid, 1);
            EXPECT_EQ(errorWord(), 0);
        }
    }
}

TEST(OvoidParameter, UnknownCodeFails)
{
    for (int32_t code : {0, 4, -1}) {
        double A = 12.5;
        int32_t valid = 7;
        UTMAT_CalculerParametreOve(code, 300.0, 200.0, 60.0, &A, &valid);
        EXPECT_EQ(errorWord(), kFail);
        EXPECT_EQ(valid, 0);
        EXPECT_EQ(A, 12.5);
    }
}

TEST(OvoidParameter, GapFromTheOriginIsTheShiftAtTheRadius)
{
    // From an infinite radius the gap is the shift of the circle R2 from the
    // tangent at the origin: p = y(L) - R2 (1 - cos tau), L = A^2 / R2.
    for (double shift : {0.25, 1.0, 3.0}) {
        const double R2 = 200.0;
        double A = 0.0;
        int32_t valid = 0;
        UTMAT_CalculerParametreOve(TESSAR_OVOID_GAP, 0.0, R2, shift, &A, &valid);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(valid, 1);
        const double L = A * A / R2;
        const CurvePoint p = integrated(A, L);
        const double found = double(p.y - R2 * (1 - std::cos(p.tau)));
        EXPECT_NEAR(found, shift, 1.5e-4) << "shift " << shift;
    }
}

TEST(OvoidParameter, InvalidShiftFromTheOriginStillReportsValid)
{
    // A gap of 0 from the origin is an invalid shift for the clothoid's own
    // conversion, which reports it without an error: A comes back 0 and the
    // ovoid call reports valid all the same.
    double A = 12.5;
    int32_t valid = 0;
    UTMAT_CalculerParametreOve(TESSAR_OVOID_GAP, 0.0, 200.0, 0.0, &A, &valid);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_EQ(valid, 1);
    EXPECT_EQ(A, 0.0);
}

TEST(OvoidParameter, GapBetweenTwoCirclesMeasuredOnTheIntegratedCurve)
{
    struct Row {
        double R1, R2, gap;
    };
    const Row rows[] = {{300.0, 150.0, 0.5}, {1200.0, 400.0, 2.0}, {500.0, 450.0, 0.05}};
    for (const Row &row : rows) {
        double A = 0.0, swapped = 0.0;
        int32_t valid = 0;
        UTMAT_CalculerParametreOve(TESSAR_OVOID_GAP, row.R1, row.R2, row.gap, &A, &valid);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(valid, 1);
        UTMAT_CalculerParametreOve(TESSAR_OVOID_GAP, -row.R2, row.R1, -row.gap, &swapped, &valid);
        EXPECT_EQ(swapped, A) << "the larger radius is found whatever the order and signs";

        // The two osculating circles of the clothoid A, one inside the other:
        // the gap is the larger radius less the distance of the centres less
        // the smaller radius.
        const double c1s = A * A / row.R1, c2s = A * A / row.R2;
        const dpoint2d c1 = centreAt(A, c1s, row.R1), c2 = centreAt(A, c2s, row.R2);
        const double gap = row.R1 - distance(c1, c2) - row.R2;
        EXPECT_NEAR(gap, row.gap, 1.5e-4) << row.R1 << " " << row.R2;
    }
}

TEST(OvoidParameter, GapSearchWithAVanishingSmallRadiusFails)
{
    // The smaller radius within the precision of 0 makes the nested
    // conversion of A from (radius, deflection) invalid: the search fails
    // and leaves A alone.
    double A = 12.5;
    int32_t valid = 7;
    UTMAT_CalculerParametreOve(TESSAR_OVOID_GAP, 300.0, 0.00005, 1.0, &A, &valid);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(valid, 0);
    EXPECT_EQ(A, 12.5);
}

/* ---- Circle through a point osculating a clothoid ---- */

struct Circle {
    dpoint2d centre{0, 0};
    double R = -1.0;
    dpoint2d tangency{0, 0};
    int32_t count = -1;
};

Circle osculating(double A, double s1, double s2, dpoint2d p)
{
    Circle c;
    UTMAT_CalculerCerTgClotPs1Pt(A, s1, s2, &p, &c.centre, &c.R, &c.tangency, &c.count);
    return c;
}

// The circle found must pass through p and osculate the integrated clothoid:
// its tangency point lies on the curve at the abscissa A^2 / R, and its
// centre R along the normal there.
void expectOsculatingThrough(double A, const Circle &c, const dpoint2d &p)
{
    ASSERT_EQ(c.count, 1);
    const double s = A * A / c.R;
    EXPECT_LT(distance(c.tangency, pointAt(A, s)), 1e-9);
    EXPECT_LT(distance(c.centre, centreAt(A, s, c.R)), 1e-9);
    EXPECT_NEAR(distance(c.centre, p), c.R, 1.5e-4);
}

TEST(OsculatingCircle, ThroughAPointOppositeTheTangency)
{
    // A = 100, s = 80: R = 125. p is the far end of that circle's diameter
    // from the curve, on the concave side; no end of the piece is near.
    for (double A : {100.0, -100.0}) {
        const double s = 80.0, R = 125.0;
        const dpoint2d centre = centreAt(A, s, R);
        const dpoint2d foot = pointAt(A, s);
        const dpoint2d p{2 * centre.x - foot.x, 2 * centre.y - foot.y};
        provokeFailure();
        const Circle c = osculating(A, 0.0, 300.0, p);
        EXPECT_EQ(errorWord(), 0);
        expectOsculatingThrough(A, c, p);
        EXPECT_NEAR(c.R, R, 2e-4) << "A " << A;
        EXPECT_LT(distance(c.tangency, foot), 2e-4);
    }
}

TEST(OsculatingCircle, PointsAcrossTheReachOfTheSearch)
{
    // Points on either side of the curve and behind its origin: each lies
    // between the circles of deflection 0.001 (R = 2236, centre near
    // (2.2, 2236)) and pi / 2 (R = 56.4, centre near (81.8, 77.7)).
    const double A = 100.0;
    const dpoint2d points[] = {{20.0, 150.0}, {30.0, 1000.0}, {150.0, 10.0}, {-20.0, 30.0}};
    for (const dpoint2d &p : points) {
        SCOPED_TRACE(testing::Message() << "p " << p.x << ", " << p.y);
        const Circle c = osculating(A, -1.0, -1.0, p);
        EXPECT_EQ(errorWord(), 0);
        expectOsculatingThrough(A, c, p);
    }
}

TEST(OsculatingCircle, PointNearAnEndSnapsToIt)
{
    // A = 100, piece from 50 to 150. p lies 1 from P1 (within the default
    // tolerance of 2): the circle osculating at s1, R = 100^2 / 50 = 200.
    const double A = 100.0;
    const dpoint2d P1 = pointAt(A, 50.0), P2 = pointAt(A, 150.0);
    const Circle c1 = osculating(A, 50.0, 150.0, {P1.x + 0.6, P1.y - 0.8});
    ASSERT_EQ(c1.count, 1);
    EXPECT_NEAR(c1.R, 200.0, 1e-9);
    EXPECT_LT(distance(c1.tangency, P1), 1e-9);
    EXPECT_LT(distance(c1.centre, centreAt(A, 50.0, 200.0)), 1e-9);

    // And at the other end: R = 100^2 / 150.
    const Circle c2 = osculating(A, 50.0, 150.0, {P2.x - 1.5, P2.y});
    ASSERT_EQ(c2.count, 1);
    EXPECT_NEAR(c2.R, 10000.0 / 150.0, 1e-9);
    EXPECT_LT(distance(c2.tangency, P2), 1e-9);

    // With a tolerance of 0.5 the same point is searched for: the circle
    // passes through it and is not the one at s1.
    UTMAT_setDistanceTolerance(0.5);
    const dpoint2d p{P1.x + 0.6, P1.y - 0.8};
    const Circle c3 = osculating(A, 50.0, 150.0, p);
    UTMAT_setDistanceTolerance(2.0);
    expectOsculatingThrough(A, c3, p);
    EXPECT_GT(std::fabs(c3.R - 200.0), 1.0);
}

TEST(OsculatingCircle, EndAtTheOriginDoesNotSnap)
{
    // The radius at s = 0 is given as 0, so a p near the origin is searched
    // for like any other point.
    const double A = 100.0;
    const dpoint2d p{1.0, 0.5};
    const Circle c = osculating(A, 0.0, 150.0, p);
    EXPECT_EQ(errorWord(), 0);
    expectOsculatingThrough(A, c, p);
}

TEST(OsculatingCircle, NoSolutionCases)
{
    const double A = 100.0;
    // The centre of the circle of deflection pi / 2 (L = A sqrt(pi),
    // R = A / sqrt(pi)): inside the smallest circle searched.
    const double La = A * std::sqrt(kPi), Ra = A / std::sqrt(kPi);
    const dpoint2d smallest = centreAt(A, La, Ra);
    const Circle inner = osculating(A, -1.0, -1.0, smallest);
    EXPECT_EQ(inner.count, 0);
    EXPECT_EQ(inner.R, 0.0);
    EXPECT_EQ(errorWord(), 0);
    // (60, 40) on the concave side is 43.5 from that centre: still inside.
    const dpoint2d near{60.0, 40.0};
    ASSERT_LT(distance(near, smallest), Ra);
    EXPECT_EQ(osculating(A, -1.0, -1.0, near).count, 0);
    // Far out on the convex side: outside the largest circle searched.
    const Circle outer = osculating(A, -1.0, -1.0, {0.0, -5000.0});
    EXPECT_EQ(outer.count, 0);
    EXPECT_EQ(errorWord(), 0);
}

TEST(OsculatingCircle, ZeroParameterGivesNothing)
{
    provokeFailure();
    const Circle c = osculating(0.0, 0.0, 100.0, {1.0, 1.0});
    EXPECT_EQ(c.count, 0);
    EXPECT_EQ(c.R, 0.0);
    EXPECT_EQ(errorWord(), 0);
}

TEST(OsculatingCircle, ParameterNearZeroFailsInTheConversion)
{
    // |A| within the precision of 0 is invalid for the radius conversion.
    const Circle c = osculating(5e-5, 0.0, 1.0, {1.0, 1.0});
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(c.count, 0);
}

}  // namespace
