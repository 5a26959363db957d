/*
 * Tessar: records shared by several families.
 *
 * Points and vectors are plain doubles in the caller's units; arrays of them
 * are contiguous, with a separate signed 32-bit count. Two markers live in
 * dpoint3d: a z of 3.4028234663852886e38 (the largest single-precision value)
 * means "no elevation", and any coordinate within 1.0 of the largest double
 * marks a disconnect. All records are owned by the caller.
 */
#ifndef TESSAR_TYPES_H
#define TESSAR_TYPES_H

#include <stddef.h>
#include <stdint.h>

#include <tessar/export.h>

TESSAR_BEGIN_DECLS

/** A point or a vector of the plane; in the root finder also a complex number. */
typedef struct dpoint2d {
    double x;
    double y;
} dpoint2d;

/** A point or a vector of space. */
typedef struct dpoint3d {
    double x;
    double y;
    double z;
} dpoint3d;

/**
 * The line a x + b y + c = 0 of the plane. (a, b) is the normal to the right
 * of the direction of travel, so a x + b y + c is positive on the right of
 * the line; the line's direction is (-b, a). Not necessarily normalised.
 */
typedef struct UTMAT_Droite {
    double a;
    double b;
    double c;
} UTMAT_Droite;

/** A line of space: a point on it and its direction, normally of unit length. */
typedef struct UTMAT_Droite3d {
    dpoint3d point;
    dpoint3d direction;
} UTMAT_Droite3d;

/**
 * A bounded line of space: origin, unit direction and length. Positions on
 * the line are fractions of its length (0 at the origin, 1 at the end).
 */
typedef struct tsLine {
    dpoint3d origin;
    dpoint3d direction;
    double length;
} tsLine;

/**
 * An affine transform of space: three rows (r00 r01 r02 tx), (r10 r11 r12 ty),
 * (r20 r21 r22 tz), stored row after row; the fourth row (0 0 0 1) is implied.
 */
typedef struct tsTransform {
    double m[3][4];
} tsTransform;

/**
 * A dense matrix of doubles, stored column after column: element (i, j) is
 * data[rows * j + i]. The data block belongs to the record until
 * tsMatrix_freeMatrix.
 */
typedef struct tsMatrix {
    int32_t rows;
    int32_t cols;
    double *data;
} tsMatrix;

/** A line string of space: its vertices and their count. */
typedef struct tsLineString {
    dpoint3d *points;
    int32_t count;
} tsLineString;

/** A 128-bit globally unique identifier (16 bytes). */
typedef struct tsGuid {
    uint32_t data1;
    uint16_t data2;
    uint16_t data3;
    uint8_t data4[8];
} tsGuid;

TESSAR_END_DECLS

#endif /* TESSAR_TYPES_H */
