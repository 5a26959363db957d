// UTMAT vectors, lines and frames: the orientation of the line form, degenerate
// inputs, crossings, bisectors and the error word. Worked by hand.
#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/vector.h>

#include <gtest/gtest.h>

#include <cmath>
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

TEST(VectorLines, FromPointsNormalisedWithPowerPositiveOnTheRight)
{
    struct Row {
        dpoint2d p1, p2, probe;  // travel from p1 towards p2; probe off the line
        double a, b, c, power;   // unit coefficients; the probe's power
    } rows[] = {
        {{0, 0}, {1, 0}, {0, 1}, 0, -1, 0, -1},          // (0, 1) on the left
        {{1, 1}, {4, 5}, {5, 1}, 0.8, -0.6, -0.2, 3.2},  // |(3, 4) x (4, 0)| / 5
        {{2, 3}, {-1, 3}, {0, 5}, 0, 1, -3, 2},          // heading west, the right is north
    };
    for (const Row &row : rows) {
        UTMAT_Droite line{9, 9, 9};
        UTMAT_CalculerDroite2Pt(&row.p1, &row.p2, &line);
        EXPECT_EQ(errorWord(), 0);
        expectLine(line, row.a, row.b, row.c, 1e-15);
        EXPECT_NEAR(UTMAT_CalculerPuissancePtDroite(&line, &row.probe), row.power, 1e-14) << row.p2.x;
        const dpoint2d v{row.p2.x - row.p1.x, row.p2.y - row.p1.y};
        UTMAT_CalculerDroitePtVecteur(&row.p1, &v, &line);
        expectLine(line, row.a, row.b, row.c, 1e-15);
    }
}

TEST(VectorLines, NormalisingAndDegenerateLines)
{
    UTMAT_Droite line{3, 4, 10};  // all three / 5
    double norm = -1.0;
    UTMAT_NormerDroite(&line, &norm);
    EXPECT_EQ(errorWord(), 0);
    expectLine(line, 0.6, 0.8, 2.0, 1e-15);
    EXPECT_EQ(norm, 5.0);
    // Degenerate: a and b stored as 0, c untouched, 32768; NormerDroite changes nothing.
    const dpoint2d p{2, -3}, zero{0, 0};
    line = {9, 9, 7.5};
    UTMAT_CalculerDroite2Pt(&p, &p, &line);
    EXPECT_EQ(errorWord(), kFail);
    expectLine(line, 0, 0, 7.5);
    line = {9, 9, -4.25};
    UTMAT_CalculerDroitePtVecteur(&p, &zero, &line);
    EXPECT_EQ(errorWord(), kFail);
    UTMAT_NormerDroite(&line, &norm);
    EXPECT_EQ(errorWord(), kFail);
    expectLine(line, 0, 0, -4.25);
    EXPECT_EQ(norm, 5.0);
}

TEST(VectorLines, LinesBuiltFromALineKeepItsScale)
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
    UTMAT_CalculerDroiteParalleleDroiteDistance(&axis, 2.0, &out);  // to the right (south): y = -2
    expectLine(out, 0, -2, -4);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_EQ(UTMAT_CalculerPuissancePtDroite(&axis, &q), -6.0);  // -2 * 3, not divided
}

TEST(VectorLines, OffsetAndProjectionWithTheSignedGuard)
{
    const UTMAT_Droite line{3, 4, -25}, other{3, 4, 25};  // norm 5
    const dpoint2d origin{0, 0}, right{3, 9};
    double offset = 0.0;
    UTMAT_CalculerDeportPtDroite(&line, &right, &offset);
    EXPECT_EQ(offset, 4.0);  // (9 + 36 - 25) / 5: on the right
    dpoint2d foot{};
    UTMAT_ProjeterPtSurDroite(&line, &origin, &foot);  // t = -25 / 25
    EXPECT_EQ(errorWord(), 0);
    expectPoint(foot, 3, 4);
    UTMAT_ProjeterPtSurDroite(&other, &origin, &foot);
    expectPoint(foot, -3, -4);

    // a = b = 0: the threshold c 1e-39 is signed. With c = -1 it lies below
    // the norm 0 and the division runs (offset -1 / 0, foot x - 0 * inf);
    // with c = 2 or 0 the zero norm is caught and nothing is written.
    for (double c : {-1.0, 2.0, 0.0}) {
        const UTMAT_Droite zeroLine{0, 0, c};
        offset = 42.0;
        foot = {5, 5};
        UTMAT_CalculerDeportPtDroite(&zeroLine, &right, &offset);
        EXPECT_EQ(errorWord(), c < 0 ? 0 : kFail) << c;
        UTMAT_ProjeterPtSurDroite(&zeroLine, &right, &foot);
        EXPECT_EQ(errorWord(), c < 0 ? 0 : kFail) << c;
        EXPECT_EQ(offset, c < 0 ? -INFINITY : 42.0) << c;
        EXPECT_EQ(std::isnan(foot.x) && std::isnan(foot.y), c < 0) << c;
    }
}

