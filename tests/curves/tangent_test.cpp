// Circles through points, tangent to lines and circles, worked by hand.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/tangent.h>
#include <tessar/vector.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;
constexpr double kUntouched = 7.5;

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// Sets the error word to 32768 (a null point) to see the next call clear it.
void dirty()
{
    int32_t ignored = 0;
    UTMAT_CalculerCerPs3Pt(nullptr, nullptr, nullptr, nullptr, nullptr, &ignored);
}

// The outputs of one call, filled with a marker.
struct Out {
    dpoint2d centres[8], points[16];
    double radii[8];
    int32_t count = -1;
    Out()
    {
        std::fill(std::begin(centres), std::end(centres), dpoint2d{kUntouched, kUntouched});
        std::fill(std::begin(points), std::end(points), dpoint2d{kUntouched, kUntouched});
        std::fill(std::begin(radii), std::end(radii), kUntouched);
        dirty();
    }
};

struct Circle {
    double x, y, r;
};

// No error, the centres (radii when r >= 0) and points in order; re-dirties.
void expectCircles(const Out &o, const std::vector<Circle> &expected,
                   std::initializer_list<dpoint2d> points = {}, double tol = 1e-9)
{
    ASSERT_EQ(errorWord(), 0);
    ASSERT_EQ(o.count, int32_t(expected.size()));
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(o.centres[i].x, expected[i].x, tol) << i;
        EXPECT_NEAR(o.centres[i].y, expected[i].y, tol) << i;
        if (expected[i].r < 0.0) continue;
        EXPECT_NEAR(o.radii[i], expected[i].r, tol) << i;
    }
    const dpoint2d *p = o.points;
    for (const dpoint2d &e : points) {
        EXPECT_NEAR(p->x, e.x, 1e-9) << p - o.points;
        EXPECT_NEAR(p++->y, e.y, 1e-9);
    }
    dirty();
}

// Right angles at p1 (the second with u vertical): the hypotenuse's middle.
// Points 6 apart: R = 5 puts the centres 4 off the middle (13, 20), R = 3 on it.
TEST(TangentCircles, ThroughThreeOrTwoPoints)
{
    const std::tuple<dpoint2d, dpoint2d, dpoint2d, std::vector<Circle>> rows[] = {
        {{10, 20}, {14, 20}, {10, 23}, {{12, 21.5, 2.5}}},
        {{10, 20}, {10, 24}, {13, 20}, {{11.5, 22, 2.5}}},
        {{0, 0}, {1, 1}, {3, 3}, {}},
        {{1, 1}, {1, 1}, {4, 2}, {}}};
    for (const auto &[p1, p2, p3, expected] : rows) {
        Out o;
        UTMAT_CalculerCerPs3Pt(&p1, &p2, &p3, o.centres, o.radii, &o.count);
        expectCircles(o, expected);
    }
    Out n;
    const dpoint2d q{1, 2}, p1{10, 20}, p2{16, 20};
    UTMAT_CalculerCerPs3Pt(nullptr, &q, &q, n.centres, n.radii, &n.count);  // only p1 is tested for null
    EXPECT_TRUE(errorWord() == kFail && n.count == 0 && n.centres[0].x == kUntouched &&
                n.radii[0] == kUntouched);
    const std::tuple<dpoint2d, double, std::vector<Circle>> pairs[] = {
        {p2, 5, {{13, 16, -1}, {13, 24, -1}}}, {p2, 3, {{13, 20, -1}}}, {p2, 2, {}}, {p1, 5, {}}};
    for (const auto &[q2, R, expected] : pairs) {
        Out o;
        UTMAT_CalculerCerPs2PtRayon(&p1, &q2, R, o.centres, &o.count);
        expectCircles(o, expected);
    }
}

