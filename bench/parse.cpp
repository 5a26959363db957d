// Value parsing at the sizes of a road model's input: a mix of typed values
// (plain numbers, lengths in feet and inches, slopes, sexagesimal angles,
// bearings, stations with regions) read through the entry of each kind.
// The figure is values parsed per second.
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <tessar/parse.h>

namespace {

enum class Kind { Number, Linear, Slope, Angle, Direction, Station };

struct Typed {
    Kind kind;
    std::u16string text;
};

// One field book line of each kind, varied by its index.
std::vector<Typed> fieldBook(int64_t n)
{
    std::vector<Typed> book;
    book.reserve(static_cast<std::size_t>(n));
    auto num = [](int64_t i, int mod) {
        const std::string s = std::to_string(i % mod);
        return std::u16string(s.begin(), s.end());
    };
    for (int64_t i = 0; i < n; ++i) {
        switch (i % 6) {
        case 0:
            book.push_back({Kind::Number, num(i, 997) + u".25 * (3 + 4)"});
            break;
        case 1:
            book.push_back({Kind::Linear, num(i, 40) + u"' " + num(i, 12) + u"\""});
            break;
        case 2:
            book.push_back({Kind::Slope, num(i, 9) + u".5%"});
            break;
        case 3:
            book.push_back({Kind::Angle, num(i, 360) + u"\u00B0" + num(i, 60) + u"'15.5\""});
            break;
        case 4:
            book.push_back({Kind::Direction, u"N " + num(i, 90) + u" 30 00 E"});
            break;
        default:
            book.push_back({Kind::Station, num(i, 500) + u"+34.56 R 2"});
            break;
        }
    }
    return book;
}

int32_t parse(const Typed &t, double &value)
{
    int32_t region = 0;
    switch (t.kind) {
    case Kind::Number:
        return tsParse_stringToDouble(&value, t.text.c_str());
    case Kind::Linear:
        return tsParse_stringToLinear(&value, t.text.c_str(), 1.0);
    case Kind::Slope:
        return tsParse_stringToSlope(&value, t.text.c_str(), 3, 1.0);
    case Kind::Angle:
        return tsParse_stringToAngle(&value, t.text.c_str(), 3);
    case Kind::Direction:
        return tsParse_stringToDirection(&value, t.text.c_str(), 3, 3);
    case Kind::Station:
        return tsParse_stringToStationByIndex(&value, &region, t.text.c_str(), 1.0);
    }
    return -1;
}

void BM_ParseFieldBook(benchmark::State &state)
{
    const auto book = fieldBook(state.range(0));
    for (auto _ : state) {
        double sum = 0.0;
        int64_t failures = 0;
        for (const Typed &t : book) {
            double value = 0.0;
            failures += parse(t, value) != 0;
            sum += value;
        }
        benchmark::DoNotOptimize(sum);
        if (failures != 0) state.SkipWithError("a typed value failed to parse");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ParseFieldBook)->RangeMultiplier(100)->Range(100, 1000000)->Unit(benchmark::kMillisecond);

}  // namespace
