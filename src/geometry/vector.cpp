// Vectors, lines and frames of the kernel. The line form a x + b y + c = 0
// is oriented: built from a direction (dx, dy) it has (a, b) = (dy, -dx), the
// normal to the right of the direction of travel, so the power of a point is
// positive on the right. Normalisation is one square root, one division and
// multiplications by the reciprocal.
#include <cmath>

#include <tessar/memory.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

// The scale-relative zero that keeps the line functions from dividing by a
// vanishing norm. It does not follow the kernel's settings.
constexpr double kLineGuard = 1.0000000000000001e-39;

double norm2(double x, double y)
{
    return std::sqrt(x * x + y * y);
}

// Stores the normal (a, b) and completes the line through p: normalised, or,
// for a zero normal, a failure with a and b stored and c untouched.
void lineThrough(double a, double b, const dpoint2d &p, UTMAT_Droite &out)
{
    out.a = a;
    out.b = b;
    const double norm = norm2(a, b);
    if (!(norm > 0.0)) {
        fail();
        return;
    }
    const double inverse = 1.0 / norm;
    out.a *= inverse;
    out.b *= inverse;
    out.c = -(out.a * p.x) - (out.b * p.y);
}

}  // namespace

/* ---- Conversions: these leave the error word alone ---- */

void ConvertPoint32(const dpoint3d *in, dpoint2d *out)
{
    out->x = in->x;
    out->y = in->y;
}

void ConvertPoint23(const dpoint2d *in, dpoint3d *out)
{
    out->x = in->x;
    out->y = in->y;
    out->z = 0.0;
}

// The allocation is not tested: a caller that gets null and a positive count
// is out of memory, and the copy would fault.
dpoint2d *ConvertArray32(const dpoint3d *points, int32_t count)
{
    auto *out =
        static_cast<dpoint2d *>(tsMem_malloc(sizeof(dpoint2d) * static_cast<size_t>(count > 0 ? count : 0)));
    for (int32_t i = 0; i < count; ++i)
        ConvertPoint32(&points[i], &out[i]);
    return out;
}

dpoint3d *ConvertArray23(const dpoint2d *points, int32_t count)
{
    auto *out =
        static_cast<dpoint3d *>(tsMem_malloc(sizeof(dpoint3d) * static_cast<size_t>(count > 0 ? count : 0)));
    for (int32_t i = 0; i < count; ++i)
        ConvertPoint23(&points[i], &out[i]);
    return out;
}

/* ---- Vectors ---- */

void UTMAT_CalculerVecteur(const dpoint2d *from, const dpoint2d *to, dpoint2d *out)
{
    enterKernel();
    if (failIfNull(out)) return;
    out->x = to->x - from->x;
    out->y = to->y - from->y;
}

void UTMAT_CalculerVecteur3d(const dpoint3d *from, const dpoint3d *to, dpoint3d *out)
{
    enterKernel();
    if (failIfNull(out)) return;
    out->x = to->x - from->x;
    out->y = to->y - from->y;
    out->z = to->z - from->z;
}

// The measures below have no value to give for a null argument: they set
// the failure and return 0.0, the argument being outside their contract.
double UTMAT_CalculerNormeVecteur(const dpoint2d *v)
{
    enterKernel();
    if (failIfNull(v)) return 0.0;
    return norm2(v->x, v->y);
}

double UTMAT_CalculerNormeVecteur3d(const dpoint3d *v)
{
    enterKernel();
    if (failIfNull(v)) return 0.0;
    return std::sqrt(v->x * v->x + v->y * v->y + v->z * v->z);
}

void UTMAT_CalculerSommeV1V2(const dpoint2d *v1, const dpoint2d *v2, dpoint2d *out)
{
    enterKernel();
    if (failIfNull(v1, v2, out)) return;
    out->x = v1->x + v2->x;
    out->y = v1->y + v2->y;
}

void UTMAT_NormerVecteur(dpoint2d *v)
{
    enterKernel();
    if (failIfNull(v)) return;
    const double norm = norm2(v->x, v->y);
    if (!(norm > 0.0)) return;  // a zero vector stays as it is, without error
    const double inverse = 1.0 / norm;
    v->x *= inverse;
    v->y *= inverse;
}

