// Angles and sectors in both generations, which must agree to the bit: range
// boundaries, angles about a centre, hand-drawn sector pairs. Worked by hand.
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <tuple>

#include <gtest/gtest.h>

#include <tessar/angle.h>
#include <tessar/frame.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;
constexpr double kPi = std::numbers::pi;
constexpr double kTurn = 2.0 * std::numbers::pi;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// Leaves 32768 in the error word, so that a following call can be seen to
// clear it or to leave it alone.
void provokeFailure()
{
    UTMAT_NormaliserAngle(3, 0.0);
    ASSERT_EQ(errorWord(), kFail);
}

dpoint2d polar(double angle)
{
    return {std::cos(angle), std::sin(angle)};
}

TEST(AngleNormalise, ModesAtTheirBoundaries)
{
    // Mode 0: above -pi up to pi; 1: 0 up to 2 pi (-1e-20 + 2 pi rounds to 2 pi); 2: clamped, never wrapped.
    const int32_t s = TESSAR_ANGLE_SIGNED, p = TESSAR_ANGLE_POSITIVE, c = TESSAR_ANGLE_CLAMPED;
    using R = std::tuple<int32_t, double, double, double>;
    for (const auto &[mode, in, expected, tol] :
         {R{s, kPi, kPi, 0.0}, R{s, -kPi, kPi, 0.0}, R{s, 1.5 * kPi, -0.5 * kPi, 1e-15},
          R{p, kTurn, 0.0, 0.0}, R{p, -kPi, kPi, 0.0}, R{p, -1e-20, kTurn, 0.0},
          R{p, 3.0 * kTurn + 0.5, 0.5, 1e-14}, R{c, 7.0, kTurn, 0.0}, R{c, -7.0, -kTurn, 0.0},
          R{c, -5.0, -5.0, 0.0}}) {
        provokeFailure();
        EXPECT_NEAR(UTMAT_NormaliserAngle(mode, in), expected, tol) << mode << " " << in;
        EXPECT_EQ(errorWord(), 0);
    }
    // fmod keeps the sign of -0.0, and -0.0 is not below 0: no turn is added.
    for (int32_t mode : {s, p, c})
        EXPECT_TRUE(std::signbit(UTMAT_NormaliserAngle(mode, -0.0))) << "mode " << mode;
    EXPECT_EQ(UTMAT_NormaliserAngle(-1, 1.25), 1.25);
    EXPECT_EQ(errorWord(), kFail);
}

TEST(AngleOfVectors, CounterClockwiseFromFirstToSecondAndOfLines)
{
    // A quarter clockwise is 3 pi / 2; opposite; lengths play no part; 135 to 45
    // degrees the long way (asin of a sine one ulp short of 1 costs 2.1e-8);
    // beyond pi the dot product is positive again; the second quadrant is
    // pi - asin; a zero vector gives 0, not a failure.
    const dpoint2d at5 = polar(5.0), at2 = polar(2.5);
    using R = std::tuple<double, double, double, double, double, double>;
    for (const auto &[x1, y1, x2, y2, expected, tol] :
         {R{1.0, 0.0, 0.0, -1.0, 1.5 * kPi, 1e-15}, R{1.0, 0.0, -1.0, 0.0, kPi, 1e-15},
          R{0.0, -3.0, 1.0, 0.0, 0.5 * kPi, 1e-15}, R{-1.0, 1.0, 1.0, 1.0, 1.5 * kPi, 2.2e-8},
          R{1.0, 0.0, at5.x, at5.y, 5.0, 1e-14}, R{1.0, 0.0, at2.x, at2.y, 2.5, 1e-14},
          R{0.0, 0.0, 1.0, 0.0, 0.0, 0.0}}) {
        const dpoint2d v1{x1, y1}, v2{x2, y2};
        provokeFailure();
        EXPECT_NEAR(UTMAT_CalculerAngleV1V2(&v1, &v2), expected, tol) << x2 << " " << y2;
        EXPECT_EQ(errorWord(), 0);
    }
    EXPECT_EQ(UTMAT_CalculerAngleV1V2(nullptr, &at5), 0.0);
    EXPECT_EQ(errorWord(), kFail);

    // a x + b y + c = 0 travels along (-b, a): 0 x - y + 1 east, x - 2 north.
    const UTMAT_Droite eastLine{0.0, -1.0, 1.0}, northLine{1.0, 0.0, -2.0};
    double out = -1.0;
    UTMAT_CalculerAngleD1D2(&northLine, &eastLine, &out);
    EXPECT_NEAR(out, 1.5 * kPi, 1e-15);
    UTMAT_CalculerAngleD1D2(&eastLine, &northLine, nullptr);
    EXPECT_EQ(errorWord(), kFail);
}

