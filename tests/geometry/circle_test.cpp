// Circles, roots and triangle tests of the UTMAT kernel, worked by hand.
#include <tessar/circle.h>
#include <tessar/frame.h>
#include <tessar/vector.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
using P = dpoint2d;

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

void expectPoint(const dpoint2d &p, double x, double y, double tol = 1e-12)
{
    EXPECT_NEAR(p.x, x, tol);
    EXPECT_NEAR(p.y, y, tol);
}

TEST(CirclePoints, ProjectionPointAtAngleClassAndNulls)
{
    const dpoint2d centre{1, 1}, p{4, 5};  // p - centre = (3, 4): cos 0.6, sin 0.8
    dpoint2d point{};
    double angle = 0.0;
    UTMAT_ProjeterPtSurCercle(&centre, 2.0, &p, &point, &angle);
    expectPoint(point, 2.2, 2.6);
    EXPECT_NEAR(angle, std::atan2(4.0, 3.0), 1e-15);
    angle = 9.0;
    UTMAT_ProjeterPtSurCercle(&centre, 2.0, &p, &point, nullptr);  // the angle is optional
    EXPECT_EQ(errorWord(), 0);
    UTMAT_CalculerPtSurCercleAngle(&centre, 2.0, std::acos(-1.0) / 2, &point);
    expectPoint(point, 1.0, 3.0);
    // Distances 4.98, 4.995, 5.02 from a circle of radius 5, tol 0.01.
    for (const auto &[x, expected] : {std::pair{5.98, -1}, {5.995, 0}, {6.02, 1}}) {
        const dpoint2d q{x, 1};
        EXPECT_EQ(UTMAT_CalculerClassePtCercle(&centre, &q, 5.0, 0.01), expected) << x;
    }
    dpoint2d kept{7, 7};  // null pointers fail and write nothing
    UTMAT_ProjeterPtSurCercle(&centre, 1.0, nullptr, &kept, &angle);
    EXPECT_EQ(errorWord(), kFail);
    UTMAT_CalculerPtSurCercleAngle(nullptr, 1.0, 0.0, &kept);
    EXPECT_EQ(errorWord(), kFail);
    expectPoint(kept, 7, 7, 0.0);
    EXPECT_EQ(UTMAT_CalculerClassePtCercle(&centre, nullptr, 1.0, 0.0), 0);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(angle, 9.0);
}

