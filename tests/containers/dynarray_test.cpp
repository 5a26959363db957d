// The dynamic array: capacity in blocks, insertion and deletion against a std::vector, walks, ordered
// insertion and the failure values.
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
using Ints = std::vector<int32_t>;

// An array owned by the test (block 0: the default), destroyed at the end of the scope.
struct Array {
    tsDynArray *handle = nullptr;
    explicit Array(size_t size, int32_t block = 0)
    {
        block == 0 ? tsDynArray_create(&handle, size)
                   : tsDynArray_createWithMinBlockNumberAllocated(&handle, size, block);
    }
    ~Array() { tsDynArray_destroy(&handle); }
    operator tsDynArray *() const { return handle; }
};

void append(tsDynArray *array, Ints values)
{
    for (int32_t value : values)
        ASSERT_EQ(tsDynArray_insertAndSetElement(array, -1, &value), 0);
}

Ints intsOf(tsDynArray *array)
{
    Ints values(static_cast<size_t>(tsDynArray_getSize(array)));
    for (size_t i = 0; i < values.size(); ++i)
        EXPECT_EQ(tsDynArray_getElement(array, static_cast<int32_t>(i), &values[i]), 0);
    return values;
}

// The block must hold capacity elements; the heap rounds a block up to 16 bytes with its header, and may keep
// a remainder below its 32-byte minimum chunk, so the usable size lies in [capacity * size, + 48).
void expectCapacity(tsDynArray *array, size_t capacity, size_t size)
{
    size_t bytes = 0;
    EXPECT_EQ(tsMem_getSize(tsDynArray_getElementAdd(array, 0), &bytes), 0);
    EXPECT_GE(bytes, capacity * size) << tsDynArray_getSize(array) << " elements of " << size;
    EXPECT_LT(bytes, capacity * size + 48) << tsDynArray_getSize(array) << " elements of " << size;
}

