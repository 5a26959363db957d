// The linked list and its iterator: against a std::list, past the ends, sorting, merging, failures.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <list>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/linkedlist.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;
using Ints = std::vector<int32_t>;

struct List {
    tsLinkedList *handle = nullptr;
    explicit List(size_t elementSize = sizeof(int32_t), tsLinkedListCompareFunc compare = nullptr)
    {
        tsLinkedList_create(&handle, elementSize);
        if (compare != nullptr) tsLinkedList_setCompareFunction(handle, compare);
    }
    ~List() { tsLinkedList_destroy(&handle); }
    operator tsLinkedList *() const { return handle; }
};

// An iterator; with a position k it stands on element k (k = size: the sentinel).
struct Iterator {
    tsLListIterator *handle = nullptr;
    explicit Iterator(tsLinkedList *list, int64_t k = -1)
    {
        tsLListIterator_create(&handle, list);
        if (k >= 0) tsLListIterator_begin(handle);
        for (int64_t i = 0; i < k; ++i)
            tsLListIterator_next(handle);
    }
    ~Iterator() { tsLListIterator_destroy(&handle); }
    operator tsLListIterator *() const { return handle; }
};

template <class T = int32_t> void fill(tsLinkedList *list, std::initializer_list<T> values)
{
    for (const T &value : values)
        ASSERT_EQ(tsLinkedList_pushBack(list, &value), 0);
}

// The element under the iterator, or the (negative) code of getCurrent.
int32_t current(const tsLListIterator *it)
{
    int32_t value = 0;
    const int32_t code = tsLListIterator_getCurrent(it, &value);
    return code == 0 ? value : code;
}

// The elements read forwards with an iterator.
template <class T = int32_t> std::vector<T> forwards(tsLinkedList *list)
{
    std::vector<T> values;
    Iterator it(list);
    T value{};
    while (tsLListIterator_next(it) == 0 && tsLListIterator_getCurrent(it, &value) == 0)
        values.push_back(value);
    return values;
}

// The elements read backwards from the end, reversed back into list order.
Ints backwards(tsLinkedList *list)
{
    Ints values;
    Iterator it(list);
    tsLListIterator_end(it);
    while (tsLListIterator_previous(it) == 0)
        values.insert(values.begin(), current(it));
    return values;
}

