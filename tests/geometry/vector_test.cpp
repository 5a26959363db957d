// Vectors, lines and frames of the UTMAT kernel: orientation of the line form,
// normalisation, degenerate inputs, crossings, bisectors, frame changes and the
// error word each call leaves behind. Expected values are worked by hand in the
// comments beside them.
#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/vector.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
constexpr double kHalfRoot2 = 0.70710678118654752440;

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

void expectLine(const UTMAT_Droite &l, double a, double b, double c, double tol = 0.0)
{
    EXPECT_NEAR(l.a, a, tol);
    EXPECT_NEAR(l.b, b, tol);
    EXPECT_NEAR(l.c, c, tol);
}

void expectPoint(const dpoint2d &p, double x, double y, double tol = 0.0)
{
    EXPECT_NEAR(p.x, x, tol);
    EXPECT_NEAR(p.y, y, tol);
}

// Leaves 32768 in the error word through a tested null pointer.
void forceFailure()
{
    const dpoint2d a{0, 0}, b{1, 1};
    UTMAT_CalculerVecteur(&a, &b, nullptr);
    ASSERT_EQ(errorWord(), kFail);
}

// Runs each test at the default kernel tolerance and restores the caller's.
class VectorTest : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        saved_ = UTMAT_getCalculPrec();
        UTMAT_setCalculPrecision(0.0001);
    }
    void TearDown() override { UTMAT_setCalculPrecision(saved_); }
    double saved_ = 0.0;
};

// ---- Line form: orientation and normalisation ----

TEST_F(VectorTest, LineFromPointsIsNormalisedWithPowerPositiveOnTheRight)
{
    struct Row {
        dpoint2d p1, p2;    // the line runs from p1 towards p2
        double a, b, c;     // expected unit coefficients
        dpoint2d probe;     // a point off the line
        double probePower;  // positive on the right of travel
    };
    const double r5 = std::sqrt(5.0);
    const Row rows[] = {
        // (0,0)->(1,0): (0,-1,0); (0,1) on the left -1, (0,-1) on the right +1.
        {{0, 0}, {1, 0}, 0, -1, 0, {0, 1}, -1},
        {{0, 0}, {1, 0}, 0, -1, 0, {0, -1}, 1},
        // Heading north the right is east: (2,0)/2, (3,5) -> 3.
        {{0, 0}, {0, 2}, 1, 0, 0, {3, 5}, 3},
        // (1,1)->(4,5): (4,-3)/5, c = -0.8 + 0.6; (5,1) lies |(3,4)x(4,0)|/5 = 16/5 right.
        {{1, 1}, {4, 5}, 0.8, -0.6, -0.2, {5, 1}, 3.2},
        // Heading west the right is north: (0,3)/3, c = -3; (0,5) -> 2.
        {{2, 3}, {-1, 3}, 0, 1, -3, {0, 5}, 2},
        // (0,0)->(1,2): (2,-1)/sqrt 5; (1,0) -> 2/sqrt 5.
        {{0, 0}, {1, 2}, 2 / r5, -1 / r5, 0, {1, 0}, 2 / r5},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(::testing::Message() << "to (" << row.p2.x << "," << row.p2.y << ")");
        UTMAT_Droite line{9, 9, 9};
        UTMAT_CalculerDroite2Pt(&row.p1, &row.p2, &line);
        EXPECT_EQ(errorWord(), 0);
        expectLine(line, row.a, row.b, row.c, 1e-15);
        EXPECT_NEAR(line.a * line.a + line.b * line.b, 1.0, 1e-15);
        EXPECT_NEAR(UTMAT_CalculerPuissancePtDroite(&line, &row.probe), row.probePower, 1e-14);

        // The same line from p1 and the direction p2 - p1.
        const dpoint2d v{row.p2.x - row.p1.x, row.p2.y - row.p1.y};
        UTMAT_CalculerDroitePtVecteur(&row.p1, &v, &line);
        EXPECT_EQ(errorWord(), 0);
        expectLine(line, row.a, row.b, row.c, 1e-15);
    }
}

