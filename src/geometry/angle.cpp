// Angles of the kernel: normalising, the angle between vectors, lines and
// points about a centre, an angle against a sector, and the algebra of two
// angular sectors (their ranking, common part and enclosing sector).
//
// A sector starts at the direction of its vector and opens counter-clockwise
// by its sweep. Ranking gives each sector a start s in 0 up to 2 pi and an
// end e = s + sweep, which may pass 2 pi; the first of the pair has the
// smaller start. The six relations of a ranked pair are decided by exact
// comparisons of these four angles, shifted by a turn where the second
// sector runs round past 2 pi.
#include <cmath>

#include <tessar/angle.h>
#include <tessar/vector.h>

#include "frame/kernel.hpp"

using namespace tessar::detail;

namespace {

// One sector of a ranked pair: its direction vector as given, its start in
// 0 up to 2 pi and its end, start + sweep.
struct RankedSector {
    dpoint2d dir{0.0, 0.0};
    double start = 0.0;
    double end = 0.0;
};

struct RankedPair {
    RankedSector first;
    RankedSector second;
};

double normalisePositive(double angle)
{
    return UTMAT_NormaliserAngle(TESSAR_ANGLE_POSITIVE, angle);
}

RankedSector rankSector(const dpoint2d &dir, double sweep)
{
    RankedSector sector;
    sector.dir = dir;
    sector.start = normalisePositive(std::atan2(dir.y, dir.x));
    sector.end = sector.start + sweep;
    return sector;
}

// The sector with the strictly smaller start comes first; on equal starts
// the second one given does.
RankedPair rankSectors(const dpoint2d &dir1, double sweep1, const dpoint2d &dir2, double sweep2)
{
    const RankedSector a = rankSector(dir1, sweep1);
    const RankedSector b = rankSector(dir2, sweep2);
    if (a.start < b.start) return {a, b};
    return {b, a};
}

// The relation of a ranked pair, by exact comparisons in the order of the
// class numbers. Only a not-a-number angle leaves every test false: 0.
int32_t classifyRanked(const RankedPair &pair)
{
    const double s1 = pair.first.start;
    const double e1 = pair.first.end;
    const double s2 = pair.second.start;
    const double e2 = pair.second.end;
    const double turnAfterS1 = dc_2pi + s1;
    if (e1 >= e2) return TESSAR_SECTORS_INSIDE;
    if (e1 >= s2) {
        if (turnAfterS1 >= e2) return TESSAR_SECTORS_OVERLAP;
        if (turnAfterS1 < e2) return TESSAR_SECTORS_OVERLAP_BOTH_ENDS;
        return 0;
    }
    if (e1 < s2) {
        if (turnAfterS1 > e2) return TESSAR_SECTORS_APART;
        // The second sector runs round past 2 pi: its end, a turn back, is
        // compared with the first's end.
        const double e2OneTurnBack = e2 - dc_2pi;
        if (e2OneTurnBack < e1) return TESSAR_SECTORS_WRAP_INTO_FIRST;
        if (e2OneTurnBack >= e1) return TESSAR_SECTORS_WRAP_AROUND_FIRST;
    }
    return 0;
}

// Class 4 (apart): the shorter way round that covers both, either from the
// first's start to the second's end (ga) or from the second's start round to
// the first's end (gb). A candidate smaller than one of the sweeps cannot
// hold that sector and goes a turn further. On equal candidates the second
// direction wins.
void sumOfApart(const RankedPair &pair, dpoint2d &direction, double &sweep)
{
    const double s1 = pair.first.start;
    const double e1 = pair.first.end;
    const double s2 = pair.second.start;
    const double e2 = pair.second.end;
    const double ga = normalisePositive(e2 - s1);
    const double gb = normalisePositive(e1 - s2);
    const double w1 = e1 - s1;
    const double w2 = e2 - s2;
    const double ca = (ga >= w1 && ga >= w2) ? ga : ga + dc_2pi;
    if (gb >= w1 && gb >= w2) {
        if (ca >= gb) {
            direction = pair.second.dir;
            sweep = gb;
        } else {
            direction = pair.first.dir;
            sweep = ca;
        }
        return;
    }
    if (ca >= gb + dc_2pi) {
        direction = pair.second.dir;
        sweep = gb + dc_2pi;
    } else {
        direction = pair.first.dir;
        sweep = ca;
    }
}

}  // namespace

/* ---- Normalising ---- */

double UTMAT_NormaliserAngle(int32_t mode, double angle)
{
    enterKernel();
    switch (mode) {
    case TESSAR_ANGLE_SIGNED: {
        // -pi itself comes out as pi: the range is open below.
        double r = std::fmod(angle, dc_2pi);
        if (r < 0.0) r += dc_2pi;
        if (r > dc_pi) r -= dc_2pi;
        return r;
    }
    case TESSAR_ANGLE_POSITIVE: {
        // A tiny negative angle rounds up to 2 pi itself when the turn is
        // added; -0.0 stays -0.0, which is not below 0.
        double r = std::fmod(angle, dc_2pi);
        if (r < 0.0) r += dc_2pi;
        return r;
    }
    case TESSAR_ANGLE_CLAMPED:
        if (angle > dc_2pi) return dc_2pi;
        if (angle < -dc_2pi) return -dc_2pi;
        return angle;
    default:
        fail();
        return angle;
    }
}

