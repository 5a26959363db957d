// The difference of two profiles: one merge of the two segment sequences.
// Each pair of segments is compared over its common x interval; a stretch
// without a meeting point is one mean height over one width, and a meeting
// point inside the interval splits it in two. Lengths and areas are summed
// by the side polyline 1 lies on, the signed area since the last meeting
// point is carried along, and the meeting points, their areas and the pieces
// of polyline 1 between them go to the caller's MEM_ tables.
#include <algorithm>
#include <cmath>

#include <tessar/memory.h>
#include <tessar/polyline.h>

#include "frame/kernel.hpp"
#include "polyline/difference.hpp"
#include "polyline/polyline.hpp"

using namespace tessar::detail;

namespace {

// The tables of the walk and their counts. The three tables of meeting points
// share the caller's count; the areas table and the points of the pieces
// count their own elements.
struct DifferenceTables {
    dpoint2d **points;
    std::uint32_t **types;
    double **areas;
    std::int32_t *count;
    std::int32_t areaCount;
    dpoint2d **pieces;
    std::int32_t **signs;
    std::int32_t *pieceCount;
    std::int32_t piecePoints;

    bool wantMeetings() const { return points != nullptr && types != nullptr && count != nullptr; }
    bool wantPieces() const { return pieces != nullptr && signs != nullptr && pieceCount != nullptr; }
};

// The four sums; one that the caller does not want is kept in a sink.
struct DifferenceSums {
    double sink[4] = {};
    double &lengthAbove, &areaAbove, &lengthBelow, &areaBelow;

    DifferenceSums(double *la, double *aa, double *lb, double *ab)
        : lengthAbove(la ? *la : sink[0]), areaAbove(aa ? *aa : sink[1]), lengthBelow(lb ? *lb : sink[2]),
          areaBelow(ab ? *ab : sink[3])
    {
        lengthAbove = areaAbove = lengthBelow = areaBelow = 0.0;
    }

    // The size of an area goes to the side of its mean height d; a stretch of
    // exactly equal levels counts as below.
    void add(double d, double w, double area)
    {
        if (d > 0.0) {
            lengthAbove += w;
            areaAbove += std::fabs(area);
        } else {
            lengthBelow += w;
            areaBelow += std::fabs(area);
        }
    }
};

// Type word flags by relation of polyline 2 to polyline 1 (-1 below, 0 equal,
// 1 above), before the meeting point and after it.
constexpr std::uint32_t kFlagBefore[3] = {TESSAR_DIFF_BEFORE_BELOW, TESSAR_DIFF_BEFORE_EQUAL,
                                          TESSAR_DIFF_BEFORE_ABOVE};
constexpr std::uint32_t kFlagAfter[3] = {TESSAR_DIFF_AFTER_BELOW, TESSAR_DIFF_AFTER_EQUAL,
                                         TESSAR_DIFF_AFTER_ABOVE};

// A mean height d over a width w: no area when d is near-equal to 0.
double stretchArea(double d, double w, double tol)
{
    return egal(d, 0.0, tol) ? 0.0 : d * w;
}

std::int32_t signOf(double d)
{
    return d > 0.0 ? 1 : (d < 0.0 ? -1 : 0);
}

// Appends one element to a table that shares the count n with others.
template <class T> bool appendShared(T **table, std::int32_t n, const T &value)
{
    MEM_EtendreTableau(reinterpret_cast<void **>(table), sizeof(T), &n);
    if (tableFailed()) return false;
    (*table)[n - 1] = value;
    return true;
}

// The piece of polyline 1 from `from` to `to`, with the sign of its mean height d.
bool addPiece(DifferenceTables &t, const dpoint2d &from, const dpoint2d &to, double d)
{
    if (!t.wantPieces()) return true;
    MEM_EtendreTableauParBloc(reinterpret_cast<void **>(t.pieces), sizeof(dpoint2d), &t.piecePoints, 2);
    if (tableFailed()) return false;
    (*t.pieces)[t.piecePoints - 2] = from;
    (*t.pieces)[t.piecePoints - 1] = to;
    if (!appendShared(t.signs, *t.pieceCount, signOf(d))) return false;
    ++*t.pieceCount;
    return true;
}

// A meeting point with its type word and the area since the previous one.
// Two segments that end together report their common end twice, once as the
// end of a stretch of equal levels and once as the start of the next pair:
// the second report is dropped, with its area.
bool utmat_AjouterIntersectionDifference(const dpoint2d &inter, std::int32_t relStart, std::int32_t relEnd,
                                         double area, DifferenceTables &t, double tol)
{
    const std::int32_t n = *t.count;
    if (n > 0 && ((*t.types)[n - 1] & TESSAR_DIFF_AFTER_EQUAL) != 0 &&
        pointsIdentiques((*t.points)[n - 1], inter, tol))
        return true;
    if (!appendShared(t.points, n, inter)) return false;
    if (!appendShared(t.types, n, kFlagBefore[relStart + 1] | kFlagAfter[relEnd + 1])) return false;
    *t.count = n + 1;
    if (t.areas == nullptr) return true;
    return appendShared(t.areas, t.areaCount++, area);
}

// The comparison's last digit is the class of the end of segment 2 against
// segment 1: beyond it, polyline 1 moves on; before it, polyline 2 moves on;
// within it, polyline 2 moves on, and polyline 1 too when both end at one x.
void utmat_ChoisirAvancementSegments(std::int32_t code, std::int32_t flags, std::int32_t &i, std::int32_t &j)
{
    switch (code % 10) {
    case kClassBeyond:
        ++i;
        break;
    case kClassBefore:
        ++j;
        break;
    case kClassWithin:
        ++j;
        if (flags & TESSAR_SEG_D_AT_END) ++i;
        break;
    default:
        break;
    }
}

class DifferenceWalk
{
  public:
    DifferenceWalk(DifferenceSums &sums, DifferenceTables &tables, double tol)
        : sums_(sums), tables_(tables), tol_(tol)
    {
    }

