// Constants, settings, tolerant comparisons and the kernel's error words.
#include <cmath>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/vector.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;
const double kNaN = std::numeric_limits<double>::quiet_NaN();

int32_t kernelError()
{
    int32_t code = -1, detail = -1;
    UTMAT_GetErreur(&code, &detail);
    return code;
}

// Leaves the kernel's error word at 32768: a line through one point twice.
void provokeKernelFailure()
{
    const dpoint2d p{1.0, 1.0};
    UTMAT_Droite line{};
    UTMAT_CalculerDroite2Pt(&p, &p, &line);
}

TEST(Constants, LiteralsHaveTheirValues)
{
    struct Row {
        double value, expected;
    } rows[] = {{dc_zero, 0.0},        {dc_onehalf, 0.5},   {dc_1, 1.0},         {dc_m1, -1.0},
                {dc_2, 2.0},           {dc_3, 3.0},         {dc_4, 4.0},         {dc_5, 5.0},
                {dc_10, 10.0},         {dc_30, 30.0},       {dc_60, 60.0},       {dc_90, 90.0},
                {dc_100, 100.0},       {dc_180, 180.0},     {dc_270, 270.0},     {dc_360, 360.0},
                {dc_750, 750.0},       {dc_1000, 1000.0},   {dc_10000, 10000.0}, {dc_100000, 100000.0},
                {dc_360000, 360000.0}, {dc_p1, 0.1},        {dc_p01, 0.01},      {dc_p001, 0.001},
                {dc_p0001, 0.0001},    {dc_mm_per_in, 25.4}};
    for (const Row &r : rows)
        EXPECT_EQ(r.value, r.expected);
}

// The computed constants are the products of the run-time pi with the stated
// multipliers; the expected doubles are those products' exact roundings,
// written out as the shortest decimal that reads back to them.
TEST(Constants, PiDerivedValuesAreTheStatedProducts)
{
    EXPECT_EQ(dc_pi, 3.141592653589793);
    EXPECT_EQ(dc_2pi, 6.283185307179586);
    EXPECT_EQ(dc_piover2, 1.5707963267948966);
    EXPECT_EQ(dc_piover3, 1.0471975511965976);
    EXPECT_EQ(dc_piover4, 0.7853981633974483);
    EXPECT_EQ(dc_piover6, 0.5235987755982988);
    EXPECT_EQ(dc_piover180, 0.017453292519943295);
    EXPECT_EQ(dc_180overpi, 57.29577951308232);
    EXPECT_EQ(dc_rad_to_iang, 20626480.624709636);
    EXPECT_EQ(dc_iang_to_rad, 4.84813681109536e-08);
    EXPECT_EQ(dc_miang_to_rad, -4.84813681109536e-08);
    EXPECT_EQ(initialize(), 0);
}

TEST(Settings, DefaultsAndSettersStoreAnything)
{
    EXPECT_EQ(UTMAT_getCalculPrec(), 0.0001);
    EXPECT_EQ(UTMAT_getDistanceTolerance(), 2.0);

    provokeKernelFailure();
    UTMAT_setCalculPrecision(-3.0);  // stored as given, and the word is cleared
    EXPECT_EQ(kernelError(), 0);
    EXPECT_EQ(UTMAT_getCalculPrec(), -3.0);
    UTMAT_setCalculPrecision(0.0001);

    provokeKernelFailure();
    UTMAT_setDistanceTolerance(0.0);
    EXPECT_EQ(kernelError(), 0);
    EXPECT_EQ(UTMAT_getDistanceTolerance(), 0.0);
    UTMAT_setDistanceTolerance(2.0);

    provokeKernelFailure();
    UTMAT_SetQuorrelSpiralFormula();
    EXPECT_EQ(kernelError(), 0);
    provokeKernelFailure();
    UTMAT_SetVelloraSpiralFormula();
    EXPECT_EQ(kernelError(), 0);
}

TEST(Settings, GettersLeaveTheErrorWordAlone)
{
    provokeKernelFailure();
    (void)UTMAT_getCalculPrec();
    (void)UTMAT_getDistanceTolerance();
    EXPECT_EQ(kernelError(), kFail);
}

// One row a comparison: a, b, t and the expected answers of equal, less,
// less-or-equal, greater and greater-or-equal.
struct CompareRow {
    double a, b, t;
    int eq, lt, le, gt, ge;
};

