// String intersections and knots: repeated points, crossings of two strings
// worked by hand (a plain crossing, a vertex touching a segment, vertex on
// vertex, collinear overlaps), knots found, inserted and cut away in open,
// closed and nested strings, the continuous string from loose segments, and
// who owns which array (the suite runs clean under the address sanitizer,
// so a leaked or twice-freed array fails it). The road scenario is a kerb
// line crossed twice by a drainage line, with the clearance at each
// crossing. Expected values are worked by hand beside each case.
#include <tessar/linestring.h>
#include <tessar/memory.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
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

Points asVector(const dpoint3d *points, int32_t n)
{
    return Points(points, points + n);
}

void expectPoints(const Points &actual, const Points &expected)
{
    ASSERT_EQ(actual.size(), expected.size());
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
        EXPECT_EQ(f.string, e.string) << "record " << i;
        EXPECT_EQ(f.segment, e.segment) << "record " << i;
        EXPECT_EQ(f.otherString, e.otherString) << "record " << i;
        EXPECT_EQ(f.otherSegment, e.otherSegment) << "record " << i;
        EXPECT_NEAR(f.distance, e.distance, kEps) << "record " << i;
        EXPECT_NEAR(f.x, e.x, kEps) << "record " << i;
        EXPECT_NEAR(f.y, e.y, kEps) << "record " << i;
        EXPECT_NEAR(f.z, e.z, kEps) << "record " << i;
        EXPECT_NEAR(f.otherZ, e.otherZ, kEps) << "record " << i;
    }
}

// Detection over the given strings; the list is released here.
void expectStringCrossings(std::vector<Points> strings, const std::vector<Crossing> &expected)
{
    std::vector<tsLineString> records;
    for (Points &s : strings)
        records.push_back({s.data(), static_cast<int32_t>(s.size())});
    std::vector<tsLineString *> pointers;
    for (tsLineString &r : records)
        pointers.push_back(&r);
    tsStringIntersection *found = nullptr;
    int32_t count = -1;
    ASSERT_EQ(tsLineString_detectStringIntersections(pointers.data(), static_cast<int32_t>(pointers.size()),
                                                     &found, &count),
              0);
    expectCrossings(found, count, expected);
    if (count == 0) {
        EXPECT_EQ(found, nullptr);
    }
    tsMem_free(found);
}

/* ---- Repeated points ---- */

struct DuplicateRow {
    const char *name;
    Points in;
    double tol;
    Points kept;
};

TEST(RepeatedPoints, DroppedAgainstTheLastKeptPoint)
{
    const std::vector<DuplicateRow> rows = {
        // z is not looked at.
        {"exact repeat", {{0, 0, 0}, {0, 0, 5}, {1, 0, 0}}, 0.0, {{0, 0, 0}, {1, 0, 0}}},
        // A negative tolerance is 0: only exact repeats go.
        {"negative tol", {{0, 0, 0}, {0, 0, 0}, {1e-9, 0, 0}}, -1.0, {{0, 0, 0}, {1e-9, 0, 0}}},
        // (0.6, 0.6) is 0.849 away; (0.8, 0.8) passes the box test but is 1.131 away.
        {"inside the circle", {{0, 0, 0}, {0.6, 0.6, 0}}, 1.0, {{0, 0, 0}}},
        {"box but not circle", {{0, 0, 0}, {0.8, 0.8, 0}}, 1.0, {{0, 0, 0}, {0.8, 0.8, 0}}},
        // (0.6, 0) goes against (0, 0); (1.2, 0) is 1.2 from (0, 0), not 0.6
        // from the dropped point, and stays.
        {"last kept, not last seen", {{0, 0, 0}, {0.6, 0, 0}, {1.2, 0, 0}}, 1.0, {{0, 0, 0}, {1.2, 0, 0}}},
        // Exactly tol away is still a repeat.
        {"at the tolerance", {{0, 0, 0}, {0, 0.5, 0}, {3, 0, 0}}, 0.5, {{0, 0, 0}, {3, 0, 0}}},
    };
    for (const DuplicateRow &row : rows) {
        SCOPED_TRACE(row.name);
        Points points = row.in;
        int32_t n = static_cast<int32_t>(points.size());
        ASSERT_EQ(tsLineString_removeDuplicatesPointArray(points.data(), &n, row.tol), 0);
        expectPoints(asVector(points.data(), n), row.kept);
    }
}

