// The balanced tree at the sizes of a road model: building a tree of n
// random keys, keyed search (mode 0) and ranked access (node by index, and
// index of the current node), for integer and double keys from 10^2 to
// 10^6, and for 8-bit string keys (point names) at 10^5.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include <benchmark/benchmark.h>

#include <tessar/btree.h>

namespace {

constexpr int32_t kProbes = 1000;  // searches per timed iteration

template <class Key> std::vector<Key> randomKeys(int32_t n);

template <> std::vector<int32_t> randomKeys<int32_t>(int32_t n)
{
    std::mt19937 rng(12345);
    std::vector<int32_t> keys(static_cast<size_t>(n));
    for (auto &k : keys)
        k = static_cast<int32_t>(rng());
    return keys;
}

// Stations in metres with millimetre decimals, as a long section has them.
template <> std::vector<double> randomKeys<double>(int32_t n)
{
    std::mt19937 rng(12345);
    std::uniform_real_distribution<double> station(0.0, 50000.0);
    std::vector<double> keys(static_cast<size_t>(n));
    for (auto &k : keys)
        k = station(rng);
    return keys;
}

// Point names such as "P004711-A".
template <> std::vector<std::string> randomKeys<std::string>(int32_t n)
{
    std::mt19937 rng(12345);
    std::vector<std::string> keys(static_cast<size_t>(n));
    char name[16];
    for (auto &k : keys) {
        std::snprintf(name, sizeof name, "P%07u-%c", static_cast<unsigned>(1000000u + rng() % 9000000u),
                      char('A' + rng() % 26));
        k = name;
    }
    return keys;
}

template <class Key> const void *keyPointer(const Key &key)
{
    return &key;
}

template <> const void *keyPointer<std::string>(const std::string &key)
{
    return key.c_str();
}

template <class Key> int32_t create(tsBtree **tree)
{
    if constexpr (std::is_same_v<Key, int32_t>)
        return tsBtree_createForIntegerKey(tree, nullptr);
    else if constexpr (std::is_same_v<Key, double>)
        return tsBtree_createForDoubleKey(tree, nullptr);
    else
        return tsBtree_createForStringKey(tree, nullptr);
}

template <class Key> tsBtree *build(const std::vector<Key> &keys)
{
    tsBtree *tree = nullptr;
    create<Key>(&tree);
    for (const Key &k : keys)
        tsBtree_addNode(tree, keyPointer(k), nullptr);
    return tree;
}

template <class Key> void Insert(benchmark::State &state)
{
    const auto keys = randomKeys<Key>(static_cast<int32_t>(state.range(0)));
    for (auto _ : state) {
        tsBtree *tree = build(keys);
        state.PauseTiming();
        tsBtree_destroy(&tree);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Key> void Find(benchmark::State &state)
{
    const auto keys = randomKeys<Key>(static_cast<int32_t>(state.range(0)));
    tsBtree *tree = build(keys);
    std::vector<const Key *> probes;
    std::mt19937 rng(99);
    for (int32_t i = 0; i < kProbes; ++i)
        probes.push_back(&keys[rng() % keys.size()]);
    for (auto _ : state) {
        for (const Key *k : probes)
            benchmark::DoNotOptimize(tsBtree_getNodeByKey(tree, keyPointer(*k), 0));
    }
    state.SetItemsProcessed(state.iterations() * kProbes);
    tsBtree_destroy(&tree);
}

// Node by rank, then the rank of the node found: one walk down and one up.
template <class Key> void Rank(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    tsBtree *tree = build(randomKeys<Key>(n));
    std::vector<int32_t> ranks;
    std::mt19937 rng(99);
    for (int32_t i = 0; i < kProbes; ++i)
        ranks.push_back(static_cast<int32_t>(rng() % static_cast<uint32_t>(n)));
    int32_t index = 0;
    for (auto _ : state) {
        for (int32_t r : ranks) {
            tsBtree_getNodeByIndex(tree, r);
            tsBtree_getNodeIndex(tree, &index);
            benchmark::DoNotOptimize(index);
        }
    }
    state.SetItemsProcessed(state.iterations() * kProbes);
    tsBtree_destroy(&tree);
}

BENCHMARK(Insert<int32_t>)->RangeMultiplier(10)->Range(100, 1000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Insert<double>)->RangeMultiplier(10)->Range(100, 1000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Insert<std::string>)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Find<int32_t>)->RangeMultiplier(10)->Range(100, 1000000);
BENCHMARK(Find<double>)->RangeMultiplier(10)->Range(100, 1000000);
BENCHMARK(Find<std::string>)->Arg(100000);
BENCHMARK(Rank<int32_t>)->RangeMultiplier(10)->Range(100, 1000000);
BENCHMARK(Rank<double>)->RangeMultiplier(10)->Range(100, 1000000);
BENCHMARK(Rank<std::string>)->Arg(100000);

}  // namespace
