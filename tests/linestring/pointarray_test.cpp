// Point arrays and polygons: storage, areas, directions and centroids, the
// crossing classifier, the thinning filters, and a parcel. Values by hand.
#include <tessar/memory.h>
#include <tessar/pointarray.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;

using Ring = std::vector<dpoint3d>;
using Flags = std::vector<int32_t>;

Ring reversed(Ring ring)
{
    std::reverse(ring.begin(), ring.end());
    return ring;
}

int32_t count(const Ring &ring)
{
    return static_cast<int32_t>(ring.size());
}

double signedArea(const Ring &ring)
{
    double area = -1.0;
    EXPECT_EQ(tsPointArray_computeSimplePolygonAlgebricArea2d(ring.data(), count(ring), &area), 0);
    return area;
}

int32_t direction(const Ring &ring)
{
    int32_t d = -1;
    EXPECT_EQ(tsPointArray_getPolygonDirection(ring.data(), count(ring), &d), 0);
    return d;
}

int32_t classify(const Ring &ring, double x, double y)
{
    const dpoint3d p{x, y, 0.0};
    return tsPointArray_isPointInsidePolygon(ring.data(), count(ring), &p);
}

// Checks the centroid of the ring against (x, y, 0) within tol.
void expectCentroid(const Ring &ring, double x, double y, double tol = 1e-12)
{
    dpoint3d c{9, 9, 9};
    EXPECT_EQ(tsPointArray_getCentroid(ring.data(), count(ring), &c), 0);
    EXPECT_NEAR(c.x, x, tol);
    EXPECT_NEAR(c.y, y, tol);
    EXPECT_EQ(c.z, 0.0);
}

