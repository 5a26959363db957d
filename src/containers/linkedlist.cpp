// tsLinkedList_*, tsLListIterator_*: a doubly linked ring with a sentinel,
// holding copies of fixed-size elements, and its iterator. Each node and its
// element copy are one heap block from tsMem_malloc. Changes that can break
// the order clear the list's sorted flag; merging and ordered insertion are
// refused or skipped on a list whose flag is clear.
//
// Growth can run out of memory or past the longest list (2^60 - 1 elements,
// "list<T> too long"). Inside, both are C++ exceptions thrown before the list
// is touched; at the interface they become the failure value 32768, and the
// list is left as it was.
#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

#include <tessar/linkedlist.h>
#include <tessar/memory.h>

#include "containers/linkedlist.hpp"
#include "frame/kernel.hpp"

using tessar::detail::kFailure;
using tessar::detail::kListMaxCount;
using tessar::detail::ListNode;

namespace {

constexpr int32_t kNoElement = -1;  // before the start or on the sentinel where an element is needed
constexpr int32_t kAtFirst = -2;    // no step back from the first element

// ---- Failures at the interface ----

template <class Step> int32_t guarded(Step &&step) noexcept
{
    try {
        step();
        return 0;
    } catch (const std::length_error &) {
        return kFailure;
    } catch (const std::bad_alloc &) {
        return kFailure;
    }
}

void checkRoom(const tsLinkedList *list, size_t added)
{
    if (added > kListMaxCount - list->count) throw std::length_error("list<T> too long");
}

// ---- Nodes and runs of nodes ----

// A node owned by owner with room for elementSize bytes, holding a copy of
// the first sourceBytes of element; room the source does not fill is zeroed.
ListNode *newNode(tsLinkedList *owner, size_t elementSize, const void *element, size_t sourceBytes)
{
    auto *node = static_cast<ListNode *>(tsMem_malloc(sizeof(ListNode) + elementSize));
    if (node == nullptr) throw std::bad_alloc();
    *node = ListNode{nullptr, nullptr, node + 1, owner};
    const size_t copied = std::min(sourceBytes, elementSize);
    std::memcpy(node->element, element, copied);
    std::memset(static_cast<unsigned char *>(node->element) + copied, 0, elementSize - copied);
    return node;
}

ListNode *newNode(tsLinkedList *owner, const void *element)
{
    return newNode(owner, owner->elementSize, element, owner->elementSize);
}

// A run of nodes outside any ring, linked both ways, with null at its ends.
struct Chain {
    ListNode *first = nullptr;
    ListNode *last = nullptr;
    size_t count = 0;

    bool empty() const { return first == nullptr; }
};

void chainInsertBefore(Chain &chain, ListNode *position, ListNode *node)
{
    node->next = position;
    node->previous = position == nullptr ? chain.last : position->previous;
    (node->previous == nullptr ? chain.first : node->previous->next) = node;
    (position == nullptr ? chain.last : position->previous) = node;
    ++chain.count;
}

void chainPushBack(Chain &chain, ListNode *node)
{
    chainInsertBefore(chain, nullptr, node);
}

ListNode *chainPopFront(Chain &chain)
{
    ListNode *node = chain.first;
    chain.first = node->next;
    (chain.first == nullptr ? chain.last : chain.first->previous) = nullptr;
    --chain.count;
    node->next = nullptr;
    return node;
}

// Moves all of source to the end of destination.
void chainAppend(Chain &destination, Chain &source)
{
    if (source.empty()) return;
    if (destination.empty()) {
        destination = source;
    } else {
        destination.last->next = source.first;
        source.first->previous = destination.last;
        destination.last = source.last;
        destination.count += source.count;
    }
    source = Chain{};
}

void freeChain(Chain &chain)
{
    while (!chain.empty())
        tsMem_free(chainPopFront(chain));
}

// Copies made ahead of a change, freed unless handed over to a list.
class PendingNodes
{
  public:
    PendingNodes() = default;
    PendingNodes(const PendingNodes &) = delete;
    PendingNodes &operator=(const PendingNodes &) = delete;
    ~PendingNodes() { freeChain(chain); }

