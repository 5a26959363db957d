// Ovoids: the clothoid that joins two circles of the same turn, one inside
// the other, and the circle through a point that osculates a clothoid.
//
// Along a clothoid A^2 = R s and tau = s^2 / (2 A^2), so between the radii
// R1 and R2 the length is A^2 |R1 - R2| / (R1 R2) and the change of tangent
// angle A^2 |R1^2 - R2^2| / (2 R1^2 R2^2); both give A in closed form. The
// gap between the two circles has none and is found by bisection, as is the
// osculating circle through a point: the osculating circles of a clothoid
// are nested, the one further along inside the one before.
#include <cmath>

#include <tessar/clothoid.h>
#include <tessar/ovoid.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

// Conversion codes of the clothoid (see clothoid.h).
constexpr int32_t kAFromRTau = 4;
constexpr int32_t kAFromRP = 5;
constexpr int32_t kLFromAR = 7;
constexpr int32_t kRFromAL = 11;
constexpr int32_t kRFromATau = 12;

// The most halvings of the search by gap; running out is no failure.
constexpr int kBisectionSteps = 5000;

// The deflections that bound the search for the osculating circle: a quarter
// turn at the small end, and a deflection just past the origin (where the
// radius is still finite) at the large end.
constexpr double kSmallestDeflection = 0.001;

bool nearZero(double value)
{
    return egal(value, 0.0, utmatCalculPrec);
}

// A conversion inside a search: an invalid result fails the call.
bool convert(int32_t code, double a, double b, double &out)
{
    int32_t valid = 0;
    UTMAT_CalculerParametreClotValide(code, a, b, &out, &valid);
    if (nestedFailed()) return false;
    if (valid == 0) {
        fail();
        return false;
    }
    return true;
}

// The point of the clothoid A at abscissa s and offset d (right of travel).
bool pointAt(double A, double s, double d, dpoint2d &out)
{
    UTMAT_CalculerPosPointArcClotAbscisse(A, s, d, &out, nullptr);
    return !nestedFailed();
}

// The centre of the circle of radius R that the clothoid A osculates, the
// point at offset -R (to the left, where a positive A turns).
bool centreOfCurvature(double A, double R, dpoint2d &centre)
{
    double L = 0.0;
    return convert(kLFromAR, A, R, L) && pointAt(A, L, -R, centre);
}

// The gap of the ovoid between the circles Ra (larger) and Rb (smaller): A is
// searched by the deflection t at the small circle, 0 < t < pi / 2, along
// which the transition and so the gap grows. The gap is Ra less the distance
// of the centres less Rb, the circles lying one inside the other. Returns
// false on a failed step, with the error word set and out not written.
bool ovoidParameterBisect(double Ra, double Rb, double g, double &out, int32_t &valid)
{
    valid = 0;
    double lo = 0.0;
    double hi = dc_piover2;
    double A = 0.0;
    for (int step = 0; step < kBisectionSteps; ++step) {
        const double mid = (hi + lo) / 2.0;
        dpoint2d c1{0.0, 0.0};
        dpoint2d c2{0.0, 0.0};
        if (!convert(kAFromRTau, Rb, mid, A)) return false;
        if (!centreOfCurvature(A, Ra, c1) || !centreOfCurvature(A, Rb, c2)) return false;
        const double distance = UTMAT_CalculerDistance2Pt(&c1, &c2);
        if (nestedFailed()) return false;
        const double gap = Ra - distance - Rb;
        if (egal(g, gap, utmatCalculPrec)) break;
        if (inf(g, gap, utmatCalculPrec)) {
            hi = mid;
        } else {
            lo = mid;
        }
    }
    out = A;
    valid = 1;
    return true;
}

