// Polyline model and queries of the UTMAT kernel, each call checked for the
// error word it leaves. Expected values are worked by hand beside them.
#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/polyline.h>

#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kUntouched = -999.0;  // a value no case computes
constexpr int32_t kUntouchedIndex = 77;

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// Leaves 32768 in the error word, so that a call that clears it on entry
// is seen to do so.
void forceFailure()
{
    UTMAT_RecupererEnglobantPolyligne(nullptr, 1, nullptr, nullptr);
    ASSERT_EQ(errorWord(), kFail);
}

// Runs call after a failure left in the error word; true when the call cleared it.
template <class F> bool clears(F call)
{
    forceFailure();
    call();
    return errorWord() == 0;
}

class PolylineTest : public ::testing::Test
{
  protected:
    void SetUp() override { saved_ = UTMAT_getCalculPrec(), UTMAT_setCalculPrecision(0.0001); }
    void TearDown() override { UTMAT_setCalculPrecision(saved_); }
    double saved_ = 0.0;
};

// A MEM_ table holding the given vertices.
dpoint2d *makeTable(const std::vector<dpoint2d> &pts)
{
    dpoint2d *table = nullptr;
    MEM_CreerTableau(reinterpret_cast<void **>(&table), sizeof(dpoint2d), static_cast<int32_t>(pts.size()));
    for (size_t i = 0; i < pts.size(); ++i)
        table[i] = pts[i];
    return table;
}

// ---- Bounding box and order of the abscissas ----

TEST_F(PolylineTest, BoundingBoxTakesEachCoordinateApart)
{
    const dpoint2d one[] = {{3, -2}};
    const dpoint2d zigzag[] = {{0, 5}, {-4, 1}, {7, 9}, {2, -3}};
    // clang-format off
    struct Row { const dpoint2d *pts; int32_t n; dpoint2d min, max; } rows[] = {
        {one, 1, {3, -2}, {3, -2}},     // a single vertex is its own box
        {zigzag, 4, {-4, -3}, {7, 9}},  // x from vertices 1 and 2, y from 3 and 2
        {zigzag, 2, {-4, 1}, {0, 5}},   // only the first two vertices
    };
    // clang-format on
    for (const Row &r : rows) {
        forceFailure();
        dpoint2d lo{}, hi{};
        UTMAT_RecupererEnglobantPolyligne(r.pts, r.n, &lo, &hi);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(std::vector<double>({lo.x, lo.y, hi.x, hi.y}),
                  std::vector<double>({r.min.x, r.min.y, r.max.x, r.max.y}));
    }
    dpoint2d lo{kUntouched, kUntouched}, hi{kUntouched, kUntouched};
    for (int k = 0; k < 3; ++k) {  // each null in turn fails and writes nothing
        UTMAT_RecupererEnglobantPolyligne(k == 0 ? nullptr : zigzag, 2, k == 1 ? nullptr : &lo,
                                          k == 2 ? nullptr : &hi);
        EXPECT_EQ(errorWord(), kFail);
    }
    EXPECT_EQ(lo.x, kUntouched);
    EXPECT_EQ(hi.y, kUntouched);
}

TEST_F(PolylineTest, RetourAndGrowthTellDifferentThings)
{
    // clang-format off
    struct Row { const char *what; std::vector<dpoint2d> pts; int32_t retour, croissant; };
    const Row rows[] = {
        {"one vertex", {{5, 5}}, 0, 1}, {"increasing", {{0, 0}, {1, 3}, {2, 1}}, 0, 1},
        {"equal abscissas (a vertical step)", {{0, 0}, {1, 0}, {1, 4}, {2, 4}}, 0, 1},
        {"wholly backward: no retour, but not growing", {{2, 0}, {1, 0}, {0, 0}}, 0, 0},
        {"step back of 5e-5, within tol", {{0, 0}, {1, 0}, {0.99995, 1}, {2, 0}}, 0, 1},
        {"step back of 0.1", {{0, 0}, {1, 0}, {0.9, 1}, {2, 0}}, 1, 0},
        // Equal end abscissas count as running backward: the rise 0 -> 1 is a retour.
        {"equal ends", {{0, 0}, {1, 0}, {0, 0}}, 1, 0}, {"equal ends, vertical only", {{0, 0}, {0, 5}}, 0, 1},
        {"backward with one rise", {{3, 0}, {2, 0}, {2.5, 0}, {0, 0}}, 1, 0},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        const auto n = static_cast<int32_t>(r.pts.size());
        int32_t retour = kUntouchedIndex, croissant = kUntouchedIndex;
        EXPECT_TRUE(clears([&] { UTMAT_TesterRetourEnAbscissePolyligne(r.pts.data(), n, 0.0001, &retour); }));
        forceFailure();
        UTMAT_VerifierCroissanceAbscissePolyligne(r.pts.data(), n, 0.0001, &croissant);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(std::vector<int32_t>({retour, croissant}), std::vector<int32_t>({r.retour, r.croissant}));
    }
    int32_t retour = kUntouchedIndex, croissant = kUntouchedIndex;
    UTMAT_TesterRetourEnAbscissePolyligne(nullptr, 3, 0.0001, &retour);
    EXPECT_EQ(errorWord(), kFail);
    UTMAT_VerifierCroissanceAbscissePolyligne(nullptr, 3, 0.0001, &croissant);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(retour + croissant, 2 * kUntouchedIndex);
}

