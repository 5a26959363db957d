// Vertical profile fit: small long sections worked by hand through the four
// stages (controls, sweep, change-of-grade filter, curve sizing), the edges
// of the band, degenerate envelopes, the point-array form, a rolling long
// section checked against its own design, and the debug switch.
#include <tessar/bestfit.h>
#include <tessar/memory.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

constexpr int32_t kFail = 32768;

struct Ip {
    double station, level, length;
};
struct Fit {
    int32_t status;
    std::vector<Ip> ips;
};

struct Parameters {
    double upTol = 0.25, loTol = 0.25, hogK = 0, sagK = 0, vcMinimumLength = 0, cogFilter = 1.0;
    int32_t fixStartGrade = 0, fixEndGrade = 0, debug = 0;
};

Fit fitProfile(const std::vector<double> &stations, const std::vector<double> &levels, const Parameters &p)
{
    tsBestFit_verticalProfileInitialize(p.upTol, p.loTol, p.hogK, p.sagK, p.vcMinimumLength, p.cogFilter,
                                        p.fixStartGrade, p.fixEndGrade, p.debug);
    double *s = nullptr, *l = nullptr, *v = nullptr;
    int32_t count = -1;
    Fit fit{tsBestFit_verticalComputeProfile(&s, &l, &v, &count, stations.data(), levels.data(),
                                             static_cast<int32_t>(stations.size())),
            {}};
    for (int32_t i = 0; i < count; ++i)
        fit.ips.push_back({s[i], l[i], v[i]});
    tsMem_free(s), tsMem_free(l), tsMem_free(v);
    return fit;
}

void expectIps(const std::vector<Ip> &got, const std::vector<Ip> &expected, double tolerance = 1e-9)
{
    ASSERT_EQ(got.size(), expected.size());
    for (size_t i = 0; i < got.size(); ++i)
        EXPECT_TRUE(std::fabs(got[i].station - expected[i].station) <= tolerance &&
                    std::fabs(got[i].level - expected[i].level) <= tolerance &&
                    std::fabs(got[i].length - expected[i].length) <= tolerance)
            << "IP " << i + 1 << ": " << got[i].station << " " << got[i].level << " " << got[i].length;
}

std::vector<double> every(double step, int32_t n)
{
    std::vector<double> stations(n);
    for (int32_t i = 0; i < n; ++i)
        stations[i] = i * step;
    return stations;
}

// Ground that follows the polygon (0, 0), (300, 6), (700, 0), (1000, 3)
// exactly, every 20 m: +2 %, -1.5 %, +1 %.
std::vector<double> polygonLevels(const std::vector<double> &stations)
{
    std::vector<double> levels;
    for (double x : stations)
        levels.push_back(x <= 300 ? 0.02 * x : x <= 700 ? 6 - 0.015 * (x - 300) : 0.01 * (x - 700));
    return levels;
}

/* Worked long sections. Crest 0, 1, 2, 1, 0 at 0..40 m, band 0.25: the sweep
 * puts IPs at (10, 1) and (20, 2); the 1 % filter drops IP 10 (no change of
 * grade), IP 20 (+10 % to -10 %) stays. A crest curve L = 20 hogK raises the
 * IP by A L / 8 = 0.025 L. hogK 2: half of 40 is not more than the distance
 * 20, kept; hogK 3: L = 60 is cut to twice the back distance, 40. cogFilter
 * 0: a change of exactly 0 is not above it. cogFilter 50: the sweep steps
 * down by 0.1 until IP 20 stays. Filter off (-1): IP 10 stays with the
 * minimum length 4, IP 20 is cut to 10 and rises 0.2 * 10 / 8 = 0.25.
 * Zigzag, K 2: 40 m curves cut to the 20 m between IPs, each IP moved 0.5.
 * Polygon (+2 %, -1.5 %, +1 %): IP 300 crest 3.5 %, L = 105, up 0.459375;
 * IP 700 sag 2.5 %, L = 50, down 0.15625. A held start grade puts IP 300 on
 * the line through the first two levels (6), a held end grade IP 700 on the
 * line through the last two (0). */
