// Dense matrices of the least-squares fits: column-major storage from the
// library's heap, products with optional transposition, and inversion in
// place by Gauss-Jordan elimination with full pivoting.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/transform.h>

namespace {

constexpr int32_t kFailure = TESSAR_FAILURE;

// Element (i, j) of a column-major block with the given row count. The
// offset is computed in 64 bits, so large matrices do not wrap.
inline double &at(double *data, int32_t rows, int32_t i, int32_t j)
{
    return data[static_cast<std::ptrdiff_t>(rows) * j + i];
}

inline double &at(const tsMatrix &M, int32_t i, int32_t j)
{
    return at(M.data, M.rows, i, j);
}

std::int64_t elementCount(const tsMatrix &M)
{
    return static_cast<std::int64_t>(M.rows) * M.cols;
}

// An operand of a product as seen through its transposition flag: op(i, k)
// is data[base(i) + k * step], with base(i) = i * lineStride.
struct Operand {
    const double *data;
    std::ptrdiff_t lineStride;
    std::ptrdiff_t step;
};

// op(A)(i, k): A(i, k) = data[rows k + i], or transposed A(k, i) = data[rows i + k].
Operand leftOperand(const tsMatrix &A, bool transpose)
{
    const std::ptrdiff_t rows = A.rows;
    return transpose ? Operand{A.data, rows, 1} : Operand{A.data, 1, rows};
}

// op(B)(k, j): B(k, j) = data[rows j + k], or transposed B(j, k) = data[rows k + j].
Operand rightOperand(const tsMatrix &B, bool transpose)
{
    const std::ptrdiff_t rows = B.rows;
    return transpose ? Operand{B.data, 1, rows} : Operand{B.data, rows, 1};
}

// Scratch of the inversion: the three integer vectors over 0..n, released
// together whatever way the elimination ends.
class PivotVectors
{
  public:
    explicit PivotVectors(int32_t n)
        : usage_(tsMatrix_ivector(0, n)), row_(tsMatrix_ivector(0, n)), column_(tsMatrix_ivector(0, n))
    {
    }
    ~PivotVectors()
    {
        if (column_ != nullptr) tsMatrix_freeIvector(column_, 0);
        if (row_ != nullptr) tsMatrix_freeIvector(row_, 0);
        if (usage_ != nullptr) tsMatrix_freeIvector(usage_, 0);
    }
    PivotVectors(const PivotVectors &) = delete;
    PivotVectors &operator=(const PivotVectors &) = delete;

    bool complete() const { return usage_ != nullptr && row_ != nullptr && column_ != nullptr; }
    int32_t *usage() { return usage_; }
    int32_t *row() { return row_; }
    int32_t *column() { return column_; }

