/*
 * Tessar: string library.
 *
 * Tools for zero-terminated 8-bit strings: null-tolerant wrappers of the
 * classic string calls, in-place cleaning, case-insensitive search, wild-card
 * matching, number recognition and a line reader. Point-name lists are in
 * pointnames.h, tokens and string arrays in tokens.h.
 *
 * Buffers. Every function works on the caller's buffers, and the caller owns
 * them all; only tsString_duplicate and tsString_addToBuffer hand out heap
 * text, which comes from tsMem_* and is released with tsMem_free. Capacity is
 * the caller's duty: only tsString_safeCopy, tsString_fromInt64,
 * tsString_fromULong and tsString_replaceSubstring bound what they write.
 *
 * Terms. A blank is the byte 0x20 alone; white space is blank, tab and the
 * line ends. A function marked null-tolerant takes a null pointer as the
 * empty string. Results are a status (0, or 32768 for a bad argument), a
 * truth value (1 or 0) or a pointer (null on a bad argument).
 *
 * State. No function keeps state between calls. Case conversion and the
 * character classes follow the process locale, which tsFormat_HonorMachineLocale
 * (format.h) changes for every thread; apart from that the functions may run
 * on several threads at once on distinct strings.
 */
#ifndef TESSAR_TEXT_H
#define TESSAR_TEXT_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#ifndef __cplusplus
#include <uchar.h>
#endif

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Comparison ---- */

/** Null-tolerant compare with bytes taken as unsigned. \return -1, 0 or 1. */
TESSAR_API int32_t tsString_strcmp(const char *a, const char *b);

/**
 * Null-tolerant case-insensitive compare (ASCII letters folded).
 * \return negative, 0 or positive, as the C library's case-blind compare.
 */
TESSAR_API int32_t tsString_strcmpi(const char *a, const char *b);

/** Null-tolerant multibyte compare, exact, on unsigned bytes. \return negative, 0 or positive. */
TESSAR_API int32_t tsString_mbscmp(const char *a, const char *b);

/** Null-tolerant multibyte compare, case-insensitive. \return negative, 0 or positive. */
TESSAR_API int32_t tsString_mbscmpi(const char *a, const char *b);

/** Null-tolerant. \return 1 when tsString_strcmp(a, b) would give 0, else 0. */
TESSAR_API int32_t tsString_match(const char *a, const char *b);

/** Null-tolerant. \return 1 when tsString_strcmpi(a, b) would give 0, else 0. */
TESSAR_API int32_t tsString_matchi(const char *a, const char *b);

/**
 * Compares the first n characters after upper-casing.
 * \return 1 for n below 1; 0 when either string (null counting as empty) is
 *         shorter than n; else 1 when the n characters agree, 0 otherwise.
 */
TESSAR_API int32_t tsString_strnieql(const char *a, const char *b, int32_t n);

/**
 * Compares 8-bit text with 16-bit text: a is widened to at most 512 units,
 * then units are compared as unsigned. Null-tolerant.
 * \return -1, 0 or 1.
 */
TESSAR_API int32_t tsString_cmpMbsToWcs(const char *a, const char16_t *b);

/* ---- Length and copying ---- */

/** Null-tolerant length. \return the number of bytes before the terminator; 0 for null. */
TESSAR_API int32_t tsString_strlen(const char *s);

/** Copies src to dst. \return dst, or null when either is null. */
TESSAR_API char *tsString_strcpy(char *dst, const char *src);

/** Multibyte copy of src to dst. \return dst, or null when either is null. */
TESSAR_API char *tsString_mbscpy(char *dst, const char *src);

/**
 * The C library's bounded copy of at most n bytes: no terminator is written
 * when src is n bytes long or longer.
 * \return dst, or null when either is null.
 */
TESSAR_API char *tsString_strncpy(char *dst, const char *src, int32_t n);

