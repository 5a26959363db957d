// The range tree over chainage intervals, checked against the overlap rule: ranges are half-open [low, high),
// a query is the closed [a, b] (point -/+ tolerance, or the widened bounds). The end point at or below a
// lists a range when low <= a < high, and every end point in (a, b] brings in the ranges with a < low <= b;
// so a range is found exactly when low < high, low <= b and a < high, an open side dropping its condition.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
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
using Ids = std::vector<size_t>;

struct Range {
    double low, high;
};

int32_t readRange(void *range, double *low, double *high)
{
    *low = static_cast<const Range *>(range)->low;
    *high = static_cast<const Range *>(range)->high;
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
    ~RangeList() { tsLinkedList_destroy(&list); }
};

// A range tree over a list. Destroy gives up the index's nodes by design: the leak checker skips them.
struct Tree {
    tsRangeTree1D *handle = nullptr;
    explicit Tree(const RangeList &ranges)
    {
#if defined(TESSAR_TEST_LEAK_CHECK)
        __lsan::ScopedDisabler givenUp;
#endif
        EXPECT_EQ(tsRangeTree1D_create(&handle, ranges.list, readRange), 0);
    }
    ~Tree()
    {
        tsRangeTree1D_destroy(&handle);
    }
};

// A result handle that a query must overwrite, with its list or with null.
tsLinkedList *const kUnwritten = reinterpret_cast<tsLinkedList *>(std::uintptr_t{8});

// The indices of a result list (empty for null), checked sorted by the references' bytes, no repeats.
Ids indicesOf(tsLinkedList *result, const RangeList &ranges)
{
    Ids indices;
    EXPECT_NE(result, kUnwritten);
    if (result == nullptr || result == kUnwritten) return indices;
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

Ids pointQuery(const Tree &tree, const RangeList &ranges, double point, double tolerance)
{
    tsLinkedList *result = kUnwritten;
    EXPECT_EQ(tsRangeTree1D_getPonctualOverlap(tree.handle, &result, point, tolerance), 0);
    return indicesOf(result, ranges);
}

Ids spanQuery(const Tree &tree, const RangeList &ranges, const double *low, const double *high,
              double tolerance)
{
    tsLinkedList *result = kUnwritten;
    EXPECT_EQ(tsRangeTree1D_getRangeOverlap(tree.handle, &result, low, high, tolerance), 0);
    return indicesOf(result, ranges);
}

TEST(RangeTree, ChainageOfAnAlignment)
{
    // The elements of an alignment by chainage: 0 straight, 1 clothoid, 2 circle, 3 clothoid, 4 straight;
    // over them 5 a speed zone and 6 a bridge.
    const std::vector<Range> alignment = {
        {0.0, 250.0},     {250.0, 400.0},  {400.0, 900.0}, {900.0, 1050.0},
        {1050.0, 1500.0}, {300.0, 1200.0}, {600.0, 650.0},
    };
    RangeList ranges(alignment);
    Tree tree(ranges);
    // Each row: chainage, tolerance, elements found, from the rule above. At 250 the node 250 does not list
    // element 0: only a tolerance reaches it.
    const struct {
        double point, tolerance;
        Ids found;
    } points[] = {
        {100.0, 0.0, {0}},    {250.0, 0.0, {1}},       {250.0, 0.5, {0, 1}},    {625.0, 0.0, {2, 5, 6}},
        {650.0, 0.0, {2, 5}}, {600.0, 0.0, {2, 5, 6}}, {1100.0, 0.0, {4, 5}},   {1200.0, 0.0, {4}},
        {1500.0, 0.0, {}},    {1499.5, 0.5, {4}},      {-10.0, 0.0, {}},        {-10.0, 10.0, {0}},
        {-10.0, 9.5, {}},     {350.0, 0.0, {1, 5}},    {899.9999, 0.0, {2, 5}}, {1050.0, 0.0, {4, 5}},
    };
    for (const auto &row : points)
        EXPECT_EQ(pointQuery(tree, ranges, row.point, row.tolerance), row.found) << row.point;
    EXPECT_EQ(pointQuery(tree, ranges, 0.0, 2000.0), (Ids{0, 1, 2, 3, 4, 5, 6}));
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
    // Three nodes for six ends; a node lists the ranges over the span from it to the next, in the order of
    // the references' bytes.
    const std::string range[] = {"range (10.000000,20.000000),\n", "range (20.000000,30.000000),\n",
                                 "range (10.000000,30.000000),\n"};
    const Range *r0 = &ranges.ranges[0], *r1 = &ranges.ranges[1], *r2 = &ranges.ranges[2];
    const bool r0First = std::memcmp(&r0, &r2, sizeof r0) < 0, r1First = std::memcmp(&r1, &r2, sizeof r1) < 0;
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "station = 10.000000\n" + (r0First ? range[0] + range[2] : range[2] + range[0]) +
                  "station = 20.000000\n" + (r1First ? range[1] + range[2] : range[2] + range[1]) +
                  "station = 30.000000\n");
}

TEST(RangeTree, EmptyListAndBadArguments)
{
    RangeList none({}), ranges({{0.0, 1.0}});
    Tree empty(none);
    ASSERT_NE(empty.handle, nullptr);
    EXPECT_EQ(pointQuery(empty, none, 0.0, 100.0), Ids{});
    testing::internal::CaptureStdout();
    EXPECT_EQ(tsRangeTree1D_print(empty.handle), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    // A handle already full, null arguments; destroy clears the handle, after which it refuses.
    tsRangeTree1D *const original = empty.handle;
    tsRangeTree1D *held = original, *fresh = nullptr;
    tsLinkedList *result = nullptr;
    EXPECT_EQ((std::vector{tsRangeTree1D_create(&held, ranges.list, readRange),
                           tsRangeTree1D_create(nullptr, ranges.list, readRange),
                           tsRangeTree1D_create(&fresh, nullptr, readRange),
                           tsRangeTree1D_create(&fresh, ranges.list, nullptr),
                           tsRangeTree1D_getPonctualOverlap(nullptr, &result, 0.0, 0.0),
                           tsRangeTree1D_getRangeOverlap(nullptr, &result, nullptr, nullptr, 0.0),
                           tsRangeTree1D_print(nullptr), tsRangeTree1D_destroy(nullptr),
                           tsRangeTree1D_destroy(&fresh), tsRangeTree1D_destroy(&empty.handle),
                           tsRangeTree1D_destroy(&empty.handle)}),
              (std::vector{kFail, kFail, kFail, kFail, kFail, kFail, kFail, kFail, kFail, 0, kFail}));
    EXPECT_EQ(held, original);
    EXPECT_EQ(fresh, nullptr);
    EXPECT_EQ(empty.handle, nullptr);
}

TEST(RangeTree, RandomLayoutsFollowTheOverlapRule)
{
    std::mt19937 random(20240611);
    // Chainages on a 10 m grid, so that ends coincide and queries fall on them; some ranges are empty or
    // inverted, and so never found.
    std::uniform_int_distribution<int> station(0, 200), length(-3, 30), coin(0, 3);
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
