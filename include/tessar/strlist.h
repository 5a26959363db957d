/*
 * Tessar: string list.
 *
 * tsStrList_* is a table of strings, each member carrying a fixed number of
 * signed 32-bit info fields (numInfoFields, chosen at creation), kept on a
 * dynamic array. A member's text is null until set; its info array is
 * created, zeroed, the first time it is needed.
 *
 * The list is an opaque record: tsStrList_create returns it and
 * tsStrList_destroy frees it. The list owns its members' texts and info
 * arrays; texts given to it are copied, and pointers read from it stay the
 * list's own, valid until the member changes. A list belongs to one thread
 * at a time.
 *
 * Results: 0 for success, 32768 for a bad argument, as each function states.
 */
#ifndef TESSAR_STRLIST_H
#define TESSAR_STRLIST_H

#include <stdint.h>

#include <tessar/export.h>

TESSAR_BEGIN_DECLS

/** A string list: opaque. */
typedef struct tsStrList tsStrList;

/* ---- Creation and destruction ---- */

/**
 * Creates a list of empty members.
 * \param[in] count         initial number of members
 * \param[in] numInfoFields info fields per member
 * \return the list, or null.
 */
TESSAR_API tsStrList *tsStrList_create(int32_t count, int32_t numInfoFields);

/** Frees all members, their array and the list. \return 0, also for a null list. */
TESSAR_API int32_t tsStrList_destroy(tsStrList *list);

/**
 * Replaces the destination's members by a deep copy of the source's.
 * \return 0; 32768 for a null list or different numbers of info fields.
 */
TESSAR_API int32_t tsStrList_copy(tsStrList *destination, const tsStrList *source);

/* ---- Size ---- */

/** \return the number of members; -1 for a null list. */
TESSAR_API int32_t tsStrList_size(const tsStrList *list);

/** \return the number of info fields per member; -1 for a null list. */
TESSAR_API int32_t tsStrList_numInfoFields(const tsStrList *list);

/* ---- Members ---- */

/**
 * Sets a member. A null text leaves the text as it is; otherwise the old
 * text is freed, and an empty text leaves null, any other a fresh copy. With
 * info fields, the member's info array is created if needed, zeroed, and
 * filled from info if given.
 * \param[in] text the new text, or null
 * \param[in] info numInfoFields values, or null
 * \return 0; 32768 for a null list or an index out of range.
 */
TESSAR_API int32_t tsStrList_setMember(tsStrList *list, int32_t index, const char *text, const int32_t *info);

/**
 * Reads a member; the pointers are the list's own.
 * \param[out] text the member's text (may be null); this argument may be null
 * \param[out] info the member's info array (may be null); this argument may be null
 * \return 0; 32768 for a null list or an index out of range.
 */
TESSAR_API int32_t tsStrList_getMember(const char **text, const int32_t **info, const tsStrList *list,
                                       int32_t index);

/**
 * Sets one info field of a member, creating its info array if needed.
 * \return 0; 32768 for a bad list or member, or a field at or above numInfoFields.
 */
TESSAR_API int32_t tsStrList_setInfoField(tsStrList *list, int32_t member, int32_t field, int32_t value);

/**
 * Reads one info field of a member; a member without an info array gives 0.
 * \param[out] value cleared first, then the field's value
 * \return 0; 32768 for a bad list or member, or a field at or above numInfoFields.
 */
TESSAR_API int32_t tsStrList_getInfoField(int32_t *value, const tsStrList *list, int32_t member,
                                          int32_t field);

/**
 * Inserts empty members before index, or at the end for -1.
 * \param[out] newIndex the given index, or for the end the index of the last
 *                      member; may be null
 * \param[in]  count    how many; below 1 inserts nothing
 * \return 0; 32768 for a null list, an index outside -1 to the member count,
 *         or no memory (nothing is then inserted).
 */
TESSAR_API int32_t tsStrList_insertMember(int32_t *newIndex, tsStrList *list, int32_t index, int32_t count);

/**
 * Deletes members from index on, freeing their texts and info; the count is
 * limited by the end of the list, and below 1 does nothing.
 * \return 0; 32768 for a null list or an index out of range.
 */
TESSAR_API int32_t tsStrList_deleteMember(tsStrList *list, int32_t index, int32_t count);

/**
 * Finds a text (tsString_strcmp, a null text counting as empty).
 * \return the index of the first member with that text, or -1.
 */
TESSAR_API int32_t tsStrList_getMemberIndex(const tsStrList *list, const char *text);

/**
 * Copies count members from sourceIndex to destinationIndex, member after
 * member through tsStrList_setMember, reading them as they stood before the
 * move: the source range stays unless the ranges overlap, and a null source
 * text leaves the target's text.
 * \return 0, also for a null list; 32768 for count below 1, a range outside
 *         the list, or no memory for the copy the members are read from.
 */
TESSAR_API int32_t tsStrList_moveMembers(tsStrList *list, int32_t destinationIndex, int32_t sourceIndex,
                                         int32_t count);

TESSAR_END_DECLS

#endif /* TESSAR_STRLIST_H */