TEST_F(VectorTest, DegenerateLinesFailWithZeroNormalAndCUntouched)
{
    const dpoint2d p{2, -3}, zero{0, 0};
    UTMAT_Droite line{9, 9, 7.5};
    UTMAT_CalculerDroite2Pt(&p, &p, &line);
    EXPECT_EQ(errorWord(), kFail);
    expectLine(line, 0, 0, 7.5);

    line = {9, 9, -4.25};
    UTMAT_CalculerDroitePtVecteur(&p, &zero, &line);
    EXPECT_EQ(errorWord(), kFail);
    expectLine(line, 0, 0, -4.25);

    // NormerDroite leaves a degenerate line and the norm slot alone.
    line = {0, 0, 5};
    double norm = -1.0;
    UTMAT_NormerDroite(&line, &norm);
    EXPECT_EQ(errorWord(), kFail);
    expectLine(line, 0, 0, 5);
    EXPECT_EQ(norm, -1.0);
}

TEST_F(VectorTest, NormerDroiteScalesAllThreeCoefficients)
{
    UTMAT_Droite line{3, 4, 10};  // / 5
    double norm = -1.0;
    UTMAT_NormerDroite(&line, &norm);
    EXPECT_EQ(errorWord(), 0);
    expectLine(line, 0.6, 0.8, 2.0, 1e-15);
    EXPECT_EQ(norm, 5.0);

    line = {0, -2, 6};  // the norm slot is optional
    UTMAT_NormerDroite(&line, nullptr);
    EXPECT_EQ(errorWord(), 0);
    expectLine(line, 0, -1, 3);
}

TEST_F(VectorTest, LinesBuiltFromALineKeepItsScale)
{
    const UTMAT_Droite axis{0, -2, 0};  // y = 0 at scale 2, heading +x
    const dpoint2d p{3, 7}, t{5, 2}, q{1, 3};
    UTMAT_Droite out{};
    UTMAT_TranslaterDroite(&axis, &t, &out);  // c' = 0 - 0*5 - (-2)*2: y = 2
    expectLine(out, 0, -2, 4);
    UTMAT_CalculerDroiteOrthoDroitePs1Pt(&axis, &p, &out);  // (b, -a, a*7 - b*3): x = 3
    expectLine(out, -2, 0, 6);
    UTMAT_CalculerDroiteParalleleDroitePs1Pt(&axis, &p, &out);  // -(0*3 - 2*7): y = 7
    expectLine(out, 0, -2, 14);
    // d = 2 moves it to the right, south of an eastward line: c = 0 - 2*2, y = -2.
    UTMAT_CalculerDroiteParalleleDroiteDistance(&axis, 2.0, &out);
    expectLine(out, 0, -2, -4);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_EQ(UTMAT_CalculerPuissancePtDroite(&axis, &q), -6.0);  // -2 * 3, not divided
}

// ---- Offsets, projections and sides ----

TEST_F(VectorTest, OffsetAndProjectionOfAnUnnormalisedLine)
{
    const UTMAT_Droite line{3, 4, -25}, other{3, 4, 25};  // 3x + 4y = -+25, norm 5
    const dpoint2d origin{0, 0}, right{3, 9};
    double offset = 0.0;
    UTMAT_CalculerDeportPtDroite(&line, &origin, &offset);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_EQ(offset, -5.0);  // -25 / 5: the origin is on the left
    UTMAT_CalculerDeportPtDroite(&line, &right, &offset);
    EXPECT_EQ(offset, 4.0);  // (9 + 36 - 25) / 5

    dpoint2d foot{};
    UTMAT_ProjeterPtSurDroite(&line, &origin, &foot);  // t = -25/25: (0 + 3, 0 + 4)
    EXPECT_EQ(errorWord(), 0);
    expectPoint(foot, 3, 4);
    UTMAT_ProjeterPtSurDroite(&other, &origin, &foot);  // positive c, t = 1
    expectPoint(foot, -3, -4);
}

TEST_F(VectorTest, SignedGuardLetsAZeroLineWithNegativeCThrough)
{
    // c = -1: the threshold -1e-39 is below a norm of 0, so the division runs:
    // offset = -1/0 = -inf; projection t = -inf and x - 0*t is NaN.
    const dpoint2d p{1, 1};
    const UTMAT_Droite negative{0, 0, -1};
    double offset = 0.0;
    UTMAT_CalculerDeportPtDroite(&negative, &p, &offset);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_TRUE(std::isinf(offset) && offset < 0);
    dpoint2d foot{5, 5};
    UTMAT_ProjeterPtSurDroite(&negative, &p, &foot);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_TRUE(std::isnan(foot.x) && std::isnan(foot.y));

    // c = 2 and c = 0: the zero norm is caught and nothing is written.
    for (double c : {2.0, 0.0}) {
        SCOPED_TRACE(c);
        const UTMAT_Droite zeroLine{0, 0, c};
        offset = 42.0;
        UTMAT_CalculerDeportPtDroite(&zeroLine, &p, &offset);
        EXPECT_EQ(errorWord(), kFail);
        EXPECT_EQ(offset, 42.0);
        foot = {5, 5};
        UTMAT_ProjeterPtSurDroite(&zeroLine, &p, &foot);
        EXPECT_EQ(errorWord(), kFail);
        expectPoint(foot, 5, 5);
    }
}

