// Cuts of polylines and contours, and points and segments against a contour.
// Expected values are worked by hand in the comments beside them.
#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/polyline.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kTol = 0.001;
const double r2 = std::sqrt(2.0);
using Pts = std::vector<dpoint2d>;

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// Copies a MEM_ table of n points and frees it; a null table must come with n 0.
Pts take(dpoint2d *&t, int32_t n)
{
    EXPECT_EQ(t == nullptr, n == 0);
    Pts out(t, t + n);
    if (t != nullptr) MEM_LibererTableau(reinterpret_cast<void **>(&t));
    EXPECT_EQ(t, nullptr);
    return out;
}

void expectPts(const Pts &got, const Pts &want, const char *what)
{
    ASSERT_EQ(got.size(), want.size()) << what;
    for (size_t k = 0; k < want.size(); ++k) {
        EXPECT_NEAR(got[k].x, want[k].x, 1e-12) << what << " vertex " << k;
        EXPECT_NEAR(got[k].y, want[k].y, 1e-12) << what << " vertex " << k;
    }
}

// A cross-section toward increasing x with a vertical step at x = 4.
const Pts kSection{{0, 0}, {2, 1}, {4, 1}, {4, 3}, {6, 3}, {8, 0}};
// The square 0..4 by 0..4, closed; edge k ends at vertex k.
const Pts kSquare{{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}};

struct CutRow {
    dpoint2d cut;
    Pts first, second;
};

TEST(Segment, CutAtPointKeepsCutInBothHalves)
{
    const CutRow rows[] = {
        {{3, 1}, {{0, 0}, {2, 1}, {3, 1}}, {{3, 1}, {4, 1}, {4, 3}, {6, 3}, {8, 0}}},
        {{2, 1}, {{0, 0}, {2, 1}}, {{2, 1}, {4, 1}, {4, 3}, {6, 3}, {8, 0}}},  // at a vertex: not doubled
        // On the step: the lower vertex stays in the first half.
        {{4, 2}, {{0, 0}, {2, 1}, {4, 1}, {4, 2}}, {{4, 2}, {4, 3}, {6, 3}, {8, 0}}},
        {{4, 3}, {{0, 0}, {2, 1}, {4, 1}, {4, 3}}, {{4, 3}, {6, 3}, {8, 0}}},
        {{4, 1}, {{0, 0}, {2, 1}, {4, 1}}, {{4, 1}, {4, 3}, {6, 3}, {8, 0}}},
        {{0.0005, 0}, {}, kSection},  // within tol of the first end
        {{8, 0}, kSection, {}},
    };
    for (const CutRow &r : rows) {
        dpoint2d *a = nullptr, *b = nullptr;
        int32_t n1 = -1, n2 = -1;
        UTMAT_SegmenterPolyligne(kSection.data(), 6, &r.cut, kTol, &a, &n1, &b, &n2);
        EXPECT_EQ(errorWord(), 0);
        expectPts(take(a, n1), r.first, "first");
        expectPts(take(b, n2), r.second, "second");
    }
    // Beyond the end by more than tol: failure, outputs untouched.
    dpoint2d sentinel{7, 7}, *a = &sentinel, *b = &sentinel;
    int32_t n1 = 9, n2 = 9;
    const dpoint2d beyond{8.01, 0};
    UTMAT_SegmenterPolyligne(kSection.data(), 6, &beyond, kTol, &a, &n1, &b, &n2);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_TRUE(a == &sentinel && b == &sentinel && n1 == 9 && n2 == 9);
}