// Lone stations: the fit is the level its band asks for (the middle, or the
// one bound that is not exactly -999.0) and (0, 0), the unset last control.
// A missing level with no band is no control: the fit starts after it. A
// station closer than 1 mm to the last IP moves it instead of adding one.
// Two IPs: a held start grade moves the last onto the line through the first
// two levels (1.5), a held end grade the first onto that of the last two.
// Backwards, 20, 10, 0: station 10 lies on no grade after an IP, reads 0.0
// and misses; the new IP goes first, and IP 20's forward distance -20 is
// exceeded by half its length 0, so that becomes its length.
TEST(VerticalProfile, WorkedLongSections)
{
    const std::vector<double> five = every(10, 5), crest{0, 1, 2, 1, 0}, sag{0, -1, -2, -1, 0};
    const std::vector<double> nine = every(10, 9), zigzag{0, 1, 2, 1, 0, 1, 2, 1, 0};
    const std::vector<double> long20 = every(20, 51), polygon = polygonLevels(long20);
    const std::vector<double> four = every(10, 4), flatTop{0, 0.5, 0.5, 0};
    const struct Row {
        const char *name;
        std::vector<double> stations, levels;
        Parameters p;  // upTol, loTol, hogK, sagK, vcMinimumLength, cogFilter, fixStart, fixEnd
        std::vector<Ip> expected;
        double tolerance = 1e-9;
    } rows[] = {
        // clang-format off
        {"crest hogK 1", five, crest, {0.25, 0.25, 1, 100}, {{0, 0, 0}, {20, 2.5, 20}, {40, 0, 0}}},
        {"crest hogK 2", five, crest, {0.25, 0.25, 2}, {{0, 0, 0}, {20, 3, 40}, {40, 0, 0}}},
        {"crest hogK 3", five, crest, {0.25, 0.25, 3}, {{0, 0, 0}, {20, 3, 40}, {40, 0, 0}}},
        {"crest cogFilter 0", five, crest, {0.25, 0.25, 1, 0, 0, 0}, {{0, 0, 0}, {20, 2.5, 20}, {40, 0, 0}}},
        {"crest cogFilter 50", five, crest, {0.25, 0.25, 1, 0, 0, 50}, {{0, 0, 0}, {20, 2.5, 20}, {40, 0, 0}}},
        {"crest filter off", five, crest, {0.25, 0.25, 1, 0, 4, -1}, {{0, 0, 0}, {10, 1, 4}, {20, 2.25, 10}, {40, 0, 0}}},
        {"sag sagK 1", five, sag, {0.25, 0.25, 100, 1}, {{0, 0, 0}, {20, -2.5, 20}, {40, 0, 0}}},
        {"zigzag K 2", nine, zigzag, {0.25, 0.25, 2, 2}, {{0, 0, 0}, {20, 2.5, 20}, {40, -0.5, 20}, {60, 2.5, 20}, {80, 0, 0}}},
        {"zigzag in crossed bands", five, {3, 9, -4, 8, 1}, {-1, -1}, {{0, 3, 0}, {40, 1, 0}}},
        {"polygon", long20, polygon, {0.05, 0.05, 30, 20}, {{0, 0, 0}, {300, 6.459375, 105}, {700, -0.15625, 50}, {1000, 3, 0}}},
        {"polygon, start held", long20, polygon, {0.05, 0.05, 30, 20, 0, 1, 1, 0}, {{0, 0, 0}, {300, 6, 105}, {700, -0.15625, 50}, {1000, 3, 0}}},
        {"polygon, end held", long20, polygon, {0.05, 0.05, 30, 20, 0, 1, 0, 7}, {{0, 0, 0}, {300, 6.459375, 105}, {700, 0, 50}, {1000, 3, 0}}},
        {"lone, mid band", {5}, {10}, {0.5, 0.5}, {{5, 10, 0}, {0, 0, 0}}, 0},
        {"lone, band 10 to 11", {5}, {10}, {1, 0}, {{5, 10.5, 0}, {0, 0, 0}}, 0},
        {"lone, lower bound -999: upper alone", {5}, {-998}, {0, 1}, {{5, -998, 0}, {0, 0, 0}}, 0},
        {"lone, upper bound -999: lower alone", {5}, {-999}, {0, -1}, {{5, -998, 0}, {0, 0, 0}}, 0},
        {"lone, upper -999, lower -1000", {5}, {-999.5}, {0.5, 0.5}, {{5, -1000, 0}, {0, 0, 0}}, 0},
        {"lone, no control: both at the origin", {5}, {-999}, {0, 0}, {{0, 0, 0}, {0, 0, 0}}, 0},
        {"lone, neither bound -999.0", {5}, {-999.25}, {0.5, 0.5}, {{5, -999.25, 0}, {0, 0, 0}}, 0},
        {"missing first level", four, {-999, 1, 1, 1}, {0, 0}, {{10, 1, 0}, {30, 1, 0}}, 0},
        {"missing both ends", five, {-999, 1, 2, 3, -999}, {0, 0}, {{10, 1, 0}, {30, 3, 0}}, 1e-12},
        {"within 1 mm", {0, 10, 10.0005, 20}, {0, 1, 2, 0}, {}, {{0, 0, 0}, {10.0005, 2, 0}, {20, 0, 0}}, 1e-12},
        {"beyond 1 mm", {0, 10, 10.01, 20}, {0, 1, 2, 0}, {}, {{0, 0, 0}, {10, 1, 0}, {10.01, 2, 0}, {20, 0, 0}}, 1e-12},
        {"two IPs, none held", four, flatTop, {1, 1}, {{0, 0, 0}, {30, 0, 0}}, 1e-12},
        {"two IPs, start held", four, flatTop, {1, 1, 0, 0, 0, 1, 1, 0}, {{0, 0, 0}, {30, 1.5, 0}}, 1e-12},
        {"two IPs, end held", four, flatTop, {1, 1, 0, 0, 0, 1, 0, 1}, {{0, 1.5, 0}, {30, 0, 0}}, 1e-12},
        {"two IPs, both held", four, flatTop, {1, 1, 0, 0, 0, 1, -1, 2}, {{0, 1.5, 0}, {30, 1.5, 0}}, 1e-12},
        {"backwards", {20, 10, 0}, {0, 1, 0}, {}, {{10, 1, 0}, {20, 0, -20}, {0, 0, 0}}, 1e-12},
        // clang-format on
    };
    for (const Row &t : rows) {
        SCOPED_TRACE(t.name);
        const Fit fit = fitProfile(t.stations, t.levels, t.p);
        EXPECT_EQ(fit.status, 0);
        expectIps(fit.ips, t.expected, t.tolerance);
    }
}