TEST_F(VectorTest, SideOfLineIsZeroExactlyAtTheTolerance)
{
    // (0,-1,0): s = -y. (0,-2,0): s = -2y, compared without normalising.
    struct Row {
        UTMAT_Droite line;
        dpoint2d p;
        double tol;
        int32_t side;
    };
    const Row rows[] = {
        {{0, -1, 0}, {0, -0.5}, 0.5, 0},    // s = tol
        {{0, -1, 0}, {0, 0.5}, 0.5, 0},     // s = -tol
        {{0, -1, 0}, {0, -0.75}, 0.5, 1},   // right
        {{0, -1, 0}, {0, 0.75}, 0.5, -1},   // left
        {{0, -1, 0}, {4, 0}, 0.0, 0},       // on the line, tol 0
        {{0, -2, 0}, {0, -0.375}, 0.5, 1},  // s = 0.75; normalised it would be 0.375
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(::testing::Message() << "y=" << row.p.y << " tol=" << row.tol);
        forceFailure();
        EXPECT_EQ(UTMAT_CalculerClassePtDroite(&row.p, &row.line, row.tol), row.side);
        EXPECT_EQ(errorWord(), 0);
    }
}

// ---- Crossings ----

TEST_F(VectorTest, IdenticalAndParallelLinesGiveNoCrossingAndNoError)
{
    const UTMAT_Droite rows[][2] = {
        {{0, -1, 0}, {0, -1, 0}},   // identical
        {{0, -1, 0}, {0, -1, 3}},   // y = 0 and y = 3
        {{0, -1, -1}, {0, 2, -6}},  // y = -1 and y = 3, opposite sense, other scale
        {{1, 1, 0}, {2, 2, -4}},    // x + y = 0 and x + y = 2: equal unit normals
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(::testing::Message() << row[1].a << "," << row[1].b << "," << row[1].c);
        dpoint2d out{7, 7};
        int32_t count = 5;
        UTMAT_CalculerIntersection2Droite(&row[0], &row[1], &out, &count);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(count, 0);
        expectPoint(out, 7, 7);
    }
}

TEST_F(VectorTest, CrossingsWorkedByHand)
{
    struct Row {
        UTMAT_Droite d1, d2;
        double x, y, tol;
    };
    const Row rows[] = {
        // Both c = 0: the threshold is 0, so even det = 1e-30 is a crossing, at the origin.
        {{1, 0, 0}, {0, 1, 0}, 0, 0, 0.0},
        {{0, -1, 0}, {1e-30, -1, 0}, 0, 0, 0.0},
        // x = 3 and y = 5 at scales 2 and 4: exact unit forms, det = 1, x0 = 3, y0 = 5,
        // zero residuals: the refinement keeps the crossing exact.
        {{2, 0, -6}, {0, 4, -20}, 3, 5, 0.0},
        // y = 2 and x = -7: det = -1, x0 = -7, y0 = 2, exact.
        {{0, -1, 2}, {-1, 0, -7}, -7, 2, 0.0},
        // y = 1 + x/2 and x + y = 5: 1 + x/2 = 5 - x gives x = 8/3, y = 7/3.
        {{1, -2, 2}, {1, 1, -5}, 8.0 / 3.0, 7.0 / 3.0, 1e-14},
        // y = 0 and 1e-9 x - y + 1 = 0: no tolerance decides parallelism, x = -1e9.
        {{0, -1, 0}, {1e-9, -1, 1}, -1e9, 0, 1e-3},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(::testing::Message() << "expected (" << row.x << "," << row.y << ")");
        dpoint2d out{};
        int32_t count = 0;
        UTMAT_CalculerIntersection2Droite(&row.d1, &row.d2, &out, &count);
        EXPECT_EQ(errorWord(), 0);
        EXPECT_EQ(count, 1);
        expectPoint(out, row.x, row.y, row.tol);
    }
}

