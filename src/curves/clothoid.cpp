// The clothoid: points and tangents from the abscissa, derivatives, the
// conversions between A, L, R, tau and p, and the tangents of offset curves.
//
// x(s) = integral of cos(u^2 / (2 A^2)), y(s) = sign * integral of
// sin(u^2 / (2 A^2)), both from 0 to s. With b = s / (sqrt(2) |A|) these are
// sqrt(2) |A| times the Fresnel-type series sum (-1)^k c_k b^(4k+1) and
// sum (-1)^k e_k b^(4k+3). The powers are taken one by one with pow and the
// terms summed in order of rising power: results are reproduced to the last
// digit, so neither Horner's scheme nor a reordering is used.
#include <array>
#include <cmath>
#include <numbers>

#include <tessar/clothoid.h>
#include <tessar/conversion.h>
#include <tessar/frame.h>

#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

constexpr std::int32_t kShortForm = 1;
constexpr std::int32_t kLongForm = 2;

// Beyond this deflection the long form leaves its series for the far-field
// form. The two do not meet there (for A = 100 the point jumps by about 0.8
// in x); the jump is part of the long form and is kept.
constexpr double kFarFieldDeflection = 3.4394;

// The stored coefficients of the two series. The first ones are
// 1 / ((4k + 1) (2k)!) and 1 / ((4k + 3) (2k + 1)!); from k = 6 on the stored
// values depart from that rule in the seventh or eighth digit, and these
// stored values are the ones the results are defined by.
constexpr std::array<double, 9> kXCoefficients = {
    1.0,
    0.1,
    0.004629629629629629,
    0.00010683760683760684,
    1.4589169000933706e-06,
    1.3122532963802806e-08,
    8.35070279514724e-11,
    3.955430212367048e-13,
    1.4483266034423827e-15,
};
constexpr std::array<double, 9> kYCoefficients = {
    0.3333333333333333,     0.023809523809523808,   0.0007575757575757576,
    1.3227513227513228e-05, 1.4503852223150468e-07, 1.0892221037148573e-09,
    5.947792655189806e-12,  2.4668273393540367e-14, 8.032735001678841e-17,
};

// sum over k < terms of (-1)^k coefficient_k b^(4k + firstPower), in order.
// The leading term of the x series is b itself (coefficient 1, power 1).
double alternatingSeries(const std::array<double, 9> &coefficients, int terms, int firstPower, double b)
{
    double sum = coefficients[0] * std::pow(b, firstPower);
    for (int k = 1; k < terms; ++k) {
        const double term = coefficients[k] * std::pow(b, 4 * k + firstPower);
        sum = (k % 2 == 1) ? sum - term : sum + term;
    }
    return sum;
}

struct SpiralPoint {
    double x;
    double y;
};

// Four terms of each series, at every s: far from the origin the result is
// simply what the polynomial gives.
SpiralPoint shortForm(double A, double s)
{
    const double scaleX = std::numbers::sqrt2 * std::fabs(A);
    const double scaleY = std::numbers::sqrt2 * A;
    const double b = s / scaleX;
    return {scaleX * alternatingSeries(kXCoefficients, 4, 1, b),
            scaleY * alternatingSeries(kYCoefficients, 4, 3, b)};
}

// Nine terms up to the far-field deflection, then the asymptotic form
//   x = 0.88623 |A| - cos(tau - 0.2978) h + sin(tau) g0
//   y = 0.88623 A - sign (sin(tau - 0.2978) h + cos(tau) g0)
// with g0 = A^2 / s, the radius, and h = (0.4997 g0 / |A| - 0.042) g0;
// 0.88623 |A| is the limit point, sqrt(pi) / 2 |A|. Here tau is b * b.
SpiralPoint longForm(double A, double s, double tau)
{
    if (s == 0.0) return {0.0, 0.0};
    const double scaleX = std::numbers::sqrt2 * std::fabs(A);
    const double scaleY = std::numbers::sqrt2 * A;
    const double b = s / scaleX;
    if (tau <= kFarFieldDeflection) {
        return {scaleX * alternatingSeries(kXCoefficients, 9, 1, b),
                scaleY * alternatingSeries(kYCoefficients, 9, 3, b)};
    }
    const double sign = (A > 0.0) ? 1.0 : -1.0;
    const double t = b * b;
    const double g0 = A / s * A;
    const double h = (0.4997 * g0 / std::fabs(A) - 0.042) * g0;
    return {0.88623 * std::fabs(A) - std::cos(t - 0.2978) * h + std::sin(t) * g0,
            0.88623 * A - sign * std::sin(t - 0.2978) * h - sign * std::cos(t) * g0};
}

