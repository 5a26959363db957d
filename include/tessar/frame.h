/*
 * Tessar: numeric frame.
 *
 * The exported constants, the three settings of the UTMAT kernel, its error
 * words and the tolerant comparison of doubles that every geometric test of
 * the library goes through.
 *
 * Error protocol of the kernel. Every UTMAT_* function that computes clears
 * the kernel's error word on entry and stores 32768 (0x8000) there when it
 * fails; no other value is ever stored. A caller reads the word with
 * UTMAT_GetErreur before it calls any other kernel function, since even a
 * comparison clears it. The MEM_* table functions keep a word of their own,
 * read with MEM_GetErreur. None of this state is per thread or locked: keep
 * kernel use on one thread at a time.
 *
 * Tolerant comparisons. Equality includes the tolerance; less and greater lie
 * strictly beyond it. For a tolerance that is not negative, exactly one of
 * less, equal and greater holds. A not-a-number operand makes equal, less and
 * less-or-equal true, and greater, greater-or-equal and the interval tests
 * false; the one exception is a not-a-number hi in the closed interval test,
 * whose upper half is the negated "x - hi > t" and so holds.
 */
#ifndef TESSAR_FRAME_H
#define TESSAR_FRAME_H

#include <stdint.h>

#include <tessar/export.h>

TESSAR_BEGIN_DECLS

/** The one failure value of the kernel's error words and of most statuses. */
#define TESSAR_FAILURE 32768

/* ---- Constants ---- */

extern TESSAR_API double dc_zero;      /**< 0.0 */
extern TESSAR_API double dc_onehalf;   /**< 0.5 */
extern TESSAR_API double dc_1;         /**< 1.0 */
extern TESSAR_API double dc_m1;        /**< -1.0 */
extern TESSAR_API double dc_2;         /**< 2.0 */
extern TESSAR_API double dc_3;         /**< 3.0 */
extern TESSAR_API double dc_4;         /**< 4.0 */
extern TESSAR_API double dc_5;         /**< 5.0 */
extern TESSAR_API double dc_10;        /**< 10.0 */
extern TESSAR_API double dc_30;        /**< 30.0 */
extern TESSAR_API double dc_60;        /**< 60.0 */
extern TESSAR_API double dc_90;        /**< 90.0 */
extern TESSAR_API double dc_100;       /**< 100.0 */
extern TESSAR_API double dc_180;       /**< 180.0 */
extern TESSAR_API double dc_270;       /**< 270.0 */
extern TESSAR_API double dc_360;       /**< 360.0 */
extern TESSAR_API double dc_750;       /**< 750.0 */
extern TESSAR_API double dc_1000;      /**< 1000.0 */
extern TESSAR_API double dc_10000;     /**< 10000.0 */
extern TESSAR_API double dc_100000;    /**< 100000.0 */
extern TESSAR_API double dc_360000;    /**< 360000.0: integer angle units (1/100 second) in a degree */
extern TESSAR_API double dc_p1;        /**< 0.1 */
extern TESSAR_API double dc_p01;       /**< 0.01 */
extern TESSAR_API double dc_p001;      /**< 0.001 */
extern TESSAR_API double dc_p0001;     /**< 0.0001 */
extern TESSAR_API double dc_mm_per_in; /**< 25.4 millimetres in an inch */

/* Computed once at load from p = atan(1) * 4 and q = 1 / p. */
extern TESSAR_API double dc_pi;          /**< p */
extern TESSAR_API double dc_2pi;         /**< p * 2 */
extern TESSAR_API double dc_piover2;     /**< p * 0.5 */
extern TESSAR_API double dc_piover3;     /**< p * 0.3333333333333333 */
extern TESSAR_API double dc_piover4;     /**< p * 0.25 */
extern TESSAR_API double dc_piover6;     /**< p * 0.16666666666666666 */
extern TESSAR_API double dc_piover180;   /**< p * 0.005555555555555556: radians in a degree */
extern TESSAR_API double dc_180overpi;   /**< q * 180: degrees in a radian */
extern TESSAR_API double dc_rad_to_iang; /**< q * 64800000: integer angle units in a radian */
extern TESSAR_API double
    dc_iang_to_rad; /**< dc_piover180 * 2.777777777777778e-06: radians in an integer angle unit */
extern TESSAR_API double dc_miang_to_rad; /**< the negated dc_iang_to_rad */

/** Does nothing; the library needs no initialisation. \return 0. */
TESSAR_API int32_t initialize(void);

/* ---- Kernel settings ---- */

