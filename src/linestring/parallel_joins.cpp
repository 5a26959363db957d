// The vertex offset of a parallel copy. Each vertex V is moved by |d| along
// the normals of its two segments: at an outer corner the two normals are
// joined by a mitre (one point on the bisector) or by an arc around V, at an
// inner corner both normals' points are emitted and the loop they make is
// left for the knot removal. The result grows in the C library's heap.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include <tessar/frame.h>
#include <tessar/pointarray.h>

#include "linestring/parallel.hpp"

namespace tessar::detail {

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// The result array, grown by n + 100 records whenever it is full so that
// the points of rounded joins rarely cost a reallocation.
class GrowingResult
{
  public:
    GrowingResult(dpoint3d **points, int32_t *count, int32_t n)
        : points_(points), count_(count), block_(n + 100)
    {
    }

    bool push(const dpoint3d &p) noexcept
    {
        if (*count_ == capacity_) {
            const size_t bytes = static_cast<size_t>(capacity_ + block_) * sizeof(dpoint3d);
            void *grown = *points_ ? std::realloc(*points_, bytes) : std::malloc(bytes);
            if (!grown) return false;
            *points_ = static_cast<dpoint3d *>(grown);
            capacity_ += block_;
        }
        (*points_)[(*count_)++] = p;
        return true;
    }

  private:
    dpoint3d **points_;
    int32_t *count_;
    int32_t block_;
    int32_t capacity_ = 0;
};

// One vertex with its neighbours; a missing neighbour is null.
struct Corner {
    const dpoint3d &v;
    const dpoint3d *prev;
    const dpoint3d *next;
};

class VertexOffset
{
  public:
    VertexOffset(double distance, int32_t joinType, double arcStep, GrowingResult &out)
        : d_(distance), round_(joinType == kRoundJoin), out_(out)
    {
        // Neighbouring arc points lie atan(arcStep / |d|) apart; a step of 0
        // or below puts none between the ends and the bisector.
        if (round_ && arcStep > 0.0) step_ = std::atan(arcStep / std::fabs(d_));
    }

    bool emit(const Corner &c)
    {
        // The sign of (prev - V) x (next - V), exact: 1 turns right, -1
        // left. An end of an open string keeps the turn of the vertex before.
        if (c.prev && c.next) {
            const double cross =
                (c.prev->x - c.v.x) * (c.next->y - c.v.y) - (c.prev->y - c.v.y) * (c.next->x - c.v.x);
            turn_ = cross > 0.0 ? 1 : cross < 0.0 ? -1 : 0;
        }
        const double aP = c.prev ? direction(c.v, *c.prev) : 0.0;
        const double aN = c.next ? direction(c.v, *c.next) : 0.0;
        if (d_ == 0.0) return out_.push(c.v);
        return d_ < 0.0 ? emitLeft(c, aP, aN) : emitRight(c, aP, aN);
    }

  private:
    // Direction from a to b in 0 to 2 pi.
    double direction(const dpoint3d &a, const dpoint3d &b) const
    {
        const double t = std::atan2(b.y - a.y, b.x - a.x);
        return t < 0.0 ? t + twoPi_ : t;
    }

    // The point at |d| from V in the direction a, with V's z.
    dpoint3d at(const dpoint3d &v, double a) const
    {
        if (d_ < 0.0) return {v.x - d_ * std::cos(a), v.y - d_ * std::sin(a), v.z};
        return {v.x + d_ * std::cos(a), v.y + d_ * std::sin(a), v.z};
    }

    // Copy on the left: the left turns are the inner corners, and the arcs
    // of the right turns run clockwise, their angles falling.
    bool emitLeft(const Corner &c, double aP, double aN)
    {
        if (aP < aN) aP += twoPi_;
        const double b = (aN + aP) / 2;
        if (aP > twoPi_) aP -= twoPi_;
        if (!c.prev) return out_.push(at(c.v, aN + halfPi_));
        if (!c.next) return out_.push(at(c.v, aP - halfPi_));
        if (turn_ == 0) return out_.push(at(c.v, b));
        if (turn_ == -1) return out_.push(at(c.v, aP - halfPi_)) && out_.push(at(c.v, aN + halfPi_));
        if (!round_) return out_.push(mitre(c.v, std::fabs(d_), b, aP - aN - pi_));
        return arc(c.v, aP - halfPi_, b, aN + halfPi_, false);
    }

    // Copy on the right: the right turns are the inner corners, and the arcs
    // of the left turns run counter-clockwise, their angles rising.
    bool emitRight(const Corner &c, double aP, double aN)
    {
        if (aN < aP) aN += twoPi_;
        const double b = (aN + aP) / 2;
        if (aN > twoPi_) aN -= twoPi_;
        if (!c.prev) return out_.push(at(c.v, aN - halfPi_));
        if (!c.next) return out_.push(at(c.v, aP + halfPi_));
        if (turn_ == 0) return out_.push(at(c.v, b));
        if (turn_ == 1) return out_.push(at(c.v, aP + halfPi_)) && out_.push(at(c.v, aN - halfPi_));
        if (!round_) return out_.push(mitre(c.v, d_, b, aN - aP - pi_));
        return arc(c.v, aP + halfPi_, b, aN - halfPi_, true);
    }

