// Circles, roots and triangle tests of the UTMAT kernel: crossings of lines
// and circles in their stated order, the quadratic and Laguerre solvers on
// polynomials with known roots, the overlap tests (with their required
// asymmetries), small numeric functions, and what a failure leaves behind.
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

TEST(CirclePoints, ProjectionPointAtAngleAndClass)
{
    const dpoint2d centre{1, 1}, p{4, 5};  // p - centre = (3, 4): cos 0.6, sin 0.8
    dpoint2d point{};
    double angle = 0.0;
    UTMAT_ProjeterPtSurCercle(&centre, 2.0, &p, &point, &angle);
    expectPoint(point, 2.2, 2.6);
    EXPECT_NEAR(angle, std::atan2(4.0, 3.0), 1e-15);
    UTMAT_ProjeterPtSurCercle(&centre, 2.0, &p, &point, nullptr);  // the angle is optional
    EXPECT_EQ(errorWord(), 0);
    UTMAT_CalculerPtSurCercleAngle(&centre, 2.0, std::acos(-1.0) / 2, &point);
    expectPoint(point, 1.0, 3.0);

    // Distances 4.98, 4.995, 5.02 from a circle of radius 5, tol 0.01.
    for (const auto &[x, expected] : {std::pair{5.98, -1}, {5.995, 0}, {6.02, 1}}) {
        const dpoint2d q{x, 1};
        EXPECT_EQ(UTMAT_CalculerClassePtCercle(&centre, &q, 5.0, 0.01), expected) << x;
    }
}

TEST(CirclePoints, NullPointersFailAndWriteNothing)
{
    const dpoint2d centre{0, 0};
    dpoint2d point{7, 7};
    double angle = 9.0;
    UTMAT_ProjeterPtSurCercle(&centre, 1.0, nullptr, &point, &angle);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(angle, 9.0);
    UTMAT_CalculerPtSurCercleAngle(nullptr, 1.0, 0.0, &point);
    EXPECT_EQ(errorWord(), kFail);
    expectPoint(point, 7, 7, 0.0);
    EXPECT_EQ(UTMAT_CalculerClassePtCercle(&centre, nullptr, 1.0, 0.0), 0);
    EXPECT_EQ(errorWord(), kFail);
}

TEST(CircleIntersect, LineAndCircleSecantTangentAndDisjoint)
{
    const dpoint2d centre{0, 0};  // R = 5, tol 0.01
    // The horizontal line y given as (0, 2, -2y): heading west once normalised.
    const std::tuple<double, int32_t, dpoint2d, dpoint2d> rows[] = {
        {3.0, 2, {-4, 3}, {4, 3}},       // first forward along (-1, 0), second behind: 3-4-5
        {5.01, 1, {0, 5.01}, {9, 9}},    // R + tol: the foot, off the circle
        {4.995, 1, {0, 4.995}, {9, 9}},  // within tol inside: the foot as well
        {5.02, 0, {9, 9}, {9, 9}},       // beyond tol: no crossing
    };
    for (const auto &[y, expected, first, second] : rows) {
        UTMAT_Droite line{0, 2, -2 * y};
        dpoint2d out[2] = {{9, 9}, {9, 9}};
        int32_t count = -7;
        UTMAT_CalculerIntersectionDroiteCercle(&line, &centre, 5.0, 0.01, out, &count);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(count, expected) << y;
        expectPoint({line.a, line.b}, 0, 1, 0.0);  // normalised in place, whatever the count
        EXPECT_NEAR(line.c, -y, 1e-15);
        expectPoint(out[0], first.x, first.y);
        expectPoint(out[1], second.x, second.y);
    }
    // A degenerate line fails before the count is written.
    UTMAT_Droite none{0, 0, 1};
    dpoint2d out[2];
    int32_t count = -7;
    UTMAT_CalculerIntersectionDroiteCercle(&none, &centre, 5.0, 0.01, out, &count);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(count, -7);
}

