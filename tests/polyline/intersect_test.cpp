// Intersections of segments, polylines and half-lines. Expected values are
// worked by hand in the comments beside them.
#include <tessar/frame.h>
#include <tessar/polyline.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kTol = 0.001;
const double r2 = std::sqrt(2.0);

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// Leaves 32768 in the error word, so that clearing on entry shows.
void forceFailure()
{
    int32_t found = 0;
    UTMAT_CalculerIntersectionDeuxDemiDroites(nullptr, nullptr, nullptr, nullptr, nullptr, &found);
}

// A point with its abscissas on figure 1 and figure 2.
struct Hit {
    dpoint2d p;
    double a1 = 0, a2 = 0;
};

// Compares consecutive rows of the tables with want; null abscissa tables are not compared.
void expectHits(const dpoint2d *pts, const double *a1, const double *a2, std::initializer_list<Hit> want)
{
    int k = 0;
    for (const Hit &h : want) {
        SCOPED_TRACE(k);
        EXPECT_NEAR(pts[k].x, h.p.x, 1e-9);
        EXPECT_NEAR(pts[k].y, h.p.y, 1e-9);
        EXPECT_NEAR(a1 ? a1[k] : 0.0, a1 ? h.a1 : 0.0, 1e-9);
        EXPECT_NEAR(a2 ? a2[k] : 0.0, a2 ? h.a2 : 0.0, 1e-9);
        ++k;
    }
}

// All outputs of a walk, with tables of room 64 (128 overlap ends).
struct Walk {
    bool bare = false;  // counts only, no tables
    double tol = kTol;
    int32_t found = -1, count = -1, foundOverlap = -1, overlapCount = -1;
    dpoint2d pts[64]{}, ovPts[128]{};
    double abs1[64]{}, abs2[64]{}, ovAbs1[128]{}, ovAbs2[128]{};
    template <class T> T *t(T *table) const { return bare ? nullptr : table; }

    void segment(const dpoint2d *seg, const std::vector<dpoint2d> &poly, int32_t nbMax)
    {
        UTMAT_CalculerIntersectionSegmentPolyligne(seg, poly.data(), int32_t(poly.size()), tol, nbMax, &found,
                                                   &count, t(pts), t(abs1), t(abs2), &foundOverlap,
                                                   &overlapCount, t(ovPts), t(ovAbs1), t(ovAbs2));
    }
    void polylines(const std::vector<dpoint2d> &p1, const std::vector<dpoint2d> &p2, int32_t nbMax,
                   const double *m1 = nullptr, const double *m2 = nullptr)
    {
        const ParamIntersectionPolylignes prm{
            p1.data(), int32_t(p1.size()), p2.data(), int32_t(p2.size()), kTol, nbMax, m1, m2};
        (m1 ? UTMAT_CalculerIntersectionPolylignePolyligneAvecAbscisses
            : UTMAT_CalculerIntersectionPolylignePolyligne)(&prm, &found, &count, t(pts), t(abs1), t(abs2),
                                                            &foundOverlap, &overlapCount, t(ovPts), t(ovAbs1),
                                                            t(ovAbs2));
    }
    void expectPoints(std::initializer_list<Hit> want) const { expectHits(pts, abs1, abs2, want); }
    // Overlaps as start and end rows, one after the other.
    void expectOverlaps(std::initializer_list<Hit> want) const { expectHits(ovPts, ovAbs1, ovAbs2, want); }
};

const dpoint2d kAxis[] = {{0, 0}, {4, 0}};   // segment 1 of the pair cases
const dpoint2d kLong[] = {{0, 0}, {10, 0}};  // the caller's segment of the polyline cases

// A design line flat at 102 m with a vertex at x = 20; a ground line of slopes 0.4, -0.2, 0.4
// (lengths sqrt(116), sqrt(416), sqrt(116)) at 102 m halfway along each segment: x = 5, 20, 35.
const std::vector<dpoint2d> kDesign = {{0, 102}, {20, 102}, {40, 102}};
const std::vector<dpoint2d> kGround = {{0, 100}, {10, 104}, {30, 100}, {40, 104}};
const double kG0 = std::sqrt(116.0), kG1 = std::sqrt(416.0);

}  // namespace

