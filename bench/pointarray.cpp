// Polygon measures at the sizes of a road model: the signed area, the
// centroid and the point-in-polygon classifier over rings of 10^2 to 10^6
// vertices (a circle of radius 1000 m sampled evenly, closed, in a local
// grid away from the origin).
#include <benchmark/benchmark.h>

#include <tessar/pointarray.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace {

std::vector<dpoint3d> closedCircle(int32_t n)
{
    std::vector<dpoint3d> ring(static_cast<size_t>(n));
    for (int32_t i = 0; i + 1 < n; ++i) {
        // Clockwise, as the polygon functions like it.
        const double a = -2.0 * std::numbers::pi * i / (n - 1);
        ring[static_cast<size_t>(i)] = {5000.0 + 1000.0 * std::cos(a), 3000.0 + 1000.0 * std::sin(a), 100.0};
    }
    ring.back() = ring.front();
    return ring;
}

void SignedArea(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint3d> ring = closedCircle(n);
    double area = 0.0;
    for (auto _ : state) {
        tsPointArray_computeSimplePolygonAlgebricArea2d(ring.data(), n, &area);
        benchmark::DoNotOptimize(area);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(SignedArea)->RangeMultiplier(10)->Range(100, 1000000);

void Centroid(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint3d> ring = closedCircle(n);
    dpoint3d centroid{};
    for (auto _ : state) {
        tsPointArray_getCentroid(ring.data(), n, &centroid);
        benchmark::DoNotOptimize(centroid);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(Centroid)->RangeMultiplier(10)->Range(100, 1000000);

// A point inside, off the centre so that the ray meets slanted edges.
void PointInPolygon(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint3d> ring = closedCircle(n);
    const dpoint3d point{5123.4, 3210.9, 0.0};
    for (auto _ : state) {
        int32_t place = tsPointArray_isPointInsidePolygon(ring.data(), n, &point);
        benchmark::DoNotOptimize(place);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(PointInPolygon)->RangeMultiplier(10)->Range(100, 1000000);

}  // namespace
