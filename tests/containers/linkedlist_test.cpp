// The linked list and its iterator: work at both ends and in the middle
// against a std::list, walks forwards and backwards and past the ends, the
// sorted flag, sort, merge, unique and append with comparisons, the stop
// rule of the walk, and the failure values.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <list>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/linkedlist.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

struct List {
    tsLinkedList *handle = nullptr;
    explicit List(size_t elementSize = sizeof(int32_t)) { tsLinkedList_create(&handle, elementSize); }
    List(const List &) = delete;
    List &operator=(const List &) = delete;
    ~List()
    {
        if (handle != nullptr) tsLinkedList_destroy(&handle);
    }
    operator tsLinkedList *() const { return handle; }
};

struct Iterator {
    tsLListIterator *handle = nullptr;
    explicit Iterator(tsLinkedList *list) { tsLListIterator_create(&handle, list); }
    Iterator(const Iterator &) = delete;
    Iterator &operator=(const Iterator &) = delete;
    ~Iterator()
    {
        if (handle != nullptr) tsLListIterator_destroy(&handle);
    }
    operator tsLListIterator *() const { return handle; }
};

void fill(tsLinkedList *list, std::initializer_list<int32_t> values)
{
    for (int32_t value : values)
        ASSERT_EQ(tsLinkedList_pushBack(list, &value), 0);
}

// The elements read forwards with an iterator.
template <class T = int32_t> std::vector<T> forwards(tsLinkedList *list)
{
    std::vector<T> values;
    Iterator it(list);
    T value{};
    while (tsLListIterator_next(it) == 0) {
        EXPECT_EQ(tsLListIterator_getCurrent(it, &value), 0);
        values.push_back(value);
    }
    return values;
}

// The elements read backwards from the end, reversed back into list order.
std::vector<int32_t> backwards(tsLinkedList *list)
{
    std::vector<int32_t> values;
    Iterator it(list);
    tsLListIterator_end(it);
    int32_t value = 0;
    while (tsLListIterator_previous(it) == 0) {
        EXPECT_EQ(tsLListIterator_getCurrent(it, &value), 0);
        values.push_back(value);
    }
    std::reverse(values.begin(), values.end());
    return values;
}