// Roads y = 2000 (not normalised) and 4 x - 3 y + 2000 = 0 cross at (1000, 2000):
// about it -y = 10 s1, (4 x - 3 y) / 5 = 10 s2, so x = (50 s2 - 30 s1) / 4; feet c -+ 2 (4, -3).
TEST(TangentCircles, RoadFilletOfRadiusTenBetweenTwoRoads)
{
    UTMAT_Droite d1{0, -2, 4000}, d2{4, -3, 2000};
    const UTMAT_Droite parallel{0, 1, -2050};
    Out o, none;
    UTMAT_CalculerCerTg2DteRayon(&d1, &d2, 10.0, o.centres, o.points, &o.count);
    expectCircles(o, {{995, 2010, -1}, {1020, 2010, -1}, {980, 1990, -1}, {1005, 1990, -1}},
                  {{995, 2000},
                   {1003, 2004},
                   {1020, 2000},
                   {1012, 2016},
                   {980, 2000},
                   {988, 1984},
                   {1005, 2000},
                   {997, 1996}});
    EXPECT_TRUE(d1.a == 0 && d1.b == -2 && d1.c == 4000 && d2.a == 4 && d2.b == -3 && d2.c == 2000);
    UTMAT_CalculerCerTg2DteRayon(&d1, &parallel, 10, none.centres, none.points, &none.count);
    expectCircles(none, {});
}

// The axes; through (1, 2): centre (a, a), (a - 1)^2 + (a - 2)^2 = a^2, a = 5, 1.
// At (5, 0): (5, -+5), rho = 0 dropped, as at (0, 0). Between y = 0 and 2: one.
TEST(TangentCircles, TangentToLinesThroughPoints)
{
    const UTMAT_Droite xAxis{0, -1, 0}, yAxis{3, 0, 0}, y2{0, -1, 2};
    const auto through = [&](const UTMAT_Droite &d1, const UTMAT_Droite &d2, dpoint2d p, Out &o) {
        UTMAT_CalculerCerTg2DtePs1Pt(&d1, &d2, &p, o.centres, o.radii, o.points, &o.count);
    };
    Out o1, o2, o3, o4;
    through(xAxis, yAxis, {1, 2}, o1);
    expectCircles(o1, {{5, 5, 5}, {1, 1, 1}}, {{5, 0}, {0, 5}, {1, 0}, {0, 1}});
    through(xAxis, yAxis, {5, 0}, o2);
    ASSERT_EQ(o2.count, 2);
    EXPECT_NEAR(std::fabs(o2.centres[0].y * o2.centres[1].y), 25.0, 1e-9);
    expectCircles(o2, {{5, o2.centres[0].y, 5}, {5, o2.centres[1].y, 5}});
    through(xAxis, yAxis, {0, 0}, o3);
    expectCircles(o3, {});
    through(xAxis, y2, {0, 0}, o4);
    expectCircles(o4, {{0, 1, 1}}, {{0, 0}, {0, 2}});
    // y = 0, p = (3, 1): centre (x, 5), (x - 3)^2 = 9; -5 finds the same, 0.4 none.
    // Through (0, 1) and (0, 9): (+-3, 5), radius 5.
    const UTMAT_Droite d{0, -1, 0};
    const dpoint2d p{3, 1}, q1{0, 1}, q2{0, 9};
    for (double R : {5.0, -5.0}) {
        Out o;
        UTMAT_CalculerCerTgDtePs1PtRayon(&d, &p, R, o.centres, o.points, &o.count);
        expectCircles(o, {{0, 5, -1}, {6, 5, -1}}, {{0, 0}, {6, 0}});
    }
    Out o, far;
    UTMAT_CalculerCerTgDtePs1PtRayon(&d, &p, 0.4, far.centres, far.points, &far.count);
    expectCircles(far, {});
    UTMAT_CalculerCerTgDtePs2Pt(&d, &q1, &q2, o.centres, o.radii, o.points, &o.count);
    expectCircles(o, {{-3, 5, 5}, {3, 5, 5}}, {{-3, 0}, {3, 0}});
}

