/*
 * Tessar: tokens and CSV string arrays.
 *
 * Tokenising of 8-bit text: a walker over delimited tokens, a parser that
 * knows bracket-like groups, editing of delimited lists, keyword
 * replacement, and arrays of heap strings read from and written to
 * comma-separated text.
 *
 * Token sets. tsString_parseTokenGroups fills three parallel arrays of the
 * caller, indexed by token: a pointer to the token inside the parsed text,
 * the character that introduced it (the delimiter seen last, or the group's
 * opening character; 0 when none was seen yet) and a group flag (1 for a
 * group, 0 for a plain token). The caller sizes the arrays; no bound is
 * checked. Parsing writes zeros into the parsed text.
 *
 * String arrays. A string array is a heap vector of char pointers plus a
 * signed 32-bit count that the caller keeps beside it; the list separator
 * is ",". Arrays from tsStringArray_getFromCSVString, tsStringArray_clone
 * and tsStringArray_merge hold one heap string per element and are released
 * with tsStringArray_destroy. An array from
 * tsStringArray_getFromOrderedCSVString holds all its elements in one block:
 * the caller frees element 0, then the array, with tsMem_free, and never
 * passes it to tsStringArray_destroy. Joined texts come from tsMem_calloc and
 * are freed with tsMem_free.
 *
 * State. tsString_removeToken, tsString_replaceStringForKeyword and the
 * functions built on them use the C library's tokeniser, which keeps a
 * hidden position between calls: on one thread no other tokenising may run
 * between the steps of one walk. tsString_parseTokens restarts the tokeniser
 * from its explicit offset at every call, so its own walk survives other
 * tokenising in between.
 */
#ifndef TESSAR_TOKENS_H
#define TESSAR_TOKENS_H

#include <stddef.h>
#include <stdint.h>

#include <tessar/export.h>
#include <tessar/types.h>

TESSAR_BEGIN_DECLS

/* ---- Tokens ---- */

/**
 * Returns the next token of a walk, writing a terminator behind it in text.
 * \param[in,out] text       the text, changed in place
 * \param[in,out] offset     where the walk goes on; start with 0. Set behind
 *                           the token's terminator.
 * \param[in]     length     length of text
 * \param[in]     delimiters characters that separate tokens
 * \return the token, inside text; null at the end, for a null argument, a
 *         length below 1 or an offset at or beyond length.
 */
TESSAR_API char *tsString_parseTokens(char *text, int32_t *offset, int32_t length, const char *delimiters);

/**
 * Splits text into plain tokens and groups in one pass, writing zeros over
 * the characters that end them. Group characters come in pairs, an opening
 * character followed by its closing one ("()\"\""); groups nest, except where
 * both characters of a pair are equal. Outside groups, text between
 * delimiters is a token even when it is blanks only, and empty fields give
 * nothing; with no delimiters, text outside groups is ignored. A group left
 * open runs to the end of the text.
 * \param[in,out] text        the text, changed in place
 * \param[in]     delimiters  optional: characters that separate plain tokens
 * \param[in]     groups      optional: pairs of group characters
 * \param[out]    count       cleared first, then the number of tokens
 * \param[out]    tokens      pointers to the tokens, inside text
 * \param[out]    introducers the character that introduced each token
 * \param[out]    groupFlags  1 for a group, 0 for a plain token
 * \return 0 (also for an empty text); -1 when delimiters and groups are both
 *         null; -2 when a group character is also a delimiter; -3 when
 *         groups has an odd length.
 */
TESSAR_API int32_t tsString_parseTokenGroups(char *text, const char *delimiters, const char *groups,
                                             int32_t *count, char **tokens, char *introducers,
                                             int32_t *groupFlags);

/**
 * Finds the first plain token (not a group) that contains needle.
 * \param[in]  needle     text looked for
 * \param[out] index      optional: the token's index, -1 when there is none
 * \param[in]  count      number of tokens
 * \param[in]  tokens     token pointers, as from tsString_parseTokenGroups
 * \param[in]  groupFlags group flags, as from tsString_parseTokenGroups
 * \return 0 when found; 32768 when not found, for a count below 1 or a null
 *         array or needle.
 */
TESSAR_API int32_t tsString_getTokenIndex(const char *needle, int32_t *index, int32_t count, char **tokens,
                                          const int32_t *groupFlags);

/* ---- Delimited lists ---- */

/**
 * Appends an optional separator, then a token, to a list in a buffer. Each
 * piece is appended only if the length stays below capacity; the separator
 * goes in even on an empty buffer, and stays when only the token fails.
 * \param[in,out] buffer    the list
 * \param[in]     capacity  bytes available in buffer
 * \param[in]     separator optional: text put before the token
 * \param[in]     token     text appended
 * \return 0, or 32768 for a null buffer or token, an empty token, a capacity
 *         below 1, or a piece that does not fit.
 */
TESSAR_API int32_t tsString_appendToken(char *buffer, int32_t capacity, const char *separator,
                                        const char *token);

/**
 * Removes a token, matched exactly, from a list with one delimiter between
 * its tokens: the first token goes with the delimiter after it, any other
 * with the delimiter before it ("a,b,c" less "b" is "a,c").
 * \param[in,out] list       the list
 * \param[in]     delimiters delimiter characters; their count is how many
 *                           characters go with the token
 * \param[in]     token      token to remove
 * \return 0, or 32768 for a null list or token, an empty token, or a token
 *         not in the list (then the list is unchanged).
 */
