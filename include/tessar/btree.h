/*
 * Tessar: balanced tree.
 *
 * tsBtree_* is the library's ordered map: a height-balanced (AVL) binary
 * search tree whose nodes also know the size of their subtree, so that one
 * structure answers keyed search, neighbour search, ranked access (the n-th
 * node) and range traversal. One tree holds one kind of key, chosen by its
 * constructor:
 *
 *   kind 0  generic: the caller's callbacks compare, copy and free keys
 *   kind 1  8-bit string, compared byte by byte as unsigned values, a
 *           shorter prefix first; the tree keeps its own copy
 *   kind 2  signed 32-bit integer
 *   kind 3  double, compared exactly (a not-a-number compares as less)
 *   kind 4  signed 64-bit integer
 *   kind 5  16-bit string, compared unit by unit as unsigned values; the tree
 *           keeps its own copy
 *
 * Keys always go in by pointer: the address of the int32_t, int64_t or
 * double for kinds 2, 3 and 4, the string itself for kinds 1 and 5, the
 * caller's key for kind 0. Equal keys may coexist: of several equal keys the
 * one added last comes first in key order.
 *
 * The tree is an opaque record held in the caller's handle variable: the
 * handle starts as null, a constructor fills it, tsBtree_destroy frees the
 * tree and clears it. The tree owns its nodes and its key copies; a node's
 * contents stays the caller's unless the tree was given a freeContents
 * callback, which then receives contents that the tree drops or replaces.
 *
 * The tree keeps one cursor, the current node, through which most functions
 * work. Adding a node, a search, tsBtree_getNodeByIndex and
 * tsBtree_getNextNode move it (to null on failure); the perform functions
 * leave it alone. Since even a search writes the cursor, a tree belongs to
 * one thread at a time, readers included.
 *
 * Results: 0 for success, 32768 for a bad argument, an unknown key kind or
 * mode, a corrupt structure or no memory for a node, and
 *   -1  the function needs a current node and none is set,
 *   -2  tsBtree_getNodeByIndex: no node has that index,
 *   -3  tsBtree_getNextNode: the cursor moved past the last node,
 *   -4  tsBtree_getNodeByKey, tsBtree_getClosestNodeByKey: no node found.
 *
 * Search modes, the integer that goes with a search key:
 *   -3  the first node of the tree (no key needed)
 *   -2  the greatest key strictly below the key; of equal keys the last
 *   -1  the key itself if present, else the greatest key below it
 *    0  exactly the key
 *    1  the key itself if present, else the least key above it
 *    2  the least key strictly above the key; of equal keys the first
 *    3  the last node of the tree (no key needed)
 * With modes -1, 0 and 1 and duplicate keys, the node found is the first
 * equal key that the descent from the root meets.
 */
#ifndef TESSAR_BTREE_H
#define TESSAR_BTREE_H

#include <stdint.h>

#include <tessar/export.h>

TESSAR_BEGIN_DECLS

/* ---- Records ---- */

/** A balanced tree: opaque, held through a handle variable. */
typedef struct tsBtree tsBtree;

/** The key field of a node; which member is in use depends on the tree's key kind. */
typedef union tsBtreeKey {
    void *pointer; /**< kinds 0, 1, 5: the generic key made by copyKey, or the tree's string copy */
    int32_t int32; /**< kind 2 */
    double real;   /**< kind 3 */
    int64_t int64; /**< kind 4 */
} tsBtreeKey;

/**
 * A node of the tree, as a conditional action sees it. The tree maintains
 * the links, level, count and key; an action may read them all and may
 * store contents, which the tree never interprets.
 */
typedef struct tsBtreeNode tsBtreeNode;
struct tsBtreeNode {
    void *contents;      /**< the caller's value, opaque to the tree */
    tsBtreeKey key;      /**< the node's key */
    int32_t level;       /**< height of the subtree under and with this node; a leaf has 1 */
    int32_t count;       /**< number of nodes in that subtree, this one included */
    tsBtreeNode *left;   /**< subtree of keys not greater than this one */
    tsBtreeNode *right;  /**< subtree of keys not less than this one */
    tsBtreeNode *parent; /**< null at the root */
};