TEST(CircleIntersect, LineAndCircleThenTwoCircles)
{
    const dpoint2d centre{0, 0};  // R = 5, tol 0.01
    // y as (0, 2, -2y), heading west: at 3 forward then behind (3-4-5); within tol: the foot.
    const std::tuple<double, int32_t, dpoint2d, dpoint2d> rows[] = {{3.0, 2, {-4, 3}, {4, 3}},
                                                                    {5.01, 1, {0, 5.01}, {9, 9}},
                                                                    {4.995, 1, {0, 4.995}, {9, 9}},
                                                                    {5.02, 0, {9, 9}, {9, 9}}};
    for (const auto &[y, expected, first, second] : rows) {
        UTMAT_Droite line{0, 2, -2 * y};
        dpoint2d out[2] = {{9, 9}, {9, 9}};
        int32_t count = -7;
        UTMAT_CalculerIntersectionDroiteCercle(&line, &centre, 5.0, 0.01, out, &count);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(count, expected) << y;
        EXPECT_TRUE(line.a == 0 && line.b == 1 && std::fabs(line.c + y) < 1e-15);  // normalised in place
        expectPoint(out[0], first.x, first.y);
        expectPoint(out[1], second.x, second.y);
    }
    UTMAT_Droite none{0, 0, 1};  // a degenerate line fails before the count is written
    dpoint2d out[2];
    int32_t count = -7;
    UTMAT_CalculerIntersectionDroiteCercle(&none, &centre, 5.0, 0.01, out, &count);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(count, -7);

    // The last row stakes out 30 m from A, 40 m from B: A + 18 (0.6, 0.8) -+ 24 (-0.8, 0.6).
    // Left of east is north, of south east; the same circle also at squared distance
    // 2.5e-5 (not above tol); concentric: no error unless tol < 0 (zero radical line).
    const std::tuple<P, double, P, double, double, int32_t, int32_t, P, P> circles[] = {
        {{0, 0}, 5, {8, 0}, 5, 1e-4, 2, 0, {4, 3}, {4, -3}},
        {{0, 0}, 5, {0, -8}, 5, 1e-4, 2, 0, {3, -4}, {-3, -4}},
        {{0, 0}, 5, {10, 0}, 5, 1e-4, 1, 0, {5, 0}, {9, 9}},
        {{0, 0}, 5, {20, 0}, 5, 1e-4, 0, 0, {9, 9}, {9, 9}},
        {{0, 0}, 5, {0, 0}, 5, 1e-4, -1, 0, {9, 9}, {9, 9}},
        {{0, 0}, 5, {0.005, 0}, 5, 1e-4, -1, 0, {9, 9}, {9, 9}},
        {{0, 0}, 5, {0, 0}, 6, 1e-4, 0, 0, {9, 9}, {9, 9}},
        {{0, 0}, 5, {0, 0}, 6, -1.0, 0, kFail, {9, 9}, {9, 9}},
        {{1000, 2000}, 30, {1030, 2040}, 40, 1e-4, 2, 0, {991.6, 2028.8}, {1030, 2000}},
    };
    for (const auto &[c1, R1, c2, R2, tol, expected, error, first, second] : circles) {
        dpoint2d out[2] = {{9, 9}, {9, 9}};
        int32_t count = -7;
        UTMAT_CalculerIntersection2Cercle(&c1, R1, &c2, R2, tol, out, &count);
        EXPECT_EQ(errorWord(), error) << c2.x << " " << R2;
        EXPECT_EQ(count, expected) << c2.x << " " << R2;
        expectPoint(out[0], first.x, first.y, 1e-9);
        expectPoint(out[1], second.x, second.y, 1e-9);
    }
}