TEST(VectorLines, SideOfLineIsZeroExactlyAtTheTolerance)
{
    struct Row {
        UTMAT_Droite line;  // s = -y, or -2y unnormalised
        double y, tol;
        int32_t side;
    } rows[] = {{{0, -1, 0}, -0.5, 0.5, 0},  {{0, -1, 0}, 0.5, 0.5, 0}, {{0, -1, 0}, -0.75, 0.5, 1},
                {{0, -1, 0}, 0.75, 0.5, -1}, {{0, -1, 0}, 0.0, 0.0, 0}, {{0, -2, 0}, -0.375, 0.5, 1}};
    for (const Row &row : rows) {
        const dpoint2d p{4, row.y};
        forceFailure();
        EXPECT_EQ(UTMAT_CalculerClassePtDroite(&p, &row.line, row.tol), row.side) << row.y;
        EXPECT_EQ(errorWord(), 0);
    }
}

TEST(VectorCrossings, CrossingsParallelsAndDegenerateLines)
{
    struct Row {
        UTMAT_Droite d1, d2;
        int32_t count, error;
        double x, y, tol;
    } rows[] = {
        // Both c = 0: the threshold is 0, so even det = 1e-30 crosses, at the origin.
        {{1, 0, 0}, {0, 1, 0}, 1, 0, 0, 0, 0.0},
        {{0, -1, 0}, {1e-30, -1, 0}, 1, 0, 0, 0, 0.0},
        {{2, 0, -6}, {0, 4, -20}, 1, 0, 3, 5, 0.0},               // x = 3, y = 5 at scales 2, 4
        {{0, -1, 2}, {-1, 0, -7}, 1, 0, -7, 2, 0.0},              // det = -1
        {{1, -2, 2}, {1, 1, -5}, 1, 0, 8.0 / 3, 7.0 / 3, 1e-14},  // 1 + x/2 = 5 - x
        {{0, -1, 0}, {1e-9, -1, 1}, 1, 0, -1e9, 0, 1e-3},         // no tolerance: far away
        {{0, -1, -1}, {0, 2, -6}, 0, 0, 7, 7, 0.0},               // parallel, other sense and scale
        {{1, 1, 0}, {2, 2, -4}, 0, 0, 7, 7, 0.0},                 // equal unit normals
        {{0, 0, 1}, {1, 0, 0}, 0, kFail, 7, 7, 0.0},              // a degenerate line fails
    };
    for (const Row &row : rows) {
        dpoint2d out{7, 7};
        int32_t count = 5;
        UTMAT_CalculerIntersection2Droite(&row.d1, &row.d2, &out, &count);
        EXPECT_EQ(errorWord(), row.error) << row.d2.a << " " << row.d2.c;
        EXPECT_EQ(count, row.count) << row.d2.a << " " << row.d2.c;
        expectPoint(out, row.x, row.y, row.tol);
    }
}

TEST(VectorBisectors, LinesGiveUnnormalisedCombinations)
{
    // y = 1 (norm 1) and 2x - 4 = 0 (norm 2): 2 d1 - d2 = (-2, -2, 6) and -(2 d1) - d2 = (-2, 2, 2),
    // the lines x + y = 3 and y = x - 1 through the corner (2, 1).
    const UTMAT_Droite d1{0, -1, 1}, d2{2, 0, -4};
    UTMAT_Droite out[2] = {};
    UTMAT_CalculerBissectriceD1D2(&d1, &d2, out);
    EXPECT_EQ(errorWord(), 0);
    expectLine(out[0], -2, -2, 6);
    expectLine(out[1], -2, 2, 2);
}

TEST(VectorBisectors, VectorsHalveTheCounterClockwiseSweep)
{
    const double saved = UTMAT_getCalculPrec();
    UTMAT_setCalculPrecision(0.0001);
    struct Row {
        dpoint2d v1, v2, expected;
    } rows[] = {
        {{1, 0}, {-1, 0}, {0, 1}},                     // opposite: left normal of v1
        {{1, 0}, {0, -1}, {-kHalfRoot2, kHalfRoot2}},  // sweep of 270 degrees: negated sum
        {{3, 0}, {0, 5}, {kHalfRoot2, kHalfRoot2}},    // unit copies are used
        {{1, 0}, {-1, 1e-5}, {0, 1}},                  // cross 1e-5 within 1e-4: opposite
        {{1, 0}, {1, 1e-5}, {1, 0}},                   // cross 1e-5 within 1e-4: u1 itself
    };
    for (const Row &row : rows) {
        dpoint2d out{9, 9};
        UTMAT_CalculerBissectriceV1V2(&row.v1, &row.v2, &out);
        EXPECT_EQ(errorWord(), 0);
        expectPoint(out, row.expected.x, row.expected.y, 1e-15);
    }
    UTMAT_setCalculPrecision(saved);
}