// Levels 0, L, 0 at 0, 10, 20: station 10 is inside exactly when
// L - loTol <= 0 <= L + upTol; a miss puts an IP at (10, L).
TEST(VerticalProfile, BandEdges)
{
    const double ulp = std::ldexp(1.0, -20);
    // clang-format off
    const struct Row { double level, upTol, loTol; size_t count; } rows[] = {
        {-0.5, 0.5, 0.5, 2}, {-0.5 - ulp, 0.5, 0.5, 3}, {0.5, 0.5, 0.5, 2}, {0.5 + ulp, 0.5, 0.5, 3},
        {5, -1, -1, 2},                              // crossed bands: none can miss
        {-999, 0, 0, 2},     {-998.5, 0.5, 0.5, 2},  // a bound below -998 is not valid: passed over
    };
    // clang-format on
    for (const Row &t : rows) {
        SCOPED_TRACE(t.level);
        const Fit fit = fitProfile({0, 10, 20}, {0, t.level, 0}, {t.upTol, t.loTol});
        EXPECT_EQ(fit.status, 0);
        ASSERT_EQ(fit.ips.size(), t.count);
        EXPECT_TRUE(fit.ips.front().station == 0 && fit.ips.back().station == 20 &&
                    fit.ips.front().level == 0);
        if (t.count == 3) {
            EXPECT_TRUE(fit.ips[1].station == 10 && std::fabs(fit.ips[1].level - t.level) < 1e-12);
        }
    }
}

// A chainage that is not a number matches no IP, so every sweep of the
// filter (here stepping down from 50 %) would put it in again; the IPs stay
// within one more than the stations.
TEST(VerticalProfile, ChainageThatIsNotANumberCannotOverfillTheIps)
{
    const Parameters p{0.25, 0.25, 1, 1, 0, 50};
    for (double bad : {NAN, INFINITY}) {
        const Fit fit = fitProfile({0, 10, bad, 20, 30, 40}, {0, 1, 5, 2, 1, 0}, p);
        EXPECT_TRUE(fit.status == 0 && fit.ips.size() <= 7u && fit.ips.back().station == 40);
    }
}

