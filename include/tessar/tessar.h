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

#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/vector.h>

#endif /* TESSAR_TESSAR_H */