int32_t compareInts(const void *a, const void *b, const tsLinkedList *)
{
    const int32_t x = *static_cast<const int32_t *>(a), y = *static_cast<const int32_t *>(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

// A keyed record: ordered by key only, the tag tells equal keys apart.
struct Keyed {
    int32_t key;
    int32_t tag;
    bool operator==(const Keyed &) const = default;
};

int32_t byKey(const void *a, const void *b, const tsLinkedList *)
{
    const int32_t x = static_cast<const Keyed *>(a)->key, y = static_cast<const Keyed *>(b)->key;
    return x < y ? -1 : (x > y ? 1 : 0);
}

TEST(LinkedList, EndsAndMiddleMatchAStdList)
{
    std::mt19937 random(7031);
    List list;
    Iterator it(list);
    std::list<int32_t> reference;
    for (int32_t step = 0; step < 2000; ++step) {
        const int32_t value = step;
        const auto size = reference.size();
        switch (random() % 7) {
        case 0:
            ASSERT_EQ(tsLinkedList_pushFront(list, &value), 0);
            reference.push_front(value);
            break;
        case 1:
            ASSERT_EQ(tsLinkedList_pushBack(list, &value), 0);
            reference.push_back(value);
            break;
        case 2:
            ASSERT_EQ(tsLinkedList_popFront(list), 0);
            if (size > 0) reference.pop_front();
            break;
        case 3:
            ASSERT_EQ(tsLinkedList_popBack(list), 0);
            if (size > 0) reference.pop_back();
            break;
        case 4:
        case 5: {  // insert before position k, 0 to size (size: the sentinel)
            const auto k = random() % (size + 1);
            tsLListIterator_begin(it);
            for (size_t i = 0; i < k; ++i)
                tsLListIterator_next(it);
            ASSERT_EQ(tsLinkedList_insert(list, it, &value), 0);
            int32_t current = -1;
            ASSERT_EQ(tsLListIterator_getCurrent(it, &current), 0);
            EXPECT_EQ(current, value);  // the iterator stands on the new node
            reference.insert(std::next(reference.begin(), static_cast<long>(k)), value);
            break;
        }
        case 6: {  // erase at position k
            if (size == 0) break;
            const auto k = random() % size;
            tsLListIterator_begin(it);
            for (size_t i = 0; i < k; ++i)
                tsLListIterator_next(it);
            ASSERT_EQ(tsLinkedList_eraseElement(list, it), 0);
            auto after = reference.erase(std::next(reference.begin(), static_cast<long>(k)));
            int32_t current = -1;
            ASSERT_EQ(tsLListIterator_getCurrent(it, &current), after == reference.end() ? -1 : 0);
            if (after != reference.end()) {
                EXPECT_EQ(current, *after);
            }
            break;
        }
        }
        const std::vector<int32_t> expected(reference.begin(), reference.end());
        ASSERT_EQ(tsLinkedList_size(list), expected.size());
        ASSERT_EQ(forwards(list), expected) << "step " << step;
    }
    const std::vector<int32_t> expected(reference.begin(), reference.end());
    EXPECT_EQ(backwards(list), expected);
}

TEST(LinkedList, IteratorWalksAndThePastTheEndCodes)
{
    List list;
    fill(list, {1, 2, 3});
    Iterator it(list);
    int32_t value = 0;
    // A fresh iterator stands before the start: no element, no step back.
    EXPECT_EQ(tsLListIterator_getCurrent(it, &value), -1);
    EXPECT_EQ(tsLListIterator_previous(it), -2);
    EXPECT_EQ(tsLListIterator_next(it), 0);
    EXPECT_EQ(tsLListIterator_next(it), 0);
    EXPECT_EQ(tsLListIterator_next(it), 0);
    EXPECT_EQ(tsLListIterator_next(it), -1);  // onto the sentinel
    EXPECT_EQ(tsLListIterator_getCurrent(it, &value), -1);
    // From the sentinel, back to the last element; the ring leads forward round to the first.
    EXPECT_EQ(tsLListIterator_previous(it), 0);
    EXPECT_EQ(tsLListIterator_getCurrent(it, &value), 0);
    EXPECT_EQ(value, 3);
    tsLListIterator_end(it);
    EXPECT_EQ(tsLListIterator_next(it), 0);
    EXPECT_EQ(tsLListIterator_getCurrent(it, &value), 0);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(tsLListIterator_previous(it), -2);  // on the first node
    tsLListIterator_reset(it);
    EXPECT_EQ(tsLListIterator_getCurrent(it, &value), -1);
    EXPECT_EQ(tsLListIterator_next(it), 0);
    EXPECT_EQ(tsLListIterator_getCurrent(it, &value), 0);
    EXPECT_EQ(value, 1);

    // Find stands on the first equal element; a miss leaves the iterator.
    const int32_t two = 2, seven = 7;
    EXPECT_EQ(tsLListIterator_find(it, &two), 0);
    EXPECT_EQ(tsLListIterator_getCurrent(it, &value), 0);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(tsLListIterator_find(it, &seven), kFail);
    EXPECT_EQ(tsLListIterator_getCurrent(it, &value), 0);
    EXPECT_EQ(value, 2);

    // An empty list: begin is the sentinel, which is also the first node.
    List empty;
    Iterator onEmpty(empty);
    EXPECT_EQ(tsLListIterator_begin(onEmpty), 0);
    EXPECT_EQ(tsLListIterator_getCurrent(onEmpty, &value), -1);
    EXPECT_EQ(tsLListIterator_previous(onEmpty), -2);
    EXPECT_EQ(tsLListIterator_next(onEmpty), -1);
}

TEST(LinkedList, InsertPositions)
{
    List list;
    fill(list, {1, 2});
    const int32_t front = 0, back = 9, middle = 5;
    EXPECT_EQ(tsLinkedList_insert(list, nullptr, &front), 0);  // null: before the first
    Iterator it(list);
    tsLListIterator_end(it);
    EXPECT_EQ(tsLinkedList_insert(list, it, &back), 0);  // on the sentinel: appended
    EXPECT_EQ(tsLListIterator_previous(it), 0);
    EXPECT_EQ(tsLinkedList_insert(list, it, &middle), 0);  // before 2
    EXPECT_EQ(forwards(list), (std::vector<int32_t>{0, 1, 5, 2, 9}));
}

TEST(LinkedList, EraseRangesAndTheirIterators)
{
    // Rows: first and last positions (-1 for a null iterator), the list
    // left, and the value both iterators then stand on (-1: the sentinel).
    const struct {
        int first, last;
        std::vector<int32_t> left;
        int32_t standOn;
    } rows[] = {
        {1, 3, {10, 40, 50}, 40}, {-1, 2, {30, 40, 50}, 30},        {3, -1, {10, 20, 30}, -1},
        {-1, -1, {}, -1},         {2, 2, {10, 20, 30, 40, 50}, 30},
    };
    for (const auto &row : rows) {
        List list;
        fill(list, {10, 20, 30, 40, 50});
        Iterator first(list), last(list);
        tsLListIterator_begin(first);
        tsLListIterator_begin(last);
        for (int i = 0; i < row.first; ++i)
            tsLListIterator_next(first);
        for (int i = 0; i < row.last; ++i)
            tsLListIterator_next(last);
        tsLListIterator *f = row.first < 0 ? nullptr : first.handle;
        tsLListIterator *l = row.last < 0 ? nullptr : last.handle;
        ASSERT_EQ(tsLinkedList_eraseElements(list, f, l), 0);
        EXPECT_EQ(forwards(list), row.left);
        for (tsLListIterator *moved : {f, l}) {
            if (moved == nullptr) continue;
            int32_t value = -1;
            const int32_t status = tsLListIterator_getCurrent(moved, &value);
            EXPECT_EQ(status == 0 ? value : -1, row.standOn);
        }
    }
    // A first iterator on the sentinel, or an empty list from the start: -1.
    List list;
    Iterator atEnd(list);
    EXPECT_EQ(tsLinkedList_eraseElements(list, nullptr, nullptr), -1);
    fill(list, {1});
    tsLListIterator_end(atEnd);
    EXPECT_EQ(tsLinkedList_eraseElements(list, atEnd, nullptr), -1);
    EXPECT_EQ(tsLinkedList_eraseElement(list, atEnd), -1);
    tsLListIterator_reset(atEnd);
    EXPECT_EQ(tsLinkedList_eraseElement(list, atEnd), -1);
    EXPECT_EQ(tsLinkedList_size(list), 1u);
}

struct Visits {
    std::vector<int32_t> seen;
    int32_t stopAt = -1;
};

int32_t visit(void *element, void *userData)
{
    auto *visits = static_cast<Visits *>(userData);
    auto *value = static_cast<int32_t *>(element);
    visits->seen.push_back(*value);
    const int32_t answer = *value == visits->stopAt ? 1 : 0;
    *value = -999;  // a change to the copy, which must not reach the list
    return answer;
}

TEST(LinkedList, PerformActionStopsAndSeesCopies)
{
    List list;
    fill(list, {1, 2, 3, 4, 5});
    Iterator from(list), to(list);
    tsLListIterator_begin(from);
    tsLListIterator_next(from);  // on 2
    tsLListIterator_begin(to);
    for (int i = 0; i < 4; ++i)
        tsLListIterator_next(to);  // on 5
    const struct {
        const tsLListIterator *first, *last;
        int32_t stopAt;
        std::vector<int32_t> seen;
    } rows[] = {
        {nullptr, nullptr, -1, {1, 2, 3, 4, 5}},
        {from, to, -1, {2, 3, 4}},  // last is not visited
        {nullptr, nullptr, 3, {1, 2, 3}},
        {from, nullptr, 2, {2}},
    };
    for (const auto &row : rows) {
        Visits visits{{}, row.stopAt};
        EXPECT_EQ(tsLinkedList_performAction(list, visit, &visits, row.first, row.last), 0);
        EXPECT_EQ(visits.seen, row.seen);
    }
    EXPECT_EQ(forwards(list), (std::vector<int32_t>{1, 2, 3, 4, 5}));

    List empty;
    Visits none;
    EXPECT_EQ(tsLinkedList_performAction(empty, visit, &none, nullptr, nullptr), -1);
    tsLListIterator_end(from);
    EXPECT_EQ(tsLinkedList_performAction(list, visit, &none, from, nullptr), -1);
    EXPECT_TRUE(none.seen.empty());
}

TEST(LinkedList, SortIsStableAndMatchesStableSort)
{
    std::mt19937 random(99);
    List list(sizeof(Keyed));
    tsLinkedList_setCompareFunction(list, byKey);
    std::vector<Keyed> reference;
    for (int32_t tag = 0; tag < 5000; ++tag) {
        const Keyed element{static_cast<int32_t>(random() % 40), tag};
        ASSERT_EQ(tsLinkedList_pushBack(list, &element), 0);
        reference.push_back(element);
    }
    ASSERT_EQ(tsLinkedList_sort(list), 0);
    std::stable_sort(reference.begin(), reference.end(),
                     [](const Keyed &a, const Keyed &b) { return a.key < b.key; });
    EXPECT_EQ(forwards<Keyed>(list), reference);
}

TEST(LinkedList, WithoutComparisonElementsSortByTheirBytes)
{
    // Bytes in memory, little-endian: 0x0001 is 01 00, 0x0100 is 00 01,
    // 0x0002 is 02 00, 0x0000 is 00 00; memory order: 0x0000, 0x0100,
    // 0x0001, 0x0002.
    List list(sizeof(uint16_t));
    for (uint16_t value : {uint16_t{0x0001}, uint16_t{0x0100}, uint16_t{0x0002}, uint16_t{0x0000}})
        ASSERT_EQ(tsLinkedList_pushBack(list, &value), 0);
    ASSERT_EQ(tsLinkedList_sort(list), 0);
    EXPECT_EQ(forwards<uint16_t>(list), (std::vector<uint16_t>{0x0000, 0x0100, 0x0001, 0x0002}));
}

TEST(LinkedList, SortedFlagGatesOrderedInsertionAndMerge)
{
    List list(sizeof(Keyed));
    tsLinkedList_setCompareFunction(list, byKey);
    const Keyed a{2, 0}, b{1, 1}, c{2, 2}, d{3, 3};
    // A new list is sorted; a push clears the flag until a sort.
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &a), 0);
    EXPECT_EQ(tsLinkedList_pushBack(list, &b), 0);
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &c), kFail);
    EXPECT_EQ(tsLinkedList_sort(list), 0);
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &c), 0);  // after the equal key 2
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &d), 0);
    EXPECT_EQ(forwards<Keyed>(list), (std::vector<Keyed>{b, a, c, d}));

    // Clearing and setting the comparison leave the flag; reversing clears
    // it whatever the length.
    tsLinkedList_pushFront(list, &d);
    EXPECT_EQ(tsLinkedList_clear(list), 0);
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &a), kFail);
    EXPECT_EQ(tsLinkedList_sort(list), 0);
    EXPECT_EQ(tsLinkedList_setCompareFunction(list, nullptr), 0);
    EXPECT_EQ(tsLinkedList_insertInOrder(list, &a), 0);
    List empty;
    EXPECT_EQ(tsLinkedList_reverse(empty), 0);
    const int32_t one = 1;
    EXPECT_EQ(tsLinkedList_insertInOrder(empty, &one), kFail);
}