int32_t compareInts(const void *a, const void *b, const tsLinkedList *)
{
    const int32_t x = *static_cast<const int32_t *>(a), y = *static_cast<const int32_t *>(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

// A keyed record ordered by its key, the first member, so compareInts orders it; the tag tells apart.
struct Keyed {
    int32_t key, tag;
    bool operator==(const Keyed &) const = default;
};
using Keys = std::vector<Keyed>;
const tsLinkedListCompareFunc byKey = compareInts;

TEST(LinkedList, EndsAndMiddleMatchAStdList)
{
    std::mt19937 random(7031);
    List list;
    std::list<int32_t> reference;
    for (int32_t value = 0; value < 2000; ++value) {
        const size_t size = reference.size(), k = random() % (size + 1);
        auto at = std::next(reference.begin(), static_cast<long>(k));
        Iterator it(list, int64_t(k));
        switch (random() % 4) {
        case 0:  // push at either end
            ASSERT_EQ((value % 2 ? tsLinkedList_pushFront : tsLinkedList_pushBack)(list, &value), 0);
            value % 2 ? reference.push_front(value) : reference.push_back(value);
            break;
        case 1:  // pop at either end; an empty list is left alone
            ASSERT_EQ((value % 2 ? tsLinkedList_popFront : tsLinkedList_popBack)(list), 0);
            if (size > 0) value % 2 ? reference.pop_front() : reference.pop_back();
            break;
        case 2:  // insert before element k; the iterator stands on the new node
            ASSERT_EQ(tsLinkedList_insert(list, it, &value), 0);
            EXPECT_EQ(current(it), value);
            reference.insert(at, value);
            break;
        case 3:  // erase element k; on the sentinel: -1. The iterator moves to the next
            ASSERT_EQ(tsLinkedList_eraseElement(list, it), k == size ? -1 : 0);
            if (k == size) break;
            at = reference.erase(at);
            EXPECT_EQ(current(it), at == reference.end() ? -1 : *at);
        }
        ASSERT_EQ(tsLinkedList_size(list), reference.size());
        ASSERT_EQ(forwards(list), Ints(reference.begin(), reference.end())) << "step " << value;
    }
    EXPECT_EQ(backwards(list), Ints(reference.begin(), reference.end()));
}

TEST(LinkedList, IteratorWalksAndThePastTheEndCodes)
{
    List list, empty;
    fill(list, {1, 2, 3});
    Iterator it(list), onEmpty(empty);
    // Each step: the move, its code, then the element under the iterator (-1: none). Before the start there
    // is no step back; next from the last goes onto the sentinel, previous from there to the last; the ring
    // leads from the sentinel round to the first, where previous stays with -2.
    const struct {
        int32_t (*move)(tsLListIterator *);
        int32_t code, current;
    } steps[] = {
        {tsLListIterator_previous, -2, -1}, {tsLListIterator_next, 0, 1},   {tsLListIterator_next, 0, 2},
        {tsLListIterator_next, 0, 3},       {tsLListIterator_next, -1, -1}, {tsLListIterator_previous, 0, 3},
        {tsLListIterator_end, 0, -1},       {tsLListIterator_next, 0, 1},   {tsLListIterator_previous, -2, 1},
        {tsLListIterator_reset, 0, -1},     {tsLListIterator_next, 0, 1},   {tsLListIterator_begin, 0, 1},
        {tsLListIterator_next, 0, 2},
    };
    for (size_t i = 0; i < std::size(steps); ++i) {
        EXPECT_EQ(steps[i].move(it), steps[i].code) << "step " << i;
        EXPECT_EQ(current(it), steps[i].current) << "step " << i;
    }
    // Find stands on the first equal element; a miss leaves the iterator.
    const int32_t three = 3, seven = 7;
    EXPECT_EQ(tsLListIterator_find(it, &three), 0);
    EXPECT_EQ(current(it), 3);
    EXPECT_EQ(tsLListIterator_find(it, &seven), kFail);
    EXPECT_EQ(current(it), 3);
    // An empty list: begin is the sentinel, which is also the first node.
    EXPECT_EQ(tsLListIterator_begin(onEmpty), 0);
    EXPECT_EQ(current(onEmpty), -1);
    EXPECT_EQ(tsLListIterator_previous(onEmpty), -2);
    EXPECT_EQ(tsLListIterator_next(onEmpty), -1);
}

TEST(LinkedList, InsertAndEraseRanges)
{
    List list;
    fill(list, {1, 2});
    const int32_t front = 0, back = 9, middle = 5;
    EXPECT_EQ(tsLinkedList_insert(list, nullptr, &front), 0);  // null: before the first
    Iterator it(list, 3);
    EXPECT_EQ(tsLinkedList_insert(list, it, &back), 0);  // on the sentinel: appended
    EXPECT_EQ(tsLListIterator_previous(it), 0);
    EXPECT_EQ(tsLinkedList_insert(list, it, &middle), 0);  // before 2
    EXPECT_EQ(forwards(list), (Ints{0, 1, 5, 2, 9}));

    // Rows: first and last positions (-1: null), the list left, and the value both then stand on (-1: none).
    const struct {
        int first, last;
        Ints left;
        int32_t standOn;
    } rows[] = {
        {1, 3, {10, 40, 50}, 40}, {-1, 2, {30, 40, 50}, 30},        {3, -1, {10, 20, 30}, -1},
        {-1, -1, {}, -1},         {2, 2, {10, 20, 30, 40, 50}, 30},
    };
    for (const auto &row : rows) {
        List five;
        fill(five, {10, 20, 30, 40, 50});
        Iterator first(five, row.first), last(five, row.last);
        ASSERT_EQ(tsLinkedList_eraseElements(five, row.first < 0 ? nullptr : first.handle,
                                             row.last < 0 ? nullptr : last.handle),
                  0);
        EXPECT_EQ(forwards(five), row.left);
        EXPECT_TRUE(row.first < 0 || current(first) == row.standOn) << row.first << ".." << row.last;
        EXPECT_TRUE(row.last < 0 || current(last) == row.standOn) << row.first << ".." << row.last;
    }
    // A first iterator on the sentinel, or an empty list from the start: -1.
    List none;
    tsLListIterator_end(it);
    EXPECT_EQ((Ints{tsLinkedList_eraseElements(none, nullptr, nullptr),
                    tsLinkedList_eraseElements(list, it, nullptr)}),
              (Ints{-1, -1}));
}

TEST(LinkedList, PerformActionStopsAndSeesCopies)
{
    List list, empty;
    fill(list, {1, 2, 3, 4, 5});
    Iterator from(list, 1), to(list, 4), end(list, 5);
    struct Visits {
        Ints seen;
        int32_t stopAt;
    };
    auto visit = [](void *element, void *user) -> int32_t {
        auto *v = static_cast<Visits *>(user);
        v->seen.push_back(std::exchange(*static_cast<int32_t *>(element), -999));  // the copy, not the list
        return v->seen.back() == v->stopAt;
    };
    const struct {
        const tsLListIterator *first, *last;
        int32_t stopAt, result;
        Ints seen;
    } rows[] = {
        {nullptr, nullptr, -1, 0, {1, 2, 3, 4, 5}},
        {from, to, -1, 0, {2, 3, 4}},  // last is not visited
        {nullptr, nullptr, 3, 0, {1, 2, 3}},
        {from, nullptr, 2, 0, {2}},
        {end, nullptr, -1, -1, {}},  // from the sentinel
    };
    for (const auto &row : rows) {
        Visits visits{{}, row.stopAt};
        EXPECT_EQ(tsLinkedList_performAction(list, visit, &visits, row.first, row.last), row.result);
        EXPECT_EQ(visits.seen, row.seen);
    }
    EXPECT_EQ(forwards(list), (Ints{1, 2, 3, 4, 5}));
    Visits none{{}, -1};
    EXPECT_EQ(tsLinkedList_performAction(empty, visit, &none, nullptr, nullptr), -1);
    EXPECT_TRUE(none.seen.empty());
}

TEST(LinkedList, SortIsStableAndByBytesWithoutComparison)
{
    std::mt19937 random(99);
    List list(sizeof(Keyed), byKey);
    Keys reference;
    for (int32_t tag = 0; tag < 5000; ++tag) {
        reference.push_back({static_cast<int32_t>(random() % 40), tag});
        ASSERT_EQ(tsLinkedList_pushBack(list, &reference.back()), 0);
    }
    ASSERT_EQ(tsLinkedList_sort(list), 0);
    std::stable_sort(reference.begin(), reference.end(),
                     [](const Keyed &a, const Keyed &b) { return a.key < b.key; });
    EXPECT_EQ(forwards<Keyed>(list), reference);

    // Little-endian: 0x0001 is 01 00, 0x0100 00 01, 0x0002 02 00, 0x0000 00 00; in memory order as below.
    List raw(sizeof(uint16_t));
    fill<uint16_t>(raw, {0x0001, 0x0100, 0x0002, 0x0000});
    ASSERT_EQ(tsLinkedList_sort(raw), 0);
    EXPECT_EQ(forwards<uint16_t>(raw), (std::vector<uint16_t>{0x0000, 0x0100, 0x0001, 0x0002}));
}

TEST(LinkedList, SortedFlagGatesOrderedInsertionAndMerge)
{
    List list(sizeof(Keyed), byKey), empty;
    const Keyed a{2, 0}, b{1, 1}, c{2, 2}, d{3, 3};
    // A new list is sorted; a push clears the flag until a sort.
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &a), 0);
    EXPECT_EQ(tsLinkedList_pushBack(list, &b), 0);
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &c), kFail);
    EXPECT_EQ(tsLinkedList_sort(list), 0);
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &c), 0);  // after the equal key 2
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &d), 0);
    EXPECT_EQ(forwards<Keyed>(list), (Keys{b, a, c, d}));
    // Clearing and setting the comparison leave the flag; reversing clears it whatever the length.
    tsLinkedList_pushFront(list, &d);
    EXPECT_EQ(tsLinkedList_clear(list), 0);
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &a), kFail);
    EXPECT_EQ(tsLinkedList_sort(list), 0);
    EXPECT_EQ(tsLinkedList_setCompareFunction(list, nullptr), 0);
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &a), 0);
    EXPECT_EQ(tsLinkedList_reverse(empty), 0);
    EXPECT_EQ(tsLinkedList_insertInOrder(empty, &a), kFail);
}

