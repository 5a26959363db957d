// Length and copying: null-guarded wrappers of the C library's copies, the
// bounded copy that always terminates, and the heap duplicate.
#include <cstring>

#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/text.h>

#include "text/strings.hpp"

using namespace tessar::detail;

int32_t tsString_strlen(const char *s)
{
    return static_cast<int32_t>(std::strlen(orEmpty(s)));
}

char *tsString_strcpy(char *dst, const char *src)
{
    if (dst == nullptr || src == nullptr) return nullptr;
    return std::strcpy(dst, src);
}

char *tsString_mbscpy(char *dst, const char *src)
{
    // A byte copy carries multibyte text unchanged.
    return tsString_strcpy(dst, src);
}

char *tsString_strncpy(char *dst, const char *src, int32_t n)
{
    if (dst == nullptr || src == nullptr) return nullptr;
    // A negative count copies nothing (the C library would take it as a huge
    // unsigned count and run over dst).
    if (n <= 0) return dst;
    return std::strncpy(dst, src, static_cast<std::size_t>(n));
}

char *tsString_strcat(char *dst, const char *src)
{
    if (dst == nullptr) return nullptr;
    if (src == nullptr) return dst;
    return std::strcat(dst, src);
}

char *tsString_safeCopy(char *dst, const char *src, int32_t capacity)
{
    if (dst == nullptr || src == nullptr) return nullptr;
    // A negative capacity stands for the room that dst's present text takes.
    const std::size_t room = capacity < 0 ? std::strlen(dst) + 1 : static_cast<std::size_t>(capacity);
    // No room at all leaves no place even for the terminator: nothing is written.
    if (room == 0) return dst;
    const std::size_t copied = strnlen(src, room - 1);
    std::memmove(dst, src, copied);
    dst[copied] = '\0';
    return dst;
}

int32_t tsString_duplicate(char **result, const char *src)
{
    if (result == nullptr) return TESSAR_FAILURE;
    *result = nullptr;
    if (src == nullptr) return TESSAR_FAILURE;
    const std::size_t length = std::strlen(src);
    auto *copy = static_cast<char *>(tsMem_calloc(length + 1, 1));
    if (copy == nullptr) return TESSAR_FAILURE;
    std::memcpy(copy, src, length);
    *result = copy;
    return 0;
}
