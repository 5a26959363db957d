// The pass of the condition-equation adjustment, block by block, with the
// dense matrices as the way through singular or non-finite passes.
#include "bestfit/transformfit.hpp"

#include <cmath>
#include <cstdint>
#include <limits>

#include <tessar/transform.h>

namespace tessar::detail {

/* ---- MatrixRecord ---- */

bool MatrixRecord::allocate(int32_t rows, int32_t cols)
{
    release();
    owned_ = true;
    return tsMatrix_memMatrix(&matrix_, rows, cols) == 0;
}

void MatrixRecord::product(int32_t transposeA, const tsMatrix &A, int32_t transposeB, const tsMatrix &B)
{
    release();
    owned_ = true;
    tsMatrix_multMatrix(&matrix_, transposeA, &A, transposeB, &B);
}

void MatrixRecord::release()
{
    if (owned_) tsMatrix_freeMatrix(&matrix_);
    owned_ = false;
    matrix_ = tsMatrix{0, 0, nullptr};
}

/* ---- ConditionAdjustment ---- */

ConditionAdjustment::ConditionAdjustment(int32_t groups, int32_t conditions, int32_t columns,
                                         int32_t parameters)
    : groups_(groups), conditionsPerGroup_(conditions), columns_(columns), parameters_(parameters)
{
    // The dense fallback addresses (groups x columns) squared elements with
    // 32-bit dimensions: larger inputs are refused as an exhausted heap.
    const std::int64_t observations = static_cast<std::int64_t>(groups) * columns;
    if (groups < 1 || observations > std::numeric_limits<int32_t>::max()) return;
    variances_.assign(static_cast<size_t>(observations), 0.0);
    conditions_.assign(static_cast<size_t>(observations) * conditions, 0.0);
    weightBlocks_.assign(static_cast<size_t>(groups) * conditions * conditions, 0.0);
    allocated_ = blockScratch_.allocate(conditions, conditions) && design_.allocate(rowCount(), parameters) &&
                 misclosure_.allocate(rowCount(), 1);
}

bool ConditionAdjustment::designIsFinite() const
{
    const std::int64_t count = static_cast<std::int64_t>(rowCount()) * parameters_;
    for (std::int64_t k = 0; k < count; ++k)
        if (!std::isfinite(design_.record().data[k])) return false;
    return true;
}

// M of one group: T(i, k) = B(i, k) Q(k, k) (the only non-zero term of the
// dense B Q), then M(i, j) = sum over the group's columns of T(i, k) B(j, k),
// from 0.0 as in the dense product. The block is inverted where it stands.
// False when the block path does not reproduce the dense one: a non-finite
// value, a singular block, or an inverse that overflowed.
bool ConditionAdjustment::weightBlock(int32_t group, tsMatrix &block) const
{
    const int32_t r = conditionsPerGroup_;
    const double *q = &variances_[index(group, columns_)];
    const double *b = &conditions_[index(group, r * columns_)];
    for (int32_t k = 0; k < r * columns_; ++k)
        if (!std::isfinite(b[k])) return false;
    for (int32_t k = 0; k < columns_; ++k)
        if (!std::isfinite(q[k])) return false;

    for (int32_t j = 0; j < r; ++j)
        for (int32_t i = 0; i < r; ++i) {
            double sum = 0.0;
            for (int32_t k = 0; k < columns_; ++k)
                sum += (b[i * columns_ + k] * q[k]) * b[j * columns_ + k];
            if (!std::isfinite(sum)) return false;
            block.data[r * j + i] = sum;
        }
    if (tsMatrix_invertMatrix(&block) != 0) return false;
    for (int32_t k = 0; k < r * r; ++k)
        if (!std::isfinite(block.data[k])) return false;
    return true;
}

bool ConditionAdjustment::invertWeightBlocks()
{
    weightDense_.release();
    denseWeight_ = false;
    const int32_t blockSize = conditionsPerGroup_ * conditionsPerGroup_;
    tsMatrix &block = blockScratch_.record();
    for (int32_t g = 0; g < groups_; ++g) {
        if (!weightBlock(g, block)) return false;
        double *stored = &weightBlocks_[index(g, blockSize)];
        for (int32_t k = 0; k < blockSize; ++k)
            stored[k] = block.data[k];
    }
    return true;
}

// T = A^T M: column j of group g meets only the rows of its own block,
// summed from 0.0 in row order as in the dense product.
bool ConditionAdjustment::weightedDesignFromBlocks()
{
    const int32_t r = conditionsPerGroup_;
    if (weightedDesign_.rows() != parameters_ || weightedDesign_.cols() != rowCount() ||
        weightedDesign_.record().data == nullptr)
        if (!weightedDesign_.allocate(parameters_, rowCount())) return false;
    for (int32_t g = 0; g < groups_; ++g) {
        const double *block = &weightBlocks_[index(g, r * r)];
        for (int32_t j = 0; j < r; ++j)
            for (int32_t i = 0; i < parameters_; ++i) {
                double sum = 0.0;
                for (int32_t l = 0; l < r; ++l)
                    sum += design_(g * r + l, i) * block[r * j + l];
                weightedDesign_(i, g * r + j) = sum;
            }
    }
    return true;
}

// The pass on the full matrices, as tsMatrix products. The inversion may fail
// and leave M partly eliminated: that M is used as it stands.
bool ConditionAdjustment::invertWeightDense()
{
    const int32_t observations = groups_ * columns_;
    MatrixRecord Q;
    MatrixRecord B;
    if (!Q.allocate(observations, observations) || !B.allocate(rowCount(), observations)) return false;
    for (int32_t g = 0; g < groups_; ++g)
        for (int32_t k = 0; k < columns_; ++k) {
            const int32_t column = g * columns_ + k;
            Q(column, column) = variances_[index(g, columns_) + k];
            for (int32_t i = 0; i < conditionsPerGroup_; ++i)
                B(g * conditionsPerGroup_ + i, column) =
                    conditions_[index(g, conditionsPerGroup_ * columns_) + i * columns_ + k];
        }
    MatrixRecord T;
    T.product(0, B.record(), 0, Q.record());
    weightDense_.product(0, T.record(), 1, B.record());
    tsMatrix_invertMatrix(&weightDense_.record());
    weightedDesign_.product(1, design_.record(), 0, weightDense_.record());
    denseWeight_ = true;
    return true;
}

bool ConditionAdjustment::solve()
{
    if (designIsFinite() && invertWeightBlocks()) {
        if (!weightedDesignFromBlocks()) return false;
    } else if (!invertWeightDense()) {
        return false;
    }
    normal_.product(0, weightedDesign_.record(), 0, design_.record());
    normalRight_.product(0, weightedDesign_.record(), 0, misclosure_.record());
    tsMatrix_invertMatrix(&normal_.record());
    delta_.product(0, normal_.record(), 0, normalRight_.record());
    return true;
}

/* ---- Residuals ---- */

// V(i) = (A delta)(i) - w(i), the product summed from 0.0 as tsMatrix_multMatrix does.
bool ConditionAdjustment::formResiduals()
{
    if (!residuals_.allocate(rowCount(), 1)) return false;
    for (int32_t i = 0; i < rowCount(); ++i) {
        double sum = 0.0;
        for (int32_t k = 0; k < parameters_; ++k)
            sum += design_(i, k) * delta_(k, 0);
        residuals_(i, 0) = sum - misclosure_(i, 0);
    }
    return true;
}

double ConditionAdjustment::residualSquareSum() const
{
    double sum = 0.0;
    for (int32_t i = 0; i < rowCount(); ++i)
        sum += residuals_(i, 0) * residuals_(i, 0);
    return sum;
}

// (V^T M)(j) meets only the rows of j's block. A non-finite element of V
// meets the exact zeros of the other blocks in the dense product, which makes
// the whole sum not a number; with a single group there are no such zeros.
double ConditionAdjustment::weightedSquareSumFromBlocks() const
{
    const int32_t r = conditionsPerGroup_;
    if (groups_ > 1)
        for (int32_t i = 0; i < rowCount(); ++i)
            if (!std::isfinite(residuals_(i, 0))) return std::numeric_limits<double>::quiet_NaN();
    double sum = 0.0;
    for (int32_t g = 0; g < groups_; ++g) {
        const double *block = &weightBlocks_[index(g, r * r)];
        for (int32_t j = 0; j < r; ++j) {
            double row = 0.0;
            for (int32_t l = 0; l < r; ++l)
                row += residuals_(g * r + l, 0) * block[r * j + l];
            sum += row * residuals_(g * r + j, 0);
        }
    }
    return sum;
}

double ConditionAdjustment::weightedResidualSquareSum()
{
    if (!denseWeight_) return weightedSquareSumFromBlocks();
    MatrixRecord row;
    MatrixRecord sum;
    row.product(1, residuals_.record(), 0, weightDense_.record());
    sum.product(0, row.record(), 0, residuals_.record());
    return sum(0, 0);
}

}  // namespace tessar::detail
