// Differences of two profiles and the stretches of a bracket. Every table handed back is
// released (run under the sanitizers for leaks); expected values are worked by hand beside them.
#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/polyline.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using Profile = std::vector<dpoint2d>;
constexpr int32_t kFail = 32768;
constexpr double kNear = 1e-9;

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

void forceFailure()
{
    UTMAT_RecupererEnglobantPolyligne(nullptr, 1, nullptr, nullptr);
}

template <class T> void release(T *&table)
{
    if (table != nullptr) MEM_LibererTableau(reinterpret_cast<void **>(&table));
}

void expectPoint(const dpoint2d &p, double x, double y)
{
    EXPECT_NEAR(p.x, x, kNear);
    EXPECT_NEAR(p.y, y, kNear);
}

// Lengths and areas of the two sides: la, aa, lb, ab.
void expectSums(std::initializer_list<double> got, std::initializer_list<double> want)
{
    for (auto g = got.begin(), w = want.begin(); w != want.end(); ++g, ++w)
        EXPECT_NEAR(*g, *w, kNear) << "sum " << (w - want.begin());
}

// Everything UTMAT_CalculateDiff2Lines hands back, released on destruction.
struct Diff {
    double la = -1, aa = -1, lb = -1, ab = -1;
    dpoint2d *points = nullptr, *pieces = nullptr;
    uint32_t *types = nullptr;
    double *areas = nullptr;
    int32_t *signs = nullptr;
    int32_t count = -1, pieceCount = -1;
    Diff(const Profile &p1, const Profile &p2)
    {
        forceFailure();
        UTMAT_CalculateDiff2Lines(p1.data(), int32_t(p1.size()), p2.data(), int32_t(p2.size()), &la, &aa, &lb,
                                  &ab, &points, &types, &areas, &count, &pieces, &signs, &pieceCount);
    }
    ~Diff() { release(points), release(types), release(areas), release(pieces), release(signs); }
};

struct Meeting {
    dpoint2d p;
    uint32_t type;
};

class DifferenceTest : public ::testing::Test
{
  protected:
    void SetUp() override { saved_ = UTMAT_getCalculPrec(), UTMAT_setCalculPrecision(0.0001); }
    void TearDown() override { UTMAT_setCalculPrecision(saved_); }
    double saved_ = 0.0;
};

// Design (0,12) (50,12) (60,13) against ground (0,10) (20,10) (40,14) (60,15).
// The ground crosses 12 at x = 30. Fill on 0..30: trapezoid of sides 30 and
// 20, height 2: 50. Cut on 30..60: triangle 30..40 (10 x 2 / 2 = 10), then
// 40..50 ground 14..14.5 over 12 (mean 2.25 x 10), 50..60 ground 14.5..15 over
// 12..13 (mean 2.25 x 10): 55. Pieces split at each vertex and at x = 30.
TEST_F(DifferenceTest, DesignAgainstGroundGivesCutAndFill)
{
    const Profile design{{0, 12}, {50, 12}, {60, 13}}, ground{{0, 10}, {20, 10}, {40, 14}, {60, 15}};
    Diff r(design, ground);
    EXPECT_EQ(errorWord(), 0);
    expectSums({r.la, r.aa, r.lb, r.ab}, {30, 50, 30, 55});
    ASSERT_EQ(r.count, 1);
    expectPoint(r.points[0], 30, 12);
    EXPECT_EQ(r.types[0], TESSAR_DIFF_BEFORE_BELOW | TESSAR_DIFF_AFTER_ABOVE);
    expectSums({r.areas[0], r.areas[1]}, {50, -55});
    // Pieces of the design between x0 and x1; its level is 12 up to x = 50, then rises 0.1 a metre.
    // clang-format off
    const struct { double x0, x1; int32_t sign; } pieces[] = {
        {0, 20, 1}, {20, 30, 1}, {30, 40, -1}, {40, 50, -1}, {50, 60, -1}};
    // clang-format on
    const auto level = [](double x) { return x <= 50 ? 12 : 12 + (x - 50) / 10; };
    ASSERT_EQ(r.pieceCount, 5);
    for (int k = 0; k < 5; ++k) {
        expectPoint(r.pieces[2 * k], pieces[k].x0, level(pieces[k].x0));
        expectPoint(r.pieces[2 * k + 1], pieces[k].x1, level(pieces[k].x1));
        EXPECT_EQ(r.signs[k], pieces[k].sign);
    }

    // The short form gives the same sums and point, and takes null outputs.
    double la = 0, aa = 0, lb = 0, ab = 0;
    dpoint2d *points = nullptr;
    uint32_t *types = nullptr;
    int32_t count = 0;
    UTMAT_CalculerDifference2Polylignes(design.data(), 3, ground.data(), 4, &la, &aa, &lb, &ab, &points,
                                        &types, &count);
    EXPECT_EQ(std::vector<double>({la, aa, lb, ab}), std::vector<double>({r.la, r.aa, r.lb, r.ab}));
    ASSERT_EQ(count, 1);
    EXPECT_TRUE(points[0].x == r.points[0].x && types[0] == r.types[0]);
    release(points), release(types);
    dpoint2d stale{};  // cleared on entry, and left empty without a types table
    points = &stale;
    forceFailure();
    UTMAT_CalculerDifference2Polylignes(design.data(), 3, ground.data(), 4, nullptr, &aa, nullptr, nullptr,
                                        &points, nullptr, &count);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_EQ(aa, r.aa);
    EXPECT_TRUE(count == 0 && points == nullptr);  // no types table: no point
}