/* ---- Callbacks ----
 * Every callback returns an int32_t. Where the tree ignores the result, any
 * value will do; in the actions a non-zero result stops the walk. */

/**
 * Orders two keys of a generic tree.
 * \param[in] searchKey the key being looked for or inserted
 * \param[in] storedKey the key stored in a node (what copyKey produced)
 * \return negative, 0 or positive as searchKey is below, equal to or above storedKey.
 */
typedef int32_t (*tsBtreeCompareKeysFunc)(const void *searchKey, const void *storedKey);

/**
 * Gives a node of a generic tree its key.
 * \param[out] keyField the node's key field: store the key pointer to keep there
 * \param[in]  key      the caller's key as passed to the tree
 * \return ignored.
 */
typedef int32_t (*tsBtreeCopyKeyFunc)(void **keyField, const void *key);

/** Releases a key of a generic tree that copyKey produced, when its node goes. \return ignored. */
typedef int32_t (*tsBtreeFreeKeyFunc)(void *storedKey);

/** Releases contents that the tree drops or replaces. \return ignored. */
typedef int32_t (*tsBtreeFreeContentsFunc)(void *contents);

/**
 * Action on a tree node, called by tsBtree_performAction.
 * \param[in] key      pointer to the key value, as tsBtree_getNodeKey gives it
 * \param[in] contents the node's contents
 * \param[in] userData the caller's data given to the walk
 * \return 0 to go on; non-zero stops the walk and becomes its result.
 */
typedef int32_t (*tsBtreeNodeAction)(const void *key, void *contents, void *userData);

/**
 * Action on a node's contents, called by tsBtree_performPtrAction.
 * \return 0 to go on; non-zero stops the walk and becomes its result.
 */
typedef int32_t (*tsBtreeContentsAction)(void *contents, void *userData);

/**
 * Conditional action, called by tsBtree_performActionWithCondition on each
 * node in range that the walk reaches; it steers the walk down the tree.
 * \param[out] goLeft   starts at 0; set non-zero to visit the left child
 * \param[out] goRight  starts at 0; set non-zero to visit the right child
 * \param[in]  key      pointer to the key value, as tsBtree_getNodeKey gives it
 * \param[in]  node     the node itself
 * \param[in]  userData the caller's data given to the walk
 * \return 0 to go on; non-zero stops the walk and becomes its result.
 */
typedef int32_t (*tsBtreeConditionalAction)(int32_t *goLeft, int32_t *goRight, const void *key,
                                            tsBtreeNode *node, void *userData);

/* ---- Creation and destruction ----
 * Each constructor needs a non-null handle address whose handle holds null;
 * it allocates an empty tree with no current node and stores it there.
 * freeContents may be null. \return 0, or 32768 on a bad argument or no memory. */

/**
 * Creates a tree of generic keys (kind 0).
 * \param[in,out] tree         address of a handle holding null
 * \param[in]     compareKeys  orders keys; required
 * \param[in]     copyKey      gives a node its key; required
 * \param[in]     freeKey      releases a node's key; may be null
 * \param[in]     freeContents releases dropped contents; may be null
 */
TESSAR_API int32_t tsBtree_createForGenericKey(tsBtree **tree, tsBtreeCompareKeysFunc compareKeys,
                                               tsBtreeCopyKeyFunc copyKey, tsBtreeFreeKeyFunc freeKey,
                                               tsBtreeFreeContentsFunc freeContents);

/** Creates a tree of signed 32-bit keys (kind 2). */
TESSAR_API int32_t tsBtree_createForIntegerKey(tsBtree **tree, tsBtreeFreeContentsFunc freeContents);

/** Creates a tree of signed 64-bit keys (kind 4). */
TESSAR_API int32_t tsBtree_createForInteger64Key(tsBtree **tree, tsBtreeFreeContentsFunc freeContents);

