// Angles and angular sectors: normalising at the range boundaries, angles of
// vectors, lines and points about a centre, an angle against a sector, and
// the ranking, common part and enclosing sector of hand-drawn sector pairs in
// both generations (kernel and by-value forms), which must agree to the bit.
// Expected values are worked by hand in the comments beside them.
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

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

// Leaves 32768 in the error word (an unknown normalising mode), so that a
// following call can be seen to clear it, or to leave it alone.
void provokeFailure()
{
    UTMAT_NormaliserAngle(3, 0.0);
    ASSERT_EQ(errorWord(), kFail);
}

dpoint2d polar(double angle)
{
    return {std::cos(angle), std::sin(angle)};
}

/* ---- Normalising ---- */

TEST(AngleNormalise, ModesAtTheirBoundaries)
{
    struct Row {
        int32_t mode;
        double in;
        double expected;
        double tol;
    };
    const Row rows[] = {
        // Mode 0: above -pi up to pi. pi stays; -pi is brought to pi.
        {TESSAR_ANGLE_SIGNED, kPi, kPi, 0.0},
        {TESSAR_ANGLE_SIGNED, -kPi, kPi, 0.0},
        {TESSAR_ANGLE_SIGNED, 1.5 * kPi, -0.5 * kPi, 1e-15},
        {TESSAR_ANGLE_SIGNED, -1.5 * kPi, 0.5 * kPi, 1e-15},
        {TESSAR_ANGLE_SIGNED, 7.0, 7.0 - kTurn, 1e-15},
        // Mode 1: 0 up to 2 pi. A full turn is 0; -pi is pi; a negative
        // angle far below the spacing of doubles near 2 pi rounds to 2 pi
        // itself when the turn is added.
        {TESSAR_ANGLE_POSITIVE, kTurn, 0.0, 0.0},
        {TESSAR_ANGLE_POSITIVE, -kPi, kPi, 0.0},
        {TESSAR_ANGLE_POSITIVE, -1e-20, kTurn, 0.0},
        {TESSAR_ANGLE_POSITIVE, 7.0, 7.0 - kTurn, 1e-15},
        {TESSAR_ANGLE_POSITIVE, -1.0, kTurn - 1.0, 1e-15},
        {TESSAR_ANGLE_POSITIVE, 3.0 * kTurn + 0.5, 0.5, 1e-14},
        // Mode 2: clamped, never wrapped.
        {TESSAR_ANGLE_CLAMPED, 7.0, kTurn, 0.0},
        {TESSAR_ANGLE_CLAMPED, -7.0, -kTurn, 0.0},
        {TESSAR_ANGLE_CLAMPED, kTurn, kTurn, 0.0},
        {TESSAR_ANGLE_CLAMPED, -5.0, -5.0, 0.0},
    };
    for (const Row &row : rows) {
        provokeFailure();
        EXPECT_NEAR(UTMAT_NormaliserAngle(row.mode, row.in), row.expected, row.tol)
            << "mode " << row.mode << " angle " << row.in;
        EXPECT_EQ(errorWord(), 0);
    }
}

TEST(AngleNormalise, NegativeZeroStaysNegativeZero)
{
    // fmod keeps the sign of -0.0, and -0.0 is not below 0, so no turn is added.
    for (int32_t mode : {TESSAR_ANGLE_SIGNED, TESSAR_ANGLE_POSITIVE, TESSAR_ANGLE_CLAMPED}) {
        const double r = UTMAT_NormaliserAngle(mode, -0.0);
        EXPECT_EQ(r, 0.0);
        EXPECT_TRUE(std::signbit(r)) << "mode " << mode;
    }
}

TEST(AngleNormalise, UnknownModeFailsAndReturnsTheAngle)
{
    for (int32_t mode : {3, -1, 100}) {
        EXPECT_EQ(UTMAT_NormaliserAngle(mode, 1.25), 1.25);
        EXPECT_EQ(errorWord(), kFail);
    }
}

/* ---- Angles of vectors, lines and points ---- */

