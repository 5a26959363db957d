// Cutting a polyline monotonic in x in two: at a point taken on it, with the
// caller's tolerance, or at a plain abscissa, exactly.
#include <cstring>

#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/polyline.h>
#include <tessar/system.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"
#include "polyline/segment.hpp"

namespace tessar::detail {

bool copyPoints(const dpoint2d *src, std::int32_t count, dpoint2d **table, std::int32_t *n) noexcept
{
    if (count <= 0) return true;
    MEM_CreerTableau(reinterpret_cast<void **>(table), sizeof(dpoint2d), count);
    if (tableFailed()) return false;
    std::memcpy(*table, src, sizeof(dpoint2d) * static_cast<std::size_t>(count));
    *n = count;
    return true;
}

namespace {

/* ---- Cut at a point ---- */

struct Half {
    dpoint2d **pts;
    std::int32_t *n;
};

// Steps 3 and 4: the vertices before the cut go to the first half; returns
// the index of the first vertex that goes to the second half, or -1 on a
// table failure.
std::int32_t fillFirstHalf(const dpoint2d *pts, std::int32_t n, const dpoint2d &cut, double tol,
                           bool ascending, const Half &first) noexcept
{
    if (!appendPoint(first.pts, first.n, pts[0])) return -1;
    std::int32_t i = 1;
    const auto before = [&](double x) {
        return ascending ? tsUtil_lessDouble(x, cut.x, tol) != 0 : tsUtil_greaterDouble(x, cut.x, tol) != 0;
    };
    while (i < n - 1 && before(pts[i].x)) {
        if (!appendPoint(first.pts, first.n, pts[i])) return -1;
        ++i;
    }
    if (!tsUtil_equalDouble(pts[i].x, cut.x, tol)) return i;
    // A vertical step at the cut: its vertices below the cut stay in the first half.
    while (i < n - 1 && tsUtil_equalDouble(pts[i + 1].x, cut.x, tol)) {
        std::int32_t sur = 0;
        UTMAT_ComparerPointASegment(&cut, &pts[i], &pts[i + 1], tol, &sur);
        if (sur) {
            if (!pointsIdentiques(pts[i], cut, tol)) {
                if (!appendPoint(first.pts, first.n, pts[i])) return -1;
                ++i;
            }
            break;
        }
        if (!appendPoint(first.pts, first.n, pts[i])) return -1;
        ++i;
    }
    if (pointsIdentiques(pts[i], cut, tol)) ++i;
    return i;
}

/* ---- Cut at an abscissa ---- */

enum class CutCase { Vertex, Inside, None };

struct CutPosition {
    CutCase kind = CutCase::None;
    std::int32_t first = 0;  // Vertex: first and last index of the run at x
    std::int32_t last = 0;
    std::int32_t segment = 0;  // Inside: the segment that holds x
    double y = 0.0;
};

// Step 3: the first segment that holds x, exactly; a run of vertices at x
// (a vertical step) is stepped over as a whole.
CutPosition findCut(const dpoint2d *pts, std::int32_t n, double x) noexcept
{
    CutPosition at;
    for (std::int32_t i = 0; i + 1 < n; ++i) {
        if (pts[i].x == x) {
            at.kind = CutCase::Vertex;
            at.first = at.last = i;
            while (at.last + 1 < n && pts[at.last + 1].x == x)
                ++at.last;
            return at;
        }
        if ((pts[i].x < x && x < pts[i + 1].x) || (pts[i + 1].x < x && x < pts[i].x)) {
            at.kind = CutCase::Inside;
            at.segment = i;
            at.y = ordinateOnSegment(pts[i], pts[i + 1], x);
            return at;
        }
    }
    return at;
}

// Steps 4 to 6, on the copy that runs toward increasing x.
bool makeHalves(const dpoint2d *pts, std::int32_t n, double x, const CutPosition &at, const Half &low,
                const Half &high) noexcept
{
    switch (at.kind) {
    case CutCase::Vertex:
        if (at.first > 0 && !copyPoints(pts, at.first + 1, low.pts, low.n)) return false;
        if (at.last < n - 1 && !copyPoints(pts + at.last, n - at.last, high.pts, high.n)) return false;
        return true;
    case CutCase::Inside: {
        const dpoint2d cut{x, at.y};
        if (!copyPoints(pts, at.segment + 1, low.pts, low.n) || !appendPoint(low.pts, low.n, cut))
            return false;
        if (!appendPoint(high.pts, high.n, cut)) return false;
        for (std::int32_t k = at.segment + 1; k < n; ++k)
            if (!appendPoint(high.pts, high.n, pts[k])) return false;
        return true;
    }
    case CutCase::None:
        return copyPoints(pts, n, low.pts, low.n);
    }
    return true;
}

void reverseHalf(const Half &half) noexcept
{
    if (*half.pts != nullptr) tsUtil_reverseArray(*half.pts, *half.n, sizeof(dpoint2d));
}

}  // namespace
}  // namespace tessar::detail

using namespace tessar::detail;

void UTMAT_SegmenterPolyligne(const dpoint2d *pts, int32_t n, const dpoint2d *cut, double tol,
                              dpoint2d **first, int32_t *n1, dpoint2d **second, int32_t *n2)
{
    enterKernel();
    if (n < 1) return (void)fail();
    const bool ascending = !(pts[0].x > pts[n - 1].x);
    const double lo = ascending ? pts[0].x : pts[n - 1].x;
    const double hi = ascending ? pts[n - 1].x : pts[0].x;
    if (!tsUtil_belongToClosedIntervalDouble(cut->x, lo, hi, tol)) return (void)fail();
    *first = nullptr;
    *n1 = 0;
    *second = nullptr;
    *n2 = 0;
    if (tsUtil_equalDouble(cut->x, pts[0].x, tol)) {
        copyPoints(pts, n, second, n2);
        return;
    }
    if (tsUtil_equalDouble(cut->x, pts[n - 1].x, tol)) {
        copyPoints(pts, n, first, n1);
        return;
    }
    const std::int32_t i = fillFirstHalf(pts, n, *cut, tol, ascending, {first, n1});
    if (i < 0 || !appendPoint(first, n1, *cut)) return;
    if (!appendPoint(second, n2, *cut)) return;
    for (std::int32_t k = i; k < n; ++k)
        if (!appendPoint(second, n2, pts[k])) return;
}

void UTMAT_SegmenterPolyligneAAbscisse(const dpoint2d *pts, int32_t n, double x, dpoint2d **low, int32_t *n1,
                                       dpoint2d **high, int32_t *n2)
{
    enterKernel();
    *low = nullptr;
    *n1 = 0;
    *high = nullptr;
    *n2 = 0;
    if (n < 1) return (void)fail();
    dpoint2d *copy = nullptr;
    std::int32_t count = 0;
    if (!copyPoints(pts, n, &copy, &count)) return;
    const bool reversed = copy[n - 1].x < copy[0].x;
    if (reversed) tsUtil_reverseArray(copy, n, sizeof(dpoint2d));
    if (!tsUtil_belongToClosedIntervalDouble(x, copy[0].x, copy[n - 1].x, 0.0)) {
        fail();
    } else if (makeHalves(copy, n, x, findCut(copy, n, x), {low, n1}, {high, n2}) && reversed) {
        // The halves are turned back to the polyline's direction but not
        // exchanged: the first output stays the part of smaller abscissas.
        reverseHalf({low, n1});
        reverseHalf({high, n2});
    }
    MEM_LibererTableau(reinterpret_cast<void **>(&copy));
}
