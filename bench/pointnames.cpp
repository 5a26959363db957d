// Point-name lists at the sizes of a road survey: expanding a compressed list
// into its names and compressing the plain list back, for 10^4 and 10^5
// names. The names come as a field book gives them: runs of consecutive
// points under a prefix, some taken backwards, some zero padded, with breaks.
// A list of scattered names, where nothing joins, shows the cost of a result
// as long as its input.
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

#include <benchmark/benchmark.h>

#include <tessar/memory.h>
#include <tessar/pointnames.h>

namespace {

// n names, blank-separated: runs of 1 to 40 names under one of six prefixes,
// one run in four descending, a GAP after one run in eight.
std::string fieldBook(int64_t n)
{
    static const char *const formats[] = {"%d", "CL%d", "EP%d", "P%04d", "TN%d", "BM%d"};
    std::string list;
    char name[32];
    std::mt19937 draw(12345);
    int64_t count = 0;
    for (int64_t run = 0; count < n; ++run) {
        const char *format = formats[run % 6];
        const int length = 1 + static_cast<int>(draw() % 40);
        const bool descending = draw() % 4 == 0;
        const int start =
            descending ? length + static_cast<int>(draw() % 5000) : 1 + static_cast<int>(draw() % 5000);
        for (int k = 0; k < length && count < n; ++k, ++count) {
            std::snprintf(name, sizeof name, format, descending ? start - k : start + k);
            list += name;
            list += ' ';
        }
        if (draw() % 8 == 0) list += "GAP ";
    }
    return list;
}

// n names of which no two neighbours join.
std::string scattered(int64_t n)
{
    std::string list;
    char name[32];
    for (int64_t i = 0; i < n; ++i) {
        std::snprintf(name, sizeof name, "%c%d ", i % 2 == 0 ? 'P' : 'Q', static_cast<int>(1 + i % 997));
        list += name;
    }
    return list;
}

void CompressFieldBook(benchmark::State &state)
{
    const std::string list = fieldBook(state.range(0));
    for (auto _ : state) {
        char *result = nullptr;
        benchmark::DoNotOptimize(tsString_compressAlphaNumeric(&result, list.c_str(), ","));
        tsMem_free(result);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void CompressScattered(benchmark::State &state)
{
    const std::string list = scattered(state.range(0));
    for (auto _ : state) {
        char *result = nullptr;
        benchmark::DoNotOptimize(tsString_compressAlphaNumeric(&result, list.c_str(), ","));
        tsMem_free(result);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ExpandFieldBook(benchmark::State &state)
{
    char *compressed = nullptr;
    if (tsString_compressAlphaNumeric(&compressed, fieldBook(state.range(0)).c_str(), ",") != 0) {
        state.SkipWithError("compression failed");
        return;
    }
    state.counters["compressed_bytes"] = static_cast<double>(std::char_traits<char>::length(compressed));
    for (auto _ : state) {
        char *result = nullptr;
        benchmark::DoNotOptimize(tsString_expandAlphaNumeric(&result, compressed, ",", " "));
        tsMem_free(result);
    }
    tsMem_free(compressed);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(ExpandFieldBook)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(CompressFieldBook)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(CompressScattered)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