// ---- Repeated vertices ----

TEST_F(PolylineTest, PurgeCollapsesEachRunToItsFirstVertex)
{
    // clang-format off
    struct Row { const char *what; std::vector<dpoint2d> in, out; } rows[] = {
        {"five identical", {{2, 3}, {2, 3}, {2, 3}, {2, 3}, {2, 3}}, {{2, 3}}},
        {"runs inside and at the end",
         {{0, 0}, {1, 1}, {1, 1}, {1, 1}, {2, 0}, {2, 0}}, {{0, 0}, {1, 1}, {2, 0}}},
        // Each vertex is compared with the kept one: 6e-5 from (0,0) goes, but
        // 1.2e-4 stays, although it is only 6e-5 from its removed neighbour.
        {"drifting run", {{0, 0}, {0.00006, 0}, {0.00012, 0}, {1, 0}}, {{0, 0}, {0.00012, 0}, {1, 0}}},
        {"nothing repeated", {{0, 0}, {1, 0}, {2, 0}}, {{0, 0}, {1, 0}, {2, 0}}},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        dpoint2d *table = makeTable(r.in);
        auto n = static_cast<int32_t>(r.in.size());
        EXPECT_TRUE(clears([&] { UTMAT_PurgerPolyligne(&table, &n, 0.0001); }));
        ASSERT_EQ(n, static_cast<int32_t>(r.out.size()));
        for (int32_t i = 0; i < n; ++i) {
            EXPECT_EQ(table[i].x, r.out[static_cast<size_t>(i)].x);
            EXPECT_EQ(table[i].y, r.out[static_cast<size_t>(i)].y);
        }
        MEM_LibererTableau(reinterpret_cast<void **>(&table));
    }
    // The purge reads the table layer's words after each removal, which
    // carries the table layer's detail word into the kernel's.
    dpoint2d *table = makeTable({{0, 0}, {0, 0}, {1, 0}});
    int32_t n = 3, code = -1, detail = -1;
    MEM_SetErreur(0, 7);
    UTMAT_PurgerPolyligne(&table, &n, 0.0001);
    UTMAT_GetErreur(&code, &detail);
    EXPECT_EQ(code, 0);
    EXPECT_EQ(detail, 7);
    EXPECT_EQ(n, 2);
    MEM_SetErreur(0, 0);
    MEM_LibererTableau(reinterpret_cast<void **>(&table));
}

// ---- The interval holding an abscissa ----

TEST_F(PolylineTest, IntervalSearch)
{
    const dpoint2d plane[] = {{0, 7}, {10, 7}, {20, 7}, {30, 7}};
    // Space points (stride of three doubles) running toward smaller x; y and
    // z hold values that would mislead a plane stride.
    const dpoint3d space[] = {{30, -1, 5}, {20, 25, 15}, {10, 4, 25}, {0, 3, 35}};
    // clang-format off
    struct Row { int32_t is3d, n; double x; int32_t found, index; };
    const Row rows[] = {
        {0, 4, 0.0, 1, 0}, {0, 4, 10.0, 1, 1}, {0, 4, 15.0, 1, 1}, {0, 4, 29.99, 1, 2},
        {0, 4, 30.0, 1, 3}, {0, 4, 30.00005, 1, 3}, {0, 4, -0.00005, 1, 0},  // the ends, within the precision
        {0, 4, -0.001, 0, kUntouchedIndex}, {0, 4, 30.001, 0, kUntouchedIndex},
        {0, 0, 0.0, 0, kUntouchedIndex},  // empty finds nothing
        {1, 4, 25.0, 1, 0}, {1, 4, 20.0, 1, 1}, {1, 4, 5.0, 1, 2}, {1, 4, 0.0, 1, 3},
        {1, 4, 31.0, 0, kUntouchedIndex}, {1, 4, -1.0, 0, kUntouchedIndex},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.x);
        int32_t index = kUntouchedIndex, found = kUntouchedIndex;
        forceFailure();
        UTMAT_RecupererDebutIntervalleContenantAbscisse(r.is3d ? static_cast<const void *>(space) : plane,
                                                        r.is3d, r.n, r.x, &index, &found);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(std::pair(found, index), std::pair(r.found, r.index));
    }
    // The tolerance is the kernel precision.
    int32_t index = kUntouchedIndex, found = kUntouchedIndex;
    UTMAT_RecupererDebutIntervalleContenantAbscisse(plane, 0, 2, 10.005, &index, &found);
    EXPECT_EQ(found, 0);
    UTMAT_setCalculPrecision(0.01);
    UTMAT_RecupererDebutIntervalleContenantAbscisse(plane, 0, 2, 10.005, &index, &found);
    EXPECT_EQ(found, 1);
    EXPECT_EQ(index, 1);
}

