// The heap interface and the growable tables: capacity in blocks of ten,
// the failures and what each leaves behind.
#include <malloc.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/memory.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

int32_t tableError()
{
    int32_t code = -1, detail = -1;
    MEM_GetErreur(&code, &detail);
    return code;
}

// A table of ints as a caller keeps it: a pointer and a count.
struct Table {
    int32_t *data = nullptr;
    int32_t count = 0;
    Table() = default;
    Table(Table &&other) noexcept : data(other.data), count(other.count) { other.data = nullptr; }
    Table &operator=(Table &&) = delete;
    void **slot() { return reinterpret_cast<void **>(&data); }
    ~Table()
    {
        if (data != nullptr) tsMem_free(data);
    }
    std::vector<int32_t> values() const { return {data, data + count}; }
};

void append(Table &t, int32_t value)
{
    MEM_EtendreTableau(t.slot(), sizeof(int32_t), &t.count);
    ASSERT_EQ(tableError(), 0);
    t.data[t.count - 1] = value;
}

Table tableOf(std::initializer_list<int32_t> values)
{
    Table t;
    for (int32_t v : values)
        append(t, v);
    return t;
}

// The usable size of the block, in elements: the heap may round up, so a
// capacity of c shows as at least c and less than the next block of ten.
size_t usableElements(const Table &t)
{
    size_t bytes = 0;
    EXPECT_EQ(tsMem_getSize(t.data, &bytes), 0);
    return bytes / sizeof(int32_t);
}

TEST(Heap, FreeFunctionsRejectNull)
{
    EXPECT_EQ(tsMem_free(nullptr), kFail);
    EXPECT_EQ(tsMem_freeAndClear(nullptr), kFail);
    void *empty = nullptr;
    EXPECT_EQ(tsMem_freeAndClear(&empty), kFail);

    void *block = tsMem_malloc(16);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(tsMem_freeAndClear(&block), 0);
    EXPECT_EQ(block, nullptr);
}

TEST(Heap, FreeAndClearArrayPassesNullSlotsOver)
{
    void *slots[3] = {tsMem_malloc(8), nullptr, tsMem_calloc(2, 8)};
    EXPECT_EQ(tsMem_freeAndClearArray(slots, 3), 0);
    EXPECT_EQ(slots[0], nullptr);
    EXPECT_EQ(slots[2], nullptr);
    EXPECT_EQ(tsMem_freeAndClearArray(nullptr, 3), kFail);
    EXPECT_EQ(tsMem_freeAndClearArray(slots, 0), kFail);
}

TEST(Heap, GetSize)
{
    size_t size = 77;
    EXPECT_EQ(tsMem_getSize(nullptr, &size), kFail);
    EXPECT_EQ(size, 0u);  // cleared before the null block is seen
    void *block = tsMem_malloc(100);
    EXPECT_EQ(tsMem_getSize(block, nullptr), kFail);
    // The block is only read: a caller holding it through a const pointer can ask.
    const void *readOnly = block;
    EXPECT_EQ(tsMem_getSize(readOnly, &size), 0);
    EXPECT_GE(size, 100u);
    void *bigger = tsMem_realloc(block, 1000);
    ASSERT_NE(bigger, nullptr);
    EXPECT_EQ(tsMem_getSize(bigger, &size), 0);
    EXPECT_GE(size, 1000u);
    tsMem_free(bigger);
}

TEST(Heap, MaximumAllocatableIsTheCeilingOnAnOrdinaryMachine)
{
    EXPECT_EQ(tsMem_getMaximumAllocatableHeapMemory(), 64000000u);
}

TEST(Table, CapacityGrowsInBlocksOfTen)
{
    // count -> capacity in elements: 1 -> 1, 2..10 -> 10, 11..20 -> 20, 21 -> 30.
    const struct {
        int32_t count;
        size_t capacity;
    } rows[] = {{1, 1}, {2, 10}, {9, 10}, {10, 10}, {11, 20}, {20, 20}, {21, 30}};
    Table t;
    for (const auto &r : rows) {
        while (t.count < r.count)
            append(t, t.count);
        SCOPED_TRACE(r.count);
        EXPECT_GE(usableElements(t), r.capacity);
        EXPECT_LT(usableElements(t), r.capacity + 10);
    }
    for (int32_t i = 0; i < t.count; ++i)
        EXPECT_EQ(t.data[i], i);
}

