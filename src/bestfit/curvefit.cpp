// Curves fitted to surveyed points: the circle through three points, in two
// ways, the circle adjusted to many points in plan, and the parabolic
// vertical curve adjusted to (chainage, level) points. The two adjustments
// are the condition-equation adjustment of the transform fits with one
// condition per point: the model value is the misclosure and the correction
// is subtracted.
#include <tessar/bestfit.h>
#include <tessar/frame.h>
#include <tessar/transform.h>

#include <cmath>
#include <cstdint>
#include <new>

#include "bestfit/transformfit.hpp"

namespace {

using tessar::detail::ConditionAdjustment;
using tessar::detail::MatrixRecord;

constexpr int32_t kFailure = TESSAR_FAILURE;
constexpr int32_t kTooFewLevels = 1;  // the vertical curve's answer to too few points, as the affine fit's

constexpr double kCollinearDeterminant = 1e-9;
constexpr int32_t kCirclePasses = 20;
constexpr double kCircleCentreConvergence = 1e-5;     // D and E
constexpr double kCircleConstantConvergence = 0.001;  // F
constexpr int32_t kVerticalPasses = 15;
constexpr double kVerticalConvergence = 0.01;  // a hundred times looser than the circle's D and E
constexpr double kShortestSpan = 1e-5;

// One observation as stored: x, sigma x, y, sigma y; writable where the
// array is (the circle fit reduces its points in place).
template <class Value> struct Observation {
    Value *v;
    Value &x() const { return v[0]; }
    Value &y() const { return v[2]; }
    double sigmaX() const { return v[1]; }
    double sigmaY() const { return v[3]; }
};

template <class Value> Observation<Value> observationAt(Value *observations, int32_t i)
{
    return Observation<Value>{observations +
                              static_cast<std::ptrdiff_t>(i) * TESSAR_BESTFIT_OBSERVATION_SIZE};
}

// Q of a curve fit: sigma x squared and sigma y squared of every point.
void setVariances(ConditionAdjustment &adj, int32_t n, const double *observations)
{
    for (int32_t i = 0; i < n; ++i) {
        const auto o = observationAt(observations, i);
        adj.setVariance(i, 0, o.sigmaX() * o.sigmaX());
        adj.setVariance(i, 1, o.sigmaY() * o.sigmaY());
    }
}

/* ---- Circle ---- */

struct Circle {
    double centreX = 0.0;
    double centreY = 0.0;
    double radius = 0.0;
};

// The reduction of the observations to their smallest x and y, undone when
// the fit ends on whatever path. The restored values can differ from those
// passed in by rounding.
class ReducedCoordinates
{
  public:
    ReducedCoordinates(int32_t n, double *observations) : n_(n), observations_(observations)
    {
        minX_ = observationAt(observations, 0).x();
        minY_ = observationAt(observations, 0).y();
        for (int32_t i = 1; i < n; ++i) {
            const auto o = observationAt(observations, i);
            if (o.x() < minX_) minX_ = o.x();
            if (o.y() < minY_) minY_ = o.y();
        }
        for (int32_t i = 0; i < n; ++i) {
            const auto o = observationAt(observations, i);
            o.x() = o.x() - minX_;
            o.y() = o.y() - minY_;
        }
    }
    ~ReducedCoordinates()
    {
        for (int32_t i = 0; i < n_; ++i) {
            const auto o = observationAt(observations_, i);
            o.x() = o.x() + minX_;
            o.y() = o.y() + minY_;
        }
    }
    ReducedCoordinates(const ReducedCoordinates &) = delete;
    ReducedCoordinates &operator=(const ReducedCoordinates &) = delete;

    double minX() const { return minX_; }
    double minY() const { return minY_; }