// ---- Conversions between the describing quantities ----

enum Code : std::int32_t {
    kAFromRL = 1,
    kAFromLTau = 2,
    kAFromLP = 3,
    kAFromRTau = 4,
    kAFromRP = 5,
    kAFromTauP = 6,
    kLFromAR = 7,
    kLFromATau = 8,
    kLFromAP = 9,
    kRFromAL = 11,
    kRFromATau = 12,
    kRFromAP = 13,
    kTauFromAL = 14,
    kTauFromAR = 15,
    kTauFromAP = 16,
    kPFromAL = 17,
    kPFromAR = 18,
    kPFromATau = 19,
};

// What a row does with a b near zero.
enum class NearZeroB { invalid, zeroResult, notTested };

struct Conversion {
    double out = 0.0;
    std::int32_t valid = 0;
};

// The most halvings a search makes. Running out of them is no failure: the
// curve of the last halving is the result.
constexpr int kBisectionSteps = 5000;

// The largest A that a search on A (code 6) considers.
constexpr double kLargestParameter = 100000000.0;

bool nearZero(double value)
{
    return egal(value, 0.0, utmatCalculPrec);
}

bool isBisection(std::int32_t code)
{
    switch (code) {
    case kAFromLP:
    case kAFromRP:
    case kAFromTauP:
    case kLFromAP:
    case kRFromAP:
    case kTauFromAP:
        return true;
    default:
        return false;
    }
}

Conversion clothoidParameter(std::int32_t code, double a, double b);

// A conversion nested in another: an invalid result fails the kernel call.
bool nestedConversion(std::int32_t code, double a, double b, double &out)
{
    const Conversion result = clothoidParameter(code, a, b);
    out = result.out;
    if (nestedFailed()) return false;
    if (result.valid == 0) {
        fail();
        return false;
    }
    return true;
}

// y of the point at abscissa s, offset 0, by the kernel's series.
double ordinateAt(double A, double s)
{
    dpoint2d point{0.0, 0.0};
    UTMAT_CalculerPosPointArcClotAbscisse(A, s, 0.0, &point, nullptr);
    return point.y;
}

// The clothoid a search step stands on.
struct SearchCurve {
    double A = 0.0;
    double L = 0.0;
    double R = 0.0;
};

// Builds the curve for a value of the search variable: the deflection for
// every code but 6, where it is A and the deflection is the given tau.
bool buildSearchCurve(std::int32_t code, double a, double tau, double variable, SearchCurve &curve)
{
    switch (code) {
    case kAFromLP:
        curve.L = a;
        return nestedConversion(kAFromLTau, curve.L, variable, curve.A) &&
               nestedConversion(kRFromAL, curve.A, curve.L, curve.R);
    case kAFromRP:
        curve.R = a;
        return nestedConversion(kAFromRTau, curve.R, variable, curve.A) &&
               nestedConversion(kLFromAR, curve.A, curve.R, curve.L);
    case kAFromTauP:
        curve.A = variable;
        return nestedConversion(kLFromATau, curve.A, tau, curve.L) &&
               nestedConversion(kRFromAL, curve.A, curve.L, curve.R);
    default:  // codes 9, 13 and 16: A is given
        curve.A = a;
        return nestedConversion(kLFromATau, curve.A, variable, curve.L) &&
               nestedConversion(kRFromAL, curve.A, curve.L, curve.R);
    }
}

