// The balanced tree: the six key kinds, balance through insertions and
// removals (checked by verify and by an independent walk of the nodes),
// ranks and searches against a sorted reference, closest keys, duplicates,
// the walks and their stop rule, result codes and release callbacks.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/btree.h>
#include <tessar/frame.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// A tree held as a caller holds it, destroyed at the end of the scope.
struct Tree {
    tsBtree *handle = nullptr;
    Tree() = default;
    Tree(Tree &&other) noexcept : handle(other.handle) { other.handle = nullptr; }
    Tree &operator=(Tree &&) = delete;
    ~Tree()
    {
        if (handle != nullptr) tsBtree_destroy(&handle);
    }
    operator tsBtree *() const { return handle; }
};

void *tag(intptr_t value)
{
    return reinterpret_cast<void *>(value);
}

// The root node, as the first node that the conditional walk reaches.
tsBtreeNode *rootOf(tsBtree *tree)
{
    tsBtreeNode *root = nullptr;
    auto grab = [](int32_t *, int32_t *, const void *, tsBtreeNode *node, void *user) -> int32_t {
        *static_cast<tsBtreeNode **>(user) = node;
        return 1;
    };
    tsBtree_performActionWithCondition(tree, grab, &root, nullptr, nullptr, 0, 0);
    return root;
}

double intKey(const tsBtreeNode *node)
{
    return node->key.int32;
}

double realKey(const tsBtreeNode *node)
{
    return node->key.real;
}

// Independent check of the structure of a numeric tree: parent links,
// counts and levels recomputed from the nodes, the height balance of at
// most 1 kept everywhere, and keys in order. Gives the true height.
int32_t checkShape(const tsBtreeNode *node, const tsBtreeNode *parent, double (*keyOf)(const tsBtreeNode *),
                   int32_t *count)
{
    *count = 0;
    if (node == nullptr) return 0;
    EXPECT_EQ(node->parent, parent);
    int32_t leftCount = 0, rightCount = 0;
    const int32_t left = checkShape(node->left, node, keyOf, &leftCount);
    const int32_t right = checkShape(node->right, node, keyOf, &rightCount);
    EXPECT_LE(std::abs(left - right), 1);
    if (node->left != nullptr) {
        EXPECT_LE(keyOf(node->left), keyOf(node));
    }
    if (node->right != nullptr) {
        EXPECT_GE(keyOf(node->right), keyOf(node));
    }
    *count = leftCount + rightCount + 1;
    EXPECT_EQ(node->count, *count);
    EXPECT_EQ(node->level, std::max(left, right) + 1);
    return std::max(left, right) + 1;
}

void expectBalanced(tsBtree *tree, size_t expectedCount, double (*keyOf)(const tsBtreeNode *) = intKey)
{
    int32_t result = -1;
    EXPECT_EQ(tsBtree_verify(tree, &result), 0);
    EXPECT_EQ(result, 0);
    int32_t count = 0;
    const int32_t height = checkShape(rootOf(tree), nullptr, keyOf, &count);
    EXPECT_EQ(count, static_cast<int32_t>(expectedCount));
    // The height bound of a height-balanced tree: 1.4405 log2(n + 2) - 0.3277.
    EXPECT_LE(height, 1.4405 * std::log2(double(expectedCount) + 2.0) - 0.3277);
}

template <class T> T currentKey(tsBtree *tree)
{
    const void *key = nullptr;
    EXPECT_EQ(tsBtree_getNodeKey(tree, &key), 0);
    return *static_cast<const T *>(key);
}

intptr_t currentContents(tsBtree *tree)
{
    void *contents = nullptr;
    EXPECT_EQ(tsBtree_getNodeContents(tree, &contents), 0);
    return reinterpret_cast<intptr_t>(contents);
}

// The contents of every node in key order, from the plain walk.
std::vector<intptr_t> contentsInOrder(const tsBtree *tree)
{
    std::vector<intptr_t> out;
    auto collect = [](void *contents, void *user) -> int32_t {
        static_cast<std::vector<intptr_t> *>(user)->push_back(reinterpret_cast<intptr_t>(contents));
        return 0;
    };
    EXPECT_EQ(tsBtree_performPtrAction(tree, collect, &out, nullptr, nullptr, 0, 0), 0);
    return out;
}

// ---- Key kinds ----

// Keys added in the order given come back by rank in key order; the
// expected order is worked by hand in each row.
TEST(BtreeKeyKinds, StringsOrderByUnsignedBytesShorterPrefixFirst)
{
    Tree t;
    ASSERT_EQ(tsBtree_createForStringKey(&t.handle, nullptr), 0);
    const char *added[] = {"b", "\xC3\xA9t\xC3\xA9", "abc", "ab", "B", ""};
    for (const char *k : added)
        ASSERT_EQ(tsBtree_addNode(t, k, nullptr), 0);
    // "" < "B" (0x42) < "ab" < "abc" < "b" < 0xC3... (above 0x7F as unsigned).
    const char *expected[] = {"", "B", "ab", "abc", "b", "\xC3\xA9t\xC3\xA9"};
    for (int32_t i = 0; i < 6; ++i) {
        ASSERT_EQ(tsBtree_getNodeByIndex(t, i), 0);
        const void *key = nullptr;
        ASSERT_EQ(tsBtree_getNodeKey(t, &key), 0);
        EXPECT_STREQ(static_cast<const char *>(key), expected[i]);
        EXPECT_NE(key, static_cast<const void *>(expected[i]));  // the tree's own copy
    }
}

