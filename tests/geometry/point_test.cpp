// Point records: null checks, the two markers (no elevation, disconnect),
// the range test that reads only the low corner's y, distances to a
// rectangle, arcs through three points (short and long way round), curves
// tangent to two lines through a point, "y x z" text, collinearity without
// wrap at direction 0, and the search along a sampled string. Expected
// values are worked by hand beside each case.
#include <tessar/memory.h>
#include <tessar/point.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <numbers>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
constexpr double kDeg = kPi / 180.0;
constexpr double kEps = 1e-12;
constexpr double kNoElevation = 3.4028234663852886e38;

void expectPoint(const dpoint3d &p, double x, double y, double z, double tol = 1e-9)
{
    EXPECT_NEAR(p.x, x, tol);
    EXPECT_NEAR(p.y, y, tol);
    EXPECT_EQ(p.z, z);
}

TEST(PointRecords, NullRequiredPointersGive32768)
{
    dpoint3d p{1, 2, 3};
    double d = 0.0;
    const dpoint3d three[3] = {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}};
    struct Row {
        const char *name;
        std::function<int32_t()> call;
    } rows[] = {
        {"copy to null", [&] { return tsPoint_copy(nullptr, &p); }},
        {"copy from null", [&] { return tsPoint_copy(&p, nullptr); }},
        {"setValue", [&] { return tsPoint_setValue(nullptr, 1, 2, 3); }},
        {"clear", [&] { return tsPoint_clear(nullptr); }},
        {"swap", [&] { return tsPoint_swap(&p, nullptr); }},
        {"isInRange2d", [&] { return tsPoint_isInRange2d(&p, nullptr, &p); }},
        {"locate by tangent", [&] { return tsPoint_locatePointByDistanceTangent2d(&p, 1.0, nullptr, &p); }},
        {"translate and rotate",
         [&] { return tsPoint_locatePointByTranslationRotation2d(&p, 1, 2, 3, nullptr); }},
        {"rotate", [&] { return tsPoint_rotateByAngle2d(nullptr, 1.0); }},
        {"sweep", [&] { return tsPoint_calculateSweepAngle2d(&p, &d, nullptr, &p, 1); }},
        {"arc info", [&] { return tsPoint_calculateArcInfoFor3pts(&p, &d, &d, &d, nullptr); }},
        {"along arc", [&] { return tsPoint_calculatePointAlongArc(&p, nullptr, &p, 1.0, 0); }},
        {"tangents", [&] { return tsPoint_lineTangentToCircleByPoint(&p, &p, nullptr, 1.0, &p, 1e-9); }},
        {"text to null point", [&] { return tsPoint_setFromYXZString(nullptr, "1 2"); }},
        {"null text", [&] { return tsPoint_setFromYXZString(&p, nullptr); }},
        {"empty text", [&] { return tsPoint_setFromYXZString(&p, ""); }},
        {"colinear",
         [&] {
             uint8_t r = 0;
             return tsPoint_checkForColinear2D(3, nullptr, 0.1, &r);
         }},
    };
    for (const Row &r : rows)
        EXPECT_EQ(r.call(), kFail) << r.name;

    // The functions of other result types have their own null answers.
    EXPECT_EQ(tsPoint_nearEqual2d(nullptr, &p, 1e9), 0);
    EXPECT_EQ(tsPoint_nearEqual3d(&p, nullptr, 1e9), 0);
    EXPECT_EQ(tsPoint_isDisconnect(nullptr), 0);
    EXPECT_EQ(tsPoint_distance2d(&p, nullptr), 0.0);
    EXPECT_EQ(tsPoint_distance3d(nullptr, &p), 0.0);
    EXPECT_EQ(tsPoint_getDirectionVector2d(&p, nullptr, &p), 32768.0);
    EXPECT_EQ(tsPoint_getDistanceToRectangle2d(nullptr, &p, &p), 0.0);
    tsPoint_initialize2d(nullptr);  // ignored
    EXPECT_EQ(
        tsPoint_projectPointOnTangentUsingXYTanDistArraysIteration(nullptr, nullptr, &p, three, three, &d, 3),
        0);
}

