// Atoms of stations: 12+34.56 is 1234.56, with an optional length unit, a
// region written "R n" before or after the station, or a name word before it.
#include "survey/parse.hpp"

#include <cstdlib>

namespace tessar::detail {

// Only the first plus belongs to the station: 12+34.56 + 10 adds ten. The
// station is collected as text and scanned at once, so 12+5 is 125.
int32_t Parser::stationCore(double &value) noexcept
{
    char text[kTokenUnits];
    std::size_t length = 0;
    text[0] = '\0';
    if (token().is(TokenKind::Plus) || token().is(TokenKind::Minus)) {
        length = appendNarrow(text, length, sizeof text, token());
        advance();
    }
    if (token().is(TokenKind::Integer) && lexer_.peek().is(TokenKind::Plus)) {
        length = appendNarrow(text, length, sizeof text, token());
        advance();
        advance();
    }
    if (!token().isNumber()) return kParseFailure;
    appendNarrow(text, length, sizeof text, token());
    advance();
    double unit = state_.linearUnit;
    lengthUnit(unit);
    value = std::strtod(text, nullptr) * unit;
    return kParseOk;
}

int32_t Parser::regionWord() noexcept
{
    advance();
    if (!token().is(TokenKind::Integer)) return kParseFailure;
    char text[kTokenUnits];
    appendNarrow(text, 0, sizeof text, token());
    state_.region = static_cast<int32_t>(std::strtol(text, nullptr, 10));
    advance();
    return kParseOk;
}

int32_t Parser::stationWithRegion(double &value) noexcept
{
    if (wordEquals(token(), "R")) {
        const int32_t status = regionWord();
        if (parseFailed(status)) return status;
        return stationCore(value);
    }
    const int32_t status = stationCore(value);
    if (parseFailed(status)) return status;
    if (wordEquals(token(), "R")) return regionWord();
    return kParseOk;
}

int32_t Parser::stationWithName(double &value) noexcept
{
    if (token().is(TokenKind::Word)) {
        const Token &word = token();
        const std::size_t n = word.length < kStationNameUnits ? word.length : kStationNameUnits - 1;
        for (std::size_t i = 0; i < n; ++i)
            state_.stationName[i] = word.text[i];
        state_.stationName[n] = 0;
        advance();
    }
    return stationCore(value);
}

}  // namespace tessar::detail
