// Points, derivatives, conversions and offset tangents of the clothoid,
// checked against a clothoid integrated numerically in the test itself.
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <numbers>
#include <utility>

#include <gtest/gtest.h>

#include <tessar/clothoid.h>
#include <tessar/frame.h>

namespace {

using Real = long double;

constexpr int32_t kFail = TESSAR_FAILURE;
constexpr double kPi = std::numbers::pi;

int32_t kernelError()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// Leaves the kernel's error word at 32768 (an unknown conversion code).
void provokeKernelFailure()
{
    double out = 0.0;
    UTMAT_CalculerParametreClot(10, 1.0, 1.0, &out);
    ASSERT_EQ(kernelError(), kFail);
}

// ---- The reference clothoid ----

// Adaptive Simpson with Richardson's correction, in long double.
template <class F>
Real simpson(F &f, Real a, Real b, Real fa, Real fm, Real fb, Real whole, Real eps, int depth)
{
    const Real m = (a + b) / 2, lm = (a + m) / 2, rm = (m + b) / 2;
    const Real flm = f(lm), frm = f(rm);
    const Real left = (m - a) / 6 * (fa + 4 * flm + fm);
    const Real right = (b - m) / 6 * (fm + 4 * frm + fb);
    const Real delta = left + right - whole;
    if (depth <= 0 || std::fabs(delta) <= 15 * eps) return left + right + delta / 15;
    return simpson(f, a, m, fa, flm, fm, left, eps / 2, depth - 1) +
           simpson(f, m, b, fm, frm, fb, right, eps / 2, depth - 1);
}

template <class F> Real integrate(F f, Real a, Real b, Real eps)
{
    const Real fa = f(a), fb = f(b), fm = f((a + b) / 2);
    return simpson(f, a, b, fa, fm, fb, (b - a) / 6 * (fa + 4 * fm + fb), eps, 60);
}

// The clothoid of parameter A at abscissa s: x = integral of cos(u^2 / 2A^2),
// y = sign(A) integral of sin(u^2 / 2A^2), from 0 to s, taken in the
// normalised variable b = s / (sqrt(2) |A|), where the integrands are
// cos(beta^2) and sin(beta^2).
struct Reference {
    Real x, y, tau;
};

Reference referencePoint(double A, double s, Real relative = 1e-18L)
{
    const Real scale = std::sqrt(Real(2)) * std::fabs(Real(A));
    const Real b = Real(s) / scale;
    // Tolerances relative to the size of each integral (b and b^3 / 3 near
    // the origin, less than 1 far out).
    const Real ab = std::fabs(b);
    const Real c = integrate([](Real t) { return std::cos(t * t); }, Real(0), b, relative * ab);
    const Real sn = integrate([](Real t) { return std::sin(t * t); }, Real(0), b,
                              relative * ab * std::fmin(ab * ab, Real(1)));
    const Real sign = A > 0 ? 1 : -1;
    return {scale * c, sign * scale * sn, Real(s) * s / (2 * Real(A) * A)};
}

// The shift p = y(L) - R (1 - cos tau) of the reference clothoid.
double referenceShift(double A, double L)
{
    const Reference r = referencePoint(A, L);
    const Real R = Real(A) * A / L;
    return double(std::fabs(r.y) - R * (1 - std::cos(r.tau)));
}

Real factorial(int n)
{
    Real f = 1;
    for (int i = 2; i <= n; ++i)
        f *= i;
    return f;
}

// How far a series of `terms` terms may stand from the true value, relative
// to its multiplier sqrt(2) |A|: the first omitted term (the series
// alternate with falling terms in the range used), an allowance for the
// stored coefficients from k = 6 on, which depart from 1 / ((4k + 1) (2k)!)
// and 1 / ((4k + 3) (2k + 1)!) by up to 3e-7 of their size, and rounding.
Real seriesBound(int terms, bool ySeries, Real b)
{
    const auto rule = [&](int k) {
        return ySeries ? 1 / ((4 * k + 3) * factorial(2 * k + 1)) : 1 / ((4 * k + 1) * factorial(2 * k));
    };
    const auto power = [&](int k) { return std::pow(std::fabs(b), Real(4 * k + (ySeries ? 3 : 1))); };
    Real total = 0, late = 0;
    for (int k = 0; k < terms; ++k) {
        total += rule(k) * power(k);
        if (k >= 6) late += rule(k) * power(k);
    }
    return rule(terms) * power(terms) + 3e-7L * late + 8 * DBL_EPSILON * total;
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

// Restores the kernel's settings that a test changes.
class Clothoid : public ::testing::Test
{
  protected:
    void SetUp() override { restore(); }
    void TearDown() override { restore(); }
    static void restore()
    {
        UTMAT_SetVelloraSpiralFormula();
        UTMAT_setCalculPrecision(0.0001);
    }
};

// ---- Points ----

// Road-design clothoids, R from 30 m to 10 km and L up to R (tau up to 0.5),
// both series, both turning directions, on the axis and at offsets.
TEST_F(Clothoid, PointsMatchTheIntegratedClothoidAtRoadDesignSizes)
{
    for (double R : {30.0, 250.0, 1000.0, 10000.0}) {
        for (double ratio : {0.1, 0.5, 1.0}) {
            const double L = ratio * R;
            for (double sign : {1.0, -1.0}) {
                const double A = sign * std::sqrt(R * L);
                for (double s : {L / 7, L / 2, L}) {
                    const Reference ref = referencePoint(A, s);
                    const Real scale = std::sqrt(Real(2)) * std::fabs(A);
                    const Real b = s / scale;
                    const Real sinTau = sign * std::sin(ref.tau), cosTau = std::cos(ref.tau);
                    for (int32_t formula : {1, 2}) {
                        const int terms = formula == 1 ? 4 : 9;
                        const double tolX = double(scale * seriesBound(terms, false, b));
                        const double tolY = double(scale * seriesBound(terms, true, b));
                        for (double d : {0.0, 3.5, -7.25}) {
                            SCOPED_TRACE(::testing::Message()
                                         << "R " << R << " L " << L << " A " << A << " s " << s << " formula "
                                         << formula << " d " << d);
                            const Evaluated e = evaluate(A, s, d, formula);
                            ASSERT_EQ(e.status, 0);
                            // The offset lies along the right-hand normal (sin, -cos).
                            const double tolD = std::fabs(d) * 1e-15;
                            EXPECT_NEAR(e.x, double(ref.x + d * sinTau), tolX + tolD);
                            EXPECT_NEAR(e.y, double(ref.y - d * cosTau), tolY + tolD);
                            EXPECT_NEAR(e.cosTau, double(cosTau), 1e-15);
                            EXPECT_NEAR(e.sinTau, double(sinTau), 1e-15);
                        }
                    }
                }
            }
        }
    }
}

TEST_F(Clothoid, StartPointIsTheOriginWithTangentAlongX)
{
    for (int32_t formula : {1, 2, 0, 7})
        for (double A : {150.0, -150.0}) {
            SCOPED_TRACE(::testing::Message() << "formula " << formula << " A " << A);
            const Evaluated e = evaluate(A, 0.0, 0.0, formula);
            EXPECT_EQ(e.status, 0);
            EXPECT_EQ(e.x, 0.0);
            EXPECT_EQ(e.y, 0.0);
            EXPECT_EQ(e.cosTau, 1.0);
            EXPECT_EQ(e.sinTau, 0.0);
            // A positive offset lies to the right of the x axis, for either turn.
            const Evaluated o = evaluate(A, 0.0, 2.5, formula);
            EXPECT_EQ(o.x, 0.0);
            EXPECT_EQ(o.y, -2.5);
        }
}

// A right-hand clothoid is the mirror image of the left-hand one in the x
// axis, in every form: x and cos equal, y and sin negated, to the bit.
TEST_F(Clothoid, NegativeParameterMirrorsYAndSine)
{
    const double A = 180.0;
    for (int32_t formula : {1, 2})
        for (double tau : {0.0, 0.2, 1.5, 3.4, 3.5, 12.0}) {
            const double s = A * std::sqrt(2 * tau);
            const Evaluated left = evaluate(A, s, 0.0, formula);
            const Evaluated right = evaluate(-A, s, 0.0, formula);
            SCOPED_TRACE(::testing::Message() << "formula " << formula << " tau " << tau);
            EXPECT_EQ(right.x, left.x);
            EXPECT_EQ(right.y, -left.y);
            EXPECT_EQ(right.cosTau, left.cosTau);
            EXPECT_EQ(right.sinTau, -left.sinTau);
        }
}

// For A = 100, s = 262.2746651889961 gives s s / (2 A A) = 3.4394 exactly.
// There the nine-term series still holds (its first omitted term is about
// 5e-6 here); one step of s further the far-field form takes over, with its
// jump of about 0.8 in x and 0.2 in y.
TEST_F(Clothoid, LongFormLeavesTheSeriesJustAboveDeflection3_4394)
{
    const double A = 100.0;
    const double atThreshold = 262.2746651889961;
    ASSERT_EQ(atThreshold * atThreshold / (2.0 * A * A), 3.4394);
    const double above = std::nextafter(atThreshold, 1e9);

    const Reference ref = referencePoint(A, atThreshold);
    const Evaluated on = evaluate(A, atThreshold, 0.0, 2);
    EXPECT_NEAR(on.x, double(ref.x), 1e-5);
    EXPECT_NEAR(on.y, double(ref.y), 1e-5);

    const Evaluated beyond = evaluate(A, above, 0.0, 2);
    EXPECT_GT(beyond.x - double(ref.x), 0.7);
    EXPECT_LT(beyond.x - double(ref.x), 0.9);
    EXPECT_GT(beyond.y - double(ref.y), 0.15);
    EXPECT_LT(beyond.y - double(ref.y), 0.3);

    // The short form has no such switch: just above the threshold it is as
    // smooth as just below it.
    const Evaluated shortOn = evaluate(A, atThreshold, 0.0, 1);
    const Evaluated shortBeyond = evaluate(A, above, 0.0, 1);
    EXPECT_NEAR(shortBeyond.x, shortOn.x, 1e-9);
    EXPECT_NEAR(shortBeyond.y, shortOn.y, 1e-9);
}

// The far-field form tends to the limit point sqrt(pi)/2 (|A|, A) with an
// error that stays below 1 % of A (it is at its worst, 0.8 %, at the threshold).
TEST_F(Clothoid, FarFieldFormStaysWithinOnePercentOfA)
{
    for (double A : {60.0, -400.0})
        for (double tau : {3.44, 4.0, 5.0, 10.0, 50.0, 400.0}) {
            const double s = std::fabs(A) * std::sqrt(2 * tau);
            const Reference ref = referencePoint(A, s, 1e-12L);
            const Evaluated e = evaluate(A, s, 0.0, 2);
            SCOPED_TRACE(::testing::Message() << "A " << A << " tau " << tau);
            EXPECT_NEAR(e.x, double(ref.x), 0.01 * std::fabs(A));
            EXPECT_NEAR(e.y, double(ref.y), 0.01 * std::fabs(A));
        }
}

// Beyond the threshold the long form is the stated asymptote, with its own
// constants (0.88623, 0.2978, 0.4997, 0.042) and tau = b^2: evaluated here in
// long double from g0 = A^2 / s and h = (0.4997 g0 / |A| - 0.042) g0.
TEST_F(Clothoid, FarFieldFormIsTheStatedAsymptote)
{
    for (double A : {100.0, -2500.0})
        for (double tau : {3.5, 7.0, 30.0}) {
            const double s = std::fabs(A) * std::sqrt(2 * tau);
            const Real sign = A > 0 ? 1 : -1, absA = std::fabs(A);
            const Real b = s / (std::sqrt(Real(2)) * absA), t = b * b;
            const Real g0 = Real(A) * A / s;
            const Real h = (0.4997L * g0 / absA - 0.042L) * g0;
            const Real x = 0.88623L * absA - std::cos(t - 0.2978L) * h + std::sin(t) * g0;
            const Real y = sign * (0.88623L * absA - std::sin(t - 0.2978L) * h - std::cos(t) * g0);
            const Evaluated e = evaluate(A, s, 0.0, 2);
            SCOPED_TRACE(::testing::Message() << "A " << A << " tau " << tau);
            EXPECT_NEAR(e.x, double(x), 1e-12 * absA);
            EXPECT_NEAR(e.y, double(y), 1e-12 * absA);
        }
}

// Far out, the short form is its four-term polynomial and nothing else; the
// polynomial is evaluated here by Horner's scheme in long double.
TEST_F(Clothoid, ShortFormIsItsPolynomialAtAnyLength)
{
    const double A = 50.0;
    for (double tau : {2.0, 9.0, 40.0}) {
        const double s = A * std::sqrt(2 * tau);
        const Real b = s / (std::sqrt(Real(2)) * A), b4 = b * b * b * b;
        const Real px = b * (1 - b4 * (Real(1) / 10 - b4 * (Real(1) / 216 - b4 * (Real(1) / 9360))));
        const Real py =
            b * b * b * (Real(1) / 3 - b4 * (Real(1) / 42 - b4 * (Real(1) / 1320 - b4 * (Real(1) / 75600))));
        const Real scale = std::sqrt(Real(2)) * A;
        const Evaluated e = evaluate(A, s, 0.0, 1);
        SCOPED_TRACE(::testing::Message() << "tau " << tau);
        EXPECT_NEAR(e.x, double(scale * px), 1e-12 * std::fabs(double(scale * px)) + 1e-12);
        EXPECT_NEAR(e.y, double(scale * py), 1e-12 * std::fabs(double(scale * py)) + 1e-12);
    }
}

TEST_F(Clothoid, UnknownFormulaCountsAsTheShortForm)
{
    const double A = 120.0, s = 240.0;  // tau = 2: the two forms differ by about 4e-3
    const Evaluated shortForm = evaluate(A, s, 1.5, 1);
    const Evaluated longForm = evaluate(A, s, 1.5, 2);
    ASSERT_GT(std::fabs(shortForm.x - longForm.x), 1e-3);
    for (int32_t formula : {0, 3, -1, 1000}) {
        const Evaluated e = evaluate(A, s, 1.5, formula);
        EXPECT_EQ(e.status, 0);
        EXPECT_EQ(e.x, shortForm.x) << formula;
        EXPECT_EQ(e.y, shortForm.y) << formula;
    }
}

TEST_F(Clothoid, ExactlyZeroParameterFailsAndStoresNothing)
{
    for (double A : {0.0, -0.0})
        for (int32_t formula : {1, 2}) {
            const Evaluated e = evaluate(A, 10.0, 1.0, formula);
            EXPECT_EQ(e.status, kFail);
            EXPECT_TRUE(std::isnan(e.x) && std::isnan(e.y) && std::isnan(e.cosTau) && std::isnan(e.sinTau));
        }
    // Any other parameter, however small, is evaluated.
    EXPECT_EQ(evaluate(1e-300, 0.0, 0.0, 2).status, 0);
    // The status does not touch the kernel's error word.
    provokeKernelFailure();
    evaluate(0.0, 1.0, 0.0, 2);
    EXPECT_EQ(kernelError(), kFail);
}

TEST_F(Clothoid, EveryOutputIsOptional)
{
    double y = NAN;
    EXPECT_EQ(tsMath_calculateSpiralPointByDistanceAndOffset(nullptr, nullptr, nullptr, nullptr, 90.0, 30.0,
                                                             0.0, 2),
              0);
    EXPECT_EQ(
        tsMath_calculateSpiralPointByDistanceAndOffset(nullptr, &y, nullptr, nullptr, 90.0, 30.0, 0.0, 2), 0);
    EXPECT_EQ(y, evaluate(90.0, 30.0, 0.0, 2).y);
}

// ---- The kernel's point function ----

TEST_F(Clothoid, KernelPointFollowsTheSelectedSeries)
{
    const double A = 120.0, s = 240.0, d = -2.0;
    for (int32_t formula : {1, 2}) {
        if (formula == 1)
            UTMAT_SetQuorrelSpiralFormula();
        else
            UTMAT_SetVelloraSpiralFormula();
        const Evaluated expected = evaluate(A, s, d, formula);
        provokeKernelFailure();
        dpoint2d point{}, tangent{};
        UTMAT_CalculerPosPointArcClotAbscisse(A, s, d, &point, &tangent);
        EXPECT_EQ(kernelError(), 0);
        EXPECT_EQ(point.x, expected.x);
        EXPECT_EQ(point.y, expected.y);
        EXPECT_EQ(tangent.x, expected.cosTau);
        EXPECT_EQ(tangent.y, expected.sinTau);

        dpoint2d again{};
        EXPECT_EQ(vlrUtmat_CalculateSpiralPointAtDistance(A, s, d, &again, nullptr), 0);
        EXPECT_EQ(again.x, expected.x);
        UTMAT_CalculerPosPointArcClotAbscisse(A, s, d, nullptr, nullptr);
        EXPECT_EQ(kernelError(), 0);
    }
}

// The evaluation's failure is not passed on: an A of exactly 0 leaves the
// error word at 0, and the status function returns that 0.
TEST_F(Clothoid, KernelPointIgnoresAZeroParameter)
{
    dpoint2d point{}, tangent{};
    provokeKernelFailure();
    UTMAT_CalculerPosPointArcClotAbscisse(0.0, 10.0, 0.0, &point, &tangent);
    EXPECT_EQ(kernelError(), 0);
    EXPECT_EQ(vlrUtmat_CalculateSpiralPointAtDistance(0.0, 10.0, 0.0, &point, &tangent), 0);
}

// ---- Derivatives with respect to b ----

// dx/db = m cos(b^2), dy/db = m' sin(b^2), d2x/db2 = -2 b m sin(b^2),
// d2y/db2 = 2 b m' cos(b^2), with m = sqrt(2)|A| and m' = sqrt(2) A. The
// series hold four terms, or nine with the long form (d2x/db2 one less): the
// first omitted term of cos(t) and sin(t) in t = b^2 bounds their error.
TEST_F(Clothoid, DerivativesMatchTheirClosedForms)
{
    for (int32_t formula : {1, 2}) {
        if (formula == 1)
            UTMAT_SetQuorrelSpiralFormula();
        else
            UTMAT_SetVelloraSpiralFormula();
        const int terms = formula == 1 ? 4 : 9;
        for (double A : {200.0, -35.0})
            for (double tau : {0.0, 0.05, 0.5, 1.2}) {
                const double s = std::fabs(A) * std::sqrt(2 * tau);
                const Real m = std::sqrt(Real(2)) * std::fabs(A), mSigned = A > 0 ? m : -m;
                const Real b = s / m, t = b * b;
                const Real cosError = std::pow(t, Real(2 * terms)) / factorial(2 * terms) + 1e-15L;
                const Real sinError = std::pow(t, Real(2 * terms + 1)) / factorial(2 * terms + 1) + 1e-15L;
                // d2x/db2 has one term less than the others: three, or eight.
                const Real sinErrorSecond =
                    std::pow(t, Real(2 * terms - 1)) / factorial(2 * terms - 1) + 1e-15L;
                dpoint2d first{}, second{};
                provokeKernelFailure();
                UTMAT_CalculerDeriveePremEtSecClot(A, s, &first, &second);
                SCOPED_TRACE(::testing::Message() << "formula " << formula << " A " << A << " tau " << tau);
                EXPECT_EQ(kernelError(), 0);
                EXPECT_NEAR(first.x, double(m * std::cos(t)), double(m * cosError));
                EXPECT_NEAR(first.y, double(mSigned * std::sin(t)), double(m * sinError));
                EXPECT_NEAR(second.x, double(-2 * b * m * std::sin(t)), double(2 * b * m * sinErrorSecond));
                EXPECT_NEAR(second.y, double(2 * b * mSigned * std::cos(t)), double(2 * b * m * cosError));
            }
    }
}

TEST_F(Clothoid, DerivativesFailOnAnExactlyZeroParameter)
{
    dpoint2d first{7.0, 7.0}, second{7.0, 7.0};
    UTMAT_CalculerDeriveePremEtSecClot(0.0, 5.0, &first, &second);
    EXPECT_EQ(kernelError(), kFail);
    EXPECT_EQ(first.x, 7.0);
    UTMAT_CalculerDeriveePremEtSecClot(1e-200, 5.0, &first, &second);
    EXPECT_EQ(kernelError(), 0);
}

// ---- Conversions ----

struct Conversion {
    double out;
    int32_t valid;
    int32_t error;        // of the Valide variant
    int32_t strictError;  // of UTMAT_CalculerParametreClot
    double strictOut;
};

Conversion convert(int32_t code, double a, double b)
{
    Conversion c{NAN, -1, -1, -1, NAN};
    UTMAT_CalculerParametreClotValide(code, a, b, &c.out, &c.valid);
    c.error = kernelError();
    UTMAT_CalculerParametreClot(code, a, b, &c.strictOut);
    c.strictError = kernelError();
    return c;
}

// A = sqrt(R L), L = A^2 / R, R = A^2 / L, tau = L / 2R = L^2 / 2A^2, worked
// for round numbers.
TEST_F(Clothoid, ClosedFormConversions)
{
    const struct {
        int32_t code;
        double a, b, expected;
    } rows[] = {
        {1, 100.0, 50.0, 70.71067811865476},   // A = sqrt(5000)
        {2, 50.0, 0.25, 70.71067811865476},    // A = L / sqrt(2 tau) = 50 / sqrt(0.5)
        {4, 100.0, 0.25, 70.71067811865476},   // A = R sqrt(2 tau)
        {7, 100.0, 50.0, 200.0},               // L = A^2 / R
        {8, 100.0, 0.5, 100.0},                // L = A sqrt(2 tau)
        {11, 100.0, 50.0, 200.0},              // R = A^2 / L
        {12, 100.0, 0.5, 100.0},               // R = A / sqrt(2 tau)
        {14, 100.0, 50.0, 0.125},              // tau = 2500 / 20000
        {15, 100.0, 50.0, 2.0},                // tau = 10000 / 5000
        {1, -100.0, 50.0, 70.71067811865476},  // signs play no part
        {7, -100.0, -50.0, 200.0},
        {15, 100.0, -50.0, 2.0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(::testing::Message() << "code " << row.code << " a " << row.a << " b " << row.b);
        const Conversion c = convert(row.code, row.a, row.b);
        EXPECT_NEAR(c.out, row.expected, 4e-16 * row.expected);
        EXPECT_EQ(c.valid, 1);
        EXPECT_EQ(c.error, 0);
        EXPECT_EQ(c.strictOut, c.out);
        EXPECT_EQ(c.strictError, 0);
    }
}

// Near zero is within the calculation precision (1e-4) of 0. Every row is
// invalid with an a near zero; a b near zero is invalid for codes 1 to 6, a
// valid 0 for the others, and not looked at by codes 8 and 14.
TEST_F(Clothoid, NearZeroInputsByRow)
{
    const struct {
        int32_t code;
        double a, b;
        int32_t valid;
    } rows[] = {
        {1, 0.0, 50.0, 0},   {1, 5e-5, 50.0, 0},  {1, 100.0, 0.0, 0},  {2, 100.0, 1e-4, 0},
        {3, 100.0, 0.0, 0},  {4, 100.0, 0.0, 0},  {5, 100.0, 0.0, 0},  {6, 0.5, 0.0, 0},
        {6, 0.0, 0.5, 0},    {7, 100.0, 0.0, 1},  {8, 100.0, 0.0, 1},  {9, 100.0, 0.0, 1},
        {9, 0.0, 1.0, 0},    {11, 100.0, 0.0, 1}, {12, 100.0, 0.0, 1}, {13, 100.0, 0.0, 1},
        {14, 100.0, 0.0, 1}, {15, 100.0, 0.0, 1}, {16, 100.0, 0.0, 1}, {17, 100.0, 0.0, 1},
        {18, 100.0, 0.0, 1}, {19, 100.0, 0.0, 1}, {19, -1e-4, 0.5, 0}, {14, 1e-5, 1.0, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(::testing::Message() << "code " << row.code << " a " << row.a << " b " << row.b);
        const Conversion c = convert(row.code, row.a, row.b);
        EXPECT_EQ(c.out, 0.0);
        EXPECT_EQ(c.valid, row.valid);
        EXPECT_EQ(c.error, 0);
        EXPECT_EQ(c.strictOut, 0.0);
        EXPECT_EQ(c.strictError, row.valid ? 0 : kFail);
    }
    // Code 8 computes with a tiny b rather than testing it: L = 100 sqrt(1e-4).
    EXPECT_NEAR(convert(8, 100.0, 5e-5).out, 100.0 * std::sqrt(1e-4), 1e-15);
}

TEST_F(Clothoid, UnknownCodesFailInBothVariants)
{
    for (int32_t code : {0, -3, 10, 20, 1000}) {
        const Conversion c = convert(code, 100.0, 50.0);
        EXPECT_EQ(c.error, kFail) << code;
        EXPECT_EQ(c.strictError, kFail) << code;
        EXPECT_EQ(c.valid, 0) << code;
        EXPECT_EQ(c.out, 0.0) << code;
    }
}

// A = 200 and L = 100 make R = 400 and tau = 0.125; the shift of that
// clothoid comes from the integrated curve.
TEST_F(Clothoid, DirectShiftMatchesTheIntegratedCurve)
{
    // p = L^2 / 24R - L^4 / 2688R^3 + ..., the next term about 2e-7 here.
    const double p = referenceShift(200.0, 100.0);
    EXPECT_NEAR(p, 1e4 / (24.0 * 400.0) - 1e8 / (2688.0 * 400.0 * 400.0 * 400.0), 5e-7);
    for (int32_t formula : {1, 2}) {
        if (formula == 1)
            UTMAT_SetQuorrelSpiralFormula();
        else
            UTMAT_SetVelloraSpiralFormula();
        for (const auto &[code, b] : {std::pair{17, 100.0}, {18, 400.0}, {19, 0.125}}) {
            const Conversion c = convert(code, -200.0, b);
            EXPECT_NEAR(c.out, p, 1e-12) << code;
            EXPECT_EQ(c.valid, 1);
            EXPECT_EQ(c.strictError, 0);
        }
    }
}

// The searches stop once the shift of the curve they built is within the
// calculation precision of the target: the shift of the returned curve,
// taken from the integrated clothoid, meets that, and the value lies close
// to that of the curve the target came from (A = 200, L = 100).
TEST_F(Clothoid, SearchesReproduceTheShift)
{
    const double A = 200.0, L = 100.0, R = 400.0, tau = 0.125;
    const double p = referenceShift(A, L);
    const struct {
        int32_t code;
        double a, expected;
    } rows[] = {{3, L, A}, {5, R, A}, {6, tau, A}, {9, A, L}, {13, A, R}, {16, A, tau}};
    for (double precision : {1e-4, 0.0}) {
        UTMAT_setCalculPrecision(precision);
        for (const auto &row : rows) {
            SCOPED_TRACE(::testing::Message() << "code " << row.code << " precision " << precision);
            const Conversion c = convert(row.code, row.a, p);
            ASSERT_EQ(c.error, 0);
            ASSERT_EQ(c.valid, 1);
            // The curve the result describes.
            double curveA = A, curveL = L;
            switch (row.code) {
            case 3:
                curveA = c.out;
                break;
            case 5:
                curveA = c.out, curveL = c.out * c.out / R;
                break;
            case 6:
                curveA = c.out, curveL = c.out * std::sqrt(2 * tau);
                break;
            case 9:
                curveL = c.out;
                break;
            case 13:
                curveL = A * A / c.out;
                break;
            case 16:
                curveL = A * std::sqrt(2 * c.out);
                break;
            }
            // With precision 0 the halving runs until the shift is met to
            // the last digits.
            EXPECT_NEAR(referenceShift(curveA, curveL), p, precision + 1e-12);
            EXPECT_NEAR(c.out, row.expected, (precision > 0 ? 1e-3 : 1e-10) * row.expected);
        }
    }
}

// The search stops at the first halving whose shift is within the
// precision: with 1e-3 the deflection of A = 200, p = 1.041 (tau near 0.125)
// is met within a dozen halvings of [0, pi/2], so the result is a multiple of
// pi/2 / 2^16, and not the exact solution that further halving would reach.
TEST_F(Clothoid, SearchStopsAtTheFirstShiftWithinThePrecision)
{
    UTMAT_setCalculPrecision(1e-3);
    const double A = 200.0, p = referenceShift(A, 100.0);
    const Conversion c = convert(16, A, p);
    ASSERT_EQ(c.valid, 1);
    const double steps = c.out / dc_piover2 * 65536.0;
    EXPECT_NEAR(steps, std::round(steps), 1e-9);
    const double shift = referenceShift(A, A * std::sqrt(2 * c.out));
    EXPECT_LE(std::fabs(shift - p), 1e-3);
    EXPECT_GT(std::fabs(shift - p), 1e-9);
}

// The largest shift of a clothoid of L = 100 within a quarter turn is about
// 12.0 (integrated); a larger target is a valid 0 with no error, for every
// search but the one on A.
TEST_F(Clothoid, ShiftBeyondAQuarterTurnGivesAValidZero)
{
    const double quarterA = 100.0 / std::sqrt(kPi);  // tau = pi / 2 at L = 100
    const double pmax = referenceShift(quarterA, 100.0);
    ASSERT_NEAR(pmax, 12.0, 0.01);
    const double quarterR = quarterA * quarterA / 100.0;
    for (const auto &[code, a] :
         {std::pair{3, 100.0}, {5, quarterR}, {9, quarterA}, {13, quarterA}, {16, quarterA}}) {
        const Conversion below = convert(code, a, pmax - 0.05);
        EXPECT_GT(below.out, 0.0) << code;
        const Conversion beyond = convert(code, a, pmax + 0.05);
        EXPECT_EQ(beyond.out, 0.0) << code;
        EXPECT_EQ(beyond.valid, 1) << code;
        EXPECT_EQ(beyond.strictError, 0) << code;
    }
}

// Searching A for a deflection of 1 rad: the largest A, 1e8, has a shift of
// about 1.1e7, so a target of 1e9 is never met and every halving moves up:
// the search ends at its bound after running all its steps.
TEST_F(Clothoid, SearchOnAForAnUnreachableShiftEndsAtItsBound)
{
    const Conversion c = convert(6, 1.0, 1e9);
    EXPECT_EQ(c.error, 0);
    EXPECT_EQ(c.valid, 1);
    EXPECT_NEAR(c.out, 1e8, 1e-6);
}

TEST_F(Clothoid, SearchOnAIsInvalidBeyondAQuarterTurn)
{
    EXPECT_EQ(convert(6, kPi / 2 + 2e-4, 1.0).strictError, kFail);
    EXPECT_EQ(convert(6, kPi / 2 + 2e-4, 1.0).valid, 0);
    EXPECT_EQ(convert(6, kPi / 2 + 5e-5, 1.0).valid, 1);  // within the precision
}

// For L = 100 a shift of 2e-4 needs tau near 2.4e-5 (p ~ L tau / 12). The
// halving reaches a deflection within 1e-4 of zero first, where the nested
// conversion of A is invalid: the search fails. A search on tau with A given
// (code 16) has no such nested test and succeeds.
TEST_F(Clothoid, SearchWalkingToZeroFailsForTheSearchesOfA)
{
    const Conversion c = convert(3, 100.0, 2e-4);
    EXPECT_EQ(c.error, kFail);
    EXPECT_EQ(c.valid, 0);
    EXPECT_EQ(c.strictError, kFail);
    const Conversion tauOf = convert(16, 100.0, 2e-4);
    EXPECT_EQ(tauOf.error, 0);
    EXPECT_EQ(tauOf.valid, 1);
}

// ---- Offset curves ----

// The offset curve of a counter-clockwise arc of radius R about the origin,
// offset d to the right (outwards) and growing by g per unit of arc, is
// P(s) = (R + d + g s) u(s / R); its tangent at s = 0 is (g, (R + d) / R)
// against the arc's (0, 1). Expected: the angle between them in (-pi, pi].
double circleDifference(double R, double d, double g)
{
    double angle = std::atan2((R + d) / R, g) - kPi / 2;
    if (angle <= -kPi) angle += 2 * kPi;
    return angle;
}

TEST_F(Clothoid, CircleTangentDifferenceFollowsTheOffsetCurve)
{
    for (double R : {40.0, 500.0})
        for (double d : {0.0, 12.5, -0.5 * R, -1.5 * R, -3.0 * R})
            for (double g : {0.0, 0.02, -0.02, 1.5, -4.0}) {
                double out = NAN;
                provokeKernelFailure();
                UTMAT_CalculerDifferenceTgArcCerTgOffCer(R, d, g, &out);
                EXPECT_EQ(kernelError(), 0);
                EXPECT_NEAR(out, circleDifference(R, d, g), 1e-14) << R << " " << d << " " << g;
            }
}

// At the centre (R + d within the precision of 0) the offset curve's tangent
// is radial, or the difference is 0 for a rate near zero.
TEST_F(Clothoid, CircleTangentDifferenceAtTheCentre)
{
    const struct {
        double d, g, expected;
    } rows[] = {
        {-100.0, 0.5, -kPi / 2}, {-100.0, -0.5, kPi / 2}, {-100.0, 0.0, 0.0},
        {-100.00005, 5e-5, 0.0}, {-200.0, 0.0, kPi},      {0.0, 0.0, 0.0},
    };
    for (const auto &row : rows) {
        double out = NAN;
        UTMAT_CalculerDifferenceTgArcCerTgOffCer(100.0, row.d, row.g, &out);
        EXPECT_NEAR(out, row.expected, 1e-15) << row.d << " " << row.g;
    }
}

// On a clothoid the same angle is taken on the osculating circle, radius
// A^2 / s; a right-hand clothoid is the mirror image (offset and rate
// change sign, and so does the angle).
TEST_F(Clothoid, ClothoidTangentDifferenceUsesTheOsculatingCircle)
{
    for (double A : {150.0, -150.0})
        for (double s : {30.0, 200.0})
            for (double d : {0.0, 10.0, -10.0, 700.0, -700.0})
                for (double g : {0.0, 0.05, -0.3}) {
                    const double r = A * A / s;
                    if (std::fabs(r - std::fabs(d)) < 1.0) continue;
                    double expected = A > 0 ? circleDifference(r, d, g) : -circleDifference(r, -d, -g);
                    // With a constant offset there is no turn to report, even
                    // beyond the centre, where the circle's function gives pi.
                    if (g == 0.0) expected = 0.0;
                    double out = NAN;
                    UTMAT_CalculerDifferenceTgArcClotTgOffClt(A, s, d, g, &out);
                    // pi and -pi are the same angle; the function gives -pi there for A < 0.
                    const double wrapped = std::remainder(out - expected, 2 * kPi);
                    EXPECT_NEAR(wrapped, 0.0, 1e-13) << A << " " << s << " " << d << " " << g;
                }
}

TEST_F(Clothoid, ClothoidTangentDifferenceSpecialCases)
{
    double out = NAN;
    // At the origin the radius is infinite: atan(-g), whatever A.
    for (double A : {80.0, -80.0, 1e6}) {
        UTMAT_CalculerDifferenceTgArcClotTgOffClt(A, 0.0, 5.0, 0.25, &out);
        EXPECT_DOUBLE_EQ(out, std::atan(-0.25));
        UTMAT_CalculerDifferenceTgArcClotTgOffClt(A, 5e-5, 5.0, 0.25, &out);
        EXPECT_DOUBLE_EQ(out, std::atan(-0.25));
    }
    // At the centre of curvature (r = 10000 / 50 = 200) the tangent is
    // radial, and unlike the circle's a zero rate is not singled out.
    const struct {
        double A, d, g, expected;
    } rows[] = {
        {100.0, -200.0, 0.5, -kPi / 2}, {100.0, -200.0, 0.0, kPi / 2}, {-100.0, 200.0, 0.5, -kPi / 2}};
    for (const auto &row : rows) {
        UTMAT_CalculerDifferenceTgArcClotTgOffClt(row.A, 50.0, row.d, row.g, &out);
        EXPECT_EQ(out, row.expected) << row.A << " " << row.d << " " << row.g;
    }
}

dpoint2d unit(double x, double y)
{
    const double n = std::hypot(x, y);
    return {x / n, y / n};
}

// The arc about C starts at radial angle angle0. Forwards (sense 1) it runs
// counter-clockwise and its offset curve is C + (R + d + g (t - s)) u(angle0
// + t / R); backwards (sense 0) it runs clockwise, the offset to the right
// of that travel lies inwards: C + (R - d - g (t - s)) u(angle0 - t / R).
// Their derivatives at t = s are worked out here.
TEST_F(Clothoid, CircleOffsetTangentFollowsTheOffsetCurve)
{
    const double R = 120.0, angle0 = 0.7, s = 45.0;
    for (int32_t sense : {1, 0})
        for (double d : {0.0, 6.0, -9.0})
            for (double g : {0.0, 0.04, -0.1}) {
                const double phi = sense ? angle0 + s / R : angle0 - s / R;
                const double ux = std::cos(phi), uy = std::sin(phi);
                dpoint2d expected;
                if (sense)
                    expected = unit(g * ux - (R + d) / R * uy, g * uy + (R + d) / R * ux);
                else
                    expected = unit(-g * ux + (R - d) / R * uy, -g * uy - (R - d) / R * ux);
                dpoint2d out{NAN, NAN};
                UTMAT_CalculerTangenteOffCer(R, angle0, sense, s, g, d, &out);
                EXPECT_NEAR(out.x, expected.x, 1e-14) << sense << " " << d << " " << g;
                EXPECT_NEAR(out.y, expected.y, 1e-14) << sense << " " << d << " " << g;
            }
}

// The clothoid starts in direction angle0; at s its tangent is t at angle
// angle0 + sign tau and its curvature to the left k = sign s / A^2. The
// offset curve P = C + (d + g (t - s)) n, n the right-hand normal, has
// P' = t (1 + k d) + g n. Backwards, the offset to the right of travel is -d
// on the forward curve and the tangent is reversed.
TEST_F(Clothoid, ClothoidOffsetTangentFollowsTheOffsetCurve)
{
    const double angle0 = -0.4, s = 60.0;
    for (double A : {90.0, -90.0})
        for (int32_t sense : {1, 0})
            for (double d : {0.0, 4.0, -11.0})
                for (double g : {0.0, 0.03, -0.2}) {
                    const double sign = A > 0 ? 1.0 : -1.0;
                    const double phi = angle0 + sign * s * s / (2 * A * A);
                    const double k = sign * s / (A * A);
                    const double dd = sense ? d : -d;
                    const double tx = std::cos(phi), ty = std::sin(phi), nx = ty, ny = -tx;
                    dpoint2d expected = unit(tx * (1 + k * dd) + g * nx, ty * (1 + k * dd) + g * ny);
                    if (!sense) expected = {-expected.x, -expected.y};
                    dpoint2d out{NAN, NAN};
                    UTMAT_CalculerTangenteOffClt(A, angle0, sense, s, g, d, &out);
                    EXPECT_NEAR(out.x, expected.x, 1e-14) << A << " " << sense << " " << d << " " << g;
                    EXPECT_NEAR(out.y, expected.y, 1e-14) << A << " " << sense << " " << d << " " << g;
                }
}

// ---- Spiral length ----

// Entering a circle of radius R from a tangent, a spiral turns by L / 2R, so
// it is 2 |w| R long; between radii R1 and R2 of the same hand it turns by
// L (1/R1 + 1/R2) / 2. Azimuths run clockwise from north; the deflection is
// taken the short way round.
TEST_F(Clothoid, SpiralLengthFromDeflectionAndRadii)
{
    const struct {
        double azimuth1, azimuth2, R1, R2, expected;
    } rows[] = {
        {0.0, 0.3, 100.0, 0.0, 60.0},                     // 2 * 0.3 * 100
        {0.3, 0.0, 0.0, 100.0, 60.0},                     // the other hand, the other end
        {1.0, 1.2, 100.0, 300.0, 0.4 / (1.0 / 75.0)},     // k = 1/100 + 1/300 = 1/75
        {0.1, 2 * kPi - 0.1, 250.0, 0.0, 2 * 0.2 * 250},  // across north: w = 0.2, not 2 pi - 0.2
        {6.0, 0.2, 500.0, 0.0, 2 * (0.2 + 2 * kPi - 6.0) * 500},
        {0.0, 0.3, 0.0, 0.0, 0.0},       // no curvature at all
        {0.0, 0.3, 100.0, -100.0, 0.0},  // curvatures cancel
        {0.0, 0.3, 1e-101, 0.0, 0.0},    // a radius too small to invert counts as none
        {0.5, 0.5, 100.0, 0.0, 0.0},     // no deflection
    };
    for (const auto &row : rows) {
        EXPECT_NEAR(tsMath_spiralLength(row.azimuth1, row.azimuth2, row.R1, row.R2), row.expected,
                    1e-12 * (1 + row.expected))
            << row.azimuth1 << " " << row.azimuth2 << " " << row.R1 << " " << row.R2;
    }
}

// ---- A design case ----

// A transition of L = 80 into an arc of R = 250: A = sqrt(20000), tau = 0.16,
// and back from A and the shift to the length, the radius and tau.
TEST_F(Clothoid, TransitionIntoAnArcRoundTrip)
{
    const double R = 250.0, L = 80.0;
    const Conversion A = convert(1, R, L);
    ASSERT_NEAR(A.out, std::sqrt(20000.0), 1e-12);
    const Conversion p = convert(18, A.out, R);
    EXPECT_NEAR(p.out, referenceShift(A.out, L), 1e-12);
    EXPECT_NEAR(convert(15, A.out, R).out, 0.16, 1e-15);
    EXPECT_NEAR(convert(9, A.out, p.out).out, L, 0.05);
    EXPECT_NEAR(convert(13, A.out, p.out).out, R, 0.2);
    EXPECT_NEAR(convert(16, A.out, p.out).out, 0.16, 2e-4);
    EXPECT_NEAR(convert(5, R, p.out).out, A.out, 0.1);
}

}  // namespace