TEST(Segment, CutAtAbscissa)
{
    struct Row {
        double x;
        Pts low, high;
    } rows[] = {
        {3, {{0, 0}, {2, 1}, {3, 1}}, {{3, 1}, {4, 1}, {4, 3}, {6, 3}, {8, 0}}},
        {2, {{0, 0}, {2, 1}}, {{2, 1}, {4, 1}, {4, 3}, {6, 3}, {8, 0}}},
        {4, {{0, 0}, {2, 1}, {4, 1}}, {{4, 3}, {6, 3}, {8, 0}}},  // the step belongs to neither half
        {7, {{0, 0}, {2, 1}, {4, 1}, {4, 3}, {6, 3}, {7, 1.5}}, {{7, 1.5}, {8, 0}}},  // y = 3 - 3 * 1/2
        {0, {}, kSection},
        {8, kSection, {}},
    };
    for (const Row &r : rows) {
        dpoint2d *lo = nullptr, *hi = nullptr;
        int32_t n1 = -1, n2 = -1;
        UTMAT_SegmenterPolyligneAAbscisse(kSection.data(), 6, r.x, &lo, &n1, &hi, &n2);
        EXPECT_EQ(errorWord(), 0) << r.x;
        expectPts(take(lo, n1), r.low, "low");
        expectPts(take(hi, n2), r.high, "high");
    }
    // Running backward: the first output is the part of smaller x, in the polyline's direction.
    const Pts back(kSection.rbegin(), kSection.rend());
    dpoint2d *lo = nullptr, *hi = nullptr;
    int32_t n1 = 0, n2 = 0;
    UTMAT_SegmenterPolyligneAAbscisse(back.data(), 6, 3, &lo, &n1, &hi, &n2);
    expectPts(take(lo, n1), {{3, 1}, {2, 1}, {0, 0}}, "low of backward");
    expectPts(take(hi, n2), {{8, 0}, {6, 3}, {4, 3}, {4, 1}, {3, 1}}, "high of backward");
    for (double x : {-0.001, 8.001}) {
        UTMAT_SegmenterPolyligneAAbscisse(kSection.data(), 6, x, &lo, &n1, &hi, &n2);
        EXPECT_EQ(errorWord(), kFail);
        EXPECT_TRUE(lo == nullptr && hi == nullptr && n1 == 0 && n2 == 0);
    }
}

TEST(Segment, ContourCutByVertical)
{
    struct Row {
        double x;
        Pts left, right;
    } rows[] = {
        // Crossings (1,0) and (1,4) are inserted; each side walks away from its first contact.
        {1, {{1, 0}, {0, 0}, {0, 4}, {1, 4}, {1, 0}}, {{1, 0}, {4, 0}, {4, 4}, {1, 4}, {1, 0}}},
        {5, kSquare, {}},   // wholly left
        {-1, {}, kSquare},  // wholly right
        {4, kSquare, {}},   // touches along its right edge: from the left
        {0, {}, kSquare},   // touches along its left edge: from the right
    };
    for (const Row &r : rows) {
        dpoint2d *left = nullptr, *right = nullptr;
        int32_t n1 = 0, n2 = 0;
        UTMAT_SegmenterContourParVerticale(kSquare.data(), 5, r.x, &left, &n1, &right, &n2);
        EXPECT_EQ(errorWord(), 0) << r.x;
        expectPts(take(left, n1), r.left, "left");
        expectPts(take(right, n2), r.right, "right");
    }
    // A C opening right meets x = 4 four times: (4,0), (4,1), (4,3), (4,4). Only the
    // first and last contacts bound each side, so the left outline skips the C's
    // arms and the right one keeps them whole.
    const Pts c{{0, 0}, {6, 0}, {6, 1}, {2, 1}, {2, 3}, {6, 3}, {6, 4}, {0, 4}, {0, 0}};
    dpoint2d *left = nullptr, *right = nullptr;
    int32_t n1 = 0, n2 = 0;
    UTMAT_SegmenterContourParVerticale(c.data(), 9, 4, &left, &n1, &right, &n2);
    expectPts(take(left, n1), {{4, 0}, {0, 0}, {0, 4}, {4, 4}, {4, 0}}, "left of C");
    expectPts(take(right, n2),
              {{4, 0}, {6, 0}, {6, 1}, {4, 1}, {2, 1}, {2, 3}, {4, 3}, {6, 3}, {6, 4}, {4, 4}, {4, 0}},
              "right of C");
}