TEST(AngleAtCentre, SweepsInBothSensesPolarCoordinatesAndOffsets)
{
    // About (1, 1): east (2, 1) is at 0, north (1, 3) at pi / 2. Clockwise is
    // negative, the same direction clockwise a full turn, any non-zero sense ccw.
    const dpoint2d centre{1, 1}, p{4, 5};  // p: (3, 4) from the centre
    using R = std::tuple<double, double, double, double, int32_t, double>;
    for (const auto &[x1, y1, x2, y2, sense, expected] :
         {R{2.0, 1.0, 1.0, 3.0, 1, 0.5 * kPi}, R{2.0, 1.0, 1.0, 3.0, 0, -1.5 * kPi},
          R{1.0, 3.0, 2.0, 1.0, 1, 1.5 * kPi}, R{2.0, 1.0, 5.0, 1.0, 0, -kTurn},
          R{0.0, 0.0, 2.0, 2.0, 7, kPi}}) {
        const dpoint2d p1{x1, y1}, p2{x2, y2};
        EXPECT_NEAR(UTMAT_CalculerAngleAuCentre(&centre, &p1, &p2, sense), expected, 1e-15)
            << x1 << " " << sense;
        EXPECT_EQ(errorWord(), 0);
    }
    EXPECT_EQ(UTMAT_CalculerAngleAuCentre(&centre, &p, &centre, 0), 0.0);
    EXPECT_EQ(errorWord(), kFail);

    double angle = -1.0, radius = -1.0;
    UTMAT_CalculerAngleRayonPtCentre(&centre, &p, &angle, &radius);
    EXPECT_DOUBLE_EQ(radius, 5.0);
    EXPECT_NEAR(angle, 0.92729521800161223, 1e-15);  // atan(4 / 3)
    UTMAT_CalculerAngleRayonPtCentre(&centre, &centre, &angle, &radius);
    EXPECT_EQ(angle + radius, 0.0);

    // From an offset, p2 the origin so that a is the direction of p1: a at
    // least the offset gives a - offset (here clockwise); a below it
    // 2 pi - (offset - a); atan2's -pi/2 is taken as 3 pi/2; exactly the offset.
    const dpoint2d origin{0, 0};
    using O = std::tuple<double, double, int32_t, double>;
    for (const auto &[y, offset, sense, expected] :
         {O{1.0, 0.25 * kPi, 0, 0.25 * kPi - kTurn}, O{1.0, kPi, 1, 1.5 * kPi}, O{-1.0, 0.0, 1, 1.5 * kPi},
          O{-1.0, 1.5 * kPi, 1, 0.0}}) {
        const dpoint2d p1{0, y};
        EXPECT_NEAR(UTMAT_CalculerAnglePtOffsetAngle(&p1, &origin, offset, sense), expected, 1e-15) << offset;
    }
}

