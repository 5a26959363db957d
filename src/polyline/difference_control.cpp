// The meeting points of two profiles that bound a real stretch. The shared
// worker runs with a temporary areas table; a side of a meeting point whose
// area is near-equal to 0 counts as equal levels, and a point equal on both
// sides is dropped.
#include <tessar/memory.h>
#include <tessar/polyline.h>

#include "frame/kernel.hpp"
#include "polyline/difference.hpp"

using namespace tessar::detail;

namespace {

// Relabels the side before and the side after each meeting point as equal
// when the area on that side is near-equal to 0; areas holds count + 1
// entries, entry k before point k and entry k + 1 after it.
void relabelSidesWithoutArea(std::uint32_t *types, const double *areas, std::int32_t count, double tol)
{
    for (std::int32_t k = 0; k < count; ++k) {
        std::uint32_t &word = types[k];
        const std::uint32_t before = word & TESSAR_DIFF_BEFORE_MASK;
        const std::uint32_t after = word & TESSAR_DIFF_AFTER_MASK;
        if ((before == TESSAR_DIFF_BEFORE_BELOW || before == TESSAR_DIFF_BEFORE_ABOVE) &&
            egal(areas[k], 0.0, tol))
            word = (word & ~TESSAR_DIFF_BEFORE_MASK) | TESSAR_DIFF_BEFORE_EQUAL;
        if ((after == TESSAR_DIFF_AFTER_BELOW || after == TESSAR_DIFF_AFTER_ABOVE) &&
            egal(areas[k + 1], 0.0, tol))
            word = (word & ~TESSAR_DIFF_AFTER_MASK) | TESSAR_DIFF_AFTER_EQUAL;
    }
}

bool equalOnBothSides(std::uint32_t word)
{
    return (word & TESSAR_DIFF_BEFORE_EQUAL) != 0 && (word & TESSAR_DIFF_AFTER_EQUAL) != 0;
}

// Removes the meeting points with equal levels on both sides from the points
// and the types, which share the count. False on a table failure.
bool removePointsEqualOnBothSides(dpoint2d **points, std::uint32_t **types, std::int32_t *count)
{
    std::int32_t k = 0;
    while (k < *count) {
        if (!equalOnBothSides((*types)[k])) {
            ++k;
            continue;
        }
        std::int32_t n = *count;
        MEM_SupprimerElementDansTableau(reinterpret_cast<void **>(points), sizeof(dpoint2d), &n, k);
        if (tableFailed()) return false;
        n = *count;
        MEM_SupprimerElementDansTableau(reinterpret_cast<void **>(types), sizeof(std::uint32_t), &n, k);
        if (tableFailed()) return false;
        *count = n;
    }
    return true;
}

}  // namespace

// points, types and count are required and not tested.
void UTMAT_CalculerDifference2PolylignesAvecControleSurface(const dpoint2d *pts1, int32_t n1,
                                                            const dpoint2d *pts2, int32_t n2,
                                                            double *lengthAbove, double *areaAbove,
                                                            double *lengthBelow, double *areaBelow,
                                                            dpoint2d **points, uint32_t **types,
                                                            int32_t *count)
{
    enterKernel();
    double *areas = nullptr;
    utmat_CalculerDifference2Polylignes(pts1, n1, pts2, n2, lengthAbove, areaAbove, lengthBelow, areaBelow,
                                        points, types, &areas, count, nullptr, nullptr, nullptr);
    const bool walked = !nestedFailed();
    if (walked) relabelSidesWithoutArea(*types, areas, *count, UTMAT_getCalculPrec());
    // The temporary table goes on every path; freeing it leaves the kernel's word alone.
    if (areas != nullptr) MEM_LibererTableau(reinterpret_cast<void **>(&areas));
    if (walked) removePointsEqualOnBothSides(points, types, count);
}