TEST(LinkedList, MergeAppendAndUnique)
{
    List destination(sizeof(Keyed)), source(sizeof(Keyed));
    tsLinkedList_setCompareFunction(destination, byKey);
    tsLinkedList_setCompareFunction(source, byKey);
    const Keyed d1{1, 10}, d3{3, 10}, d5{5, 10}, s3{3, 20}, s4{4, 20}, s9{9, 20};
    for (const Keyed *k : {&d1, &d3, &d5})
        tsLinkedList_insertInOrder(destination, k);
    for (const Keyed *k : {&s3, &s4, &s9})
        tsLinkedList_insertInOrder(source, k);

    // Of equal keys the destination's come first; the source stays whole.
    ASSERT_EQ(tsLinkedList_merge(destination, source), 0);
    EXPECT_EQ(forwards<Keyed>(destination), (std::vector<Keyed>{d1, d3, s3, s4, d5, s9}));
    EXPECT_EQ(forwards<Keyed>(source), (std::vector<Keyed>{s3, s4, s9}));

    // Unique by the comparison: of the run of key 3 the first stays.
    ASSERT_EQ(tsLinkedList_unique(destination), 0);
    EXPECT_EQ(forwards<Keyed>(destination), (std::vector<Keyed>{d1, d3, s4, d5, s9}));

    // mergeCopyUnique: merged with the source again, then thinned.
    ASSERT_EQ(tsLinkedList_mergeCopyUnique(destination, source), 0);
    EXPECT_EQ(forwards<Keyed>(destination), (std::vector<Keyed>{d1, d3, s4, d5, s9}));

    // Append clears sorted, after which merge does nothing and says 0.
    ASSERT_EQ(tsLinkedList_append(destination, source), 0);
    EXPECT_EQ(tsLinkedList_size(destination), 8u);
    ASSERT_EQ(tsLinkedList_merge(destination, source), 0);
    EXPECT_EQ(tsLinkedList_size(destination), 8u);
    EXPECT_EQ(tsLinkedList_insertInOrder(destination, &d1), kFail);
}

