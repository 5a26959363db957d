// String crossings and knots: repeated points, crossings of two strings,
// knots found, inserted and cut away, the continuous string from loose
// segments, and array ownership (checked by the address sanitizer run).
// Expected values are worked by hand beside each case.
#include <tessar/linestring.h>
#include <tessar/memory.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <tuple>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kEps = 1e-9;

using Points = std::vector<dpoint3d>;

// A copy of the points in a library array, as the inserting functions want.
dpoint3d *libraryCopy(const Points &points)
{
    auto *copy = static_cast<dpoint3d *>(tsMem_malloc(points.size() * sizeof(dpoint3d)));
    std::memcpy(copy, points.data(), points.size() * sizeof(dpoint3d));
    return copy;
}

void expectPoints(const dpoint3d *actual, int32_t n, const Points &expected)
{
    ASSERT_EQ(n, static_cast<int32_t>(expected.size()));
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(actual[i].x, expected[i].x, kEps) << "point " << i;
        EXPECT_NEAR(actual[i].y, expected[i].y, kEps) << "point " << i;
        EXPECT_NEAR(actual[i].z, expected[i].z, kEps) << "point " << i;
    }
}

struct Crossing {
    int32_t string, segment, otherString, otherSegment;
    double distance, x, y, z, otherZ;
};

void expectCrossings(const tsStringIntersection *found, int32_t count, const std::vector<Crossing> &expected)
{
    ASSERT_EQ(count, static_cast<int32_t>(expected.size()));
    for (size_t i = 0; i < expected.size(); ++i) {
        const tsStringIntersection &f = found[i];
        const Crossing &e = expected[i];
        EXPECT_EQ((std::vector<int32_t>{f.string, f.segment, f.otherString, f.otherSegment}),
                  (std::vector<int32_t>{e.string, e.segment, e.otherString, e.otherSegment}))
            << "record " << i;
        const double got[] = {f.distance, f.x, f.y, f.z, f.otherZ},
                     want[] = {e.distance, e.x, e.y, e.z, e.otherZ};
        for (int k = 0; k < 5; ++k)
            EXPECT_NEAR(got[k], want[k], kEps) << "record " << i << " value " << k;
    }
}

// Detection over the given strings; the list is released here.
void expectStringCrossings(std::vector<Points> strings, const std::vector<Crossing> &expected)
{
    std::vector<tsLineString> records;
    std::vector<tsLineString *> pointers;
    for (Points &s : strings)
        records.push_back({s.data(), static_cast<int32_t>(s.size())});
    for (tsLineString &r : records)
        pointers.push_back(&r);
    tsStringIntersection *found = nullptr;
    int32_t count = -1;
    ASSERT_EQ(tsLineString_detectStringIntersections(pointers.data(), static_cast<int32_t>(pointers.size()),
                                                     &found, &count),
              0);
    expectCrossings(found, count, expected);
    EXPECT_TRUE(count != 0 || found == nullptr);
    tsMem_free(found);
}

// Plan points at level 0 from x, y pairs.
Points xy(std::initializer_list<double> c)
{
    Points out;
    for (auto i = c.begin(); i != c.end(); i += 2)
        out.push_back({i[0], i[1], 0});
    return out;
}

/* ---- Repeated points ---- */

