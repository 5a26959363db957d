// Geoid grids: reading undulations from small grid files written here, the
// block choice at the grid's edges, the longitude sense, the search of a
// family of regional files, and the failure values.
#include <tessar/geoid.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

static_assert(std::endian::native == std::endian::little, "grid files are written in the host's byte order");

// A grid as it is stored: header fields and the values row by row from the
// south, each row from the west.
struct Grid {
    double south;
    double west;
    double latSpacing;
    double lonSpacing;
    std::int32_t rows;
    std::int32_t columns;
    std::int32_t kind = 1;
    std::vector<float> values;

    float &at(std::int32_t row, std::int32_t column)  // from 0
    {
        return values[static_cast<std::size_t>(row * columns + column)];
    }
};

Grid makeGrid(double south, double west, double latSpacing, double lonSpacing, std::int32_t rows,
              std::int32_t columns, const std::function<float(int, int)> &value)
{
    Grid g{south, west, latSpacing, lonSpacing, rows, columns, 1, {}};
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c)
            g.values.push_back(value(r, c));
    return g;
}

template <class T> void append(std::vector<char> &bytes, T field)
{
    const auto *p = reinterpret_cast<const char *>(&field);
    bytes.insert(bytes.end(), p, p + sizeof field);
}

// Writes the grid in the file layout; keep > 0 cuts the file to that many bytes.
void writeGrid(const std::string &path, const Grid &g, std::size_t keep = 0)
{
    std::vector<char> bytes;
    append(bytes, g.south);
    append(bytes, g.west);
    append(bytes, g.latSpacing);
    append(bytes, g.lonSpacing);
    append(bytes, g.rows);
    append(bytes, g.columns);
    append(bytes, g.kind);
    for (float v : g.values)
        append(bytes, v);
    if (keep > 0) bytes.resize(keep);
    std::ofstream out(path, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

class Geoid : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/tessar_geoid_XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir_ = pattern;
        tsGeoid_closeModel();
    }
    void TearDown() override
    {
        tsGeoid_closeModel();  // the model is process-wide
        std::filesystem::remove_all(dir_);
    }
    std::string path(const std::string &name) const { return dir_ + "/" + name; }
    std::string write(const std::string &name, const Grid &g, std::size_t keep = 0) const
    {
        writeGrid(path(name), g, keep);
        return path(name);
    }
    // The undulation, or nan when the call fails.
    static double undulation(double lat, double lon, std::int32_t sense = 1)
    {
        double n = -99.0;
        const std::int32_t status = tsGeoid_getUndulationAtLatLong(&n, lat, lon, sense);
        if (status != 0) {
            EXPECT_EQ(status, 1);
            EXPECT_EQ(n, 0.0);  // a failure leaves the result at 0
            return std::nan("");
        }
        return n;
    }

    std::string dir_;
};

// Lagrange weights of the quadratic through t = 0, 1, 2, written out for the
// hand-worked values below: L0 = (t-1)(t-2)/2, L1 = t(2-t), L2 = t(t-1)/2.
//   L0(0.5) = 0.375  L0(1.5) = -0.125  L0(0) = 1   L2(1.5) = 0.375  L2(2) = 1

TEST(GeoidFit, QuadraticThroughThreeEquallySpacedValues)
{
    struct Row {
        double t, f0, f1, f2, expected;
    };
    const Row rows[] = {
        {0.0, 3.0, -7.0, 11.0, 3.0},   // the three nodes give the values
        {1.0, 3.0, -7.0, 11.0, -7.0},  //
        {2.0, 3.0, -7.0, 11.0, 11.0},  //
        {0.5, 0.0, 1.0, 4.0, 0.25},    // f = t^2
        {3.0, 0.0, 1.0, 4.0, 9.0},     // t^2 extrapolated
        {1.5, 1.0, 3.0, 5.0, 4.0},     // a straight line stays straight
        {0.5, 8.0, 0.0, 0.0, 3.0},     // 8 L0(0.5)
        {1.5, 0.0, 0.0, 4.0, 1.5},     // 4 L2(1.5)
    };
    for (const Row &r : rows)
        EXPECT_DOUBLE_EQ(tsGeoid_biQuadraticFit(r.t, r.f0, r.f1, r.f2), r.expected) << "t = " << r.t;
}

