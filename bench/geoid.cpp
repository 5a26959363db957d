// Geoid look-ups on a synthetic regional grid: 2 deg x 2 deg at a spacing of
// one arc-minute (121 x 121 nodes), written to a temporary directory when the
// benchmark starts. Every interpolated undulation reads nine values from the
// file (a seek to the start, a seek to the value and a read each).
#include <tessar/geoid.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

constexpr double kSouth = 45.0;
constexpr double kWest = 6.0;
constexpr double kStep = 1.0 / 60.0;
constexpr std::int32_t kNodes = 121;

template <class T> void put(std::ofstream &out, T value)
{
    out.write(reinterpret_cast<const char *>(&value), sizeof value);
}

// The grid file, created once and removed at exit.
class GridFile
{
  public:
    GridFile()
    {
        char pattern[] = "/tmp/tessar_geoid_bench_XXXXXX";
        if (mkdtemp(pattern) == nullptr) std::abort();
        dir_ = pattern;
        path_ = dir_ + "/g2003u01.bin";
        std::ofstream out(path_, std::ios::binary);
        put(out, kSouth);
        put(out, kWest);
        put(out, kStep);
        put(out, kStep);
        put(out, kNodes);
        put(out, kNodes);
        put<std::int32_t>(out, 1);
        // A smooth undulation surface of about 48 m with a few metres of relief.
        for (std::int32_t r = 0; r < kNodes; ++r)
            for (std::int32_t c = 0; c < kNodes; ++c)
                put(out, static_cast<float>(48.0 + 2.5 * std::sin(r * 0.05) * std::cos(c * 0.07) + 0.01 * c));
    }
    ~GridFile() { std::filesystem::remove_all(dir_); }
    const std::string &path() const { return path_; }
    const std::string &dir() const { return dir_; }

  private:
    std::string dir_;
    std::string path_;
};

const GridFile &gridFile()
{
    static const GridFile file;
    return file;
}

struct Point {
    double lat, lon;
};

// Points spread over the grid by a fixed linear congruential sequence, so
// that successive look-ups land in different cells.
std::vector<Point> points(bool onNodes)
{
    std::vector<Point> out;
    std::uint64_t state = 12345;
    const auto next = [&] {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return static_cast<double>(state >> 11) / 9007199254740992.0;  // [0, 1)
    };
    while (out.size() < 4096) {
        double u = next() * (kNodes - 1);
        double v = next() * (kNodes - 1);
        const Point p{kSouth + u * kStep, kWest + v * kStep};
        if (onNodes) {
            // Keep only nodes that the library recognises exactly as nodes:
            // with a spacing of 1/60 the cell index of some nodes rounds down.
            u = std::floor(u);
            v = std::floor(v);
            const Point node{kSouth + u * kStep, kWest + v * kStep};
            if (std::trunc((node.lat - kSouth) / kStep) != u || std::trunc((node.lon - kWest) / kStep) != v)
                continue;
            out.push_back(node);
        } else {
            out.push_back(p);
        }
    }
    return out;
}

void lookUps(benchmark::State &state, bool onNodes)
{
    if (tsGeoid_initModelByFile(gridFile().path().c_str()) != 0) {
        state.SkipWithError("grid file did not open");
        return;
    }
    const std::vector<Point> pts = points(onNodes);
    std::size_t k = 0;
    for (auto _ : state) {
        double n = 0.0;
        const Point &p = pts[k++ & 4095];
        benchmark::DoNotOptimize(tsGeoid_getUndulationAtLatLong(&n, p.lat, p.lon, 1));
        benchmark::DoNotOptimize(n);
    }
    state.SetItemsProcessed(state.iterations());
    tsGeoid_closeModel();
}

void BM_UndulationInterpolated(benchmark::State &state)
{
    lookUps(state, false);
}
BENCHMARK(BM_UndulationInterpolated);

void BM_UndulationOnNode(benchmark::State &state)
{
    lookUps(state, true);
}
BENCHMARK(BM_UndulationOnNode);

// Opening by family search: one existing file among the eight candidates.
void BM_InitModelByGeoid(benchmark::State &state)
{
    const std::string &dir = gridFile().dir();
    for (auto _ : state)
        benchmark::DoNotOptimize(tsGeoid_initModelByGeoid(2, dir.c_str(), 46.0, 7.0, 1));
    state.SetItemsProcessed(state.iterations());
    tsGeoid_closeModel();
}
BENCHMARK(BM_InitModelByGeoid);

void BM_BiQuadraticFit(benchmark::State &state)
{
    double t = 0.25;
    for (auto _ : state) {
        benchmark::DoNotOptimize(t);
        benchmark::DoNotOptimize(tsGeoid_biQuadraticFit(t, 47.5, 48.25, 48.0));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_BiQuadraticFit);

}  // namespace
