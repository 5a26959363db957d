// The difference of two profiles: the shared worker behind the exported
// difference functions.
//
// The difference at x is y on polyline 1 minus y on polyline 2, both running
// toward increasing x. The worker merges the two segment sequences once,
// comparing each pair of segments over their common interval, and measures
// every stretch exactly as a mean height over a width.
#pragma once

#include <cstdint>

#include <tessar/types.h>

namespace tessar::detail {

// Sums, meeting points, areas and pieces of polyline 1 against polyline 2,
// with the arguments of UTMAT_CalculateDiff2Lines. Any sum may be null, and so
// may any table; meeting points are recorded only when points, types and
// count are all given, pieces only when pieces, signs and pieceCount are. The
// table pointers (not *areas, which the caller sets to null), the counts and
// the sums are cleared first. The tolerance of the near-zero tests is
// UTMAT_getCalculPrec. It does not clear the error word; a table failure is
// copied into it and ends the walk with the sums and tables as they stand.
void utmat_CalculerDifference2Polylignes(const dpoint2d *pts1, std::int32_t n1, const dpoint2d *pts2,
                                         std::int32_t n2, double *lengthAbove, double *areaAbove,
                                         double *lengthBelow, double *areaBelow, dpoint2d **points,
                                         std::uint32_t **types, double **areas, std::int32_t *count,
                                         dpoint2d **pieces, std::int32_t **signs,
                                         std::int32_t *pieceCount) noexcept;

}  // namespace tessar::detail
