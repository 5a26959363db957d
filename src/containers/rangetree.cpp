// tsRangeTree1D_*: which ranges of a list overlap a point or a span. The
// index is a balanced tree of double keys with one node per distinct end
// point; a node's contents is a sorted linked list of 8-byte range
// references, those ranges that cover the elementary span from that end
// point up to the next one (ranges are half-open, [low, high)).
#include <cstdio>
#include <cstring>

#include <tessar/btree.h>
#include <tessar/linkedlist.h>
#include <tessar/memory.h>
#include <tessar/rangetree.h>

#include "frame/kernel.hpp"

using tessar::detail::kFailure;

struct tsRangeTree1D {
    tsBtree *index;                      // double keys; contents: tsLinkedList of range references, or null
    tsRangeTree1DGetRangeFunc getRange;  // the caller's reader of a range's ends
};

namespace {

// The caller's element: a reference to one of its ranges.
using RangeRef = void *;
constexpr size_t kReferenceSize = sizeof(RangeRef);
static_assert(kReferenceSize == 8, "range references are 8-byte elements");

double keyOf(const void *key)
{
    return *static_cast<const double *>(key);
}

// ---- Building the index ----

// The index's release of a node's contents: the node's range list.
int32_t destroyNodeList(void *contents)
{
    auto *list = static_cast<tsLinkedList *>(contents);
    return tsLinkedList_destroy(&list);
}

int32_t destroyNodeListAction(void *contents, void * /*userData*/)
{
    if (contents != nullptr) destroyNodeList(contents);
    return 0;
}

// Calls visit(reference) for each element of the caller's list, in list
// order, until visit gives non-zero; that value, or 0, is the result.
template <class Visit> int32_t forEachRange(const tsLinkedList *ranges, Visit &&visit)
{
    tsLListIterator *iterator = nullptr;
    // The iterator only reads the list.
    if (tsLListIterator_create(&iterator, const_cast<tsLinkedList *>(ranges)) != 0) return kFailure;
    int32_t status = 0;
    while (status == 0 && tsLListIterator_next(iterator) == 0) {
        RangeRef range = nullptr;
        tsLListIterator_getCurrent(iterator, &range);
        status = visit(range);
    }
    tsLListIterator_destroy(&iterator);
    return status;
}

// First pass: both ends of every range become nodes, each distinct value once.
int32_t addEndPoints(tsRangeTree1D &tree, const tsLinkedList *ranges)
{
    return forEachRange(ranges, [&tree](RangeRef range) {
        double low = 0.0, high = 0.0;
        tree.getRange(range, &low, &high);
        int32_t status = tsBtree_addNodeUnique(tree.index, &low, nullptr);
        if (status == 0) status = tsBtree_addNodeUnique(tree.index, &high, nullptr);
        return status;
    });
}

// One range on its way down the index in the second pass.
struct Listing {
    RangeRef range;
    double low;
    double high;
};

// At an end point k with low <= k < high the range joins k's list, created at
// the first need. The walk goes left while end points at or above low may
// lie there (low < k), and right while ones below high may (high >= k).
int32_t listRangeAtEndPoint(int32_t *goLeft, int32_t *goRight, const void *key, tsBtreeNode *node,
                            void *userData)
{
    const auto &listing = *static_cast<const Listing *>(userData);
    const double k = keyOf(key);
    if (listing.low <= k && k < listing.high) {
        auto *list = static_cast<tsLinkedList *>(node->contents);
        if (list == nullptr) {
            tsLinkedList_create(&list, kReferenceSize);
            if (list == nullptr) return kFailure;
            node->contents = list;
        }
        // Without a comparison the list orders references by their bytes.
        if (tsLinkedList_insertInOrder(list, &listing.range) != 0) return kFailure;
    }
    *goLeft = listing.low < k;
    *goRight = listing.high >= k;
    return 0;
}

// Second pass: every range is listed at the end points inside [low, high).
int32_t listRanges(tsRangeTree1D &tree, const tsLinkedList *ranges)
{
    return forEachRange(ranges, [&tree](RangeRef range) {
        Listing listing{range, 0.0, 0.0};
        tree.getRange(range, &listing.low, &listing.high);
        return tsBtree_performActionWithCondition(tree.index, listRangeAtEndPoint, &listing, nullptr, nullptr,
                                                  0, 0);
    });
}

// ---- Queries ----

// A query span; a null bound leaves that side open.
struct Query {
    const double *low;
    const double *high;
    tsLinkedList *found;
};

// Step 2 of a query: a node strictly above low and not above high starts an
// elementary span inside the query, whose ranges join the result. Its left
// side is visited while keys above low may lie there, its right side while
// keys not above high may.
int32_t mergeSpanAtEndPoint(int32_t *goLeft, int32_t *goRight, const void *key, tsBtreeNode *node,
                            void *userData)
{
    const auto &query = *static_cast<const Query *>(userData);
    const double k = keyOf(key);
    *goLeft = query.low == nullptr || k > *query.low;
    *goRight = query.high == nullptr || !(k > *query.high);
    if (*goLeft != 0 && *goRight != 0 && node->contents != nullptr)
        return tsLinkedList_mergeCopyUnique(query.found, static_cast<tsLinkedList *>(node->contents));
    return 0;
}

// Step 1 of a query: the end point at or below low starts the elementary
// span that holds low; its ranges join the result.
int32_t mergeSpanHoldingLow(tsBtree *index, const double &low, tsLinkedList *found)
{
    if (tsBtree_getNodeByKey(index, &low, -1) != 0) return 0;  // low lies below every end point
    void *contents = nullptr;
    tsBtree_getNodeContents(index, &contents);
    if (contents == nullptr) return 0;
    return tsLinkedList_mergeCopyUnique(found, static_cast<tsLinkedList *>(contents));
}

// The sorted set of ranges sharing an elementary span with [low, high),
// without repeats, or null when there are none.
int32_t findOverlap(tsRangeTree1D &tree, tsLinkedList **result, const double *low, const double *high)
{
    *result = nullptr;
    Query query{low, high, nullptr};
    tsLinkedList_create(&query.found, kReferenceSize);
    if (query.found == nullptr) return kFailure;
    int32_t status = 0;
    if (low != nullptr) status = mergeSpanHoldingLow(tree.index, *low, query.found);
    if (status == 0)
        status = tsBtree_performActionWithCondition(tree.index, mergeSpanAtEndPoint, &query, nullptr, nullptr,
                                                    0, 0);
    if (status != 0 || tsLinkedList_size(query.found) == 0) {
        tsLinkedList_destroy(&query.found);
        return status;
    }
    *result = query.found;
    return 0;
}

// ---- Printing ----

int32_t printRange(void *element, void *userData)
{
    const auto getRange = *static_cast<const tsRangeTree1DGetRangeFunc *>(userData);
    RangeRef range = nullptr;
    std::memcpy(&range, element, kReferenceSize);
    double low = 0.0, high = 0.0;
    getRange(range, &low, &high);
    std::printf("range (%f,%f),\n", low, high);
    return 0;
}

int32_t printEndPoint(const void *key, void *contents, void *userData)
{
    std::printf("station = %f\n", keyOf(key));
    if (contents != nullptr)
        tsLinkedList_performAction(static_cast<tsLinkedList *>(contents), printRange, userData, nullptr,
                                   nullptr);
    return 0;
}

}  // namespace

