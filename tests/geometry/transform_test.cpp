// Affine transforms against hand-multiplied matrices and the closed forms of the
// rotations, the two composition orders, and the kernel's 4-D matrices.
#include <tessar/frame.h>
#include <tessar/transform.h>
#include <tessar/vector.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <tuple>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
constexpr double kTurnTol = 1e-14;  // cos(pi / 2) is 6.1e-17 in doubles, not 0

tsTransform fromRows(std::initializer_list<double> values)
{
    tsTransform t;
    std::copy(values.begin(), values.end(), &t.m[0][0]);
    return t;
}

const tsTransform kIdentity = fromRows({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0});

dpoint3d moved(const tsTransform &t, dpoint3d p)
{
    dpoint3d q;
    EXPECT_EQ(tsTransform_movePoint(&t, &q, &p), 0);
    return q;
}

void expectPoint(const dpoint3d &p, double x, double y, double z, double tol = 0.0)
{
    EXPECT_NEAR(p.x, x, tol);
    EXPECT_NEAR(p.y, y, tol);
    EXPECT_NEAR(p.z, z, tol);
}

void expectSame(const tsTransform &a, const tsTransform &b)
{
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 4; ++c)
            EXPECT_EQ(a.m[r][c], b.m[r][c]) << "element " << r << "," << c;
}

// A: a quarter turn about z, then the move (1, 2, 3). B: scale (2, 3, 1), then
// the move (5, 0, -1). A B by hand: linear [[0,-1,0],[1,0,0],[0,0,1]] diag(2,3,1)
// = [[0,-3,0],[2,0,0],[0,0,1]]; translation A_lin (5,0,-1) + (1,2,3) = (1,7,2).
const tsTransform kA = fromRows({0, -1, 0, 1, 1, 0, 0, 2, 0, 0, 1, 3});
const tsTransform kB = fromRows({2, 0, 0, 5, 0, 3, 0, 0, 0, 0, 1, -1});
const tsTransform kAB = fromRows({0, -3, 0, 1, 2, 0, 0, 7, 0, 0, 1, 2});

TEST(Transform, SettingAndMultiplyingMovesByBThenA)
{
    tsTransform t = kA;
    EXPECT_EQ(tsTransform_setIdentity(&t), 0);
    expectSame(t, kIdentity);
    EXPECT_EQ(tsTransform_multiply(&t, &kA, &kB), 0);
    expectSame(t, kAB);
    // (1, 1, 1): B gives (7, 3, 0); A gives (-3 + 1, 7 + 2, 0 + 3). In place too.
    dpoint3d p{1, 1, 1};
    EXPECT_EQ(tsTransform_movePoint(&t, &p, &p), 0);
    expectPoint(p, -2, 9, 3);
    // The output may be either operand.
    tsTransform a = kA, b = kB;
    tsTransform_multiply(&a, &a, &kB);
    expectSame(a, kAB);
    tsTransform_multiply(&b, &kA, &b);
    expectSame(b, kAB);
}

TEST(Transform, Rotate3dActsLastInWorldAxes)
{
    // The translation (10, 0, 0) turns with rotateByAngle3d, not with rotateByAngle2d.
    tsTransform world = fromRows({1, 0, 0, 10, 0, 1, 0, 0, 0, 0, 1, 0}), local = world;
    tsTransform_rotateByAngle3d(&world, 0, 0, kPi / 2);
    tsTransform_rotateByAngle2d(&local, kPi / 2);
    expectPoint({world.m[0][3], world.m[1][3], world.m[2][3]}, 0, 10, 0, kTurnTol);
    expectPoint({local.m[0][3], local.m[1][3], local.m[2][3]}, 10, 0, 0);
    expectPoint(moved(world, {1, 0, 0}), 0, 11, 0, kTurnTol);
    expectPoint(moved(local, {1, 0, 0}), 10, 1, 0, kTurnTol);

    // Signs of Rx, Ry, Rz and the order Rx Ry Rz: z turns first, x last.
    const double q = kPi / 2;
    struct Row {
        double ax, ay, az;
        dpoint3d in, expected;
    } rows[] = {
        {0, 0, q, {1, 0, 0}, {0, 1, 0}},   // Rz: x axis to y axis
        {0, q, 0, {1, 0, 0}, {0, 0, -1}},  // Ry: x axis to -z (row (-sin, 0, cos))
        {q, 0, 0, {0, 1, 0}, {0, 0, 1}},   // Rx: y axis to z axis
        {q, q, 0, {0, 0, 1}, {1, 0, 0}},   // Ry to (1, 0, 0); Rx leaves the x axis
        {q, 0, q, {1, 0, 0}, {0, 0, 1}},   // Rz to (0, 1, 0), then Rx to (0, 0, 1)
    };
    for (const Row &row : rows) {
        tsTransform t = kIdentity;
        EXPECT_EQ(tsTransform_rotateByAngle3d(&t, row.ax, row.ay, row.az), 0);
        expectPoint(moved(t, row.in), row.expected.x, row.expected.y, row.expected.z, kTurnTol);
    }
}

TEST(Transform, SetOriginKeepsThePointFixed)
{
    tsTransform t = kIdentity;
    tsTransform_rotateByAngle2d(&t, 0.7);
    tsTransform_scale(&t, 1.5, 1.5, 1.0);
    tsTransform_setTranslation(&t, 99, 99, 99);  // replaced by setOrigin
    const dpoint3d p{312.25, -48.5, 7.0};
    EXPECT_EQ(tsTransform_setOrigin(&t, &p), 0);
    expectPoint(moved(t, p), p.x, p.y, p.z, 1e-12);
}