TEST(LinkedList, MergeAppendAndUnique)
{
    List destination(sizeof(Keyed), byKey), source(sizeof(Keyed), byKey);
    const Keyed d1{1, 10}, d3{3, 10}, d5{5, 10}, s3{3, 20}, s4{4, 20}, s9{9, 20};
    for (const Keyed *k : {&d1, &d3, &d5})
        tsLinkedList_insertInOrder(destination, k);
    for (const Keyed *k : {&s9, &s3, &s4})
        tsLinkedList_insertInOrder(source, k);
    // Of equal keys the destination's come first; the source stays whole.
    ASSERT_EQ(tsLinkedList_merge(destination, source), 0);
    EXPECT_EQ(forwards<Keyed>(destination), (Keys{d1, d3, s3, s4, d5, s9}));
    EXPECT_EQ(forwards<Keyed>(source), (Keys{s3, s4, s9}));
    // Unique by the comparison keeps the first of a run; merging the source again and thinning changes
    // nothing.
    ASSERT_EQ(tsLinkedList_unique(destination), 0);
    EXPECT_EQ(forwards<Keyed>(destination), (Keys{d1, d3, s4, d5, s9}));
    ASSERT_EQ(tsLinkedList_mergeCopyUnique(destination, source), 0);
    EXPECT_EQ(forwards<Keyed>(destination), (Keys{d1, d3, s4, d5, s9}));
    // Append clears sorted, after which merge does nothing and says 0.
    ASSERT_EQ(tsLinkedList_append(destination, source), 0);
    ASSERT_EQ(tsLinkedList_merge(destination, source), 0);
    EXPECT_EQ(tsLinkedList_size(destination), 8u);
    EXPECT_EQ(tsLinkedList_insertInOrder(destination, &d1), kFail);

    // Unique compares with the element before; a list appended to itself doubles once; merged, interleaves.
    List plain, sorted(sizeof(int32_t), compareInts);
    fill(plain, {1, 1, 2, 2, 2, 3, 1, 1});
    ASSERT_EQ(tsLinkedList_unique(plain), 0);
    EXPECT_EQ(forwards(plain), (Ints{1, 2, 3, 1}));
    ASSERT_EQ(tsLinkedList_reverse(plain), 0);
    EXPECT_EQ(backwards(plain), (Ints{1, 3, 2, 1}));
    ASSERT_EQ(tsLinkedList_append(plain, plain), 0);
    ASSERT_EQ(tsLinkedList_appendCopy(plain, plain), 0);
    EXPECT_EQ(forwards(plain), (Ints{1, 3, 2, 1, 1, 3, 2, 1, 1, 3, 2, 1, 1, 3, 2, 1}));
    for (int32_t v : {1, 2, 3})
        tsLinkedList_insertInOrder(sorted, &v);
    ASSERT_EQ(tsLinkedList_merge(sorted, sorted), 0);
    EXPECT_EQ(forwards(sorted), (Ints{1, 1, 2, 2, 3, 3}));
}

