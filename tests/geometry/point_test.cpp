// Point records: markers, the range test on the low corner's y, arcs, "y x z"
// text, collinearity and the search along a sampled string. Worked by hand.
#include <tessar/memory.h>
#include <tessar/point.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <numbers>
#include <tuple>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
constexpr double kDeg = kPi / 180.0;
constexpr double kNoElevation = 3.4028234663852886e38;

void expectPoint(const dpoint3d &p, double x, double y, double z, double tol = 1e-9)
{
    EXPECT_NEAR(p.x, x, tol);
    EXPECT_NEAR(p.y, y, tol);
    EXPECT_EQ(p.z, z);
}

TEST(PointRecords, NullAnswers)
{
    dpoint3d p{1, 2, 3};
    double d = 0.0;
    uint8_t r = 0;
    EXPECT_EQ(tsPoint_calculateArcInfoFor3pts(&p, &d, &d, &d, nullptr), kFail);
    EXPECT_EQ(tsPoint_checkForColinear2D(3, nullptr, 0.1, &r), kFail);
    EXPECT_EQ(tsPoint_nearEqual2d(nullptr, &p, 1e9), 0);
    EXPECT_EQ(tsPoint_isDisconnect(nullptr), 0);
    EXPECT_EQ(tsPoint_distance3d(nullptr, &p), 0.0);
    EXPECT_EQ(tsPoint_getDirectionVector2d(&p, nullptr, &p), 32768.0);
    tsPoint_initialize2d(nullptr);  // ignored
}

TEST(PointRecords, MarkersAndComparisons)
{
    dpoint3d a{9, 9, 9}, row[3] = {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}};
    tsPoint_initialize2d(&a);
    expectPoint(a, 0, 0, static_cast<double>(FLT_MAX), 0.0);  // the largest single-precision value
    tsPoint_setZvalue(2, row, 9.5);                           // the count comes first
    EXPECT_TRUE(row[0].z == 9.5 && row[1].z == 9.5 && row[2].z == 1.0);
    // Plane distance 5 exactly, space distance sqrt(10025) = 100.125: "does not exceed".
    const dpoint3d o{0, 0, 0}, q{3, 4, 100};
    EXPECT_EQ(tsPoint_nearEqual2d(&o, &q, 5.0), 1);
    EXPECT_EQ(tsPoint_nearEqual2d(&o, &q, 4.999), 0);
    EXPECT_EQ(tsPoint_nearEqual3d(&o, &q, 5.0), 0);
    EXPECT_EQ(tsPoint_nearEqual3d(&o, &q, 100.2), 1);
    // A disconnect is any coordinate within 1.0 of the largest double, either sign.
    using R = std::pair<dpoint3d, int32_t>;
    for (const auto &[p, expected] :
         {R{dpoint3d{-DBL_MAX, 0, 0}, 1}, R{{0, DBL_MAX, 0}, 1}, R{{0, 0, -DBL_MAX}, 1}, R{{1e308, 0, 0}, 0},
          R{{INFINITY, 0, 0}, 0}, R{{0, 0, kNoElevation}, 0}})
        EXPECT_EQ(tsPoint_isDisconnect(&p), expected) << p.x << " " << p.y << " " << p.z;
}

TEST(PointRecords, RangeAndRectangle)
{
    // In range needs low.x <= x <= high.x and low.y <= y <= low.y: high.y is not read.
    const dpoint3d low{0, 0, 0}, high{10, 10, 0};
    using R = std::tuple<double, double, int32_t, double>;
    for (const auto &[x, y, inRange, toRectangle] :
         {R{5.0, 5.0, 0, 0.0}, R{5.0, 0.0, 1, 0.0}, R{10.0, 0.0, 1, 0.0}, R{10.5, 0.0, 0, 0.5},
          R{5.0, -1.0, 0, 1.0}, R{10.0, 5.0, 0, 0.0}, R{-3.0, 5.0, 0, 3.0}, R{5.0, 14.0, 0, 4.0},
          R{13.0, 14.0, 0, 5.0}, R{-6.0, -8.0, 0, 10.0}}) {
        const dpoint3d p{x, y, 0};
        EXPECT_EQ(tsPoint_isInRange2d(&p, &low, &high), inRange) << x << ", " << y;
        EXPECT_DOUBLE_EQ(tsPoint_getDistanceToRectangle2d(&p, &low, &high), toRectangle) << x << ", " << y;
    }
}

