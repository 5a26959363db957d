// The offset of a profile by thicknesses: each segment moves across itself by
// its own thickness (a positive one toward smaller y), and the joints are
// resolved as the segments come, so that the result is again one polyline
// running toward increasing x. The output always ends with a far point that
// stands for the last accepted segment prolonged without end: the next
// segment's line is cut with the output walking back from there, and where
// it finds no joint the output is cut back to the new segment's start and
// jumps to it.
#include <cmath>
#include <cstring>

#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/polyline.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

// The far point lies this far in x beyond the vertex before it.
constexpr double kFarStep = 1e31;
// Below this size of the cross product, two directions count as parallel.
constexpr double kParallelCross = 1e-6;

// How the line of a new segment meets the output, walking back.
enum class Joint { Inside, Vertex, None, Parallel };

// The output tables. The points table and the attribute table (when the
// caller wants one and gave attributes) grow and shrink together at the same
// index; the count follows the points table.
class OffsetOutput
{
  public:
    OffsetOutput(dpoint2d **points, void **attributes, std::size_t size, std::int32_t &count)
        : points_(points), attributes_(attributes), size_(size), count_(count)
    {
    }

    std::int32_t count() const { return count_; }
    dpoint2d &at(std::int32_t k) { return (*points_)[k]; }

    // Stores p at index k, growing both tables by one when k is the count.
    // A null attribute leaves the attribute slot as it is.
    bool store(std::int32_t k, const dpoint2d &p, const void *attribute)
    {
        if (k == count_ && !grow()) return false;
        (*points_)[k] = p;
        if (attributes_ != nullptr && attribute != nullptr)
            std::memcpy(static_cast<unsigned char *>(*attributes_) + k * size_, attribute, size_);
        return true;
    }

    // Removes the vertices from the last one down to index k, with their attributes.
    bool cutFrom(std::int32_t k)
    {
        while (count_ > k) {
            const std::int32_t last = count_ - 1;
            std::int32_t n = count_;
            MEM_SupprimerElementDansTableau(reinterpret_cast<void **>(points_), sizeof(dpoint2d), &n, last);
            if (tableFailed()) return false;
            if (attributes_ != nullptr) {
                std::int32_t m = count_;
                MEM_SupprimerElementDansTableau(attributes_, size_, &m, last);
                if (tableFailed()) return false;
            }
            count_ = last;
        }
        return true;
    }

  private:
    bool grow()
    {
        std::int32_t n = count_;
        MEM_EtendreTableau(reinterpret_cast<void **>(points_), sizeof(dpoint2d), &n);
        if (tableFailed()) return false;
        ++count_;
        if (attributes_ == nullptr) return true;
        std::int32_t m = count_ - 1;
        MEM_EtendreTableau(attributes_, size_, &m);
        return !tableFailed();
    }

    dpoint2d **points_;
    void **attributes_;
    std::size_t size_;
    std::int32_t &count_;
};

class ThicknessOffset
{
  public:
    ThicknessOffset(OffsetOutput &out, double tol, double xMax) : out_(out), tol_(tol), xMax_(xMax) {}

    // The segment starting at p with unit direction u, moved by thickness e,
    // joined to the output. False, with the error word set, on a failure.
    bool utmat_AjouterSegmentEpaisseur(const dpoint2d &p, double e, const dpoint2d &u, const void *attribute)
    {
        const dpoint2d q{p.x, p.y - e / u.x};
        UTMAT_Droite line{};
        UTMAT_CalculerDroitePtVecteur(&q, &u, &line);
        if (nestedFailed()) return false;
        if (out_.count() == 0) return out_.store(0, q, attribute) && placeFarPoint(1, u, attribute);

        std::int32_t k = out_.count() - 1;
        dpoint2d joint{};
        Joint found = Joint::None;
        if (!walkBack(line, u, k, joint, found)) return false;
        switch (found) {
        case Joint::Inside:
            return out_.store(k, joint, attribute) && placeFarPoint(k + 1, u, attribute);
        case Joint::Vertex:
            return placeFarPoint(k, u, attribute);
        default:
            return jumpTo(q, u, attribute);
        }
    }

    // Removes the last vertex and its attribute.
    bool dropLast() { return out_.cutFrom(out_.count() - 1); }

    // A last step shorter than tol is lengthened to tol along its segment;
    // a vertical last step goes.
    bool settleLastStep()
    {
        const std::int32_t n = out_.count();
        if (n < 2) return true;
        dpoint2d &last = out_.at(n - 1);
        const dpoint2d &previous = out_.at(n - 2);
        const double d = last.x - previous.x;
        if (d == 0.0) return dropLast();
        if (d < tol_) {
            last.y += (last.y - previous.y) * tol_ / d;
            last.x += tol_;
        }
        return true;
    }