TEST(BtreeKeyKinds, WideStringsOrderByUnsignedUnits)
{
    Tree t;
    ASSERT_EQ(tsBtree_createForWStringKey(&t.handle, nullptr), 0);
    const std::u16string added[] = {u"\uFFFFa", u"za", u"z", u"\u00E9"};
    for (const auto &k : added)
        ASSERT_EQ(tsBtree_addNode(t, k.c_str(), nullptr), 0);
    const std::u16string expected[] = {u"z", u"za", u"\u00E9", u"\uFFFFa"};
    for (int32_t i = 0; i < 4; ++i) {
        ASSERT_EQ(tsBtree_getNodeByIndex(t, i), 0);
        const void *key = nullptr;
        ASSERT_EQ(tsBtree_getNodeKey(t, &key), 0);
        EXPECT_EQ(std::u16string(static_cast<const char16_t *>(key)), expected[i]);
    }
    ASSERT_EQ(tsBtree_getNodeByKey(t, u"za", 0), 0);
    EXPECT_EQ(currentKey<char16_t>(t), u'z');
}

TEST(BtreeKeyKinds, NumericKindsOrderByValue)
{
    Tree i32, i64, dbl;
    ASSERT_EQ(tsBtree_createForIntegerKey(&i32.handle, nullptr), 0);
    ASSERT_EQ(tsBtree_createForInteger64Key(&i64.handle, nullptr), 0);
    ASSERT_EQ(tsBtree_createForDoubleKey(&dbl.handle, nullptr), 0);
    const int32_t ints[] = {7, INT32_MIN, -3, INT32_MAX, 0};
    const int64_t longs[] = {int64_t{1} << 40, -(int64_t{1} << 33), 5, INT64_MIN};
    const double reals[] = {0.25, -1e300, 0.125, -0.0, 1e-300};
    for (int32_t k : ints)
        ASSERT_EQ(tsBtree_addNode(i32, &k, nullptr), 0);
    for (int64_t k : longs)
        ASSERT_EQ(tsBtree_addNode(i64, &k, nullptr), 0);
    for (double k : reals)
        ASSERT_EQ(tsBtree_addNode(dbl, &k, nullptr), 0);
    const int32_t intOrder[] = {INT32_MIN, -3, 0, 7, INT32_MAX};
    const int64_t longOrder[] = {INT64_MIN, -(int64_t{1} << 33), 5, int64_t{1} << 40};
    const double realOrder[] = {-1e300, -0.0, 1e-300, 0.125, 0.25};
    for (int32_t i = 0; i < 5; ++i) {
        ASSERT_EQ(tsBtree_getNodeByIndex(i32, i), 0);
        EXPECT_EQ(currentKey<int32_t>(i32), intOrder[i]);
        ASSERT_EQ(tsBtree_getNodeByIndex(dbl, i), 0);
        EXPECT_EQ(currentKey<double>(dbl), realOrder[i]);
    }
    for (int32_t i = 0; i < 4; ++i) {
        ASSERT_EQ(tsBtree_getNodeByIndex(i64, i), 0);
        EXPECT_EQ(currentKey<int64_t>(i64), longOrder[i]);
    }
}

TEST(BtreeKeyKinds, NotANumberComparesAsLess)
{
    Tree t;
    ASSERT_EQ(tsBtree_createForDoubleKey(&t.handle, nullptr), 0);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (double k : {2.0, 1.0, nan})
        ASSERT_EQ(tsBtree_addNode(t, &k, nullptr), 0);
    // Below every key on the way down, so it lands first, and never equal.
    ASSERT_EQ(tsBtree_getNodeByIndex(t, 0), 0);
    EXPECT_TRUE(std::isnan(currentKey<double>(t)));
    EXPECT_EQ(tsBtree_getNodeByKey(t, &nan, 0), -4);
}

// A generic tree of station names "km+m" ordered by their metres; copyKey
// keeps a pointer into the caller's pool and every callback is counted.
struct Callbacks {
    static inline int copies = 0, keyFrees = 0, contentFrees = 0;
    static void reset() { copies = keyFrees = contentFrees = 0; }
    static int32_t metres(const char *s) { return std::atoi(s) * 1000 + std::atoi(std::strchr(s, '+') + 1); }
    static int32_t compare(const void *a, const void *b)
    {
        return metres(static_cast<const char *>(a)) - metres(static_cast<const char *>(b));
    }
    static int32_t copy(void **field, const void *key)
    {
        ++copies;
        *field = const_cast<void *>(key);
        return 0;
    }
    static int32_t freeKey(void *) { return ++keyFrees, 0; }
    static int32_t freeContents(void *) { return ++contentFrees, 0; }
};

TEST(BtreeKeyKinds, GenericKeysFollowTheComparator)
{
    Callbacks::reset();
    Tree t;
    ASSERT_EQ(tsBtree_createForGenericKey(&t.handle, Callbacks::compare, Callbacks::copy, Callbacks::freeKey,
                                          Callbacks::freeContents),
              0);
    const char *stations[] = {"2+100", "0+950", "1+005", "0+080"};
    for (intptr_t i = 0; i < 4; ++i)
        ASSERT_EQ(tsBtree_addNode(t, stations[i], tag(i + 1)), 0);
    EXPECT_EQ(Callbacks::copies, 4);
    EXPECT_EQ(contentsInOrder(t), (std::vector<intptr_t>{4, 2, 3, 1}));  // 80, 950, 1005, 2100 m
    ASSERT_EQ(tsBtree_getNodeByKey(t, "1+000", 1), 0);
    const void *key = nullptr;
    ASSERT_EQ(tsBtree_getNodeKey(t, &key), 0);
    EXPECT_EQ(key, static_cast<const void *>(stations[2]));  // the pointer copyKey stored
}