TEST(PointMoves, DirectionsAndPlacedPointsCarryTheirZ)
{
    const dpoint3d a{1, 1, 7}, b{4, 5, 19};
    double distance = -1.0, direction = -1.0;
    EXPECT_EQ(tsPoint_distanceDirection2d(&distance, &direction, nullptr, &b), kFail);
    EXPECT_TRUE(distance == 0.0 && direction == 0.0);
    dpoint3d unit{9, 9, 9};
    EXPECT_EQ(tsPoint_getDirectionVector2d(&a, &unit, &b), 0.0);
    expectPoint(unit, 0.6, 0.8, 0.0, 1e-12);
    EXPECT_EQ(tsPoint_getDirectionVector2d(&a, &unit, &a), 0.0);  // the zero vector stays as it is
    expectPoint(unit, 0.0, 0.0, 0.0, 0.0);

    // Placed points take the origin's z; (1, 0) turned a quarter and moved by
    // (10, 20) leaves z alone; rotation keeps it.
    const dpoint3d origin{1, 2, 3}, east{1, 0, 50};
    dpoint3d out{0, 0, 0}, p{3, 4, kNoElevation};
    EXPECT_EQ(tsPoint_locatePointByDistanceDirection2d(&out, 10.0, kPi / 2, &origin), 0);
    expectPoint(out, 1, 12, 3);
    out.z = -4.0;
    EXPECT_EQ(tsPoint_locatePointByTranslationRotation2d(&east, 10, 20, kPi / 2, &out), 0);
    expectPoint(out, 10, 21, -4.0);
    EXPECT_EQ(tsPoint_rotateByAngle2d(&p, kPi), 0);
    expectPoint(p, -3, -4, kNoElevation);
}

TEST(PointArcs, ArcThroughThreePointsShortAndLongWayRound)
{
    // Chord (-1, 0) to (1, 0) heading east, its right is -y. A middle point
    // at depth h puts the centre at (0, k) with 1 + k^2 = (k + h)^2: h = 0.5
    // gives k = 0.75, h = 2 gives k = -0.75, r = 1.25 both. The chord subtends
    // pi - 2 atan(0.75); the deep arc goes the long way, pi + 2 atan(0.75).
    const double t = std::atan(0.75), shortSweep = kPi - 2 * t, longSweep = kPi + 2 * t;
    // Right of the chord the sweep is positive, left negative.
    using R = std::tuple<double, double, double, double>;
    for (const auto &[midY, cy, startDirection, expectedSweep] :
         {R{-0.5, 0.75, kPi + t, shortSweep}, R{-2.0, -0.75, kPi - t, longSweep},
          R{0.5, -0.75, kPi - t, -shortSweep}, R{2.0, 0.75, kPi + t, -longSweep}}) {
        const dpoint3d pts[3] = {{-1, 0, 0}, {0, midY, 0}, {1, 0, 0}};
        dpoint3d centre{0, 0, 42.0};
        double radius = 0, start = 0, sweep = 0;
        ASSERT_EQ(tsPoint_calculateArcInfoFor3pts(&centre, &radius, &start, &sweep, pts), 0) << midY;
        expectPoint(centre, 0, cy, 42.0);  // z of the centre not written
        EXPECT_NEAR(radius, 1.25, 1e-12) << midY;
        EXPECT_NEAR(start, startDirection, 1e-12) << midY;
        EXPECT_NEAR(sweep, expectedSweep, 1e-12) << midY;
    }
    for (double midY : {0.0, 5e-8, -1e-7}) {  // in line, or within 1e-7 of the chord
        const dpoint3d pts[3] = {{-1, 0, 0}, {0, midY, 0}, {1, 0, 0}};
        EXPECT_EQ(tsPoint_calculateArcInfoFor3pts(nullptr, nullptr, nullptr, nullptr, pts), kFail) << midY;
    }
}

