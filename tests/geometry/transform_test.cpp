// Affine transforms: composition against hand-multiplied matrices, the two
// composition orders of the building operations, fixed points, directions
// and angles, and the printed form. Expected values are worked by hand in
// the comments or follow from the closed forms of the rotations.
#include <tessar/frame.h>
#include <tessar/transform.h>
#include <tessar/vector.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kPi = std::numbers::pi;
// cos(pi / 2) in doubles is 6.1e-17, not 0: a quarter turn is exact only to
// about that much times the coordinates.
constexpr double kTurnTol = 1e-14;

tsTransform identity()
{
    tsTransform t;
    tsTransform_setIdentity(&t);
    return t;
}

tsTransform fromRows(std::initializer_list<double> values)
{
    tsTransform t;
    double *out = &t.m[0][0];
    for (double v : values)
        *out++ = v;
    return t;
}

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

// A: a quarter turn about z, then the move (1, 2, 3).
// B: scale (2, 3, 1), then the move (5, 0, -1).
const tsTransform kA = fromRows({0, -1, 0, 1, 1, 0, 0, 2, 0, 0, 1, 3});
const tsTransform kB = fromRows({2, 0, 0, 5, 0, 3, 0, 0, 0, 0, 1, -1});
// A * B by hand: linear part [[0,-1,0],[1,0,0],[0,0,1]] * diag(2,3,1) =
// [[0,-3,0],[2,0,0],[0,0,1]]; translation A_lin (5,0,-1) + (1,2,3) =
// (0,5,-1) + (1,2,3) = (1,7,2).
const tsTransform kAB = fromRows({0, -3, 0, 1, 2, 0, 0, 7, 0, 0, 1, 2});

TEST(Transform, IdentityAndTranslation)
{
    tsTransform t = kA;
    EXPECT_EQ(tsTransform_setIdentity(&t), 0);
    expectSame(t, fromRows({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0}));
    t = kB;
    EXPECT_EQ(tsTransform_setTranslation(&t, 7, 8, 9), 0);
    expectSame(t, fromRows({2, 0, 0, 7, 0, 3, 0, 8, 0, 0, 1, 9}));
}

TEST(Transform, MultiplyMovesByBThenA)
{
    tsTransform out;
    EXPECT_EQ(tsTransform_multiply(&out, &kA, &kB), 0);
    expectSame(out, kAB);
    // (1, 1, 1): B gives (2 + 5, 3, 1 - 1) = (7, 3, 0); A gives (-3 + 1, 7 + 2, 0 + 3).
    expectPoint(moved(out, {1, 1, 1}), -2, 9, 3);
    dpoint3d p{1, 1, 1};
    EXPECT_EQ(tsTransform_movePoint(&out, &p, &p), 0);  // in place
    expectPoint(p, -2, 9, 3);
}

TEST(Transform, MultiplyIntoEitherOperand)
{
    tsTransform a = kA;
    tsTransform_multiply(&a, &a, &kB);
    expectSame(a, kAB);
    tsTransform b = kB;
    tsTransform_multiply(&b, &kA, &b);
    expectSame(b, kAB);
    tsTransform sq = kA;
    tsTransform_multiply(&sq, &sq, &sq);
    // A twice: a half turn, translation A_lin (1,2,3) + (1,2,3) = (-2,1,3) + (1,2,3).
    expectSame(sq, fromRows({-1, 0, 0, -1, 0, -1, 0, 3, 0, 0, 1, 6}));
}