int32_t tsRangeTree1D_create(tsRangeTree1D **tree, const tsLinkedList *ranges,
                             tsRangeTree1DGetRangeFunc getRange)
{
    if (tree == nullptr || *tree != nullptr || ranges == nullptr || getRange == nullptr) return kFailure;
    auto *built = static_cast<tsRangeTree1D *>(tsMem_malloc(sizeof(tsRangeTree1D)));
    if (built == nullptr) return kFailure;
    *built = tsRangeTree1D{nullptr, getRange};
    int32_t status = tsBtree_createForDoubleKey(&built->index, destroyNodeList);
    if (status == 0) status = addEndPoints(*built, ranges);
    if (status == 0) status = listRanges(*built, ranges);
    if (status != 0) {
        // A tree that could not be built is released whole, nodes and lists.
        if (built->index != nullptr) tsBtree_destroy(&built->index);
        tsMem_free(built);
        return kFailure;
    }
    *tree = built;
    return 0;
}

int32_t tsRangeTree1D_destroy(tsRangeTree1D **tree)
{
    if (tree == nullptr || *tree == nullptr) return kFailure;
    tsBtree *index = (*tree)->index;
    tsBtree_performPtrAction(index, destroyNodeListAction, nullptr, nullptr, nullptr, 0, 0);
    // Only the node lists and the index's header are released: the index's
    // nodes are given up, not freed.
    tsMem_free(index);
    tsMem_free(*tree);
    *tree = nullptr;
    return 0;
}

int32_t tsRangeTree1D_getPonctualOverlap(tsRangeTree1D *tree, tsLinkedList **result, double point,
                                         double tolerance)
{
    if (tree == nullptr) return kFailure;
    const double low = point - tolerance;
    const double high = point + tolerance;
    return findOverlap(*tree, result, &low, &high);
}

int32_t tsRangeTree1D_getRangeOverlap(tsRangeTree1D *tree, tsLinkedList **result, const double *low,
                                      const double *high, double tolerance)
{
    if (tree == nullptr) return kFailure;
    const double widenedLow = low != nullptr ? *low - tolerance : 0.0;
    const double widenedHigh = high != nullptr ? *high + tolerance : 0.0;
    return findOverlap(*tree, result, low != nullptr ? &widenedLow : nullptr,
                       high != nullptr ? &widenedHigh : nullptr);
}

int32_t tsRangeTree1D_print(const tsRangeTree1D *tree)
{
    if (tree == nullptr) return kFailure;
    auto getRange = tree->getRange;
    return tsBtree_performAction(tree->index, printEndPoint, &getRange, nullptr, nullptr, 0, 0);
}