// ---- Balance ----

TEST(BtreeBalance, AscendingKeysBuildAPerfectTree)
{
    // 2^10 - 1 ascending keys fill a height-balanced tree completely: every
    // level full, height 10, the root the middle key 512.
    Tree t;
    ASSERT_EQ(tsBtree_createForIntegerKey(&t.handle, nullptr), 0);
    for (int32_t k = 1; k <= 1023; ++k)
        ASSERT_EQ(tsBtree_addNode(t, &k, nullptr), 0);
    expectBalanced(t, 1023);
    const tsBtreeNode *root = rootOf(t);
    EXPECT_EQ(root->level, 10);
    EXPECT_EQ(root->key.int32, 512);
}

TEST(BtreeBalance, RandomInsertionsAndRemovalsKeepBalanceAndContents)
{
    Tree t;
    ASSERT_EQ(tsBtree_createForIntegerKey(&t.handle, nullptr), 0);
    std::mt19937 rng(20240611);
    std::uniform_int_distribution<int32_t> draw(0, 499);  // many duplicates
    std::multiset<int32_t> reference;
    for (int32_t i = 0; i < 3000; ++i) {
        const int32_t k = draw(rng);
        if (i % 3 == 2 && reference.count(k) > 0) {
            ASSERT_EQ(tsBtree_getNodeByKey(t, &k, 0), 0);
            ASSERT_EQ(tsBtree_deleteNode(t), 0);
            reference.erase(reference.find(k));
        } else {
            ASSERT_EQ(tsBtree_addNode(t, &k, nullptr), 0);
            reference.insert(k);
        }
        if (i % 250 == 0) expectBalanced(t, reference.size());
    }
    expectBalanced(t, reference.size());
    // Empty it from the front: each removal moves the cursor to the next node.
    ASSERT_EQ(tsBtree_getNodeByKey(t, nullptr, -3), 0);
    for (int32_t expected : reference) {
        ASSERT_EQ(currentKey<int32_t>(t), expected);
        ASSERT_EQ(tsBtree_deleteNode(t), 0);
    }
    EXPECT_EQ(tsBtree_getNodeNumber(t), 0);
}

TEST(BtreeBalance, VerifyFindsTamperedNodes)
{
    Tree t;
    ASSERT_EQ(tsBtree_createForIntegerKey(&t.handle, nullptr), 0);
    for (int32_t k : {4, 2, 6, 1, 3, 5, 7})
        ASSERT_EQ(tsBtree_addNode(t, &k, nullptr), 0);
    tsBtreeNode *root = rootOf(t);
    int32_t result = -1;
    struct Row {
        int32_t *field;
        int32_t bad;
    } rows[] = {{&root->count, 6},
                {&root->left->level, 3},
                {&root->right->key.int32, 3},
                {&root->left->left->count, 0}};
    for (const Row &row : rows) {
        const int32_t kept = *row.field;
        *row.field = row.bad;
        EXPECT_EQ(tsBtree_verify(t, &result), kFail);
        EXPECT_EQ(result, kFail);
        *row.field = kept;
    }
    tsBtreeNode *parent = root->right->parent;
    root->right->parent = root->left;
    EXPECT_EQ(tsBtree_verify(t, &result), kFail);
    root->right->parent = parent;
    EXPECT_EQ(tsBtree_verify(t, &result), 0);
}

TEST(BtreeBalance, VerifyToleratesChildLevelsTwoApart)
{
    // 2, 1, 3, 4 give root 2 over leaf 1 and 3 -> 4. Cutting leaf 1 off
    // (count fixed up) leaves child levels 0 and 2, the limit that verify
    // accepts although insertion and removal never leave it.
    Tree t;
    ASSERT_EQ(tsBtree_createForIntegerKey(&t.handle, nullptr), 0);
    for (int32_t k : {2, 1, 3, 4})
        ASSERT_EQ(tsBtree_addNode(t, &k, nullptr), 0);
    tsBtreeNode *root = rootOf(t);
    tsBtreeNode *leaf = root->left;
    ASSERT_EQ(root->right->level, 2);
    root->left = nullptr;
    root->count = 3;
    int32_t result = -1;
    EXPECT_EQ(tsBtree_verify(t, &result), 0);
    root->left = leaf;
    root->count = 4;
    EXPECT_EQ(tsBtree_verify(t, &result), 0);
}

// ---- Ranks and searches against a sorted reference ----

