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

struct Parameters {
    double upTol = 0.25, loTol = 0.25, hogK = 0, sagK = 0, vcMinimumLength = 0, cogFilter = 1.0;
    int32_t fixStartGrade = 0, fixEndGrade = 0, debug = 0;
};

struct Fit {
    int32_t status;
    std::vector<Ip> ips;
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
    for (double *array : {s, l, v})
        if (array != nullptr) tsMem_free(array);
    return fit;
}

void expectIps(const std::vector<Ip> &got, const std::vector<Ip> &expected, double tolerance = 1e-9)
{
    ASSERT_EQ(got.size(), expected.size());
    for (size_t i = 0; i < got.size(); ++i) {
        SCOPED_TRACE(testing::Message() << "IP " << i + 1);
        EXPECT_NEAR(got[i].station, expected[i].station, tolerance);
        EXPECT_NEAR(got[i].level, expected[i].level, tolerance);
        EXPECT_NEAR(got[i].length, expected[i].length, tolerance);
    }
}

std::vector<double> every(double step, int32_t n)
{
    std::vector<double> stations;
    for (int32_t i = 0; i < n; ++i)
        stations.push_back(i * step);
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

/* ---- Worked long sections ----
 * The crest: levels 0, 1, 2, 1, 0 at 0..40 m, band +-0.25. The chord
 * (0, 0)-(40, 0) misses station 10 (level 1), so an IP goes in at (10, 1);
 * the grade (10, 1)-(40, 0) then gives 0.667 at 20 (level 2): an IP at
 * (20, 2); 30 and 40 then lie on the grade. The filter (1 %) drops IP 10,
 * whose grades are both +10 %; IP 20 (+10 % to -10 %, a 20 % change) stays,
 * and the new sweep finds the ground on the two grades. Stage 4: a crest,
 * L = 20 hogK. The curve's mid level at the IP is 2 - A L / 8 with
 * A = 0.2, so the IP rises by 0.025 L.
 *   hogK 1: L = 20, inside both distances of 20: IP at 2 + 0.5.
 *   hogK 2: L = 40, half of it (20) is not more than the distance 20: kept;
 *           IP at 2 + 1.
 *   hogK 3: L = 60 reaches past IP 1; as IP 1 has no curve, it is cut to
 *           twice the back distance, 40; IP at 3.
 *   cogFilter 0: a change of exactly 0 is not above the filter: IP 10 goes.
 *   cogFilter 50: the filter drops both IPs and the sweep puts them back
 *           while it steps down by 0.1 from 50; below 20 IP 20 stays, so
 *           the end is that of the 1 % filter.
 * With the filter off (-1) IP 10 stays: its change of grade is 0, so it
 * gets the minimum length 4; IP 20 is sized 20 but its back half (10) and
 * IP 10's half (2) pass the back distance 10, so it is cut to 10. At 10
 * the curve runs on one grade (mid-ordinate 0); at 20, with L = 10, the
 * curve passes 2 - 0.2 * 10 / 8 = 1.75, so the IP rises by 0.25.
 * The sag is the crest upside down, sized by sagK.
 *
 * The zigzag 0, 1, 2, 1, 0, 1, 2, 1, 0: IPs at 20, 40, 60 (the sweep also
 * puts in 10, 30, 50, which lie on the grades and go in the filter). K = 2
 * gives 40 m curves: each is cut to the 20 m between IPs, and each IP moves
 * by 0.2 * 20 / 8 = 0.5 away from the ground.
 *
 * The polygon of polygonLevels: the sweep puts an IP at every station from
 * 20 to 700, as no chord to the far end stays in a band of 0.05; the filter
 * leaves the two true IPs. IP 300: crest of 3.5 %, L = 3.5 * 30 = 105,
 * moved up by 0.035 * 105 / 8 = 0.459375. IP 700: sag of 2.5 %,
 * L = 2.5 * 20 = 50, moved down by 0.025 * 50 / 8 = 0.15625. A held start
 * grade puts IP 300 back on the line through the first two levels
 * (300 * 0.4 / 20 = 6); a held end grade puts IP 700 on the line through
 * the last two, 3 - 300 * 0.2 / 20 = 0. */

TEST(VerticalProfile, WorkedLongSections)
{
    const std::vector<double> five = every(10, 5);
    const std::vector<double> crest{0, 1, 2, 1, 0};
    const std::vector<double> sag{0, -1, -2, -1, 0};
    const std::vector<double> nine = every(10, 9);
    const std::vector<double> zigzag{0, 1, 2, 1, 0, 1, 2, 1, 0};
    const std::vector<double> long20 = every(20, 51);
    const std::vector<double> polygon = polygonLevels(long20);
    const struct Row {
        const char *name;
        const std::vector<double> &stations, &levels;
        double band, hogK, sagK, vcMinimumLength, cogFilter;
        int32_t fixStartGrade, fixEndGrade;
        std::vector<Ip> expected;
    } rows[] = {
        // clang-format off
        // name                stations levels band  hogK sagK vcMin cog start end
        {"crest hogK 1",       five,  crest, 0.25, 1,   100, 0, 1,  0, 0, {{0, 0, 0}, {20, 2.5, 20}, {40, 0, 0}}},
        {"crest hogK 2",       five,  crest, 0.25, 2,   0,   0, 1,  0, 0, {{0, 0, 0}, {20, 3, 40}, {40, 0, 0}}},
        {"crest hogK 3",       five,  crest, 0.25, 3,   0,   0, 1,  0, 0, {{0, 0, 0}, {20, 3, 40}, {40, 0, 0}}},
        {"crest cogFilter 0",  five,  crest, 0.25, 1,   0,   0, 0,  0, 0, {{0, 0, 0}, {20, 2.5, 20}, {40, 0, 0}}},
        {"crest cogFilter 50", five,  crest, 0.25, 1,   0,   0, 50, 0, 0, {{0, 0, 0}, {20, 2.5, 20}, {40, 0, 0}}},
        {"crest filter off",   five,  crest, 0.25, 1,   0,   4, -1, 0, 0,
         {{0, 0, 0}, {10, 1, 4}, {20, 2.25, 10}, {40, 0, 0}}},
        {"sag sagK 1",         five,  sag,   0.25, 100, 1,   0, 1,  0, 0, {{0, 0, 0}, {20, -2.5, 20}, {40, 0, 0}}},
        {"zigzag K 2",         nine,  zigzag, 0.25, 2,  2,   0, 1,  0, 0,
         {{0, 0, 0}, {20, 2.5, 20}, {40, -0.5, 20}, {60, 2.5, 20}, {80, 0, 0}}},
        {"polygon",            long20, polygon, 0.05, 30, 20, 0, 1, 0, 0,
         {{0, 0, 0}, {300, 6.459375, 105}, {700, -0.15625, 50}, {1000, 3, 0}}},
        {"polygon, start grade held", long20, polygon, 0.05, 30, 20, 0, 1, 1, 0,
         {{0, 0, 0}, {300, 6, 105}, {700, -0.15625, 50}, {1000, 3, 0}}},
        {"polygon, end grade held",   long20, polygon, 0.05, 30, 20, 0, 1, 0, 7,
         {{0, 0, 0}, {300, 6.459375, 105}, {700, 0, 50}, {1000, 3, 0}}},
        // clang-format on
    };
    for (const Row &t : rows) {
        SCOPED_TRACE(t.name);
        Parameters p;
        p.upTol = p.loTol = t.band, p.hogK = t.hogK, p.sagK = t.sagK, p.vcMinimumLength = t.vcMinimumLength;
        p.cogFilter = t.cogFilter, p.fixStartGrade = t.fixStartGrade, p.fixEndGrade = t.fixEndGrade;
        const Fit fit = fitProfile(t.stations, t.levels, p);
        EXPECT_EQ(fit.status, 0);
        expectIps(fit.ips, t.expected);
    }
}

/* ---- Edges of the band ----
 * Levels 0, L, 0 at 0, 10, 20: the chord is level at 0, so station 10 is
 * inside exactly when L - loTol <= 0 <= L + upTol. A miss puts an IP at
 * (10, L), the middle of its band (K 0: no curve, no mid-ordinate). */

TEST(VerticalProfile, BandEdges)
{
    const double ulp = std::ldexp(1.0, -20);
    const struct Row {
        const char *name;
        double level, upTol, loTol;
        size_t count;
        double endLevel;  // of the first and the last IP
    } rows[] = {
        {"on the upper bound", -0.5, 0.5, 0.5, 2, 0},
        {"just above the upper bound", -0.5 - ulp, 0.5, 0.5, 3, 0},
        {"on the lower bound", 0.5, 0.5, 0.5, 2, 0},
        {"just below the lower bound", 0.5 + ulp, 0.5, 0.5, 3, 0},
        // Negative tolerances cross every band: no station can miss, and the
        // ends sit at their middle, the level itself.
        {"crossed bands", 5, -1, -1, 2, 0},
        // A bound below -998 is not valid: the station is passed over.
        {"missing level", -999, 0, 0, 2, 0},
        {"lower bound below -998", -998.5, 0.5, 0.5, 2, 0},
    };
    for (const Row &t : rows) {
        SCOPED_TRACE(t.name);
        Parameters p;
        p.upTol = t.upTol, p.loTol = t.loTol;
        const Fit fit = fitProfile({0, 10, 20}, {0, t.level, 0}, p);
        EXPECT_EQ(fit.status, 0);
        ASSERT_EQ(fit.ips.size(), t.count);
        EXPECT_EQ(fit.ips.front().station, 0);
        EXPECT_EQ(fit.ips.back().station, 20);
        EXPECT_EQ(fit.ips.front().level, t.endLevel);
        if (t.count == 3) {
            EXPECT_EQ(fit.ips[1].station, 10);
            EXPECT_NEAR(fit.ips[1].level, t.level, 1e-12);
        }
    }
    // A zigzag inside crossed bands stays a single grade.
    Parameters crossed;
    crossed.upTol = crossed.loTol = -1;
    expectIps(fitProfile(every(10, 5), {3, 9, -4, 8, 1}, crossed).ips, {{0, 3, 0}, {40, 1, 0}});
}

// The level that a lone station asks for: the middle of its band, or the
// one bound that is not exactly -999.0. Its fit is that station and (0, 0),
// the unset last control.
TEST(VerticalProfile, SinglePointGivesItsMidLevelAndTheOrigin)
{
    const struct Row {
        double level, upTol, loTol;
        Ip first;
    } rows[] = {
        {10, 0.5, 0.5, {5, 10, 0}},
        {10, 1, 0, {5, 10.5, 0}},              // band 10 to 11
        {-998, 0, 1, {5, -998, 0}},            // lower bound exactly -999: the upper alone
        {-999, 0, -1, {5, -998, 0}},           // upper bound exactly -999: the lower alone
        {-999.5, 0.5, 0.5, {5, -1000, 0}},     // upper -999 exactly, lower -1000 taken
        {-999, 0, 0, {0, 0, 0}},               // no control at all: both IPs at the origin
        {-999.25, 0.5, 0.5, {5, -999.25, 0}},  // neither bound is -999.0 exactly
    };
    for (const Row &t : rows) {
        SCOPED_TRACE(testing::Message() << t.level << " +" << t.upTol << " -" << t.loTol);
        Parameters p;
        p.upTol = t.upTol, p.loTol = t.loTol;
        const Fit fit = fitProfile({5}, {t.level}, p);
        EXPECT_EQ(fit.status, 0);
        expectIps(fit.ips, {t.first, {0, 0, 0}}, 0);
    }
}

// A missing level with no band is no control: the fit starts at the next
// station, and the stations before it are not looked at.
TEST(VerticalProfile, MissingLevelsBeforeTheFirstControl)
{
    Parameters p;
    p.upTol = p.loTol = 0;
    expectIps(fitProfile({0, 10, 20, 30}, {-999, 1, 1, 1}, p).ips, {{10, 1, 0}, {30, 1, 0}}, 0);
    // Both ends missing: the last control is the last station with a level.
    expectIps(fitProfile({0, 10, 20, 30, 40}, {-999, 1, 2, 3, -999}, p).ips, {{10, 1, 0}, {30, 3, 0}}, 1e-12);
}

// 10 m: the chord misses, an IP goes in at (10, 1). The next station, at
// 10.0005, misses too; closer than 1 mm it moves that IP to (10.0005, 2),
// at 10.01 it adds one.
TEST(VerticalProfile, StationWithinAMillimetreMovesTheIp)
{
    const struct Row {
        double near;
        std::vector<Ip> expected;
    } rows[] = {
        {10.0005, {{0, 0, 0}, {10.0005, 2, 0}, {20, 0, 0}}},
        {10.01, {{0, 0, 0}, {10, 1, 0}, {10.01, 2, 0}, {20, 0, 0}}},
    };
    for (const Row &t : rows) {
        SCOPED_TRACE(t.near);
        expectIps(fitProfile({0, 10, t.near, 20}, {0, 1, 2, 0}, Parameters{}).ips, t.expected, 1e-12);
    }
}

// With two IPs the held start grade moves IP 2, the last, onto the line
// through the first two levels (30 * 0.05 = 1.5), and the held end grade
// moves the second-last IP, IP 1, onto the line through the last two
// (-30 * -0.05 = 1.5).
TEST(VerticalProfile, HeldGradesWithTwoIpsMoveTheOtherEnd)
{
    const struct Row {
        int32_t fixStart, fixEnd;
        double first, last;
    } rows[] = {{0, 0, 0, 0}, {1, 0, 0, 1.5}, {0, 1, 1.5, 0}, {-1, 2, 1.5, 1.5}};
    for (const Row &t : rows) {
        SCOPED_TRACE(testing::Message() << t.fixStart << " " << t.fixEnd);
        Parameters p;
        p.upTol = p.loTol = 1, p.fixStartGrade = t.fixStart, p.fixEndGrade = t.fixEnd;
        expectIps(fitProfile(every(10, 4), {0, 0.5, 0.5, 0}, p).ips, {{0, t.first, 0}, {30, t.last, 0}},
                  1e-12);
    }
}

// Chainages that run backwards, 20, 10, 0 with levels 0, 1, 0: the first
// chord runs from 20 back to 0, and 10 lies on no grade after an IP, so
// the profile reads 0.0 there and misses the band. No IP is before 10 and
// after it in that order, so the new IP goes in first: (10, 1), (20, 0),
// (0, 0). At the end the forward distance of IP 20 is -20; half its
// length 0 exceeds it, so that becomes its length.
TEST(VerticalProfile, BackwardChainagesPutTheNewIpFirst)
{
    expectIps(fitProfile({20, 10, 0}, {0, 1, 0}, Parameters{}).ips, {{10, 1, 0}, {20, 0, -20}, {0, 0, 0}},
              1e-12);
}

// A chainage that is not a number matches no IP, so every sweep of the
// filter (here stepping down from 50 %) would put it in again; the IPs stay
// within one more than the stations.
TEST(VerticalProfile, ChainageThatIsNotANumberCannotOverfillTheIps)
{
    Parameters p;
    p.hogK = p.sagK = 1, p.cogFilter = 50;
    for (double bad : {NAN, INFINITY}) {
        const Fit fit = fitProfile({0, 10, bad, 20, 30, 40}, {0, 1, 5, 2, 1, 0}, p);
        EXPECT_EQ(fit.status, 0);
        EXPECT_LE(fit.ips.size(), 7u);
        EXPECT_EQ(fit.ips.back().station, 40);
    }
}

TEST(VerticalProfile, NoStationIsRefused)
{
    tsBestFit_verticalProfileInitialize(0.1, 0.1, 10, 10, 0, 1, 0, 0, 0);
    double junk = 0;
    double *s = &junk, *l = &junk, *v = &junk;
    int32_t count = 9;
    const double station = 0, level = 0;
    for (int32_t n : {0, -3}) {
        EXPECT_EQ(tsBestFit_verticalComputeProfile(&s, &l, &v, &count, &station, &level, n), kFail);
        EXPECT_EQ(s, nullptr);
        EXPECT_EQ(l, nullptr);
        EXPECT_EQ(v, nullptr);
        EXPECT_EQ(count, 0);
    }
}

// The parameters stay until the next initialisation, also across runs,
// and the point form stores its own.
TEST(VerticalProfile, ParametersLastUntilTheNextInitialisation)
{
    const std::vector<double> stations = every(10, 5), levels{0, 1, 2, 1, 0};
    Parameters p;
    p.hogK = 1;
    const Fit first = fitProfile(stations, levels, p);
    double *s = nullptr, *l = nullptr, *v = nullptr;
    int32_t count = 0;
    ASSERT_EQ(tsBestFit_verticalComputeProfile(&s, &l, &v, &count, stations.data(), levels.data(), 5), 0);
    ASSERT_EQ(count, 3);
    EXPECT_EQ(v[1], first.ips[1].length);
    tsMem_free(s), tsMem_free(l), tsMem_free(v);

    const dpoint3d points[] = {{0, 0, 0}, {10, 1, 0}, {20, 2, 0}, {30, 1, 0}, {40, 0, 0}};
    dpoint3d *result = nullptr;
    ASSERT_EQ(tsPoint_verticalComputeProfile(&result, &count, points, 5, 0, 0.25, 0.25, 2, 0, 0, 1, 0, 0, 0),
              0);
    tsMem_free(result);
    ASSERT_EQ(tsBestFit_verticalComputeProfile(&s, &l, &v, &count, stations.data(), levels.data(), 5), 0);
    EXPECT_EQ(v[1], 40);  // hogK 2 of the point form
    tsMem_free(s), tsMem_free(l), tsMem_free(v);
}

/* ---- Point form ---- */

TEST(VerticalProfile, PointFormRefusesNullsAndShortInput)
{
    const dpoint3d points[] = {{0, 0, 0}, {10, 1, 0}};
    dpoint3d sentinel{};
    dpoint3d *result = &sentinel;
    int32_t count = 7;
    const struct Row {
        dpoint3d **result;
        int32_t *count;
        const dpoint3d *points;
        int32_t n;
    } rows[] = {
        {nullptr, &count, points, 2}, {&result, nullptr, points, 2}, {&result, &count, nullptr, 2},
        {&result, &count, points, 1}, {&result, &count, points, 0},
    };
    for (const Row &t : rows) {
        EXPECT_EQ(
            tsPoint_verticalComputeProfile(t.result, t.count, t.points, t.n, 0, 1, 1, 1, 1, 0, 1, 0, 0, 0),
            kFail);
        EXPECT_EQ(result, &sentinel);
        EXPECT_EQ(count, 7);
    }
}

/* ---- A rolling long section ----
 * The ground is a design (+1.8 % to IP 400 with a 240 m crest, -2.2 % to IP
 * 850 with a 120 m sag, +0.8 % to 1200) with up to 4 cm of unevenness,
 * levelled every 10 m. The fit must give a profile that stays within its
 * band of the ground and close to the design, evaluated here by the usual
 * tangents and symmetric parabolas. */

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

TEST(VerticalProfile, RollingLongSection)
{
    const std::vector<double> stations = every(10, 121);
    const std::vector<double> ground = groundLevels(stations);
    Parameters p;
    p.upTol = p.loTol = 0.15, p.hogK = 60, p.sagK = 40, p.vcMinimumLength = 60;
    const Fit fit = fitProfile(stations, ground, p);
    ASSERT_EQ(fit.status, 0);
    ASSERT_GE(fit.ips.size(), 4u);
    EXPECT_LE(fit.ips.size(), 20u);
    // The ends are the first and last levels, without curves.
    EXPECT_EQ(fit.ips.front().station, 0);
    EXPECT_NEAR(fit.ips.front().level, ground.front(), 1e-12);
    EXPECT_EQ(fit.ips.back().station, 1200);
    EXPECT_NEAR(fit.ips.back().level, ground.back(), 1e-12);
    EXPECT_EQ(fit.ips.front().length, 0);
    EXPECT_EQ(fit.ips.back().length, 0);
    for (size_t i = 1; i < fit.ips.size(); ++i) {
        EXPECT_GT(fit.ips[i].station, fit.ips[i - 1].station);
        // Lengths come back rounded to the millimetre.
        char text[64];
        std::snprintf(text, sizeof text, "%.3f", fit.ips[i].length);
        EXPECT_EQ(std::strtod(text, nullptr), fit.ips[i].length) << "IP " << i + 1;
    }
    for (size_t i = 0; i < stations.size(); ++i) {
        const double level = designLevel(fit.ips, stations[i]);
        EXPECT_LE(std::fabs(level - ground[i]), 0.15) << stations[i];
        EXPECT_LE(std::fabs(level - designLevel(kDesign, stations[i])), 0.1) << stations[i];
    }
}

// The same section as points: along x, with the level in y, from a base
// chainage of 5000, and along a plan line at 30 degrees with the level in
// z. Both give the IPs of the direct call, at the chainages of their form.
TEST(VerticalProfile, PointFormAlongXAndAlongThePlanLine)
{
    const std::vector<double> stations = every(10, 121);
    const std::vector<double> ground = groundLevels(stations);
    Parameters p;
    p.upTol = p.loTol = 0.15, p.hogK = 60, p.sagK = 40, p.vcMinimumLength = 60;
    const Fit direct = fitProfile(stations, ground, p);
    ASSERT_EQ(direct.status, 0);

    std::vector<dpoint3d> alongX, alongLine;
    for (size_t i = 0; i < stations.size(); ++i) {
        alongX.push_back({5000 + stations[i], ground[i], -1});
        alongLine.push_back({1000 + stations[i] * std::cos(std::numbers::pi / 6),
                             2000 + stations[i] * std::sin(std::numbers::pi / 6), ground[i]});
    }
    const struct Row {
        const char *name;
        const std::vector<dpoint3d> &points;
        int32_t useDistance;
        double base;
    } rows[] = {{"along x", alongX, 0, 5000}, {"along the plan line", alongLine, 1, 0}};
    for (const Row &t : rows) {
        SCOPED_TRACE(t.name);
        dpoint3d *result = nullptr;
        int32_t count = 0;
        ASSERT_EQ(tsPoint_verticalComputeProfile(
                      &result, &count, t.points.data(), static_cast<int32_t>(t.points.size()), t.useDistance,
                      p.upTol, p.loTol, p.hogK, p.sagK, p.vcMinimumLength, p.cogFilter, 0, 0, 0),
                  0);
        ASSERT_EQ(static_cast<size_t>(count), direct.ips.size());
        for (int32_t i = 0; i < count; ++i) {
            EXPECT_NEAR(result[i].x, t.base + direct.ips[i].station, 1e-9);
            EXPECT_NEAR(result[i].y, direct.ips[i].level, 1e-9);
            EXPECT_NEAR(result[i].z, direct.ips[i].length, 1e-9);
        }
        // One zeroed record beyond the IPs.
        EXPECT_EQ(result[count].x, 0);
        EXPECT_EQ(result[count].y, 0);
        EXPECT_EQ(result[count].z, 0);
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
    Parameters quiet;
    quiet.upTol = quiet.loTol = 0.15, quiet.hogK = 60, quiet.sagK = 40, quiet.vcMinimumLength = 60;
    Parameters debug = quiet;
    debug.debug = 1;
    const Fit expected = fitProfile(stations, ground, quiet);
    const Fit traced = fitProfile(stations, ground, debug);
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