TEST_F(VectorTest, DegenerateLineInACrossingFailsWithCountZeroed)
{
    const UTMAT_Droite zero{0, 0, 1}, axis{1, 0, 0};
    for (bool zeroFirst : {true, false}) {
        dpoint2d out{7, 7};
        int32_t count = 5;
        UTMAT_CalculerIntersection2Droite(zeroFirst ? &zero : &axis, zeroFirst ? &axis : &zero, &out, &count);
        EXPECT_EQ(errorWord(), kFail);
        EXPECT_EQ(count, 0);
        expectPoint(out, 7, 7);
    }
}

// ---- Bisectors ----

TEST_F(VectorTest, BisectorsOfTwoLinesAreUnnormalisedCombinations)
{
    // y = 0 (norm 1) and 2x = 0 (norm 2): 2 d1 - d2 = (-2,-2,0), -(2 d1) - d2 = (-2,2,0).
    const UTMAT_Droite d1{0, -1, 0}, d2{2, 0, 0};
    UTMAT_Droite out[2] = {};
    UTMAT_CalculerBissectriceD1D2(&d1, &d2, out);
    EXPECT_EQ(errorWord(), 0);
    expectLine(out[0], -2, -2, 0);
    expectLine(out[1], -2, 2, 0);

    // y = 1 and x = 2: x + y = 3 and y = x - 1, both through (2,1); (3,0) lies 1 from each.
    const UTMAT_Droite e1{0, -1, 1}, e2{1, 0, -2};
    UTMAT_CalculerBissectriceD1D2(&e1, &e2, out);
    expectLine(out[0], -1, -1, 3);
    expectLine(out[1], -1, 1, 1);
}

TEST_F(VectorTest, BisectorOfTwoVectorsHalvesTheCounterClockwiseSweep)
{
    struct Row {
        dpoint2d v1, v2, expected;
    };
    const Row rows[] = {
        {{1, 0}, {-1, 0}, {0, 1}},                     // opposite: left normal of v1
        {{0, 2}, {0, -7}, {-1, 0}},                    // opposite, unequal lengths
        {{1, 0}, {1, 0}, {1, 0}},                      // same direction
        {{1, 0}, {0, -1}, {-kHalfRoot2, kHalfRoot2}},  // sweep of 270 degrees: negated sum
        {{3, 0}, {0, 5}, {kHalfRoot2, kHalfRoot2}},    // unit copies are used
        {{1, 0}, {-1, 1e-5}, {0, 1}},                  // cross 1e-5 within 1e-4: opposite
        {{1, 0}, {1, 1e-5}, {1, 0}},                   // cross 1e-5 within 1e-4: u1 itself
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(::testing::Message() << "v2 (" << row.v2.x << "," << row.v2.y << ")");
        dpoint2d out{9, 9};
        UTMAT_CalculerBissectriceV1V2(&row.v1, &row.v2, &out);
        EXPECT_EQ(errorWord(), 0);
        expectPoint(out, row.expected.x, row.expected.y, 1e-15);
    }

    // A NaN component: u1 = (NaN, 0) is not normalised (its norm is not above
    // 0), w = NaN counts as near 0, so the collinear branch runs; the dot
    // product NaN is not negative, so the result is u1 itself, not its normal.
    const dpoint2d nanVector{std::nan(""), 0}, east{1, 0};
    dpoint2d out{9, 9};
    forceFailure();
    UTMAT_CalculerBissectriceV1V2(&nanVector, &east, &out);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_TRUE(std::isnan(out.x));
    EXPECT_EQ(out.y, 0.0);
}

// ---- Frames ----