/**
 * Sets the kernel's calculation precision (default 0.0001), the tolerance of
 * nearly every near-zero and near-equal test of the geometry kernel. Any value
 * is stored as given. Clears the error word.
 */
TESSAR_API void UTMAT_setCalculPrecision(double precision);

/**
 * Sets the kernel's distance tolerance (default 2.0), used by one ovoid
 * construction only. Any value is stored as given. Clears the error word.
 */
TESSAR_API void UTMAT_setDistanceTolerance(double tolerance);

/** \return the kernel's calculation precision. Leaves the error word alone. */
TESSAR_API double UTMAT_getCalculPrec(void);

/** \return the kernel's distance tolerance. Leaves the error word alone. */
TESSAR_API double UTMAT_getDistanceTolerance(void);

/** Selects the short series (1) for points on a clothoid. Clears the error word. */
TESSAR_API void UTMAT_SetQuorrelSpiralFormula(void);

/** Selects the long series (2, the default) for points on a clothoid. Clears the error word. */
TESSAR_API void UTMAT_SetVelloraSpiralFormula(void);

/* ---- Error words ---- */

/**
 * Reads the kernel's error word and its detail word; clears nothing.
 * \param[out] code   0 or 32768 (not tested for null)
 * \param[out] detail the detail word last copied from the table layer (not tested)
 */
TESSAR_API void UTMAT_GetErreur(int32_t *code, int32_t *detail);

/**
 * Reads the table layer's error word and detail word; clears nothing.
 * \param[out] code   0 or 32768
 * \param[out] detail the detail word as last set by MEM_SetErreur
 */
TESSAR_API void MEM_GetErreur(int32_t *code, int32_t *detail);

/** Stores both words of the table layer as given. */
TESSAR_API void MEM_SetErreur(int32_t code, int32_t detail);

/* ---- Tolerant comparison ---- */

/** \return 1 unless |a - b| > t; a negative t makes it 0 for any operands. */
TESSAR_API int32_t tsUtil_equalDouble(double a, double b, double t);

/** \return 1 unless a - b > t. */
TESSAR_API int32_t tsUtil_lessOrEqualDouble(double a, double b, double t);

/** \return 1 unless a - b >= -t, i.e. a lies strictly below b - t. */
TESSAR_API int32_t tsUtil_lessDouble(double a, double b, double t);

/** \return 1 when a - b > t. */
TESSAR_API int32_t tsUtil_greaterDouble(double a, double b, double t);

/** \return 1 when a - b >= -t. */
TESSAR_API int32_t tsUtil_greaterOrEqualDouble(double a, double b, double t);

/** \return 1 when x - lo >= -t and not x - hi > t: x lies in [lo - t, hi + t]. */
TESSAR_API int32_t tsUtil_belongToClosedIntervalDouble(double x, double lo, double hi, double t);

/** \return 1 when x lies in (lo + t, hi - t). */
TESSAR_API int32_t tsUtil_belongToOpenIntervalDouble(double x, double lo, double hi, double t);

/** \return 1 unless |a - b| > |t|: a negative tolerance still means a band. */
TESSAR_API int32_t tsMath_doublesNearEqual(double a, double b, double t);

/** \return 1 when |numerator| * 1e-100 < |denominator|, i.e. the quotient cannot overflow. */
TESSAR_API int32_t tsMath_isDivisionPossible(double numerator, double denominator);

/* The kernel's comparisons: each clears the error word, then compares. */

/** tsUtil_lessDouble, clearing the error word. */
TESSAR_API int32_t UTMAT_Inf(double a, double b, double t);
/** tsUtil_lessOrEqualDouble, clearing the error word. */
TESSAR_API int32_t UTMAT_InfOuEgal(double a, double b, double t);
/** tsMath_doublesNearEqual, clearing the error word. */
TESSAR_API int32_t UTMAT_Egal(double a, double b, double t);
/** tsUtil_greaterOrEqualDouble, clearing the error word. */
TESSAR_API int32_t UTMAT_SupOuEgal(double a, double b, double t);
/** tsUtil_greaterDouble, clearing the error word. */
TESSAR_API int32_t UTMAT_Sup(double a, double b, double t);
/** tsUtil_belongToClosedIntervalDouble, clearing the error word. */
TESSAR_API int32_t UTMAT_AppartenirAIntFerme(double x, double lo, double hi, double t);
/** tsUtil_belongToOpenIntervalDouble, clearing the error word. */
TESSAR_API int32_t UTMAT_AppartenirAIntOuvert(double x, double lo, double hi, double t);

TESSAR_END_DECLS

#endif /* TESSAR_FRAME_H */
