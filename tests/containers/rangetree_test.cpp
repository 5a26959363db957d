// The range tree over chainage intervals: queries at and between interval
// ends, with and without tolerance, open-sided spans, the printed index, and
// a comparison with the overlap rule worked out below on random layouts.
//
// The overlap rule. Ranges are half-open, [low, high), and the query span is
// the closed [a, b] (point -/+ tolerance, or the widened bounds). The index
// lists a range at its end points in [low, high). A query collects the end
// point at or below a, which holds a range exactly when low <= a < high, and
// every end point in (a, b], of which the range's own low is one when
// a < low <= b. Together: a range is found exactly when low < high,
// low <= b and a < high; an open side drops its condition.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/linkedlist.h>
#include <tessar/rangetree.h>

#if defined(__SANITIZE_ADDRESS__)
#define TESSAR_TEST_LEAK_CHECK 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TESSAR_TEST_LEAK_CHECK 1
#endif
#endif
#if defined(TESSAR_TEST_LEAK_CHECK)
#include <sanitizer/lsan_interface.h>
#endif

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

struct Range {
    double low;
    double high;
};

int32_t readRange(void *range, double *low, double *high)
{
    const auto *r = static_cast<const Range *>(range);
    *low = r->low;
    *high = r->high;
    return 0;
}

// The caller's list of references to its ranges.
struct RangeList {
    std::vector<Range> ranges;
    tsLinkedList *list = nullptr;
    explicit RangeList(std::vector<Range> r) : ranges(std::move(r))
    {
        tsLinkedList_create(&list, sizeof(Range *));
        for (Range &range : ranges) {
            Range *reference = &range;
            tsLinkedList_pushBack(list, &reference);
        }
    }
    RangeList(const RangeList &) = delete;
    RangeList &operator=(const RangeList &) = delete;
    ~RangeList() { tsLinkedList_destroy(&list); }
};

// A range tree over a list. The index's nodes are given up by
// tsRangeTree1D_destroy by design; the leak checker is told not to count
// what the building allocates.
struct Tree {
    tsRangeTree1D *handle = nullptr;
    explicit Tree(const RangeList &ranges)
    {
#if defined(TESSAR_TEST_LEAK_CHECK)
        __lsan::ScopedDisabler givenUp;
#endif
        EXPECT_EQ(tsRangeTree1D_create(&handle, ranges.list, readRange), 0);
    }
    Tree(const Tree &) = delete;
    Tree &operator=(const Tree &) = delete;
    ~Tree()
    {
        if (handle != nullptr) tsRangeTree1D_destroy(&handle);
    }
};

// A result handle that a query must overwrite, with its list or with null.
tsLinkedList *unwritten()
{
    return reinterpret_cast<tsLinkedList *>(std::uintptr_t{8});
}

// The indices (into ranges) of a result list, checking that the list is
// sorted by the references' bytes and without repeats; empty for null.
std::vector<size_t> indicesOf(tsLinkedList *result, const RangeList &ranges)
{
    std::vector<size_t> indices;
    EXPECT_NE(result, unwritten());
    if (result == nullptr || result == unwritten()) return indices;
    EXPECT_GT(tsLinkedList_size(result), 0u);
    std::vector<const Range *> references(tsLinkedList_size(result));
    for (size_t i = 0; i < references.size(); ++i)
        EXPECT_EQ(tsLinkedList_getValueByIndex(result, &references[i], static_cast<int32_t>(i)), 0);
    for (size_t i = 1; i < references.size(); ++i)
        EXPECT_LT(std::memcmp(&references[i - 1], &references[i], sizeof(Range *)), 0) << "order at " << i;
    for (const Range *reference : references)
        indices.push_back(static_cast<size_t>(reference - ranges.ranges.data()));
    std::sort(indices.begin(), indices.end());
    tsLinkedList_destroy(&result);
    return indices;
}

std::vector<size_t> pointQuery(const Tree &tree, const RangeList &ranges, double point, double tolerance)
{
    tsLinkedList *result = unwritten();
    EXPECT_EQ(tsRangeTree1D_getPonctualOverlap(tree.handle, &result, point, tolerance), 0);
    return indicesOf(result, ranges);
}

std::vector<size_t> spanQuery(const Tree &tree, const RangeList &ranges, const double *low,
                              const double *high, double tolerance)
{
    tsLinkedList *result = unwritten();
    EXPECT_EQ(tsRangeTree1D_getRangeOverlap(tree.handle, &result, low, high, tolerance), 0);
    return indicesOf(result, ranges);
}

