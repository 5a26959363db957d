// Interpolation triangle: flatness test and joint, on figures worked by hand
// beside each row. Every call follows a failure left in the error word (an unknown
// angle mode sets 32768), so a word of 0 afterwards shows that it was cleared.
#include <tessar/angle.h>
#include <tessar/frame.h>
#include <tessar/polyline.h>

#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace {

int32_t errorWord()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

TEST(TriangleInterpolation, FlatOnlyWhenBothTangentsRunAlongTheChord)
{
    // p2, v2, valide with p1 = (0, 0), v1 = (1, 0); a from v1 to v2, b and c from v1 and v2 to the chord.
    const std::array<double, 5> rows[] = {
        {5, 0, 1, 0, 0},      {5, 1, 1, 0, 1},       // on the chord; equal tangents, but b != 0
        {5, 0, 0, 1, 1},      {-5, 0, 1, 0, 1},      // a = pi/2; chord behind: b = pi
        {1e6, -0.4, 1, 0, 0}, {1e6, 0, 1, 8e-7, 1},  // b = -4e-7, not 2 pi - 4e-7; a = 8e-7, b = 0, c = -8e-7
        {1e6, 0.4, 1, 0, 0},  {1e6, 0.8, 1, 0, 1}};  // 2|b| = 8e-7 is near 0, 1.6e-6 is not
    const dpoint2d p1{0, 0}, v1{1, 0};
    for (const auto &r : rows) {
        const dpoint2d p2{r[0], r[1]}, v2{r[2], r[3]};
        int32_t valide = -1;
        UTMAT_NormaliserAngle(3, 0.0);
        UTMAT_VerifierTriangleInterpolation(&p1, &v1, &p2, &v2, &valide);
        EXPECT_TRUE(valide == r[4] && errorWord() == 0) << r[0] << ' ' << r[1] << ' ' << r[3];
    }
    int32_t valide = -1;  // a null tangent fails its angle: valide stays
    UTMAT_VerifierTriangleInterpolation(&p1, nullptr, &p1, &v1, &valide);
    EXPECT_TRUE(errorWord() == 32768 && valide == -1);
}

// Rows: p1, v1, p2, v2, then t, m, tangent and the error word; a failure leaves the outputs at -1.
TEST(TriangleInterpolation, JointOrFailure)
{
    // clang-format off
    const std::array<double, 14> rows[] = {
        // 2.56 t^2 + 24 t - 100 = 0, roots -12.5, 3.125; I (5, 20/3) 25/3 from both: m on x = 5
        {0, 0, 0.6, 0.8, 10, 0, 0.6, -0.8, 3.125, 5, 2.5, 1, 0, 0},
        {0, 0, -0.6, -0.8, 10, 0, -0.6, 0.8, 12.5, 5, -10, 1, 0, 0},  // reversed: 12.5 > 25/3, -3.125 < 0
        {0, 0, 1, 0, 0, 4, -1, 0, 2, 2, 2, 0, 1, 0},  // hairpin: -4 t^2 + 16 = 0, parallel, limit |p1 p2| = 4
        {0, 0, 1.25, 0, 10, 0, 1.25, 0, 20.0 / 9, 5, 0, 1, 0, 0},  // 2.25t^2 - 50t + 100: 20, 20/9; limit 10
        {0, 0, 1, 0, 4, 2, 1, 0, 1.25, 2, 1, 0.6, 0.8, 0},  // |S| = 2: -16 t + 20 = 0, a b = (1.5, 2)
        {0, 0, -3, 2, 1, 2, 2, 0, 1, -2, 2, 1, 0, 0},  // t^2 - 6t + 5 = 0, roots 5, 1; I (-3, 2), limit 4
        {0, 0, -2, 0, 10, 0, -2, 0, -5.0 / 3, 5, 0, 1, 0, 0},  // 12t^2 + 80t + 100 = 0, roots -5, -5/3
        {0, 0, 1, 0, 0, 2, 1, 0, -1, -1, -1, -1, -1, 32768},  // |S| = 2 and D.S = 0: no root
        {0, 0, 2, 0, 0, 2, 2, 0, -1, -1, -1, -1, -1, 32768},  // 12 t^2 + 4 = 0: no root
        {0, 0, 0, 0, 10, 0, 1, 0, -1, -1, -1, -1, -1, 32768}};  // roots 10/3, -10, but v1 = 0 has no line
    // clang-format on
    for (const auto &r : rows) {
        const dpoint2d p1{r[0], r[1]}, v1{r[2], r[3]}, p2{r[4], r[5]}, v2{r[6], r[7]};
        dpoint2d m{-1, -1}, tg{-1, -1};
        double t = -1.0;
        UTMAT_NormaliserAngle(3, 0.0);
        UTMAT_CalculerPointInterpolation(&p1, &v1, &p2, &v2, &m, &tg, &t);
        EXPECT_EQ(errorWord(), r[13]) << r[2] << ' ' << r[3];
        for (const auto &[got, want] :
             {std::pair{t, r[8]}, {m.x, r[9]}, {m.y, r[10]}, {tg.x, r[11]}, {tg.y, r[12]}})
            EXPECT_NEAR(got, want, 1e-12) << r[2] << ' ' << r[3];
    }
    dpoint2d q{0, 0};  // null arguments: nothing is written
    double t = -1.0;
    UTMAT_CalculerPointInterpolation(nullptr, &q, &q, &q, &q, &q, &t);
    EXPECT_TRUE(errorWord() == 32768 && t == -1.0);
}

}  // namespace
