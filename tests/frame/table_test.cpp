// The heap interface and the growable tables: capacity in blocks of ten, the failures.
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/memory.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;
constexpr size_t kInt = sizeof(int32_t);
using Ints = std::vector<int32_t>;

// Runs a table function and gives the error word that it left.
template <class... Params> int32_t mem(void (*function)(Params...), auto... args)
{
    function(args...);
    int32_t code = -1, detail = -1;
    MEM_GetErreur(&code, &detail);
    return code;
}

// A table of ints as a caller keeps it: a pointer and a count, grown by appends.
struct Table {
    int32_t *data = nullptr;
    int32_t count = 0;
    Table(std::initializer_list<int32_t> values = {})
    {
        for (int32_t v : values)
            if (run(MEM_EtendreTableau) == 0) data[count - 1] = v;
    }
    ~Table() { tsMem_free(data); }
    void **slot() { return reinterpret_cast<void **>(&data); }
    // A count-changing table function on this table, with its remaining arguments.
    template <class... Rest> int32_t run(void (*function)(void **, size_t, int32_t *, Rest...), auto... args)
    {
        return mem(function, slot(), kInt, &count, args...);
    }
    Ints values() const { return {data, data + count}; }
    // The heap may round a block up: capacity c shows as c to c + 9 elements.
    size_t usable() const
    {
        size_t bytes = 0;
        return tsMem_getSize(data, &bytes) == 0 ? bytes / kInt : 0;
    }
};

TEST(Heap, FreeSizeAndMaximum)
{
    void *empty = nullptr, *block = tsMem_realloc(tsMem_malloc(100), 1000);
    size_t size = 77;
    EXPECT_EQ(tsMem_free(nullptr), kFail);
    EXPECT_EQ(tsMem_freeAndClear(nullptr), kFail);
    EXPECT_EQ(tsMem_freeAndClear(&empty), kFail);
    EXPECT_EQ(tsMem_getSize(nullptr, &size), kFail);
    EXPECT_EQ(size, 0u);  // cleared before the null block is seen
    EXPECT_EQ(tsMem_getSize(block, nullptr), kFail);
    EXPECT_EQ(tsMem_getSize(static_cast<const void *>(block), &size), 0);  // the block is only read
    EXPECT_GE(size, 1000u);
    // Null slots are passed over; the array itself is not freed.
    void *slots[3] = {block, nullptr, tsMem_calloc(2, 8)};
    EXPECT_EQ(tsMem_freeAndClearArray(nullptr, 3), kFail);
    EXPECT_EQ(tsMem_freeAndClearArray(slots, 0), kFail);
    EXPECT_EQ(tsMem_freeAndClearArray(slots, 3), 0);
    EXPECT_TRUE(slots[0] == nullptr && slots[2] == nullptr);
    EXPECT_EQ(tsMem_getMaximumAllocatableHeapMemory(), 64000000u);  // the ceiling, on an ordinary machine
}

TEST(Table, CapacityGrowsInBlocksOfTen)
{
    // count -> capacity: 1 -> 1, 2..10 -> 10 (one block, never moved), 11..20 -> 20, 21 -> 30.
    const size_t rows[][2] = {{1, 1}, {2, 10}, {9, 10}, {10, 10}, {11, 20}, {20, 20}, {21, 30}};
    Table t;
    const int32_t *tenBlock = nullptr;
    for (const auto &r : rows) {
        while (t.count < int32_t(r[0])) {
            ASSERT_EQ(t.run(MEM_EtendreTableau), 0);
            if (t.count == 2) tenBlock = t.data;
            EXPECT_TRUE(t.count > 10 || t.count < 2 || t.data == tenBlock) << "reallocated at " << t.count;
        }
        EXPECT_GE(t.usable(), r[1]) << r[0];
        EXPECT_LT(t.usable(), r[1] + 10) << r[0];
    }
}

