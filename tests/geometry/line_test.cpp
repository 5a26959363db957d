// Bounded lines: building from points (the no-elevation marker makes a line
// level, coincident points a complete but reported record), from a vector
// and from a direction with two distances; positions as fractions of the
// length, negative behind the origin; projections and crossings checked
// against hand-worked values; and a road scenario of surveyed points beside
// a centre-line segment and a kerb line set out by direction and distances.
#include <tessar/point.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
constexpr double kEps = 1e-12;
constexpr double kNoElevation = 3.4028234663852886e38;

void expectXY(const dpoint3d &p, double x, double y, double tol = 1e-9)
{
    EXPECT_NEAR(p.x, x, tol);
    EXPECT_NEAR(p.y, y, tol);
}

tsLine lineFrom(dpoint3d p, dpoint3d q)
{
    tsLine line{};
    EXPECT_EQ(tsLine_createBy2points(&line, &p, &q), 0);
    return line;
}

TEST(LineBuild, TwoPointsInSpace)
{
    // (3, 4, 12) has length 13.
    const tsLine line = lineFrom({1, 2, 3}, {4, 6, 15});
    EXPECT_EQ(line.origin.x, 1.0);
    EXPECT_EQ(line.origin.z, 3.0);
    EXPECT_NEAR(line.direction.x, 3.0 / 13, kEps);
    EXPECT_NEAR(line.direction.y, 4.0 / 13, kEps);
    EXPECT_NEAR(line.direction.z, 12.0 / 13, kEps);
    EXPECT_DOUBLE_EQ(line.length, 13.0);
    EXPECT_DOUBLE_EQ(tsLine_distance2d(&line), 5.0);
}

TEST(LineBuild, MissingElevationMakesALevelLine)
{
    struct Row {
        double pz, qz;
    } rows[] = {{5.0, kNoElevation}, {kNoElevation, 5.0}, {kNoElevation, kNoElevation}};
    for (const Row &r : rows) {
        const tsLine line = lineFrom({0, 0, r.pz}, {3, 4, r.qz});
        EXPECT_DOUBLE_EQ(line.length, 5.0);
        EXPECT_EQ(line.direction.z, 0.0);
        EXPECT_DOUBLE_EQ(line.direction.x, 0.6);
        EXPECT_EQ(line.origin.z, r.pz);  // the origin keeps p as it is
    }
}

TEST(LineBuild, CoincidentPointsGiveACompleteDegenerateLine)
{
    const dpoint3d p{7, 8, 9};
    tsLine line{{1, 1, 1}, {0, 1, 0}, 5.0};
    EXPECT_EQ(tsLine_createBy2points(&line, &p, &p), kFail);
    EXPECT_EQ(line.origin.x, 7.0);
    EXPECT_EQ(line.origin.z, 9.0);
    EXPECT_EQ(line.direction.x, 1.0);
    EXPECT_EQ(line.direction.y, 0.0);
    EXPECT_EQ(line.direction.z, 0.0);
    EXPECT_EQ(line.length, 0.0);
    EXPECT_EQ(tsLine_createBy2points(nullptr, &p, &p), kFail);
    EXPECT_EQ(tsLine_createBy2points(&line, &p, nullptr), kFail);
}

TEST(LineBuild, FromAVectorWhoseLengthBecomesTheLines)
{
    const dpoint3d p{1, 2, 3}, up{0, 0, 2}, zero{0, 0, 0};
    tsLine line{};
    EXPECT_EQ(tsLine_createByStartPointAndDirectionVector(&line, &p, &up), 0);
    EXPECT_EQ(line.direction.z, 1.0);
    EXPECT_EQ(line.length, 2.0);
    EXPECT_EQ(line.origin.z, 3.0);
    // A zero vector is not reported.
    EXPECT_EQ(tsLine_createByStartPointAndDirectionVector(&line, &p, &zero), 0);
    EXPECT_EQ(line.direction.x, 1.0);
    EXPECT_EQ(line.length, 0.0);
    EXPECT_EQ(tsLine_createByStartPointAndDirectionVector(&line, nullptr, &up), kFail);
}

