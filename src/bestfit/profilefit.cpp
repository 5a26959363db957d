// The vertical profile fit: its stored parameters, the run of one fit (load
// the long section, find the end controls, sweep in IPs where the profile
// leaves the band, filter small changes of grade, size the curves) and the
// release of its working state.
#include <tessar/bestfit.h>
#include <tessar/frame.h>
#include <tessar/memory.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <new>
#include <optional>
#include <vector>

#include "bestfit/profilefit.hpp"

namespace tessar::detail::profilefit {

FitState state{};

namespace {

constexpr std::int32_t kFailure = TESSAR_FAILURE;

/* ---- Working arrays ---- */

template <class T> bool allocateArray(T *&array, std::size_t size)
{
    array = static_cast<T *>(tsMem_calloc(size, sizeof(T)));
    return array != nullptr;
}

template <class T> void releaseArray(T *&array)
{
    if (array == nullptr) return;
    void *block = array;
    tsMem_freeAndClear(&block);
    array = nullptr;
}

void releaseEnvelope(Envelope &envelope)
{
    releaseArray(envelope.station);
    releaseArray(envelope.upper);
    releaseArray(envelope.lower);
}

// Frees every working array that is held and closes the trace. The IP
// count is left as it is; a run sets it before reading it.
void releaseWorkingState(FitState &fit)
{
    InputSet &in = fit.input;
    for (double **array : {&in.stations, &in.levels, &in.stationsCopy, &in.upperStations, &in.upperLevels,
                           &in.lowerStations, &in.lowerLevels})
        releaseArray(*array);
    releaseEnvelope(fit.envelope);
    IpSet &ips = fit.ips;
    for (double **array : {&ips.station, &ips.level, &ips.curveLength, &ips.gradeIn, &ips.gradeOut,
                           &ips.bvcStation, &ips.bvcLevel, &ips.evcStation, &ips.evcLevel})
        releaseArray(*array);
    releaseArray(ips.fixed);
    ProfileShape &shape = fit.shape;
    for (double **array : {&shape.gradeIn, &shape.gradeOut, &shape.bvcStation, &shape.bvcLevel,
                           &shape.evcStation, &shape.evcLevel})
        releaseArray(*array);
    closeTrace(fit);
}

/* ---- Input ---- */

// The input set from the caller's arrays, indexed from 1: the levels, and
// the envelope, level + upTol above and level - loTol below, at the same
// stations.
bool loadInput(FitState &fit, const double *stations, const double *levels, std::int32_t n)
{
    InputSet &in = fit.input;
    const std::size_t size = static_cast<std::size_t>(n) + 2;
    bool allocated = true;
    for (double **array : {&in.stations, &in.levels, &in.stationsCopy, &in.upperStations, &in.upperLevels,
                           &in.lowerStations, &in.lowerLevels})
        allocated = allocateArray(*array, size) && allocated;
    if (!allocated) return false;
    for (std::int32_t i = 1; i <= n; ++i) {
        const double station = stations[i - 1];
        const double level = levels[i - 1];
        in.stations[i] = station;
        in.levels[i] = level;
        in.stationsCopy[i] = station;
        in.upperStations[i] = station;
        in.upperLevels[i] = level + fit.parameters.upTol;
        in.lowerStations[i] = station;
        in.lowerLevels[i] = level - fit.parameters.loTol;
    }
    in.n = n;
    return true;
}

bool allocateEnvelope(FitState &fit)
{
    const std::size_t size = static_cast<std::size_t>(fit.input.n) + 1;
    Envelope &envelope = fit.envelope;
    bool allocated = allocateArray(envelope.station, size);
    allocated = allocateArray(envelope.upper, size) && allocated;
    allocated = allocateArray(envelope.lower, size) && allocated;
    if (!allocated) return false;
    for (std::int32_t i = 1; i <= fit.input.n; ++i) {
        envelope.station[i] = fit.input.stations[i];
        envelope.upper[i] = fit.input.upperLevels[i];
        envelope.lower[i] = fit.input.lowerLevels[i];
    }
    return true;
}

bool allocateIpSet(FitState &fit)
{
    const std::size_t size = static_cast<std::size_t>(fit.input.n) + 2;
    IpSet &ips = fit.ips;
    ips.capacity = static_cast<std::int64_t>(size - 1);
    bool allocated = allocateArray(ips.fixed, size);
    for (double **array : {&ips.station, &ips.level, &ips.curveLength, &ips.gradeIn, &ips.gradeOut,
                           &ips.bvcStation, &ips.bvcLevel, &ips.evcStation, &ips.evcLevel})
        allocated = allocateArray(*array, size) && allocated;
    ProfileShape &shape = fit.shape;
    for (double **array : {&shape.gradeIn, &shape.gradeOut, &shape.bvcStation, &shape.bvcLevel,
                           &shape.evcStation, &shape.evcLevel})
        allocated = allocateArray(*array, size) && allocated;
    return allocated;
}

/* ---- Controls and violations ---- */

// The level a station asks the profile to pass through: the middle of the
// band, or the one bound that is not missing. Here a bound is missing only
// if it equals the marker exactly.
std::optional<double> midLevel(const Envelope &envelope, std::int32_t i)
{
    const double upper = envelope.upper[i];
    const double lower = envelope.lower[i];
    if (upper != kMissingLevel) return lower != kMissingLevel ? (upper + lower) / 2 : upper;
    if (lower != kMissingLevel) return lower;
    return std::nullopt;
}

// The first and the last station with a mid level. Without a second one
// the last control stays at index 0 with level 0.0, and without any the
// first does too: element 0 of the stations is 0.0.
struct Controls {
    std::int32_t firstIndex = 0;
    double firstLevel = 0.0;
    std::int32_t lastIndex = 0;
    double lastLevel = 0.0;
};

// The first station from `from` to `to` where the working profile lies
// above the upper bound or below the lower one, or -1. A value on a bound
// is inside; a station with a bound below kLowestValidBound, or with its
// bounds crossed, is passed over.
std::int32_t firstViolation(FitState &fit, std::int32_t from, std::int32_t to)
{
    if (from > to) return -1;
    prepareProfile(fit.ips, fit.shape);
    const Envelope &envelope = fit.envelope;
    for (std::int32_t i = from; i <= to; ++i) {
        const double value = profileValue(fit.ips, fit.shape, envelope.station[i]);
        const double upper = envelope.upper[i];
        const double lower = envelope.lower[i];
        if (upper < kLowestValidBound || lower < kLowestValidBound) continue;
        if (lower > upper) {
            fit.crossedEnvelope = 1;
            continue;
        }
        if (value > upper || !(value >= lower)) return i;
    }
    return -1;
}

// The greedy forward sweep: an IP at the mid level of the first violation,
// then on from the next station, never looking back.
void sweep(FitState &fit, const Controls &controls, const char *titleFormat, std::int32_t &iteration)
{
    std::int32_t from = controls.firstIndex;
    for (;;) {
        const std::int32_t i = firstViolation(fit, from, controls.lastIndex);
        if (i < 0) return;
        // Both bounds of a violating station are valid, so it has a mid level.
        const double level = midLevel(fit.envelope, i).value_or(0.0);
        from = i + 1;
        insertIp(fit.ips, fit.parameters, fit.envelope.station[i], level);
        ++iteration;
        if (fit.trace != nullptr) {
            char title[64];
            std::snprintf(title, sizeof title, titleFormat, iteration);
            traceIps(fit, title);
        }
    }
}

/* ---- The four stages ---- */

Controls findControlLimits(FitState &fit)
{
    trace(fit, "BellMan - Part 1. Find the Limits of the controls \n");
    Controls controls;
    bool haveFirst = false;
    for (std::int32_t i = 1; i <= fit.input.n; ++i) {
        const std::optional<double> level = midLevel(fit.envelope, i);
        if (!level) continue;
        if (!haveFirst) {
            controls.firstIndex = i;
            controls.firstLevel = *level;
            haveFirst = true;
        } else {
            controls.lastIndex = i;
            controls.lastLevel = *level;
        }
    }
    // The two ends of the chord; no grade is computed yet.
    addBaseIp(fit.ips, fit.envelope.station[controls.firstIndex], controls.firstLevel);
    addBaseIp(fit.ips, fit.envelope.station[controls.lastIndex], controls.lastLevel);
    traceIps(fit, "Base Gradient Established");
    return controls;
}

void primaryFit(FitState &fit, const Controls &controls)
{
    trace(fit, "BellMan - Part 2. Outer Iteration - Select Points To Insert IP's \n");
    std::int32_t iteration = 0;
    sweep(fit, controls, "Outer Iteration %d", iteration);
    trace(fit, "Primary Fit Complete\n\n");
}

// Drops IPs whose change of grade is at most f percent, sweeps again when
// any went, and lowers f by 0.1 while it stays above 0.1. The test is on the
// running double: from 1.0 it is still a little above 0.1 after nine steps,
// so up to ten passes run. A first pass that drops nothing ends the stage.
void filterSmallChanges(FitState &fit, const Controls &controls)
{
    // The title keeps its "1.0" whatever the starting value of the filter.
    trace(fit, "BellMan - Part 3. Filter Out Small COG IP's from  1.0  to 0.1 percent\n");
    double filter = fit.parameters.cogFilter;
    std::int32_t pass = 0;
    std::int32_t iteration = 0;
    for (;;) {
        const std::int32_t before = fit.ips.count;
        removeSmallIps(fit.ips, fit.parameters, filter);
        ++pass;
        if (fit.trace != nullptr) {
            char title[96];
            std::snprintf(title, sizeof title, "\tFilter Value = %.5f Iteration %d", filter, pass);
            traceIps(fit, title);
        }
        if (fit.ips.count == before) break;
        sweep(fit, controls, "\tFilter Iteration %d", iteration);
        filter = filter - kFilterStep;
        if (!(filter > kFilterStep)) break;
        trace(fit, "\tThis Filter Iteration Done\n\n");
    }
    trace(fit, "Filtering Complete\n\n");
}

// The level of an IP at a station on the line through two input points,
// from a chord no shorter than kShortestChord.
double levelOnInputChord(const InputSet &in, double station, std::int32_t a, std::int32_t b)
{
    double h = in.stations[b] - in.stations[a];
    if (std::fabs(h) < kShortestChord) h = kShortestChord;
    return (station - in.stations[a]) * ((in.levels[b] - in.levels[a]) / h) + in.levels[a];
}

void sizeCurves(FitState &fit)
{
    trace(fit, "BellMan - Part 4. IP's located .. now calculate the Mid-Ordinates(+/-)\n");
    IpSet &ips = fit.ips;
    const std::int32_t last = ips.count;
    for (std::int32_t i = 1; i <= last; ++i)
        ips.fixed[i] = 0;
    computeIpGeometry(ips, fit.parameters);
    traceIps(fit, "Full K Values Used");
    removeOverlaps(ips, fit.overlapsModified);
    traceIps(fit, "Overlaps Removed");

    // Each IP moves by its mid-ordinate, the gap between the polygon's IP
    // and the curve beneath it, so that the curve passes (to first order)
    // where the IP was. All are measured on the same profile before any
    // moves; one pass, no iteration.
    if (last > 2) {
        std::vector<double> midOrdinate(static_cast<std::size_t>(last) + 1);
        prepareProfile(ips, fit.shape);
        for (std::int32_t i = 2; i <= last - 1; ++i)
            midOrdinate[i] = ips.level[i] - profileValue(ips, fit.shape, ips.station[i]);
        for (std::int32_t i = 2; i <= last - 1; ++i)
            ips.level[i] += midOrdinate[i];
    }

    // Held grades move only the level of the second and the second-last IP;
    // lengths and curves are not revisited. With two IPs these are the last
    // and the first IP.
    const InputSet &in = fit.input;
    if (fit.parameters.fixStartGrade != 0) ips.level[2] = levelOnInputChord(in, ips.station[2], 1, 2);
    if (fit.parameters.fixEndGrade != 0)
        ips.level[last - 1] = levelOnInputChord(in, ips.station[last - 1], in.n, in.n - 1);

    if (fit.overlapsModified != 0) trace(fit, "Overlapping Vertical Curve Lengths Have Been Modified.\n");
    traceIps(fit, "FINAL RESULTS :");
}

void traceEnvelope(const FitState &fit)
{
    trace(fit, "The Envelopes : \n");
    for (std::int32_t i = 1; i <= fit.input.n; ++i)
        trace(fit, "%d\tSta: %.5f\tUpper: %.5f\tLower: %.5f\n", i, fit.envelope.station[i],
              fit.envelope.upper[i], fit.envelope.lower[i]);
}

bool runFit(FitState &fit)
{
    fit.overlapsModified = 0;
    fit.crossedEnvelope = 0;
    if (!allocateEnvelope(fit)) return false;
    fit.ips.count = 0;
    traceEnvelope(fit);
    if (!allocateIpSet(fit)) return false;
    const Controls controls = findControlLimits(fit);
    primaryFit(fit, controls);
    filterSmallChanges(fit, controls);
    sizeCurves(fit);
    releaseEnvelope(fit.envelope);
    return true;
}

/* ---- Result ---- */

void emptyResult(double **stations, double **levels, double **lengths, std::int32_t *count)
{
    *stations = nullptr;
    *levels = nullptr;
    *lengths = nullptr;
    *count = 0;
}

// Three new arrays of the IPs, indexed from 0.
bool copyResult(const IpSet &ips, double **stations, double **levels, double **lengths, std::int32_t *count)
{
    const std::size_t size = static_cast<std::size_t>(ips.count);
    double *s = nullptr;
    double *l = nullptr;
    double *v = nullptr;
    bool allocated = allocateArray(s, size);
    allocated = allocateArray(l, size) && allocated;
    allocated = allocateArray(v, size) && allocated;
    if (!allocated) {
        releaseArray(s);
        releaseArray(l);
        releaseArray(v);
        return false;
    }
    for (std::int32_t i = 1; i <= ips.count; ++i) {
        s[i - 1] = ips.station[i];
        l[i - 1] = ips.level[i];
        v[i - 1] = ips.curveLength[i];
    }
    *stations = s;
    *levels = l;
    *lengths = v;
    *count = ips.count;
    return true;
}

std::int32_t computeProfile(FitState &fit, double **stations, double **levels, double **lengths,
                            std::int32_t *count, const double *inStations, const double *inLevels,
                            std::int32_t n)
{
    releaseWorkingState(fit);
    if (fit.parameters.debug == 1) openTrace(fit);
    if (!loadInput(fit, inStations, inLevels, n)) return kFailure;
    trace(fit, "The LongLen = %.3f : \n", fit.input.stations[n] - fit.input.stations[1]);
    if (!runFit(fit)) return kFailure;
    if (fit.ips.count < 2) return kFailure;
    if (!copyResult(fit.ips, stations, levels, lengths, count)) return kFailure;
    releaseWorkingState(fit);
    return 0;
}

}  // namespace

}  // namespace tessar::detail::profilefit