TEST(CircleIntersect, TwoCirclesLeftCrossingFirstAndConcentricCases)
{
    // c1 = (0, 0), R1 = 5; unwritten slots keep (9, 9).
    const std::tuple<dpoint2d, double, double, int32_t, int32_t, dpoint2d, dpoint2d> rows[] = {
        {{8, 0}, 5, 1e-4, 2, 0, {4, 3}, {4, -3}},      // left of east is north
        {{0, -8}, 5, 1e-4, 2, 0, {3, -4}, {-3, -4}},   // left of south is east
        {{10, 0}, 5, 1e-4, 1, 0, {5, 0}, {9, 9}},      // outer tangency
        {{20, 0}, 5, 1e-4, 0, 0, {9, 9}, {9, 9}},      // apart
        {{0, 0}, 5, 1e-4, -1, 0, {9, 9}, {9, 9}},      // the same circle
        {{0.005, 0}, 5, 1e-4, -1, 0, {9, 9}, {9, 9}},  // squared distance 2.5e-5 is not above tol
        {{0, 0}, 6, 1e-4, 0, 0, {9, 9}, {9, 9}},       // concentric, radii differ: no error
        {{0, 0}, 6, -1.0, 0, kFail, {9, 9}, {9, 9}},   // tol below 0: a zero radical line
    };
    for (const auto &[c2, R2, tol, expected, error, first, second] : rows) {
        const dpoint2d c1{0, 0};
        dpoint2d out[2] = {{9, 9}, {9, 9}};
        int32_t count = -7;
        UTMAT_CalculerIntersection2Cercle(&c1, 5.0, &c2, R2, tol, out, &count);
        EXPECT_EQ(errorWord(), error) << c2.x << " " << R2;
        EXPECT_EQ(count, expected) << c2.x << " " << R2;
        expectPoint(out[0], first.x, first.y);
        expectPoint(out[1], second.x, second.y);
    }
}

// Staking out a point by two taped distances: 30 m from A and 40 m from B,
// 50 m apart: a 3-4-5 triangle, the point 18 m along AB and 24 m off it.
TEST(CircleIntersect, PointStakedOutByTwoDistances)
{
    const dpoint2d a{1000, 2000}, b{1030, 2040};  // AB along (0.6, 0.8)
    dpoint2d out[2];
    int32_t count = 0;
    UTMAT_CalculerIntersection2Cercle(&a, 30.0, &b, 40.0, 1e-4, out, &count);
    ASSERT_EQ(count, 2);
    expectPoint(out[0], 1000 + 18 * 0.6 - 24 * 0.8, 2000 + 18 * 0.8 + 24 * 0.6, 1e-9);  // left of A -> B
    expectPoint(out[1], 1000 + 18 * 0.6 + 24 * 0.8, 2000 + 18 * 0.8 - 24 * 0.6, 1e-9);
}

TEST(CircleRoots, QuadraticRootsLargerMagnitudeFirst)
{
    // 3 (x - 3.7)^2 and 3 (x - 0.7)^2 expanded: rounding leaves a discriminant
    // of +5.7e-14 and -3.6e-15 instead of 0; the propagated tolerance keeps one root.
    const double b37 = -2 * 3.0 * 3.7, c37 = 3.0 * 3.7 * 3.7, b07 = -2 * 3.0 * 0.7, c07 = 3.0 * 0.7 * 0.7;
    ASSERT_NE(b37 * b37 - 4 * 3.0 * c37, 0.0);
    ASSERT_NE(b07 * b07 - 4 * 3.0 * c07, 0.0);
    const std::tuple<double, double, double, int32_t, double, double, double> rows[] = {
        {0, 0, 5, 0, 9, 9, 0},
        {0, 2, 4, 1, -2, 9, 0},
        {1, 0, -4, 2, -2, 2, 0},
        {1, -3, 2, 2, 2, 1, 0},
        {2, -4, 2, 1, 1, 9, 0},
        {1, 2, 5, 0, 9, 9, 0},
        {3, b37, c37, 1, 3.7, 9, 1e-14},
        {3, b07, c07, 1, 0.7, 9, 1e-15},
        // x^2 + 1e8 x + 1: the small root -1e-8 - 1e-24 keeps full precision
        // (the textbook formula loses a quarter of it to cancellation).
        {1, 1e8, 1, 2, -1e8, -1e-8, 1e-23},
    };
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
}

struct Polynomial {
    const char *name;
    std::vector<dpoint2d> coefficients;  // constant first
    std::vector<dpoint2d> roots;
    double tol;
};