/** Creates a tree of 8-bit string keys (kind 1); the tree copies each key. */
TESSAR_API int32_t tsBtree_createForStringKey(tsBtree **tree, tsBtreeFreeContentsFunc freeContents);

/** Creates a tree of 16-bit string keys (kind 5); the tree copies each key. */
TESSAR_API int32_t tsBtree_createForWStringKey(tsBtree **tree, tsBtreeFreeContentsFunc freeContents);

/** Creates a tree of double keys (kind 3), ordered exactly. */
TESSAR_API int32_t tsBtree_createForDoubleKey(tsBtree **tree, tsBtreeFreeContentsFunc freeContents);

/**
 * Releases every node (left subtree, right subtree, node), with its key and,
 * through freeContents, its non-null contents; then frees the tree and
 * clears the handle.
 * \param[in,out] tree address of the handle
 * \return 0; 32768 for a null address or handle; a failure while releasing
 *         stops it with that code and keeps the tree.
 */
TESSAR_API int32_t tsBtree_destroy(tsBtree **tree);

/* ---- Adding, removing and changing nodes ---- */

/**
 * Inserts a node; a key equal to existing ones is accepted and placed before
 * them. The new node becomes current.
 * \return 0; 32768 for a null tree or key, no memory (the tree is then
 *         untouched) or a corrupt structure.
 */
TESSAR_API int32_t tsBtree_addNode(tsBtree *tree, const void *key, void *contents);

/**
 * Inserts a node if no node has this key, and makes it current. If the key
 * exists, no node is added and the cursor stays: when the stored contents
 * differ from the given ones, the old contents go to freeContents (if set) and
 * the given ones are stored. The tree's copy of the key made for the dropped
 * node is not released.
 * \return 0 in both cases; 32768 as tsBtree_addNode.
 */
TESSAR_API int32_t tsBtree_addNodeUnique(tsBtree *tree, const void *key, void *contents);

/**
 * Removes the current node and releases its key, its non-null contents
 * (through freeContents) and the node. The cursor first moves to the next node in key
 * order, and is null after the last.
 * \return 0; -1 without a current node; 32768 for a null tree or a corrupt structure.
 */
TESSAR_API int32_t tsBtree_deleteNode(tsBtree *tree);

/**
 * Gives the current node a new key and moves it to its place, contents
 * unchanged; it stays current. The old key is not released.
 * \return 0; -1 without a current node; 32768 for a null tree or key.
 */
TESSAR_API int32_t tsBtree_changeNodeKey(tsBtree *tree, const void *key);

/* ---- Searching and moving the cursor ---- */

/**
 * Moves the cursor to the node that a search mode selects (see the top of
 * this header).
 * \param[in] key  the search key; may be null for modes -3 and 3
 * \param[in] mode -3 to 3
 * \return 0; -4 when no node qualifies; 32768 for a null tree, a mode outside
 *         -3 to 3 or a null key where the mode needs one. On every failure but
 *         the null tree the cursor is null.
 */
TESSAR_API int32_t tsBtree_getNodeByKey(tsBtree *tree, const void *key, int32_t mode);

/**
 * Moves the cursor to the node nearest to the key, in a tree of numeric keys
 * (kinds 2, 3, 4). Of the nodes at or below and at or above the key, the
 * lower wins only if it is strictly nearer: a tie goes to the upper one.
 * Integer distances are formed in the key's own width.
 * \return 0; -4 when the key is null or the tree empty (cursor null);
 *         32768 for a null tree or a tree of another key kind.
 */
TESSAR_API int32_t tsBtree_getClosestNodeByKey(tsBtree *tree, const void *key);

/**
 * Moves the cursor to the node of a rank in key order.
 * \param[in] index from 0
 * \return 0; -2 for an index outside the tree (cursor null); 32768 for a null tree.
 */
TESSAR_API int32_t tsBtree_getNodeByIndex(tsBtree *tree, int32_t index);

/**
 * Moves the cursor to the next node in key order.
 * \return 0; -1 without a current node; -3 past the last node (cursor null);
 *         32768 for a null tree.
 */
TESSAR_API int32_t tsBtree_getNextNode(tsBtree *tree);