TEST(LineBuild, FromADirectionAndTwoDistances)
{
    const dpoint3d p{100, 200, 7};
    tsLine line{};
    // North, from 10 to 30: origin 10 north of p, length 20.
    ASSERT_EQ(tsLine_createByPointDirectionParameter2d(&line, &p, kPi / 2, 10, 30), 0);
    expectXY(line.origin, 100, 210);
    EXPECT_EQ(line.origin.z, 7.0);
    expectXY(line.direction, 0, 1, kEps);
    EXPECT_DOUBLE_EQ(line.length, 20.0);
    // From 30 back to 10: the line runs south, and its origin is taken 30
    // along the reversed direction, at (100, 170).
    ASSERT_EQ(tsLine_createByPointDirectionParameter2d(&line, &p, kPi / 2, 30, 10), 0);
    expectXY(line.origin, 100, 170);
    expectXY(line.direction, 0, -1, kEps);
    EXPECT_DOUBLE_EQ(line.length, 20.0);
    EXPECT_EQ(tsLine_createByPointDirectionParameter2d(nullptr, &p, 0, 0, 1), kFail);
}

TEST(LineRead, LengthsDirectionsAndEnds)
{
    const tsLine south = lineFrom({2, 2, 0}, {2, -3, 0});
    EXPECT_NEAR(tsLine_direction2d(&south), 1.5 * kPi, kEps);
    EXPECT_EQ(tsLine_direction2d(nullptr), 32768.0);
    EXPECT_EQ(tsLine_distance2d(nullptr), 32768.0);

    const tsLine line = lineFrom({1, 2, 3}, {4, 6, 15});
    dpoint3d start{}, end{};
    ASSERT_EQ(tsLine_getEndPoints(&line, &start, &end), 0);
    EXPECT_EQ(start.z, 3.0);
    expectXY(end, 4, 6);
    EXPECT_NEAR(end.z, 15.0, 1e-9);
    EXPECT_EQ(tsLine_getEndPoints(&line, nullptr, &end), 0);
    EXPECT_EQ(tsLine_getEndPoints(nullptr, &start, &end), kFail);
}

TEST(LineRead, PositionsAreFractionsOfTheLength)
{
    const tsLine line = lineFrom({0, 0, 0}, {3, 4, 0});
    struct Row {
        double position, x, y;
    } rows[] = {{0.5, 1.5, 2}, {0, 0, 0}, {1, 3, 4}, {-1, -3, -4}, {2, 6, 8}};
    for (const Row &r : rows) {
        dpoint3d out{0, 0, 77.0};
        ASSERT_EQ(tsLine_getPointAtPosition(&line, &out, r.position), 0);
        expectXY(out, r.x, r.y);
        EXPECT_EQ(out.z, 77.0) << r.position;  // z is left alone
    }
    EXPECT_EQ(tsLine_getPointAtPosition(&line, nullptr, 0.5), kFail);
}

TEST(LineRead, SameDirectionTreatsNearTwoPiAsZero)
{
    const dpoint3d o{0, 0, 0};
    const auto heading = [&](double direction) {
        tsLine l{};
        tsLine_createByPointDirectionParameter2d(&l, &o, direction, 0, 10);
        return l;
    };
    struct Row {
        double a, b, tolerance;
        int32_t expected;
    } rows[] = {
        {0.0005, 2 * kPi - 0.0005, 0.002, 1},  // either side of east
        {2 * kPi - 0.0005, 0.0005, 0.002, 1},
        {0.1, 0.2, 0.05, 0},
        {1.0, 1.0 + kPi, 0.01, 0},  // opposite is not the same
        {1.0, 1.004, 0.005, 1},
    };
    for (const Row &r : rows) {
        const tsLine a = heading(r.a), b = heading(r.b);
        EXPECT_EQ(tsLine_areSameDirection(&a, &b, r.tolerance), r.expected) << r.a << " " << r.b;
    }
    const tsLine a = heading(1.0);
    EXPECT_EQ(tsLine_areSameDirection(&a, nullptr, 1.0), 0);
}