TEST_F(Geoid, NodeGivesTheStoredFloatWithoutInterpolation)
{
    // 0.1f between neighbours of 1e9: interpolated at the node it would be
    // (f1 - f0) + f0, which rounds away from f1 in double for these values.
    Grid g = makeGrid(40.0, 10.0, 0.25, 0.25, 3, 3, [](int, int) { return 1.0e9f; });
    g.at(1, 1) = 0.1f;
    ASSERT_EQ(tsGeoid_initModelByFile(write("node.bin", g).c_str()), 0);
    ASSERT_NE(tsGeoid_biQuadraticFit(1.0, 1.0e9f, 0.1f, 1.0e9f), static_cast<double>(0.1f));

    EXPECT_EQ(undulation(40.25, 10.25), static_cast<double>(0.1f));
    EXPECT_EQ(undulation(40.0, 10.0), 1.0e9);
    EXPECT_EQ(undulation(40.5, 10.5), 1.0e9);  // north-east corner
}

TEST_F(Geoid, ReproducesABiquadraticSurfaceEverywhere)
{
    // Interpolation on any 3 x 3 block is exact for a surface quadratic in
    // each direction. In node units u (north) and v (east):
    //   f = 12 + 0.5 u - 0.25 v + 0.125 u^2 - 0.0625 v^2 + 0.03125 u v,
    // whose node values are exact floats. The surface is not symmetric, so
    // swapped rows and columns or a reversed row order show up.
    const auto f = [](double u, double v) {
        return 12.0 + 0.5 * u - 0.25 * v + 0.125 * u * u - 0.0625 * v * v + 0.03125 * u * v;
    };
    const Grid g =
        makeGrid(45.0, 5.0, 0.25, 0.5, 6, 7, [&](int r, int c) { return static_cast<float>(f(r, c)); });
    ASSERT_EQ(tsGeoid_initModelByFile(write("smooth.bin", g).c_str()), 0);

    const double points[][2] = {
        {0.5, 0.5}, {0.1, 5.9},  {2.3, 3.7}, {4.75, 0.2},  {5.0, 6.0}, {5.0, 2.6},  // last row and column
        {3.4, 6.0}, {0.0, 1.25}, {2.5, 0.0}, {4.99, 5.99}, {2.0, 3.0},              // a node
    };
    for (const auto &p : points) {
        const double lat = 45.0 + p[0] * 0.25;
        const double lon = 5.0 + p[1] * 0.5;
        EXPECT_NEAR(undulation(lat, lon), f(p[0], p[1]), 1e-9) << "u = " << p[0] << ", v = " << p[1];
    }
}