TEST(BtreeRanks, RanksAndModesMatchASortedVector)
{
    Tree t;
    ASSERT_EQ(tsBtree_createForDoubleKey(&t.handle, nullptr), 0);
    std::mt19937 rng(7);
    std::uniform_int_distribution<int32_t> draw(0, 399);
    std::vector<double> sorted;
    for (int32_t i = 0; i < 1000; ++i) {
        const double k = draw(rng) * 0.5;  // halves, with duplicates
        ASSERT_EQ(tsBtree_addNode(t, &k, nullptr), 0);
        sorted.push_back(k);
    }
    std::sort(sorted.begin(), sorted.end());
    ASSERT_EQ(tsBtree_getNodeNumber(t), 1000);
    for (int32_t i = 0; i < 1000; ++i) {
        ASSERT_EQ(tsBtree_getNodeByIndex(t, i), 0);
        ASSERT_EQ(currentKey<double>(t), sorted[size_t(i)]);
        int32_t rank = -1;
        ASSERT_EQ(tsBtree_getNodeIndex(t, &rank), 0);
        ASSERT_EQ(rank, i);
    }
    // Probes at keys, between keys and beyond both ends. The expected rank
    // of each mode comes from the vector's bounds: first >= and first >.
    for (double probe = -1.25; probe <= 201.0; probe += 0.25) {
        const auto lo = int32_t(std::lower_bound(sorted.begin(), sorted.end(), probe) - sorted.begin());
        const auto hi = int32_t(std::upper_bound(sorted.begin(), sorted.end(), probe) - sorted.begin());
        const bool present = lo < hi;
        struct Row {
            int32_t mode, rankFrom, rankTo;  // acceptable ranks [from, to]; -1: no node
        } rows[] = {
            {-2, lo - 1, lo - 1},                                    // last of the keys below
            {-1, present ? lo : lo - 1, present ? hi - 1 : lo - 1},  // any duplicate when present
            {0, present ? lo : -1, present ? hi - 1 : -1},
            {1, present ? lo : hi, present ? hi - 1 : hi},
            {2, hi, hi},  // first of the keys above
        };
        for (const Row &row : rows) {
            const int32_t code = tsBtree_getNodeByKey(t, &probe, row.mode);
            const int32_t from = row.rankFrom >= 1000 ? -1 : row.rankFrom;
            if (from < 0) {
                ASSERT_EQ(code, -4) << probe << " mode " << row.mode;
                continue;
            }
            ASSERT_EQ(code, 0) << probe << " mode " << row.mode;
            int32_t rank = -1;
            ASSERT_EQ(tsBtree_getNodeIndex(t, &rank), 0);
            EXPECT_GE(rank, from) << probe << " mode " << row.mode;
            EXPECT_LE(rank, row.rankTo) << probe << " mode " << row.mode;
        }
    }
}

// ---- Closest key ----

TEST(BtreeClosest, AtBetweenAndBeyondTheKeys)
{
    Tree d;
    ASSERT_EQ(tsBtree_createForDoubleKey(&d.handle, nullptr), 0);
    for (double k : {1.0, 3.0, 10.0})
        ASSERT_EQ(tsBtree_addNode(d, &k, nullptr), 0);
    struct Row {
        double key, expected;
    } rows[] = {
        {2.0, 3.0},    // 1 away either side: the tie goes up
        {1.9, 1.0},    // 0.9 against 1.1
        {3.0, 3.0},    // at a key
        {6.4, 3.0},    // 3.4 against 3.6
        {6.5, 10.0},   // 3.5 each: up
        {-5.0, 1.0},   // below the first key
        {99.0, 10.0},  // above the last key
    };
    for (const Row &row : rows) {
        ASSERT_EQ(tsBtree_getClosestNodeByKey(d, &row.key), 0) << row.key;
        EXPECT_EQ(currentKey<double>(d), row.expected) << row.key;
    }

    Tree i;
    ASSERT_EQ(tsBtree_createForIntegerKey(&i.handle, nullptr), 0);
    for (int32_t k : {INT32_MIN, -10, 10, INT32_MAX})
        ASSERT_EQ(tsBtree_addNode(i, &k, nullptr), 0);
    struct IntRow {
        int32_t key, expected;
    } intRows[] = {{0, 10}, {-1, -10}, {1, 10}, {-11, -10}, {INT32_MAX - 1, INT32_MAX}};
    for (const IntRow &row : intRows) {
        ASSERT_EQ(tsBtree_getClosestNodeByKey(i, &row.key), 0);
        EXPECT_EQ(currentKey<int32_t>(i), row.expected) << row.key;
    }
    // Near the extremes: from 2^30 + 10 down to 10 is 2^30 and up to
    // 2^31 - 1 is 2^30 - 11, so up; from -2^30 - 10 down to -2^31 is
    // 2^30 - 10 and up to -10 is 2^30, so down.
    for (const IntRow &row : {IntRow{(1 << 30) + 10, INT32_MAX}, IntRow{-(1 << 30) - 10, INT32_MIN}}) {
        ASSERT_EQ(tsBtree_getClosestNodeByKey(i, &row.key), 0);
        EXPECT_EQ(currentKey<int32_t>(i), row.expected) << row.key;
    }
    // Distances are formed in 32 bits: from 0 down to -2^31 the distance
    // 2^31 wraps to -2^31, which is below the 2^31 - 1 up to 2^31 - 1, so
    // the lower key wins although the upper one is nearer.
    Tree ends;
    ASSERT_EQ(tsBtree_createForIntegerKey(&ends.handle, nullptr), 0);
    for (int32_t k : {INT32_MIN, INT32_MAX})
        ASSERT_EQ(tsBtree_addNode(ends, &k, nullptr), 0);
    const int32_t zero = 0;
    ASSERT_EQ(tsBtree_getClosestNodeByKey(ends, &zero), 0);
    EXPECT_EQ(currentKey<int32_t>(ends), INT32_MIN);

    Tree l;
    ASSERT_EQ(tsBtree_createForInteger64Key(&l.handle, nullptr), 0);
    const int64_t big = int64_t{1} << 40;
    for (int64_t k : {big, big + 4})
        ASSERT_EQ(tsBtree_addNode(l, &k, nullptr), 0);
    const int64_t mid = big + 2, nearLow = big + 1;
    ASSERT_EQ(tsBtree_getClosestNodeByKey(l, &mid), 0);
    EXPECT_EQ(currentKey<int64_t>(l), big + 4);
    ASSERT_EQ(tsBtree_getClosestNodeByKey(l, &nearLow), 0);
    EXPECT_EQ(currentKey<int64_t>(l), big);
}

