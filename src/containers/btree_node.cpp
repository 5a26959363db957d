// The balanced tree's keys and nodes: comparison by key kind, key copies,
// release of a node, in-order navigation, ranks and the search by mode.
#include <cstring>

#include <tessar/memory.h>

#include "containers/btree.hpp"

namespace tessar::detail {

namespace {

template <class T> std::int32_t compareNumbers(T a, T b) noexcept
{
    if (a < b) return -1;
    return a == b ? 0 : 1;
}

// Exact order of doubles. Written so that an unordered pair (a not-a-number
// on either side) fails both tests and compares as less.
std::int32_t compareDoubles(double a, double b) noexcept
{
    if (a > b) return 1;
    if (a == b) return 0;
    return -1;
}

// 16-bit strings: code units compared as unsigned values, a shorter prefix first.
std::int32_t compareWide(const char16_t *a, const char16_t *b) noexcept
{
    while (*a != 0 && *a == *b) {
        ++a;
        ++b;
    }
    return compareNumbers<std::uint32_t>(*a, *b);
}

std::size_t wideLength(const char16_t *text) noexcept
{
    std::size_t n = 0;
    while (text[n] != 0)
        ++n;
    return n;
}

// A private heap copy of a string of n units and its terminator. A failed
// allocation is not reported: the key is then left null.
template <class Unit> void *duplicate(const Unit *text, std::size_t n) noexcept
{
    auto *copy = static_cast<Unit *>(tsMem_malloc((n + 1) * sizeof(Unit)));
    if (copy != nullptr) std::memcpy(copy, text, (n + 1) * sizeof(Unit));
    return copy;
}

}  // namespace

// ---- Keys ----

std::int32_t compareKey(const tsBtree &tree, const void *key, const tsBtreeNode *node) noexcept
{
    switch (tree.keyKind) {
    case kKeyGeneric:
        return tree.compareKeys(key, node->key.pointer);
    case kKeyString:
        // strcmp compares the bytes as unsigned char, a shorter prefix first.
        return std::strcmp(static_cast<const char *>(key), static_cast<const char *>(node->key.pointer));
    case kKeyInt32:
        return compareNumbers(*static_cast<const std::int32_t *>(key), node->key.int32);
    case kKeyDouble:
        return compareDoubles(*static_cast<const double *>(key), node->key.real);
    case kKeyInt64:
        return compareNumbers(*static_cast<const std::int64_t *>(key), node->key.int64);
    case kKeyWString:
        return compareWide(static_cast<const char16_t *>(key),
                           static_cast<const char16_t *>(node->key.pointer));
    default:
        return 0;
    }
}

const void *nodeKey(const tsBtree &tree, const tsBtreeNode *node) noexcept
{
    switch (tree.keyKind) {
    case kKeyInt32:
    case kKeyDouble:
    case kKeyInt64:
        return &node->key;
    default:
        return node->key.pointer;
    }
}

std::int32_t storeKey(const tsBtree &tree, tsBtreeNode &node, const void *key) noexcept
{
    switch (tree.keyKind) {
    case kKeyGeneric:
        (void)tree.copyKey(&node.key.pointer, key);
        return 0;
    case kKeyString: {
        const auto *text = static_cast<const char *>(key);
        node.key.pointer = duplicate(text, std::strlen(text));
        return 0;
    }
    case kKeyInt32:
        node.key.int32 = *static_cast<const std::int32_t *>(key);
        return 0;
    case kKeyDouble:
        node.key.real = *static_cast<const double *>(key);
        return 0;
    case kKeyInt64:
        node.key.int64 = *static_cast<const std::int64_t *>(key);
        return 0;
    case kKeyWString: {
        const auto *text = static_cast<const char16_t *>(key);
        node.key.pointer = duplicate(text, wideLength(text));
        return 0;
    }
    default:
        return kFailure;
    }
}

std::int32_t releaseNode(const tsBtree &tree, tsBtreeNode *node) noexcept
{
    std::int32_t status = 0;
    switch (tree.keyKind) {
    case kKeyGeneric:
        if (tree.freeKey != nullptr) (void)tree.freeKey(node->key.pointer);
        break;
    case kKeyString:
    case kKeyWString:
        status = tsMem_free(node->key.pointer);
        break;
    default:
        break;
    }
    if (tree.freeContents != nullptr && node->contents != nullptr) (void)tree.freeContents(node->contents);
    const std::int32_t freed = tsMem_free(node);
    return status != 0 ? status : freed;
}

// ---- Navigation ----

tsBtreeNode *leftmost(tsBtreeNode *node) noexcept
{
    if (node == nullptr) return nullptr;
    while (node->left != nullptr)
        node = node->left;
    return node;
}

tsBtreeNode *rightmost(tsBtreeNode *node) noexcept
{
    if (node == nullptr) return nullptr;
    while (node->right != nullptr)
        node = node->right;
    return node;
}

tsBtreeNode *successor(tsBtreeNode *node) noexcept
{
    if (node->right != nullptr) return leftmost(node->right);
    // Up while coming from a right child: the first ancestor reached from
    // its left side is next.
    tsBtreeNode *parent = node->parent;
    while (parent != nullptr && parent->right == node) {
        node = parent;
        parent = node->parent;
    }
    return parent;
}

tsBtreeNode *nodeAtRank(tsBtreeNode *root, std::int32_t rank) noexcept
{
    if (rank < 0) return nullptr;
    tsBtreeNode *node = root;
    while (node != nullptr) {
        const std::int32_t before = countOf(node->left);
        if (rank == before) return node;
        if (rank < before) {
            node = node->left;
        } else {
            rank -= before + 1;
            node = node->right;
        }
    }
    return nullptr;
}

std::int32_t rankOf(const tsBtreeNode *node) noexcept
{
    // Nodes before it in its own subtree, then, for every ancestor reached
    // from its right side, that ancestor and its left subtree.
    std::int32_t rank = countOf(node->left);
    for (const tsBtreeNode *parent = node->parent; parent != nullptr; node = parent, parent = node->parent)
        if (parent->right == node) rank += countOf(parent->left) + 1;
    return rank;
}

// ---- Search by mode ----

std::int32_t findNode(const tsBtree &tree, const void *key, std::int32_t mode, tsBtreeNode **found) noexcept
{
    *found = nullptr;
    if (mode < kModeFirst || mode > kModeLast) return kFailure;
    if (mode == kModeFirst) {
        *found = leftmost(tree.root);
        return 0;
    }
    if (mode == kModeLast) {
        *found = rightmost(tree.root);
        return 0;
    }
    if (key == nullptr) return kFailure;

    // One descent from the root keeping a candidate. The exact-or-neighbour
    // modes stop on the first equal key met; the strict modes go on past
    // equal keys, left for the last key below, right for the first above.
    tsBtreeNode *candidate = nullptr;
    tsBtreeNode *node = tree.root;
    while (node != nullptr) {
        const std::int32_t c = compareKey(tree, key, node);
        switch (mode) {
        case kModeBelow:
            if (c > 0) {
                candidate = node;
                node = node->right;
            } else {
                node = node->left;
            }
            break;
        case kModeAtOrBelow:
            if (c == 0) return *found = node, 0;
            if (c > 0) {
                candidate = node;
                node = node->right;
            } else {
                node = node->left;
            }
            break;
        case kModeExact:
            if (c == 0) return *found = node, 0;
            node = c < 0 ? node->left : node->right;
            break;
        case kModeAtOrAbove:
            if (c == 0) return *found = node, 0;
            if (c < 0) {
                candidate = node;
                node = node->left;
            } else {
                node = node->right;
            }
            break;
        default:  // kModeAbove
            if (c < 0) {
                candidate = node;
                node = node->left;
            } else {
                node = node->right;
            }
            break;
        }
    }
    *found = candidate;
    return 0;
}

}  // namespace tessar::detail