TEST_F(Geoid, BlockStaysOnTheGridAtItsEdges)
{
    // 4 rows x 5 columns, 0.5 deg by 0.25 deg from (10 N, 20 E): north 11.5,
    // east 21. All zero but 8 at the south-west node and 4 at the north-east
    // one, so a value tells which block was used.
    Grid g = makeGrid(10.0, 20.0, 0.5, 0.25, 4, 5, [](int, int) { return 0.0f; });
    g.at(0, 0) = 8.0f;
    g.at(3, 4) = 4.0f;
    ASSERT_EQ(tsGeoid_initModelByFile(write("spikes.bin", g).c_str()), 0);

    struct Row {
        double lat, lon, expected;
        const char *why;
    };
    const Row rows[] = {
        // First cell: block on rows and columns 1 to 3, x = y = 0.5: 8 L0 L0.
        {10.25, 20.125, 1.125, "first cell"},
        // Second row cell, same block, x = 1.5: 8 L0(1.5) L0(0.5).
        {10.75, 20.125, -0.375, "second cell shares the first block"},
        // Third cell: block on rows 2 to 4, the south-west spike is out of it
        // (a block on rows 1 to 3 would give 8 L0(2.5) L0(0.5) = 1.125).
        {11.25, 20.125, 0.0, "interior block"},
        // North edge: i = rows - 1, centred on the second-last row; x = 2,
        // columns 3 to 5 with y = 1.5: 4 L2(2) L2(1.5).
        {11.5, 20.875, 1.5, "north edge"},
        // East edge: j = columns - 1, centred on the second-last column; y = 2.
        {11.25, 21.0, 1.5, "east edge"},
        // West and south edges off the nodes: y = 0 (or x = 0) and L0(0) = 1.
        {10.25, 20.0, 3.0, "west edge"},
        {10.0, 20.125, 3.0, "south edge"},
        // Nodes, read directly.
        {10.0, 20.0, 8.0, "south-west node"},
        {11.5, 21.0, 4.0, "north-east node"},
        {10.5, 20.25, 0.0, "interior node"},
    };
    for (const Row &r : rows)
        EXPECT_DOUBLE_EQ(undulation(r.lat, r.lon), r.expected) << r.why;
}

TEST_F(Geoid, OneArcMinuteGridMatchesAPlaneAndKeepsItsSlope)
{
    // A realistic spacing that is not a power of two: on a plane the
    // interpolation is exact up to rounding. N = 30 + 0.01 u - 0.02 v.
    const double step = 1.0 / 60.0;
    const Grid g = makeGrid(46.0, 7.0, step, step, 61, 61,
                            [](int r, int c) { return static_cast<float>(30.0 + 0.01 * r - 0.02 * c); });
    ASSERT_EQ(tsGeoid_initModelByFile(write("minute.bin", g).c_str()), 0);
    // 46 deg 20.5' N, 7 deg 40.25' E: u = 20.5, v = 40.25.
    EXPECT_NEAR(undulation(46.0 + 20.5 / 60.0, 7.0 + 40.25 / 60.0), 30.0 + 0.205 - 0.805, 1e-5);
}

TEST_F(Geoid, LongitudeSenseAndTheSeamAt360)
{
    // Columns every 0.5 deg from 358 to 362 (9 columns), value = column
    // index: the value tells the longitude used.
    const Grid g = makeGrid(-1.0, 358.0, 0.5, 0.5, 5, 9, [](int, int c) { return static_cast<float>(c); });
    ASSERT_EQ(tsGeoid_initModelByFile(write("seam.bin", g).c_str()), 0);

    EXPECT_DOUBLE_EQ(undulation(0.0, -1.0, 1), 2.0);   // east-positive -1 is 359
    EXPECT_DOUBLE_EQ(undulation(0.0, 1.0, 0), 2.0);    // west-positive 1 is 359
    EXPECT_DOUBLE_EQ(undulation(0.0, -0.25, 1), 3.5);  // 359.75, between nodes
    EXPECT_DOUBLE_EQ(undulation(0.0, 0.0, 0), 4.0);    // west-positive 0 is 360
    EXPECT_DOUBLE_EQ(undulation(0.0, 360.0, 1), 4.0);
    EXPECT_DOUBLE_EQ(undulation(0.25, 359.75, 1), 3.5);
    // East-positive 0 stays 0: it does not reach the column at 360.
    EXPECT_TRUE(std::isnan(undulation(0.0, 0.0, 1)));
    // Beyond 360 in magnitude is rejected, although the grid reaches 362.
    EXPECT_TRUE(std::isnan(undulation(0.0, 361.0, 1)));
    EXPECT_TRUE(std::isnan(undulation(0.0, -1.0, 0)));  // 361 again
}