/** Appends src to dst; a null src appends nothing. \return dst, or null for a null dst. */
TESSAR_API char *tsString_strcat(char *dst, const char *src);

/**
 * Bounded copy that always terminates.
 * \param[out] dst      destination
 * \param[in]  src      source
 * \param[in]  capacity bytes available in dst, terminator included; a negative
 *                      value means the current length of dst plus one
 * Copies at most capacity - 1 bytes.
 * \return dst, or null when either pointer is null.
 */
TESSAR_API char *tsString_safeCopy(char *dst, const char *src, int32_t capacity);

/**
 * Copies src into a new block from tsMem_calloc.
 * \param[out] result cleared first, then the copy; the caller frees it with tsMem_free
 * \param[in]  src    text to copy
 * \return 0, or 32768 for a null result address, a null src or no memory.
 */
TESSAR_API int32_t tsString_duplicate(char **result, const char *src);

/* ---- Searching ---- */

/**
 * Case-insensitive search, made on upper-cased heap copies.
 * \return a pointer into haystack at the first occurrence of needle; null when
 *         either is null or empty or needle does not occur.
 */
TESSAR_API char *tsString_strstri(const char *haystack, const char *needle);

/**
 * Case-insensitive search on upper-cased copies of the first 128 characters
 * of each string; the offset found is applied to haystack.
 * \return a pointer into haystack at the occurrence. When needle does not
 *         occur the result is a meaningless non-null value: callers that must
 *         tell absence apart use tsString_strstri.
 */
TESSAR_API char *tsString_stristr(const char *haystack, const char *needle);

/**
 * Finds needle in text and the start of the word that holds it: the walk
 * goes back from the character before needle to the nearest white space.
 * \param[in]  text      text searched
 * \param[out] wordStart optional: the character after that white space. With
 *                       no white space before needle the walk ends one place
 *                       before the start of text, and that is what is stored
 *                       (the count is then one larger as well). Cleared when
 *                       needle is not found.
 * \param[in]  needle    text looked for
 * \return the number of characters from the word start to needle; 0 when not
 *         found or when text or needle is null or empty.
 */
TESSAR_API int32_t tsString_findFilename(const char *text, char **wordStart, const char *needle);

/** \return the number of occurrences of c in s; 0 for null or empty s. */
TESSAR_API int32_t tsString_getCharCount(const char *s, char c);

/* ---- Editing in place ---- */

/** Upper-cases s character by character. Null-tolerant. \return s. */
TESSAR_API char *tsString_uppercase(char *s);

/** Lower-cases s character by character. Null-tolerant. \return s. */
TESSAR_API char *tsString_lowercase(char *s);

/**
 * Replaces every control character by a blank; despite its name it removes
 * nothing. \return the length of s; 0 for null or empty s.
 */
TESSAR_API int32_t tsString_removeNoPrintable(char *s);

/**
 * Replaces every c by a blank; despite its name it removes nothing
 * ("a-b" with '-' becomes "a b"). \return the length of s; 0 for null or empty s.
 */
TESSAR_API int32_t tsString_removeChar(char *s, char c);

/** Deletes every c from s ("a-b" with '-' becomes "ab"); s must not be null. \return the number deleted. */
TESSAR_API int32_t tsString_removeCharacter(char *s, char c);

/** Deletes all white space from s. Null-tolerant. */
TESSAR_API void tsString_removeBlanks(char *s);

/** Deletes the leading blanks of s; s must not be null. */
TESSAR_API void tsString_stripLeadingBlanks(char *s);

/** Deletes the trailing blanks of s; s must not be null. \return the length before stripping. */
TESSAR_API int32_t tsString_stripTrailingBlanks(char *s);

/** Deletes the trailing tabs of s; s must not be null. \return the length before stripping. */
TESSAR_API int32_t tsString_stripTrailingTabs(char *s);

/** Deletes all leading double quotes of s. \return the number deleted. */
TESSAR_API int32_t tsString_stripLeadingQuotes(char *s);

