// Intersections of a design profile with a ground profile at the sizes of a
// road model: a long section of n vertices each, a metre apart, the design a
// gentle wave that crosses the rolling ground every few tens of metres.
// The full walk compares every pair of segments and is quadratic, so it runs
// to 10^4 vertices; the walk along a shared measure (the x of each vertex) is
// linear and runs to 10^5, as does a cross-section segment against one profile.
#include <benchmark/benchmark.h>

#include <tessar/polyline.h>

#include <cmath>
#include <vector>

namespace {

// The ground: a level rolling between about 94.5 and 105.5 m.
std::vector<dpoint2d> ground(int32_t n)
{
    std::vector<dpoint2d> pts(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i)
        pts[static_cast<size_t>(i)] = {double(i),
                                       100.0 + 5.0 * std::sin(i * 0.01) + 0.5 * std::sin(i * 0.37)};
    return pts;
}

// The design: vertices half a metre off the ground's, a long wave about 100 m.
std::vector<dpoint2d> design(int32_t n)
{
    std::vector<dpoint2d> pts(static_cast<size_t>(n));
    for (int32_t i = 0; i < n; ++i)
        pts[static_cast<size_t>(i)] = {i + 0.5, 100.0 + 4.0 * std::sin(i * 0.003)};
    return pts;
}

std::vector<double> measures(const std::vector<dpoint2d> &pts)
{
    std::vector<double> m;
    for (const dpoint2d &p : pts)
        m.push_back(p.x);
    return m;
}

// Result tables large enough for every meeting of the two profiles.
struct Results {
    explicit Results(size_t n) : pts(n), abs1(n), abs2(n), ov(2 * n), ovAbs1(2 * n), ovAbs2(2 * n) {}
    std::vector<dpoint2d> pts;
    std::vector<double> abs1, abs2;
    std::vector<dpoint2d> ov;
    std::vector<double> ovAbs1, ovAbs2;
    int32_t found = 0, count = 0, foundOverlap = 0, overlapCount = 0;
};

void runPolylines(benchmark::State &state, bool alongMeasure)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> d = design(n), g = ground(n);
    const std::vector<double> md = measures(d), mg = measures(g);
    Results r(static_cast<size_t>(n));
    const ParamIntersectionPolylignes param{d.data(), n, g.data(), n, 0.001, n, md.data(), mg.data()};
    for (auto _ : state) {
        (alongMeasure ? UTMAT_CalculerIntersectionPolylignePolyligneAvecAbscisses
                      : UTMAT_CalculerIntersectionPolylignePolyligne)(
            &param, &r.found, &r.count, r.pts.data(), r.abs1.data(), r.abs2.data(), &r.foundOverlap,
            &r.overlapCount, r.ov.data(), r.ovAbs1.data(), r.ovAbs2.data());
        benchmark::DoNotOptimize(r.count);
    }
    state.counters["meetings"] = r.count;
    state.SetItemsProcessed(state.iterations() * n);
}

void PolylinesAllPairs(benchmark::State &state)
{
    runPolylines(state, false);
}
BENCHMARK(PolylinesAllPairs)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond);

void PolylinesAlongMeasure(benchmark::State &state)
{
    runPolylines(state, true);
}
BENCHMARK(PolylinesAlongMeasure)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);

// A vertical cut through the whole profile, as a cross-section line does.
void SegmentAgainstProfile(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> g = ground(n);
    const dpoint2d cut[] = {{n / 2 + 0.25, 0.0}, {n / 2 + 0.25, 200.0}};
    Results r(64);
    for (auto _ : state) {
        UTMAT_CalculerIntersectionSegmentPolyligne(
            cut, g.data(), n, 0.001, 64, &r.found, &r.count, r.pts.data(), r.abs1.data(), r.abs2.data(),
            &r.foundOverlap, &r.overlapCount, r.ov.data(), r.ovAbs1.data(), r.ovAbs2.data());
        benchmark::DoNotOptimize(r.count);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(SegmentAgainstProfile)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond);

// The first meeting along the design, through the library's tables of 50.
void FirstMeeting(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<dpoint2d> d = design(n), g = ground(n);
    dpoint2d p{};
    double abs1 = 0.0;
    int32_t foundPoint = 0, foundOverlap = 0;
    for (auto _ : state) {
        UTMAT_CalculerPremiereIntersectionPolyligneAvecPolyligne(d.data(), n, g.data(), n, 0.001, &p, &abs1,
                                                                 nullptr, &foundPoint, &foundOverlap);
        benchmark::DoNotOptimize(abs1);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(FirstMeeting)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMillisecond);

}  // namespace
