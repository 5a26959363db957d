// Point arrays as plain storage: moving, cloning and releasing, setting z,
// reversing, reading one point, and the closed rectangle over a diagonal.
// The older tsPoint_* names and the convex hull stub sit at the end.
#include <cstring>
#include <utility>

#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/pointarray.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

}  // namespace

/* ---- Copying, releasing and editing ---- */

int32_t tsPointArray_copy(dpoint3d *destination, int32_t n, const dpoint3d *source)
{
    if (!destination || !source || n < 1) return kFail;
    std::memmove(destination, source, static_cast<size_t>(n) * sizeof(dpoint3d));
    return 0;
}

int32_t tsPointArray_clone(dpoint3d **clone, const dpoint3d *source, int32_t n)
{
    if (!clone || !source || n < 1) return kFail;
    auto *copy = static_cast<dpoint3d *>(tsMem_calloc(static_cast<size_t>(n), sizeof(dpoint3d)));
    if (!copy) return kFail;
    std::memcpy(copy, source, static_cast<size_t>(n) * sizeof(dpoint3d));
    *clone = copy;
    return 0;
}

int32_t tsPointArray_free(dpoint3d **array)
{
    if (!array) return kFail;
    if (*array) tsMem_free(*array);
    *array = nullptr;
    return 0;
}

int32_t tsPointArray_setZ(dpoint3d *array, int32_t n, double z)
{
    if (!array) return kFail;
    for (int32_t i = 0; i < n; ++i)
        array[i].z = z;
    return 0;
}

// Nothing is checked: an array of fewer than two points is left as it is.
void tsPointArray_reverse(dpoint3d *array, int32_t n)
{
    for (int32_t i = 0, j = n - 1; i < j; ++i, --j)
        std::swap(array[i], array[j]);
}

int32_t tsPointArray_getCoordsByIndex2d(const dpoint3d *array, double *x, double *y, int32_t index)
{
    if (!array || !x || !y) return kFail;
    *x = array[index].x;
    *y = array[index].y;
    return 0;
}

// The corners go p1, (p2.x, p1.y), p2, (p1.x, p2.y) and back to p1; a corner
// takes its z from the point whose y it shares. The inputs are read before
// anything is written, so out may overlap them.
int32_t tsPointArray_blockPointsFromDiagonal(dpoint3d *out, const dpoint3d *p1, const dpoint3d *p2)
{
    if (!out || !p1 || !p2) return kFail;
    const dpoint3d a = *p1;
    const dpoint3d b = *p2;
    out[0] = a;
    out[1] = {b.x, a.y, a.z};
    out[2] = b;
    out[3] = {a.x, b.y, b.z};
    out[4] = a;
    return 0;
}

/* ---- Convex hull ---- */

// The library has no convex hull: this stub reads nothing and always fails,
// under both of its exported names.
int32_t tsPointArray_computeConvexHull2d(void)
{
    return kFail;
}

/* ---- Older forms: the same operations with their arguments reordered ---- */

int32_t tsPoint_copyMultiple(dpoint3d *destination, const dpoint3d *source, int32_t n)
{
    return tsPointArray_copy(destination, n, source);
}

int32_t tsPoint_freeArray(dpoint3d **array)
{
    return tsPointArray_free(array);
}

int32_t tsPoint_computeSimplePolygonArea2d(double *area, const dpoint3d *array, int32_t n)
{
    return tsPointArray_computeSimplePolygonArea2d(array, n, area);
}

int32_t tsPoint_computeConvexHull2d(void)
{
    return tsPointArray_computeConvexHull2d();
}

dpoint3d *tsPoint_blockPointsFromDiagonal(dpoint3d *out, const dpoint3d *p1, const dpoint3d *p2)
{
    return tsPointArray_blockPointsFromDiagonal(out, p1, p2) == 0 ? out : nullptr;
}

int32_t tsPoint_getCoordsFromPointArray(double *x, double *y, const dpoint3d *array, int32_t index)
{
    return tsPointArray_getCoordsByIndex2d(array, x, y, index);
}

int32_t tsPoint_isInsidePolygon(const dpoint3d *point, const dpoint3d *array, int32_t n)
{
    return tsPointArray_isPointInsidePolygon(array, n, point);
}

int32_t tsPoint_removeRedundantPointsFromArray(int32_t *count, dpoint3d *array, const dpoint3d *reference,
                                               int32_t n, double tolerance)
{
    return tsPointArray_removeRedundantPoints(array, count, n, reference, tolerance);
}

int32_t tsPoint_setZValue(dpoint3d *array, int32_t n, double z)
{
    return tsPointArray_setZ(array, n, z);
}