// Right-multiplied operations act first, in the frame that T defines.
TEST(Transform, ScaleTranslateRotate2dActFirst)
{
    struct Row {
        const char *what;
        void (*apply)(tsTransform *);
        dpoint3d in;
        dpoint3d expected;
    };
    // T is the move (10, 0, 0) with a scale 2 in every axis: p -> 2 p + (10, 0, 0).
    const Row rows[] = {
        // scale first: (1, 1, 1) -> (3, 1, 1) -> 2 (3, 1, 1) + (10, 0, 0)
        {"scale", [](tsTransform *t) { tsTransform_scale(t, 3, 1, 1); }, {1, 1, 1}, {16, 2, 2}},
        // move first: (0, 0, 0) -> (1, 2, 3) -> (12, 4, 6)
        {"translate", [](tsTransform *t) { tsTransform_translate(t, 1, 2, 3); }, {0, 0, 0}, {12, 4, 6}},
        // quarter turn first: (1, 0, 5) -> (0, 1, 5) -> (10, 2, 10)
        {"rotate2d", [](tsTransform *t) { tsTransform_rotateByAngle2d(t, kPi / 2); }, {1, 0, 5}, {10, 2, 10}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        tsTransform t = fromRows({2, 0, 0, 10, 0, 2, 0, 0, 0, 0, 2, 0});
        row.apply(&t);
        expectPoint(moved(t, row.in), row.expected.x, row.expected.y, row.expected.z, kTurnTol);
    }
}

TEST(Transform, Rotate3dTurnsTheTranslationRotate2dDoesNot)
{
    tsTransform world = identity();
    tsTransform_setTranslation(&world, 10, 0, 0);
    tsTransform local = world;
    tsTransform_rotateByAngle3d(&world, 0, 0, kPi / 2);
    tsTransform_rotateByAngle2d(&local, kPi / 2);
    // World axes: (10, 0, 0) turns to (0, 10, 0). In T's frame: it stays.
    expectPoint({world.m[0][3], world.m[1][3], world.m[2][3]}, 0, 10, 0, kTurnTol);
    expectPoint({local.m[0][3], local.m[1][3], local.m[2][3]}, 10, 0, 0);
    // (1, 0, 0): moved then turned (0, 11, 0); turned then moved (10, 1, 0).
    expectPoint(moved(world, {1, 0, 0}), 0, 11, 0, kTurnTol);
    expectPoint(moved(local, {1, 0, 0}), 10, 1, 0, kTurnTol);
}

// Signs of Rx, Ry, Rz and the order Rx * Ry * Rz: z turns first, x last.
TEST(Transform, Rotate3dAxesAndOrder)
{
    struct Row {
        double ax, ay, az;
        dpoint3d in, expected;
    };
    const double q = kPi / 2;
    const Row rows[] = {
        {0, 0, q, {1, 0, 0}, {0, 1, 0}},   // Rz: x axis to y axis
        {0, q, 0, {1, 0, 0}, {0, 0, -1}},  // Ry: x axis to -z (row (-sin, 0, cos))
        {0, q, 0, {0, 0, 1}, {1, 0, 0}},   // Ry: z axis to x axis
        {q, 0, 0, {0, 1, 0}, {0, 0, 1}},   // Rx: y axis to z axis
        {q, 0, q, {1, 0, 0}, {0, 0, 1}},   // Rz to (0, 1, 0), then Rx to (0, 0, 1)
        {0, q, q, {0, 0, 1}, {1, 0, 0}},   // Rz leaves z, then Ry to (1, 0, 0)
        {q, q, 0, {0, 0, 1}, {1, 0, 0}},   // Ry to (sin q, 0, cos q) = (1, 0, 0); Rx leaves the x axis
        {q, q, 0, {0, 1, 0}, {0, 0, 1}},   // Ry leaves the y axis, then Rx to (0, 0, 1)
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(testing::Message() << row.ax << " " << row.ay << " " << row.az);
        tsTransform t = identity();
        EXPECT_EQ(tsTransform_rotateByAngle3d(&t, row.ax, row.ay, row.az), 0);
        expectPoint(moved(t, row.in), row.expected.x, row.expected.y, row.expected.z, kTurnTol);
    }
}

TEST(Transform, SetOriginKeepsThePointFixed)
{
    tsTransform t = identity();
    tsTransform_rotateByAngle2d(&t, 0.7);
    tsTransform_scale(&t, 1.5, 1.5, 1.0);
    tsTransform_setTranslation(&t, 99, 99, 99);  // replaced by setOrigin
    const dpoint3d p{312.25, -48.5, 7.0};
    EXPECT_EQ(tsTransform_setOrigin(&t, &p), 0);
    expectPoint(moved(t, p), p.x, p.y, p.z, 1e-12);

    // Quarter turn about (1, 1, 0): (2, 1, 0) is one unit east of the
    // centre and goes to one unit north, (1, 2, 0).
    tsTransform u = identity();
    tsTransform_rotateByAngle2d(&u, kPi / 2);
    const dpoint3d centre{1, 1, 0};
    tsTransform_setOrigin(&u, &centre);
    expectPoint(moved(u, {2, 1, 0}), 1, 2, 0, kTurnTol);
}

TEST(Transform, MoveDirectionIgnoresTranslationKeepsScale)
{
    tsTransform t = identity();
    tsTransform_translate(&t, 100, 200, 300);
    tsTransform_scale(&t, 2, 3, 4);
    dpoint3d d{1, 1, 7};
    EXPECT_EQ(tsTransform_moveDirection2d(&t, &d), 0);
    // (2, 3): length sqrt(13), not 1; z cleared whatever it held.
    expectPoint(d, 2, 3, 0);

    EXPECT_EQ(tsTransform_moveDirection2d(nullptr, &d), kFail);
    EXPECT_EQ(tsTransform_moveDirection2d(&t, nullptr), kFail);
    expectPoint(d, 2, 3, 0);
}

TEST(Transform, MoveAngleInRangeOfAtan2)
{
    struct Row {
        const char *what;
        double turn, sx, angle, expected;
    };
    const Row rows[] = {
        {"quarter turn", kPi / 2, 1, 0.0, kPi / 2},
        // 3 + 1 = 4 rad lies past pi: atan2 gives 4 - 2 pi.
        {"past pi", 1.0, 1, 3.0, 4.0 - 2 * kPi},
        // Mirror in the y axis: (cos a, sin a) -> (-cos a, sin a), angle pi - a.
        {"mirror", 0.0, -1, 0.3, kPi - 0.3},
        // Translation plays no part.
        {"identity", 0.0, 1, -2.5, -2.5},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        tsTransform t = identity();
        tsTransform_setTranslation(&t, 5, -5, 1);
        tsTransform_rotateByAngle2d(&t, row.turn);
        tsTransform_scale(&t, row.sx, 1, 1);
        double a = row.angle;
        EXPECT_EQ(tsTransform_moveAngle(&t, &a), 0);
        EXPECT_NEAR(a, row.expected, 1e-14);
    }
    tsTransform t = identity();
    double a = 1.0;
    EXPECT_EQ(tsTransform_moveAngle(nullptr, &a), kFail);
    EXPECT_EQ(tsTransform_moveAngle(&t, nullptr), kFail);
    EXPECT_EQ(a, 1.0);
}

TEST(Transform, PrintfWritesRowsBetweenMarkers)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(tsTransform_printf(&kAB), 0);
    const std::string text = testing::internal::GetCapturedStdout();
    EXPECT_EQ(text, "====MATH BEGIN====\n"
                    "0.000000,-3.000000,0.000000,1.000000\n"
                    "2.000000,0.000000,0.000000,7.000000\n"
                    "0.000000,0.000000,1.000000,2.000000\n"
                    "====MATH END====\n");
}