/* ---- Angles of vectors, lines and points ---- */

// sin t = u1 x u2 gives t up to the half-turn; a negative cosine u1 . u2
// puts it in the other half. A zero vector stays zero when normed, so both
// products are 0 and the angle is 0.
double UTMAT_CalculerAngleV1V2(const dpoint2d *v1, const dpoint2d *v2)
{
    enterKernel();
    if (failIfNull(v1, v2)) return 0.0;
    dpoint2d u1 = *v1;
    dpoint2d u2 = *v2;
    UTMAT_NormerVecteur(&u1);
    UTMAT_NormerVecteur(&u2);
    double c = UTMAT_CalculerProduitVectoriel(&u1, &u2);
    if (std::fabs(c) > 1.0) c = (c > 0.0) ? 1.0 : -1.0;
    double t = std::asin(c);
    if (UTMAT_CalculerProduitScalaire(&u1, &u2) < 0.0) t = dc_pi - t;
    return UTMAT_NormaliserAngle(TESSAR_ANGLE_POSITIVE, t);
}

void UTMAT_CalculerAngleD1D2(const UTMAT_Droite *d1, const UTMAT_Droite *d2, double *out)
{
    enterKernel();
    if (failIfNull(d1, d2, out)) return;
    // The direction of travel of a x + b y + c = 0 is (-b, a).
    const dpoint2d dir1{-d1->b, d1->a};
    const dpoint2d dir2{-d2->b, d2->a};
    *out = UTMAT_CalculerAngleV1V2(&dir1, &dir2);
}

double UTMAT_CalculerAngleAuCentre(const dpoint2d *centre, const dpoint2d *p1, const dpoint2d *p2,
                                   int32_t sense)
{
    enterKernel();
    if (failIfNull(centre, p1, p2)) return 0.0;
    const bool p1AtCentre = p1->x == centre->x && p1->y == centre->y;
    const bool p2AtCentre = p2->x == centre->x && p2->y == centre->y;
    if (p1AtCentre || p2AtCentre) return fail(), 0.0;
    const double a1 = std::atan2(p1->y - centre->y, p1->x - centre->x);
    const double a2 = std::atan2(p2->y - centre->y, p2->x - centre->x);
    double w = a2 - a1;
    if (a1 > a2) w += dc_2pi;
    // w is the counter-clockwise sweep; a turn less is the clockwise one.
    return (sense != 0) ? w : w - dc_2pi;
}

void UTMAT_CalculerAngleRayonPtCentre(const dpoint2d *centre, const dpoint2d *p, double *angle,
                                      double *radius)
{
    enterKernel();
    if (failIfNull(centre, p, angle, radius)) return;
    *radius = UTMAT_CalculerDistance2Pt(centre, p);
    const bool atCentre = p->x == centre->x && p->y == centre->y;
    *angle = atCentre ? 0.0 : std::atan2(p->y - centre->y, p->x - centre->x);
}

double UTMAT_CalculerAnglePtOffsetAngle(const dpoint2d *p1, const dpoint2d *p2, double offset, int32_t sense)
{
    enterKernel();
    if (failIfNull(p1, p2)) return 0.0;
    double a = std::atan2(p1->y - p2->y, p1->x - p2->x);
    if (a < 0.0) a += dc_2pi;
    const double w = (a >= offset) ? a - offset : dc_2pi - (offset - a);
    return (sense != 0) ? w : w - dc_2pi;
}

/* ---- An angle against a sector ---- */

// delta is the angle less the start, taken a turn further on the side the
// sector opens to when the angle lies (beyond tol) on the other side of the
// start; the angle is inside when delta lies between 0 and the sweep, tol
// included.
void UTMAT_ComparerAngleASecteurAngulaire(double angle, double start, double sweep, double tol,
                                          int32_t *inside, double *delta)
{
    enterKernel();
    if (failIfNull(inside, delta)) return;
    double d = angle - start;
    double low = 0.0;
    double high = 0.0;
    if (sweep > 0.0) {
        if (!supOuEgal(angle, start, tol)) d += dc_2pi;
        high = sweep;
    } else {
        if (!infOuEgal(angle, start, tol)) d -= dc_2pi;
        low = sweep;
    }
    const int32_t in = UTMAT_AppartenirAIntFerme(d, low, high, tol);
    *delta = d;
    *inside = in;
}

/* ---- Sector algebra ---- */