TEST(RepeatedPoints, DroppedAgainstTheLastKeptPoint)
{
    const std::vector<std::tuple<const char *, Points, double, Points>> rows = {
        {"exact repeat, z ignored", {{0, 0, 0}, {0, 0, 5}, {1, 0, 0}}, 0.0, {{0, 0, 0}, {1, 0, 0}}},
        {"negative tol is 0", {{0, 0, 0}, {0, 0, 0}, {1e-9, 0, 0}}, -1.0, {{0, 0, 0}, {1e-9, 0, 0}}},
        // (0.6, 0.6) is 0.849 away; (0.8, 0.8) passes the box test but is 1.131 away.
        {"inside the circle", {{0, 0, 0}, {0.6, 0.6, 0}}, 1.0, {{0, 0, 0}}},
        {"box but not circle", {{0, 0, 0}, {0.8, 0.8, 0}}, 1.0, {{0, 0, 0}, {0.8, 0.8, 0}}},
        // (1.2, 0) is 1.2 from the kept (0, 0), not 0.6 from the dropped point.
        {"last kept, not last seen", {{0, 0, 0}, {0.6, 0, 0}, {1.2, 0, 0}}, 1.0, {{0, 0, 0}, {1.2, 0, 0}}},
        {"at the tolerance", {{0, 0, 0}, {0, 0.5, 0}, {3, 0, 0}}, 0.5, {{0, 0, 0}, {3, 0, 0}}},
    };
    for (const auto &[name, in, tol, kept] : rows) {
        SCOPED_TRACE(name);
        Points points = in;
        int32_t n = static_cast<int32_t>(points.size());
        ASSERT_EQ(tsLineString_removeDuplicatesPointArray(points.data(), &n, tol), 0);
        expectPoints(points.data(), n, kept);
    }
    // Counts of at most one become one; nulls fail.
    dpoint3d p{1, 2, 3};
    for (int32_t given : {1, 0, -4}) {
        int32_t n = given;
        EXPECT_EQ(tsLineString_removeDuplicatesPointArray(&p, &n, 0.0), 0);
        EXPECT_EQ(n, 1);
    }
    int32_t n = 3;
    EXPECT_EQ(tsLineString_removeDuplicatesPointArray(nullptr, &n, 0.0), kFail);
    EXPECT_EQ(tsLineString_removeDuplicatesPointArray(&p, nullptr, 0.0), kFail);
}

/* ---- Crossings of two strings ---- */

TEST(StringCrossings, RecordsOfEachPair)
{
    const double d = 2.0 * std::sqrt(2.0);
    const std::vector<std::pair<std::vector<Points>, std::vector<Crossing>>> rows = {
        // A east rising 10..20, B north rising 0..100, crossing at (5, 0) 5
        // along each: A at 15, B at 50; levels exchanged in the second record.
        {{{{0, 0, 10}, {10, 0, 20}}, {{5, -5, 0}, {5, 5, 100}}},
         {{0, 0, 1, 0, 5, 5, 0, 15, 50}, {1, 0, 0, 0, 5, 5, 0, 50, 15}}},
        // B southward: distance and level count from its own start.
        {{{{0, 0, 10}, {10, 0, 20}}, {{5, 5, 100}, {5, -5, 0}}},
         {{0, 0, 1, 0, 5, 5, 0, 15, 50}, {1, 0, 0, 0, 5, 5, 0, 50, 15}}},
        // Oblique, crossing at (2, 2), 2 sqrt 2 along each.
        {{{{0, 0, 0}, {4, 4, 8}}, {{0, 4, 1}, {4, 0, 1}}},
         {{0, 0, 1, 0, d, 2, 2, 4, 1}, {1, 0, 0, 0, d, 2, 2, 1, 4}}},
        // B's middle vertex (5, 0) on A: both of B's segments meet A there.
        {{xy({0, 0, 10, 0}), xy({5, 5, 5, 0, 8, 6})},
         {{0, 0, 1, 0, 5, 5, 0, 0, 0},
          {0, 0, 1, 1, 5, 5, 0, 0, 0},
          {1, 0, 0, 0, 5, 5, 0, 0, 0},
          {1, 1, 0, 0, 0, 5, 0, 0, 0}}},
        // Vertex on vertex: taken exactly, each segment's own level at its end.
        {{{{0, 0, 1}, {3, 4, 2}}, {{3, 4, 7}, {6, 0, 9}}},
         {{0, 0, 1, 0, 5, 3, 4, 2, 7}, {1, 0, 0, 0, 0, 3, 4, 7, 2}}},
        // Collinear overlap: the later segment's end nearer the other's left end.
        {{xy({0, 0, 10, 0}), xy({4, 0, 14, 0})}, {{0, 0, 1, 0, 4, 4, 0, 0, 0}, {1, 0, 0, 0, 0, 4, 0, 0, 0}}},
        {{xy({0, 0, 10, 0}), xy({-4, 0, 6, 0})}, {{0, 0, 1, 0, 0, 0, 0, 0, 0}, {1, 0, 0, 0, 4, 0, 0, 0, 0}}},
        // No meeting: boxes overlap but B lies above A; collinear apart; one point.
        {{xy({0, 0, 10, 10}), xy({0, 5, 4, 9})}, {}},
        {{xy({0, 0, 1, 0}), xy({2, 0, 3, 0})}, {}},
        {{xy({0, 0, 10, 0}), xy({5, 0})}, {}},
    };
    int row = 0;
    for (const auto &[strings, expected] : rows) {
        SCOPED_TRACE(row++);
        expectStringCrossings(strings, expected);
    }
}