TEST(PointRecords, SettingSwappingAndTheNoElevationMarker)
{
    dpoint3d a{}, b{};
    ASSERT_EQ(tsPoint_setValue(&a, 1, 2, 3), 0);
    ASSERT_EQ(tsPoint_setValue(&b, 4, 5, 6), 0);
    ASSERT_EQ(tsPoint_swap(&a, &b), 0);
    expectPoint(a, 4, 5, 6, 0.0);
    expectPoint(b, 1, 2, 3, 0.0);
    ASSERT_EQ(tsPoint_copy(&a, &b), 0);
    EXPECT_EQ(tsPoint_equal3d(&a, &b), 1);
    ASSERT_EQ(tsPoint_clear(&a), 0);
    expectPoint(a, 0, 0, 0, 0.0);

    // The marker is the largest single-precision value.
    tsPoint_initialize2d(&a);
    expectPoint(a, 0, 0, static_cast<double>(FLT_MAX), 0.0);

    dpoint3d row[3] = {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}};
    tsPoint_setZvalue(2, row, 9.5);
    EXPECT_EQ(row[0].z, 9.5);
    EXPECT_EQ(row[1].z, 9.5);
    EXPECT_EQ(row[2].z, 1.0);
}

TEST(PointComparisons, ExactAndTolerantEquality)
{
    const dpoint3d o{0, 0, 0}, q{3, 4, 100}, o2{0, 0, 1};
    EXPECT_EQ(tsPoint_equal2d(&o, &o2), 1);
    EXPECT_EQ(tsPoint_equal3d(&o, &o2), 0);
    // Plane distance 5 exactly, space distance sqrt(25 + 10000).
    EXPECT_EQ(tsPoint_nearEqual2d(&o, &q, 5.0), 1);  // does not exceed: equal counts
    EXPECT_EQ(tsPoint_nearEqual2d(&o, &q, 4.999), 0);
    EXPECT_EQ(tsPoint_nearEqual3d(&o, &q, 5.0), 0);
    EXPECT_EQ(tsPoint_nearEqual3d(&o, &q, 100.2), 1);  // sqrt(10025) = 100.125
}

TEST(PointComparisons, DisconnectMarksWithinOneOfTheLargestDouble)
{
    struct Row {
        dpoint3d p;
        int32_t expected;
    } rows[] = {
        {{-DBL_MAX, 0, 0}, 1}, {{0, DBL_MAX, 0}, 1},  {{0, 0, DBL_MAX}, 1},      {{0, 0, -DBL_MAX}, 1},
        {{1e308, 0, 0}, 0},    {{INFINITY, 0, 0}, 0}, {{0, 0, kNoElevation}, 0}, {{1, 2, 3}, 0},
    };
    for (const Row &r : rows)
        EXPECT_EQ(tsPoint_isDisconnect(&r.p), r.expected) << r.p.x << " " << r.p.y << " " << r.p.z;
}

TEST(PointComparisons, RangeTestHoldsYBetweenLowYAndLowY)
{
    const dpoint3d low{0, 0, 0}, high{10, 10, 0};
    struct Row {
        double x, y;
        int32_t expected;
    } rows[] = {
        {5, 5, 0},  // inside the box, yet out: y must equal low.y
        {5, 0, 1}, {0, 0, 1}, {10, 0, 1}, {10.5, 0, 0}, {-0.5, 0, 0}, {5, -1, 0}, {5, 10, 0},
    };
    for (const Row &r : rows) {
        const dpoint3d p{r.x, r.y, 0};
        EXPECT_EQ(tsPoint_isInRange2d(&p, &low, &high), r.expected) << r.x << ", " << r.y;
    }
}

