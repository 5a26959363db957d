// Geoid grids written here: nodes, cells, the block choice at the edges, the
// longitude sense, the search of a family of files and the failure values.
#include <tessar/geoid.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

static_assert(std::endian::native == std::endian::little, "grid files are written in the host's byte order");

// The 44-byte header of a grid file, as it lies in the file.
struct Header {
    double south, west, latSpacing, lonSpacing;
    int32_t rows, columns, kind = 1;
};
static_assert(offsetof(Header, kind) == 40);

using Values = std::function<float(int row, int column)>;  // from 0, rows from the south

const double kNaN = std::nan("");

// Equal, or both NaN: both failed.
bool same(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

class Geoid : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/tessar_geoid_XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir_ = pattern;
    }
    void TearDown() override
    {
        tsGeoid_closeModel();  // the model is process-wide
        std::filesystem::remove_all(dir_);
    }
    // Writes the header and the values row by row; keep > 0 cuts the file there.
    std::string write(const std::string &name, const Header &h, const Values &value, size_t keep = 0) const
    {
        std::vector<char> bytes(44 + 4 * size_t(h.rows) * size_t(h.columns));
        std::memcpy(bytes.data(), &h, 44);
        for (int i = 0; i < h.rows * h.columns; ++i) {
            const float v = value(i / h.columns, i % h.columns);
            std::memcpy(&bytes[44 + 4 * size_t(i)], &v, 4);
        }
        bytes.resize(keep > 0 ? keep : bytes.size());
        std::ofstream(dir_ + "/" + name, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
        return dir_ + "/" + name;
    }
    std::string open(const Header &h, const Values &value, size_t keep = 0)
    {
        const std::string file = write("grid.bin", h, value, keep);
        EXPECT_EQ(tsGeoid_initModelByFile(file.c_str()), 0);
        return file;
    }
    // The undulation, or NaN when the call fails (with 1, and the result at 0).
    static double undulation(double lat, double lon, int32_t sense = 1)
    {
        double n = -99.0;
        const int32_t status = tsGeoid_getUndulationAtLatLong(&n, lat, lon, sense);
        if (status == 0) return n;
        EXPECT_TRUE(status == 1 && n == 0.0) << status << " " << n;
        return kNaN;
    }
    std::string dir_;
};

// The quadratic through t = 0, 1, 2; with Lagrange weights L0 = (t-1)(t-2)/2,
// L2 = t(t-1)/2: 8 L0(0.5) = 3, 4 L2(1.5) = 1.5.
TEST(GeoidFit, QuadraticThroughThreeEquallySpacedValues)
{
    const double rows[][5] = {{0.0, 3, -7, 11, 3},  {1.0, 3, -7, 11, -7}, {2.0, 3, -7, 11, 11},
                              {0.5, 0, 1, 4, 0.25}, {3.0, 0, 1, 4, 9},    {1.5, 1, 3, 5, 4},
                              {0.5, 8, 0, 0, 3},    {1.5, 0, 0, 4, 1.5}};
    for (const auto &[t, f0, f1, f2, expected] : rows)
        EXPECT_DOUBLE_EQ(tsGeoid_biQuadraticFit(t, f0, f1, f2), expected)
            << t << " " << f0 << " " << f1 << " " << f2;
}

// 0.1f among 1e9: interpolated, (f1 - f0) + f0 would round away from f1.
TEST_F(Geoid, NodeGivesTheStoredFloatWithoutInterpolation)
{
    open({40.0, 10.0, 0.25, 0.25, 3, 3}, [](int r, int c) { return r == 1 && c == 1 ? 0.1f : 1.0e9f; });
    ASSERT_NE(tsGeoid_biQuadraticFit(1.0, 1.0e9f, 0.1f, 1.0e9f), double(0.1f));
    EXPECT_EQ(undulation(40.25, 10.25), double(0.1f));
    EXPECT_EQ(undulation(40.0, 10.0), 1.0e9);
    EXPECT_EQ(undulation(40.5, 10.5), 1.0e9);  // north-east corner
}

