// Atoms of angles, directions and radii. An angle is read in the unit of the
// angle mode, in decimal or sexagesimal form, and normalised to 0 to 2 pi on
// its own; a direction is built as an azimuth (clockwise from north) from a
// bearing or an angle with a quadrant code, then turned by the direction
// style; a radius is a length or a degree of curve.
#include "survey/parse.hpp"

#include <cmath>

#include <tessar/conversion.h>
#include <tessar/frame.h>
#include <tessar/mathapi.h>

namespace tessar::detail {

namespace {

constexpr int32_t kModeGrads = 4;
constexpr int32_t kModeRadians = 5;
constexpr int32_t kStyleConventional = 1;
constexpr int32_t kStyleAzimuth = 2;
constexpr int32_t kStyleReversedAzimuth = 5;
constexpr int32_t kRadiusByChord = 3;

}  // namespace

bool Parser::atDashBeforeNumber() const noexcept
{
    return token().is(TokenKind::Minus) && lexer_.peek().isNumber();
}

// After a whole number: 15" is seconds alone; 30' is minutes, with optional
// seconds; anything else makes it degrees, and minutes and seconds may follow,
// each field separated by blanks, punctuation (the degree sign included) or
// a dash: 45 30 15, 45-30-15, 45°30'15".
void Parser::sexagesimal(double first, double &d, double &m, double &s) noexcept
{
    if (token().isPunct(u'"')) {
        s = first;
        advance();
        return;
    }
    if (token().isPunct(u'\'')) {
        m = first;
        advance();
        if (token().isNumber()) {
            s = numberValue(token());
            advance();
            if (token().is(TokenKind::Punct)) advance();
        }
        return;
    }
    d = first;
    if (token().isPunctOrDegree() || atDashBeforeNumber()) advance();
    if (!token().is(TokenKind::Integer)) return;
    m = numberValue(token());
    advance();
    if (token().is(TokenKind::Punct) || atDashBeforeNumber()) advance();
    if (!token().isNumber()) return;
    s = numberValue(token());
    advance();
    if (token().is(TokenKind::Punct)) advance();
}

// Only a whole number opens the sexagesimal reading: 45.5 is 45.5 degrees in
// the modes of degrees, and 45.5 grads or radians in those modes.
int32_t Parser::angle(double &value) noexcept
{
    bool negative = false;
    if (token().is(TokenKind::Plus) || token().is(TokenKind::Minus)) {
        negative = token().is(TokenKind::Minus);
        advance();
    }
    double d = 0.0, m = 0.0, s = 0.0;
    if (token().is(TokenKind::Real)) {
        d = numberValue(token());
        advance();
        if (token().isPunctOrDegree()) advance();
    } else if (token().is(TokenKind::Integer)) {
        const double first = numberValue(token());
        advance();
        sexagesimal(first, d, m, s);
    } else {
        return kParseFailure;
    }

    double a = 0.0;
    if (state_.angleMode == kModeGrads)
        a = d + 0.01 * m + 0.0001 * s;  // grads, centesimal minutes and seconds
    else if (state_.angleMode == kModeRadians)
        a = d;  // the first number alone
    else
        a = d + m / 60.0 + s / 3600.0;
    if (negative) a = -a;

    if (state_.angleMode == kModeGrads)
        a = tsConversion_gradToRadian(a);
    else if (state_.angleMode != kModeRadians)
        a = tsConversion_degreeToRadian(a);
    value = tsMath_normalizeAngle(a);
    return kParseOk;
}

// 1 north-east, 2 south-east, 3 south-west, 4 north-west, written as the
// number alone or behind a point (".2"), with a lone "." passed over first.
int32_t Parser::quadrantCode() noexcept
{
    if (token().kind == TokenKind::Punct && token().spells(".")) advance();
    static constexpr const char *codes[][2] = {{"1", ".1"}, {"2", ".2"}, {"3", ".3"}, {"4", ".4"}};
    for (int32_t q = 0; q < 4; ++q) {
        if (token().isNumber() && (token().spells(codes[q][0]) || token().spells(codes[q][1]))) {
            advance();
            return q + 1;
        }
    }
    return 0;
}

// The azimuth a of a bearing or of an angle with a quadrant code, then by
// the style: 1 takes a as the direction; 5 reverses it; 2 counts it from the
// base direction (against its sense when baseSense is 0); every style but 1
// turns the azimuth into a direction, pi / 2 - a.
int32_t Parser::direction(double &value) noexcept
{
    double a = 0.0;
    if (token().is(TokenKind::Word)) {
        const bool north = wordBeginsWith(token(), 'N');
        if (!north && !wordBeginsWith(token(), 'S')) return kParseFailure;
        advance();
        double t = 0.0;
        const int32_t status = angle(t);
        if (parseFailed(status)) return status;
        const bool east = wordBeginsWith(token(), 'E');
        if (!east && !wordBeginsWith(token(), 'W')) return kParseFailure;
        advance();
        if (north)
            a = east ? t : dc_2pi - t;
        else
            a = east ? dc_pi - t : t + dc_pi;
    } else if (token().isNumber()) {
        double t = 0.0;
        const int32_t status = angle(t);
        if (parseFailed(status)) return status;
        switch (quadrantCode()) {
        case 2:
            a = dc_pi - t;
            break;
        case 3:
            a = t + dc_pi;
            break;
        case 4:
            a = dc_2pi - t;
            break;
        default:
            a = t;
            break;
        }
    } else {
        return kParseFailure;
    }

    if (state_.directionStyle == kStyleConventional) {
        value = tsMath_normalizeAngle(a);
        return kParseOk;
    }
    if (state_.directionStyle == kStyleReversedAzimuth) a += dc_pi;
    if (state_.directionStyle == kStyleAzimuth) {
        if (state_.baseSense == 0) a = dc_2pi - a;
        a += state_.baseDirection;
    }
    value = tsMath_normalizeAngle(dc_piover2 - a);
    return kParseOk;
}

// D and a degree of curve A: the radius whose arc (or, by chord, whose
// chord) of the reference length subtends A; a plain length otherwise, after
// any other word (R 500).
int32_t Parser::radius(double &value) noexcept
{
    if (wordBeginsWith(token(), 'D')) {
        advance();
        double A = 0.0;
        const int32_t status = angle(A);
        if (parseFailed(status)) return status;
        if (!(A > 0.0))
            value = 0.0;
        else if (state_.radiusMode == kRadiusByChord)
            value = (state_.curveLength / 2.0) / std::sin(A / 2.0);
        else
            value = state_.curveLength / A;
        return kParseOk;
    }
    if (token().is(TokenKind::Word)) advance();
    return length(value);
}

}  // namespace tessar::detail