int32_t compareInts(const void *a, const void *b)
{
    const int32_t x = *static_cast<const int32_t *>(a), y = *static_cast<const int32_t *>(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

TEST(DynArray, CapacityFollowsTheBlockNumber)
{
    // Each row: element size, block (0: default), count, capacity: 1, else the count in whole blocks.
    struct Row {
        size_t size;
        int32_t block, count;
        size_t capacity;
    } rows[] = {
        {200, 0, 1, 1},   {200, 0, 2, 2},  {200, 0, 7, 7},    // above 128 bytes: one at a time
        {128, 0, 1, 1},   {128, 0, 2, 10}, {128, 0, 10, 10},  // 128 bytes: blocks of ten
        {128, 0, 11, 20}, {64, 4, 1, 1},   {64, 4, 2, 4},     // a chosen block of four
        {64, 4, 5, 8},    {64, 4, 8, 8},   {64, -3, 3, 3},    // below 1: exactly the count
    };
    for (const Row &row : rows) {
        Array array(row.size, row.block);
        std::vector<unsigned char> element(row.size, 0x5A);
        for (int32_t i = 0; i < row.count; ++i)
            ASSERT_EQ(tsDynArray_insertAndSetElement(array, -1, element.data()), 0);
        expectCapacity(array, row.capacity, row.size);
    }
    // Shrinking 64-byte records, which the heap splits: 21 keeps 30; 20 falls to 20; 2 keeps 10; 1 is exact.
    Array array(64);
    std::vector<unsigned char> record(64);
    for (unsigned char i = 0; i < 25; ++i) {
        record[0] = i;
        ASSERT_EQ(tsDynArray_insertAndSetElement(array, -1, record.data()), 0);
    }
    const std::pair<int32_t, size_t> steps[] = {{21, 30}, {20, 20}, {11, 20}, {10, 10}, {2, 10}, {1, 1}};
    for (const auto &[count, capacity] : steps) {
        while (tsDynArray_getSize(array) > count)
            ASSERT_EQ(tsDynArray_deleteElement(array, 0), 0);
        expectCapacity(array, capacity, 64);
    }
    EXPECT_EQ(*static_cast<unsigned char *>(tsDynArray_getElementAdd(array, 0)), 24);
}

TEST(DynArray, InsertAndDeleteMatchAVector)
{
    std::mt19937 random(20240611);
    Array array(sizeof(int32_t));
    Ints reference;
    for (int32_t value = 0; value < 3000; ++value) {
        const auto size = static_cast<int32_t>(reference.size());
        const auto at = static_cast<int32_t>(random() % (size + 1u));  // the end, or the last, given as -1
        if (random() % 2) {
            ASSERT_EQ(tsDynArray_insertAndSetElement(array, at == size ? -1 : at, &value), 0);
            reference.insert(reference.begin() + at, value);
        } else {
            ASSERT_EQ(tsDynArray_deleteElement(array, at == size ? -1 : at), size == 0 ? kFail : 0);
            if (size > 0) reference.erase(reference.begin() + std::min(at, size - 1));
        }
        ASSERT_EQ(intsOf(array), reference) << "step " << value;
    }
}

TEST(DynArray, AppendedSlotsAreZeroedOpenedSlotsKeepOldBytes)
{
    Array array(sizeof(int32_t)), fresh(sizeof(double));
    append(array, {11, 22, 33, 44, 55});
    // Count 5 -> 4 stays in the block of ten: slot 4 still holds 55, yet an append zeroes it.
    ASSERT_EQ(tsDynArray_deleteElement(array, -1), 0);
    ASSERT_EQ(tsDynArray_insertElement(array, -1), 0);
    EXPECT_EQ(intsOf(array), (Ints{11, 22, 33, 44, 0}));
    // Opening slots moves the tail up and leaves the opened slots as they were.
    ASSERT_EQ(tsDynArray_insertElement(array, 0), 0);
    EXPECT_EQ(intsOf(array), (Ints{11, 11, 22, 33, 44, 0}));
    ASSERT_EQ(tsDynArray_insertElements(array, 3, 2), 0);
    EXPECT_EQ(intsOf(array), (Ints{11, 11, 22, 33, 44, 33, 44, 0}));
    // An empty array: the first elements come zeroed.
    ASSERT_EQ(tsDynArray_insertElements(fresh, -1, 3), 0);
    const double zeros[3] = {};
    EXPECT_EQ(std::memcmp(tsDynArray_getElementAdd(fresh, 0), zeros, sizeof zeros), 0);
}

TEST(DynArray, RefusedIndicesAndFailures)
{
    Array array(sizeof(int32_t)), single(sizeof(int32_t));
    append(array, {1, 2, 3});
    int32_t nine = 9, out = 0;
    tsDynArray *none = nullptr;
    // An index above the count inserts nothing, and the insertion still says 0.
    EXPECT_EQ(tsDynArray_insertElement(array, 4), 0);
    EXPECT_EQ(tsDynArray_getElementAdd(array, 3), nullptr);
    for (int32_t code :
         {tsDynArray_insertAndSetElement(array, 4, &nine), tsDynArray_getElement(array, 3, &out),
          tsDynArray_setElement(array, 3, &nine), tsDynArray_deleteElement(array, 3),
          tsDynArray_clear(nullptr), tsDynArray_destroy(nullptr), tsDynArray_destroy(&none),
          tsDynArray_createWithMinBlockNumberAllocated(nullptr, 4, 10), tsDynArray_clone(nullptr, array),
          tsDynArray_clone(&none, nullptr), tsDynArray_insertElements(nullptr, -1, 1),
          tsDynArray_getElement(nullptr, 0, &out), tsDynArray_sort(nullptr, compareInts),
          tsDynArray_insertElementByOrder(nullptr, &nine, compareInts)})
        EXPECT_EQ(code, kFail);
    EXPECT_EQ(tsDynArray_getSize(nullptr), 0);
    EXPECT_EQ(intsOf(array), (Ints{1, 2, 3}));
    // Index equal to the count appends; -1 is the last for get and set.
    EXPECT_EQ(tsDynArray_insertAndSetElement(array, 3, &nine), 0);
    nine = 10;
    EXPECT_EQ(tsDynArray_setElement(array, -1, &nine), 0);
    EXPECT_EQ(tsDynArray_getElement(array, -1, &out), 0);
    EXPECT_EQ(intsOf(array), (Ints{1, 2, 3, 10}));
    // Deleting the only element frees the block: no element is left to address.
    append(single, {7});
    EXPECT_EQ(tsDynArray_deleteElement(single, -1), 0);
    EXPECT_EQ(tsDynArray_getSize(single), 0);
    EXPECT_EQ(tsDynArray_getElementAdd(single, -1), nullptr);
    EXPECT_EQ(tsDynArray_deleteElement(single, -1), kFail);
}

struct Walk {
    Ints seen;
    int32_t stopAt = -1;
};

TEST(DynArray, PerformActionChecksBoundsButWalksFromTheStart)
{
    Array array(sizeof(int32_t)), empty(sizeof(int32_t));
    append(array, {10, 20, 30, 40, 50});
    const Ints all{10, 20, 30, 40, 50};
    auto record = [](void *element, void *user) -> int32_t {
        auto *walk = static_cast<Walk *>(user);
        walk->seen.push_back(*static_cast<int32_t *>(element));
        return walk->seen.back() == walk->stopAt;
    };
    const struct {
        int32_t first, last, stopAt, result;
        Ints seen;
    } rows[] = {
        {-1, -1, -1, 0, all},        {2, 3, -1, 0, all},      // the bounds do not limit the walk
        {0, 4, 30, 0, {10, 20, 30}}, {-1, -1, 10, 0, {10}},   // a non-zero answer stops it, result 0
        {0, 5, -1, kFail, {}},       {-1, 7, -1, kFail, {}},  // last at or above the count
    };
    for (const auto &row : rows) {
        Walk walk{{}, row.stopAt};
        EXPECT_EQ(tsDynArray_performAction(array, record, &walk, row.first, row.last), row.result);
        EXPECT_EQ(walk.seen, row.seen) << row.first << ".." << row.last;
    }
    Walk walk;
    EXPECT_EQ(tsDynArray_performAction(empty, record, &walk, -1, -1), 0);
    EXPECT_EQ(tsDynArray_performAction(empty, record, &walk, 0, 0), kFail);
    EXPECT_TRUE(walk.seen.empty());
}

TEST(DynArray, FindSortCloneAndInsertByOrder)
{
    Array array(sizeof(int32_t));
    append(array, {12, 5, 21, 7, 3, 14});
    auto multipleOfSeven = [](void *element, void *) -> int32_t {
        return *static_cast<int32_t *>(element) % 7 == 0;
    };
    int32_t index = 99;
    ASSERT_EQ(tsDynArray_findElement(array, multipleOfSeven, nullptr, &index), 0);
    EXPECT_EQ(index, 2);         // 21 is the first multiple of seven
    tsDynArray *copy = nullptr;  // the clone is its own block, left in input order
    ASSERT_EQ(tsDynArray_clone(&copy, array), 0);
    ASSERT_EQ(tsDynArray_sort(array, compareInts), 0);
    EXPECT_EQ(intsOf(array), (Ints{3, 5, 7, 12, 14, 21}));
    EXPECT_EQ(intsOf(copy), (Ints{12, 5, 21, 7, 3, 14}));
    ASSERT_EQ(tsDynArray_clear(copy), 0);
    ASSERT_EQ(tsDynArray_findElement(copy, multipleOfSeven, nullptr, &index), 0);
    EXPECT_EQ(index, -1);
    EXPECT_EQ(tsDynArray_destroy(&copy), 0);
    EXPECT_EQ(copy, nullptr);

    // Ordered insertion takes only the answer 1 as "after": with 2 no slot in the middle is ever taken, and
    // equal values are still refused: [5] [5 1] [5 1 4] (1 equal) [5 1 4 3] (5 equal) [5 1 4 3 9].
    auto sayingTwo = [](const void *a, const void *b) {
        return compareInts(a, b) == 1 ? 2 : compareInts(a, b);
    };
    const std::pair<tsDynArrayCompareFunc, Ints> rows[] = {{compareInts, {1, 3, 4, 5, 9}},
                                                           {sayingTwo, {5, 1, 4, 3, 9}}};
    for (const auto &[compare, expected] : rows) {
        Array set(sizeof(int32_t));
        for (int32_t value : {5, 1, 4, 1, 3, 5, 9})
            ASSERT_EQ(tsDynArray_insertElementByOrder(set, &value, compare), 0);
        EXPECT_EQ(intsOf(set), expected);
    }
}

TEST(DynArray, FieldBookInStationOrder)
{
    // Shots (station in metres, point) kept in station order, a repeated station refused, then thinned from
    // the back; compareInts reads the station, the first member.
    struct Shot {
        int32_t station, point;
    };
    Array book(sizeof(Shot));
    for (const Shot &shot : {Shot{120, 3}, {0, 1}, {60, 2}, {240, 5}, {180, 4}, {60, 9}})
        ASSERT_EQ(tsDynArray_insertElementByOrder(book, &shot, compareInts), 0);
    for (int32_t i = tsDynArray_getSize(book) - 2; i >= 0; i -= 2)
        ASSERT_EQ(tsDynArray_deleteElement(book, i), 0);
    Ints points;
    for (int32_t i = 0; i < tsDynArray_getSize(book); ++i)
        points.push_back(static_cast<Shot *>(tsDynArray_getElementAdd(book, i))->point);
    EXPECT_EQ(points, (Ints{1, 3, 5}));  // 1 2 3 4 5 before thinning
}

}  // namespace