  private:
    int32_t n_;
    double *observations_;
    double minX_;
    double minY_;
};

// The first of the triples (i, i + 1, i + 2) that is not collinear gives the
// start circle. False if there is none.
bool startCircle(Circle &circle, int32_t n, const double *observations)
{
    for (int32_t i = 0; i + 2 < n; ++i) {
        const auto p1 = observationAt(observations, i);
        const auto p2 = observationAt(observations, i + 1);
        const auto p3 = observationAt(observations, i + 2);
        if (tsBestFit_horz3PtCurveCalc(&circle.centreX, &circle.centreY, &circle.radius, p1.x(), p1.y(),
                                       p2.x(), p2.y(), p3.x(), p3.y()) == 0)
            return true;
    }
    return false;
}

// The general circle x^2 + y^2 + D x + E y + F = 0 through the start circle:
// D = -2 cx, E = -2 cy, and F = cx^2 + cy^2 - r^2 written as
// -((2 r)^2 - (D^2 + E^2)) / 4.
struct GeneralCircle {
    double D;
    double E;
    double F;
};

GeneralCircle generalForm(const Circle &c)
{
    const double D = -2.0 * c.centreX;
    const double E = -2.0 * c.centreY;
    const double diameter = 2.0 * c.radius;
    return GeneralCircle{D, E, -0.25 * (diameter * diameter - (D * D + E * E))};
}

// Iterates the general circle; true on convergence. False with `failed` set
// when the heap is exhausted.
bool adjustCircle(GeneralCircle &k, int32_t n, double *observations, bool &failed)
{
    ConditionAdjustment adj(n, 1, 2, 3);
    if (!adj.allocated()) return !(failed = true);
    setVariances(adj, n, observations);
    for (int32_t i = 0; i < n; ++i) {
        const auto o = observationAt(observations, i);
        adj.setDesign(i, 0, o.x());
        adj.setDesign(i, 1, o.y());
        adj.setDesign(i, 2, 1.0);
    }
    for (int32_t pass = 0; pass < kCirclePasses; ++pass) {
        for (int32_t i = 0; i < n; ++i) {
            const double x = observationAt(observations, i).x();
            const double y = observationAt(observations, i).y();
            adj.setCondition(i, 0, 0, 2.0 * x + k.D);
            adj.setCondition(i, 0, 1, 2.0 * y + k.E);
            // The model's value itself, not its negative.
            adj.setMisclosure(i, x * x + y * y + k.D * x + k.E * y + k.F);
        }
        if (!adj.solve()) return !(failed = true);
        const double dD = adj.correction(0);
        const double dE = adj.correction(1);
        const double dF = adj.correction(2);
        // The correction is subtracted, as the misclosure is the model's value.
        k.D = k.D - dD;
        k.E = k.E - dE;
        k.F = k.F - dF;
        if (std::fabs(dD) < kCircleCentreConvergence && std::fabs(dE) < kCircleCentreConvergence &&
            std::fabs(dF) < kCircleConstantConvergence)
            return true;
    }
    return false;
}

int32_t fitCircle(double *centreY, double *centreX, double *radius, int32_t n, double *observations)
{
    bool failed = false;
    bool converged = false;
    GeneralCircle k{};
    double minX = 0.0;
    double minY = 0.0;
    {
        const ReducedCoordinates reduced(n, observations);
        minX = reduced.minX();
        minY = reduced.minY();
        Circle start;
        if (!startCircle(start, n, observations)) return kFailure;
        k = generalForm(start);
        converged = adjustCircle(k, n, observations, failed);
    }
    if (failed) return kFailure;
    if (!converged) {
        *centreY = 0.0;
        *centreX = 0.0;
        *radius = 0.0;
        return kFailure;
    }
    *radius = std::sqrt(k.E * k.E + k.D * k.D - 4.0 * k.F) * 0.5;
    *centreY = k.E * -0.5 + minY;
    *centreX = k.D * -0.5 + minX;
    return 0;
}

/* ---- Vertical curve ---- */

struct Parabola {
    double a;
    double b;
    double c;
};

// A difference of chainage too small to divide by is replaced by 1e-5,
// whatever its sign.
double usableSpan(double difference)
{
    return std::fabs(difference) < kShortestSpan ? kShortestSpan : difference;
}

// c = the first level, b = the first grade, and a from the change of grade
// between the first and the last two points over the length L.
Parabola startParabola(int32_t n, const double *observations, double L)
{
    const auto p0 = observationAt(observations, 0);
    const auto p1 = observationAt(observations, 1);
    const auto q1 = observationAt(observations, n - 2);
    const auto q0 = observationAt(observations, n - 1);
    const double g0 = (p1.y() - p0.y()) / usableSpan(p1.x() - p0.x());
    const double gn = (q0.y() - q1.y()) / usableSpan(q0.x() - q1.x());
    return Parabola{(gn - g0) / L * 0.5, g0, p0.y()};
}

struct VerticalResult {
    bool converged = false;
    bool failed = false;
    double standardError = 0.0;
};

VerticalResult adjustParabola(Parabola &p, int32_t n, const double *observations)
{
    VerticalResult result;
    ConditionAdjustment adj(n, 1, 2, 3);
    if (!adj.allocated()) return result.failed = true, result;
    setVariances(adj, n, observations);
    for (int32_t i = 0; i < n; ++i) {
        const double x = observationAt(observations, i).x();
        adj.setDesign(i, 0, x * x);
        adj.setDesign(i, 1, x);
        adj.setDesign(i, 2, 1.0);
    }
    for (int32_t pass = 0; pass < kVerticalPasses && !result.converged; ++pass) {
        for (int32_t i = 0; i < n; ++i) {
            const double x = observationAt(observations, i).x();
            const double y = observationAt(observations, i).y();
            adj.setCondition(i, 0, 0, 2.0 * p.a * x + p.b);
            adj.setCondition(i, 0, 1, -1.0);
            adj.setMisclosure(i, p.a * (x * x) + p.b * x + p.c - y);
        }
        if (!adj.solve()) return result.failed = true, result;
        const double da = adj.correction(0);
        const double db = adj.correction(1);
        const double dc = adj.correction(2);
        p.a = p.a - da;
        p.b = p.b - db;
        p.c = p.c - dc;
        result.converged = std::fabs(da) < kVerticalConvergence && std::fabs(db) < kVerticalConvergence &&
                           std::fabs(dc) < kVerticalConvergence;
    }
    if (!result.converged) return result;
    if (!adj.formResiduals()) return result.failed = true, result;
    result.standardError = std::sqrt(adj.residualSquareSum()) / static_cast<double>(n);
    return result;
}

}  // namespace