using namespace tessar::detail::profilefit;

void tsBestFit_verticalProfileInitialize(double upTol, double loTol, double hogK, double sagK,
                                         double vcMinimumLength, double cogFilter, int32_t fixStartGrade,
                                         int32_t fixEndGrade, int32_t debug)
{
    state.parameters = {upTol,     loTol,         hogK,        sagK, vcMinimumLength,
                        cogFilter, fixStartGrade, fixEndGrade, debug};
}

int32_t tsBestFit_verticalComputeProfile(double **stations, double **levels, double **lengths, int32_t *count,
                                         const double *inStations, const double *inLevels, int32_t n)
{
    // Without a station there is no fit to run (and the IP count of an
    // earlier run would be read): the empty answer comes before any state
    // is touched.
    if (n < 1) {
        emptyResult(stations, levels, lengths, count);
        return TESSAR_FAILURE;
    }
    std::int32_t status = TESSAR_FAILURE;
    try {
        status = computeProfile(state, stations, levels, lengths, count, inStations, inLevels, n);
    } catch (const std::bad_alloc &) {
        status = TESSAR_FAILURE;
    }
    if (status != 0) {
        // Fewer than two IPs, or memory ran out.
        releaseWorkingState(state);
        emptyResult(stations, levels, lengths, count);
    }
    return status;
}
