// Shared steps of the tangent-circle constructions.
//
// Every construction is put in a local frame (a given point, or a circle's
// centre, at the origin), where each condition on the solution circle of
// centre (x, y) and radius rho becomes linear after subtraction of the basic
// circle equation:
//   tangent to a line      a x + b y + c = s n rho   (side s of the line)
//   tangent to a circle    2 X x + 2 Y y + r r - X X - Y Y = -2 r rho
//                          (r signed: from outside r, from inside -r)
//   through a point (X, Y) 2 X x + 2 Y y - X X - Y Y = 0
// and one condition stays quadratic: x x + y y = rho rho about the origin.
// Linear elimination leaves one quadratic, solved by quadraticRoots, whose
// roots come larger magnitude first.
#pragma once

#include <array>
#include <cstdint>

#include <tessar/types.h>

namespace tessar::detail {

// The two sides of a line, or the two kinds of tangency to a circle, in the
// order in which every sign loop visits them.
inline constexpr std::array<double, 2> kSides{-1.0, 1.0};

// The condition a x + b y + c = w rho; w = 0 for a passage through a point.
struct Condition {
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;
    double w = 0.0;
};

// Tangent to the normalised line l (norm n as computed) on side s.
Condition tangentToLine(const UTMAT_Droite &l, double n, double s) noexcept;
// Tangent to the circle of centre C and signed radius r.
Condition tangentToCircle(const dpoint2d &C, double r) noexcept;
// Passing through the point q, when the origin lies on the solution too.
Condition passingThrough(const dpoint2d &q) noexcept;
// The relation free of rho between two conditions:
// w2 (first) - w1 (second), so P x + Q y + T = 0 in a, b, c.
Condition eliminateRadius(const Condition &first, const Condition &second) noexcept;

// A solution in the making: centre, radius, and up to two tangency points.
struct Candidate {
    dpoint2d centre{0.0, 0.0};
    double radius = 0.0;
    std::array<dpoint2d, 2> points{};
};

// The radius unknown: the relation P x + Q y + T = 0 (w ignored), the second
// condition A x + B y + C = w rho, and x x + y y = rho rho. Writes the
// candidates whose rho passes the radius filter (centre and radius set) and
// returns their number, at most 2.
int solveForRadius(const Condition &relation, const Condition &second,
                   std::array<Candidate, 2> &out) noexcept;

// The radius given: the relation P x + Q y + T = 0 and x x + y y = K K.
// Writes the centres and returns their number, at most 2.
int solveForCentre(double P, double Q, double T, double K, std::array<dpoint2d, 2> &out) noexcept;

// The tangency point on the circle of centre C and signed radius r of a
// solution at distance d = r + rho from C: C + (centre - C) r / d.
dpoint2d pointOnCircle(const dpoint2d &C, double r, const dpoint2d &centre, double d) noexcept;

// The foot of p on the line l; false with the error word set on a failure.
bool footOn(const UTMAT_Droite &l, const dpoint2d &p, dpoint2d &out) noexcept;

// The local frame: a translation to origin, or none at all.
class LocalFrame
{
  public:
    LocalFrame() noexcept = default;
    explicit LocalFrame(const dpoint2d &origin) noexcept : origin_(origin), moved_(true) {}

    // p in the frame.
    dpoint2d toLocal(const dpoint2d &p) const noexcept;
    // p back in the caller's frame.
    dpoint2d toCaller(const dpoint2d &p) const noexcept;
    // A private copy of line moved into the frame and normalised, with the
    // norm of the normalised copy; false with the error word set when the
    // line is degenerate.
    bool line(const UTMAT_Droite &line, UTMAT_Droite &out, double &n) const noexcept;

  private:
    dpoint2d origin_{0.0, 0.0};
    bool moved_ = false;
};

// How a candidate is found equal to a stored solution.
enum class Sameness {
    None,             // never: every candidate is stored
    Centre,           // centres identical within the kernel precision
    CentreAndRadius,  // the same, and radii equal within it
    XAndY,            // centres equal coordinate by coordinate
};

// The caller's output arrays and count. Candidates are gathered for one
// round of a sign loop; closing the round moves each back to the caller's
// frame and stores it unless it repeats a solution stored before it, so a
// solution stays at the place of its first finding.
class Solutions
{
  public:
    Solutions(const LocalFrame &frame, Sameness sameness, int pointsEach, dpoint2d *centres, double *radii,
              dpoint2d *points, std::int32_t *count) noexcept;

    void gather(const Candidate &candidate) noexcept;
    void closeRound() noexcept;

  private:
    bool isStored(const Candidate &candidate) const noexcept;

    LocalFrame frame_;
    Sameness sameness_;
    int pointsEach_;
    dpoint2d *centres_;
    double *radii_;
    dpoint2d *points_;
    std::int32_t *count_;
    // The candidates of one round: two sign values with two roots each.
    std::array<Candidate, 4> round_{};
    int gathered_ = 0;
};

}  // namespace tessar::detail
