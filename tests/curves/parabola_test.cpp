// Vertical curves worked by hand. Sag: y = -0.04 x + 18 and 0.02 x + 6, R = 3000,
// L = R (g2 - g1) = 180 from (110, 13.6) to (290, 11.8), vertex (230, 11.2). Crest:
// y = 0.03 x + 47 and -0.02 x + 52, R = -5000, from (-25, 46.25) to (225, 47.5),
// vertex (125, 48.5). Chain: A1 (0, 0, R 1000), A (100, 20, 750), A2 (850, 245,
// -500); A touches A1 at (400, 80), A2 at (550, 155); at x = 250 y = 0.2 x - 15.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <tuple>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/parabola.h>
#include <tessar/vector.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// Consecutive points and values against their expected values.
void expectPts(const dpoint2d *p, std::initializer_list<dpoint2d> expected)
{
    for (const dpoint2d &e : expected) {
        EXPECT_NEAR(p->x, e.x, 1e-7);
        EXPECT_NEAR(p++->y, e.y, 1e-7);
    }
}
void expectValues(const double *v, std::initializer_list<double> expected)
{
    for (const double e : expected)
        EXPECT_NEAR(*v++, e, 1e-6);
}

// Leaves 32768 in the error word so that a call is seen to clear it.
void dirtyErrorWord()
{
    UTMAT_Droite zero{0.0, 0.0, 1.0};
    UTMAT_NormerDroite(&zero, nullptr);
}

// The outputs of one construction, the error word left dirty.
struct Res {
    dpoint2d S[2]{}, T[4]{};
    double R[2]{};
    int32_t count = -1;
    Res() { dirtyErrorWord(); }
    // The count, then vertices, radii and tangency points from the first slot.
    void expect(int32_t n, std::initializer_list<dpoint2d> s, std::initializer_list<double> r = {},
                std::initializer_list<dpoint2d> t = {}) const
    {
        ASSERT_EQ(count, n);
        expectPts(S, s);
        expectValues(R, r);
        expectPts(T, t);
    }
};

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

struct Arc {
    dpoint2d S;
    double R;
    double level(double x) const { return S.y + (x - S.x) * (x - S.x) / (2.0 * R); }
};
const Arc A1{{0.0, 0.0}, 1000.0}, A{{100.0, 20.0}, 750.0}, A2{{850.0, 245.0}, -500.0};

// T on both arcs with one grade there; with b.R = 0, b is the line y = b.S.x x + b.S.y.
void expectTouch(const Arc &a, const Arc &b, const dpoint2d &T)
{
    const bool line = b.R == 0.0;
    EXPECT_NEAR(a.level(T.x), T.y, 1e-6);
    EXPECT_NEAR(line ? b.S.x * T.x + b.S.y : b.level(T.x), T.y, 1e-6);
    EXPECT_NEAR((T.x - a.S.x) / a.R, line ? b.S.x : (T.x - b.S.x) / b.R, 1e-9);
}

// The grades y = m x + k as lines (m, -1, k), not normalised.
const UTMAT_Droite sagIn{-0.04, -1.0, 18.0}, sagOut{0.02, -1.0, 6.0};
const UTMAT_Droite crestIn{0.03, -1.0, 47.0}, crestOut{-0.02, -1.0, 52.0};