// The iteration stops once |p(x)| is within 6e-8 of its rounding bound:
// simple roots come out to about 1e-7, a double root to its square root.
TEST(CircleRoots, LaguerreFindsKnownRootsSortedByRealPart)
{
    const double r3 = std::sqrt(3.0);
    const Polynomial rows[] = {
        {"(x-1)(x-2)(x-3)", {{-6, 0}, {11, 0}, {-6, 0}, {1, 0}}, {{1, 0}, {2, 0}, {3, 0}}, 1e-6},
        {"(x-i)(x-2-i)", {{-1, 2}, {-2, -2}, {1, 0}}, {{0, 1}, {2, 1}}, 1e-6},
        // p'(0) = p''(0) = 0: no step can be formed from 0, the start moves to -1.
        {"x^3 - 8", {{-8, 0}, {0, 0}, {0, 0}, {1, 0}}, {{-1, r3}, {-1, -r3}, {2, 0}}, 1e-6},
        {"(x-1)^2 (x+2)", {{2, 0}, {-3, 0}, {0, 0}, {1, 0}}, {{-2, 0}, {1, 0}, {1, 0}}, 5e-4},
    };
    for (const Polynomial &row : rows) {
        for (int32_t polish : {0, 1}) {
            const auto degree = static_cast<int32_t>(row.roots.size());
            std::vector<dpoint2d> roots(degree, dpoint2d{9, 9});
            UTMAT_CalculerRacinePolynomeLaguerre(row.coefficients.data(), degree, roots.data(), polish);
            EXPECT_EQ(errorWord(), 0);
            for (int32_t k = 1; k < degree; ++k)
                EXPECT_LE(roots[k - 1].x, roots[k].x) << row.name;
            for (const dpoint2d &want : row.roots) {
                const auto near = [&](const dpoint2d &z) {
                    return std::fabs(z.x - want.x) <= row.tol && std::fabs(z.y - want.y) <= row.tol &&
                           (want.y != 0 || z.y == 0.0);  // nearly real made real
                };
                EXPECT_TRUE(std::any_of(roots.begin(), roots.end(), near))
                    << row.name << " misses (" << want.x << ", " << want.y << ") polish " << polish;
            }
        }
    }
    // x^2 + 1: -i is found first from 0 and deflation leaves i; both real
    // parts are 0, so the stable sort keeps i before -i.
    const dpoint2d unitCircle[] = {{1, 0}, {0, 0}, {1, 0}};
    dpoint2d roots[2];
    UTMAT_CalculerRacinePolynomeLaguerre(unitCircle, 2, roots, 0);
    expectPoint(roots[0], 0, 1, 0.0);
    expectPoint(roots[1], 0, -1, 0.0);
    // Degree 0 has no root and writes nothing.
    UTMAT_CalculerRacinePolynomeLaguerre(unitCircle, 0, roots, 1);
    expectPoint(roots[0], 0, 1, 0.0);
}

// The triangle (0,0) (0,4) (4,0) runs clockwise: sense 1. tol 1e-4.
TEST(CircleTriangles, SegmentAgainstTriangleAtVerticesAndEdges)
{
    const dpoint2d t1{0, 0}, t2{0, 4}, t3{4, 0};
    const std::tuple<dpoint2d, dpoint2d, int32_t, int32_t, const char *> rows[] = {
        {{-1, 1}, {1, 1}, 1, 1, "crosses the edge t1 t2"},
        {{1, 1}, {2, 1}, 1, 1, "wholly inside"},
        {{1, 1}, {2, 1}, 0, 0, "wholly inside, the sense given wrong"},
        {{10, 10}, {11, 11}, 1, 0, "boxes apart"},
        {{2.5, 3}, {3, 2.5}, 1, 0, "in the box, the triangle all on one side of its line"},
        {{2, 2}, {3, 3}, 1, 1, "touches the hypotenuse at (2, 2)"},
        {{2.001, 2.001}, {3, 3}, 1, 0, "clear of the hypotenuse by 1.4e-3"},
        {{4, 0}, {5, 1}, 1, 1, "touches the vertex t3"},
        // Clear of the triangle (x + y > 4) inside its box, its line x = 3.5
        // leaving t1 and t2 on one side and t3 on the other: reported as meeting.
        {{3.5, 1}, {3.5, 2}, 1, 1, "first-edge shortcut"},
    };
    for (const auto &[p1, p2, sense, expected, what] : rows) {
        UTMAT_Droite line{};
        UTMAT_CalculerDroite2Pt(&p1, &p2, &line);
        EXPECT_EQ(UTMAT_TesterIntersectionSegmentTriangle(&p1, &p2, &line, &t1, &t2, &t3, sense, 1e-4),
                  expected)
            << what;
        EXPECT_EQ(errorWord(), 0) << what;
    }
    // A degenerate edge (t1 = t2) once the shortcuts are passed: 32768.
    const dpoint2d p1{0, -1}, p2{0, 1};
    const UTMAT_Droite axis{1, 0, 0};  // x = 0 heading north: powers 0, 0, 4
    UTMAT_TesterIntersectionSegmentTriangle(&p1, &p2, &axis, &t1, &t1, &t3, 1, 1e-4);
    EXPECT_EQ(errorWord(), kFail);
}