TEST_F(Geoid, WestPositiveLongitude100Is260)
{
    const Grid g = makeGrid(0.0, 259.0, 1.0, 0.5, 3, 5, [](int, int c) { return static_cast<float>(c); });
    ASSERT_EQ(tsGeoid_initModelByFile(write("west.bin", g).c_str()), 0);
    EXPECT_DOUBLE_EQ(undulation(1.0, 100.0, 0), 2.0);
    EXPECT_DOUBLE_EQ(undulation(1.0, -100.0, 1), 2.0);
    EXPECT_DOUBLE_EQ(undulation(1.0, 260.0, 7), 2.0);  // any non-zero sense is east
    EXPECT_TRUE(std::isnan(undulation(1.0, 100.0, 1)));
}

TEST_F(Geoid, PointsOffTheGridOrTheGlobeFail)
{
    // Rows from 89 to 91 deg: the grid itself reaches past the pole.
    const Grid g = makeGrid(89.0, 10.0, 0.5, 0.5, 5, 5, [](int, int) { return 5.0f; });
    ASSERT_EQ(tsGeoid_initModelByFile(write("pole.bin", g).c_str()), 0);
    EXPECT_DOUBLE_EQ(undulation(90.0, 11.0), 5.0);
    EXPECT_TRUE(std::isnan(undulation(90.5, 11.0)));   // latitude above 90
    EXPECT_TRUE(std::isnan(undulation(88.99, 11.0)));  // south of the grid
    EXPECT_TRUE(std::isnan(undulation(89.5, 12.01)));  // east of it
    EXPECT_TRUE(std::isnan(undulation(89.5, 9.99)));   // west of it
}

TEST_F(Geoid, NoModelOrAFailedOpenGivesOne)
{
    EXPECT_TRUE(std::isnan(undulation(0.0, 0.0)));  // nothing open at all
    EXPECT_EQ(tsGeoid_closeModel(), 1);             // nothing to close

    const Grid good = makeGrid(0.0, 0.0, 1.0, 1.0, 3, 3, [](int, int) { return 1.0f; });
    Grid kindZero = good;
    kindZero.kind = 0;
    const std::string goodPath = write("good.bin", good);
    const std::string failing[] = {
        path("missing.bin"),
        "",
        write("kind0.bin", kindZero),
        write("short.bin", good, 20),  // cut inside the header: the kind is never read
        dir_,                          // a directory opens but reads nothing
    };
    for (const std::string &p : failing) {
        ASSERT_EQ(tsGeoid_initModelByFile(goodPath.c_str()), 0);
        EXPECT_DOUBLE_EQ(undulation(1.0, 1.0), 1.0);
        // A failing open closes the model that was open before.
        EXPECT_EQ(tsGeoid_initModelByFile(p.c_str()), 1) << p;
        EXPECT_TRUE(std::isnan(undulation(1.0, 1.0))) << p;
        EXPECT_EQ(tsGeoid_closeModel(), 1) << p;
    }
    EXPECT_EQ(tsGeoid_initModelByFile(nullptr), 1);

    ASSERT_EQ(tsGeoid_initModelByFile(goodPath.c_str()), 0);
    EXPECT_EQ(tsGeoid_closeModel(), 0);
    EXPECT_EQ(tsGeoid_closeModel(), 1);
    EXPECT_TRUE(std::isnan(undulation(1.0, 1.0)));
}

TEST_F(Geoid, ValuesCutFromTheFileGiveTheLastValueRead)
{
    // Header complete but only the first row stored: reads past the end are
    // short and leave the value read before. No failure is reported.
    const Grid g =
        makeGrid(0.0, 0.0, 1.0, 1.0, 3, 3, [](int r, int c) { return static_cast<float>(10 * r + c); });
    ASSERT_EQ(tsGeoid_initModelByFile(write("cut.bin", g, 44 + 3 * 4).c_str()), 0);
    EXPECT_DOUBLE_EQ(undulation(0.0, 2.0), 2.0);  // row 1, column 3: stored
    EXPECT_DOUBLE_EQ(undulation(2.0, 1.0), 2.0);  // row 3 is missing: still 2
    double n = -1.0;
    EXPECT_EQ(tsGeoid_getUndulationAtLatLong(&n, 1.5, 1.5, 1), 0);
    EXPECT_TRUE(std::isfinite(n));
}