TEST_F(VectorTest, ChangeOfFrameRoundTripsAndGivesBackTheCentre)
{
    // p = (3,4) seen from a frame at (1,1): dx, dy = 2, 3; x' = 2c + 3s, y' = 3c - 2s.
    struct Row {
        double angle;
        dpoint2d local;
    };
    const Row rows[] = {
        {0.0, {2, 3}},
        // x axis north: 3 ahead, 2 to the right. Back from (3,-2):
        // centre x = 3 - 0*3 + 1*(-2) = 1, y = 4 - 1*3 - 0*(-2) = 1.
        {kPi / 2, {3, -2}},
        {kPi, {-2, -3}},
        {kPi / 6, {std::sqrt(3.0) + 1.5, 1.5 * std::sqrt(3.0) - 1}},
        {-kPi / 4, {-kHalfRoot2, 5 * kHalfRoot2}},  // (2 - 3)/r2, (3 + 2)/r2
    };
    const dpoint2d p{3, 4}, origin{1, 1};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.angle);
        dpoint2d local{};
        UTMAT_ChangerRepere(&p, &origin, row.angle, &local);
        expectPoint(local, row.local.x, row.local.y, 1e-14);

        dpoint2d back = row.local;
        UTMAT_CalculerPointTranslationRotation(&origin, row.angle, &back);
        expectPoint(back, p.x, p.y, 1e-14);

        // The second frame's origin, from p in the first frame and in the second.
        dpoint2d centre{};
        UTMAT_CalculerCentreRepere2(&p, &row.local, row.angle, &centre);
        expectPoint(centre, origin.x, origin.y, 1e-14);
        EXPECT_EQ(errorWord(), 0);
    }
}

// ---- Zero vectors ----

TEST_F(VectorTest, ZeroVectorsAreNoFailure)
{
    forceFailure();
    dpoint2d v{0, 0};
    UTMAT_NormerVecteur(&v);
    EXPECT_EQ(errorWord(), 0);
    expectPoint(v, 0, 0);

    forceFailure();
    dpoint3d w{0, 0, 0};
    UTMAT_NormerVecteur3d(&w);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_TRUE(w.x == 0 && w.y == 0 && w.z == 0);

    // Coincident points of space give a zero direction; distinct ones a unit one.
    const dpoint3d p{1, 2, 3}, q{3, 5, 9};  // q - p = (2,3,6), length 7
    UTMAT_Droite3d line{{9, 9, 9}, {9, 9, 9}};
    UTMAT_CalculerDroite2Pt3d(&p, &p, &line);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_TRUE(line.point.x == 1 && line.point.z == 3);
    EXPECT_TRUE(line.direction.x == 0 && line.direction.y == 0 && line.direction.z == 0);
    UTMAT_CalculerDroite2Pt3d(&p, &q, &line);
    EXPECT_NEAR(line.direction.y, 3.0 / 7.0, 1e-16);
}

// ---- Null pointers ----

TEST_F(VectorTest, NullPointersThatAreTestedFailAndWriteNothing)
{
    const dpoint2d p{1, 2}, q{3, 5};
    const dpoint3d p3{1, 2, 3};
    const UTMAT_Droite line{0, -1, 0};
    dpoint2d out{7, 7};
    dpoint3d out3{7, 7, 7};
    UTMAT_Droite outLine{7, 7, 7};
    UTMAT_Droite outLines[2] = {{7, 7, 7}, {7, 7, 7}};
    int32_t count = 7;

    struct Row {
        const char *name;
        std::function<void()> call;
    };
    const Row rows[] = {
        {"Vecteur out", [&] { UTMAT_CalculerVecteur(&p, &q, nullptr); }},
        {"Vecteur3d out", [&] { UTMAT_CalculerVecteur3d(&p3, &p3, nullptr); }},
        {"Somme v1", [&] { UTMAT_CalculerSommeV1V2(nullptr, &q, &out); }},
        {"Somme v2", [&] { UTMAT_CalculerSommeV1V2(&p, nullptr, &out); }},
        {"NormerVecteur", [&] { UTMAT_NormerVecteur(nullptr); }},
        {"NormerVecteur3d", [&] { UTMAT_NormerVecteur3d(nullptr); }},
        {"Vectoriel3d v1", [&] { UTMAT_CalculerProduitVectoriel3d(nullptr, &p3, &out3); }},
        {"Translater line", [&] { UTMAT_TranslaterDroite(nullptr, &p, &outLine); }},
        {"Ortho point", [&] { UTMAT_CalculerDroiteOrthoDroitePs1Pt(&line, nullptr, &outLine); }},
        {"Parallele point", [&] { UTMAT_CalculerDroiteParalleleDroitePs1Pt(&line, nullptr, &outLine); }},
        {"Parallele d line", [&] { UTMAT_CalculerDroiteParalleleDroiteDistance(nullptr, 1.0, &outLine); }},
        {"Classe point", [&] { UTMAT_CalculerClassePtDroite(nullptr, &line, 0.1); }},
        {"BissectriceD d2", [&] { UTMAT_CalculerBissectriceD1D2(&line, nullptr, outLines); }},
        {"BissectriceV v1", [&] { UTMAT_CalculerBissectriceV1V2(nullptr, &q, &out); }},
        {"Intersection out", [&] { UTMAT_CalculerIntersection2Droite(&line, &line, nullptr, &count); }},
        {"Intersection count", [&] { UTMAT_CalculerIntersection2Droite(&line, &line, &out, nullptr); }},
        {"ChangerRepere origin", [&] { UTMAT_ChangerRepere(&p, nullptr, 1.0, &out); }},
        {"TranslationRotation", [&] { UTMAT_CalculerPointTranslationRotation(nullptr, 1.0, &out); }},
        {"CentreRepere2 pB", [&] { UTMAT_CalculerCentreRepere2(&p, nullptr, 1.0, &out); }},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        row.call();
        EXPECT_EQ(errorWord(), kFail);
        // Nothing is written, not even the crossing's count, which is zeroed only once the work starts.
        expectPoint(out, 7, 7);
        EXPECT_TRUE(out3.x == 7 && out3.y == 7 && out3.z == 7);
        expectLine(outLine, 7, 7, 7);
        expectLine(outLines[0], 7, 7, 7);
        expectLine(outLines[1], 7, 7, 7);
        EXPECT_EQ(count, 7);
    }

    // The distance of space answers 0.0 to a null point.
    EXPECT_EQ(UTMAT_CalculerDistance2Pt3d(&p3, nullptr), 0.0);
    EXPECT_EQ(errorWord(), kFail);
}

