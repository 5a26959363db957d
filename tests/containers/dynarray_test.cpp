// The dynamic array: capacity in blocks derived from the count, insertion
// and deletion at both ends and in the middle against a std::vector, the
// walks and their stop rule, ordered insertion, and the failure values.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/dynarray.h>
#include <tessar/frame.h>
#include <tessar/memory.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// An array owned by the test, destroyed at the end of the scope.
struct Array {
    tsDynArray *handle = nullptr;
    explicit Array(size_t elementSize) { tsDynArray_create(&handle, elementSize); }
    Array(size_t elementSize, int32_t block)
    {
        tsDynArray_createWithMinBlockNumberAllocated(&handle, elementSize, block);
    }
    Array(const Array &) = delete;
    Array &operator=(const Array &) = delete;
    ~Array()
    {
        if (handle != nullptr) tsDynArray_destroy(&handle);
    }
    operator tsDynArray *() const { return handle; }
};

void appendInt(tsDynArray *array, int32_t value)
{
    ASSERT_EQ(tsDynArray_insertAndSetElement(array, -1, &value), 0);
}

std::vector<int32_t> intsOf(tsDynArray *array)
{
    std::vector<int32_t> values(static_cast<size_t>(tsDynArray_getSize(array)));
    for (size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(tsDynArray_getElement(array, static_cast<int32_t>(i), &values[i]), 0);
    return values;
}

// The usable size of the array's block, in bytes.
size_t blockBytes(tsDynArray *array)
{
    size_t bytes = 0;
    EXPECT_EQ(tsMem_getSize(tsDynArray_getElementAdd(array, 0), &bytes), 0);
    return bytes;
}

int32_t compareInts(const void *a, const void *b)
{
    const int32_t x = *static_cast<const int32_t *>(a), y = *static_cast<const int32_t *>(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

// Says "after" with 2 instead of 1: never an insertion point.
int32_t compareIntsSayingTwo(const void *a, const void *b)
{
    const int32_t order = compareInts(a, b);
    return order == 1 ? 2 : order;
}

TEST(DynArray, CapacityFollowsTheBlockNumber)
{
    // Each row: element size, block number (0: the default), count reached,
    // and the capacity in elements the block must hold: 1 for one element,
    // otherwise the count rounded up to whole blocks. The heap may round a
    // block up by less than one 16-byte granule plus its header, so the
    // usable size lies in [capacity * size, capacity * size + 24).
    struct Row {
        size_t size;
        int32_t block;
        int32_t count;
        size_t capacity;
    };
    const Row rows[] = {
        {200, 0, 1, 1},   {200, 0, 2, 2},  {200, 0, 7, 7},    // above 128 bytes: one at a time
        {128, 0, 1, 1},   {128, 0, 2, 10}, {128, 0, 10, 10},  // 128 bytes: blocks of ten
        {128, 0, 11, 20}, {8, 4, 1, 1},    {8, 4, 2, 4},      // a chosen block of four
        {8, 4, 5, 8},     {8, 4, 8, 8},    {8, -3, 3, 3},     // below 1: exactly the count
    };
    for (const Row &row : rows) {
        Array array = row.block == 0 ? Array(row.size) : Array(row.size, row.block);
        ASSERT_NE(array.handle, nullptr);
        std::vector<unsigned char> element(row.size, 0x5A);
        for (int32_t i = 0; i < row.count; ++i)
            ASSERT_EQ(tsDynArray_insertAndSetElement(array, -1, element.data()), 0);
        const size_t bytes = blockBytes(array);
        EXPECT_GE(bytes, row.capacity * row.size) << row.size << " bytes, count " << row.count;
        EXPECT_LT(bytes, row.capacity * row.size + 24) << row.size << " bytes, count " << row.count;
    }
}

TEST(DynArray, ShrinksBlockByBlockAsElementsGo)
{
    // 64-byte records, so that each shrink gives back enough for the heap
    // to split the block rather than keep it whole.
    struct Record {
        int32_t value;
        int32_t padding[15];
    };
    Array array(sizeof(Record));
    for (int32_t i = 0; i < 25; ++i) {
        const Record record{i, {}};
        ASSERT_EQ(tsDynArray_insertAndSetElement(array, -1, &record), 0);
    }
    // Counts 25 -> 21 keep a block of 30; 20 falls to 20; 2 keeps 10; 1 is exact.
    const struct {
        int32_t count;
        size_t capacity;
    } steps[] = {{21, 30}, {20, 20}, {11, 20}, {10, 10}, {2, 10}, {1, 1}};
    for (const auto &step : steps) {
        while (tsDynArray_getSize(array) > step.count)
            ASSERT_EQ(tsDynArray_deleteElement(array, 0), 0);
        const size_t bytes = blockBytes(array);
        EXPECT_GE(bytes, step.capacity * sizeof(Record)) << "count " << step.count;
        EXPECT_LT(bytes, step.capacity * sizeof(Record) + 24) << "count " << step.count;
    }
    Record last{};
    ASSERT_EQ(tsDynArray_getElement(array, 0, &last), 0);
    EXPECT_EQ(last.value, 24);
}

TEST(DynArray, InsertAndDeleteMatchAVector)
{
    // Random work at both ends and in the middle, checked after every step
    // against std::vector doing the same.
    std::mt19937 random(20240611);
    Array array(sizeof(int32_t));
    std::vector<int32_t> reference;
    for (int32_t step = 0; step < 3000; ++step) {
        const auto size = static_cast<int32_t>(reference.size());
        const int32_t value = step;
        switch (random() % 5) {
        case 0:  // append
            ASSERT_EQ(tsDynArray_insertAndSetElement(array, -1, &value), 0);
            reference.push_back(value);
            break;
        case 1: {  // insert anywhere from the front to the end
            const auto at = static_cast<int32_t>(random() % static_cast<uint32_t>(size + 1));
            ASSERT_EQ(tsDynArray_insertAndSetElement(array, at, &value), 0);
            reference.insert(reference.begin() + at, value);
            break;
        }
        case 2:  // delete the last
            ASSERT_EQ(tsDynArray_deleteElement(array, -1), size == 0 ? kFail : 0);
            if (size > 0) reference.pop_back();
            break;
        case 3:
        case 4: {  // delete anywhere
            if (size == 0) break;
            const auto at = static_cast<int32_t>(random() % static_cast<uint32_t>(size));
            ASSERT_EQ(tsDynArray_deleteElement(array, at), 0);
            reference.erase(reference.begin() + at);
            break;
        }
        }
        ASSERT_EQ(intsOf(array), reference) << "step " << step;
    }
}

TEST(DynArray, AppendedSlotsAreZeroedOpenedSlotsKeepOldBytes)
{
    Array array(sizeof(int32_t));
    for (int32_t value : {11, 22, 33, 44, 55})
        appendInt(array, value);
    // Count 5 -> 4 stays in the block of ten: slot 4 still holds 55.
    ASSERT_EQ(tsDynArray_deleteElement(array, -1), 0);
    ASSERT_EQ(tsDynArray_insertElement(array, -1), 0);
    EXPECT_EQ(intsOf(array), (std::vector<int32_t>{11, 22, 33, 44, 0}));

    // Opening a slot at the front moves the tail up and leaves slot 0 as it was.
    ASSERT_EQ(tsDynArray_insertElement(array, 0), 0);
    EXPECT_EQ(intsOf(array), (std::vector<int32_t>{11, 11, 22, 33, 44, 0}));
    ASSERT_EQ(tsDynArray_insertElements(array, 3, 2), 0);
    EXPECT_EQ(intsOf(array), (std::vector<int32_t>{11, 11, 22, 33, 44, 33, 44, 0}));

    // An empty array: the first element comes zeroed.
    Array fresh(sizeof(double));
    ASSERT_EQ(tsDynArray_insertElements(fresh, -1, 3), 0);
    const double zero = 0.0;
    for (int32_t i = 0; i < 3; ++i)
        EXPECT_EQ(std::memcmp(tsDynArray_getElementAdd(fresh, i), &zero, sizeof zero), 0);
}

TEST(DynArray, RefusedIndicesAndFailures)
{
    Array array(sizeof(int32_t));
    for (int32_t value : {1, 2, 3})
        appendInt(array, value);
    const int32_t nine = 9;
    int32_t out = 0;
    // An index above the count inserts nothing, and the insertion still says 0.
    EXPECT_EQ(tsDynArray_insertElement(array, 4), 0);
    EXPECT_EQ(tsDynArray_insertAndSetElement(array, 4, &nine), kFail);
    EXPECT_EQ(tsDynArray_getElement(array, 3, &out), kFail);
    EXPECT_EQ(tsDynArray_setElement(array, 3, &nine), kFail);
    EXPECT_EQ(tsDynArray_deleteElement(array, 3), kFail);
    EXPECT_EQ(tsDynArray_getElementAdd(array, 3), nullptr);
    EXPECT_EQ(intsOf(array), (std::vector<int32_t>{1, 2, 3}));
    // Index equal to the count appends; -1 is the last for get and set.
    EXPECT_EQ(tsDynArray_insertAndSetElement(array, 3, &nine), 0);
    EXPECT_EQ(tsDynArray_getElement(array, -1, &out), 0);
    EXPECT_EQ(out, 9);
    EXPECT_EQ(tsDynArray_setElement(array, -1, &nine), 0);

    // Deleting the only element frees the block: no element is left to address.
    Array single(sizeof(int32_t));
    appendInt(single, 7);
    EXPECT_EQ(tsDynArray_deleteElement(single, -1), 0);
    EXPECT_EQ(tsDynArray_getSize(single), 0);
    EXPECT_EQ(tsDynArray_getElementAdd(single, -1), nullptr);
    EXPECT_EQ(tsDynArray_deleteElement(single, -1), kFail);

    // Null arguments.
    tsDynArray *none = nullptr;
    EXPECT_EQ(tsDynArray_getSize(nullptr), 0);
    EXPECT_EQ(tsDynArray_clear(nullptr), kFail);
    EXPECT_EQ(tsDynArray_destroy(nullptr), kFail);
    EXPECT_EQ(tsDynArray_destroy(&none), kFail);
    EXPECT_EQ(tsDynArray_createWithMinBlockNumberAllocated(nullptr, 4, 10), kFail);
    EXPECT_EQ(tsDynArray_clone(nullptr, array), kFail);
    EXPECT_EQ(tsDynArray_clone(&none, nullptr), kFail);
    EXPECT_EQ(tsDynArray_insertElements(nullptr, -1, 1), kFail);
    EXPECT_EQ(tsDynArray_getElement(nullptr, 0, &out), kFail);
    EXPECT_EQ(tsDynArray_sort(nullptr, compareInts), kFail);
    EXPECT_EQ(tsDynArray_insertElementByOrder(nullptr, &nine, compareInts), kFail);
}

struct Walk {
    std::vector<int32_t> seen;
    int32_t stopAt = -1;
};

int32_t record(void *element, void *userData)
{
    auto *walk = static_cast<Walk *>(userData);
    const int32_t value = *static_cast<int32_t *>(element);
    walk->seen.push_back(value);
    return value == walk->stopAt ? 1 : 0;
}

TEST(DynArray, PerformActionChecksBoundsButWalksFromTheStart)
{
    Array array(sizeof(int32_t));
    for (int32_t value : {10, 20, 30, 40, 50})
        appendInt(array, value);
    const std::vector<int32_t> all{10, 20, 30, 40, 50};
    const struct {
        int32_t first, last, stopAt, result;
        std::vector<int32_t> seen;
    } rows[] = {
        {-1, -1, -1, 0, all},  // whole array
        {2, 3, -1, 0, all},    // the bounds do not limit the walk
        {0, 4, 30, 0, {10, 20, 30}}, {-1, -1, 10, 0, {10}}, {0, 5, -1, kFail, {}},  // last at the count
        {-1, 7, -1, kFail, {}},
    };
    for (const auto &row : rows) {
        Walk walk{{}, row.stopAt};
        EXPECT_EQ(tsDynArray_performAction(array, record, &walk, row.first, row.last), row.result);
        EXPECT_EQ(walk.seen, row.seen) << row.first << ".." << row.last;
    }
    Array empty(sizeof(int32_t));
    Walk walk;
    EXPECT_EQ(tsDynArray_performAction(empty, record, &walk, -1, -1), 0);
    EXPECT_EQ(tsDynArray_performAction(empty, record, &walk, 0, 0), kFail);
    EXPECT_TRUE(walk.seen.empty());
}

int32_t isMultipleOfSeven(void *element, void *)
{
    return *static_cast<int32_t *>(element) % 7 == 0 ? 1 : 0;
}

TEST(DynArray, FindSortAndClone)
{
    Array array(sizeof(int32_t));
    std::vector<int32_t> values{12, 5, 21, 7, 3, 14};
    for (int32_t value : values)
        appendInt(array, value);
    int32_t index = 99;
    ASSERT_EQ(tsDynArray_findElement(array, isMultipleOfSeven, nullptr, &index), 0);
    EXPECT_EQ(index, 2);  // 21 is the first multiple of seven

    tsDynArray *copy = nullptr;
    ASSERT_EQ(tsDynArray_clone(&copy, array), 0);
    ASSERT_EQ(tsDynArray_sort(array, compareInts), 0);
    std::sort(values.begin(), values.end());
    EXPECT_EQ(intsOf(array), values);
    // The clone is its own block: sorting the source left it in input order.
    EXPECT_EQ(intsOf(copy), (std::vector<int32_t>{12, 5, 21, 7, 3, 14}));
    ASSERT_EQ(tsDynArray_clear(copy), 0);
    EXPECT_EQ(tsDynArray_getSize(copy), 0);
    ASSERT_EQ(tsDynArray_findElement(copy, isMultipleOfSeven, nullptr, &index), 0);
    EXPECT_EQ(index, -1);
    EXPECT_EQ(tsDynArray_destroy(&copy), 0);
    EXPECT_EQ(copy, nullptr);
}

TEST(DynArray, InsertByOrderKeepsASortedSet)
{
    const int32_t input[] = {5, 1, 4, 1, 3, 5, 9};
    struct Row {
        tsDynArrayCompareFunc compare;
        std::vector<int32_t> expected;
    };
    // With 1 for "after": a sorted set. With 2 for "after", no slot in the
    // middle is ever taken; equal values are still refused:
    // [5] [5 1] [5 1 4] (1 equal) [5 1 4 3] (5 equal) [5 1 4 3 9].
    const Row rows[] = {{compareInts, {1, 3, 4, 5, 9}}, {compareIntsSayingTwo, {5, 1, 4, 3, 9}}};
    for (const Row &row : rows) {
        Array array(sizeof(int32_t));
        for (int32_t value : input)
            ASSERT_EQ(tsDynArray_insertElementByOrder(array, &value, row.compare), 0);
        EXPECT_EQ(intsOf(array), row.expected);
    }
}

// Scenario: a field book of stations with point numbers, kept in station
// order as shots come in out of order, then read back and thinned.
struct Shot {
    double station;
    int32_t point;
};

int32_t byStation(const void *a, const void *b)
{
    const double x = static_cast<const Shot *>(a)->station, y = static_cast<const Shot *>(b)->station;
    return x < y ? -1 : (x > y ? 1 : 0);
}

TEST(DynArray, FieldBookInStationOrder)
{
    Array book(sizeof(Shot));
    const Shot shots[] = {{120.0, 3}, {0.0, 1}, {60.0, 2}, {240.0, 5}, {180.0, 4}, {60.0, 9}};
    for (const Shot &shot : shots)
        ASSERT_EQ(tsDynArray_insertElementByOrder(book, &shot, byStation), 0);
    ASSERT_EQ(tsDynArray_getSize(book), 5);  // the repeated station 60 was refused
    std::vector<int32_t> points;
    for (int32_t i = 0; i < tsDynArray_getSize(book); ++i)
        points.push_back(static_cast<Shot *>(tsDynArray_getElementAdd(book, i))->point);
    EXPECT_EQ(points, (std::vector<int32_t>{1, 2, 3, 4, 5}));
    // Drop every other shot from the back, as a thinning pass would.
    for (int32_t i = tsDynArray_getSize(book) - 2; i >= 0; i -= 2)
        ASSERT_EQ(tsDynArray_deleteElement(book, i), 0);
    Shot last{};
    ASSERT_EQ(tsDynArray_getElement(book, -1, &last), 0);
    EXPECT_EQ(last.point, 5);
    EXPECT_EQ(tsDynArray_getSize(book), 3);
}

}  // namespace
