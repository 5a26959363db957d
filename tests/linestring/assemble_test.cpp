// Assembly of strings: loose lines joined into chains, whole strings
// connected into the shortest walk whose connectors cross nothing, chains
// merged into one list, the status values, the debug log line, and array
// ownership (checked by the address sanitizer run). Values worked by hand.
#include <tessar/linestring.h>
#include <tessar/memory.h>
#include <tessar/point.h>
#include <tessar/system.h>

#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
const double kNaN = std::numeric_limits<double>::quiet_NaN();

using Points = std::vector<dpoint3d>;
using Entries = std::vector<std::pair<int32_t, int32_t>>;  // (line index, reversed)

tsLine line(dpoint3d p, dpoint3d q)
{
    tsLine l{};
    tsLine_createBy2points(&l, &p, &q);
    return l;
}

std::vector<tsJoinedLine> elements(const tsLinkedList *list)
{
    std::vector<tsJoinedLine> all(tsLinkedList_size(list));
    for (size_t i = 0; i < all.size(); ++i)
        tsLinkedList_getValueByIndex(list, &all[i], static_cast<int32_t>(i));
    return all;
}

Entries entries(const tsLinkedList *list)
{
    Entries out;
    for (const tsJoinedLine &e : elements(list))
        out.emplace_back(e.lineIndex, e.reversed);
    return out;
}