void UTMAT_NormerVecteur3d(dpoint3d *v)
{
    enterKernel();
    if (failIfNull(v)) return;
    const double norm = std::sqrt(v->x * v->x + v->y * v->y + v->z * v->z);
    if (!(norm > 0.0)) return;
    const double inverse = 1.0 / norm;
    v->x *= inverse;
    v->y *= inverse;
    v->z *= inverse;
}

double UTMAT_CalculerProduitScalaire(const dpoint2d *v1, const dpoint2d *v2)
{
    enterKernel();
    if (failIfNull(v1, v2)) return 0.0;
    return v1->x * v2->x + v1->y * v2->y;
}

double UTMAT_CalculerProduitVectoriel(const dpoint2d *v1, const dpoint2d *v2)
{
    enterKernel();
    if (failIfNull(v1, v2)) return 0.0;
    return v1->x * v2->y - v1->y * v2->x;
}

void UTMAT_CalculerProduitVectoriel3d(const dpoint3d *v1, const dpoint3d *v2, dpoint3d *out)
{
    enterKernel();
    if (failIfNull(v1, v2, out)) return;
    const dpoint3d a = *v1;
    const dpoint3d b = *v2;
    out->x = a.y * b.z - a.z * b.y;
    out->y = a.z * b.x - a.x * b.z;
    out->z = a.x * b.y - a.y * b.x;
}

double UTMAT_CalculerDistance2Pt(const dpoint2d *p1, const dpoint2d *p2)
{
    enterKernel();
    if (failIfNull(p1, p2)) return 0.0;
    return norm2(p2->x - p1->x, p2->y - p1->y);
}