TEST(Parabola, ArcsTangentToGrades)
{
    const UTMAT_Droite scaledIn{0.09, -3.0, 141.0};  // crestIn times 3: lines are taken as given
    const std::tuple<UTMAT_Droite, UTMAT_Droite, double, int32_t, dpoint2d, dpoint2d, dpoint2d> rows[] = {
        {crestIn, crestOut, -5000.0, 1, {125.0, 48.5}, {-25.0, 46.25}, {225.0, 47.5}},
        {scaledIn, crestOut, -5000.0, 1, {125.0, 48.5}, {-25.0, 46.25}, {225.0, 47.5}},
        {sagIn, sagOut, 3000.0, 1, {230.0, 11.2}, {110.0, 13.6}, {290.0, 11.8}},
        {sagIn, {-0.04, -1.0, 20.0}, 3000.0, 0, {}, {}, {}},  // parallel grades
        {sagIn, {1.0, 0.0, -5.0}, 3000.0, 0, {}, {}, {}},     // vertical line
        {sagIn, sagOut, 0.0, 0, {}, {}, {}},                  // no radius: the tangency guard fails
    };
    for (const auto &[d1, d2, R, count, S, T1, T2] : rows) {
        Res o;  // S, T1, T2 in T
        UTMAT_CalculerArcParTg2DteRayon(&d1, &d2, R, &o.T[0], &o.T[1], &o.T[2], &o.count);
        EXPECT_EQ(errorWord(), 0);
        o.expect(count, {}, {}, {S, T1, T2});
    }
    // Length 250: -L first (the crest), then R = 5000 on the far sides: S.x = 100 -
    // 0.01 * 2500 = 75, S.y = 150 * 0.03 + 47, T.x = 75 + 150, 75 - 100.
    Res o;
    UTMAT_CalculerArcParTg2DteLongueur(&crestIn, &crestOut, 250.0, o.S, o.R, o.T, &o.count);
    o.expect(2, {{125.0, 48.5}, {75.0, 51.5}}, {-5000.0, 5000.0},
             {{-25.0, 46.25}, {225.0, 47.5}, {225.0, 53.75}, {-25.0, 52.5}});
    const UTMAT_Droite parallel{0.03, -1.0, 40.0};
    UTMAT_CalculerArcParTg2DteLongueur(&crestIn, &parallel, 250.0, o.S, o.R, o.T, &o.count);
    EXPECT_EQ(o.count, 0);
    const dpoint2d vertex{230.0, 11.2}, end{290.0, 11.8}, start{110.0, 13.6}, mirror{350.0, 13.6};
    // R = 3000 through the vertex, on the incoming grade y = -0.04 x - 2.4 there:
    // S.x^2 - 240 S.x = 0, S.x = 240, S.y = -57600 / 6000, T.x = 240 - 120.
    UTMAT_CalculerArcParTg1DteRayon(&sagIn, &vertex, 3000.0, o.S, o.T, &o.count);
    o.expect(2, {{470.0, 1.6}, vertex}, {}, {{350.0, 4.0}, start});
    // Vertex and end: R = 3000 - 100 S.x, 25 S.x^2 - 720 S.x = 0, S.x = 28.8.
    UTMAT_CalculerArcParTg1DtePs2Pt(&sagIn, &vertex, &end, o.S, o.R, o.T, &o.count);
    o.expect(2, {{258.8, 7.744}, vertex}, {120.0, 3000.0}, {{254.0, 7.84}, start});
    // Level points: the quadratic in R has the double root 3000, one solution.
    UTMAT_CalculerArcParTg1DtePs2Pt(&sagIn, &start, &mirror, o.S, o.R, o.T, &o.count);
    o.expect(1, {vertex}, {3000.0}, {start});
    // Both grades: w = 3.6 / 0.0012, R = 3000 + 100 S.x, 9 S.x^2 + 240 S.x = 0.
    UTMAT_CalculerArcParTg2DtePs1Pt(&sagIn, &sagOut, &vertex, o.S, o.R, o.T, &o.count);
    o.expect(2, {{230.0 - 80.0 / 3.0, 11.2 - 16.0 / 15.0}, vertex}, {1000.0 / 3.0, 3000.0},
             {{190.0, 10.4}, {210.0, 10.2}, start, end});
    // Grades -+2 % fix S.x = 100: 0.0002 R^2 + 2.125 R + 1250 = 0 through p.
    const UTMAT_Droite up{0.02, -1.0, 0.0}, down{-0.02, -1.0, 4.0};
    const dpoint2d p{150.0, -0.125};
    UTMAT_CalculerArcParTg2DtePs1Pt(&up, &down, &p, o.S, o.R, o.T, &o.count);
    o.expect(2, {{100.0, 0.0}, {100.0, 1.875}}, {-10000.0, -625.0},
             {{-100.0, -2.0}, {300.0, -2.0}, {87.5, 1.75}, {112.5, 1.75}});
}