    Chain chain;
};

// ---- The ring ----

ListNode *firstNode(const tsLinkedList *list)
{
    return list->sentinel->next;
}

void linkBefore(tsLinkedList *list, ListNode *position, ListNode *node)
{
    node->next = position;
    node->previous = position->previous;
    position->previous->next = node;
    position->previous = node;
    ++list->count;
}

void eraseNode(tsLinkedList *list, ListNode *node)
{
    node->previous->next = node->next;
    node->next->previous = node->previous;
    --list->count;
    tsMem_free(node);
}

// Takes every element node out of the ring, leaving the list empty.
Chain detachAll(tsLinkedList *list)
{
    if (list->count == 0) return Chain{};
    ListNode *sentinel = list->sentinel;
    Chain chain{sentinel->next, sentinel->previous, list->count};
    chain.first->previous = nullptr;
    chain.last->next = nullptr;
    sentinel->next = sentinel->previous = sentinel;
    list->count = 0;
    return chain;
}

// Links a whole chain into the ring before position, and empties the chain.
void attachBefore(tsLinkedList *list, ListNode *position, Chain &chain)
{
    if (chain.empty()) return;
    chain.first->previous = position->previous;
    position->previous->next = chain.first;
    chain.last->next = position;
    position->previous = chain.last;
    list->count += chain.count;
    chain = Chain{};
}

void removeAll(tsLinkedList *list)
{
    Chain all = detachAll(list);
    freeChain(all);
}

// Copies of the elements of source, each with room for elementSize bytes.
void copyElements(const tsLinkedList *source, tsLinkedList *owner, size_t elementSize, PendingNodes &copies)
{
    for (ListNode *node = firstNode(source); node != source->sentinel; node = node->next)
        chainPushBack(copies.chain, newNode(owner, elementSize, node->element, source->elementSize));
}

// ---- Order ----

int32_t compareElements(const tsLinkedList *order, const void *a, const void *b)
{
    if (order->compare != nullptr) return order->compare(a, b, order);
    return std::memcmp(a, b, order->elementSize);
}

// Merges the sorted run source into the sorted run destination. A source
// node goes before a destination node only when it compares strictly below
// it, so that of equal elements the destination's come first; when the
// destination ends, the rest of the source is spliced on at once.
void mergeChains(Chain &destination, Chain &source, const tsLinkedList *order)
{
    ListNode *d = destination.first;
    while (!source.empty() && d != nullptr) {
        if (compareElements(order, source.first->element, d->element) < 0)
            chainInsertBefore(destination, d, chainPopFront(source));
        else
            d = d->next;
    }
    chainAppend(destination, source);
}

// Bottom-up merge sort by relinking nodes. Bin i holds a sorted run of 2^i
// nodes, older than those of lower bins; each front node is merged up
// through the occupied bins and put in the first free one. Runs that
// outgrow the last bin gather in the overflow bin. Merging always puts the
// older run as destination, which keeps the sort stable.
void binSort(Chain &all, const tsLinkedList *order)
{
    constexpr size_t kBins = 25;
    std::array<Chain, kBins + 1> bins{};
    Chain &overflow = bins[kBins];
    size_t usedBins = 0;
    while (!all.empty()) {
        Chain carry;
        chainPushBack(carry, chainPopFront(all));
        size_t bin = 0;
        for (; bin < usedBins && !bins[bin].empty(); ++bin) {
            mergeChains(bins[bin], carry, order);
            std::swap(bins[bin], carry);
        }
        if (bin == kBins) {
            mergeChains(overflow, carry, order);
        } else {
            std::swap(bins[bin], carry);
            if (bin == usedBins) ++usedBins;
        }
    }
    for (size_t bin = 1; bin < usedBins; ++bin)
        mergeChains(bins[bin], bins[bin - 1], order);
    all = bins[usedBins - 1];
    if (!overflow.empty()) {
        mergeChains(overflow, all, order);
        all = overflow;
    }
}

// ---- Iterator positions ----

void standOn(tsLListIterator *iterator, ListNode *node)
{
    iterator->current = node;
    iterator->beforeStart = 0;
}

void standBeforeStart(tsLListIterator *iterator)
{
    iterator->current = iterator->list->sentinel;
    iterator->beforeStart = 1;
}

}  // namespace

/* ---- Lists: creation and destruction ---- */

