// Thinning point arrays in place: points within a tolerance of the last kept
// point, and points within a tolerance of the line from the last anchor to a
// later point.
#include <cmath>
#include <new>
#include <vector>

#include <tessar/frame.h>
#include <tessar/point.h>
#include <tessar/pointarray.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// True when every point strictly between anchor and candidate lies within
// tolerance of the line from the anchor to the candidate. The candidate is
// taken at z = 0 and the anchor as it stands, so the line may climb; the
// offsets are measured in the plane all the same.
bool withinChord(const dpoint3d *array, int32_t anchor, int32_t candidate, double tolerance)
{
    dpoint3d end = array[candidate];
    end.z = 0.0;
    // A degenerate chord still gives a usable line, so the status is not read.
    tsLine chord{};
    tsLine_createBy2points(&chord, &array[anchor], &end);
    for (int32_t j = anchor + 1; j < candidate; ++j) {
        // A line with no plane direction cannot project: its offset is 0.0.
        double offset = 0.0;
        tsLine_projectPoint2d(&chord, nullptr, &offset, nullptr, &array[j]);
        if (std::fabs(offset) > tolerance) return false;
    }
    return true;
}

}  // namespace

// Each point is compared with the last point kept (or the reference, until a
// point is kept), never with its neighbour, so a run of points that creeps
// away in small steps is cut where it leaves the tolerance of the kept one.
// The reference is read once, so it may lie in the array itself.
int32_t tsPointArray_removeRedundantPoints(dpoint3d *array, int32_t *count, int32_t n,
                                           const dpoint3d *reference, double tolerance)
{
    if (!array || n < 1) return kFail;
    dpoint3d last{};
    bool haveLast = reference != nullptr;
    if (haveLast) last = *reference;
    int32_t kept = 0;
    for (int32_t i = 0; i < n; ++i) {
        if (haveLast && tsPoint_nearEqual2d(&array[i], &last, tolerance)) continue;
        array[kept] = array[i];
        last = array[kept];
        haveLast = true;
        ++kept;
    }
    if (count) *count = kept;
    return 0;
}

// The anchor stays while every point after it lies within tolerance of the
// line to the current candidate; the point before the candidate is then
// dropped. When a point strays, the point before the candidate becomes the
// anchor. The first and last points always stay. With fewer than three
// points nothing is done and the count is not written.
int32_t tsPointArray_removeCoLinearPoints2d(dpoint3d *array, int32_t *count, int32_t n, double tolerance)
{
    if (!array || n < 3) return 0;
    std::vector<unsigned char> keep;
    try {
        keep.assign(static_cast<size_t>(n), 1);
    } catch (const std::bad_alloc &) {
        return 0;  // the array is untouched, so the caller's count still holds
    }
    int32_t anchor = 0;
    for (int32_t candidate = 2; candidate < n; ++candidate) {
        if (withinChord(array, anchor, candidate, tolerance))
            keep[static_cast<size_t>(candidate - 1)] = 0;
        else
            anchor = candidate - 1;
    }
    int32_t kept = 0;
    for (int32_t i = 0; i < n; ++i)
        if (keep[static_cast<size_t>(i)]) array[kept++] = array[i];
    if (count) *count = kept;
    return 0;
}