// Exact for a biquadratic surface in node units u (north), v (east): exact
// float nodes, no symmetry, so swapped or reversed rows and columns show.
TEST_F(Geoid, ReproducesQuadraticSurfacesEverywhere)
{
    const auto f = [](double u, double v) {
        return 12.0 + 0.5 * u - 0.25 * v + 0.125 * u * u - 0.0625 * v * v + 0.03125 * u * v;
    };
    open({45.0, 5.0, 0.25, 0.5, 6, 7}, [&](int r, int c) { return float(f(r, c)); });
    const double points[][2] = {{0.5, 0.5}, {0.1, 5.9},  {2.3, 3.7}, {4.75, 0.2},  {5.0, 6.0}, {5.0, 2.6},
                                {3.4, 6.0}, {0.0, 1.25}, {2.5, 0.0}, {4.99, 5.99}, {2.0, 3.0}};
    for (const auto &[u, v] : points)
        EXPECT_NEAR(undulation(45.0 + u * 0.25, 5.0 + v * 0.5), f(u, v), 1e-9)
            << "u = " << u << ", v = " << v;
}

// 4 x 5 nodes from (10 N, 20 E), 0 but 8 at the south-west and 4 at the
// north-east node: the value tells the block. L0 = (t-1)(t-2)/2, L2 = t(t-1)/2.
TEST_F(Geoid, BlockStaysOnTheGridAtItsEdges)
{
    open({10.0, 20.0, 0.5, 0.25, 4, 5}, [](int r, int c) {
        return r + c == 0 ? 8.0f : r == 3 && c == 4 ? 4.0f : 0.0f;
    });
    const struct {
        double lat, lon, expected;
        const char *why;
    } rows[] = {
        {10.25, 20.125, 1.125, "first cell: rows and columns 1 to 3, 8 L0(0.5) L0(0.5)"},
        {10.75, 20.125, -0.375, "second cell, same block: 8 L0(1.5) L0(0.5)"},
        {11.25, 20.125, 0.0, "third cell: rows 2 to 4 (rows 1 to 3 would give 1.125)"},
        {11.5, 20.875, 1.5, "north edge, i = rows - 1: x = 2, y = 1.5, 4 L2(2) L2(1.5)"},
        {11.25, 21.0, 1.5, "east edge, j = columns - 1: y = 2"},
        {10.25, 20.0, 3.0, "west edge off a node: y = 0, 8 L0(0.5)"},
        {10.0, 20.125, 3.0, "south edge off a node"},
        {10.0, 20.0, 8.0, "south-west node"},
        {11.5, 21.0, 4.0, "north-east node"},
        {10.5, 20.25, 0.0, "interior node"},
    };
    for (const auto &r : rows)
        EXPECT_DOUBLE_EQ(undulation(r.lat, r.lon), r.expected) << r.why;
}

// Columns from 358 to 362 valued by their index: the value tells the longitude.
TEST_F(Geoid, LongitudeSenseAndTheSeamAt360)
{
    open({-1.0, 358.0, 0.5, 0.5, 5, 9}, [](int, int c) { return float(c); });
    // -1 east, 1 west: 359; 0 west: 360; any sense but 0 is east; 0 east stays
    // short of 360; 361 (or -1 west) is beyond 360, though the grid reaches 362.
    const double rows[][4] = {{0.0, -1.0, 1, 2.0}, {0.0, 1.0, 0, 2.0},    {0.0, -0.25, 1, 3.5},
                              {0.0, 0.0, 0, 4.0},  {0.0, 360.0, 1, 4.0},  {0.25, 359.75, 1, 3.5},
                              {0.0, 0.0, 1, kNaN}, {0.0, 361.0, 1, kNaN}, {0.0, -1.0, 0, kNaN},
                              {0.0, 358.5, 7, 1.0}};
    for (const auto &[lat, lon, sense, expected] : rows)
        EXPECT_PRED2(same, undulation(lat, lon, int32_t(sense)), expected)
            << lat << " " << lon << " " << sense;
}

