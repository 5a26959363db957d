// The mask of two profiles: their upper envelope, each vertex telling which
// profile it comes from. Both profiles run toward increasing x and are walked
// together, one segment of each at a time, as the difference of two profiles
// walks them; every comparison is exact. Polyline 2's segment is segment 1 of
// the shared comparison and polyline 1's segment is segment 2, so a relation
// of 1 says that polyline 1 lies above.
#include <tessar/memory.h>
#include <tessar/polyline.h>

#include "frame/kernel.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

using Attribut = UTMAT_AttributMasque;

constexpr std::uint8_t kFromPolyline1 = 1;
constexpr std::uint8_t kFromPolyline2 = 0;

// Appends one element to a table whose count is shared with another table.
template <class T> bool appendShared(T **table, std::int32_t n, const T &value)
{
    MEM_EtendreTableau(reinterpret_cast<void **>(table), sizeof(T), &n);
    if (tableFailed()) return false;
    (*table)[n - 1] = value;
    return true;
}

// The output: the envelope's points, their attributes when the caller wants
// them, and the shared count, which follows the points table.
class Envelope
{
  public:
    Envelope(dpoint2d **points, Attribut **attributes, std::int32_t &count)
        : points_(points), attributes_(attributes), count_(count)
    {
    }

    bool append(const dpoint2d &p, std::uint32_t valeur, std::uint8_t dessus)
    {
        if (!appendShared(points_, count_, p)) return false;
        ++count_;
        if (attributes_ == nullptr) return true;
        return appendShared(attributes_, count_ - 1, Attribut{valeur, dessus});
    }

    // The vertex at index, counted back from the last one (0 is the last),
    // now comes from polyline 1 with the given value.
    void relabelFromEnd(std::int32_t back, std::uint32_t valeur)
    {
        if (attributes_ != nullptr) (*attributes_)[count_ - 1 - back] = {valeur, kFromPolyline1};
    }

    std::int32_t count() const { return count_; }
    const dpoint2d &last() const { return (*points_)[count_ - 1]; }

  private:
    dpoint2d **points_;
    Attribut **attributes_;
    std::int32_t &count_;
};

// The next step from the last digit of the comparison's code: polyline 1's
// segment ends beyond polyline 2's (2), before it (4) or within it (3). When
// both end at one x, a polyline that goes on with a vertical step is held
// back by the other, so that its step is compared with the other's current
// segment first; with a step on both sides or on neither, both move on.
void utmat_ChoisirAvancementSegments(std::int32_t code, std::int32_t flags, bool nextV1, bool nextV2,
                                     std::int32_t &i, std::int32_t &j)
{
    switch (code % 10) {
    case kClassBeyond:
        ++j;
        break;
    case kClassBefore:
        ++i;
        break;
    case kClassWithin:
        if ((flags & TESSAR_SEG_D_AT_END) == 0 || nextV1 == nextV2) {
            ++i;
            if (flags & TESSAR_SEG_D_AT_END) ++j;
        } else if (nextV1) {
            ++j;
        } else {
            ++i;
        }
        break;
    default:
        break;
    }
}

class MaskWalk
{
  public:
    MaskWalk(const dpoint2d *pts1, const Attribut *attributes1, std::int32_t n1, const dpoint2d *pts2,
             const Attribut *attributes2, std::int32_t n2, Envelope &out)
        : pts1_(pts1), at1_(attributes1), n1_(n1), pts2_(pts2), at2_(attributes2), n2_(n2), out_(out)
    {
    }

    void run()
    {
        if (!firstVertex()) return;
        std::int32_t i = 0;
        std::int32_t j = 0;
        while (i < n1_ - 1 && j < n2_ - 1) {
            utmat_ComparerPosition4Points(pts2_[j], pts2_[j + 1], pts1_[i], pts1_[i + 1], s_);
            if (nestedFailed()) return;
            if (!appendForPair(i, j)) return;
            const bool nextV1 = j + 2 < n2_ && pts2_[j + 1].x == pts2_[j + 2].x;
            const bool nextV2 = i + 2 < n1_ && pts1_[i + 1].x == pts1_[i + 2].x;
            utmat_ChoisirAvancementSegments(s_.code, s_.flags, nextV1, nextV2, i, j);
        }
        if (i < n1_ - 1)
            appendRemaining(pts1_, at1_, n1_, i, kFromPolyline1);
        else if (j < n2_ - 1)
            appendRemaining(pts2_, at2_, n2_, j, kFromPolyline2);
    }