// ---- Conversions and the error word ----

TEST_F(VectorTest, ConversionsCopyAndLeaveTheErrorWordAlone)
{
    forceFailure();
    const dpoint3d in3{1.5, -2.5, 9};
    dpoint2d out2{};
    ConvertPoint32(&in3, &out2);
    expectPoint(out2, 1.5, -2.5);
    dpoint3d out3{0, 0, 9};
    ConvertPoint23(&out2, &out3);
    EXPECT_TRUE(out3.x == 1.5 && out3.y == -2.5 && out3.z == 0);

    const dpoint3d points3[] = {{1, 2, 3}, {4, 5, 6}};
    dpoint2d *flat = ConvertArray32(points3, 2);
    ASSERT_NE(flat, nullptr);
    expectPoint(flat[1], 4, 5);
    dpoint3d *raised = ConvertArray23(flat, 2);
    ASSERT_NE(raised, nullptr);
    EXPECT_TRUE(raised[0].y == 2 && raised[1].x == 4 && raised[1].z == 0);
    // A count of 0 returns the heap's zero-size block (a real one here), still to be freed.
    dpoint2d *empty = ConvertArray32(points3, 0);
    EXPECT_EQ(errorWord(), kFail);  // none of the four touched it
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(tsMem_free(empty), 0);
    EXPECT_EQ(tsMem_free(flat), 0);
    EXPECT_EQ(tsMem_free(raised), 0);
}

TEST_F(VectorTest, ErrorWordIsClearedByTheNextKernelCallOnly)
{
    forceFailure();
    EXPECT_EQ(errorWord(), kFail);  // reading does not clear it
    EXPECT_EQ(errorWord(), kFail);
    const dpoint2d a{0, 0}, b{3, 4};
    EXPECT_EQ(UTMAT_CalculerDistance2Pt(&a, &b), 5.0);
    EXPECT_EQ(errorWord(), 0);

    forceFailure();
    EXPECT_EQ(UTMAT_Egal(1.0, 2.0, 0.0), 0);  // a comparison clears it too
    EXPECT_EQ(errorWord(), 0);

    // Distance 5 against tol 5 is equal (the band includes its edge), against 4.999
    // it is not; either way the comparison inside leaves the word at 0.
    struct Row {
        double tol;
        int32_t same;
    };
    for (const Row row : {Row{5.0, 1}, Row{4.999, 0}}) {
        forceFailure();
        EXPECT_EQ(UTMAT_PointsIdentiques(&a, &b, row.tol), row.same);
        EXPECT_EQ(errorWord(), 0);
    }
    const dpoint3d o{0, 0, 0}, c{1, 2, 2};  // distance 3
    forceFailure();
    EXPECT_EQ(UTMAT_Points3dIdentiques(&o, &c, 3.0), 1);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_EQ(UTMAT_Points3dIdentiques(&o, &c, 2.5), 0);
}

}  // namespace