// ---- Two segments ----

// Segment 1 runs from a (0,0) to b (4,0). Where b ends an overlap, the
// abscissa on segment 2 is the kept sum tMin + L1 (reversed: L2 - (tMin + L1)),
// the true distance from c only when tMin is 0.
TEST(IntersectSegments, PointsOverlapsAndMisses)
{
    // h: the point, or the two overlap ends.
    // clang-format off
    struct Row { const char *what; dpoint2d c, d; int32_t found, overlap; Hit h[2]; } rows[] = {
        {"crossing", {1, -1}, {1, 3}, 1, 0, {{{1, 0}, 1, 1}}},
        {"crossing at the shared end b", {4, 0}, {6, 2}, 1, 0, {{{4, 0}, 4, 0}}},
        {"0.0005 beyond b, not clamped", {4.0005, -1}, {4.0005, 1}, 1, 0, {{{4.0005, 0}, 4.0005, 1}}},
        {"0.1 beyond b", {4.1, -1}, {4.1, 1}, 0, 0, {}},
        {"collinear, touching at b", {4, 0}, {7, 0}, 1, 0, {{{4, 0}, 4, 0}}},
        {"collinear reversed, touching at b: abs2 from c", {7, 0}, {4, 0}, 1, 0, {{{4, 0}, 4, 3}}},
        {"collinear, touching at a", {-3, 0}, {0, 0}, 1, 0, {{{0, 0}, 0, 3}}},
        {"shared stretch of 0.0005 counts as touching", {3.9995, 0}, {7, 0}, 1, 0, {{{4, 0}, 4, 0}}},
        {"collinear with a gap of 0.01", {4.01, 0}, {7, 0}, 0, 0, {}},
        {"parallel 1 apart", {0, 1}, {4, 1}, 0, 0, {}},
        {"c inside, d beyond b (true end 3)", {1, 0}, {6, 0}, 0, 1, {{{1, 0}, 1, 0}, {{4, 0}, 4, 5}}},
        {"reversed, d inside (true end 2)", {6, 0}, {1, 0}, 0, 1, {{{1, 0}, 1, 5}, {{4, 0}, 4, 0}}},
        {"reversed, both inside", {3, 0}, {1, 0}, 0, 1, {{{1, 0}, 1, 2}, {{3, 0}, 3, 0}}},
        {"c before a, d inside", {-2, 0}, {3, 0}, 0, 1, {{{0, 0}, 0, 2}, {{3, 0}, 3, 5}}},
        {"covers a to b (true end 6)", {-2, 0}, {6, 0}, 0, 1, {{{0, 0}, 0, 2}, {{4, 0}, 4, 2}}},
        {"reversed, covers (true end 2)", {6, 0}, {-2, 0}, 0, 1, {{{0, 0}, 0, 6}, {{4, 0}, 4, 6}}},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        const dpoint2d seg2[] = {r.c, r.d};
        int32_t found = -1, overlap = -1;
        dpoint2d ends[2]{};  // the point output shares the first row of the overlap outputs
        double o1[2]{}, o2[2]{};
        forceFailure();
        UTMAT_CalculerIntersectionSegmentSegment(kAxis, seg2, kTol, &found, ends, o1, o2, &overlap, ends, o1,
                                                 o2);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_TRUE(found == r.found && overlap == r.overlap);
        if (r.found) expectHits(ends, o1, o2, {r.h[0]});
        if (r.overlap) expectHits(ends, o1, o2, {r.h[0], r.h[1]});
    }
    const dpoint2d dot[] = {{2, 0}, {2, 0}};
    int32_t found = -1, overlap = -1;
    UTMAT_CalculerIntersectionSegmentSegment(kAxis, dot, kTol, &found, nullptr, nullptr, nullptr, &overlap,
                                             nullptr, nullptr, nullptr);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(found + overlap, 0);
}

// ---- A segment against a polyline ----