// 3 (x - 3.7)^2 and 3 (x - 0.7)^2 expanded leave discriminants +5.7e-14 and -3.6e-15;
// x^2 + 1e8 x + 1 keeps the small root -1e-8 - 1e-24 to full precision.
TEST(CircleRoots, QuadraticLargerFirstAndLaguerreSortedByRealPart)
{
    const double b37 = -2 * 3.0 * 3.7, c37 = 3.0 * 3.7 * 3.7, b07 = -2 * 3.0 * 0.7, c07 = 3.0 * 0.7 * 0.7;
    ASSERT_TRUE(b37 * b37 - 4 * 3.0 * c37 != 0.0 && b07 * b07 - 4 * 3.0 * c07 != 0.0);
    const std::tuple<double, double, double, int32_t, double, double, double> rows[] = {
        {0, 0, 5, 0, 9, 9, 0},           {0, 2, 4, 1, -2, 9, 0},          {1, 0, -4, 2, -2, 2, 0},
        {1, -3, 2, 2, 2, 1, 0},          {2, -4, 2, 1, 1, 9, 0},          {1, 2, 5, 0, 9, 9, 0},
        {3, b37, c37, 1, 3.7, 9, 1e-14}, {3, b07, c07, 1, 0.7, 9, 1e-15}, {1, 1e8, 1, 2, -1e8, -1e-8, 1e-23}};
    for (const auto &[a, b, c, expected, r0, r1, tol] : rows) {
        double roots[2] = {9, 9};
        int32_t count = -7;
        UTMAT_ResoudreEquation2Degre(a, b, c, 123.0, roots, &count);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(count, expected) << a << " " << b << " " << c;
        EXPECT_NEAR(roots[0], r0, tol * std::fabs(r0)) << b;
        EXPECT_NEAR(roots[1], r1, tol) << b;
    }
    double roots[2] = {9, 9};
    UTMAT_ResoudreEquation2Degre(1, 0, -4, 0, roots, nullptr);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(roots[0], 9.0);

    // Stopping within 6e-8 of the rounding bound: simple roots to 1e-7, a double one worse.
    const double r3 = std::sqrt(3.0);
    const std::tuple<std::vector<dpoint2d>, std::vector<dpoint2d>, double> polynomials[] = {
        {{{-6, 0}, {11, 0}, {-6, 0}, {1, 0}}, {{1, 0}, {2, 0}, {3, 0}}, 1e-6},  // (x-1)(x-2)(x-3)
        {{{-1, 2}, {-2, -2}, {1, 0}}, {{0, 1}, {2, 1}}, 1e-6},                  // (x-i)(x-2-i)
        // x^3 - 8: p'(0) = p''(0) = 0, no step from 0, the start moves to -1.
        {{{-8, 0}, {0, 0}, {0, 0}, {1, 0}}, {{-1, r3}, {-1, -r3}, {2, 0}}, 1e-6},
        {{{2, 0}, {-3, 0}, {0, 0}, {1, 0}}, {{-2, 0}, {1, 0}, {1, 0}}, 5e-4},  // (x-1)^2 (x+2)
    };
    for (const auto &[coefficients, expected, tol] : polynomials) {
        const auto near = [&, tol = tol](const dpoint2d &z, const dpoint2d &w) {  // nearly real made real
            return std::fabs(z.x - w.x) <= tol && std::fabs(z.y - w.y) <= tol && (w.y != 0 || z.y == 0.0);
        };
        for (int32_t polish : {0, 1}) {
            const auto degree = static_cast<int32_t>(expected.size());
            std::vector<dpoint2d> roots(degree, dpoint2d{9, 9});
            UTMAT_CalculerRacinePolynomeLaguerre(coefficients.data(), degree, roots.data(), polish);
            EXPECT_EQ(errorWord(), 0);
            for (int32_t k = 1; k < degree; ++k)
                EXPECT_LE(roots[k - 1].x, roots[k].x) << degree;
            for (const dpoint2d &want : expected)
                EXPECT_TRUE(
                    std::any_of(roots.begin(), roots.end(), [&](const dpoint2d &z) { return near(z, want); }))
                    << want.x << " " << want.y << " polish " << polish;
        }
    }
    // x^2 + 1: -i found first, i left; the stable sort keeps i first. Degree 0: nothing.
    const dpoint2d unitCircle[] = {{1, 0}, {0, 0}, {1, 0}};
    dpoint2d unitRoots[2];
    UTMAT_CalculerRacinePolynomeLaguerre(unitCircle, 2, unitRoots, 0);
    expectPoint(unitRoots[0], 0, 1, 0.0);
    expectPoint(unitRoots[1], 0, -1, 0.0);
    UTMAT_CalculerRacinePolynomeLaguerre(unitCircle, 0, unitRoots, 1);
    expectPoint(unitRoots[0], 0, 1, 0.0);
}

