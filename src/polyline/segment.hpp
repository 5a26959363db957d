// Cutting polylines and contours, and what lies inside a closed contour:
// the pieces shared by the cutting functions and the contour tests.
//
// A contour repeats its first vertex as its last, so it has n - 1 edges;
// edge k runs from vertex k - 1 to vertex k. Halves made by the cutting
// functions are MEM_ tables handed to the caller.
#pragma once

#include <cstdint>

#include <tessar/memory.h>
#include <tessar/polyline.h>
#include <tessar/types.h>

#include "frame/kernel.hpp"

namespace tessar::detail {

/* ---- MEM_ tables of plane points ---- */

// Appends one point to a MEM_ table. False, with the table failure copied
// into the kernel's word, when the table could not grow.
inline bool appendPoint(dpoint2d **table, std::int32_t *count, const dpoint2d &p) noexcept
{
    MEM_EtendreTableau(reinterpret_cast<void **>(table), sizeof(dpoint2d), count);
    if (tableFailed()) return false;
    (*table)[*count - 1] = p;
    return true;
}

// Makes a new MEM_ table holding the count points from src. An empty run
// leaves the table null. False on a table failure.
bool copyPoints(const dpoint2d *src, std::int32_t count, dpoint2d **table, std::int32_t *n) noexcept;

/* ---- A point against a contour ---- */

// The position of p against the contour, as UTMAT_PointDansContour gives it
// (TESSAR_CONTOUR_INSIDE, TESSAR_CONTOUR_OUTSIDE or -k on edge k), without
// touching the kernel's word on entry.
std::int32_t positionDansContour(const dpoint2d &p, const dpoint2d *pts, std::int32_t n, double tol) noexcept;

// 1 when the stretch pq runs along the contour: both ends on it and, halving
// the stretch until its ends are one within tol, every part on a single edge.
std::int32_t utmat_TronconSurContour(const dpoint2d &p, const dpoint2d &q, const dpoint2d *pts,
                                     std::int32_t n, double tol) noexcept;

}  // namespace tessar::detail