TEST(RepeatedPoints, CountsOfAtMostOneBecomeOneAndNullsFail)
{
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

TEST(StringCrossings, PlainCrossingGivesTwoRecordsWithLevelsExchanged)
{
    // A runs east rising 10 to 20; B runs north rising 0 to 100. They cross at
    // (5, 0), 5 along each: A is at 15 there, B at 50.
    expectStringCrossings({{{0, 0, 10}, {10, 0, 20}}, {{5, -5, 0}, {5, 5, 100}}},
                          {{0, 0, 1, 0, 5, 5, 0, 15, 50}, {1, 0, 0, 0, 5, 5, 0, 50, 15}});
    // B given southward: distance and level still count from its own start
    // (5, 5, 100), falling to 0; 5 along it is 50 again.
    expectStringCrossings({{{0, 0, 10}, {10, 0, 20}}, {{5, 5, 100}, {5, -5, 0}}},
                          {{0, 0, 1, 0, 5, 5, 0, 15, 50}, {1, 0, 0, 0, 5, 5, 0, 50, 15}});
    // Oblique: A from (0, 0) to (4, 4), B from (0, 4) to (4, 0) cross at
    // (2, 2), 2 sqrt 2 along each.
    const double d = 2.0 * std::sqrt(2.0);
    expectStringCrossings({{{0, 0, 0}, {4, 4, 8}}, {{0, 4, 1}, {4, 0, 1}}},
                          {{0, 0, 1, 0, d, 2, 2, 4, 1}, {1, 0, 0, 0, d, 2, 2, 1, 4}});
}

TEST(StringCrossings, TouchingAtAVertex)
{
    // B's middle vertex (5, 0) sits on A's segment: both of B's segments meet
    // A there, so A's segment carries two records at distance 5, and B gives
    // one from the end of its first segment (5 from (5, 5)) and one from the
    // start of its second.
    expectStringCrossings({{{0, 0, 0}, {10, 0, 0}}, {{5, 5, 0}, {5, 0, 0}, {8, 6, 0}}},
                          {{0, 0, 1, 0, 5, 5, 0, 0, 0},
                           {0, 0, 1, 1, 5, 5, 0, 0, 0},
                           {1, 0, 0, 0, 5, 5, 0, 0, 0},
                           {1, 1, 0, 0, 0, 5, 0, 0, 0}});
    // Vertex on vertex: the shared end is taken exactly, and the level is
    // each segment's own level at its end.
    expectStringCrossings({{{0, 0, 1}, {3, 4, 2}}, {{3, 4, 7}, {6, 0, 9}}},
                          {{0, 0, 1, 0, 5, 3, 4, 2, 7}, {1, 0, 0, 0, 0, 3, 4, 7, 2}});
}

TEST(StringCrossings, CollinearOverlapTakesTheNearerEndOfTheLaterSegment)
{
    // A (0,0)-(10,0) and B (4,0)-(14,0) overlap from 4 to 10; the crossing is
    // B's end nearer A's left end: (4, 0), 4 along A and 0 along B.
    expectStringCrossings({{{0, 0, 0}, {10, 0, 0}}, {{4, 0, 0}, {14, 0, 0}}},
                          {{0, 0, 1, 0, 4, 4, 0, 0, 0}, {1, 0, 0, 0, 0, 4, 0, 0, 0}});
    // B (-4,0)-(6,0) starts further left: seen from B's left end (-4, 0), A's
    // nearer end is (0, 0), 4 along B.
    expectStringCrossings({{{0, 0, 0}, {10, 0, 0}}, {{-4, 0, 0}, {6, 0, 0}}},
                          {{0, 0, 1, 0, 0, 0, 0, 0, 0}, {1, 0, 0, 0, 4, 0, 0, 0, 0}});
}

TEST(StringCrossings, SegmentsThatDoNotMeet)
{
    // Boxes overlap but both ends of B lie above A's line.
    expectStringCrossings({{{0, 0, 0}, {10, 10, 0}}, {{0, 5, 0}, {4, 9, 0}}}, {});
    // Collinear but apart.
    expectStringCrossings({{{0, 0, 0}, {1, 0, 0}}, {{2, 0, 0}, {3, 0, 0}}}, {});
    // A string of one point has no segment.
    expectStringCrossings({{{0, 0, 0}, {10, 0, 0}}, {{5, 0, 0}}}, {});
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
    // (5, 0) and a single (8, 0); C's vertex already stands there, so C keeps
    // its three points; B gets the crossing with its own level 50.
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
    expectPoints(asVector(a.points, a.count), {{0, 0, 0}, {5, 0, 5}, {8, 0, 8}, {10, 0, 10}});
    expectPoints(asVector(b.points, b.count), {{5, -5, 0}, {5, 0, 50}, {5, 5, 100}});
    expectPoints(asVector(c.points, c.count), {{8, 3, 0}, {8, 0, 0}, {9, 3, 0}});
    // A string without crossings keeps its own array.
    EXPECT_EQ(untouched.points, untouchedPoints);
    for (tsLineString *s : strings)
        tsMem_free(s->points);
    tsMem_free(found);
}

/* ---- Knots ---- */

TEST(Knots, OneSelfCrossingButNeverConsecutiveSegments)
{
    // East, north, west, then south across the first segment at (5, 0):
    // 5 along segment 0 and 5 along segment 3 from (5, 5).
    const Points string = {{0, 0, 0}, {10, 0, 0}, {10, 5, 0}, {5, 5, 0}, {5, -5, 0}};
    tsStringIntersection *knots = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsLineString_detectKnotsPointArray(string.data(), 5, &knots, &count), 0);
    expectCrossings(knots, count, {{0, 0, 0, 3, 5, 5, 0, 0, 0}, {0, 3, 0, 0, 5, 5, 0, 0, 0}});

    // Folding back along itself: the two segments overlap but are neighbours.
    const Points folded = {{0, 0, 0}, {10, 0, 0}, {2, 0, 0}};
    ASSERT_EQ(tsLineString_detectKnotsPointArray(folded.data(), 3, &knots, &count), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(knots, nullptr);
    // Two points are never a knot.
    ASSERT_EQ(tsLineString_detectKnotsPointArray(string.data(), 2, &knots, &count), 0);
    EXPECT_EQ(count, 0);
}

TEST(Knots, ClosingPointOfAClosedStringIsNoKnot)
{
    // Segments 0 and 3 meet at (0, 0) and are 3 apart, but close the ring.
    const Points square = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}};
    tsStringIntersection *knots = nullptr;
    int32_t count = -1;
    ASSERT_EQ(tsLineString_detectKnotsPointArray(square.data(), 5, &knots, &count), 0);
    EXPECT_EQ(count, 0);
    // The same shape left open (last point a hair off) is reported.
    Points open = square;
    open.back().x = 1e-12;
    ASSERT_EQ(tsLineString_detectKnotsPointArray(open.data(), 5, &knots, &count), 0);
    EXPECT_EQ(count, 2);
    tsMem_free(knots);
}

