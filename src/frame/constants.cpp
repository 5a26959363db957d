// The exported constants. The literal ones are constant-initialised; the
// eleven that derive from pi are computed once at load, before any exported
// function can run, as p = atan(1) * 4 and q = 1 / p followed by a single
// multiplication each. The multipliers are the exact doubles written below:
// the results must not be replaced by differently rounded literals.
#include <cmath>

#include <tessar/frame.h>

double dc_zero = 0.0;
double dc_onehalf = 0.5;
double dc_1 = 1.0;
double dc_m1 = -1.0;
double dc_2 = 2.0;
double dc_3 = 3.0;
double dc_4 = 4.0;
double dc_5 = 5.0;
double dc_10 = 10.0;
double dc_30 = 30.0;
double dc_60 = 60.0;
double dc_90 = 90.0;
double dc_100 = 100.0;
double dc_180 = 180.0;
double dc_270 = 270.0;
double dc_360 = 360.0;
double dc_750 = 750.0;
double dc_1000 = 1000.0;
double dc_10000 = 10000.0;
double dc_100000 = 100000.0;
double dc_360000 = 360000.0;
double dc_p1 = 0.1;
double dc_p01 = 0.01;
double dc_p001 = 0.001;
double dc_p0001 = 0.0001;
double dc_mm_per_in = 25.4;

double dc_pi;
double dc_2pi;
double dc_piover2;
double dc_piover3;
double dc_piover4;
double dc_piover6;
double dc_piover180;
double dc_180overpi;
double dc_rad_to_iang;
double dc_iang_to_rad;
double dc_miang_to_rad;

namespace {

// Runs when the library is loaded (or, linked statically, before main).
// volatile keeps the compiler from folding atan(1) at build time with a
// different evaluation than the run-time library's.
[[gnu::constructor(101)]] void computePiConstants()
{
    volatile double one = 1.0;
    const double p = std::atan(one) * 4.0;
    const double q = 1.0 / p;
    dc_pi = p;
    dc_2pi = p * 2.0;
    dc_piover2 = p * 0.5;
    dc_piover3 = p * 0.3333333333333333;
    dc_piover4 = p * 0.25;
    dc_piover6 = p * 0.16666666666666666;
    dc_piover180 = p * 0.005555555555555556;
    dc_180overpi = q * 180.0;
    dc_rad_to_iang = q * 64800000.0;
    dc_iang_to_rad = dc_piover180 * 2.777777777777778e-06;
    dc_miang_to_rad = dc_piover180 * -2.777777777777778e-06;
}

}  // namespace

int32_t initialize(void)
{
    return 0;
}