// Road y = 53, roundabout r = 5 at (100, 50), R = 3: centres on y = 0 or 6 about
// it, 2 (inside) or 8 away, touching at (centre - c) 5 / (5 + 3 s), s = -+1.
// r = 2 at 8 apart: centres (4, -+3) about c1. Point circles: kept once.
TEST(TangentCircles, TangentToCirclesWithRadiusAndRepeats)
{
    const dpoint2d c{100, 50}, c1{100, 100}, c2{108, 100}, c3{110, 100};
    const UTMAT_Droite road{0, -1, 53};
    const double s = std::sqrt(28.0);
    Out o, two, points;
    UTMAT_CalculerCerTgCerDteRayon(&c, 5.0, &road, 3.0, o.centres, o.points, &o.count);
    expectCircles(
        o, {{98, 50, -1}, {102, 50, -1}, {100 - s, 56, -1}, {100 + s, 56, -1}, {92, 50, -1}, {108, 50, -1}},
        {{95, 50},
         {98, 53},
         {105, 50},
         {102, 53},
         {100 - 5 * s / 8, 53.75},
         {100 - s, 53},
         {100 + 5 * s / 8, 53.75},
         {100 + s, 53},
         {95, 50},
         {92, 53},
         {105, 50},
         {108, 53}});
    UTMAT_CalculerCerTg2CerRayon(&c1, 2, &c2, 2, 3, two.centres, two.points, &two.count);
    expectCircles(two, {{104, 97, -1}, {104, 103, -1}}, {{101.6, 98.8}, {106.4, 98.8}});
    UTMAT_CalculerCerTg2CerRayon(&c1, 0, &c3, 0, 5, points.centres, points.points, &points.count);
    expectCircles(points, {{105, 100, -1}});
}

// p on the circle, R = r: the circle itself (d = 0: point p moved back twice, 2 p)
// and the centre 10 away. r = 2, chord (-+3, 5): (0, k), rho -+ 2 = k, rho^2 = 9 +
// (k - 5)^2. r = 2 at (-+5, 0), p = 0: 25 + k^2 = (2 + |k|)^2, touching 2 / 7.25 on.
TEST(TangentCircles, TangentToACircleThroughPoints)
{
    const dpoint2d c{100, 0}, p{105, 0}, a{10, 20}, b{16, 20}, o0{0, 0}, q1{-3, 5}, q2{3, 5}, l{-5, 0},
        r{5, 0};
    Out on, pc, chord, chordPc, sym;
    UTMAT_CalculerCerTgCerPs1PtRayon(&c, 5, &p, 5, on.centres, on.points, &on.count);
    expectCircles(on, {{100, 0, -1}, {110, 0, -1}}, {{210, 0}, {105, 0}});
    UTMAT_CalculerCerTgCerPs1PtRayon(&a, 0, &b, 5, pc.centres, pc.points, &pc.count);
    expectCircles(pc, {{13, 16, -1}, {13, 24, -1}}, {{10, 20}, {10, 20}});
    UTMAT_CalculerCerTgCerPs2Pt(&o0, 2, &q1, &q2, chord.centres, chord.radii, chord.points, &chord.count);
    expectCircles(chord, {{0, 15.0 / 7, 29.0 / 7}, {0, 5, 3}}, {{0, -2}, {0, 2}});
    UTMAT_CalculerCerTg2CerPs1Pt(&o0, 2, &q2, 0, &q1, chordPc.centres, chordPc.radii, chordPc.points,
                                 &chordPc.count);
    expectCircles(chordPc, {{0, 15.0 / 7, 29.0 / 7}, {0, 5, 3}});
    UTMAT_CalculerCerTg2CerPs1Pt(&l, 2, &r, 2, &o0, sym.centres, sym.radii, sym.points, &sym.count);
    const double u = 105.0 / 29, v = 42.0 / 29;
    expectCircles(sym, {{0, -5.25, 5.25}, {0, 5.25, 5.25}}, {{-u, -v}, {u, -v}, {-u, v}, {u, v}});
}

