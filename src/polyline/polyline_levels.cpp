// Levels along a chain of space points: the unknown levels are filled in run
// by run from the known ones around them, by plan length along the chain.
#include <span>

#include <tessar/polyline.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

double planDistance3(const dpoint3d &a, const dpoint3d &b)
{
    return planDistance({a.x, a.y}, {b.x, b.y});
}

// The status before any level is written: too few points, all or none known,
// or two successive points nearer in plan than the kernel's precision.
int32_t chainStatus(std::span<const dpoint3d> points, std::span<const int32_t> known)
{
    if (points.size() < 2) return TESSAR_ZINTERP_TOO_FEW;
    size_t given = 0;
    for (const int32_t k : known)
        if (k != 0) ++given;
    if (given == known.size()) return TESSAR_ZINTERP_ALL_KNOWN;
    if (given == 0) return TESSAR_ZINTERP_NONE_KNOWN;
    for (size_t i = 0; i + 1 < points.size(); ++i)
        if (planDistance3(points[i], points[i + 1]) < utmatCalculPrec) return TESSAR_ZINTERP_TOO_CLOSE;
    return TESSAR_ZINTERP_DONE;
}

// What stands on one side of a run of unknown levels: nothing (0), one known
// level (1), or a known level with a known neighbour beyond it, which gives a
// slope (2). Filled points never count, since known is not updated.
enum Support { kNone = 0, kLevel = 1, kSlope = 2 };

// A run of unknown points strictly between L and R (L may be -1, R may be n).
struct Run {
    int32_t left;
    int32_t right;
};

class ChainFill
{
  public:
    ChainFill(std::span<dpoint3d> points, std::span<const int32_t> known) : p_(points), known_(known) {}

    void fill(const Run &run)
    {
        const int32_t n = static_cast<int32_t>(p_.size());
        const int32_t L = run.left;
        const int32_t R = run.right;
        const Support left = L == -1 ? kNone : (L == 0 || !known_[L - 1]) ? kLevel : kSlope;
        const Support right = R == n ? kNone : (R == n - 1 || !known_[R + 1]) ? kLevel : kSlope;

        if (left == kNone) {
            fillBackwardFrom(R, right);
            return;
        }
        // The plan length from L to each point of the run, and D from L to R.
        double s = 0.0;
        const double D = right == kNone ? 0.0 : lengthFrom(L, R);
        for (int32_t i = L + 1; i < R; ++i) {
            s += dist(i - 1, i);
            p_[i].z = levelForward(L, R, left, right, s, D);
        }
    }

  private:
    double dist(int32_t i, int32_t j) const { return planDistance3(p_[i], p_[j]); }

    double lengthFrom(int32_t from, int32_t to) const
    {
        double length = 0.0;
        for (int32_t i = from + 1; i <= to; ++i)
            length += dist(i - 1, i);
        return length;
    }

    // Slope arriving at L from L - 1, and leaving R toward R + 1.
    double slopeInto(int32_t L) const { return (p_[L].z - p_[L - 1].z) / dist(L - 1, L); }
    double slopeOutOf(int32_t R) const { return (p_[R + 1].z - p_[R].z) / dist(R, R + 1); }

    // Nothing on the left: flat from R, or straight back along the slope
    // leaving R, with t the plan length from R back to the point.
    void fillBackwardFrom(int32_t R, Support right)
    {
        const double zR = p_[R].z;
        const double m1 = right == kSlope ? slopeOutOf(R) : 0.0;
        double t = 0.0;
        for (int32_t i = R - 1; i >= 0; --i) {
            t += dist(i, i + 1);
            p_[i].z = right == kSlope ? zR - t * m1 : zR;
        }
    }

    double levelForward(int32_t L, int32_t R, Support left, Support right, double s, double D) const
    {
        const double zL = p_[L].z;
        if (right == kNone) return left == kSlope ? zL + s * slopeInto(L) : zL;
        const double zR = p_[R].z;
        if (left == kLevel && right == kLevel) return zL + s * (zR - zL) / D;
        if (left == kSlope && right == kLevel) {
            // Parabola leaving L with the slope m0 and reaching zR at D.
            const double m0 = slopeInto(L);
            const double a = (zR - zL - m0 * D) / (D * D);
            return zL + m0 * s + a * (s * s);
        }
        if (left == kLevel) {
            // Parabola from zL arriving at R with the slope m1.
            const double m1 = slopeOutOf(R);
            const double a = (D * m1 - zR + zL) / (D * D);
            const double b = m1 - 2.0 * a * D;
            return zL + b * s + a * (s * s);
        }
        // Cubic leaving L with m0 and arriving at R with m1: with e the mean
        // excess of the chord over m0 and f the change of slope,
        // z = zL + m0 s + ((3e - f) / D) s^2 + ((f - 2e) / D^2) s^3.
        const double m0 = slopeInto(L);
        const double m1 = slopeOutOf(R);
        const double e = (zR - zL - m0 * D) / D;
        const double f = m1 - m0;
        return zL + m0 * s + ((3.0 * e - f) / D) * (s * s) + ((f - 2.0 * e) / (D * D)) * (s * s * s);
    }

    std::span<dpoint3d> p_;
    std::span<const int32_t> known_;
};

}  // namespace

// The status is the only report: the error word is cleared and stays 0.
void UTMAT_CalculerInterpolationCurviligneDuZ(dpoint3d *points, int32_t n, const int32_t *known,
                                              int32_t *status)
{
    enterKernel();
    *status = 0;
    const size_t count = n > 0 ? static_cast<size_t>(n) : 0;
    const std::span<dpoint3d> chain(points, count);
    const std::span<const int32_t> given(known, count);
    *status = chainStatus(chain, given);
    if (*status != TESSAR_ZINTERP_DONE) return;

    ChainFill filler(chain, given);
    for (int32_t i = 0; i < n;) {
        if (given[i]) {
            ++i;
            continue;
        }
        int32_t j = i;
        while (j < n && !given[j])
            ++j;
        filler.fill({i - 1, j});
        i = j;
    }
}