bool same(const dpoint3d &a, const dpoint3d &b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

std::vector<double> xsOf(const dpoint3d *p, int32_t n)
{
    std::vector<double> xs;
    for (int32_t i = 0; i < n; ++i)
        xs.push_back(p[i].x);
    return xs;
}

// Plan points at level 0 from x, y pairs.
Ring xy(std::initializer_list<double> c)
{
    Ring out;
    for (auto i = c.begin(); i != c.end(); i += 2)
        out.push_back({i[0], i[1], 0});
    return out;
}

// Clockwise: up the left side, along the top, down the right side.
const Ring kClosedSquare = xy({0, 0, 0, 1, 1, 1, 1, 0, 0, 0});
// Square 2..8, clockwise, not closed.
const Ring kSquare = xy({2, 2, 2, 8, 8, 8, 8, 2});

TEST(PointArrayStorage, BadArgumentsGive32768)
{
    dpoint3d p[5] = {};
    dpoint3d *owned = nullptr;
    double x = 0.0;
    EXPECT_EQ(tsPointArray_copy(nullptr, 1, p), kFail);
    EXPECT_EQ(tsPointArray_copy(p, 0, p), kFail);
    EXPECT_EQ(tsPointArray_clone(&owned, p, 0), kFail);
    EXPECT_EQ(tsPointArray_clone(nullptr, p, 1), kFail);
    EXPECT_EQ(tsPointArray_clone(&owned, nullptr, 1), kFail);
    EXPECT_EQ(owned, nullptr);
    EXPECT_EQ(tsPointArray_free(nullptr), kFail);
    EXPECT_EQ(tsPointArray_setZ(nullptr, 3, 1.0), kFail);
    EXPECT_EQ(tsPointArray_getCoordsByIndex2d(p, &x, nullptr, 0), kFail);
    EXPECT_EQ(tsPointArray_blockPointsFromDiagonal(p, nullptr, p), kFail);
    EXPECT_EQ(tsPoint_blockPointsFromDiagonal(p, p, nullptr), nullptr);
    EXPECT_EQ(tsPointArray_computeSimplePolygonAlgebricArea2d(nullptr, 3, &x), kFail);
    EXPECT_EQ(tsPointArray_closePolygon(nullptr, nullptr, 0.1), kFail);
    // The convex hull has no implementation under either name.
    EXPECT_EQ(tsPointArray_computeConvexHull2d(), kFail);
    EXPECT_EQ(tsPoint_computeConvexHull2d(), kFail);
}

TEST(PointArrayStorage, CopyCloneAndBlock)
{
    // Overlapping ranges are moved.
    dpoint3d p[5] = {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}, {5, 0, 0}};
    ASSERT_EQ(tsPoint_copyMultiple(p + 1, p, 4), 0);
    EXPECT_EQ(xsOf(p, 5), (std::vector<double>{1, 1, 2, 3, 4}));

    const dpoint3d source[3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    dpoint3d *copy = nullptr;
    ASSERT_EQ(tsPointArray_clone(&copy, source, 3), 0);
    ASSERT_NE(copy, source);
    ASSERT_EQ(tsPoint_setZValue(copy, 3, -1.5), 0);
    tsPointArray_reverse(copy, 3);
    double x = 0.0, y = 0.0;
    ASSERT_EQ(tsPoint_getCoordsFromPointArray(&x, &y, copy, 0), 0);
    EXPECT_EQ(std::pair(x, y), std::pair(7.0, 8.0));
    EXPECT_TRUE(same(copy[1], {4, 5, -1.5}) && same(copy[2], {1, 2, -1.5}));
    EXPECT_EQ(source[2].z, 9.0);
    ASSERT_EQ(tsPoint_freeArray(&copy), 0);
    EXPECT_EQ(copy, nullptr);
    EXPECT_EQ(tsPointArray_free(&copy), 0);  // a cleared pointer is fine

    // Each corner takes its z from the diagonal point whose y it shares.
    const dpoint3d p1{10, 20, 1}, p2{30, 25, 2};
    dpoint3d out[5];
    ASSERT_EQ(tsPoint_blockPointsFromDiagonal(out, &p1, &p2), out);
    const dpoint3d want[5] = {{10, 20, 1}, {30, 20, 1}, {30, 25, 2}, {10, 25, 2}, {10, 20, 1}};
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(same(out[i], want[i])) << i;
    // 20 by 5, east along the low side first: counter-clockwise, -100.
    EXPECT_EQ(signedArea(Ring(out, out + 5)), -100.0);
}

TEST(PolygonMeasures, AreaDirectionAndCentroid)
{
    // Closed unit square: terms 0, 1, 1, 0, so 0.5 * 2 = 1; clockwise positive.
    EXPECT_EQ(signedArea(kClosedSquare), 1.0);
    EXPECT_EQ(signedArea(reversed(kClosedSquare)), -1.0);
    for (const Ring &ring : {kClosedSquare, reversed(kClosedSquare)}) {
        double area = 0.0;
        EXPECT_EQ(tsPoint_computeSimplePolygonArea2d(&area, ring.data(), count(ring)), 0);
        EXPECT_EQ(area, 1.0);
    }
    // Trapezoid sums: +1 clockwise, -1 counter-clockwise; 0 reports 1.
    EXPECT_EQ(direction(kClosedSquare), 1);
    EXPECT_EQ(direction(reversed(kClosedSquare)), 0);
    EXPECT_EQ(direction(Ring{{2, 2, 0}}), 1);
    EXPECT_EQ(signedArea(Ring{{2, 2, 0}}), 0.0);  // fewer than two points

    // Open square of side 2 around (2, 2): terms -2, 6, 6 without the
    // closing term of -2 give 0.5 * 10; the centroid adds the closing edge.
    const Ring open = xy({1, 1, 1, 3, 3, 3, 3, 1});
    EXPECT_EQ(signedArea(open), 5.0);
    expectCentroid(open, 2.0, 2.0);
    // Triangles (0,0)(0,30)(40,40), area 600, centroid (40/3, 70/3), and
    // (0,0)(40,40)(50,0), area 1000, centroid (30, 40/3): (23.75, 82000/4800).
    expectCentroid({{0, 0, 5}, {0, 30, 5}, {40, 40, 5}, {50, 0, 5}}, 23.75, 82000.0 / 4800.0);
    // Out and back along a line: no area, so the centroid is the origin.
    expectCentroid({{1, 1, 7}, {2, 2, 7}, {3, 3, 7}}, 0.0, 0.0, 0.0);
}

TEST(PolygonClosing, NearlyClosedRingIsSnappedOpenRingGrows)
{
    const Ring nearly = {{0, 0, 1}, {0, 5, 0}, {5, 5, 0}, {0.01, 0.0, 2}};
    dpoint3d *ring = nullptr;
    ASSERT_EQ(tsPointArray_clone(&ring, nearly.data(), 4), 0);
    int32_t n = 4;
    EXPECT_EQ(tsPointArray_isClosed(ring, n, 0.02), 1);
    EXPECT_EQ(tsPointArray_isClosed(ring, n, 0.005), 0);
    EXPECT_EQ(tsPointArray_isClosed(nullptr, n, 1.0), 0);
    ASSERT_EQ(tsPointArray_closePolygon(&ring, &n, 0.02), 0);
    EXPECT_EQ(n, 4);
    EXPECT_TRUE(same(ring[3], {0, 0, 1}));  // snapped onto the first point, z included
    ring[3] = {5, 0, 0};                    // now open: the first point is appended
    ASSERT_EQ(tsPointArray_closePolygon(&ring, &n, 0.02), 0);
    ASSERT_EQ(n, 5);
    EXPECT_TRUE(same(ring[4], {0, 0, 1}));
    EXPECT_EQ(ring[3].x, 5.0);
    tsPointArray_free(&ring);
}

TEST(PointInPolygon, Classifier)
{
    const Ring diamond = xy({5, 1, 1, 5, 5, 9, 9, 5});
    const Ring peak = xy({2, 2, 6, 8, 10, 2});  // apex on the ray's level
    const Ring centred = xy({-4, 0, 0, 4, 4, 0, 0, -4});
    const Ring box = xy({-2, -2, -2, 2, 2, 2, 2, -2});
    // A step down the right side to a stretch along y = 10; a notch from the
    // top with its floor at y = 10; a square 10..20 with a bridge to a hole
    // 13..17 walked the other way, back along the bridge by the closing edge.
    const Ring step = xy({10, 0, 10, 20, 30, 20, 30, 10, 50, 10, 50, 0});
    const Ring notch = xy({10, 0, 10, 20, 20, 20, 20, 10, 30, 10, 30, 20, 40, 20, 40, 0});
    const Ring withHole =
        xy({10, 10, 10, 20, 20, 20, 20, 10, 10, 10, 13, 13, 17, 13, 17, 17, 13, 17, 13, 13});
    // Per ring: x, y and the expected class, three values a point.
    const std::pair<const Ring *, std::vector<double>> rows[] = {
        // Inside, left, right (two crossings), vertices, edges, above.
        {&kSquare, {5, 5, 1, 1, 5, 0, 9, 5, 0, 2, 2, 2, 8, 8, 2, 5, 8, 2, 2, 5, 2, 8, 5, 2, 5, 8.5, 0}},
        // On a slanted edge parity decides: at y = 3 the left edge is at x = 3
        // (not below 3, no crossing), the right at 7. Side vertices on the ray
        // count once, by the edge that starts there.
        {&diamond, {3, 3, 0, 7, 3, 1, 12, 5, 0, 5, 5, 1}},
        // The apex is a peak: it touches the ray and is not counted.
        {&peak, {12, 8, 0, 4, 8, 0, 6, 4, 1}},
        // A crossing test of a non-horizontal edge spanning y at the point's
        // own x = 0.0 gives the boundary, inside or outside alike.
        {&centred, {0.0, 1.0, 2}},
        {&box, {0.0, 1.0, 2, 1e-300, 1.0, 1}},
        {&kSquare, {0.0, 5.0, 2, 0.0, 9.0, 0}},
        // A stretch passed through counts once (crossings 10, 50 from x 60);
        // a notch floor touched and turned back from counts with its next edge.
        {&step, {60, 10, 0, 20, 10, 1, 40, 10, 2}},
        {&notch, {50, 10, 0, 35, 10, 1, 15, 10, 1, 25, 15, 0}},
        // Hole: crossings 10, 13 / 10 / 10, 13, 17; its edge and corner.
        {&withHole, {15, 15, 0, 11.5, 15, 1, 18.5, 15, 1, 13, 15, 2, 17, 13, 2}},
    };
    for (const auto &[ring, values] : rows)
        for (size_t i = 0; i + 2 < values.size(); i += 3)
            EXPECT_EQ(classify(*ring, values[i], values[i + 1]), static_cast<int32_t>(values[i + 2]))
                << values[i] << ", " << values[i + 1];
    // Outer 100 less the hole's 16; the bridge, out and back, adds nothing.
    EXPECT_EQ(signedArea(withHole), 84.0);

    const dpoint3d p{5, 5, 0};
    EXPECT_EQ(tsPointArray_isPointInsidePolygon(nullptr, 4, &p), 0);
    EXPECT_EQ(tsPointArray_isPointInsidePolygon(kSquare.data(), 4, nullptr), 0);
    EXPECT_EQ(tsPoint_isInsidePolygon(&p, kSquare.data(), 4), 1);
}

TEST(PointInPolygon, WholeArrays)
{
    // All inside, inside and on the boundary, all outside, mixed.
    const std::pair<Ring, int32_t> rows[] = {{{{3, 3, 0}, {4, 4, 0}}, 1},
                                             {{{3, 3, 0}, {2, 5, 0}}, 1},
                                             {{{1, 1, 0}, {9, 9, 0}}, 0},
                                             {xy({9, 9, 3, 3, 1, 1}), 2}};
    for (const auto &[points, want] : rows) {
        int32_t result = 7;
        EXPECT_EQ(tsPointArray_isArrayWithinPolygon(&result, points.data(), count(points), kSquare.data(), 4),
                  0);
        EXPECT_EQ(result, want);
    }
    int32_t result = 7;
    EXPECT_EQ(tsPointArray_isArrayWithinPolygon(nullptr, kSquare.data(), 1, kSquare.data(), 4), kFail);
    EXPECT_EQ(tsPointArray_isArrayWithinPolygon(&result, nullptr, 1, kSquare.data(), 4), kFail);
    EXPECT_EQ(result, -1);
    result = 7;
    EXPECT_EQ(tsPointArray_isArrayWithinPolygon(&result, kSquare.data(), 1, kSquare.data(), 0), kFail);
    EXPECT_EQ(result, -1);
}

TEST(Thinning, RedundantPointsCollapseOntoTheLastKept)
{
    // Tolerance 1: compared with the kept point, not the neighbour; a
    // distance equal to the tolerance is near.
    const std::tuple<std::vector<double>, bool, std::vector<double>> rows[] = {
        {{0.0, 0.6, 1.2}, false, {0.0, 1.2}},
        {{0.0, 0.5, 1.0, 1.5, 2.0, 2.5}, false, {0.0, 1.5}},
        {{0.5, 1.5, 2.0}, true, {1.5}},  // first point near the reference at x = 0
        {{0.0, 2.0, 4.0}, false, {0.0, 2.0, 4.0}}};
    for (const auto &[xs, withReference, want] : rows) {
        std::vector<dpoint3d> p;
        for (double x : xs)
            p.push_back({x, 0.0, x});
        const dpoint3d reference{0.0, 0.0, 0.0};
        int32_t kept = -1;
        ASSERT_EQ(tsPoint_removeRedundantPointsFromArray(&kept, p.data(),
                                                         withReference ? &reference : nullptr, count(p), 1.0),
                  0);
        EXPECT_EQ(xsOf(p.data(), kept), want);
        EXPECT_EQ(p[0].z, p[0].x);  // whole records move
    }
    dpoint3d one{0, 0, 0};
    EXPECT_EQ(tsPointArray_removeRedundantPoints(&one, nullptr, 1, nullptr, 1.0), 0);
    EXPECT_EQ(tsPointArray_removeRedundantPoints(nullptr, nullptr, 1, nullptr, 1.0), kFail);
    EXPECT_EQ(tsPointArray_removeRedundantPoints(&one, nullptr, 0, nullptr, 1.0), kFail);
}

TEST(Thinning, CollinearPointsLeaveTheCorners)
{
    // A long straight run at a slope, with a height: first and last remain.
    std::vector<dpoint3d> line;
    for (int i = 0; i < 200; ++i)
        line.push_back({100.0 + 3.0 * i, 50.0 - 2.0 * i, 12.5});
    int32_t kept = -1;
    EXPECT_EQ(tsPointArray_removeCoLinearPoints2d(line.data(), &kept, count(line), 1e-6), 0);
    ASSERT_EQ(kept, 2);
    EXPECT_EQ(line[1].x, 100.0 + 3.0 * 199);
    // Along x to (3,0), then up to (3,3): the chord (0,0)-(3,1) leaves (1,0)
    // at 1/sqrt(10), so (3,0) becomes the anchor.
    std::vector<dpoint3d> corner = xy({0, 0, 1, 0, 2, 0, 3, 0, 3, 1, 3, 2, 3, 3});
    EXPECT_EQ(tsPointArray_removeCoLinearPoints2d(corner.data(), &kept, count(corner), 0.01), 0);
    ASSERT_EQ(kept, 3);
    EXPECT_EQ(xsOf(corner.data(), 3), (std::vector<double>{0, 3, 3}));
    EXPECT_EQ(corner[2].y, 3.0);
    // A wiggle of 0.05 stays within 0.1 and goes; at 0.01 it stays.
    for (const auto &[tolerance, want] : {std::pair{0.1, 2}, std::pair{0.01, 3}}) {
        std::vector<dpoint3d> wiggle = xy({0, 0, 5, 0.05, 10, 0});
        tsPointArray_removeCoLinearPoints2d(wiggle.data(), &kept, 3, tolerance);
        EXPECT_EQ(kept, want) << tolerance;
    }
    // Fewer than three points, or none: nothing is written, not even the count.
    kept = -1;
    EXPECT_EQ(tsPointArray_removeCoLinearPoints2d(line.data(), &kept, 2, 1.0), 0);
    EXPECT_EQ(tsPointArray_removeCoLinearPoints2d(nullptr, &kept, 5, 1.0), 0);
    EXPECT_EQ(kept, -1);
}

// Flags: 1 the point may go, 0 it stays.
Flags filter(const Ring &section, const Flags &fixed, const double *horizontal, double vertical)
{
    Flags flags(section.size(), 9);
    EXPECT_EQ(tsPointArray_filterByHorVerTolerance2d(flags.data(), section.data(),
                                                     fixed.empty() ? nullptr : fixed.data(), count(section),
                                                     horizontal, &vertical),
              0);
    return flags;
}

TEST(SectionFilter, VerticalAndHorizontalTolerances)
{
    const Ring level = xy({0, 0, 10, 0, 20, 0, 30, 0});
    const double near = 15.0, far = 5.0;
    EXPECT_EQ(filter(level, {}, nullptr, 0.01), (Flags{0, 1, 1, 0}));
    // Points 10 from both neighbours in x stay when that is at least the
    // horizontal tolerance; with a wider one they go again.
    EXPECT_EQ(filter(level, {}, &far, 0.01), (Flags{0, 0, 0, 0}));
    EXPECT_EQ(filter(level, {}, &near, 0.01), (Flags{0, 1, 1, 0}));
    EXPECT_EQ(filter(level, {0, 0, 1, 0}, nullptr, 0.01), (Flags{0, 1, 0, 0}));
    EXPECT_EQ(filter(level, {}, nullptr, 0.0), (Flags{0, 0, 0, 0}));  // 0.0 keeps every point
    // Crest: (10,0) is 10/sqrt(401) = 0.4994 from (0,0)-(20,1) and goes; the
    // crest is 1.0 above (0,0)-(30,0); (30,0) is 0.4994 from (20,1)-(40,0).
    EXPECT_EQ(filter(xy({0, 0, 10, 0, 20, 1, 30, 0, 40, 0}), {}, nullptr, 0.5), (Flags{0, 1, 0, 1, 0}));
    // (10,0.4) goes; (20,0) is 0.2666 from (0,0)-(30,-0.4), and 0.4 + 0.2666
    // reaches 0.5, so (10,0.4) is weighed again (0.5333 from that chord):
    // (20,0) stays, (10,0.4) keeps its mark; (30,-0.4) is 0.4 off and goes.
    EXPECT_EQ(filter(xy({0, 0, 10, 0.4, 20, 0, 30, -0.4, 40, 0}), {}, nullptr, 0.5), (Flags{0, 1, 0, 1, 0}));
    // All within 0.5 of (0,0)-(40,0) go, though the running sum passes 0.5.
    EXPECT_EQ(filter(xy({0, 0, 10, 0.3, 20, 0, 30, 0.4, 40, 0}), {}, nullptr, 0.5), (Flags{0, 1, 1, 1, 0}));
    // Doubling back to x = 1: running sum 0.48 + 0.03 reaches 0.5; walking
    // back (20,0) stands for 0.03 and is not measured again (it lies 0.5997
    // off) and goes; (10,0.48) stands for 0.51, measures 0.18 and goes.
    EXPECT_EQ(filter(xy({0, 0, 10, 0.48, 20, 0, 1, 0, 30, 0.9}), {}, nullptr, 0.5), (Flags{0, 1, 1, 1, 0}));

    // A duplicate is dropped before weighing and reports 1; a fixed duplicate
    // takes the place of the free point it repeats.
    const Ring twice = xy({0, 0, 10, 0, 10, 5e-7, 20, 0});
    EXPECT_EQ(filter(twice, {}, nullptr, 0.0), (Flags{0, 0, 1, 0}));
    EXPECT_EQ(filter(twice, {0, 0, 1, 0}, nullptr, 0.0), (Flags{0, 1, 0, 0}));
    EXPECT_EQ(filter(twice, {0, 0, 1, 0}, nullptr, 1.0), (Flags{0, 1, 0, 0}));
    int32_t flags[4];
    const double vertical = 1.0;
    EXPECT_EQ(tsPointArray_filterByHorVerTolerance2d(nullptr, twice.data(), nullptr, 4, nullptr, &vertical),
              kFail);
    EXPECT_EQ(tsPointArray_filterByHorVerTolerance2d(flags, nullptr, nullptr, 4, nullptr, &vertical), kFail);
}

// A corner plot surveyed clockwise: an L of 40 x 20 with a wing of 15 x 30
// on top, at (2500, 1200). Area 800 + 450 = 1250, centroid ((800*20 +
// 450*7.5)/1250, (800*10 + 450*35)/1250) = (15.5, 19) from the origin.
TEST(ParcelScenario, CornerPlotAreaCentroidAndSetOut)
{
    const double ox = 2500.0, oy = 1200.0;
    const double corners[6][2] = {{0, 0}, {0, 50}, {15, 50}, {15, 20}, {40, 20}, {40, 0}};
    Ring plot;
    for (const auto &c : corners)
        plot.push_back({ox + c[0], oy + c[1], 84.2});
    plot.push_back({ox + 0.003, oy - 0.0025, 84.2});  // back 4 mm off the start: snapped closed
    dpoint3d *ring = nullptr;
    ASSERT_EQ(tsPointArray_clone(&ring, plot.data(), count(plot)), 0);
    int32_t n = count(plot);
    ASSERT_EQ(tsPointArray_closePolygon(&ring, &n, 0.005), 0);
    ASSERT_EQ(n, 7);
    const Ring closed(ring, ring + n);
    tsPointArray_free(&ring);

    double area = 0.0;
    tsPointArray_computeSimplePolygonArea2d(closed.data(), n, &area);
    EXPECT_NEAR(area, 1250.0, 1e-8);
    EXPECT_NEAR(signedArea(closed), 1250.0, 1e-8);
    EXPECT_NEAR(signedArea(reversed(closed)), -1250.0, 1e-8);
    EXPECT_EQ(direction(closed), 1);
    expectCentroid(closed, ox + 15.5, oy + 19.0, 1e-8);

    // A house in the wide part, a shed across the inner corner (its corner
    // (20, 25) lies past it).
    dpoint3d house[5], shed[5];
    const dpoint3d h1{ox + 20, oy + 5, 0}, h2{ox + 32, oy + 15, 0};
    const dpoint3d s1{ox + 10, oy + 15, 0}, s2{ox + 20, oy + 25, 0};
    tsPointArray_blockPointsFromDiagonal(house, &h1, &h2);
    tsPointArray_blockPointsFromDiagonal(shed, &s1, &s2);
    int32_t within = -1;
    tsPointArray_isArrayWithinPolygon(&within, house, 4, closed.data(), n);
    EXPECT_EQ(within, 1);
    tsPointArray_isArrayWithinPolygon(&within, shed, 4, closed.data(), n);
    EXPECT_EQ(within, 2);
    EXPECT_EQ(classify(closed, ox + 15, oy + 20), 2);  // the inner corner peg
    EXPECT_EQ(classify(closed, ox + 30, oy + 40), 0);
}

}  // namespace