// y = 0, r = 2 at (0, 12), p = (3, 9): (x - 3)^2 = 18 rho - 81 with x^2 + 140 =
// 20 rho (inside, first) or 28 rho (outside); (0, 5) touches at (0, 10).
TEST(TangentCircles, TangentToACircleAndALineThroughAPoint)
{
    const dpoint2d c{0, 12}, p{3, 9};
    const UTMAT_Droite d{0, -1, 0};
    const double xa = 30 + std::sqrt(1260.0), xb = 30 - std::sqrt(1260.0);
    const double ra = (xa * xa + 140) / 20, rb = (xb * xb + 140) / 20;
    Out o;
    UTMAT_CalculerCerTgCerDtePs1Pt(&c, 2, &d, &p, o.centres, o.radii, o.points, &o.count);
    expectCircles(o, {{xa, ra, ra}, {xb, rb, rb}, {16.8, 15.08, 15.08}, {0, 5, 5}}, {}, 1e-8);
    EXPECT_TRUE(std::hypot(o.points[6].x, o.points[6].y - 10) < 1e-9 &&
                std::hypot(o.points[7].x, o.points[7].y) < 1e-9);
}

// A radius not above 0 (within 0.0001) gives no circle and no error.
TEST(TangentCircles, RadiusNotAboveZeroGivesNoCircle)
{
    const UTMAT_Droite d1{0, -1, 0}, d2{1, 0, 0};
    const dpoint2d c{0, 0}, p{3, 4}, q{8, 0};
    for (double R : {0.0, 5e-5, -2.0}) {
        SCOPED_TRACE(R);
        std::vector<std::function<void(Out &)>> calls = {
            [&](Out &o) { UTMAT_CalculerCerPs2PtRayon(&c, &q, R, o.centres, &o.count); },
            [&](Out &o) { UTMAT_CalculerCerTg2DteRayon(&d1, &d2, R, o.centres, o.points, &o.count); },
            [&](Out &o) { UTMAT_CalculerCerTg2CerRayon(&c, 1, &q, 1, R, o.centres, o.points, &o.count); },
            [&](Out &o) { UTMAT_CalculerCerTgCerDteRayon(&c, 1, &d1, R, o.centres, o.points, &o.count); },
            [&](Out &o) { UTMAT_CalculerCerTgCerPs1PtRayon(&c, 5, &p, R, o.centres, o.points, &o.count); }};
        if (R != -2.0)  // this member tests |R|: -2 finds circles
            calls.push_back(
                [&](Out &o) { UTMAT_CalculerCerTgDtePs1PtRayon(&d1, &p, R, o.centres, o.points, &o.count); });
        for (const auto &call : calls) {
            Out o;
            call(o);
            expectCircles(o, {});
        }
    }
}

// A line with a = b = 0 fails every member taking a line, writing nothing.
TEST(TangentCircles, DegenerateLineFailsAndWritesNothing)
{
    const UTMAT_Droite bad{0, 0, 5}, good{0, -1, 0};
    const dpoint2d c{0, 3}, p{1, 1}, q{2, 2};
    const std::function<void(Out &)> calls[] = {
        [&](Out &o) { UTMAT_CalculerCerTg2DteRayon(&good, &bad, 1, o.centres, o.points, &o.count); },
        [&](Out &o) {
            UTMAT_CalculerCerTg2DtePs1Pt(&bad, &good, &p, o.centres, o.radii, o.points, &o.count);
        },
        [&](Out &o) { UTMAT_CalculerCerTgDtePs1PtRayon(&bad, &p, 1, o.centres, o.points, &o.count); },
        [&](Out &o) { UTMAT_CalculerCerTgDtePs2Pt(&bad, &p, &q, o.centres, o.radii, o.points, &o.count); },
        [&](Out &o) { UTMAT_CalculerCerTgCerDteRayon(&c, 1, &bad, 1, o.centres, o.points, &o.count); },
        [&](Out &o) {
            UTMAT_CalculerCerTgCerDtePs1Pt(&c, 1, &bad, &p, o.centres, o.radii, o.points, &o.count);
        },
    };
    for (const auto &call : calls) {
        Out o;
        call(o);
        EXPECT_TRUE(errorWord() == kFail && o.count == 0);
        EXPECT_TRUE(o.centres[0].x == kUntouched && o.radii[0] == kUntouched && o.points[0].y == kUntouched);
    }
}

}  // namespace
