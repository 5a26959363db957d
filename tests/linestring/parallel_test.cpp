// Parallel copies by offset segments (point arrays) and by offset vertices
// (line strings): corners, joins, rings, knots cut, failures, and a road
// edge checked against its distance from the centre line.
#include <tessar/linestring.h>
#include <tessar/memory.h>
#include <tessar/pointarray.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <tuple>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
using Points = std::vector<dpoint3d>;

void expectPlan(const Points &actual, const Points &expected)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(actual[i].x, expected[i].x, 1e-9) << "point " << i;
        EXPECT_NEAR(actual[i].y, expected[i].y, 1e-9) << "point " << i;
    }
}

// Points at radius r around (cx, cy) from degree a0 to a1 in steps of da,
// between the points p and q.
Points arc(dpoint3d p, double cx, double cy, double r, double a0, double a1, double da, dpoint3d q)
{
    Points out{p};
    for (double a = a0; da > 0 ? a <= a1 + 1e-9 : a >= a1 - 1e-9; a += da)
        out.push_back({cx + r * std::cos(a * kPi / 180), cy + r * std::sin(a * kPi / 180), 0});
    out.push_back(q);
    return out;
}

// tsLineString_copyParallel2d on a copy of the points, the result freed
// with the C library's free.
int32_t vertexCopy(Points in, double d, int32_t joinType, double step, Points &out)
{
    dpoint3d *result = nullptr;
    int32_t count = -1;
    const int32_t status = tsLineString_copyParallel2d(in.data(), static_cast<int32_t>(in.size()), d,
                                                       joinType, step, &result, &count);
    out.assign(result, result + count);
    std::free(result);
    return status;
}

int32_t segmentCopy(const Points &in, double d, int32_t closed, Points &out)
{
    dpoint3d *result = nullptr;
    int32_t count = -1;
    const int32_t status =
        tsPointArray_copyParallel2d(in.data(), static_cast<int32_t>(in.size()), &result, &count, d, closed);
    out.assign(result, result + count);
    tsMem_free(result);
    return status;
}

const Points kEast{{0, 0, 0}, {10, 0, 0}};
const Points kCornerLeft{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}};                     // east, then north
const Points kSquare{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}};  // counter-clockwise

TEST(PointArrayCopyParallel, SegmentsCutWithTheirNeighbours)
{
    const std::vector<std::tuple<Points, double, int32_t, Points>> rows{
        // Positive to the right of travel; corners where y = -2 meets x = 12,
        // or y = 2 meets x = 8 inside.
        {kEast, 2, 0, {{0, -2, 0}, {10, -2, 0}}},
        {kCornerLeft, 2, 0, {{0, -2, 0}, {12, -2, 0}, {12, 10, 0}}},
        {kCornerLeft, -2, 0, {{0, 2, 0}, {8, 2, 0}, {8, 10, 0}}},
        // Turning back: y = -1 and y = 1 are parallel, (10, -1) runs to (5, 1).
        {{{0, 0, 0}, {10, 0, 0}, {5, 0, 0}}, 1, 0, {{0, -1, 0}, {10, -1, 0}, {5, 1, 0}}},
        {kSquare, 1, 1, {{-1, -1, 0}, {11, -1, 0}, {11, 11, 0}, {-1, 11, 0}, {-1, -1, 0}}},
        // The chamfer (10,0)-(11,1) offset 3 inside the bend is cut by y = 3
        // at its far end and x = 8 at its near end: turned over, so (8, 3).
        {{{0, 0, 0}, {10, 0, 0}, {11, 1, 0}, {11, 10, 0}}, -3, 0, {{0, 3, 0}, {8, 3, 0}, {8, 10, 0}}},
    };
    for (const auto &[in, d, closed, expected] : rows) {
        Points out;
        EXPECT_EQ(segmentCopy(in, d, closed, out), 0);
        expectPlan(out, expected);
    }
    // One point: a null result and status 0. A segment of no length (z does
    // not count): 32768, and the outputs are left alone.
    const Points one{{1, 2, 3}}, repeated{{0, 0, 0}, {0, 0, 5}, {5, 0, 0}};
    dpoint3d sentinel{};
    for (const auto &[in, status, kept] : {std::tuple{one, 0, false}, std::tuple{repeated, kFail, true}}) {
        dpoint3d *result = &sentinel;
        int32_t count = 7;
        EXPECT_EQ(
            tsPointArray_copyParallel2d(in.data(), static_cast<int32_t>(in.size()), &result, &count, 1, 0),
            status);
        EXPECT_EQ(result, kept ? &sentinel : nullptr);
        EXPECT_EQ(count, kept ? 7 : 0);
    }
}

