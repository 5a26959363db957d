// Constants, settings, tolerant comparisons and the kernel's error words.
#include <cstdint>
#include <iterator>
#include <limits>

#include <gtest/gtest.h>

#include <tessar/frame.h>
#include <tessar/vector.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;
const double kNaN = std::numeric_limits<double>::quiet_NaN();

int32_t kernelError(int32_t *detail = nullptr)
{
    int32_t code = -1, ignored = -1;
    UTMAT_GetErreur(&code, detail != nullptr ? detail : &ignored);
    return code;
}

// Leaves the kernel's error word at 32768: a line through one point twice.
void provokeKernelFailure()
{
    const dpoint2d p{1.0, 1.0};
    UTMAT_Droite line{};
    UTMAT_CalculerDroite2Pt(&p, &p, &line);
}

// Pi-derived: the exact roundings of the run-time pi times the stated multipliers.
TEST(Constants, LiteralAndPiDerivedValues)
{
    const double literal[][2] = {
        {dc_zero, 0.0},        {dc_onehalf, 0.5},   {dc_1, 1.0},         {dc_m1, -1.0},
        {dc_2, 2.0},           {dc_3, 3.0},         {dc_4, 4.0},         {dc_5, 5.0},
        {dc_10, 10.0},         {dc_30, 30.0},       {dc_60, 60.0},       {dc_90, 90.0},
        {dc_100, 100.0},       {dc_180, 180.0},     {dc_270, 270.0},     {dc_360, 360.0},
        {dc_750, 750.0},       {dc_1000, 1000.0},   {dc_10000, 10000.0}, {dc_100000, 100000.0},
        {dc_360000, 360000.0}, {dc_p1, 0.1},        {dc_p01, 0.01},      {dc_p001, 0.001},
        {dc_p0001, 0.0001},    {dc_mm_per_in, 25.4}};
    for (const auto &r : literal)
        EXPECT_EQ(r[0], r[1]);
    const double derived[] = {dc_pi,          dc_2pi,         dc_piover2,     dc_piover3,
                              dc_piover4,     dc_piover6,     dc_piover180,   dc_180overpi,
                              dc_rad_to_iang, dc_iang_to_rad, dc_miang_to_rad};
    const double derivedValue[] = {3.141592653589793,    6.283185307179586,    1.5707963267948966,
                                   1.0471975511965976,   0.7853981633974483,   0.5235987755982988,
                                   0.017453292519943295, 57.29577951308232,    20626480.624709636,
                                   4.84813681109536e-08, -4.84813681109536e-08};
    for (size_t i = 0; i < std::size(derived); ++i)
        EXPECT_EQ(derived[i], derivedValue[i]) << "derived " << i;
    EXPECT_EQ(initialize(), 0);
}

TEST(Settings, DefaultsSettersAndTheErrorWord)
{
    provokeKernelFailure();
    EXPECT_EQ(UTMAT_getCalculPrec(), 0.0001);
    EXPECT_EQ(UTMAT_getDistanceTolerance(), 2.0);
    EXPECT_EQ(kernelError(), kFail);  // the getters leave the word alone

    // Every setter clears the word and stores what it is given, unchecked.
    void (*const setters[])() = {[] { UTMAT_setCalculPrecision(-3.0); },
                                 [] { UTMAT_setDistanceTolerance(0.0); }, UTMAT_SetQuorrelSpiralFormula,
                                 UTMAT_SetVelloraSpiralFormula};
    for (auto set : setters) {
        provokeKernelFailure();
        set();
        EXPECT_EQ(kernelError(), 0);
    }
    EXPECT_EQ(UTMAT_getCalculPrec(), -3.0);
    EXPECT_EQ(UTMAT_getDistanceTolerance(), 0.0);
    UTMAT_setCalculPrecision(0.0001);
    UTMAT_setDistanceTolerance(2.0);
}

using Compare = int32_t (*)(double, double, double);
// Equal, less, less-or-equal, greater, greater-or-equal, base and kernel forms.
const Compare kBase[] = {tsUtil_equalDouble, tsUtil_lessDouble, tsUtil_lessOrEqualDouble,
                         tsUtil_greaterDouble, tsUtil_greaterOrEqualDouble};
const Compare kKernel[] = {UTMAT_Egal, UTMAT_Inf, UTMAT_InfOuEgal, UTMAT_Sup, UTMAT_SupOuEgal};