// The shift p = y(L) - R (1 - cos tau), written (cos tau - 1) R + y(L).
double shiftOf(const SearchCurve &curve, double tau)
{
    const double y = ordinateAt(curve.A, curve.L);
    return (std::cos(tau) - 1.0) * curve.R + y;
}

// Finds the quantity whose clothoid has the shift b by halving an interval
// of the deflection (of A for code 6), along which the shift grows.
// The nested conversions treat a near-zero input as invalid, so a search of A
// (codes 3, 5 and 6) whose halvings walk to within the precision of zero
// ends in the failure value rather than in a tiny A.
Conversion clothoidParameterBisect(std::int32_t code, double a, double b)
{
    Conversion result;
    utmatErreur = 0;
    if (nearZero(a)) return result;
    const bool solvesForA = code == kAFromLP || code == kAFromRP || code == kAFromTauP;
    if (nearZero(b)) {
        if (!solvesForA) result.valid = 1;
        return result;
    }

    double tau = 0.0;
    double hi = dc_piover2;
    if (code == kAFromTauP) {
        tau = a;
        if (sup(a, dc_piover2, utmatCalculPrec)) return result;
        hi = kLargestParameter;
    }
    SearchCurve curve;
    if (!buildSearchCurve(code, a, tau, hi, curve)) return result;

    // The greatest shift the interval can give. For code 6 the probe is made
    // and has no consequence.
    const double pmax = shiftOf(curve, code == kAFromTauP ? tau : hi);
    if (code != kAFromTauP && sup(b, pmax, utmatCalculPrec)) {
        // Not met by a clothoid of at most a quarter turn: a valid 0.
        result.valid = 1;
        return result;
    }

    // The only early exit is the two-sided test: a target that cannot be met
    // to within the tolerance runs every step, and the last value stands.
    double lo = 0.0;
    double mid = 0.0;
    for (int step = 0; step < kBisectionSteps; ++step) {
        mid = (lo + hi) / 2.0;
        if (!buildSearchCurve(code, a, tau, mid, curve)) return result;
        const double shift = shiftOf(curve, code == kAFromTauP ? tau : mid);
        if (egal(b, shift, utmatCalculPrec)) break;
        if (inf(b, shift, utmatCalculPrec)) {
            hi = mid;
        } else {
            lo = mid;
        }
    }

    switch (code) {
    case kLFromAP:
        result.out = curve.L;
        break;
    case kRFromAP:
        result.out = curve.R;
        break;
    case kTauFromAP:
        result.out = mid;
        break;
    default:  // codes 3, 5 and 6
        result.out = curve.A;
        break;
    }
    result.valid = 1;
    return result;
}

// The shift from A and one other quantity: the centre of curvature at L is
// the point at offset -R, and p is its distance from the x axis less R.
Conversion directShift(std::int32_t code, double a, double b)
{
    Conversion result;
    double L = 0.0;
    double R = 0.0;
    bool made = false;
    switch (code) {
    case kPFromAL:
        L = b;
        made = nestedConversion(kRFromAL, a, L, R);
        break;
    case kPFromAR:
        R = b;
        made = nestedConversion(kLFromAR, a, R, L);
        break;
    default:  // code 19
        made = nestedConversion(kLFromATau, a, b, L) && nestedConversion(kRFromATau, a, b, R);
        break;
    }
    if (!made) return result;

    dpoint2d centre{0.0, 0.0};
    UTMAT_CalculerPosPointArcClotAbscisse(a, L, -R, &centre, nullptr);
    if (nestedFailed()) return result;
    result.out = std::fabs(centre.y - R);
    result.valid = 1;
    return result;
}

// Codes 8 (L from A, tau) and 14 (tau from A, L) do not look at b at all:
// a b near zero goes into the closed form and gives a valid, near-zero result.
NearZeroB nearZeroBRule(std::int32_t code)
{
    switch (code) {
    case kLFromATau:
    case kTauFromAL:
        return NearZeroB::notTested;
    case kAFromRL:
    case kAFromLTau:
    case kAFromLP:
    case kAFromRTau:
    case kAFromRP:
    case kAFromTauP:
        return NearZeroB::invalid;
    default:
        return NearZeroB::zeroResult;
    }
}