TEST_F(DifferenceTest, MeetingPointsAndTheirFilterByArea)
{
    constexpr uint32_t B1 = TESSAR_DIFF_BEFORE_EQUAL, B2 = TESSAR_DIFF_BEFORE_BELOW,
                       B4 = TESSAR_DIFF_BEFORE_ABOVE;
    constexpr uint32_t A1 = TESSAR_DIFF_AFTER_EQUAL, A2 = TESSAR_DIFF_AFTER_BELOW,
                       A4 = TESSAR_DIFF_AFTER_ABOVE;
    // clang-format off
    struct Row { const char *what; Profile p1, p2; double la, aa, lb, ab; std::vector<Meeting> meetings;
                 std::vector<double> areas; std::vector<uint32_t> kept; };  // kept: types after the filter
    const Row rows[] = {
        {"identical: equal levels count as below", {{0, 0}, {10, 5}, {20, 0}}, {{0, 0}, {10, 5}, {20, 0}},
         0, 0, 20, 0, {}, {0}, {}},
        // Triangles (0,0) (0,10) (5,5) and (5,5) (10,0) (10,10): 25 each; then the mirror.
        {"crossing once, 2 going below", {{0, 0}, {10, 10}}, {{0, 10}, {10, 0}}, 5, 25, 5, 25,
         {{{5, 5}, B4 | A2}}, {-25, 25}, {B4 | A2}},
        {"crossing once, 2 going above", {{0, 10}, {10, 0}}, {{0, 0}, {10, 10}}, 5, 25, 5, 25,
         {{{5, 5}, B2 | A4}}, {25, -25}, {B2 | A4}},
        // Both bend at (10,10): reported once; 20 x 10 less the tent's 100 below.
        {"shared bend", {{0, 0}, {10, 10}, {20, 0}}, {{0, 10}, {10, 10}, {20, 10}}, 0, 0, 20, 100,
         {{{10, 10}, B4 | A1}}, {-50, -50}, {B4 | A1}},
        // Wedge 0..10 (5 x 10 / 2), common on 10..20, wedge 20..30 (10 x 10 / 2).
        {"overlap, then part", {{0, 0}, {10, 0}, {20, 0}, {30, 10}}, {{0, 5}, {10, 0}, {20, 0}, {30, 0}},
         10, 50, 20, 25, {{{10, 0}, B4 | A1}, {{20, 0}, B1 | A2}}, {-25, 0, 50}, {B4 | A1, B1 | A2}},
        // A bump of 1e-5 has mean heights within the precision: no area, and
        // the filter drops both of its points.
        {"bump within the precision", {{0, 0}, {10, 0}, {20, 0}}, {{0, 0}, {10, 1e-5}, {20, 0}},
         0, 0, 20, 0, {{{0, 0}, B1 | A4}, {{20, 0}, B4 | A1}}, {0, 0, 0}, {}},
        {"vertical step through polyline 2", {{0, 0}, {10, 0}, {10, 10}, {20, 10}}, {{0, 5}, {20, 5}},
         10, 50, 10, 50, {{{10, 5}, B4 | A2}}, {-50, 50}, {B4 | A2}},
        {"no common range", {{0, 0}, {10, 0}}, {{20, 0}, {30, 5}}, 0, 0, 0, 0, {}, {0}, {}},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        Diff r(row.p1, row.p2);
        EXPECT_EQ(errorWord(), 0);
        expectSums({r.la, r.aa, r.lb, r.ab}, {row.la, row.aa, row.lb, row.ab});
        ASSERT_EQ(r.count, int32_t(row.meetings.size()));
        for (int32_t k = 0; k < r.count; ++k) {
            expectPoint(r.points[k], row.meetings[k].p.x, row.meetings[k].p.y);
            EXPECT_EQ(r.types[k], row.meetings[k].type);
        }
        for (size_t k = 0; k < row.areas.size(); ++k)
            EXPECT_NEAR(r.areas[k], row.areas[k], kNear);

        double la = -1, aa = -1, lb = -1, ab = -1;
        dpoint2d *points = nullptr;
        uint32_t *types = nullptr;
        int32_t count = -1;
        forceFailure();
        UTMAT_CalculerDifference2PolylignesAvecControleSurface(row.p1.data(), int32_t(row.p1.size()),
                                                               row.p2.data(), int32_t(row.p2.size()), &la,
                                                               &aa, &lb, &ab, &points, &types, &count);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_TRUE(la == r.la && ab == r.ab);
        ASSERT_EQ(count, int32_t(row.kept.size()));
        EXPECT_EQ(std::vector<uint32_t>(types, types + count), row.kept);
        EXPECT_TRUE(count != 0 || (points == nullptr && types == nullptr));
        release(points), release(types);
    }
}