TEST(AngleInSector, BothFormsAgreeOnTheTableOfCases)
{
    // The tolerance 1/16 and these angles are exact in binary, so the boundary
    // rows sit exactly one tolerance from the edges: before the start, two
    // before (a turn on), past the end, over 0 / 2 pi, a sweep of 0; then
    // clockwise sectors: inside, after the start (a turn back), one tol after.
    const double t = 0.0625;
    using R = std::tuple<double, double, double, int, double>;
    for (const auto &[angle, start, sweep, inside, delta] :
         {R{0.9375, 1.0, 1.0, 1, -0.0625}, R{0.875, 1.0, 1.0, 0, 0.875 - 1.0 + kTurn},
          R{2.0625, 1.0, 1.0, 1, 1.0625}, R{0.5, 6.0, 1.0, 1, 0.5 - 6.0 + kTurn}, R{1.0, 1.0, 0.0, 1, 0.0},
          R{0.5, 1.0, -1.0, 1, -0.5}, R{1.5, 1.0, -1.0, 0, 0.5 - kTurn}, R{1.0625, 1.0, -1.0, 1, 0.0625},
          R{6.0, 0.5, -1.0, 1, 5.5 - kTurn}}) {
        int32_t inKernel = -1, inValue = -1;
        double deltaKernel = 99.0, deltaValue = 99.0;
        provokeFailure();
        UTMAT_ComparerAngleASecteurAngulaire(angle, start, sweep, t, &inKernel, &deltaKernel);
        EXPECT_EQ(errorWord(), 0);
        provokeFailure();
        EXPECT_EQ(tsMath_compareDirectionToSector(&inValue, &deltaValue, angle, start, sweep, t), 0);
        EXPECT_EQ(errorWord(), kFail) << "the by-value form leaves the error word alone";
        EXPECT_EQ(inKernel, inside) << "angle " << angle << " start " << start;
        EXPECT_NEAR(deltaKernel, delta, 1e-15);
        EXPECT_TRUE(inValue == inKernel && deltaValue == deltaKernel);
    }
    int32_t inside = -1;  // a null delta: optional in the by-value form only
    UTMAT_ComparerAngleASecteurAngulaire(1.5, 1.0, 1.0, 0.0, &inside, nullptr);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(inside, -1);
    EXPECT_EQ(tsMath_compareDirectionToSector(&inside, nullptr, 1.5, 1.0, 1.0, 0.0), 0);
    EXPECT_EQ(inside, 1);
}

/* ---- Sector algebra ---- */

// Directions whose start angle matters to the bit.
const dpoint2d kEast{1.0, 0.0}, kWest{-1.0, 0.0}, kNorthEast{1.0, 1.0}, kNorthEast2{2.0, 2.0};
const dpoint2d kBelowEast{1.0, -1e-300}, kEastMinus0{1.0, -0.0}, kWestMinus0{-1.0, -0.0};

struct SectorCase {
    const char *name;
    dpoint2d dir1, dir2;
    double sweep1, sweep2;
    int32_t relation, firstGiven;  // which given sector ranks first: 1 or 2
    int32_t productDir, count;     // the given direction of the common part (0: none), its count
    int32_t sumDir;                // the given direction of the enclosing sector
    double productSweep, sumSweep;
};

// By start and sweep in radians. Apart, the sum takes the shorter way round,
// the second direction on a tie. Overlapping at both ends, the common piece
// from s2 is returned, and the sum's whole circle is 0. Below east starts at
// 2 pi (rounded up): e2 - 2 pi equals e1, the second "runs round and
// contains" the first. Equal starts (-0.0 too): the second given ranks first.
const int32_t kApart = TESSAR_SECTORS_APART, kInside = TESSAR_SECTORS_INSIDE,
              kOverlap = TESSAR_SECTORS_OVERLAP;
