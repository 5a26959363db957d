// The IP set of the vertical profile fit: entering and moving IPs, their
// grades and curves, the change-of-grade filter, the removal of overlapping
// curves, and the evaluation of the working profile.
#include <charconv>
#include <cmath>
#include <cstdint>

#include "bestfit/profilefit.hpp"

namespace tessar::detail::profilefit {

namespace {

// Grade of the chord from IP a to IP b, with a chord shorter than
// kShortestChord taken as +kShortestChord whatever its sign.
double chordGrade(const IpSet &ips, std::int32_t a, std::int32_t b)
{
    double h = ips.station[b] - ips.station[a];
    if (std::fabs(h) < kShortestChord) h = kShortestChord;
    return (ips.level[b] - ips.level[a]) / h;
}

// Grade of the chord from IP a to IP b for the evaluation: the raw
// difference, and 0.0 where the stations are exactly equal.
double rawChordGrade(const IpSet &ips, std::int32_t a, std::int32_t b)
{
    const double h = ips.station[b] - ips.station[a];
    return h != 0.0 ? (ips.level[b] - ips.level[a]) / h : 0.0;
}

// Curve length from the change of grade A, in percent: a sag (A above 0)
// takes sagK, a crest hogK. The length is never negative and never below
// the minimum, so even a straight-through IP gets the minimum length.
double kLength(double gradeIn, double gradeOut, const Parameters &parameters)
{
    const double changeOfGrade = (gradeOut - gradeIn) * 100;
    double length = changeOfGrade > 0 ? std::fabs(changeOfGrade) * parameters.sagK
                                      : std::fabs(changeOfGrade) * parameters.hogK;
    if (length < 0) length = 0;
    if (length < parameters.vcMinimumLength) length = parameters.vcMinimumLength;
    return length;
}

void setIp(IpSet &ips, std::int32_t i, double x, double y, std::int32_t fixed)
{
    ips.station[i] = x;
    ips.level[i] = y;
    ips.curveLength[i] = 0;
    ips.fixed[i] = fixed;
}

void copyIp(IpSet &ips, std::int32_t to, std::int32_t from)
{
    ips.station[to] = ips.station[from];
    ips.level[to] = ips.level[from];
    ips.curveLength[to] = ips.curveLength[from];
    ips.fixed[to] = ips.fixed[from];
}

// The lowest IP within kSameStation of x, or 0.
std::int32_t ipAtStation(const IpSet &ips, double x)
{
    for (std::int32_t i = 1; i <= ips.count; ++i)
        if (std::fabs(x - ips.station[i]) < kSameStation) return i;
    return 0;
}

// The lowest k with station[k] < x < station[k + 1], or 0. With 0 the new IP
// goes in first, even for an x beyond the last IP.
std::int32_t ipBefore(const IpSet &ips, double x)
{
    for (std::int32_t k = 1; k <= ips.count - 1; ++k)
        if (ips.station[k] < x && x < ips.station[k + 1]) return k;
    return 0;
}

// The length printed with "%.3f" and read back: the exact decimal rounding
// of printf, independent of the process locale.
double roundToMillimetres(double length)
{
    char text[400];  // the widest fixed text of a double, with three decimals
    const auto printed = std::to_chars(text, text + sizeof text, length, std::chars_format::fixed, 3);
    double rounded = length;
    std::from_chars(text, printed.ptr, rounded);
    return rounded;
}

}  // namespace

void addBaseIp(IpSet &ips, double x, double y)
{
    ++ips.count;
    setIp(ips, ips.count, x, y, 0);
}

void insertIp(IpSet &ips, const Parameters &parameters, double x, double y)
{
    if (ips.count < 2) {
        // The first two IPs are entered as they come, free and without geometry.
        ++ips.count;
        setIp(ips, ips.count, x, y, 0);
        return;
    }
    if (const std::int32_t same = ipAtStation(ips, x); same != 0) {
        setIp(ips, same, x, y, 1);
    } else {
        // Real IPs lie at least kSameStation apart at input stations, so
        // they never outgrow the set; a station that is not a number (or is
        // infinite) matches no IP and would go in again on every sweep, so
        // the set stops growing when full.
        if (ips.count >= ips.capacity) return;
        const std::int32_t at = ipBefore(ips, x) + 1;
        for (std::int32_t i = ips.count; i >= at; --i)
            copyIp(ips, i + 1, i);
        ++ips.count;
        setIp(ips, at, x, y, 1);
        // The ends and every curve that had a length are flattened; zero and
        // negative lengths are left as they are.
        for (std::int32_t i = 1; i <= ips.count; ++i)
            if (i == 1 || i == ips.count || ips.curveLength[i] > 0) ips.curveLength[i] = 0;
    }
    computeIpGeometry(ips, parameters);
}

void computeIpGeometry(IpSet &ips, const Parameters &parameters)
{
    const std::int32_t last = ips.count;
    ips.evcStation[1] = ips.station[1];
    ips.evcLevel[1] = ips.level[1];
    if (last > 1) {
        ips.bvcStation[last] = ips.station[last];
        ips.bvcLevel[last] = ips.level[last];
    }
    for (std::int32_t i = 2; i <= last - 1; ++i) {
        ips.gradeIn[i] = chordGrade(ips, i - 1, i);
        ips.gradeOut[i] = chordGrade(ips, i, i + 1);
        if (ips.fixed[i] == 1) {
            if (ips.curveLength[i] < 0) ips.curveLength[i] = 0;
        } else {
            ips.curveLength[i] = kLength(ips.gradeIn[i], ips.gradeOut[i], parameters);
        }
        // The curve is centred on the IP in chainage: its ends lie half the
        // length either side, on the grades.
        const double half = ips.curveLength[i] / 2;
        ips.bvcStation[i] = ips.station[i] - half;
        ips.evcStation[i] = ips.station[i] + half;
        ips.bvcLevel[i] = ips.level[i] - half * ips.gradeIn[i];
        ips.evcLevel[i] = ips.level[i] + half * ips.gradeOut[i];
    }
}

void removeSmallIps(IpSet &ips, const Parameters &parameters, double filter)
{
    // Every IP is judged on the grades of the latest geometry, so a removal
    // does not cascade within one pass: the survivors close up downwards,
    // and the grades, which stay where they were, are not moved.
    const std::int32_t last = ips.count;
    std::int32_t kept = 1;
    for (std::int32_t i = 2; i <= last - 1; ++i) {
        if (std::fabs((ips.gradeIn[i] - ips.gradeOut[i]) * 100) <= filter) continue;
        copyIp(ips, ++kept, i);
    }
    copyIp(ips, ++kept, last);
    ips.count = kept;
    computeIpGeometry(ips, parameters);
}

void removeOverlaps(IpSet &ips, std::int32_t &overlapsModified)
{
    const std::int32_t last = ips.count;
    double *length = ips.curveLength;
    length[1] = 0;
    length[last] = 0;
    for (std::int32_t i = 2; i <= last - 1; ++i) {
        const double back = ips.station[i] - ips.station[i - 1];
        const double forward = ips.station[i + 1] - ips.station[i];
        // Each test weighs the two half lengths against the whole distance
        // and shortens only this IP's curve, without subtracting the
        // neighbour's half: the result may still overlap, and is kept so.
        if (0.5 * length[i - 1] + 0.5 * length[i] > back) {
            overlapsModified = 1;
            // IP 1 has no curve, so the second IP's curve may reach twice as far back.
            length[i] = i - 1 == 1 ? 2 * back : back;
        }
        if (0.5 * length[i] + 0.5 * length[i + 1] > forward) {
            overlapsModified = 1;
            if (forward < length[i]) length[i] = forward;
        }
    }
    length[1] = 0;
    length[last] = 0;
    for (std::int32_t i = 1; i <= last; ++i) {
        ips.fixed[i] = 1;
        length[i] = roundToMillimetres(length[i]);
    }
}

void prepareProfile(IpSet &ips, ProfileShape &shape)
{
    const std::int32_t last = ips.count;
    if (last < 1) return;
    // The evaluation writes these into the IP set itself, not only its copy.
    ips.curveLength[1] = 0;
    ips.curveLength[last] = 0;
    for (std::int32_t i = 1; i <= last; ++i) {
        // IP 1 comes in level, the last IP goes out level; in between the
        // grades are the raw chords, the last IP's in-grade its neighbour's
        // out-grade.
        shape.gradeIn[i] = i == 1 ? 0.0 : shape.gradeOut[i - 1];
        shape.gradeOut[i] = i == last ? 0.0 : rawChordGrade(ips, i, i + 1);
        const double half = ips.curveLength[i] / 2;
        shape.bvcStation[i] = ips.station[i] - half;
        shape.evcStation[i] = ips.station[i] + half;
        shape.bvcLevel[i] = ips.level[i] - half * shape.gradeIn[i];
        shape.evcLevel[i] = ips.level[i] + half * shape.gradeOut[i];
    }
}

double profileValue(const IpSet &ips, const ProfileShape &shape, double x)
{
    if (ips.count < 1) return 0.0;
    for (std::int32_t i = 1; i <= ips.count - 1; ++i) {
        if (x > shape.bvcStation[i] && x < shape.evcStation[i]) {
            // On the curve: the parabola from the BVC, whose grade runs
            // linearly from gradeIn to gradeOut over the length L.
            double curveLength = ips.curveLength[i];
            if (curveLength == 0) curveLength = kShortestChord;
            const double d = x - shape.bvcStation[i];
            return shape.bvcLevel[i] + shape.gradeIn[i] * d -
                   (d * d / 2 / curveLength) * (shape.gradeIn[i] - shape.gradeOut[i]);
        }
        if (x >= shape.evcStation[i] && x <= shape.bvcStation[i + 1])
            return (x - ips.station[i]) * shape.gradeOut[i] + ips.level[i];
    }
    return 0.0;
}

}  // namespace tessar::detail::profilefit