// ---- A point on a segment and on a polyline ----

TEST_F(PolylineTest, PointOnSegment)
{
    // (0,0)-(3,4) has the unit right normal (0.8, -0.6).
    const dpoint2d o{0, 0}, x10{10, 0}, s{3, 4}, u{1, 1};
    // clang-format off
    struct Row { const char *what; dpoint2d p, a, b; int32_t sur; };
    const Row rows[] = {
        {"inside", {5, 0}, o, x10, 1}, {"offset 5e-4", {5, 0.0005}, o, x10, 1},
        {"offset 2e-3", {5, 0.002}, o, x10, 0}, {"on a", {0, 0}, o, x10, 1},
        {"5e-4 past b, within tol of b", {10.0005, 0}, o, x10, 1}, {"0.01 past b", {10.01, 0}, o, x10, 0},
        {"7.1e-4 from a, off the segment's span", {-0.0005, 0.0005}, o, x10, 1},
        {"inside the span, 2e-3 off", {0.0005, 0.002}, o, x10, 0}, {"slanted, on", {1.5, 2}, o, s, 1},
        {"slanted, 5e-4 right", {1.5 + 0.8 * 0.0005, 2 - 0.6 * 0.0005}, o, s, 1},
        {"slanted, 2e-3 right", {1.5 + 0.8 * 0.002, 2 - 0.6 * 0.002}, o, s, 0},
        {"zero length, on its end", {1, 1}, u, u, 1}, {"zero length, elsewhere", {1.5, 1}, u, u, 0},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        int32_t sur = kUntouchedIndex;
        EXPECT_TRUE(clears([&] { UTMAT_ComparerPointASegment(&r.p, &r.a, &r.b, 0.001, &sur); }));
        EXPECT_EQ(sur, r.sur);
    }
}

TEST_F(PolylineTest, PointOnPolylineFirstSegmentWins)
{
    // A step profile, and a closed square that repeats its first vertex.
    const dpoint2d step[] = {{0, 0}, {10, 0}, {10, 5}, {20, 5}};
    const dpoint2d square[] = {{0, 0}, {0, 10}, {10, 10}, {10, 0}, {0, 0}};
    // clang-format off
    struct Row { const char *what; const dpoint2d *pts; int32_t n; dpoint2d p; int32_t index1, index2; };
    const Row rows[] = {
        {"first vertex", step, 4, {0, 0}, 0, -1}, {"inside segment 0", step, 4, {5, 0}, 0, 1},
        {"vertex 1, found as the end of segment 0", step, 4, {10, 0}, 1, -1},
        {"on the vertical step", step, 4, {10, 2.5}, 1, 2}, {"last vertex", step, 4, {20, 5}, 3, -1},
        {"inside the last segment", step, 4, {15, 5}, 2, 3}, {"off", step, 4, {5, 1}, -1, -1},
        {"closing vertex of a contour is vertex 0", square, 5, {0, 0}, 0, -1},
        {"on the closing edge", square, 5, {5, 0}, 3, 4}, {"one vertex: no compare", step, 1, {0, 0}, -1, -1},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        int32_t i1 = kUntouchedIndex, i2 = kUntouchedIndex;
        EXPECT_TRUE(clears([&] { UTMAT_PointSurPolyligne(r.pts, r.n, &r.p, 0.001, &i1, &i2); }));
        EXPECT_EQ(std::pair(i1, i2), std::pair(r.index1, r.index2));
    }
}

// The vertical line x = -1e40 normalises to (1, 0, 1e40): its norm 1 is not
// above c * 1e-39 = 10, so the offset fails. The point (-1e40, 0.5) lies
// strictly inside the segment's span, so the offset is asked for.
TEST_F(PolylineTest, FailingOffsetLeavesTheOutputsAsTheyWere)
{
    const dpoint2d pts[] = {{-1e40, 0}, {-1e40, 1}};
    const dpoint2d p{-1e40, 0.5};
    int32_t sur = kUntouchedIndex, i1 = kUntouchedIndex, i2 = kUntouchedIndex;
    UTMAT_ComparerPointASegment(&p, &pts[0], &pts[1], 0.001, &sur);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(sur, kUntouchedIndex);
    UTMAT_PointSurPolyligne(pts, 2, &p, 0.001, &i1, &i2);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(std::pair(i1, i2), std::pair(-1, -1));
}

