// Tolerant comparison of doubles. Each test is written as a negated or plain
// "greater than" exactly as it must be evaluated: the order of the
// subtraction and the sense of each test decide what happens at the boundary
// and with a not-a-number operand (a NaN makes every comparison false, so the
// negated forms answer 1 and the plain ones 0).
#include <cmath>

#include "frame/kernel.hpp"

int32_t tsUtil_equalDouble(double a, double b, double t)
{
    return !(std::fabs(a - b) > t);
}

int32_t tsUtil_lessOrEqualDouble(double a, double b, double t)
{
    return !(a - b > t);
}

int32_t tsUtil_lessDouble(double a, double b, double t)
{
    return !(a - b >= -t);
}

int32_t tsUtil_greaterDouble(double a, double b, double t)
{
    return a - b > t;
}

int32_t tsUtil_greaterOrEqualDouble(double a, double b, double t)
{
    return a - b >= -t;
}

int32_t tsUtil_belongToClosedIntervalDouble(double x, double lo, double hi, double t)
{
    return x - lo >= -t && !(x - hi > t);
}

int32_t tsUtil_belongToOpenIntervalDouble(double x, double lo, double hi, double t)
{
    return x > lo + t && x < hi - t;
}

// Unlike tsUtil_equalDouble, a negative tolerance still means a band.
int32_t tsMath_doublesNearEqual(double a, double b, double t)
{
    return !(std::fabs(a - b) > std::fabs(t));
}

// True when numerator / denominator cannot overflow: a scale-relative zero
// that does not follow the kernel's settings.
int32_t tsMath_isDivisionPossible(double numerator, double denominator)
{
    return std::fabs(numerator) * 1e-100 < std::fabs(denominator);
}

// The kernel's names: each clears the error word, then compares. The kernel's
// equality is the variant with the absolute tolerance.
using tessar::detail::enterKernel;

int32_t UTMAT_Inf(double a, double b, double t)
{
    enterKernel();
    return tsUtil_lessDouble(a, b, t);
}

int32_t UTMAT_InfOuEgal(double a, double b, double t)
{
    enterKernel();
    return tsUtil_lessOrEqualDouble(a, b, t);
}

int32_t UTMAT_Egal(double a, double b, double t)
{
    enterKernel();
    return tsMath_doublesNearEqual(a, b, t);
}

int32_t UTMAT_SupOuEgal(double a, double b, double t)
{
    enterKernel();
    return tsUtil_greaterOrEqualDouble(a, b, t);
}

int32_t UTMAT_Sup(double a, double b, double t)
{
    enterKernel();
    return tsUtil_greaterDouble(a, b, t);
}

int32_t UTMAT_AppartenirAIntFerme(double x, double lo, double hi, double t)
{
    enterKernel();
    return tsUtil_belongToClosedIntervalDouble(x, lo, hi, t);
}

int32_t UTMAT_AppartenirAIntOuvert(double x, double lo, double hi, double t)
{
    enterKernel();
    return tsUtil_belongToOpenIntervalDouble(x, lo, hi, t);
}