// The triangle (0,0) (0,4) (4,0) runs clockwise: sense 1. tol 1e-4.
TEST(CircleTriangles, SegmentAgainstTriangleAtVerticesAndEdges)
{
    const dpoint2d t1{0, 0}, t2{0, 4}, t3{4, 0};
    // Crossing, inside (then the sense wrong), apart, one side, on the hypotenuse, 1.4e-3
    // clear, on t3; last the first-edge shortcut: x = 3.5 with t1, t2 on one side: met.
    const std::tuple<dpoint2d, dpoint2d, int32_t, int32_t> rows[] = {
        {{-1, 1}, {1, 1}, 1, 1},        {{1, 1}, {2, 1}, 1, 1},     {{1, 1}, {2, 1}, 0, 0},
        {{10, 10}, {11, 11}, 1, 0},     {{2.5, 3}, {3, 2.5}, 1, 0}, {{2, 2}, {3, 3}, 1, 1},
        {{2.001, 2.001}, {3, 3}, 1, 0}, {{4, 0}, {5, 1}, 1, 1},     {{3.5, 1}, {3.5, 2}, 1, 1}};
    for (const auto &[p1, p2, sense, expected] : rows) {
        UTMAT_Droite line{};
        UTMAT_CalculerDroite2Pt(&p1, &p2, &line);
        EXPECT_EQ(UTMAT_TesterIntersectionSegmentTriangle(&p1, &p2, &line, &t1, &t2, &t3, sense, 1e-4),
                  expected)
            << p1.x << " " << p1.y << " " << sense;
        EXPECT_EQ(errorWord(), 0);
    }
    // A degenerate edge (t1 = t2) once the shortcuts are passed: 32768.
    const dpoint2d p1{0, -1}, p2{0, 1};
    const UTMAT_Droite axis{1, 0, 0};  // x = 0 heading north: powers 0, 0, 4
    UTMAT_TesterIntersectionSegmentTriangle(&p1, &p2, &axis, &t1, &t1, &t3, 1, 1e-4);
    EXPECT_EQ(errorWord(), kFail);
}

// A's third line repeats its second: B beyond the edge (a3, a1) is reported.
TEST(CircleTriangles, TwoTrianglesThroughEdgesThenContainment)
{
    // Inside either way, crossing, apart, a shared vertex, touching, beyond edges 3 and 2.
    const std::tuple<P, P, P, P, P, P, int32_t> rows[] = {
        {{0, 0}, {0, 4}, {4, 0}, {1, 1}, {1, 2}, {2, 1}, 1},
        {{1, 1}, {1, 2}, {2, 1}, {0, 0}, {0, 4}, {4, 0}, 1},
        {{0, 0}, {0, 4}, {4, 0}, {1, 1}, {1, 5}, {5, 1}, 1},
        {{0, 0}, {0, 4}, {4, 0}, {10, 10}, {10, 11}, {11, 10}, 0},
        {{0, 0}, {0, 4}, {4, 0}, {4, 0}, {4, 4}, {8, 0}, 1},
        {{0, 10}, {4, 0}, {0, 0}, {2, 2}, {4, 4}, {4, 2}, 1},
        {{0, 0}, {4, 10}, {10, 4}, {8, 1}, {9, 1}, {9, 2}, 1},
        {{0, 0}, {4, 10}, {10, 4}, {9, 9}, {9.5, 9}, {9.5, 9.5}, 0}};
    for (const auto &[a1, a2, a3, b1, b2, b3, expected] : rows) {
        EXPECT_EQ(UTMAT_TesterIntersection2Triangle(&a1, &a2, &a3, 1, &b1, &b2, &b3, 1, 1e-4), expected)
            << b1.x;
        EXPECT_EQ(errorWord(), 0);
    }
    const dpoint2d a{0, 0}, c{4, 0}, b1{1, -1}, b2{1, 1}, b3{2, 0};  // a1 = a2, the boxes overlap
    UTMAT_TesterIntersection2Triangle(&a, &a, &c, 1, &b1, &b2, &b3, 1, 1e-4);
    EXPECT_EQ(errorWord(), kFail);
}

