// The plane z = a x + b y + c fitted to points by the normal equations, its
// point-record forms, and the two queries of a point against such a plane.
//
// The fit solves (A^T A) [a b c]^T = A^T Z with the rows (x, y, 1) of A on
// tsMatrix records: the inverse of A^T A times A^T, times Z. Neither the
// inversion nor the allocations are checked: points on one line leave
// whatever the inversion left, and the status is still 0.
#include <tessar/bestfit.h>
#include <tessar/frame.h>
#include <tessar/transform.h>

#include <cmath>
#include <cstdint>

namespace {

constexpr int32_t kFailure = TESSAR_FAILURE;

struct PlaneFit {
    double a = 0.0, b = 0.0, c = 0.0;
};

// The design matrix A (rows x, y, 1.0) and the heights Z.
void buildDesign(tsMatrix &A, tsMatrix &Z, int32_t n, const dpoint3d *points)
{
    tsMatrix_memMatrix(&A, n, 3);
    tsMatrix_memMatrix(&Z, n, 1);
    for (int32_t i = 0; i < n; ++i) {
        tsMatrix_putElementMatrix(&A, i, 0, points[i].x);
        tsMatrix_putElementMatrix(&A, i, 1, points[i].y);
        tsMatrix_putElementMatrix(&A, i, 2, 1.0);
        tsMatrix_putElementMatrix(&Z, i, 0, points[i].z);
    }
}

// sqrt(sum of E^2) / n with E = A R - Z, the division outside the root.
double standardErrorOf(const tsMatrix &A, const tsMatrix &R, const tsMatrix &Z, int32_t n)
{
    tsMatrix AR{0, 0, nullptr};
    tsMatrix E{0, 0, nullptr};
    tsMatrix_multMatrix(&AR, 0, &A, 0, &R);
    tsMatrix_subtractMatrix(&E, &AR, &Z);
    double sum = 0.0;
    for (int32_t i = 0; i < n; ++i) {
        const double e = tsMatrix_getElementMatrix(&E, i, 0);
        sum += e * e;
    }
    tsMatrix_freeMatrix(&AR);
    tsMatrix_freeMatrix(&E);
    return std::sqrt(sum) / n;
}

}  // namespace

int32_t tsBestFit_planeCalc(double *centroidX, double *centroidY, double *centroidZ, double *a, double *b,
                            double *c, double *standardError, int32_t n, const dpoint3d *points)
{
    *centroidX = *centroidY = *centroidZ = 0.0;
    *a = *b = *c = 0.0;
    if (standardError) *standardError = 0.0;
    if (n < 3) return kFailure;

    double sumX = 0.0, sumY = 0.0, sumZ = 0.0;
    for (int32_t i = 0; i < n; ++i) {
        sumX += points[i].x;
        sumY += points[i].y;
        sumZ += points[i].z;
    }
    const double inverseN = 1.0 / n;
    *centroidX = inverseN * sumX;
    *centroidY = inverseN * sumY;
    *centroidZ = inverseN * sumZ;  // replaced below by the plane's height there

    tsMatrix A{0, 0, nullptr}, Z{0, 0, nullptr}, P{0, 0, nullptr}, Q{0, 0, nullptr}, R{0, 0, nullptr};
    buildDesign(A, Z, n, points);
    tsMatrix_multMatrix(&P, 1, &A, 0, &A);
    tsMatrix_invertMatrix(&P);  // a singular P is not reported
    tsMatrix_multMatrix(&Q, 0, &P, 1, &A);
    tsMatrix_multMatrix(&R, 0, &Q, 0, &Z);
    PlaneFit fit;
    fit.a = tsMatrix_getElementMatrix(&R, 0, 0);
    fit.b = tsMatrix_getElementMatrix(&R, 1, 0);
    fit.c = tsMatrix_getElementMatrix(&R, 2, 0);
    if (standardError) *standardError = standardErrorOf(A, R, Z, n);
    tsMatrix_freeMatrix(&A);
    tsMatrix_freeMatrix(&Z);
    tsMatrix_freeMatrix(&P);
    tsMatrix_freeMatrix(&Q);
    tsMatrix_freeMatrix(&R);

    *a = fit.a;
    *b = fit.b;
    *c = fit.c;
    // The centroid's height is the plane's there, not the mean of z.
    *centroidZ = fit.a * *centroidX + fit.b * *centroidY + fit.c;
    return 0;
}

// The fit reads the points in place: it keeps no copy and writes nothing
// back, so the caller's array serves as the scratch copy would.
int32_t tsPoint_computePlane(dpoint3d *centroid, double coefficients[3], double *standardError,
                             const dpoint3d *points, int32_t n)
{
    if (n < 3) return kFailure;
    double cx, cy, cz, a, b, c, error;
    const int32_t status =
        tsBestFit_planeCalc(&cx, &cy, &cz, &a, &b, &c, standardError ? &error : nullptr, n, points);
    if (status != 0) return status;
    if (centroid) *centroid = {cx, cy, cz};
    if (coefficients) {
        coefficients[0] = a;
        coefficients[1] = b;
        coefficients[2] = c;
    }
    if (standardError) *standardError = error;
    return 0;
}

int32_t tsApiPoint_computePlane(dpoint3d *centroid, double coefficients[3], double *standardError,
                                const dpoint3d *points, int32_t n)
{
    return tsPoint_computePlane(centroid, coefficients, standardError, points, n);
}

/* ---- A point against a plane ---- */

int32_t tsPoint_computeOnPlaneGivenXY(double *difference, dpoint3d *out, const dpoint3d *point,
                                      const double coefficients[3])
{
    if (!point || !coefficients) return kFailure;
    const double z = coefficients[0] * point->x + coefficients[1] * point->y + coefficients[2];
    if (out) *out = {point->x, point->y, z};
    if (difference) *difference = point->z - z;
    return 0;
}

// The plane a x + b y - z + c = 0 has the normal (a, b, -1); the foot is the
// point moved t along it, t = (pz - c - a px - b py) / (a^2 + b^2 + 1), which
// is positive for a point above the plane.
int32_t tsPoint_computeMinimumDistancefromPlane(double *signedDistance, dpoint3d *foot, const dpoint3d *point,
                                                const double coefficients[3])
{
    if (!point || !coefficients) return kFailure;
    const double a = coefficients[0];
    const double b = coefficients[1];
    const double c = coefficients[2];
    const double t = (point->z - c - a * point->x - b * point->y) / (a * a + b * b + 1.0);
    const dpoint3d f{point->x + a * t, point->y + b * t, point->z - t};
    if (foot) *foot = f;
    if (signedDistance) {
        const double dx = f.x - point->x;
        const double dy = f.y - point->y;
        const double dz = f.z - point->z;
        const double distance = std::sqrt(dx * dx + dy * dy + dz * dz);
        *signedDistance = point->z < f.z ? -distance : distance;
    }
    return 0;
}
