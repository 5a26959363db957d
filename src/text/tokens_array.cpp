// Arrays of heap strings: read from comma-separated text (runs of commas as
// one, or every field in place), joined back, cloned, merged and destroyed.
// Every block handed out comes from tsMem_*.
#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/text.h>
#include <tessar/tokens.h>

#include "text/strings.hpp"

using namespace tessar::detail;

namespace {

constexpr char kSeparator = ',';
constexpr char kSeparators[] = ",";

char **newArray(std::size_t count) noexcept
{
    return static_cast<char **>(tsMem_calloc(count, sizeof(char *)));
}

// The common front of the two readers: the count is cleared if given, the
// array address must be there and is cleared, the text must not be empty.
bool readerFront(char ***array, int32_t *count, const char *text) noexcept
{
    if (count != nullptr) *count = 0;
    if (array == nullptr) return false;
    *array = nullptr;
    return text != nullptr && *text != '\0';
}

// Calls visit(token) for each token of a fresh copy of text, as the offset
// walker finds them: runs of commas are one separator.
template <class Visit> void walkFields(const char *text, Visit visit)
{
    std::string copy(text);
    const auto length = static_cast<int32_t>(copy.size());
    int32_t offset = 0;
    while (char *token = tsString_parseTokens(copy.data(), &offset, length, kSeparators))
        visit(token);
}

// Deep copies of count elements into to, from index at on.
void copyElements(char **to, std::size_t at, char **from, std::size_t count) noexcept
{
    for (std::size_t i = 0; i < count; ++i)
        (void)tsString_duplicate(&to[at + i], from[i]);
}

}  // namespace

int32_t tsStringArray_getFromCSVString(char ***array, int32_t *count, const char *text)
{
    if (!readerFront(array, count, text)) return TESSAR_FAILURE;
    try {
        // First pass: the number of fields. A text of commas alone has none,
        // and then nothing is allocated.
        std::size_t fields = 0;
        walkFields(text, [&](char *) { ++fields; });
        if (fields == 0) return 0;

        char **elements = newArray(fields);
        if (elements == nullptr) return TESSAR_FAILURE;
        // Second pass, over a fresh copy: each field into its own block.
        std::size_t i = 0;
        walkFields(text, [&](char *token) { (void)tsString_duplicate(&elements[i++], token); });
        *array = elements;
        if (count != nullptr) *count = static_cast<int32_t>(fields);
        return 0;
    } catch (const std::bad_alloc &) {
        return TESSAR_FAILURE;
    }
}

int32_t tsStringArray_getFromOrderedCSVString(char ***array, int32_t *count, const char *text)
{
    if (!readerFront(array, count, text)) return TESSAR_FAILURE;
    char *block = nullptr;
    if (tsString_duplicate(&block, text) != 0) return TESSAR_FAILURE;
    // Every comma ends a field, so empty fields stay as empty strings.
    const auto fields =
        static_cast<std::size_t>(std::count(block, block + std::strlen(block), kSeparator)) + 1;
    char **elements = newArray(fields);
    if (elements == nullptr) {
        (void)tsMem_free(block);
        return TESSAR_FAILURE;
    }
    // One block for all elements: element 0 is its start, each further one
    // lies behind a comma that became a terminator.
    elements[0] = block;
    std::size_t i = 1;
    for (char *p = block; *p != '\0'; ++p) {
        if (*p != kSeparator) continue;
        *p = '\0';
        elements[i++] = p + 1;
    }
    *array = elements;
    if (count != nullptr) *count = static_cast<int32_t>(fields);
    return 0;
}

int32_t tsStringArray_putToCSVString(char **array, int32_t count, char **result)
{
    if (result == nullptr) return TESSAR_FAILURE;
    *result = nullptr;
    if (count < 1 || array == nullptr) return TESSAR_FAILURE;
    const auto n = static_cast<std::size_t>(count);
    // Null elements are sized (and written) as empty.
    std::size_t size = n;  // the commas between the elements, and the terminator
    for (std::size_t i = 0; i < n; ++i)
        size += std::strlen(orEmpty(array[i]));
    auto *joined = static_cast<char *>(tsMem_calloc(size, 1));
    if (joined == nullptr) return TESSAR_FAILURE;
    char *end = joined;
    for (std::size_t i = 0; i < n; ++i) {
        if (i > 0) *end++ = kSeparator;
        const char *element = orEmpty(array[i]);
        const std::size_t length = std::strlen(element);
        std::memcpy(end, element, length);
        end += length;
    }
    *result = joined;
    return 0;
}

int32_t tsStringArray_clone(char ***result, char **array, int32_t count)
{
    if (result == nullptr) return TESSAR_FAILURE;
    *result = nullptr;
    if (array == nullptr || count < 1 || array[0] == nullptr) return TESSAR_FAILURE;
    const auto n = static_cast<std::size_t>(count);
    char **elements = newArray(n);
    if (elements == nullptr) return TESSAR_FAILURE;
    copyElements(elements, 0, array, n);
    *result = elements;
    return 0;
}

int32_t tsStringArray_merge(char ***result, int32_t *count, char **a, int32_t countA, char **b,
                            int32_t countB)
{
    if (result == nullptr) return TESSAR_FAILURE;
    *result = nullptr;
    if (count != nullptr) *count = 0;
    // A null array counts no elements, and nor does a negative count.
    const std::size_t na = a != nullptr ? static_cast<std::size_t>(std::max(countA, 0)) : 0;
    const std::size_t nb = b != nullptr ? static_cast<std::size_t>(std::max(countB, 0)) : 0;
    if (na + nb < 1) return 0;
    char **elements = newArray(na + nb);
    if (elements == nullptr) return TESSAR_FAILURE;
    copyElements(elements, 0, a, na);
    copyElements(elements, na, b, nb);
    *result = elements;
    if (count != nullptr) *count = static_cast<int32_t>(na + nb);
    return 0;
}

int32_t tsStringArray_destroy(char ***array, int32_t *count)
{
    if (array == nullptr || count == nullptr || *array == nullptr) return TESSAR_FAILURE;
    char **elements = *array;
    for (int32_t i = 0; i < *count; ++i)
        (void)tsMem_free(elements[i]);  // a null element fails alone and is passed over
    (void)tsMem_free(elements);
    *array = nullptr;
    *count = 0;
    return 0;
}