// Profile (0,0) (10,10) (20,0) over the datum y = 0 (or -1): the difference
// rises by 1 a metre to x = 10 and falls back, so a bound b is crossed at
// x = b - D0 and x = 20 - (b - D0), with D0 the difference at x = 0.
TEST_F(DifferenceTest, StretchesWithinABracket)
{
    const Profile tent{{0, 0}, {10, 10}, {20, 0}}, datum{{0, 0}, {20, 0}}, lower{{0, -1}, {20, -1}};
    const Profile step{{0, 0}, {10, 0}, {10, 10}, {20, 10}}, level{{0, 5}, {20, 5}};
    const Profile shortOne{{0, 0}, {10, 0}}, shifted{{5, 1}, {15, 1}};
    // clang-format off
    struct Row { const char *what; const Profile &p1, &p2; double low, high;
                 std::vector<dpoint2d> out1, out2; };  // start, end of each stretch
    const Row rows[] = {
        {"all in: first to last sample", tent, datum, -1, 20, {{0, 0}, {20, 0}}, {{0, 0}, {20, 0}}},
        {"none in", tent, datum, 20, 30, {}, {}},
        {"run through within each pair", tent, datum, 2, 5, {{2, 2}, {5, 5}, {15, 5}, {18, 2}},
         {{2, 0}, {5, 0}, {15, 0}, {18, 0}}},
        {"D equal to low is out", tent, datum, 10, 20, {}, {}},
        {"D equal to high is in", tent, datum, -5, 10, {{0, 0}, {20, 0}}, {{0, 0}, {20, 0}}},
        {"opens and closes on low", tent, datum, 5, 20, {{5, 5}, {15, 5}}, {{5, 0}, {15, 0}}},
        {"from sample 0; to the last sample", tent, lower, 0, 5, {{0, 0}, {4, 4}, {16, 4}, {20, 0}},
         {{0, -1}, {4, -1}, {16, -1}, {20, -1}}},
        // On a vertical step the difference runs -5 to 5 along the step: 0 at mid-height.
        {"crossing on a vertical step", step, level, 0, 10, {{10, 5}, {20, 10}}, {{10, 5}, {20, 5}}},
        // The merge stops when polyline 2 is used up, before the sample at x = 10.
        {"partial cover leaves one sample", shortOne, shifted, -10, 10, {}, {}},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        dpoint2d *out1 = nullptr, *out2 = nullptr;
        int32_t count = -1;
        forceFailure();
        UTMAT_CalculerIntervDiffPolylignesDansFourchette(row.p1.data(), int32_t(row.p1.size()), row.p2.data(),
                                                         int32_t(row.p2.size()), row.low, row.high, &out1,
                                                         &out2, &count);
        EXPECT_EQ(errorWord(), 0);
        ASSERT_EQ(size_t(count) * 2, row.out1.size());
        for (size_t k = 0; k < row.out1.size(); ++k) {
            expectPoint(out1[k], row.out1[k].x, row.out1[k].y);
            expectPoint(out2[k], row.out2[k].x, row.out2[k].y);
        }
        release(out1), release(out2);
    }
}

TEST_F(DifferenceTest, BracketNeedsAPolylineEachAndOneOutputTable)
{
    const Profile tent{{0, 0}, {10, 10}, {20, 0}}, datum{{0, 0}, {20, 0}};
    dpoint2d *out = nullptr;
    int32_t count = 7;
    UTMAT_CalculerIntervDiffPolylignesDansFourchette(tent.data(), 3, datum.data(), 2, 5, 20, nullptr, nullptr,
                                                     &count);
    EXPECT_EQ(errorWord(), kFail);
    UTMAT_CalculerIntervDiffPolylignesDansFourchette(nullptr, 3, datum.data(), 2, 5, 20, nullptr, &out,
                                                     &count);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(count, 7);
    UTMAT_CalculerIntervDiffPolylignesDansFourchette(tent.data(), 3, datum.data(), 2, 5, 20, nullptr, &out,
                                                     &count);
    EXPECT_EQ(errorWord(), 0);
    ASSERT_EQ(count, 1);
    expectPoint(out[0], 5, 0);
    expectPoint(out[1], 15, 0);  // polyline 2 side only
    release(out);
}

}  // namespace
