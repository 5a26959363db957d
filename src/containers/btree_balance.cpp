// The balanced tree's structure: linking a node by descent, unlinking it,
// and the rebalancing walk that restores counts, levels and the height
// balance of every ancestor up to the root.
#include "containers/btree.hpp"

namespace tessar::detail {

namespace {

// count = left count + right count + 1; level = greater child level + 1.
void recompute(tsBtreeNode *node) noexcept
{
    node->count = countOf(node->left) + countOf(node->right) + 1;
    const std::int32_t left = levelOf(node->left);
    const std::int32_t right = levelOf(node->right);
    node->level = (left > right ? left : right) + 1;
}

// The link that holds a node: its parent's left or right field, or the
// tree's root. Null when none of them holds it.
tsBtreeNode **holdingLink(tsBtree &tree, const tsBtreeNode *node) noexcept
{
    tsBtreeNode *parent = node->parent;
    if (parent == nullptr) return tree.root == node ? &tree.root : nullptr;
    if (parent->left == node) return &parent->left;
    if (parent->right == node) return &parent->right;
    return nullptr;
}

// Puts newTop in oldTop's place under oldTop's parent (or as the root).
void replaceInParent(tsBtree &tree, const tsBtreeNode *oldTop, tsBtreeNode *newTop) noexcept
{
    tsBtreeNode *parent = oldTop->parent;
    newTop->parent = parent;
    if (parent == nullptr)
        tree.root = newTop;
    else if (parent->left == oldTop)
        parent->left = newTop;
    else
        parent->right = newTop;
}

void adopt(tsBtreeNode *parent, tsBtreeNode *child) noexcept
{
    if (child != nullptr) child->parent = parent;
}

// Left high, single rotation: L moves up, the node becomes L's right child
// and takes L's old right child as its left.
void rotateRight(tsBtree &tree, tsBtreeNode *node) noexcept
{
    tsBtreeNode *up = node->left;
    replaceInParent(tree, node, up);
    node->left = up->right;
    adopt(node, node->left);
    up->right = node;
    node->parent = up;
    recompute(node);
    recompute(up);
}

// Right high, single rotation: the mirror image.
void rotateLeft(tsBtree &tree, tsBtreeNode *node) noexcept
{
    tsBtreeNode *up = node->right;
    replaceInParent(tree, node, up);
    node->right = up->left;
    adopt(node, node->right);
    up->left = node;
    node->parent = up;
    recompute(node);
    recompute(up);
}

// Left high with L right heavy, double rotation: L's right child M moves up
// to the node's place with L on its left and the node on its right; M's old
// left child goes to L's right, its old right child to the node's left.
void rotateLeftRight(tsBtree &tree, tsBtreeNode *node) noexcept
{
    tsBtreeNode *low = node->left;
    tsBtreeNode *up = low->right;
    replaceInParent(tree, node, up);
    low->right = up->left;
    adopt(low, low->right);
    node->left = up->right;
    adopt(node, node->left);
    up->left = low;
    low->parent = up;
    up->right = node;
    node->parent = up;
    recompute(low);
    recompute(node);
    recompute(up);
}

// Right high with R left heavy: the mirror image of rotateLeftRight.
void rotateRightLeft(tsBtree &tree, tsBtreeNode *node) noexcept
{
    tsBtreeNode *low = node->right;
    tsBtreeNode *up = low->left;
    replaceInParent(tree, node, up);
    low->left = up->right;
    adopt(low, low->left);
    node->right = up->left;
    adopt(node, node->right);
    up->right = low;
    low->parent = up;
    up->left = node;
    node->parent = up;
    recompute(low);
    recompute(node);
    recompute(up);
}

// Rebalances one node. Balance is the left child's level minus the right
// child's. Beyond 2 either way the structure is corrupt. A double rotation
// is taken only when the high child leans strictly inward; equal levels of
// its children take the single rotation.
std::int32_t rebalance(tsBtree &tree, tsBtreeNode *node) noexcept
{
    const std::int32_t balance = levelOf(node->left) - levelOf(node->right);
    if (balance < -2 || balance > 2) return kFailure;
    if (balance == 2) {
        const tsBtreeNode *high = node->left;
        if (levelOf(high->left) < levelOf(high->right))
            rotateLeftRight(tree, node);
        else
            rotateRight(tree, node);
    } else if (balance == -2) {
        const tsBtreeNode *high = node->right;
        if (levelOf(high->right) < levelOf(high->left))
            rotateRightLeft(tree, node);
        else
            rotateLeft(tree, node);
    } else {
        recompute(node);
    }
    return 0;
}

// Rebalances from a node up to the root without stopping early: every
// ancestor's count has changed. After a rotation the node's parent is the
// new subtree top, so the walk visits that too; recomputing it is harmless.
std::int32_t rebalanceUpward(tsBtree &tree, tsBtreeNode *node) noexcept
{
    for (; node != nullptr; node = node->parent)
        if (rebalance(tree, node) != 0) return kFailure;
    return 0;
}

}  // namespace

std::int32_t linkNode(tsBtree &tree, tsBtreeNode *node, const void *key, bool unique, bool *linked) noexcept
{
    *linked = false;
    // Less or equal goes left, greater goes right: a key equal to existing
    // ones lands before all of them in key order.
    tsBtreeNode *parent = nullptr;
    tsBtreeNode **link = &tree.root;
    while (*link != nullptr) {
        parent = *link;
        const std::int32_t c = compareKey(tree, key, parent);
        if (c == 0 && unique) return 0;
        link = c <= 0 ? &parent->left : &parent->right;
    }
    *link = node;
    node->parent = parent;
    *linked = true;
    return rebalanceUpward(tree, parent);
}

std::int32_t unlinkNode(tsBtree &tree, tsBtreeNode *node) noexcept
{
    tsBtreeNode **link = holdingLink(tree, node);
    if (link == nullptr) return kFailure;

    tsBtreeNode *start = nullptr;
    if (node->left == nullptr || node->right == nullptr) {
        // One child or none: that child takes the node's place.
        tsBtreeNode *child = node->left == nullptr ? node->right : node->left;
        *link = child;
        adopt(node->parent, child);
        start = node->parent;
    } else {
        // Both children: the in-order predecessor P replaces the node. P's
        // own left subtree first takes P's former place; P then takes the
        // node's children, level, count and parent.
        tsBtreeNode *pred = rightmost(node->left);
        tsBtreeNode *formerParent = pred->parent;
        if (formerParent == node)
            node->left = pred->left;
        else
            formerParent->right = pred->left;
        adopt(formerParent, pred->left);

        pred->left = node->left;
        pred->right = node->right;
        adopt(pred, pred->left);
        adopt(pred, pred->right);
        pred->level = node->level;
        pred->count = node->count;
        pred->parent = node->parent;
        *link = pred;
        start = formerParent == node ? pred : formerParent;
    }
    return rebalanceUpward(tree, start);
}

}  // namespace tessar::detail