TEST(CircleTriangles, TwoTrianglesThroughEdgesThenContainment)
{
    // a1 a2 a3, b1 b2 b3, both clockwise (senses 1).
    using P = dpoint2d;
    const std::tuple<P, P, P, P, P, P, int32_t, const char *> rows[] = {
        {{0, 0}, {0, 4}, {4, 0}, {1, 1}, {1, 2}, {2, 1}, 1, "B inside A"},
        {{1, 1}, {1, 2}, {2, 1}, {0, 0}, {0, 4}, {4, 0}, 1, "A inside B"},
        {{0, 0}, {0, 4}, {4, 0}, {1, 1}, {1, 5}, {5, 1}, 1, "edges cross"},
        {{0, 0}, {0, 4}, {4, 0}, {10, 10}, {10, 11}, {11, 10}, 0, "boxes apart"},
        {{0, 0}, {0, 4}, {4, 0}, {4, 0}, {4, 4}, {8, 0}, 1, "a shared vertex"},
        {{0, 10}, {4, 0}, {0, 0}, {2, 2}, {4, 4}, {4, 2}, 1, "B touches the hypotenuse"},
        // A's third line repeats its second, so the containment test never
        // sees the edge (a3, a1): B clear of A beyond that edge is reported.
        {{0, 0}, {4, 10}, {10, 4}, {8, 1}, {9, 1}, {9, 2}, 1, "beyond the third edge"},
        {{0, 0}, {4, 10}, {10, 4}, {9, 9}, {9.5, 9}, {9.5, 9.5}, 0, "beyond the second edge"},
    };
    for (const auto &[a1, a2, a3, b1, b2, b3, expected, what] : rows) {
        EXPECT_EQ(UTMAT_TesterIntersection2Triangle(&a1, &a2, &a3, 1, &b1, &b2, &b3, 1, 1e-4), expected)
            << what;
        EXPECT_EQ(errorWord(), 0) << what;
    }
    const dpoint2d a{0, 0}, c{4, 0}, b1{1, -1}, b2{1, 1}, b3{2, 0};  // a1 = a2, the boxes overlap
    UTMAT_TesterIntersection2Triangle(&a, &a, &c, 1, &b1, &b2, &b3, 1, 1e-4);
    EXPECT_EQ(errorWord(), kFail);
}

// A circle of radius 5 at the origin, whole (chord line 0) or cut by the chord
// (-5, 0) (5, 0) heading east, which keeps the lower half (positive powers).
TEST(CircleTriangles, CircleSegmentAgainstTriangle)
{
    const dpoint2d centre{0, 0}, chordA{-5, 0}, chordB{5, 0}, boxMin{-5, -5}, wholeMax{5, 5}, halfMax{5, 0};
    const UTMAT_Droite noChord{0, 0, 0}, chord{0, -1, 0};
    const std::tuple<bool, dpoint2d, dpoint2d, dpoint2d, int32_t, int32_t, const char *> rows[] = {
        {false, {10, 10}, {11, 10}, {10, 11}, 1, 0, "boxes apart"},
        {false, {0, 0}, {1, 0}, {0, 1}, 1, 0, "all three inside: only the boundary counts"},
        {false, {0, -4}, {0, -6}, {1, -6}, 1, 1, "one vertex inside"},
        {false, {-10, 1}, {10, 1}, {0, 10}, 1, 1, "an edge through the disc"},
        {false, {4, 4}, {5, 4}, {5, 5}, 1, 0, "outside, in the corner of the box"},
        {false, {-20, -20}, {0, 30}, {20, -20}, 1, 1, "around the whole circle"},
        {false, {-20, -20}, {0, 30}, {20, -20}, 0, 0, "around it, the sense given wrong"},
        {true, {0, 4}, {0, 6}, {1, 6}, 1, 0, "upper half: outside the figure's box"},
        {true, {0, -4}, {0, -6}, {1, -6}, 1, 1, "one vertex inside the half disc"},
        {true, {-6, -1}, {6, -1}, {0, -20}, 1, 1, "an edge across the half disc"},
        {true, {-6, 1}, {6, -1}, {0, -20}, 1, 1, "an edge across the chord"},
        // (3, 4) is on the circle but beyond the chord; (6, -1)-(3, 4) crosses
        // y = 0 at x = 5.4, outside: the vertex rule reports a meeting.
        {true, {3, 4}, {6, -1}, {7, 3}, 1, 1, "a vertex on the circle beyond the chord"},
    };
    for (const auto &[half, t1, t2, t3, sense, expected, what] : rows) {
        const int32_t met = UTMAT_TesterIntersectionCercleTriangle(
            &centre, 5.0, &chordA, &chordB, &boxMin, half ? &halfMax : &wholeMax, half ? &chord : &noChord,
            &t1, &t2, &t3, sense, 1e-4);
        EXPECT_EQ(met, expected) << what;
        EXPECT_EQ(errorWord(), 0) << what;
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

    // The guard is inverted: y0 unless |dx| is within x * 1e-39.
    EXPECT_EQ(UTMAT_CalculerInterpolationLineaire(1.0, 2.0, 10.0, 20.0), 10.0);
    EXPECT_EQ(UTMAT_CalculerInterpolationLineaire(-3.0, 0.0, 7.0, 9.0), 7.0);
    EXPECT_DOUBLE_EQ(UTMAT_CalculerInterpolationLineaire(2e39, 1.0, 10.0, 20.0), 2e40);  // 2e39 / 1 * 10 + 10

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
