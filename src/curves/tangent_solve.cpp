// The common plan of the tangent-circle constructions: conditions, the two
// eliminations (radius unknown, radius given), tangency points, the local
// frame and the store that removes repeated solutions.
#include <cmath>

#include <tessar/vector.h>

#include "curves/tangent.hpp"
#include "frame/kernel.hpp"
#include "geometry/circle.hpp"

namespace tessar::detail {

namespace {

bool nearZero(double value) noexcept
{
    return egal(value, 0.0, utmatCalculPrec);
}

// The radius filter: a root is a circle only when above 0.
bool isRadius(double rho) noexcept
{
    return sup(rho, 0.0, utmatCalculPrec);
}

// The cases of the elimination with rho unknown, for the relation
// P x + Q y + T = 0 and the condition A x + B y + C = w rho, with
// D = A Q / P - B and E = A T / P - C once x = -(Q y + T) / P:
//
//   P      Q      A      D      w     | fixed          | quadratic in
//   ~0     not    not    -      -     | y              | rho
//   ~0     not    ~0     -      not   | y, rho         | x
//   not    -      -      not    -     | -              | rho
//   not    -      -      ~0     not   | rho            | y
//   otherwise                         | nothing
enum class RadiusCase {
    Nothing,
    YFixed,
    YAndRadiusFixed,
    XFromY,
    XFromYRadiusFixed,
};

RadiusCase radiusCase(const Condition &rel, const Condition &second, double D) noexcept
{
    if (nearZero(rel.a)) {
        if (nearZero(rel.b)) return RadiusCase::Nothing;
        if (!nearZero(second.a)) return RadiusCase::YFixed;
        return nearZero(second.w) ? RadiusCase::Nothing : RadiusCase::YAndRadiusFixed;
    }
    if (!nearZero(D)) return RadiusCase::XFromY;
    return nearZero(second.w) ? RadiusCase::Nothing : RadiusCase::XFromYRadiusFixed;
}

int roots(double a, double b, double c, std::array<double, 2> &out) noexcept
{
    std::int32_t n = 0;
    quadraticRoots(a, b, c, out.data(), &n);
    return n;
}

// x = -(Q y + T) / P with x x + y y = K K: the quadratic in y.
int rootsInY(double P, double Q, double T, double K, std::array<dpoint2d, 2> &out) noexcept
{
    const double q = Q / P;
    const double t = T / P;
    std::array<double, 2> y{};
    const int n = roots(q * q + 1.0, 2.0 * q * t, t * t - K * K, y);
    for (int i = 0; i < n; ++i)
        out[i] = {-(Q * y[i] + T) / P, y[i]};
    return n;
}

// y fixed with x x + y y = K K: the quadratic (1, 0, y y - K K) in x.
int rootsInX(double y, double K, std::array<dpoint2d, 2> &out) noexcept
{
    std::array<double, 2> x{};
    const int n = roots(1.0, 0.0, y * y - K * K, x);
    for (int i = 0; i < n; ++i)
        out[i] = {x[i], y};
    return n;
}

// Candidates from centres that share one fixed radius.
int withRadius(double rho, int n, const std::array<dpoint2d, 2> &centres,
               std::array<Candidate, 2> &out) noexcept
{
    for (int i = 0; i < n; ++i) {
        out[i].centre = centres[i];
        out[i].radius = rho;
    }
    return n;
}

}  // namespace

/* ---- Conditions ---- */

Condition tangentToLine(const UTMAT_Droite &l, double n, double s) noexcept
{
    return {l.a, l.b, l.c, s * n};
}

Condition tangentToCircle(const dpoint2d &C, double r) noexcept
{
    return {2.0 * C.x, 2.0 * C.y, r * r - C.x * C.x - C.y * C.y, -2.0 * r};
}

Condition passingThrough(const dpoint2d &q) noexcept
{
    return {2.0 * q.x, 2.0 * q.y, -(q.x * q.x) - q.y * q.y, 0.0};
}

Condition eliminateRadius(const Condition &first, const Condition &second) noexcept
{
    const double k1 = first.w;
    const double k2 = second.w;
    return {k2 * first.a - k1 * second.a, k2 * first.b - k1 * second.b, k2 * first.c - k1 * second.c, 0.0};
}

/* ---- Eliminations ---- */

int solveForRadius(const Condition &rel, const Condition &second, std::array<Candidate, 2> &out) noexcept
{
    const double P = rel.a;
    const double Q = rel.b;
    const double T = rel.c;
    const double A = second.a;
    const double B = second.b;
    const double C = second.c;
    const double w = second.w;
    // Once x = -(Q y + T) / P: D y + E = -w rho; only read when P is not near 0.
    const bool fixedY = nearZero(P);
    const double D = fixedY ? 0.0 : A * Q / P - B;
    const double E = fixedY ? 0.0 : A * T / P - C;

    std::array<double, 2> rho{};
    std::array<dpoint2d, 2> centres{};
    int kept = 0;
    switch (radiusCase(rel, second, D)) {
    case RadiusCase::Nothing:
        return 0;
    case RadiusCase::YFixed: {
        // x = alpha + beta rho, so (beta beta - 1) rho rho + 2 alpha beta rho
        // + alpha alpha + y y = 0.
        const double y = -T / Q;
        const double alpha = -(B * y + C) / A;
        const double beta = w / A;
        const int n = roots(w * w / (A * A) - 1.0, 2.0 * alpha * beta, alpha * alpha + y * y, rho);
        for (int i = 0; i < n; ++i) {
            if (!isRadius(rho[i])) continue;
            out[kept].centre = {-(B * y + C - w * rho[i]) / A, y};
            out[kept++].radius = rho[i];
        }
        return kept;
    }
    case RadiusCase::YAndRadiusFixed: {
        const double y = -T / Q;
        const double r = (B * y + C) / w;
        if (!isRadius(r)) return 0;
        return withRadius(r, rootsInX(y, r, centres), centres, out);
    }
    case RadiusCase::XFromY: {
        // y = gamma + delta rho and x = eps + zeta rho in x x + y y = rho rho.
        const double gamma = -E / D;
        const double delta = -w / D;
        const double eps = -(Q * gamma + T) / P;
        const double zeta = -(Q * delta) / P;
        const int n = roots(zeta * zeta + delta * delta - 1.0, 2.0 * (eps * zeta + gamma * delta),
                            eps * eps + gamma * gamma, rho);
        for (int i = 0; i < n; ++i) {
            if (!isRadius(rho[i])) continue;
            const double y = -(w * rho[i] + E) / D;
            out[kept].centre = {-(Q * y + T) / P, y};
            out[kept++].radius = rho[i];
        }
        return kept;
    }
    case RadiusCase::XFromYRadiusFixed: {
        // rho = -E / w, a circle when E / w lies below 0.
        if (!inf(E / w, 0.0, utmatCalculPrec)) return 0;
        const double r = -E / w;
        return withRadius(r, rootsInY(P, Q, T, r, centres), centres, out);
    }
    }
    return 0;
}

int solveForCentre(double P, double Q, double T, double K, std::array<dpoint2d, 2> &out) noexcept
{
    if (nearZero(P)) {
        if (nearZero(Q)) return 0;
        return rootsInX(-T / Q, K, out);
    }
    return rootsInY(P, Q, T, K, out);
}

/* ---- Tangency points ---- */

dpoint2d pointOnCircle(const dpoint2d &C, double r, const dpoint2d &centre, double d) noexcept
{
    return {C.x + (centre.x - C.x) * r / d, C.y + (centre.y - C.y) * r / d};
}

bool footOn(const UTMAT_Droite &l, const dpoint2d &p, dpoint2d &out) noexcept
{
    UTMAT_ProjeterPtSurDroite(&l, &p, &out);
    return !nestedFailed();
}

/* ---- Local frame ---- */

dpoint2d LocalFrame::toLocal(const dpoint2d &p) const noexcept
{
    if (!moved_) return p;
    dpoint2d out{0.0, 0.0};
    UTMAT_ChangerRepere(&p, &origin_, 0.0, &out);
    return out;
}

dpoint2d LocalFrame::toCaller(const dpoint2d &p) const noexcept
{
    if (!moved_) return p;
    const dpoint2d back{-origin_.x, -origin_.y};
    dpoint2d out{0.0, 0.0};
    UTMAT_ChangerRepere(&p, &back, 0.0, &out);
    return out;
}

bool LocalFrame::line(const UTMAT_Droite &line, UTMAT_Droite &out, double &n) const noexcept
{
    out = line;
    if (moved_) {
        const dpoint2d shift{-origin_.x, -origin_.y};
        UTMAT_TranslaterDroite(&line, &shift, &out);
    }
    UTMAT_NormerDroite(&out, nullptr);
    if (nestedFailed()) return false;
    // 1 up to rounding, and carried through the conditions as computed.
    n = std::sqrt(out.a * out.a + out.b * out.b);
    return true;
}

/* ---- Removal of repeated solutions ---- */

Solutions::Solutions(const LocalFrame &frame, Sameness sameness, int pointsEach, dpoint2d *centres,
                     double *radii, dpoint2d *points, std::int32_t *count) noexcept
    : frame_(frame), sameness_(sameness), pointsEach_(pointsEach), centres_(centres), radii_(radii),
      points_(points), count_(count)
{
}

void Solutions::gather(const Candidate &candidate) noexcept
{
    round_[gathered_++] = candidate;
}

bool Solutions::isStored(const Candidate &c) const noexcept
{
    for (std::int32_t i = 0; i < *count_; ++i) {
        const dpoint2d &stored = centres_[i];
        switch (sameness_) {
        case Sameness::None:
            return false;
        case Sameness::Centre:
            if (UTMAT_PointsIdentiques(&stored, &c.centre, utmatCalculPrec) != 0) return true;
            break;
        case Sameness::CentreAndRadius:
            if (UTMAT_PointsIdentiques(&stored, &c.centre, utmatCalculPrec) != 0 &&
                egal(radii_[i], c.radius, utmatCalculPrec))
                return true;
            break;
        case Sameness::XAndY:
            if (egal(stored.x, c.centre.x, utmatCalculPrec) && egal(stored.y, c.centre.y, utmatCalculPrec))
                return true;
            break;
        }
    }
    return false;
}

void Solutions::closeRound() noexcept
{
    for (int k = 0; k < gathered_; ++k) {
        Candidate c = round_[k];
        c.centre = frame_.toCaller(c.centre);
        for (int j = 0; j < pointsEach_; ++j)
            c.points[j] = frame_.toCaller(c.points[j]);
        if (isStored(c)) continue;
        const std::int32_t i = *count_;
        centres_[i] = c.centre;
        if (radii_ != nullptr) radii_[i] = c.radius;
        for (int j = 0; j < pointsEach_; ++j)
            points_[i * pointsEach_ + j] = c.points[j];
        *count_ = i + 1;
    }
    gathered_ = 0;
}

}  // namespace tessar::detail
