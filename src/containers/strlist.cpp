// tsStrList_*: a table of strings, each member with numInfoFields signed
// 32-bit info values, kept as 16-byte members on a dynamic array. A member
// owns its text (a tsMem_ heap copy, null for no text or an empty one) and
// its info array (tsMem_calloc'ed on first need, null until then).
#include <algorithm>
#include <cstring>

#include <tessar/dynarray.h>
#include <tessar/memory.h>
#include <tessar/strlist.h>
#include <tessar/text.h>

#include "frame/kernel.hpp"

using tessar::detail::kFailure;

namespace {

// One member of the list, as the array stores it.
struct Member {
    char *text;     // heap string, or null
    int32_t *info;  // numInfoFields values, or null until first needed
};
static_assert(sizeof(Member) == 16, "a member is two pointers");

constexpr int32_t kNotFound = -1;

}  // namespace

struct tsStrList {
    int32_t numInfoFields;
    tsDynArray *members;  // of Member
};

namespace {

int32_t memberCount(const tsStrList *list)
{
    return tsDynArray_getSize(list->members);
}

// The member at index, or null for an index outside the list.
Member *memberAt(const tsStrList *list, int32_t index)
{
    if (index < 0 || index >= memberCount(list)) return nullptr;
    return static_cast<Member *>(tsDynArray_getElementAdd(list->members, index));
}

size_t infoBytes(const tsStrList *list)
{
    return list->numInfoFields > 0 ? static_cast<size_t>(list->numInfoFields) * sizeof(int32_t) : 0;
}

// A heap copy of a non-empty text, or null when there is no memory.
char *copyText(const char *text)
{
    const size_t bytes = std::strlen(text) + 1;
    auto *copy = static_cast<char *>(tsMem_malloc(bytes));
    if (copy != nullptr) std::memcpy(copy, text, bytes);
    return copy;
}

// Gives a member its info array, zeroed, if it has none yet. False when
// there is no memory.
bool ensureInfo(const tsStrList *list, Member &member)
{
    if (member.info == nullptr)
        member.info =
            static_cast<int32_t *>(tsMem_calloc(static_cast<size_t>(list->numInfoFields), sizeof(int32_t)));
    return member.info != nullptr;
}

void releaseMember(Member &member)
{
    if (member.text != nullptr) tsMem_free(member.text);
    if (member.info != nullptr) tsMem_free(member.info);
    member = Member{nullptr, nullptr};
}

void releaseMembers(tsDynArray *members)
{
    const int32_t n = tsDynArray_getSize(members);
    for (int32_t i = 0; i < n; ++i)
        releaseMember(*static_cast<Member *>(tsDynArray_getElementAdd(members, i)));
}

// A new array of count empty members, or null when there is no memory.
tsDynArray *newMemberArray(int32_t count)
{
    tsDynArray *members = nullptr;
    tsDynArray_create(&members, sizeof(Member));
    if (members == nullptr || count < 1) return members;
    // Appended members come zeroed: no text, no info.
    tsDynArray_insertElements(members, -1, count);
    if (tsDynArray_getSize(members) != count) tsDynArray_destroy(&members);
    return members;
}

// Deep copy of one member into an empty one. False when there is no memory;
// what was copied so far stays in target for the caller to release.
bool copyMember(const tsStrList *list, const Member &source, Member &target)
{
    if (source.text != nullptr) {
        target.text = copyText(source.text);
        if (target.text == nullptr) return false;
    }
    if (source.info != nullptr && list->numInfoFields > 0) {
        target.info = static_cast<int32_t *>(tsMem_malloc(infoBytes(list)));
        if (target.info == nullptr) return false;
        std::memcpy(target.info, source.info, infoBytes(list));
    }
    return true;
}

}  // namespace

tsStrList *tsStrList_create(int32_t count, int32_t numInfoFields)
{
    auto *list = static_cast<tsStrList *>(tsMem_malloc(sizeof(tsStrList)));
    if (list == nullptr) return nullptr;
    list->numInfoFields = numInfoFields;
    list->members = newMemberArray(count);
    if (list->members == nullptr) {
        tsMem_free(list);
        return nullptr;
    }
    return list;
}

int32_t tsStrList_destroy(tsStrList *list)
{
    if (list == nullptr) return 0;
    releaseMembers(list->members);
    tsDynArray_destroy(&list->members);
    tsMem_free(list);
    return 0;
}

int32_t tsStrList_copy(tsStrList *destination, const tsStrList *source)
{
    if (destination == nullptr || source == nullptr) return kFailure;
    if (destination->numInfoFields != source->numInfoFields) return kFailure;
    // The copy is built aside and swapped in, so that a failure leaves the
    // destination as it was and a list copied onto itself stays whole.
    const int32_t n = memberCount(source);
    tsDynArray *copy = newMemberArray(n);
    if (copy == nullptr) return kFailure;
    for (int32_t i = 0; i < n; ++i) {
        auto &target = *static_cast<Member *>(tsDynArray_getElementAdd(copy, i));
        if (!copyMember(source, *memberAt(source, i), target)) {
            releaseMembers(copy);
            tsDynArray_destroy(&copy);
            return kFailure;
        }
    }
    releaseMembers(destination->members);
    tsDynArray_destroy(&destination->members);
    destination->members = copy;
    return 0;
}

int32_t tsStrList_size(const tsStrList *list)
{
    return list == nullptr ? -1 : memberCount(list);
}

