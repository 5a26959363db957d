// tsBtree_*: creation and destruction of a tree, and the functions that add,
// remove and re-key nodes.
#include <cstring>

#include <tessar/btree.h>
#include <tessar/memory.h>

#include "containers/btree.hpp"

using namespace tessar::detail;

namespace {

// The shared front of the constructors: the handle must be there and hold
// null; the header is allocated and zeroed, so root and cursor are null.
std::int32_t createTree(tsBtree **handle, std::uint32_t keyKind, tsBtreeFreeContentsFunc freeContents,
                        tsBtree **made = nullptr)
{
    if (handle == nullptr || *handle != nullptr) return kFailure;
    auto *tree = static_cast<tsBtree *>(tsMem_malloc(sizeof(tsBtree)));
    if (tree == nullptr) return kFailure;
    std::memset(tree, 0, sizeof(tsBtree));
    tree->keyKind = keyKind;
    tree->freeContents = freeContents;
    *handle = tree;
    if (made != nullptr) *made = tree;
    return 0;
}

// Releases a subtree in post-order (left, right, node); the first failure
// stops it.
std::int32_t releaseSubtree(const tsBtree &tree, tsBtreeNode *node)
{
    if (node == nullptr) return 0;
    if (const std::int32_t status = releaseSubtree(tree, node->left); status != 0) return status;
    if (const std::int32_t status = releaseSubtree(tree, node->right); status != 0) return status;
    return releaseNode(tree, node);
}

// Insertion, steps 1 and 2: a zeroed node with its key, level and count 1
// and no links. Null when the node cannot be had (nothing is then changed).
tsBtreeNode *newNode(const tsBtree &tree, const void *key, void *contents, std::int32_t *status)
{
    auto *node = static_cast<tsBtreeNode *>(tsMem_malloc(sizeof(tsBtreeNode)));
    *status = kFailure;
    if (node == nullptr) return nullptr;
    std::memset(node, 0, sizeof(tsBtreeNode));
    if (storeKey(tree, *node, key) != 0) {
        tsMem_free(node);
        return nullptr;
    }
    node->contents = contents;
    node->level = 1;
    node->count = 1;
    *status = 0;
    return node;
}

// The two insertions share everything but the treatment of an equal key.
std::int32_t addNode(tsBtree *tree, const void *key, void *contents, bool unique)
{
    if (tree == nullptr || key == nullptr) return kFailure;
    std::int32_t status = 0;
    tsBtreeNode *node = newNode(*tree, key, contents, &status);
    if (node == nullptr) return status;

    bool linked = false;
    status = linkNode(*tree, node, key, unique, &linked);
    if (linked) {
        tree->current = node;
        return status;
    }

    // The key exists: the fresh node is dropped, but not the key copy
    // already made for it, which is given up (strings and generic keys
    // leak here, as callers of this function know). The cursor stays.
    tsMem_free(node);
    tsBtreeNode *existing = nullptr;
    (void)findNode(*tree, key, kModeExact, &existing);
    if (existing != nullptr && existing->contents != contents) {
        if (tree->freeContents != nullptr) (void)tree->freeContents(existing->contents);
        existing->contents = contents;
    }
    return 0;
}

}  // namespace

// ---- Creation and destruction ----

int32_t tsBtree_createForGenericKey(tsBtree **tree, tsBtreeCompareKeysFunc compareKeys,
                                    tsBtreeCopyKeyFunc copyKey, tsBtreeFreeKeyFunc freeKey,
                                    tsBtreeFreeContentsFunc freeContents)
{
    if (compareKeys == nullptr || copyKey == nullptr) return kFailure;
    tsBtree *made = nullptr;
    const std::int32_t status = createTree(tree, kKeyGeneric, freeContents, &made);
    if (status != 0) return status;
    made->compareKeys = compareKeys;
    made->copyKey = copyKey;
    made->freeKey = freeKey;
    return 0;
}

int32_t tsBtree_createForIntegerKey(tsBtree **tree, tsBtreeFreeContentsFunc freeContents)
{
    return createTree(tree, kKeyInt32, freeContents);
}

int32_t tsBtree_createForInteger64Key(tsBtree **tree, tsBtreeFreeContentsFunc freeContents)
{
    return createTree(tree, kKeyInt64, freeContents);
}

int32_t tsBtree_createForStringKey(tsBtree **tree, tsBtreeFreeContentsFunc freeContents)
{
    return createTree(tree, kKeyString, freeContents);
}

int32_t tsBtree_createForWStringKey(tsBtree **tree, tsBtreeFreeContentsFunc freeContents)
{
    return createTree(tree, kKeyWString, freeContents);
}

int32_t tsBtree_createForDoubleKey(tsBtree **tree, tsBtreeFreeContentsFunc freeContents)
{
    return createTree(tree, kKeyDouble, freeContents);
}

int32_t tsBtree_destroy(tsBtree **tree)
{
    if (tree == nullptr || *tree == nullptr) return kFailure;
    // A failure while releasing keeps the header (and the handle) as it is.
    if (const std::int32_t status = releaseSubtree(**tree, (*tree)->root); status != 0) return status;
    return tsMem_freeAndClear(reinterpret_cast<void **>(tree));
}

// ---- Adding, removing and changing nodes ----

int32_t tsBtree_addNode(tsBtree *tree, const void *key, void *contents)
{
    return addNode(tree, key, contents, false);
}

int32_t tsBtree_addNodeUnique(tsBtree *tree, const void *key, void *contents)
{
    return addNode(tree, key, contents, true);
}

int32_t tsBtree_deleteNode(tsBtree *tree)
{
    if (tree == nullptr) return kFailure;
    tsBtreeNode *node = tree->current;
    if (node == nullptr) return kBtreeNoCurrent;
    tree->current = successor(node);
    if (const std::int32_t status = unlinkNode(*tree, node); status != 0) return status;
    return releaseNode(*tree, node);
}

int32_t tsBtree_changeNodeKey(tsBtree *tree, const void *key)
{
    if (tree == nullptr || key == nullptr) return kFailure;
    tsBtreeNode *node = tree->current;
    if (node == nullptr) return kBtreeNoCurrent;
    if (const std::int32_t status = unlinkNode(*tree, node); status != 0) return status;

    // Back in as a fresh node with the new key. The old key is overwritten,
    // not released: a string or generic key copy is given up here.
    node->left = nullptr;
    node->right = nullptr;
    node->parent = nullptr;
    node->level = 1;
    node->count = 1;
    if (const std::int32_t status = storeKey(*tree, *node, key); status != 0) return status;
    bool linked = false;
    return linkNode(*tree, node, key, false, &linked);
}