TEST(BtreeClosest, FailuresLeaveNoCursor)
{
    Tree d, s;
    ASSERT_EQ(tsBtree_createForDoubleKey(&d.handle, nullptr), 0);
    ASSERT_EQ(tsBtree_createForStringKey(&s.handle, nullptr), 0);
    const double k = 1.0;
    EXPECT_EQ(tsBtree_getClosestNodeByKey(d, &k), -4);  // empty
    ASSERT_EQ(tsBtree_addNode(d, &k, nullptr), 0);
    EXPECT_EQ(tsBtree_getClosestNodeByKey(d, nullptr), -4);
    EXPECT_EQ(tsBtree_getNextNode(d), -1);  // the cursor went null
    EXPECT_EQ(tsBtree_getClosestNodeByKey(s, "a"), kFail);
    EXPECT_EQ(tsBtree_getClosestNodeByKey(nullptr, &k), kFail);
}

// ---- Duplicates ----

TEST(BtreeDuplicates, EqualKeysReadBackLastAddedFirst)
{
    Tree t;
    ASSERT_EQ(tsBtree_createForIntegerKey(&t.handle, nullptr), 0);
    const int32_t five = 5, one = 1, nine = 9;
    ASSERT_EQ(tsBtree_addNode(t, &one, tag(100)), 0);
    ASSERT_EQ(tsBtree_addNode(t, &nine, tag(900)), 0);
    for (intptr_t c : {'a', 'b', 'c'}) {
        ASSERT_EQ(tsBtree_addNode(t, &five, tag(c)), 0);
        EXPECT_EQ(currentContents(t), c);  // the new node is current
    }
    EXPECT_EQ(contentsInOrder(t), (std::vector<intptr_t>{100, 'c', 'b', 'a', 900}));
}

TEST(BtreeDuplicates, UniqueAddReplacesContentsAndKeepsTheCursor)
{
    Callbacks::reset();
    Tree t;
    ASSERT_EQ(tsBtree_createForGenericKey(&t.handle, Callbacks::compare, Callbacks::copy, Callbacks::freeKey,
                                          Callbacks::freeContents),
              0);
    ASSERT_EQ(tsBtree_addNodeUnique(t, "0+100", tag(1)), 0);
    ASSERT_EQ(tsBtree_addNodeUnique(t, "0+200", tag(2)), 0);
    ASSERT_EQ(tsBtree_getNodeByIndex(t, 0), 0);
    // Same contents: nothing released. Other contents: the old go to freeContents.
    ASSERT_EQ(tsBtree_addNodeUnique(t, "0+200", tag(2)), 0);
    EXPECT_EQ(Callbacks::contentFrees, 0);
    ASSERT_EQ(tsBtree_addNodeUnique(t, "0+200", tag(3)), 0);
    EXPECT_EQ(Callbacks::contentFrees, 1);
    EXPECT_EQ(currentContents(t), 1);  // the cursor did not move
    EXPECT_EQ(tsBtree_getNodeNumber(t), 2);
    EXPECT_EQ(contentsInOrder(t), (std::vector<intptr_t>{1, 3}));
    // The key copies made for the dropped nodes are given up, not released.
    EXPECT_EQ(Callbacks::copies, 4);
    EXPECT_EQ(Callbacks::keyFrees, 0);
}

TEST(BtreeDuplicates, ChangingAKeyMovesTheNodeAndKeepsItCurrent)
{
    Callbacks::reset();
    Tree t;
    ASSERT_EQ(tsBtree_createForGenericKey(&t.handle, Callbacks::compare, Callbacks::copy, Callbacks::freeKey,
                                          nullptr),
              0);
    const char *stations[] = {"0+100", "0+200", "0+300", "0+400"};
    for (intptr_t i = 0; i < 4; ++i)
        ASSERT_EQ(tsBtree_addNode(t, stations[i], tag(i + 1)), 0);
    ASSERT_EQ(tsBtree_getNodeByKey(t, "0+100", 0), 0);
    ASSERT_EQ(tsBtree_changeNodeKey(t, "0+350"), 0);
    EXPECT_EQ(currentContents(t), 1);
    int32_t rank = -1;
    ASSERT_EQ(tsBtree_getNodeIndex(t, &rank), 0);
    EXPECT_EQ(rank, 2);  // 200, 300, 350, 400
    EXPECT_EQ(contentsInOrder(t), (std::vector<intptr_t>{2, 3, 1, 4}));
    EXPECT_EQ(Callbacks::keyFrees, 0);  // the old key is not released
    int32_t result = -1;
    EXPECT_EQ(tsBtree_verify(t, &result), 0);
}

// ---- Walks ----

struct Visits {
    std::vector<int32_t> keys;
    size_t stopAfter = 0;  // 0: never stop
};

int32_t visitKey(const void *key, void *, void *user)
{
    auto *v = static_cast<Visits *>(user);
    v->keys.push_back(*static_cast<const int32_t *>(key));
    return v->keys.size() == v->stopAfter ? -77 : 0;
}

Tree sevenKeys()  // 1..7 added in order: a perfect tree with 4 at the root
{
    Tree t;
    EXPECT_EQ(tsBtree_createForIntegerKey(&t.handle, nullptr), 0);
    for (int32_t k = 1; k <= 7; ++k)
        EXPECT_EQ(tsBtree_addNode(t, &k, tag(k)), 0);
    return t;
}