int32_t tsLinkedList_create(tsLinkedList **list, size_t elementSize)
{
    if (list == nullptr || *list != nullptr || elementSize == 0) return 0;
    auto *created = static_cast<tsLinkedList *>(tsMem_malloc(sizeof(tsLinkedList)));
    if (created == nullptr) return 0;
    created->sentinel = &created->head;
    created->head = ListNode{&created->head, &created->head, nullptr, created};
    created->count = 0;
    created->elementSize = elementSize;
    created->sorted = 1;  // an empty list is in order
    created->compare = nullptr;
    *list = created;
    return 0;
}

int32_t tsLinkedList_destroy(tsLinkedList **list)
{
    if (list == nullptr || *list == nullptr) return kFailure;
    removeAll(*list);
    tsMem_free(*list);
    *list = nullptr;
    return 0;
}

int32_t tsLinkedList_clear(tsLinkedList *list)
{
    if (list == nullptr) return kFailure;
    removeAll(list);
    return 0;
}

int32_t tsLinkedList_setCompareFunction(tsLinkedList *list, tsLinkedListCompareFunc compare)
{
    if (list == nullptr) return kFailure;
    list->compare = compare;
    return 0;
}

/* ---- Lists: reading ---- */

size_t tsLinkedList_size(const tsLinkedList *list)
{
    return list == nullptr ? 0 : list->count;
}

int32_t tsLinkedList_getValueByIndex(const tsLinkedList *list, void *destination, int32_t index)
{
    if (list == nullptr) return 0;
    // The size is tested against the failure value itself: a list of exactly
    // 32768 elements answers 32768 for every index. Kept as callers know it.
    if (list->count == static_cast<size_t>(kFailure)) return kFailure;
    if (index < 0 || static_cast<size_t>(index) >= list->count) return kFailure;
    ListNode *node = firstNode(list);
    for (int32_t i = 0; i < index; ++i)
        node = node->next;
    std::memcpy(destination, node->element, list->elementSize);
    return 0;
}

/* ---- Lists: adding and removing ---- */

int32_t tsLinkedList_pushFront(tsLinkedList *list, const void *element)
{
    if (list == nullptr || element == nullptr) return kFailure;
    return guarded([&] {
        checkRoom(list, 1);
        linkBefore(list, firstNode(list), newNode(list, element));
        list->sorted = 0;
    });
}

int32_t tsLinkedList_pushBack(tsLinkedList *list, const void *element)
{
    if (list == nullptr || element == nullptr) return kFailure;
    return guarded([&] {
        checkRoom(list, 1);
        linkBefore(list, list->sentinel, newNode(list, element));
        list->sorted = 0;
    });
}

int32_t tsLinkedList_popFront(tsLinkedList *list)
{
    if (list == nullptr) return kFailure;
    if (list->count > 0) eraseNode(list, firstNode(list));
    return 0;
}

int32_t tsLinkedList_popBack(tsLinkedList *list)
{
    if (list == nullptr) return kFailure;
    if (list->count > 0) eraseNode(list, list->sentinel->previous);
    return 0;
}

int32_t tsLinkedList_insert(tsLinkedList *list, tsLListIterator *iterator, const void *element)
{
    if (list == nullptr) return kFailure;
    // An iterator before the start stands on the sentinel: the element goes
    // at the end, as for an iterator on the sentinel.
    ListNode *position = iterator != nullptr ? iterator->current : firstNode(list);
    return guarded([&] {
        checkRoom(list, 1);
        ListNode *node = newNode(list, element);
        linkBefore(list, position, node);
        list->sorted = 0;
        if (iterator != nullptr) standOn(iterator, node);
    });
}

int32_t tsLinkedList_insertInOrder(tsLinkedList *list, const void *element)
{
    if (list == nullptr || list->sorted == 0) return kFailure;
    // A one-element sorted run merged in: the new element lands after any
    // equal elements, and the list stays sorted.
    return guarded([&] {
        checkRoom(list, 1);
        PendingNodes single;
        chainPushBack(single.chain, newNode(list, element));
        Chain all = detachAll(list);
        mergeChains(all, single.chain, list);
        attachBefore(list, list->sentinel, all);
    });
}

int32_t tsLinkedList_eraseElement(tsLinkedList *list, tsLListIterator *iterator)
{
    if (list == nullptr || iterator == nullptr) return kFailure;
    ListNode *node = iterator->current;
    if (node == list->sentinel) return kNoElement;
    ListNode *following = node->next;
    eraseNode(list, node);
    standOn(iterator, following);
    return 0;
}