// The polyline crosses (0,0)-(10,0) at its vertex (4,0), comes back up at
// (6,0), runs along to (8,0) through the repeated vertex (7,0) and rises.
// Polyline abscissas: (4,0) 2r, (6,0) 4r, (7,0) 4r + 1, (8,0) 4r + 2, r = sqrt(2).
TEST(IntersectSegmentPolyline, SharedVertexOnceOverlapPerSegment)
{
    const std::vector<dpoint2d> poly = {{2, 2}, {4, 0}, {5, -1}, {6, 0}, {7, 0}, {7, 0}, {8, 0}, {8, 3}};
    Walk w;
    forceFailure();
    w.segment(kLong, poly, 10);
    EXPECT_EQ(errorWord(), 0);  // the zero-length segment is skipped
    EXPECT_EQ(w.found, 1);
    ASSERT_EQ(w.count, 3);  // (4,0) from segments 0 and 1, kept once with the abscissas of segment 0
    w.expectPoints({{{4, 0}, 4, 2 * r2}, {{6, 0}, 6, 4 * r2}, {{8, 0}, 8, 4 * r2 + 2}});
    ASSERT_EQ(w.overlapCount, 2);  // not merged across the vertex (7,0)
    w.expectOverlaps(
        {{{6, 0}, 6, 4 * r2}, {{7, 0}, 7, 4 * r2 + 1}, {{7, 0}, 7, 4 * r2 + 1}, {{8, 0}, 8, 4 * r2 + 2}});

    Walk bare{true};  // a bare count counts segments with a hit: (4,0) twice
    bare.segment(kLong, poly, 10);
    EXPECT_EQ(bare.count, 4);
    EXPECT_EQ(bare.overlapCount, 2);

    Walk one;  // capacity 1: the first point and the first overlap, flags set
    one.segment(kLong, poly, 1);
    EXPECT_EQ(one.count + one.overlapCount, 2);
    one.expectPoints({{{4, 0}, 4, 2 * r2}});

    const dpoint2d dot[] = {{1, 1}, {1, 1}};  // the caller's own segment may not be empty
    w.segment(dot, poly, 10);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(w.found + w.count, 0);

    Walk wide{false, 0.5};  // crossings 0.3 apart are one point within 0.5: the first stays
    wide.segment(kLong, {{4, 1}, {4, -1}, {4.3, -1}, {4.3, 1}}, 4);
    ASSERT_EQ(wide.count, 1);
    wide.expectPoints({{{4, 0}, 4, 1}});
}

// ---- Two polylines ----

TEST(IntersectPolylines, DesignAgainstGround)
{
    Walk w;
    w.polylines(kDesign, kGround, 10);
    EXPECT_EQ(errorWord(), 0);
    ASSERT_EQ(w.count, 3);  // (20,102) on the design's vertex comes from both its segments, kept once
    EXPECT_EQ(w.overlapCount, 0);
    const std::initializer_list<Hit> hits = {
        {{5, 102}, 5, kG0 / 2}, {{20, 102}, 20, kG0 + kG1 / 2}, {{35, 102}, 35, kG0 + kG1 + kG0 / 2}};
    w.expectPoints(hits);

    const double m1[] = {0, 20, 40}, m2[] = {0, 10, 30, 40};  // x as shared measure: the same pairs meet
    Walk merged;
    merged.polylines(kDesign, kGround, 10, m1, m2);
    ASSERT_EQ(merged.count, 3);
    merged.expectPoints(hits);

    Walk bare{true};  // one per design segment with a hit
    bare.polylines(kDesign, kGround, 10);
    EXPECT_EQ(bare.count, 2);
    Walk two;
    two.polylines(kDesign, kGround, 2);
    EXPECT_EQ(two.count, 2);
    two.expectPoints({{{5, 102}, 5, kG0 / 2}, {{20, 102}, 20, kG0 + kG1 / 2}});
}

// The ground meets the design at (10,102), runs on it across the design's
// vertex to (30,102) and leaves. Ground lengths sqrt(104), 20, sqrt(104).
TEST(IntersectPolylines, OverlapAcrossVertexIsTwoOverlaps)
{
    const double g = std::sqrt(104.0);
    Walk w;
    w.polylines(kDesign, {{0, 100}, {10, 102}, {30, 102}, {40, 100}}, 10);
    ASSERT_EQ(w.count, 2);
    w.expectPoints({{{10, 102}, 10, g}, {{30, 102}, 30, g + 20}});
    ASSERT_EQ(w.overlapCount, 2);
    // Design segment 0: c = (10,102) inside, b ends it: end abscissa tMin + L1 = 30 (true 10).
    w.expectOverlaps(
        {{{10, 102}, 10, g}, {{20, 102}, 20, g + 30}, {{20, 102}, 20, g + 10}, {{30, 102}, 30, g + 20}});
}