TEST(LinkedList, AppendToItselfDoublesOnce)
{
    for (auto append : {tsLinkedList_append, tsLinkedList_appendCopy}) {
        List list;
        fill(list, {1, 2, 3});
        ASSERT_EQ(append(list, list), 0);
        EXPECT_EQ(forwards(list), (std::vector<int32_t>{1, 2, 3, 1, 2, 3}));
    }
    // Merging a sorted list with itself interleaves the copies.
    List sorted;
    for (int32_t v : {3, 1, 2})
        tsLinkedList_pushBack(sorted, &v);
    tsLinkedList_setCompareFunction(sorted, compareInts);
    tsLinkedList_sort(sorted);
    ASSERT_EQ(tsLinkedList_merge(sorted, sorted), 0);
    EXPECT_EQ(forwards(sorted), (std::vector<int32_t>{1, 1, 2, 2, 3, 3}));
    ASSERT_EQ(tsLinkedList_unique(sorted), 0);
    EXPECT_EQ(forwards(sorted), (std::vector<int32_t>{1, 2, 3}));
}

TEST(LinkedList, UniqueComparesWithTheElementBefore)
{
    List list;
    fill(list, {1, 1, 2, 2, 2, 3, 1, 1});
    ASSERT_EQ(tsLinkedList_unique(list), 0);
    EXPECT_EQ(forwards(list), (std::vector<int32_t>{1, 2, 3, 1}));
    ASSERT_EQ(tsLinkedList_reverse(list), 0);
    EXPECT_EQ(forwards(list), (std::vector<int32_t>{1, 3, 2, 1}));
    EXPECT_EQ(backwards(list), (std::vector<int32_t>{1, 3, 2, 1}));
}

