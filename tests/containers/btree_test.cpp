// The balanced tree: key kinds, balance, ranks and modes, closest keys, walks, codes and callbacks.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tessar/btree.h>
#include <tessar/frame.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;
using Tags = std::vector<intptr_t>;
using Ints = std::vector<int32_t>;
using Create = int32_t (*)(tsBtree **, tsBtreeFreeContentsFunc);

// A tree held as a caller holds it, destroyed at the end of the scope.
struct Tree {
    tsBtree *handle = nullptr;
    Tree() = default;
    explicit Tree(Create create) { EXPECT_EQ(create(&handle, nullptr), 0); }
    Tree(Tree &&other) noexcept : handle(std::exchange(other.handle, nullptr)) {}
    ~Tree() { tsBtree_destroy(&handle); }
    operator tsBtree *() const { return handle; }
};

const auto tag = [](intptr_t value) { return reinterpret_cast<void *>(value); };

// Adds the keys in order, with the contents 1, 2, 3 ... (their place in the list).
template <class T> void addAll(tsBtree *tree, std::initializer_list<T> keys)
{
    intptr_t n = 0;
    for (const T &key : keys) {
        const void *k = &key;
        if constexpr (std::is_pointer_v<T>) k = key;  // strings are passed as they are
        ASSERT_EQ(tsBtree_addNode(tree, k, tag(++n)), 0);
    }
}

// The keys read back by rank, from index 0 until the index is refused.
template <class T> std::vector<T> keysByRank(tsBtree *tree)
{
    std::vector<T> out;
    const void *key = nullptr;
    for (int32_t i = 0; tsBtree_getNodeByIndex(tree, i) == 0 && tsBtree_getNodeKey(tree, &key) == 0; ++i) {
        if constexpr (std::is_arithmetic_v<T>)
            out.push_back(*static_cast<const T *>(key));
        else
            out.emplace_back(static_cast<const typename T::value_type *>(key));
    }
    return out;
}

template <class T> T currentKey(tsBtree *tree)
{
    const void *key = nullptr;
    EXPECT_EQ(tsBtree_getNodeKey(tree, &key), 0);
    return key != nullptr ? *static_cast<const T *>(key) : T{};
}

intptr_t currentContents(tsBtree *tree)
{
    void *contents = nullptr;
    EXPECT_EQ(tsBtree_getNodeContents(tree, &contents), 0);
    return reinterpret_cast<intptr_t>(contents);
}

const tsBtreeContentsAction collect = [](void *contents, void *user) -> int32_t {
    return static_cast<Tags *>(user)->push_back(reinterpret_cast<intptr_t>(contents)), 0;
};

// The contents of every node in key order, from the plain walk.
Tags contentsInOrder(const tsBtree *tree)
{
    Tags out;
    EXPECT_EQ(tsBtree_performPtrAction(tree, collect, &out, nullptr, nullptr, 0, 0), 0);
    return out;
}

// The root node, as the first node that the conditional walk reaches.
tsBtreeNode *rootOf(tsBtree *tree)
{
    tsBtreeNode *root = nullptr;
    auto grab = [](int32_t *, int32_t *, const void *, tsBtreeNode *node, void *user) -> int32_t {
        return *static_cast<tsBtreeNode **>(user) = node, 1;
    };
    tsBtree_performActionWithCondition(tree, grab, &root, nullptr, nullptr, 0, 0);
    return root;
}

// Independent check of a tree: links, counts, levels, balance of at most 1, key order; gives the height.
int32_t checkShape(const tsBtreeNode *node, const tsBtreeNode *parent, bool real, int32_t *count)
{
    *count = 0;
    if (node == nullptr) return 0;
    const auto key = [real](const tsBtreeNode *n) { return real ? n->key.real : n->key.int32; };
    int32_t leftCount = 0, rightCount = 0;
    const int32_t left = checkShape(node->left, node, real, &leftCount);
    const int32_t right = checkShape(node->right, node, real, &rightCount);
    EXPECT_EQ(node->parent, parent);
    EXPECT_LE(std::abs(left - right), 1);
    EXPECT_TRUE(node->left == nullptr || key(node->left) <= key(node));
    EXPECT_TRUE(node->right == nullptr || key(node->right) >= key(node));
    *count = leftCount + rightCount + 1;
    EXPECT_EQ(node->count, *count);
    EXPECT_EQ(node->level, std::max(left, right) + 1);
    return std::max(left, right) + 1;
}