/* ---- The current node ---- */

/**
 * Reads the rank of the current node in key order.
 * \param[out] index the rank, from 0
 * \return 0; -1 without a current node; 32768 for a null argument.
 */
TESSAR_API int32_t tsBtree_getNodeIndex(const tsBtree *tree, int32_t *index);

/** \return the number of nodes (0 for an empty tree); 32768 for a null tree. */
TESSAR_API int32_t tsBtree_getNodeNumber(const tsBtree *tree);

/**
 * Reads the contents of the current node.
 * \param[out] contents the contents
 * \return 0; -1 without a current node; 32768 for a null argument.
 */
TESSAR_API int32_t tsBtree_getNodeContents(const tsBtree *tree, void **contents);

/**
 * Stores new contents in the current node; non-null old contents go to
 * freeContents first, if set.
 * \param[in] contents the new contents; must not be null
 * \return 0; -1 without a current node; 32768 for a null tree or null
 *         contents (nothing changes).
 */
TESSAR_API int32_t tsBtree_setNodeContents(tsBtree *tree, void *contents);

/**
 * Reads the key of the current node.
 * \param[out] key the stored key pointer for kinds 0, 1 and 5; the address of
 *                 the node's key field for kinds 2, 3 and 4
 * \return 0; -1 without a current node; 32768 for a null argument.
 */
TESSAR_API int32_t tsBtree_getNodeKey(const tsBtree *tree, const void **key);

/* ---- Ranged traversal ----
 * A non-null startKey is resolved to a node with startMode, a non-null endKey
 * to a node with endMode. A null key, or a search that finds no node, leaves
 * that side of the range open. A node is in range when its key is not below
 * the start node's key and not above the end node's key, so every duplicate
 * of a bound's key is inside. The cursor is not moved.
 * \return 0, or the non-zero answer that stopped the walk; 32768 for a null
 *         tree or action, a failed search, or a start key above the end key. */

/**
 * Calls action(key, contents, userData) on every node in range, in key order,
 * until an answer is non-zero.
 */
TESSAR_API int32_t tsBtree_performAction(const tsBtree *tree, tsBtreeNodeAction action, void *userData,
                                         const void *startKey, const void *endKey, int32_t startMode,
                                         int32_t endMode);

/** Calls action(contents, userData) on every node in range, in key order, until an answer is non-zero. */
TESSAR_API int32_t tsBtree_performPtrAction(const tsBtree *tree, tsBtreeContentsAction action, void *userData,
                                            const void *startKey, const void *endKey, int32_t startMode,
                                            int32_t endMode);

/**
 * Walks down from the root and lets the action steer. At each node both
 * flags start at 0; a node in range calls the action. The left child is
 * visited only if the node is not below the range and the action set goLeft,
 * the right child only if the node is not above the range and it set goRight.
 * A node out of range never calls the action, so the walk ends there even if
 * nodes in range lie under it. The action gets the node itself and may store
 * contents in it, so the tree is not const here.
 */
TESSAR_API int32_t tsBtree_performActionWithCondition(tsBtree *tree, tsBtreeConditionalAction action,
                                                      void *userData, const void *startKey,
                                                      const void *endKey, int32_t startMode, int32_t endMode);

/* ---- Checking and printing ---- */

/**
 * Checks every node against its parent and children: parent link, level and
 * count at least 1, count and level consistent with the children, child
 * levels at most 2 apart, keys in order. The tree must be valid (no null test).
 * \param[out] result the code, also returned
 * \return 0, or 32768 at the first failure.
 */
TESSAR_API int32_t tsBtree_verify(const tsBtree *tree, int32_t *result);

/**
 * Prints the root node's record (counts, levels and key) to the standard
 * output, indented four blanks per level; a 16-bit string key is written as
 * UTF-8. The tree must be valid (no null test).
 * \return 0; an empty tree prints nothing.
 */
TESSAR_API int32_t tsBtree_print(const tsBtree *tree);

TESSAR_END_DECLS

#endif /* TESSAR_BTREE_H */