TEST(StringCrossings, BadArgumentsClearTheOutputs)
{
    Points a = {{0, 0, 0}, {1, 0, 0}};
    tsLineString s{a.data(), 2};
    tsLineString *strings[] = {&s};
    // Arrays held on entry are freed (the sanitizer would report the leak).
    auto *held = static_cast<tsStringIntersection *>(tsMem_malloc(sizeof(tsStringIntersection)));
    int32_t count = 7;
    EXPECT_EQ(tsLineString_detectStringIntersections(strings, 0, &held, &count), kFail);
    EXPECT_EQ(held, nullptr);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(tsLineString_detectStringIntersections(nullptr, 1, &held, &count), kFail);
    EXPECT_EQ(tsLineString_insertStringIntersections(strings, -1, &held, &count), kFail);
    EXPECT_EQ(tsLineString_detectStringIntersections(strings, 1, nullptr, &count), kFail);
    EXPECT_EQ(tsLineString_detectStringIntersections(strings, 1, &held, nullptr), kFail);
}

TEST(StringCrossings, InsertedAsVerticesWithRepeatsRemoved)
{
    // A crossed by B at (5, 0) and touched by C's vertex at (8, 0): A gets
    // (5, 0) and a single (8, 0); C keeps its three points; B gets level 50.
    tsLineString a{libraryCopy({{0, 0, 0}, {10, 0, 10}}), 2};
    tsLineString b{libraryCopy({{5, -5, 0}, {5, 5, 100}}), 2};
    tsLineString c{libraryCopy({{8, 3, 0}, {8, 0, 0}, {9, 3, 0}}), 3};
    tsLineString untouched{libraryCopy({{20, 0, 0}, {30, 0, 0}}), 2};
    dpoint3d *const untouchedPoints = untouched.points;
    tsLineString *strings[] = {&a, &b, &c, &untouched};
    tsStringIntersection *found = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsLineString_insertStringIntersections(strings, 4, &found, &count), 0);
    EXPECT_EQ(count, 6);  // A-B, and A with each of C's two segments
    expectPoints(a.points, a.count, {{0, 0, 0}, {5, 0, 5}, {8, 0, 8}, {10, 0, 10}});
    expectPoints(b.points, b.count, {{5, -5, 0}, {5, 0, 50}, {5, 5, 100}});
    expectPoints(c.points, c.count, {{8, 3, 0}, {8, 0, 0}, {9, 3, 0}});
    EXPECT_EQ(untouched.points, untouchedPoints);  // no crossing: its own array stays
    for (tsLineString *s : strings)
        tsMem_free(s->points);
    tsMem_free(found);
}

/* ---- Knots ---- */

