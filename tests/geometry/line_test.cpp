// Bounded lines: level without elevation, degenerate but complete, positions as
// fractions of the length, feet and crossings, and a road scenario. Worked by hand.
#include <tessar/point.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <tuple>

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

TEST(LineBuild, TwoPointsLevelWithoutElevationAndDegenerate)
{
    const tsLine line = lineFrom({1, 2, 3}, {4, 6, 15});  // (3, 4, 12): length 13
    EXPECT_NEAR(line.direction.x, 3.0 / 13, kEps);
    EXPECT_NEAR(line.direction.z, 12.0 / 13, kEps);
    EXPECT_DOUBLE_EQ(line.length, 13.0);
    EXPECT_DOUBLE_EQ(tsLine_distance2d(&line), 5.0);
    for (const auto &[pz, qz] : {std::pair{5.0, kNoElevation}, std::pair{kNoElevation, 5.0}}) {
        const tsLine level = lineFrom({0, 0, pz}, {3, 4, qz});  // the origin keeps p as it is
        EXPECT_TRUE(level.length == 5.0 && level.direction.z == 0.0 && level.origin.z == pz) << pz;
    }
    // Coincident points: origin p, direction (1, 0, 0), length 0, and 32768.
    const dpoint3d p{7, 8, 9};
    tsLine degenerate{{1, 1, 1}, {0, 1, 0}, 5.0};
    EXPECT_EQ(tsLine_createBy2points(&degenerate, &p, &p), kFail);
    EXPECT_TRUE(degenerate.origin.x == 7 && degenerate.origin.z == 9 && degenerate.length == 0);
    EXPECT_TRUE(degenerate.direction.x == 1 && degenerate.direction.y == 0 && degenerate.direction.z == 0);
    EXPECT_EQ(tsLine_createBy2points(&degenerate, &p, nullptr), kFail);
}

TEST(LineBuild, FromAVectorAndFromADirectionWithTwoDistances)
{
    const dpoint3d p{100, 200, 7}, up{0, 0, 2}, zero{0, 0, 0};
    tsLine line{};
    EXPECT_EQ(tsLine_createByStartPointAndDirectionVector(&line, &p, &up), 0);
    EXPECT_TRUE(line.direction.z == 1 && line.length == 2 && line.origin.z == 7);
    EXPECT_EQ(tsLine_createByStartPointAndDirectionVector(&line, &p, &zero), 0);  // not reported
    EXPECT_TRUE(line.direction.x == 1 && line.length == 0);

    // North from 10 to 30: origin 10 north of p, length 20. From 30 back to 10
    // the line runs south, its origin 30 along the reversed direction.
    for (const auto &[start, end, originY, directionY] : {std::tuple{10, 30, 210, 1}, {30, 10, 170, -1}}) {
        ASSERT_EQ(tsLine_createByPointDirectionParameter2d(&line, &p, kPi / 2, start, end), 0);
        expectXY(line.origin, 100, originY);
        expectXY(line.direction, 0, directionY, kEps);
        EXPECT_EQ(line.origin.z, 7.0);
        EXPECT_DOUBLE_EQ(line.length, 20.0);
    }
}