// Checks the plan end points of a line against {sx, sy, ex, ey}.
void expectEnds(const tsLine &l, std::vector<double> want)
{
    dpoint3d s{}, e{};
    tsLine_getEndPoints(&l, &s, &e);
    const double got[] = {s.x, s.y, e.x, e.y};
    for (size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(got[i], want[i], 1e-9) << i;
}

// Joins the lines; the lists and their array are released here.
std::vector<Entries> join(const std::vector<tsLine> &lines, double tol,
                          std::vector<std::vector<tsJoinedLine>> *all = nullptr)
{
    int32_t count = -1;
    tsLinkedList **lists = nullptr;
    EXPECT_EQ(tsJoinLines_linesDline3d(static_cast<int32_t>(lines.size()), lines.data(), tol, &count, &lists),
              0);
    std::vector<Entries> out;
    for (int32_t i = 0; i < count; ++i) {
        out.push_back(entries(lists[i]));
        if (all) all->push_back(elements(lists[i]));
        tsLinkedList_destroy(&lists[i]);
    }
    tsMem_free(lists);
    return out;
}

/* ---- Joining ---- */

TEST(JoinLines, SurveyLinesInAnyOrderAndDirection)
{
    // A kerb from (30, 0) back to (0, 0) in pieces 1 (turned), 0, 2 (turned),
    // gaps 0.05 and 0.02 within tol; line 4 branches 0.05 from (10, 0) but
    // lines 0 and 2, 0.02 apart, are each other's nearest; line 5 starts 0.5
    // beyond the end, line 3 is far. The chain begins at the free end 1e; the
    // free lines follow in the order of their first sorted end: 4, 5, 3.
    const std::vector<tsLine> lines = {line({20, 0, 1}, {10, 0, 1}),     line({20.05, 0, 1}, {30, 0, 1}),
                                       line({0, 0, 1}, {10.02, 0, 1}),   line({100, 50, 0}, {110, 50, 0}),
                                       line({10, 0.05, 1}, {10, 10, 1}), line({30.5, 0, 1}, {40, 0, 1})};
    std::vector<std::vector<tsJoinedLine>> all;
    EXPECT_EQ(join(lines, 0.1, &all),
              (std::vector<Entries>{{{1, 1}, {0, 0}, {2, 1}}, {{4, 0}}, {{5, 0}}, {{3, 0}}}));
    ASSERT_EQ(all[0].size(), 3u);
    expectEnds(all[0][0].line, {30, 0, 20.05, 0});
    expectEnds(all[0][2].line, {10.02, 0, 0, 0});

    // Called again with the array held: it is freed (the lists stay ours).
    int32_t count = 0;
    tsLinkedList **lists = nullptr;
    ASSERT_EQ(tsJoinLines_linesDline3d(2, lines.data(), 0.1, &count, &lists), 0);
    std::vector<tsLinkedList *> first(lists, lists + count);
    ASSERT_EQ(tsJoinLines_linesDline3d(1, lines.data(), 0.1, &count, &lists), 0);
    EXPECT_EQ(count, 1);
    first.push_back(lists[0]);
    for (tsLinkedList *&list : first)
        tsLinkedList_destroy(&list);
    tsMem_free(lists);
}

TEST(JoinLines, ChainShapes)
{
    const tsLine unlevelled{{10, 5, kNaN}, {0, 1, 0}, 10};
    const std::vector<std::tuple<std::vector<tsLine>, double, std::vector<Entries>>> rows = {
        // Both lines run west: the chain of reversed lines is turned round.
        {{line({10, 0, 0}, {0, 0, 0}), line({20, 0, 0}, {10, 0, 0})}, 0.1, {{{1, 0}, {0, 0}}}},
        {{line({0, 0, 0}, {1, 1, 1})}, 0.1, {{{0, 0}}}},  // a single line
        // A square, lines 1 and 3 against the ring; it begins at the end sorted first.
        {{line({0, 0, 0}, {10, 0, 0}), line({10, 10, 0}, {10, 0, 0}), line({10, 10, 0}, {0, 10, 0}),
          line({0, 0, 0}, {0, 10, 0})},
         0.1,
         {{{0, 0}, {1, 1}, {2, 0}, {3, 1}}}},
        {{line({0, 0, 0}, {1, 0, 0}), line({1, 0, 0}, {2, 0, 0})}, -1.0, {{{0, 0}, {1, 0}}}},  // tol < 0 is 0
        // sqrt(dz dx^2 + dy^2 + dx^2) from (10, 0, 0) to (10.6, 0, 0.5) is
        // sqrt(-0.18 + 0.36) = 0.424, back sqrt(0.18 + 0.36) = 0.735: linked
        // within 0.75 (3-D 0.781 would not be), not within 0.7 (plan 0.6 would).
        {{line({0, 0, 0}, {10, 0, 0}), line({10.6, 0, 0.5}, {20, 0, 0.5})}, 0.75, {{{0, 0}, {1, 0}}}},
        {{line({0, 0, 0}, {10, 0, 0}), line({10.6, 0, 0.5}, {20, 0, 0.5})}, 0.7, {{{0, 0}}, {{1, 0}}}},
        // No level: the measure is no number both ways and passes; the later
        // end (10, 15) becomes best and links, with a connector (gap 15 > tol).
        {{line({0, 0, 0}, {10, 0, 0}), unlevelled}, 1.0, {{{0, 0}, {-1, 0}, {1, 1}}}},
    };
    int row = 0;
    for (const auto &[lines, tol, lists] : rows) {
        SCOPED_TRACE(row++);
        EXPECT_EQ(join(lines, tol), lists);
    }
}

TEST(JoinLines, BadArgumentsFreeAndClearTheOutputs)
{
    const tsLine l = line({0, 0, 0}, {1, 0, 0});
    for (const auto &[n, lines] : {std::pair{0, &l}, std::pair{1, static_cast<const tsLine *>(nullptr)}}) {
        int32_t count = 7;
        auto **held = static_cast<tsLinkedList **>(tsMem_malloc(sizeof(tsLinkedList *)));
        EXPECT_EQ(tsJoinLines_linesDline3d(n, lines, 0.1, &count, &held), kFail);
        EXPECT_EQ(held, nullptr);
        EXPECT_EQ(count, 0);
    }
}

/* ---- Connecting strings ---- */

struct Connected {
    int32_t result, status, closed;
    double length;
    Points points;
    std::vector<int32_t> order;
    bool pointsAllocated;
};

// Connects copies of the strings; the outputs start out holding library
// arrays, which the call frees, and are released here.
Connected connect(std::vector<Points> strings)
{
    std::vector<tsLineString> records;
    std::vector<tsLineString *> pointers;
    for (Points &s : strings)
        records.push_back({s.data(), static_cast<int32_t>(s.size())});
    for (tsLineString &r : records)
        pointers.push_back(&r);
    Connected c{};
    auto *points = static_cast<dpoint3d *>(tsMem_malloc(sizeof(dpoint3d)));
    auto *order = static_cast<int32_t *>(tsMem_malloc(sizeof(int32_t)));
    int32_t pointCount = -1, orderCount = -1;
    c.result =
        tsConnectLines_dpoint3dLineStrings(pointers.data(), static_cast<int32_t>(pointers.size()), &c.status,
                                           &c.closed, &c.length, &points, &pointCount, &order, &orderCount);
    c.pointsAllocated = points != nullptr;
    if (points) c.points.assign(points, points + pointCount);
    if (order) c.order.assign(order, order + orderCount);
    EXPECT_EQ(order == nullptr, orderCount == 0);
    tsMem_free(points);
    tsMem_free(order);
    return c;
}

// Three parallel strings 2 apart, 10 long, ends numbered 0 (0, 0), 1 (10,
// 0), 2 (0, 2), 3 (10, 2), 4 (0, 4), 5 (10, 4).
const std::vector<Points> kThreeParallel = {
    {{0, 0, 1}, {10, 0, 2}}, {{0, 2, 3}, {10, 2, 4}}, {{0, 4, 5}, {10, 4, 6}}};

TEST(ConnectStrings, Walks)
{
    const std::vector<std::tuple<std::vector<Points>, std::vector<int32_t>, double, int32_t, Points>> rows = {
        // From end 0, the leftmost with a connector: string 0 walked into (0,
        // 0), string 1 entered there: 10 + 5 + 10. The rectangle could close.
        {{{{0, 0, 0}, {5, 0, 0}, {10, 0, 0}}, {{0, 5, 1}, {10, 5, 1}}},
         {1, 2},
         25.0,
         1,
         {{10, 0, 0}, {5, 0, 0}, {0, 0, 0}, {0, 5, 1}, {10, 5, 1}}},
        // The zigzag 10 + 2 + 10 + 2 + 10: diagonals across the middle string
        // and the closing connector from (0, 4) to (10, 0) are refused.
        {kThreeParallel,
         {1, 2, 5},
         34.0,
         0,
         {{10, 0, 2}, {0, 0, 1}, {0, 2, 3}, {10, 2, 4}, {10, 4, 6}, {0, 4, 5}}},
        // A lone U: the connector between its ends crosses nothing; walked
        // backward into its start end, and it could close.
        {{{{0, 0, 0}, {0, -5, 0}, {10, -5, 0}, {10, 0, 0}}},
         {1},
         20.0,
         1,
         {{10, 0, 0}, {10, -5, 0}, {0, -5, 0}, {0, 0, 0}}},
    };
    for (const auto &[strings, order, length, closed, points] : rows) {
        const Connected c = connect(strings);
        EXPECT_EQ(c.result, 0);
        EXPECT_EQ(c.status, 0);
        EXPECT_EQ(c.order, order);
        EXPECT_DOUBLE_EQ(c.length, length);
        EXPECT_EQ(c.closed, closed);
        ASSERT_EQ(c.points.size(), points.size());
        for (size_t i = 0; i < points.size(); ++i)
            EXPECT_TRUE(c.points[i].x == points[i].x && c.points[i].y == points[i].y &&
                        c.points[i].z == points[i].z);
    }
}

TEST(ConnectStrings, StatusValues)
{
    const std::vector<std::tuple<std::vector<Points>, int32_t, int32_t, bool>> rows = {
        // Strings cross; repeated points go, leaving no ends.
        {{{{0, 0, 0}, {10, 10, 0}}, {{0, 10, 0}, {10, 0, 0}}}, 0, 1, false},
        {{{{3, 3, 0}, {3, 3, 1}}}, 0, 2, false},
        // A wall at y = 5 refuses every connector between the strings below
        // and above it; its left end starts the search, and no string can
        // follow it: no walk, and an empty points array.
        {{{{0, 0, 0}, {10, 0, 0}}, {{-5, 5, 0}, {15, 5, 0}}, {{0, 10, 0}, {10, 10, 0}}}, 0, 0, true},
        {{}, kFail, 0, false},  // no strings
    };
    int row = 0;
    for (const auto &[strings, result, status, pointsAllocated] : rows) {
        SCOPED_TRACE(row++);
        const Connected c = connect(strings);
        EXPECT_EQ(c.result, result);
        EXPECT_EQ(c.status, status);
        EXPECT_EQ(c.pointsAllocated, pointsAllocated);
        EXPECT_TRUE(c.points.empty());
        EXPECT_TRUE(c.order.empty());
        EXPECT_EQ(c.length, 0.0);
    }
}

TEST(ConnectStrings, FirstWalkFoundGoesToTheLog)
{
    // From end 0 the first complete walk takes the first edges: (0, 0) to
    // (0, 2), then (10, 2) to (0, 4); the shorter (10, 2) to (10, 4) is the result.
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("assemble_" + std::to_string(::getpid()) + ".log");
    ASSERT_EQ(tsLogFile_open(path.c_str()), 0);
    const Connected c = connect(kThreeParallel);
    tsLogFile_close();
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    std::filesystem::remove(path);
    EXPECT_EQ(text.str(), "Line[   0] **    1\nLine[   1] **    2\nLine[   2] **    4\n");
    EXPECT_EQ(c.order, (std::vector<int32_t>{1, 2, 5}));
}

/* ---- Connecting chains ---- */

TEST(ConnectChains, JoinedSurveyLinesMergedIntoOneList)
{
    // Chains: lines 0 and 1 turned ((0, 0) to (10, 0)), line 2 ((0, 2) to
    // (10, 2)), line 3 ((10, 4) to (0, 4)): the zigzag, order 1, 2, 4, chain
    // 0 backward (lines turned again, flags flipped), connectors between.
    const std::vector<tsLine> lines = {line({0, 0, 0}, {5, 0, 0}), line({10, 0, 0}, {5, 0, 0}),
                                       line({0, 2, 0}, {10, 2, 0}), line({10, 4, 0}, {0, 4, 0})};
    int32_t count = 0;
    tsLinkedList **lists = nullptr;
    ASSERT_EQ(tsJoinLines_linesDline3d(4, lines.data(), 0.1, &count, &lists), 0);
    ASSERT_EQ(count, 3);
    tsLinkedList *merged = nullptr;
    int32_t status = -1, closed = -1;
    double length = -1;
    ASSERT_EQ(
        tsConnectLines_dline3dAssembleLinkedListLineStrings(lists, 3, &merged, &status, &closed, &length), 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(closed, 0);
    EXPECT_DOUBLE_EQ(length, 34.0);
    EXPECT_EQ(entries(merged), (Entries{{1, 0}, {0, 1}, {-1, 0}, {2, 0}, {-1, 0}, {3, 0}}));
    const std::vector<tsJoinedLine> walk = elements(merged);
    expectEnds(walk[0].line, {10, 0, 5, 0});
    expectEnds(walk[1].line, {5, 0, 0, 0});
    expectEnds(walk[2].line, {0, 0, 0, 2});
    expectEnds(walk[4].line, {10, 2, 10, 4});
    // A result list held on entry is refused and left alone.
    EXPECT_EQ(
        tsConnectLines_dline3dAssembleLinkedListLineStrings(lists, 3, &merged, &status, &closed, &length),
        kFail);
    EXPECT_EQ(status, 2);
    EXPECT_EQ(tsLinkedList_size(merged), 6u);
    tsLinkedList_destroy(&merged);
    for (int32_t i = 0; i < count; ++i)
        tsLinkedList_destroy(&lists[i]);
    tsMem_free(lists);
}

TEST(ConnectChains, BadListsAndCrossingChains)
{
    tsLinkedList *a = nullptr, *b = nullptr, *empty = nullptr;
    for (tsLinkedList **list : {&a, &b, &empty})
        tsLinkedList_create(list, sizeof(tsJoinedLine));
    const tsJoinedLine first{0, 0, line({0, 0, 0}, {10, 10, 0})}, second{1, 0, line({0, 10, 0}, {10, 0, 0})};
    tsLinkedList_pushBack(a, &first);
    tsLinkedList_pushBack(b, &second);
    // One chain, an empty chain, two crossing chains.
    const std::vector<std::tuple<std::vector<tsLinkedList *>, int32_t, int32_t>> rows = {
        {{a}, kFail, 0}, {{a, empty}, kFail, 2}, {{a, b}, 0, 1}};
    for (const auto &[lists, result, wantStatus] : rows) {
        tsLinkedList *merged = nullptr;
        int32_t status = -1, closed = -1;
        double length = -1;
        EXPECT_EQ(tsConnectLines_dline3dAssembleLinkedListLineStrings(
                      lists.data(), static_cast<int32_t>(lists.size()), &merged, &status, &closed, &length),
                  result);
        EXPECT_EQ(status, wantStatus);
        EXPECT_EQ(merged, nullptr);
    }
    for (tsLinkedList **list : {&a, &b, &empty})
        tsLinkedList_destroy(list);
}

}  // namespace
