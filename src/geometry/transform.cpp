// Affine transforms of space. A tsTransform is a 4 by 4 matrix whose last
// row (0 0 0 1) is implied; every building operation is a product with an
// elementary matrix through tsTransform_multiply, so that scale, translate
// and the rotations round exactly as the full product does.
#include <cmath>
#include <cstdio>

#include <tessar/frame.h>
#include <tessar/transform.h>

namespace {

constexpr int32_t kFailure = TESSAR_FAILURE;

tsTransform identity()
{
    tsTransform t{};
    t.m[0][0] = 1.0;
    t.m[1][1] = 1.0;
    t.m[2][2] = 1.0;
    return t;
}

// The transform with only the linear part of T: it moves directions, not
// positions.
tsTransform linearPart(const tsTransform &T)
{
    tsTransform t = T;
    t.m[0][3] = 0.0;
    t.m[1][3] = 0.0;
    t.m[2][3] = 0.0;
    return t;
}

dpoint3d move(const tsTransform &T, const dpoint3d &p)
{
    dpoint3d q;
    q.x = T.m[0][0] * p.x + T.m[0][1] * p.y + T.m[0][2] * p.z + T.m[0][3];
    q.y = T.m[1][0] * p.x + T.m[1][1] * p.y + T.m[1][2] * p.z + T.m[1][3];
    q.z = T.m[2][0] * p.x + T.m[2][1] * p.y + T.m[2][2] * p.z + T.m[2][3];
    return q;
}

// The image of the plane vector (dx, dy) under the linear part of T, taken
// as the difference of the moved tip and the moved origin.
dpoint3d moveVector2d(const tsTransform &T, double dx, double dy)
{
    const tsTransform L = linearPart(T);
    const dpoint3d origin = move(L, dpoint3d{0.0, 0.0, 0.0});
    const dpoint3d tip = move(L, dpoint3d{dx, dy, 0.0});
    return dpoint3d{tip.x - origin.x, tip.y - origin.y, 0.0};
}

tsTransform rotationZ(double a)
{
    tsTransform r = identity();
    r.m[0][0] = std::cos(a);
    r.m[0][1] = -std::sin(a);
    r.m[1][0] = std::sin(a);
    r.m[1][1] = std::cos(a);
    return r;
}

tsTransform rotationY(double a)
{
    tsTransform r = identity();
    r.m[0][0] = std::cos(a);
    r.m[0][2] = std::sin(a);
    r.m[2][0] = -std::sin(a);
    r.m[2][2] = std::cos(a);
    return r;
}

tsTransform rotationX(double a)
{
    tsTransform r = identity();
    r.m[1][1] = std::cos(a);
    r.m[1][2] = -std::sin(a);
    r.m[2][1] = std::sin(a);
    r.m[2][2] = std::cos(a);
    return r;
}

}  // namespace

/* ---- Building a transform ---- */

int32_t tsTransform_setIdentity(tsTransform *T)
{
    *T = identity();
    return 0;
}

int32_t tsTransform_setTranslation(tsTransform *T, double x, double y, double z)
{
    T->m[0][3] = x;
    T->m[1][3] = y;
    T->m[2][3] = z;
    return 0;
}

// With L the linear part, the map p -> L p + (P - L P) leaves P where it is.
int32_t tsTransform_setOrigin(tsTransform *T, const dpoint3d *P)
{
    const dpoint3d Q = move(linearPart(*T), *P);
    T->m[0][3] = P->x - Q.x;
    T->m[1][3] = P->y - Q.y;
    T->m[2][3] = P->z - Q.z;
    return 0;
}

// out = A * B of the two 4 by 4 matrices. The bottom row (0 0 0 1) of B adds
// A's translation to the translation column only. Built in a temporary, so
// out may be A or B.
int32_t tsTransform_multiply(tsTransform *out, const tsTransform *A, const tsTransform *B)
{
    tsTransform p;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c)
            p.m[r][c] = A->m[r][0] * B->m[0][c] + A->m[r][1] * B->m[1][c] + A->m[r][2] * B->m[2][c];
        p.m[r][3] = A->m[r][0] * B->m[0][3] + A->m[r][1] * B->m[1][3] + A->m[r][2] * B->m[2][3] + A->m[r][3];
    }
    *out = p;
    return 0;
}

int32_t tsTransform_scale(tsTransform *T, double sx, double sy, double sz)
{
    tsTransform S = identity();
    S.m[0][0] = sx;
    S.m[1][1] = sy;
    S.m[2][2] = sz;
    return tsTransform_multiply(T, T, &S);
}

int32_t tsTransform_translate(tsTransform *T, double dx, double dy, double dz)
{
    tsTransform D = identity();
    tsTransform_setTranslation(&D, dx, dy, dz);
    return tsTransform_multiply(T, T, &D);
}

int32_t tsTransform_rotateByAngle2d(tsTransform *T, double angle)
{
    const tsTransform R = rotationZ(angle);
    return tsTransform_multiply(T, T, &R);
}

// Unlike the other building operations, the three turns multiply on the
// left, z first: the rotation acts after T, about the world axes, and so
// turns T's translation as well.
int32_t tsTransform_rotateByAngle3d(tsTransform *T, double ax, double ay, double az)
{
    const tsTransform Rz = rotationZ(az);
    const tsTransform Ry = rotationY(ay);
    const tsTransform Rx = rotationX(ax);
    tsTransform_multiply(T, &Rz, T);
    tsTransform_multiply(T, &Ry, T);
    return tsTransform_multiply(T, &Rx, T);
}

/* ---- Applying a transform ---- */

int32_t tsTransform_movePoint(const tsTransform *T, dpoint3d *out, const dpoint3d *in)
{
    *out = move(*T, *in);
    return 0;
}

int32_t tsTransform_moveDirection2d(const tsTransform *T, dpoint3d *direction)
{
    if (T == nullptr || direction == nullptr) return kFailure;
    // z is cleared whatever it held, and the length is left as the linear
    // part makes it.
    *direction = moveVector2d(*T, direction->x, direction->y);
    return 0;
}

int32_t tsTransform_moveAngle(const tsTransform *T, double *angle)
{
    if (T == nullptr || angle == nullptr) return kFailure;
    const dpoint3d d = moveVector2d(*T, std::cos(*angle), std::sin(*angle));
    *angle = std::atan2(d.y, d.x);
    return 0;
}

int32_t tsTransform_printf(const tsTransform *T)
{
    std::printf("====MATH BEGIN====\n");
    for (const auto &row : T->m)
        std::printf("%f,%f,%f,%f\n", row[0], row[1], row[2], row[3]);
    std::printf("====MATH END====\n");
    return 0;
}