  private:
    int32_t *usage_;
    int32_t *row_;
    int32_t *column_;
};

struct Pivot {
    int32_t row = 0;
    int32_t column = 0;
};

// Step 1: the largest magnitude among the rows and columns not yet used as
// pivots. The comparison is "greater than or equal" in the scan order row by
// row, so of equal magnitudes the last one in that order wins, and a block of
// zeros still names a pivot. Not-a-number never compares, so a block holding
// only such values names none and the search keeps its start, (0, 0).
//
// The scan here runs column by column, to follow the storage; ties are broken
// by position so the chosen pivot is the one the row-by-row scan would take.
// Returns false when a column has been used twice (a singular matrix): that
// is seen from any row still open, hence the check up front.
bool findPivot(const tsMatrix &M, const int32_t *usage, Pivot &pivot)
{
    const int32_t n = M.rows;
    bool anyOpenRow = false;
    bool anyReusedColumn = false;
    for (int32_t k = 0; k < n; ++k) {
        anyOpenRow = anyOpenRow || usage[k] != 1;
        anyReusedColumn = anyReusedColumn || usage[k] > 1;
    }
    if (anyOpenRow && anyReusedColumn) return false;

    pivot = Pivot{};
    double largest = 0.0;
    for (int32_t j = 0; j < n; ++j) {
        if (usage[j] != 0) continue;
        const double *column = &at(M, 0, j);
        for (int32_t i = 0; i < n; ++i) {
            if (usage[i] == 1) continue;
            const double magnitude = std::fabs(column[i]);
            const bool later = i > pivot.row || (i == pivot.row && j > pivot.column);
            if (magnitude > largest || (magnitude == largest && later)) {
                largest = magnitude;
                pivot = Pivot{i, j};
            }
        }
    }
    return true;
}

void swapRows(tsMatrix &M, int32_t r1, int32_t r2)
{
    for (int32_t l = 0; l < M.rows; ++l)
        std::swap(at(M, r1, l), at(M, r2, l));
}

void swapColumns(tsMatrix &M, int32_t c1, int32_t c2)
{
    for (int32_t k = 0; k < M.rows; ++k)
        std::swap(at(M, k, c1), at(M, k, c2));
}

// Step 5: the pivot element becomes 1 / pivot through the scaling of the
// whole pivot row by that inverse.
void scalePivotRow(tsMatrix &M, int32_t p, double pivotValue)
{
    const double inverse = 1.0 / pivotValue;
    at(M, p, p) = 1.0;
    for (int32_t l = 0; l < M.rows; ++l)
        at(M, p, l) *= inverse;
}

// column[r] -= value * factors[r] for every row r but the pivot row p. The
// two blocks are distinct columns of the matrix.
void subtractMultiple(double *__restrict column, const double *__restrict factors, double value, int32_t p,
                      int32_t n)
{
    for (int32_t r = 0; r < p; ++r)
        column[r] -= value * factors[r];
    for (int32_t r = p + 1; r < n; ++r)
        column[r] -= value * factors[r];
}

// Step 6: for every row l other than the pivot row p, with f = M(l, p):
// M(l, p) = 0, then row l -= f * row p. Each element takes exactly that one
// operation, so the work runs column by column; column p, which holds the
// factors f, is done last, as 0.0 - M(p, p) * f.
void eliminateOtherRows(tsMatrix &M, int32_t p)
{
    const int32_t n = M.rows;
    double *factors = &at(M, 0, p);
    for (int32_t l = 0; l < n; ++l)
        if (l != p) subtractMultiple(&at(M, 0, l), factors, at(M, p, l), p, n);
    const double pivotRowValue = factors[p];
    for (int32_t r = 0; r < n; ++r) {
        if (r == p) continue;
        const double f = factors[r];
        factors[r] = 0.0;
        factors[r] -= pivotRowValue * f;
    }
}

int32_t gaussJordan(tsMatrix &M, PivotVectors &scratch)
{
    const int32_t n = M.rows;
    int32_t *usage = scratch.usage();
    int32_t *pivotRow = scratch.row();
    int32_t *pivotColumn = scratch.column();
    for (int32_t k = 0; k <= n; ++k)
        usage[k] = 0;

    for (int32_t step = 0; step < n; ++step) {
        Pivot pivot;
        if (!findPivot(M, usage, pivot)) return kFailure;
        ++usage[pivot.column];
        // The pivot is brought onto the diagonal by a row swap; the column
        // swaps that this implies are undone at the end.
        if (pivot.row != pivot.column) swapRows(M, pivot.row, pivot.column);
        pivotRow[step] = pivot.row;
        pivotColumn[step] = pivot.column;
        const int32_t p = pivot.column;
        // No tolerance: only an exact zero or not-a-number stops the
        // elimination; a tiny pivot is taken.
        const double pivotValue = at(M, p, p);
        if (!(pivotValue > 0.0) && !(pivotValue < 0.0)) return kFailure;
        scalePivotRow(M, p, pivotValue);
        eliminateOtherRows(M, p);
    }
    for (int32_t step = n - 1; step >= 0; --step)
        if (pivotRow[step] != pivotColumn[step]) swapColumns(M, pivotRow[step], pivotColumn[step]);
    return 0;
}

}  // namespace

/* ---- Storage ---- */

