/*
 * Tessar: transforms and matrices.
 *
 * Three small numeric tools: the affine transform of space tsTransform
 * (tsTransform_*), the dense matrix tsMatrix (tsMatrix_*) that the
 * least-squares fits work with, and the homogeneous 4 by 4 matrices of the
 * UTMAT kernel (UTMAT_*Matrice4D). With them, the closed-form solver of
 * polynomials up to the third degree.
 *
 * tsTransform (types.h) holds three rows (r00 r01 r02 tx), (r10 r11 r12 ty),
 * (r20 r21 r22 tz): a point (x, y, z) maps to (r00 x + r01 y + r02 z + tx,
 * ...). The caller owns it, usually on its stack. Building operations do not
 * compose alike: scale, translate and the 2d rotation multiply on the right
 * (T = T * M, the new operation acts first, in T's frame), the 3d rotation
 * on the left (it acts last, in world axes, and turns the translation too).
 * Angles are radians, counter-clockwise. Every tsTransform_* function
 * returns a status, 0 or 32768; only tsTransform_moveDirection2d and
 * tsTransform_moveAngle test their pointers.
 *
 * tsMatrix (types.h) is column-major: element (i, j), both from 0, lives at
 * data[rows * j + i]. Its data block comes from tsMatrix_memMatrix, zeroed,
 * and belongs to the record until tsMatrix_freeMatrix; a freed record may be
 * allocated again but not freed twice. No element access is bound-checked.
 *
 * A 4-D matrix is sixteen doubles, four rows of four stored row after row
 * (element (i, j) at [4 i + j]); a 4-D point is four doubles. Both are the
 * caller's. The UTMAT_*Matrice4D functions clear the kernel's error word
 * (see frame.h); nothing else here touches shared state.
 */
#ifndef TESSAR_TRANSFORM_H
#define TESSAR_TRANSFORM_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Building a transform ---- */

/** Sets T to the identity. \return 0. */
TESSAR_API int32_t tsTransform_setIdentity(tsTransform *T);

/** Writes the translation (tx, ty, tz) = (x, y, z); the linear part stays. \return 0. */
TESSAR_API int32_t tsTransform_setTranslation(tsTransform *T, double x, double y, double z);

/**
 * Sets the translation so that the linear part of T acts about the fixed
 * point P: (tx, ty, tz) = P - L P, with L the linear part. \return 0.
 */
TESSAR_API int32_t tsTransform_setOrigin(tsTransform *T, const dpoint3d *P);

/**
 * out = A * B: a point moved by out is moved first by B, then by A. out may
 * be A or B. \return 0.
 */
TESSAR_API int32_t tsTransform_multiply(tsTransform *out, const tsTransform *A, const tsTransform *B);

/** T = T * diag(sx, sy, sz): the scale acts first, in T's frame. \return 0. */
TESSAR_API int32_t tsTransform_scale(tsTransform *T, double sx, double sy, double sz);

/** T = T * (translation by (dx, dy, dz)): the move acts first, in T's frame. \return 0. */
TESSAR_API int32_t tsTransform_translate(tsTransform *T, double dx, double dy, double dz);

/** T = T * Rz(angle): a counter-clockwise turn about z that acts first, in T's frame. \return 0. */
TESSAR_API int32_t tsTransform_rotateByAngle2d(tsTransform *T, double angle);

/**
 * T = Rx(ax) * Ry(ay) * Rz(az) * T: the rotations act last, in world axes,
 * and turn the translation already in T. \return 0.
 */
TESSAR_API int32_t tsTransform_rotateByAngle3d(tsTransform *T, double ax, double ay, double az);

/* ---- Applying a transform ---- */

/** out = T applied to in, translation included; out may be in. \return 0. */
TESSAR_API int32_t tsTransform_movePoint(const tsTransform *T, dpoint3d *out, const dpoint3d *in);

/**
 * Moves the plane direction (x, y) by the linear part of T, in place, and
 * sets z to 0. The result is not normalised (a scale shows in its length).
 * \return 0, or 32768 when either pointer is null.
 */
TESSAR_API int32_t tsTransform_moveDirection2d(const tsTransform *T, dpoint3d *direction);

/**
 * Moves the plane direction at angle by the linear part of T, in place. The
 * result lies in the range of atan2 (-pi to pi), not normalised.
 * \return 0, or 32768 when either pointer is null.
 */
TESSAR_API int32_t tsTransform_moveAngle(const tsTransform *T, double *angle);

/**
 * Prints T on standard output: a begin line, three rows of "%f" values
 * separated by ",", an end line. \return 0.
 */