TESSAR_API int32_t tsString_removeToken(char *list, const char *delimiters, const char *token);

/**
 * Drops from a list every token equal to token apart from case. The tokens
 * (from tsString_parseTokenGroups on a copy) are cleaned with all three
 * flags of tsString_clean and the list is rebuilt from the rest, always
 * joined with ",". An empty token set leaves the list alone.
 * \param[in,out] list       the list
 * \param[out]    found      cleared first, then set to 1 when a token was dropped
 * \param[in]     delimiters delimiter characters
 * \param[in]     token      token to drop
 * \return 0, or 32768 for a null found address.
 */
TESSAR_API int32_t tsString_parseOutToken(char *list, int32_t *found, const char *delimiters,
                                          const char *token);

/**
 * Splits off the first token of a text (up to 499 characters).
 * \param[in]  text       the text
 * \param[in]  delimiters delimiter characters
 * \param[out] first      the first token
 * \param[out] rest       text from the character after that token on,
 *                        delimiter included
 * \return 0, or 32768 for a null argument or a text with no token.
 */
TESSAR_API int32_t tsString_extractFirstStringBetweenDelimiters(const char *text, const char *delimiters,
                                                                char *first, char *rest);

/**
 * Replaces every whole token equal to keyword, apart from case, by
 * replacement, keeping all delimiters ("x + ab + AB" with delimiters "+ ",
 * keyword "ab" and replacement "q" gives "x + q + q"). Texts up to 499
 * characters; each replacement costs a level of recursion.
 * \param[in,out] text        the text; changed for a moment and restored, so
 *                            it must be writable
 * \param[in]     delimiters  delimiter characters
 * \param[in]     keyword     token to replace
 * \param[in]     replacement new text
 * \param[out]    output      the result
 * \param[out]    count       optional: the number of replacements
 * \return 0, or 32768 for a null argument (with a count of 0).
 */
TESSAR_API int32_t tsString_replaceStringForKeyword(char *text, const char *delimiters, const char *keyword,
                                                    const char *replacement, char *output, int32_t *count);

/* ---- String arrays ---- */

/**
 * Reads the fields of comma-separated text into a new array of heap strings.
 * Runs of commas count as one: empty fields disappear ("a,,b" gives two
 * elements), and a text of commas alone gives count 0, no array (null) and
 * result 0.
 * \param[out] array address of the array, cleared first; freed with tsStringArray_destroy
 * \param[out] count optional: cleared first, then the number of elements
 * \param[in]  text  comma-separated text
 * \return 0, or 32768 for a null array address or a null or empty text.
 */
TESSAR_API int32_t tsStringArray_getFromCSVString(char ***array, int32_t *count, const char *text);

/**
 * Reads every field of comma-separated text, empty ones included, in place:
 * the count is the number of commas plus 1 ("a,,b" gives three elements).
 * All elements share one block, which element 0 points at: the caller frees
 * element 0, then the array, with tsMem_free (never tsStringArray_destroy).
 * \param[out] array address of the array, cleared first
 * \param[out] count optional: cleared first, then the number of elements
 * \param[in]  text  comma-separated text
 * \return 0, or 32768 for a null array address or a null or empty text.
 */
TESSAR_API int32_t tsStringArray_getFromOrderedCSVString(char ***array, int32_t *count, const char *text);

/**
 * Joins the elements with "," into a new text from tsMem_calloc, freed with
 * tsMem_free. Elements must not be null.
 * \param[in]  array  the elements
 * \param[in]  count  number of elements
 * \param[out] result address of the text, cleared first
 * \return 0, or 32768 for a null result address, a null array or a count below 1.
 */
TESSAR_API int32_t tsStringArray_putToCSVString(char **array, int32_t count, char **result);

/**
 * Deep copy of an array; freed with tsStringArray_destroy.
 * \param[out] result address of the copy, cleared first
 * \param[in]  array  the elements
 * \param[in]  count  number of elements
 * \return 0, or 32768 for a null result address, a null array or first
 *         element, or a count below 1.
 */
TESSAR_API int32_t tsStringArray_clone(char ***result, char **array, int32_t count);

/**
 * Deep copy of the elements of a, then those of b, into one new array; freed
 * with tsStringArray_destroy. A null array counts 0 elements; a total below 1
 * gives 0 with nothing allocated.
 * \param[out] result address of the new array, cleared first
 * \param[out] count  cleared first, then the number of elements
 * \param[in]  a      first array, or null
 * \param[in]  countA its number of elements
 * \param[in]  b      second array, or null
 * \param[in]  countB its number of elements
 * \return 0, or 32768 for a null result address.
 */
TESSAR_API int32_t tsStringArray_merge(char ***result, int32_t *count, char **a, int32_t countA, char **b,
                                       int32_t countB);

/**
 * Frees every element and the array, clears the array variable and sets the
 * count to 0.
 * \param[in,out] array address of the array
 * \param[in,out] count address of its count
 * \return 0, or 32768 when either address or the array is null.
 */
TESSAR_API int32_t tsStringArray_destroy(char ***array, int32_t *count);

TESSAR_END_DECLS

#endif /* TESSAR_TOKENS_H */