TEST(LineStringCopyParallel, StraightsCornersJoinsAndRings)
{
    // Arc step 2 tan(pi / 10) at distance 2 puts arc points every 22.5 degrees.
    const double step = 2 * std::tan(kPi / 10);
    const Points cornerRight{{0, 0, 0}, {10, 0, 0}, {10, -10, 0}};
    const Points clockwise{{0, 0, 0}, {0, 10, 0}, {10, 10, 0}, {10, 0, 0}, {0, 0, 0}};
    const std::vector<std::tuple<Points, double, int32_t, double, Points>> rows{
        {kEast, 2, 1, 0, {{0, -2, 0}, {10, -2, 0}}},
        {kEast, -2, 1, 0, {{0, 2, 0}, {10, 2, 0}}},
        // Outer corner: the mitre at 2 / cos 45 degrees; any join but 2 mitres.
        {kCornerLeft, 2, 1, 0, {{0, -2, 0}, {12, -2, 0}, {12, 10, 0}}},
        {kCornerLeft, 2, 7, 0, {{0, -2, 0}, {12, -2, 0}, {12, 10, 0}}},
        // Inner corner: (10, 2) and (8, 0) make a loop whose knot (8, 2) stays.
        {kCornerLeft, -2, 2, step, {{0, 2, 0}, {8, 2, 0}, {8, 10, 0}}},
        // Round: without a step ends and bisector only, else every 22.5
        // degrees around (10, 0), rising on the right, falling on the left.
        {kCornerLeft, 2, 2, 0, arc({0, -2, 0}, 10, 0, 2, 270, 360, 45, {12, 10, 0})},
        {kCornerLeft, 2, 2, step, arc({0, -2, 0}, 10, 0, 2, 270, 360, 22.5, {12, 10, 0})},
        {cornerRight, -2, 2, step, arc({0, 2, 0}, 10, 0, 2, 90, 0, -22.5, {12, -10, 0})},
        // Repeated points go; a zero distance gives the string itself.
        {{{0, 0, 0}, {0, 0, 0}, {5, 0, 0}, {5, 0, 0}, {5, 5, 0}}, 0, 1, 0, {{0, 0, 0}, {5, 0, 0}, {5, 5, 0}}},
        {{{0, 0, 0}, {0, 0, 0}, {5, 0, 0}}, 1, 1, 0, {{0, -1, 0}, {5, -1, 0}}},
        // A U two wide offset 3 inside: raw (0,3) (10,3) (7,0) (7,2) (10,-1)
        // (0,-1); the loop between the crossing at (8, 1) goes.
        {{{0, 0, 0}, {10, 0, 0}, {10, 2, 0}, {0, 2, 0}},
         -3,
         1,
         0,
         {{0, 3, 0}, {10, 3, 0}, {8, 1, 0}, {10, -1, 0}, {0, -1, 0}}},
        // A clockwise ring is walked reversed, so d = 1 goes outward, and
        // turned back; inward every corner makes a loop, the shorter part goes.
        {clockwise, 1, 1, 0, {{-1, -1, 0}, {-1, 11, 0}, {11, 11, 0}, {11, -1, 0}, {-1, -1, 0}}},
        {kSquare, -1, 1, 0, {{1, 1, 0}, {9, 1, 0}, {9, 9, 0}, {1, 9, 0}, {1, 1, 0}}},
    };
    int row = 0;
    for (const auto &[points, d, joinType, arcStep, expected] : rows) {
        SCOPED_TRACE(row++);
        Points out;
        EXPECT_EQ(vertexCopy(points, d, joinType, arcStep, out), 0);
        expectPlan(out, expected);
    }
    // The clockwise input ring is left counter-clockwise.
    Points in = clockwise;
    dpoint3d *result = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsLineString_copyParallel2d(in.data(), 5, 1, 1, 0, &result, &count), 0);
    std::free(result);
    expectPlan(in, kSquare);
}

