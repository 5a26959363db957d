/*
 * Tessar: vectors, lines and frames of the UTMAT kernel.
 *
 * The primitives the kernel is built from: products, distances, the line in
 * its implicit form a x + b y + c = 0 and the change of coordinate frame.
 * A line built from a direction (dx, dy) has (a, b) = (dy, -dx) before
 * normalising: (a, b) is the normal to the right of the direction of travel,
 * and the power a x + b y + c of a point (its offset, when the line is
 * normalised) is positive on the right of the line and negative on its left.
 *
 * Every UTMAT_* function here clears the kernel's error word on entry and
 * stores 32768 on failure (see frame.h). Where a function "tests" a pointer,
 * a null one fails and nothing is written; other pointers must be valid.
 * Angles are radians, counter-clockwise from the x axis.
 */
#ifndef TESSAR_VECTOR_H
#define TESSAR_VECTOR_H

#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Point and array conversions (leave the error word alone) ---- */

/** Copies x and y of a space point into a plane point. */
TESSAR_API void ConvertPoint32(const dpoint3d *in, dpoint2d *out);

/** Copies a plane point into a space point with z = 0. */
TESSAR_API void ConvertPoint23(const dpoint2d *in, dpoint3d *out);

/**
 * Copies x and y of count space points into a new array from tsMem_malloc,
 * which the caller frees with tsMem_free. \return the new array (unchecked
 * allocation; a count below 1 copies nothing).
 */
TESSAR_API dpoint2d *ConvertArray32(const dpoint3d *points, int32_t count);

/** Copies count plane points into a new array of space points with z = 0; freed with tsMem_free. */
TESSAR_API dpoint3d *ConvertArray23(const dpoint2d *points, int32_t count);

/* ---- Vectors ---- */

/** out = to - from. Tests out. */
TESSAR_API void UTMAT_CalculerVecteur(const dpoint2d *from, const dpoint2d *to, dpoint2d *out);

/** out = to - from in space. Tests out. */
TESSAR_API void UTMAT_CalculerVecteur3d(const dpoint3d *from, const dpoint3d *to, dpoint3d *out);

/** \return the length of v (a null v sets 32768). */
TESSAR_API double UTMAT_CalculerNormeVecteur(const dpoint2d *v);

/** \return the length of v in space (a null v sets 32768). */
TESSAR_API double UTMAT_CalculerNormeVecteur3d(const dpoint3d *v);

/** out = v1 + v2. Tests all three. */
TESSAR_API void UTMAT_CalculerSommeV1V2(const dpoint2d *v1, const dpoint2d *v2, dpoint2d *out);

/** Scales v to unit length in place; a zero vector stays as it is, without error. Tests v. */
TESSAR_API void UTMAT_NormerVecteur(dpoint2d *v);

/** Scales v to unit length in place, in space; a zero vector stays as it is. Tests v. */
TESSAR_API void UTMAT_NormerVecteur3d(dpoint3d *v);

/** \return the dot product v1 . v2. */
TESSAR_API double UTMAT_CalculerProduitScalaire(const dpoint2d *v1, const dpoint2d *v2);

/** \return the plane cross product v1.x v2.y - v1.y v2.x (positive when v2 turns left of v1). */
TESSAR_API double UTMAT_CalculerProduitVectoriel(const dpoint2d *v1, const dpoint2d *v2);

/** out = v1 x v2. Tests all three. */
TESSAR_API void UTMAT_CalculerProduitVectoriel3d(const dpoint3d *v1, const dpoint3d *v2, dpoint3d *out);

/** \return the distance between two plane points. */
TESSAR_API double UTMAT_CalculerDistance2Pt(const dpoint2d *p1, const dpoint2d *p2);

/** \return the distance between two space points; 0.0 with 32768 for a null point. */
TESSAR_API double UTMAT_CalculerDistance2Pt3d(const dpoint3d *p1, const dpoint3d *p2);

/** \return 1 when the two points lie within tol of each other, else 0. */
TESSAR_API int32_t UTMAT_PointsIdentiques(const dpoint2d *p1, const dpoint2d *p2, double tol);

/** \return 1 when the two space points lie within tol of each other, else 0. */
TESSAR_API int32_t UTMAT_Points3dIdentiques(const dpoint3d *p1, const dpoint3d *p2, double tol);

/* ---- Lines of the plane ---- */

/**
 * The normalised line from p1 towards p2. Coincident points fail, with a and
 * b stored as 0 and c untouched.
 */
TESSAR_API void UTMAT_CalculerDroite2Pt(const dpoint2d *p1, const dpoint2d *p2, UTMAT_Droite *out);

/** The normalised line through p in direction v; a zero v fails as above. */
TESSAR_API void UTMAT_CalculerDroitePtVecteur(const dpoint2d *p, const dpoint2d *v, UTMAT_Droite *out);