// ---- A point against a profile run ----

TEST_F(PolylineTest, PositionAgainstProfileRun)
{
    // Flat to x = 10, a step up to 5, flat to 20, down to 0 at x = 30.
    const dpoint2d pts[] = {{0, 0}, {10, 0}, {10, 5}, {20, 5}, {30, 0}};
    // Backward run: x = 10 belongs to vertex first (level 1), but at the
    // larger end of the range the level is that of vertex last (3); inside,
    // 1 + 2 * (5 - 10)/(0 - 10) = 2.
    const dpoint2d back[] = {{10, 1}, {0, 3}};
    // clang-format off
    struct Row { const char *what; const dpoint2d *pts; dpoint2d p; int32_t first, last, position; };
    const Row rows[] = {
        {"before", pts, {-1, 0}, 0, 4, TESSAR_POLY_BEFORE}, {"after", pts, {31, 0}, 0, 4, TESSAR_POLY_BEYOND},
        {"above", pts, {5, 1}, 0, 4, TESSAR_POLY_ABOVE}, {"below", pts, {5, -1}, 0, 4, TESSAR_POLY_BELOW},
        {"on, within tol", pts, {5, 0.0005}, 0, 4, TESSAR_POLY_ON},
        {"on the vertical step", pts, {10, 2}, 0, 4, TESSAR_POLY_ON},
        {"above the step", pts, {10, 6}, 0, 4, TESSAR_POLY_ABOVE},
        {"below the step", pts, {10, -1}, 0, 4, TESSAR_POLY_BELOW},
        {"on the falling segment: 5 - 5 * 5/10", pts, {25, 2.5}, 0, 4, TESSAR_POLY_ON},
        {"exactly at the larger end", pts, {30, 0}, 0, 4, TESSAR_POLY_ON},
        {"before a sub-run starting at x = 10", pts, {5, 0}, 1, 3, TESSAR_POLY_BEFORE},
        {"larger end of the sub-run takes vertex 3", pts, {20, 5}, 1, 3, TESSAR_POLY_ON},
        {"one-vertex run", pts, {20, 4}, 3, 3, TESSAR_POLY_BELOW},
        {"backward, level of last at the larger end", back, {10, 3}, 0, 1, TESSAR_POLY_ON},
        {"backward, level of first below it", back, {10, 1}, 0, 1, TESSAR_POLY_BELOW},
        {"backward, inside", back, {5, 2}, 0, 1, TESSAR_POLY_ON},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        int32_t position = kUntouchedIndex;
        forceFailure();
        UTMAT_ComparerPositionPointPolyligne(r.pts, r.pts == back ? 2 : 5, &r.p, r.first, r.last, 0.001,
                                             &position);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(position, r.position);
    }
    const int32_t ranges[][2] = {{-1, 2}, {2, 1}, {0, 3}};  // invalid on three vertices
    for (const auto &range : ranges) {
        int32_t position = kUntouchedIndex;
        UTMAT_ComparerPositionPointPolyligne(pts, 3, &pts[1], range[0], range[1], 0.001, &position);
        EXPECT_EQ(errorWord(), kFail);
        EXPECT_EQ(position, kUntouchedIndex);
    }
}

// ---- Two segments over their common interval ----

struct SegmentOut {
    int32_t found = kUntouchedIndex, relStart = kUntouchedIndex, relEnd = kUntouchedIndex;
    int32_t flags = kUntouchedIndex, code = kUntouchedIndex;
    dpoint2d inter{kUntouched, kUntouched};
    double xStart = kUntouched, xEnd = kUntouched, y1Start = kUntouched, y1End = kUntouched;
    double y2Start = kUntouched, y2End = kUntouched;
};

SegmentOut compare(const dpoint2d &a, const dpoint2d &b, const dpoint2d &c, const dpoint2d &d)
{
    const dpoint2d s1[] = {a, b};
    const dpoint2d s2[] = {c, d};
    SegmentOut o;
    UTMAT_ComparerPosition2Segments(s1, s2, &o.found, &o.inter, &o.relStart, &o.relEnd, &o.xStart, &o.xEnd,
                                    &o.y1Start, &o.y1End, &o.y2Start, &o.y2End, &o.flags, &o.code);
    return o;
}

