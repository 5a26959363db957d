// Dense matrices and the polynomial solver: storage, products, Gauss-Jordan
// inversion and roots of polynomials built from known roots.
#include <tessar/memory.h>
#include <tessar/transform.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <tuple>

namespace {

constexpr int32_t kFail = 32768;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// A matrix from its rows as a caller writes them; freed on scope exit.
struct Matrix {
    tsMatrix m{0, 0, nullptr};
    Matrix() = default;
    Matrix(int32_t rows, int32_t cols, std::initializer_list<double> byRows = {})
    {
        EXPECT_EQ(tsMatrix_memMatrix(&m, rows, cols), 0);
        auto v = byRows.begin();
        for (int32_t i = 0; i < rows && v != byRows.end(); ++i)
            for (int32_t j = 0; j < cols && v != byRows.end(); ++j)
                tsMatrix_putElementMatrix(&m, i, j, *v++);
    }
    ~Matrix()
    {
        if (m.rows != 0 || m.cols != 0) tsMatrix_freeMatrix(&m);
    }
    double operator()(int32_t i, int32_t j) const { return tsMatrix_getElementMatrix(&m, i, j); }
};

void expectRows(const tsMatrix &m, int32_t rows, int32_t cols, std::initializer_list<double> byRows,
                double tol = 0.0)
{
    ASSERT_EQ(m.rows, rows);
    ASSERT_EQ(m.cols, cols);
    auto v = byRows.begin();
    for (int32_t i = 0; i < rows; ++i)
        for (int32_t j = 0; j < cols; ++j)
            EXPECT_NEAR(tsMatrix_getElementMatrix(&m, i, j), *v++, tol) << "element " << i << "," << j;
}

TEST(Matrix, ColumnMajorStorageFreeAndFailedAllocation)
{
    Matrix a(3, 4);
    EXPECT_EQ(a.m.data[11], 0.0);
    tsMatrix_putElementMatrix(&a.m, 1, 2, 7.5);  // (i, j) at rows * j + i: 7
    tsMatrix_putElementMatrix(&a.m, 2, 0, -1.0);
    EXPECT_TRUE(a.m.data[7] == 7.5 && a.m.data[2] == -1.0);
    tsMatrix_swapMatrixElem(&a.m, 1, 2, 0, 3);
    EXPECT_TRUE(a(1, 2) == 0.0 && a(0, 3) == 7.5);

    // Freeing clears the dimensions; a failed allocation keeps them with a
    // null block, and freeing that reports the heap's failure value.
    tsMatrix m{0, 0, nullptr};
    ASSERT_EQ(tsMatrix_memMatrix(&m, 2, 5), 0);
    EXPECT_EQ(tsMatrix_freeMatrix(&m), 0);
    EXPECT_TRUE(m.rows == 0 && m.cols == 0);
    EXPECT_EQ(tsMatrix_memMatrix(&m, -1, 5), kFail);
    EXPECT_TRUE(m.rows == -1 && m.cols == 5 && m.data == nullptr);
    EXPECT_EQ(tsMatrix_freeMatrix(&m), kFail);
}

TEST(Matrix, IvectorIndexRanges)
{
    for (const auto &[nl, nh] : {std::pair{0, 0}, {1, 5}, {-3, 3}, {10, 12}, {7, 6}}) {
        int32_t *v = tsMatrix_ivector(nl, nh);
        ASSERT_NE(v, nullptr) << nl << ".." << nh;
        // The block starts one integer before v[nl] and holds nh - nl + 2;
        // every index and the spare are writable (the sanitizer checks bounds).
        size_t size = 0;
        ASSERT_EQ(tsMem_getSize(v + nl - 1, &size), 0);
        EXPECT_GE(size, sizeof(int32_t) * static_cast<size_t>(nh - nl + 2));
        for (int32_t k = nl - 1; k <= nh; ++k)
            v[k] = k;
        tsMatrix_freeIvector(v, nl);
    }
    EXPECT_EQ(tsMatrix_ivector(5, 2), nullptr);  // a reversed range has no block
}

// A = [[1,2,3],[4,5,6]], B = [[7,8],[9,10],[11,12]]: A B = [[58,64],[139,154]].
TEST(Matrix, ProductsScaleAndSubtract)
{
    Matrix A(2, 3, {1, 2, 3, 4, 5, 6}), At(3, 2, {1, 4, 2, 5, 3, 6});
    Matrix B(3, 2, {7, 8, 9, 10, 11, 12}), Bt(2, 3, {7, 9, 11, 8, 10, 12});
    for (const auto &[tA, a, tB, b] :
         {std::tuple{0, &A.m, 0, &B.m}, {1, &At.m, 0, &B.m}, {0, &A.m, 1, &Bt.m}, {1, &At.m, 1, &Bt.m}}) {
        SCOPED_TRACE(testing::Message() << "transpose " << tA << tB);
        Matrix C;
        tsMatrix_multMatrix(&C.m, tA, a, tB, b);
        expectRows(C.m, 2, 2, {58, 64, 139, 154});
    }
    Matrix BA;  // 3 by 3: the dimensions follow the operands' outer sizes
    tsMatrix_multMatrix(&BA.m, 0, &B.m, 0, &A.m);
    expectRows(BA.m, 3, 3, {39, 54, 69, 49, 68, 87, 59, 82, 105});

    Matrix S(2, 2, {1, 2, 3, 4}), ones(2, 2, {1, 1, 1, 1}), C, wide(2, 3);
    tsMatrix_multScalerMatrix(&S.m, -0.5);
    EXPECT_EQ(tsMatrix_subtractMatrix(&C.m, &S.m, &ones.m), 0);
    expectRows(C.m, 2, 2, {-1.5, -2, -2.5, -3});
    // Different dimensions: 1, and the result record untouched.
    double sentinel = 42.0;
    tsMatrix untouched{7, 9, &sentinel};
    EXPECT_EQ(tsMatrix_subtractMatrix(&untouched, &S.m, &wide.m), 1);
    EXPECT_TRUE(untouched.rows == 7 && untouched.cols == 9 && untouched.data == &sentinel &&
                sentinel == 42.0);
}

TEST(Matrix, InverseOfHandInvertedMatrices)
{
    struct Row {
        const char *what;
        int32_t n;
        std::initializer_list<double> m, inverse;
    } rows[] = {
        {"2x2", 2, {4, 7, 2, 6}, {0.6, -0.7, -0.2, 0.4}},  // det 10: [[6,-7],[-2,4]] / 10
        // The second-difference matrix: inverse [[3,2,1],[2,4,2],[1,2,3]] / 4.
        {"tridiagonal", 3, {2, -1, 0, -1, 2, -1, 0, -1, 2}, {0.75, 0.5, 0.25, 0.5, 1, 0.5, 0.25, 0.5, 0.75}},
        // Zero diagonal: row swaps, undone as column swaps at the end.
        {"anti-diagonal", 3, {0, 0, 2, 0, 4, 0, 5, 0, 0}, {0, 0, 0.2, 0, 0.25, 0, 0.5, 0, 0}},
        // A 3-cycle needs two row swaps, undone as column swaps in reverse order: P^-1 = P^T.
        {"cycle", 3, {0, 1, 0, 0, 0, 1, 1, 0, 0}, {0, 0, 1, 1, 0, 0, 0, 1, 0}},
        {"tiny pivot", 1, {0x1p-1000}, {0x1p+1000}},  // no tolerance on the pivot
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        Matrix M(row.n, row.n, row.m);
        EXPECT_EQ(tsMatrix_invertMatrix(&M.m), 0);
        expectRows(M.m, row.n, row.n, row.inverse, 1e-15);
    }
    tsMatrix empty{0, 0, nullptr};  // n below 1: 0, untouched
    EXPECT_EQ(tsMatrix_invertMatrix(&empty), 0);
}

TEST(Matrix, SingularMatricesFail)
{
    struct Row {
        const char *what;
        int32_t n;
        std::initializer_list<double> m;
    } rows[] = {{"two equal rows", 3, {1, 2, 3, 4, 5, 6, 1, 2, 3}},
                {"zeros", 2, {0, 0, 0, 0}},
                {"not-a-number", 2, {kNaN, 1, 1, 1}},
                {"rank one", 3, {1, 2, 3, 2, 4, 6, 3, 6, 9}}};
    for (const Row &row : rows) {
        Matrix M(row.n, row.n, row.m);
        EXPECT_EQ(tsMatrix_invertMatrix(&M.m), kFail) << row.what;
    }
    // [[1,1],[1,1]]: the magnitudes tie, and the last in row-by-row order,
    // (1, 1), is the first pivot: row 0 becomes (0, -1), and the second
    // step's zero pivot fails with [[0,-1],[1,1]] left (the first, (0, 0),
    // would have left [[1,1],[-1,0]]).
    Matrix M(2, 2, {1, 1, 1, 1});
    EXPECT_EQ(tsMatrix_invertMatrix(&M.m), kFail);
    expectRows(M.m, 2, 2, {0, -1, 1, 1});
}

// A leading coefficient counts only when its magnitude exceeds the
// tolerance (1e-9 unless stated): equal to it, it is dropped.
TEST(Polynomial, RootsOfPolynomialsWithKnownRoots)
{
    struct Row {
        const char *what;
        double c0, c1, c2, c3, tolerance;
        int32_t count;
        double roots[3];
        double tol;
    } rows[] = {
        {"x^2 + 1", 1, 0, 1, 0, 1e-9, 0, {}, 0},
        {"-(x-1)(x-2)", -2, 3, -1, 0, 1e-9, 2, {1, 2}, 0},               // -h -+ sqrt(d), root[0] the smaller
        {"(x-1)^2", 1, -2, 1, 0, 1e-9, 2, {1, 1}, 0},                    // d = 0: the double root twice
        {"-(x-1)(x-2)(x-3)", 6, -11, 6, -1, 1e-9, 3, {1, 2, 3}, 1e-14},  // magnitudes, not signs, count
        {"x(x-1)(x+1)", 0, -1, 0, 1, 1e-9, 3, {-1, 0, 1}, 1e-15},        // middle root ~1e-16 set to 0
        // x^3 - 3x + 2: d = 0 exactly, one root -2; the double root is not reported.
        {"(x-1)^2 (x+2)", 2, -3, 0, 1, 1e-9, 1, {-2}, 1e-15},
        {"c3 = tolerance", 2, -3, 1, 1e-9, 1e-9, 2, {1, 2}, 0},
        {"c2 = tolerance", 3, 2, 1e-9, 0, 1e-9, 1, {-1.5}, 0},
        {"c1 = tolerance", 3, 1e-9, 0, 0, 1e-9, 0, {}, 0},
        {"tiny linear, tolerance 0", 1e-20, 1e-20, 0, 0, 0, 1, {-1}, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        const double c[4] = {row.c0, row.c1, row.c2, row.c3};
        double roots[3] = {kNaN, kNaN, kNaN};
        ASSERT_EQ(tsMath_solvePolynomialEquation(c, roots, row.tolerance), row.count);
        for (int32_t k = 0; k < 3; ++k)
            if (k < row.count)
                EXPECT_NEAR(roots[k], row.roots[k], row.tol) << "root " << k;
            else
                EXPECT_TRUE(std::isnan(roots[k])) << "root " << k << " written";
    }
}

// Just above the tolerance the cubic term counts: 0.0125 x^3 + x^2 - 3x + 2
// keeps roots near 1 and 2 and gains a third near -1 / c3; the three sum to
// -c2 / c3 = -80 (Vieta).
TEST(Polynomial, SmallCubicTermAboveTolerance)
{
    const double c[4] = {2, -3, 1, 0.0125};
    double r[3];
    ASSERT_EQ(tsMath_solvePolynomialEquation(c, r, 0.01), 3);
    for (double x : r)
        EXPECT_NEAR(((c[3] * x + c[2]) * x + c[1]) * x + c[0], 0.0, 1e-11) << x;
    EXPECT_NEAR(r[0] + r[1] + r[2], -80.0, 1e-12);
    EXPECT_LT(r[0], -80.0);
    EXPECT_NEAR(r[1], 1.0, 0.05);
}

}  // namespace
