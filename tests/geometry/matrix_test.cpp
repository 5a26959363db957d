// Dense matrices and the polynomial solver: column-major storage, the
// integer vector's index ranges, products in the four transposition forms,
// Gauss-Jordan inversion (hand-inverted matrices, inverse times matrix
// against the identity, singular inputs) and roots of polynomials built from
// known roots.
#include <tessar/memory.h>
#include <tessar/transform.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

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
    Matrix(const Matrix &) = delete;
    Matrix &operator=(const Matrix &) = delete;
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

/* ---- Storage ---- */

TEST(Matrix, ColumnMajorStorage)
{
    Matrix a(3, 4);
    for (int k = 0; k < 12; ++k)
        EXPECT_EQ(a.m.data[k], 0.0);
    tsMatrix_putElementMatrix(&a.m, 1, 2, 7.5);
    tsMatrix_putElementMatrix(&a.m, 2, 0, -1.0);
    // (i, j) at rows * j + i: (1, 2) at 7, (2, 0) at 2.
    EXPECT_EQ(a.m.data[7], 7.5);
    EXPECT_EQ(a.m.data[2], -1.0);
    EXPECT_EQ(tsMatrix_getElementMatrix(&a.m, 1, 2), 7.5);
    tsMatrix_swapMatrixElem(&a.m, 1, 2, 0, 3);
    EXPECT_EQ(a(1, 2), 0.0);
    EXPECT_EQ(a(0, 3), 7.5);
}

TEST(Matrix, FreeClearsDimensionsAndAllowsReallocation)
{
    tsMatrix m{0, 0, nullptr};
    ASSERT_EQ(tsMatrix_memMatrix(&m, 2, 5), 0);
    EXPECT_EQ(m.rows, 2);
    EXPECT_EQ(m.cols, 5);
    EXPECT_EQ(tsMatrix_freeMatrix(&m), 0);
    EXPECT_EQ(m.rows, 0);
    EXPECT_EQ(m.cols, 0);
    // A freed record takes a new block.
    ASSERT_EQ(tsMatrix_memMatrix(&m, 4, 1), 0);
    EXPECT_EQ(m.rows, 4);
    EXPECT_EQ(tsMatrix_freeMatrix(&m), 0);
}

TEST(Matrix, FailedAllocationKeepsDimensions)
{
    tsMatrix m{0, 0, nullptr};
    EXPECT_EQ(tsMatrix_memMatrix(&m, -1, 5), kFail);
    EXPECT_EQ(m.rows, -1);
    EXPECT_EQ(m.cols, 5);
    EXPECT_EQ(m.data, nullptr);
    // Freeing the null block reports the heap's failure value.
    EXPECT_EQ(tsMatrix_freeMatrix(&m), kFail);
    EXPECT_EQ(m.rows, 0);
}

TEST(Matrix, IvectorIndexRanges)
{
    struct Row {
        int32_t nl, nh;
    };
    const Row rows[] = {{0, 0}, {0, 9}, {1, 5}, {-3, 3}, {10, 12}, {7, 6}};
    for (const Row &row : rows) {
        SCOPED_TRACE(testing::Message() << row.nl << ".." << row.nh);
        int32_t *v = tsMatrix_ivector(row.nl, row.nh);
        ASSERT_NE(v, nullptr);
        // The block starts one integer before v[nl] and holds nh - nl + 2.
        size_t size = 0;
        ASSERT_EQ(tsMem_getSize(v + row.nl - 1, &size), 0);
        EXPECT_GE(size, sizeof(int32_t) * static_cast<size_t>(row.nh - row.nl + 2));
        // Every index of the range, and the spare in front, is writable
        // (the sanitizer build checks the bounds).
        for (int32_t k = row.nl - 1; k <= row.nh; ++k)
            v[k] = k;
        for (int32_t k = row.nl - 1; k <= row.nh; ++k)
            EXPECT_EQ(v[k], k);
        tsMatrix_freeIvector(v, row.nl);
    }
    EXPECT_EQ(tsMatrix_ivector(5, 2), nullptr);  // a reversed range has no block
}

/* ---- Arithmetic ---- */