void expectBalanced(tsBtree *tree, size_t expectedCount, bool real = false)
{
    int32_t result = -1, count = 0;
    EXPECT_EQ(tsBtree_verify(tree, &result), 0);
    EXPECT_EQ(result, 0);
    const int32_t height = checkShape(rootOf(tree), nullptr, real, &count);
    EXPECT_EQ(count, static_cast<int32_t>(expectedCount));
    // The height bound of a height-balanced tree: 1.4405 log2(n + 2) - 0.3277.
    EXPECT_LE(height, 1.4405 * std::log2(double(expectedCount) + 2.0) - 0.3277);
}

// Generic keys: chainages in metres as text, ordered by value; copyKey keeps the pointer; all counted.
struct Callbacks {
    static inline int copies = 0, keyFrees = 0, contentFrees = 0;
    static int32_t metres(const void *s) { return std::atoi(static_cast<const char *>(s)); }
    static int32_t compare(const void *a, const void *b) { return metres(a) - metres(b); }
    static int32_t copy(void **field, const void *key) { return *field = const_cast<void *>(key), ++copies; }
    static int32_t freeKey(void *) { return ++keyFrees; }
    static int32_t freeContents(void *) { return ++contentFrees; }
    static Tree tree(tsBtreeFreeContentsFunc freeContents = Callbacks::freeContents)
    {
        copies = keyFrees = contentFrees = 0;
        Tree t;
        EXPECT_EQ(tsBtree_createForGenericKey(&t.handle, compare, copy, freeKey, freeContents), 0);
        return t;
    }
};

Tree sevenKeys()  // 1..7 added in order, contents 1..7: a perfect tree with 4 at the root
{
    Tree t(tsBtree_createForIntegerKey);
    addAll<int32_t>(t, {1, 2, 3, 4, 5, 6, 7});
    return t;
}

TEST(BtreeKeyKinds, EachKindOrdersItsKeys)
{
    Tree s(tsBtree_createForStringKey), w(tsBtree_createForWStringKey), i(tsBtree_createForIntegerKey),
        l(tsBtree_createForInteger64Key), d(tsBtree_createForDoubleKey);
    std::string own = "P100";
    addAll<const char *>(s, {"b", "\xC3\xA9t\xC3\xA9", "abc", own.c_str(), "ab", "B", ""});
    own[1] = '2';  // the tree holds its own copy
    addAll<const char16_t *>(w, {u"\uFFFFa", u"za", u"z", u"\u00E9"});
    addAll<int32_t>(i, {7, INT32_MIN, -3, INT32_MAX, 0});
    addAll<int64_t>(l, {int64_t{1} << 40, -(int64_t{1} << 33), 5, INT64_MIN});
    addAll<double>(d, {0.25, -1e300, 0.125, -0.0, 1e-300});
    // Bytes as unsigned, a shorter prefix first: "" < "B" 0x42 < "P100" < "ab" < "abc" < "b" < 0xC3.
    EXPECT_EQ(keysByRank<std::string>(s),
              (std::vector<std::string>{"", "B", "P100", "ab", "abc", "b", "\xC3\xA9t\xC3\xA9"}));
    EXPECT_EQ(keysByRank<std::u16string>(w),
              (std::vector<std::u16string>{u"z", u"za", u"\u00E9", u"\uFFFFa"}));
    EXPECT_EQ(keysByRank<int32_t>(i), (Ints{INT32_MIN, -3, 0, 7, INT32_MAX}));
    EXPECT_EQ(keysByRank<int64_t>(l),
              (std::vector<int64_t>{INT64_MIN, -(int64_t{1} << 33), 5, int64_t{1} << 40}));
    EXPECT_EQ(keysByRank<double>(d), (std::vector<double>{-1e300, -0.0, 1e-300, 0.125, 0.25}));
    ASSERT_EQ(tsBtree_getNodeByKey(w, u"za", 0), 0);
    EXPECT_EQ(currentContents(w), 2);
    // Not-a-number compares below every key on the way down: it lands first, and is never equal.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    ASSERT_EQ(tsBtree_addNode(d, &nan, nullptr), 0);
    ASSERT_EQ(tsBtree_getNodeByIndex(d, 0), 0);
    EXPECT_TRUE(std::isnan(currentKey<double>(d)));
    EXPECT_EQ(tsBtree_getNodeByKey(d, &nan, 0), -4);
    // Under the address sanitizer a missing or double release of a key copy shows here.
    ASSERT_EQ(tsBtree_getNodeByKey(s, "P100", 0), 0);
    ASSERT_EQ(tsBtree_deleteNode(s), 0);
}