TEST(Comparison, BoundariesAndNotANumber)
{
    // a, b, t and the expected eq, lt, le, gt, ge.
    const struct {
        double a, b, t;
        int want[5];
    } rows[] = {
        {0.0, 0.5, 0.5, {1, 0, 1, 0, 1}},  {0.5, 0.0, 0.5, {1, 0, 1, 0, 1}},   // at the tolerance: equal
        {0.0, 0.75, 0.5, {0, 1, 1, 0, 0}}, {0.75, 0.0, 0.5, {0, 0, 0, 1, 1}},  // beyond it: strict
        {1.0, 1.0, 0.0, {1, 0, 1, 0, 1}},  {1.0, 2.0, 0.0, {0, 1, 1, 0, 0}},   // zero tolerance: exact
        {kNaN, 1.0, 0.1, {1, 1, 1, 0, 0}}, {1.0, kNaN, 0.1, {1, 1, 1, 0, 0}},
        {1.0, 1.0, kNaN, {1, 1, 1, 0, 0}},
    };
    for (const auto &r : rows) {
        SCOPED_TRACE(testing::Message() << r.a << " vs " << r.b << " tol " << r.t);
        EXPECT_EQ(tsMath_doublesNearEqual(r.a, r.b, r.t), r.want[0]);
        for (int i = 0; i < 5; ++i) {
            EXPECT_EQ(kBase[i](r.a, r.b, r.t), r.want[i]) << "comparison " << i;
            provokeKernelFailure();  // the kernel's wrappers clear the word
            EXPECT_EQ(kKernel[i](r.a, r.b, r.t), r.want[i]) << "comparison " << i;
            EXPECT_EQ(kernelError(), 0);
        }
    }
    // A negative tolerance makes the plain equality false; the kernel's takes |t|.
    EXPECT_EQ(tsUtil_equalDouble(2.0, 2.0, -0.1), 0);
    EXPECT_EQ(tsMath_doublesNearEqual(2.0, 2.0, -0.1), 1);
    EXPECT_EQ(UTMAT_Egal(2.0, 2.05, -0.1), 1);
}

TEST(Comparison, IntervalsAndDivisionGuard)
{
    const struct {
        double x, lo, hi, t;
        int closed, open;
    } rows[] = {
        // A NaN hi passes the closed test: its upper half is "not (x - hi > t)".
        {0.0, 0.0, 1.0, 0.0, 1, 0},     {1.0, 0.0, 1.0, 0.0, 1, 0},    {0.5, 0.0, 1.0, 0.0, 1, 1},
        {-0.1, 0.0, 1.0, 0.1, 1, 0},    {1.1, 0.0, 1.0, 0.125, 1, 0},  {1.25, 0.0, 1.0, 0.125, 0, 0},
        {0.125, 0.0, 1.0, 0.125, 1, 0}, {0.25, 0.0, 1.0, 0.125, 1, 1}, {kNaN, 0.0, 1.0, 0.1, 0, 0},
        {0.5, kNaN, 1.0, 0.1, 0, 0},    {0.5, 0.0, kNaN, 0.1, 1, 0},
    };
    for (const auto &r : rows) {
        SCOPED_TRACE(testing::Message() << r.x << " in [" << r.lo << ", " << r.hi << "] tol " << r.t);
        EXPECT_EQ(tsUtil_belongToClosedIntervalDouble(r.x, r.lo, r.hi, r.t), r.closed);
        EXPECT_EQ(tsUtil_belongToOpenIntervalDouble(r.x, r.lo, r.hi, r.t), r.open);
        provokeKernelFailure();
        EXPECT_EQ(UTMAT_AppartenirAIntFerme(r.x, r.lo, r.hi, r.t), r.closed);
        EXPECT_EQ(kernelError(), 0);
        provokeKernelFailure();
        EXPECT_EQ(UTMAT_AppartenirAIntOuvert(r.x, r.lo, r.hi, r.t), r.open);
        EXPECT_EQ(kernelError(), 0);
    }
    // numerator, denominator, expected: 1.0 over 1e-100 fails, the product equals it.
    const double guard[][3] = {{0.0, 0.0, 0},    {0.0, 1e-300, 1}, {1.0, 1e-100, 0},
                               {1.0, 2e-100, 1}, {-5.0, -1.0, 1},  {kNaN, 1.0, 0}};
    for (const auto &g : guard)
        EXPECT_EQ(tsMath_isDivisionPossible(g[0], g[1]), g[2]) << g[0] << " / " << g[1];
}

TEST(ErrorProtocol, NestedFailureAndTheDetailWord)
{
    // A nested normalisation fails; the count was zeroed first, the point is kept.
    const UTMAT_Droite good{1.0, 0.0, 0.0}, degenerate{0.0, 0.0, 5.0};
    dpoint2d out{7.0, 7.0};
    int32_t count = 9, code = -1, detail = -1;
    UTMAT_CalculerIntersection2Droite(&good, &degenerate, &out, &count);
    EXPECT_EQ(kernelError(), kFail);
    EXPECT_EQ(kernelError(), kFail);  // reading does not clear
    EXPECT_EQ(count, 0);
    EXPECT_TRUE(out.x == 7.0 && out.y == 7.0);

    MEM_SetErreur(kFail, 42);
    MEM_GetErreur(&code, &detail);
    EXPECT_TRUE(code == kFail && detail == 42);
    // Plain geometry never copies the table words: the kernel's detail stays 0.
    provokeKernelFailure();
    EXPECT_EQ(kernelError(&detail), kFail);
    EXPECT_EQ(detail, 0);
    MEM_SetErreur(0, 0);
}

// The bisector calls directions collinear when their cross product is within
// the kernel's precision: (1, 0) and (1, 1e-6) have 1e-6, a half angle of 5e-7.
TEST(ErrorProtocol, ZeroPrecisionMakesKernelComparisonsExact)
{
    const dpoint2d v1{1.0, 0.0}, v2{1.0, 1e-6};
    dpoint2d collinear{}, exact{};
    UTMAT_CalculerBissectriceV1V2(&v1, &v2, &collinear);
    UTMAT_setCalculPrecision(0.0);
    UTMAT_CalculerBissectriceV1V2(&v1, &v2, &exact);
    UTMAT_setCalculPrecision(0.0001);
    EXPECT_EQ(collinear.y, 0.0);
    EXPECT_NEAR(exact.y, 5e-7, 1e-15);
}

}  // namespace