TEST(AngleOfVectors, CounterClockwiseFromFirstToSecond)
{
    struct Row {
        dpoint2d v1, v2;
        double expected;
        double tol;
    };
    // The angle comes from asin of the cross product of the unit vectors.
    // Near a quarter turn asin is ill-conditioned: for (1, 1) and (-1, 1)
    // the unit vectors' cross product is 1 - 2^-52, and asin of that lies
    // 2.1e-8 short of pi / 2. Axis vectors give exactly 1 and no such loss.
    const Row rows[] = {
        {{1, 0}, {0, -1}, 1.5 * kPi, 1e-15},    // a quarter turn clockwise is 3 pi / 2 ccw
        {{1, 0}, {-1, 0}, kPi, 1e-15},          // opposite
        {{1, 0}, {0, 2}, 0.5 * kPi, 1e-15},     // lengths play no part
        {{0, -3}, {1, 0}, 0.5 * kPi, 1e-15},    // from south to east
        {{1, 1}, {-1, 1}, 0.5 * kPi, 2.2e-8},   // 45 deg to 135 deg
        {{-1, 1}, {1, 1}, 1.5 * kPi, 2.2e-8},   // and back, the long way
        {{2, 0}, {1, 0}, 0.0, 0.0},             // same direction
        {{-1, -1}, {1, 0}, 0.75 * kPi, 1e-15},  // 225 deg to 360 deg
        {{1, 0}, polar(5.0), 5.0, 1e-14},       // beyond pi: the dot product is positive again
        {{1, 0}, polar(2.5), 2.5, 1e-14},       // second quadrant: pi - asin
        {{0, 0}, {1, 0}, 0.0, 0.0},             // a zero vector gives 0, not a failure
        {{1, 0}, {0, 0}, 0.0, 0.0},
    };
    for (const Row &row : rows) {
        provokeFailure();
        EXPECT_NEAR(UTMAT_CalculerAngleV1V2(&row.v1, &row.v2), row.expected, row.tol)
            << row.v1.x << "," << row.v1.y << " -> " << row.v2.x << "," << row.v2.y;
        EXPECT_EQ(errorWord(), 0);
    }
}

TEST(AngleOfVectors, NullVectorFails)
{
    const dpoint2d v{1, 0};
    EXPECT_EQ(UTMAT_CalculerAngleV1V2(nullptr, &v), 0.0);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(UTMAT_CalculerAngleV1V2(&v, nullptr), 0.0);
    EXPECT_EQ(errorWord(), kFail);
}

TEST(AngleOfLines, UsesTheDirectionsOfTravel)
{
    // a x + b y + c = 0 travels along (-b, a). y = 1 written as 0 x - y + 1
    // travels east (1, 0); x = 2 written as x - 2 travels north (0, 1).
    const UTMAT_Droite east{0.0, -1.0, 1.0};
    const UTMAT_Droite north{1.0, 0.0, -2.0};
    const UTMAT_Droite west{0.0, 1.0, 0.0};
    double out = -1.0;
    UTMAT_CalculerAngleD1D2(&east, &north, &out);
    EXPECT_NEAR(out, 0.5 * kPi, 1e-15);
    UTMAT_CalculerAngleD1D2(&north, &east, &out);
    EXPECT_NEAR(out, 1.5 * kPi, 1e-15);
    UTMAT_CalculerAngleD1D2(&east, &west, &out);
    EXPECT_NEAR(out, kPi, 1e-15);
    EXPECT_EQ(errorWord(), 0);

    out = -1.0;
    UTMAT_CalculerAngleD1D2(&east, &north, nullptr);
    EXPECT_EQ(errorWord(), kFail);
    UTMAT_CalculerAngleD1D2(nullptr, &north, &out);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(out, -1.0);
}