TEST(Segment, PointInContour)
{
    // A notch at (3,2) whose neighbours are both above, and a spike at (3,2) whose
    // neighbours are both below: the ray from (1,2) through it counts 2 and 0.
    const Pts notch{{0, 0}, {6, 0}, {6, 4}, {3, 2}, {0, 4}, {0, 0}};
    const Pts spike{{0, 0}, {3, 2}, {6, 0}, {6, 4}, {0, 4}, {0, 0}};
    struct Row {
        const Pts *contour;
        dpoint2d p;
        int32_t want;
    } rows[] = {
        {&kSquare, {2, 2}, 1},  {&kSquare, {5, 2}, 2},  {&kSquare, {-1, 2}, 2},
        {&kSquare, {2, 0}, -1}, {&kSquare, {4, 2}, -2}, {&kSquare, {0, 2}, -4},  // closing edge
        {&kSquare, {0, 0}, -1}, {&kSquare, {4, 4}, -2}, {&kSquare, {2, 4.0005}, -3},
        {&kSquare, {2, 5}, 2},  {&notch, {1, 2}, 1},    {&spike, {1, 2}, 1},
        {&notch, {4, 3}, 2},    {&spike, {2, 1}, 2},  // just below the spike's left edge
    };
    for (const Row &r : rows) {
        int32_t pos = 0;
        UTMAT_PointDansContour(&r.p, r.contour->data(), static_cast<int32_t>(r.contour->size()), kTol, &pos);
        EXPECT_EQ(pos, r.want) << r.p.x << "," << r.p.y;
    }
    int32_t pos = 0;
    UTMAT_PointDansContour(&kSquare[0], kSquare.data(), 1, kTol, &pos);
    EXPECT_EQ(pos, 2);
}

TEST(Segment, SegmentAgainstContour)
{
    struct Row {
        dpoint2d a, b;
        int32_t mode;
        std::vector<double> abscissas;  // two per piece
    } rows[] = {
        {{1, 1}, {3, 1}, 1, {0, 2}},  // wholly inside
        {{1, 1}, {3, 1}, 2, {}},
        {{1, 1}, {3, 1}, -2, {}},
        {{-2, 2}, {6, 2}, 1, {2, 6}},  // crossing: edges met at x = 0 and 4
        {{-2, 2}, {6, 2}, 2, {0, 2, 6, 8}},
        {{5, 1}, {7, 3}, 1, {}},  // wholly outside
        {{5, 1}, {7, 3}, 2, {0, 2 * r2}},
        {{1, 0}, {3, 0}, -1, {0, 2}},  // along the bottom edge
        {{1, 0}, {3, 0}, -2, {0, 2}},
        {{1, 0}, {3, 0}, 1, {}},
        {{1, 0}, {3, 0}, 2, {}},
        {{-1, 3}, {5, 3}, -1, {1, 5}},        // a crossing stretch is inside, so -1 holds it
        {{-1, -1}, {5, 5}, 1, {r2, 5 * r2}},  // through the corners (0,0) and (4,4)
        {{-1, -1}, {5, 5}, 2, {0, r2, 5 * r2, 6 * r2}},
        {{1, 1}, {3, 1}, 0, {}},  // no such mode
    };
    for (const Row &r : rows) {
        dpoint2d *pieces = nullptr;
        double *abscissas = nullptr;
        int32_t count = -5;
        UTMAT_SegmentDansContour(&r.a, &r.b, kSquare.data(), 5, r.mode, kTol, &pieces, &abscissas, &count);
        EXPECT_EQ(errorWord(), 0);
        ASSERT_EQ(count * 2, static_cast<int32_t>(r.abscissas.size()))
            << r.a.x << "," << r.a.y << " mode " << r.mode;
        Pts want;
        for (double t : r.abscissas) {
            const double d = std::hypot(r.b.x - r.a.x, r.b.y - r.a.y);
            want.push_back({r.a.x + t * (r.b.x - r.a.x) / d, r.a.y + t * (r.b.y - r.a.y) / d});
        }
        for (int32_t k = 0; k < 2 * count; ++k)
            EXPECT_NEAR(abscissas[k], r.abscissas[k], 1e-12);
        expectPts(take(pieces, 2 * count), want, "pieces");
        if (abscissas != nullptr) MEM_LibererTableau(reinterpret_cast<void **>(&abscissas));
    }
    // A zero-length segment: exact, the line fails; within the precision, count -1.
    dpoint2d *pieces = nullptr;
    double *abscissas = nullptr;
    int32_t count = 7;
    const dpoint2d a{1, 1}, same{1, 1}, near{1.00001, 1};
    UTMAT_SegmentDansContour(&a, &same, kSquare.data(), 5, 1, kTol, &pieces, &abscissas, &count);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(count, 0);
    UTMAT_SegmentDansContour(&a, &near, kSquare.data(), 5, 1, kTol, &pieces, &abscissas, &count);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_EQ(count, -1);
    EXPECT_TRUE(pieces == nullptr && abscissas == nullptr);
}

}  // namespace