TEST_F(Geoid, ValuesAreReadFromTheFileOnDemand)
{
    // The grid is not loaded: a value changed in the open file after the
    // model was opened is what the next call gives. Row 2, column 3 (from 1)
    // of a 3 x 4 grid lies at byte 40 + 4 ((2 - 1) 4 + 3) = 68.
    const Grid g = makeGrid(0.0, 0.0, 1.0, 1.0, 3, 4, [](int, int) { return 2.0f; });
    const std::string file = write("live.bin", g);
    ASSERT_EQ(tsGeoid_initModelByFile(file.c_str()), 0);
    EXPECT_DOUBLE_EQ(undulation(1.0, 2.0), 2.0);
    {
        std::fstream io(file, std::ios::binary | std::ios::in | std::ios::out);
        const float patched = 6.5f;
        io.seekp(68);
        io.write(reinterpret_cast<const char *>(&patched), sizeof patched);
    }
    EXPECT_DOUBLE_EQ(undulation(1.0, 2.0), 6.5);  // the node itself
    // Between nodes: i = 1, j = 2, block on rows 1 to 3 and columns 2 to 4
    // (longitudes 1 to 3), x = 1 and y = 1.5, so the patched node weighs
    // L1(1.5) = 0.75: 2 + 4.5 * 0.75.
    EXPECT_DOUBLE_EQ(undulation(1.0, 2.5), 5.375);
}

// ---- The search of a family of files ----

class GeoidFamily : public Geoid
{
  protected:
    void SetUp() override
    {
        Geoid::SetUp();
        // 2 deg x 2 deg grids, 0.5 deg spacing: the edge bands are 0.25 deg
        // wide. Each grid holds one constant value, which names it.
        const auto grid = [](double south, double west, float value) {
            return makeGrid(south, west, 0.5, 0.5, 5, 5, [=](int, int) { return value; });
        };
        write("g1999u01.bin", grid(10.0, 20.0, 1.0f));   // [10, 12] x [20, 22]
        write("g1999u02.bin", grid(11.0, 20.0, 2.0f));   // [11, 13] x [20, 22]
        write("g1999a01.bin", grid(10.0, 21.0, 3.0f));   // [10, 12] x [21, 23]
        write("g1999p01.bin", grid(30.0, 30.0, 4.0f));   // [30, 32] x [30, 32]
        write("s1999a01.bin", grid(30.0, 30.0, 5.0f));   // not a candidate of s1999
        write("s1999u01.bin", grid(10.0, 20.0, 9.0f));   // [10, 12] x [20, 22]
        write("s1999u02.bin", grid(9.0, 20.0, 10.0f));   // [9, 11] x [20, 22]
        write("s1999u03.bin", grid(10.0, 19.5, 11.0f));  // [10, 12] x [19.5, 21.5]
        Grid hidden = grid(10.0, 20.0, 6.0f);
        hidden.kind = 0;
        write("g2003u01.bin", hidden);                  // interior, but kind 0
        write("g2003u03.bin", grid(11.0, 20.0, 7.0f));  // holds the point below on an edge
    }

    // The value of the grid chosen for the point, or nan when none.
    double chosen(std::int32_t family, double lat, double lon, std::int32_t sense = 1)
    {
        if (tsGeoid_initModelByGeoid(family, dir_.c_str(), lat, lon, sense) != 0) {
            EXPECT_TRUE(std::isnan(undulation(lat, lon)));  // the state is closed
            return std::nan("");
        }
        return undulation(lat, lon, sense);
    }
};