TEST(PointArcs, SweepsPointsAlongArcsAndTheTangentConstructions)
{
    const dpoint3d c{0, 0, 5}, p1{10, 0, 1}, p2{0, 10, 0};
    double sweep = 0.0;
    EXPECT_EQ(tsPoint_calculateSweepAngle2d(&c, &sweep, &p1, &p2, 0), 0);
    EXPECT_NEAR(sweep, -1.5 * kPi, 1e-12);  // clockwise, negative
    EXPECT_EQ(tsPoint_calculateSweepAngle2d(&c, &sweep, &c, &p2, 1), kFail);
    dpoint3d out{};
    EXPECT_EQ(tsPoint_calculatePointAlongArc(&out, &p1, &c, 10.0 * kPi / 2, 0), 0);
    expectPoint(out, 0, 10, 5);  // a quarter turn, at the centre's z
    EXPECT_EQ(tsPoint_calculatePointAlongArc(&out, &p1, &c, 10.0 * kPi / 2, 1), 0);
    expectPoint(out, 0, -10, 5);
    EXPECT_EQ(tsPoint_calculatePointAlongArc(&out, &c, &c, 1.0, 0), kFail);

    // r = 3, from (5, 0): contacts at x = 9 / 5, y = -+2.4; looking at the
    // centre the first is on the left. Both get z = 0.
    const dpoint3d centre{0, 0, 8}, from{5, 0, 8};
    dpoint3d t1{0, 0, 7}, t2{0, 0, 7};
    ASSERT_EQ(tsPoint_lineTangentToCircleByPoint(&t1, &t2, &centre, 3.0, &from, 1e-9), 0);
    expectPoint(t1, 1.8, -2.4, 0.0);
    expectPoint(t2, 1.8, 2.4, 0.0);

    // Tangents V-A west and V-B north; the curve of radius 100 tangent to both
    // has its centre at (-100, 100) and passes through P at -60 degrees from it.
    const dpoint3d V{0, 0, 0}, A{-100, 0, 0}, B{0, 100, 0}, P{-50, 100 - 50 * std::sqrt(3.0), 0};
    double radius = -1.0;
    tsPoint_passTangentCurveThruPoint(&radius, &A, &B, &V, &P, 0);
    EXPECT_NEAR(radius, 100.0, 1e-9);
    tsPoint_passTangentCurveThruPoint(&radius, &A, nullptr, &V, &P, 0);
    EXPECT_EQ(radius, 0.0);
    // +4 % into G (100, 10), -2 % out: the curve of length 100 from x = 50,
    // y = 8 is 8 + 0.04 u - 0.0003 u^2; at x = 80, y = 8.93.
    const dpoint3d G{100, 10, 0}, gA{0, 6, 0}, gB{200, 8, 0}, gP{80, 8.93, 0};
    double length = -1.0;
    tsPoint_passTangentParabolaThruPoint(&length, &gA, &gB, &G, &gP);
    EXPECT_NEAR(length, 100.0, 1e-9);
    tsPoint_passTangentParabolaThruPoint(&length, nullptr, &gB, &G, &gP);
    EXPECT_EQ(length, 0.0);
}

TEST(PointText, ReadsYThenXThenOptionalZ)
{
    // Control characters become blanks; a single number or blanks fail.
    using R = std::tuple<const char *, int32_t, double, double, double>;
    for (const auto &[text, status, x, y, z] :
         {R{"10 20", 0, 20.0, 10.0, 0.0}, R{"  5000.25   1200.5  101.75 ", 0, 1200.5, 5000.25, 101.75},
          R{"10\t20", 0, 20.0, 10.0, 0.0}, R{"10", kFail, -1.0, -1.0, -1.0},
          R{"   ", kFail, -1.0, -1.0, -1.0}}) {
        dpoint3d p{-1, -1, -1};
        EXPECT_EQ(tsPoint_setFromYXZString(&p, text), status) << text;
        expectPoint(p, x, y, z, 0.0);
    }
}

TEST(PointCollinear, OppositeDirectionsAndTheMissingWrapAtZero)
{
    struct Row {
        const char *name;
        std::vector<dpoint3d> pts;
        double tolerance;
        uint8_t anyDirection, sameDirection;
    } rows[] = {
        {"out and back", {{0, 0, 0}, {5, 0, 0}, {10, 0, 0}, {-5, 0, 0}}, 1e-6, 1, 0},
        // A point on the first is skipped, not taken as a direction.
        {"repeated first point", {{0, 0, 0}, {0, 1e-5, 0}, {10, 10, 0}, {20, 20, 0}}, 1e-3, 1, 1},
        // Directions 0.001 and 2 pi - 0.0005 differ by almost a turn.
        {"either side of east", {{0, 0, 0}, {10, 0.01, 0}, {20, -0.01, 0}}, 0.01, 0, 0},
    };
    for (const Row &r : rows) {
        const auto n = static_cast<int32_t>(r.pts.size());
        uint8_t any = 9, same = 9;
        ASSERT_EQ(tsPoint_checkForColinear2D(n, r.pts.data(), r.tolerance, &any), 0) << r.name;
        ASSERT_EQ(tsPoint_checkForColinear2DInSameDir(n, r.pts.data(), r.tolerance, &same), 0) << r.name;
        EXPECT_EQ(any, r.anyDirection) << r.name;
        EXPECT_EQ(same, r.sameDirection) << r.name;
    }
}