TEST(Knots, SelfCrossingsButNeverNeighboursOrTheClosingPoint)
{
    // East, north, west, then south across the first segment at (5, 0):
    // 5 along segment 0 and 5 along segment 3 from (5, 5).
    const Points string = {{0, 0, 0}, {10, 0, 0}, {10, 5, 0}, {5, 5, 0}, {5, -5, 0}};
    tsStringIntersection *knots = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsLineString_detectKnotsPointArray(string.data(), 5, &knots, &count), 0);
    expectCrossings(knots, count, {{0, 0, 0, 3, 5, 5, 0, 0, 0}, {0, 3, 0, 0, 5, 5, 0, 0, 0}});
    // No knot: folding back onto the neighbour, two points, a closed ring
    // (segments 0 and 3 meet at its closing point).
    const Points folded = {{0, 0, 0}, {10, 0, 0}, {2, 0, 0}};
    Points square = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}};
    for (const auto &[p, n] :
         {std::pair{&folded, 3}, std::pair{&string, 2}, std::pair{static_cast<const Points *>(&square), 5}}) {
        ASSERT_EQ(tsLineString_detectKnotsPointArray(p->data(), n, &knots, &count), 0);
        EXPECT_EQ(count, 0);
        EXPECT_EQ(knots, nullptr);
    }
    // The same square left open (last point a hair off) is reported.
    square.back().x = 1e-12;
    ASSERT_EQ(tsLineString_detectKnotsPointArray(square.data(), 5, &knots, &count), 0);
    EXPECT_EQ(count, 2);
    tsMem_free(knots);
}

TEST(Knots, InsertingReleasesTheCallersArrayOnlyWhenThereAreKnots)
{
    // With a knot the caller's array is released by the call (freeing it
    // again here would be a double free); without one it stays the caller's,
    // and the list held from the first call is freed on entry.
    dpoint3d *crossing = libraryCopy({{0, 0, 0}, {10, 0, 0}, {10, 5, 0}, {5, 5, 0}, {5, -5, 0}});
    tsStringIntersection *knots = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsLineString_insertKnots(crossing, 5, &knots, &count), 0);
    EXPECT_EQ(count, 2);
    dpoint3d *plain = libraryCopy({{0, 0, 0}, {10, 0, 0}, {10, 5, 0}});
    ASSERT_EQ(tsLineString_insertKnots(plain, 3, &knots, &count), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(plain[2].y, 5.0);
    tsMem_free(plain);
}

TEST(Knots, LoopsAreCutAway)
{
    // Input, result, and the number of knot records (-1: some).
    const std::vector<std::tuple<Points, Points, int32_t>> rows = {
        {xy({0, 0, 10, 0, 10, 5, 5, 5, 5, -5}), xy({0, 0, 5, 0, 5, -5}), 2},
        // Figure eight through (0, 0), open: the lobe between the passages goes.
        {xy({-1, 1, 1, -1, 3, -1, 3, 1, 1, 1, -1, -1}), xy({-1, 1, 0, 0, -1, -1}), 2},
        // Closed: the right lobe (6 + 2 sqrt 2) is at least the rest (2 + 2
        // sqrt 2), so the rest goes; started in the big lobe, the small goes.
        {xy({-1, 1, 1, -1, 3, -1, 3, 1, 1, 1, -1, -1, -1, 1}), xy({0, 0, 1, -1, 3, -1, 3, 1, 1, 1, 0, 0}), 2},
        {xy({3, -1, 3, 1, 1, 1, -1, -1, -1, 1, 1, -1, 3, -1}), xy({3, -1, 3, 1, 1, 1, 0, 0, 1, -1, 3, -1}),
         2},
        // Repeated points go first; a string with no knot is kept as it is.
        {xy({0, 0, 1, 0, 1, 0, 1, 1}), xy({0, 0, 1, 0, 1, 1}), 0},
        // Passages a b c b a c (a (0,0), b (10,0), c (10,10)): a is given up
        // (pattern a, b, ..., b, a), b's loop is cut with c's first passage.
        {xy({-5, 0, 0, 0, 10, 0, 10, 10, 14, 5, 10, 0, 5, -5, 0, 0, -5, 10, 10, 10, 10, 20}),
         xy({-5, 0, 0, 0, 10, 0, 5, -5, 0, 0, -5, 10, 10, 10, 10, 20}), -1},
    };
    int row = 0;
    for (const auto &[in, out, knotRecords] : rows) {
        SCOPED_TRACE(row++);
        dpoint3d *points = libraryCopy(in);
        int32_t n = static_cast<int32_t>(in.size());
        tsStringIntersection *knots = nullptr;
        int32_t count = 0;
        ASSERT_EQ(tsLineString_removeKnots(&points, &n, &knots, &count), 0);
        if (knotRecords >= 0)
            EXPECT_EQ(count, knotRecords);
        else
            EXPECT_GT(count, 0);
        expectPoints(points, n, out);
        tsMem_free(points);
        tsMem_free(knots);
    }
}

