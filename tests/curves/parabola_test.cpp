// Vertical curves of a long section worked by hand.
//  Sag: grades y = -0.04 x + 18 and y = 0.02 x + 6 meet at (200, 10); with
//  R = 3000 the curve runs L = R (g2 - g1) = 180 from (110, 13.6) to
//  (290, 11.8), its vertex where the grade is 0: (230, 11.2).
//  Crest: y = 0.03 x + 47 and y = -0.02 x + 52 meet at (100, 50); R = -5000
//  gives L = 250 from (-25, 46.25) to (225, 47.5), vertex (125, 48.5).
//  Chain of arcs: A1 (vertex (0, 0), R 1000), A (100, 20, 750) and the crest
//  A2 (850, 245, -500); A touches A1 at (400, 80) and A2 at (550, 155), both
//  grades there 0.4 and 0.6; its tangent at x = 250 is y = 0.2 x - 15.
// Other solutions are checked for what they must satisfy.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <iterator>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/parabola.h>
#include <tessar/vector.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;
constexpr double kTol = 1e-7;

// Consecutive points against their expected values.
void expectPts(const dpoint2d *p, std::initializer_list<dpoint2d> expected)
{
    for (const dpoint2d &e : expected) {
        EXPECT_NEAR(p->x, e.x, kTol);
        EXPECT_NEAR(p++->y, e.y, kTol);
    }
}
void expectValues(const double *v, std::initializer_list<double> expected)
{
    for (const double e : expected)
        EXPECT_NEAR(*v++, e, 1e-6);
}

// Leaves 32768 in the error word (a degenerate line) so that a call is seen
// to clear it.
void dirtyErrorWord()
{
    UTMAT_Droite zero{0.0, 0.0, 1.0};
    UTMAT_NormerDroite(&zero, nullptr);
}

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

struct Arc {
    dpoint2d S;
    double R;
};
const Arc A1{{0.0, 0.0}, 1000.0}, A{{100.0, 20.0}, 750.0}, A2{{850.0, 245.0}, -500.0};

double level(const Arc &a, double x)
{
    return a.S.y + (x - a.S.x) * (x - a.S.x) / (2.0 * a.R);
}
double grade(const Arc &a, double x)
{
    return (x - a.S.x) / a.R;
}

void expectTouch(const Arc &a, const Arc &b, const dpoint2d &T)
{
    EXPECT_NEAR(level(a, T.x), T.y, 1e-6);
    EXPECT_NEAR(level(b, T.x), T.y, 1e-6);
    EXPECT_NEAR(grade(a, T.x), grade(b, T.x), 1e-9);
}

// T on the arc and on the line y = m x + k, the arc's grade there being m.
void expectTouchLine(const Arc &a, double m, double k, const dpoint2d &T)
{
    EXPECT_NEAR(level(a, T.x), T.y, 1e-6);
    EXPECT_NEAR(m * T.x + k, T.y, 1e-6);
    EXPECT_NEAR(grade(a, T.x), m, 1e-9);
}

// The grades y = m x + k as lines (m, -1, k), not normalised.
const UTMAT_Droite sagIn{-0.04, -1.0, 18.0}, sagOut{0.02, -1.0, 6.0};
const UTMAT_Droite crestIn{0.03, -1.0, 47.0}, crestOut{-0.02, -1.0, 52.0};

/* ---- Parabolas tangent to two grades ---- */

TEST(Parabola, VerticalCurveBetweenTwoGrades)
{
    struct Row {
        UTMAT_Droite d1, d2;
        double R;
        int32_t count;
        dpoint2d S, T1, T2;
    };
    const UTMAT_Droite scaledIn{0.09, -3.0, 141.0};  // crestIn times 3: lines are taken as given
    const Row rows[] = {
        {crestIn, crestOut, -5000.0, 1, {125.0, 48.5}, {-25.0, 46.25}, {225.0, 47.5}},
        {scaledIn, crestOut, -5000.0, 1, {125.0, 48.5}, {-25.0, 46.25}, {225.0, 47.5}},
        {sagIn, sagOut, 3000.0, 1, {230.0, 11.2}, {110.0, 13.6}, {290.0, 11.8}},
        {sagIn, {-0.04, -1.0, 20.0}, 3000.0, 0, {}, {}, {}},  // parallel grades
        {sagIn, {1.0, 0.0, -5.0}, 3000.0, 0, {}, {}, {}},     // vertical line
        {sagIn, sagOut, 0.0, 0, {}, {}, {}},                  // no radius: the tangency guard fails
    };
    for (const Row &r : rows) {
        dpoint2d out[3] = {{9.0, 9.0}, {9.0, 9.0}, {9.0, 9.0}};  // S, T1, T2
        int32_t count = -1;
        dirtyErrorWord();
        UTMAT_CalculerArcParTg2DteRayon(&r.d1, &r.d2, r.R, &out[0], &out[1], &out[2], &count);
        EXPECT_EQ(errorWord(), 0);
        ASSERT_EQ(count, r.count);
        expectPts(out, {r.S, r.T1, r.T2});
    }
}