/**
 * Deletes trailing double quotes of s.
 * \param[in,out] s     text
 * \param[in]     limit 0 deletes none, a positive value at most that many, a
 *                      negative value all of them
 * \return the number deleted.
 */
TESSAR_API int32_t tsString_stripTrailingQuotes(char *s, int32_t limit);

/** Deletes leading and trailing blanks. \return 0, or 32768 for a null s. */
TESSAR_API int32_t tsString_stripSurroundingWhiteSpace(char *s);

/**
 * Deletes the surrounding blanks, then all leading double quotes, then as
 * many trailing quotes as were deleted in front, so that a trailing quote
 * that was never opened stays.
 * \return the number of quotes deleted in front; 0 for a null s.
 */
TESSAR_API int32_t tsString_stripSurroundingQuotes(char *s);

/**
 * Applies, for each non-zero flag in this order, tsString_removeNoPrintable,
 * tsString_stripLeadingBlanks and tsString_stripTrailingBlanks.
 * \return 0, or 32768 for a null s.
 */
TESSAR_API int32_t tsString_clean(char *s, int32_t printable, int32_t leading, int32_t trailing);

/**
 * Tests for text that is null, empty or blanks only. It changes what it
 * inspects: control characters passed over before the first non-blank
 * character are turned into blanks.
 * \return 1 or 0.
 */
TESSAR_API int32_t tsString_isStrWhite(char *s);

/**
 * Inserts text into s before position index: the tail, terminator included,
 * moves right by the length of text, then text is copied in without its
 * terminator. An empty text does nothing; an index beyond the end of s moves
 * nothing. s must have room.
 * \return 0, or 32768 for a null s or text or a negative index.
 */
TESSAR_API int32_t tsString_insertString(char *s, const char *text, int32_t index);

/**
 * Replaces count characters at position by replacement; the tail is buffered
 * on the stack.
 * \param[in]     s           the string, used only as a null guard
 * \param[in,out] position    where the replaced characters start, inside s
 * \param[in]     count       characters replaced
 * \param[in]     replacement new text
 * \return 0, or 32768 for a null s, a count below 1, or when the length from
 *         position plus count is above 256.
 */
TESSAR_API int32_t tsString_replaceSubstring(const char *s, char *position, int32_t count,
                                             const char *replacement);

/**
 * Replaces every occurrence of find in s by replacement, case-exact. The
 * search starts again at the beginning of s after each replacement, so a
 * replacement that contains find never ends: callers must not do that. A
 * longer replacement moves the tail right inside s, which must have room.
 * \return 0, or 32768 for a null argument or an empty s or find (an empty
 *         replacement is allowed).
 */
TESSAR_API int32_t tsString_replaceAllSubstrings(char *s, const char *find, const char *replacement);

/** tsString_replaceAllSubstrings with a case-insensitive search (through tsString_strstri). */
TESSAR_API int32_t tsString_replaceAllSubstringsi(char *s, const char *find, const char *replacement);

/**
 * Appends text, and a line feed if newline is non-zero, to a growing heap
 * text, reallocated with tsMem_realloc (the caller frees it with tsMem_free).
 * Appending an empty text without line feed to an existing buffer does
 * nothing.
 * \param[in]     text    text to append
 * \param[in]     newline non-zero to add a line feed
 * \param[in,out] buffer  address of the heap text; null there starts a new one
 * \param[in,out] size    optional: the buffer's size in bytes, updated; when
 *                        null the size of an existing buffer is taken as the
 *                        length of the heap text plus one
 * An allocation failure is not tested.
 * \return 0, or 32768 for a null text or buffer address.
 */
TESSAR_API int32_t tsString_addToBuffer(const char *text, int32_t newline, char **buffer, size_t *size);

/* ---- Recognition ---- */

/** \return 1 when the first character of s is 0 to 9; 0 for null. */
TESSAR_API int32_t tsString_isDigit(const char *s);