// Tests no pointer; an unclassifiable pair stores relation 0 and fails.
void UTMAT_Classer2Secteurs(const dpoint2d *dir1, double sweep1, const dpoint2d *dir2, double sweep2,
                            dpoint2d *firstDir, double *firstStart, double *firstEnd, dpoint2d *secondDir,
                            double *secondStart, double *secondEnd, int32_t *relation)
{
    enterKernel();
    const RankedPair pair = rankSectors(*dir1, sweep1, *dir2, sweep2);
    const int32_t cls = classifyRanked(pair);
    *firstDir = pair.first.dir;
    *firstStart = pair.first.start;
    *firstEnd = pair.first.end;
    *secondDir = pair.second.dir;
    *secondStart = pair.second.start;
    *secondEnd = pair.second.end;
    *relation = cls;
    if (cls == 0) fail();
}

namespace {

// The ranking through the exported classification, so that its failure
// reaches the error word as it does for any nested kernel call.
bool classifyKernel(const dpoint2d *dir1, double sweep1, const dpoint2d *dir2, double sweep2,
                    RankedPair &pair, int32_t &cls)
{
    UTMAT_Classer2Secteurs(dir1, sweep1, dir2, sweep2, &pair.first.dir, &pair.first.start, &pair.first.end,
                           &pair.second.dir, &pair.second.start, &pair.second.end, &cls);
    return !nestedFailed();
}

}  // namespace

// The common part: from the later start to the earlier end, taking the ends
// a turn on where the second sector runs round past 2 pi. Overlapping at both
// ends gives two pieces, of which only the one from the second's start is
// returned.
void UTMAT_CalculerProduitSecteur(const dpoint2d *dir1, double sweep1, const dpoint2d *dir2, double sweep2,
                                  dpoint2d *direction, double *sweep, int32_t *count)
{
    enterKernel();
    RankedPair pair;
    int32_t cls = 0;
    if (!classifyKernel(dir1, sweep1, dir2, sweep2, pair, cls)) return;
    const double s1 = pair.first.start;
    const double e1 = pair.first.end;
    const double s2 = pair.second.start;
    const double e2 = pair.second.end;
    dpoint2d dir{0.0, 0.0};
    double w = 0.0;
    int32_t n = 1;
    switch (cls) {
    case TESSAR_SECTORS_INSIDE:
        dir = pair.second.dir;
        w = e2 - s2;
        break;
    case TESSAR_SECTORS_OVERLAP:
    case TESSAR_SECTORS_OVERLAP_BOTH_ENDS:
        dir = pair.second.dir;
        w = e1 - s2;
        break;
    case TESSAR_SECTORS_APART:
        n = 0;
        break;
    case TESSAR_SECTORS_WRAP_INTO_FIRST:
        dir = pair.first.dir;
        w = e2 - s1;
        break;
    case TESSAR_SECTORS_WRAP_AROUND_FIRST:
        dir = pair.first.dir;
        w = e1 - s1;
        break;
    default:
        // Not reached after a successful classification.
        *direction = {0.0, 0.0};
        *sweep = 0.0;
        *count = 0;
        fail();
        return;
    }
    *direction = dir;
    *sweep = normalisePositive(w);
    *count = n;
}

// The enclosing sector: from the earlier start to the later end, the whole
// circle where they overlap at both ends, and for sectors apart the shorter
// way round. A sweep of exactly 2 pi is reported as 0, one above it as 2 pi.
void UTMAT_CalculerSommeSecteur(const dpoint2d *dir1, double sweep1, const dpoint2d *dir2, double sweep2,
                                dpoint2d *direction, double *sweep)
{
    enterKernel();
    RankedPair pair;
    int32_t cls = 0;
    if (!classifyKernel(dir1, sweep1, dir2, sweep2, pair, cls)) return;
    const double s1 = pair.first.start;
    const double e1 = pair.first.end;
    const double s2 = pair.second.start;
    const double e2 = pair.second.end;
    dpoint2d dir{0.0, 0.0};
    double w = 0.0;
    switch (cls) {
    case TESSAR_SECTORS_INSIDE:
        dir = pair.first.dir;
        w = e1 - s1;
        break;
    case TESSAR_SECTORS_OVERLAP:
        dir = pair.first.dir;
        w = e2 - s1;
        break;
    case TESSAR_SECTORS_OVERLAP_BOTH_ENDS:
        // The whole circle: 2 pi normalised, which is 0.
        *direction = pair.first.dir;
        *sweep = normalisePositive(dc_2pi);
        return;
    case TESSAR_SECTORS_APART:
        sumOfApart(pair, dir, w);
        break;
    case TESSAR_SECTORS_WRAP_INTO_FIRST:
        dir = pair.second.dir;
        w = e1 - s2;
        break;
    case TESSAR_SECTORS_WRAP_AROUND_FIRST:
        dir = pair.second.dir;
        w = e2 - s2;
        break;
    default:
        // Not reached after a successful classification.
        *direction = {0.0, 0.0};
        *sweep = 0.0;
        fail();
        return;
    }
    *direction = dir;
    *sweep = (dc_2pi >= w) ? normalisePositive(w) : dc_2pi;
}