TEST(Parabola, ArcThroughPointsOrFromVertex)
{
    // Three points of the sag, (200, 11.2 + 30^2 / 6000) on it; then collinear.
    const dpoint2d p1{110.0, 13.6}, p2{200.0, 11.35}, p3{290.0, 11.8}, far{350.0, 13.6};
    const dpoint2d q1{0.0, 0.0}, q2{10.0, 1.0}, q3{20.0, 2.0}, vertex{230.0, 11.2};
    Res o;
    UTMAT_CalculerArcParPs3Pt(&p1, &p2, &p3, o.S, o.R, &o.count);
    o.expect(1, {vertex}, {3000.0});
    UTMAT_CalculerArcParPs3Pt(&q1, &q2, &q3, o.S, o.R, &o.count);
    o.expect(0, {}, {0.0});
    // Two points and the radius; level points put the vertex midway.
    for (const auto &[q, n] : {std::pair{p3, 1}, {far, 1}, {{110.0, 0.0}, 0}}) {
        UTMAT_CalculerArcParPs2PtRayon(&p1, &q, 3000.0, o.S, &o.count);
        o.expect(n, n == 1 ? std::initializer_list<dpoint2d>{vertex} : std::initializer_list<dpoint2d>{});
    }
    // Vertex first, point second: the roles follow the order.
    const std::tuple<dpoint2d, dpoint2d, int32_t, double> rows[] = {
        {vertex, p3, 1, 3000.0}, {p3, vertex, 1, -3000.0}, {p1, far, 0, 0.0}};
    for (const auto &[first, second, n, R] : rows) {
        UTMAT_CalculerArcParPs1PtSommet(&first, &second, o.R, &o.count);
        o.expect(n, {}, {R});
    }

    const double n = std::sqrt(1.0016);  // the incoming sag grade, normalised
    const UTMAT_Droite unit{-0.04 / n, -1.0 / n, 18.0 / n}, through{0.1, -1.0, 11.2 - 23.0};
    o.S[0] = {230.0, 11.2};
    UTMAT_CalculerArcParTg1DteSommet(&unit, o.S, o.R, o.T, &o.count);
    o.expect(1, {{230.0, 11.2}}, {3000.0}, {{110.0, 13.6}});  // S written back unchanged
    // The raw a = -0.04 beside b' = -1 / n: slope n times too steep, R = 3000 / n^2.
    UTMAT_CalculerArcParTg1DteSommet(&sagIn, o.S, o.R, o.T, &o.count);
    o.expect(1, {}, {3000.0 / 1.0016});
    // A grade through the vertex: R = 0, then the tangency guard fails.
    UTMAT_CalculerArcParTg1DteSommet(&through, o.S, o.R, o.T, &o.count);
    EXPECT_EQ(o.count, 0);

    // From A1, the arc of vertex (100, 20): R = 100^2 / 2 / -20 + 1000 = 750.
    UTMAT_CalculerArcParTg1ArcParSommet(&A1.S, A1.R, &A.S, o.R, o.T, &o.count);
    o.expect(1, {}, {750.0}, {{400.0, 80.0}});
    // Straight above A1's vertex: R = R0, T.x = 0 / 0 refused, the radius kept.
    const dpoint2d above{0.0, 50.0};
    UTMAT_CalculerArcParTg1ArcParSommet(&A1.S, A1.R, &above, o.R, o.T, &o.count);
    EXPECT_EQ(o.count, 0);
    EXPECT_EQ(o.R[0], 1000.0);
}

