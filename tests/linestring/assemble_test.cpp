// Assembly of strings: loose survey lines joined into chains (any order and
// direction, gaps within and beyond the tolerance, a branch, a closed ring,
// the height-weighted match measure), whole strings connected into the
// shortest walk whose connectors cross nothing, chains of lines merged into
// one list, the status values, the debug line in the log file, and who owns
// which array or list (the suite runs clean under the address sanitizer, so
// a leak or a double free fails it). Expected values are worked by hand
// beside each case.
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
#include <utility>
#include <vector>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kEps = 1e-9;
const double kNaN = std::numeric_limits<double>::quiet_NaN();

using Points = std::vector<dpoint3d>;
// (line index, reversed) of each element of a list.
using Entries = std::vector<std::pair<int32_t, int32_t>>;

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

void expectLine(const tsLine &l, dpoint3d start, dpoint3d end)
{
    dpoint3d s{}, e{};
    tsLine_getEndPoints(&l, &s, &e);
    EXPECT_NEAR(s.x, start.x, kEps);
    EXPECT_NEAR(s.y, start.y, kEps);
    EXPECT_NEAR(e.x, end.x, kEps);
    EXPECT_NEAR(e.y, end.y, kEps);
}

// Joins the lines and gives the entries of each list; the lists and their
// array are released here.
std::vector<Entries> join(const std::vector<tsLine> &lines, double tol)
{
    int32_t count = -1;
    tsLinkedList **lists = nullptr;
    EXPECT_EQ(tsJoinLines_linesDline3d(static_cast<int32_t>(lines.size()), lines.data(), tol, &count, &lists),
              0);
    std::vector<Entries> out;
    for (int32_t i = 0; i < count; ++i) {
        out.push_back(entries(lists[i]));
        tsLinkedList_destroy(&lists[i]);
    }
    tsMem_free(lists);
    return out;
}

/* ---- Joining ---- */