TEST(LinkedList, ValueByIndexAndTheSizeOf32768)
{
    List list;
    for (int32_t i = 0; i < 32767; ++i)
        ASSERT_EQ(tsLinkedList_pushBack(list, &i), 0);
    int32_t value = -1;
    // Rows: index and result on 32767 elements, then on 32768.
    EXPECT_EQ(tsLinkedList_getValueByIndex(list, &value, 32766), 0);
    EXPECT_EQ(value, 32766);
    EXPECT_EQ(tsLinkedList_getValueByIndex(list, &value, 32767), kFail);
    EXPECT_EQ(tsLinkedList_getValueByIndex(list, &value, -1), kFail);
    const int32_t more = 32767;
    ASSERT_EQ(tsLinkedList_pushBack(list, &more), 0);
    value = -1;
    EXPECT_EQ(tsLinkedList_getValueByIndex(list, &value, 0), kFail);
    EXPECT_EQ(value, -1);
    ASSERT_EQ(tsLinkedList_pushBack(list, &more), 0);
    EXPECT_EQ(tsLinkedList_getValueByIndex(list, &value, 32768), 0);
    EXPECT_EQ(value, 32767);
    value = 5;
    EXPECT_EQ(tsLinkedList_getValueByIndex(nullptr, &value, 0), 0);
    EXPECT_EQ(value, 5);
}

