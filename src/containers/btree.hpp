// The balanced tree's header record and the steps its functions share: key
// comparison by kind, the search by mode, linking and unlinking a node with
// the rebalancing walk up to the root, and the release of a node.
// Internal: never included by a public header.
#pragma once

#include <cstdint>

#include <tessar/btree.h>

#include "frame/kernel.hpp"

// The tree header. The nodes hang under root; current is the cursor. The
// three key callbacks serve the generic kind only; freeContents every kind.
struct tsBtree {
    tsBtreeNode *root;
    tsBtreeNode *current;
    std::uint32_t keyKind;
    tsBtreeCompareKeysFunc compareKeys;
    tsBtreeCopyKeyFunc copyKey;
    tsBtreeFreeKeyFunc freeKey;
    tsBtreeFreeContentsFunc freeContents;
};

namespace tessar::detail {

// The key kinds, as the constructors set them.
enum BtreeKeyKind : std::uint32_t {
    kKeyGeneric = 0,
    kKeyString = 1,
    kKeyInt32 = 2,
    kKeyDouble = 3,
    kKeyInt64 = 4,
    kKeyWString = 5,
};

// The tree's own result codes beside 0 and kFailure.
inline constexpr std::int32_t kBtreeNoCurrent = -1;
inline constexpr std::int32_t kBtreeNoSuchIndex = -2;
inline constexpr std::int32_t kBtreePastEnd = -3;
inline constexpr std::int32_t kBtreeNotFound = -4;

// The search modes that go with a search key.
enum BtreeSearchMode : std::int32_t {
    kModeFirst = -3,
    kModeBelow = -2,
    kModeAtOrBelow = -1,
    kModeExact = 0,
    kModeAtOrAbove = 1,
    kModeAbove = 2,
    kModeLast = 3,
};

// An absent child counts as level 0 and count 0.
inline std::int32_t levelOf(const tsBtreeNode *node) noexcept
{
    return node != nullptr ? node->level : 0;
}

inline std::int32_t countOf(const tsBtreeNode *node) noexcept
{
    return node != nullptr ? node->count : 0;
}

// ---- Keys ----

// Orders a key given by pointer (as callers pass keys) against a node's
// key: negative, 0 or positive as key is below, equal to or above it.
std::int32_t compareKey(const tsBtree &tree, const void *key, const tsBtreeNode *node) noexcept;

// The key of a node as a pointer, in the form callers pass keys: the stored
// pointer for the generic and string kinds, the address of the key field
// for the numeric kinds.
const void *nodeKey(const tsBtree &tree, const tsBtreeNode *node) noexcept;

// Gives a node the caller's key: copies the value, duplicates a string, or
// hands the key field to copyKey. 0, or kFailure for an unknown kind.
std::int32_t storeKey(const tsBtree &tree, tsBtreeNode &node, const void *key) noexcept;

// Releases a node: its key copy, its contents through freeContents, the node.
std::int32_t releaseNode(const tsBtree &tree, tsBtreeNode *node) noexcept;

// ---- Navigation ----

tsBtreeNode *leftmost(tsBtreeNode *node) noexcept;
tsBtreeNode *rightmost(tsBtreeNode *node) noexcept;

// The in-order successor, or null after the last node.
tsBtreeNode *successor(tsBtreeNode *node) noexcept;

// The node of a rank in key order, from 0, or null; walks one path down by
// the subtree counts.
tsBtreeNode *nodeAtRank(tsBtreeNode *root, std::int32_t rank) noexcept;

// The rank of a node in key order; walks one path up by the subtree counts.
std::int32_t rankOf(const tsBtreeNode *node) noexcept;

// The node that a search mode selects, or null when none does. The cursor
// is left alone. 0, or kFailure for a mode outside -3 to 3 or a null key
// with a mode that needs one.
std::int32_t findNode(const tsBtree &tree, const void *key, std::int32_t mode, tsBtreeNode **found) noexcept;

// ---- Structure ----

// Links a fresh node (level 1, count 1, no links, key stored) by descent
// from the root with key, then rebalances every ancestor up to the root.
// With unique set, a node of an equal key stops the descent and the node is
// not linked: *linked tells which happened. 0, or kFailure for a corrupt
// structure.
std::int32_t linkNode(tsBtree &tree, tsBtreeNode *node, const void *key, bool unique, bool *linked) noexcept;

// Takes a node out of the structure and rebalances from where the structure
// changed up to the root. The node itself is not released and its links
// are left as they were. 0, or kFailure for a node that no link holds or a
// corrupt structure.
std::int32_t unlinkNode(tsBtree &tree, tsBtreeNode *node) noexcept;

}  // namespace tessar::detail
