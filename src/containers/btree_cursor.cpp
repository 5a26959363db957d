// tsBtree_*: the searches that move the cursor, and access to the current node.
#include <cmath>
#include <cstdint>

#include <tessar/btree.h>

#include "containers/btree.hpp"

using namespace tessar::detail;

namespace {

// Distance between two integers formed in their own width, as two's
// complement wraps it: at the extremes of the range it overflows, and the
// magnitude of the most negative value stays negative.
template <class Int, class Unsigned> Int wrappedDistance(Int a, Int b) noexcept
{
    const auto diff = static_cast<Int>(static_cast<Unsigned>(a) - static_cast<Unsigned>(b));
    return diff < 0 ? static_cast<Int>(Unsigned{0} - static_cast<Unsigned>(diff)) : diff;
}

// True when the node at or below the key is strictly nearer than the node at
// or above it; a tie goes to the upper node.
bool lowerIsNearer(const tsBtree &tree, const void *key, const tsBtreeNode *lower, const tsBtreeNode *upper)
{
    switch (tree.keyKind) {
    case kKeyInt32: {
        const std::int32_t k = *static_cast<const std::int32_t *>(key);
        return wrappedDistance<std::int32_t, std::uint32_t>(k, lower->key.int32) <
               wrappedDistance<std::int32_t, std::uint32_t>(upper->key.int32, k);
    }
    case kKeyInt64: {
        const std::int64_t k = *static_cast<const std::int64_t *>(key);
        return wrappedDistance<std::int64_t, std::uint64_t>(k, lower->key.int64) <
               wrappedDistance<std::int64_t, std::uint64_t>(upper->key.int64, k);
    }
    default: {
        const double k = *static_cast<const double *>(key);
        return std::fabs(k - lower->key.real) < std::fabs(upper->key.real - k);
    }
    }
}

}  // namespace

// ---- Searching and moving the cursor ----

int32_t tsBtree_getNodeByKey(tsBtree *tree, const void *key, int32_t mode)
{
    if (tree == nullptr) return kFailure;
    tsBtreeNode *found = nullptr;
    const std::int32_t status = findNode(*tree, key, mode, &found);
    tree->current = found;
    if (status != 0) return status;
    return found != nullptr ? 0 : kBtreeNotFound;
}

int32_t tsBtree_getClosestNodeByKey(tsBtree *tree, const void *key)
{
    if (tree == nullptr) return kFailure;
    if (tree->keyKind != kKeyInt32 && tree->keyKind != kKeyDouble && tree->keyKind != kKeyInt64)
        return kFailure;
    // A null key fails both searches, which leaves both neighbours absent.
    tsBtreeNode *lower = nullptr;
    tsBtreeNode *upper = nullptr;
    (void)findNode(*tree, key, kModeAtOrBelow, &lower);
    (void)findNode(*tree, key, kModeAtOrAbove, &upper);
    if (lower == nullptr || upper == nullptr)
        tree->current = lower != nullptr ? lower : upper;
    else
        tree->current = lowerIsNearer(*tree, key, lower, upper) ? lower : upper;
    return tree->current != nullptr ? 0 : kBtreeNotFound;
}

int32_t tsBtree_getNodeByIndex(tsBtree *tree, int32_t index)
{
    if (tree == nullptr) return kFailure;
    tree->current = nodeAtRank(tree->root, index);
    return tree->current != nullptr ? 0 : kBtreeNoSuchIndex;
}

int32_t tsBtree_getNextNode(tsBtree *tree)
{
    if (tree == nullptr) return kFailure;
    if (tree->current == nullptr) return kBtreeNoCurrent;
    tree->current = successor(tree->current);
    return tree->current != nullptr ? 0 : kBtreePastEnd;
}

// ---- The current node ----

int32_t tsBtree_getNodeIndex(const tsBtree *tree, int32_t *index)
{
    if (tree == nullptr || index == nullptr) return kFailure;
    if (tree->current == nullptr) return kBtreeNoCurrent;
    *index = rankOf(tree->current);
    return 0;
}

int32_t tsBtree_getNodeNumber(const tsBtree *tree)
{
    if (tree == nullptr) return kFailure;
    return countOf(tree->root);
}

int32_t tsBtree_getNodeContents(const tsBtree *tree, void **contents)
{
    if (tree == nullptr || contents == nullptr) return kFailure;
    if (tree->current == nullptr) return kBtreeNoCurrent;
    *contents = tree->current->contents;
    return 0;
}

int32_t tsBtree_setNodeContents(tsBtree *tree, void *contents)
{
    if (tree == nullptr || contents == nullptr) return kFailure;
    tsBtreeNode *node = tree->current;
    if (node == nullptr) return kBtreeNoCurrent;
    if (node->contents != nullptr && tree->freeContents != nullptr) (void)tree->freeContents(node->contents);
    node->contents = contents;
    return 0;
}

int32_t tsBtree_getNodeKey(const tsBtree *tree, const void **key)
{
    if (tree == nullptr || key == nullptr) return kFailure;
    if (tree->current == nullptr) return kBtreeNoCurrent;
    *key = nodeKey(*tree, tree->current);
    return 0;
}