TEST(LineProject, LevelAndClimbingLines)
{
    // East along y = 0: right of the line is -y.
    const tsLine level = lineFrom({0, 0, 0}, {10, 0, 0});
    dpoint3d foot{};
    double offset = 0, position = 0;
    const dpoint3d p{4, -3, 9};
    ASSERT_EQ(tsLine_projectPoint2d(&level, &foot, &offset, &position, &p), 0);
    expectXY(foot, 4, 0);
    EXPECT_EQ(foot.z, 9.0);  // the point's own z
    EXPECT_NEAR(offset, 3.0, kEps);
    EXPECT_NEAR(position, 0.4, kEps);

    // Climbing from (0, 0, 0) to (3, 4, 12): plane length 5. The point 2 to
    // the right (normal (0.8, -0.6)) of the plane mid-point (1.5, 2).
    const tsLine climbing = lineFrom({0, 0, 0}, {3, 4, 12});
    const dpoint3d q{3.1, 0.8, -1};
    ASSERT_EQ(tsLine_projectPoint2d(&climbing, &foot, &offset, &position, &q), 0);
    expectXY(foot, 1.5, 2);
    EXPECT_EQ(foot.z, -1.0);
    EXPECT_NEAR(offset, 2.0, kEps);
    EXPECT_NEAR(position, 0.5, kEps);
    EXPECT_EQ(tsLine_projectPoint2d(&climbing, nullptr, nullptr, nullptr, &q), 0);

    // A plumb line has no plane direction.
    const tsLine plumb = lineFrom({0, 0, 0}, {0, 0, 5});
    EXPECT_EQ(tsLine_projectPoint2d(&plumb, &foot, &offset, &position, &q), kFail);
    EXPECT_EQ(tsLine_projectPoint2d(nullptr, &foot, &offset, &position, &q), kFail);
    EXPECT_EQ(tsLine_projectPoint2d(&level, &foot, &offset, &position, nullptr), kFail);
}

TEST(LineProject, OnTheExtendedLinePositionsBehindAndBeyond)
{
    // East from (10, 10) to (20, 10), length 10.
    const tsLine line = lineFrom({10, 10, 0}, {20, 10, 0});
    struct Row {
        double px, py, footX, offset, position;
    } rows[] = {
        {5, 13, 5, -3, -0.5},  // behind the origin, on the left
        {25, 7, 25, 3, 1.5},   // beyond the end, on the right
        {15, 10, 15, 0, 0.5},
        {10, 2, 10, 8, 0.0},
    };
    for (const Row &r : rows) {
        const dpoint3d p{r.px, r.py, 0};
        dpoint3d foot{0, 0, 66.0};
        double offset = 0, position = 0;
        EXPECT_EQ(tsLine_projectPointOnLine2d(&foot, &offset, &position, &p, &line), 0);
        expectXY(foot, r.footX, 10);
        EXPECT_EQ(foot.z, 66.0);
        EXPECT_NEAR(offset, r.offset, 1e-9) << r.px;
        EXPECT_NEAR(position, r.position, 1e-12) << r.px;
    }
}

TEST(LineIntersect, CrossingsAndTheirPositions)
{
    const tsLine a = lineFrom({0, 0, 0}, {10, 0, 0});
    struct Row {
        dpoint3d b0, b1;
        double x, y, posA, posB;
    } rows[] = {
        {{4, -2, 0}, {4, 6, 0}, 4, 0, 0.4, 0.25},
        {{14, -2, 0}, {14, 6, 0}, 14, 0, 1.4, 0.25},    // beyond a's end
        {{-6, 2, 0}, {-6, 10, 0}, -6, 0, -0.6, -0.25},  // behind both origins
        {{0, 5, 0}, {5, 0, 0}, 5, 0, 0.5, 1.0},         // at b's end
    };
    for (const Row &r : rows) {
        const tsLine b = lineFrom(r.b0, r.b1);
        dpoint3d crossing{0, 0, 55.0};
        double posA = 0, posB = 0;
        ASSERT_EQ(tsLine_intersectLineWithLine2d(&crossing, &posA, &posB, &a, &b), 0);
        expectXY(crossing, r.x, r.y);
        EXPECT_EQ(crossing.z, 55.0);
        EXPECT_NEAR(posA, r.posA, 1e-12);
        EXPECT_NEAR(posB, r.posB, 1e-12);

        double posA2 = 0, posB2 = 0;
        ASSERT_EQ(tsLine_intersectWithLine2d(&a, nullptr, &posA2, &posB2, &b), 0);
        EXPECT_EQ(posA2, posA);
        EXPECT_EQ(posB2, posB);
    }
    const tsLine parallel = lineFrom({0, 3, 0}, {10, 3, 0});
    EXPECT_EQ(tsLine_intersectLineWithLine2d(nullptr, nullptr, nullptr, &a, &parallel), kFail);
    EXPECT_EQ(tsLine_intersectWithLine2d(&a, nullptr, nullptr, nullptr, &parallel), kFail);
    EXPECT_EQ(tsLine_intersectLineWithLine2d(nullptr, nullptr, nullptr, &a, nullptr), kFail);
}

