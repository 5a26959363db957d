// The complex translation: every segment of a polyline moved by a vector of
// its own, the moved segments joined end to end.
#include <tessar/memory.h>
#include <tessar/polyline.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

// The table is created at once with room for every possible vertex, two per
// segment, so the caller's pointer must be null on entry. Two successive
// segments with the same vector share their joint; different vectors leave a
// connecting segment between the moved ends.
void UTMAT_TranslationComplexePolyligne(const dpoint2d *pts, const dpoint2d *vectors, int32_t n, double tol,
                                        dpoint2d **points, int32_t *count)
{
    enterKernel();
    MEM_CreerTableau(reinterpret_cast<void **>(points), sizeof(dpoint2d), 2 * n);
    if (tableFailed()) return;
    std::int32_t used = 0;
    for (std::int32_t i = 0; i + 1 < n; ++i) {
        const dpoint2d start{pts[i].x + vectors[i].x, pts[i].y + vectors[i].y};
        const dpoint2d end{pts[i + 1].x + vectors[i].x, pts[i + 1].y + vectors[i].y};
        if (i == 0 || !pointsIdentiques(start, (*points)[used - 1], tol)) (*points)[used++] = start;
        (*points)[used++] = end;
    }
    *count = used;
}