TEST(Comparison, BoundariesAndNotANumber)
{
    const CompareRow rows[] = {
        // A difference exactly at the tolerance counts as equal.
        {0.0, 0.5, 0.5, 1, 0, 1, 0, 1},
        {0.5, 0.0, 0.5, 1, 0, 1, 0, 1},
        // Just beyond it, strictly less or greater.
        {0.0, 0.75, 0.5, 0, 1, 1, 0, 0},
        {0.75, 0.0, 0.5, 0, 0, 0, 1, 1},
        // Zero tolerance: exact comparison.
        {1.0, 1.0, 0.0, 1, 0, 1, 0, 1},
        {1.0, 2.0, 0.0, 0, 1, 1, 0, 0},
        // A NaN anywhere: equal, less and less-or-equal hold; the others do not.
        {kNaN, 1.0, 0.1, 1, 1, 1, 0, 0},
        {1.0, kNaN, 0.1, 1, 1, 1, 0, 0},
        {1.0, 1.0, kNaN, 1, 1, 1, 0, 0},
    };
    for (const CompareRow &r : rows) {
        SCOPED_TRACE(testing::Message() << r.a << " vs " << r.b << " tol " << r.t);
        EXPECT_EQ(tsUtil_equalDouble(r.a, r.b, r.t), r.eq);
        EXPECT_EQ(tsMath_doublesNearEqual(r.a, r.b, r.t), r.eq);
        EXPECT_EQ(tsUtil_lessDouble(r.a, r.b, r.t), r.lt);
        EXPECT_EQ(tsUtil_lessOrEqualDouble(r.a, r.b, r.t), r.le);
        EXPECT_EQ(tsUtil_greaterDouble(r.a, r.b, r.t), r.gt);
        EXPECT_EQ(tsUtil_greaterOrEqualDouble(r.a, r.b, r.t), r.ge);
        EXPECT_EQ(UTMAT_Egal(r.a, r.b, r.t), r.eq);
        EXPECT_EQ(UTMAT_Inf(r.a, r.b, r.t), r.lt);
        EXPECT_EQ(UTMAT_InfOuEgal(r.a, r.b, r.t), r.le);
        EXPECT_EQ(UTMAT_Sup(r.a, r.b, r.t), r.gt);
        EXPECT_EQ(UTMAT_SupOuEgal(r.a, r.b, r.t), r.ge);
    }
}

TEST(Comparison, ExactlyOneOfLessEqualGreaterHolds)
{
    const double values[] = {-1.0, -0.5, -0.25, 0.0, 0.25, 0.5, 1.0};
    for (double a : values)
        for (double b : values)
            for (double t : {0.0, 0.25, 0.5}) {
                const int sum =
                    tsUtil_lessDouble(a, b, t) + tsUtil_equalDouble(a, b, t) + tsUtil_greaterDouble(a, b, t);
                EXPECT_EQ(sum, 1) << a << " " << b << " " << t;
            }
}

TEST(Comparison, NegativeToleranceDiffersBetweenTheTwoEqualities)
{
    // The first makes every comparison false; the kernel's takes |t|.
    EXPECT_EQ(tsUtil_equalDouble(2.0, 2.0, -0.1), 0);
    EXPECT_EQ(tsMath_doublesNearEqual(2.0, 2.0, -0.1), 1);
    EXPECT_EQ(UTMAT_Egal(2.0, 2.0, -0.1), 1);
    EXPECT_EQ(UTMAT_Egal(2.0, 2.05, -0.1), 1);
}

TEST(Comparison, Intervals)
{
    struct Row {
        double x, lo, hi, t;
        int closed, open;
    } rows[] = {
        {0.0, 0.0, 1.0, 0.0, 1, 0},      // on the low end
        {1.0, 0.0, 1.0, 0.0, 1, 0},      // on the high end
        {0.5, 0.0, 1.0, 0.0, 1, 1},      // inside
        {-0.1, 0.0, 1.0, 0.1, 1, 0},     // outside by exactly the tolerance
        {1.1, 0.0, 1.0, 0.125, 1, 0},    // within the tolerance above
        {1.25, 0.0, 1.0, 0.125, 0, 0},   // beyond it
        {0.125, 0.0, 1.0, 0.125, 1, 0},  // open test at exactly lo + t is out
        {0.25, 0.0, 1.0, 0.125, 1, 1},
        {kNaN, 0.0, 1.0, 0.1, 0, 0},
        {0.5, kNaN, 1.0, 0.1, 0, 0},
        // A NaN hi: the closed test's upper half is "not (x - hi > t)", which holds.
        {0.5, 0.0, kNaN, 0.1, 1, 0},
    };
    for (const auto &r : rows) {
        SCOPED_TRACE(testing::Message() << r.x << " in [" << r.lo << ", " << r.hi << "] tol " << r.t);
        EXPECT_EQ(tsUtil_belongToClosedIntervalDouble(r.x, r.lo, r.hi, r.t), r.closed);
        EXPECT_EQ(UTMAT_AppartenirAIntFerme(r.x, r.lo, r.hi, r.t), r.closed);
        EXPECT_EQ(tsUtil_belongToOpenIntervalDouble(r.x, r.lo, r.hi, r.t), r.open);
        EXPECT_EQ(UTMAT_AppartenirAIntOuvert(r.x, r.lo, r.hi, r.t), r.open);
    }
}