TEST(LinkedList, ValueByIndexAndTheSizeOf32768)
{
    List list;
    for (int32_t i = 0; i < 32767; ++i)
        ASSERT_EQ(tsLinkedList_pushBack(list, &i), 0);
    int32_t value = -1, stays = 5;
    EXPECT_EQ((Ints{tsLinkedList_getValueByIndex(list, &value, 32767),
                    tsLinkedList_getValueByIndex(list, &value, -1),
                    tsLinkedList_getValueByIndex(list, &value, 32766),
                    tsLinkedList_getValueByIndex(nullptr, &stays, 0)}),
              (Ints{kFail, kFail, 0, 0}));
    EXPECT_EQ(value, 32766);
    EXPECT_EQ(stays, 5);  // a null list stores nothing
    // A list of exactly 32768 elements refuses every index; one more does not.
    ASSERT_EQ(tsLinkedList_pushBack(list, &value), 0);
    EXPECT_EQ(tsLinkedList_getValueByIndex(list, &stays, 0), kFail);
    EXPECT_EQ(stays, 5);
    ASSERT_EQ(tsLinkedList_pushBack(list, &value), 0);
    EXPECT_EQ(tsLinkedList_getValueByIndex(list, &value, 1), 0);
    EXPECT_EQ(value, 1);
}