TEST(VectorFrames, ChangeOfFrameRoundTripsAndGivesBackTheCentre)
{
    // p = (3, 4) from a frame at (1, 1): dx, dy = 2, 3; x' = 2c + 3s, y' = 3c - 2s.
    struct Row {
        double angle;
        dpoint2d local;
    } rows[] = {
        {kPi / 2, {3, -2}},                         // x axis north: 3 ahead, 2 to the right
        {-kPi / 4, {-kHalfRoot2, 5 * kHalfRoot2}},  // (2 - 3) / r2, (3 + 2) / r2
    };
    const dpoint2d p{3, 4}, origin{1, 1};
    for (const Row &row : rows) {
        dpoint2d local{}, back = row.local, centre{};
        UTMAT_ChangerRepere(&p, &origin, row.angle, &local);
        expectPoint(local, row.local.x, row.local.y, 1e-14);
        UTMAT_CalculerPointTranslationRotation(&origin, row.angle, &back);
        expectPoint(back, p.x, p.y, 1e-14);
        UTMAT_CalculerCentreRepere2(&p, &row.local, row.angle, &centre);
        expectPoint(centre, origin.x, origin.y, 1e-14);
        EXPECT_EQ(errorWord(), 0);
    }
}

TEST(VectorValues, ZeroVectorsAreNoFailure)
{
    dpoint2d v{0, 0};
    const dpoint3d p{1, 2, 3}, q{3, 5, 9};  // q - p = (2, 3, 6), length 7
    UTMAT_Droite3d line{{9, 9, 9}, {9, 9, 9}};
    forceFailure();
    UTMAT_NormerVecteur(&v);
    EXPECT_EQ(errorWord(), 0);
    forceFailure();
    UTMAT_CalculerDroite2Pt3d(&p, &p, &line);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_TRUE(v.x == 0 && v.y == 0 && line.point.z == 3);
    EXPECT_TRUE(line.direction.x == 0 && line.direction.y == 0 && line.direction.z == 0);
    UTMAT_CalculerDroite2Pt3d(&p, &q, &line);
    EXPECT_NEAR(line.direction.y, 3.0 / 7.0, 1e-16);
}

TEST(VectorValues, NullPointersThatAreTestedFailAndWriteNothing)
{
    // The crossing's count is zeroed only once the work starts; the distance
    // of space answers 0.0.
    const dpoint2d p{1, 2};
    const dpoint3d p3{1, 2, 3};
    const UTMAT_Droite line{0, -1, 0};
    dpoint2d out{7, 7};
    int32_t count = 7;
    UTMAT_CalculerIntersection2Droite(&line, &line, nullptr, &count);
    EXPECT_EQ(errorWord(), kFail);
    UTMAT_CalculerBissectriceV1V2(nullptr, &p, &out);
    EXPECT_EQ(errorWord(), kFail);
    UTMAT_CalculerCentreRepere2(&p, nullptr, 1.0, &out);
    EXPECT_EQ(errorWord(), kFail);
    EXPECT_TRUE(out.x == 7 && out.y == 7 && count == 7);
    EXPECT_EQ(UTMAT_CalculerDistance2Pt3d(&p3, nullptr), 0.0);
    EXPECT_EQ(errorWord(), kFail);
}

TEST(VectorValues, ConversionsAndComparisonsOfPoints)
{
    forceFailure();  // the conversions do not touch the word
    const dpoint3d points3[] = {{1, 2, 3}, {4, 5, 6}};
    dpoint2d *flat = ConvertArray32(points3, 2);
    ASSERT_NE(flat, nullptr);
    expectPoint(flat[1], 4, 5);
    dpoint3d *raised = ConvertArray23(flat, 2);
    EXPECT_TRUE(raised[0].y == 2 && raised[1].x == 4 && raised[1].z == 0);
    dpoint2d *empty = ConvertArray32(points3, 0);  // a zero-size block, still to be freed
    EXPECT_EQ(errorWord(), kFail);
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(tsMem_free(empty) + tsMem_free(flat) + tsMem_free(raised), 0);

    // Distance 5 against tol 5 is equal (the band includes its edge); the word is left at 0.
    const dpoint2d a{0, 0}, b{3, 4};
    for (const auto &[tol, same] : {std::pair{5.0, 1}, std::pair{4.999, 0}}) {
        forceFailure();
        EXPECT_EQ(UTMAT_PointsIdentiques(&a, &b, tol), same);
        EXPECT_EQ(errorWord(), 0);
    }
    const dpoint3d o{0, 0, 0}, c{1, 2, 2};  // distance 3
    EXPECT_EQ(UTMAT_Points3dIdentiques(&o, &c, 3.0), 1);
    EXPECT_EQ(UTMAT_Points3dIdentiques(&o, &c, 2.5), 0);
}

}  // namespace