// A = [[1,2,3],[4,5,6]], B = [[7,8],[9,10],[11,12]]:
// AB = [[7+18+33, 8+20+36], [28+45+66, 32+50+72]] = [[58,64],[139,154]].
TEST(Matrix, ProductInAllTranspositionForms)
{
    Matrix A(2, 3, {1, 2, 3, 4, 5, 6});
    Matrix At(3, 2, {1, 4, 2, 5, 3, 6});
    Matrix B(3, 2, {7, 8, 9, 10, 11, 12});
    Matrix Bt(2, 3, {7, 9, 11, 8, 10, 12});
    struct Row {
        int32_t tA;
        const tsMatrix *a;
        int32_t tB;
        const tsMatrix *b;
    };
    const Row rows[] = {{0, &A.m, 0, &B.m}, {1, &At.m, 0, &B.m}, {0, &A.m, 1, &Bt.m}, {1, &At.m, 1, &Bt.m}};
    for (const Row &row : rows) {
        SCOPED_TRACE(testing::Message() << "transpose " << row.tA << row.tB);
        Matrix C;
        tsMatrix_multMatrix(&C.m, row.tA, row.a, row.tB, row.b);
        expectRows(C.m, 2, 2, {58, 64, 139, 154});
    }
    // B A is 3 by 3: the dimensions follow the operands' outer sizes.
    Matrix C;
    tsMatrix_multMatrix(&C.m, 0, &B.m, 0, &A.m);
    expectRows(C.m, 3, 3, {39, 54, 69, 49, 68, 87, 59, 82, 105});
}

TEST(Matrix, ScaleAndSubtract)
{
    Matrix A(2, 2, {1, 2, 3, 4});
    tsMatrix_multScalerMatrix(&A.m, -0.5);
    expectRows(A.m, 2, 2, {-0.5, -1, -1.5, -2});

    Matrix B(2, 2, {1, 1, 1, 1});
    Matrix C;
    EXPECT_EQ(tsMatrix_subtractMatrix(&C.m, &A.m, &B.m), 0);
    expectRows(C.m, 2, 2, {-1.5, -2, -2.5, -3});

    // Different dimensions: 1, and the result record untouched.
    Matrix wide(2, 3);
    double sentinel = 42.0;
    tsMatrix untouched{7, 9, &sentinel};
    const tsMatrix before = untouched;
    EXPECT_EQ(tsMatrix_subtractMatrix(&untouched, &A.m, &wide.m), 1);
    EXPECT_EQ(untouched.rows, before.rows);
    EXPECT_EQ(untouched.cols, before.cols);
    EXPECT_EQ(untouched.data, before.data);
    EXPECT_EQ(sentinel, 42.0);
}

/* ---- Inversion ---- */

