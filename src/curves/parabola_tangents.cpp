// Tangent lines to parabolic arcs, and the crossings of an arc with a line
// and with another arc. The tangent of slope m to y = x^2 / (2 R) touches it
// at x = R m and reads y = m x - R m^2 / 2.
#include <array>

#include <tessar/parabola.h>
#include <tessar/vector.h>

#include "curves/parabola.hpp"
#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

bool nearZero(double value)
{
    return egal(value, 0.0, utmatCalculPrec);
}

// A tangent found in the local frame and its tangency points.
struct Tangent {
    UTMAT_Droite line{};
    std::array<dpoint2d, 2> T{};
};

// The tangents moved back to the caller's frame (lines translated by the
// origin and normalised), with `points` tangencies each, and the count set.
void storeTangents(const std::array<Tangent, 2> &found, int n, int points, const ArcFrame &frame,
                   UTMAT_Droite *out, dpoint2d *T, int32_t *count)
{
    for (int i = 0; i < n; ++i) {
        UTMAT_TranslaterDroite(&found[i].line, &frame.origin, &out[i]);
        UTMAT_NormerDroite(&out[i], nullptr);
        for (int j = 0; j < points; ++j)
            T[points * i + j] = frame.toCaller(found[i].T[j]);
    }
    *count = n;
}

void clearTangents(int points, UTMAT_Droite *out, dpoint2d *T, int32_t *count)
{
    *count = 0;
    for (int i = 0; i < 2; ++i) {
        out[i] = {0.0, 0.0, 0.0};
        for (int j = 0; j < points; ++j)
            T[points * i + j] = {0.0, 0.0};
    }
}

}  // namespace

/* ---- Tangent lines ---- */

void UTMAT_CalculerDroiteTg1ArcParPente(const dpoint2d *S, double R, double m, UTMAT_Droite *out, dpoint2d *T,
                                        int32_t *count)
{
    enterKernel();
    *count = 0;
    *out = {0.0, 0.0, 0.0};
    *T = {0.0, 0.0};
    if (nearZero(R)) return;
    const ArcFrame frame{*S};
    const double x = R * m;
    const dpoint2d t{x, x * x / R / 2.0};
    const UTMAT_Droite local{m, -1.0, -R * m * m / 2.0};
    UTMAT_Droite line{};
    UTMAT_TranslaterDroite(&local, S, &line);
    UTMAT_NormerDroite(&line, nullptr);
    if (nestedFailed()) return;
    *out = line;
    *T = frame.toCaller(t);
    *count = 1;
}

// With p as origin and S at (X, Y), the tangent y = m x touches the arc at
// x = X + R m where m x = Y + R m^2 / 2: (R / 2) m^2 + X m - Y = 0.
void UTMAT_CalculerDroiteTg1ArcParPs1Pt(const dpoint2d *p, const dpoint2d *S, double R, UTMAT_Droite out[2],
                                        dpoint2d *T, int32_t *count)
{
    enterKernel();
    clearTangents(1, out, T, count);
    if (nearZero(R)) return;
    const ArcFrame frame{*p};
    const dpoint2d vertex = frame.toLocal(*S);
    const double X = vertex.x, Y = vertex.y;

    std::array<Tangent, 2> found{};
    int n = 0;
    for (const double m : solveQuadratic(R / 2.0, X, -Y)) {
        // A horizontal tangent is not reported.
        if (nearZero(m)) continue;
        Tangent &tangent = found[n];
        const dpoint2d origin{0.0, 0.0}, direction{1.0, m};
        UTMAT_CalculerDroitePtVecteur(&origin, &direction, &tangent.line);
        if (nestedFailed()) return;
        const double x = m * R + X;
        tangent.T[0] = {x, (x - X) * (x - X) / R / 2.0 + Y};
        ++n;
    }
    storeTangents(found, n, 1, frame, out, T, count);
}

// With S1 as origin and S2 at (X, Y), y = m x - R1 m^2 / 2 is tangent to the
// second arc too when ((R1 - R2) / 2) m^2 - X m + Y = 0.
void UTMAT_CalculerDroiteTg2ArcPar(const dpoint2d *S1, double R1, const dpoint2d *S2, double R2,
                                   UTMAT_Droite out[2], dpoint2d *T, int32_t *count)
{
    enterKernel();
    clearTangents(2, out, T, count);
    // R1 is tested twice and R2 never: a second arc of radius 0 goes on and
    // gives a tangency point that is not a number.
    if (nearZero(R1)) return;
    if (nearZero(R1)) return;
    const ArcFrame frame{*S1};
    const dpoint2d vertex = frame.toLocal(*S2);
    const double X = vertex.x, Y = vertex.y;

    std::array<Tangent, 2> found{};
    int n = 0;
    for (const double m : solveQuadratic((R1 - R2) / 2.0, -X, Y)) {
        // A horizontal tangent is not reported.
        if (nearZero(m)) continue;
        Tangent &tangent = found[n++];
        tangent.line = {-m, 1.0, R1 * m * m / 2.0};
        const double x1 = m * R1;
        const double x2 = m * R2 + X;
        tangent.T[0] = {x1, x1 * x1 / R1 / 2.0};
        tangent.T[1] = {x2, (x2 - X) * (x2 - X) / R2 / 2.0 + Y};
    }
    storeTangents(found, n, 2, frame, out, T, count);
}

/* ---- Intersections ---- */

// In the frame of S the normalised line a x + b y + c = 0 meets
// y = x^2 / (2 R) where b x^2 + 2 a R x + 2 c R = 0.
void UTMAT_CalculerIntersectionDroiteParabole(const UTMAT_Droite *d, const dpoint2d *S, double R,
                                              dpoint2d out[2], int32_t *count)
{
    enterKernel();
    *count = 0;
    out[0] = out[1] = {0.0, 0.0};
    if (nearZero(R)) return;
    const ArcFrame frame{*S};
    UTMAT_Droite l{};
    if (!frame.lineToLocal(*d, true, l)) return;
    if (nearZero(l.b)) {
        const double x = -l.c / l.a;
        out[0] = frame.toCaller({x, (x / R) * x / 2.0});
        *count = 1;
        return;
    }
    const Roots roots = solveQuadratic(l.b, 2.0 * l.a * R, 2.0 * l.c * R);
    for (int i = 0; i < roots.n; ++i) {
        const double x = roots.x[i];
        out[i] = frame.toCaller({x, (-l.c - x * l.a) / l.b});
    }
    *count = roots.n;
}

// With S1 as origin and S2 at (X, Y), x^2 / (2 R1) = (x - X)^2 / (2 R2) + Y:
// (R1 - R2) x^2 - 2 X R1 x + 2 Y R1 R2 + X^2 R1 = 0. Equal radii leave the
// linear equation and its one crossing.
void UTMAT_CalculerIntersection2Parabole(const dpoint2d *S1, double R1, const dpoint2d *S2, double R2,
                                         dpoint2d out[2], int32_t *count)
{
    enterKernel();
    *count = 0;
    out[0] = out[1] = {0.0, 0.0};
    if (nearZero(R1) || nearZero(R2)) return;
    const ArcFrame frame{*S1};
    const dpoint2d vertex = frame.toLocal(*S2);
    const double X = vertex.x, Y = vertex.y;
    const Roots roots = solveQuadratic(R1 - R2, -2.0 * X * R1, 2.0 * Y * R1 * R2 + X * X * R1);
    for (int i = 0; i < roots.n; ++i) {
        const double x = roots.x[i];
        out[i] = frame.toCaller({x, (x - X) * (x - X) / R2 / 2.0 + Y});
    }
    *count = roots.n;
}