bool isKnownCode(std::int32_t code)
{
    return code >= kAFromRL && code <= kPFromATau && code != 10;
}

// One row of the conversion table. Signs play no part. An a near zero, and a
// b near zero where the row tests it, end the row with out = 0, either
// invalid or as a valid zero result.
Conversion clothoidParameter(std::int32_t code, double a, double b)
{
    Conversion result;
    a = std::fabs(a);
    b = std::fabs(b);
    if (!isKnownCode(code)) {
        fail();
        return result;
    }
    if (isBisection(code)) return clothoidParameterBisect(code, a, b);

    if (nearZero(a)) return result;
    const NearZeroB rule = nearZeroBRule(code);
    if (rule != NearZeroB::notTested && nearZero(b)) {
        if (rule == NearZeroB::zeroResult) result.valid = 1;
        return result;
    }

    switch (code) {
    case kAFromRL:
        result.out = std::sqrt(a * b);
        break;
    case kAFromLTau:
    case kRFromATau:
        result.out = a / std::sqrt(2.0 * b);
        break;
    case kAFromRTau:
    case kLFromATau:
        result.out = a * std::sqrt(2.0 * b);
        break;
    case kLFromAR:
    case kRFromAL:
        result.out = a * a / b;
        break;
    case kTauFromAL:
        result.out = b * b / (2.0 * a * a);
        break;
    case kTauFromAR:
        result.out = a * a / (2.0 * b * b);
        break;
    default:  // codes 17 to 19
        return directShift(code, a, b);
    }
    result.valid = 1;
    return result;
}

// ---- Offset curves ----

// The difference t turned into the half-turn on the side the offset rate
// moves to: an increasing offset turns the tangent clockwise. A rate of
// exactly 0 takes the branch of a rate that is not positive.
double followRate(double t, double g)
{
    if (g > 0.0) return (t > 0.0) ? t - dc_pi : t;
    return (t < 0.0) ? t + dc_pi : t;
}

}  // namespace

/* ---- Points on a clothoid ---- */

int32_t tsMath_calculateSpiralPointByDistanceAndOffset(double *outX, double *outY, double *outCos,
                                                       double *outSin, double A, double s, double d,
                                                       int32_t formula)
{
    if (A == 0.0) return kFailure;
    const double tau = s * s / (2.0 * A * A);
    const double sign = (A > 0.0) ? 1.0 : -1.0;
    // Any selector other than the long form's, known or not, means the short form.
    const SpiralPoint p = (formula == kLongForm) ? longForm(A, s, tau) : shortForm(A, s);
    const double cosTau = std::cos(tau);
    const double sinTau = std::sin(tau) * sign;
    // The offset runs along the right-hand normal (sin, -cos) of the tangent.
    const double x = p.x + sinTau * d;
    const double y = p.y - cosTau * d;
    if (outCos != nullptr) *outCos = cosTau;
    if (outSin != nullptr) *outSin = sinTau;
    if (outX != nullptr) *outX = x;
    if (outY != nullptr) *outY = y;
    return 0;
}

// The evaluation's status is dropped: an A of exactly 0 leaves the error word
// at 0, and the outputs receive the zeros the locals start with.
void UTMAT_CalculerPosPointArcClotAbscisse(double A, double s, double d, dpoint2d *point, dpoint2d *tangent)
{
    enterKernel();
    double x = 0.0;
    double y = 0.0;
    double cosTau = 0.0;
    double sinTau = 0.0;
    tsMath_calculateSpiralPointByDistanceAndOffset(&x, &y, &cosTau, &sinTau, A, s, d, utmatSpiralFormula);
    if (point != nullptr) *point = {x, y};
    if (tangent != nullptr) *tangent = {cosTau, sinTau};
}

