// Polyline queries at the sizes of a road model: long-section profiles of 10^2
// to 10^6 vertices (a rolling ground line every metre), with the bounding box,
// the growth check, the interval search, a point on the polyline and against
// it, ordinates of a sorted run of abscissas, the nearest ordinate, levels
// along a chain, the purge of repeated vertices and the area of a closed
// outline.
#include <benchmark/benchmark.h>

#include <tessar/memory.h>
#include <tessar/polyline.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// A ground line: x every metre, a level rolling between 95 and 105 m.
std::vector<dpoint2d> groundProfile(int32_t n)
{
    std::vector<dpoint2d> pts(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i)
        pts[static_cast<size_t>(i)] = {static_cast<double>(i), 100.0 + 5.0 * std::sin(i * 0.01)};
    return pts;
}

// The same profile closed down to a datum at 90 m: a cut-and-fill outline.
std::vector<dpoint2d> closedOutline(int32_t n)
{
    std::vector<dpoint2d> pts = groundProfile(n - 3);
    pts.push_back({pts.back().x, 90.0});
    pts.push_back({0.0, 90.0});
    pts.push_back(pts.front());
    return pts;
}

void BoundingBox(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> pts = groundProfile(n);
    dpoint2d lo{}, hi{};
    for (auto _ : state) {
        UTMAT_RecupererEnglobantPolyligne(pts.data(), n, &lo, &hi);
        benchmark::DoNotOptimize(lo);
        benchmark::DoNotOptimize(hi);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BoundingBox)->RangeMultiplier(10)->Range(100, 1000000);

void GrowthCheck(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> pts = groundProfile(n);
    int32_t croissant = 0;
    for (auto _ : state) {
        UTMAT_VerifierCroissanceAbscissePolyligne(pts.data(), n, 0.001, &croissant);
        benchmark::DoNotOptimize(croissant);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(GrowthCheck)->RangeMultiplier(10)->Range(100, 1000000);

// One search per iteration, at an abscissa between two vertices.
void IntervalSearch(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> pts = groundProfile(n);
    int32_t index = 0, found = 0;
    const double x = n * 0.7 + 0.5;
    for (auto _ : state) {
        UTMAT_RecupererDebutIntervalleContenantAbscisse(pts.data(), 0, n, x, &index, &found);
        benchmark::DoNotOptimize(index);
    }
}
BENCHMARK(IntervalSearch)->RangeMultiplier(10)->Range(100, 1000000);

// A point inside the last segment: every segment is compared before it.
void PointOnPolyline(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> pts = groundProfile(n);
    const dpoint2d &a = pts[static_cast<size_t>(n - 2)];
    const dpoint2d &b = pts[static_cast<size_t>(n - 1)];
    const dpoint2d p{(a.x + b.x) / 2, (a.y + b.y) / 2};
    int32_t i1 = 0, i2 = 0;
    for (auto _ : state) {
        UTMAT_PointSurPolyligne(pts.data(), n, &p, 0.001, &i1, &i2);
        benchmark::DoNotOptimize(i1);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(PointOnPolyline)->RangeMultiplier(10)->Range(100, 1000000);

// A point over the last segment of the whole run.
void PositionAgainstRun(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> pts = groundProfile(n);
    const dpoint2d p{n - 1.5, 120.0};
    int32_t position = 0;
    for (auto _ : state) {
        UTMAT_ComparerPositionPointPolyligne(pts.data(), n, &p, 0, n - 1, 0.001, &position);
        benchmark::DoNotOptimize(position);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(PositionAgainstRun)->RangeMultiplier(10)->Range(100, 1000000);

// Levels at n abscissas offset by half a metre: one forward merge.
void OrdinatesOfSortedAbscissas(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> pts = groundProfile(n);
    std::vector<dpoint2d> xy(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i)
        xy[static_cast<size_t>(i)] = {i + 0.5, 0.0};
    std::vector<int32_t> done(static_cast<size_t>(n));
    int32_t last = 0;
    for (auto _ : state) {
        UTMAT_CalculerTableauYSurPolyligne(pts.data(), n, xy.data(), done.data(), n, 0, 0.001, &last);
        benchmark::DoNotOptimize(xy.data());
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(OrdinatesOfSortedAbscissas)->RangeMultiplier(10)->Range(100, 1000000);

// Ten elements, each against every segment.
void NearestOrdinates(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> pts = groundProfile(n);
    std::vector<dpoint2d> xy(10);
    for (int32_t i = 0; i < 10; ++i)
        xy[static_cast<size_t>(i)] = {(n - 1) * i / 10.0 + 0.25, 100.0};
    std::vector<int32_t> done(10);
    for (auto _ : state) {
        UTMAT_CalculerTableauYSurPolylignePlusProche(pts.data(), n, xy.data(), done.data(), 10, 0.001);
        benchmark::DoNotOptimize(xy.data());
    }
    state.SetItemsProcessed(state.iterations() * n * 10);
}
BENCHMARK(NearestOrdinates)->RangeMultiplier(10)->Range(100, 1000000);

// A chain with every fourth level known: cubic runs of three points.
void LevelsAlongChain(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> ground = groundProfile(n);
    std::vector<dpoint3d> chain(static_cast<size_t>(n));
    std::vector<int32_t> known(static_cast<size_t>(n));
    for (size_t i = 0; i < chain.size(); ++i) {
        chain[i] = {ground[i].x, 0.0, ground[i].y};
        known[i] = i % 4 == 0 ? 1 : 0;
    }
    int32_t status = 0;
    for (auto _ : state) {
        UTMAT_CalculerInterpolationCurviligneDuZ(chain.data(), n, known.data(), &status);
        benchmark::DoNotOptimize(chain.data());
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(LevelsAlongChain)->RangeMultiplier(10)->Range(100, 1000000);

// One doubled vertex in a hundred. Each removal moves the tail of the table,
// so the work grows with n times the number of repetitions; the refill of the
// table is timed apart.
void Purge(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    std::vector<dpoint2d> doubled;
    for (const dpoint2d &p : groundProfile(n)) {
        doubled.push_back(p);
        if (doubled.size() % 100 == 0) doubled.push_back(p);
    }
    for (auto _ : state) {
        state.PauseTiming();
        dpoint2d *table = nullptr;
        auto count = static_cast<int32_t>(doubled.size());
        MEM_CreerTableau(reinterpret_cast<void **>(&table), sizeof(dpoint2d), count);
        std::copy(doubled.begin(), doubled.end(), table);
        state.ResumeTiming();
        UTMAT_PurgerPolyligne(&table, &count, 0.001);
        state.PauseTiming();
        MEM_LibererTableau(reinterpret_cast<void **>(&table));
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(Purge)->RangeMultiplier(10)->Range(100, 1000000);

void AreaOfOutline(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> pts = closedOutline(n);
    double area = 0.0;
    for (auto _ : state) {
        UTMAT_CalculerSurfacePolygone(pts.data(), n, &area);
        benchmark::DoNotOptimize(area);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(AreaOfOutline)->RangeMultiplier(10)->Range(100, 1000000);

// Two crossing segments compared, a million times over.
void CompareTwoSegments(benchmark::State &state)
{
    const dpoint2d s1[] = {{0, 0}, {10, 10}};
    const dpoint2d s2[] = {{2, 4}, {8, 4}};
    int32_t found = 0, relStart = 0, relEnd = 0, flags = 0, code = 0;
    dpoint2d inter{};
    double xs = 0, xe = 0, y1s = 0, y1e = 0, y2s = 0, y2e = 0;
    for (auto _ : state) {
        UTMAT_ComparerPosition2Segments(s1, s2, &found, &inter, &relStart, &relEnd, &xs, &xe, &y1s, &y1e,
                                        &y2s, &y2e, &flags, &code);
        benchmark::DoNotOptimize(inter);
    }
}
BENCHMARK(CompareTwoSegments);

}  // namespace