    // The mitre point on the bisector b at length / cos h from V, where h is
    // half the corner's deflection: the given angle brought into 0 to 2 pi,
    // less pi if above it, halved. Nothing limits the length, so a corner
    // that nearly turns back makes a long spike.
    dpoint3d mitre(const dpoint3d &v, double length, double b, double h) const
    {
        while (h < 0.0)
            h += twoPi_;
        while (h > twoPi_)
            h -= twoPi_;
        if (h > pi_) h -= pi_;
        h /= 2;
        const double r = length / std::cos(h);
        return {v.x + r * std::cos(b), v.y + r * std::sin(b), v.z};
    }

    double inTurn(double a) const
    {
        while (a < 0.0)
            a += twoPi_;
        while (a >= twoPi_)
            a -= twoPi_;
        return a;
    }

    // The round join: the end of the incoming normal, points filled up to
    // the bisector, the bisector, points filled on to the outgoing normal,
    // and its end.
    bool arc(const dpoint3d &v, double start, double b, double end, bool rising)
    {
        start = inTurn(start);
        end = inTurn(end);
        b = inTurn(b);
        if (!out_.push(at(v, start))) return false;
        if (step_ > 0.0 && !fill(v, start, b, rising, false)) return false;
        if (!out_.push(at(v, b))) return false;
        // Falling, the second fill reaches the end angle itself, so the end
        // point comes twice; the repeat goes with the last clean-up.
        if (step_ > 0.0 && !fill(v, b, end, rising, !rising)) return false;
        return out_.push(at(v, end));
    }

    // The points strictly between the angles from and to, in the sense of
    // the arc, c - 1 of them at equal steps with c = trunc(span / step); one
    // more, at to itself, when throughEnd is set.
    bool fill(const dpoint3d &v, double from, double to, bool rising, bool throughEnd)
    {
        double span = rising ? to - from : from - to;
        if (span < 0.0) span += twoPi_;
        // A step so fine that the count has no integer could never be
        // stored: it fails as the growth would.
        const double steps = span / step_;
        if (!(steps < 1e18)) return false;
        const auto c = static_cast<int64_t>(steps);
        if (c < 1) return true;
        const double inc = span / static_cast<double>(c);
        const int64_t last = throughEnd ? c : c - 1;
        for (int64_t i = 1; i <= last; ++i) {
            const double t = static_cast<double>(i) * inc;
            if (!out_.push(at(v, rising ? from + t : from - t))) return false;
        }
        return true;
    }

    // 2 pi as atan2(0, -1) * 2, and pi and pi / 2 from the same value.
    const double pi_ = std::atan2(0.0, -1.0);
    const double twoPi_ = pi_ * 2;
    const double halfPi_ = pi_ / 2;
    double d_;
    bool round_;
    double step_ = 0.0;
    int32_t turn_ = 0;
    GrowingResult &out_;
};

bool isClosed(const dpoint3d *points, int32_t n) noexcept
{
    return points[0].x == points[n - 1].x && points[0].y == points[n - 1].y;
}

}  // namespace

int32_t offsetVertices(dpoint3d *points, int32_t n, double distance, int32_t joinType, double arcStep,
                       dpoint3d **result, int32_t *count) noexcept
{
    // A closed string is walked counter-clockwise, so that a positive
    // distance goes outward: a clockwise one (trapezoid sum at or above 0)
    // is reversed in place and stays so.
    const bool closed = isClosed(points, n);
    bool reversed = false;
    if (closed) {
        int32_t clockwise = 0;
        tsPointArray_getPolygonDirection(points, n, &clockwise);
        if (clockwise == 1) {
            tsPointArray_reverse(points, n);
            reversed = true;
        }
    }

    GrowingResult out(result, count, n);
    VertexOffset offset(distance, joinType, arcStep, out);
    // A closed string's last point is its first: the first vertex's previous
    // is the second-last point.
    const int32_t walked = closed ? n - 1 : n;
    for (int32_t i = 0; i < walked; ++i) {
        const dpoint3d *prev = i > 0 ? &points[i - 1] : closed ? &points[n - 2] : nullptr;
        const dpoint3d *next = i + 1 < n ? &points[i + 1] : nullptr;
        if (!offset.emit({points[i], prev, next})) return kFail;
    }
    if (closed) {
        const dpoint3d first = (*result)[0];
        if (!out.push(first)) return kFail;
    }
    if (reversed) tsPointArray_reverse(*result, *count);
    return 0;
}

}  // namespace tessar::detail