TEST_F(Geoid, PointsOffTheGridOrTheGlobeFail)
{
    open({89.0, 10.0, 0.5, 0.5, 5, 5}, [](int, int) { return 5.0f; });  // reaches past the pole, to 91
    EXPECT_DOUBLE_EQ(undulation(90.0, 11.0), 5.0);
    for (const auto &[lat, lon] : {std::pair{90.5, 11.0}, {88.99, 11.0}, {89.5, 12.01}, {89.5, 9.99}})
        EXPECT_TRUE(std::isnan(undulation(lat, lon))) << lat << " " << lon;
}

// Missing, empty path, kind 0, cut header, a directory: each fails and
// closes the model open before.
TEST_F(Geoid, NoModelOrAFailedOpenGivesOne)
{
    EXPECT_TRUE(std::isnan(undulation(0.0, 0.0)));  // nothing open at all
    EXPECT_EQ(tsGeoid_closeModel(), 1);
    const Header good{0.0, 0.0, 1.0, 1.0, 3, 3}, kindZero{0.0, 0.0, 1.0, 1.0, 3, 3, 0};
    const auto one = [](int, int) { return 1.0f; };
    const std::string goodPath = write("good.bin", good, one);
    const std::string failing[] = {dir_ + "/missing.bin", "", write("kind0.bin", kindZero, one),
                                   write("short.bin", good, one, 20), dir_};
    for (const std::string &p : failing) {
        ASSERT_EQ(tsGeoid_initModelByFile(goodPath.c_str()), 0);
        EXPECT_DOUBLE_EQ(undulation(1.0, 1.0), 1.0);
        EXPECT_EQ(tsGeoid_initModelByFile(p.c_str()), 1) << p;
        EXPECT_TRUE(std::isnan(undulation(1.0, 1.0))) << p;
        EXPECT_EQ(tsGeoid_closeModel(), 1) << p;
    }
    EXPECT_EQ(tsGeoid_initModelByFile(nullptr), 1);
    ASSERT_EQ(tsGeoid_initModelByFile(goodPath.c_str()), 0);
    EXPECT_EQ(tsGeoid_closeModel(), 0);
    EXPECT_EQ(tsGeoid_closeModel(), 1);
}

// Values are read on demand, never loaded. Past the first, only stored row,
// short reads leave the value read before, with no failure. A value patched
// in the open file is what the next call gives: row 2, column 3 of 3 x 4 lies
// at 40 + 4 ((2 - 1) 4 + 3) = 68, and weighs L1(1.5) = 0.75 at y = 1.5.
TEST_F(Geoid, ValuesAreReadFromTheFileOnDemand)
{
    const auto byIndex = [](int r, int c) { return float(10 * r + c); };
    open({0.0, 0.0, 1.0, 1.0, 3, 3}, byIndex, 44 + 3 * 4);
    EXPECT_DOUBLE_EQ(undulation(0.0, 2.0), 2.0);  // row 1, column 3: stored
    EXPECT_DOUBLE_EQ(undulation(2.0, 1.0), 2.0);  // row 3 is missing: still 2
    EXPECT_TRUE(std::isfinite(undulation(1.5, 1.5)));

    const std::string file = open({0.0, 0.0, 1.0, 1.0, 3, 4}, [](int, int) { return 2.0f; });
    const float patched = 6.5f;
    std::fstream(file, std::ios::binary | std::ios::in | std::ios::out)
        .seekp(68)
        .write(reinterpret_cast<const char *>(&patched), sizeof patched);
    EXPECT_DOUBLE_EQ(undulation(1.0, 2.0), 6.5);
    EXPECT_DOUBLE_EQ(undulation(1.0, 2.5), 2.0 + 4.5 * 0.75);
}

// ---- The search of a family of files ----

