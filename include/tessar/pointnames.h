/*
 * Tessar: point-name lists.
 *
 * Survey points carry short names: a number, or letters followed by a number
 * (A12, 007). A name splits into a prefix, its letters, and a number. Lists
 * of names come in two forms:
 *
 *  - plain: names separated by a caller-chosen delimiter; the word GAP, in
 *    any case, marks a break in the sequence;
 *  - compressed: elements separated by a separator string, an element being
 *    a name or a range first-last of two names with the same prefix; a gap
 *    is written ",," whatever the separator. The text keeps a separator at
 *    its end: A1 A2 A3 B7 reads "A1-A3,B7,", 1 2 3 GAP 7 8 reads "1-3,,7-8,"
 *    and 5 4 3 reads "5-3,".
 *
 * Names sort in a natural order: numbers by value, A2 before A10, names
 * without letters first, letters compared without regard to case.
 *
 * Buffers. Expansion and compression return a new heap text from
 * tsMem_calloc, which the caller frees with tsMem_free. Every other output
 * is a caller's buffer, unchecked.
 *
 * State. Expansion and compression walk their text with the C library's
 * tokeniser, which keeps a hidden position: on one thread, no other
 * tokenising may run inside one of these calls. Letters are told by the
 * character classes of the process locale.
 */
#ifndef TESSAR_POINTNAMES_H
#define TESSAR_POINTNAMES_H

#include <stddef.h>
#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Names ---- */

/**
 * Splits a point name into its letters and its number.
 * \param[in]  name   the name; must not be null
 * \param[out] prefix all letters of the name, in order, wherever they stand
 * \param[out] number without letters, the value of the whole name; with
 *                    letters, the value of the text behind as many leading
 *                    characters as there are letters (0 if that text does
 *                    not start with a digit, so "12AB" gives "AB" and 0);
 *                    -1 when that text is empty
 */
TESSAR_API void tsString_splitPointName(const char *name, char *prefix, int32_t *number);

/**
 * Compares two point names in natural order: each is set right-aligned in a
 * field of 15 characters (cut to its first 15), a leading run of letters is
 * moved to the field's start, and the fields are compared with
 * tsString_strcmpi.
 * \return negative, 0 or positive; 2 when a name cannot be normalised.
 */
TESSAR_API int32_t tsString_lexicographicalComparePointName(const char *a, const char *b);

/* ---- Compressed lists ---- */

/**
 * Expands a compressed list into the plain form: each name or name of a
 * range followed by the separator, a gap as "GAP" and the separator. Zero
 * padding of a range carries over to the names (01-10 gives 01 ... 10); the
 * prefix written is the left name's.
 * \param[out] result    address of the new text from tsMem_calloc, the caller's
 * \param[in]  text      compressed list
 * \param[in]  delimiters characters that separate the elements
 * \param[in]  separator text written after each name
 * \return 0; -1 when the result cannot be allocated or grown (*result is
 *         then null); -2 when the working copy cannot be allocated; 2 for a
 *         bad range (prefixes differ, left name of 10 characters or more, no
 *         right name); 3 when the zero padding of a range's two ends does not
 *         agree. On 2 and 3 the partial result stays in *result, the
 *         caller's to free.
 */
TESSAR_API int32_t tsString_expandAlphaNumeric(char **result, const char *text, const char *delimiters,
                                               const char *separator);

/**
 * Compresses a plain list into ranges. A list that holds "-" is expanded
 * first, with a blank as delimiter and separator. Names join into a range
 * only when they share prefix (case included) and zero padding. An
 * ascending range with a prefix is followed by a blank after its separator,
 * and blanks are cut off both ends of the result: "A1 A2 A3 B7" gives
 * "A1-A3, B7,". A GAP word ends a run with ",,"; a name numbered 0 alone
 * gives its prefix only, and names without a number run together.
 * \param[out] result    address of the new text from tsMem_calloc, the caller's
 * \param[in]  list      names separated by blanks
 * \param[in]  separator text written after each element
 * \return 0; -1 when the result cannot be allocated or grown (*result is
 *         then null); -2 when the working copy cannot be allocated or the
 *         expansion step fails (*result is then left as it was).
 */
TESSAR_API int32_t tsString_compressAlphaNumeric(char **result, const char *list, const char *separator);

/* ---- Integers in text ---- */

/**
 * Reads the first run of digits of a text ("PT-12a3" gives 12); a "-" is not
 * taken as a sign. Texts up to 543 characters.
 * \param[out] result the value, 0 when the text has no digit
 * \param[in]  text   the text
 * \return 0, or 32768 for a null argument (the result is then 0 or unset).
 */
TESSAR_API int32_t tsString_extractInteger(int32_t *result, const char *text);

/**
 * Reads a range "low - high" from a cleaned copy of text. Without "-", or
 * with "-" only in first place, one value is read and goes to both outputs
 * ("-5" gives -5 and -5).
 * \param[in]  text text of the range
 * \param[out] low  optional: the first value
 * \param[out] high optional: the second value
 * \return 0, or 32768 for a null or empty text.
 */
TESSAR_API int32_t tsString_extractIntegerRange(const char *text, int32_t *low, int32_t *high);

/**
 * Sorts the comma-separated tokens of input into numbers and texts. A quoted
 * token goes to strings, in double quotes again; an unquoted numeric token
 * (tsString_isNumeric) to numbers; any other to strings. Tokens keep their
 * blanks and are separated by commas, with no comma after the last one. At
 * most 100 tokens. The input is split in place: the tokeniser writes zeros
 * over the characters that end its tokens.
 * \param[out]    numbers cleared first, then the numeric tokens
 * \param[out]    strings cleared first, then the other tokens
 * \param[in]     unused  not used
 * \param[in,out] input   the comma-separated text, cut into its tokens
 * \return 0, or 32768 for a null or empty input, a null output, or a failure
 *         of the tokeniser.
 */
TESSAR_API int32_t tsString_extractIntegerAndStringExpressions(char *numbers, char *strings, void *unused,
                                                               char *input);

/**
 * Tests for a digit followed only by digits and "-"; "1-5-9" and "1-" pass.
 * \return 1 or 0; 0 for null.
 */
TESSAR_API int32_t tsString_isIntegerOrRange(const char *text);

/** \return 1 when the character at c is 0 to 9, else 0. */
TESSAR_API int32_t tsString_isCharacterAnInteger(const char *c);

TESSAR_END_DECLS

#endif /* TESSAR_POINTNAMES_H */