TESSAR_API int32_t tsTransform_printf(const tsTransform *T);

/* ---- Matrices ---- */

/**
 * Stores the dimensions and allocates rows * cols zeroed doubles; earlier
 * data is abandoned, not freed.
 * \return 0, or 32768 when the allocation failed (dimensions kept, data null).
 */
TESSAR_API int32_t tsMatrix_memMatrix(tsMatrix *M, int32_t rows, int32_t cols);

/**
 * Sets rows and cols to 0 and frees data (the pointer is left dangling).
 * \return the result of tsMem_free.
 */
TESSAR_API int32_t tsMatrix_freeMatrix(tsMatrix *M);

/** \return the element (i, j); no bound check. */
TESSAR_API double tsMatrix_getElementMatrix(const tsMatrix *M, int32_t i, int32_t j);

/** Stores value at (i, j); no bound check. */
TESSAR_API void tsMatrix_putElementMatrix(tsMatrix *M, int32_t i, int32_t j, double value);

/** Exchanges the elements (i1, j1) and (i2, j2). */
TESSAR_API void tsMatrix_swapMatrixElem(tsMatrix *M, int32_t i1, int32_t j1, int32_t i2, int32_t j2);

/**
 * A vector of signed 32-bit integers indexed nl..nh (nl need not be 0), with
 * one spare integer in front of the range.
 * \return the vector (so that v[nl] is the first of the range), or null when
 * out of memory. Release it with tsMatrix_freeIvector and the same nl.
 */
TESSAR_API int32_t *tsMatrix_ivector(int32_t nl, int32_t nh);

/** Releases a vector from tsMatrix_ivector; nl is the one it was made with. */
TESSAR_API void tsMatrix_freeIvector(int32_t *v, int32_t nl);

/**
 * C = op(A) * op(B), op transposing where its flag is non-zero. C is
 * allocated by tsMatrix_memMatrix (pass a fresh or freed record); the
 * conformity of B and the allocation are not checked.
 */
TESSAR_API void tsMatrix_multMatrix(tsMatrix *C, int32_t transposeA, const tsMatrix *A, int32_t transposeB,
                                    const tsMatrix *B);

/** Multiplies every element of M by s, in place. */
TESSAR_API void tsMatrix_multScalerMatrix(tsMatrix *M, double s);

/**
 * C = A - B, C allocated by tsMatrix_memMatrix.
 * \return 0; 1 when the dimensions differ (C left alone); 32768 when the
 * allocation failed.
 */
TESSAR_API int32_t tsMatrix_subtractMatrix(tsMatrix *C, const tsMatrix *A, const tsMatrix *B);

/**
 * Inverts the square matrix M (size M->rows) in place, by Gauss-Jordan
 * elimination with full pivoting and no tolerance on the pivot.
 * \return 0, or 32768 when M is singular (an exact zero or not-a-number
 * pivot) or scratch memory ran out; M then holds partly eliminated values.
 */
TESSAR_API int32_t tsMatrix_invertMatrix(tsMatrix *M);

/* ---- 4-D matrices of the kernel ---- */

/** C = A * B. C is written as it is computed: it must be neither A nor B. */
TESSAR_API void UTMAT_CalculerProduitMatrice4D(const double A[16], const double B[16], double C[16]);

/** Copies the sixteen values of source into destination. */
TESSAR_API void UTMAT_CopierMatrice4D(const double source[16], double destination[16]);

/** Sets M to the identity. */
TESSAR_API void UTMAT_RecupererMatriceIdentite4D(double M[16]);

/** Q = M P, P a column of four, without division by the fourth component. Q must not be P. */
TESSAR_API void UTMAT_TransformerPointParMatrice4D(const double P[4], const double M[16], double Q[4]);

/* ---- Polynomial roots ---- */

/**
 * The real roots of c[0] + c[1] x + c[2] x^2 + c[3] x^3. A coefficient
 * counts only if its magnitude exceeds tolerance, and leading ones that do
 * not are dropped. A cubic's roots are sorted ascending and then given one
 * Newton step each, which may unsort them; a cubic with a double root
 * reports a single root.
 * \param[in]  c     four coefficients, the constant first
 * \param[out] roots room for three roots
 * \return the number of roots written: 0, 1, 2 or 3.
 */
TESSAR_API int32_t tsMath_solvePolynomialEquation(const double c[4], double roots[3], double tolerance);

TESSAR_END_DECLS

#endif /* TESSAR_TRANSFORM_H */