TEST(Knots, InsertingReleasesTheCallersArrayOnlyWhenThereAreKnots)
{
    // With a knot the caller's array is released by the call and the larger
    // one is not handed back; freeing it again here would be a double free.
    dpoint3d *crossing = libraryCopy({{0, 0, 0}, {10, 0, 0}, {10, 5, 0}, {5, 5, 0}, {5, -5, 0}});
    tsStringIntersection *knots = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsLineString_insertKnots(crossing, 5, &knots, &count), 0);
    EXPECT_EQ(count, 2);
    // Without one, the array stays the caller's; the list held from the first
    // call is freed on entry.
    dpoint3d *plain = libraryCopy({{0, 0, 0}, {10, 0, 0}, {10, 5, 0}});
    ASSERT_EQ(tsLineString_insertKnots(plain, 3, &knots, &count), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(plain[2].y, 5.0);
    tsMem_free(plain);
}

struct LoopRow {
    const char *name;
    Points in;
    Points out;
    int32_t knotRecords;
};

TEST(Knots, LoopsAreCutAway)
{
    const std::vector<LoopRow> rows = {
        // Open: the loop between the two passages of (5, 0) goes.
        {"open loop",
         {{0, 0, 0}, {10, 0, 0}, {10, 5, 0}, {5, 5, 0}, {5, -5, 0}},
         {{0, 0, 0}, {5, 0, 0}, {5, -5, 0}},
         2},
        // Figure eight through (0, 0), left open: the right lobe lies between
        // the passages and goes.
        {"open figure eight",
         {{-1, 1, 0}, {1, -1, 0}, {3, -1, 0}, {3, 1, 0}, {1, 1, 0}, {-1, -1, 0}},
         {{-1, 1, 0}, {0, 0, 0}, {-1, -1, 0}},
         2},
        // Closed from the small lobe: the right lobe, 6 + 2 sqrt 2 long, is at
        // least the rest (2 + 2 sqrt 2), so the rest goes.
        {"closed, start in the small lobe",
         {{-1, 1, 0}, {1, -1, 0}, {3, -1, 0}, {3, 1, 0}, {1, 1, 0}, {-1, -1, 0}, {-1, 1, 0}},
         {{0, 0, 0}, {1, -1, 0}, {3, -1, 0}, {3, 1, 0}, {1, 1, 0}, {0, 0, 0}},
         2},
        // Closed from the big lobe: now the loop between the passages is the
        // small lobe, shorter than the rest, and it goes.
        {"closed, start in the big lobe",
         {{3, -1, 0}, {3, 1, 0}, {1, 1, 0}, {-1, -1, 0}, {-1, 1, 0}, {1, -1, 0}, {3, -1, 0}},
         {{3, -1, 0}, {3, 1, 0}, {1, 1, 0}, {0, 0, 0}, {1, -1, 0}, {3, -1, 0}},
         2},
        // Repeated points go first; a string with no knot is kept as it is.
        {"no knot", {{0, 0, 0}, {1, 0, 0}, {1, 0, 0}, {1, 1, 0}}, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, 0},
    };
    for (const LoopRow &row : rows) {
        SCOPED_TRACE(row.name);
        dpoint3d *points = libraryCopy(row.in);
        int32_t n = static_cast<int32_t>(row.in.size());
        tsStringIntersection *knots = nullptr;
        int32_t count = 0;
        ASSERT_EQ(tsLineString_removeKnots(&points, &n, &knots, &count), 0);
        EXPECT_EQ(count, row.knotRecords);
        expectPoints(asVector(points, n), row.out);
        tsMem_free(points);
        tsMem_free(knots);
    }
}