TEST(AngleAtCentre, SweepsInBothSenses)
{
    struct Row {
        dpoint2d p1, p2;
        int32_t sense;
        double expected;
    };
    // About the centre (1, 1): east (2, 1) is at 0, north (1, 3) at pi / 2.
    const Row rows[] = {
        {{2, 1}, {1, 3}, 1, 0.5 * kPi},   // east to north, counter-clockwise
        {{2, 1}, {1, 3}, 0, -1.5 * kPi},  // the same, clockwise and negative
        {{1, 3}, {2, 1}, 1, 1.5 * kPi},   // north to east, the long way ccw
        {{1, 3}, {2, 1}, 0, -0.5 * kPi},  // a quarter turn clockwise
        {{2, 1}, {5, 1}, 1, 0.0},         // the same direction: 0 ccw
        {{2, 1}, {5, 1}, 0, -kTurn},      // and a full turn clockwise
        {{0, 0}, {2, 2}, 7, kPi},         // any non-zero sense is ccw
    };
    for (const Row &row : rows) {
        const dpoint2d centre{1, 1};
        EXPECT_NEAR(UTMAT_CalculerAngleAuCentre(&centre, &row.p1, &row.p2, row.sense), row.expected, 1e-15);
        EXPECT_EQ(errorWord(), 0);
    }
}

TEST(AngleAtCentre, PointAtTheCentreFails)
{
    const dpoint2d centre{1, 1}, p{2, 1};
    EXPECT_EQ(UTMAT_CalculerAngleAuCentre(&centre, &centre, &p, 1), 0.0);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(UTMAT_CalculerAngleAuCentre(&centre, &p, &centre, 0), 0.0);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(UTMAT_CalculerAngleAuCentre(&centre, nullptr, &p, 1), 0.0);
    EXPECT_EQ(errorWord(), kFail);
}

TEST(AngleAndRadius, PolarCoordinatesAboutACentre)
{
    const dpoint2d centre{1, 1};
    const dpoint2d p{4, 5};  // (3, 4) from the centre: radius 5, angle atan(4 / 3)
    double angle = -1.0, radius = -1.0;
    UTMAT_CalculerAngleRayonPtCentre(&centre, &p, &angle, &radius);
    EXPECT_DOUBLE_EQ(radius, 5.0);
    EXPECT_NEAR(angle, 0.92729521800161223, 1e-15);

    const dpoint2d below{1, -2};  // straight down: -pi / 2, not normalised
    UTMAT_CalculerAngleRayonPtCentre(&centre, &below, &angle, &radius);
    EXPECT_NEAR(angle, -0.5 * kPi, 1e-15);
    EXPECT_DOUBLE_EQ(radius, 3.0);

    UTMAT_CalculerAngleRayonPtCentre(&centre, &centre, &angle, &radius);
    EXPECT_EQ(angle, 0.0);
    EXPECT_EQ(radius, 0.0);
    EXPECT_EQ(errorWord(), 0);

    UTMAT_CalculerAngleRayonPtCentre(&centre, &p, &angle, nullptr);
    EXPECT_EQ(errorWord(), kFail);
}

TEST(AngleFromOffset, SweepFromTheOffsetDirection)
{
    struct Row {
        dpoint2d p1;
        double offset;
        int32_t sense;
        double expected;
    };
    // p2 is the origin, so a is the direction of p1 in 0 up to 2 pi.
    const Row rows[] = {
        {{0, 1}, 0.25 * kPi, 1, 0.25 * kPi},          // a = pi/2 at least the offset: a - offset
        {{0, 1}, 0.25 * kPi, 0, 0.25 * kPi - kTurn},  // clockwise
        {{0, 1}, kPi, 1, 1.5 * kPi},                  // a below the offset: 2 pi - (pi - pi/2)
        {{0, -1}, 0.0, 1, 1.5 * kPi},                 // atan2 gives -pi/2, taken as 3 pi/2
        {{0, -1}, 1.5 * kPi, 1, 0.0},                 // exactly the offset: 0
        {{0, -1}, 1.5 * kPi, 0, -kTurn},
    };
    const dpoint2d origin{0, 0};
    for (const Row &row : rows) {
        EXPECT_NEAR(UTMAT_CalculerAnglePtOffsetAngle(&row.p1, &origin, row.offset, row.sense), row.expected,
                    1e-15);
        EXPECT_EQ(errorWord(), 0);
    }
    EXPECT_EQ(UTMAT_CalculerAnglePtOffsetAngle(nullptr, &origin, 0.0, 1), 0.0);
    EXPECT_EQ(errorWord(), kFail);
}

/* ---- An angle against a sector ---- */