TEST(JoinLines, SurveyLinesInAnyOrderAndDirection)
{
    // A kerb line from (30, 0) back to (0, 0) given as pieces: line 1 runs
    // east and is turned, line 0 runs west, line 2 runs east and is turned.
    // The gap of 0.05 between lines 1 and 0 and of 0.02 between lines 0 and
    // 2 are within tol and stay. At (10, 0) a branch (line 4) starts 0.05
    // away: the ends of lines 0 and 2, 0.02 apart, are each other's nearest
    // and join; line 4 stays alone. Line 5 begins 0.5 beyond the kerb's end,
    // beyond tol, and line 3 lies far away. Ends in sorted order: 2s, 0e, 4s,
    // 4e, 2e, 0s, 1s, 1e, 5s, 5e, 3s, 3e; the first linked end, 0e, walks back
    // through 0s and 1s to the free end 1e, where the chain begins. The free
    // lines follow in the order of their first end: 4, 5, 3.
    const std::vector<tsLine> lines = {line({20, 0, 1}, {10, 0, 1}),     line({20.05, 0, 1}, {30, 0, 1}),
                                       line({0, 0, 1}, {10.02, 0, 1}),   line({100, 50, 0}, {110, 50, 0}),
                                       line({10, 0.05, 1}, {10, 10, 1}), line({30.5, 0, 1}, {40, 0, 1})};
    const std::vector<Entries> expected = {{{1, 1}, {0, 0}, {2, 1}}, {{4, 0}}, {{5, 0}}, {{3, 0}}};
    EXPECT_EQ(join(lines, 0.1), expected);

    int32_t count = 0;
    tsLinkedList **lists = nullptr;
    ASSERT_EQ(tsJoinLines_linesDline3d(6, lines.data(), 0.1, &count, &lists), 0);
    const std::vector<tsJoinedLine> kerb = elements(lists[0]);
    expectLine(kerb[0].line, {30, 0, 1}, {20.05, 0, 1});
    expectLine(kerb[2].line, {10.02, 0, 1}, {0, 0, 1});
    // Called again with the array held: it is freed (the lists stay ours).
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
    struct Row {
        const char *name;
        std::vector<tsLine> lines;
        double tol;
        std::vector<Entries> lists;
    };
    const std::vector<Row> rows = {
        // Both lines run west: the chain of reversed lines is turned round.
        {"all reversed",
         {line({10, 0, 0}, {0, 0, 0}), line({20, 0, 0}, {10, 0, 0})},
         0.1,
         {{{1, 0}, {0, 0}}}},
        {"single line", {line({0, 0, 0}, {1, 1, 1})}, 0.1, {{{0, 0}}}},
        // A square with lines 1 and 3 against the ring; it closes and begins
        // at the end sorted first, the start of line 0 at (0, 0).
        {"closed ring",
         {line({0, 0, 0}, {10, 0, 0}), line({10, 10, 0}, {10, 0, 0}), line({10, 10, 0}, {0, 10, 0}),
          line({0, 0, 0}, {0, 10, 0})},
         0.1,
         {{{0, 0}, {1, 1}, {2, 0}, {3, 1}}}},
        // A negative tol is 0: exactly meeting ends still join.
        {"negative tol", {line({0, 0, 0}, {1, 0, 0}), line({1, 0, 0}, {2, 0, 0})}, -1.0, {{{0, 0}, {1, 0}}}},
        // The measure sqrt(dz dx^2 + dy^2 + dx^2) from the end (10, 0, 0) to
        // (10.6, 0, 0.5) is sqrt(-0.18 + 0.36) = 0.424, and back it is
        // sqrt(0.18 + 0.36) = 0.735: linked within 0.75, where the 3-D
        // distance 0.781 would not be; not within 0.7, where the plan
        // distance 0.6 would be.
        {"measure within",
         {line({0, 0, 0}, {10, 0, 0}), line({10.6, 0, 0.5}, {20, 0, 0.5})},
         0.75,
         {{{0, 0}, {1, 0}}}},
        {"measure beyond",
         {line({0, 0, 0}, {10, 0, 0}), line({10.6, 0, 0.5}, {20, 0, 0.5})},
         0.7,
         {{{0, 0}}, {{1, 0}}}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(join(row.lines, row.tol), row.lists);
    }
}

TEST(JoinLines, MeasureOfNoNumberLinksEndsBeyondTolWithAConnector)
{
    // Line 1 has no level (NaN z) and stands at x = 10 like the end of line
    // 0: the measure is no number both ways and passes. Of its two ends the
    // later one, (10, 15), replaces (10, 5) as best, and they link; the plan
    // gap of 15 exceeds tol, so a connector goes between.
    const tsLine level = line({0, 0, 0}, {10, 0, 0});
    const tsLine unlevelled{{10, 5, kNaN}, {0, 1, 0}, 10};
    EXPECT_EQ(join({level, unlevelled}, 1.0), (std::vector<Entries>{{{0, 0}, {-1, 0}, {1, 1}}}));
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
    struct Row {
        const char *name;
        std::vector<Points> strings;
        std::vector<int32_t> order;
        double length;
        int32_t closed;
        Points points;
    };
    const std::vector<Row> rows = {
        // The search starts at end 0, the leftmost with a connector, and
        // leaves from it: string 0 is walked into (0, 0), and string 1
        // entered there: 10 + 5 + 10. The rectangle could close.
        {"two parallel",
         {{{0, 0, 0}, {5, 0, 0}, {10, 0, 0}}, {{0, 5, 1}, {10, 5, 1}}},
         {1, 2},
         25.0,
         1,
         {{10, 0, 0}, {5, 0, 0}, {0, 0, 0}, {0, 5, 1}, {10, 5, 1}}},
        // The zigzag 10 + 2 + 10 + 2 + 10. Diagonals across the middle string
        // are refused, and so is the closing connector from (0, 4) to (10, 0).
        {"three parallel",
         kThreeParallel,
         {1, 2, 5},
         34.0,
         0,
         {{10, 0, 2}, {0, 0, 1}, {0, 2, 3}, {10, 2, 4}, {10, 4, 6}, {0, 4, 5}}},
        // A lone U: the connector between its ends crosses nothing, so it is
        // walked (backward, into its start end) and could close.
        {"single U",
         {{{0, 0, 0}, {0, -5, 0}, {10, -5, 0}, {10, 0, 0}}},
         {1},
         20.0,
         1,
         {{10, 0, 0}, {10, -5, 0}, {0, -5, 0}, {0, 0, 0}}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const Connected c = connect(row.strings);
        EXPECT_EQ(c.result, 0);
        EXPECT_EQ(c.status, 0);
        EXPECT_EQ(c.order, row.order);
        EXPECT_DOUBLE_EQ(c.length, row.length);
        EXPECT_EQ(c.closed, row.closed);
        ASSERT_EQ(c.points.size(), row.points.size());
        for (size_t i = 0; i < row.points.size(); ++i) {
            EXPECT_EQ(c.points[i].x, row.points[i].x);
            EXPECT_EQ(c.points[i].y, row.points[i].y);
            EXPECT_EQ(c.points[i].z, row.points[i].z);
        }
    }
}

TEST(ConnectStrings, StatusValues)
{
    struct Row {
        const char *name;
        std::vector<Points> strings;
        int32_t result, status;
        bool pointsAllocated;
    };
    const std::vector<Row> rows = {
        {"strings cross", {{{0, 0, 0}, {10, 10, 0}}, {{0, 10, 0}, {10, 0, 0}}}, 0, 1, false},
        // Repeated points go, leaving a string of length 0 with no ends.
        {"no ends", {{{3, 3, 0}, {3, 3, 1}}}, 0, 2, false},
        // A wall at y = 5 refuses every connector between the strings below
        // and above it. The wall's left end starts the search, so the wall
        // comes first either way, and neither string can follow the other:
        // no walk, and an empty points array.
        {"no walk",
         {{{0, 0, 0}, {10, 0, 0}}, {{-5, 5, 0}, {15, 5, 0}}, {{0, 10, 0}, {10, 10, 0}}},
         0,
         0,
         true},
        {"no strings", {}, kFail, 0, false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const Connected c = connect(row.strings);
        EXPECT_EQ(c.result, row.result);
        EXPECT_EQ(c.status, row.status);
        EXPECT_EQ(c.pointsAllocated, row.pointsAllocated);
        EXPECT_TRUE(c.points.empty());
        EXPECT_TRUE(c.order.empty());
        EXPECT_EQ(c.length, 0.0);
    }
}

TEST(ConnectStrings, FirstWalkFoundGoesToTheLog)
{
    // From end 0 the first complete walk takes the first edges: (0, 0) to
    // (0, 2), then (10, 2) to (0, 4); the shorter (10, 2) to (10, 4) comes
    // later and is the result.
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
    // Joining gives chain 0 = line 0, line 1 turned ((0, 0) to (10, 0)),
    // chain 1 = line 2 ((0, 2) to (10, 2)), chain 2 = line 3 ((10, 4) to
    // (0, 4)). Their strings are those of the three parallel strings with
    // the last turned, so the walk is the zigzag, order 1, 2, 4: chain 0
    // backward (lines turned again, flags flipped), a connector up to (0,
    // 2), chain 1, a connector up to (10, 4), chain 2.
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
    expectLine(walk[0].line, {10, 0, 0}, {5, 0, 0});
    expectLine(walk[1].line, {5, 0, 0}, {0, 0, 0});
    expectLine(walk[2].line, {0, 0, 0}, {0, 2, 0});
    expectLine(walk[4].line, {10, 2, 0}, {10, 4, 0});

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
    const tsJoinedLine first{0, 0, line({0, 0, 0}, {10, 10, 0})};
    const tsJoinedLine second{1, 0, line({0, 10, 0}, {10, 0, 0})};
    tsLinkedList_pushBack(a, &first);
    tsLinkedList_pushBack(b, &second);
    struct Row {
        std::vector<tsLinkedList *> lists;
        int32_t result, status;
    };
    const std::vector<Row> rows = {{{a}, kFail, 0}, {{a, empty}, kFail, 2}, {{a, b}, 0, 1}};
    for (const Row &row : rows) {
        tsLinkedList *merged = nullptr;
        int32_t status = -1, closed = -1;
        double length = -1;
        EXPECT_EQ(tsConnectLines_dline3dAssembleLinkedListLineStrings(row.lists.data(),
                                                                      static_cast<int32_t>(row.lists.size()),
                                                                      &merged, &status, &closed, &length),
                  row.result);
        EXPECT_EQ(status, row.status);
        EXPECT_EQ(merged, nullptr);
    }
    for (tsLinkedList **list : {&a, &b, &empty})
        tsLinkedList_destroy(list);
}

}  // namespace
