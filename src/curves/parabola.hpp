// The steps that every construction of parabolic arcs goes through: the move
// to a local frame with the caller's axes, the slope form of a line, the
// guarded divisions, the tangency points and the output slots.
//
// A parabola of vertex S and radius R is y = S.y + (x - S.x)^2 / (2 R). In a
// frame whose origin the parabola passes through, S.x^2 + 2 R S.y = 0. It is
// tangent to y = m x + k when k = S.y - m S.x - R m^2 / 2, at T.x = S.x + R m,
// and tangent to the parabola (S0, R0) when
// (S0.x - S.x)^2 = 2 (R - R0) (S0.y - S.y), at T.x = (R0 S.x - R S0.x) / (R0 - R).
#pragma once

#include <array>
#include <cstdint>

#include <tessar/frame.h>
#include <tessar/types.h>

namespace tessar::detail {

// num / den when tsMath_isDivisionPossible allows it; a refused division is
// how every member of the family drops a root or ends early.
inline bool guardedDivide(double num, double den, double &out) noexcept
{
    if (tsMath_isDivisionPossible(num, den) == 0) return false;
    out = num / den;
    return true;
}

// A frame parallel to the caller's, at origin. Points go in and out through
// UTMAT_ChangerRepere with angle 0 (out with the negated origin), lines
// through UTMAT_TranslaterDroite by the negated origin.
struct ArcFrame {
    dpoint2d origin{};

    dpoint2d toLocal(const dpoint2d &p) const noexcept;
    dpoint2d toCaller(const dpoint2d &p) const noexcept;
    // The line in this frame, normalised by UTMAT_NormerDroite when asked:
    // false with 32768 in the error word for a degenerate line.
    bool lineToLocal(const UTMAT_Droite &d, bool normalise, UTMAT_Droite &out) const noexcept;
};

// The line as y = m x + k, m = -a / b and k = -c / b, each division guarded:
// a vertical or almost vertical line has no slope form.
inline bool slopeForm(const UTMAT_Droite &d, double &m, double &k) noexcept
{
    if (tsMath_isDivisionPossible(d.a, d.b) == 0) return false;
    m = -d.a / d.b;
    if (tsMath_isDivisionPossible(d.c, d.b) == 0) return false;
    k = -d.c / d.b;
    return true;
}

// The point of the parabola (S, R) at abscissa x:
// y = S.y + (x - S.x)^2 / 2 / R, the division by R guarded.
bool pointOnArc(const dpoint2d &S, double R, double x, dpoint2d &T) noexcept;

// The tangency point of (S, R) with a line of slope m: T.x = S.x + R m.
bool tangencyWithLine(const dpoint2d &S, double R, double m, dpoint2d &T) noexcept;

// The tangency point of (S, R) with the parabola (S0, R0).
bool tangencyWithArc(const dpoint2d &S0, double R0, const dpoint2d &S, double R, dpoint2d &T) noexcept;

// The vertex on the tangent y = m x + k: S.y = (S.x + m R / 2) m + k.
inline dpoint2d vertexOnTangent(double x, double R, double m, double k) noexcept
{
    return {x, (x + m * R / 2.0) * m + k};
}

// The arc through the origin and the point (X, 0): S.x = X / 2 and
// S.y = -(X^2 / R) / 8. False when the division is refused.
inline bool levelVertex(double X, double R, dpoint2d &S) noexcept
{
    double ratio = 0.0;
    if (!guardedDivide(X * X, R, ratio)) return false;
    S = {X / 2.0, -ratio / 8.0};
    return true;
}

// A solution in the local frame: vertex, radius and up to two tangencies.
struct ArcSolution {
    dpoint2d S{};
    double R = 0.0;
    std::array<dpoint2d, 2> T{};
};

// The real roots of a x^2 + b x + c = 0, larger magnitude first.
struct Roots {
    std::array<double, 2> x{};
    std::int32_t n = 0;

    const double *begin() const noexcept { return x.data(); }
    const double *end() const noexcept { return x.data() + n; }
};
Roots solveQuadratic(double a, double b, double c) noexcept;

// The caller's output slots: vertices, radii (null when the radius is
// given), tangencies per solution (0, 1 or a pair) and the count.
struct ArcOutputs {
    dpoint2d *S;
    double *R;
    dpoint2d *T;
    int tangencies;
    std::int32_t *count;

    // Count 0 and every slot of `capacity` solutions zeroed.
    void clear(int capacity) const noexcept;
    // Solution i moved back to the caller's frame and stored in slot i.
    void store(int i, const ArcSolution &s, const ArcFrame &frame) const noexcept;
    // All solutions stored, then the count set.
    template <std::size_t N>
    void storeAll(const std::array<ArcSolution, N> &found, int n, const ArcFrame &frame) const noexcept
    {
        for (int i = 0; i < n; ++i)
            store(i, found[i], frame);
        *count = n;
    }
};

}  // namespace tessar::detail