int32_t tsLinkedList_eraseElements(tsLinkedList *list, tsLListIterator *first, tsLListIterator *last)
{
    if (list == nullptr) return kFailure;
    ListNode *node = first != nullptr ? first->current : firstNode(list);
    if (node == list->sentinel) return kNoElement;
    ListNode *end = last != nullptr ? last->current : list->sentinel;
    // The walk also stops at the sentinel, so that a last iterator standing
    // before first cannot carry the removal round the ring.
    while (node != end && node != list->sentinel) {
        ListNode *following = node->next;
        eraseNode(list, node);
        node = following;
    }
    if (first != nullptr) standOn(first, node);
    if (last != nullptr) standOn(last, node);
    return 0;
}

/* ---- Lists: walks and order ---- */

int32_t tsLinkedList_performAction(const tsLinkedList *list, tsLinkedListElementAction action, void *userData,
                                   const tsLListIterator *first, const tsLListIterator *last)
{
    if (list == nullptr) return kFailure;
    const ListNode *node = first != nullptr ? first->current : firstNode(list);
    if (node == list->sentinel) return kNoElement;
    const ListNode *end = last != nullptr ? last->current : list->sentinel;
    return guarded([&] {
        // One buffer serves every call: the action sees a copy, and what it
        // changes there does not reach the list.
        std::vector<unsigned char> copy(list->elementSize);
        for (; node != end && node != list->sentinel; node = node->next) {
            std::memcpy(copy.data(), node->element, list->elementSize);
            if (action(copy.data(), userData) != 0) break;
        }
    });
}

int32_t tsLinkedList_sort(tsLinkedList *list)
{
    if (list == nullptr) return kFailure;
    if (list->count >= 2) {
        Chain all = detachAll(list);
        binSort(all, list);
        attachBefore(list, list->sentinel, all);
    }
    list->sorted = 1;
    return 0;
}

int32_t tsLinkedList_reverse(tsLinkedList *list)
{
    if (list == nullptr) return kFailure;
    ListNode *node = list->sentinel;
    do {
        std::swap(node->next, node->previous);
        node = node->previous;  // the former next
    } while (node != list->sentinel);
    list->sorted = 0;  // also for an empty or one-element list
    return 0;
}

int32_t tsLinkedList_unique(tsLinkedList *list)
{
    if (list == nullptr) return kFailure;
    if (list->count < 2) return 0;
    // Each element is compared with the last one kept before it.
    ListNode *kept = firstNode(list);
    ListNode *node = kept->next;
    while (node != list->sentinel) {
        ListNode *following = node->next;
        if (compareElements(list, kept->element, node->element) == 0)
            eraseNode(list, node);
        else
            kept = node;
        node = following;
    }
    return 0;
}

/* ---- Lists: combining ---- */

// The source's elements are copied before the destination changes, so the
// source stays valid, also when it is the destination itself. Elements of a
// source whose size differs are cut or zero-padded to the destination's size.

int32_t tsLinkedList_append(tsLinkedList *destination, const tsLinkedList *source)
{
    if (destination == nullptr || source == nullptr) return kFailure;
    return guarded([&] {
        checkRoom(destination, source->count);
        PendingNodes copies;
        copyElements(source, destination, destination->elementSize, copies);
        attachBefore(destination, destination->sentinel, copies.chain);
        destination->sorted = 0;
    });
}

int32_t tsLinkedList_appendCopy(tsLinkedList *destination, const tsLinkedList *source)
{
    if (destination == nullptr || source == nullptr) return kFailure;
    // Element by element: on a failure the elements added so far stay. The
    // count is taken first, so that a list appended to itself doubles once.
    const size_t count = source->count;
    const ListNode *node = firstNode(source);
    const int32_t status = guarded([&] {
        for (size_t i = 0; i < count; ++i, node = node->next) {
            checkRoom(destination, 1);
            linkBefore(destination, destination->sentinel,
                       newNode(destination, destination->elementSize, node->element, source->elementSize));
            destination->sorted = 0;
        }
    });
    if (status == 0) destination->sorted = 0;
    return status;
}

