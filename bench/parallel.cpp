// Parallel copies at the sizes of a road model: a centre line of 10^2 to
// 10^5 vertices, 10 m apart, winding through reverse curves of radius 300
// (a vertex deflects by 1.9 degrees, alternately left and right every 40
// vertices), offset 3.5 m to the right. Timed: the copy by offset segments,
// and the copy by offset vertices with mitred and with rounded joins (arc
// step 0.1 m). The vertex copy changes its input, so each run starts from a
// fresh copy of the centre line (a memcpy, timed with it).
#include <benchmark/benchmark.h>

#include <tessar/linestring.h>
#include <tessar/memory.h>
#include <tessar/pointarray.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

constexpr double kStep = 10.0;
constexpr double kRadius = 300.0;
constexpr double kOffset = 3.5;

std::vector<dpoint3d> centreLine(int32_t n)
{
    std::vector<dpoint3d> line(static_cast<size_t>(n));
    double x = 1000.0, y = 2000.0, heading = 0.0;
    for (int32_t i = 0; i < n; ++i) {
        line[static_cast<size_t>(i)] = {x, y, 100.0};
        heading += ((i / 40) % 2 == 0 ? 1.0 : -1.0) * kStep / kRadius;
        x += kStep * std::cos(heading);
        y += kStep * std::sin(heading);
    }
    return line;
}

void SegmentOffset(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint3d> line = centreLine(n);
    int32_t count = 0;
    for (auto _ : state) {
        dpoint3d *result = nullptr;
        tsPointArray_copyParallel2d(line.data(), n, &result, &count, kOffset, 0);
        benchmark::DoNotOptimize(result);
        tsMem_free(result);
    }
    state.counters["points"] = count;
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(SegmentOffset)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);

void VertexOffset(benchmark::State &state, int32_t joinType, double arcStep)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint3d> line = centreLine(n);
    std::vector<dpoint3d> input(line.size());
    dpoint3d *result = nullptr;
    int32_t count = 0;
    for (auto _ : state) {
        std::memcpy(input.data(), line.data(), line.size() * sizeof(dpoint3d));
        tsLineString_copyParallel2d(input.data(), n, kOffset, joinType, arcStep, &result, &count);
        benchmark::DoNotOptimize(result);
    }
    std::free(result);
    state.counters["points"] = count;
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK_CAPTURE(VertexOffset, mitre, 1, 0.0)
    ->RangeMultiplier(10)
    ->Range(100, 100000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(VertexOffset, round, 2, 0.1)
    ->RangeMultiplier(10)
    ->Range(100, 100000)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