double UTMAT_CalculerDistance2Pt3d(const dpoint3d *p1, const dpoint3d *p2)
{
    enterKernel();
    if (failIfNull(p1, p2)) return 0.0;
    const double dx = p2->x - p1->x;
    const double dy = p2->y - p1->y;
    const double dz = p2->z - p1->z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

// The comparison leaves the error word at 0 after the distance is taken.
int32_t UTMAT_PointsIdentiques(const dpoint2d *p1, const dpoint2d *p2, double tol)
{
    enterKernel();
    if (failIfNull(p1, p2)) return 0;
    return UTMAT_Egal(UTMAT_CalculerDistance2Pt(p1, p2), 0.0, tol);
}

int32_t UTMAT_Points3dIdentiques(const dpoint3d *p1, const dpoint3d *p2, double tol)
{
    enterKernel();
    if (failIfNull(p1, p2)) return 0;
    return UTMAT_Egal(UTMAT_CalculerDistance2Pt3d(p1, p2), 0.0, tol);
}

/* ---- Lines of the plane ---- */

void UTMAT_CalculerDroite2Pt(const dpoint2d *p1, const dpoint2d *p2, UTMAT_Droite *out)
{
    enterKernel();
    lineThrough(p2->y - p1->y, p1->x - p2->x, *p1, *out);
}

void UTMAT_CalculerDroitePtVecteur(const dpoint2d *p, const dpoint2d *v, UTMAT_Droite *out)
{
    enterKernel();
    lineThrough(v->y, -v->x, *p, *out);
}

void UTMAT_NormerDroite(UTMAT_Droite *line, double *norm)
{
    enterKernel();
    const double n = norm2(line->a, line->b);
    if (!(n > 0.0)) {
        fail();
        return;
    }
    const double inverse = 1.0 / n;
    line->a *= inverse;
    line->b *= inverse;
    line->c *= inverse;
    if (norm != nullptr) *norm = n;
}

void UTMAT_TranslaterDroite(const UTMAT_Droite *line, const dpoint2d *t, UTMAT_Droite *out)
{
    enterKernel();
    if (failIfNull(line)) return;
    const UTMAT_Droite d = *line;
    out->a = d.a;
    out->b = d.b;
    out->c = d.c - d.a * t->x - d.b * t->y;
}

void UTMAT_CalculerDroiteOrthoDroitePs1Pt(const UTMAT_Droite *line, const dpoint2d *p, UTMAT_Droite *out)
{
    enterKernel();
    if (failIfNull(line, p, out)) return;
    const UTMAT_Droite d = *line;
    *out = UTMAT_Droite{d.b, -d.a, d.a * p->y - d.b * p->x};
}

void UTMAT_CalculerDroiteParalleleDroitePs1Pt(const UTMAT_Droite *line, const dpoint2d *p, UTMAT_Droite *out)
{
    enterKernel();
    if (failIfNull(line, p, out)) return;
    const UTMAT_Droite d = *line;
    *out = UTMAT_Droite{d.a, d.b, -(d.a * p->x + d.b * p->y)};
}

void UTMAT_CalculerDroiteParalleleDroiteDistance(const UTMAT_Droite *line, double d, UTMAT_Droite *out)
{
    enterKernel();
    if (failIfNull(line, out)) return;
    const UTMAT_Droite l = *line;
    *out = UTMAT_Droite{l.a, l.b, l.c - d * norm2(l.a, l.b)};
}

double UTMAT_CalculerPuissancePtDroite(const UTMAT_Droite *line, const dpoint2d *p)
{
    enterKernel();
    return line->a * p->x + line->b * p->y + line->c;
}

// The guard is formed with c as it stands, signed: a negative c lets any line
// through, also one with a and b both zero, and the division then gives an
// infinity or a NaN with the error word at 0. Callers rely on this.
void UTMAT_CalculerDeportPtDroite(const UTMAT_Droite *line, const dpoint2d *p, double *out)
{
    enterKernel();
    const double norm = norm2(line->a, line->b);
    if (!(norm > line->c * kLineGuard)) {
        fail();
        return;
    }
    *out = (line->a * p->x + line->b * p->y + line->c) / norm;
}

// Same signed guard as UTMAT_CalculerDeportPtDroite, on the squared norm.
void UTMAT_ProjeterPtSurDroite(const UTMAT_Droite *line, const dpoint2d *p, dpoint2d *out)
{
    enterKernel();
    const UTMAT_Droite d = *line;
    const double n = d.a * d.a + d.b * d.b;
    if (!(n > d.c * kLineGuard)) {
        fail();
        return;
    }
    const double t = (d.a * p->x + d.b * p->y + d.c) / n;
    const dpoint2d q = *p;
    out->x = q.x - d.a * t;
    out->y = q.y - d.b * t;
}

int32_t UTMAT_CalculerClassePtDroite(const dpoint2d *p, const UTMAT_Droite *line, double tol)
{
    enterKernel();
    if (failIfNull(p, line)) return 0;
    const double s = line->a * p->x + line->b * p->y + line->c;
    if (s < -tol) return -1;
    if (s > tol) return 1;
    return 0;
}

// With n1, n2 the norms of the two normals, n2 d1 - n1 d2 and
// -(n2 d1) - (n1 d2) are the two bisectors, left unnormalised.
void UTMAT_CalculerBissectriceD1D2(const UTMAT_Droite *d1, const UTMAT_Droite *d2, UTMAT_Droite out[2])
{
    enterKernel();
    if (failIfNull(d1, d2)) return;
    const UTMAT_Droite l1 = *d1;
    const UTMAT_Droite l2 = *d2;
    const double n1 = norm2(l1.a, l1.b);
    const double n2 = norm2(l2.a, l2.b);
    out[0] = UTMAT_Droite{n2 * l1.a - n1 * l2.a, n2 * l1.b - n1 * l2.b, n2 * l1.c - n1 * l2.c};
    out[1] = UTMAT_Droite{-(n2 * l1.a) - (n1 * l2.a), -(n2 * l1.b) - (n1 * l2.b), -(n2 * l1.c) - (n1 * l2.c)};
}

// The unit vector that halves the counter-clockwise sweep from v1 to v2, so
// that it always lies on the left of v1.
void UTMAT_CalculerBissectriceV1V2(const dpoint2d *v1, const dpoint2d *v2, dpoint2d *out)
{
    enterKernel();
    if (failIfNull(v1, v2, out)) return;
    dpoint2d u1 = *v1;
    dpoint2d u2 = *v2;
    UTMAT_NormerVecteur(&u1);
    UTMAT_NormerVecteur(&u2);
    const double w = u1.x * u2.y - u1.y * u2.x;
    if (UTMAT_Egal(w, 0.0, utmatCalculPrec)) {
        // Collinear: a dot product that is not negative gives u1 (a NaN one
        // too), opposite senses the left normal of u1.
        if (!(u1.x * u2.x + u1.y * u2.y < 0.0)) {
            *out = u1;
        } else {
            *out = dpoint2d{-u1.y, u1.x};
        }
        return;
    }
    dpoint2d sum{u1.x + u2.x, u1.y + u2.y};
    if (w < 0.0) sum = dpoint2d{-sum.x, -sum.y};
    UTMAT_NormerVecteur(&sum);
    *out = sum;
}

// Solves the 2 x 2 system of the normalised lines, then refines the solution
// by one step on the residuals. The parallel test only guards the division:
// nearly parallel lines do give a far-away crossing.
void UTMAT_CalculerIntersection2Droite(const UTMAT_Droite *d1, const UTMAT_Droite *d2, dpoint2d *out,
                                       int32_t *count)
{
    enterKernel();
    if (failIfNull(d1, d2, out, count)) return;
    *count = 0;
    UTMAT_Droite l1 = *d1;
    UTMAT_Droite l2 = *d2;
    UTMAT_NormerDroite(&l1, nullptr);
    if (nestedFailed()) return;
    UTMAT_NormerDroite(&l2, nullptr);
    if (nestedFailed()) return;

    const double det = l2.b * l1.a - l1.b * l2.a;
    // The larger c is taken with its sign.
    const double larger = l1.c > l2.c ? l1.c : l2.c;
    if (!(std::fabs(det) > std::fabs(larger * kLineGuard))) return;

    *count = 1;
    const double i = 1.0 / det;
    const double x0 = i * l1.b * l2.c - i * l2.b * l1.c;
    const double y0 = i * l2.a * l1.c - i * l1.a * l2.c;
    const double r1 = l1.a * x0 + l1.b * y0 + l1.c;
    const double r2 = l2.a * x0 + l2.b * y0 + l2.c;
    out->x = r2 * i * l1.b - r1 * i * l2.b + x0;
    out->y = r1 * i * l2.a - r2 * i * l1.a + y0;
}

/* ---- Lines of space and frames ---- */

// Coincident points give a zero direction and no error.
void UTMAT_CalculerDroite2Pt3d(const dpoint3d *p1, const dpoint3d *p2, UTMAT_Droite3d *out)
{
    enterKernel();
    const dpoint3d from = *p1;
    const dpoint3d to = *p2;
    out->point = from;
    out->direction = dpoint3d{to.x - from.x, to.y - from.y, to.z - from.z};
    UTMAT_NormerVecteur3d(&out->direction);
}

// The distance is |direction x (p - point)|, the direction being taken as
// of unit length.
void UTMAT_CalculerDeportPtDroite3d(const UTMAT_Droite3d *line, const dpoint3d *p, double *out)
{
    enterKernel();
    const dpoint3d d = line->direction;
    const dpoint3d v{p->x - line->point.x, p->y - line->point.y, p->z - line->point.z};
    const dpoint3d c{d.y * v.z - d.z * v.y, d.z * v.x - d.x * v.z, d.x * v.y - d.y * v.x};
    *out = std::sqrt(c.x * c.x + c.y * c.y + c.z * c.z);
}

void UTMAT_ChangerRepere(const dpoint2d *p, const dpoint2d *origin, double angle, dpoint2d *out)
{
    enterKernel();
    if (failIfNull(p, origin, out)) return;
    const double dx = p->x - origin->x;
    const double dy = p->y - origin->y;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    out->x = dx * c + dy * s;
    out->y = dy * c - dx * s;
}

void UTMAT_CalculerPointTranslationRotation(const dpoint2d *origin, double angle, dpoint2d *p)
{
    enterKernel();
    if (failIfNull(origin, p)) return;
    const double x = p->x;
    const double y = p->y;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    p->x = x * c - y * s + origin->x;
    p->y = y * c + x * s + origin->y;
}

// The second frame's origin O satisfies pA = O + R(angle) pB.
void UTMAT_CalculerCentreRepere2(const dpoint2d *pA, const dpoint2d *pB, double angle, dpoint2d *out)
{
    enterKernel();
    if (failIfNull(pA, pB, out)) return;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const dpoint2d a = *pA;
    const dpoint2d b = *pB;
    out->x = a.x - c * b.x + s * b.y;
    out->y = a.y - s * b.x - c * b.y;
}