TEST(Knots, NestedPassagesGiveUpTheOuterKnot)
{
    // The string passes a (0,0), b (10,0), c (10,10), b, a, c, with detours
    // so that it only meets itself there:
    //   0 S(-5,0) 1 a 2 b 3 c 4 (14,5) 5 b 6 (5,-5) 7 a 8 (-5,10) 9 c 10 E(10,20)
    // Marks a b c b a c: no two neighbouring passages of one knot. At a the
    // pattern a, b, ..., b, a holds, so a is given up at vertex 1; the next
    // pass cuts b's loop 2..5, which takes c's first passage (3) with it.
    // Then a and c each have one passage left, and nothing more is cut.
    const Points string = {{-5, 0, 0}, {0, 0, 0}, {10, 0, 0},  {10, 10, 0}, {14, 5, 0}, {10, 0, 0},
                           {5, -5, 0}, {0, 0, 0}, {-5, 10, 0}, {10, 10, 0}, {10, 20, 0}};
    dpoint3d *points = libraryCopy(string);
    int32_t n = 11;
    tsStringIntersection *knots = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsLineString_removeKnots(&points, &n, &knots, &count), 0);
    EXPECT_GT(count, 0);
    expectPoints(
        asVector(points, n),
        {{-5, 0, 0}, {0, 0, 0}, {10, 0, 0}, {5, -5, 0}, {0, 0, 0}, {-5, 10, 0}, {10, 10, 0}, {10, 20, 0}});
    tsMem_free(points);
    tsMem_free(knots);
}