// 2 x 2 deg grids, 0.5 deg spacing (bands 0.25 wide), each valued by its name.
class GeoidFamily : public Geoid
{
  protected:
    void SetUp() override
    {
        Geoid::SetUp();
        // s1999a01 is no candidate of s1999; g2003u01 would hold points inside, but its kind is 0.
        const struct {
            const char *name;
            double south, west;
            float value;
        } files[] = {{"g1999u01.bin", 10, 20, 1}, {"g1999u02.bin", 11, 20, 2},    {"g1999a01.bin", 10, 21, 3},
                     {"g1999p01.bin", 30, 30, 4}, {"s1999a01.bin", 30, 30, 5},    {"s1999u01.bin", 10, 20, 9},
                     {"s1999u02.bin", 9, 20, 10}, {"s1999u03.bin", 10, 19.5, 11}, {"g2003u01.bin", 10, 20, 6},
                     {"g2003u03.bin", 11, 20, 7}};
        for (const auto &f : files)
            write(f.name, {f.south, f.west, 0.5, 0.5, 5, 5, f.value != 6}, [&](int, int) { return f.value; });
    }
    // The chosen grid's value, or NaN; s1999a01, opened before, is closed.
    double chosen(int32_t family, double lat, double lon, int32_t sense = 1)
    {
        EXPECT_EQ(tsGeoid_initModelByFile((dir_ + "/s1999a01.bin").c_str()), 0);
        if (tsGeoid_initModelByGeoid(family, dir_.c_str(), lat, lon, sense) == 0)
            return undulation(lat, lon, sense);
        EXPECT_EQ(tsGeoid_closeModel(), 1);
        return kNaN;
    }
};

// Interior beats edge beats corner, the earlier file first.
TEST_F(GeoidFamily, SearchOrderAndFailures)
{
    struct Row {
        int32_t family;
        double lat, lon, expected;
        const char *why;
    };
    const Row rows[] = {
        {4, 11.0, 20.5, 1.0, "interior of u01 stops the search"},
        {4, 11.9, 20.5, 2.0, "edge of u01, interior of the later u02"},
        {4, 11.9, 21.9, 2.0, "corner of u01, edges of u02 and a01: the first edge"},
        {4, 10.1, 21.9, 3.0, "corner of u01, edge of a01 later"},
        {4, 10.1, 20.1, 1.0, "corner of u01 only"},
        {4, 10.25, 21.75, 3.0, "0.25 from u01's south and east edges is its corner: a01's edge wins"},
        {4, 31.0, 31.0, 4.0, "the last candidate, p01"},
        {5, 10.25, 20.5, 10.0, "half a spacing from u01's south edge is in its band: u02's interior"},
        {5, 11.0, 20.25, 11.0, "likewise from the west edge: u03"},
        {5, 10.26, 20.5, 9.0, "just inside: u01's interior"},
        {2, 11.0, 20.5, 7.0, "u01 of kind 0 skipped, u02 missing, u03's edge"},
        {4, 50.0, 50.0, kNaN, "no file holds the point"},
        {5, 31.0, 31.0, kNaN, "s1999 searches u01 to u08 only"},
        {3, 11.0, 20.5, kNaN, "no s2003 file"},
        {1, 11.0, 20.5, kNaN, "no family 1"},
        {6, 11.0, 20.5, kNaN, "no family 6"},
        {4, 95.0, 20.5, kNaN, "latitude off the globe"},
    };
    for (const Row &r : rows)
        EXPECT_PRED2(same, chosen(r.family, r.lat, r.lon), r.expected) << r.why;
    EXPECT_EQ(chosen(4, 11.0, 339.5, 0), 1.0);  // west-positive 339.5 is 20.5 east
    EXPECT_EQ(tsGeoid_initModelByGeoid(4, nullptr, 11.0, 20.5, 1), 1);
}

// A missing separator is added; an empty directory adds nothing.
TEST_F(GeoidFamily, DirectoryWithOrWithoutSeparatorOrEmpty)
{
    EXPECT_EQ(tsGeoid_initModelByGeoid(4, (dir_ + "/").c_str(), 11.0, 20.5, 1), 0);
    EXPECT_EQ(tsGeoid_initModelByGeoid(4, dir_.c_str(), 11.0, 20.5, 1), 0);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(dir_);
    EXPECT_EQ(tsGeoid_initModelByGeoid(4, "", 31.0, 31.0, 1), 0);
    std::filesystem::current_path(before);
    EXPECT_DOUBLE_EQ(undulation(31.5, 31.5), 4.0);
}

}  // namespace