TEST(Knots, RemovalArguments)
{
    tsStringIntersection *knots = nullptr;
    int32_t count = 0, n = 3;
    dpoint3d *none = nullptr;
    EXPECT_EQ(tsLineString_removeKnots(nullptr, &n, &knots, &count), kFail);
    EXPECT_EQ(tsLineString_removeKnots(&none, &n, &knots, &count), kFail);
    // Below three points nothing happens, not even the removal of repeats.
    dpoint3d *pair = libraryCopy({{1, 1, 0}, {1, 1, 0}});
    n = 2;
    EXPECT_EQ(tsLineString_removeKnots(&pair, &n, &knots, &count), 0);
    EXPECT_EQ(n, 2);
    EXPECT_EQ(knots, nullptr);
    tsMem_free(pair);
}

/* ---- Continuous string from segments ---- */

TEST(SegmentStream, SegmentsAreCutWithTheirNeighbours)
{
    const Points square = xy({0, 0, 10, 0, 10, 10, 0, 10, 0, 0});
    // Segments, closed flag, the string, and the indices of the segments used.
    const std::vector<std::tuple<Points, int32_t, Points, std::vector<int32_t>>> rows = {
        // Lines y = 0, x = 5, y = 6 meet at (5, 0) and (5, 6); a cut end keeps
        // the level of the end it moved.
        {{{0, 0, 1}, {4, 0, 2}, {5, 1, 3}, {5, 5, 4}, {6, 6, 5}, {10, 6, 6}},
         0,
         {{0, 0, 1}, {5, 0, 2}, {5, 6, 4}, {10, 6, 6}},
         {0, 1, 2}},
        // The middle segment (y = x - 9) is cut from (9, 0) to (8, -1),
        // backwards: eaten, and its neighbours cut with each other at (8, 0).
        {xy({0, 0, 10, 0, 10, 1, 11, 2, 8, 1, 8, 10}), 0, xy({0, 0, 8, 0, 8, 10}), {0, 2}},
        // Collinear lines do not intersect: each end stays.
        {xy({0, 0, 1, 0, 2, 0, 3, 0}), 0, xy({0, 0, 1, 0, 3, 0}), {0, 1}},
        // Parallel one apart: the second would run off its own direction.
        {xy({0, 0, 1, 0, 2, 1, 3, 1}), 0, xy({0, 0, 1, 0}), {0}},
        {xy({1, 0, 9, 0, 10, 1, 10, 9, 9, 10, 1, 10, 0, 9, 0, 1}), 1, square, {0, 1, 2, 3}},
        // Led by a chamfer on y = -x - 1: cut with the last side at (0, -1)
        // and the next at (-1, 0) it runs backwards, so it is eaten.
        {xy({-2, 1, 1, -2, 1, 0, 9, 0, 10, 1, 10, 9, 9, 10, 1, 10, 0, 9, 0, 1}), 1, square, {1, 2, 3, 4}},
        // A single segment, even closed, is itself; a lone odd point is ignored.
        {{{0, 0, 0}, {2, 2, 1}, {7, 7, 7}}, 1, {{0, 0, 0}, {2, 2, 1}}, {0}},
    };
    int row = 0;
    for (const auto &[segments, closed, string, used] : rows) {
        SCOPED_TRACE(row++);
        dpoint3d *points = nullptr;
        int32_t *indices = nullptr;
        int32_t pointCount = -1, indexCount = -1;
        ASSERT_EQ(tsLine_createStreamFromSegmentArray(&points, &pointCount, &indices, &indexCount,
                                                      segments.data(), static_cast<int32_t>(segments.size()),
                                                      0.001, closed),
                  0);
        expectPoints(points, pointCount, string);
        EXPECT_EQ(std::vector<int32_t>(indices, indices + indexCount), used);
        tsMem_free(points);
        tsMem_free(indices);
    }
}

