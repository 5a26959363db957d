/*
 * Tessar: the whole interface.
 *
 * Including this header brings in every family of the library. Each family
 * header can also be included on its own.
 */
#ifndef TESSAR_TESSAR_H
#define TESSAR_TESSAR_H

#include <tessar/export.h>
#include <tessar/types.h>

/* Numeric frame */
#include <tessar/frame.h>
#include <tessar/memory.h>

/* Plane geometry kernel */
#include <tessar/angle.h>
#include <tessar/circle.h>
#include <tessar/mathapi.h>
#include <tessar/point.h>
#include <tessar/transform.h>
#include <tessar/vector.h>

/* Alignment curve constructions */
#include <tessar/clothoid.h>
#include <tessar/ovoid.h>
#include <tessar/parabola.h>
#include <tessar/tangent.h>

/* Polyline engine */
#include <tessar/polyline.h>

/* Best fit */
#include <tessar/bestfit.h>

/* Line strings and point arrays */
#include <tessar/linestring.h>
#include <tessar/pointarray.h>

/* Containers */
#include <tessar/btree.h>
#include <tessar/dynarray.h>
#include <tessar/linkedlist.h>
#include <tessar/object.h>
#include <tessar/rangetree.h>
#include <tessar/strlist.h>

/* Text */
#include <tessar/pointnames.h>
#include <tessar/text.h>
#include <tessar/tokens.h>

/* Survey values */
#include <tessar/conversion.h>
#include <tessar/format.h>
#include <tessar/parse.h>

/* Geoid models */
#include <tessar/geoid.h>

/* System utilities */
#include <tessar/system.h>

#endif /* TESSAR_TESSAR_H */
