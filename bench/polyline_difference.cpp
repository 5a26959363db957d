// Differences of two long sections at the sizes of a road model: a design
// profile against a ground profile of 10^2 to 10^5 vertices each, with
// vertices a metre apart and offset by half a metre from each other, so
// that every segment of one meets two of the other and the two cross
// every few tens of metres. The tables handed back are released inside the
// timed loop: their growth is part of the work.
#include <benchmark/benchmark.h>

#include <tessar/memory.h>
#include <tessar/polyline.h>

#include <cmath>
#include <vector>

namespace {

std::vector<dpoint2d> profile(int32_t n, double shift, double amplitude, double wave, double ripple)
{
    std::vector<dpoint2d> pts(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i) {
        const double x = i + shift;
        pts[static_cast<size_t>(i)] = {x,
                                       100.0 + amplitude * std::sin(wave * x) + ripple * std::sin(0.37 * x)};
    }
    return pts;
}

std::vector<dpoint2d> ground(int32_t n)
{
    return profile(n, 0.0, 5.0, 0.01, 0.5);
}

std::vector<dpoint2d> design(int32_t n)
{
    return profile(n, 0.5, 4.0, 0.013, 0.0);
}

template <class T> void release(T *&table)
{
    if (table != nullptr) MEM_LibererTableau(reinterpret_cast<void **>(&table));
}

// Sums and meeting points.
void DifferenceWithMeetingPoints(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> p1 = design(n), p2 = ground(n);
    double la = 0, aa = 0, lb = 0, ab = 0;
    int32_t count = 0;
    for (auto _ : state) {
        dpoint2d *points = nullptr;
        uint32_t *types = nullptr;
        UTMAT_CalculerDifference2Polylignes(p1.data(), n, p2.data(), n, &la, &aa, &lb, &ab, &points, &types,
                                            &count);
        benchmark::DoNotOptimize(aa);
        release(points);
        release(types);
    }
    state.counters["meetings"] = count;
    state.SetItemsProcessed(state.iterations() * 2 * n);
}
BENCHMARK(DifferenceWithMeetingPoints)->RangeMultiplier(10)->Range(100, 100000);

// Everything: meeting points, areas and the pieces of polyline 1.
void DifferenceWithPieces(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> p1 = design(n), p2 = ground(n);
    double la = 0, aa = 0, lb = 0, ab = 0;
    int32_t count = 0, pieceCount = 0;
    for (auto _ : state) {
        dpoint2d *points = nullptr, *pieces = nullptr;
        uint32_t *types = nullptr;
        double *areas = nullptr;
        int32_t *signs = nullptr;
        UTMAT_CalculateDiff2Lines(p1.data(), n, p2.data(), n, &la, &aa, &lb, &ab, &points, &types, &areas,
                                  &count, &pieces, &signs, &pieceCount);
        benchmark::DoNotOptimize(aa);
        release(points);
        release(types);
        release(areas);
        release(pieces);
        release(signs);
    }
    state.counters["pieces"] = pieceCount;
    state.SetItemsProcessed(state.iterations() * 2 * n);
}
BENCHMARK(DifferenceWithPieces)->RangeMultiplier(10)->Range(100, 100000);

// The meeting points that bound a stretch with area.
void DifferenceWithAreaControl(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> p1 = design(n), p2 = ground(n);
    double la = 0, aa = 0, lb = 0, ab = 0;
    int32_t count = 0;
    for (auto _ : state) {
        dpoint2d *points = nullptr;
        uint32_t *types = nullptr;
        UTMAT_CalculerDifference2PolylignesAvecControleSurface(p1.data(), n, p2.data(), n, &la, &aa, &lb, &ab,
                                                               &points, &types, &count);
        benchmark::DoNotOptimize(aa);
        release(points);
        release(types);
    }
    state.counters["meetings"] = count;
    state.SetItemsProcessed(state.iterations() * 2 * n);
}
BENCHMARK(DifferenceWithAreaControl)->RangeMultiplier(10)->Range(100, 100000);

// Stretches where the design lies 0 to 2 m above the ground.
void BracketStretches(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> p1 = design(n), p2 = ground(n);
    int32_t count = 0;
    for (auto _ : state) {
        dpoint2d *out1 = nullptr, *out2 = nullptr;
        UTMAT_CalculerIntervDiffPolylignesDansFourchette(p1.data(), n, p2.data(), n, 0.0, 2.0, &out1, &out2,
                                                         &count);
        benchmark::DoNotOptimize(out1);
        release(out1);
        release(out2);
    }
    state.counters["stretches"] = count;
    state.SetItemsProcessed(state.iterations() * 2 * n);
}
BENCHMARK(BracketStretches)->RangeMultiplier(10)->Range(100, 100000);

}  // namespace
