// Masks, tunnels and offsets, worked by hand beside each case; every table
// handed back is released (run under the sanitizers for leaks).
#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/polyline.h>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using Profile = std::vector<dpoint2d>;
using Marks = std::vector<UTMAT_AttributMasque>;
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

void expectPolyline(const dpoint2d *got, int32_t count, const Profile &want)
{
    ASSERT_EQ(count, int32_t(want.size()));
    for (int32_t k = 0; k < count; ++k) {
        EXPECT_NEAR(got[k].x, want[k].x, kNear) << "vertex " << k;
        EXPECT_NEAR(got[k].y, want[k].y, kNear) << "vertex " << k;
    }
}

Marks values(std::initializer_list<uint32_t> v)
{
    Marks m;
    for (uint32_t x : v)
        m.push_back({x, 9});  // dessus of an input is never read
    return m;
}

// marks: (valeur, dessus) per envelope vertex.
// clang-format off
struct MaskRow { const char *name; Profile p1; Marks a1; Profile p2; Marks a2; Profile want;
                 std::vector<std::pair<uint32_t, uint8_t>> marks; };
// clang-format on

TEST(Mask, UpperEnvelopeWithOrigins)
{
    // clang-format off
    const std::vector<MaskRow> rows{
        // Level 6 over a rising 2..8 crossing it at 7.5: polyline 2 takes over there,
        // the crossing labelled by its segment 1.
        {"crossing", {{0, 6}, {4, 6}, {10, 6}}, values({10, 11, 12}), {{0, 2}, {5, 4}, {10, 8}},
         values({20, 21, 22}), {{0, 6}, {4, 6}, {7.5, 6}, {10, 8}}, {{10, 1}, {11, 1}, {21, 0}, {22, 0}}},
        {"one above throughout", {{0, 5}, {5, 7}, {10, 5}}, values({1, 2, 3}), {{0, 0}, {3, 1}, {10, 0}},
         values({4, 5, 6}), {{0, 5}, {5, 7}, {10, 5}}, {{1, 1}, {2, 1}, {3, 1}}},
        // Wholly below but starting at the same x: the first vertex is still polyline 1's.
        {"one below throughout", {{0, 0}, {3, 1}, {10, 0}}, values({4, 5, 6}), {{0, 5}, {5, 7}, {10, 5}},
         values({1, 2, 3}), {{0, 0}, {5, 7}, {10, 5}}, {{4, 1}, {2, 0}, {3, 0}}},
        // A V touching level 0 at (5,0): appended as equal (dessus 0), then
        // relabelled to polyline 1 once it rises above again.
        {"touching", {{0, 4}, {5, 0}, {10, 4}}, values({1, 2, 3}), {{0, 0}, {10, 0}}, values({4, 5}),
         {{0, 4}, {5, 0}, {10, 4}}, {{1, 1}, {2, 1}, {3, 1}}},
        {"disjoint, 1 first", {{0, 1}, {2, 1}}, values({1, 2}), {{5, 0}, {8, 0}}, values({3, 4}),
         {{0, 1}, {2, 1}, {5, 0}, {8, 0}}, {{1, 1}, {2, 1}, {3, 0}, {4, 0}}},
        {"disjoint, 2 first", {{5, 0}, {8, 0}}, values({1, 2}), {{0, 1}, {2, 1}}, values({3, 4}),
         {{0, 1}, {2, 1}, {5, 0}, {8, 0}}, {{3, 0}, {4, 0}, {1, 1}, {2, 1}}},
        // Two steps on x = 5: the higher end (polyline 2's 9) goes on.
        {"vertical steps", {{0, 3}, {5, 3}, {5, 6}, {9, 6}}, values({1, 2, 3, 4}),
         {{0, 1}, {5, 1}, {5, 9}, {9, 9}}, values({5, 6, 7, 8}), {{0, 3}, {5, 3}, {5, 9}, {9, 9}},
         {{1, 1}, {2, 1}, {7, 0}, {8, 0}}},
    };
    // clang-format on
    for (const MaskRow &r : rows) {
        SCOPED_TRACE(r.name);
        dpoint2d *points = nullptr, *bare = nullptr;
        UTMAT_AttributMasque *marks = nullptr;
        int32_t count = -1, bareCount = -1;
        forceFailure();
        UTMAT_AppliquerMasque(r.p1.data(), r.a1.data(), int32_t(r.p1.size()), r.p2.data(), r.a2.data(),
                              int32_t(r.p2.size()), &points, &marks, &count);
        EXPECT_EQ(errorWord(), 0);
        expectPolyline(points, count, r.want);
        for (int32_t k = 0; k < count && k < int32_t(r.marks.size()); ++k) {
            EXPECT_EQ(marks[k].valeur, r.marks[k].first) << "vertex " << k;
            EXPECT_EQ(marks[k].dessus, r.marks[k].second) << "vertex " << k;
        }
        // Without an attribute table the points are the same.
        UTMAT_AppliquerMasque(r.p1.data(), r.a1.data(), int32_t(r.p1.size()), r.p2.data(), r.a2.data(),
                              int32_t(r.p2.size()), &bare, nullptr, &bareCount);
        expectPolyline(bare, bareCount, r.want);
        release(points), release(marks), release(bare);
    }
}

