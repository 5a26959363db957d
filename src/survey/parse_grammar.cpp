// The grammar of typed values, from the top:
//   whole      = expression end
//   expression = [sign] term { ("+" | "-") term }
//   term       = factor { ("*" | "/") plain factor }
//   factor     = "(" expression ")" | atom
// A plain factor is a factor whose atom is a plain number, so only the first
// factor of a product carries a unit: 5 M * 2 reads, 5 * 2 M does not.
#include "survey/parse.hpp"

#include <tessar/frame.h>

namespace tessar::detail {

Parser::Parser(const char16_t *text, ParseState &state) noexcept
    : lexer_(text, localeDecimalMark()), state_(state)
{
}

int32_t Parser::whole(Atom atom, double &value) noexcept
{
    const int32_t status = expression(atom, value);
    if (parseFailed(status)) return status;
    return token().is(TokenKind::End) ? kParseOk : kParseFailure;
}

int32_t Parser::expression(Atom atom, double &value) noexcept
{
    bool negative = false;
    if (token().is(TokenKind::Plus) || token().is(TokenKind::Minus)) {
        negative = token().is(TokenKind::Minus);
        advance();
    }
    int32_t status = term(atom, value);
    if (parseFailed(status)) return status;
    // The sign is the expression's, outside the atom: an angle atom has been
    // normalised already, so -90 reads as minus a quarter turn.
    if (negative) value = -value;
    while (token().is(TokenKind::Plus) || token().is(TokenKind::Minus)) {
        const bool subtract = token().is(TokenKind::Minus);
        advance();
        double operand = 0.0;
        status = term(atom, operand);
        if (parseFailed(status)) return status;
        value = subtract ? value - operand : value + operand;
    }
    return kParseOk;
}

int32_t Parser::term(Atom atom, double &value) noexcept
{
    int32_t status = factor(atom, value);
    if (parseFailed(status)) return status;
    // The loop goes on after a failed operand, and the status of the last
    // operand stands: 5 / 0 * 2 reads as 10 and succeeds.
    while (token().is(TokenKind::Star) || token().is(TokenKind::Slash)) {
        const bool divide = token().is(TokenKind::Slash);
        advance();
        double operand = 0.0;
        status = factor(&Parser::number, operand);
        if (parseFailed(status)) continue;
        if (!divide)
            value *= operand;
        else if (tsMath_isDivisionPossible(value, operand))
            value /= operand;
        else
            status = kParseFailure;
    }
    return status;
}

int32_t Parser::factor(Atom atom, double &value) noexcept
{
    if (!token().is(TokenKind::Open)) return (this->*atom)(value);
    advance();
    const int32_t status = expression(atom, value);
    if (parseFailed(status)) return status;
    if (!token().is(TokenKind::Close)) return kParseFailure;
    advance();
    return kParseOk;
}

int32_t Parser::number(double &value) noexcept
{
    bool negative = false;
    if (token().is(TokenKind::Plus) || token().is(TokenKind::Minus)) {
        negative = token().is(TokenKind::Minus);
        advance();
    }
    if (!token().isNumber()) return kParseFailure;
    value = numberValue(token());
    advance();
    if (negative) value = -value;
    return kParseOk;
}

}  // namespace tessar::detail
