// Growable tables at the sizes of a road model: appending element by element
// (one reallocation every ten elements), and removing from the front.
#include <benchmark/benchmark.h>

#include <tessar/memory.h>
#include <tessar/types.h>

namespace {

void AppendPoints(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    for (auto _ : state) {
        dpoint2d *points = nullptr;
        int32_t count = 0;
        for (int32_t i = 0; i < n; ++i) {
            MEM_EtendreTableau(reinterpret_cast<void **>(&points), sizeof(dpoint2d), &count);
            points[count - 1] = dpoint2d{double(i), double(i)};
        }
        benchmark::DoNotOptimize(points);
        MEM_LibererTableau(reinterpret_cast<void **>(&points));
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(AppendPoints)->RangeMultiplier(10)->Range(100, 1000000);

void AppendPointsByBlock(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    for (auto _ : state) {
        dpoint2d *points = nullptr;
        int32_t count = 0;
        MEM_EtendreTableauParBloc(reinterpret_cast<void **>(&points), sizeof(dpoint2d), &count, n);
        benchmark::DoNotOptimize(points);
        MEM_LibererTableau(reinterpret_cast<void **>(&points));
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(AppendPointsByBlock)->RangeMultiplier(10)->Range(100, 1000000);

void FindRank(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    dpoint2d *points = nullptr;
    int32_t count = 0;
    MEM_EtendreTableauParBloc(reinterpret_cast<void **>(&points), sizeof(dpoint2d), &count, n);
    for (int32_t i = 0; i < n; ++i)
        points[i] = dpoint2d{double(i), 0.0};
    const dpoint2d last = points[n - 1];
    int32_t rank = 0;
    for (auto _ : state) {
        MEM_RecupererRang(points, count, sizeof(dpoint2d), &last, &rank);
        benchmark::DoNotOptimize(rank);
    }
    state.SetItemsProcessed(state.iterations() * n);
    MEM_LibererTableau(reinterpret_cast<void **>(&points));
}
BENCHMARK(FindRank)->RangeMultiplier(10)->Range(100, 100000);

}  // namespace