    // Both sequences at once, each segment visited once. False on a table failure.
    bool run(const dpoint2d *pts1, std::int32_t n1, const dpoint2d *pts2, std::int32_t n2)
    {
        std::int32_t i = 0;
        std::int32_t j = 0;
        while (i < n1 - 1 && j < n2 - 1) {
            const dpoint2d &a = pts1[i], &b = pts1[i + 1], &c = pts2[j], &d = pts2[j + 1];
            const bool v1 = a.x == b.x;
            const bool v2 = c.x == d.x;
            // Two vertical segments have nothing to compare.
            if (!(v1 && v2)) {
                utmat_ComparerPosition4Points(a, b, c, d, s_);
                if (haveCommonInterval(s_.code) && !measure(a, b, c, d)) return false;
            }
            if (v1 || v2) {
                i += v1 ? 1 : 0;
                j += v2 ? 1 : 0;
            } else {
                utmat_ChoisirAvancementSegments(s_.code, s_.flags, i, j);
            }
        }
        // The area after the last meeting point closes the areas table.
        if (tables_.areas == nullptr) return true;
        return appendShared(tables_.areas, tables_.areaCount++, running_);
    }

  private:
    // The common interval of the pair, split at a meeting point that lies
    // within the span of the two segments, else whole.
    bool measure(const dpoint2d &a, const dpoint2d &b, const dpoint2d &c, const dpoint2d &d)
    {
        const double x = s_.inter.x;
        if (s_.found && std::min(a.x, c.x) <= x && x <= std::max(b.x, d.x)) return splitAtMeeting();
        return wholeStretch();
    }

