// Dense inversion at the sizes of the least-squares fits (a plane transform
// has 4 to 6 unknowns, a curve or profile fit up to a few hundred), the
// normal-equation product that precedes it, and transforms applied to the
// vertices of a road model (10^2 to 10^6 points).
#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <vector>

#include <tessar/transform.h>

namespace {

// A symmetric positive definite matrix like a fit's normal equations:
// N = J^T J / n + I for a random J, column-major.
std::vector<double> normalMatrix(int32_t n)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::vector<double> J(static_cast<size_t>(n) * n);
    for (double &v : J)
        v = uniform(random);
    std::vector<double> N(J.size());
    for (int32_t j = 0; j < n; ++j)
        for (int32_t i = 0; i < n; ++i) {
            double s = i == j ? 1.0 : 0.0;
            for (int32_t k = 0; k < n; ++k)
                s += J[static_cast<size_t>(i) * n + k] * J[static_cast<size_t>(j) * n + k] / n;
            N[static_cast<size_t>(j) * n + i] = s;
        }
    return N;
}

// Each iteration restores the matrix (an n^2 copy) and inverts it (n^3).
void InvertMatrix(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<double> N = normalMatrix(n);
    tsMatrix M{0, 0, nullptr};
    tsMatrix_memMatrix(&M, n, n);
    for (auto _ : state) {
        std::memcpy(M.data, N.data(), N.size() * sizeof(double));
        benchmark::DoNotOptimize(tsMatrix_invertMatrix(&M));
        benchmark::ClobberMemory();
    }
    tsMatrix_freeMatrix(&M);
    state.counters["n"] = n;
}
BENCHMARK(InvertMatrix)->Arg(4)->Arg(6)->Arg(10)->Arg(20)->Arg(50)->Arg(100)->Arg(200);

// N = J^T J for J of 4 n observations by n unknowns, through the transposed
// product of the fits.
void NormalEquations(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    tsMatrix J{0, 0, nullptr};
    tsMatrix_memMatrix(&J, 4 * n, n);
    std::mt19937 random(11);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    for (int64_t k = 0; k < static_cast<int64_t>(4) * n * n; ++k)
        J.data[k] = uniform(random);
    for (auto _ : state) {
        tsMatrix N{0, 0, nullptr};
        tsMatrix_multMatrix(&N, 1, &J, 0, &J);
        benchmark::DoNotOptimize(N.data);
        tsMatrix_freeMatrix(&N);
    }
    tsMatrix_freeMatrix(&J);
}
BENCHMARK(NormalEquations)->Arg(4)->Arg(20)->Arg(50)->Arg(200);

tsTransform siteTransform()
{
    tsTransform t;
    tsTransform_setIdentity(&t);
    tsTransform_setTranslation(&t, 500000.0, 4000000.0, 100.0);
    tsTransform_rotateByAngle2d(&t, 0.5235987755982988);
    tsTransform_scale(&t, 0.9996, 0.9996, 1.0);
    return t;
}

std::vector<dpoint3d> vertices(int64_t n)
{
    std::vector<dpoint3d> points(static_cast<size_t>(n));
    for (int64_t i = 0; i < n; ++i)
        points[static_cast<size_t>(i)] = dpoint3d{0.5 * double(i), 0.01 * double(i % 1000), 120.0};
    return points;
}

void MovePoints(benchmark::State &state)
{
    const tsTransform t = siteTransform();
    const std::vector<dpoint3d> in = vertices(state.range(0));
    std::vector<dpoint3d> out(in.size());
    for (auto _ : state) {
        for (size_t i = 0; i < in.size(); ++i)
            tsTransform_movePoint(&t, &out[i], &in[i]);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(MovePoints)->RangeMultiplier(10)->Range(100, 1000000);

void MovePointsInPlace(benchmark::State &state)
{
    const tsTransform t = siteTransform();
    std::vector<dpoint3d> points = vertices(state.range(0));
    for (auto _ : state) {
        for (dpoint3d &p : points)
            tsTransform_movePoint(&t, &p, &p);
        benchmark::DoNotOptimize(points.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(MovePointsInPlace)->Arg(1000000);

// Directions of a million segments, each through the copy of the transform
// without its translation.
void MoveDirections(benchmark::State &state)
{
    const tsTransform t = siteTransform();
    std::vector<dpoint3d> directions = vertices(state.range(0));
    for (auto _ : state) {
        for (dpoint3d &d : directions)
            tsTransform_moveDirection2d(&t, &d);
        benchmark::DoNotOptimize(directions.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(MoveDirections)->Arg(1000000);

}  // namespace
