// The stretches in which the difference of two profiles stays within a
// bracket low < D <= high. The two polylines are merged into samples, each
// a point on polyline 1, the point on polyline 2 at the same x and the
// difference D of their levels; then the pairs of successive samples are
// walked, opening a stretch where D enters the bracket and closing it where
// D leaves, at the exact crossings of the bounds.
#include <new>
#include <utility>
#include <vector>

#include <tessar/memory.h>
#include <tessar/polyline.h>

#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

struct Sample {
    dpoint2d m1;  // on polyline 1
    dpoint2d m2;  // on polyline 2, at the same x
    double d;     // m1.y - m2.y
};

// Where the difference crosses a bound within a pair: one point on each polyline.
struct Crossing {
    dpoint2d on1;
    dpoint2d on2;
};

bool inBracket(double d, double low, double high)
{
    return d > low && d <= high;
}

// The bound that a difference outside the bracket lies beyond.
double boundBeyond(double d, double high, double low)
{
    return d > high ? high : low;
}

// The levels of each polyline's vertices on the other one, where the other
// covers them (tolerance 0), as differences of polyline 1 minus polyline 2.
// A vertex of polyline 2 gets its ordinate on polyline 1, and a vertex of
// polyline 1 its ordinate on polyline 2. False when a lookup fails.
bool ordinatesOnOther(const dpoint2d *pts, std::int32_t n, const dpoint2d *other, std::int32_t nOther,
                      std::vector<dpoint2d> &onOther, std::vector<std::int32_t> &covered)
{
    onOther.assign(pts, pts + n);
    covered.assign(static_cast<size_t>(n), 0);
    std::int32_t last = 0;
    UTMAT_CalculerTableauYSurPolyligne(other, nOther, onOther.data(), covered.data(), n, 0, 0.0, &last);
    return !nestedFailed();
}

// The merge: a vertex not covered by the other polyline is passed by (both
// in one round when neither is covered); otherwise the vertex of smaller x
// gives the sample, polyline 1 first at equal x, where both move on. The
// merge ends as soon as either polyline is used up, so covered vertices of
// the other one beyond that point give no sample.
bool mergeSamples(const dpoint2d *pts1, std::int32_t n1, const dpoint2d *pts2, std::int32_t n2,
                  std::vector<Sample> &samples)
{
    std::vector<dpoint2d> on2, on1;
    std::vector<std::int32_t> covered1, covered2;
    if (!ordinatesOnOther(pts2, n2, pts1, n1, on1, covered2)) return false;
    if (!ordinatesOnOther(pts1, n1, pts2, n2, on2, covered1)) return false;
    samples.reserve(static_cast<size_t>(n1) + static_cast<size_t>(n2));
    std::int32_t i = 0;
    std::int32_t j = 0;
    while (i < n1 && j < n2) {
        const bool pass1 = covered1[static_cast<size_t>(i)] == 0;
        const bool pass2 = covered2[static_cast<size_t>(j)] == 0;
        if (pass1) ++i;
        if (pass2) ++j;
        if (pass1 || pass2) continue;
        const dpoint2d &p1 = pts1[i];
        const dpoint2d &p2 = pts2[j];
        if (p1.x <= p2.x) {
            const dpoint2d &q = on2[static_cast<size_t>(i)];
            samples.push_back({p1, q, p1.y - q.y});
            if (p1.x == p2.x) ++j;
            ++i;
        } else {
            const dpoint2d &q = on1[static_cast<size_t>(j)];
            samples.push_back({q, p2, q.y - p2.y});
            ++j;
        }
    }
    return true;
}

// The crossing of bound b between samples a and c: with s1 and s2 the slopes
// of both polylines over the pair, x = a.x + (b - D[a]) / (s1 - s2), the level
// on polyline 1 by its slope, and on polyline 2 that level minus b. A pair on
// one abscissa (a vertical step) has no slope: the crossing then lies on the
// step where the difference, linear along it, reaches b.
Crossing crossingOfBound(const Sample &a, const Sample &c, double b)
{
    if (a.m1.x == c.m1.x) {
        const double t = (b - a.d) / (c.d - a.d);
        const double y1 = a.m1.y + t * (c.m1.y - a.m1.y);
        return {{a.m1.x, y1}, {a.m1.x, y1 - b}};
    }
    const double s1 = (c.m1.y - a.m1.y) / (c.m1.x - a.m1.x);
    const double s2 = (c.m2.y - a.m2.y) / (c.m2.x - a.m2.x);
    const double x = a.m1.x + (b - a.d) / (s1 - s2);
    const double y1 = a.m1.y + (x - a.m1.x) * s1;
    return {{x, y1}, {x, y1 - b}};
}