TEST(PointDistances, DistancesDirectionsAndUnitVectors)
{
    const dpoint3d a{1, 1, 7}, b{4, 5, 19};
    EXPECT_DOUBLE_EQ(tsPoint_distance2d(&a, &b), 5.0);
    EXPECT_DOUBLE_EQ(tsPoint_distance3d(&a, &b), 13.0);  // 3, 4, 12
    const dpoint3d south{1, -3, 0};
    EXPECT_NEAR(tsPoint_direction2d(&a, &south), 1.5 * kPi, kEps);

    double distance = -1.0, direction = -1.0;
    ASSERT_EQ(tsPoint_distanceDirection2d(&distance, &direction, &a, &b), 0);
    EXPECT_DOUBLE_EQ(distance, 5.0);
    EXPECT_NEAR(direction, std::atan2(4.0, 3.0), kEps);
    EXPECT_EQ(tsPoint_distanceDirection2d(nullptr, &direction, &a, &b), 0);
    EXPECT_EQ(tsPoint_distanceDirection2d(&distance, &direction, nullptr, &b), kFail);
    EXPECT_EQ(distance, 0.0);
    EXPECT_EQ(direction, 0.0);

    dpoint3d unit{9, 9, 9};
    EXPECT_EQ(tsPoint_getDirectionVector2d(&a, &unit, &b), 0.0);
    expectPoint(unit, 0.6, 0.8, 0.0, kEps);
    // Coincident points: the zero vector cannot be divided and stays as it is.
    EXPECT_EQ(tsPoint_getDirectionVector2d(&a, &unit, &a), 0.0);
    expectPoint(unit, 0.0, 0.0, 0.0, 0.0);
}

TEST(PointDistances, DistanceToRectangleBySideOrCorner)
{
    const dpoint3d low{0, 0, 0}, high{10, 10, 0};
    struct Row {
        double x, y, expected;
    } rows[] = {
        {5, 5, 0.0},     // inside
        {10, 5, 0.0},    // on an edge
        {-3, 5, 3.0},    // left of the box
        {5, 14, 4.0},    // above it
        {13, 14, 5.0},   // beyond the corner (10, 10): 3, 4, 5
        {-6, -8, 10.0},  // beyond the corner (0, 0)
    };
    for (const Row &r : rows) {
        const dpoint3d p{r.x, r.y, 0};
        EXPECT_DOUBLE_EQ(tsPoint_getDistanceToRectangle2d(&p, &low, &high), r.expected) << r.x << ", " << r.y;
    }
}

TEST(PointMoves, LocatingCarriesTheOriginsZAndRotationKeepsZ)
{
    const dpoint3d origin{1, 2, 3};
    dpoint3d out{0, 0, 0};
    EXPECT_EQ(tsPoint_locatePointByDistanceDirection2d(&out, 10.0, kPi / 2, &origin), 0);
    expectPoint(out, 1, 12, 3);

    const dpoint3d tangent{0.6, 0.8, 0};
    EXPECT_EQ(tsPoint_locatePointByDistanceTangent2d(&out, 5.0, &tangent, &origin), 0);
    expectPoint(out, 4, 6, 3);

    // (1, 0) turned a quarter to (0, 1), then moved by (10, 20); z not set.
    const dpoint3d east{1, 0, 50};
    out.z = -4.0;
    EXPECT_EQ(tsPoint_locatePointByTranslationRotation2d(&east, 10, 20, kPi / 2, &out), 0);
    expectPoint(out, 10, 21, -4.0);

    dpoint3d p{3, 4, kNoElevation};
    EXPECT_EQ(tsPoint_rotateByAngle2d(&p, kPi), 0);
    expectPoint(p, -3, -4, kNoElevation);
}

TEST(PointArcs, SweepSeenFromACentre)
{
    const dpoint3d c{0, 0, 0}, p1{1, 0, 0}, p2{0, 1, 0};
    double sweep = 0.0;
    EXPECT_EQ(tsPoint_calculateSweepAngle2d(&c, &sweep, &p1, &p2, 1), 0);
    EXPECT_NEAR(sweep, kPi / 2, kEps);
    EXPECT_EQ(tsPoint_calculateSweepAngle2d(&c, &sweep, &p1, &p2, 0), 0);
    EXPECT_NEAR(sweep, -1.5 * kPi, kEps);
    EXPECT_EQ(tsPoint_calculateSweepAngle2d(&c, &sweep, &c, &p2, 1), kFail);
}