TEST(LineRead, DirectionsEndsAndPositionsAsFractions)
{
    const tsLine south = lineFrom({2, 2, 0}, {2, -3, 0});
    EXPECT_NEAR(tsLine_direction2d(&south), 1.5 * kPi, kEps);
    EXPECT_EQ(tsLine_direction2d(nullptr), 32768.0);
    const tsLine climbing = lineFrom({1, 2, 3}, {4, 6, 15});
    dpoint3d start{}, end{};
    ASSERT_EQ(tsLine_getEndPoints(&climbing, &start, &end), 0);
    EXPECT_TRUE(start.z == 3 && std::fabs(end.x - 4) + std::fabs(end.y - 6) + std::fabs(end.z - 15) < 1e-9);
    EXPECT_EQ(tsLine_getEndPoints(nullptr, &start, &end), kFail);

    const tsLine line = lineFrom({0, 0, 0}, {3, 4, 0});
    for (const auto &[position, x, y] : {std::tuple{0.5, 1.5, 2.0}, {1.0, 3.0, 4.0}, {-1.0, -3.0, -4.0}}) {
        dpoint3d out{0, 0, 77.0};
        ASSERT_EQ(tsLine_getPointAtPosition(&line, &out, position), 0);
        expectXY(out, x, y);
        EXPECT_EQ(out.z, 77.0) << position;  // z is left alone
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
    // Either side of east, both orders; apart; opposite is not the same; near.
    using R = std::tuple<double, double, double, int32_t>;
    for (const auto &[da, db, tolerance, expected] :
         {R{0.0005, 2 * kPi - 0.0005, 0.002, 1}, R{2 * kPi - 0.0005, 0.0005, 0.002, 1}, R{0.1, 0.2, 0.05, 0},
          R{1.0, 1.0 + kPi, 0.01, 0}, R{1.0, 1.004, 0.005, 1}}) {
        const tsLine a = heading(da), b = heading(db);
        EXPECT_EQ(tsLine_areSameDirection(&a, &b, tolerance), expected) << da << " " << db;
    }
    const tsLine a = heading(1.0);
    EXPECT_EQ(tsLine_areSameDirection(&a, nullptr, 1.0), 0);
}

TEST(LineProject, ClimbingPlumbAndExtendedLines)
{
    dpoint3d foot{};
    double offset = 0, position = 0;
    // Climbing to (3, 4, 12), plane length 5: the point 2 to the right (normal
    // (0.8, -0.6)) of the plane mid-point (1.5, 2) is at position 0.5 over the
    // plane length; the foot takes the point's own z.
    const tsLine climbing = lineFrom({0, 0, 0}, {3, 4, 12});
    const dpoint3d q{3.1, 0.8, -1};
    ASSERT_EQ(tsLine_projectPoint2d(&climbing, &foot, &offset, &position, &q), 0);
    expectXY(foot, 1.5, 2);
    EXPECT_EQ(foot.z, -1.0);
    EXPECT_NEAR(offset, 2.0, kEps);
    EXPECT_NEAR(position, 0.5, kEps);
    const tsLine plumb = lineFrom({0, 0, 0}, {0, 0, 5});  // no plane direction
    EXPECT_EQ(tsLine_projectPoint2d(&plumb, &foot, &offset, &position, &q), kFail);
    EXPECT_EQ(tsLine_projectPoint2d(&climbing, &foot, &offset, &position, nullptr), kFail);

    // On the line extended, east from (10, 10) to (20, 10): behind on the
    // left, beyond on the right, at the origin; the foot keeps out's z.
    const tsLine line = lineFrom({10, 10, 0}, {20, 10, 0});
    for (const auto &[px, py, off, pos] :
         {std::tuple{5.0, 13.0, -3.0, -0.5}, {25.0, 7.0, 3.0, 1.5}, {10.0, 2.0, 8.0, 0.0}}) {
        const dpoint3d pt{px, py, 0};
        foot = {0, 0, 66.0};
        EXPECT_EQ(tsLine_projectPointOnLine2d(&foot, &offset, &position, &pt, &line), 0);
        expectXY(foot, px, 10);
        EXPECT_EQ(foot.z, 66.0);
        EXPECT_NEAR(offset, off, 1e-9) << px;
        EXPECT_NEAR(position, pos, 1e-12) << px;
    }
}

TEST(LineIntersect, CrossingsAndTheirPositions)
{
    // a along +x from the origin, length 10; b vertical at x from y0 to y1,
    // or the last from (0, 5) to (5, 0), crossing at b's end.
    const tsLine a = lineFrom({0, 0, 0}, {10, 0, 0});
    for (const auto &[b0, b1, x, posA, posB] :
         {std::tuple{dpoint3d{4, -2, 0}, dpoint3d{4, 6, 0}, 4.0, 0.4, 0.25},
          {{14, -2, 0}, {14, 6, 0}, 14.0, 1.4, 0.25},
          {{-6, 2, 0}, {-6, 10, 0}, -6.0, -0.6, -0.25},
          {{0, 5, 0}, {5, 0, 0}, 5.0, 0.5, 1.0}}) {
        const tsLine b = lineFrom(b0, b1);
        dpoint3d crossing{0, 0, 55.0};
        double pa = 0, pb = 0, pa2 = 0, pb2 = 0;
        ASSERT_EQ(tsLine_intersectLineWithLine2d(&crossing, &pa, &pb, &a, &b), 0);
        expectXY(crossing, x, 0);
        EXPECT_EQ(crossing.z, 55.0);
        EXPECT_NEAR(pa, posA, 1e-12) << x;
        EXPECT_NEAR(pb, posB, 1e-12) << x;
        ASSERT_EQ(tsLine_intersectWithLine2d(&a, nullptr, &pa2, &pb2, &b), 0);
        EXPECT_TRUE(pa2 == pa && pb2 == pb);
    }
    const tsLine parallel = lineFrom({0, 3, 0}, {10, 3, 0});
    EXPECT_EQ(tsLine_intersectLineWithLine2d(nullptr, nullptr, nullptr, &a, &parallel), kFail);
    EXPECT_EQ(tsLine_intersectWithLine2d(&a, nullptr, nullptr, nullptr, &parallel), kFail);
    EXPECT_EQ(tsLine_intersectLineWithLine2d(nullptr, nullptr, nullptr, &a, nullptr), kFail);
}

TEST(LineRoad, SurveyedPointsBesideACentreLineAndAKerbSetOut)
{
    // Centre line 100 m from (1000, 2000, 50) along (0.6, 0.8), climbing 2 m;
    // right normal (0.8, -0.6). Shots at chainage c and offset o.
    const tsLine centre = lineFrom({1000, 2000, 50}, {1060, 2080, 52});
    for (const auto &[p, chainage, off] :
         {std::tuple{dpoint3d{1017.8, 2017.9, 50.4}, 25.0, 3.5}, {{1066.8, 2087.4, 52.1}, 110.0, 1.0}}) {
        dpoint3d foot{};
        double offset = 0, position = 0;
        ASSERT_EQ(tsLine_projectPoint2d(&centre, &foot, &offset, &position, &p), 0);
        EXPECT_NEAR(offset, off, 1e-9) << chainage;
        EXPECT_NEAR(position * 100.0, chainage, 1e-9);  // over the plane length
        expectXY(foot, 1000 + 0.6 * chainage, 2000 + 0.8 * chainage);
    }
    // The kerb 3.5 m right of the centre line from chainage 20 to 80, starting
    // at (1000 + 2.8 + 12, 2000 - 2.1 + 16). A driveway square off at chainage
    // 70 crosses it at (1044.8, 2053.9): 50 m into its 60, 3.5 m into the driveway.
    const double bearing = tsLine_direction2d(&centre);
    dpoint3d kerbBase{}, crossing{};
    tsPoint_locatePointByDistanceDirection2d(&kerbBase, 3.5, bearing - kPi / 2, &centre.origin);
    tsLine kerb{};
    ASSERT_EQ(tsLine_createByPointDirectionParameter2d(&kerb, &kerbBase, bearing, 20, 80), 0);
    expectXY(kerb.origin, 1014.8, 2013.9);
    const tsLine driveway = lineFrom({1042, 2056, 0}, {1050, 2050, 0});
    double onKerb = 0, onDriveway = 0;
    ASSERT_EQ(tsLine_intersectWithLine2d(&kerb, &crossing, &onKerb, &onDriveway, &driveway), 0);
    expectXY(crossing, 1044.8, 2053.9);
    EXPECT_NEAR(onKerb, 50.0 / 60.0, 1e-9);
    EXPECT_NEAR(onDriveway, 0.35, 1e-9);
}

}  // namespace
