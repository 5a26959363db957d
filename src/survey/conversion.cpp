// Elementary conversions of surveying: angle units, azimuth and direction,
// sexagesimal splitting, feet, degree of curve and rounding to a step.
#include <tessar/conversion.h>

#include <cmath>
#include <cstdio>

#include <tessar/frame.h>
#include <tessar/mathapi.h>

namespace {

// The angular and rounding tolerance of the whole family.
constexpr double kTolerance = 5e-8;

// Reference length of the degree of curve, and its half for the chord form.
constexpr double kArcReference = 36000.0;  // 100 units times 360 degrees
constexpr double kHalfChord = 50.0;

// A split value whose lower unit lies within the tolerance of a full 60 (or
// -60) carries one into the higher unit and becomes 0. The tests are strict.
template <class Higher> void carrySixty(Higher &higher, double &lower)
{
    if (std::fabs(lower - 60.0) < kTolerance) {
        higher += 1;
        lower = 0.0;
    } else if (std::fabs(lower + 60.0) < kTolerance) {
        higher -= 1;
        lower = 0.0;
    }
}

}  // namespace

/* ---- Angle units ---- */

double tsConversion_degreeToRadian(double angle)
{
    return angle * dc_piover180;
}

double tsConversion_radianToDegree(double angle)
{
    return angle * dc_180overpi;
}

double tsConversion_gradToRadian(double angle)
{
    return dc_pi * 0.005 * angle;
}

double tsConversion_radianToGrad(double angle)
{
    return 200.0 / dc_pi * angle;
}

/* ---- Azimuth and direction ---- */

double tsConversion_azimuthToDirection(double angle)
{
    return tsMath_normalizeAngle(dc_piover2 - angle);
}

double tsConversion_directionToAzimuth(double angle)
{
    return tsConversion_azimuthToDirection(angle);
}

double tsConversion_azimuthToDirectionDegree(double angle)
{
    return tsConversion_radianToDegree(tsConversion_azimuthToDirection(tsConversion_degreeToRadian(angle)));
}

double tsConversion_directionToAzimuthDegree(double angle)
{
    return tsConversion_azimuthToDirectionDegree(angle);
}

int32_t tsConversion_quadrantNumber(double direction)
{
    const double a = tsMath_normalizeAngle(direction);
    const double e = kTolerance;
    const double threePiOver2 = dc_piover2 * 3.0;
    // Every boundary lies e before its round value, tested in this order.
    if (a >= -e && a < dc_piover2 - e) return 1;
    if (a >= threePiOver2 - e && a < dc_2pi - e) return 2;
    if (a >= dc_pi - e && a < threePiOver2 - e) return 3;
    if (a >= dc_piover2 - e && a < dc_pi - e) return 4;
    // Within e below 2 pi: a hair short of east belongs to no quadrant.
    return 0;
}

/* ---- Sexagesimal splitting ---- */

int32_t tsConversion_degreeToDM(int32_t *degrees, double *minutes, double value)
{
    int32_t d = static_cast<int32_t>(value);  // truncated toward zero
    double m = (value - d) * 60.0;            // keeps the sign of the value
    carrySixty(d, m);
    if (degrees != nullptr) *degrees = d;
    if (minutes != nullptr) *minutes = m;
    return 0;
}

int32_t tsConversion_degreeToDMS(int32_t *degrees, int32_t *minutes, double *seconds, double value)
{
    int32_t d = static_cast<int32_t>(value);
    const double minutesFull = (value - d) * 60.0;
    int32_t m = static_cast<int32_t>(minutesFull);
    double s = (minutesFull - m) * 60.0;
    carrySixty(m, s);
    // Whole minutes carry only when they reach exactly 60 after the seconds' carry.
    if (m == 60) {
        d += 1;
        m = 0;
    } else if (m == -60) {
        d -= 1;
        m = 0;
    }
    if (degrees != nullptr) *degrees = d;
    if (minutes != nullptr) *minutes = m;
    if (seconds != nullptr) *seconds = s;
    return 0;
}

// Joining has no sign logic: the minutes are added as given, so -10 degrees
// and 30 minutes make -9.5, not -10.5.
double tsConversion_DMToDegree(double *result, int32_t degrees, double minutes)
{
    const double value = degrees + minutes / 60.0;
    if (result != nullptr) *result = value;
    return value;
}