/** \return 1 for blanks around an optional "+" or "-" and at least one digit, nothing else. */
TESSAR_API int32_t tsString_isInteger(const char *s);

/** \return 1 for an integer whose first character after stripping is not "-". */
TESSAR_API int32_t tsString_isPositiveInteger(const char *s);

/** \return 1 for an integer whose first character after stripping is "-". */
TESSAR_API int32_t tsString_isNegativeInteger(const char *s);

/**
 * Tests for a real with a point: after stripping blanks at both ends, an
 * optional "+" or "-", then digits and exactly one point with at least one
 * character after it. ".5" and "-.5" are reals; "5", "5.", "1.2.3" and
 * "1e5" are not. Text up to 263 characters; a percent sign is outside the
 * contract of all six recognition tests. \return 1 or 0; 0 for null.
 */
TESSAR_API int32_t tsString_isReal(const char *s);

/** \return 1 for a real whose first character after stripping is not "-". */
TESSAR_API int32_t tsString_isPositiveReal(const char *s);

/** \return 1 for a real whose first character after stripping is "-". */
TESSAR_API int32_t tsString_isNegativeReal(const char *s);

/** \return 1 for an integer or a real. */
TESSAR_API int32_t tsString_isNumeric(const char *s);

/* ---- Number text ---- */

/** \return the 64-bit integer that s starts with; 0 for null or empty s or when nothing scans. */
TESSAR_API int64_t tsString_toInt64(const char *s);

/**
 * Prints a 64-bit integer. A text longer than size is cut to size
 * characters, so that size + 1 bytes are written: buffer needs size + 1 bytes.
 * \return 0, or 32768 for a null buffer or a size below 1.
 */
TESSAR_API int32_t tsString_fromInt64(char *buffer, int32_t size, int64_t value);

/** \return the unsigned 32-bit integer that s starts with; 0 for null or empty s or when nothing scans. */
TESSAR_API uint32_t tsString_toULong(const char *s);

/**
 * Prints an unsigned 32-bit integer followed by the letter l (123 reads
 * "123l"), cut like tsString_fromInt64.
 * \return 0, or 32768 for a null buffer or a size below 1.
 */
TESSAR_API int32_t tsString_fromULong(char *buffer, int32_t size, uint32_t value);

/* ---- Wild cards ---- */

/**
 * Matches subject against a pattern with "?" (one character), "*" (any run)
 * and "[...]" (a set of literal characters, no ranges; "[!...]" negates it).
 * A leading "!" inverts the whole test. The pattern is changed for a moment
 * while a set is read, so it must be writable.
 * \return 0 on a match. Otherwise -1 when the difference is a literal one,
 *         with no wild card passed and the subject's character not below the
 *         pattern's, and 1 in every other case. Under a leading "!": 1 on a
 *         match, 0 otherwise.
 */
TESSAR_API int32_t tsString_strcmpWildCardMatch(const char *subject, char *pattern);

/**
 * tsString_strcmpWildCardMatch on upper-cased copies of both strings, each up
 * to 255 characters.
 */
TESSAR_API int32_t tsString_strcmpiWildCardMatch(const char *subject, const char *pattern);

/* ---- Reading lines ---- */

/**
 * Reads one line of a stream, byte by byte. A line feed ends the line and
 * becomes the terminator; a carriage return just before it is cut too.
 * Reading also stops at a byte 0xFF or after size bytes: then, at end of
 * file, nothing is terminated and the result is 0 (a last line without line
 * feed is not delivered); otherwise the byte before the last one stored
 * becomes the terminator, so a long line comes back with size - 2
 * characters and its remainder is read by the next call.
 * \return 1 when a line was read, 0 at end of file.
 */
TESSAR_API int32_t tsString_fgets(char *buffer, int32_t size, FILE *stream);

TESSAR_END_DECLS

#endif /* TESSAR_TEXT_H */
