// String library at the sizes of a road model's point files: selecting point
// names by wild card (both case senses), and replace-all over a field book's
// text. Replace-all works in place, so each iteration first restores the text
// from a pristine copy; that copy is part of the measured time.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <tessar/text.h>

namespace {

// Point names as a survey of a road gives them: traverse points, centre-line
// and edge points, benchmarks, in a repeating mix.
std::vector<std::string> pointNames(int64_t n)
{
    static const char *const prefixes[] = {"P", "CL", "EP", "BM", "p", "TN"};
    std::vector<std::string> names;
    names.reserve(static_cast<size_t>(n));
    char name[32];
    for (int64_t i = 0; i < n; ++i) {
        std::snprintf(name, sizeof name, "%s%06lld", prefixes[i % 6], static_cast<long long>(i));
        names.emplace_back(name);
    }
    return names;
}

void matchAll(benchmark::State &state, const char *patternText, bool caseBlind)
{
    const auto names = pointNames(state.range(0));
    char pattern[64];
    std::strcpy(pattern, patternText);
    for (auto _ : state) {
        int64_t matches = 0;
        for (const std::string &name : names) {
            const int32_t r = caseBlind ? tsString_strcmpiWildCardMatch(name.c_str(), pattern)
                                        : tsString_strcmpWildCardMatch(name.c_str(), pattern);
            matches += r == 0;
        }
        benchmark::DoNotOptimize(matches);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Centre-line points whose number ends in 0 or 5 and has a 1 in the tens.
void WildCardMatch(benchmark::State &state)
{
    matchAll(state, "CL*1[05]", false);
}
BENCHMARK(WildCardMatch)->RangeMultiplier(10)->Range(100, 1000000);

// Traverse points in either case, by a fixed-width pattern.
void WildCardMatchCaseBlind(benchmark::State &state)
{
    matchAll(state, "p00??[!9]?", true);
}
BENCHMARK(WildCardMatchCaseBlind)->RangeMultiplier(10)->Range(100, 1000000);

// A field book of n lines: name, x, y, z, code.
std::string fieldBook(int64_t n)
{
    std::string text;
    char line[96];
    for (int64_t i = 0; i < n; ++i) {
        std::snprintf(line, sizeof line, "P%06lld,%.3f,%.3f,%.3f,road cl\n", static_cast<long long>(i),
                      1000.0 + 2.5 * double(i), 2000.0 + 0.125 * double(i), 100.0 + 0.01 * double(i));
        text += line;
    }
    return text;
}

void replaceAll(benchmark::State &state, const char *find, const char *replacement, bool caseBlind)
{
    const std::string pristine = fieldBook(state.range(0));
    std::vector<char> text(pristine.size() + 1);
    for (auto _ : state) {
        std::memcpy(text.data(), pristine.c_str(), pristine.size() + 1);
        const int32_t status = caseBlind ? tsString_replaceAllSubstringsi(text.data(), find, replacement)
                                         : tsString_replaceAllSubstrings(text.data(), find, replacement);
        benchmark::DoNotOptimize(status);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(pristine.size()));
}

// Separators changed in place: the replacement has the length of what it
// replaces, so nothing moves.
void ReplaceAllSeparators(benchmark::State &state)
{
    replaceAll(state, ",", ";", false);
}
BENCHMARK(ReplaceAllSeparators)->RangeMultiplier(10)->Range(100, 1000000);

// A code word shortened, found in any case: every replacement moves the rest
// of the text left, so the cost grows with lines times text length.
void ReplaceAllCodeWordCaseBlind(benchmark::State &state)
{
    replaceAll(state, "ROAD", "RD", true);
}
BENCHMARK(ReplaceAllCodeWordCaseBlind)->RangeMultiplier(10)->Range(100, 10000);

}  // namespace