TEST(Knots, RemovalArguments)
{
    tsStringIntersection *knots = nullptr;
    int32_t count = 0;
    int32_t n = 3;
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

struct StreamRow {
    const char *name;
    Points segments;
    int32_t closed;
    Points string;
    std::vector<int32_t> indices;
};

TEST(SegmentStream, SegmentsAreCutWithTheirNeighbours)
{
    const std::vector<StreamRow> rows = {
        // Lines y = 0, x = 5, y = 6 meet at (5, 0) and (5, 6). A cut end keeps
        // the level of the end it moved: (5, 0) carries 2, (5, 6) carries 4.
        {"gaps closed",
         {{0, 0, 1}, {4, 0, 2}, {5, 1, 3}, {5, 5, 4}, {6, 6, 5}, {10, 6, 6}},
         0,
         {{0, 0, 1}, {5, 0, 2}, {5, 6, 4}, {10, 6, 6}},
         {0, 1, 2}},
        // The middle segment (line y = x - 9, north-east) is cut from (9, 0)
        // to (8, -1), backwards: it is eaten, and the first and last are cut
        // with each other at (8, 0).
        {"short segment eaten",
         {{0, 0, 0}, {10, 0, 0}, {10, 1, 0}, {11, 2, 0}, {8, 1, 0}, {8, 10, 0}},
         0,
         {{0, 0, 0}, {8, 0, 0}, {8, 10, 0}},
         {0, 2}},
        // Collinear lines do not intersect: each end stays, and the second
        // segment starts where the first ended.
        {"collinear",
         {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}},
         0,
         {{0, 0, 0}, {1, 0, 0}, {3, 0, 0}},
         {0, 1}},
        // Parallel lines one apart: the second would run from (1, 0) to (3, 1),
        // off its own direction, and is dropped.
        {"parallel offset", {{0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {3, 1, 0}}, 0, {{0, 0, 0}, {1, 0, 0}}, {0}},
        // Four sides of a square with open corners, closed: every corner is
        // cut, and the string ends where it starts.
        {"closed square",
         {{1, 0, 0}, {9, 0, 0}, {10, 1, 0}, {10, 9, 0}, {9, 10, 0}, {1, 10, 0}, {0, 9, 0}, {0, 1, 0}},
         1,
         {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}},
         {0, 1, 2, 3}},
        // The same closed, led by a chamfer on the line y = -x - 1 outside the
        // first corner: cut with the last side (x = 0) at (0, -1) and with the
        // next (y = 0) at (-1, 0), it would run backwards, so it is eaten and
        // the corner is (0, 0). Open, it would stay from (-2, 1) to (-1, 0).
        {"closed, first segment eaten",
         {{-2, 1, 0},
          {1, -2, 0},
          {1, 0, 0},
          {9, 0, 0},
          {10, 1, 0},
          {10, 9, 0},
          {9, 10, 0},
          {1, 10, 0},
          {0, 9, 0},
          {0, 1, 0}},
         1,
         {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {0, 0, 0}},
         {1, 2, 3, 4}},
        // A single segment, even closed, is itself; a lone fifth point is ignored.
        {"single closed", {{0, 0, 0}, {2, 2, 1}, {7, 7, 7}}, 1, {{0, 0, 0}, {2, 2, 1}}, {0}},
    };
    for (const StreamRow &row : rows) {
        SCOPED_TRACE(row.name);
        dpoint3d *points = nullptr;
        int32_t *indices = nullptr;
        int32_t pointCount = -1, indexCount = -1;
        ASSERT_EQ(tsLine_createStreamFromSegmentArray(
                      &points, &pointCount, &indices, &indexCount, row.segments.data(),
                      static_cast<int32_t>(row.segments.size()), 0.001, row.closed),
                  0);
        expectPoints(asVector(points, pointCount), row.string);
        EXPECT_EQ(std::vector<int32_t>(indices, indices + indexCount), row.indices);
        tsMem_free(points);
        tsMem_free(indices);
    }
}

