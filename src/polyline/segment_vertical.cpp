// Cutting a contour along a vertical into a closed outline on each side,
// with exact comparisons. The contour is first copied into a working table
// with its crossing points inserted; the first and the last contact with the
// vertical on each side then bound the outline of that side.
#include <array>

#include <tessar/memory.h>
#include <tessar/polyline.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"
#include "polyline/segment.hpp"

namespace tessar::detail {
namespace {

enum Side { kLeft = 0, kRight = 1 };

// The first contact of a side goes to slot 0, every further one overwrites
// slot 1: only the first and the last contact count.
struct Contacts {
    std::array<std::int32_t, 2> slot{-1, -1};
    std::int32_t count = 0;

    void record(std::int32_t index) noexcept
    {
        slot[count == 0 ? 0 : 1] = index;
        ++count;
    }
    std::int32_t start() const noexcept { return slot[0]; }
    // A side met once has no second slot; its outline is then the chord alone.
    std::int32_t end() const noexcept { return count > 1 ? slot[1] : slot[0]; }
};

// The contour with its crossing points, in a MEM_ table that starts with room
// for n + 4 points and grows when a contour meets the vertical more often.
struct WorkTable {
    dpoint2d *pts = nullptr;
    std::int32_t count = 0;
    std::int32_t room = 0;

    bool create(std::int32_t n) noexcept
    {
        room = n + 4;
        MEM_CreerTableau(reinterpret_cast<void **>(&pts), sizeof(dpoint2d), room);
        return !tableFailed();
    }
    bool push(const dpoint2d &p) noexcept
    {
        if (count == room) {
            room *= 2;
            MEM_ModifierTailleTableau(reinterpret_cast<void **>(&pts), sizeof(dpoint2d), room);
            if (tableFailed()) return false;
        }
        pts[count++] = p;
        return true;
    }
    ~WorkTable()
    {
        if (pts != nullptr) MEM_LibererTableau(reinterpret_cast<void **>(&pts));
    }
};

// Step 1: vertices and crossing points in order, with the contacts of each side.
bool collectContacts(const dpoint2d *pts, std::int32_t n, double x, WorkTable &work,
                     std::array<Contacts, 2> &contacts) noexcept
{
    for (std::int32_t i = 0; i <= n - 2; ++i) {
        const dpoint2d &v = pts[i];
        const dpoint2d &prev = pts[i == 0 ? n - 2 : i - 1];
        const dpoint2d &next = pts[i + 1];
        if (!work.push(v)) return false;
        const std::int32_t index = work.count - 1;
        if (v.x == x) {
            if (prev.x > x || next.x > x) contacts[kRight].record(index);
            if (prev.x < x || next.x < x) contacts[kLeft].record(index);
        } else if ((v.x < x && next.x > x) || (v.x > x && next.x < x)) {
            if (!work.push({x, ordinateOnSegment(v, next, x)})) return false;
            contacts[kRight].record(work.count - 1);
            contacts[kLeft].record(work.count - 1);
        }
    }
    return true;
}

// Step 5: the outline of one side, from its first contact round the side's
// own vertices to its last contact, closed by the vertical chord.
bool buildSide(const WorkTable &work, const Contacts &contacts, Side side, double x, dpoint2d **out,
               std::int32_t *n) noexcept
{
    MEM_CreerTableau(reinterpret_cast<void **>(out), sizeof(dpoint2d), work.count + 1);
    if (tableFailed()) return false;
    const std::int32_t s = contacts.start();
    const std::int32_t e = contacts.end();
    const double afterX = work.pts[(s + 1) % work.count].x;
    const bool forward = side == kLeft ? afterX < x : afterX > x;
    const std::int32_t step = forward ? 1 : work.count - 1;
    std::int32_t k = 0;
    for (std::int32_t i = s; i != e; i = (i + step) % work.count)
        (*out)[k++] = work.pts[i];
    (*out)[k++] = work.pts[e];
    (*out)[k++] = work.pts[s];
    *n = k;
    return true;
}

}  // namespace
}  // namespace tessar::detail

using namespace tessar::detail;

void UTMAT_SegmenterContourParVerticale(const dpoint2d *pts, int32_t n, double x, dpoint2d **left,
                                        int32_t *n1, dpoint2d **right, int32_t *n2)
{
    enterKernel();
    if (n < 1) return (void)fail();
    WorkTable work;
    std::array<Contacts, 2> contacts{};
    if (!work.create(n) || !collectContacts(pts, n, x, work, contacts)) return;
    const bool onLeft = contacts[kLeft].count > 0;
    const bool onRight = contacts[kRight].count > 0;
    if (!onLeft && !onRight) {
        // Wholly on one side: the side of the first vertex, the right when it lies on x.
        if (!(x > pts[0].x))
            copyPoints(pts, n, right, n2);
        else
            copyPoints(pts, n, left, n1);
    } else if (!onLeft) {
        copyPoints(pts, n, right, n2);
    } else if (!onRight) {
        copyPoints(pts, n, left, n1);
    } else if (buildSide(work, contacts[kLeft], kLeft, x, left, n1)) {
        buildSide(work, contacts[kRight], kRight, x, right, n2);
    }
}