TEST(LinkedList, CreationDestructionAndNulls)
{
    tsLinkedList *list = nullptr;
    EXPECT_EQ(tsLinkedList_create(&list, 0), 0);  // size 0: nothing is done
    EXPECT_EQ(list, nullptr);
    ASSERT_EQ(tsLinkedList_create(&list, sizeof(int32_t)), 0);
    ASSERT_NE(list, nullptr);
    tsLinkedList *kept = list;
    EXPECT_EQ(tsLinkedList_create(&list, sizeof(int32_t)), 0);  // handle not null: nothing
    EXPECT_EQ(list, kept);

    tsLListIterator *it = nullptr;
    EXPECT_EQ(tsLListIterator_create(&it, nullptr), kFail);
    ASSERT_EQ(tsLListIterator_create(&it, list), 0);
    tsLListIterator *held = it;
    EXPECT_EQ(tsLListIterator_create(&it, list), kFail);
    EXPECT_EQ(it, held);
    EXPECT_EQ(tsLListIterator_destroy(&it), 0);
    EXPECT_EQ(it, nullptr);
    EXPECT_EQ(tsLListIterator_destroy(&it), kFail);
    EXPECT_EQ(tsLListIterator_destroy(nullptr), kFail);

    const int32_t one = 1;
    int32_t out = 0;
    EXPECT_EQ(tsLinkedList_pushBack(list, nullptr), kFail);
    for (auto status : {tsLinkedList_pushBack(nullptr, &one),
                        tsLinkedList_pushFront(nullptr, &one),
                        tsLinkedList_popBack(nullptr),
                        tsLinkedList_popFront(nullptr),
                        tsLinkedList_clear(nullptr),
                        tsLinkedList_sort(nullptr),
                        tsLinkedList_reverse(nullptr),
                        tsLinkedList_unique(nullptr),
                        tsLinkedList_append(list, nullptr),
                        tsLinkedList_appendCopy(nullptr, list),
                        tsLinkedList_merge(nullptr, list),
                        tsLinkedList_mergeCopyUnique(list, nullptr),
                        tsLinkedList_insert(nullptr, nullptr, &one),
                        tsLinkedList_insertInOrder(nullptr, &one),
                        tsLinkedList_eraseElement(nullptr, nullptr),
                        tsLinkedList_eraseElements(nullptr, nullptr, nullptr),
                        tsLinkedList_setCompareFunction(nullptr, nullptr),
                        tsLinkedList_performAction(nullptr, visit, nullptr, nullptr, nullptr),
                        tsLListIterator_reset(nullptr),
                        tsLListIterator_begin(nullptr),
                        tsLListIterator_end(nullptr),
                        tsLListIterator_next(nullptr),
                        tsLListIterator_previous(nullptr),
                        tsLListIterator_getCurrent(nullptr, &out),
                        tsLListIterator_find(nullptr, &one),
                        tsLListIterator_setLinkedList(nullptr, list)})
        EXPECT_EQ(status, kFail);
    EXPECT_EQ(tsLinkedList_size(nullptr), 0u);
    EXPECT_EQ(tsLinkedList_popBack(list), 0);  // empty: left alone

    EXPECT_EQ(tsLinkedList_destroy(&list), 0);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(tsLinkedList_destroy(&list), kFail);
    EXPECT_EQ(tsLinkedList_destroy(nullptr), kFail);
}