TEST(BtreeWalks, RangesBoundsAndTheStopRule)
{
    Tree t = sevenKeys();
    const int32_t three = 3, five = 5, extra = 5, big = 50, zero = 0;
    ASSERT_EQ(tsBtree_addNode(t, &extra, tag(55)), 0);  // a duplicate of the end bound
    struct Row {
        const int32_t *start, *end;
        int32_t startMode, endMode;
        size_t stopAfter;
        int32_t result;
        std::vector<int32_t> keys;
    } rows[] = {
        {nullptr, nullptr, 0, 0, 0, 0, {1, 2, 3, 4, 5, 5, 6, 7}},
        {&three, &five, 0, 0, 0, 0, {3, 4, 5, 5}},              // both duplicates of 5 inside
        {&three, &five, 2, -2, 0, 0, {4}},                      // strictly between
        {&three, nullptr, 0, 0, 3, -77, {3, 4, 5}},             // the third answer stops it
        {&big, nullptr, 1, 0, 0, 0, {1, 2, 3, 4, 5, 5, 6, 7}},  // no node: open
        {nullptr, &zero, 0, -1, 0, 0, {1, 2, 3, 4, 5, 5, 6, 7}},
        {&five, &three, 0, 0, 0, kFail, {}},    // start above end
        {&three, nullptr, 4, 0, 0, kFail, {}},  // unknown mode
    };
    for (const Row &row : rows) {
        Visits v;
        v.stopAfter = row.stopAfter;
        EXPECT_EQ(tsBtree_performAction(t, visitKey, &v, row.start, row.end, row.startMode, row.endMode),
                  row.result);
        EXPECT_EQ(v.keys, row.keys);
    }
    // The walks leave the cursor alone.
    ASSERT_EQ(tsBtree_getNodeByIndex(t, 1), 0);
    Visits v;
    ASSERT_EQ(tsBtree_performAction(t, visitKey, &v, nullptr, nullptr, 0, 0), 0);
    EXPECT_EQ(currentKey<int32_t>(t), 2);
    EXPECT_EQ(tsBtree_performAction(t, nullptr, &v, nullptr, nullptr, 0, 0), kFail);
    EXPECT_EQ(tsBtree_performPtrAction(nullptr, nullptr, &v, nullptr, nullptr, 0, 0), kFail);
}

int32_t steer(int32_t *goLeft, int32_t *goRight, const void *key, tsBtreeNode *node, void *user)
{
    static_cast<Visits *>(user)->keys.push_back(*static_cast<const int32_t *>(key));
    EXPECT_EQ(static_cast<const void *>(&node->key), key);
    *goLeft = 1;
    *goRight = 1;
    return 0;
}

TEST(BtreeWalks, ConditionalWalkStopsAtNodesOutOfRange)
{
    Tree t = sevenKeys();  // 4; 2, 6; 1, 3, 5, 7
    const int32_t one = 1, four = 4, five = 5, seven = 7;
    Visits all, low, high;
    EXPECT_EQ(tsBtree_performActionWithCondition(t, steer, &all, nullptr, nullptr, 0, 0), 0);
    EXPECT_EQ(all.keys, (std::vector<int32_t>{4, 2, 1, 3, 6, 5, 7}));  // top-down, left first
    // The root is in [1, 4]; its right child 6 is above the range and ends there.
    EXPECT_EQ(tsBtree_performActionWithCondition(t, steer, &low, &one, &four, 0, 0), 0);
    EXPECT_EQ(low.keys, (std::vector<int32_t>{4, 2, 1, 3}));
    // The root is below [5, 7]: the walk ends at once although 5, 6, 7 are in range.
    EXPECT_EQ(tsBtree_performActionWithCondition(t, steer, &high, &five, &seven, 0, 0), 0);
    EXPECT_TRUE(high.keys.empty());
    // Without flags set, only the root is seen.
    Visits rootOnly;
    auto none = [](int32_t *, int32_t *, const void *key, tsBtreeNode *, void *user) -> int32_t {
        static_cast<Visits *>(user)->keys.push_back(*static_cast<const int32_t *>(key));
        return 0;
    };
    EXPECT_EQ(tsBtree_performActionWithCondition(t, none, &rootOnly, nullptr, nullptr, 0, 0), 0);
    EXPECT_EQ(rootOnly.keys, (std::vector<int32_t>{4}));
}

// ---- Result codes ----

