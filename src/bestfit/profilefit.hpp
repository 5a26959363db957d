// The vertical profile fit: a grade line with parabolic vertical curves
// designed inside a band around a surveyed long section.
//
// The fit is one process-wide object: its parameters, the input set, the IP
// set, two flags and the trace stream are plain module variables, without a
// lock, and every array is indexed from 1 with an element 0 that is zero from
// the allocation (some degenerate inputs read it). A run allocates the arrays
// and releases them before it returns; only the parameters outlive it.
//
// The procedure has four stages: the two end controls, a greedy forward sweep
// that puts an IP at every station where the working profile leaves the
// band, a filter that drops IPs with small changes of grade (and sweeps
// again), and the sizing of the curves from K values. Its trace calls it
// "BellMan", though it keeps no table of sub-results.
#pragma once

#include <cstdint>
#include <cstdio>

namespace tessar::detail::profilefit {

// A level equal to this marks a missing level; see midLevel() and the scan
// for the two different ways the fit tests it.
inline constexpr double kMissingLevel = -999.0;
// The scan takes a bound as valid only from this value up.
inline constexpr double kLowestValidBound = -998.0;

// Chord lengths below this are replaced by it in the grades of the IP
// geometry (whatever the sign of the chord), and zero curve lengths by it
// in the parabola.
inline constexpr double kShortestChord = 0.0001;
// A station closer than this to an IP moves that IP instead of adding one.
inline constexpr double kSameStation = 0.001;
// The change-of-grade filter steps down by this, in percent, while above it.
inline constexpr double kFilterStep = 0.1;

// Stored by tsBestFit_verticalProfileInitialize, kept across runs.
struct Parameters {
    double upTol;
    double loTol;
    double hogK;
    double sagK;
    double vcMinimumLength;
    double cogFilter;
    std::int32_t fixStartGrade;
    std::int32_t fixEndGrade;
    std::int32_t debug;  // exactly 1 asks for the trace
};

// The caller's long section and its envelope, n + 2 elements each.
struct InputSet {
    double *stations;
    double *levels;
    double *stationsCopy;
    double *upperStations;
    double *upperLevels;
    double *lowerStations;
    double *lowerLevels;
    std::int32_t n;
};

// Station, upper and lower bound of each input point as the stages read
// them, n + 1 elements each.
struct Envelope {
    double *station;
    double *upper;
    double *lower;
};

// The intersection points, n + 2 entries each. fixed 1 keeps the curve
// length as it is; 0 sizes it from K. Grades are ratios.
struct IpSet {
    double *station;
    double *level;
    double *curveLength;
    std::int32_t *fixed;
    double *gradeIn;
    double *gradeOut;
    double *bvcStation;
    double *bvcLevel;
    double *evcStation;
    double *evcLevel;
    std::int32_t count;
    std::int64_t capacity;  // entries beyond element 0
};

// The working profile as the evaluation sees it: its own grades (raw chords)
// and curve ends, built from the IP set and valid until the IPs change.
struct ProfileShape {
    double *gradeIn;
    double *gradeOut;
    double *bvcStation;
    double *bvcLevel;
    double *evcStation;
    double *evcLevel;
};

struct FitState {
    Parameters parameters;
    InputSet input;
    Envelope envelope;
    IpSet ips;
    ProfileShape shape;
    std::int32_t overlapsModified;
    // Set where a station's lower bound lies above its upper bound; nothing
    // reads it.
    std::int32_t crossedEnvelope;
    std::FILE *trace;
};

// The one fit of the process.
extern FitState state;

/* ---- IP set (profilefit_ips.cpp) ---- */

// Enters one of the two base IPs of the first stage: the first call gives
// IP 1, the second IP 2, both with length 0 and not fixed. Only these two
// calls are ever made, so there is no other branch.
void addBaseIp(IpSet &ips, double x, double y);

// Puts an IP at (x, y) during a sweep: moves an IP within kSameStation of x,
// or inserts a fixed IP of length 0 between its neighbours, then recomputes
// the geometry.
void insertIp(IpSet &ips, const Parameters &parameters, double x, double y);

// Grades, K-sized lengths of the free IPs and curve ends of the IP set.
void computeIpGeometry(IpSet &ips, const Parameters &parameters);

// Drops every interior IP whose change of grade, in percent, is not above
// filter, closes the set up and recomputes the geometry.
void removeSmallIps(IpSet &ips, const Parameters &parameters, double filter);

// Shortens curves that reach past their neighbours, fixes every IP and
// rounds the lengths to three decimals.
void removeOverlaps(IpSet &ips, std::int32_t &overlapsModified);

// Builds the shape of the working profile from the IP set. Like the
// evaluation it stands for, it sets the lengths of the first and last IP
// to 0 in the IP set.
void prepareProfile(IpSet &ips, ProfileShape &shape);

// The level of the working profile at station x: on the curve of an IP, or
// on the grade after it, the first that holds x; 0.0 where none does or
// with no IP at all.
double profileValue(const IpSet &ips, const ProfileShape &shape, double x);

/* ---- Trace (profilefit_trace.cpp) ---- */

// Opens the trace file and writes the parameters; on failure turns the
// stored debug setting off, so that later runs stay quiet too.
void openTrace(FitState &fit);

// Closes the trace if it is open.
void closeTrace(FitState &fit);

// printf to the trace when it is open.
[[gnu::format(printf, 2, 3)]] void trace(const FitState &fit, const char *format, ...);

// Lists the IPs under a title (none when the title is empty).
void traceIps(const FitState &fit, const char *title);

}  // namespace tessar::detail::profilefit