TEST(AngleInSector, BothFormsAgreeOnTheTableOfCases)
{
    struct Row {
        double angle, start, sweep, tol;
        int32_t inside;
        double delta;
    };
    // The tolerance 1/16 and these angles are exact in binary, so the
    // boundary rows sit exactly one tolerance from the edges.
    const double t = 0.0625;
    const Row rows[] = {
        {1.5, 1.0, 1.0, t, 1, 0.5},                    // plainly inside
        {0.9375, 1.0, 1.0, t, 1, -0.0625},             // one tol before the start: inside, delta < 0
        {0.875, 1.0, 1.0, t, 0, 0.875 - 1.0 + kTurn},  // two tol before: a turn on, outside
        {2.0625, 1.0, 1.0, t, 1, 1.0625},              // one tol past the end
        {2.125, 1.0, 1.0, t, 0, 1.125},                // beyond it
        {0.5, 6.0, 1.0, t, 1, 0.5 - 6.0 + kTurn},      // the sector runs over 0 / 2 pi
        {1.0, 1.0, 0.0, t, 1, 0.0},                    // a sweep of 0 holds its start
        {0.5, 1.0, -1.0, t, 1, -0.5},                  // clockwise sector
        {1.5, 1.0, -1.0, t, 0, 0.5 - kTurn},           // after the start: a turn back, outside
        {1.0625, 1.0, -1.0, t, 1, 0.0625},             // one tol after the start of a cw sector
        {6.0, 0.5, -1.0, t, 1, 5.5 - kTurn},           // clockwise over 0 / 2 pi
    };
    for (const Row &row : rows) {
        int32_t inKernel = -1, inValue = -1;
        double deltaKernel = 99.0, deltaValue = 99.0;
        provokeFailure();
        UTMAT_ComparerAngleASecteurAngulaire(row.angle, row.start, row.sweep, row.tol, &inKernel,
                                             &deltaKernel);
        EXPECT_EQ(errorWord(), 0);
        provokeFailure();
        EXPECT_EQ(
            tsMath_compareDirectionToSector(&inValue, &deltaValue, row.angle, row.start, row.sweep, row.tol),
            0);
        EXPECT_EQ(errorWord(), kFail) << "the by-value form leaves the error word alone";

        EXPECT_EQ(inKernel, row.inside) << "angle " << row.angle << " start " << row.start;
        EXPECT_NEAR(deltaKernel, row.delta, 1e-15);
        EXPECT_EQ(inValue, inKernel);
        EXPECT_EQ(deltaValue, deltaKernel);
    }
}

TEST(AngleInSector, NullDeltaIsOptionalOnlyInTheByValueForm)
{
    int32_t inside = -1;
    double delta = 99.0;
    UTMAT_ComparerAngleASecteurAngulaire(1.5, 1.0, 1.0, 0.0, &inside, nullptr);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(inside, -1);
    UTMAT_ComparerAngleASecteurAngulaire(1.5, 1.0, 1.0, 0.0, nullptr, &delta);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(delta, 99.0);

    EXPECT_EQ(tsMath_compareDirectionToSector(&inside, nullptr, 1.5, 1.0, 1.0, 0.0), 0);
    EXPECT_EQ(inside, 1);
}

/* ---- Sector algebra ---- */

struct SectorCase {
    const char *name;
    dpoint2d dir1;
    double sweep1;
    dpoint2d dir2;
    double sweep2;
    int32_t relation;
    int firstGiven;  // which given sector ranks first: 1 or 2
    // common part: which given direction (0 for none), sweep, count
    int productDir;
    double productSweep;
    int32_t count;
    // enclosing sector: which given direction, sweep
    int sumDir;
    double sumSweep;
};

