// The entries of the value parser: each fills a parser state with its units
// and modes and reads the whole text as one expression of its atom.
#include <tessar/parse.h>

#include "survey/parse.hpp"

using tessar::detail::Atom;
using tessar::detail::kParseFailure;
using tessar::detail::Parser;
using tessar::detail::ParseState;

namespace {

// The result is cleared first and receives the value read, also a partial
// one when the text fails; null text fails.
int32_t parseWhole(double *result, const char16_t *text, ParseState &state, Atom atom)
{
    *result = 0.0;
    if (text == nullptr) return kParseFailure;
    Parser parser(text, state);
    double value = 0.0;
    const int32_t status = parser.whole(atom, value);
    *result = value;
    return status;
}

}  // namespace

int32_t tsParse_stringToDouble(double *result, const char16_t *text)
{
    ParseState state;
    return parseWhole(result, text, state, &Parser::number);
}

int32_t tsParse_stringToLinear(double *result, const char16_t *text, double linearUnit)
{
    ParseState state;
    state.linearUnit = linearUnit;
    return parseWhole(result, text, state, &Parser::length);
}

int32_t tsParse_stringToArea(double *result, const char16_t *text, double linearUnit)
{
    ParseState state;
    state.linearUnit = linearUnit;
    return parseWhole(result, text, state, &Parser::area);
}

int32_t tsParse_stringToVolume(double *result, const char16_t *text, double linearUnit)
{
    ParseState state;
    state.linearUnit = linearUnit;
    return parseWhole(result, text, state, &Parser::volume);
}

int32_t tsParse_stringToTime(double *result, const char16_t *text, double timeUnit)
{
    ParseState state;
    state.timeUnit = timeUnit;
    return parseWhole(result, text, state, &Parser::time);
}

int32_t tsParse_stringToVelocity(double *result, const char16_t *text, double velocityUnit)
{
    ParseState state;
    state.velocityUnit = velocityUnit;
    return parseWhole(result, text, state, &Parser::velocity);
}

// The length that a slope is read from has the linear unit 1, the default.
int32_t tsParse_stringToSlope(double *result, const char16_t *text, int32_t slopeMode, double slopeLength)
{
    ParseState state;
    state.slopeMode = slopeMode;
    state.slopeLength = slopeLength;
    return parseWhole(result, text, state, &Parser::slope);
}

int32_t tsParse_stringToAngle(double *result, const char16_t *text, int32_t angleMode)
{
    ParseState state;
    state.angleMode = angleMode;
    return parseWhole(result, text, state, &Parser::angle);
}

int32_t tsParse_stringToDirection(double *result, const char16_t *text, int32_t angleMode,
                                  int32_t directionStyle)
{
    ParseState state;
    state.angleMode = angleMode;
    state.directionStyle = directionStyle;
    return parseWhole(result, text, state, &Parser::direction);
}

int32_t tsParse_stringToDirection2(double *result, const char16_t *text, int32_t angleMode,
                                   int32_t directionStyle, double baseDirection, int32_t baseSense)
{
    ParseState state;
    state.angleMode = angleMode;
    state.directionStyle = directionStyle;
    state.baseDirection = baseDirection;
    state.baseSense = baseSense;
    return parseWhole(result, text, state, &Parser::direction);
}

int32_t tsParse_stringToRadius(double *result, const char16_t *text, double linearUnit, int32_t radiusMode,
                               double curveLength, int32_t angleMode)
{
    ParseState state;
    state.linearUnit = linearUnit;
    state.radiusMode = radiusMode;
    state.curveLength = curveLength;
    state.angleMode = angleMode;
    return parseWhole(result, text, state, &Parser::radius);
}

// The name output receives the last name word read (empty if none), also
// when the text fails.
int32_t tsParse_stringToStationByName(double *result, char16_t *name, const char16_t *text, double linearUnit)
{
    ParseState state;
    state.linearUnit = linearUnit;
    const int32_t status = parseWhole(result, text, state, &Parser::stationWithName);
    for (std::size_t i = 0; i < tessar::detail::kStationNameUnits; ++i) {
        name[i] = state.stationName[i];
        if (name[i] == 0) break;
    }
    return status;
}

// The region output, when given, receives the region read, 0 when none.
int32_t tsParse_stringToStationByIndex(double *result, int32_t *region, const char16_t *text,
                                       double linearUnit)
{
    ParseState state;
    state.linearUnit = linearUnit;
    const int32_t status = parseWhole(result, text, state, &Parser::stationWithRegion);
    if (region != nullptr) *region = state.region;
    return status;
}
