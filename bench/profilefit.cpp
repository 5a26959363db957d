// The vertical profile fit over long sections of 10^2 to 10^4 levels: rolling
// ground levelled every 10 m (so 1 km to 100 km of road), with a few
// centimetres of unevenness, fitted in a band of +-0.10 m with K values of a
// rural road. The IP count grows with the length, and the fit's sweeps
// evaluate the whole profile at every station, so the time grows faster
// than the number of levels.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include <tessar/bestfit.h>
#include <tessar/memory.h>

namespace {

struct LongSection {
    std::vector<double> stations;
    std::vector<double> levels;
};

LongSection rollingGround(int64_t n)
{
    LongSection section;
    for (int64_t i = 0; i < n; ++i) {
        const double x = 10.0 * double(i);
        section.stations.push_back(x);
        section.levels.push_back(50.0 + 8.0 * std::sin(x / 700.0) + 3.0 * std::sin(x / 230.0 + 1.0) +
                                 0.03 * std::sin(1.7 * double(i) + 0.3));
    }
    return section;
}

void ComputeProfile(benchmark::State &state)
{
    const LongSection ground = rollingGround(state.range(0));
    const auto n = static_cast<int32_t>(state.range(0));
    int32_t count = 0;
    for (auto _ : state) {
        tsBestFit_verticalProfileInitialize(0.10, 0.10, 60.0, 40.0, 60.0, 1.0, 0, 0, 0);
        double *stations = nullptr, *levels = nullptr, *lengths = nullptr;
        benchmark::DoNotOptimize(tsBestFit_verticalComputeProfile(
            &stations, &levels, &lengths, &count, ground.stations.data(), ground.levels.data(), n));
        tsMem_free(stations);
        tsMem_free(lengths);
        tsMem_free(levels);
    }
    state.counters["IPs"] = count;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(ComputeProfile)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond);

// The same ground as points along a plan line, chainage from plan distances.
void PointForm(benchmark::State &state)
{
    const LongSection ground = rollingGround(state.range(0));
    std::vector<dpoint3d> points;
    for (size_t i = 0; i < ground.stations.size(); ++i)
        points.push_back(
            {1000.0 + 0.8 * ground.stations[i], 2000.0 + 0.6 * ground.stations[i], ground.levels[i]});
    int32_t count = 0;
    for (auto _ : state) {
        dpoint3d *result = nullptr;
        benchmark::DoNotOptimize(tsPoint_verticalComputeProfile(&result, &count, points.data(),
                                                                static_cast<int32_t>(points.size()), 1, 0.10,
                                                                0.10, 60.0, 40.0, 60.0, 1.0, 0, 0, 0));
        tsMem_free(result);
    }
    state.counters["IPs"] = count;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(PointForm)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond);

}  // namespace