// Sectors drawn on the circle by their start angle and sweep in radians.
// s1, e1 and s2, e2 are the ranked starts and ends.
const SectorCase kSectorCases[] = {
    // [0, 1] and [2, 3]: apart. Sum: from 0 to 3 (sweep 3) is shorter than
    // from 2 round to 1 (2 pi - 1).
    {"apart", polar(0.0), 1.0, polar(2.0), 1.0, TESSAR_SECTORS_APART, 1, 0, 0.0, 0, 1, 3.0},
    // [0, 1] and [4, 5]: apart; from 4 round to 1 + 2 pi (2 pi - 3) beats
    // from 0 to 5.
    {"apart, round by the second", polar(0.0), 1.0, polar(4.0), 1.0, TESSAR_SECTORS_APART, 1, 0, 0.0, 0, 2,
     kTurn - 3.0},
    // [0, 1] and [pi, pi + 1]: both ways measure pi + 1; the second wins.
    {"apart, equal ways",
     {1.0, 0.0},
     1.0,
     {-1.0, 0.0},
     1.0,
     TESSAR_SECTORS_APART,
     1,
     0,
     0.0,
     0,
     2,
     kPi + 1.0},
    // [1.5, 2.5] inside [1, 3], given second: the first given ranks first.
    {"inside", polar(1.0), 2.0, polar(1.5), 1.0, TESSAR_SECTORS_INSIDE, 1, 2, 1.0, 1, 1, 2.0},
    // [1, 3] inside [0.5, 3.5], given first: the second given ranks first.
    {"inside, given first", polar(1.0), 2.0, polar(0.5), 3.0, TESSAR_SECTORS_INSIDE, 2, 1, 2.0, 1, 2, 3.0},
    // [1, 3] and [2, 4]: they share [2, 3]; together [1, 4].
    {"overlap", polar(1.0), 2.0, polar(2.0), 2.0, TESSAR_SECTORS_OVERLAP, 1, 2, 1.0, 1, 1, 3.0},
    // [0, 4] and [3, 7]: the second reaches 7 - 2 pi = 0.717 past 0, so they
    // share [3, 4] and [0, 0.717]; only [3, 4] is returned. Together the
    // whole circle, reported as 0.
    {"overlap at both ends",
     {1.0, 0.0},
     4.0,
     polar(3.0),
     4.0,
     TESSAR_SECTORS_OVERLAP_BOTH_ENDS,
     1,
     2,
     1.0,
     1,
     1,
     0.0},
    // [1, 2] and [5, 7.5]: the second runs past 2 pi to 7.5 - 2 pi = 1.217,
    // into the first: they share [1, 1.217]; together [5, 2 + 2 pi].
    {"wrap into the first", polar(1.0), 1.0, polar(5.0), 2.5, TESSAR_SECTORS_WRAP_INTO_FIRST, 1, 1,
     7.5 - kTurn - 1.0, 1, 2, kTurn - 3.0},
    // [1, 2] and [5, 9]: the second runs round to 9 - 2 pi = 2.717, over the
    // whole first: they share [1, 2]; together the second.
    {"wrap around the first", polar(1.0), 1.0, polar(5.0), 4.0, TESSAR_SECTORS_WRAP_AROUND_FIRST, 1, 1, 1.0,
     1, 2, 4.0},
    // Equal starts (pi / 4): the second given ranks first. Ranked [pi/4,
    // pi/4 + 0.5] and [pi/4, pi/4 + 1] overlap.
    {"equal starts", {1.0, 1.0}, 1.0, {2.0, 2.0}, 0.5, TESSAR_SECTORS_OVERLAP, 2, 1, 0.5, 1, 2, 1.0},
    // A full-turn sector holds everything; as a sum its 2 pi becomes 0.
    {"full turn", {1.0, 0.0}, kTurn, polar(1.0), 1.0, TESSAR_SECTORS_INSIDE, 1, 2, 1.0, 1, 1, 0.0},
    // A sweep above a turn is cut to 2 pi in the sum (class 1: e1 - s1 = 7).
    {"more than a turn", {1.0, 0.0}, 7.0, polar(1.0), 1.0, TESSAR_SECTORS_INSIDE, 1, 2, 1.0, 1, 1, kTurn},
    // A direction a hair below the x axis starts at 2 pi (the normalising
    // rounds up), one on the axis at 0: ranked [0, 1] and [2 pi, 2 pi + 1],
    // and e2 - 2 pi equals e1, so the second "runs round and contains" it.
    {"start of 2 pi",
     {1.0, -1e-300},
     1.0,
     {1.0, 0.0},
     1.0,
     TESSAR_SECTORS_WRAP_AROUND_FIRST,
     2,
     2,
     1.0,
     1,
     1,
     1.0},
    // Directions (1, -0) and (1, +0) both start at 0 (the first at -0.0):
    // equal starts, so the second given ranks first.
    {"negative zero", {1.0, -0.0}, 1.0, {1.0, 0.0}, 2.0, TESSAR_SECTORS_INSIDE, 2, 1, 1.0, 1, 2, 2.0},
    // Direction (-1, -0) starts at pi, not at -pi: ranked after [1, 2].
    {"half turn from below", {-1.0, -0.0}, 1.0, polar(1.0), 1.0, TESSAR_SECTORS_APART, 2, 0, 0.0, 0, 2, kPi},
};