TEST(PointArcs, ArcThroughThreePointsShortAndLongWayRound)
{
    // Chord from (-1, 0) to (1, 0), heading east: its right is -y. A middle
    // point at depth h below the chord puts the centre at (0, k) with
    // 1 + k^2 = (k + h)^2. For h = 0.5: k = 0.75, r = 1.25; for h = 2:
    // k = -0.75, r = 1.25. The chord subtends pi - 2 atan(0.75) at the
    // centre; the deep arc goes the long way, pi + 2 atan(0.75).
    const double shortSweep = kPi - 2 * std::atan(0.75);
    const double longSweep = kPi + 2 * std::atan(0.75);
    struct Row {
        double midY, cx, cy, r, start, sweep;
    } rows[] = {
        {-0.5, 0, 0.75, 1.25, kPi + std::atan(0.75), shortSweep},   // right of the chord: +
        {-2.0, 0, -0.75, 1.25, kPi - std::atan(0.75), longSweep},   // deeper than r: long way
        {0.5, 0, -0.75, 1.25, kPi - std::atan(0.75), -shortSweep},  // left of the chord: -
        {2.0, 0, 0.75, 1.25, kPi + std::atan(0.75), -longSweep},
    };
    for (const Row &r : rows) {
        const dpoint3d pts[3] = {{-1, 0, 0}, {0, r.midY, 0}, {1, 0, 0}};
        dpoint3d centre{0, 0, 42.0};
        double radius = 0, start = 0, sweep = 0;
        ASSERT_EQ(tsPoint_calculateArcInfoFor3pts(&centre, &radius, &start, &sweep, pts), 0) << r.midY;
        expectPoint(centre, r.cx, r.cy, 42.0);  // z of the centre not written
        EXPECT_NEAR(radius, r.r, 1e-12) << r.midY;
        EXPECT_NEAR(start, r.start, 1e-12) << r.midY;
        EXPECT_NEAR(sweep, r.sweep, 1e-12) << r.midY;
    }

    // Points in line, or a middle point within 1e-7 of the chord.
    for (double midY : {0.0, 5e-8, -1e-7}) {
        const dpoint3d pts[3] = {{-1, 0, 0}, {0, midY, 0}, {1, 0, 0}};
        EXPECT_EQ(tsPoint_calculateArcInfoFor3pts(nullptr, nullptr, nullptr, nullptr, pts), kFail) << midY;
    }
    const dpoint3d half[3] = {{-1, 0, 0}, {0, -1, 0}, {1, 0, 0}};
    double sweep = 0.0;
    EXPECT_EQ(tsPoint_calculateArcInfoFor3pts(nullptr, nullptr, nullptr, &sweep, half), 0);
    EXPECT_NEAR(std::fabs(sweep), kPi, 1e-12);
}

TEST(PointArcs, PointAlongArcTurnsByLengthOverRadius)
{
    const dpoint3d centre{0, 0, 5}, start{10, 0, 1};
    dpoint3d out{};
    const double quarter = 10.0 * kPi / 2;
    EXPECT_EQ(tsPoint_calculatePointAlongArc(&out, &start, &centre, quarter, 0), 0);
    expectPoint(out, 0, 10, 5);
    EXPECT_EQ(tsPoint_calculatePointAlongArc(&out, &start, &centre, quarter, 1), 0);
    expectPoint(out, 0, -10, 5);
    EXPECT_EQ(tsPoint_calculatePointAlongArc(&out, &centre, &centre, quarter, 0), kFail);
}

TEST(PointArcs, TangentsFromAPointToACircle)
{
    // Circle r = 3 about the origin, point (5, 0): contacts at x = 9 / 5,
    // y = +-sqrt(9 - 3.24) = +-2.4. Looking from the point to the centre
    // (west), the first contact is on the left, to the south.
    const dpoint3d centre{0, 0, 8}, from{5, 0, 8};
    dpoint3d t1{0, 0, 7}, t2{0, 0, 7};
    ASSERT_EQ(tsPoint_lineTangentToCircleByPoint(&t1, &t2, &centre, 3.0, &from, 1e-9), 0);
    expectPoint(t1, 1.8, -2.4, 0.0);
    expectPoint(t2, 1.8, 2.4, 0.0);
    const dpoint3d inside{1, 0, 0};
    EXPECT_EQ(tsPoint_lineTangentToCircleByPoint(&t1, &t2, &centre, 3.0, &inside, 1e-9), kFail);
}