  private:
    // Cuts the line of the new segment with the output's segments, from the
    // last one back, until the result is settled; k ends at the index the
    // result refers to.
    bool walkBack(const UTMAT_Droite &line, const dpoint2d &u, std::int32_t &k, dpoint2d &joint, Joint &found)
    {
        for (; k >= 1; --k) {
            const dpoint2d &from = out_.at(k - 1);
            const dpoint2d &to = out_.at(k);
            UTMAT_Droite segmentLine{};
            UTMAT_CalculerDroite2Pt(&from, &to, &segmentLine);
            if (nestedFailed()) return false;
            dpoint2d w{};
            UTMAT_CalculerVecteur(&from, &to, &w);
            if (nestedFailed()) return false;
            UTMAT_NormerVecteur(&w);
            if (nestedFailed()) return false;
            std::int32_t meets = 0;
            UTMAT_CalculerIntersection2Droite(&line, &segmentLine, &joint, &meets);
            if (nestedFailed()) return false;
            const double c = UTMAT_CalculerProduitVectoriel(&w, &u);
            if (meets == 0 || std::fabs(c) < kParallelCross) {
                found = Joint::Parallel;
                return true;
            }
            dpoint2d fromFrom{};
            UTMAT_CalculerVecteur(&from, &joint, &fromFrom);
            if (nestedFailed()) return false;
            const double s = UTMAT_CalculerProduitScalaire(&fromFrom, &w);
            if (tsUtil_greaterDouble(s, 0.0, tol_)) {
                found = joint.x <= xMax_ ? Joint::Inside : Joint::None;
                return true;
            }
            if (egal(s, 0.0, tol_)) {
                found = Joint::Vertex;
                return true;
            }
            if (c > 0.0) {
                found = Joint::None;
                return true;
            }
        }
        found = Joint::None;
        return true;
    }

    // No joint: the output is cut back to the abscissa of q, closed there on
    // the segment it crosses, and goes on from q.
    bool jumpTo(const dpoint2d &q, const dpoint2d &u, const void *attribute)
    {
        std::int32_t k = out_.count() - 1;
        while (k >= 0 && tsUtil_greaterDouble(out_.at(k).x, q.x, tol_))
            --k;
        if (k >= 0 && k + 1 < out_.count() && !egal(out_.at(k).x, q.x, tol_)) {
            const double y = ordinateOnSegment(out_.at(k), out_.at(k + 1), q.x);
            if (!egal(y, q.y, tol_)) {
                if (!out_.store(k + 1, {q.x, y}, nullptr)) return false;
                ++k;
            }
        }
        return out_.store(k + 1, q, attribute) && placeFarPoint(k + 2, u, attribute);
    }

    // The far point at index k: the vertex before it prolonged along u; the
    // vertices behind it go.
    bool placeFarPoint(std::int32_t k, const dpoint2d &u, const void *attribute)
    {
        const dpoint2d &base = out_.at(k - 1);
        const dpoint2d far{base.x + kFarStep, base.y + kFarStep * u.y / u.x};
        return out_.store(k, far, attribute) && out_.cutFrom(k + 1);
    }

    OffsetOutput &out_;
    double tol_;
    double xMax_;
};

void negateAbscissas(dpoint2d *pts, std::int32_t n)
{
    for (std::int32_t k = 0; k < n; ++k)
        pts[k].x = -pts[k].x;
}

const void *recordOf(const void *attributes, std::size_t size, std::int32_t k)
{
    if (attributes == nullptr) return nullptr;
    return static_cast<const unsigned char *>(attributes) + static_cast<std::size_t>(k) * size;
}

}  // namespace

void UTMAT_TranslationPolyligneParEpaisseurs(dpoint2d *pts, const void *attributes, size_t attributeSize,
                                             const double *thicknesses, int32_t n, double tol,
                                             dpoint2d **points, void **attributeTable, int32_t *count)
{
    enterKernel();
    *count = 0;
    if (n < 1) return;
    // A polyline running backward is walked mirrored, toward increasing x.
    const bool mirrored = pts[n - 1].x < pts[0].x;
    if (mirrored) negateAbscissas(pts, n);
    // A plain product: for a last abscissa below 0 the bound lies before it.
    const double xMax = 2.0 * pts[n - 1].x;

    OffsetOutput out(points, attributes != nullptr ? attributeTable : nullptr, attributeSize, *count);
    ThicknessOffset offset(out, tol, xMax);
    for (std::int32_t i = 0; i + 1 < n; ++i) {
        dpoint2d u{};
        UTMAT_CalculerVecteur(&pts[i], &pts[i + 1], &u);
        if (nestedFailed()) return;
        UTMAT_NormerVecteur(&u);
        if (nestedFailed()) return;
        if (!offset.utmat_AjouterSegmentEpaisseur(pts[i], thicknesses[i], u,
                                                  recordOf(attributes, attributeSize, i)))
            return;
    }
    // The closing call carries the attribute of segment 0 on purpose, not
    // that of the last segment.
    const dpoint2d level{1.0, 0.0};
    if (!offset.utmat_AjouterSegmentEpaisseur(pts[n - 1], 0.0, level, recordOf(attributes, attributeSize, 0)))
        return;
    if (!offset.dropLast()) return;  // the far point
    if (!offset.settleLastStep()) return;

    if (mirrored) {
        negateAbscissas(*points, *count);
        negateAbscissas(pts, n);
    }
}
