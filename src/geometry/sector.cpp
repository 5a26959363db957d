// Angular sectors on plain doubles: an angle against a sector, the common
// part of two sectors and the smallest sector that holds both. The same
// ranking and relations as the kernel's sector algebra, on directions given
// as x and y by value, normalised by tsMath_normalizeAngle, with a status in
// place of the kernel's error word.
#include <cmath>

#include <tessar/angle.h>
#include <tessar/frame.h>
#include <tessar/mathapi.h>

namespace {

constexpr int32_t kFailure = TESSAR_FAILURE;

struct Direction {
    double x = 0.0;
    double y = 0.0;
};

// One sector of a ranked pair: its direction as given, its start in 0 up to
// 2 pi and its end, start + sweep (which may pass 2 pi).
struct Sector {
    Direction dir;
    double start = 0.0;
    double end = 0.0;
};

struct Pair {
    Sector first;
    Sector second;
};

Sector makeSector(double x, double y, double sweep)
{
    Sector sector;
    sector.dir = {x, y};
    sector.start = tsMath_normalizeAngle(tsMath_atan2(y, x));
    sector.end = sector.start + sweep;
    return sector;
}

// The sector with the strictly smaller start comes first; on equal starts
// the second one given does.
Pair rank(const Sector &a, const Sector &b)
{
    if (a.start < b.start) return {a, b};
    return {b, a};
}

// The relation of a ranked pair (TESSAR_SECTORS_*), by exact comparisons in
// the order of the class numbers; 0 when a not-a-number angle leaves every
// test false.
int32_t classify(const Pair &pair)
{
    const double s1 = pair.first.start;
    const double e1 = pair.first.end;
    const double s2 = pair.second.start;
    const double e2 = pair.second.end;
    const double turnAfterS1 = dc_2pi + s1;
    if (e1 >= e2) return TESSAR_SECTORS_INSIDE;
    if (e1 >= s2) {
        if (turnAfterS1 >= e2) return TESSAR_SECTORS_OVERLAP;
        if (turnAfterS1 < e2) return TESSAR_SECTORS_OVERLAP_BOTH_ENDS;
        return 0;
    }
    if (e1 < s2) {
        if (turnAfterS1 > e2) return TESSAR_SECTORS_APART;
        // The second runs round past 2 pi: its end a turn back against e1.
        const double e2OneTurnBack = e2 - dc_2pi;
        if (e2OneTurnBack < e1) return TESSAR_SECTORS_WRAP_INTO_FIRST;
        if (e2OneTurnBack >= e1) return TESSAR_SECTORS_WRAP_AROUND_FIRST;
    }
    return 0;
}

struct Result {
    Direction dir;
    double sweep = 0.0;
};

// Sectors apart: the shorter way round that covers both, from the first's
// start to the second's end (ga) or from the second's start round to the
// first's end (gb); a candidate shorter than a sweep goes a turn further.
// On equal candidates the second direction wins.
Result sumOfApart(const Pair &pair)
{
    const double s1 = pair.first.start;
    const double e1 = pair.first.end;
    const double s2 = pair.second.start;
    const double e2 = pair.second.end;
    const double ga = tsMath_normalizeAngle(e2 - s1);
    const double gb = tsMath_normalizeAngle(e1 - s2);
    const double w1 = e1 - s1;
    const double w2 = e2 - s2;
    const double ca = (ga >= w1 && ga >= w2) ? ga : ga + dc_2pi;
    if (gb >= w1 && gb >= w2) {
        if (ca >= gb) return {pair.second.dir, gb};
        return {pair.first.dir, ca};
    }
    if (ca >= gb + dc_2pi) return {pair.second.dir, gb + dc_2pi};
    return {pair.first.dir, ca};
}

}  // namespace

/* ---- A direction against a sector ---- */