TEST(IntersectPolylines, InnerStepHoldsFiftyAndMergeStopsOnEmptySegment)
{
    std::vector<dpoint2d> zigzag;  // crosses y = 0 at x = 2, 4, ..., 120
    for (int k = 0; k <= 60; ++k)
        zigzag.push_back({2.0 * k + 1, k % 2 ? -1.0 : 1.0});
    Walk w;
    w.polylines({{0, 0}, {200, 0}}, zigzag, 64);
    EXPECT_EQ(w.count, 50);  // one segment keeps its first 50
    expectHits(&w.pts[49], nullptr, nullptr, {{{100, 0}}});

    const std::vector<dpoint2d> design = {{0, 102}, {20, 102}, {20, 102}, {40, 102}};
    const double m1[] = {0, 20, 20, 40}, m2[] = {0, 10, 30, 40};
    Walk merged;
    merged.polylines(design, kGround, 10, m1, m2);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(merged.count, 2);  // (5,102) and (20,102) were gathered before the empty segment
    Walk full;                   // the full walk skips it
    full.polylines(design, kGround, 10);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_EQ(full.count, 3);
}

// ---- One result ----

TEST(IntersectNearest, ReferencePointAndTies)
{
    // Crossings of (0,0)-(10,0) at x = 2, 4, 6; polyline abscissas r, 3r, 5r.
    const dpoint2d zig[] = {{1, 1}, {3, -1}, {5, 1}, {7, -1}};
    // Down to (2,0), then along to (4,0): a point and an overlap end at 1 from (3,0).
    const dpoint2d step[] = {{2, 1}, {2, 0}, {4, 0}};
    // clang-format off
    struct Row { const char *what; const dpoint2d *poly; dpoint2d ref;
                 int32_t acceptRef, foundPoint, foundOverlap;
                 Hit want; } rows[] = {
        {"on a crossing, accepted", zig, {4, 0}, 1, 1, 0, {{4, 0}, 4, 3 * r2}},
        {"on a crossing, passed over: the first of 2 and 6", zig, {4, 0}, 0, 1, 0, {{2, 0}, 2, r2}},
        {"tie of a point and an overlap end", step, {3, 0}, 1, 1, 0, {{2, 0}, 2, 1}},
        {"overlap end strictly nearer", step, {5, 0}, 1, 0, 1, {{4, 0}, 4, 3}},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        int32_t foundPoint = -1, foundOverlap = -1;
        dpoint2d p{};
        double a1 = -1, a2 = -1;
        forceFailure();
        UTMAT_CalculerIntersectionSegmentPolylignePlusProche(kLong, r.poly, r.poly == zig ? 4 : 3, kTol,
                                                             &r.ref, r.acceptRef, &p, &a1, &a2, &foundPoint,
                                                             &foundOverlap);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(foundPoint, r.foundPoint);
        EXPECT_EQ(foundOverlap, r.foundOverlap);
        expectHits(&p, &a1, &a2, {r.want});
    }
}