TEST(LinkedList, CreationDestructionAndNulls)
{
    tsLinkedList *list = nullptr, *none = nullptr;
    tsLListIterator *it = nullptr, *held = nullptr;
    EXPECT_EQ((Ints{tsLinkedList_create(&none, 0), tsLinkedList_create(&list, sizeof(int32_t)),
                    tsLListIterator_create(&it, nullptr), tsLListIterator_create(&held, list)}),
              (Ints{0, 0, kFail, 0}));
    EXPECT_EQ(none, nullptr);  // size 0: nothing is done, and the result is 0
    EXPECT_EQ(it, nullptr);
    // A handle that holds something already: nothing is done.
    tsLinkedList *const keptList = list;
    tsLListIterator *const keptIterator = held;
    EXPECT_EQ((Ints{tsLinkedList_create(&list, sizeof(int32_t)), tsLListIterator_create(&held, list)}),
              (Ints{0, kFail}));
    EXPECT_EQ(list, keptList);
    EXPECT_EQ(held, keptIterator);
    EXPECT_EQ(tsLListIterator_destroy(&held), 0);
    EXPECT_EQ(held, nullptr);
    const int32_t one = 1;
    int32_t out = 0;
    for (int32_t status :
         {tsLListIterator_destroy(&it), tsLListIterator_destroy(nullptr),
          tsLinkedList_pushBack(list, nullptr), tsLinkedList_pushBack(nullptr, &one),
          tsLinkedList_pushFront(nullptr, &one), tsLinkedList_popBack(nullptr),
          tsLinkedList_popFront(nullptr), tsLinkedList_clear(nullptr), tsLinkedList_sort(nullptr),
          tsLinkedList_reverse(nullptr), tsLinkedList_unique(nullptr), tsLinkedList_append(list, nullptr),
          tsLinkedList_appendCopy(nullptr, list), tsLinkedList_merge(nullptr, list),
          tsLinkedList_mergeCopyUnique(list, nullptr), tsLinkedList_destroy(nullptr)})
        EXPECT_EQ(status, kFail);
    for (int32_t status :
         {tsLinkedList_insert(nullptr, nullptr, &one), tsLinkedList_insertInOrder(nullptr, &one),
          tsLinkedList_eraseElement(nullptr, nullptr), tsLinkedList_eraseElements(nullptr, nullptr, nullptr),
          tsLinkedList_setCompareFunction(nullptr, nullptr),
          tsLinkedList_performAction(nullptr, nullptr, nullptr, nullptr, nullptr),
          tsLListIterator_reset(nullptr), tsLListIterator_begin(nullptr), tsLListIterator_end(nullptr),
          tsLListIterator_next(nullptr), tsLListIterator_previous(nullptr),
          tsLListIterator_getCurrent(nullptr, &out), tsLListIterator_find(nullptr, &one),
          tsLListIterator_setLinkedList(nullptr, list)})
        EXPECT_EQ(status, kFail);
    EXPECT_EQ(tsLinkedList_size(nullptr), 0u);
    EXPECT_EQ(tsLinkedList_destroy(&list), 0);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(tsLinkedList_destroy(&list), kFail);
}

TEST(LinkedList, SetLinkedListRefillsTheIteratorsOwnList)
{
    List own, other(sizeof(Keyed), byKey);
    fill(own, {7, 8});
    const Keyed k1{2, 1}, k2{1, 2}, probe{2, 99};
    fill<Keyed>(other, {k1, k2});
    tsLinkedList_sort(other);
    Iterator it(own, 0);
    // The own list takes copies of the other's elements, its element size, comparison and sorted flag; the
    // other list is untouched and the iterator, set before the start, is not bound to it.
    ASSERT_EQ(tsLListIterator_setLinkedList(it, other), 0);
    tsLinkedList_popFront(other);
    EXPECT_EQ(forwards<Keyed>(own), (Keys{k2, k1}));
    Keyed seen{};
    EXPECT_EQ(tsLListIterator_next(it), 0);
    EXPECT_EQ(tsLListIterator_getCurrent(it, &seen), 0);
    EXPECT_EQ(seen, k2);
    EXPECT_EQ(tsLListIterator_find(it, &probe), 0);         // found by key: the comparison came along
    EXPECT_EQ(tsLinkedList_insertInOrder(own, &probe), 0);  // and the sorted flag
    // The same list: only the flags; the iterator goes before the start.
    ASSERT_EQ(tsLListIterator_setLinkedList(it, own), 0);
    EXPECT_EQ(tsLinkedList_size(own), 3u);
    EXPECT_EQ(tsLListIterator_getCurrent(it, &seen), -1);
}

TEST(LinkedList, MergingTwoCrewsChainages)
{
    // Two crews' chainages (metres, crew), each kept sorted, merged with the shared benchmark 100 kept once.
    List north(sizeof(Keyed), byKey), south(sizeof(Keyed), byKey);
    for (const Keyed &c : {Keyed{0, 1}, {40, 1}, {160, 1}, {100, 1}, {140, 2}, {20, 2}, {100, 2}})
        ASSERT_EQ(tsLinkedList_insertInOrder(c.tag == 1 ? north : south, &c), 0);
    ASSERT_EQ(tsLinkedList_mergeCopyUnique(north, south), 0);
    EXPECT_EQ(forwards<Keyed>(north), (Keys{{0, 1}, {20, 2}, {40, 1}, {100, 1}, {140, 2}, {160, 1}}));
    int32_t total = 0;
    auto sum = [](void *element, void *user) -> int32_t {
        return *static_cast<int32_t *>(user) += static_cast<Keyed *>(element)->key, 0;
    };
    ASSERT_EQ(tsLinkedList_performAction(north, sum, &total, nullptr, nullptr), 0);
    EXPECT_EQ(total, 460);
}

}  // namespace