TEST(SegmentStream, ArgumentsAndOwnership)
{
    const Points segments = {{0, 0, 0}, {1, 0, 0}};
    const dpoint3d *in = segments.data();
    auto *points = static_cast<dpoint3d *>(tsMem_malloc(sizeof(dpoint3d)));
    auto *indices = static_cast<int32_t *>(tsMem_malloc(sizeof(int32_t)));
    int32_t pointCount = 9, indexCount = 9;
    // Outputs are freed and cleared on entry, also when the call fails.
    EXPECT_EQ(
        tsLine_createStreamFromSegmentArray(&points, &pointCount, &indices, &indexCount, in, 0, 0.001, 0),
        kFail);
    EXPECT_EQ(points, nullptr);
    EXPECT_EQ(indices, nullptr);
    EXPECT_EQ(pointCount, 0);
    EXPECT_EQ(indexCount, 0);
    // One point is no segment; null outputs or input fail.
    EXPECT_EQ(tsLine_createStreamFromSegmentArray(&points, &pointCount, nullptr, nullptr, in, 1, 0.001, 0),
              kFail);
    EXPECT_EQ(tsLine_createStreamFromSegmentArray(nullptr, &pointCount, nullptr, nullptr, in, 2, 0.001, 0),
              kFail);
    EXPECT_EQ(tsLine_createStreamFromSegmentArray(&points, nullptr, nullptr, nullptr, in, 2, 0.001, 0),
              kFail);
    EXPECT_EQ(
        tsLine_createStreamFromSegmentArray(&points, &pointCount, nullptr, nullptr, nullptr, 2, 0.001, 0),
        kFail);
    // The indices are optional.
    ASSERT_EQ(tsLine_createStreamFromSegmentArray(&points, &pointCount, nullptr, nullptr, in, 2, 0.001, 0),
              0);
    EXPECT_EQ(pointCount, 2);
    tsMem_free(points);
}

/* ---- Road scenario ---- */

// A kerb rising at 1 % crossed twice by a drainage line: at y = 2000 the
// drain is halfway along its segments (sqrt(30^2 + 20^2) long), at x = 1045
// (47.75) and 1075 (47.35), under the kerb at 50.45 and 50.75.
TEST(CrossingRoadScenario, KerbLineCrossingADrainageLine)
{
    tsLineString kerb{
        libraryCopy({{1000, 2000, 50.0}, {1040, 2000, 50.4}, {1080, 2000, 50.8}, {1100, 2000, 51.0}}), 4};
    tsLineString drain{libraryCopy({{1030, 1990, 48.0}, {1060, 2010, 47.5}, {1090, 1990, 47.2}}), 3};
    tsLineString *strings[] = {&kerb, &drain};
    tsStringIntersection *found = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsLineString_insertStringIntersections(strings, 2, &found, &count), 0);
    const double half = std::sqrt(30.0 * 30.0 + 20.0 * 20.0) / 2.0;
    expectCrossings(found, count,
                    {{0, 1, 1, 0, 5, 1045, 2000, 50.45, 47.75},
                     {0, 1, 1, 1, 35, 1075, 2000, 50.75, 47.35},
                     {1, 0, 0, 1, half, 1045, 2000, 47.75, 50.45},
                     {1, 1, 0, 1, half, 1075, 2000, 47.35, 50.75}});
    expectPoints(kerb.points, kerb.count,
                 {{1000, 2000, 50.0},
                  {1040, 2000, 50.4},
                  {1045, 2000, 50.45},
                  {1075, 2000, 50.75},
                  {1080, 2000, 50.8},
                  {1100, 2000, 51.0}});
    expectPoints(drain.points, drain.count,
                 {{1030, 1990, 48.0},
                  {1045, 2000, 47.75},
                  {1060, 2010, 47.5},
                  {1075, 2000, 47.35},
                  {1090, 1990, 47.2}});
    tsMem_free(found);
    tsMem_free(kerb.points);
    tsMem_free(drain.points);
}

}  // namespace
