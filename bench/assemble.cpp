// Assembly of strings at the sizes of a road model: a survey of 8 parallel
// kerb and edge lines, 2 m apart and weaving gently, cut into 10^3 to 10^5
// loose segments 5 m long. The segments come shuffled, half of them turned
// round, and each starts up to 1 cm from where the one before it ended.
// Timed: joining the segments into chains (the lists are released outside
// the timing); connecting the 8 lines as whole strings into one walk; and
// the whole assembly, joining and then merging the chains into one list.
#include <benchmark/benchmark.h>

#include <tessar/linestring.h>
#include <tessar/memory.h>
#include <tessar/point.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr int32_t kRows = 8;
constexpr double kStep = 5.0;
constexpr double kTol = 0.05;

dpoint3d rowPoint(int32_t row, int32_t i)
{
    const double x = 1000.0 + kStep * i;
    return {x, 2000.0 + 2.0 * row + 0.3 * std::sin(x / 40.0), 50.0 + 0.02 * x};
}

// n loose segments, n / kRows a row, in shuffled order and direction.
std::vector<tsLine> looseSegments(int32_t n)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> jitter(-0.005, 0.005);
    std::vector<tsLine> lines;
    const int32_t perRow = n / kRows;
    for (int32_t row = 0; row < kRows; ++row) {
        for (int32_t i = 0; i < perRow; ++i) {
            dpoint3d p = rowPoint(row, i);
            dpoint3d q = rowPoint(row, i + 1);
            p.x += jitter(random);
            p.y += jitter(random);
            if (random() % 2) std::swap(p, q);
            tsLine line{};
            tsLine_createBy2points(&line, &p, &q);
            lines.push_back(line);
        }
    }
    std::shuffle(lines.begin(), lines.end(), random);
    return lines;
}

void releaseLists(tsLinkedList **lists, int32_t count)
{
    for (int32_t i = 0; i < count; ++i)
        tsLinkedList_destroy(&lists[i]);
    tsMem_free(lists);
}

void JoinSegments(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<tsLine> lines = looseSegments(n);
    int32_t count = 0;
    for (auto _ : state) {
        tsLinkedList **lists = nullptr;
        tsJoinLines_linesDline3d(static_cast<int32_t>(lines.size()), lines.data(), kTol, &count, &lists);
        state.PauseTiming();
        releaseLists(lists, count);
        state.ResumeTiming();
    }
    state.counters["chains"] = count;
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(JoinSegments)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMicrosecond);

void ConnectStrings(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    std::vector<std::vector<dpoint3d>> rows(kRows);
    std::vector<tsLineString> strings;
    std::vector<tsLineString *> pointers;
    for (int32_t row = 0; row < kRows; ++row) {
        for (int32_t i = 0; i <= n / kRows; ++i)
            rows[static_cast<size_t>(row)].push_back(rowPoint(row, i));
        strings.push_back({rows[static_cast<size_t>(row)].data(), n / kRows + 1});
    }
    for (tsLineString &string : strings)
        pointers.push_back(&string);
    int32_t status = 0, closed = 0, pointCount = 0, orderCount = 0;
    double length = 0.0;
    dpoint3d *points = nullptr;
    int32_t *order = nullptr;
    for (auto _ : state) {
        tsConnectLines_dpoint3dLineStrings(pointers.data(), kRows, &status, &closed, &length, &points,
                                           &pointCount, &order, &orderCount);
        benchmark::DoNotOptimize(points);
    }
    state.counters["strings"] = orderCount;
    tsMem_free(points);
    tsMem_free(order);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(ConnectStrings)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMicrosecond);

void AssembleSurvey(benchmark::State &state)
{
    const auto n = static_cast<int32_t>(state.range(0));
    const std::vector<tsLine> lines = looseSegments(n);
    int32_t count = 0;
    size_t merged = 0;
    for (auto _ : state) {
        tsLinkedList **lists = nullptr;
        tsLinkedList *walk = nullptr;
        int32_t status = 0, closed = 0;
        double length = 0.0;
        tsJoinLines_linesDline3d(static_cast<int32_t>(lines.size()), lines.data(), kTol, &count, &lists);
        tsConnectLines_dline3dAssembleLinkedListLineStrings(lists, count, &walk, &status, &closed, &length);
        state.PauseTiming();
        merged = tsLinkedList_size(walk);
        tsLinkedList_destroy(&walk);
        releaseLists(lists, count);
        state.ResumeTiming();
    }
    state.counters["chains"] = count;
    state.counters["elements"] = static_cast<double>(merged);
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(AssembleSurvey)->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMicrosecond);

}  // namespace
