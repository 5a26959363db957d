// Least-squares fits at the sizes of survey work: plane transforms from
// control pairs, a circle from kerb points and a vertical curve from levels,
// each for 10 to 10 000 control points or observations, errors of a few
// millimetres on the data.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <vector>

#include <tessar/bestfit.h>

namespace {

double noise(int64_t k)
{
    return 0.004 * std::sin(1.7 * double(k) + 0.3);
}

// Control pairs on a 1 km site, mapped by a slight perspective onto a grid.
std::vector<double> controlPairs(int64_t n)
{
    std::vector<double> pairs;
    pairs.reserve(static_cast<size_t>(n) * TESSAR_BESTFIT_PAIR_SIZE);
    for (int64_t i = 0; i < n; ++i) {
        const double x = 1000.0 * std::fmod(0.618034 * double(i), 1.0);
        const double y = 1000.0 * std::fmod(0.414214 * double(i) + 0.1, 1.0);
        const double D = 2e-6 * x - 1e-6 * y + 1.0;
        const double X = (0.9996 * x - 0.0290 * y + 512300.0) / D + noise(2 * i);
        const double Y = (0.0290 * x + 0.9996 * y + 4123400.0) / D + noise(2 * i + 1);
        pairs.insert(pairs.end(), {x, 0.01, y, 0.01, X, 0.01, Y, 0.01});
    }
    return pairs;
}

void Similarity(benchmark::State &state)
{
    const std::vector<double> pairs = controlPairs(state.range(0));
    double p[4], variance, rms;
    for (auto _ : state)
        benchmark::DoNotOptimize(tsBestFit_transform2d(&p[0], &p[1], &p[2], &p[3], &variance, &rms,
                                                       static_cast<int32_t>(state.range(0)), pairs.data()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Similarity)->RangeMultiplier(10)->Range(10, 10000);

void Affine(benchmark::State &state)
{
    const std::vector<double> pairs = controlPairs(state.range(0));
    double p[6], variance, rms;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            tsBestFit_transformAffine2d(&p[0], &p[1], &p[2], &p[3], &p[4], &p[5], &variance, &rms,
                                        static_cast<int32_t>(state.range(0)), pairs.data()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Affine)->RangeMultiplier(10)->Range(10, 10000);

void Projective(benchmark::State &state)
{
    const std::vector<double> pairs = controlPairs(state.range(0));
    double p[8], variance, rms;
    for (auto _ : state)
        benchmark::DoNotOptimize(
            tsBestFit_transformProjective2d(&p[0], &p[1], &p[2], &p[3], &p[4], &p[5], &p[6], &p[7], &variance,
                                            &rms, static_cast<int32_t>(state.range(0)), pairs.data()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(Projective)->RangeMultiplier(10)->Range(10, 10000);

// A kerb of radius 14 m on a national grid, surveyed over 300 degrees. The
// fit works on the array in place, so each run starts from a fresh copy.
void Circle(benchmark::State &state)
{
    const int64_t n = state.range(0);
    std::vector<double> kerb;
    for (int64_t i = 0; i < n; ++i) {
        const double t = 5.2 * double(i) / double(n);
        const double r = 14.0 + noise(i);
        kerb.insert(kerb.end(), {512345.678 + r * std::cos(t), 0.005, 4123456.789 + r * std::sin(t), 0.005});
    }
    std::vector<double> work(kerb.size());
    double y, x, r;
    for (auto _ : state) {
        std::memcpy(work.data(), kerb.data(), kerb.size() * sizeof(double));
        benchmark::DoNotOptimize(tsBestFit_horzCurveCalc(&y, &x, &r, static_cast<int32_t>(n), work.data()));
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(Circle)->RangeMultiplier(10)->Range(10, 10000);

// Levels along a 300 m crest, chainages with 1 mm and levels with 5 mm sigma.
void VerticalCurve(benchmark::State &state)
{
    const int64_t n = state.range(0);
    std::vector<double> levels;
    for (int64_t i = 0; i < n; ++i) {
        const double t = 300.0 * double(i) / double(n - 1);
        levels.insert(levels.end(), {2340.0 + t, 0.001, 82.4 + 0.025 * t - 1.4e-4 * t * t + noise(i), 0.005});
    }
    double a, b, c, g0, g1, L, k, se;
    for (auto _ : state)
        benchmark::DoNotOptimize(tsBestFit_vertCurveCalc(&a, &b, &c, &g0, &g1, &L, &k, &se,
                                                         static_cast<int32_t>(n), levels.data()));
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(VerticalCurve)->RangeMultiplier(10)->Range(10, 10000);

}  // namespace