TEST(LineStringCopyParallel, MitreSpikeAndRoundJoinAtSharpTurn)
{
    // East to (10, 0), back to (0, 1): corner angle t = atan(1 / 10), the
    // mitre at 2 / sin(t / 2) from the vertex; round points all at 2.
    const Points in{{0, 0, 0}, {10, 0, 0}, {0, 1, 0}};
    Points out;
    ASSERT_EQ(vertexCopy(in, 2, 1, 0, out), 0);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_NEAR(std::hypot(out[1].x - 10, out[1].y), 2 / std::sin(std::atan(0.1) / 2), 1e-9);
    ASSERT_EQ(vertexCopy(in, 2, 2, 0.3, out), 0);
    ASSERT_GT(out.size(), 10u);
    for (size_t i = 1; i + 1 < out.size(); ++i)
        EXPECT_NEAR(std::hypot(out[i].x - 10, out[i].y), 2, 1e-9) << i;
}

TEST(LineStringCopyParallel, FailuresReleaseTheResult)
{
    const Points crossing{{0, 0, 0}, {10, 0, 0}, {10, 5, 0}, {5, -5, 0}};
    const Points same{{3, 3, 0}, {3, 3, 0}, {3, 3, 1}};
    for (const Points &p : {crossing, same, Points{{1, 1, 0}}}) {
        Points in = p;
        auto *result = static_cast<dpoint3d *>(std::malloc(4 * sizeof(dpoint3d)));  // freed by the call
        int32_t count = 4;
        EXPECT_EQ(tsLineString_copyParallel2d(in.data(), static_cast<int32_t>(in.size()), 1.0, 1, 0.0,
                                              &result, &count),
                  kFail);
        EXPECT_EQ(result, nullptr);
        EXPECT_EQ(count, 0);
    }
    dpoint3d *result = nullptr;
    int32_t count = 4;
    EXPECT_EQ(tsLineString_copyParallel2d(nullptr, 5, 1.0, 1, 0.0, &result, &count), kFail);
    EXPECT_EQ(count, 0);
}

// Plan distance from p to the polyline.
double distanceToString(const dpoint3d &p, const Points &s)
{
    double best = INFINITY;
    for (size_t i = 0; i + 1 < s.size(); ++i) {
        const double dx = s[i + 1].x - s[i].x, dy = s[i + 1].y - s[i].y;
        const double t =
            std::clamp(((p.x - s[i].x) * dx + (p.y - s[i].y) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
        best = std::min(best, std::hypot(p.x - s[i].x - t * dx, p.y - s[i].y - t * dy));
    }
    return best;
}

TEST(LineStringCopyParallel, RoadEdgesBesideACentreLineWithACurve)
{
    // 100 m east, a left curve of radius 200 over a quarter turn in 5 degree
    // chords to (300, 200), and 100 m north; edges 3.5 m either side.
    Points centre;
    for (int i = 0; i < 5; ++i)
        centre.push_back({20.0 * i, 0, 50});
    for (int k = 0; k <= 18; ++k)
        centre.push_back(
            {100 + 200 * std::sin(k * 5 * kPi / 180), 200 - 200 * std::cos(k * 5 * kPi / 180), 50});
    for (int i = 1; i <= 5; ++i)
        centre.push_back({300, 200.0 + 20 * i, 50});
    for (const double d : {3.5, -3.5}) {
        SCOPED_TRACE(d);
        // Round joins stay at the distance everywhere, and leave no knot.
        Points rounded, mitred, cut;
        ASSERT_EQ(vertexCopy(centre, d, 2, 0.5, rounded), 0);
        for (const dpoint3d &p : rounded)
            EXPECT_NEAR(distanceToString(p, centre), 3.5, 1e-9);
        tsStringIntersection *knots = nullptr;
        int32_t count = -1;
        EXPECT_EQ(tsLineString_detectKnotsPointArray(rounded.data(), static_cast<int32_t>(rounded.size()),
                                                     &knots, &count),
                  0);
        EXPECT_EQ(count, 0);
        // Mitred vertices and cut segments both give the crossings of the
        // neighbouring offset lines: the two methods agree point for point.
        ASSERT_EQ(vertexCopy(centre, d, 1, 0, mitred), 0);
        ASSERT_EQ(segmentCopy(centre, d, 0, cut), 0);
        expectPlan(mitred, cut);
        EXPECT_NEAR(mitred.front().z, 50, 1e-12);  // the vertex offset carries the level
    }
}

}  // namespace