// delta is the direction less the start, a turn further on the side the
// sector opens to when the direction lies (beyond tol) on the other side of
// the start; inside when delta lies between 0 and the sweep, tol included.
int32_t tsMath_compareDirectionToSector(int32_t *inside, double *delta, double direction, double start,
                                        double sweep, double tol)
{
    double d = direction - start;
    double low = 0.0;
    double high = 0.0;
    if (sweep > 0.0) {
        if (!tsUtil_greaterOrEqualDouble(direction, start, tol)) d += dc_2pi;
        high = sweep;
    } else {
        if (!tsUtil_lessOrEqualDouble(direction, start, tol)) d -= dc_2pi;
        low = sweep;
    }
    const int32_t in = tsUtil_belongToClosedIntervalDouble(d, low, high, tol);
    if (delta != nullptr) *delta = d;
    *inside = in;
    return 0;
}

/* ---- Sector algebra ---- */

// The common part: from the later start to the earlier end; of the two
// pieces of sectors that overlap at both ends, the one from the second's
// start. An unclassifiable pair zeroes the outputs and fails.
int32_t tsMath_calculateAngularSectorProduct(double *x, double *y, double *sweep, int32_t *count, double x1,
                                             double y1, double sweep1, double x2, double y2, double sweep2)
{
    const Pair pair = rank(makeSector(x1, y1, sweep1), makeSector(x2, y2, sweep2));
    const double s1 = pair.first.start;
    const double e1 = pair.first.end;
    const double s2 = pair.second.start;
    const double e2 = pair.second.end;
    Result r;
    int32_t n = 1;
    switch (classify(pair)) {
    case TESSAR_SECTORS_INSIDE:
        r = {pair.second.dir, e2 - s2};
        break;
    case TESSAR_SECTORS_OVERLAP:
    case TESSAR_SECTORS_OVERLAP_BOTH_ENDS:
        r = {pair.second.dir, e1 - s2};
        break;
    case TESSAR_SECTORS_APART:
        n = 0;
        break;
    case TESSAR_SECTORS_WRAP_INTO_FIRST:
        r = {pair.first.dir, e2 - s1};
        break;
    case TESSAR_SECTORS_WRAP_AROUND_FIRST:
        r = {pair.first.dir, e1 - s1};
        break;
    default:
        *x = 0.0;
        *y = 0.0;
        *sweep = 0.0;
        *count = 0;
        return kFailure;
    }
    *x = r.dir.x;
    *y = r.dir.y;
    *sweep = tsMath_normalizeAngle(r.sweep);
    *count = n;
    return 0;
}

// The enclosing sector: from the earlier start to the later end; the whole
// circle, reported as sweep 0, where they overlap at both ends; the shorter
// way round for sectors apart. A sweep of exactly 2 pi becomes 0, one above
// it is cut to 2 pi. An unclassifiable pair zeroes the outputs and fails.
int32_t tsMath_calculateAngularSectorSum(double *x, double *y, double *sweep, double x1, double y1,
                                         double sweep1, double x2, double y2, double sweep2)
{
    const Pair pair = rank(makeSector(x1, y1, sweep1), makeSector(x2, y2, sweep2));
    const double s1 = pair.first.start;
    const double e1 = pair.first.end;
    const double s2 = pair.second.start;
    const double e2 = pair.second.end;
    Result r;
    switch (classify(pair)) {
    case TESSAR_SECTORS_INSIDE:
        r = {pair.first.dir, e1 - s1};
        break;
    case TESSAR_SECTORS_OVERLAP:
        r = {pair.first.dir, e2 - s1};
        break;
    case TESSAR_SECTORS_OVERLAP_BOTH_ENDS:
        // The whole circle: 2 pi normalised, which is 0.
        *x = pair.first.dir.x;
        *y = pair.first.dir.y;
        *sweep = tsMath_normalizeAngle(dc_2pi);
        return 0;
    case TESSAR_SECTORS_APART:
        r = sumOfApart(pair);
        break;
    case TESSAR_SECTORS_WRAP_INTO_FIRST:
        r = {pair.second.dir, e1 - s2};
        break;
    case TESSAR_SECTORS_WRAP_AROUND_FIRST:
        r = {pair.second.dir, e2 - s2};
        break;
    default:
        *x = 0.0;
        *y = 0.0;
        *sweep = 0.0;
        return kFailure;
    }
    *x = r.dir.x;
    *y = r.dir.y;
    *sweep = (dc_2pi >= r.sweep) ? tsMath_normalizeAngle(r.sweep) : dc_2pi;
    return 0;
}