// Radius 5 at 0, whole (chord line 0) or the lower half kept by the chord heading east.
TEST(CircleTriangles, CircleSegmentAgainstTriangle)
{
    const dpoint2d centre{0, 0}, chordA{-5, 0}, chordB{5, 0}, boxMin{-5, -5}, wholeMax{5, 5}, halfMax{5, 0};
    const UTMAT_Droite noChord{0, 0, 0}, chord{0, -1, 0};
    // Whole: apart, all inside (no boundary), one in, an edge through, corner, around (then
    // sense wrong). Half: above, one in, across disc and chord, (3, 4) on the circle
    // beyond the chord, its edge to (6, -1) crossing y = 0 at 5.4: the vertex rule meets.
    const std::tuple<bool, dpoint2d, dpoint2d, dpoint2d, int32_t, int32_t> rows[] = {
        {false, {10, 10}, {11, 10}, {10, 11}, 1, 0},   {false, {0, 0}, {1, 0}, {0, 1}, 1, 0},
        {false, {0, -4}, {0, -6}, {1, -6}, 1, 1},      {false, {-10, 1}, {10, 1}, {0, 10}, 1, 1},
        {false, {4, 4}, {5, 4}, {5, 5}, 1, 0},         {false, {-20, -20}, {0, 30}, {20, -20}, 1, 1},
        {false, {-20, -20}, {0, 30}, {20, -20}, 0, 0}, {true, {0, 4}, {0, 6}, {1, 6}, 1, 0},
        {true, {0, -4}, {0, -6}, {1, -6}, 1, 1},       {true, {-6, -1}, {6, -1}, {0, -20}, 1, 1},
        {true, {-6, 1}, {6, -1}, {0, -20}, 1, 1},      {true, {3, 4}, {6, -1}, {7, 3}, 1, 1}};
    for (const auto &[half, t1, t2, t3, sense, expected] : rows) {
        EXPECT_EQ(UTMAT_TesterIntersectionCercleTriangle(
                      &centre, 5.0, &chordA, &chordB, &boxMin, half ? &halfMax : &wholeMax,
                      half ? &chord : &noChord, &t1, &t2, &t3, sense, 1e-4),
                  expected)
            << half << " " << t1.x << " " << t1.y;
        EXPECT_EQ(errorWord(), 0);
    }
    const dpoint2d t{0, 0};
    EXPECT_EQ(UTMAT_TesterIntersectionCercleTriangle(nullptr, 5.0, &chordA, &chordB, &boxMin, &wholeMax,
                                                     &noChord, &t, &t, &t, 1, 1e-4),
              0);
    EXPECT_EQ(errorWord(), kFail);
}

TEST(CircleValues, RectangleDistanceInterpolationAndFactorials)
{
    const dpoint2d lowerLeft{0, 0}, upperRight{4, 2};
    // Inside, on a side, beside three sides, diagonal to two corners (3-4-5).
    const std::pair<dpoint2d, double> rows[] = {{{1, 1}, 0},  {{4, 1}, 0}, {{7, 1}, 3},
                                                {{2, -2}, 2}, {{7, 6}, 5}, {{-3, -4}, 5}};
    for (const auto &[p, distance] : rows)
        EXPECT_EQ(UTMAT_CalculerDistancePtRectangle(&p, &lowerLeft, &upperRight), distance)
            << p.x << " " << p.y;
    // The guard is inverted: y0 unless |dx| is within x * 1e-39 (2e39 / 1 * 10 + 10).
    EXPECT_EQ(UTMAT_CalculerInterpolationLineaire(1.0, 2.0, 10.0, 20.0), 10.0);
    EXPECT_EQ(UTMAT_CalculerInterpolationLineaire(-3.0, 0.0, 7.0, 9.0), 7.0);
    EXPECT_DOUBLE_EQ(UTMAT_CalculerInterpolationLineaire(2e39, 1.0, 10.0, 20.0), 2e40);
    // n, k, n!, n! / k! (20 * 19 * 18 = 6840).
    const std::tuple<int32_t, int32_t, double, double> facts[] = {
        {0, 0, 1, 1}, {-3, -3, 1, 1}, {5, 2, 120, 60}, {20, 17, 2432902008176640000.0, 6840}};
    for (const auto &[n, k, nFactorial, quotient] : facts) {
        EXPECT_EQ(UTMAT_DFactorielle(n), nFactorial) << n;
        EXPECT_EQ(UTMAT_FactorielleDivision(n, k), quotient) << n;
        EXPECT_EQ(errorWord(), 0);
    }
    EXPECT_EQ(UTMAT_FactorielleDivision(3, 5), 1.0);
    EXPECT_EQ(errorWord(), kFail);
}

}  // namespace