// Each construction must find A; counts from a scan along the first element.
TEST(Parabola, ArcsOfAChainTangentToArcs)
{
    Res o;
    const dpoint2d onA{250.0, 35.0}, mirror{-50.0, 35.0};
    const Arc tangent{{0.2, -15.0}, 0.0};  // A's grade at x = 250, y = 0.2 x - 15
    const auto arc = [&](int i, double R = 0.0) { return Arc{o.S[i], R == 0.0 ? o.R[i] : R}; };
    const auto expectA1 = [&] {  // A as the second solution
        expectPts(&o.S[1], {A.S});
        expectValues(&o.R[1], {750.0});
    };
    const auto touchesBoth = [&](int i, double R, const Arc &a, const Arc &b) {
        expectTouch(arc(i, R), a, o.T[2 * i]);
        expectTouch(arc(i, R), b, o.T[2 * i + 1]);
    };
    UTMAT_CalculerArcParTg2ArcParPs1Pt(&A1.S, A1.R, &A2.S, A2.R, &onA, o.S, o.R, o.T, &o.count);
    o.expect(2, {});
    expectA1();
    for (int i = 0; i < 2; ++i) {
        touchesBoth(i, 0.0, A1, A2);
        EXPECT_NEAR(arc(i).level(250.0), 35.0, 1e-6);
    }
    UTMAT_CalculerArcParTg2ArcParRayon(&A1.S, A1.R, &A2.S, A2.R, 750.0, o.S, o.T, &o.count);
    o.expect(2, {{550.0 / 3.0, 605.0 / 9.0}, A.S});
    touchesBoth(0, 750.0, A1, A2);
    touchesBoth(1, 750.0, A1, A2);
    // Through two points of A, level with each other or not.
    for (const dpoint2d &second : {A.S, mirror}) {
        UTMAT_CalculerArcParTg1ArcParPs2Pt(&A1.S, A1.R, &onA, &second, o.S, o.R, o.T, &o.count);
        o.expect(2, {A.S}, {750.0});
        expectTouch(arc(1), A1, o.T[1]);
        EXPECT_NEAR(arc(1).level(second.x), second.y, 1e-6);
    }
    UTMAT_CalculerArcParTg1ArcParPs1PtRayon(&A1.S, A1.R, &onA, 750.0, o.S, o.T, &o.count);
    o.expect(2, {{25.0, 1.25}, A.S});
    expectTouch(arc(0, 750.0), A1, o.T[0]);
    // R = R0 makes every tangency 0 / 0: the construction fails as a whole.
    UTMAT_CalculerArcParTg1ArcParPs1PtRayon(&A1.S, A1.R, &onA, 1000.0, o.S, o.T, &o.count);
    EXPECT_EQ(o.count, 0);
    // Tangent to A2 and to A's grade at x = 250.
    const UTMAT_Droite line{0.2, -1.0, -15.0};
    UTMAT_CalculerArcParTgArcParDteRayon(&A2.S, A2.R, &line, 750.0, o.S, o.T, &o.count);
    o.expect(2, {A.S, {1100.0, 220.0}}, {}, {{550.0, 155.0}, onA});
    touchesBoth(1, 750.0, A2, tangent);
    UTMAT_CalculerArcParTgArcParDtePs1Pt(&A2.S, A2.R, &line, &A.S, o.S, o.R, o.T, &o.count);
    o.expect(2, {});
    expectA1();
    touchesBoth(0, 0.0, A2, tangent);
    EXPECT_NEAR(arc(0).level(100.0), 20.0, 1e-6);
    // One vertex twice: nothing; equal radii fix S.x = (X^2 - 2 Y (R - R1)) / 2X.
    UTMAT_CalculerArcParTg2ArcParRayon(&A1.S, A1.R, &A1.S, 500.0, 750.0, o.S, o.T, &o.count);
    EXPECT_EQ(o.count, 0);
    const Arc twin{{1000.0, 250.0}, 1000.0};
    UTMAT_CalculerArcParTg2ArcParRayon(&A1.S, A1.R, &twin.S, twin.R, -500.0, o.S, o.T, &o.count);
    ASSERT_EQ(o.count, 1);
    EXPECT_NEAR(o.S[0].x, 875.0, 1e-6);
    touchesBoth(0, -500.0, A1, twin);
}

