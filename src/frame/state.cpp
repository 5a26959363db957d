// The kernel's settings and the two pairs of error words, and the functions
// that set and read them. All are plain process-wide variables.
#include "frame/kernel.hpp"

namespace tessar::detail {

std::int32_t utmatErreur = 0;
std::int32_t utmatErreurDetail = 0;
std::int32_t memErreur = 0;
std::int32_t memErreurDetail = 0;
double utmatCalculPrec = 0.0001;
// Deliberately loose: it serves one ovoid construction only, and must not be
// tightened to the size of the calculation precision.
double utmatDistanceTolerance = 2.0;
std::int32_t utmatSpiralFormula = 2;

}  // namespace tessar::detail

using namespace tessar::detail;

// The setters validate nothing: zero and negative values are stored as given.
void UTMAT_setCalculPrecision(double precision)
{
    enterKernel();
    utmatCalculPrec = precision;
}

void UTMAT_setDistanceTolerance(double tolerance)
{
    enterKernel();
    utmatDistanceTolerance = tolerance;
}

double UTMAT_getCalculPrec(void)
{
    return utmatCalculPrec;
}

double UTMAT_getDistanceTolerance(void)
{
    return utmatDistanceTolerance;
}

void UTMAT_SetQuorrelSpiralFormula(void)
{
    enterKernel();
    utmatSpiralFormula = 1;
}

void UTMAT_SetVelloraSpiralFormula(void)
{
    enterKernel();
    utmatSpiralFormula = 2;
}

// Neither pointer is tested: reading the error state is the caller's contract.
void UTMAT_GetErreur(int32_t *code, int32_t *detail)
{
    *code = utmatErreur;
    *detail = utmatErreurDetail;
}

void MEM_GetErreur(int32_t *code, int32_t *detail)
{
    *code = memErreur;
    *detail = memErreurDetail;
}

void MEM_SetErreur(int32_t code, int32_t detail)
{
    memErreur = code;
    memErreurDetail = detail;
}