/* ---- Circle through three points ---- */

// The centre solves the two perpendicular-bisector equations
// (p1 - p2) . c = (|p1|^2 - |p2|^2) / 2 and (p2 - p3) . c = (|p2|^2 - |p3|^2) / 2.
int32_t tsBestFit_horz3PtCurveCalc(double *centreX, double *centreY, double *radius, double x1, double y1,
                                   double x2, double y2, double x3, double y3)
{
    *radius = 0.0;
    const double s2 = x2 * x2 + y2 * y2;
    const double c1 = (x1 * x1 + y1 * y1 - s2) * 0.5;
    const double c2 = (s2 - x3 * x3 - y3 * y3) * 0.5;
    const double dx1 = x1 - x2;
    const double dx2 = x2 - x3;
    const double dy1 = y1 - y2;
    const double dy2 = y2 - y3;
    const double det = dx1 * dy2 - dy1 * dx2;
    // An absolute limit on the coordinates as given: the circle fit reduces
    // its points to their minima before it asks.
    if (std::fabs(det) < kCollinearDeterminant) return kFailure;
    const double inverse = 1.0 / det;
    const double cx = (dy2 * c1 - dy1 * c2) * inverse;
    const double cy = (dx1 * c2 - dx2 * c1) * inverse;
    if (centreX != nullptr) *centreX = cx;
    if (centreY != nullptr) *centreY = cy;
    const double dx = x1 - cx;
    const double dy = y1 - cy;
    *radius = std::sqrt(dx * dx + dy * dy);
    return 0;
}

// (D, E, F) solves the rows (x, y, 1) (D, E, F)^T = -(x^2 + y^2) of the three
// points; the centre is (-D / 2, -E / 2) and the radius sqrt(D^2 + E^2 - 4 F) / 2.
int32_t tsBestFit_horz3PtCurveCalcMatrix(double *centreX, double *centreY, double *radius, double x1,
                                         double y1, double x2, double y2, double x3, double y3)
{
    MatrixRecord system;
    MatrixRecord right;
    if (!system.allocate(3, 3) || !right.allocate(3, 1)) return kFailure;
    const double xs[3] = {x1, x2, x3};
    const double ys[3] = {y1, y2, y3};
    for (int32_t i = 0; i < 3; ++i) {
        system(i, 0) = xs[i];
        system(i, 1) = ys[i];
        system(i, 2) = 1.0;
        right(i, 0) = -(xs[i] * xs[i] + ys[i] * ys[i]);
    }
    if (tsMatrix_invertMatrix(&system.record()) != 0) return kFailure;
    MatrixRecord general;
    general.product(0, system.record(), 0, right.record());
    const double D = general(0, 0);
    const double E = general(1, 0);
    const double F = general(2, 0);
    *centreX = -D / 2.0;
    *centreY = -E / 2.0;
    *radius = std::sqrt(D * D + E * E - 4.0 * F) / 2.0;
    return 0;
}

/* ---- Adjusted curves ---- */

// The centre's y comes first: callers pass their northing and easting through
// in that order.
int32_t tsBestFit_horzCurveCalc(double *centreY, double *centreX, double *radius, int32_t n,
                                double *observations)
{
    if (n < 3) return kFailure;
    try {
        return fitCircle(centreY, centreX, radius, n, observations);
    } catch (const std::bad_alloc &) {
        return kFailure;
    }
}

int32_t tsBestFit_vertCurveCalc(double *a, double *b, double *c, double *startGrade, double *endGrade,
                                double *length, double *rateOfChange, double *standardError, int32_t n,
                                const double *observations)
{
    if (n < 3) return kTooFewLevels;
    const double x0 = observationAt(observations, 0).x();
    const double xn = observationAt(observations, n - 1).x();
    double L = xn - x0;
    if (std::fabs(L) < kShortestSpan) L = kShortestSpan;
    *length = L;

    Parabola p = startParabola(n, observations, L);
    VerticalResult result;
    try {
        result = adjustParabola(p, n, observations);
    } catch (const std::bad_alloc &) {
        return kFailure;
    }
    if (result.failed) return kFailure;
    if (!result.converged) {
        *a = *b = *c = *startGrade = *endGrade = *length = *rateOfChange = *standardError = 0.0;
        return kFailure;
    }
    *a = p.a;
    *b = p.b;
    *c = p.c;
    *startGrade = 2.0 * p.a * x0 + p.b;
    *endGrade = 2.0 * p.a * xn + p.b;
    *rateOfChange = 2.0 * p.a;
    *standardError = result.standardError;
    return 0;
}