/**
 * Normalises a line in place so that a a + b b = 1.
 * \param[out] norm optional: the former norm of (a, b)
 * Fails, leaving the line unchanged, when a and b are both 0.
 */
TESSAR_API void UTMAT_NormerDroite(UTMAT_Droite *line, double *norm);

/** out = the line moved by the vector t. Tests line. */
TESSAR_API void UTMAT_TranslaterDroite(const UTMAT_Droite *line, const dpoint2d *t, UTMAT_Droite *out);

/** out = the perpendicular to line through p, at the scale of line. Tests all three. */
TESSAR_API void UTMAT_CalculerDroiteOrthoDroitePs1Pt(const UTMAT_Droite *line, const dpoint2d *p,
                                                     UTMAT_Droite *out);

/** out = the parallel to line through p, at the scale of line. Tests all three. */
TESSAR_API void UTMAT_CalculerDroiteParalleleDroitePs1Pt(const UTMAT_Droite *line, const dpoint2d *p,
                                                         UTMAT_Droite *out);

/** out = the parallel at distance d; a positive d moves it to the right. Tests line and out. */
TESSAR_API void UTMAT_CalculerDroiteParalleleDroiteDistance(const UTMAT_Droite *line, double d,
                                                            UTMAT_Droite *out);

/** \return the power a x + b y + c of p, without normalising. */
TESSAR_API double UTMAT_CalculerPuissancePtDroite(const UTMAT_Droite *line, const dpoint2d *p);

/**
 * The signed distance of p from the line, positive on the right. Fails when
 * the norm of (a, b) is not greater than c * 1e-39 (with c signed: a negative
 * c passes the guard whatever a and b are).
 */
TESSAR_API void UTMAT_CalculerDeportPtDroite(const UTMAT_Droite *line, const dpoint2d *p, double *out);

/** The foot of the perpendicular from p on the line; same guard as UTMAT_CalculerDeportPtDroite. */
TESSAR_API void UTMAT_ProjeterPtSurDroite(const UTMAT_Droite *line, const dpoint2d *p, dpoint2d *out);

/** \return 1 when p lies right of the line beyond tol, -1 when left beyond tol, else 0. Tests p, line. */
TESSAR_API int32_t UTMAT_CalculerClassePtDroite(const dpoint2d *p, const UTMAT_Droite *line, double tol);

/** out[0], out[1] = the two bisectors of d1 and d2, not normalised. Tests d1, d2. */
TESSAR_API void UTMAT_CalculerBissectriceD1D2(const UTMAT_Droite *d1, const UTMAT_Droite *d2,
                                              UTMAT_Droite out[2]);

/**
 * out = the unit vector halving the counter-clockwise sweep from v1 to v2;
 * for opposite vectors the left normal of v1. Tests all three.
 */
TESSAR_API void UTMAT_CalculerBissectriceV1V2(const dpoint2d *v1, const dpoint2d *v2, dpoint2d *out);

/**
 * The crossing of two lines, refined by one step on the residuals.
 * \param[out] out   the crossing point
 * \param[out] count 1, or 0 for parallel lines (not a failure)
 * Fails for a degenerate line. Tests all four pointers.
 */
TESSAR_API void UTMAT_CalculerIntersection2Droite(const UTMAT_Droite *d1, const UTMAT_Droite *d2,
                                                  dpoint2d *out, int32_t *count);

/* ---- Lines of space and frames ---- */

/** The line of space through p1 with unit direction towards p2 (zero for coincident points, no error). */
TESSAR_API void UTMAT_CalculerDroite2Pt3d(const dpoint3d *p1, const dpoint3d *p2, UTMAT_Droite3d *out);

/** out = the distance of p from a line of space whose direction is of unit length. */
TESSAR_API void UTMAT_CalculerDeportPtDroite3d(const UTMAT_Droite3d *line, const dpoint3d *p, double *out);

/**
 * out = the coordinates of p in a frame at origin whose x axis lies at angle.
 * Tests p, origin and out.
 */
TESSAR_API void UTMAT_ChangerRepere(const dpoint2d *p, const dpoint2d *origin, double angle, dpoint2d *out);

/** Turns p by angle and moves it by origin, in place: the inverse of UTMAT_ChangerRepere. Tests origin, p. */
TESSAR_API void UTMAT_CalculerPointTranslationRotation(const dpoint2d *origin, double angle, dpoint2d *p);

/**
 * out = the origin of a second frame turned by angle, given one point as pA in
 * the first frame and pB in the second. Tests all three.
 */
TESSAR_API void UTMAT_CalculerCentreRepere2(const dpoint2d *pA, const dpoint2d *pB, double angle,
                                            dpoint2d *out);

TESSAR_END_DECLS

#endif /* TESSAR_VECTOR_H */