// Both forms refuse an empty input; the point form also nulls and one point,
// leaving its outputs alone, where the direct form clears its own.
TEST(VerticalProfile, RefusedInputs)
{
    tsBestFit_verticalProfileInitialize(0.1, 0.1, 10, 10, 0, 1, 0, 0, 0);
    double junk = 0, *s = &junk, *l = &junk, *v = &junk;
    int32_t count = 9;
    const double station = 0, level = 0;
    for (int32_t n : {0, -3}) {
        EXPECT_EQ(tsBestFit_verticalComputeProfile(&s, &l, &v, &count, &station, &level, n), kFail);
        EXPECT_TRUE(s == nullptr && l == nullptr && v == nullptr && count == 0);
    }
    const dpoint3d points[] = {{0, 0, 0}, {10, 1, 0}};
    dpoint3d sentinel{}, *result = &sentinel;
    count = 7;
    // clang-format off
    const struct Row { dpoint3d **result; int32_t *count; const dpoint3d *points; int32_t n; } rows[] = {
        {nullptr, &count, points, 2}, {&result, nullptr, points, 2}, {&result, &count, nullptr, 2},
        {&result, &count, points, 1}, {&result, &count, points, 0}};
    // clang-format on
    for (const Row &t : rows) {
        EXPECT_EQ(
            tsPoint_verticalComputeProfile(t.result, t.count, t.points, t.n, 0, 1, 1, 1, 1, 0, 1, 0, 0, 0),
            kFail);
        EXPECT_TRUE(result == &sentinel && count == 7);
    }
}

// The parameters stay until the next initialisation, also across runs,
// and the point form stores its own.
TEST(VerticalProfile, ParametersLastUntilTheNextInitialisation)
{
    const std::vector<double> stations = every(10, 5), levels{0, 1, 2, 1, 0};
    const Fit first = fitProfile(stations, levels, {0.25, 0.25, 1});
    auto secondIpLength = [&] {
        double *s = nullptr, *l = nullptr, *v = nullptr;
        int32_t count = 0;
        EXPECT_EQ(tsBestFit_verticalComputeProfile(&s, &l, &v, &count, stations.data(), levels.data(), 5), 0);
        const double length = count == 3 ? v[1] : -1;
        tsMem_free(s), tsMem_free(l), tsMem_free(v);
        return length;
    };
    EXPECT_EQ(secondIpLength(), first.ips[1].length);
    const dpoint3d points[] = {{0, 0, 0}, {10, 1, 0}, {20, 2, 0}, {30, 1, 0}, {40, 0, 0}};
    dpoint3d *result = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsPoint_verticalComputeProfile(&result, &count, points, 5, 0, 0.25, 0.25, 2, 0, 0, 1, 0, 0, 0),
              0);
    tsMem_free(result);
    EXPECT_EQ(secondIpLength(), 40);  // hogK 2 of the point form
}

// A rolling design (+1.8 % to IP 400, 240 m crest, -2.2 % to IP 850, 120 m
// sag, +0.8 % to 1200) with up to 4 cm of unevenness, levelled every 10 m:
// the fit stays within its band of the ground and close to the design,
// evaluated here by tangents and symmetric parabolas.
double designLevel(const std::vector<Ip> &ips, double x)
{
    for (size_t i = 1; i + 1 < ips.size(); ++i) {
        const Ip &a = ips[i - 1], &b = ips[i], &c = ips[i + 1];
        const double g1 = (b.level - a.level) / (b.station - a.station);
        const double g2 = (c.level - b.level) / (c.station - b.station);
        const double d = x - (b.station - b.length / 2);
        if (d >= 0 && d <= b.length)
            return b.level - b.length / 2 * g1 + g1 * d + (g2 - g1) * d * d / (2 * b.length);
    }
    for (size_t i = 0; i + 1 < ips.size(); ++i)
        if (x >= ips[i].station && x <= ips[i + 1].station)
            return ips[i].level + (x - ips[i].station) * (ips[i + 1].level - ips[i].level) /
                                      (ips[i + 1].station - ips[i].station);
    return NAN;
}

const std::vector<Ip> kDesign{{0, 50, 0}, {400, 57.2, 240}, {850, 47.3, 120}, {1200, 50.1, 0}};

std::vector<double> groundLevels(const std::vector<double> &stations)
{
    std::vector<double> levels;
    for (double x : stations)
        levels.push_back(designLevel(kDesign, x) +
                         0.04 * (0.6 * std::sin(x * 0.37) + 0.4 * std::sin(x * 1.91 + 1)));
    return levels;
}

const Parameters kRolling{0.15, 0.15, 60, 40, 60};