TEST(BtreeCodes, CursorlessAndBadArguments)
{
    Tree t;
    ASSERT_EQ(tsBtree_createForIntegerKey(&t.handle, nullptr), 0);
    int32_t k = 1, index = 0;
    void *contents = nullptr;
    const void *key = nullptr;
    struct Row {
        const char *what;
        int32_t code, expected;
    } rows[] = {
        {"number of an empty tree", tsBtree_getNodeNumber(t), 0},
        {"first of an empty tree", tsBtree_getNodeByKey(t, nullptr, -3), -4},
        {"last of an empty tree", tsBtree_getNodeByKey(t, nullptr, 3), -4},
        {"exact in an empty tree", tsBtree_getNodeByKey(t, &k, 0), -4},
        {"mode 4", tsBtree_getNodeByKey(t, &k, 4), kFail},
        {"mode -4", tsBtree_getNodeByKey(t, &k, -4), kFail},
        {"null key, mode 0", tsBtree_getNodeByKey(t, nullptr, 0), kFail},
        {"index 0 of an empty tree", tsBtree_getNodeByIndex(t, 0), -2},
        {"next without cursor", tsBtree_getNextNode(t), -1},
        {"index without cursor", tsBtree_getNodeIndex(t, &index), -1},
        {"contents without cursor", tsBtree_getNodeContents(t, &contents), -1},
        {"set contents without cursor", tsBtree_setNodeContents(t, tag(1)), -1},
        {"key without cursor", tsBtree_getNodeKey(t, &key), -1},
        {"delete without cursor", tsBtree_deleteNode(t), -1},
        {"change key without cursor", tsBtree_changeNodeKey(t, &k), -1},
        {"change to null key", tsBtree_changeNodeKey(t, nullptr), kFail},
        {"add null key", tsBtree_addNode(t, nullptr, nullptr), kFail},
        {"add to null tree", tsBtree_addNode(nullptr, &k, nullptr), kFail},
        {"number of null tree", tsBtree_getNodeNumber(nullptr), kFail},
        {"index of null tree", tsBtree_getNodeByIndex(nullptr, 0), kFail},
        {"next of null tree", tsBtree_getNextNode(nullptr), kFail},
        {"delete in null tree", tsBtree_deleteNode(nullptr), kFail},
        {"null index", tsBtree_getNodeIndex(t, nullptr), kFail},
        {"null contents out", tsBtree_getNodeContents(t, nullptr), kFail},
        {"null key out", tsBtree_getNodeKey(t, nullptr), kFail},
        {"destroy null", tsBtree_destroy(nullptr), kFail},
        {"create into a full handle", tsBtree_createForDoubleKey(&t.handle, nullptr), kFail},
        {"create with null handle", tsBtree_createForIntegerKey(nullptr, nullptr), kFail},
        {"generic without compare",
         [] {
             tsBtree *h = nullptr;
             return tsBtree_createForGenericKey(&h, nullptr, Callbacks::copy, nullptr, nullptr);
         }(),
         kFail},
        {"generic without copy",
         [] {
             tsBtree *h = nullptr;
             return tsBtree_createForGenericKey(&h, Callbacks::compare, nullptr, nullptr, nullptr);
         }(),
         kFail},
        {"destroy a null handle",
         [] {
             tsBtree *h = nullptr;
             return tsBtree_destroy(&h);
         }(),
         kFail},
    };
    for (const Row &row : rows)
        EXPECT_EQ(row.code, row.expected) << row.what;
}

TEST(BtreeCodes, EndsOfTheCursor)
{
    Tree t = sevenKeys();
    ASSERT_EQ(tsBtree_getNodeByIndex(t, 7), -2);
    ASSERT_EQ(tsBtree_getNodeByIndex(t, -1), -2);
    EXPECT_EQ(tsBtree_getNextNode(t), -1);
    ASSERT_EQ(tsBtree_getNodeByIndex(t, 6), 0);
    EXPECT_EQ(tsBtree_getNextNode(t), -3);
    EXPECT_EQ(tsBtree_getNextNode(t), -1);
    // Null contents are refused and the stored ones stay.
    ASSERT_EQ(tsBtree_getNodeByKey(t, nullptr, 3), 0);
    EXPECT_EQ(tsBtree_setNodeContents(t, nullptr), kFail);
    EXPECT_EQ(currentContents(t), 7);
    // Deleting the last node leaves no cursor.
    EXPECT_EQ(tsBtree_deleteNode(t), 0);
    EXPECT_EQ(tsBtree_getNextNode(t), -1);
    EXPECT_EQ(tsBtree_getNodeNumber(t), 6);
    // A failed search leaves no cursor either.
    ASSERT_EQ(tsBtree_getNodeByIndex(t, 0), 0);
    const int32_t missing = 40;
    EXPECT_EQ(tsBtree_getNodeByKey(t, &missing, 0), -4);
    EXPECT_EQ(tsBtree_getNextNode(t), -1);
}

// ---- Release ----

TEST(BtreeRelease, DeleteAndDestroyReleaseKeysAndContents)
{
    Callbacks::reset();
    Tree t;
    ASSERT_EQ(tsBtree_createForGenericKey(&t.handle, Callbacks::compare, Callbacks::copy, Callbacks::freeKey,
                                          Callbacks::freeContents),
              0);
    const char *stations[] = {"0+010", "0+020", "0+030", "0+040", "0+050"};
    for (intptr_t i = 0; i < 5; ++i)
        ASSERT_EQ(tsBtree_addNode(t, stations[i], tag(i + 1)), 0);
    ASSERT_EQ(tsBtree_addNode(t, "0+060", nullptr), 0);  // no contents to release
    ASSERT_EQ(tsBtree_getNodeByKey(t, "0+030", 0), 0);
    ASSERT_EQ(tsBtree_deleteNode(t), 0);
    EXPECT_EQ(currentContents(t), 4);  // moved to the next node first
    EXPECT_EQ(Callbacks::keyFrees, 1);
    EXPECT_EQ(Callbacks::contentFrees, 1);
    // Replaced contents go to freeContents.
    ASSERT_EQ(tsBtree_setNodeContents(t, tag(40)), 0);
    EXPECT_EQ(Callbacks::contentFrees, 2);
    ASSERT_EQ(tsBtree_destroy(&t.handle), 0);
    EXPECT_EQ(t.handle, nullptr);
    EXPECT_EQ(Callbacks::keyFrees, 6);      // every key once
    EXPECT_EQ(Callbacks::contentFrees, 6);  // 2 so far and 4 non-null contents
}

