// The growing heap text of the point-name lists.
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include <tessar/memory.h>

#include "text/pointnames.hpp"

namespace tessar::detail {

bool ResultText::open() noexcept
{
    *slot_ = static_cast<char *>(tsMem_calloc(kStep, 1));
    if (*slot_ == nullptr) return false;
    capacity_ = kStep;
    length_ = 0;
    return true;
}

bool ResultText::append(const char *format, ...) noexcept
{
    va_list args;
    va_start(args, format);
    va_list retry;
    va_copy(retry, args);
    // Printed straight into the free room; a piece that does not fit with
    // two bytes to spare is printed again after the block has grown.
    const int printed = std::vsnprintf(*slot_ + length_, capacity_ - length_, format, args);
    va_end(args);
    bool ok = printed >= 0;
    const auto pieceLength = static_cast<std::size_t>(printed);
    if (ok && length_ + pieceLength + 2 > capacity_) {
        ok = growFor(pieceLength);
        if (ok) std::vsnprintf(*slot_ + length_, capacity_ - length_, format, retry);
    }
    va_end(retry);
    if (ok) length_ += pieceLength;
    return ok;
}

bool ResultText::growFor(std::size_t pieceLength) noexcept
{
    std::size_t capacity = capacity_;
    while (length_ + pieceLength + 2 > capacity)
        capacity += kStep;
    void *grown = tsMem_realloc(*slot_, capacity);
    if (grown == nullptr) {
        discard();
        return false;
    }
    *slot_ = static_cast<char *>(grown);
    capacity_ = capacity;
    return true;
}

void ResultText::discard() noexcept
{
    tsMem_free(*slot_);
    *slot_ = nullptr;
    capacity_ = 0;
    length_ = 0;
}

void ResultText::stripBlanks() noexcept
{
    char *text = *slot_;
    const char *start = stripBlanksInPlace(text);
    length_ = std::strlen(start);
    std::memmove(text, start, length_ + 1);
}

}  // namespace tessar::detail