TEST(BtreeBalance, InsertionsAndRemovalsKeepBalanceAndContents)
{
    // 2^10 - 1 ascending keys fill every level: height 10, the middle key 512 at the root.
    Tree t(tsBtree_createForIntegerKey);
    std::multiset<int32_t> reference;
    for (int32_t k = 1; k <= 1023; ++k) {
        ASSERT_EQ(tsBtree_addNode(t, &k, nullptr), 0);
        reference.insert(k);
    }
    expectBalanced(t, 1023);
    EXPECT_EQ(rootOf(t)->level, 10);
    EXPECT_EQ(rootOf(t)->key.int32, 512);
    // Then random work with many duplicates, checked against a multiset.
    std::mt19937 rng(20240611);
    std::uniform_int_distribution<int32_t> draw(0, 499);
    for (int32_t i = 0; i < 4000; ++i) {
        const int32_t k = draw(rng);
        const bool remove = i % 2 == 1 && reference.count(k) > 0;
        ASSERT_EQ(remove ? tsBtree_getNodeByKey(t, &k, 0) : tsBtree_addNode(t, &k, nullptr), 0);
        ASSERT_EQ(remove ? tsBtree_deleteNode(t) : 0, 0);
        remove ? reference.erase(reference.find(k)) : reference.insert(k);
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

TEST(BtreeBalance, VerifyChecksEachNodeAgainstItsChildren)
{
    Tree t(tsBtree_createForIntegerKey), u(tsBtree_createForIntegerKey);
    addAll<int32_t>(t, {4, 2, 6, 1, 3, 5, 7});
    tsBtreeNode *root = rootOf(t);
    int32_t result = -1;
    // Each tampered field in turn, then put back: a count, a level, a key out of order, a count of 0.
    for (auto [field, bad] : {std::pair{&root->count, 6},
                              {&root->left->level, 3},
                              {&root->right->key.int32, 3},
                              {&root->left->left->count, 0}}) {
        const int32_t kept = std::exchange(*field, bad);
        EXPECT_EQ(tsBtree_verify(t, &result), kFail);
        EXPECT_EQ(result, kFail);
        *field = kept;
    }
    tsBtreeNode *parent = std::exchange(root->right->parent, root->left);
    EXPECT_EQ(tsBtree_verify(t, &result), kFail);
    root->right->parent = parent;
    EXPECT_EQ(tsBtree_verify(t, &result), 0);
    // 2, 1, 3, 4 with leaf 1 cut off (count fixed): child levels 0 and 2, the limit verify accepts.
    addAll<int32_t>(u, {2, 1, 3, 4});
    root = rootOf(u);
    ASSERT_EQ(root->right->level, 2);
    tsBtreeNode *leaf = std::exchange(root->left, nullptr);
    root->count = 3;
    EXPECT_EQ(tsBtree_verify(u, &result), 0);
    root->left = leaf;
    root->count = 4;
}

TEST(BtreeRanks, RanksAndModesMatchASortedVector)
{
    Tree t(tsBtree_createForDoubleKey);
    std::mt19937 rng(7);
    std::uniform_int_distribution<int32_t> draw(0, 399);
    std::vector<double> sorted;
    for (int32_t i = 0; i < 1000; ++i) {
        sorted.push_back(draw(rng) * 0.5);  // halves, with duplicates
        ASSERT_EQ(tsBtree_addNode(t, &sorted.back(), nullptr), 0);
    }
    std::sort(sorted.begin(), sorted.end());
    ASSERT_EQ(tsBtree_getNodeNumber(t), 1000);
    EXPECT_EQ(keysByRank<double>(t), sorted);
    // Probes at, between and beyond the keys; acceptable ranks from the vector's bounds (first >=, first >).
    for (double probe = -1.25; probe <= 201.0; probe += 0.25) {
        const auto lo = int32_t(std::lower_bound(sorted.begin(), sorted.end(), probe) - sorted.begin());
        const auto hi = int32_t(std::upper_bound(sorted.begin(), sorted.end(), probe) - sorted.begin());
        const bool present = lo < hi;
        // Each row: mode, then the ranks [from, to] it may land on; from -1 or 1000: no node.
        const Ints rows[] = {
            {-2, lo - 1, lo - 1},  // last of the keys below
            {-1, present ? lo : lo - 1, present ? hi - 1 : lo - 1},
            {0, present ? lo : -1, present ? hi - 1 : -1},
            {1, present ? lo : hi, present ? hi - 1 : hi},
            {2, hi, hi},  // first of the keys above
        };
        for (const Ints &row : rows) {
            int32_t rank = -1;
            const int32_t code = tsBtree_getNodeByKey(t, &probe, row[0]);
            ASSERT_EQ(code, row[1] < 0 || row[1] >= 1000 ? -4 : 0) << probe << " mode " << row[0];
            ASSERT_EQ(code == 0 ? tsBtree_getNodeIndex(t, &rank) : 0, 0);
            EXPECT_TRUE(code != 0 || (rank >= row[1] && rank <= row[2])) << probe << " mode " << row[0];
        }
    }
}

// The keys the closest search lands on, one per probe.
template <class T> std::vector<T> closest(tsBtree *tree, std::initializer_list<T> probes)
{
    std::vector<T> out;
    for (const T &probe : probes)
        out.push_back(tsBtree_getClosestNodeByKey(tree, &probe) == 0 ? currentKey<T>(tree) : T(-99));
    return out;
}

TEST(BtreeClosest, TiesGoUpAndIntegerDistancesWrap)
{
    Tree d(tsBtree_createForDoubleKey), i(tsBtree_createForIntegerKey), ends(tsBtree_createForIntegerKey),
        l(tsBtree_createForInteger64Key);
    const int64_t big = int64_t{1} << 40;
    addAll<double>(d, {1.0, 3.0, 10.0});
    addAll<int32_t>(i, {INT32_MIN, -10, 10, INT32_MAX});
    addAll<int32_t>(ends, {INT32_MIN, INT32_MAX});
    addAll<int64_t>(l, {big, big + 4});
    // 2.0 is 1 away either side: the tie goes up; 6.5 is 3.5 from each: up.
    EXPECT_EQ(closest<double>(d, {2.0, 1.9, 3.0, 6.4, 6.5, -5.0, 99.0}),
              (std::vector<double>{3.0, 1.0, 3.0, 3.0, 10.0, 1.0, 10.0}));
    // From 2^30 + 10: down 2^30, up 2^30 - 11, so up; from -2^30 - 10: down 2^30 - 10, up 2^30, so down.
    EXPECT_EQ(closest<int32_t>(i, {0, -1, 1, -11, INT32_MAX - 1, (1 << 30) + 10, -(1 << 30) - 10}),
              (Ints{10, -10, 10, -10, INT32_MAX, INT32_MAX, INT32_MIN}));
    // In 32 bits the distance 2^31 from 0 down wraps to -2^31, below 2^31 - 1 up: the farther key wins.
    EXPECT_EQ(closest<int32_t>(ends, {0}), (Ints{INT32_MIN}));
    EXPECT_EQ(closest<int64_t>(l, {big + 2, big + 1}), (std::vector<int64_t>{big + 4, big}));
}

TEST(BtreeCallbacks, UniqueAddReplacesContentsAndKeepsTheCursor)
{
    Tree t = Callbacks::tree();
    ASSERT_EQ(tsBtree_addNodeUnique(t, "100", tag(1)), 0);
    ASSERT_EQ(tsBtree_addNodeUnique(t, "200", tag(2)), 0);
    ASSERT_EQ(tsBtree_getNodeByIndex(t, 0), 0);
    // Same contents: nothing released. Other contents: the old go to freeContents.
    ASSERT_EQ(tsBtree_addNodeUnique(t, "200", tag(2)), 0);
    EXPECT_EQ(Callbacks::contentFrees, 0);
    ASSERT_EQ(tsBtree_addNodeUnique(t, "200", tag(3)), 0);
    EXPECT_EQ(Callbacks::contentFrees, 1);
    EXPECT_EQ(currentContents(t), 1);  // the cursor did not move
    EXPECT_EQ(contentsInOrder(t), (Tags{1, 3}));
    // The key copies made for the dropped nodes are given up, not released.
    EXPECT_EQ(Callbacks::copies, 4);
    EXPECT_EQ(Callbacks::keyFrees, 0);
}

TEST(BtreeCallbacks, ChangedKeysMoveTheNodeAndRemovalsReleaseKeysAndContents)
{
    Tree t = Callbacks::tree();
    const char *moved = "350";
    int32_t rank = -1, result = -1;
    const void *key = nullptr;
    addAll<const char *>(t, {"400", "2100", "100", "200", "300"});
    ASSERT_EQ(tsBtree_addNode(t, "60", nullptr), 0);          // no contents to release
    EXPECT_EQ(contentsInOrder(t), (Tags{0, 3, 4, 5, 1, 2}));  // 60, 100, 200, 300, 400, 2100
    ASSERT_EQ(tsBtree_getNodeByKey(t, "99", 1), 0);
    ASSERT_EQ(tsBtree_changeNodeKey(t, moved), 0);
    EXPECT_EQ(currentContents(t), 3);
    ASSERT_EQ(tsBtree_getNodeIndex(t, &rank), 0);
    EXPECT_EQ(rank, 3);  // 60, 200, 300, 350, 400, 2100
    ASSERT_EQ(tsBtree_getNodeKey(t, &key), 0);
    EXPECT_EQ(key, static_cast<const void *>(moved));  // the pointer copyKey stored
    EXPECT_EQ(Callbacks::copies, 7);
    EXPECT_EQ(Callbacks::keyFrees, 0);  // the old key is not released
    EXPECT_EQ(tsBtree_verify(t, &result), 0);
    // A removal moves the cursor on, then releases key and contents; so do replacement and destroy.
    ASSERT_EQ(tsBtree_getNodeByKey(t, "300", 0), 0);
    ASSERT_EQ(tsBtree_deleteNode(t), 0);
    EXPECT_EQ(currentContents(t), 3);
    EXPECT_EQ(Callbacks::keyFrees, 1);
    EXPECT_EQ(Callbacks::contentFrees, 1);
    ASSERT_EQ(tsBtree_setNodeContents(t, tag(40)), 0);
    EXPECT_EQ(Callbacks::contentFrees, 2);
    ASSERT_EQ(tsBtree_destroy(&t.handle), 0);
    EXPECT_EQ(t.handle, nullptr);
    EXPECT_EQ(Callbacks::keyFrees, 6);      // every key once
    EXPECT_EQ(Callbacks::contentFrees, 6);  // 2 so far and 4 non-null contents
}

struct Visits {
    Ints keys;
    size_t stopAfter = 0;  // plain walk: the visit that stops it (0: none)
    int32_t flags = 1;     // conditional walk: what both go-flags are set to
};

int32_t visitKey(const void *key, void *, void *user)
{
    auto *v = static_cast<Visits *>(user);
    v->keys.push_back(*static_cast<const int32_t *>(key));
    return v->keys.size() == v->stopAfter ? -77 : 0;
}

TEST(BtreeWalks, RangesBoundsAndTheStopRule)
{
    Tree t = sevenKeys();
    const int32_t three = 3, five = 5, big = 50, zero = 0;
    ASSERT_EQ(tsBtree_addNode(t, &five, tag(55)), 0);                // a duplicate of the end bound
    EXPECT_EQ(currentContents(t), 55);                               // the new node is current
    EXPECT_EQ(contentsInOrder(t), (Tags{1, 2, 3, 4, 55, 5, 6, 7}));  // of equal keys the last added first
    const Ints all{1, 2, 3, 4, 5, 5, 6, 7};
    const struct {
        const int32_t *start, *end;
        int32_t startMode, endMode;
        size_t stopAfter;
        int32_t result;
        Ints keys;
    } rows[] = {
        {nullptr, nullptr, 0, 0, 0, 0, all}, {&three, &five, 0, 0, 0, 0, {3, 4, 5, 5}},
        {&three, &five, 2, -2, 0, 0, {4}},   {&three, nullptr, 0, 0, 3, -77, {3, 4, 5}},
        {&big, nullptr, 1, 0, 0, 0, all},    {nullptr, &zero, 0, -1, 0, 0, all},
        {&five, &three, 0, 0, 0, kFail, {}}, {&three, nullptr, 4, 0, 0, kFail, {}},
    };
    // Rows: whole; duplicates of a bound inside; strictly between; the third answer stops; a bound with no
    // node leaves its side open; start above end; an unknown mode.
    for (const auto &row : rows) {
        Visits v{{}, row.stopAfter};
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
    EXPECT_EQ(tsBtree_performPtrAction(nullptr, collect, &v, nullptr, nullptr, 0, 0), kFail);
}

TEST(BtreeWalks, ConditionalWalkStopsAtNodesOutOfRange)
{
    Tree t = sevenKeys();  // 4; 2, 6; 1, 3, 5, 7
    const int32_t one = 1, four = 4, five = 5, seven = 7;
    auto steer = [](int32_t *goLeft, int32_t *goRight, const void *key, tsBtreeNode *node,
                    void *user) -> int32_t {
        auto *v = static_cast<Visits *>(user);
        v->keys.push_back(*static_cast<const int32_t *>(key));
        EXPECT_EQ(static_cast<const void *>(&node->key), key);
        *goLeft = *goRight = v->flags;
        return 0;
    };
    // Top-down, left first; 6 is above [1, 4] and ends its branch; the root is below [5, 7] and ends
    // the walk at once; without flags only the root.
    const struct {
        const int32_t *start, *end;
        int32_t flags;
        Ints keys;
    } rows[] = {{nullptr, nullptr, 1, {4, 2, 1, 3, 6, 5, 7}},
                {&one, &four, 1, {4, 2, 1, 3}},
                {&five, &seven, 1, {}},
                {nullptr, nullptr, 0, {4}}};
    for (const auto &row : rows) {
        Visits v{{}, 0, row.flags};
        EXPECT_EQ(tsBtree_performActionWithCondition(t, steer, &v, row.start, row.end, 0, 0), 0);
        EXPECT_EQ(v.keys, row.keys);
    }
}

TEST(BtreeCodes, CursorlessAndBadArguments)
{
    Tree t(tsBtree_createForIntegerKey), s(tsBtree_createForStringKey);
    int32_t k = 1, index = 0;
    void *contents = nullptr;
    const void *key = nullptr;
    tsBtree *h = nullptr;
    // In order: an empty tree (no first, last, key, closest key, index 0), then calls without a cursor.
    EXPECT_EQ((Ints{tsBtree_getNodeNumber(t), tsBtree_getNodeByKey(t, nullptr, -3),
                    tsBtree_getNodeByKey(t, nullptr, 3), tsBtree_getNodeByKey(t, &k, 0),
                    tsBtree_getClosestNodeByKey(t, &k), tsBtree_getNodeByIndex(t, 0), tsBtree_getNextNode(t),
                    tsBtree_getNodeIndex(t, &index), tsBtree_getNodeContents(t, &contents),
                    tsBtree_setNodeContents(t, tag(1)), tsBtree_getNodeKey(t, &key), tsBtree_deleteNode(t),
                    tsBtree_changeNodeKey(t, &k)}),
              (Ints{0, -4, -4, -4, -4, -2, -1, -1, -1, -1, -1, -1, -1}));
    // Unknown modes, a missing key, closest in a string tree, null arguments, a handle already full.
    for (int32_t code :
         {tsBtree_getNodeByKey(t, &k, 4), tsBtree_getNodeByKey(t, &k, -4),
          tsBtree_getNodeByKey(t, nullptr, 0), tsBtree_changeNodeKey(t, nullptr),
          tsBtree_addNode(t, nullptr, nullptr), tsBtree_getClosestNodeByKey(s, "a"),
          tsBtree_getClosestNodeByKey(nullptr, &k), tsBtree_addNode(nullptr, &k, nullptr),
          tsBtree_getNodeNumber(nullptr), tsBtree_getNodeByIndex(nullptr, 0), tsBtree_getNextNode(nullptr),
          tsBtree_deleteNode(nullptr), tsBtree_getNodeIndex(t, nullptr), tsBtree_getNodeContents(t, nullptr),
          tsBtree_getNodeKey(t, nullptr)})
        EXPECT_EQ(code, kFail);
    for (int32_t code :
         {tsBtree_destroy(nullptr), tsBtree_destroy(&h), tsBtree_createForDoubleKey(&t.handle, nullptr),
          tsBtree_createForIntegerKey(nullptr, nullptr),
          tsBtree_createForGenericKey(&h, nullptr, Callbacks::copy, nullptr, nullptr),
          tsBtree_createForGenericKey(&h, Callbacks::compare, nullptr, nullptr, nullptr)})
        EXPECT_EQ(code, kFail);
}

TEST(BtreeCodes, EndsOfTheCursor)
{
    Tree t = sevenKeys();
    const int32_t missing = 40;
    // In order: indices outside, next without cursor, past the end, null contents, closest without key.
    EXPECT_EQ((Ints{tsBtree_getNodeByIndex(t, 7), tsBtree_getNodeByIndex(t, -1), tsBtree_getNextNode(t),
                    tsBtree_getNodeByIndex(t, 6), tsBtree_getNextNode(t), tsBtree_getNextNode(t),
                    tsBtree_getNodeByKey(t, nullptr, 3), tsBtree_setNodeContents(t, nullptr)}),
              (Ints{-2, -2, -1, 0, -3, -1, 0, kFail}));
    EXPECT_EQ(currentContents(t), 7);  // the stored contents stay
    EXPECT_EQ((Ints{tsBtree_getClosestNodeByKey(t, nullptr), tsBtree_getNextNode(t)}), (Ints{-4, -1}));
    // Deleting the last node, and a failed search, leave no cursor.
    EXPECT_EQ((Ints{tsBtree_getNodeByKey(t, nullptr, 3), tsBtree_deleteNode(t), tsBtree_getNextNode(t),
                    tsBtree_getNodeNumber(t), tsBtree_getNodeByIndex(t, 0),
                    tsBtree_getNodeByKey(t, &missing, 0), tsBtree_getNextNode(t)}),
              (Ints{0, 0, -1, 6, 0, -4, -1}));
}

TEST(BtreePrint, RootRecordIndentedByLevel)
{
    Tree i(tsBtree_createForIntegerKey), d(tsBtree_createForDoubleKey), l(tsBtree_createForInteger64Key),
        s(tsBtree_createForStringKey), w(tsBtree_createForWStringKey), empty(tsBtree_createForIntegerKey);
    addAll<int32_t>(i, {1, 2, 3, 4});  // root 2: left 1, right 3 over 4
    addAll<double>(d, {2.5});
    addAll<int64_t>(l, {int64_t{1} << 40});
    addAll<const char *>(s, {"ab"});
    addAll<const char16_t *>(w, {u"\u00E9"});
    testing::internal::CaptureStdout();
    for (tsBtree *tree : {i.handle, d.handle, l.handle, s.handle, w.handle, empty.handle})
        EXPECT_EQ(tsBtree_print(tree), 0);
    // The root record: four blanks per level, the children's counts and levels, the key.
    auto root = [](int level, const std::string &children, const std::string &key) {
        const std::string in(size_t(4 * level), ' ');
        return in + "NODE========================================\n" + in + "Count: Left (" + children[0] +
               "), Right (" + children[1] + ")\n" + in + "Level: This (" + char('0' + level) + "), Left (" +
               children[2] + "), Right (" + children[3] + ")\n" + in + "Key: " + key + "\n";
    };
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              root(3, "1212", "2") + root(1, "0000", "2.500000") + root(1, "0000", "1099511627776") +
                  root(1, "0000", "ab") + root(1, "0000", "\xC3\xA9"));
}

TEST(BtreeScenario, CrossSectionsIndexedByStation)
{
    // Cross-sections every 20 m along 1 km and at the curve's ends: a station's section, then a stretch.
    Tree t(tsBtree_createForDoubleKey);
    for (intptr_t n = 0; n <= 50; ++n) {
        const double station = 20.0 * double(n);
        ASSERT_EQ(tsBtree_addNode(t, &station, tag(n)), 0);
    }
    const double tc = 437.5, ct = 612.25, at = 439.0, from = 400.0, to = 500.0;
    Tags seen;  // 400 to 500 inclusive: 400, 420, 437.5, 440, 460, 480, 500
    ASSERT_EQ(tsBtree_addNodeUnique(t, &tc, tag(1000)), 0);
    ASSERT_EQ(tsBtree_addNodeUnique(t, &ct, tag(1001)), 0);
    expectBalanced(t, 53, true);
    ASSERT_EQ(tsBtree_getNodeByKey(t, &at, -2), 0);  // the last section before 439
    EXPECT_EQ(currentContents(t), 1000);
    ASSERT_EQ(tsBtree_performPtrAction(t, collect, &seen, &from, &to, 1, -1), 0);
    EXPECT_EQ(seen, (Tags{20, 21, 1000, 22, 23, 24, 25}));
}

}  // namespace