int32_t tsMatrix_memMatrix(tsMatrix *M, int32_t rows, int32_t cols)
{
    M->rows = rows;
    M->cols = cols;
    M->data = nullptr;
    // A negative element count cannot be had from the heap: it fails as an
    // exhausted heap would.
    const std::int64_t count = elementCount(*M);
    if (count < 0) return kFailure;
    M->data = static_cast<double *>(tsMem_calloc(static_cast<size_t>(count), sizeof(double)));
    return M->data == nullptr ? kFailure : 0;
}

// The data pointer is left as it was, dangling: the record may be allocated
// again but must not be freed twice.
int32_t tsMatrix_freeMatrix(tsMatrix *M)
{
    M->rows = 0;
    M->cols = 0;
    return tsMem_free(M->data);
}

double tsMatrix_getElementMatrix(const tsMatrix *M, int32_t i, int32_t j)
{
    return at(M->data, M->rows, i, j);
}

void tsMatrix_putElementMatrix(tsMatrix *M, int32_t i, int32_t j, double value)
{
    at(*M, i, j) = value;
}

void tsMatrix_swapMatrixElem(tsMatrix *M, int32_t i1, int32_t j1, int32_t i2, int32_t j2)
{
    std::swap(at(*M, i1, j1), at(*M, i2, j2));
}

// The block holds nh - nl + 2 integers: a spare one, then the range. The
// pointer handed out is offset so that v[nl] is the block's second integer.
int32_t *tsMatrix_ivector(int32_t nl, int32_t nh)
{
    const std::int64_t count = static_cast<std::int64_t>(nh) - nl + 2;
    if (count < 1) return nullptr;  // an empty or reversed range: nothing to allocate
    auto *block = static_cast<int32_t *>(tsMem_malloc(static_cast<size_t>(count) * sizeof(int32_t)));
    if (block == nullptr) return nullptr;
    return block + (1 - static_cast<std::ptrdiff_t>(nl));
}

void tsMatrix_freeIvector(int32_t *v, int32_t nl)
{
    tsMem_free(v + (static_cast<std::ptrdiff_t>(nl) - 1));
}

/* ---- Arithmetic ---- */

// The inner dimension comes from A alone; B's conformity and the allocation
// of C are not checked, and C's earlier block is abandoned.
void tsMatrix_multMatrix(tsMatrix *C, int32_t transposeA, const tsMatrix *A, int32_t transposeB,
                         const tsMatrix *B)
{
    const int32_t rows = transposeA != 0 ? A->cols : A->rows;
    const int32_t cols = transposeB != 0 ? B->rows : B->cols;
    const int32_t inner = transposeA != 0 ? A->rows : A->cols;
    tsMatrix_memMatrix(C, rows, cols);
    const Operand a = leftOperand(*A, transposeA != 0);
    const Operand b = rightOperand(*B, transposeB != 0);
    for (int32_t j = 0; j < cols; ++j) {
        const double *bColumn = b.data + b.lineStride * j;
        for (int32_t i = 0; i < rows; ++i) {
            const double *aRow = a.data + a.lineStride * i;
            double sum = 0.0;
            for (int32_t k = 0; k < inner; ++k)
                sum += aRow[a.step * k] * bColumn[b.step * k];
            at(*C, i, j) = sum;
        }
    }
}

void tsMatrix_multScalerMatrix(tsMatrix *M, double s)
{
    const std::int64_t count = elementCount(*M);
    for (std::int64_t k = 0; k < count; ++k)
        M->data[k] *= s;
}

int32_t tsMatrix_subtractMatrix(tsMatrix *C, const tsMatrix *A, const tsMatrix *B)
{
    if (A->rows != B->rows || A->cols != B->cols) return 1;
    if (tsMatrix_memMatrix(C, A->rows, A->cols) != 0) return kFailure;
    const std::int64_t count = elementCount(*A);
    for (std::int64_t k = 0; k < count; ++k)
        C->data[k] = A->data[k] - B->data[k];
    return 0;
}

/* ---- Inversion ---- */

// The size is M->rows; M->cols is not read. On a failure M is left partly
// eliminated.
int32_t tsMatrix_invertMatrix(tsMatrix *M)
{
    if (M->rows < 1) return 0;
    PivotVectors scratch(M->rows);
    if (!scratch.complete()) return kFailure;
    return gaussJordan(*M, scratch);
}
