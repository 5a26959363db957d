// One continuous string from loose segments: each segment is cut with its
// neighbours at the intersections of their lines. A segment whose cut piece
// no longer runs its own way has been eaten by its neighbours; it goes, and
// the cutting starts over with the ends reached so far.
#include <new>
#include <vector>

#include <tessar/frame.h>
#include <tessar/linestring.h>
#include <tessar/memory.h>
#include <tessar/point.h>

#include "linestring/linestring.hpp"

namespace {

using tessar::detail::allocateLibraryArray;
using tessar::detail::LibraryArray;

constexpr int32_t kFail = TESSAR_FAILURE;

// A segment at work: the line through its two given points, which stays as
// it was, and its current ends, which the cutting moves.
struct StreamRecord {
    tsLine line;
    dpoint3d start;
    dpoint3d end;
    int32_t index;
};

// Step 1. A segment of two equal points still gets a complete line record
// (of no length, heading east), so the status is not looked at.
std::vector<StreamRecord> makeRecords(const dpoint3d *segments, int32_t m)
{
    std::vector<StreamRecord> records(static_cast<size_t>(m));
    for (int32_t k = 0; k < m; ++k) {
        StreamRecord &r = records[static_cast<size_t>(k)];
        r.start = segments[2 * k];
        r.end = segments[2 * k + 1];
        r.index = k;
        tsLine_createBy2points(&r.line, &r.start, &r.end);
    }
    return records;
}

// Moves x and y of point to the intersection of the lines a and b. Parallel
// lines fail, and the point keeps what it had.
void cutAt(dpoint3d &point, const tsLine &a, const tsLine &b)
{
    tsLine_intersectLineWithLine2d(&point, nullptr, nullptr, &a, &b);
}

// Steps 2 to 4, one walk over the records. Returns true when every record
// was accepted; otherwise the record that was eaten has been removed.
bool walkAccepts(std::vector<StreamRecord> &records, double tol, bool closed)
{
    const size_t last = records.size() - 1;
    for (size_t k = 0; k <= last; ++k) {
        StreamRecord &r = records[k];
        dpoint3d start = r.start;
        dpoint3d end = r.end;
        if (k > 0) cutAt(start, records[k - 1].line, r.line);
        if (k < last) cutAt(end, r.line, records[k + 1].line);
        if (closed && k == 0) cutAt(start, records[last].line, r.line);
        if (closed && k == last) cutAt(end, records[0].line, r.line);

        tsLine piece;
        tsLine_createBy2points(&piece, &start, &end);
        if (!tsLine_areSameDirection(&piece, &r.line, tol)) {
            records.erase(records.begin() + static_cast<std::ptrdiff_t>(k));
            return false;
        }
        if (k > 0) records[k - 1].end = start;
        if (k < last) records[k + 1].start = end;
        if (closed && k == 0) records[last].end = start;
        if (closed && k == last) records[0].start = end;
        // The record's own ends are set last: a closed string of a single
        // segment is its own neighbour, and keeps its direction this way.
        r.start = start;
        r.end = end;
    }
    return true;
}

void clearOutputs(dpoint3d **points, int32_t *pointCount, int32_t **indices, int32_t *indexCount)
{
    if (points) {
        if (*points) tsMem_free(*points);
        *points = nullptr;
    }
    if (pointCount) *pointCount = 0;
    if (indices) {
        if (*indices) tsMem_free(*indices);
        *indices = nullptr;
    }
    if (indexCount) *indexCount = 0;
}

// Step 5: the start of every record and the end of the last; the original
// indices if wanted. Both arrays are made before either is handed over.
int32_t handOver(const std::vector<StreamRecord> &records, dpoint3d **points, int32_t *pointCount,
                 int32_t **indices, int32_t *indexCount)
{
    const size_t n = records.size();
    LibraryArray<dpoint3d> string = allocateLibraryArray<dpoint3d>(n + 1);
    if (!string) return kFail;
    LibraryArray<int32_t> order;
    if (indices) {
        order = allocateLibraryArray<int32_t>(n);
        if (!order) return kFail;
        for (size_t k = 0; k < n; ++k)
            order[k] = records[k].index;
    }
    for (size_t k = 0; k < n; ++k)
        string[k] = records[k].start;
    string[n] = records.back().end;

    *points = string.release();
    *pointCount = static_cast<int32_t>(n + 1);
    if (indices) {
        *indices = order.release();
        if (indexCount) *indexCount = static_cast<int32_t>(n);
    }
    return 0;
}

}  // namespace

int32_t tsLine_createStreamFromSegmentArray(dpoint3d **points, int32_t *pointCount, int32_t **indices,
                                            int32_t *indexCount, const dpoint3d *segments,
                                            int32_t pointsGiven, double tol, int32_t closed)
{
    clearOutputs(points, pointCount, indices, indexCount);
    if (!points || !pointCount || !segments || pointsGiven < 1) return kFail;
    try {
        // A lone point left over after the pairs is not a segment.
        std::vector<StreamRecord> records = makeRecords(segments, pointsGiven / 2);
        while (!records.empty() && !walkAccepts(records, tol, closed != 0)) {
        }
        if (records.empty()) return kFail;
        return handOver(records, points, pointCount, indices, indexCount);
    } catch (const std::bad_alloc &) {
        return kFail;
    }
}