TEST(SegmentStream, ArgumentsAndOwnership)
{
    const Points segments = {{0, 0, 0}, {1, 0, 0}};
    dpoint3d *points = static_cast<dpoint3d *>(tsMem_malloc(sizeof(dpoint3d)));
    int32_t *indices = static_cast<int32_t *>(tsMem_malloc(sizeof(int32_t)));
    int32_t pointCount = 9, indexCount = 9;
    // Outputs are freed and cleared on entry, also when the call fails.
    EXPECT_EQ(tsLine_createStreamFromSegmentArray(&points, &pointCount, &indices, &indexCount,
                                                  segments.data(), 0, 0.001, 0),
              kFail);
    EXPECT_EQ(points, nullptr);
    EXPECT_EQ(indices, nullptr);
    EXPECT_EQ(pointCount, 0);
    EXPECT_EQ(indexCount, 0);
    // One point is no segment at all; null outputs or input fail.
    const dpoint3d *input = segments.data();
    EXPECT_EQ(tsLine_createStreamFromSegmentArray(&points, &pointCount, nullptr, nullptr, input, 1, 0.001, 0),
              kFail);
    EXPECT_EQ(tsLine_createStreamFromSegmentArray(nullptr, &pointCount, nullptr, nullptr, input, 2, 0.001, 0),
              kFail);
    EXPECT_EQ(tsLine_createStreamFromSegmentArray(&points, nullptr, nullptr, nullptr, input, 2, 0.001, 0),
              kFail);
    EXPECT_EQ(
        tsLine_createStreamFromSegmentArray(&points, &pointCount, nullptr, nullptr, nullptr, 2, 0.001, 0),
        kFail);
    // The indices are optional.
    ASSERT_EQ(tsLine_createStreamFromSegmentArray(&points, &pointCount, nullptr, nullptr, segments.data(), 2,
                                                  0.001, 0),
              0);
    EXPECT_EQ(pointCount, 2);
    tsMem_free(points);
}

/* ---- Road scenario ---- */

// A kerb line along the road, rising at 1 %, is crossed twice by a drainage
// line that runs under it and back. At y = 2000 the drainage segments are
// halfway along, at x = 1045 (level 47.75) and x = 1075 (level 47.35);
// the kerb there stands at 50.45 and 50.75: clearances 2.70 and 3.40. Each
// drainage segment is sqrt(30^2 + 20^2) = 36.0555 long, the crossing half
// of that along it. Both strings then get the crossings as vertices.
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
    EXPECT_NEAR(found[0].z - found[0].otherZ, 2.70, kEps);
    EXPECT_NEAR(found[1].z - found[1].otherZ, 3.40, kEps);

    expectPoints(asVector(kerb.points, kerb.count), {{1000, 2000, 50.0},
                                                     {1040, 2000, 50.4},
                                                     {1045, 2000, 50.45},
                                                     {1075, 2000, 50.75},
                                                     {1080, 2000, 50.8},
                                                     {1100, 2000, 51.0}});
    expectPoints(asVector(drain.points, drain.count), {{1030, 1990, 48.0},
                                                       {1045, 2000, 47.75},
                                                       {1060, 2010, 47.5},
                                                       {1075, 2000, 47.35},
                                                       {1090, 1990, 47.2}});
    tsMem_free(found);
    tsMem_free(kerb.points);
    tsMem_free(drain.points);
}

}  // namespace