// L' = -L first: R = -250 / 0.05 = -5000, the crest; then R = 5000, the sag
// touching the same grades on the far sides: S.x = 100 - 0.01 * 2500 = 75,
// S.y = (75 + 75) 0.03 + 47 = 51.5, T1.x = 75 + 150, T2.x = 75 - 100.
TEST(Parabola, CurveOfGivenLengthTriesNegatedLengthFirst)
{
    dpoint2d S[2], T[4];
    double R[2];
    int32_t count = -1;
    UTMAT_CalculerArcParTg2DteLongueur(&crestIn, &crestOut, 250.0, S, R, T, &count);
    ASSERT_EQ(count, 2);
    expectValues(R, {-5000.0, 5000.0});
    expectPts(S, {{125.0, 48.5}, {75.0, 51.5}});
    expectPts(T, {{-25.0, 46.25}, {225.0, 47.5}, {225.0, 53.75}, {-25.0, 52.5}});

    const UTMAT_Droite parallel{0.03, -1.0, 40.0};
    UTMAT_CalculerArcParTg2DteLongueur(&crestIn, &parallel, 250.0, S, R, T, &count);
    EXPECT_EQ(count, 0);
}

/* ---- Through points, given vertex ---- */

TEST(Parabola, ArcThroughPoints)
{
    // Three points of the sag; (200, 11.2 + 30^2 / 6000) lies on it.
    const dpoint2d p1{110.0, 13.6}, p2{200.0, 11.35}, p3{290.0, 11.8}, far{350.0, 13.6};
    dpoint2d S{};
    double R = -1.0;
    int32_t count = -1;
    UTMAT_CalculerArcParPs3Pt(&p1, &p2, &p3, &S, &R, &count);
    ASSERT_EQ(count, 1);
    expectPts(&S, {{230.0, 11.2}});
    EXPECT_NEAR(R, 3000.0, 1e-6);
    const dpoint2d q1{0.0, 0.0}, q2{10.0, 1.0}, q3{20.0, 2.0};
    UTMAT_CalculerArcParPs3Pt(&q1, &q2, &q3, &S, &R, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(R, 0.0);

    // Two points and the radius; level points put the vertex midway.
    const std::pair<dpoint2d, int32_t> second[] = {{p3, 1}, {far, 1}, {{110.0, 0.0}, 0}};
    for (const auto &[q, expected] : second) {
        UTMAT_CalculerArcParPs2PtRayon(&p1, &q, 3000.0, &S, &count);
        ASSERT_EQ(count, expected);
        if (expected == 1) expectPts(&S, {{230.0, 11.2}});
    }

    // Vertex first, point second: the roles follow the order.
    const dpoint2d vertex{230.0, 11.2};
    const struct {
        dpoint2d first, second;
        int32_t count;
        double R;
    } rows[] = {{vertex, p3, 1, 3000.0}, {p3, vertex, 1, -3000.0}, {p1, far, 0, 0.0}};
    for (const auto &r : rows) {
        UTMAT_CalculerArcParPs1PtSommet(&r.first, &r.second, &R, &count);
        EXPECT_EQ(count, r.count);
        EXPECT_NEAR(R, r.R, 1e-6);
    }
}

TEST(Parabola, ArcFromVertex)
{
    const double n = std::sqrt(1.0016);  // the incoming sag grade, normalised
    const UTMAT_Droite unit{-0.04 / n, -1.0 / n, 18.0 / n};
    dpoint2d S{230.0, 11.2}, T{};
    double R = 0.0;
    int32_t count = -1;
    UTMAT_CalculerArcParTg1DteSommet(&unit, &S, &R, &T, &count);
    ASSERT_EQ(count, 1);
    EXPECT_NEAR(R, 3000.0, 1e-6);
    expectPts(&T, {{110.0, 13.6}});
    expectPts(&S, {{230.0, 11.2}});  // written back unchanged
    // The raw grade puts a = -0.04 beside b' = -1 / n, n^2 = 1.0016: the
    // slope comes out n times too steep and R = 3000 / n^2.
    UTMAT_CalculerArcParTg1DteSommet(&sagIn, &S, &R, &T, &count);
    ASSERT_EQ(count, 1);
    EXPECT_NEAR(R, 3000.0 / 1.0016, 1e-6);
    // A grade through the vertex: R = 0, then the tangency guard fails.
    const UTMAT_Droite through{0.1, -1.0, 11.2 - 23.0};
    UTMAT_CalculerArcParTg1DteSommet(&through, &S, &R, &T, &count);
    EXPECT_EQ(count, 0);

    // From A1, the arc of vertex (100, 20): R = 100^2 / 2 / -20 + 1000 = 750.
    UTMAT_CalculerArcParTg1ArcParSommet(&A1.S, A1.R, &A.S, &R, &T, &count);
    ASSERT_EQ(count, 1);
    EXPECT_NEAR(R, 750.0, 1e-9);
    expectPts(&T, {{400.0, 80.0}});
    // A vertex straight above A1's: R = R0, and T.x = 0 / 0 is refused, the
    // radius staying stored.
    const dpoint2d above{0.0, 50.0};
    UTMAT_CalculerArcParTg1ArcParSommet(&A1.S, A1.R, &above, &R, &T, &count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(R, 1000.0);
}

/* ---- Through points and tangent to grades ---- */

TEST(Parabola, ArcThroughPointTangentToGrades)
{
    const dpoint2d vertex{230.0, 11.2};
    dpoint2d S[2], T[4];
    double R[2];
    int32_t count = -1;
    // R = 3000 through the sag's vertex, tangent to the incoming grade. Local
    // to the vertex the grade is y = -0.04 x - 2.4 and S.x^2 - 240 S.x = 0:
    // S.x = 240 gives S.y = -57600 / 6000 = -9.6, T.x = 240 - 120.
    UTMAT_CalculerArcParTg1DteRayon(&sagIn, &vertex, 3000.0, S, T, &count);
    ASSERT_EQ(count, 2);
    expectPts(S, {{470.0, 1.6}, {230.0, 11.2}});
    expectPts(T, {{350.0, 4.0}, {110.0, 13.6}});

    // Through the vertex and the end of the sag: R = 3000 - 100 S.x and
    // 25 S.x^2 - 720 S.x = 0; S.x = 28.8 gives R = 120.
    const dpoint2d end{290.0, 11.8}, start{110.0, 13.6}, mirror{350.0, 13.6};
    UTMAT_CalculerArcParTg1DtePs2Pt(&sagIn, &vertex, &end, S, R, T, &count);
    ASSERT_EQ(count, 2);
    expectPts(S, {{258.8, 7.744}, {230.0, 11.2}});
    expectValues(R, {120.0, 3000.0});
    expectPts(T, {{254.0, 7.84}, {110.0, 13.6}});
    // Level points: the quadratic in R has the double root 3000, one solution.
    UTMAT_CalculerArcParTg1DtePs2Pt(&sagIn, &start, &mirror, S, R, T, &count);
    ASSERT_EQ(count, 1);
    expectPts(S, {{230.0, 11.2}});
    EXPECT_NEAR(R[0], 3000.0, 1e-6);
    expectPts(T, {{110.0, 13.6}});

    // Both sag grades through the vertex: w = 3.6 / 0.0012 = 3000,
    // R = 3000 + 100 S.x, 9 S.x^2 + 240 S.x = 0.
    UTMAT_CalculerArcParTg2DtePs1Pt(&sagIn, &sagOut, &vertex, S, R, T, &count);
    ASSERT_EQ(count, 2);
    expectPts(S, {{230.0 - 80.0 / 3.0, 11.2 - 16.0 / 15.0}, {230.0, 11.2}});
    expectValues(R, {1000.0 / 3.0, 3000.0});
    expectPts(T, {{190.0, 10.4}, {210.0, 10.2}, {110.0, 13.6}, {290.0, 11.8}});
    // Opposite grades 2 % fix S.x at the crossing x = 100; through
    // (150, -0.125): 0.0002 R^2 + 2.125 R + 1250 = 0, R = -10000 or -625.
    const UTMAT_Droite up{0.02, -1.0, 0.0}, down{-0.02, -1.0, 4.0};
    const dpoint2d p{150.0, -0.125};
    UTMAT_CalculerArcParTg2DtePs1Pt(&up, &down, &p, S, R, T, &count);
    ASSERT_EQ(count, 2);
    expectValues(R, {-10000.0, -625.0});
    expectPts(S, {{100.0, 0.0}, {100.0, 1.875}});
    expectPts(T, {{-100.0, -2.0}, {300.0, -2.0}, {87.5, 1.75}, {112.5, 1.75}});
}

/* ---- Tangent to arcs ---- */

// Each construction below must find A among its solutions; the counts come
// from a scan of the tangency point along the first element.
TEST(Parabola, ArcsOfAChainTangentToArcs)
{
    dpoint2d S[2], T[4];
    double R[2];
    int32_t count = -1;
    const dpoint2d onA{250.0, 35.0}, mirror{-50.0, 35.0};
    const auto expectA = [&](int i, double radius) {
        expectPts(&S[i], {{100.0, 20.0}});
        EXPECT_NEAR(radius, 750.0, 1e-6);
    };
    const auto touchesBoth = [&](int i, double radius, const Arc &a, const Arc &b) {
        expectTouch({S[i], radius}, a, T[2 * i]);
        expectTouch({S[i], radius}, b, T[2 * i + 1]);
    };

    UTMAT_CalculerArcParTg2ArcParPs1Pt(&A1.S, A1.R, &A2.S, A2.R, &onA, S, R, T, &count);
    ASSERT_EQ(count, 2);
    expectA(1, R[1]);
    for (int i = 0; i < 2; ++i) {
        touchesBoth(i, R[i], A1, A2);
        EXPECT_NEAR(level({S[i], R[i]}, 250.0), 35.0, 1e-6);
    }

    UTMAT_CalculerArcParTg2ArcParRayon(&A1.S, A1.R, &A2.S, A2.R, 750.0, S, T, &count);
    ASSERT_EQ(count, 2);
    expectPts(S, {{550.0 / 3.0, 605.0 / 9.0}});
    expectA(1, 750.0);
    touchesBoth(0, 750.0, A1, A2);
    touchesBoth(1, 750.0, A1, A2);

    // Through two points of A, level with each other or not.
    for (const dpoint2d &second : {A.S, mirror}) {
        UTMAT_CalculerArcParTg1ArcParPs2Pt(&A1.S, A1.R, &onA, &second, S, R, T, &count);
        ASSERT_EQ(count, 2);
        expectA(0, R[0]);
        expectTouch({S[1], R[1]}, A1, T[1]);
        EXPECT_NEAR(level({S[1], R[1]}, second.x), second.y, 1e-6);
    }

    UTMAT_CalculerArcParTg1ArcParPs1PtRayon(&A1.S, A1.R, &onA, 750.0, S, T, &count);
    ASSERT_EQ(count, 2);
    expectPts(S, {{25.0, 1.25}});
    expectA(1, 750.0);
    expectTouch({S[0], 750.0}, A1, T[0]);
    // R = R0 makes every tangency 0 / 0: the construction fails as a whole.
    UTMAT_CalculerArcParTg1ArcParPs1PtRayon(&A1.S, A1.R, &onA, 1000.0, S, T, &count);
    EXPECT_EQ(count, 0);

    // Tangent to A2 and to A's grade at x = 250.
    const UTMAT_Droite tangent{0.2, -1.0, -15.0};
    UTMAT_CalculerArcParTgArcParDteRayon(&A2.S, A2.R, &tangent, 750.0, S, T, &count);
    ASSERT_EQ(count, 2);
    expectA(0, 750.0);
    expectPts(T, {{550.0, 155.0}, {250.0, 35.0}});
    expectPts(&S[1], {{1100.0, 220.0}});
    expectTouch({S[1], 750.0}, A2, T[2]);
    expectTouchLine({S[1], 750.0}, 0.2, -15.0, T[3]);

    UTMAT_CalculerArcParTgArcParDtePs1Pt(&A2.S, A2.R, &tangent, &A.S, S, R, T, &count);
    ASSERT_EQ(count, 2);
    expectA(1, R[1]);
    expectTouch({S[0], R[0]}, A2, T[0]);
    expectTouchLine({S[0], R[0]}, 0.2, -15.0, T[1]);
    EXPECT_NEAR(level({S[0], R[0]}, 100.0), 20.0, 1e-6);

    // One vertex twice: nothing; equal radii fix S.x = (X^2 - 2 Y (R - R1)) / 2X.
    UTMAT_CalculerArcParTg2ArcParRayon(&A1.S, A1.R, &A1.S, 500.0, 750.0, S, T, &count);
    EXPECT_EQ(count, 0);
    const Arc twin{{1000.0, 250.0}, 1000.0};
    UTMAT_CalculerArcParTg2ArcParRayon(&A1.S, A1.R, &twin.S, twin.R, -500.0, S, T, &count);
    ASSERT_EQ(count, 1);
    EXPECT_NEAR(S[0].x, 875.0, 1e-6);
    touchesBoth(0, -500.0, A1, twin);
}

/* ---- Tangent lines and crossings ---- */

TEST(Parabola, TangentLines)
{
    UTMAT_Droite out[2];
    dpoint2d T[4];
    int32_t count = -1;
    // Grade 0.2 on A: T.x = 100 + 150, the line y = 0.2 x - 15 normalised.
    const double n1 = std::sqrt(1.04), n2 = std::sqrt(1.16);
    UTMAT_CalculerDroiteTg1ArcParPente(&A.S, A.R, 0.2, out, T, &count);
    ASSERT_EQ(count, 1);
    EXPECT_NEAR(out[0].a, 0.2 / n1, kTol);
    EXPECT_NEAR(out[0].b, -1.0 / n1, kTol);
    EXPECT_NEAR(out[0].c, -15.0 / n1, kTol);
    expectPts(T, {{250.0, 35.0}});
    UTMAT_CalculerDroiteTg1ArcParPente(&A.S, 0.00005, 0.2, out, T, &count);
    EXPECT_EQ(count, 0);

    // From (175, -10) below A: 375 m^2 - 75 m - 30 = 0, m = 0.4 then -0.2.
    const dpoint2d below{175.0, -10.0};
    UTMAT_CalculerDroiteTg1ArcParPs1Pt(&below, &A.S, A.R, out, T, &count);
    ASSERT_EQ(count, 2);
    EXPECT_NEAR(out[0].a, 0.4 / n2, kTol);
    EXPECT_NEAR(out[0].c, -80.0 / n2, kTol);
    EXPECT_NEAR(out[1].c, 25.0 / n1, kTol);
    expectPts(T, {{400.0, 80.0}, {-50.0, 35.0}});
    // From the vertex itself the double root m = 0 is a horizontal tangent.
    UTMAT_CalculerDroiteTg1ArcParPs1Pt(&A.S, &A.S, A.R, out, T, &count);
    EXPECT_EQ(count, 0);

    // A1 and the crest (400, -50, -1000): 1000 m^2 - 400 m - 50 = 0 gives
    // y = 0.5 x - 125 and y = -0.1 x - 5; with the crest at (400, 0) the
    // second root is m = 0, horizontal, and dropped.
    const dpoint2d crest{400.0, -50.0}, crestHigh{400.0, 0.0};
    UTMAT_CalculerDroiteTg2ArcPar(&A1.S, A1.R, &crest, -1000.0, out, T, &count);
    ASSERT_EQ(count, 2);
    EXPECT_NEAR(out[0].c / out[0].b, 125.0, 1e-6);
    EXPECT_NEAR(out[1].a / out[1].b, 0.1, 1e-9);
    expectPts(T, {{500.0, 125.0}, {-100.0, -175.0}, {-100.0, 5.0}, {500.0, -55.0}});
    UTMAT_CalculerDroiteTg2ArcPar(&A1.S, A1.R, &crestHigh, -1000.0, out, T, &count);
    ASSERT_EQ(count, 1);
    expectPts(&T[1], {{0.0, -80.0}});
    // Sag and crest of the chain have no common tangent; R1 near 0 none
    // either, while R2 = 0 is not tested and leaves a point that is not a number.
    UTMAT_CalculerDroiteTg2ArcPar(&A1.S, A1.R, &A2.S, A2.R, out, T, &count);
    EXPECT_EQ(count, 0);
    UTMAT_CalculerDroiteTg2ArcPar(&A1.S, 0.0, &crest, -1000.0, out, T, &count);
    EXPECT_EQ(count, 0);
    UTMAT_CalculerDroiteTg2ArcPar(&A1.S, A1.R, &crest, 0.0, out, T, &count);
    EXPECT_TRUE(std::isnan(T[1].y));
}

TEST(Parabola, Crossings)
{
    dpoint2d out[2];
    int32_t count = -1;
    const struct {
        UTMAT_Droite d;
        Arc arc;
        int32_t count;
        dpoint2d p0, p1;
    } lines[] = {
        {{0.0, -1.0, 80.0}, A1, 2, {400.0, 80.0}, {-400.0, 80.0}},  // x^2 = 160000
        {{2.0, 0.0, -200.0}, A1, 1, {100.0, 5.0}, {}},              // vertical: its one point
        {{0.2, -1.0, -15.0}, A, 1, {250.0, 35.0}, {}},              // tangent: double root
        {{0.0, -1.0, -5.0}, A1, 0, {}, {}},                         // passes below
        {{0.0, -1.0, 80.0}, {{0.0, 0.0}, 0.00005}, 0, {}, {}},      // radius near 0
    };
    for (const auto &r : lines) {
        UTMAT_CalculerIntersectionDroiteParabole(&r.d, &r.arc.S, r.arc.R, out, &count);
        ASSERT_EQ(count, r.count);
        expectPts(out, {r.p0, r.p1});
    }

    const struct {
        Arc a, b;
        int32_t count;
        dpoint2d p0, p1;
    } arcs[] = {
        {A1, A, 1, {400.0, 80.0}, {}},                      // touching: (x - 400)^2 = 0
        {A1, {{200.0, 0.0}, 1000.0}, 1, {100.0, 5.0}, {}},  // equal radii
        {A1, {{0.0, 100.0}, -1000.0}, 2, {-std::sqrt(1e5), 50.0}, {std::sqrt(1e5), 50.0}},
        {A1, A1, 0, {}, {}},  // one arc twice
        {A1, {{0.0, 100.0}, 0.0}, 0, {}, {}},
    };
    for (const auto &r : arcs) {
        UTMAT_CalculerIntersection2Parabole(&r.a.S, r.a.R, &r.b.S, r.b.R, out, &count);
        ASSERT_EQ(count, r.count);
        expectPts(out, {r.p0, r.p1});
    }
}

/* ---- Failures ---- */

// A degenerate line fails where it is normalised (32768, outputs zeroed)
// and elsewhere only has no slope form (count 0, no error); a null d1 is
// the one null test and writes nothing.
TEST(Parabola, DegenerateLineAndNullLine)
{
    const UTMAT_Droite none{0.0, 0.0, 5.0};
    const dpoint2d p{1.0, 2.0}, q{5.0, 3.0};
    dpoint2d S[2], T[4];
    double R[2];
    int32_t count = -1;
    const auto run = [&](auto call) {
        std::fill(std::begin(T), std::end(T), dpoint2d{7.0, 7.0});
        count = -1;
        dirtyErrorWord();
        call();
        EXPECT_EQ(count, 0);
        expectPts(T, {{0.0, 0.0}});
        return errorWord();
    };
    EXPECT_EQ(run([&] { UTMAT_CalculerArcParTg1DteRayon(&none, &p, 10.0, S, T, &count); }), kFail);
    EXPECT_EQ(run([&] { UTMAT_CalculerArcParTg2DtePs1Pt(&sagIn, &none, &p, S, R, T, &count); }), kFail);
    EXPECT_EQ(run([&] { UTMAT_CalculerArcParTgArcParDteRayon(&A.S, A.R, &none, 10.0, S, T, &count); }),
              kFail);
    EXPECT_EQ(run([&] { UTMAT_CalculerArcParTg1DteSommet(&none, &S[0], R, T, &count); }), kFail);
    EXPECT_EQ(run([&] { UTMAT_CalculerIntersectionDroiteParabole(&none, &p, 10.0, T, &count); }), kFail);
    EXPECT_EQ(run([&] { UTMAT_CalculerArcParTg1DtePs2Pt(&none, &p, &q, S, R, T, &count); }), 0);
    EXPECT_EQ(run([&] { UTMAT_CalculerArcParTgArcParDtePs1Pt(&A.S, A.R, &none, &p, S, R, T, &count); }), 0);
    EXPECT_EQ(run([&] { UTMAT_CalculerArcParTg2DteLongueur(&none, &sagOut, 10.0, S, R, T, &count); }), 0);
    EXPECT_EQ(run([&] { UTMAT_CalculerArcParTg2DteRayon(&sagIn, &none, 10.0, S, &T[0], &T[1], &count); }), 0);

    std::fill(std::begin(T), std::end(T), dpoint2d{7.0, 7.0});
    count = -1;
    UTMAT_CalculerArcParTg2DteRayon(nullptr, &sagOut, 10.0, &T[0], &T[1], &T[2], &count);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(count, -1);
    expectPts(T, {{7.0, 7.0}, {7.0, 7.0}, {7.0, 7.0}});
}

}  // namespace