TEST(Parabola, TangentLinesAndCrossings)
{
    UTMAT_Droite out[2];
    Res o;
    // Grade 0.2 on A: T.x = 100 + 150, the line y = 0.2 x - 15 normalised.
    const double n1 = std::sqrt(1.04), n2 = std::sqrt(1.16);
    UTMAT_CalculerDroiteTg1ArcParPente(&A.S, A.R, 0.2, out, o.T, &o.count);
    o.expect(1, {}, {}, {{250.0, 35.0}});
    expectValues(std::array{out[0].a, out[0].b, out[0].c}.data(), {0.2 / n1, -1.0 / n1, -15.0 / n1});
    UTMAT_CalculerDroiteTg1ArcParPente(&A.S, 0.00005, 0.2, out, o.T, &o.count);
    EXPECT_EQ(o.count, 0);
    // From (175, -10) below A: 375 m^2 - 75 m - 30 = 0, m = 0.4 then -0.2.
    const dpoint2d below{175.0, -10.0};
    UTMAT_CalculerDroiteTg1ArcParPs1Pt(&below, &A.S, A.R, out, o.T, &o.count);
    o.expect(2, {}, {}, {{400.0, 80.0}, {-50.0, 35.0}});
    expectValues(std::array{out[0].a, out[0].c, out[1].c}.data(), {0.4 / n2, -80.0 / n2, 25.0 / n1});
    // From the vertex itself the double root m = 0 is a horizontal tangent.
    UTMAT_CalculerDroiteTg1ArcParPs1Pt(&A.S, &A.S, A.R, out, o.T, &o.count);
    EXPECT_EQ(o.count, 0);
    // A1 and (400, -50, -1000): 1000 m^2 - 400 m - 50 = 0, m = 0.5, -0.1; with
    // the crest at (400, 0) the root m = 0 is horizontal and dropped.
    const dpoint2d crest{400.0, -50.0}, crestHigh{400.0, 0.0};
    UTMAT_CalculerDroiteTg2ArcPar(&A1.S, A1.R, &crest, -1000.0, out, o.T, &o.count);
    o.expect(2, {}, {}, {{500.0, 125.0}, {-100.0, -175.0}, {-100.0, 5.0}, {500.0, -55.0}});
    EXPECT_NEAR(out[0].c / out[0].b, 125.0, 1e-6);
    EXPECT_NEAR(out[1].a / out[1].b, 0.1, 1e-9);
    UTMAT_CalculerDroiteTg2ArcPar(&A1.S, A1.R, &crestHigh, -1000.0, out, o.T, &o.count);
    o.expect(1, {}, {}, {{400.0, 80.0}, {0.0, -80.0}});
    // A1, A2: none; R1 near 0: none; R2 = 0 is not tested and leaves a NaN.
    UTMAT_CalculerDroiteTg2ArcPar(&A1.S, A1.R, &A2.S, A2.R, out, o.T, &o.count);
    EXPECT_EQ(o.count, 0);
    UTMAT_CalculerDroiteTg2ArcPar(&A1.S, 0.0, &crest, -1000.0, out, o.T, &o.count);
    EXPECT_EQ(o.count, 0);
    UTMAT_CalculerDroiteTg2ArcPar(&A1.S, A1.R, &crest, 0.0, out, o.T, &o.count);
    EXPECT_TRUE(std::isnan(o.T[1].y));
    const std::tuple<UTMAT_Droite, Arc, int32_t, dpoint2d, dpoint2d> lines[] = {
        {{0.0, -1.0, 80.0}, A1, 2, {400.0, 80.0}, {-400.0, 80.0}},  // x^2 = 160000
        {{2.0, 0.0, -200.0}, A1, 1, {100.0, 5.0}, {}},              // vertical: its one point
        {{0.2, -1.0, -15.0}, A, 1, {250.0, 35.0}, {}},              // tangent: double root
        {{0.0, -1.0, -5.0}, A1, 0, {}, {}},                         // passes below
        {{0.0, -1.0, 80.0}, {{0.0, 0.0}, 0.00005}, 0, {}, {}},      // radius near 0
    };
    for (const auto &[d, arc, n, p0, p1] : lines) {
        UTMAT_CalculerIntersectionDroiteParabole(&d, &arc.S, arc.R, o.S, &o.count);
        o.expect(n, {p0, p1});
    }
    const std::tuple<Arc, Arc, int32_t, dpoint2d, dpoint2d> arcs[] = {
        {A1, A, 1, {400.0, 80.0}, {}},                      // touching: (x - 400)^2 = 0
        {A1, {{200.0, 0.0}, 1000.0}, 1, {100.0, 5.0}, {}},  // equal radii
        {A1, {{0.0, 100.0}, -1000.0}, 2, {-std::sqrt(1e5), 50.0}, {std::sqrt(1e5), 50.0}},
        {A1, A1, 0, {}, {}},  // one arc twice
        {A1, {{0.0, 100.0}, 0.0}, 0, {}, {}},
    };
    for (const auto &[a, b, n, p0, p1] : arcs) {
        UTMAT_CalculerIntersection2Parabole(&a.S, a.R, &b.S, b.R, o.S, &o.count);
        o.expect(n, {p0, p1});
    }
}

// A degenerate line fails where normalised (32768), elsewhere count 0, no error;
// outputs zeroed. A null d1 is the one null test and writes nothing.
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
