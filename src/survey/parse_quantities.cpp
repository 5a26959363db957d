// Atoms of quantities with units: lengths, areas, volumes, times, velocities
// and slopes. Each reads a number and its unit word and gives the value in
// metres, square or cubic metres, seconds or metres per second; a value
// without a word takes the entry's unit. Feet are US survey feet.
#include "survey/parse.hpp"

#include <cmath>

#include <tessar/conversion.h>
#include <tessar/frame.h>

namespace tessar::detail {

namespace {

double feet(double n) noexcept
{
    return tsConversion_usfootToMeter(n);
}

}  // namespace

/* ---- Lengths ---- */

// In this order; F, I, Y and M by the first letter (FT, FEET and FOO are
// feet), the others whole. So MI, MTR and MILE, which are not whole MILES,
// MM or KM, are metres.
bool Parser::lengthUnit(double &metres) noexcept
{
    const Token &t = token();
    if (t.isPunct(u'\''))
        metres = feet(1.0);
    else if (t.isPunct(u'"'))
        metres = feet(1.0 / 12.0);
    else if (wordBeginsWith(t, 'F'))
        metres = feet(1.0);
    else if (wordBeginsWith(t, 'I'))
        metres = feet(1.0 / 12.0);
    else if (wordBeginsWith(t, 'Y'))
        metres = feet(3.0);
    else if (wordEquals(t, "MILES"))
        metres = feet(5280.0);
    else if (wordEquals(t, "DM"))
        metres = 0.1;
    else if (wordEquals(t, "CM"))
        metres = 0.01;
    else if (wordEquals(t, "MM"))
        metres = 0.001;
    else if (wordBeginsWith(t, 'M'))
        metres = 1.0;
    else if (wordEquals(t, "KM"))
        metres = 1000.0;
    else
        return false;
    advance();
    return true;
}

// A number with its optional unit, and a second such part if a number
// follows, added to it: 5' 6" is five and a half feet.
int32_t Parser::length(double &value) noexcept
{
    double n = 0.0;
    int32_t status = number(n);
    if (parseFailed(status)) return status;
    double unit = state_.linearUnit;
    lengthUnit(unit);
    value = n * unit;
    if (!token().isNumber()) return kParseOk;
    status = number(n);
    if (parseFailed(status)) return status;
    unit = state_.linearUnit;
    lengthUnit(unit);
    value += n * unit;
    return kParseOk;
}

/* ---- Areas and volumes ---- */

// The linear factor whose square is the unit, each word by its first letters.
bool Parser::areaUnit(double &metres) noexcept
{
    struct AreaWord {
        const char *word;
        std::size_t letters;
        double metres;
    };
    // ACRES is 43560 square feet. HECTARES is kept at 4356000 square feet, a
    // hundred acres, as the unit has always been read here (a true hectare
    // is about 2.471 acres).
    const AreaWord words[] = {
        {"SQF", 3, feet(1.0)},
        {"SQI", 3, feet(1.0 / 12.0)},
        {"SQY", 3, feet(3.0)},
        {"SQMILES", 7, feet(5280.0)},
        {"ACRES", 5, feet(std::sqrt(43560.0))},
        {"HECTARES", 8, feet(std::sqrt(4356000.0))},
        {"SQDM", 4, 0.1},
        {"SQCM", 4, 0.01},
        {"SQMM", 4, 0.001},
        {"SQM", 3, 1.0},
        {"SQKM", 4, 1000.0},
    };
    for (const AreaWord &w : words) {
        if (wordStartsWith(token(), w.word, w.letters)) {
            metres = w.metres;
            advance();
            return true;
        }
    }
    return false;
}

int32_t Parser::area(double &value) noexcept
{
    double n = 0.0;
    const int32_t status = number(n);
    if (parseFailed(status)) return status;
    double f = state_.linearUnit;
    areaUnit(f);
    value = n * (f * f);
    return kParseOk;
}

// The linear factor whose cube is the unit; the word must match whole.
bool Parser::volumeUnit(double &metres) noexcept
{
    struct VolumeWord {
        const char *word;
        double metres;
    };
    const VolumeWord words[] = {
        {"CF", feet(1.0)}, {"CI", feet(1.0 / 12.0)}, {"CY", feet(3.0)}, {"CDM", 0.1},
        {"CCM", 0.01},     {"CMM", 0.001},           {"CM", 1.0},
    };
    for (const VolumeWord &w : words) {
        if (wordEquals(token(), w.word)) {
            metres = w.metres;
            advance();
            return true;
        }
    }
    return false;
}

int32_t Parser::volume(double &value) noexcept
{
    double n = 0.0;
    const int32_t status = number(n);
    if (parseFailed(status)) return status;
    double f = state_.linearUnit;
    volumeUnit(f);
    value = n * (f * f * f);
    return kParseOk;
}

/* ---- Times and velocities ---- */

bool Parser::timeUnit(double &seconds) noexcept
{
    if (wordBeginsWith(token(), 'S'))
        seconds = 1.0;
    else if (wordBeginsWith(token(), 'M'))
        seconds = 60.0;
    else if (wordBeginsWith(token(), 'H'))
        seconds = 3600.0;
    else
        return false;
    advance();
    return true;
}

int32_t Parser::time(double &value) noexcept
{
    double n = 0.0;
    const int32_t status = number(n);
    if (parseFailed(status)) return status;
    double unit = state_.timeUnit;
    timeUnit(unit);
    value = n * unit;
    return kParseOk;
}

bool Parser::velocityUnit(double &metresPerSecond) noexcept
{
    if (wordStartsWith(token(), "MPS", 3))
        metresPerSecond = 1.0;
    else if (wordStartsWith(token(), "FPS", 3))
        metresPerSecond = feet(1.0);
    else if (wordStartsWith(token(), "MPH", 3))
        metresPerSecond = feet(5280.0) * (1.0 / 3600.0);
    else if (wordStartsWith(token(), "KMPH", 4))
        metresPerSecond = 0.2777777777777778;
    else
        return false;
    advance();
    return true;
}

int32_t Parser::distanceOverTime(double &value) noexcept
{
    double distance = 0.0;
    int32_t status = length(distance);
    if (parseFailed(status)) return status;
    if (!token().is(TokenKind::Slash)) return kParseFailure;
    advance();
    double duration = 0.0;
    status = time(duration);
    if (parseFailed(status)) return status;
    if (!tsMath_isDivisionPossible(distance, duration)) return kParseFailure;
    value = distance / duration;
    return kParseOk;
}

// First a distance over a time; failing that, from the same position, a
// number with a velocity word. The first reading takes the lengths and
// times without words in the units of the state, so 100 / 2 is 50 whatever
// the velocity unit.
int32_t Parser::velocity(double &value) noexcept
{
    const Lexer start = lexer_;
    double ratio = 0.0;
    if (!parseFailed(distanceOverTime(ratio))) {
        value = ratio;
        return kParseOk;
    }
    lexer_ = start;
    double n = 0.0;
    const int32_t status = number(n);
    if (parseFailed(status)) return status;
    double unit = state_.velocityUnit;
    velocityUnit(unit);
    value = n * unit;
    return kParseOk;
}

/* ---- Slopes ---- */

// A length (the slope entry's linear unit is 1), then "%" or "%O", a ratio
// with ":", or a word R over the slope length; a bare number follows the
// slope mode: percent in mode 3, per mille in mode 5.
int32_t Parser::slope(double &value) noexcept
{
    int32_t status = length(value);
    if (parseFailed(status)) return status;
    const Token &t = token();
    if (t.isPunct(u'%')) {
        advance();
        if (wordEquals(token(), "O")) {
            value *= 0.001;
            advance();
        } else {
            value *= 0.01;
        }
    } else if (t.isPunct(u':')) {
        advance();
        double b = 0.0;
        status = length(b);
        if (parseFailed(status)) return status;
        if (state_.slopeMode == 1) {
            // Run to rise: the second number over the first.
            if (!tsMath_isDivisionPossible(b, value)) return kParseFailure;
            value = b / value;
        } else {
            if (!tsMath_isDivisionPossible(value, b)) return kParseFailure;
            value = value / b;
        }
    } else if (wordBeginsWith(t, 'R')) {
        value = value / state_.slopeLength;
        advance();
    } else if (state_.slopeMode == 3) {
        value *= 0.01;
    } else if (state_.slopeMode == 5) {
        value *= 0.001;
    }
    return kParseOk;
}

}  // namespace tessar::detail
