// The crossing sweep at the sizes of a road model: a kerb line and a drainage
// line of 10^3 to 10^5 vertices each, both running east over 10 m per
// vertex, the kerb gently curving and the drainage weaving across it every
// 25 vertices, so that the strings cross n / 25 times. Timed: finding the
// crossings, inserting them as vertices (the copies that the insertion
// replaces are made outside the timing), and cutting the loops of a string
// that turns back over itself every 50 vertices.
#include <benchmark/benchmark.h>

#include <tessar/linestring.h>
#include <tessar/memory.h>

#include <cmath>
#include <cstring>
#include <numbers>
#include <vector>

namespace {

constexpr double kStep = 10.0;

std::vector<dpoint3d> kerbLine(int32_t n)
{
    std::vector<dpoint3d> line(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i) {
        const double x = 5000.0 + kStep * i;
        line[static_cast<size_t>(i)] = {x, 3000.0 + 2.0 * std::sin(x / 3000.0), 100.0 + 0.01 * kStep * i};
    }
    return line;
}

std::vector<dpoint3d> drainageLine(int32_t n)
{
    std::vector<dpoint3d> line(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i) {
        const double x = 5000.0 + kStep * i + 3.7;
        const double weave = 4.0 * std::sin(std::numbers::pi * i / 25.0 + 0.3);
        line[static_cast<size_t>(i)] = {x, 3000.0 + 2.0 * std::sin(x / 3000.0) + weave,
                                        98.0 + 0.01 * kStep * i};
    }
    return line;
}

// A string running east that curls back over itself every 50 vertices: up
// 8, back west 5 and down 12, across its own last step; it then goes on east
// 4 lower.
std::vector<dpoint3d> loopingLine(int32_t n)
{
    std::vector<dpoint3d> line(static_cast<size_t>(n));
    double x = 0.0;
    double y = 0.0;
    for (int32_t i = 0; i < n; ++i) {
        switch (i % 50) {
        case 47:
            y += 8.0;
            break;
        case 48:
            x -= 5.0;
            break;
        case 49:
            y -= 12.0;
            break;
        default:
            x += kStep;
        }
        line[static_cast<size_t>(i)] = {x, y, 0.0};
    }
    return line;
}

dpoint3d *libraryCopy(const std::vector<dpoint3d> &points)
{
    auto *copy = static_cast<dpoint3d *>(tsMem_malloc(points.size() * sizeof(dpoint3d)));
    std::memcpy(copy, points.data(), points.size() * sizeof(dpoint3d));
    return copy;
}

void DetectCrossings(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    std::vector<dpoint3d> kerb = kerbLine(n);
    std::vector<dpoint3d> drainage = drainageLine(n);
    tsLineString a{kerb.data(), n};
    tsLineString b{drainage.data(), n};
    tsLineString *strings[] = {&a, &b};
    tsStringIntersection *found = nullptr;
    int32_t count = 0;
    for (auto _ : state) {
        tsLineString_detectStringIntersections(strings, 2, &found, &count);
        benchmark::DoNotOptimize(found);
    }
    state.counters["crossings"] = count / 2;
    tsMem_free(found);
    state.SetItemsProcessed(state.iterations() * 2 * n);
}
BENCHMARK(DetectCrossings)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMicrosecond);

void InsertCrossings(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint3d> kerb = kerbLine(n);
    const std::vector<dpoint3d> drainage = drainageLine(n);
    tsStringIntersection *found = nullptr;
    int32_t count = 0;
    for (auto _ : state) {
        state.PauseTiming();
        tsLineString a{libraryCopy(kerb), n};
        tsLineString b{libraryCopy(drainage), n};
        tsLineString *strings[] = {&a, &b};
        state.ResumeTiming();
        tsLineString_insertStringIntersections(strings, 2, &found, &count);
        state.PauseTiming();
        tsMem_free(a.points);
        tsMem_free(b.points);
        state.ResumeTiming();
    }
    tsMem_free(found);
    state.SetItemsProcessed(state.iterations() * 2 * n);
}
BENCHMARK(InsertCrossings)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMicrosecond);

void RemoveKnots(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint3d> line = loopingLine(n);
    tsStringIntersection *knots = nullptr;
    int32_t count = 0;
    int32_t kept = 0;
    for (auto _ : state) {
        state.PauseTiming();
        dpoint3d *points = libraryCopy(line);
        kept = n;
        state.ResumeTiming();
        tsLineString_removeKnots(&points, &kept, &knots, &count);
        state.PauseTiming();
        tsMem_free(points);
        state.ResumeTiming();
    }
    state.counters["knots"] = count / 2;
    state.counters["kept"] = kept;
    tsMem_free(knots);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(RemoveKnots)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMicrosecond);

}  // namespace