TEST(BtreeRelease, StringTreesOwnTheirKeys)
{
    // Under the address sanitizer a missing or double release shows here.
    Tree s, w;
    ASSERT_EQ(tsBtree_createForStringKey(&s.handle, nullptr), 0);
    ASSERT_EQ(tsBtree_createForWStringKey(&w.handle, nullptr), 0);
    std::string key = "P100";
    ASSERT_EQ(tsBtree_addNode(s, key.c_str(), nullptr), 0);
    key[1] = '2';  // the caller's buffer is not the tree's
    ASSERT_EQ(tsBtree_getNodeByKey(s, "P100", 0), 0);
    ASSERT_EQ(tsBtree_deleteNode(s), 0);
    ASSERT_EQ(tsBtree_addNode(w, u"P1", nullptr), 0);
    ASSERT_EQ(tsBtree_addNode(w, u"P2", nullptr), 0);
}

// ---- Printing ----

TEST(BtreePrint, RootRecordIndentedByLevel)
{
    Tree i, d, l, s, w, empty;
    ASSERT_EQ(tsBtree_createForIntegerKey(&i.handle, nullptr), 0);
    ASSERT_EQ(tsBtree_createForDoubleKey(&d.handle, nullptr), 0);
    ASSERT_EQ(tsBtree_createForInteger64Key(&l.handle, nullptr), 0);
    ASSERT_EQ(tsBtree_createForStringKey(&s.handle, nullptr), 0);
    ASSERT_EQ(tsBtree_createForWStringKey(&w.handle, nullptr), 0);
    ASSERT_EQ(tsBtree_createForIntegerKey(&empty.handle, nullptr), 0);
    for (int32_t k : {1, 2, 3, 4})
        ASSERT_EQ(tsBtree_addNode(i, &k, nullptr), 0);  // root 2: left 1, right 3 over 4
    const double x = 2.5;
    const int64_t big = int64_t{1} << 40;
    ASSERT_EQ(tsBtree_addNode(d, &x, nullptr), 0);
    ASSERT_EQ(tsBtree_addNode(l, &big, nullptr), 0);
    ASSERT_EQ(tsBtree_addNode(s, "ab", nullptr), 0);
    ASSERT_EQ(tsBtree_addNode(w, u"\u00E9", nullptr), 0);

    testing::internal::CaptureStdout();
    EXPECT_EQ(tsBtree_print(i), 0);
    EXPECT_EQ(tsBtree_print(d), 0);
    EXPECT_EQ(tsBtree_print(l), 0);
    EXPECT_EQ(tsBtree_print(s), 0);
    EXPECT_EQ(tsBtree_print(w), 0);
    EXPECT_EQ(tsBtree_print(empty), 0);
    const std::string out = testing::internal::GetCapturedStdout();
    const std::string four = "    ", twelve = "            ";
    const std::string bar = "NODE========================================\n";
    const std::string leaf =
        four + bar + four + "Count: Left (0), Right (0)\n" + four + "Level: This (1), Left (0), Right (0)\n";
    EXPECT_EQ(out, twelve + bar + twelve + "Count: Left (1), Right (2)\n" + twelve +
                       "Level: This (3), Left (1), Right (2)\n" + twelve + "Key: 2\n" + leaf + four +
                       "Key: 2.500000\n" + leaf + four + "Key: 1099511627776\n" + leaf + four + "Key: ab\n" +
                       leaf + four + "Key: \xC3\xA9\n");
}

// ---- A scenario ----

TEST(BtreeScenario, CrossSectionsIndexedByStation)
{
    // Cross-sections every 20 m along 1 km of road, plus two at the curve's
    // ends; look up the section governing a station and walk a stretch.
    Tree t;
    ASSERT_EQ(tsBtree_createForDoubleKey(&t.handle, nullptr), 0);
    for (int32_t n = 0; n <= 50; ++n) {
        const double station = 20.0 * n;
        ASSERT_EQ(tsBtree_addNode(t, &station, tag(n)), 0);
    }
    const double tc = 437.5, ct = 612.25;
    ASSERT_EQ(tsBtree_addNodeUnique(t, &tc, tag(1000)), 0);
    ASSERT_EQ(tsBtree_addNodeUnique(t, &ct, tag(1001)), 0);
    expectBalanced(t, 53, realKey);

    const double at = 439.0;
    ASSERT_EQ(tsBtree_getNodeByKey(t, &at, -2), 0);  // last section before 439
    EXPECT_EQ(currentContents(t), 1000);
    ASSERT_EQ(tsBtree_getClosestNodeByKey(t, &ct), 0);
    EXPECT_EQ(currentContents(t), 1001);
    int32_t rank = -1;
    ASSERT_EQ(tsBtree_getNodeIndex(t, &rank), 0);
    EXPECT_EQ(rank, 32);  // the 31 sections from 0 to 600 and the one at 437.5 come first

    // Sections from 400 to 500 inclusive: 400, 420, 437.5, 440, 460, 480, 500.
    const double from = 400.0, to = 500.0;
    std::vector<intptr_t> seen;
    auto collect = [](void *contents, void *user) -> int32_t {
        static_cast<std::vector<intptr_t> *>(user)->push_back(reinterpret_cast<intptr_t>(contents));
        return 0;
    };
    ASSERT_EQ(tsBtree_performPtrAction(t, collect, &seen, &from, &to, 1, -1), 0);
    EXPECT_EQ(seen, (std::vector<intptr_t>{20, 21, 1000, 22, 23, 24, 25}));
}

}  // namespace