TEST_F(PolylineTest, TwoSegmentsByCode)
{
    // Segment 1 is y = x from (0,0) to (10,10) unless the row says otherwise.
    // iv: xStart, xEnd, y1Start, y1End, y2Start, y2End; none means only found,
    // code and flags are written.
    const dpoint2d o{0, 0}, t{10, 10}, v0{5, 0}, v1{5, 10};
    const std::vector<double> none;
    // clang-format off
    struct Row { const char *what; dpoint2d a, b, c, d; int32_t code, flags, found; dpoint2d inter;
                 int32_t relStart, relEnd; std::vector<double> iv; };  // inter checked when found
    const Row rows[] = {
        {"44: wholly before", o, t, {-5, 0}, {-1, 0}, 44, 0, 0, {}, 0, 0, none},
        {"22: wholly beyond", o, t, {11, 0}, {15, 0}, 22, 0, 0, {}, 0, 0, none},
        // y = 4 from 2 to 8: Y1 = 2 and 8, segment 2 above then below, crossing at (4,4).
        {"33: crossing", o, t, {2, 4}, {8, 4}, 33, 0, 1, {4, 4}, 1, -1, {2, 8, 2, 8, 4, 4}},
        // c = (5,0), d = (15,10): Y1(5) = 5, Y2(10) = 5; below at both ends.
        {"32: below throughout", o, t, {5, 0}, {15, 10}, 32, 0, 0, {}, -1, -1, {5, 10, 5, 10, 0, 5}},
        // y = -x from -10 to 20: Y2(0) = 0 meets segment 1 at its start, Y2(10) = -10.
        {"42: meet at start", o, t, {-10, 10}, {20, -20}, 42, 0, 1, {0, 0}, 0, -1, {0, 10, 0, 10, 0, -10}},
        // y = 5 from -10 to 5: Y2(0) = 5 above, touching (5,5) at the end.
        {"43: touch at the end", o, t, {-10, 5}, {5, 5}, 43, 0, 1, {5, 5}, 1, 0, {0, 5, 0, 5, 5, 5}},
        // On y = x from 2 to 12: equal at both ends of [2, 10].
        {"32: collinear overlap", o, t, {2, 2}, {12, 12}, 32, 0, 0, {}, 0, 0, {2, 10, 2, 10, 2, 10}},
        // y = 5 from 0 to 10: both ends on the ends of segment 1 (flags 1 and 8).
        {"33: same span", o, t, {0, 5}, {10, 5}, 33, 1 | 8, 1, {5, 5}, 1, -1, {0, 10, 0, 10, 5, 5}},
        // x = 4 from y 0 to 10: crossing forced onto x = 4, at y = 4.
        {"33: vertical segment 2", o, t, {4, 0}, {4, 10}, 33, 32, 1, {4, 4}, -1, 1, {4, 4, 4, 4, 0, 10}},
        // Segment 1 on x = 5 from 0 to 10, segment 2 from (5,4) right: 0..10 against 4 and 4.
        {"32: vertical segment 1", v0, v1, {5, 4}, {15, 4}, 32, 1 | 2, 1, {5, 4}, 1, -1, {5, 5, 0, 10, 4, 4}},
        {"43: vertical segment 1, wholly above", v0, v1, {-5, 12}, {5, 12}, 43, 4 | 8, 0, {}, 1, 1,
         {5, 5, 0, 10, 12, 12}},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        forceFailure();
        const SegmentOut out = compare(r.a, r.b, r.c, r.d);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(std::vector<int32_t>({out.code, out.flags, out.found}),
                  std::vector<int32_t>({r.code, r.flags, r.found}));
        if (r.found) {
            EXPECT_NEAR(out.inter.x, r.inter.x, 1e-12);
            EXPECT_NEAR(out.inter.y, r.inter.y, 1e-12);
        }
        const std::vector<double> iv{out.xStart, out.xEnd, out.y1Start, out.y1End, out.y2Start, out.y2End};
        if (r.iv.empty()) {
            EXPECT_EQ(out.relStart, kUntouchedIndex);
            EXPECT_EQ(iv, std::vector<double>(6, kUntouched));
            EXPECT_EQ(out.inter.x, kUntouched);
        } else {
            EXPECT_EQ(out.relStart, r.relStart);
            EXPECT_EQ(out.relEnd, r.relEnd);
            EXPECT_EQ(iv, r.iv);
        }
    }
}

// Both segments on the vertical x = 5, segment 1 spanning 0..10: segment 2
// meets it unless it lies wholly above or wholly below; the meeting point is
// c on the span, else the end of the span reached from c's side.
TEST_F(PolylineTest, TwoSegmentsOnOneVertical)
{
    // clang-format off
    struct Row { dpoint2d c, d; int32_t relStart, relEnd, found; double interY; } rows[] = {
        {{5, 4}, {5, 20}, 0, 1, 1, 4},     // c on the span
        {{5, 12}, {5, 20}, 1, 1, 0, 0},    // wholly above
        {{5, -5}, {5, -1}, -1, -1, 0, 0},  // wholly below
        {{5, -5}, {5, 20}, -1, 1, 1, 0},   // from below: the lower end
        {{5, 15}, {5, 3}, 1, 0, 1, 10},    // from above: the upper end
    };
    // clang-format on
    for (const Row &r : rows) {
        const SegmentOut o = compare({5, 0}, {5, 10}, r.c, r.d);
        EXPECT_EQ(std::vector<int32_t>({o.code, o.flags, o.relStart, o.relEnd, o.found}),
                  std::vector<int32_t>({33, 1 | 2 | 4 | 8 | 32, r.relStart, r.relEnd, r.found}));
        // Settled before any ordinate is interpolated: those stay as they were.
        const double U = kUntouched, ix = r.found ? 5.0 : U, iy = r.found ? r.interY : U;
        EXPECT_EQ(std::vector<double>(
                      {o.xStart, o.xEnd, o.inter.x, o.inter.y, o.y1Start, o.y1End, o.y2Start, o.y2End}),
                  std::vector<double>({5, 5, ix, iy, U, U, U, U}));
    }
}