// The gap: from the origin (R1 infinite) it is the shift of the clothoid at
// R2, the conversion by shift of the clothoid itself; between two finite
// radii the ovoid's own search. This path makes no test of R1 - R2.
void parameterFromGap(double R1, double R2, double v, double *A, int32_t *valid)
{
    if (R1 == 0.0) {
        UTMAT_CalculerParametreClotValide(kAFromRP, R2, v, A, valid);
        return;
    }
    const double Ra = (R1 > R2) ? R1 : R2;
    const double Rb = (R1 > R2) ? R2 : R1;
    ovoidParameterBisect(Ra, Rb, v, *A, *valid);
}

}  // namespace

/* ---- Ovoids ---- */

void UTMAT_CalculerParametreOve(int32_t code, double R1, double R2, double v, double *A, int32_t *valid)
{
    enterKernel();
    *valid = 0;
    R1 = std::fabs(R1);
    R2 = std::fabs(R2);
    v = std::fabs(v);
    switch (code) {
    case TESSAR_OVOID_LENGTH:
        // L = A^2 / R2 - A^2 / R1; from the origin L = A^2 / R2.
        if (R1 == 0.0) {
            *A = std::sqrt(R2 * v);
        } else if (!nearZero(R1 - R2)) {
            *A = std::sqrt(R1 * R2 * v / std::fabs(R1 - R2));
        }
        // Equal radii: no transition exists; A is left as it was, yet valid.
        break;
    case TESSAR_OVOID_DEFLECTION:
        // tau = A^2 / (2 R2^2) - A^2 / (2 R1^2); from the origin tau = A^2 / (2 R2^2).
        if (R1 == 0.0) {
            *A = std::sqrt(2.0 * v) * R2;
        } else if (!nearZero(R1 - R2)) {
            *A = std::sqrt(2.0 * v / std::fabs(R1 * R1 - R2 * R2)) * R1 * R2;
        }
        break;
    case TESSAR_OVOID_GAP:
        // The search's own valid is overwritten below when the word is 0: a
        // search that ends invalid without an error (R2 or the gap near 0
        // from the origin) still reports valid, with A = 0.
        parameterFromGap(R1, R2, v, A, valid);
        break;
    default:
        fail();
        return;
    }
    if (utmatErreur == 0) *valid = 1;
}

/* ---- Circles osculating a clothoid ---- */

namespace {

// One end of the search for the osculating circle through p: an abscissa,
// the radius there, the centre of curvature and its distance from p.
struct Probe {
    double L = 0.0;
    double R = 0.0;
    dpoint2d centre{0.0, 0.0};
    double distance = 0.0;
};

// Fills a probe from its abscissa and radius; side is the sign of the offset
// of the centre of curvature.
bool probeAt(double A, double side, double L, double R, const dpoint2d &p, Probe &probe)
{
    probe.L = L;
    probe.R = R;
    if (!pointAt(A, L, side * R, probe.centre)) return false;
    probe.distance = UTMAT_CalculerDistance2Pt(&probe.centre, &p);
    return !nestedFailed();
}

// The probe at a fixed deflection: R by code 12, then L by code 7.
bool probeAtDeflection(double A, double side, double tau, const dpoint2d &p, Probe &probe)
{
    double R = 0.0;
    double L = 0.0;
    UTMAT_CalculerParametreClot(kRFromATau, A, tau, &R);
    if (nestedFailed()) return false;
    UTMAT_CalculerParametreClot(kLFromAR, A, R, &L);
    if (nestedFailed()) return false;
    return probeAt(A, side, L, R, p, probe);
}

// The solution at a probe: its centre and radius, and the point it osculates.
bool acceptProbe(double A, const Probe &probe, dpoint2d *centre, double *R, dpoint2d *tangency,
                 int32_t *count)
{
    dpoint2d foot{0.0, 0.0};
    if (!pointAt(A, probe.L, 0.0, foot)) return false;
    *centre = probe.centre;
    *R = probe.R;
    *tangency = foot;
    *count = 1;
    return true;
}

// An end of the clothoid piece: the point at abscissa s and the radius there
// (code 11 gives 0 at an abscissa of about 0).
struct PieceEnd {
    double s = 0.0;
    dpoint2d point{0.0, 0.0};
    double R = 0.0;
};

bool pieceEnd(double A, double s, PieceEnd &end)
{
    end.s = s;
    if (!pointAt(A, s, 0.0, end.point)) return false;
    UTMAT_CalculerParametreClot(kRFromAL, A, s, &end.R);
    return !nestedFailed();
}

// An end snaps p when p lies within the distance tolerance of it and the
// radius there is finite. Returns false on an error; snapped tells whether
// the osculating circle there was stored.
bool snapToEnd(double A, double side, const PieceEnd &end, const dpoint2d &p, dpoint2d *centre, double *R,
               dpoint2d *tangency, int32_t *count, bool &snapped)
{
    snapped = false;
    // The one use of the distance tolerance in the library; its default of 2
    // is wide on purpose, so that a point picked near an end takes that end.
    const bool atEnd = UTMAT_PointsIdentiques(&p, &end.point, utmatDistanceTolerance) != 0;
    if (nestedFailed()) return false;
    if (!atEnd || end.R == 0.0) return true;
    dpoint2d c{0.0, 0.0};
    if (!pointAt(A, end.s, side * end.R, c)) return false;
    *centre = c;
    *R = end.R;
    *tangency = end.point;
    *count = 1;
    snapped = true;
    return true;
}

}  // namespace