  private:
    bool from1(std::int32_t k) { return out_.append(pts1_[k], at1_[k].valeur, kFromPolyline1); }
    bool from2(std::int32_t k) { return out_.append(pts2_[k], at2_[k].valeur, kFromPolyline2); }

    // Polyline 1 starts the envelope unless polyline 2 starts strictly
    // before it. An empty polyline leaves the start to the other one.
    bool firstVertex()
    {
        if (n1_ < 1 && n2_ < 1) return false;
        if (n2_ < 1 || (n1_ >= 1 && !(pts2_[0].x < pts1_[0].x))) return from1(0);
        return from2(0);
    }

    // The crossing point, if the segments cross, labelled by the polyline
    // that lies above after it.
    bool appendCrossing(std::int32_t i, std::int32_t j)
    {
        if (!relationsCross(s_.relStart, s_.relEnd)) return true;
        if (s_.relEnd == 1) return out_.append(s_.inter, at1_[i].valeur, kFromPolyline1);
        return out_.append(s_.inter, at2_[j].valeur, kFromPolyline2);
    }

    // The vertex before the last one now comes from polyline 1's segment i.
    void relabelBeforeLast(std::int32_t i)
    {
        if (i > 0 && out_.count() >= 2) out_.relabelFromEnd(1, at1_[i].valeur);
    }

    bool appendForPair(std::int32_t i, std::int32_t j)
    {
        switch (s_.code) {
        case kCodeAllBeyond:
            return from2(j + 1);
        case kCodeAllBefore:
            return from1(i + 1);
        case kCodeStartInEndBeyond:
        case kCodeCovers:
            return polyline2EndsFirst(i, j);
        case kCodeBothIn:
        case kCodeStartBeforeEndIn:
            return polyline1EndsFirst(i, j);
        default:
            return true;  // a segment running backward adds nothing
        }
    }

    bool polyline2EndsFirst(std::int32_t i, std::int32_t j)
    {
        if (!appendCrossing(i, j)) return false;
        if (s_.relEnd != 1) return from2(j + 1);
        if (i > 0) out_.relabelFromEnd(0, at1_[i].valeur);
        return true;
    }

    bool polyline1EndsFirst(std::int32_t i, std::int32_t j)
    {
        if (pts1_[i].x == pts1_[i + 1].x && pts2_[j].x == pts2_[j + 1].x) {
            // Two vertical steps on one abscissa: the higher end goes on.
            if (pts2_[j + 1].y > pts1_[i + 1].y) return from2(j + 1);
            if (!from1(i + 1)) return false;
            relabelBeforeLast(i);
            return true;
        }
        if (!appendCrossing(i, j)) return false;
        switch (s_.relEnd) {
        case 0:
            return out_.append(pts1_[i + 1], at1_[i + 1].valeur, kFromPolyline2);
        case 1:
            if (!from1(i + 1)) return false;
            relabelBeforeLast(i);
            return true;
        default:
            if (s_.flags & TESSAR_SEG_D_AT_END) return from2(j + 1);
            return true;
        }
    }

    // The rest of the polyline that is not used up, from its current vertex
    // unless the envelope has reached that vertex's abscissa already.
    void appendRemaining(const dpoint2d *pts, const Attribut *attributes, std::int32_t n, std::int32_t k,
                         std::uint8_t dessus)
    {
        if (!(pts[k].x > out_.last().x)) ++k;
        for (; k < n; ++k)
            if (!out_.append(pts[k], attributes[k].valeur, dessus)) return;
    }

    const dpoint2d *pts1_;
    const Attribut *at1_;
    std::int32_t n1_;
    const dpoint2d *pts2_;
    const Attribut *at2_;
    std::int32_t n2_;
    Envelope &out_;
    SegmentComparison s_{};
};

}  // namespace

void UTMAT_AppliquerMasque(const dpoint2d *pts1, const UTMAT_AttributMasque *attributes1, int32_t n1,
                           const dpoint2d *pts2, const UTMAT_AttributMasque *attributes2, int32_t n2,
                           dpoint2d **points, UTMAT_AttributMasque **attributes, int32_t *count)
{
    enterKernel();
    *count = 0;
    Envelope out(points, attributes, *count);
    MaskWalk(pts1, attributes1, n1, pts2, attributes2, n2, out).run();
}