TEST(Transform, DirectionsKeepScaleAnglesStayInAtan2Range)
{
    tsTransform t = kIdentity;
    tsTransform_translate(&t, 100, 200, 300);
    tsTransform_scale(&t, 2, 3, 4);
    dpoint3d d{1, 1, 7};
    EXPECT_EQ(tsTransform_moveDirection2d(&t, &d), 0);
    expectPoint(d, 2, 3, 0);  // length sqrt(13), not 1; z cleared
    EXPECT_EQ(tsTransform_moveDirection2d(&t, nullptr), kFail);

    // 4 rad lies past pi: atan2 gives 4 - 2 pi; a mirror in the y axis gives
    // pi - a; the translation plays no part.
    for (const auto &[turn, sx, angle, expected] :
         {std::tuple{1.0, 1.0, 3.0, 4.0 - 2 * kPi}, {0.0, -1.0, 0.3, kPi - 0.3}, {0.0, 1.0, -2.5, -2.5}}) {
        tsTransform u = fromRows({1, 0, 0, 5, 0, 1, 0, -5, 0, 0, 1, 1});
        tsTransform_rotateByAngle2d(&u, turn);
        tsTransform_scale(&u, sx, 1, 1);
        double a = angle;
        EXPECT_EQ(tsTransform_moveAngle(&u, &a), 0);
        EXPECT_NEAR(a, expected, 1e-14) << angle;
    }
    double a = 1.0;
    EXPECT_EQ(tsTransform_moveAngle(nullptr, &a), kFail);
    EXPECT_EQ(a, 1.0);
}

TEST(Transform, PrintfWritesRowsBetweenMarkers)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(tsTransform_printf(&kAB), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "====MATH BEGIN====\n"
                                                      "0.000000,-3.000000,0.000000,1.000000\n"
                                                      "2.000000,0.000000,0.000000,7.000000\n"
                                                      "0.000000,0.000000,1.000000,2.000000\n"
                                                      "====MATH END====\n");
}

// A site grid on a projected grid: local metres scaled by 2 (a drawing unit
// of half a metre), turned 30 degrees, moved to the site origin. Scale,
// rotate2d and translate multiply on the right: each acts first, in the frame
// already built.
TEST(Transform, SiteGridToProjectedGrid)
{
    tsTransform t = fromRows({1, 0, 0, 500000.0, 0, 1, 0, 4000000.0, 0, 0, 1, 100.0});
    tsTransform_rotateByAngle2d(&t, kPi / 6);
    tsTransform_scale(&t, 2, 2, 1);
    // (10, 0, 2): scaled (20, 0, 2), turned (10 sqrt 3, 10).
    expectPoint(moved(t, {10, 0, 2}), 500000.0 + 10 * std::sqrt(3.0), 4000010.0, 102.0, 1e-9);
    double a = 0.0;  // a bearing along the local x axis comes out at 30 degrees
    tsTransform_moveAngle(&t, &a);
    EXPECT_NEAR(a, kPi / 6, 1e-15);
    // A local move of (1, 0, 3) is scaled to (2, 0, 3) and turned with the grid.
    tsTransform_translate(&t, 1, 0, 3);
    expectPoint(moved(t, {0, 0, 0}), 500000.0 + std::sqrt(3.0), 4000001.0, 103.0, 1e-9);
}

/* ---- 4-D matrices of the kernel ---- */

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

TEST(Matrice4D, ProductIdentityCopyAndPoint)
{
    // A = [[1,2,0,0],[0,1,0,0],[0,0,1,3],[0,0,0,1]], B = [[0,1,0,0],[1,0,0,0],[0,0,2,0],[0,0,0,1]]:
    // A B rows (2,1,0,0), (1,0,0,0), (0,0,2,3), (0,0,0,1), row by column.
    const double A[16] = {1, 2, 0, 0, 0, 1, 0, 0, 0, 0, 1, 3, 0, 0, 0, 1};
    const double B[16] = {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};
    const double AB[16] = {2, 1, 0, 0, 1, 0, 0, 0, 0, 0, 2, 3, 0, 0, 0, 1};
    // A move (5, 6, 7) with a weight 2 in the last row: (1, 2, 3, 1) goes to
    // (6, 8, 10, 2), the fourth component not divided out.
    const double M[16] = {1, 0, 0, 5, 0, 1, 0, 6, 0, 0, 1, 7, 0, 0, 0, 2}, P[4] = {1, 2, 3, 1};
    double C[16], I[16], copy[16], Q[4];
    const dpoint2d a{0, 0};
    UTMAT_CalculerVecteur(&a, &a, nullptr);  // leaves 32768 in the word
    UTMAT_CalculerProduitMatrice4D(A, B, C);
    EXPECT_EQ(errorWord(), 0);
    UTMAT_RecupererMatriceIdentite4D(I);
    UTMAT_CopierMatrice4D(M, copy);
    UTMAT_TransformerPointParMatrice4D(P, copy, Q);
    for (int k = 0; k < 16; ++k)
        EXPECT_TRUE(C[k] == AB[k] && I[k] == (k % 5 == 0 ? 1.0 : 0.0)) << k;
    EXPECT_TRUE(Q[0] == 6 && Q[1] == 8 && Q[2] == 10 && Q[3] == 2);
}

}  // namespace