// The point form along x (level in y, chainages from 5000) and along a plan
// line at 30 degrees (level in z) gives the same IPs plus one zeroed record.
TEST(VerticalProfile, RollingLongSectionDirectAndAsPoints)
{
    const std::vector<double> stations = every(10, 121);
    const std::vector<double> ground = groundLevels(stations);
    const Parameters p = kRolling;
    const Fit fit = fitProfile(stations, ground, p);
    ASSERT_EQ(fit.status, 0);
    ASSERT_GE(fit.ips.size(), 4u);
    EXPECT_LE(fit.ips.size(), 20u);
    // The ends are the first and last levels, without curves.
    EXPECT_TRUE(fit.ips.front().station == 0 && fit.ips.back().station == 1200);
    EXPECT_TRUE(std::fabs(fit.ips.front().level - ground.front()) < 1e-12 &&
                std::fabs(fit.ips.back().level - ground.back()) < 1e-12);
    EXPECT_TRUE(fit.ips.front().length == 0 && fit.ips.back().length == 0);
    for (size_t i = 1; i < fit.ips.size(); ++i) {
        char text[64];  // lengths come back rounded to the millimetre
        std::snprintf(text, sizeof text, "%.3f", fit.ips[i].length);
        EXPECT_TRUE(fit.ips[i].station > fit.ips[i - 1].station &&
                    std::strtod(text, nullptr) == fit.ips[i].length)
            << "IP " << i + 1;
    }
    for (size_t i = 0; i < stations.size(); ++i) {
        const double level = designLevel(fit.ips, stations[i]);
        EXPECT_LE(std::fabs(level - ground[i]), 0.15) << stations[i];
        EXPECT_LE(std::fabs(level - designLevel(kDesign, stations[i])), 0.1) << stations[i];
    }

    std::vector<dpoint3d> alongX, alongLine;
    for (size_t i = 0; i < stations.size(); ++i) {
        alongX.push_back({5000 + stations[i], ground[i], -1});
        alongLine.push_back({1000 + stations[i] * std::cos(std::numbers::pi / 6),
                             2000 + stations[i] * std::sin(std::numbers::pi / 6), ground[i]});
    }
    for (const int32_t useDistance : {0, 1}) {
        const std::vector<dpoint3d> &points = useDistance ? alongLine : alongX;
        dpoint3d *result = nullptr;
        int32_t count = 0;
        ASSERT_EQ(tsPoint_verticalComputeProfile(&result, &count, points.data(), 121, useDistance, p.upTol,
                                                 p.loTol, p.hogK, p.sagK, p.vcMinimumLength, p.cogFilter, 0,
                                                 0, 0),
                  0);
        ASSERT_EQ(static_cast<size_t>(count), fit.ips.size());
        for (int32_t i = 0; i < count; ++i)
            EXPECT_TRUE(std::fabs(result[i].x - (useDistance ? 0 : 5000) - fit.ips[i].station) < 1e-9 &&
                        std::fabs(result[i].y - fit.ips[i].level) < 1e-9 &&
                        std::fabs(result[i].z - fit.ips[i].length) < 1e-9)
                << useDistance << " IP " << i;
        EXPECT_TRUE(result[count].x == 0 && result[count].y == 0 && result[count].z == 0);
        tsMem_free(result);
    }
}

// The trace names a drive path that does not exist here: asking for it
// leaves no file behind, in particular none named after that path in the
// working directory, and changes nothing in the fit.
TEST(VerticalProfile, DebugSwitchCreatesNoFile)
{
    namespace fs = std::filesystem;
    const fs::path home = fs::current_path();
    const fs::path scratch = fs::temp_directory_path() / ("profilefit_debug_" + std::to_string(::getpid()));
    fs::create_directories(scratch);
    fs::current_path(scratch);

    const std::vector<double> stations = every(10, 121);
    const std::vector<double> ground = groundLevels(stations);
    Parameters debug = kRolling;
    debug.debug = 1;
    const Fit expected = fitProfile(stations, ground, kRolling), traced = fitProfile(stations, ground, debug);
    // A second run on the same stored parameters, now switched off.
    double *s = nullptr, *l = nullptr, *v = nullptr;
    int32_t count = 0;
    EXPECT_EQ(tsBestFit_verticalComputeProfile(&s, &l, &v, &count, stations.data(), ground.data(), 121), 0);
    tsMem_free(s), tsMem_free(l), tsMem_free(v);
    dpoint3d *result = nullptr;
    const dpoint3d points[] = {{0, 0, 0}, {10, 1, 0}, {20, 0, 0}};
    EXPECT_EQ(tsPoint_verticalComputeProfile(&result, &count, points, 3, 0, 0.25, 0.25, 1, 1, 0, 1, 0, 0, 1),
              0);
    tsMem_free(result);

    const bool empty = fs::is_empty(scratch);
    fs::current_path(home);
    fs::remove_all(scratch);
    EXPECT_TRUE(empty);
    EXPECT_FALSE(fs::exists(home / "C:\\BestFit_Vertical_Debug.txt"));
    EXPECT_EQ(traced.status, 0);
    expectIps(traced.ips, expected.ips, 0);
}

}  // namespace