TEST(Table, ExtendByBlockZeroesTheNewElements)
{
    Table grown{5}, fresh;
    EXPECT_EQ(grown.run(MEM_EtendreTableauParBloc, 14), 0);
    EXPECT_EQ(grown.values(), (Ints{5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_GE(grown.usable(), 20u);
    EXPECT_EQ(fresh.run(MEM_EtendreTableauParBloc, 12), 0);  // from empty: capacity(12) in one go
    EXPECT_EQ(fresh.values(), Ints(12, 0));
    EXPECT_GE(fresh.usable(), 20u);
}

TEST(Table, CreateResizeFindAndFree)
{
    Table t, r{7, 8, 9, 4, 9};
    ASSERT_EQ(mem(MEM_CreerTableau, t.slot(), kInt, 11), 0);
    ASSERT_GE(t.usable(), 20u);
    EXPECT_EQ(Ints(t.data, t.data + 20), Ints(20, 0));
    int32_t *held = t.data;
    EXPECT_EQ(mem(MEM_CreerTableau, t.slot(), kInt, 4), kFail);  // over a live pointer
    EXPECT_EQ(t.data, held);
    EXPECT_EQ(mem(MEM_CreerTableau, t.slot(), kInt, 0), 0);  // n = 0 stores null anyway
    EXPECT_EQ(t.data, nullptr);
    tsMem_free(held);

    EXPECT_EQ(mem(MEM_ModifierTailleTableau, r.slot(), kInt, 25), 0);
    EXPECT_GE(r.usable(), 30u);  // capacity(25), the elements kept
    EXPECT_EQ(r.values(), (Ints{7, 8, 9, 4, 9}));
    // Rank: -1 for none (no failure), the lower of two equals; a null rank fails.
    const int32_t nine = 9, five = 5;
    int32_t rank = 99;
    EXPECT_EQ(mem(MEM_RecupererRang, nullptr, 0, kInt, &five, &rank), 0);
    EXPECT_EQ(rank, -1);
    EXPECT_EQ(mem(MEM_RecupererRang, r.data, r.count, kInt, &nine, &rank), 0);
    EXPECT_EQ(rank, 2);
    EXPECT_EQ(mem(MEM_RecupererRang, r.data, r.count, kInt, &five, &rank), 0);
    EXPECT_EQ(rank, -1);
    EXPECT_EQ(mem(MEM_RecupererRang, r.data, r.count, kInt, &five, nullptr), kFail);

    held = r.data;  // resizing to 0 drops the pointer and leaves the block to the caller
    EXPECT_EQ(mem(MEM_ModifierTailleTableau, r.slot(), kInt, 0), 0);
    EXPECT_TRUE(r.data == nullptr && held[4] == 9);
    EXPECT_EQ(mem(MEM_ModifierTailleTableau, r.slot(), kInt, 5), kFail);
    EXPECT_EQ(mem(MEM_LibererTableau, r.slot()), kFail);
    tsMem_free(held);
}

TEST(Table, InsertOpensSlotsInPlace)
{
    Table t{1, 2, 3}, one, many, two{1, 2};
    EXPECT_EQ(t.run(MEM_InsererElementDansTableau, 1), 0);
    t.data[1] = 10;
    EXPECT_EQ(t.run(MEM_InsererElementDansTableau, t.count), 0);  // index = count appends
    t.data[4] = 20;
    EXPECT_EQ(t.values(), (Ints{1, 10, 2, 3, 20}));
    EXPECT_EQ(t.run(MEM_InsererElementsDansTableau, 0, 7), 0);
    ASSERT_EQ(t.count, 12);
    EXPECT_GE(t.usable(), 20u);  // across the block of ten
    for (int32_t i = 0; i < 7; ++i)
        t.data[i] = -i;
    EXPECT_EQ(t.values(), (Ints{0, -1, -2, -3, -4, -5, -6, 1, 10, 2, 3, 20}));
    EXPECT_EQ(one.run(MEM_InsererElementDansTableau, 0), 0);
    EXPECT_EQ(one.values(), Ints{0});
    EXPECT_EQ(many.run(MEM_InsererElementsDansTableau, 0, 3), 0);
    EXPECT_EQ(many.values(), Ints(3, 0));

    // Failures: index outside 0..count, null count or table, empty count over a live pointer.
    EXPECT_EQ(two.run(MEM_InsererElementDansTableau, -1), kFail);
    EXPECT_EQ(two.run(MEM_InsererElementDansTableau, 3), kFail);
    EXPECT_EQ(mem(MEM_InsererElementDansTableau, two.slot(), kInt, nullptr, 0), kFail);
    EXPECT_EQ(mem(MEM_InsererElementDansTableau, nullptr, kInt, &two.count, 0), kFail);
    EXPECT_EQ(two.values(), (Ints{1, 2}));
    int32_t stray = 5, zero = 0, *pointer = &stray;
    EXPECT_EQ(mem(MEM_InsererElementDansTableau, reinterpret_cast<void **>(&pointer), kInt, &zero, 0), kFail);
    EXPECT_TRUE(zero == 0 && pointer == &stray);
}

TEST(Table, RemoveMovesTheTailAndShrinksByBlocks)
{
    Table t{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}, single{42}, range{1, 2, 3, 4}, bad{1, 2, 3}, blockless;
    EXPECT_EQ(t.run(MEM_SupprimerElementDansTableau, 0), 0);
    EXPECT_EQ(t.run(MEM_SupprimerElementDansTableau, 5), 0);
    EXPECT_EQ(t.values(), (Ints{1, 2, 3, 4, 5, 7, 8, 9, 10, 11}));
    EXPECT_LT(t.usable(), 20u);  // back to one block of ten
    EXPECT_EQ(t.run(MEM_SupprimerElementsDansTableau, 1, 8), 0);
    EXPECT_EQ(t.values(), (Ints{1, 11}));
    // Removing every element frees the block: count 0, null pointer.
    EXPECT_EQ(single.run(MEM_SupprimerElementDansTableau, 0), 0);
    EXPECT_TRUE(single.count == 0 && single.data == nullptr);
    EXPECT_EQ(range.run(MEM_SupprimerElementsDansTableau, 0, 3), 0);
    EXPECT_TRUE(range.count == 0 && range.data == nullptr);

    // Failures: index = count or negative, bad ranges; the table is untouched.
    EXPECT_EQ(bad.run(MEM_SupprimerElementDansTableau, 3), kFail);
    EXPECT_EQ(bad.run(MEM_SupprimerElementDansTableau, -1), kFail);
    for (auto [first, last] : {std::pair{-1, 1}, {2, 1}, {0, 3}})
        EXPECT_EQ(bad.run(MEM_SupprimerElementsDansTableau, first, last), kFail) << first << ".." << last;
    EXPECT_EQ(bad.values(), (Ints{1, 2, 3}));
    // A count without a block: neither removal nor extension works.
    blockless.count = 1;
    EXPECT_EQ(blockless.run(MEM_SupprimerElementDansTableau, 0), kFail);
    EXPECT_EQ(blockless.run(MEM_EtendreTableau), kFail);
    EXPECT_EQ(blockless.count, 1);
    blockless.count = 0;
}

// Large records move and compare whole (small whole doubles share their first
// four bytes); falling from 2..10 to one element shrinks to exactly one.
TEST(Table, RecordsOfAnySize)
{
    struct Big {
        double x;
        char pad[248];
    } *data = nullptr;
    int32_t count = 0, rank = -5;
    void **slot = reinterpret_cast<void **>(&data);
    for (int i = 0; i < 12; ++i) {
        ASSERT_EQ(mem(MEM_EtendreTableau, slot, sizeof(Big), &count), 0);
        data[i].x = i;
    }
    MEM_SupprimerElementsDansTableau(slot, sizeof(Big), &count, 3, 9);
    ASSERT_EQ(count, 5);
    EXPECT_TRUE(data[0].x == 0 && data[2].x == 2 && data[3].x == 10 && data[4].x == 11);
    const Big probe = data[2];
    MEM_RecupererRang(data, count, sizeof(Big), &probe, &rank);
    EXPECT_EQ(rank, 2);
    size_t bytes = 0;
    ASSERT_EQ(mem(MEM_SupprimerElementsDansTableau, slot, sizeof(Big), &count, 1, 4), 0);
    EXPECT_EQ(tsMem_getSize(data, &bytes), 0);
    EXPECT_TRUE(count == 1 && bytes >= sizeof(Big) && bytes < 2 * sizeof(Big)) << bytes;
    EXPECT_EQ(mem(MEM_LibererTableau, slot), 0);
    EXPECT_EQ(data, nullptr);
}

}  // namespace