const dpoint2d &givenDir(const SectorCase &c, int which)
{
    return which == 1 ? c.dir1 : c.dir2;
}

void expectSameDirection(double x, double y, const dpoint2d &expected, const char *name)
{
    EXPECT_EQ(x, expected.x) << name;
    EXPECT_EQ(y, expected.y) << name;
    EXPECT_EQ(std::signbit(y), std::signbit(expected.y)) << name;
}

TEST(SectorAlgebra, RankingAndRelation)
{
    for (const SectorCase &c : kSectorCases) {
        dpoint2d firstDir{9, 9}, secondDir{9, 9};
        double s1 = 0, e1 = 0, s2 = 0, e2 = 0;
        int32_t relation = -1;
        provokeFailure();
        UTMAT_Classer2Secteurs(&c.dir1, c.sweep1, &c.dir2, c.sweep2, &firstDir, &s1, &e1, &secondDir, &s2,
                               &e2, &relation);
        EXPECT_EQ(errorWord(), 0) << c.name;
        EXPECT_EQ(relation, c.relation) << c.name;
        const int secondGiven = 3 - c.firstGiven;
        expectSameDirection(firstDir.x, firstDir.y, givenDir(c, c.firstGiven), c.name);
        expectSameDirection(secondDir.x, secondDir.y, givenDir(c, secondGiven), c.name);
        EXPECT_LE(s1, s2) << c.name;
        EXPECT_GE(s1, 0.0) << c.name;
        EXPECT_LE(s2, kTurn) << c.name;
        EXPECT_EQ(e1 - s1, c.firstGiven == 1 ? c.sweep1 : c.sweep2) << c.name;
    }
}

TEST(SectorAlgebra, StartsAtTheTurnBoundaries)
{
    dpoint2d firstDir, secondDir;
    double s1, e1, s2, e2;
    int32_t relation;
    const dpoint2d minusZero{1.0, -0.0}, plusOne{1.0, 1.0}, belowAxis{1.0, -1e-300}, west{-1.0, -0.0};
    UTMAT_Classer2Secteurs(&minusZero, 1.0, &plusOne, 1.0, &firstDir, &s1, &e1, &secondDir, &s2, &e2,
                           &relation);
    EXPECT_EQ(s1, 0.0);
    EXPECT_TRUE(std::signbit(s1)) << "atan2(-0, 1) is -0.0, which normalising keeps";
    UTMAT_Classer2Secteurs(&plusOne, 1.0, &belowAxis, 1.0, &firstDir, &s1, &e1, &secondDir, &s2, &e2,
                           &relation);
    EXPECT_EQ(s2, kTurn) << "-1e-300 + 2 pi rounds to 2 pi";
    UTMAT_Classer2Secteurs(&plusOne, 1.0, &west, 1.0, &firstDir, &s1, &e1, &secondDir, &s2, &e2, &relation);
    EXPECT_EQ(s2, kPi) << "atan2(-0, -1) is -pi, normalised to pi";
}