TEST(LinkedList, SetLinkedListRefillsTheIteratorsOwnList)
{
    List own, other(sizeof(Keyed));
    fill(own, {7, 8});
    const Keyed k1{2, 1}, k2{1, 2};
    tsLinkedList_pushBack(other, &k1);
    tsLinkedList_pushBack(other, &k2);
    tsLinkedList_setCompareFunction(other, byKey);
    tsLinkedList_sort(other);

    Iterator it(own);
    tsLListIterator_begin(it);
    ASSERT_EQ(tsLListIterator_setLinkedList(it, other), 0);
    // The own list now holds copies of the other's elements, its size and
    // its comparison; the other list is untouched and the iterator is not
    // bound to it.
    EXPECT_EQ(forwards<Keyed>(own), (std::vector<Keyed>{k2, k1}));
    EXPECT_EQ(forwards<Keyed>(other), (std::vector<Keyed>{k2, k1}));
    Keyed current{};
    EXPECT_EQ(tsLListIterator_getCurrent(it, &current), -1);  // before the start
    EXPECT_EQ(tsLListIterator_next(it), 0);
    EXPECT_EQ(tsLListIterator_getCurrent(it, &current), 0);
    EXPECT_EQ(current, k2);
    const Keyed probe{2, 99};
    EXPECT_EQ(tsLListIterator_find(it, &probe), 0);         // found by key: the comparison came along
    EXPECT_EQ(tsLinkedList_insertInOrder(own, &probe), 0);  // and the sorted flag
    tsLinkedList_popFront(other);
    EXPECT_EQ(tsLinkedList_size(own), 3u);

    // The same list: only the flags; the iterator goes before the start.
    tsLListIterator_begin(it);
    ASSERT_EQ(tsLListIterator_setLinkedList(it, own), 0);
    EXPECT_EQ(tsLinkedList_size(own), 3u);
    EXPECT_EQ(tsLListIterator_getCurrent(it, &current), -1);
}

// Scenario: two crews' chainage records of a road, each sorted, merged into
// one survey list, duplicates of a shared benchmark removed, then walked.
struct Chainage {
    double station;
    int32_t crew;
};

int32_t byStation(const void *a, const void *b, const tsLinkedList *)
{
    const double x = static_cast<const Chainage *>(a)->station, y = static_cast<const Chainage *>(b)->station;
    return x < y ? -1 : (x > y ? 1 : 0);
}

int32_t sumStations(void *element, void *userData)
{
    *static_cast<double *>(userData) += static_cast<Chainage *>(element)->station;
    return 0;
}

TEST(LinkedList, MergingTwoCrewsChainages)
{
    List north(sizeof(Chainage)), south(sizeof(Chainage));
    for (tsLinkedList *l : {north.handle, south.handle})
        tsLinkedList_setCompareFunction(l, byStation);
    for (double s : {0.0, 40.0, 100.0, 160.0}) {
        const Chainage c{s, 1};
        ASSERT_EQ(tsLinkedList_insertInOrder(north, &c), 0);
    }
    for (double s : {140.0, 20.0, 100.0}) {
        const Chainage c{s, 2};
        ASSERT_EQ(tsLinkedList_insertInOrder(south, &c), 0);
    }
    ASSERT_EQ(tsLinkedList_mergeCopyUnique(north, south), 0);
    const auto merged = forwards<Chainage>(north);
    std::vector<double> stations;
    std::vector<int32_t> crews;
    for (const Chainage &c : merged) {
        stations.push_back(c.station);
        crews.push_back(c.crew);
    }
    EXPECT_EQ(stations, (std::vector<double>{0.0, 20.0, 40.0, 100.0, 140.0, 160.0}));
    EXPECT_EQ(crews, (std::vector<int32_t>{1, 2, 1, 1, 2, 1}));  // the shared 100.0 kept from north
    double total = 0.0;
    ASSERT_EQ(tsLinkedList_performAction(north, sumStations, &total, nullptr, nullptr), 0);
    EXPECT_EQ(total, 460.0);
}

}  // namespace
