// Points, derivatives, conversions and offset tangents of the clothoid,
// checked against a clothoid integrated numerically in the test itself.
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <utility>

#include <gtest/gtest.h>

#include <tessar/clothoid.h>
#include <tessar/frame.h>

namespace {

using Real = long double;
constexpr int32_t kFail = TESSAR_FAILURE;
constexpr double kPi = std::numbers::pi;

// The error word after a call, the word first set to 32768 (unknown code 10).
template <class Call> int32_t errorAfter(Call call)
{
    double out = 0.0;
    int32_t code = -1, detail = -1;
    UTMAT_CalculerParametreClot(10, 1.0, 1.0, &out);
    call();
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// The reference clothoid at s, by composite Simpson in long double on
// b = s / (sqrt(2) |A|): x = sqrt(2) |A| int cos(t^2), y = sqrt(2) A int sin(t^2).
struct Reference {
    Real x, y, tau;
};

Reference referencePoint(double A, double s)
{
    const int n = 4000;  // even
    const Real scale = std::sqrt(Real(2)) * std::fabs(Real(A)), h = Real(s) / scale / n;
    Real c = 0, sn = 0;
    for (int i = 0; i <= n; ++i) {
        const Real t = h * i, w = (i == 0 || i == n) ? 1 : (i % 2 == 1 ? 4 : 2);
        c += w * std::cos(t * t);
        sn += w * std::sin(t * t);
    }
    return {scale * c * h / 3, (A > 0 ? 1 : -1) * scale * sn * h / 3, Real(s) * s / (2 * Real(A) * A)};
}

// The shift p = y(L) - R (1 - cos tau) of the reference clothoid.
double referenceShift(double A, double L)
{
    const Reference r = referencePoint(A, L);
    return double(std::fabs(r.y) - Real(A) * A / L * (1 - std::cos(r.tau)));
}

Real factorial(int n)
{
    return std::tgamma(Real(n + 1));
}

// Error bound of an n-term series over sqrt(2) |A|, 0 < b < 1: the first omitted
// term b^(4n+k) / ((4n+k) (2n+k/2)!), k = 1 for x, 3 for y, and rounding.
Real seriesBound(int n, int odd, Real b)
{
    const int power = 4 * n + odd;
    return std::pow(b, Real(power)) / (power * factorial(2 * n + odd / 2)) +
           8 * DBL_EPSILON * std::pow(b, Real(odd)) / odd;
}

struct Evaluated {
    double x, y, cosTau, sinTau;
    int32_t status;
};

Evaluated evaluate(double A, double s, double d, int32_t formula)
{
    Evaluated e{NAN, NAN, NAN, NAN, -1};
    e.status =
        tsMath_calculateSpiralPointByDistanceAndOffset(&e.x, &e.y, &e.cosTau, &e.sinTau, A, s, d, formula);
    return e;
}

void useFormula(int32_t formula)
{
    if (formula == 1) UTMAT_SetQuorrelSpiralFormula();
    if (formula == 2) UTMAT_SetVelloraSpiralFormula();
}

// Restores the kernel's settings that a test changes.
class Clothoid : public ::testing::Test
{
  protected:
    void TearDown() override { useFormula(2), UTMAT_setCalculPrecision(0.0001); }
};

// ---- Points ----

// R from 30 m to 10 km, L up to R, both series and turns; offsets along the
// right-hand normal (sin tau, -cos tau).
TEST_F(Clothoid, PointsMatchTheIntegratedClothoidAtRoadDesignSizes)
{
    for (double R : {30.0, 250.0, 1000.0, 10000.0})
        for (double ratio : {0.1, 0.5, 1.0})
            for (double sign : {1.0, -1.0}) {
                const double L = ratio * R, A = sign * std::sqrt(R * L);
                for (double s : {L / 7, L / 2, L}) {
                    const Reference ref = referencePoint(A, s);
                    const Real scale = std::sqrt(Real(2)) * std::fabs(A), b = s / scale;
                    const Real sinTau = sign * std::sin(ref.tau), cosTau = std::cos(ref.tau);
                    for (int32_t formula : {1, 2}) {
                        const double tolX = double(scale * seriesBound(formula == 1 ? 4 : 9, 1, b));
                        const double tolY = double(scale * seriesBound(formula == 1 ? 4 : 9, 3, b));
                        for (double d : {0.0, 3.5, -7.25}) {
                            SCOPED_TRACE(::testing::Message()
                                         << "A " << A << " s " << s << " formula " << formula << " d " << d);
                            const Evaluated e = evaluate(A, s, d, formula);
                            ASSERT_EQ(e.status, 0);
                            EXPECT_NEAR(e.x, double(ref.x + d * sinTau), tolX + std::fabs(d) * 1e-15);
                            EXPECT_NEAR(e.y, double(ref.y - d * cosTau), tolY + std::fabs(d) * 1e-15);
                            EXPECT_NEAR(e.cosTau, double(cosTau), 1e-15);
                            EXPECT_NEAR(e.sinTau, double(sinTau), 1e-15);
                        }
                    }
                }
            }
}

TEST_F(Clothoid, StartPointMirrorImageAndUnknownFormula)
{
    // s = 0: the origin, tangent (1, 0), a positive offset at (0, -d), right.
    for (int32_t formula : {1, 2, 0, 7})
        for (double A : {150.0, -150.0}) {
            const Evaluated e = evaluate(A, 0.0, 2.5, formula);
            EXPECT_TRUE(e.status == 0 && e.x == 0.0 && e.y == -2.5 && e.cosTau == 1.0 && e.sinTau == 0.0)
                << formula << " " << A;
        }
    // A negative A is the mirror image in the x axis, in every form, to the bit.
    for (int32_t formula : {1, 2})
        for (double tau : {0.2, 1.5, 3.4, 3.5, 12.0}) {
            const double s = 180.0 * std::sqrt(2 * tau);
            const Evaluated l = evaluate(180.0, s, 0.0, formula), r = evaluate(-180.0, s, 0.0, formula);
            EXPECT_TRUE(r.x == l.x && r.y == -l.y && r.cosTau == l.cosTau && r.sinTau == -l.sinTau)
                << formula << " " << tau;
        }
    // A formula other than 1 or 2 is the short form (at tau = 2 the forms differ by 4e-3).
    const Evaluated shortForm = evaluate(120.0, 240.0, 1.5, 1);
    ASSERT_GT(std::fabs(shortForm.x - evaluate(120.0, 240.0, 1.5, 2).x), 1e-3);
    for (int32_t formula : {0, 3, -1, 1000}) {
        const Evaluated e = evaluate(120.0, 240.0, 1.5, formula);
        EXPECT_TRUE(e.status == 0 && e.x == shortForm.x && e.y == shortForm.y) << formula;
    }
}

// A = 100, s = 262.2746651889961: tau = 3.4394 exactly, still the series; one
// step further the far-field form jumps by about (0.8, 0.2), the short form
// does not. Further out the far-field form stays within 1 % of A.
TEST_F(Clothoid, LongFormLeavesTheSeriesJustAboveDeflection3_4394)
{
    const double A = 100.0, atThreshold = 262.2746651889961, above = std::nextafter(atThreshold, 1e9);
    ASSERT_EQ(atThreshold * atThreshold / (2.0 * A * A), 3.4394);
    const Reference ref = referencePoint(A, atThreshold);
    const Evaluated on = evaluate(A, atThreshold, 0.0, 2), beyond = evaluate(A, above, 0.0, 2);
    EXPECT_NEAR(on.x, double(ref.x), 1e-5);
    EXPECT_NEAR(on.y, double(ref.y), 1e-5);
    EXPECT_NEAR(beyond.x - double(ref.x), 0.8, 0.1);
    EXPECT_NEAR(beyond.y - double(ref.y), 0.225, 0.075);
    EXPECT_NEAR(evaluate(A, above, 0.0, 1).x, evaluate(A, atThreshold, 0.0, 1).x, 1e-9);
    EXPECT_NEAR(evaluate(A, above, 0.0, 1).y, evaluate(A, atThreshold, 0.0, 1).y, 1e-9);
    for (double a : {60.0, -2500.0})
        for (double tau : {3.44, 7.0, 30.0, 400.0}) {
            const double s = std::fabs(a) * std::sqrt(2 * tau);
            const Reference far = referencePoint(a, s);
            const Evaluated e = evaluate(a, s, 0.0, 2);
            EXPECT_NEAR(e.x, double(far.x), 0.01 * std::fabs(a)) << a << " " << tau;
            EXPECT_NEAR(e.y, double(far.y), 0.01 * std::fabs(a)) << a << " " << tau;
        }
}

// Only A = 0 exactly fails, storing nothing; outputs are optional. The
// kernel's point follows the selected series and passes no failure on.
TEST_F(Clothoid, ZeroParameterOptionalOutputsAndTheKernelPoint)
{
    for (double A : {0.0, -0.0})
        for (int32_t formula : {1, 2}) {
            const Evaluated e = evaluate(A, 10.0, 1.0, formula);
            EXPECT_EQ(e.status, kFail);
            EXPECT_TRUE(std::isnan(e.x) && std::isnan(e.y) && std::isnan(e.cosTau) && std::isnan(e.sinTau));
        }
    EXPECT_EQ(evaluate(1e-300, 0.0, 0.0, 2).status, 0);
    EXPECT_EQ(errorAfter([] { evaluate(0.0, 1.0, 0.0, 2); }), kFail);
    double y = NAN;
    EXPECT_EQ(
        tsMath_calculateSpiralPointByDistanceAndOffset(nullptr, nullptr, nullptr, nullptr, 90, 30, 0, 2), 0);
    EXPECT_EQ(tsMath_calculateSpiralPointByDistanceAndOffset(nullptr, &y, nullptr, nullptr, 90, 30, 0, 2), 0);
    EXPECT_EQ(y, evaluate(90.0, 30.0, 0.0, 2).y);

    for (int32_t formula : {1, 2}) {
        useFormula(formula);
        const Evaluated expected = evaluate(120.0, 240.0, -2.0, formula);
        dpoint2d point{}, tangent{}, again{};
        EXPECT_EQ(
            errorAfter([&] { UTMAT_CalculerPosPointArcClotAbscisse(120.0, 240.0, -2.0, &point, &tangent); }),
            0);
        EXPECT_TRUE(point.x == expected.x && point.y == expected.y && tangent.x == expected.cosTau &&
                    tangent.y == expected.sinTau);
        EXPECT_EQ(vlrUtmat_CalculateSpiralPointAtDistance(120.0, 240.0, -2.0, &again, nullptr), 0);
        EXPECT_EQ(again.x, expected.x);
    }
    EXPECT_EQ(errorAfter([] { UTMAT_CalculerPosPointArcClotAbscisse(0.0, 10.0, 0.0, nullptr, nullptr); }), 0);
    EXPECT_EQ(vlrUtmat_CalculateSpiralPointAtDistance(0.0, 10.0, 0.0, nullptr, nullptr), 0);
}

// x' = m cos(b^2), y' = m' sin(b^2), x'' = -2 b m sin(b^2), y'' = 2 b m' cos(b^2)
// (m = sqrt(2)|A|, m' = sqrt(2) A), within the first term omitted by 4 or 9 terms.
TEST_F(Clothoid, DerivativesMatchTheirClosedForms)
{
    for (int32_t formula : {1, 2}) {
        useFormula(formula);
        const int n = formula == 1 ? 4 : 9;
        for (double A : {200.0, -35.0})
            for (double tau : {0.0, 0.05, 0.5, 1.2}) {
                const double s = std::fabs(A) * std::sqrt(2 * tau);
                const Real m = std::sqrt(Real(2)) * std::fabs(A), mSigned = A > 0 ? m : -m, b = s / m,
                           t = b * b;
                const auto omitted = [&](int k) { return std::pow(t, Real(k)) / factorial(k) + 1e-15L; };
                dpoint2d first{}, second{};
                SCOPED_TRACE(::testing::Message() << "formula " << formula << " A " << A << " tau " << tau);
                EXPECT_EQ(errorAfter([&] { UTMAT_CalculerDeriveePremEtSecClot(A, s, &first, &second); }), 0);
                EXPECT_NEAR(first.x, double(m * std::cos(t)), double(m * omitted(2 * n)));
                EXPECT_NEAR(first.y, double(mSigned * std::sin(t)), double(m * omitted(2 * n + 1)));
                EXPECT_NEAR(second.x, double(-2 * b * m * std::sin(t)),
                            double(2 * b * m * omitted(2 * n - 1)));
                EXPECT_NEAR(second.y, double(2 * b * mSigned * std::cos(t)),
                            double(2 * b * m * omitted(2 * n)));
            }
    }
    dpoint2d first{7.0, 7.0}, second{7.0, 7.0};
    EXPECT_EQ(errorAfter([&] { UTMAT_CalculerDeriveePremEtSecClot(0.0, 5.0, &first, &second); }), kFail);
    EXPECT_EQ(first.x, 7.0);
    EXPECT_EQ(errorAfter([&] { UTMAT_CalculerDeriveePremEtSecClot(1e-200, 5.0, &first, &second); }), 0);
}

// ---- Conversions ----

struct Conversion {
    double out, strictOut;
    int32_t valid, error, strictError;  // error of the Valide variant, strictError of the other
};

Conversion convert(int32_t code, double a, double b)
{
    Conversion c{NAN, NAN, -1, -1, -1};
    c.error = errorAfter([&] { UTMAT_CalculerParametreClotValide(code, a, b, &c.out, &c.valid); });
    c.strictError = errorAfter([&] { UTMAT_CalculerParametreClot(code, a, b, &c.strictOut); });
    return c;
}

// A = sqrt(R L), L = A^2 / R, R = A^2 / L, tau = L / 2R = L^2 / 2A^2. Near zero
// (1e-4): a always invalid, b invalid for codes 1 to 6, else a valid 0 (not
// tested by 8 and 14). Unknown codes fail in both variants.
TEST_F(Clothoid, ConversionsByRow)
{
    const double root5000 = 70.71067811865476;
    const double exact[][4] = {{1, 100, 50, root5000},  {2, 50, 0.25, root5000}, {4, 100, 0.25, root5000},
                               {7, 100, 50, 200},       {8, 100, 0.5, 100},      {11, 100, 50, 200},
                               {12, 100, 0.5, 100},     {14, 100, 50, 0.125},    {15, 100, 50, 2},
                               {1, -100, 50, root5000}, {7, -100, -50, 200},     {15, 100, -50, 2}};
    for (const auto &[code, a, b, expected] : exact) {
        const Conversion c = convert(int32_t(code), a, b);
        EXPECT_NEAR(c.out, expected, 4e-16 * expected) << code << " " << a << " " << b;
        EXPECT_TRUE(c.valid == 1 && c.error == 0 && c.strictOut == c.out && c.strictError == 0) << code;
    }
    const double zero[][4] = {{1, 0, 50, 0},   {1, 5e-5, 50, 0}, {1, 100, 0, 0},      {2, 100, 1e-4, 0},
                              {3, 100, 0, 0},  {4, 100, 0, 0},   {5, 100, 0, 0},      {6, 0.5, 0, 0},
                              {6, 0, 0.5, 0},  {7, 100, 0, 1},   {8, 100, 0, 1},      {9, 100, 0, 1},
                              {9, 0, 1, 0},    {11, 100, 0, 1},  {12, 100, 0, 1},     {13, 100, 0, 1},
                              {14, 100, 0, 1}, {15, 100, 0, 1},  {16, 100, 0, 1},     {17, 100, 0, 1},
                              {18, 100, 0, 1}, {19, 100, 0, 1},  {19, -1e-4, 0.5, 0}, {14, 1e-5, 1, 0},
                              {0, 100, 50, 0}, {-3, 100, 50, 0}, {10, 100, 50, 0},    {20, 100, 50, 0}};
    for (const auto &[code, a, b, valid] : zero) {
        const bool unknown = code <= 0 || code == 10 || code > 19;
        const Conversion c = convert(int32_t(code), a, b);
        EXPECT_TRUE(c.out == 0.0 && c.strictOut == 0.0 && c.valid == valid) << code << " " << a << " " << b;
        EXPECT_EQ(c.error, unknown ? kFail : 0) << code;
        EXPECT_EQ(c.strictError, valid ? 0 : kFail) << code << " " << a << " " << b;
    }
    EXPECT_NEAR(convert(8, 100.0, 5e-5).out, 1.0, 1e-15);  // computed, not tested: 100 sqrt(1e-4)
}

// A = 200, L = 100, R = 400, tau = 0.125: the shift of the integrated curve
// (near L^2 / 24R - L^4 / 2688R^3), and back from it; exact at precision 0.
TEST_F(Clothoid, ShiftDirectAndBySearch)
{
    const double p = referenceShift(200.0, 100.0);
    EXPECT_NEAR(p, 1e4 / (24.0 * 400.0) - 1e8 / (2688.0 * 400.0 * 400.0 * 400.0), 5e-7);
    for (const auto &[code, b] : {std::pair{17, 100.0}, {18, 400.0}, {19, 0.125}}) {
        const Conversion c = convert(code, -200.0, b);
        EXPECT_NEAR(c.out, p, 1e-12) << code;
        EXPECT_TRUE(c.valid == 1 && c.strictError == 0) << code;
    }
    const double rows[][3] = {{3, 100, 200}, {5, 400, 200},  {6, 0.125, 200},
                              {9, 200, 100}, {13, 200, 400}, {16, 200, 0.125}};
    for (double precision : {1e-4, 0.0}) {
        UTMAT_setCalculPrecision(precision);
        for (const auto &[code, a, expected] : rows) {
            const Conversion c = convert(int32_t(code), a, p);
            EXPECT_TRUE(c.error == 0 && c.valid == 1) << code;
            EXPECT_NEAR(c.out, expected, (precision > 0 ? 1e-3 : 1e-10) * expected)
                << code << " " << precision;
        }
    }
}

TEST_F(Clothoid, SearchLimits)
{
    // Beyond the largest shift within a quarter turn: a valid 0, no error.
    const double quarterA = 100.0 / std::sqrt(kPi), pmax = referenceShift(quarterA, 100.0);
    ASSERT_NEAR(pmax, 12.0, 0.01);
    for (const auto &[code, a] : {std::pair{3, 100.0},
                                  {5, quarterA * quarterA / 100.0},
                                  {9, quarterA},
                                  {13, quarterA},
                                  {16, quarterA}}) {
        EXPECT_GT(convert(code, a, pmax - 0.05).out, 0.0) << code;
        const Conversion beyond = convert(code, a, pmax + 0.05);
        EXPECT_TRUE(beyond.out == 0.0 && beyond.valid == 1 && beyond.strictError == 0) << code;
    }
    // On A: 1e9 is above the shift of A = 1e8 (1.1e7), so 5000 steps end at
    // that bound; tau beyond a quarter turn by more than 1e-4 is invalid.
    const Conversion bound = convert(6, 1.0, 1e9);
    EXPECT_TRUE(bound.error == 0 && bound.valid == 1 && std::fabs(bound.out - 1e8) < 1e-6) << bound.out;
    EXPECT_EQ(convert(6, kPi / 2 + 2e-4, 1.0).strictError, kFail);
    EXPECT_EQ(convert(6, kPi / 2 + 5e-5, 1.0).valid, 1);
    // p = 2e-4 needs tau near 2.4e-5: halving reaches tau within 1e-4 of 0,
    // where the nested conversion of A is invalid; the search on tau goes on.
    const Conversion walked = convert(3, 100.0, 2e-4);
    EXPECT_TRUE(walked.error == kFail && walked.valid == 0 && walked.strictError == kFail);
    EXPECT_EQ(convert(16, 100.0, 2e-4).valid, 1);
}

// ---- Offset curves ----

TEST_F(Clothoid, TangentDifferenceSpecialCases)
{
    // Circle, R = 100: radial at the centre, 0 there for g near 0; g = 0 gives
    // pi beyond the centre.
    const double circle[][3] = {{-100.0, 0.5, -kPi / 2}, {-100.0, -0.5, kPi / 2}, {-100.0, 0.0, 0.0},
                                {-100.00005, 5e-5, 0.0}, {-200.0, 0.0, kPi},      {0.0, 0.0, 0.0}};
    double out = NAN;
    for (const auto &[d, g, expected] : circle) {
        UTMAT_CalculerDifferenceTgArcCerTgOffCer(100.0, d, g, &out);
        EXPECT_NEAR(out, expected, 1e-15) << d << " " << g;
    }
    // Clothoid: atan(-g) at s near 0; radial at the centre of curvature
    // (r = 10000 / 50), a zero rate not singled out.
    for (double A : {80.0, -80.0, 1e6})
        for (double s : {0.0, 5e-5}) {
            UTMAT_CalculerDifferenceTgArcClotTgOffClt(A, s, 5.0, 0.25, &out);
            EXPECT_DOUBLE_EQ(out, std::atan(-0.25)) << A << " " << s;
        }
    const double clothoid[][4] = {
        {100, -200, 0.5, -kPi / 2}, {100, -200, 0, kPi / 2}, {-100, 200, 0.5, -kPi / 2}};
    for (const auto &[A, d, g, expected] : clothoid) {
        UTMAT_CalculerDifferenceTgArcClotTgOffClt(A, 50.0, d, g, &out);
        EXPECT_EQ(out, expected) << A << " " << d << " " << g;
    }
}

// out is the unit vector along (x, y).
void expectUnitAlong(const dpoint2d &out, double x, double y)
{
    EXPECT_NEAR(out.x, x / std::hypot(x, y), 1e-14);
    EXPECT_NEAR(out.y, y / std::hypot(x, y), 1e-14);
}

// The offset curve C + (R + d + g (t - s)) u(angle0 + t / R) forwards, and
// C + (R - d - g (t - s)) u(angle0 - t / R) backwards, differentiated at t = s.
TEST_F(Clothoid, CircleOffsetTangentFollowsTheOffsetCurve)
{
    const double R = 120.0, angle0 = 0.7, s = 45.0;
    for (int32_t sense : {1, 0})
        for (double d : {0.0, 6.0, -9.0, -180.0})
            for (double g : {0.0, 0.04, -0.1, 1.5}) {
                const double phi = sense ? angle0 + s / R : angle0 - s / R, ux = std::cos(phi),
                             uy = std::sin(phi);
                const double k = sense ? (R + d) / R : (R - d) / R, rate = sense ? g : -g;
                dpoint2d out{NAN, NAN};
                UTMAT_CalculerTangenteOffCer(R, angle0, sense, s, g, d, &out);
                SCOPED_TRACE(::testing::Message() << sense << " " << d << " " << g);
                if (sense) expectUnitAlong(out, rate * ux - k * uy, rate * uy + k * ux);
                if (!sense) expectUnitAlong(out, rate * ux + k * uy, rate * uy - k * ux);
            }
}

// C + (d + g (t - s)) n has P' = t (1 + k d) + g n, t at angle0 + sign tau,
// k = sign s / A^2; backwards d is -d and P' reversed. Beyond the centre
// (r = 135) a constant offset reports no turn, unlike the circle's pi.
TEST_F(Clothoid, ClothoidOffsetTangentFollowsTheOffsetCurve)
{
    const double angle0 = -0.4, s = 60.0;
    for (double A : {90.0, -90.0})
        for (int32_t sense : {1, 0})
            for (double d : {0.0, 4.0, -11.0, -200.0, 200.0})
                for (double g : {0.0, 0.03, -0.2}) {
                    const double sign = A > 0 ? 1.0 : -1.0, k = sign * s / (A * A), dd = sense ? d : -d;
                    const double phi = angle0 + sign * s * s / (2 * A * A), tx = std::cos(phi),
                                 ty = std::sin(phi);
                    const double along = g == 0.0 ? std::fabs(1 + k * dd) : 1 + k * dd;
                    const double back = sense ? 1.0 : -1.0;
                    dpoint2d out{NAN, NAN};
                    UTMAT_CalculerTangenteOffClt(A, angle0, sense, s, g, d, &out);
                    SCOPED_TRACE(::testing::Message() << A << " " << sense << " " << d << " " << g);
                    expectUnitAlong(out, back * (tx * along + g * ty), back * (ty * along - g * tx));
                }
}

// ---- Spiral length and a design case ----

// A spiral turns by L (1/R1 + 1/R2) / 2, so L = 2 |w| / k; w the short way
// round. No curvature, cancelling ones, an uninvertible radius or no w give 0.
TEST_F(Clothoid, SpiralLengthFromDeflectionAndRadii)
{
    const double rows[][5] = {{0.0, 0.3, 100.0, 0.0, 60.0},
                              {0.3, 0.0, 0.0, 100.0, 60.0},
                              {1.0, 1.2, 100.0, 300.0, 30.0},
                              {0.1, 2 * kPi - 0.1, 250.0, 0.0, 100.0},
                              {6.0, 0.2, 500.0, 0.0, 2 * (0.2 + 2 * kPi - 6.0) * 500},
                              {0.0, 0.3, 0.0, 0.0, 0.0},
                              {0.0, 0.3, 100.0, -100.0, 0.0},
                              {0.0, 0.3, 1e-101, 0.0, 0.0},
                              {0.5, 0.5, 100.0, 0.0, 0.0}};
    for (const auto &[azimuth1, azimuth2, R1, R2, expected] : rows)
        EXPECT_NEAR(tsMath_spiralLength(azimuth1, azimuth2, R1, R2), expected, 1e-12 * (1 + expected))
            << azimuth1 << " " << azimuth2 << " " << R1 << " " << R2;
}

// L = 80 into R = 250 (A = sqrt(20000), tau = 0.16), and back from A and p.
TEST_F(Clothoid, TransitionIntoAnArcRoundTrip)
{
    const double R = 250.0, L = 80.0, A = convert(1, R, L).out, p = convert(18, A, R).out;
    ASSERT_NEAR(A, std::sqrt(20000.0), 1e-12);
    EXPECT_NEAR(p, referenceShift(A, L), 1e-12);
    EXPECT_NEAR(convert(15, A, R).out, 0.16, 1e-15);
    EXPECT_NEAR(convert(9, A, p).out, L, 0.05);
    EXPECT_NEAR(convert(13, A, p).out, R, 0.2);
    EXPECT_NEAR(convert(16, A, p).out, 0.16, 2e-4);
    EXPECT_NEAR(convert(5, R, p).out, A, 0.1);
}

}  // namespace