const SectorCase kSectorCases[] = {
    {"[0,1] [2,3]", kEast, polar(2.0), 1.0, 1.0, kApart, 1, 0, 0, 1, 0.0, 3.0},
    {"[0,1] [4,5]", kEast, polar(4.0), 1.0, 1.0, kApart, 1, 0, 0, 2, 0.0, kTurn - 3.0},
    {"[0,1] [pi,pi+1]", kEast, kWest, 1.0, 1.0, kApart, 1, 0, 0, 2, 0.0, kPi + 1.0},
    {"[1,3] [1.5,2.5]", polar(1.0), polar(1.5), 2.0, 1.0, kInside, 1, 2, 1, 1, 1.0, 2.0},
    {"[1,3] [2,4]", polar(1.0), polar(2.0), 2.0, 2.0, kOverlap, 1, 2, 1, 1, 1.0, 3.0},
    {"[0,4] [3,7]", kEast, polar(3.0), 4.0, 4.0, TESSAR_SECTORS_OVERLAP_BOTH_ENDS, 1, 2, 1, 1, 1.0, 0.0},
    {"[1,2] [5,7.5]", polar(1.0), polar(5.0), 1.0, 2.5, TESSAR_SECTORS_WRAP_INTO_FIRST, 1, 1, 1, 2,
     7.5 - kTurn - 1.0, kTurn - 3.0},
    {"[1,2] [5,9]", polar(1.0), polar(5.0), 1.0, 4.0, TESSAR_SECTORS_WRAP_AROUND_FIRST, 1, 1, 1, 2, 1.0, 4.0},
    {"equal starts", kNorthEast, kNorthEast2, 1.0, 0.5, kOverlap, 2, 1, 1, 2, 0.5, 1.0},
    {"full turn", kEast, polar(1.0), kTurn, 1.0, kInside, 1, 2, 1, 1, 1.0, 0.0},    // 2 pi becomes 0
    {"over a turn", kEast, polar(1.0), 7.0, 1.0, kInside, 1, 2, 1, 1, 1.0, kTurn},  // cut to 2 pi
    {"start 2 pi", kBelowEast, kEast, 1.0, 1.0, TESSAR_SECTORS_WRAP_AROUND_FIRST, 2, 2, 1, 1, 1.0, 1.0},
    {"minus zero", kEastMinus0, kEast, 1.0, 2.0, kInside, 2, 1, 1, 2, 1.0, 2.0},
    {"west, minus zero", kWestMinus0, polar(1.0), 1.0, 1.0, kApart, 2, 0, 0, 2, 0.0, kPi},
};

const dpoint2d &given(const SectorCase &c, int which)
{
    return which == 1 ? c.dir1 : c.dir2;
}

// The same direction to the bit, the sign of a zero included.
void expectDirection(double x, double y, const dpoint2d &expected, const char *name)
{
    EXPECT_EQ(x, expected.x) << name;
    EXPECT_EQ(y, expected.y) << name;
    EXPECT_EQ(std::signbit(y), std::signbit(expected.y)) << name;
}

