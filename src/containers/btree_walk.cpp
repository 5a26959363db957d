// tsBtree_*: ranged traversals, verification and printing.
#include <array>
#include <cinttypes>
#include <cstdio>

#include <tessar/btree.h>

#include "containers/btree.hpp"

using namespace tessar::detail;

namespace {

// The bounds of a ranged walk: the nodes that the start and end keys
// resolve to, each null when that side is open.
struct Range {
    const tsBtree &tree;
    const tsBtreeNode *start = nullptr;
    const tsBtreeNode *end = nullptr;

    // Comparison is by key, so every duplicate of a bound's key is inside.
    bool belowStart(const tsBtreeNode *node) const
    {
        return start != nullptr && compareKey(tree, nodeKey(tree, node), start) < 0;
    }
    bool aboveEnd(const tsBtreeNode *node) const
    {
        return end != nullptr && compareKey(tree, nodeKey(tree, node), end) > 0;
    }
};

// The shared front of the walks. A null key leaves its side open, and so,
// deliberately, does a search that finds no node: a start key above every
// key still walks from the first node. A failed search (bad mode, null key
// where one is needed) ends the call; so does a start node above the end node.
std::int32_t resolveRange(Range &range, const void *startKey, const void *endKey, std::int32_t startMode,
                          std::int32_t endMode)
{
    tsBtreeNode *found = nullptr;
    if (startKey != nullptr) {
        if (const std::int32_t status = findNode(range.tree, startKey, startMode, &found); status != 0)
            return status;
        range.start = found;
    }
    if (endKey != nullptr) {
        if (const std::int32_t status = findNode(range.tree, endKey, endMode, &found); status != 0)
            return status;
        range.end = found;
    }
    if (range.start != nullptr && range.end != nullptr &&
        compareKey(range.tree, nodeKey(range.tree, range.start), range.end) > 0)
        return kFailure;
    return 0;
}

// The in-order walk of performAction and performPtrAction: descend left
// unless below the start, call the visit in range, end the branch above the
// end, then go right. visit(node) gives the action's answer.
template <class Visit> std::int32_t walkInOrder(const Range &range, const tsBtreeNode *node, Visit &visit)
{
    while (node != nullptr) {
        const bool below = range.belowStart(node);
        if (!below)
            if (const std::int32_t answer = walkInOrder(range, node->left, visit); answer != 0) return answer;
        if (range.aboveEnd(node)) return 0;
        if (!below)
            if (const std::int32_t answer = visit(node); answer != 0) return answer;
        node = node->right;
    }
    return 0;
}

// The top-down walk of performActionWithCondition. Both flags start at 0 at
// every node and only a node in range calls the action, so an out-of-range
// node ends the walk there, even with nodes in range under it.
std::int32_t walkWithCondition(const Range &range, tsBtreeNode *node, tsBtreeConditionalAction action,
                               void *userData)
{
    if (node == nullptr) return 0;
    std::int32_t goLeft = 0;
    std::int32_t goRight = 0;
    const bool below = range.belowStart(node);
    const bool above = range.aboveEnd(node);
    if (!below && !above)
        if (const std::int32_t answer = action(&goLeft, &goRight, nodeKey(range.tree, node), node, userData);
            answer != 0)
            return answer;
    if (!below && goLeft != 0)
        if (const std::int32_t answer = walkWithCondition(range, node->left, action, userData); answer != 0)
            return answer;
    if (!above && goRight != 0) return walkWithCondition(range, node->right, action, userData);
    return 0;
}

// Verification of one node against its parent and children, then of the
// children, top-down; kFailure at the first fault. The child levels may
// differ by 2, the limit that rebalancing tolerates, not the 1 it keeps.
std::int32_t verifyNode(const tsBtree &tree, const tsBtreeNode *node, const tsBtreeNode *parent)
{
    if (node == nullptr) return 0;
    if (node->parent != parent) return kFailure;
    if (node->level < 1 || node->count < 1) return kFailure;
    if (node->count != countOf(node->left) + countOf(node->right) + 1) return kFailure;
    const std::int32_t left = levelOf(node->left);
    const std::int32_t right = levelOf(node->right);
    if (node->level != (left > right ? left : right) + 1) return kFailure;
    if (left - right > 2 || right - left > 2) return kFailure;
    if (node->left != nullptr && compareKey(tree, nodeKey(tree, node->left), node) > 0) return kFailure;
    if (node->right != nullptr && compareKey(tree, nodeKey(tree, node), node->right) > 0) return kFailure;
    if (verifyNode(tree, node->left, node) != 0) return kFailure;
    return verifyNode(tree, node->right, node);
}

// A 16-bit key written out as UTF-8 on the byte stream. Standard output
// takes one orientation, and the lines before the key line are bytes, so
// the wide line is converted rather than sent to a wide stream. A lone
// surrogate becomes U+FFFD.
void printWideKey(const char *indent, const char16_t *key)
{
    std::printf("%sKey: ", indent);
    for (const char16_t *unit = key; *unit != 0; ++unit) {
        std::uint32_t code = *unit;
        if (code >= 0xD800 && code <= 0xDBFF && unit[1] >= 0xDC00 && unit[1] <= 0xDFFF) {
            code = 0x10000 + ((code - 0xD800) << 10) + (static_cast<std::uint32_t>(unit[1]) - 0xDC00);
            ++unit;
        } else if (code >= 0xD800 && code <= 0xDFFF) {
            code = 0xFFFD;
        }
        if (code < 0x80) {
            std::putchar(static_cast<int>(code));
        } else if (code < 0x800) {
            std::putchar(static_cast<int>(0xC0 | (code >> 6)));
            std::putchar(static_cast<int>(0x80 | (code & 0x3F)));
        } else if (code < 0x10000) {
            std::putchar(static_cast<int>(0xE0 | (code >> 12)));
            std::putchar(static_cast<int>(0x80 | ((code >> 6) & 0x3F)));
            std::putchar(static_cast<int>(0x80 | (code & 0x3F)));
        } else {
            std::putchar(static_cast<int>(0xF0 | (code >> 18)));
            std::putchar(static_cast<int>(0x80 | ((code >> 12) & 0x3F)));
            std::putchar(static_cast<int>(0x80 | ((code >> 6) & 0x3F)));
            std::putchar(static_cast<int>(0x80 | (code & 0x3F)));
        }
    }
    std::putchar('\n');
}

// A valid tree of at most 2^31 nodes is under 46 levels high; the indent
// buffer holds 64 levels of four blanks.
constexpr std::int32_t kMaxIndentLevels = 64;

}  // namespace

