// Internal pieces of the point arrays: the polygon measures that the centroid
// shares with callers who want the perimeter or the enclosed area too.
#pragma once

#include <cstdint>

#include <tessar/types.h>

namespace tessar::detail {

// Perimeter, enclosed area and centroid of the ring through n points, with
// the closing edge from the last point to the first added. Each output is
// optional. The area is the magnitude of the trapezoid sum taken above the
// lowest y; when that magnitude is below 1e-10 the area is 0.0 and the
// centroid (0, 0, 0). The perimeter is written in every case.
void tsPointArray_computePolygonProperties(double *perimeter, double *area, dpoint3d *centroid,
                                           const dpoint3d *array, int32_t n);

}  // namespace tessar::detail