int32_t tsStrList_numInfoFields(const tsStrList *list)
{
    return list == nullptr ? -1 : list->numInfoFields;
}

int32_t tsStrList_setMember(tsStrList *list, int32_t index, const char *text, const int32_t *info)
{
    if (list == nullptr) return kFailure;
    Member *member = memberAt(list, index);
    if (member == nullptr) return kFailure;
    if (text != nullptr) {
        // The new text is copied before the old one is freed, so that a
        // member may be set from its own text.
        char *copy = nullptr;
        if (text[0] != '\0') {
            copy = copyText(text);
            if (copy == nullptr) return kFailure;
        }
        if (member->text != nullptr) tsMem_free(member->text);
        member->text = copy;
    }
    if (list->numInfoFields > 0) {
        // Every set starts the info fields from zero; given values then fill
        // them. A member set from its own info array keeps it as it is.
        if (!ensureInfo(list, *member)) return kFailure;
        if (info != member->info) {
            std::memset(member->info, 0, infoBytes(list));
            if (info != nullptr) std::memcpy(member->info, info, infoBytes(list));
        }
    }
    return 0;
}

int32_t tsStrList_getMember(const char **text, const int32_t **info, const tsStrList *list, int32_t index)
{
    if (list == nullptr) return kFailure;
    const Member *member = memberAt(list, index);
    if (member == nullptr) return kFailure;
    if (text != nullptr) *text = member->text;
    if (info != nullptr) *info = member->info;
    return 0;
}

int32_t tsStrList_setInfoField(tsStrList *list, int32_t member, int32_t field, int32_t value)
{
    if (list == nullptr) return kFailure;
    Member *target = memberAt(list, member);
    if (target == nullptr || field < 0 || field >= list->numInfoFields) return kFailure;
    if (!ensureInfo(list, *target)) return kFailure;
    target->info[field] = value;
    return 0;
}

int32_t tsStrList_getInfoField(int32_t *value, const tsStrList *list, int32_t member, int32_t field)
{
    // The value is cleared before any test, so a refused call also reads 0.
    *value = 0;
    if (list == nullptr) return kFailure;
    const Member *source = memberAt(list, member);
    if (source == nullptr || field < 0 || field >= list->numInfoFields) return kFailure;
    if (source->info != nullptr) *value = source->info[field];
    return 0;
}

int32_t tsStrList_insertMember(int32_t *newIndex, tsStrList *list, int32_t index, int32_t count)
{
    if (list == nullptr) return kFailure;
    const int32_t before = memberCount(list);
    // The array would silently refuse a position outside -1..size; here it is a bad argument.
    if (index < -1 || index > before) return kFailure;
    if (count >= 1) {
        tsDynArray_insertElements(list->members, index, count);
        if (memberCount(list) != before + count) return kFailure;  // no memory: nothing was inserted
        // Slots opened inside the array keep stale bytes: the new members are made empty here.
        if (index != -1) std::memset(memberAt(list, index), 0, static_cast<size_t>(count) * sizeof(Member));
    }
    if (newIndex != nullptr) *newIndex = index == -1 ? memberCount(list) - 1 : index;
    return 0;
}

int32_t tsStrList_deleteMember(tsStrList *list, int32_t index, int32_t count)
{
    if (list == nullptr) return kFailure;
    if (count < 1) return 0;
    const int32_t size = memberCount(list);
    if (index < 0 || index >= size) return kFailure;
    const int32_t n = std::min(count, size - index);
    Member *first = memberAt(list, index);
    for (int32_t i = 0; i < n; ++i)
        releaseMember(first[i]);
    // The tail moves down over the gap once; the array then drops its last n
    // elements, which moves nothing more.
    std::memmove(first, first + n, static_cast<size_t>(size - index - n) * sizeof(Member));
    for (int32_t i = 0; i < n; ++i)
        tsDynArray_deleteElement(list->members, -1);
    return 0;
}

int32_t tsStrList_getMemberIndex(const tsStrList *list, const char *text)
{
    if (list == nullptr) return kNotFound;
    const int32_t n = memberCount(list);
    for (int32_t i = 0; i < n; ++i) {
        // tsString_strcmp reads a null text as empty, on either side.
        if (tsString_strcmp(memberAt(list, i)->text, text) == 0) return i;
    }
    return kNotFound;
}

int32_t tsStrList_moveMembers(tsStrList *list, int32_t destinationIndex, int32_t sourceIndex, int32_t count)
{
    // A null list is not reported as a failure.
    if (list == nullptr) return 0;
    // The members are read from a copy of the list, so that overlapping
    // ranges move as a block: a source member is read before any target
    // write can reach it.
    tsStrList *snapshot = tsStrList_create(0, list->numInfoFields);
    if (snapshot == nullptr || tsStrList_copy(snapshot, list) != 0) {
        tsStrList_destroy(snapshot);
        return kFailure;
    }
    const int64_t size = memberCount(snapshot);
    const auto inside = [size, count](int32_t start) { return start >= 0 && int64_t{start} + count <= size; };
    int32_t status = 0;
    if (count < 1 || !inside(sourceIndex) || !inside(destinationIndex)) {
        status = kFailure;
    } else {
        // Through tsStrList_setMember: a source without text leaves the target's text.
        for (int32_t i = 0; i < count && status == 0; ++i) {
            const Member *source = memberAt(snapshot, sourceIndex + i);
            status = tsStrList_setMember(list, destinationIndex + i, source->text, source->info);
        }
    }
    tsStrList_destroy(snapshot);
    return status;
}
