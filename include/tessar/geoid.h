/*
 * Tessar: geoid grids.
 *
 * The height of the geoid above the ellipsoid (the undulation N, so that an
 * orthometric height is H = h - N) read from gridded model files by
 * biquadratic interpolation on a 3 x 3 block of nodes.
 *
 * One model is open at a time, library-wide: opening a model closes the one
 * before, and every call of this family shares it. There is no lock and no
 * reference counting, so keep all geoid calls on one thread and keep the
 * model open for as long as undulations are asked for. The grid is never
 * loaded: each value is read from the open file when it is needed (nine
 * seeks and reads per interpolated undulation), so memory use is constant.
 *
 * Grid file, little-endian, taken as it is (no byte swapping):
 *   offset  0 double  south, latitude of the first row, degrees
 *   offset  8 double  west, longitude of the first column, degrees east, 0 to 360
 *   offset 16 double  latitude spacing, degrees
 *   offset 24 double  longitude spacing, degrees
 *   offset 32 int32   number of rows
 *   offset 36 int32   number of columns
 *   offset 40 int32   kind, non-zero for a usable file
 *   offset 44 float   undulations in metres, row by row from south to north,
 *                     each row from west to east
 * The value at row r and column c (both from 1) lies at offset
 * 40 + 4 ((r - 1) columns + c).
 *
 * Latitudes and longitudes are degrees. A longitude sense of 0 means the
 * longitude is positive to the west (360 minus it is used); any other sense
 * means positive to the east. A negative longitude then has 360 added.
 *
 * Failures are not told apart: 1 means no usable model, or no value.
 * Paths are POSIX paths with the separator '/'.
 */
#ifndef TESSAR_GEOID_H
#define TESSAR_GEOID_H

#include <stdint.h>

#include <tessar/export.h>

TESSAR_BEGIN_DECLS

/* ---- Opening and closing the model ---- */

/**
 * Opens a grid file as the library's model. The model open before is closed
 * first, also when this call fails.
 * \param[in] path the file's path; null or empty opens nothing
 * \return 0 when the file opens and its kind field is non-zero, else 1 (the
 *         model is then closed).
 */
TESSAR_API int32_t tsGeoid_initModelByFile(const char *path);

/**
 * Searches a family of regional grid files for the one that best holds a
 * point, and opens it as the model. Candidates, in the order searched:
 *   2 "g2003": u01 to u08;   3 "s2003": u01 to u08;
 *   4 "g1999": u01 to u08, then a01 to a04, h01, p01;   5 "s1999": u01 to u08.
 * A file is named directory + base name + letter + "0" + number + ".bin", for
 * example g1999a03.bin; a directory not ending in '/' gets one, an empty
 * directory adds nothing. A point well inside a grid (score 3) chooses that
 * file at once; otherwise the first file holding it within half a spacing of
 * one edge wins over the first holding it in a corner band. Missing files and
 * files of kind 0 are skipped.
 * \param[in] model     the family number, 2 to 5
 * \param[in] directory the directory of the files; null fails
 * \param[in] latitude  degrees
 * \param[in] longitude degrees
 * \param[in] longitudeSense 0 for longitudes positive to the west, else east
 * \return 0 when a file was chosen and opened, else 1 (the model is then closed).
 */
TESSAR_API int32_t tsGeoid_initModelByGeoid(int32_t model, const char *directory, double latitude,
                                            double longitude, int32_t longitudeSense);

/**
 * Closes the model's file and brings the model back to its closed state.
 * May be called at any time, any number of times.
 * \return the file's close status (0 on success), or 1 when no file was open.
 */
TESSAR_API int32_t tsGeoid_closeModel(void);

/* ---- Undulations ---- */

/**
 * The undulation of the open model at a point. A point exactly on a node
 * gives the stored value; any other point is interpolated on the 3 x 3 block
 * centred on the node at or south-west of it, moved inward at the grid's
 * edges. A file cut short gives stale values, not a failure.
 * \param[out] undulation metres; set to 0 before anything is tested (not
 *        tested for null)
 * \param[in] latitude  degrees, -90 to 90
 * \param[in] longitude degrees, at most 360 in magnitude after the sense is applied
 * \param[in] longitudeSense 0 for longitudes positive to the west, else east
 * \return 0, or 1 with the undulation 0 when no model is open or the point
 *         lies outside the grid (edges included in the grid).
 */
TESSAR_API int32_t tsGeoid_getUndulationAtLatLong(double *undulation, double latitude, double longitude,
                                                  int32_t longitudeSense);

/**
 * The quadratic through three equally spaced values f0, f1, f2 at t counted
 * from the first (t = 0, 1, 2 give f0, f1, f2), in Newton's form:
 * ((f2 - f1 - (f1 - f0)) (t - 1) 0.5 + (f1 - f0)) t + f0. Pure.
 */
TESSAR_API double tsGeoid_biQuadraticFit(double t, double f0, double f1, double f2);

TESSAR_END_DECLS

#endif /* TESSAR_GEOID_H */