TEST_F(GeoidFamily, InteriorBeatsEdgeBeatsCornerEarlierFileFirst)
{
    struct Row {
        double lat, lon, expected;
        const char *why;
    };
    const Row rows[] = {
        {11.0, 20.5, 1.0, "interior of u01 stops the search"},
        {11.9, 20.5, 2.0, "edge of u01, interior of the later u02"},
        {11.9, 21.9, 2.0, "corner of u01, edges of u02 and a01: the first edge"},
        {10.1, 21.9, 3.0, "corner of u01, edge of a01 later"},
        {10.1, 20.1, 1.0, "corner of u01 only"},
        // Bands are inclusive: 0.25 from the south and east edges of u01 is a
        // corner, so the edge of a01 wins.
        {10.25, 21.75, 3.0, "band edges included"},
        {31.0, 31.0, 4.0, "the last candidate, p01"},
    };
    for (const Row &r : rows)
        EXPECT_DOUBLE_EQ(chosen(4, r.lat, r.lon), r.expected) << r.why;
}

TEST_F(GeoidFamily, BandsIncludeTheirInnerEdge)
{
    // Exactly half a spacing (0.25) from the south edge of s1999u01 is in its
    // band, so the interior of the later u02 wins; likewise from the west edge
    // with u03. Bands without their edge would stop at u01.
    EXPECT_DOUBLE_EQ(chosen(5, 10.25, 20.5), 10.0);
    EXPECT_DOUBLE_EQ(chosen(5, 11.0, 20.25), 11.0);
    EXPECT_DOUBLE_EQ(chosen(5, 10.26, 20.5), 9.0);  // just inside: u01's interior
}

TEST_F(GeoidFamily, SearchUsesTheLongitudeSense)
{
    EXPECT_DOUBLE_EQ(chosen(4, 11.0, 339.5, 0), 1.0);  // 360 - 339.5 = 20.5 east
    EXPECT_DOUBLE_EQ(chosen(4, 11.0, -339.5, 1), 1.0);
}

TEST_F(GeoidFamily, FilesOfKindZeroAreSkipped)
{
    // g2003u01 holds the point in its interior but has kind 0; u02 is
    // missing; u03 holds it on an edge.
    EXPECT_DOUBLE_EQ(chosen(2, 11.0, 20.5), 7.0);
}

TEST_F(GeoidFamily, NothingFoundLeavesTheModelClosed)
{
    const std::string any = path("g1999u01.bin");
    const struct {
        std::int32_t family;
        double lat, lon;
        const char *why;
    } rows[] = {
        {4, 50.0, 50.0, "no file holds the point"},
        {5, 31.0, 31.0, "s1999 searches u01 to u08 only"},
        {3, 11.0, 20.5, "no s2003 file at all"},
        {1, 11.0, 20.5, "no family 1"},
        {6, 11.0, 20.5, "no family 6"},
        {4, 95.0, 20.5, "latitude off the globe"},
    };
    for (const auto &r : rows) {
        ASSERT_EQ(tsGeoid_initModelByFile(any.c_str()), 0);
        EXPECT_EQ(tsGeoid_initModelByGeoid(r.family, dir_.c_str(), r.lat, r.lon, 1), 1) << r.why;
        EXPECT_TRUE(std::isnan(undulation(11.0, 21.0))) << r.why;
        EXPECT_EQ(tsGeoid_closeModel(), 1) << r.why;
    }
    EXPECT_EQ(tsGeoid_initModelByGeoid(4, nullptr, 11.0, 20.5, 1), 1);
}

TEST_F(GeoidFamily, DirectoryWithOrWithoutSeparatorOrEmpty)
{
    EXPECT_EQ(tsGeoid_initModelByGeoid(4, (dir_ + "/").c_str(), 11.0, 20.5, 1), 0);
    EXPECT_EQ(tsGeoid_initModelByGeoid(4, dir_.c_str(), 11.0, 20.5, 1), 0);

    // An empty directory adds nothing: the names are relative to the working directory.
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(dir_);
    EXPECT_EQ(tsGeoid_initModelByGeoid(4, "", 31.0, 31.0, 1), 0);
    EXPECT_DOUBLE_EQ(undulation(31.0, 31.0), 4.0);
    std::filesystem::current_path(before);
    // The open file stays usable after the working directory changed.
    EXPECT_DOUBLE_EQ(undulation(31.5, 31.5), 4.0);
}

}  // namespace