// Always 0, since the evaluation above never sets the error word.
int32_t vlrUtmat_CalculateSpiralPointAtDistance(double A, double s, double d, dpoint2d *point,
                                                dpoint2d *tangent)
{
    UTMAT_CalculerPosPointArcClotAbscisse(A, s, d, point, tangent);
    return utmatErreur;
}

// dx/db = mx cos(b^2), dy/db = my sin(b^2), d2x/db2 = -2 b mx sin(b^2),
// d2y/db2 = 2 b my cos(b^2), each as its series: four terms always, five
// more with the long form. No far-field branch.
void UTMAT_CalculerDeriveePremEtSecClot(double A, double s, dpoint2d *first, dpoint2d *second)
{
    enterKernel();
    if (A == 0.0) {
        fail();
        return;
    }
    const double mx = std::numbers::sqrt2 * std::fabs(A);
    const double my = std::numbers::sqrt2 * A;
    const double b = s / (std::numbers::sqrt2 * std::fabs(A));
    using std::pow;

    first->x =
        mx * (1.0 - 0.5 * pow(b, 4) + 0.041666666666666664 * pow(b, 8) - 0.001388888888888889 * pow(b, 12));
    first->y = my * (pow(b, 2) - 0.16666666666666666 * pow(b, 6) + 0.008333333333333333 * pow(b, 10) -
                     0.0001984126984126984 * pow(b, 14));
    second->x = mx * (0.3333333333333333 * pow(b, 7) - 2.0 * pow(b, 3) - 0.016666666666666666 * pow(b, 11));
    second->y =
        my * (2.0 * b - pow(b, 5) + 0.08333333333333333 * pow(b, 9) - 0.002777777777777778 * pow(b, 13));
    if (utmatSpiralFormula != kLongForm) return;

    // Each further term is the multiplier times the coefficient times the
    // power, added to the value above with signs + - + - +.
    first->x = first->x + mx * (2.48015873015873e-05 * pow(b, 16)) -
               mx * (2.7557319223985894e-07 * pow(b, 20)) + mx * (2.08767569878681e-09 * pow(b, 24)) -
               mx * (1.147074761586444e-11 * pow(b, 28)) + mx * (4.779477791359863e-14 * pow(b, 32));
    first->y = first->y + my * (2.755731922398589e-06 * pow(b, 18)) -
               my * (2.5052108385441717e-08 * pow(b, 22)) + my * (1.6059040169012478e-10 * pow(b, 26)) -
               my * (7.647164751997514e-13 * pow(b, 30)) + my * (2.8114572505875943e-15 * pow(b, 34));
    second->x = second->x + mx * (0.0003968253968253968 * pow(b, 15)) -
                mx * (5.5114638447971785e-06 * pow(b, 19)) + mx * (5.010421677088344e-08 * pow(b, 23)) -
                mx * (3.211809332442043e-10 * pow(b, 27)) + mx * (1.5294328932351561e-12 * pow(b, 31));
    second->y = second->y + my * (4.96031746031746e-05 * pow(b, 17)) -
                my * (5.511463844797178e-07 * pow(b, 21)) + my * (4.175350443943244e-09 * pow(b, 25)) -
                my * (2.294149425599254e-11 * pow(b, 29)) + my * (9.558954651997821e-14 * pow(b, 33));
}

/* ---- Conversions ---- */

void UTMAT_CalculerParametreClot(int32_t code, double a, double b, double *out)
{
    enterKernel();
    const Conversion result = clothoidParameter(code, a, b);
    *out = result.out;
    if (utmatErreur == 0 && result.valid == 0) fail();
}

void UTMAT_CalculerParametreClotValide(int32_t code, double a, double b, double *out, int32_t *valid)
{
    enterKernel();
    const Conversion result = clothoidParameter(code, a, b);
    *out = result.out;
    *valid = result.valid;
}

/* ---- Tangents of offset curves ---- */