int32_t tsLinkedList_merge(tsLinkedList *destination, const tsLinkedList *source)
{
    if (destination == nullptr || source == nullptr) return kFailure;
    // Merging needs two sorted lists; otherwise nothing happens, and that is
    // no failure.
    if (destination->sorted == 0 || source->sorted == 0) return 0;
    return guarded([&] {
        checkRoom(destination, source->count);
        PendingNodes copies;
        copyElements(source, destination, destination->elementSize, copies);
        Chain all = detachAll(destination);
        mergeChains(all, copies.chain, destination);
        attachBefore(destination, destination->sentinel, all);
    });
}

int32_t tsLinkedList_mergeCopyUnique(tsLinkedList *destination, const tsLinkedList *source)
{
    const int32_t status = tsLinkedList_merge(destination, source);
    if (status != 0) return status;
    return tsLinkedList_unique(destination);
}

/* ---- Iterators ---- */

int32_t tsLListIterator_create(tsLListIterator **iterator, tsLinkedList *list)
{
    if (iterator == nullptr || *iterator != nullptr || list == nullptr) return kFailure;
    auto *created = static_cast<tsLListIterator *>(tsMem_malloc(sizeof(tsLListIterator)));
    if (created == nullptr) return kFailure;
    *created = tsLListIterator{1, list->sentinel, list};
    *iterator = created;
    return 0;
}

int32_t tsLListIterator_destroy(tsLListIterator **iterator)
{
    if (iterator == nullptr || *iterator == nullptr) return kFailure;
    tsMem_free(*iterator);
    *iterator = nullptr;
    return 0;
}

int32_t tsLListIterator_reset(tsLListIterator *iterator)
{
    if (iterator == nullptr) return kFailure;
    standBeforeStart(iterator);
    return 0;
}

int32_t tsLListIterator_begin(tsLListIterator *iterator)
{
    if (iterator == nullptr) return kFailure;
    standOn(iterator, firstNode(iterator->list));
    return 0;
}

int32_t tsLListIterator_end(tsLListIterator *iterator)
{
    if (iterator == nullptr) return kFailure;
    standOn(iterator, iterator->list->sentinel);
    return 0;
}

int32_t tsLListIterator_next(tsLListIterator *iterator)
{
    if (iterator == nullptr) return kFailure;
    // Before the start the iterator stands on the sentinel, whose next node
    // is the first; from the sentinel itself the ring leads round to the
    // first node again.
    standOn(iterator, iterator->current->next);
    return iterator->current == iterator->list->sentinel ? kNoElement : 0;
}

int32_t tsLListIterator_previous(tsLListIterator *iterator)
{
    if (iterator == nullptr) return kFailure;
    // The first node of an empty list is the sentinel itself.
    if (iterator->beforeStart != 0 || iterator->current == firstNode(iterator->list)) return kAtFirst;
    iterator->current = iterator->current->previous;
    return 0;
}

int32_t tsLListIterator_getCurrent(const tsLListIterator *iterator, void *destination)
{
    if (iterator == nullptr) return kFailure;
    if (iterator->beforeStart != 0 || iterator->current == iterator->list->sentinel) return kNoElement;
    std::memcpy(destination, iterator->current->element, iterator->list->elementSize);
    return 0;
}

int32_t tsLListIterator_find(tsLListIterator *iterator, const void *element)
{
    if (iterator == nullptr || element == nullptr) return kFailure;
    const tsLinkedList *list = iterator->list;
    for (ListNode *node = firstNode(list); node != list->sentinel; node = node->next) {
        if (compareElements(list, node->element, element) == 0) {
            standOn(iterator, node);
            return 0;
        }
    }
    return kFailure;  // not found: the iterator stays where it was
}

int32_t tsLListIterator_setLinkedList(tsLListIterator *iterator, const tsLinkedList *list)
{
    if (iterator == nullptr || list == nullptr) return kFailure;
    // The iterator is not rebound to the given list: its own list becomes a
    // copy of it, taking its elements, element size and comparison. The
    // copies are made first, so that without memory the own list stays.
    tsLinkedList *own = iterator->list;
    if (own != list) {
        const int32_t status = guarded([&] {
            PendingNodes copies;
            copyElements(list, own, list->elementSize, copies);
            removeAll(own);
            own->elementSize = list->elementSize;
            own->compare = list->compare;
            attachBefore(own, own->sentinel, copies.chain);
        });
        if (status != 0) return status;
    }
    // With the same list, only the flags are taken.
    own->sorted = list->sorted;
    standBeforeStart(iterator);
    return 0;
}