// Bisection on the abscissa between the probes at the deflections pi / 2
// (a: small circle, p outside it) and 0.001 (b: large circle, p inside it),
// whatever the piece's ends s1 and s2 are; they serve only for the snap.
void UTMAT_CalculerCerTgClotPs1Pt(double A, double s1, double s2, const dpoint2d *p, dpoint2d *centre,
                                  double *R, dpoint2d *tangency, int32_t *count)
{
    enterKernel();
    *count = 0;
    *R = 0.0;
    if (A == 0.0) return;
    // The centre of curvature lies at offset side * R: left of travel (a
    // negative offset) for a clothoid that turns left.
    const double side = (A > 0.0) ? -1.0 : 1.0;

    Probe a;
    Probe b;
    if (!probeAtDeflection(A, side, dc_piover2, *p, a)) return;
    if (!probeAtDeflection(A, side, kSmallestDeflection, *p, b)) return;

    PieceEnd end1;
    PieceEnd end2;
    if (!pieceEnd(A, s1, end1) || !pieceEnd(A, s2, end2)) return;
    bool snapped = false;
    if (!snapToEnd(A, side, end1, *p, centre, R, tangency, count, snapped)) return;
    if (!snapped && !snapToEnd(A, side, end2, *p, centre, R, tangency, count, snapped)) return;

    if (!supOuEgal(a.distance, a.R, utmatCalculPrec) || !infOuEgal(b.distance, b.R, utmatCalculPrec) ||
        *count != 0)
        return;

    // p outside the circle at a and inside the one at b. The loop has no
    // step counter: it ends when one of the two comparisons falls within the
    // precision, which the nesting of the circles guarantees for any
    // positive precision.
    while (sup(a.distance, a.R, utmatCalculPrec) && inf(b.distance, b.R, utmatCalculPrec)) {
        const double mid = (b.L + a.L) / 2.0;
        double r = 0.0;
        UTMAT_CalculerParametreClot(kRFromAL, A, mid, &r);
        if (nestedFailed()) return;
        Probe m;
        if (!probeAt(A, side, mid, r, *p, m)) return;
        if (m.distance > m.R) {
            a = m;
        } else {
            b = m;
        }
    }

    if (egal(b.distance, b.R, utmatCalculPrec)) {
        acceptProbe(A, b, centre, R, tangency, count);
    } else if (egal(a.distance, a.R, utmatCalculPrec)) {
        acceptProbe(A, a, centre, R, tangency, count);
    }
}