// No sign logic either: seconds, minutes and degrees are summed as given.
double tsConversion_DMSTodegree(double *result, double degrees, double minutes, double seconds)
{
    const double value = seconds / 3600.0 + minutes / 60.0 + degrees;
    if (result != nullptr) *result = value;
    return value;
}

/* ---- Rounding ---- */

double tsConversion_roundDouble(double *result, double value, double step, int32_t mode)
{
    const double s = std::fabs(step);
    const double e = kTolerance;
    const double r = std::fmod(value, s);  // remainder with the sign of value
    // Nothing to round: the result address is written without a null test
    // here, whereas the rounding path below tests it.
    if (s < e || std::fabs(r) < e) {
        *result = value;
        return value;
    }

    // The two neighbouring multiples, numerically lower and upper.
    double lower;
    double upper;
    if (value >= 0.0) {
        lower = value - r;
        upper = lower + s;
    } else {
        upper = value - r;
        lower = upper - s;
    }

    double rounded = 0.0;
    switch (mode) {
    case 1:
        rounded = upper;
        break;
    case 2:
        rounded = lower;
        break;
    case 3:
        // Nearest. A value within e of a half step goes up on both sides of
        // zero: the band widens toward the upper neighbour for negatives.
        if (value >= 0.0)
            rounded = std::fabs(r) >= s / 2.0 - e ? upper : lower;
        else
            rounded = std::fabs(r) >= s / 2.0 + e ? lower : upper;
        break;
    default:
        rounded = 0.0;
        break;
    }
    if (result != nullptr) *result = rounded;
    return rounded;
}

// Unlike tsConversion_roundDouble, this form accepts a null result address on
// every path: a value already on a multiple of the step is then only returned.
double tsConversion_roundDoubleByDecimalDigits(double *result, double value, int32_t digits, int32_t mode)
{
    double local = 0.0;
    return tsConversion_roundDouble(result != nullptr ? result : &local, value,
                                    std::pow(10.0, -static_cast<double>(digits)), mode);
}

/* ---- Feet and metres ---- */

// Each factor is a stored constant of its own, not the reciprocal of its
// partner: a conversion and its inverse multiply to 1 only to the last digits.

double tsConversion_usfootToMeter(double feet)
{
    return feet * 0.3048006096012192;
}

double tsConversion_internationalFootToMeter(double feet)
{
    return feet * 0.3048;
}

double tsConversion_meterToUsFoot(double meters)
{
    return meters * 3.2808333333333333;
}

double tsConversion_meterToInternationalFoot(double meters)
{
    return meters * 3.280839895013123;
}

double tsConversion_usFootToInternationalFoot(double feet)
{
    return feet * 1.000002000004;
}

double tsConversion_internationalFootToUsFoot(double feet)
{
    return feet * 0.999998;
}

/* ---- Degree of curve ---- */

double tsConversion_radiusToDegree(double radius)
{
    if (std::fabs(radius) <= kTolerance) return 0.0;
    // 100 times 360 over the circumference, taken through radians and back.
    return tsConversion_radianToDegree(tsConversion_degreeToRadian(kArcReference / (dc_2pi * radius)));
}

double tsConversion_degreeToRadius(double degree)
{
    if (std::fabs(degree) <= kTolerance) return 0.0;
    return kArcReference / (tsConversion_radianToDegree(tsConversion_degreeToRadian(degree)) * dc_2pi);
}

double tsConversion_radiusToDegreeChord(double radius)
{
    // A chord of 100 fits only in a circle of radius 50 or more.
    if (std::fabs(radius) < kHalfChord) return 0.0;
    return tsConversion_radianToDegree(2.0 * std::asin(kHalfChord / radius));
}

double tsConversion_degreeToRadiusChord(double degree)
{
    if (std::fabs(degree) <= kTolerance) return 0.0;
    // Half the chord over the sine of half the central angle.
    return kHalfChord / std::sin(tsConversion_degreeToRadian(degree) / 2.0);
}

/* ---- Text ---- */

int32_t tsConversion_doubleToString(char *buffer, double value, int32_t decimals)
{
    if (decimals < 0) decimals = 0;
    if (decimals > 8) decimals = 8;
    return std::sprintf(buffer, "%-.*lf", static_cast<int>(decimals), value);
}