// A site grid placed on a projected grid: local metres scaled by 2 (a
// drawing unit of half a metre), turned 30 degrees, moved to the site origin.
TEST(Transform, SiteGridToProjectedGrid)
{
    tsTransform t = identity();
    tsTransform_setTranslation(&t, 500000.0, 4000000.0, 100.0);
    tsTransform_rotateByAngle2d(&t, kPi / 6);
    tsTransform_scale(&t, 2, 2, 1);
    // (10, 0, 2): scaled (20, 0, 2), turned (20 cos 30, 20 sin 30) = (10 sqrt 3, 10).
    expectPoint(moved(t, {10, 0, 2}), 500000.0 + 10 * std::sqrt(3.0), 4000010.0, 102.0, 1e-9);
    // A bearing along the local x axis comes out at 30 degrees.
    double a = 0.0;
    tsTransform_moveAngle(&t, &a);
    EXPECT_NEAR(a, kPi / 6, 1e-15);
}

/* ---- 4-D matrices of the kernel ---- */

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// Sets the kernel's error word to the failure value through a tested null.
void forceFailure()
{
    const dpoint2d a{0, 0}, b{1, 1};
    UTMAT_CalculerVecteur(&a, &b, nullptr);
    ASSERT_EQ(errorWord(), kFail);
}

TEST(Matrice4D, ProductRowTimesColumn)
{
    // A = [[1,2,0,0],[0,1,0,0],[0,0,1,3],[0,0,0,1]], B = [[0,1,0,0],[1,0,0,0],[0,0,2,0],[0,0,0,1]]:
    // AB rows: (2,1,0,0), (1,0,0,0), (0,0,2,3), (0,0,0,1); BA rows differ:
    // (0,1,0,0), (1,2,0,0), (0,0,2,6), (0,0,0,1).
    const double A[16] = {1, 2, 0, 0, 0, 1, 0, 0, 0, 0, 1, 3, 0, 0, 0, 1};
    const double B[16] = {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1};
    const double AB[16] = {2, 1, 0, 0, 1, 0, 0, 0, 0, 0, 2, 3, 0, 0, 0, 1};
    const double BA[16] = {0, 1, 0, 0, 1, 2, 0, 0, 0, 0, 2, 6, 0, 0, 0, 1};
    double C[16];
    forceFailure();
    UTMAT_CalculerProduitMatrice4D(A, B, C);
    EXPECT_EQ(errorWord(), 0);
    for (int k = 0; k < 16; ++k)
        EXPECT_EQ(C[k], AB[k]) << k;
    UTMAT_CalculerProduitMatrice4D(B, A, C);
    for (int k = 0; k < 16; ++k)
        EXPECT_EQ(C[k], BA[k]) << k;
}

TEST(Matrice4D, IdentityCopyAndPoint)
{
    double I[16];
    forceFailure();
    UTMAT_RecupererMatriceIdentite4D(I);
    EXPECT_EQ(errorWord(), 0);
    for (int k = 0; k < 16; ++k)
        EXPECT_EQ(I[k], k % 5 == 0 ? 1.0 : 0.0) << k;

    // A move (5, 6, 7) with a weight 2 in the last row.
    const double M[16] = {1, 0, 0, 5, 0, 1, 0, 6, 0, 0, 1, 7, 0, 0, 0, 2};
    double copy[16];
    forceFailure();
    UTMAT_CopierMatrice4D(M, copy);
    EXPECT_EQ(errorWord(), 0);
    for (int k = 0; k < 16; ++k)
        EXPECT_EQ(copy[k], M[k]);

    // (1, 2, 3, 1) -> (6, 8, 10, 2): the fourth component is not divided out.
    const double P[4] = {1, 2, 3, 1};
    double Q[4];
    forceFailure();
    UTMAT_TransformerPointParMatrice4D(P, copy, Q);
    EXPECT_EQ(errorWord(), 0);
    EXPECT_EQ(Q[0], 6.0);
    EXPECT_EQ(Q[1], 8.0);
    EXPECT_EQ(Q[2], 10.0);
    EXPECT_EQ(Q[3], 2.0);
}

}  // namespace