// On the offset curve at distance R + d from the centre, an offset that moves
// by g per unit of arc turns the tangent by atan(-(R g) / (R + d)).
void UTMAT_CalculerDifferenceTgArcCerTgOffCer(double R, double d, double g, double *out)
{
    enterKernel();
    if (egal(R, -d, utmatCalculPrec)) {
        // The offset curve passes through the centre.
        if (!egal(g, 0.0, utmatCalculPrec)) {
            *out = (g > 0.0) ? -dc_piover2 : dc_piover2;
        } else {
            *out = 0.0;
        }
        return;
    }
    if (g == 0.0) {
        // A constant offset beyond the centre runs the other way.
        *out = (d < -R) ? dc_pi : 0.0;
        return;
    }
    *out = followRate(std::atan(-(R * g) / (R + d)), g);
}

// As on a circle, with the radius A^2 / s at the abscissa, signed by the
// turning direction (m = -1 for a right-hand clothoid).
void UTMAT_CalculerDifferenceTgArcClotTgOffClt(double A, double s, double d, double g, double *out)
{
    enterKernel();
    if (infOuEgal(s, 0.0, utmatCalculPrec)) {
        // Infinite radius at the origin.
        *out = std::atan(-g);
        return;
    }
    const double r = A / s * A;
    const double m = (A >= 0.0) ? 1.0 : -1.0;
    if (egal(m * r, -d, utmatCalculPrec)) {
        // At the centre of curvature; unlike the circle, g is not tested for zero.
        *out = (g > 0.0) ? -dc_piover2 : dc_piover2;
        return;
    }
    *out = followRate(std::atan(-(r * g) / (m * d + r)), g);
}

// The tangent of the arc is its radial angle turned a quarter; walking
// backwards (sense 0) mirrors the abscissa and the offset and turns the
// result half a turn.
void UTMAT_CalculerTangenteOffCer(double R, double angle0, int32_t sense, double s, double g, double d,
                                  dpoint2d *out)
{
    enterKernel();
    double theta = (sense != 0) ? angle0 + s / R + dc_pi * 0.5 : dc_pi * 0.5 - s / R + angle0;
    double difference = 0.0;
    UTMAT_CalculerDifferenceTgArcCerTgOffCer(R, (sense != 0) ? d : -d, g, &difference);
    if (nestedFailed()) return;
    theta = theta + difference;
    if (sense == 0) theta = theta + dc_pi;
    *out = {std::cos(theta), std::sin(theta)};
}

void UTMAT_CalculerTangenteOffClt(double A, double angle0, int32_t sense, double s, double g, double d,
                                  dpoint2d *out)
{
    enterKernel();
    double difference = 0.0;
    UTMAT_CalculerDifferenceTgArcClotTgOffClt(A, s, (sense != 0) ? d : -d, g, &difference);
    if (nestedFailed()) return;
    double theta = (A > 0.0) ? angle0 + s * s / (2.0 * A * A) : angle0 - s * s / (2.0 * A * A);
    theta = theta + difference;
    if (sense == 0) theta = theta + dc_pi;
    *out = {std::cos(theta), std::sin(theta)};
}

/* ---- Spiral length ---- */

// A spiral whose curvature runs linearly from k1 to k2 turns by
// (k1 + k2) L / 2, so L = 2 |w| / (k1 + k2). A radius too small to divide by
// (0 among them) counts as a straight, and the signed curvatures are added,
// so opposite hands of equal radius give no length at all.
double tsMath_spiralLength(double azimuth1, double azimuth2, double R1, double R2)
{
    double w = tsConversion_azimuthToDirection(azimuth2) - tsConversion_azimuthToDirection(azimuth1);
    if (w > dc_pi) w = w - dc_2pi;
    if (w < -dc_pi) w = w + dc_2pi;
    const double k1 = tsMath_isDivisionPossible(1.0, R1) ? 1.0 / R1 : 0.0;
    const double k2 = tsMath_isDivisionPossible(1.0, R2) ? 1.0 / R2 : 0.0;
    const double k = k1 + k2;
    const double n = 2.0 * std::fabs(w);
    return tsMath_isDivisionPossible(n, k) ? n / k : 0.0;
}