std::vector<int32_t> tunnelFlags(const std::vector<dpoint3d> &chain, double width, double length,
                                 int32_t mode)
{
    std::vector<int32_t> flags(chain.size(), 0);
    flags[0] = 7;  // written to 0 by the call
    forceFailure();
    UTMAT_AppliquerTunnelAPolyligne(chain.data(), int32_t(chain.size()), width, length, mode, flags.data());
    EXPECT_EQ(errorWord(), 0);
    return flags;
}

// Straight chain of unit steps, length 2.5: vertices 1 and 2 lie within 2.5
// of vertex 0, vertex 3 (at 3) is kept and starts the next tunnel, which
// takes vertex 4; the last vertex is never written. A width of 0 takes nothing.
// On the bent chain vertex 2 alone lies 0.383 from the axis 0 -> 3
// (|3 * 0.2 - 0.9 * 2| / sqrt(9.81)), but the dropped vertex 1 lies 0.575 from
// it, beyond half the width 0.5: vertex 2 is kept; the tunnel 2 -> 4 takes 3.
TEST(Tunnel, DroppedVerticesByLengthAndWidth)
{
    const std::vector<dpoint3d> line{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}, {5, 0, 0}};
    const std::vector<dpoint3d> bent{{0, 0, 0}, {1, -0.3, 0}, {2, 0.2, 0}, {3, 0.9, 0}, {4, 0.9, 0}};
    EXPECT_EQ(tunnelFlags(line, 1.0, 2.5, TESSAR_TUNNEL_DISTANCE), (std::vector<int32_t>{0, 1, 1, 0, 1, 0}));
    EXPECT_EQ(tunnelFlags(line, 0.0, 2.5, TESSAR_TUNNEL_DISTANCE), (std::vector<int32_t>(6, 0)));
    EXPECT_EQ(tunnelFlags(bent, 1.0, 100.0, TESSAR_TUNNEL_DISTANCE), (std::vector<int32_t>{0, 1, 0, 1, 0}));
}

// The middle vertex lies 0.3 above the axis (0,0,0) -> (3,4,0), direction
// (0.6, 0.8, 0): measures 0.3, 0.3 / 0.8 = 0.375 and 0.3 / 0.6 = 0.5. Along
// an axis up z, a y or x component of 0 makes the divided measure 0.
TEST(Tunnel, MeasureAcrossByMode)
{
    const std::vector<dpoint3d> slanted{{0, 0, 0}, {1.5, 2, 0.3}, {3, 4, 0}},
        upright{{0, 0, 0}, {1, 0, 2}, {0, 0, 5}};
    // clang-format off
    struct { const std::vector<dpoint3d> *chain; double width; int32_t mode, flag; } rows[] = {
        {&slanted, 0.8, 0, 1},  {&slanted, 0.8, 1, 1}, {&slanted, 0.8, 2, 0},  {&slanted, 0.7, 0, 1},
        {&slanted, 0.7, 1, 0},  {&slanted, 0.5, 0, 0}, {&upright, 0.01, 0, 0}, {&upright, 0.01, 1, 1},
        {&upright, 0.01, 2, 1}, {&slanted, 0.8, 5, 1},
    };
    // clang-format on
    for (const auto &r : rows)
        EXPECT_EQ(tunnelFlags(*r.chain, r.width, 10.0, r.mode)[1], r.flag) << r.width << " mode " << r.mode;
}

