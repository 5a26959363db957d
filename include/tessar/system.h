/*
 * Tessar: platform utilities.
 *
 * Small services next to the operating system: relative file paths, globally
 * unique identifiers, one process-wide log file, process creation, the
 * operating-system query, and a few value helpers. The tolerant comparisons
 * tsUtil_*Double are in frame.h.
 *
 * Paths are 8-bit text on Windows rules, whatever the host: the backslash
 * separates components, a drive letter ends in a colon, and comparison is
 * case-insensitive. These are text rules; no path function touches the file
 * system. Every destination buffer is the caller's and must hold the result.
 * The path functions use the C library's tokeniser, which keeps a hidden
 * position: no other tokenising may run inside one of them on one thread.
 *
 * A guid is the 16-byte tsGuid record of types.h. Its text is 16-bit:
 * "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" in upper-case hex, data1 to data3
 * as numbers and data4 byte by byte.
 *
 * The log file is one library-wide stream, open from a successful
 * tsLogFile_open to tsLogFile_close, without any lock: keep its use on one
 * thread at a time.
 */
#ifndef TESSAR_SYSTEM_H
#define TESSAR_SYSTEM_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- File paths ---- */

/**
 * The common directory of two paths: paths equal apart from case give path
 * a itself; otherwise their longest common prefix, apart from case and in
 * a's spelling, cut back to its last backslash (dropped) or colon (kept).
 * "C:\a\b" and "c:\A\c" give "C:\a"; "C:\x" and "D:\x" give "".
 * \param[out] output the common path; empty when there is none
 * \param[in]  a      first path
 * \param[in]  b      second path
 * \return 0, or 32768 for a null argument or an empty path.
 */
TESSAR_API int32_t tsFilename_getCommonPath(char *output, const char *a, const char *b);

/**
 * Relates two paths, compared in upper case. When b occurs in a, the output
 * is a behind its first strlen(b) characters (a's tail under b:
 * "C:\a\b\c" with "C:\a" gives "\b\c"). Otherwise, when a occurs in b, it is
 * "\.." for each component of b behind strlen(a) characters: the way up from
 * b to a.
 * \param[out] output the relative path
 * \param[in]  a      first path
 * \param[in]  b      second path
 * \return 0, or 32768 for a null argument or when neither path holds the other.
 */
TESSAR_API int32_t tsFilename_getRelativePath(char *output, const char *a, const char *b);

/**
 * Expresses target relative to base: the way up from base to their common
 * path, then target's tail behind the common path.
 * \param[out] output the relative path
 * \param[in]  base   path the result is relative to
 * \param[in]  target path expressed
 * \return 0, or 32768 when the two have no common path or on a failure of
 *         the steps.
 */
TESSAR_API int32_t tsFilename_expressUsingRelativePath(char *output, const char *base, const char *target);

/**
 * Removes every "\.." (apart from case) with the component before it:
 * "a\b\..\c" gives "a\c". The first removal is also made in path itself,
 * which therefore changes; when no backslash stands before the first "\..",
 * path is left cut there and the output keeps the copy; a later "\.." with
 * no backslash before it leaves the output cut there. Paths of 256
 * characters or more stop being shortened.
 * \param[out]    output the resolved path
 * \param[in,out] path   the path
 * \return 0, or 32768 for a null argument.
 */
TESSAR_API int32_t tsFilename_resolveRelativePath(char *output, char *path);

/**
 * Joins base and relative (together up to 263 characters) and resolves the
 * result with tsFilename_resolveRelativePath.
 * \param[out] output   cleared first, then the path
 * \param[in]  base     base path
 * \param[in]  relative relative part
 * \return 0, or 32768 for a null argument or an empty join.
 */
TESSAR_API int32_t tsFilename_fromRelativePath(char *output, const char *base, const char *relative);

/* ---- Guids ---- */

/**
 * Fills a new random (version 4) guid from the kernel's random source.
 * \return 0, or 0x80004005 as int32_t when the source fails.
 */
TESSAR_API int32_t tsGuid_generate(tsGuid *guid);

/** Byte-wise ordering of the 16 bytes. \return negative, 0 or positive. */
TESSAR_API int32_t tsGuid_compare(const tsGuid *a, const tsGuid *b);

/** \return 1 when all 16 bytes agree, else 0. */
TESSAR_API int32_t tsGuid_equal(const tsGuid *a, const tsGuid *b);

/**
 * Reads a guid from its braced text, hex digits of either case.
 * \param[out] guid the guid
 * \param[in]  text 16-bit text
 * \return 0, or 0x80004005 as int32_t for text of another form.
 */
TESSAR_API int32_t tsGuid_fromString(tsGuid *guid, const char16_t *text);

/**
 * Writes a guid as braced text: 38 units and the terminator.
 * \param[out] buffer 16-bit text of 40 units
 * \param[in]  guid   the guid
 * \return 0.
 */
TESSAR_API int32_t tsGuid_toString(char16_t *buffer, const tsGuid *guid);