TEST(PointArcs, CircularCurveTangentToTwoLinesThroughAPoint)
{
    // Tangents V-A west and V-B north meet at a right angle; the curve of
    // radius 100 tangent to both has its centre at (-100, 100). P is on it
    // at -60 degrees from the centre: (-50, 100 - 50 sqrt 3). Seen from V,
    // P lies 15 degrees off V-A, the nearer tangent; with flag 0 the angle at
    // the centre is 45 - 15 = 30 degrees and the radius
    // (P's offset from V-A) / (1 - cos 30) = 100 (1 - cos 30) / (1 - cos 30).
    const dpoint3d V{0, 0, 0}, A{-100, 0, 0}, B{0, 100, 0};
    const dpoint3d P{-50, 100 - 50 * std::sqrt(3.0), 0};
    double radius = -1.0;
    tsPoint_passTangentCurveThruPoint(&radius, &A, &B, &V, &P, 0);
    EXPECT_NEAR(radius, 100.0, 1e-9);
    radius = -1.0;
    tsPoint_passTangentCurveThruPoint(&radius, &A, nullptr, &V, &P, 0);
    EXPECT_EQ(radius, 0.0);
}

TEST(PointArcs, VerticalParabolaTangentToTwoGradesThroughAPoint)
{
    // Grades +4 % into V (100, 10) and -2 % out of it. The symmetric curve
    // of length 100 starts at x = 50, y = 8: y(x) = 8 + 0.04 u - 0.0003 u^2
    // with u = x - 50. At x = 80, y = 8 + 1.2 - 0.27 = 8.93.
    const dpoint3d V{100, 10, 0}, A{0, 6, 0}, B{200, 8, 0}, P{80, 8.93, 0};
    double length = -1.0;
    tsPoint_passTangentParabolaThruPoint(&length, &A, &B, &V, &P);
    EXPECT_NEAR(length, 100.0, 1e-9);

    // Equal and opposite grades (+4 %, -4 %) give no curve.
    const dpoint3d Bsym{200, 6, 0};
    length = -1.0;
    tsPoint_passTangentParabolaThruPoint(&length, &A, &Bsym, &V, &P);
    EXPECT_EQ(length, 0.0);
    length = -1.0;
    tsPoint_passTangentParabolaThruPoint(&length, nullptr, &B, &V, &P);
    EXPECT_EQ(length, 0.0);
}