TEST(IntersectNearest, PolylinesAndFirstAlongPolyline1)
{
    const dpoint2d ref{19.9995, 102};
    int32_t fp = -1, fo = -1;
    dpoint2d p{};
    double a1 = -1;
    // (20,102) lies within tol of ref and is passed over; (5,102) is 14.9995 away, (35,102) 15.0005.
    UTMAT_CalculerIntersectionPolylignePolylignePlusProche(kDesign.data(), 3, kGround.data(), 4, kTol, &ref,
                                                           0, &p, &a1, nullptr, &fp, &fo);
    EXPECT_EQ(fp, 1);
    expectHits(&p, &a1, nullptr, {{{5, 102}, 5}});

    // clang-format off
    struct Row { std::vector<dpoint2d> ground; int32_t foundPoint, foundOverlap; Hit want; } rows[] = {
        {kGround, 1, 0, {{5, 102}, 5}},
        {{{0, 100}, {10, 102}, {30, 102}, {40, 100}}, 1, 0, {{10, 102}, 10}},  // overlap start ties at 10
        {{{0, 102}, {10, 102}, {20, 98}}, 0, 1, {{0, 102}, 0}},                // overlap starts first
        {{{0, 90}, {40, 90}}, 0, 0, {{-7, -7}, -7}},                           // no meeting: nothing written
    };
    // clang-format on
    for (const Row &r : rows) {
        p = {-7, -7};
        a1 = -7;
        UTMAT_CalculerPremiereIntersectionPolyligneAvecPolyligne(
            kDesign.data(), 3, r.ground.data(), int32_t(r.ground.size()), kTol, &p, &a1, nullptr, &fp, &fo);
        EXPECT_EQ(fp, r.foundPoint);
        EXPECT_EQ(fo, r.foundOverlap);
        expectHits(&p, &a1, nullptr, {r.want});
    }
}

// ---- Half-lines ----

TEST(IntersectHalfLines, AgainstSegmentAndEachOther)
{
    // pair: two half-lines, the second from a in direction b.
    // clang-format off
    struct Row { const char *what; dpoint2d o, v, a, b; int32_t found; dpoint2d p; bool pair = false; };
    const Row rows[] = {
        {"t = 2 along (1,1)", {0, -2}, {1, 1}, {0, 0}, {10, 0}, 1, {2, 0}},
        {"origin on the segment: t = 0", {5, 0}, {0, 1}, {0, 0}, {10, 0}, 1, {5, 0}},
        // The kept test adds v.x before the product: u = (5 + 0) 5 / 10 = 2.5, not 0.5.
        {"kept test misses (5,0)", {5, -5}, {0, 1}, {0, 0}, {10, 0}, 0, {}},
        {"pointing away", {0, -2}, {-1, -1}, {0, 0}, {10, 0}, 0, {}},
        {"parallel", {0, -2}, {1, 0}, {0, 0}, {10, 0}, 0, {}},
        {"vertical segment, u = 2/3", {0, 0}, {1, 1}, {3, -1}, {3, 5}, 1, {3, 3}},
        {"vertical segment, vertical half-line", {0, 0}, {0, 1}, {3, -1}, {3, 5}, 0, {}},
        {"vertical segment behind", {5, 0}, {1, 0}, {3, -1}, {3, 5}, 0, {}},
        {"vertical segment passed: u = 2", {0, 0}, {1, 1}, {3, -1}, {3, 1}, 0, {}},
        {"s = 2, t = 3", {0, 0}, {1, 0}, {3, -2}, {0, 1}, 1, {3, 0}, true},
        {"v1 vertical: t = 3, s = 2", {0, 0}, {0, 2}, {-4, 6}, {2, 0}, 1, {0, 6}, true},
        {"s = -2", {0, 0}, {1, 0}, {3, 2}, {0, 1}, 0, {}, true},
        {"t = -3", {0, 0}, {-1, 0}, {3, -2}, {0, 1}, 0, {}, true},
        {"parallel half-lines", {0, 0}, {1, 0}, {3, -2}, {2, 0}, 0, {}, true},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        int32_t found = -1;
        dpoint2d p{};
        forceFailure();
        (r.pair ? UTMAT_CalculerIntersectionDeuxDemiDroites
                : UTMAT_CalculerIntersectionDemiDroiteAvecSegment)(&r.o, &r.v, &r.a, &r.b, &p, &found);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(found, r.found);
        if (r.found) expectHits(&p, nullptr, nullptr, {{r.p}});
    }
    int32_t found = 7;  // a null origin fails and leaves found alone
    dpoint2d p{};
    UTMAT_CalculerIntersectionDemiDroiteAvecSegment(nullptr, &p, &p, &p, &p, &found);
    EXPECT_EQ(errorWord(), kFail);
    UTMAT_CalculerIntersectionDeuxDemiDroites(&p, &p, nullptr, &p, &p, &found);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(found, 7);
}