using Ids = std::vector<size_t>;

TEST(RangeTree, OneRangeAtAndBetweenItsEnds)
{
    RangeList ranges({{10.0, 20.0}});
    Tree tree(ranges);
    // Each row: point, tolerance, found. The range holds 10 but not 20.
    struct Row {
        double point, tolerance;
        bool found;
    } rows[] = {
        {15.0, 0.0, true},                       // through the node 10, the span holding 15
        {10.0, 0.0, true},  {20.0, 0.0, false},  // the node 20 does not list it
        {20.0, 1.0, true},                       // [19, 21] starts in the span of 10
        {9.0, 0.5, false},  {9.0, 1.0, true},    // [8, 10] reaches the node 10
        {25.0, 0.0, false}, {19.999, 0.0, true},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(pointQuery(tree, ranges, row.point, row.tolerance), row.found ? Ids{0} : Ids{})
            << row.point << " +- " << row.tolerance;
    }
}

TEST(RangeTree, ChainageOfAnAlignment)
{
    // The elements of an alignment by chainage, with a speed zone and a
    // bridge over them.
    RangeList ranges({
        {0.0, 250.0},      // 0 straight
        {250.0, 400.0},    // 1 clothoid
        {400.0, 900.0},    // 2 circle
        {900.0, 1050.0},   // 3 clothoid
        {1050.0, 1500.0},  // 4 straight
        {300.0, 1200.0},   // 5 speed zone
        {600.0, 650.0},    // 6 bridge
    });
    Tree tree(ranges);
    // Each row: chainage, tolerance, elements found, from the rule above.
    struct Row {
        double point, tolerance;
        Ids found;
    } points[] = {
        {100.0, 0.0, {0}},       {250.0, 0.0, {1}},       {250.0, 0.5, {0, 1}},
        {625.0, 0.0, {2, 5, 6}}, {650.0, 0.0, {2, 5}},    {600.0, 0.0, {2, 5, 6}},
        {1100.0, 0.0, {4, 5}},   {1200.0, 0.0, {4}},      {1500.0, 0.0, {}},
        {-10.0, 0.0, {}},        {-10.0, 10.0, {0}},      {0.0, 2000.0, {0, 1, 2, 3, 4, 5, 6}},
        {350.0, 0.0, {1, 5}},    {899.9999, 0.0, {2, 5}}, {1050.0, 0.0, {4, 5}},
    };
    for (const Row &row : points)
        EXPECT_EQ(pointQuery(tree, ranges, row.point, row.tolerance), row.found) << row.point;

    // Spans, either side open.
    const double a620 = 620.0, b1000 = 1000.0, b260 = 260.0, a1199 = 1199.0, a1500 = 1500.0;
    EXPECT_EQ(spanQuery(tree, ranges, &a620, &b1000, 0.0), (Ids{2, 3, 5, 6}));
    EXPECT_EQ(spanQuery(tree, ranges, nullptr, &b260, 0.0), (Ids{0, 1}));
    EXPECT_EQ(spanQuery(tree, ranges, &a1199, nullptr, 0.0), (Ids{4, 5}));
    EXPECT_EQ(spanQuery(tree, ranges, nullptr, nullptr, 0.0), (Ids{0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(spanQuery(tree, ranges, &a1500, nullptr, 0.0), Ids{});
    EXPECT_EQ(spanQuery(tree, ranges, &a1500, nullptr, 1.0), Ids{4});   // widened to 1499
    EXPECT_EQ(spanQuery(tree, ranges, nullptr, &b260, -10.5), Ids{0});  // narrowed to 249.5
}

TEST(RangeTree, SharedEndPointsGiveOneNode)
{
    RangeList ranges({{10.0, 20.0}, {20.0, 30.0}, {10.0, 30.0}});
    Tree tree(ranges);
    testing::internal::CaptureStdout();
    EXPECT_EQ(tsRangeTree1D_print(tree.handle), 0);
    const std::string printed = testing::internal::GetCapturedStdout();
    // Three nodes for six ends; a node lists the ranges over the span from it
    // to the next, in the order of the references' bytes.
    const std::string range0 = "range (10.000000,20.000000),\n";
    const std::string range1 = "range (20.000000,30.000000),\n";
    const std::string range2 = "range (10.000000,30.000000),\n";
    const Range *r0 = &ranges.ranges[0], *r1 = &ranges.ranges[1], *r2 = &ranges.ranges[2];
    const bool r0First = std::memcmp(&r0, &r2, sizeof r0) < 0;
    const bool r1First = std::memcmp(&r1, &r2, sizeof r1) < 0;
    const std::string expected = "station = 10.000000\n" + (r0First ? range0 + range2 : range2 + range0) +
                                 "station = 20.000000\n" + (r1First ? range1 + range2 : range2 + range1) +
                                 "station = 30.000000\n";
    EXPECT_EQ(printed, expected);
}

TEST(RangeTree, DegenerateRangesAreNeverFound)
{
    RangeList ranges({{5.0, 5.0}, {8.0, 6.0}, {0.0, 10.0}});
    Tree tree(ranges);
    for (double point : {5.0, 6.0, 7.0, 8.0})
        EXPECT_EQ(pointQuery(tree, ranges, point, 0.5), Ids{2}) << point;
    EXPECT_EQ(spanQuery(tree, ranges, nullptr, nullptr, 0.0), Ids{2});
}

TEST(RangeTree, EmptyListAndBadArguments)
{
    RangeList none({});
    Tree empty(none);
    ASSERT_NE(empty.handle, nullptr);
    EXPECT_EQ(pointQuery(empty, none, 0.0, 100.0), Ids{});
    testing::internal::CaptureStdout();
    EXPECT_EQ(tsRangeTree1D_print(empty.handle), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");

    RangeList ranges({{0.0, 1.0}});
    tsRangeTree1D *held = empty.handle;
    EXPECT_EQ(tsRangeTree1D_create(&held, ranges.list, readRange), kFail);  // the handle must hold null
    EXPECT_EQ(held, empty.handle);
    tsRangeTree1D *fresh = nullptr;
    EXPECT_EQ(tsRangeTree1D_create(nullptr, ranges.list, readRange), kFail);
    EXPECT_EQ(tsRangeTree1D_create(&fresh, nullptr, readRange), kFail);
    EXPECT_EQ(tsRangeTree1D_create(&fresh, ranges.list, nullptr), kFail);
    EXPECT_EQ(fresh, nullptr);

    tsLinkedList *result = nullptr;
    EXPECT_EQ(tsRangeTree1D_getPonctualOverlap(nullptr, &result, 0.0, 0.0), kFail);
    EXPECT_EQ(tsRangeTree1D_getRangeOverlap(nullptr, &result, nullptr, nullptr, 0.0), kFail);
    EXPECT_EQ(tsRangeTree1D_print(nullptr), kFail);
    EXPECT_EQ(tsRangeTree1D_destroy(nullptr), kFail);
    tsRangeTree1D *nothing = nullptr;
    EXPECT_EQ(tsRangeTree1D_destroy(&nothing), kFail);

    // Destroy clears the handle; a second destroy finds nothing to do.
    EXPECT_EQ(tsRangeTree1D_destroy(&empty.handle), 0);
    EXPECT_EQ(empty.handle, nullptr);
    EXPECT_EQ(tsRangeTree1D_destroy(&empty.handle), kFail);
}

TEST(RangeTree, RandomLayoutsFollowTheOverlapRule)
{
    std::mt19937 random(20240611);
    // Chainages on a 10 m grid, so that ends coincide and queries fall on them.
    std::uniform_int_distribution<int> station(0, 200), length(0, 30), coin(0, 3);
    for (int layout = 0; layout < 20; ++layout) {
        std::vector<Range> generated;
        for (int i = 0; i < 150; ++i) {
            const double low = 10.0 * station(random);
            generated.push_back({low, low + 10.0 * length(random)});
        }
        RangeList ranges(generated);
        Tree tree(ranges);
        for (int q = 0; q < 60; ++q) {
            const double a = 10.0 * station(random) + 5.0 * coin(random) - 5.0;
            const double b = a + 10.0 * coin(random);
            const int sides = coin(random);  // 0: both bounds, 1: open low, 2: open high, 3: both
            const bool hasLow = sides == 0 || sides == 2, hasHigh = sides == 0 || sides == 1;
            Ids expected;
            for (size_t i = 0; i < generated.size(); ++i) {
                const Range &r = generated[i];
                if (r.low < r.high && (!hasHigh || r.low <= b) && (!hasLow || a < r.high))
                    expected.push_back(i);
            }
            EXPECT_EQ(spanQuery(tree, ranges, hasLow ? &a : nullptr, hasHigh ? &b : nullptr, 0.0), expected)
                << "layout " << layout << " [" << a << ", " << b << "] sides " << sides;
            if (hasLow && hasHigh && a == b) {
                EXPECT_EQ(pointQuery(tree, ranges, a, 0.0), expected) << a;
            }
        }
    }
}

}  // namespace
