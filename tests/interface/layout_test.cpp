// Record layouts that callers rely on: sizes and field offsets of the public
// records, checked at compile time, and the whole interface compiled through
// the one umbrella header.
#include <cstddef>
#include <cstdint>

#include <gtest/gtest.h>

#include <tessar/tessar.h>

namespace {

#define TESSAR_FIELD_AT(type, field, offset)                                                                 \
    static_assert(offsetof(type, field) == (offset), #type "." #field)

static_assert(sizeof(dpoint2d) == 2 * sizeof(double));
TESSAR_FIELD_AT(dpoint2d, y, 8);
static_assert(sizeof(dpoint3d) == 3 * sizeof(double));
TESSAR_FIELD_AT(dpoint3d, z, 16);

static_assert(sizeof(UTMAT_Droite) == 3 * sizeof(double));
TESSAR_FIELD_AT(UTMAT_Droite, a, 0);
TESSAR_FIELD_AT(UTMAT_Droite, b, 8);
TESSAR_FIELD_AT(UTMAT_Droite, c, 16);
static_assert(sizeof(UTMAT_Droite3d) == 6 * sizeof(double));
TESSAR_FIELD_AT(UTMAT_Droite3d, direction, 24);

// tsLine: origin, unit direction, length: seven doubles.
static_assert(sizeof(tsLine) == 7 * sizeof(double));
TESSAR_FIELD_AT(tsLine, origin, 0);
TESSAR_FIELD_AT(tsLine, direction, 24);
TESSAR_FIELD_AT(tsLine, length, 48);

// tsTransform: twelve doubles, row after row.
static_assert(sizeof(tsTransform) == 12 * sizeof(double));

// tsMatrix: rows, cols, data.
TESSAR_FIELD_AT(tsMatrix, rows, 0);
TESSAR_FIELD_AT(tsMatrix, cols, 4);
TESSAR_FIELD_AT(tsMatrix, data, 8);
static_assert(sizeof(tsMatrix) == 16);

TESSAR_FIELD_AT(tsLineString, points, 0);
TESSAR_FIELD_AT(tsLineString, count, 8);

// The guid: 16 bytes, data1 to data4 in order.
static_assert(sizeof(tsGuid) == 16);
TESSAR_FIELD_AT(tsGuid, data2, 4);
TESSAR_FIELD_AT(tsGuid, data3, 6);
TESSAR_FIELD_AT(tsGuid, data4, 8);

// The parameter record of the polyline-polyline functions.
TESSAR_FIELD_AT(ParamIntersectionPolylignes, points1, 0);
TESSAR_FIELD_AT(ParamIntersectionPolylignes, nbPoints1, 8);
TESSAR_FIELD_AT(ParamIntersectionPolylignes, points2, 16);
TESSAR_FIELD_AT(ParamIntersectionPolylignes, nbPoints2, 24);
TESSAR_FIELD_AT(ParamIntersectionPolylignes, tolerance, 32);
TESSAR_FIELD_AT(ParamIntersectionPolylignes, nbMax, 40);
TESSAR_FIELD_AT(ParamIntersectionPolylignes, abscisses1, 48);
TESSAR_FIELD_AT(ParamIntersectionPolylignes, abscisses2, 56);

// The attribute of a mask vertex: the caller's value, then the "above" flag.
TESSAR_FIELD_AT(UTMAT_AttributMasque, valeur, 0);
TESSAR_FIELD_AT(UTMAT_AttributMasque, dessus, 4);

// A tree node: contents, key (a 64-bit union), level, count, then the links.
static_assert(sizeof(tsBtreeKey) == 8);
TESSAR_FIELD_AT(tsBtreeNode, contents, 0);
TESSAR_FIELD_AT(tsBtreeNode, key, 8);
TESSAR_FIELD_AT(tsBtreeNode, level, 16);
TESSAR_FIELD_AT(tsBtreeNode, count, 20);
TESSAR_FIELD_AT(tsBtreeNode, left, 24);
TESSAR_FIELD_AT(tsBtreeNode, right, 32);
TESSAR_FIELD_AT(tsBtreeNode, parent, 40);
static_assert(sizeof(tsBtreeNode) == 48);

#undef TESSAR_FIELD_AT

// The same layouts seen from a running program: the library writes a tsLine
// and a guid's fields where a C caller reads them.
TEST(Layout, RecordsAreFlatArraysOfTheirFields)
{
    tsLine line{{1.0, 2.0, 3.0}, {0.0, 0.0, 1.0}, 7.5};
    const double *flat = reinterpret_cast<const double *>(&line);
    const double expected[7] = {1.0, 2.0, 3.0, 0.0, 0.0, 1.0, 7.5};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(flat[i], expected[i]);

    tsTransform t{};
    t.m[1][3] = 9.0;  // ty: the fourth value of the second row
    EXPECT_EQ(reinterpret_cast<const double *>(&t)[7], 9.0);
}

}  // namespace
