// Points placed and moved in the plane, and the arc and circle constructions
// on point records: sweeps seen from a centre, the arc through three points,
// a point further along an arc, tangents from a point to a circle, and the
// curves of road design tangent to two lines through a given point.
#include <cmath>

#include <tessar/bestfit.h>
#include <tessar/frame.h>
#include <tessar/mathapi.h>
#include <tessar/point.h>
#include <tessar/transform.h>

namespace {

constexpr int32_t kFail = TESSAR_FAILURE;

// A middle point closer than this to the chord of the other two leaves no
// arc to speak of.
constexpr double kMinimumArcRise = 1e-7;

}  // namespace

/* ---- Locating and moving points ---- */

int32_t tsPoint_locatePointByDistanceDirection2d(dpoint3d *out, double distance, double direction,
                                                 const dpoint3d *origin)
{
    const int32_t status =
        tsMath_locateByDistanceDirection2d(&out->x, &out->y, origin->x, origin->y, distance, direction);
    out->z = origin->z;
    return status;
}

int32_t tsPoint_locatePointByDistanceTangent2d(dpoint3d *out, double distance, const dpoint3d *tangent,
                                               const dpoint3d *origin)
{
    if (!out || !tangent || !origin) return kFail;
    const int32_t status = tsMath_locateByDistanceTangent2d(&out->x, &out->y, origin->x, origin->y, distance,
                                                            tangent->x, tangent->y);
    out->z = origin->z;
    return status;
}

int32_t tsPoint_locatePointByTranslationRotation2d(const dpoint3d *point, double tx, double ty, double angle,
                                                   dpoint3d *out)
{
    if (!point || !out) return kFail;
    return tsMath_locateByTranslationRotation2d(&out->x, &out->y, point->x, point->y, tx, ty, angle);
}

// The turn about z of a transform leaves the third row alone, so z comes
// back as it went in.
int32_t tsPoint_rotateByAngle2d(dpoint3d *point, double angle)
{
    if (!point) return kFail;
    tsTransform turn;
    tsTransform_setIdentity(&turn);
    tsTransform_rotateByAngle2d(&turn, angle);
    return tsTransform_movePoint(&turn, point, point);
}

/* ---- Arcs and circles ---- */

int32_t tsPoint_calculateSweepAngle2d(const dpoint3d *centre, double *out, const dpoint3d *p1,
                                      const dpoint3d *p2, int32_t counterClockwise)
{
    if (!centre || !out || !p1 || !p2) return kFail;
    return tsMath_calculateSweepAngleTwoPointsFromCenter(out, centre->x, centre->y, p1->x, p1->y, p2->x,
                                                         p2->y, counterClockwise);
}

// The centre comes from the circle through the three points. The turn a
// seen from the centre between P0 and P2 is at most pi; the arc through P1
// is the long way round when P1 rises higher above the chord than the
// radius (the sagitta of more than a half circle), and a becomes a - 2 pi.
// The sweep then takes |a| with the side of P1: positive (counter-clockwise)
// with P1 right of the chord P0-P2, negative with it on the left.
int32_t tsPoint_calculateArcInfoFor3pts(dpoint3d *centre, double *radius, double *startDirection,
                                        double *sweep, const dpoint3d *points)
{
    if (!points) return kFail;
    const dpoint3d &p0 = points[0];
    const dpoint3d &p1 = points[1];
    const dpoint3d &p2 = points[2];

    double rise = 0.0;
    if (tsMath_projectOnLine2d(nullptr, nullptr, &rise, p1.x, p1.y, p0.x, p0.y, p2.x, p2.y) != 0)
        return kFail;
    if (!(std::fabs(rise) > kMinimumArcRise)) return kFail;

    double cx = 0.0, cy = 0.0, fitRadius = 0.0;
    if (tsBestFit_horz3PtCurveCalc(&cx, &cy, &fitRadius, p0.x, p0.y, p1.x, p1.y, p2.x, p2.y) != 0)
        return kFail;
    const double r = tsMath_distance2d(cx, cy, p0.x, p0.y);

    const double d0 = tsMath_direction2d(cx, cy, p0.x, p0.y);
    const double d2 = tsMath_direction2d(cx, cy, p2.x, p2.y);
    double a = std::fabs(tsMath_angleBetweenDirections(d0, d2));
    const double h = std::fabs(rise);
    if ((h > r && a < dc_pi) || (h < r && a > dc_pi)) a = a - dc_2pi;
    const double signedSweep = rise >= 0.0 ? std::fabs(a) : -std::fabs(a);

    if (centre) {
        centre->x = cx;
        centre->y = cy;
    }
    if (radius) *radius = r;
    if (startDirection) *startDirection = d0;
    if (sweep) *sweep = signedSweep;
    return 0;
}

// The point keeps its distance r from the centre and turns by the angle
// arcLength / r, clockwise (negative) when asked.
int32_t tsPoint_calculatePointAlongArc(dpoint3d *out, const dpoint3d *point, const dpoint3d *centre,
                                       double arcLength, int32_t clockwise)
{
    if (!out || !point || !centre) return kFail;
    const double r = tsMath_distance2d(centre->x, centre->y, point->x, point->y);
    const double d = tsMath_direction2d(centre->x, centre->y, point->x, point->y);
    if (!(r > 0.0)) return kFail;
    double t = arcLength / r;
    if (clockwise != 0) t = -t;
    tsMath_locateByDistanceDirection2d(&out->x, &out->y, centre->x, centre->y, r,
                                       tsMath_normalizeAngle(d + t));
    out->z = centre->z;
    return 0;
}

int32_t tsPoint_lineTangentToCircleByPoint(dpoint3d *tangent1, dpoint3d *tangent2, const dpoint3d *centre,
                                           double radius, const dpoint3d *point, double tolerance)
{
    if (!tangent1 || !tangent2 || !centre || !point) return kFail;
    const int32_t status =
        tsMath_lineTangentToCircleByPoint(&tangent1->x, &tangent1->y, &tangent2->x, &tangent2->y, centre->x,
                                          centre->y, radius, point->x, point->y, tolerance);
    tangent1->z = 0.0;
    tangent2->z = 0.0;
    return status;
}

/* ---- Curves tangent to two lines through a point ---- */

// The plane computations take each point y first, then x.
void tsPoint_passTangentCurveThruPoint(double *radius, const dpoint3d *A, const dpoint3d *B,
                                       const dpoint3d *V, const dpoint3d *P, int32_t flag)
{
    *radius = 0.0;
    if (!A || !B || !V || !P) return;
    tsMath_passTangentCurveThruPoint(radius, A->y, A->x, B->y, B->x, V->y, V->x, P->y, P->x, flag);
}

void tsPoint_passTangentParabolaThruPoint(double *length, const dpoint3d *A, const dpoint3d *B,
                                          const dpoint3d *V, const dpoint3d *P)
{
    *length = 0.0;
    if (!A || !B || !V || !P) return;
    tsMath_passTangentParabolaThruPoint(length, A->y, A->x, B->y, B->x, V->y, V->x, P->y, P->x);
}