// Equal vectors share their joint (n vertices); different ones are joined by
// a connecting segment. A table already held fails the call.
TEST(ComplexTranslation, JointsByVector)
{
    const Profile pts{{0, 0}, {1, 0}, {2, 1}};
    const Profile same{{0, 1}, {0, 1}}, apart{{0, 1}, {0, 2}};
    dpoint2d *out = nullptr;
    int32_t count = -1;
    forceFailure();
    UTMAT_TranslationComplexePolyligne(pts.data(), same.data(), 3, 1e-4, &out, &count);
    EXPECT_EQ(errorWord(), 0);
    expectPolyline(out, count, {{0, 1}, {1, 1}, {2, 2}});
    UTMAT_TranslationComplexePolyligne(pts.data(), apart.data(), 3, 1e-4, &out, &count);
    EXPECT_EQ(errorWord(), kFail);
    release(out);
    UTMAT_TranslationComplexePolyligne(pts.data(), apart.data(), 3, 1e-4, &out, &count);
    expectPolyline(out, count, {{0, 1}, {1, 1}, {1, 2}, {2, 3}});
    release(out);
}

struct Offset {
    dpoint2d *points = nullptr;
    void *attributes = nullptr;
    int32_t count = -1;
    Offset(Profile &pts, const std::vector<double> &thick, const int32_t *records = nullptr)
    {
        forceFailure();
        UTMAT_TranslationPolyligneParEpaisseurs(pts.data(), records, sizeof(int32_t), thick.data(),
                                                int32_t(pts.size()), 1e-4, &points,
                                                records ? &attributes : nullptr, &count);
    }
    const int32_t *records() const { return static_cast<const int32_t *>(attributes); }
    ~Offset() { release(points), release(attributes); }
};

// Thickness 1 under a crest whose short top (10..10.5 at 10) is cut away:
// the lines y = x - sqrt2 and y = 20.5 - sqrt2 - x meet at x = 10.25; the
// closing level of the last vertex cuts the last line at x = 20.5 - sqrt2.
// The joint carries the record of the segment that made it; the end vertex
// carries segment 0's on purpose.
TEST(ThicknessOffset, PavementLayerUnderACrest)
{
    const double r2 = std::sqrt(2.0);
    Profile crest{{0, 0}, {10, 10}, {10.5, 10}, {20.5, 0}};
    const int32_t records[] = {100, 101, 102};
    Offset o(crest, {1, 1, 1}, records);
    EXPECT_EQ(errorWord(), 0);
    expectPolyline(o.points, o.count, {{0, -r2}, {10.25, 10.25 - r2}, {20.5 - r2, 0}});
    ASSERT_EQ(o.count, 3);
    EXPECT_EQ(std::vector<int32_t>(o.records(), o.records() + 3), (std::vector<int32_t>{100, 102, 100}));

    // Run backward, the same profile gives the mirrored result and is left as it was.
    Profile mirrored{{-20.5, 0}, {-10.5, 10}, {-10, 10}, {0, 0}};
    Profile backward{{20.5, 0}, {10.5, 10}, {10, 10}, {0, 0}};
    const Profile before = backward;
    Offset forward(mirrored, {1, 1, 1}), back(backward, {1, 1, 1});
    ASSERT_EQ(back.count, forward.count);
    ASSERT_GE(back.count, 2);
    for (int32_t k = 0; k < back.count; ++k) {
        EXPECT_EQ(back.points[k].x, -forward.points[k].x);
        EXPECT_EQ(back.points[k].y, forward.points[k].y);
    }
    for (size_t k = 0; k < before.size(); ++k)
        EXPECT_EQ(backward[k].x, before[k].x) << k;
}

// Rows: flat, a convex bend (lines y = -1 and y = -sqrt2 - (x - 10) meet at
// x = 11 - sqrt2, the level -10 cuts at 20 - sqrt2), and a thickness change
// on collinear segments (a vertical jump at x = 5). A zero-length segment
// fails in the line primitive, and a backward input stays negated on that path.
TEST(ThicknessOffset, JointsAlongACrossSection)
{
    const double r2 = std::sqrt(2.0);
    // clang-format off
    struct { Profile pts; std::vector<double> thick; Profile want; } rows[] = {
        {{{0, 0}, {10, 0}}, {1}, {{0, -1}, {10, -1}}},
        {{{0, 0}, {10, 0}, {20, -10}}, {1, 1}, {{0, -1}, {11 - r2, -1}, {20 - r2, -10}}},
        {{{0, 0}, {5, 0}, {10, 0}}, {1, 2}, {{0, -1}, {5, -1}, {5, -2}, {10, -2}}},
    };
    // clang-format on
    for (auto &r : rows) {
        Offset o(r.pts, r.thick);
        EXPECT_EQ(errorWord(), 0);
        expectPolyline(o.points, o.count, r.want);
    }
    Profile pts{{10, 0}, {5, 0}, {5, 0}};
    Offset o(pts, {1, 1});
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_EQ(pts[0].x, -10.0);
}

}  // namespace