// ---- Levels along a chain ----

TEST_F(PolylineTest, LevelsAlongAChain)
{
    // clang-format off
    // z: the expected levels afterwards.
    struct Row { const char *what; std::vector<dpoint3d> pts; std::vector<int32_t> known; int32_t status;
                 std::vector<double> z; };
    const Row rows[] = {
        {"one point", {{0, 0, 1}}, {0}, TESSAR_ZINTERP_TOO_FEW, {1}},
        {"all known", {{0, 0, 1}, {5, 0, 2}}, {1, 1}, TESSAR_ZINTERP_ALL_KNOWN, {1, 2}},
        {"none known", {{0, 0, 1}, {5, 0, 2}}, {0, 0}, TESSAR_ZINTERP_NONE_KNOWN, {1, 2}},
        {"5e-5 apart", {{0, 0, 1}, {0.00005, 0, 2}, {1, 0, 3}}, {1, 0, 0}, TESSAR_ZINTERP_TOO_CLOSE,
         {1, 2, 3}},
        {"one known: flat", {{0, 0, 0}, {3, 4, 7}, {6, 8, 0}}, {0, 1, 0}, TESSAR_ZINTERP_DONE, {7, 7, 7}},
        // Plan lengths 5, 5, 6 (D = 16) and a rise of 16: a grade of 1.
        {"known ends: straight grade by plan length", {{0, 0, 10}, {3, 4, 0}, {6, 8, 0}, {6, 14, 26}},
         {1, 0, 0, 1}, TESSAR_ZINTERP_DONE, {10, 15, 20, 26}},
        // Slope 1 arriving at (1,0): 2 + 2 * 1.
        {"straight extension", {{0, 0, 1}, {1, 0, 2}, {3, 0, 0}}, {1, 1, 0}, TESSAR_ZINTERP_DONE, {1, 2, 4}},
        // Slope 2/5 leaving (8,6): 10 - 5 * 0.4 and 10 - 10 * 0.4.
        {"straight extension backward", {{0, 0, 0}, {4, 3, 0}, {8, 6, 10}, {12, 9, 12}}, {0, 0, 1, 1},
         TESSAR_ZINTERP_DONE, {6, 8, 10, 12}},
        // z = 1 + 0.1 s - s^2 / 300 leaves (10,1) with 0.1 and reaches 1 at s = 30.
        {"parabola leaving with the slope", {{0, 0, 0}, {10, 0, 1}, {20, 0, 0}, {30, 0, 0}, {40, 0, 1}},
         {1, 1, 0, 0, 1}, TESSAR_ZINTERP_DONE, {0, 1, 2.0 - 1.0 / 3.0, 3.0 - 4.0 / 3.0, 1}},
        // z = 1 - 0.1 s + s^2 / 300 reaches (30,1) with slope 0.1.
        {"parabola arriving with the slope", {{0, 0, 1}, {10, 0, 0}, {20, 0, 0}, {30, 0, 1}, {40, 0, 2}},
         {1, 0, 0, 1, 1}, TESSAR_ZINTERP_DONE, {1, 1.0 / 3.0, 4.0 / 3.0 - 1.0, 1, 2}},
        // Slopes 0 and 1, rise 10 over 30: z = s^3 / 2700, with z(30) = 10 and z'(30) = 1.
        {"cubic matching both slopes",
         {{0, 0, 0}, {10, 0, 0}, {20, 0, 0}, {30, 0, 0}, {40, 0, 10}, {50, 0, 20}}, {1, 1, 0, 0, 1, 1},
         TESSAR_ZINTERP_DONE, {0, 0, 1000.0 / 2700.0, 8000.0 / 2700.0, 10, 20}},
        // The middle run is a straight line 5 -> 7; the last run sees point 2
        // as unknown although just filled, so it stays flat at 7.
        {"filled points are no support", {{0, 0, 0}, {10, 0, 5}, {20, 0, 0}, {30, 0, 7}, {40, 0, 0}},
         {0, 1, 0, 1, 0}, TESSAR_ZINTERP_DONE, {5, 5, 6, 7, 7}},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        std::vector<dpoint3d> pts = r.pts;
        int32_t status = kUntouchedIndex;
        forceFailure();
        UTMAT_CalculerInterpolationCurviligneDuZ(pts.data(), static_cast<int32_t>(pts.size()), r.known.data(),
                                                 &status);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(status, r.status);
        for (size_t i = 0; i < pts.size(); ++i) {
            EXPECT_NEAR(pts[i].z, r.z[i], 1e-12) << "point " << i;
            EXPECT_EQ(pts[i].x, r.pts[i].x);
        }
    }
}