TEST(Comparison, DivisionGuard)
{
    EXPECT_EQ(tsMath_isDivisionPossible(0.0, 0.0), 0);
    EXPECT_EQ(tsMath_isDivisionPossible(0.0, 1e-300), 1);
    EXPECT_EQ(tsMath_isDivisionPossible(1.0, 1e-100), 0);  // the product equals the denominator
    EXPECT_EQ(tsMath_isDivisionPossible(1.0, 2e-100), 1);
    EXPECT_EQ(tsMath_isDivisionPossible(-5.0, -1.0), 1);
    EXPECT_EQ(tsMath_isDivisionPossible(kNaN, 1.0), 0);
}

TEST(ErrorProtocol, FailureIsReadRepeatedlyUntilTheNextKernelCall)
{
    provokeKernelFailure();
    EXPECT_EQ(kernelError(), kFail);
    EXPECT_EQ(kernelError(), kFail);
    EXPECT_EQ(UTMAT_Sup(1.0, 0.0, 0.0), 1);  // a comparison clears the word
    EXPECT_EQ(kernelError(), 0);

    for (auto wrapper : {UTMAT_Inf, UTMAT_InfOuEgal, UTMAT_Egal, UTMAT_SupOuEgal, UTMAT_Sup}) {
        provokeKernelFailure();
        wrapper(1.0, 2.0, 0.0);
        EXPECT_EQ(kernelError(), 0);
    }
    for (auto wrapper : {UTMAT_AppartenirAIntFerme, UTMAT_AppartenirAIntOuvert}) {
        provokeKernelFailure();
        wrapper(0.5, 0.0, 1.0, 0.0);
        EXPECT_EQ(kernelError(), 0);
    }
}

TEST(ErrorProtocol, NestedFailureReachesTheCaller)
{
    // The crossing normalises both lines by a nested kernel call; a degenerate
    // line fails inside it and the composite returns with the nested value.
    const UTMAT_Droite good{1.0, 0.0, 0.0}, degenerate{0.0, 0.0, 5.0};
    dpoint2d out{7.0, 7.0};
    int32_t count = 9;
    UTMAT_CalculerIntersection2Droite(&good, &degenerate, &out, &count);
    EXPECT_EQ(kernelError(), kFail);
    EXPECT_EQ(count, 0);  // zeroed before the nested call
    EXPECT_EQ(out.x, 7.0);
    EXPECT_EQ(out.y, 7.0);
}

TEST(ErrorProtocol, TableWordsAndDetail)
{
    int32_t code = -1, detail = -1;
    MEM_SetErreur(kFail, 42);
    MEM_GetErreur(&code, &detail);
    EXPECT_EQ(code, kFail);
    EXPECT_EQ(detail, 42);
    // The kernel's detail word is written only by copying the table words
    // inside a kernel function that uses tables: plain geometry leaves it 0.
    provokeKernelFailure();
    UTMAT_GetErreur(&code, &detail);
    EXPECT_EQ(code, kFail);
    EXPECT_EQ(detail, 0);
    MEM_SetErreur(0, 0);
}

TEST(ErrorProtocol, ZeroPrecisionMakesKernelComparisonsExact)
{
    UTMAT_setCalculPrecision(0.0);
    const dpoint2d a{1.0, 0.0}, b{1.0, 1e-12};
    EXPECT_EQ(UTMAT_PointsIdentiques(&a, &b, UTMAT_getCalculPrec()), 0);
    EXPECT_EQ(UTMAT_PointsIdentiques(&a, &a, UTMAT_getCalculPrec()), 1);
    UTMAT_setCalculPrecision(0.0001);
    EXPECT_EQ(UTMAT_PointsIdentiques(&a, &b, UTMAT_getCalculPrec()), 1);
}

}  // namespace