/**
 * Writes a guid as text without the braces: 36 units and the terminator.
 * \return 0.
 */
TESSAR_API int32_t tsGuid_toStringNoBrackets(char16_t *buffer, const tsGuid *guid);

/** Fills a guid with zeros; a null guid does nothing. \return 0. */
TESSAR_API int32_t tsGuid_clear(tsGuid *guid);

/** \return 1 when all 16 bytes are 0, else 0. */
TESSAR_API int32_t tsGuid_isClear(const tsGuid *guid);

/** Copies source to destination; a null pointer does nothing. \return 0. */
TESSAR_API int32_t tsGuid_copy(tsGuid *destination, const tsGuid *source);

/* ---- Log file ---- */

/**
 * Opens the log file with mode "w+", replacing any open one without closing
 * it (the earlier stream is abandoned). A failed open leaves no log open.
 * \param[in] path file name
 * \return 0, or 32768 if the file cannot be opened.
 */
TESSAR_API int32_t tsLogFile_open(const char *path);

/** Closes the log file. \return 0, or 32768 when none is open. */
TESSAR_API int32_t tsLogFile_close(void);

/**
 * Writes one line to the log file: the printf-style format and its values,
 * then a line feed, flushed at once so that a crash loses no line.
 * \return 0, or 32768 when no log file is open.
 */
TESSAR_API int32_t tsLogFile_write(const char *format, ...);

/* ---- System ---- */

/**
 * \return 1 for the old consumer platform line, 2 for all others (always
 *         here), 0 if the version query fails.
 */
TESSAR_API int32_t tsUtil_getOperatingSystem(void);

/** \return 1 for system version 5.1; 0 here, where the query reports another version. */
TESSAR_API int32_t tsUtil_isOperatingSystemWindowsXP(void);

/**
 * Starts a command line as a detached process in a session of its own,
 * through /bin/sh -c, and does not wait for it.
 * \return 0, or 32768 when the process cannot be started.
 */
TESSAR_API int32_t tsUtil_createWindowsProcess(const char *commandLine);

/* ---- Digits ---- */

/**
 * \return the number of digits of value, plus one for the sign of a negative
 *         value: 0 gives 1, 99 gives 2, -99 gives 3.
 */
TESSAR_API int32_t tsUtil_numberOfDigit(int32_t value);

/** \return tsUtil_numberOfDigit of the floor of value: its integer digits. */
TESSAR_API int32_t tsUtil_numberOfMantissaDigit(double value);

/** \return 16 minus tsUtil_numberOfMantissaDigit(value): the decimals left of 16 digits. */
TESSAR_API int32_t tsUtil_numberOfDecimalsDigit(double value);

/* ---- Swapping and arrays ---- */

/** Exchanges two doubles. */
TESSAR_API void tsUtil_swapDouble(double *a, double *b);

/** Exchanges two 32-bit floats. */
TESSAR_API void tsUtil_swapFloat(float *a, float *b);

/** Exchanges two 32-bit integers. */
TESSAR_API void tsUtil_swapInt(int32_t *a, int32_t *b);

/** A second name of tsUtil_swapInt: also 32-bit. */
TESSAR_API void tsUtil_swapLong(int32_t *a, int32_t *b);

/** Exchanges two separate memory blocks of size bytes, in place; nothing is allocated. */
TESSAR_API void tsUtil_swapMem(void *a, void *b, size_t size);

/**
 * Swaps the two bytes of the first 16-bit value of array, and only when
 * count is exactly 1; with any other count the array is left as it is.
 * \param[in,out] array  16-bit values
 * \param[in]     unused not used
 * \param[in]     count  number of values
 */
TESSAR_API void tsUtil_swapBytesShortArray(int16_t *array, int32_t unused, int32_t count);

/** \return the greater of two 32-bit integers. */
TESSAR_API int32_t tsUtil_getGreaterInteger(int32_t a, int32_t b);

/** \return the smaller of two 32-bit integers. */
TESSAR_API int32_t tsUtil_getSmallerInteger(int32_t a, int32_t b);

/**
 * Sorting comparison of the doubles at a and b, exact, usable with qsort.
 * \return -1, 0 or 1; -1 for an unordered pair (a not-a-number).
 */
TESSAR_API int32_t tsUtil_compareDoubleByPointer(const void *a, const void *b);

/**
 * Removes, in place, every later copy of a value from an array of 32-bit
 * integers, keeping first occurrences in their order (1 2 1 3 2 leaves
 * 1 2 3). Quadratic in the count.
 * \param[in,out] array the values
 * \param[in,out] count their number, updated
 * \return 0, or 32768 when either pointer is null.
 */
TESSAR_API int32_t tsUtil_removeDuplicatesFromLongArray(int32_t *array, int32_t *count);

/**
 * Reverses the order of count elements of elementSize bytes, swapping from
 * both ends with tsUtil_swapMem.
 */
TESSAR_API void tsUtil_reverseArray(void *array, int32_t count, size_t elementSize);

TESSAR_END_DECLS

#endif /* TESSAR_SYSTEM_H */