    // Left of the meeting point the area closes the stretch since the last
    // one; right of it a new stretch starts, so its area replaces the running
    // one. Both parts are mean heights over widths, inter being on both lines.
    bool splitAtMeeting()
    {
        const SegmentComparison &s = s_;
        double w = s.inter.x - s.xStart;
        double d = (s.inter.y + s.y1Start) / 2.0 - (s.inter.y + s.y2Start) / 2.0;
        const double a = stretchArea(d, w, tol_);
        if (!addPiece(tables_, {s.xStart, s.y1Start}, s.inter, d)) return false;
        if (tables_.wantMeetings() &&
            !utmat_AjouterIntersectionDifference(s.inter, s.relStart, s.relEnd, a + running_, tables_, tol_))
            return false;
        sums_.add(d, w, a);

        w = s.xEnd - s.inter.x;
        d = (s.inter.y + s.y1End) / 2.0 - (s.inter.y + s.y2End) / 2.0;
        running_ = stretchArea(d, w, tol_);
        if (!addPiece(tables_, s.inter, {s.xEnd, s.y1End}, d)) return false;
        sums_.add(d, w, running_);
        return true;
    }

    // No meeting point within the pair: one stretch, added to the running area.
    bool wholeStretch()
    {
        const SegmentComparison &s = s_;
        const double w = s.xEnd - s.xStart;
        const double d = (s.y1Start + s.y1End) / 2.0 - (s.y2Start + s.y2End) / 2.0;
        const double a = stretchArea(d, w, tol_);
        if (!addPiece(tables_, {s.xStart, s.y1Start}, {s.xEnd, s.y1End}, d)) return false;
        sums_.add(d, w, a);
        running_ += a;
        return true;
    }

    DifferenceSums &sums_;
    DifferenceTables &tables_;
    double tol_;
    double running_ = 0.0;
    // Fields that a comparison's case leaves unfilled keep the previous
    // pair's values, as the comparison promises.
    SegmentComparison s_{};
};

template <class T> void clearTable(T **table)
{
    if (table != nullptr) *table = nullptr;
}

void clearCount(std::int32_t *count)
{
    if (count != nullptr) *count = 0;
}

}  // namespace

namespace tessar::detail {

void utmat_CalculerDifference2Polylignes(const dpoint2d *pts1, std::int32_t n1, const dpoint2d *pts2,
                                         std::int32_t n2, double *lengthAbove, double *areaAbove,
                                         double *lengthBelow, double *areaBelow, dpoint2d **points,
                                         std::uint32_t **types, double **areas, std::int32_t *count,
                                         dpoint2d **pieces, std::int32_t **signs,
                                         std::int32_t *pieceCount) noexcept
{
    DifferenceSums sums(lengthAbove, areaAbove, lengthBelow, areaBelow);
    clearTable(points);
    clearTable(types);
    clearTable(pieces);
    clearTable(signs);
    clearCount(count);
    clearCount(pieceCount);
    DifferenceTables tables{points, types, areas, count, 0, pieces, signs, pieceCount, 0};
    DifferenceWalk walk(sums, tables, UTMAT_getCalculPrec());
    walk.run(pts1, n1, pts2, n2);
}

}  // namespace tessar::detail

void UTMAT_CalculerDifference2Polylignes(const dpoint2d *pts1, int32_t n1, const dpoint2d *pts2, int32_t n2,
                                         double *lengthAbove, double *areaAbove, double *lengthBelow,
                                         double *areaBelow, dpoint2d **points, uint32_t **types,
                                         int32_t *count)
{
    enterKernel();
    utmat_CalculerDifference2Polylignes(pts1, n1, pts2, n2, lengthAbove, areaAbove, lengthBelow, areaBelow,
                                        points, types, nullptr, count, nullptr, nullptr, nullptr);
}

void UTMAT_CalculateDiff2Lines(const dpoint2d *pts1, int32_t n1, const dpoint2d *pts2, int32_t n2,
                               double *lengthAbove, double *areaAbove, double *lengthBelow, double *areaBelow,
                               dpoint2d **points, uint32_t **types, double **areas, int32_t *count,
                               dpoint2d **pieces, int32_t **signs, int32_t *pieceCount)
{
    enterKernel();
    utmat_CalculerDifference2Polylignes(pts1, n1, pts2, n2, lengthAbove, areaAbove, lengthBelow, areaBelow,
                                        points, types, areas, count, pieces, signs, pieceCount);
}