// ---- Ordinates at abscissas ----

struct SweepOut {
    std::vector<dpoint2d> xy;
    std::vector<int32_t> done;
    int32_t last = kUntouchedIndex;
};

SweepOut sweep(const std::vector<dpoint2d> &pts, const std::vector<double> &xs, int32_t start,
               SweepOut s = {})
{
    if (s.xy.empty()) {
        for (const double x : xs)
            s.xy.push_back({x, kUntouched});
        s.done.assign(xs.size(), kUntouchedIndex);
    }
    UTMAT_CalculerTableauYSurPolyligne(pts.data(), static_cast<int32_t>(pts.size()), s.xy.data(),
                                       s.done.data(), static_cast<int32_t>(s.xy.size()), start, 0.001,
                                       &s.last);
    return s;
}

TEST_F(PolylineTest, SortedAbscissas)
{
    const std::vector<dpoint2d> peak = {{0, 0}, {10, 10}, {20, 0}};
    const std::vector<dpoint2d> stepUp = {{0, 0}, {10, 0}, {10, 5}, {20, 5}};
    const double U = kUntouched;
    // Over the peak, then on from the next element over a fall (20,0)-(30,-10).
    forceFailure();
    SweepOut s = sweep(peak, {-5, -1, 0, 5, 10, 15, 20, 25, 30}, 0);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_EQ(std::pair(s.last, s.done), std::pair(6, std::vector<int32_t>{0, 0, 1, 1, 1, 1, 1, 0, 0}));
    s = sweep({{20, 0}, {30, -10}}, {}, s.last + 1, s);
    EXPECT_EQ(std::pair(s.last, s.done), std::pair(8, std::vector<int32_t>{0, 0, 1, 1, 1, 1, 1, 1, 1}));
    std::vector<double> y;
    for (const dpoint2d &p : s.xy)
        y.push_back(p.y);
    EXPECT_EQ(y, (std::vector<double>{U, U, 0, 5, 10, 5, 0, -5, -10}));  // -5 = 0 - 10 * 5/10

    // clang-format off
    struct Row { const char *what; const std::vector<dpoint2d> &pts; std::vector<double> xs;
                 int32_t start, last;
                 std::vector<int32_t> done; std::vector<double> y; };
    const Row rows[] = {
        {"all before", peak, {-3, -2}, 0, 1, {0, 0}, {U, U}},
        // The first element already beyond: last is the element before start.
        {"all after", peak, {30, 40}, 0, -1, {0, 0}, {U, U}},
        {"within tol of the last vertex", peak, {20.0005}, 0, 0, {1}, {0}},
        // At the step the level after it is read, the later vertex winning.
        {"vertical step", stepUp, {5, 10, 15}, 0, 2, {1, 1, 1}, {0, 5, 5}},
        {"start past the elements", peak, {5}, 1, kUntouchedIndex, {kUntouchedIndex}, {U}},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        const SweepOut o = sweep(r.pts, r.xs, r.start);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(std::pair(o.last, o.done), std::pair(r.last, r.done));
        for (size_t i = 0; i < r.y.size(); ++i)
            EXPECT_EQ(o.xy[i].y, r.y[i]) << "element " << i;
    }
}

TEST_F(PolylineTest, NearestOrdinateOnASwitchback)
{
    // Along y = 0, back diagonally to (0,10) (a segment running backward that
    // never counts), then along y = 10; and up a vertical step at x = 5.
    const dpoint2d zig[] = {{0, 0}, {10, 0}, {0, 10}, {10, 10}};
    const dpoint2d step[] = {{0, 0}, {5, 0}, {5, 10}, {10, 10}};
    // clang-format off
    struct Row { const char *what; const dpoint2d *pts; dpoint2d q; int32_t done; double y; };
    const Row rows[] = {
        {"nearer the upper branch", zig, {5, 8}, 1, 10}, {"nearer the lower branch", zig, {5, 3}, 1, 0},
        {"as near to both: the first stays", zig, {5, 5}, 1, 0}, {"outside all", zig, {15, 5}, 0, 5},
        // Segment 0 gives 0 (7 away), the step its upper end (3 away), the last 10 again.
        {"step, nearer the top", step, {5, 7}, 1, 10}, {"step, nearer the foot", step, {5, 2}, 1, 0},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        dpoint2d xy[] = {r.q};
        int32_t done[] = {kUntouchedIndex};
        forceFailure();
        UTMAT_CalculerTableauYSurPolylignePlusProche(r.pts, 4, xy, done, 1, 0.001);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(done[0], r.done);
        EXPECT_EQ(std::vector<double>({xy[0].x, xy[0].y}), std::vector<double>({r.q.x, r.y}));
    }
    dpoint2d xy[] = {{1, kUntouched}};
    int32_t done[] = {kUntouchedIndex}, last = kUntouchedIndex;
    UTMAT_CalculerTableauYSurPolyligne(nullptr, 2, xy, done, 1, 0, 0.001, &last);
    EXPECT_EQ(errorWord(), kFail);
    UTMAT_CalculerTableauYSurPolylignePlusProche(nullptr, 2, xy, done, 1, 0.001);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(done[0] + last, 2 * kUntouchedIndex);
    EXPECT_EQ(xy[0].y, kUntouched);
}