Crossing atSample(const Sample &s)
{
    return {s.m1, s.m2};
}

// The output tables and the stretch count; each stretch appends two points,
// start then end, to each table that was given.
class Stretches
{
  public:
    Stretches(dpoint2d **out1, dpoint2d **out2, std::int32_t *count) : out1_(out1), out2_(out2), count_(count)
    {
    }

    bool store(const Crossing &start, const Crossing &end)
    {
        if (!append(out1_, start.on1, end.on1) || !append(out2_, start.on2, end.on2)) return false;
        points_ += 2;
        ++*count_;
        return true;
    }

  private:
    bool append(dpoint2d **table, const dpoint2d &start, const dpoint2d &end) const
    {
        if (table == nullptr) return true;
        std::int32_t n = points_;
        MEM_EtendreTableauParBloc(reinterpret_cast<void **>(table), sizeof(dpoint2d), &n, 2);
        if (tableFailed()) return false;
        (*table)[n - 2] = start;
        (*table)[n - 1] = end;
        return true;
    }

    dpoint2d **out1_;
    dpoint2d **out2_;
    std::int32_t *count_;
    std::int32_t points_ = 0;
};

// The walk over pairs of samples. False on an inconsistency (error 32768) or
// a table failure (copied into the error word); the stretches stored so far
// stay.
bool walkSamples(const std::vector<Sample> &samples, double low, double high, Stretches &out)
{
    bool open = false;
    Crossing start{};
    const size_t last = samples.size() - 1;
    for (size_t k = 0; k < last; ++k) {
        const Sample &a = samples[k];
        const Sample &c = samples[k + 1];
        const bool inA = inBracket(a.d, low, high);
        const bool inC = inBracket(c.d, low, high);
        const bool closesAtLast = k + 1 == last;
        if (!inA && open) return fail(), false;  // a sample outside while open
        if (!inA && inC) {
            // Into the bracket: a stretch opens on the bound D[k] lies beyond.
            start = crossingOfBound(a, c, boundBeyond(a.d, high, low));
            open = true;
        } else if (!inA) {
            // Out to out: nothing on one side; across the bracket, one whole
            // stretch between the two crossings, smaller x first.
            if ((a.d > high) == (c.d > high)) continue;
            Crossing first = crossingOfBound(a, c, boundBeyond(a.d, high, low));
            Crossing second = crossingOfBound(a, c, boundBeyond(c.d, high, low));
            if (second.on1.x < first.on1.x) std::swap(first, second);
            if (!out.store(first, second)) return false;
            continue;
        } else if (inC) {
            // In to in: the stretch opens at sample 0 and is open afterward.
            if (k == 0) {
                start = atSample(a);
                open = true;
            } else if (!open) {
                return fail(), false;
            }
        } else {
            // Out of the bracket on the bound D[k + 1] lies beyond: the open
            // stretch ends there, or the one from sample 0 when none is open.
            const Crossing end = crossingOfBound(a, c, boundBeyond(c.d, high, low));
            if (!open && k != 0) return fail(), false;
            if (!out.store(open ? start : atSample(a), end)) return false;
            open = false;
            continue;
        }
        if (closesAtLast) {
            if (!out.store(start, atSample(c))) return false;
            open = false;
        }
    }
    if (open) return fail(), false;
    return true;
}

}  // namespace

void UTMAT_CalculerIntervDiffPolylignesDansFourchette(const dpoint2d *pts1, int32_t n1, const dpoint2d *pts2,
                                                      int32_t n2, double low, double high, dpoint2d **out1,
                                                      dpoint2d **out2, int32_t *count)
{
    enterKernel();
    if (out1 == nullptr && out2 == nullptr) return (void)fail();
    if (failIfNull(pts1, pts2)) return;
    *count = 0;
    // Without a vertex on each side there is no common range to measure.
    if (n1 < 1 || n2 < 1) return;
    try {
        std::vector<Sample> samples;
        if (!mergeSamples(pts1, n1, pts2, n2, samples) || samples.size() < 2) return;
        Stretches stretches(out1, out2, count);
        walkSamples(samples, low, high, stretches);
    } catch (const std::bad_alloc &) {
        fail();
    }
}