TEST(PointText, ReadsYThenXThenOptionalZ)
{
    struct Row {
        const char *text;
        int32_t status;
        double x, y, z;
    } rows[] = {
        {"10 20", 0, 20, 10, 0},   {"  5000.25   1200.5  101.75 ", 0, 1200.5, 5000.25, 101.75},
        {"10\t20", 0, 20, 10, 0},  // control characters become blanks
        {"10", kFail, -1, -1, -1}, {"   ", kFail, -1, -1, -1},
    };
    for (const Row &r : rows) {
        dpoint3d p{-1, -1, -1};
        EXPECT_EQ(tsPoint_setFromYXZString(&p, r.text), r.status) << r.text;
        expectPoint(p, r.x, r.y, r.z, 0.0);
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
        {"bent", {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, 1e-3, 0, 0},
        {"along a diagonal", {{0, 0, 0}, {10, 10, 0}, {25, 25, 0}}, 1e-9, 1, 1},
        // The point on the first one is skipped, not taken as a direction.
        {"repeated first point", {{0, 0, 0}, {0, 1e-5, 0}, {10, 10, 0}, {20, 20, 0}}, 1e-3, 1, 1},
        // Directions 0.001 and 2 pi - 0.0005 differ by almost a turn.
        {"either side of east", {{0, 0, 0}, {10, 0.01, 0}, {20, -0.01, 0}}, 0.01, 0, 0},
        {"one point", {{3, 3, 0}}, 1e-3, 1, 1},
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

    int32_t search(dpoint3d **out, const double *seed, const dpoint3d &p) const
    {
        return tsPoint_projectPointOnTangentUsingXYTanDistArraysIteration(
            out, seed, &p, points.data(), tangents.data(), distances.data(),
            static_cast<int32_t>(points.size()));
    }
};

// The circle of radius 10 about (100, 200), counter-clockwise from east,
// sampled every 7 degrees from 0 to 357.
SampledString circleEvery7Degrees()
{
    SampledString s;
    for (int k = 0; k * 7 < 360; ++k) {
        const double t = 7.0 * k * kDeg;
        s.points.push_back({100 + 10 * std::cos(t), 200 + 10 * std::sin(t), 50.0 + k});
        s.tangents.push_back({-std::sin(t), std::cos(t), 0});
        s.distances.push_back(10 * t);
    }
    return s;
}

TEST(PointTangentSearch, PointOnAStraightStringHitsByDistanceAlone)
{
    SampledString s;
    for (int k = 0; k <= 10; ++k) {
        s.points.push_back({10.0 * k, 0, 0});
        s.tangents.push_back({1, 0, 0});
        s.distances.push_back(10.0 * k);
    }
    // On the string the tangent passes through the point at every sample, so
    // no side is ever taken: only the 0.001 rule finds sample 3.
    for (double x : {30.0, 30.0005}) {
        dpoint3d *found = nullptr;
        ASSERT_EQ(s.search(&found, nullptr, {x, 0, 0}), 1) << x;
        expectPoint(found[0], 30, 0, 0, 0.0);
        tsMem_free(found);
    }
    // Off a straight string the side of every tip is the same: nothing found.
    dpoint3d marker{};
    dpoint3d *untouched = &marker;
    EXPECT_EQ(s.search(&untouched, nullptr, {30, 5, 0}), 0);
    EXPECT_EQ(untouched, &marker);
    EXPECT_EQ(s.search(&untouched, nullptr, {30.002, 0, 0}), 0);
}

TEST(PointTangentSearch, SideTurnsWhereTheTangentPassesThroughThePoint)
{
    // From (120, 200), twice the radius from the centre, the tangents touch
    // the circle at +-60 degrees (cos = r / d = 1 / 2): the tip of a sample's
    // tangent changes side between 56 and 63, and between 294 and 301.
    const SampledString s = circleEvery7Degrees();
    const dpoint3d p{120, 200, 0};
    const auto sample = [&](int k) { return dpoint3d{s.points[k].x, s.points[k].y, s.points[k].z}; };

    dpoint3d *found = nullptr;
    ASSERT_EQ(s.search(&found, nullptr, p), 2);
    expectPoint(found[0], sample(9).x, sample(9).y, sample(9).z, 0.0);     // 63 degrees
    expectPoint(found[1], sample(43).x, sample(43).y, sample(43).z, 0.0);  // 301 degrees
    tsMem_free(found);

    // Seeded at 300 degrees: the backward pass from 294 runs down to the
    // turn at 56 (a hit, far from the seed); the forward pass from 294 finds
    // 301 as the second hit, and the nearer of the two is kept.
    const double seed300 = 10 * 300 * kDeg;
    ASSERT_EQ(s.search(&found, &seed300, p), 1);
    expectPoint(found[0], sample(43).x, sample(43).y, sample(43).z, 0.0);
    tsMem_free(found);

    // Seeded at 66 degrees: backward from 63, the turn shows at 56, the
    // lower sample this time; forward from 63 stops at 77, further from the
    // seed than 56, and the full pass stops at once for the same reason.
    const double seed66 = 10 * 66 * kDeg;
    ASSERT_EQ(s.search(&found, &seed66, p), 1);
    expectPoint(found[0], sample(8).x, sample(8).y, sample(8).z, 0.0);
    tsMem_free(found);

    // A point inside the circle sees every tip on the same side.
    EXPECT_EQ(s.search(&found, nullptr, {101, 201, 0}), 0);
    EXPECT_EQ(tsPoint_projectPointOnTangentUsingXYTanDistArraysIteration(
                  &found, nullptr, &p, s.points.data(), s.tangents.data(), s.distances.data(), 0),
              0);
}

}  // namespace