TEST(Matrix, InverseOfHandInvertedMatrices)
{
    struct Row {
        const char *what;
        int32_t n;
        std::initializer_list<double> m, inverse;
    };
    const Row rows[] = {
        // [[4,7],[2,6]]: det 10, inverse [[6,-7],[-2,4]] / 10.
        {"2x2", 2, {4, 7, 2, 6}, {0.6, -0.7, -0.2, 0.4}},
        // The second-difference matrix: inverse [[3,2,1],[2,4,2],[1,2,3]] / 4.
        {"tridiagonal", 3, {2, -1, 0, -1, 2, -1, 0, -1, 2}, {0.75, 0.5, 0.25, 0.5, 1, 0.5, 0.25, 0.5, 0.75}},
        // Zero diagonal: needs row swaps, undone as column swaps at the end.
        {"swap", 2, {0, 1, 1, 0}, {0, 1, 1, 0}},
        {"anti-diagonal", 3, {0, 0, 2, 0, 4, 0, 5, 0, 0}, {0, 0, 0.2, 0, 0.25, 0, 0.5, 0, 0}},
        // No tolerance on the pivot: a tiny one is taken.
        {"tiny pivot", 1, {0x1p-1000}, {0x1p+1000}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        Matrix M(row.n, row.n, row.m);
        EXPECT_EQ(tsMatrix_invertMatrix(&M.m), 0);
        expectRows(M.m, row.n, row.n, row.inverse, 1e-15);
    }
}

// Normal-equation matrices of the fits' sizes: N = J^T J + I from a random
// J, so N is symmetric positive definite with condition well below 1e6. The
// product with the inverse is formed here element by element; with n
// unit-sized terms per element, each within about n eps of the exact value,
// 1e-10 holds with a wide margin up to n = 200.
TEST(Matrix, InverseTimesMatrixIsIdentity)
{
    std::mt19937 random(20240611);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    for (int32_t n : {4, 10, 50, 200}) {
        SCOPED_TRACE(n);
        std::vector<double> J(static_cast<size_t>(n) * n);
        for (double &v : J)
            v = uniform(random);
        std::vector<double> N(J.size());
        for (int32_t i = 0; i < n; ++i)
            for (int32_t j = 0; j < n; ++j) {
                double s = i == j ? 1.0 : 0.0;
                for (int32_t k = 0; k < n; ++k)
                    s += J[k * n + i] * J[k * n + j] / n;
                N[i * n + j] = s;
            }
        Matrix inverse(n, n);
        for (int32_t i = 0; i < n; ++i)
            for (int32_t j = 0; j < n; ++j)
                tsMatrix_putElementMatrix(&inverse.m, i, j, N[i * n + j]);
        ASSERT_EQ(tsMatrix_invertMatrix(&inverse.m), 0);
        double worst = 0.0;
        for (int32_t i = 0; i < n; ++i)
            for (int32_t j = 0; j < n; ++j) {
                double s = 0.0;
                for (int32_t k = 0; k < n; ++k)
                    s += inverse(i, k) * N[k * n + j];
                worst = std::max(worst, std::fabs(s - (i == j ? 1.0 : 0.0)));
            }
        EXPECT_LT(worst, 1e-10);
    }
}

TEST(Matrix, SingularMatricesFail)
{
    struct Row {
        const char *what;
        int32_t n;
        std::initializer_list<double> m;
    };
    const Row rows[] = {
        {"two equal rows", 3, {1, 2, 3, 4, 5, 6, 1, 2, 3}},
        {"zeros", 2, {0, 0, 0, 0}},
        {"one not-a-number", 1, {kNaN}},
        {"not-a-number beside numbers", 2, {kNaN, 1, 1, 1}},
        {"rank one", 3, {1, 2, 3, 2, 4, 6, 3, 6, 9}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        Matrix M(row.n, row.n, row.m);
        EXPECT_EQ(tsMatrix_invertMatrix(&M.m), kFail);
    }
}

// [[1,1],[1,1]]: all four magnitudes tie, and the last in row-by-row order,
// (1, 1), is the first pivot. Row 1 stays (1, 1); row 0 becomes
// (1 - 1, 0 - 1 * 1) = (0, -1). The second step's only candidate (0, 0) is
// zero: failure, with M left [[0,-1],[1,1]]. Taking (0, 0) first would have
// left [[1,1],[-1,0]].
TEST(Matrix, EqualPivotsLastOneWins)
{
    Matrix M(2, 2, {1, 1, 1, 1});
    EXPECT_EQ(tsMatrix_invertMatrix(&M.m), kFail);
    expectRows(M.m, 2, 2, {0, -1, 1, 1});
}

TEST(Matrix, EmptyMatrixInvertsTrivially)
{
    tsMatrix empty{0, 0, nullptr};
    EXPECT_EQ(tsMatrix_invertMatrix(&empty), 0);
    // Only the rows count: a 3 by 1 record is taken as 3 by 3 and is not
    // looked at here; a 0 by 5 one is empty.
    Matrix flat(0, 5);
    EXPECT_EQ(tsMatrix_invertMatrix(&flat.m), 0);
}

// A straight line y = a + b x through five exact points by least squares:
// N = J^T J and the right side J^T y, solved through the inverse.
TEST(Matrix, LeastSquaresLineFit)
{
    const double xs[] = {0, 1, 2, 3, 4};
    Matrix J(5, 2), y(5, 1);
    for (int32_t i = 0; i < 5; ++i) {
        tsMatrix_putElementMatrix(&J.m, i, 0, 1.0);
        tsMatrix_putElementMatrix(&J.m, i, 1, xs[i]);
        tsMatrix_putElementMatrix(&y.m, i, 0, 1.5 - 0.25 * xs[i]);
    }
    Matrix N, rhs, solution;
    tsMatrix_multMatrix(&N.m, 1, &J.m, 0, &J.m);
    // N = [[5, 10], [10, 30]] by the sums of 1, x and x^2.
    expectRows(N.m, 2, 2, {5, 10, 10, 30});
    tsMatrix_multMatrix(&rhs.m, 1, &J.m, 0, &y.m);
    ASSERT_EQ(tsMatrix_invertMatrix(&N.m), 0);
    tsMatrix_multMatrix(&solution.m, 0, &N.m, 0, &rhs.m);
    expectRows(solution.m, 2, 1, {1.5, -0.25}, 1e-14);
}

/* ---- Polynomial roots ---- */

struct RootRow {
    const char *what;
    double c0, c1, c2, c3, tolerance;
    int32_t count;
    double roots[3];
    double tol;
};

TEST(Polynomial, RootsOfPolynomialsWithKnownRoots)
{
    const RootRow rows[] = {
        {"constant", 1, 0, 0, 0, 1e-9, 0, {}, 0},
        {"linear 3 + 2x", 3, 2, 0, 0, 1e-9, 1, {-1.5}, 0},
        {"x^2 + 1", 1, 0, 1, 0, 1e-9, 0, {}, 0},
        // i = 1, q = 2, h = -1.5, d = 0.25: -h -+ 0.5.
        {"(x-1)(x-2)", 2, -3, 1, 0, 1e-9, 2, {1, 2}, 0},
        {"-(x-1)(x-2)", -2, 3, -1, 0, 1e-9, 2, {1, 2}, 0},
        // d = 0: the double root twice.
        {"(x-1)^2", 1, -2, 1, 0, 1e-9, 2, {1, 1}, 0},
        {"(x-1)(x-2)(x-3)", -6, 11, -6, 1, 1e-9, 3, {1, 2, 3}, 1e-14},
        {"-(x-1)(x-2)(x-3)", 6, -11, 6, -1, 1e-9, 3, {1, 2, 3}, 1e-14},
        {"(x+4)(x-0.5)(x-10)", 20, -37, -6.5, 1, 1e-9, 3, {-4, 0.5, 10}, 1e-13},
        // x^3 - x: the middle root comes out near 1e-16 and is set to 0.
        {"x(x-1)(x+1)", 0, -1, 0, 1, 1e-9, 3, {-1, 0, 1}, 1e-15},
        // (x-1)^2 (x+2) = x^3 - 3x + 2: p = -1, q = -1, d = 0 exactly, one
        // root -2 from the cube roots; the double root is not reported.
        {"(x-1)^2 (x+2)", 2, -3, 0, 1, 1e-9, 1, {-2}, 1e-15},
        // (x-1)^3: p = q = 0, the root -a = 1.
        {"(x-1)^3", -1, 3, -3, 1, 1e-9, 1, {1}, 1e-15},
        {"x^3 - 8", -8, 0, 0, 1, 1e-9, 1, {2}, 1e-15},
        // (x-1)(x^2+1) = x^3 - x^2 + x - 1: one real root.
        {"(x-1)(x^2+1)", -1, 1, -1, 1, 1e-9, 1, {1}, 1e-15},
    };
    for (const RootRow &row : rows) {
        SCOPED_TRACE(row.what);
        const double c[4] = {row.c0, row.c1, row.c2, row.c3};
        double roots[3] = {kNaN, kNaN, kNaN};
        ASSERT_EQ(tsMath_solvePolynomialEquation(c, roots, row.tolerance), row.count);
        for (int32_t k = 0; k < row.count; ++k)
            EXPECT_NEAR(roots[k], row.roots[k], row.tol) << "root " << k;
        for (int32_t k = row.count; k < 3; ++k)
            EXPECT_TRUE(std::isnan(roots[k])) << "root " << k << " written";
    }
}

// A leading coefficient counts only when its magnitude exceeds the
// tolerance: equal to it, it is dropped.
TEST(Polynomial, DegenerateLeadingCoefficients)
{
    const RootRow rows[] = {
        {"c3 = tolerance", 2, -3, 1, 1e-9, 1e-9, 2, {1, 2}, 0},
        {"c3 = -tolerance", 2, -3, 1, -1e-9, 1e-9, 2, {1, 2}, 0},
        {"c3 below tolerance", 2, -3, 1, 1e-12, 1e-9, 2, {1, 2}, 0},
        {"c2 = tolerance", 3, 2, 1e-9, 0, 1e-9, 1, {-1.5}, 0},
        {"c1 = tolerance", 3, 1e-9, 0, 0, 1e-9, 0, {}, 0},
        {"all zero, tolerance 0", 0, 0, 0, 0, 0, 0, {}, 0},
        // With tolerance 0 a tiny c1 still counts: 1e-20 x + 1e-20 = 0.
        {"tiny linear, tolerance 0", 1e-20, 1e-20, 0, 0, 0, 1, {-1}, 0},
    };
    for (const RootRow &row : rows) {
        SCOPED_TRACE(row.what);
        const double c[4] = {row.c0, row.c1, row.c2, row.c3};
        double roots[3] = {kNaN, kNaN, kNaN};
        ASSERT_EQ(tsMath_solvePolynomialEquation(c, roots, row.tolerance), row.count);
        for (int32_t k = 0; k < row.count; ++k)
            EXPECT_NEAR(roots[k], row.roots[k], row.tol) << "root " << k;
    }
}

// Just above the tolerance the cubic term counts: 0.0125 x^3 + x^2 - 3x + 2
// keeps two roots near 1 and 2 and gains a third near -1 / c3; the three
// sum to -c2 / c3 = -80 (Vieta). At 0.01, equal to the tolerance, the same
// polynomial is the quadratic of the table above.
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
    EXPECT_NEAR(r[2], 2.0, 0.1);
    const double quadratic[4] = {2, -3, 1, 0.01};
    EXPECT_EQ(tsMath_solvePolynomialEquation(quadratic, r, 0.01), 2);
}

}  // namespace