// ---- Area ----

TEST_F(PolylineTest, AreaOfClosedContours)
{
    // clang-format off
    struct Row { const char *what; std::vector<dpoint2d> pts; double area; };
    const Row rows[] = {
        {"square, clockwise", {{1, 1}, {1, 11}, {11, 11}, {11, 1}, {1, 1}}, 100},
        {"square, counter-clockwise", {{1, 1}, {11, 1}, {11, 11}, {1, 11}, {1, 1}}, 100},
        // Without the repeated first vertex the closing edge is missing: shoelace -10 + 110 + 110, halved.
        {"square not closed", {{1, 1}, {1, 11}, {11, 11}, {11, 1}}, 105},
        {"right triangle 4 by 3", {{0, 0}, {4, 0}, {0, 3}, {0, 0}}, 6}, {"empty", {}, 0},
    };
    // clang-format on
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        double area = kUntouched;
        forceFailure();
        UTMAT_CalculerSurfacePolygone(r.pts.data(), static_cast<int32_t>(r.pts.size()), &area);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(area, r.area);
    }
}

// ---- Scenario ----

// A road cross-section across the axis: ditch, shoulder, lanes at a 2.5 %
// crossfall, shoulder, ditch; abscissas are offsets from the axis.
TEST_F(PolylineTest, SurveyShotsAgainstACrossSection)
{
    const std::vector<dpoint2d> digitised = {
        {-12.0, 99.0}, {-10.5, 98.4},  {-10.5, 98.4}, {-9.0, 99.0}, {-7.5, 99.8125}, {0.0, 100.0},
        {0.0, 100.0},  {7.5, 99.8125}, {9.0, 99.0},   {10.5, 98.4}, {12.0, 99.0},
    };
    dpoint2d *section = makeTable(digitised);
    int32_t n = static_cast<int32_t>(digitised.size());
    UTMAT_PurgerPolyligne(&section, &n, 0.001);
    ASSERT_EQ(errorWord(), 0);
    ASSERT_EQ(n, 9);

    // The shot at offset 3.2 falls in the lane from the axis (vertex 4) to
    // the lane edge (vertex 5); the lane level there is 100 - 0.025 * 3.2 = 99.92.
    int32_t croissant = 0, index = -1, found = 0, done[1] = {0}, last = -1;
    UTMAT_VerifierCroissanceAbscissePolyligne(section, n, 0.001, &croissant);
    UTMAT_RecupererDebutIntervalleContenantAbscisse(section, 0, n, 3.2, &index, &found);
    EXPECT_EQ(std::vector<int32_t>({croissant, found, index}), std::vector<int32_t>({1, 1, 4}));
    dpoint2d xy[] = {{3.2, 0.0}};
    UTMAT_CalculerTableauYSurPolyligne(section, n, xy, done, 1, 0, 0.001, &last);
    EXPECT_EQ(done[0], 1);
    EXPECT_NEAR(xy[0].y, 99.92, 1e-12);

    // A shot 1 cm above the lane is above, one on it within 5 mm is on it,
    // one in the right ditch 2 cm low is below.
    const dpoint2d shots[] = {{3.2, 99.93}, {3.2, 99.924}, {10.5, 98.38}};
    std::vector<int32_t> positions;
    for (const dpoint2d &p : shots) {
        int32_t &position = positions.emplace_back(kUntouchedIndex);
        UTMAT_ComparerPositionPointPolyligne(section, n, &p, 0, n - 1, 0.005, &position);
    }
    EXPECT_EQ(positions, (std::vector<int32_t>{TESSAR_POLY_ABOVE, TESSAR_POLY_ON, TESSAR_POLY_BELOW}));
    MEM_LibererTableau(reinterpret_cast<void **>(&section));
    EXPECT_EQ(errorWord(), 0);
}

}  // namespace