TEST(SectorAlgebra, ProductInBothGenerations)
{
    for (const SectorCase &c : kSectorCases) {
        dpoint2d dir{9, 9};
        double sweep = 99.0;
        int32_t count = -1;
        provokeFailure();
        UTMAT_CalculerProduitSecteur(&c.dir1, c.sweep1, &c.dir2, c.sweep2, &dir, &sweep, &count);
        EXPECT_EQ(errorWord(), 0) << c.name;
        EXPECT_EQ(count, c.count) << c.name;
        EXPECT_NEAR(sweep, c.productSweep, 1e-14) << c.name;
        if (c.productDir == 0) {
            EXPECT_EQ(dir.x, 0.0) << c.name;
            EXPECT_EQ(dir.y, 0.0) << c.name;
        } else {
            expectSameDirection(dir.x, dir.y, givenDir(c, c.productDir), c.name);
        }

        double x = 9, y = 9, w = 99;
        int32_t n = -1;
        provokeFailure();
        EXPECT_EQ(tsMath_calculateAngularSectorProduct(&x, &y, &w, &n, c.dir1.x, c.dir1.y, c.sweep1, c.dir2.x,
                                                       c.dir2.y, c.sweep2),
                  0)
            << c.name;
        EXPECT_EQ(errorWord(), kFail) << "the by-value form leaves the error word alone";
        EXPECT_EQ(n, count) << c.name;
        EXPECT_EQ(w, sweep) << c.name;
        expectSameDirection(x, y, dir, c.name);
    }
}

TEST(SectorAlgebra, SumInBothGenerations)
{
    for (const SectorCase &c : kSectorCases) {
        dpoint2d dir{9, 9};
        double sweep = 99.0;
        provokeFailure();
        UTMAT_CalculerSommeSecteur(&c.dir1, c.sweep1, &c.dir2, c.sweep2, &dir, &sweep);
        EXPECT_EQ(errorWord(), 0) << c.name;
        EXPECT_NEAR(sweep, c.sumSweep, 1e-14) << c.name;
        expectSameDirection(dir.x, dir.y, givenDir(c, c.sumDir), c.name);

        double x = 9, y = 9, w = 99;
        EXPECT_EQ(tsMath_calculateAngularSectorSum(&x, &y, &w, c.dir1.x, c.dir1.y, c.sweep1, c.dir2.x,
                                                   c.dir2.y, c.sweep2),
                  0)
            << c.name;
        EXPECT_EQ(w, sweep) << c.name;
        expectSameDirection(x, y, dir, c.name);
    }
}

TEST(SectorAlgebra, OrderOfTheArgumentsDoesNotChangeTheAnswer)
{
    // Where the starts differ the ranking, not the order given, decides;
    // equal starts are the one case where the order matters.
    for (const SectorCase &c : kSectorCases) {
        if (std::string(c.name) == "equal starts" || std::string(c.name) == "negative zero") continue;
        double x1, y1, w1, x2, y2, w2;
        int32_t n1, n2;
        tsMath_calculateAngularSectorProduct(&x1, &y1, &w1, &n1, c.dir1.x, c.dir1.y, c.sweep1, c.dir2.x,
                                             c.dir2.y, c.sweep2);
        tsMath_calculateAngularSectorProduct(&x2, &y2, &w2, &n2, c.dir2.x, c.dir2.y, c.sweep2, c.dir1.x,
                                             c.dir1.y, c.sweep1);
        EXPECT_EQ(n1, n2) << c.name;
        EXPECT_EQ(w1, w2) << c.name;
        EXPECT_EQ(x1, x2) << c.name;
        tsMath_calculateAngularSectorSum(&x1, &y1, &w1, c.dir1.x, c.dir1.y, c.sweep1, c.dir2.x, c.dir2.y,
                                         c.sweep2);
        tsMath_calculateAngularSectorSum(&x2, &y2, &w2, c.dir2.x, c.dir2.y, c.sweep2, c.dir1.x, c.dir1.y,
                                         c.sweep1);
        EXPECT_EQ(w1, w2) << c.name;
        EXPECT_EQ(y1, y2) << c.name;
    }
}