// A sampled string: points, unit tangents and distances along it.
struct SampledString {
    std::vector<dpoint3d> points, tangents;
    std::vector<double> distances;

    // The samples found, copied out and freed; without a hit nothing is written.
    std::vector<dpoint3d> search(const double *seed, const dpoint3d &p, int32_t n = -1) const
    {
        dpoint3d marker{}, *found = &marker;
        const int32_t count = tsPoint_projectPointOnTangentUsingXYTanDistArraysIteration(
            &found, seed, &p, points.data(), tangents.data(), distances.data(),
            n < 0 ? static_cast<int32_t>(points.size()) : n);
        std::vector<dpoint3d> out(found, found + count);
        if (count > 0)
            tsMem_free(found);
        else
            EXPECT_EQ(found, &marker);
        return out;
    }
};

TEST(PointTangentSearch, SideTurnsWhereTheTangentPassesThroughThePoint)
{
    // Circle of radius 10 about (100, 200), counter-clockwise from east, every
    // 7 degrees. From (120, 200), twice the radius from the centre, the
    // tangents touch at +-60 degrees: the side of a sample's tangent tip turns
    // between 56 and 63 degrees and between 294 and 301.
    SampledString s;
    for (int k = 0; k * 7 < 360; ++k) {
        const double t = 7.0 * k * kDeg;
        s.points.push_back({100 + 10 * std::cos(t), 200 + 10 * std::sin(t), 50.0 + k});
        s.tangents.push_back({-std::sin(t), std::cos(t), 0});
        s.distances.push_back(10 * t);
    }
    const dpoint3d p{120, 200, 0};
    const auto expectSamples = [&](const std::vector<dpoint3d> &found, std::vector<int> samples) {
        ASSERT_EQ(found.size(), samples.size());
        for (size_t i = 0; i < found.size(); ++i)
            expectPoint(found[i], s.points[samples[i]].x, s.points[samples[i]].y, s.points[samples[i]].z,
                        0.0);
    };
    expectSamples(s.search(nullptr, p), {9, 43});  // 63 and 301 degrees
    // Seeded at 300 degrees: backward from 294 down to the turn at 56 (far
    // from the seed); forward from 294 the second hit at 301, the nearer, kept.
    const double seed300 = 10 * 300 * kDeg, seed66 = 10 * 66 * kDeg;
    expectSamples(s.search(&seed300, p), {43});
    // Seeded at 66: backward from 63 the turn shows at 56; forward from 63
    // stops at 77, further from the seed, and so does the full pass.
    expectSamples(s.search(&seed66, p), {8});
    EXPECT_TRUE(s.search(nullptr, {101, 201, 0}).empty());  // inside: every tip on one side
    EXPECT_TRUE(s.search(nullptr, p, 0).empty());           // no samples
}

TEST(PointTangentSearch, PointOnAStraightStringHitsByDistanceAlone)
{
    SampledString s;
    for (int k = 0; k <= 10; ++k) {
        s.points.push_back({10.0 * k, 0, 0});
        s.tangents.push_back({1, 0, 0});
        s.distances.push_back(10.0 * k);
    }
    // On the string no side is ever taken: only the 0.001 rule finds sample 3.
    const auto found = s.search(nullptr, {30.0005, 0, 0});
    ASSERT_EQ(found.size(), 1u);
    expectPoint(found[0], 30, 0, 0, 0.0);
    EXPECT_TRUE(s.search(nullptr, {30.002, 0, 0}).empty());
    EXPECT_TRUE(s.search(nullptr, {30, 5, 0}).empty());  // off a straight string: one side only
}

}  // namespace