TEST(Table, ExtendingWithinABlockKeepsTheBlock)
{
    Table t = tableOf({1, 2});
    int32_t *block = t.data;
    for (int32_t v = 3; v <= 10; ++v) {
        append(t, v);
        EXPECT_EQ(t.data, block) << "count " << t.count;
    }
    EXPECT_EQ(t.values(), (std::vector<int32_t>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
}

TEST(Table, ExtendedElementsAreZero)
{
    Table t = tableOf({5});
    MEM_EtendreTableauParBloc(t.slot(), sizeof(int32_t), &t.count, 14);
    EXPECT_EQ(tableError(), 0);
    ASSERT_EQ(t.count, 15);
    EXPECT_GE(usableElements(t), 20u);
    for (int32_t i = 1; i < 15; ++i)
        EXPECT_EQ(t.data[i], 0);

    Table fresh;
    MEM_EtendreTableauParBloc(fresh.slot(), sizeof(int32_t), &fresh.count, 12);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(fresh.count, 12);
    EXPECT_GE(usableElements(fresh), 20u);
    for (int32_t i = 0; i < 12; ++i)
        EXPECT_EQ(fresh.data[i], 0);
}

TEST(Table, ExtendingAGrownTableWithANullPointerFails)
{
    int32_t *data = nullptr;
    int32_t count = 3;
    MEM_EtendreTableau(reinterpret_cast<void **>(&data), sizeof(int32_t), &count);
    EXPECT_EQ(tableError(), kFail);
    EXPECT_EQ(count, 3);
}

TEST(Table, Create)
{
    Table t;
    MEM_CreerTableau(t.slot(), sizeof(int32_t), 11);
    EXPECT_EQ(tableError(), 0);
    ASSERT_NE(t.data, nullptr);
    EXPECT_GE(usableElements(t), 20u);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(t.data[i], 0);

    // A second creation over a live pointer fails and leaves it alone.
    int32_t *held = t.data;
    MEM_CreerTableau(t.slot(), sizeof(int32_t), 4);
    EXPECT_EQ(tableError(), kFail);
    EXPECT_EQ(t.data, held);

    // n = 0 stores null even over a live pointer (the caller still owns the block).
    MEM_CreerTableau(t.slot(), sizeof(int32_t), 0);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(t.data, nullptr);
    tsMem_free(held);
}

TEST(Table, ResizeToZeroDropsThePointerWithoutFreeing)
{
    Table t = tableOf({1, 2, 3});
    int32_t *held = t.data;
    MEM_ModifierTailleTableau(t.slot(), sizeof(int32_t), 0);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(t.data, nullptr);
    EXPECT_EQ(held[2], 3);  // still ours to read and free
    tsMem_free(held);
    t.count = 0;

    MEM_ModifierTailleTableau(t.slot(), sizeof(int32_t), 5);
    EXPECT_EQ(tableError(), kFail);
}

TEST(Table, ResizeKeepsTheElements)
{
    Table t = tableOf({7, 8});
    MEM_ModifierTailleTableau(t.slot(), sizeof(int32_t), 25);
    EXPECT_EQ(tableError(), 0);
    EXPECT_GE(usableElements(t), 30u);
    EXPECT_EQ(t.data[0], 7);
    EXPECT_EQ(t.data[1], 8);
}

TEST(Table, FindRank)
{
    Table t = tableOf({4, 9, 4, 9});
    int32_t rank = 99;
    const int32_t nine = 9, five = 5;
    MEM_RecupererRang(t.data, t.count, sizeof(int32_t), &nine, &rank);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(rank, 1);  // the lower of two equal elements
    MEM_RecupererRang(t.data, t.count, sizeof(int32_t), &five, &rank);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(rank, -1);  // not found is no failure
    MEM_RecupererRang(nullptr, 0, sizeof(int32_t), &five, &rank);
    EXPECT_EQ(rank, -1);
    MEM_RecupererRang(t.data, t.count, sizeof(int32_t), &five, nullptr);
    EXPECT_EQ(tableError(), kFail);
}

TEST(Table, FreeingANullTableFails)
{
    Table t;
    MEM_LibererTableau(t.slot());
    EXPECT_EQ(tableError(), kFail);
    Table one = tableOf({1});
    MEM_LibererTableau(one.slot());
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(one.data, nullptr);
}

TEST(Table, InsertOpensSlotsInPlace)
{
    Table t = tableOf({1, 2, 3});
    MEM_InsererElementDansTableau(t.slot(), sizeof(int32_t), &t.count, 1);
    EXPECT_EQ(tableError(), 0);
    t.data[1] = 10;
    EXPECT_EQ(t.values(), (std::vector<int32_t>{1, 10, 2, 3}));

    // An index equal to the count appends.
    MEM_InsererElementDansTableau(t.slot(), sizeof(int32_t), &t.count, t.count);
    EXPECT_EQ(tableError(), 0);
    t.data[4] = 20;
    EXPECT_EQ(t.values(), (std::vector<int32_t>{1, 10, 2, 3, 20}));

    // Several at once, crossing the block of ten.
    MEM_InsererElementsDansTableau(t.slot(), sizeof(int32_t), &t.count, 0, 7);
    EXPECT_EQ(tableError(), 0);
    ASSERT_EQ(t.count, 12);
    EXPECT_GE(usableElements(t), 20u);
    for (int32_t i = 0; i < 7; ++i)
        t.data[i] = -i;
    EXPECT_EQ(t.values(), (std::vector<int32_t>{0, -1, -2, -3, -4, -5, -6, 1, 10, 2, 3, 20}));
}

TEST(Table, InsertIntoAnEmptyTable)
{
    Table one;
    MEM_InsererElementDansTableau(one.slot(), sizeof(int32_t), &one.count, 0);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(one.count, 1);
    EXPECT_EQ(one.data[0], 0);

    Table many;
    MEM_InsererElementsDansTableau(many.slot(), sizeof(int32_t), &many.count, 0, 3);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(many.count, 3);
    EXPECT_GE(usableElements(many), 10u);
}

TEST(Table, InsertRejectsBadArguments)
{
    Table t = tableOf({1, 2});
    const int32_t badIndexes[] = {-1, 3};
    for (int32_t index : badIndexes) {
        MEM_InsererElementDansTableau(t.slot(), sizeof(int32_t), &t.count, index);
        EXPECT_EQ(tableError(), kFail) << index;
        EXPECT_EQ(t.count, 2);
    }
    MEM_InsererElementDansTableau(t.slot(), sizeof(int32_t), nullptr, 0);
    EXPECT_EQ(tableError(), kFail);
    MEM_InsererElementDansTableau(nullptr, sizeof(int32_t), &t.count, 0);
    EXPECT_EQ(tableError(), kFail);

    // An empty count over a live pointer fails and changes nothing.
    int32_t stray = 5;
    int32_t *pointer = &stray;
    int32_t zero = 0;
    MEM_InsererElementDansTableau(reinterpret_cast<void **>(&pointer), sizeof(int32_t), &zero, 0);
    EXPECT_EQ(tableError(), kFail);
    EXPECT_EQ(zero, 0);
    EXPECT_EQ(pointer, &stray);
}

TEST(Table, RemoveMovesTheTailAndShrinksByBlocks)
{
    Table t;
    for (int32_t v = 0; v < 12; ++v)
        append(t, v);
    MEM_SupprimerElementDansTableau(t.slot(), sizeof(int32_t), &t.count, 0);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(t.count, 11);
    MEM_SupprimerElementDansTableau(t.slot(), sizeof(int32_t), &t.count, 5);
    EXPECT_EQ(t.count, 10);
    EXPECT_EQ(t.values(), (std::vector<int32_t>{1, 2, 3, 4, 5, 7, 8, 9, 10, 11}));
    EXPECT_LT(usableElements(t), 20u);  // back to one block of ten

    MEM_SupprimerElementsDansTableau(t.slot(), sizeof(int32_t), &t.count, 1, 8);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(t.values(), (std::vector<int32_t>{1, 11}));
    MEM_SupprimerElementDansTableau(t.slot(), sizeof(int32_t), &t.count, 0);
    EXPECT_EQ(t.values(), (std::vector<int32_t>{11}));
}

TEST(Table, FallingToOneElementShrinksToExactlyOne)
{
    // Large records, so that the heap really returns the space it is given back.
    struct Big {
        char bytes[256];
    };
    Big *data = nullptr;
    int32_t count = 0;
    for (int i = 0; i < 4; ++i)
        MEM_EtendreTableau(reinterpret_cast<void **>(&data), sizeof(Big), &count);
    size_t bytes = 0;
    tsMem_getSize(data, &bytes);
    EXPECT_GE(bytes, 10 * sizeof(Big));
    MEM_SupprimerElementsDansTableau(reinterpret_cast<void **>(&data), sizeof(Big), &count, 1, 3);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(count, 1);
    tsMem_getSize(data, &bytes);
    EXPECT_GE(bytes, sizeof(Big));
    EXPECT_LT(bytes, 2 * sizeof(Big));
    MEM_LibererTableau(reinterpret_cast<void **>(&data));
}

TEST(Table, RemovingTheLastElementsFreesTheTable)
{
    Table single = tableOf({42});
    MEM_SupprimerElementDansTableau(single.slot(), sizeof(int32_t), &single.count, 0);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(single.count, 0);
    EXPECT_EQ(single.data, nullptr);

    Table range = tableOf({1, 2, 3, 4});
    MEM_SupprimerElementsDansTableau(range.slot(), sizeof(int32_t), &range.count, 0, 3);
    EXPECT_EQ(tableError(), 0);
    EXPECT_EQ(range.count, 0);
    EXPECT_EQ(range.data, nullptr);
}

TEST(Table, RemoveRejectsBadArguments)
{
    Table t = tableOf({1, 2, 3});
    MEM_SupprimerElementDansTableau(t.slot(), sizeof(int32_t), &t.count, 3);  // index = count
    EXPECT_EQ(tableError(), kFail);
    MEM_SupprimerElementDansTableau(t.slot(), sizeof(int32_t), &t.count, -1);
    EXPECT_EQ(tableError(), kFail);
    const int32_t ranges[][2] = {{-1, 1}, {2, 1}, {0, 3}};
    for (const auto &r : ranges) {
        MEM_SupprimerElementsDansTableau(t.slot(), sizeof(int32_t), &t.count, r[0], r[1]);
        EXPECT_EQ(tableError(), kFail) << r[0] << ".." << r[1];
    }
    EXPECT_EQ(t.values(), (std::vector<int32_t>{1, 2, 3}));

    Table empty;
    empty.count = 1;  // a count without a block
    MEM_SupprimerElementDansTableau(empty.slot(), sizeof(int32_t), &empty.count, 0);
    EXPECT_EQ(tableError(), kFail);
    empty.count = 0;
}

TEST(Table, RecordsOfAnySize)
{
    struct Record {
        double x, y, z;
        char tag[5];
    };
    Record *data = nullptr;
    int32_t count = 0;
    for (int i = 0; i < 23; ++i) {
        MEM_EtendreTableau(reinterpret_cast<void **>(&data), sizeof(Record), &count);
        ASSERT_EQ(tableError(), 0);
        data[i] = Record{double(i), 2.0 * i, 3.0 * i, "abcd"};
    }
    MEM_SupprimerElementsDansTableau(reinterpret_cast<void **>(&data), sizeof(Record), &count, 3, 19);
    ASSERT_EQ(count, 6);
    const double xs[] = {0, 1, 2, 20, 21, 22};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(data[i].x, xs[i]);
        EXPECT_EQ(data[i].z, 3.0 * xs[i]);
        EXPECT_STREQ(data[i].tag, "abcd");
    }
    int32_t rank = -5;
    Record probe = data[4];
    MEM_RecupererRang(data, count, sizeof(Record), &probe, &rank);
    EXPECT_EQ(rank, 4);
    MEM_LibererTableau(reinterpret_cast<void **>(&data));
}

}  // namespace
