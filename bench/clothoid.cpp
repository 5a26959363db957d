// Points on a clothoid by each series, and the shift searches of the
// conversions: a design case that meets its target in a few dozen halvings,
// and a target no clothoid in the search interval reaches, which runs all of
// the search's 5000 halvings.
#include <tessar/clothoid.h>
#include <tessar/frame.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace {

// A road transition: R = 400 m reached after L = 120 m, A = sqrt(48000),
// sampled every 0.12 m along its length (tau up to 0.15).
constexpr double kRadius = 400.0;
constexpr double kLength = 120.0;
constexpr int kStations = 1000;

void spiralPoints(benchmark::State &state, int32_t formula, double lengthOverRadius)
{
    const double L = lengthOverRadius * kRadius;
    const double A = std::sqrt(kRadius * L);
    std::vector<double> stations(kStations);
    for (int i = 0; i < kStations; ++i)
        stations[i] = L * (i + 1) / kStations;
    for (auto _ : state) {
        for (double s : stations) {
            double x = 0.0, y = 0.0, c = 0.0, sn = 0.0;
            tsMath_calculateSpiralPointByDistanceAndOffset(&x, &y, &c, &sn, A, s, 1.75, formula);
            benchmark::DoNotOptimize(x);
            benchmark::DoNotOptimize(y);
            benchmark::DoNotOptimize(c);
            benchmark::DoNotOptimize(sn);
        }
    }
    state.SetItemsProcessed(state.iterations() * kStations);
}

void BM_SpiralPointShortForm(benchmark::State &state)
{
    spiralPoints(state, 1, kLength / kRadius);
}
BENCHMARK(BM_SpiralPointShortForm);

void BM_SpiralPointLongForm(benchmark::State &state)
{
    spiralPoints(state, 2, kLength / kRadius);
}
BENCHMARK(BM_SpiralPointLongForm);

// Long form beyond its threshold (tau from 3.5 to 7): the far-field branch.
void BM_SpiralPointLongFormFarField(benchmark::State &state)
{
    const double A = 100.0;
    std::vector<double> stations(kStations);
    for (int i = 0; i < kStations; ++i)
        stations[i] = A * std::sqrt(2.0 * (3.5 + 3.5 * i / kStations));
    for (auto _ : state) {
        for (double s : stations) {
            double x = 0.0, y = 0.0;
            tsMath_calculateSpiralPointByDistanceAndOffset(&x, &y, nullptr, nullptr, A, s, 0.0, 2);
            benchmark::DoNotOptimize(x);
            benchmark::DoNotOptimize(y);
        }
    }
    state.SetItemsProcessed(state.iterations() * kStations);
}
BENCHMARK(BM_SpiralPointLongFormFarField);

// The kernel's point function (series chosen by the kernel's setting).
void BM_KernelSpiralPoint(benchmark::State &state)
{
    UTMAT_SetVelloraSpiralFormula();
    const double A = std::sqrt(kRadius * kLength);
    for (auto _ : state) {
        for (int i = 1; i <= kStations; ++i) {
            dpoint2d point, tangent;
            UTMAT_CalculerPosPointArcClotAbscisse(A, kLength * i / kStations, 0.0, &point, &tangent);
            benchmark::DoNotOptimize(point);
            benchmark::DoNotOptimize(tangent);
        }
    }
    state.SetItemsProcessed(state.iterations() * kStations);
}
BENCHMARK(BM_KernelSpiralPoint);

// A from R = 400 and the shift p = 1.5 of the transition (code 5): the
// typical design question, answered in a few dozen halvings.
void BM_SolveParameterFromRadiusAndShift(benchmark::State &state)
{
    UTMAT_SetVelloraSpiralFormula();
    for (auto _ : state) {
        double A = 0.0;
        UTMAT_CalculerParametreClot(5, kRadius, 1.5, &A);
        benchmark::DoNotOptimize(A);
    }
}
BENCHMARK(BM_SolveParameterFromRadiusAndShift);

// L from A and p (code 9), the same transition.
void BM_SolveLengthFromParameterAndShift(benchmark::State &state)
{
    UTMAT_SetVelloraSpiralFormula();
    const double A = std::sqrt(kRadius * kLength);
    for (auto _ : state) {
        double L = 0.0;
        UTMAT_CalculerParametreClot(9, A, 1.5, &L);
        benchmark::DoNotOptimize(L);
    }
}
BENCHMARK(BM_SolveLengthFromParameterAndShift);

// A from tau = 1 and p = 1e9 (code 6): even A = 1e8, the top of the search,
// gives a shift of about 1e7, so the target is never met and every one of the
// 5000 halvings is made.
void BM_SolveParameterUnreachableShift(benchmark::State &state)
{
    UTMAT_SetVelloraSpiralFormula();
    for (auto _ : state) {
        double A = 0.0;
        UTMAT_CalculerParametreClot(6, 1.0, 1e9, &A);
        benchmark::DoNotOptimize(A);
    }
}
BENCHMARK(BM_SolveParameterUnreachableShift);

}  // namespace