TEST(SectorAlgebra, NotANumberCannotBeClassified)
{
    const dpoint2d d1{1, 0}, d2 = polar(1.0);
    dpoint2d firstDir, secondDir;
    double s1, e1, s2, e2;
    int32_t relation = -1;
    UTMAT_Classer2Secteurs(&d1, kNaN, &d2, 1.0, &firstDir, &s1, &e1, &secondDir, &s2, &e2, &relation);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(relation, 0);

    // The kernel forms return at once and leave their outputs alone.
    dpoint2d dir{9, 9};
    double sweep = 99.0;
    int32_t count = -1;
    UTMAT_CalculerProduitSecteur(&d1, 1.0, &d2, kNaN, &dir, &sweep, &count);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(count, -1);
    EXPECT_EQ(sweep, 99.0);
    UTMAT_CalculerSommeSecteur(&d1, kNaN, &d2, 1.0, &dir, &sweep);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(dir.x, 9.0);

    // The by-value forms zero their outputs and return the failure.
    double x = 9, y = 9, w = 99;
    int32_t n = -1;
    EXPECT_EQ(tsMath_calculateAngularSectorProduct(&x, &y, &w, &n, 1, 0, 1, kNaN, 1, 1), kFail);
    EXPECT_EQ(x, 0.0);
    EXPECT_EQ(w, 0.0);
    EXPECT_EQ(n, 0);
    x = 9;
    EXPECT_EQ(tsMath_calculateAngularSectorSum(&x, &y, &w, 1, 0, kNaN, 0, 1, 1), kFail);
    EXPECT_EQ(x, 0.0);
}

// The fan of directions along a left-hand curve that crosses east: twelve
// chords turning from 5.8 rad by steps of 0.1 rad, past 2 pi, to
// 6.9 - 2 pi = 0.617 rad. Summing them one by one as sectors of no sweep
// grows the fan from the first chord by the total turn, 1.1; every chord
// lies in it. Its product with a view from 0.2 rad by 1.5 rad is the piece
// from 0.2 to 0.617 rad.
TEST(SectorAlgebra, FanOfChordDirectionsAlongACurve)
{
    std::vector<double> chords;
    for (int i = 0; i <= 11; ++i)
        chords.push_back(std::fmod(5.8 + 0.1 * i, kTurn));
    dpoint2d fanDir = polar(chords[0]);
    double fanSweep = 0.0;
    double x = fanDir.x, y = fanDir.y, w = 0.0;
    for (double chord : chords) {
        const dpoint2d d = polar(chord);
        dpoint2d nextDir;
        double nextSweep;
        UTMAT_CalculerSommeSecteur(&fanDir, fanSweep, &d, 0.0, &nextDir, &nextSweep);
        ASSERT_EQ(errorWord(), 0);
        fanDir = nextDir;
        fanSweep = nextSweep;
        ASSERT_EQ(tsMath_calculateAngularSectorSum(&x, &y, &w, x, y, w, d.x, d.y, 0.0), 0);
        EXPECT_EQ(w, fanSweep);
    }
    EXPECT_NEAR(std::atan2(fanDir.y, fanDir.x) + kTurn, 5.8, 1e-12);
    EXPECT_NEAR(fanSweep, 1.1, 1e-12);

    const double fanStart = std::atan2(fanDir.y, fanDir.x) + kTurn;
    for (double chord : chords) {
        int32_t inside = 0;
        tsMath_compareDirectionToSector(&inside, nullptr, chord, fanStart, fanSweep, 1e-9);
        EXPECT_EQ(inside, 1) << chord;
    }

    // Ranked, the view [0.2, 1.7] comes first and the fan [5.8, 6.9] runs
    // round past 2 pi into it: they share [0.2, 6.9 - 2 pi].
    const dpoint2d view = polar(0.2);
    dpoint2d common;
    double commonSweep;
    int32_t count;
    UTMAT_CalculerProduitSecteur(&fanDir, fanSweep, &view, 1.5, &common, &commonSweep, &count);
    EXPECT_EQ(count, 1);
    EXPECT_NEAR(std::atan2(common.y, common.x), 0.2, 1e-12);
    EXPECT_NEAR(commonSweep, 6.9 - kTurn - 0.2, 1e-12);
    int32_t inside = -1;
    double delta = 0.0;
    UTMAT_ComparerAngleASecteurAngulaire(0.4, 0.2, commonSweep, 1e-9, &inside, &delta);
    EXPECT_EQ(inside, 1);
    UTMAT_ComparerAngleASecteurAngulaire(3.0, 0.2, commonSweep, 1e-9, &inside, &delta);
    EXPECT_EQ(inside, 0);
}

}  // namespace
