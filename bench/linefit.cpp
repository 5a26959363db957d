// Line and plane fits at the sizes of survey work: a road edge of 10^2 to
// 10^5 shots with millimetres of error, and spot heights over a site of the
// same counts.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include <tessar/bestfit.h>

namespace {

double noise(int64_t k)
{
    return 0.004 * std::sin(1.7 * double(k) + 0.3);
}

// A road edge at slope 0.35 from a local origin, a shot every half metre.
std::vector<double> roadEdge(int64_t n)
{
    std::vector<double> observations;
    observations.reserve(static_cast<size_t>(n) * TESSAR_BESTFIT_OBSERVATION_SIZE);
    for (int64_t i = 0; i < n; ++i) {
        const double t = 0.5 * double(i);
        observations.insert(observations.end(), {120.0 + t, 0.01, 80.0 + 0.35 * t + noise(i), 0.01});
    }
    return observations;
}

// Spot heights on a square grid over a plane falling 2 % east, rising 1 % north.
std::vector<dpoint3d> spotHeights(int64_t n)
{
    std::vector<dpoint3d> points;
    points.reserve(static_cast<size_t>(n));
    const int64_t side = static_cast<int64_t>(std::ceil(std::sqrt(double(n))));
    for (int64_t i = 0; i < n; ++i) {
        const double x = 2.0 * double(i % side), y = 2.0 * double(i / side);
        points.push_back({x, y, 55.0 - 0.02 * x + 0.01 * y + noise(i)});
    }
    return points;
}

void LineFit(benchmark::State &state)
{
    const int32_t n = static_cast<int32_t>(state.range(0));
    const std::vector<double> observations = roadEdge(n);
    double x1, y1, x2, y2, error;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tsBestFit_lineCalc(&x1, &y1, &x2, &y2, &error, n, observations.data()));
        benchmark::DoNotOptimize(error);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

void PlaneFit(benchmark::State &state)
{
    const int32_t n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint3d> points = spotHeights(n);
    double cx, cy, cz, a, b, c, error;
    for (auto _ : state) {
        benchmark::DoNotOptimize(tsBestFit_planeCalc(&cx, &cy, &cz, &a, &b, &c, &error, n, points.data()));
        benchmark::DoNotOptimize(error);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

void PlaneFitWithoutError(benchmark::State &state)
{
    const int32_t n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint3d> points = spotHeights(n);
    dpoint3d centroid;
    double coefficients[3];
    for (auto _ : state) {
        benchmark::DoNotOptimize(tsPoint_computePlane(&centroid, coefficients, nullptr, points.data(), n));
        benchmark::DoNotOptimize(coefficients);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

}  // namespace

BENCHMARK(LineFit)->RangeMultiplier(10)->Range(100, 100000);
BENCHMARK(PlaneFit)->RangeMultiplier(10)->Range(100, 100000);
BENCHMARK(PlaneFitWithoutError)->RangeMultiplier(10)->Range(100, 100000);

BENCHMARK_MAIN();
