// Homogeneous 4 by 4 matrices of the kernel: sixteen doubles, row after row,
// element (i, j) at [4 i + j]. Products accumulate straight into the result,
// which therefore must not be one of the operands.
#include <tessar/transform.h>

#include "frame/kernel.hpp"

using tessar::detail::enterKernel;

namespace {

constexpr int kOrder = 4;

}  // namespace

void UTMAT_CalculerProduitMatrice4D(const double A[16], const double B[16], double C[16])
{
    enterKernel();
    for (int i = 0; i < kOrder; ++i) {
        for (int j = 0; j < kOrder; ++j) {
            double &c = C[kOrder * i + j];
            c = 0.0;
            for (int k = 0; k < kOrder; ++k)
                c += A[kOrder * i + k] * B[kOrder * k + j];
        }
    }
}

void UTMAT_CopierMatrice4D(const double source[16], double destination[16])
{
    enterKernel();
    for (int k = 0; k < kOrder * kOrder; ++k)
        destination[k] = source[k];
}

void UTMAT_RecupererMatriceIdentite4D(double M[16])
{
    enterKernel();
    for (int i = 0; i < kOrder; ++i)
        for (int j = 0; j < kOrder; ++j)
            M[kOrder * i + j] = i == j ? 1.0 : 0.0;
}

// Q = M P with P a column of four; the fourth component is carried, never
// divided out.
void UTMAT_TransformerPointParMatrice4D(const double P[4], const double M[16], double Q[4])
{
    enterKernel();
    for (int i = 0; i < kOrder; ++i) {
        Q[i] = 0.0;
        for (int j = 0; j < kOrder; ++j)
            Q[i] += M[kOrder * i + j] * P[j];
    }
}