TEST(LineRoad, SurveyedPointsBesideACentreLineAndAKerbSetOut)
{
    // Centre line from (1000, 2000, 50) 100 m on the bearing of (0.6, 0.8)
    // to (1060, 2080, 52). Its right normal is (0.8, -0.6).
    const tsLine centre = lineFrom({1000, 2000, 50}, {1060, 2080, 52});
    ASSERT_DOUBLE_EQ(tsLine_distance2d(&centre), 100.0);

    // Points taken at chainage c and offset o: (1000, 2000) + c (0.6, 0.8)
    // + o (0.8, -0.6).
    struct Shot {
        dpoint3d p;
        double chainage, offset;
    } shots[] = {
        {{1017.8, 2017.9, 50.4}, 25, 3.5},  // kerb, right
        {{1038.0, 2059.0, 51.9}, 70, -5},   // fence, left
        {{1066.8, 2087.4, 52.1}, 110, 1},   // past the end of the segment
    };
    for (const Shot &s : shots) {
        dpoint3d foot{};
        double offset = 0, position = 0;
        ASSERT_EQ(tsLine_projectPoint2d(&centre, &foot, &offset, &position, &s.p), 0);
        EXPECT_NEAR(offset, s.offset, 1e-9) << s.chainage;
        // The line climbs 2 m, so the position is over the plane length.
        EXPECT_NEAR(position * 100.0, s.chainage, 1e-9);
        expectXY(foot, 1000 + 0.6 * s.chainage, 2000 + 0.8 * s.chainage);
        EXPECT_EQ(foot.z, s.p.z);
    }

    // The kerb: 3.5 m right of the centre line from chainage 20 to 80.
    const double bearing = tsLine_direction2d(&centre);
    dpoint3d kerbBase{};
    tsPoint_locatePointByDistanceDirection2d(&kerbBase, 3.5, bearing - kPi / 2, &centre.origin);
    tsLine kerb{};
    ASSERT_EQ(tsLine_createByPointDirectionParameter2d(&kerb, &kerbBase, bearing, 20, 80), 0);
    dpoint3d kerbStart{}, kerbEnd{};
    ASSERT_EQ(tsLine_getEndPoints(&kerb, &kerbStart, &kerbEnd), 0);
    expectXY(kerbStart, 1014.8, 2013.9);  // (1000 + 2.8 + 12, 2000 - 2.1 + 16)
    expectXY(kerbEnd, 1050.8, 2061.9);    // 60 m further
    EXPECT_EQ(kerbStart.z, 50.0);
    EXPECT_EQ(tsLine_areSameDirection(&kerb, &centre, 1e-9), 1);

    // The kerb shot lies on the kerb, 5 m into its 60.
    double offset = 1, position = 0;
    ASSERT_EQ(tsLine_projectPoint2d(&kerb, nullptr, &offset, &position, &shots[0].p), 0);
    EXPECT_NEAR(offset, 0.0, 1e-9);
    EXPECT_NEAR(position, 5.0 / 60.0, 1e-12);

    // A driveway square off the centre line at chainage 70, 10 m to the
    // right, crosses the kerb at (1044.8, 2053.9): 50 m along the kerb and
    // 3.5 m along the driveway.
    const tsLine driveway = lineFrom({1042, 2056, 0}, {1050, 2050, 0});
    dpoint3d crossing{};
    double onKerb = 0, onDriveway = 0;
    ASSERT_EQ(tsLine_intersectWithLine2d(&kerb, &crossing, &onKerb, &onDriveway, &driveway), 0);
    expectXY(crossing, 1044.8, 2053.9);
    EXPECT_NEAR(onKerb, 50.0 / 60.0, 1e-9);
    EXPECT_NEAR(onDriveway, 0.35, 1e-9);
}

}  // namespace