// ---- Ranged traversal ----

int32_t tsBtree_performAction(const tsBtree *tree, tsBtreeNodeAction action, void *userData,
                              const void *startKey, const void *endKey, int32_t startMode, int32_t endMode)
{
    if (tree == nullptr || action == nullptr) return kFailure;
    Range range{*tree};
    if (const std::int32_t status = resolveRange(range, startKey, endKey, startMode, endMode); status != 0)
        return status;
    auto visit = [&](const tsBtreeNode *node) {
        return action(nodeKey(*tree, node), node->contents, userData);
    };
    return walkInOrder(range, tree->root, visit);
}

int32_t tsBtree_performPtrAction(const tsBtree *tree, tsBtreeContentsAction action, void *userData,
                                 const void *startKey, const void *endKey, int32_t startMode, int32_t endMode)
{
    if (tree == nullptr || action == nullptr) return kFailure;
    Range range{*tree};
    if (const std::int32_t status = resolveRange(range, startKey, endKey, startMode, endMode); status != 0)
        return status;
    auto visit = [&](const tsBtreeNode *node) { return action(node->contents, userData); };
    return walkInOrder(range, tree->root, visit);
}

int32_t tsBtree_performActionWithCondition(tsBtree *tree, tsBtreeConditionalAction action, void *userData,
                                           const void *startKey, const void *endKey, int32_t startMode,
                                           int32_t endMode)
{
    if (tree == nullptr || action == nullptr) return kFailure;
    Range range{*tree};
    if (const std::int32_t status = resolveRange(range, startKey, endKey, startMode, endMode); status != 0)
        return status;
    return walkWithCondition(range, tree->root, action, userData);
}

// ---- Checking and printing ----

int32_t tsBtree_verify(const tsBtree *tree, int32_t *result)
{
    *result = verifyNode(*tree, tree->root, nullptr);
    return *result;
}

int32_t tsBtree_print(const tsBtree *tree)
{
    const tsBtreeNode *root = tree->root;
    if (root == nullptr) return 0;

    // Four blanks per level of the root: a taller tree is indented further.
    std::array<char, 4 * kMaxIndentLevels + 1> indent{};
    const std::int32_t levels = root->level < kMaxIndentLevels ? root->level : kMaxIndentLevels;
    for (std::int32_t i = 0; i < 4 * levels; ++i)
        indent[static_cast<std::size_t>(i)] = ' ';
    const char *pad = indent.data();

    std::printf("%sNODE========================================\n", pad);
    std::printf("%sCount: Left (%d), Right (%d)\n", pad, countOf(root->left), countOf(root->right));
    std::printf("%sLevel: This (%d), Left (%d), Right (%d)\n", pad, root->level, levelOf(root->left),
                levelOf(root->right));
    switch (tree->keyKind) {
    case kKeyString:
        std::printf("%sKey: %s\n", pad, static_cast<const char *>(root->key.pointer));
        break;
    case kKeyInt32:
        std::printf("%sKey: %d\n", pad, root->key.int32);
        break;
    case kKeyDouble:
        std::printf("%sKey: %f\n", pad, root->key.real);
        break;
    case kKeyInt64:
        std::printf("%sKey: %" PRId64 "\n", pad, root->key.int64);
        break;
    case kKeyWString:
        printWideKey(pad, static_cast<const char16_t *>(root->key.pointer));
        break;
    default:  // a generic tree prints no key line
        break;
    }
    return 0;
}
