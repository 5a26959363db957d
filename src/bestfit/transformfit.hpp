// The least-squares adjustment of condition equations shared by the plane
// transform fits and the curve fits, and a small owner of tsMatrix records.
//
// The observations come in groups: one control pair (x, y, X, Y) with two
// conditions, or one curve point (x, y) with one condition. For a pass at the
// current parameters the caller fills
//   Q  the variances of the observations (a diagonal, filled once),
//   A  the derivatives of the conditions by the parameters,
//   B  the derivatives of the conditions by the observations, non-zero only
//      in the columns of a condition's own group,
//   w  the misclosures,
// and solve() forms, in this order,
//   T = B Q, M = T B^T, invert M; T = A^T M, N = T A, u = T w; invert N;
//   delta = N u.
// Neither inversion's result is looked at: a singular system shows in delta.
//
// Q, B and M are block diagonal (one block per group), so a pass runs block
// by block in time and memory linear in the number of groups. The values are
// those of the dense products and of the full-pivoting inversion of the dense
// M, bit for bit: every product with an off-block element is an exact zero,
// every running sum starts at 0.0 and meets the block's terms in the dense
// order, and the inversion of a block-diagonal matrix pivots inside each
// block exactly as the inversion of the block alone, and touches the other
// blocks only by subtracting exact zeros. That reasoning needs finite values
// and non-singular blocks; a pass that meets a non-finite value or a singular
// block is run on the dense matrices instead, so that what the dense
// inversion leaves behind (a partly eliminated M) is reproduced too.
#pragma once

#include <cstdint>
#include <vector>

#include <tessar/types.h>

namespace tessar::detail {

// A tsMatrix record that frees its block when it is reallocated or goes out
// of scope. product() follows tsMatrix_multMatrix, which allocates its result.
class MatrixRecord
{
  public:
    MatrixRecord() = default;
    ~MatrixRecord() { release(); }
    MatrixRecord(const MatrixRecord &) = delete;
    MatrixRecord &operator=(const MatrixRecord &) = delete;

    // A zeroed rows by cols block; false if the heap is exhausted.
    bool allocate(int32_t rows, int32_t cols);
    // This = op(A) op(B); the block of the product is not checked, as in
    // tsMatrix_multMatrix, so keep it for products of a few parameters.
    void product(int32_t transposeA, const tsMatrix &A, int32_t transposeB, const tsMatrix &B);
    void release();

    tsMatrix &record() { return matrix_; }
    const tsMatrix &record() const { return matrix_; }
    int32_t rows() const { return matrix_.rows; }
    int32_t cols() const { return matrix_.cols; }
    double &operator()(int32_t i, int32_t j)
    {
        return matrix_.data[static_cast<std::ptrdiff_t>(matrix_.rows) * j + i];
    }
    double operator()(int32_t i, int32_t j) const
    {
        return matrix_.data[static_cast<std::ptrdiff_t>(matrix_.rows) * j + i];
    }

  private:
    tsMatrix matrix_{0, 0, nullptr};
    bool owned_ = false;
};

class ConditionAdjustment
{
  public:
    // groups of observations, conditions per group (1 or 2), observation
    // columns per group, parameters. The storage is taken at once: check
    // allocated(). May throw std::bad_alloc.
    ConditionAdjustment(int32_t groups, int32_t conditions, int32_t columns, int32_t parameters);
    ConditionAdjustment(const ConditionAdjustment &) = delete;
    ConditionAdjustment &operator=(const ConditionAdjustment &) = delete;

    bool allocated() const { return allocated_; }

    // Q(column of group, same): the variance of one observation.
    void setVariance(int32_t group, int32_t column, double variance)
    {
        variances_[index(group, columns_) + column] = variance;
    }
    // A(row, parameter); the rows of group g are g * conditions + condition.
    void setDesign(int32_t row, int32_t parameter, double value) { design_(row, parameter) = value; }
    // B(row of the condition, column of the observation in its group).
    void setCondition(int32_t group, int32_t condition, int32_t column, double value)
    {
        conditions_[index(group, conditionsPerGroup_ * columns_) + condition * columns_ + column] = value;
    }
    // w(row).
    void setMisclosure(int32_t row, double value) { misclosure_(row, 0) = value; }

    // One pass, ending with delta. False if the heap is exhausted.
    bool solve();
    double correction(int32_t parameter) const { return delta_(parameter, 0); }

    // Forms V = A delta - w from the last pass. False if the heap is exhausted.
    bool formResiduals();
    // The sum of the squares of V, in row order.
    double residualSquareSum() const;
    // V^T M V, as (V^T M) V, with the M of the last pass.
    double weightedResidualSquareSum();

  private:
    static std::ptrdiff_t index(int32_t group, int32_t stride)
    {
        return static_cast<std::ptrdiff_t>(group) * stride;
    }
    int32_t rowCount() const { return groups_ * conditionsPerGroup_; }

    bool designIsFinite() const;
    bool invertWeightBlocks();
    bool weightBlock(int32_t group, tsMatrix &block) const;
    bool weightedDesignFromBlocks();
    bool invertWeightDense();
    double weightedSquareSumFromBlocks() const;

    int32_t groups_;
    int32_t conditionsPerGroup_;
    int32_t columns_;
    int32_t parameters_;
    bool allocated_ = false;
    bool denseWeight_ = false;  // the last pass's M is weightDense_, not the blocks

    std::vector<double> variances_;     // Q: groups x columns
    std::vector<double> conditions_;    // B: groups x conditions x columns, row after row
    std::vector<double> weightBlocks_;  // inverted M: groups x conditions^2, column-major blocks
    MatrixRecord blockScratch_;         // one block of M on its way through the inversion
    MatrixRecord design_;               // A
    MatrixRecord misclosure_;           // w
    MatrixRecord weightedDesign_;       // T = A^T M
    MatrixRecord weightDense_;          // M of a dense pass
    MatrixRecord normal_;               // N, inverted
    MatrixRecord normalRight_;          // u
    MatrixRecord delta_;
    MatrixRecord residuals_;  // V
};

}  // namespace tessar::detail