TEST(SectorAlgebra, RankingProductAndSumInBothGenerations)
{
    for (const SectorCase &c : kSectorCases) {
        dpoint2d firstDir{9, 9}, secondDir{9, 9}, dir{9, 9};
        double s1 = 0, e1 = 0, s2 = 0, e2 = 0, sweep = 99.0, x = 9, y = 9, w = 99;
        int32_t relation = -1, count = -1, n = -1;
        const double v[6] = {c.dir1.x, c.dir1.y, c.sweep1, c.dir2.x, c.dir2.y, c.sweep2};  // by value
        provokeFailure();
        UTMAT_Classer2Secteurs(&c.dir1, c.sweep1, &c.dir2, c.sweep2, &firstDir, &s1, &e1, &secondDir, &s2,
                               &e2, &relation);
        EXPECT_EQ(errorWord(), 0) << c.name;
        EXPECT_EQ(relation, c.relation) << c.name;
        expectDirection(firstDir.x, firstDir.y, given(c, c.firstGiven), c.name);
        expectDirection(secondDir.x, secondDir.y, given(c, 3 - c.firstGiven), c.name);
        EXPECT_TRUE(0.0 <= s1 && s1 <= s2 && s2 <= kTurn) << c.name;
        EXPECT_EQ(e1 - s1, c.firstGiven == 1 ? c.sweep1 : c.sweep2) << c.name;

        provokeFailure();
        UTMAT_CalculerProduitSecteur(&c.dir1, c.sweep1, &c.dir2, c.sweep2, &dir, &sweep, &count);
        EXPECT_EQ(errorWord(), 0) << c.name;
        EXPECT_EQ(count, c.count) << c.name;
        EXPECT_NEAR(sweep, c.productSweep, 1e-14) << c.name;
        expectDirection(dir.x, dir.y, c.productDir == 0 ? dpoint2d{0, 0} : given(c, c.productDir), c.name);
        provokeFailure();
        EXPECT_EQ(tsMath_calculateAngularSectorProduct(&x, &y, &w, &n, v[0], v[1], v[2], v[3], v[4], v[5]),
                  0);
        EXPECT_EQ(errorWord(), kFail) << "the by-value form leaves the error word alone";
        EXPECT_TRUE(n == count && w == sweep) << c.name;
        expectDirection(x, y, dir, c.name);

        UTMAT_CalculerSommeSecteur(&c.dir1, c.sweep1, &c.dir2, c.sweep2, &dir, &sweep);
        EXPECT_EQ(errorWord(), 0) << c.name;
        EXPECT_NEAR(sweep, c.sumSweep, 1e-14) << c.name;
        expectDirection(dir.x, dir.y, given(c, c.sumDir), c.name);
        EXPECT_EQ(tsMath_calculateAngularSectorSum(&x, &y, &w, v[0], v[1], v[2], v[3], v[4], v[5]), 0);
        EXPECT_EQ(w, sweep) << c.name;
        expectDirection(x, y, dir, c.name);
    }
}

TEST(SectorAlgebra, NotANumberCannotBeClassified)
{
    // The kernel forms fail and return at once, leaving their outputs alone;
    // the by-value forms zero their outputs and return the failure.
    const dpoint2d d1{1, 0}, d2 = polar(1.0);
    dpoint2d dir{9, 9};
    double sweep = 99.0, x = 9, y = 9, w = 99;
    int32_t count = -1;
    UTMAT_CalculerProduitSecteur(&d1, 1.0, &d2, kNaN, &dir, &sweep, &count);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_TRUE(count == -1 && sweep == 99.0 && dir.x == 9.0);
    EXPECT_EQ(tsMath_calculateAngularSectorSum(&x, &y, &w, 1, 0, kNaN, 0, 1, 1), kFail);
    EXPECT_TRUE(x == 0.0 && y == 0.0 && w == 0.0);
}

// The chords of a left-hand curve that crosses east: twelve directions from
// 5.8 rad by steps of 0.1, past 2 pi, to 6.9 - 2 pi. Summed one by one as
// sectors of no sweep they grow a fan from the first chord by the total turn
// 1.1. Its common part with a view from 0.2 rad by 1.5 rad is the piece from
// 0.2 to 6.9 - 2 pi.
TEST(SectorAlgebra, FanOfChordDirectionsAlongACurve)
{
    dpoint2d fanDir = polar(5.8), next, common;
    double fanSweep = 0.0, nextSweep, commonSweep;
    for (int i = 0; i <= 11; ++i) {
        const dpoint2d d = polar(std::fmod(5.8 + 0.1 * i, kTurn));
        UTMAT_CalculerSommeSecteur(&fanDir, fanSweep, &d, 0.0, &next, &nextSweep);
        fanDir = next;
        fanSweep = nextSweep;
    }
    EXPECT_NEAR(fanSweep, 1.1, 1e-12);
    const dpoint2d view = polar(0.2);
    int32_t count = 0;
    UTMAT_CalculerProduitSecteur(&fanDir, fanSweep, &view, 1.5, &common, &commonSweep, &count);
    EXPECT_EQ(count, 1);
    EXPECT_NEAR(std::atan2(common.y, common.x), 0.2, 1e-12);
    EXPECT_NEAR(commonSweep, 6.9 - kTurn - 0.2, 1e-12);
}

}  // namespace
