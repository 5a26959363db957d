// Steps shared by the point-name sources: the split of a name into its
// letters and its number, blanks cut off in place, and the growing heap text
// that expansion and compression hand to their caller.
#pragma once

#include <cctype>
#include <cstddef>
#include <cstdint>

namespace tessar::detail {

// Letters are told by the process locale's character class.
inline bool isNameLetter(char c) noexcept
{
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

// The number behind the first `letters` characters of a name: the whole name
// read as a long when it has no letters, -1 when nothing follows the
// letters, else what follows read as a long (0 when it starts with no digit).
int32_t pointNameNumber(const char *name, std::size_t letters) noexcept;

// Splits a name: each letter, wherever it stands, goes in order to put; the
// result is the name's number.
template <class Put> int32_t splitPointName(const char *name, Put &&put)
{
    std::size_t letters = 0;
    for (const char *p = name; *p != '\0'; ++p) {
        if (!isNameLetter(*p)) continue;
        put(*p);
        ++letters;
    }
    return pointNameNumber(name, letters);
}

// Cuts the blanks off both ends of s in place: a zero goes behind the last
// non-blank. Returns the first non-blank (or the terminator).
char *stripBlanksInPlace(char *s) noexcept;

// The heap text that expansion and compression build: a zeroed block of 255
// bytes from tsMem_calloc, grown by 255 bytes at a time whenever the length
// so far plus the next piece plus 2 exceeds the capacity. The block always
// sits in the caller's variable, so that a walk that stops early leaves
// there what it wrote so far.
class ResultText
{
  public:
    static constexpr std::size_t kStep = 255;

    explicit ResultText(char **slot) noexcept : slot_(slot) {}

    // Allocates the first block into the caller's variable (null there when
    // there is no memory). False on no memory.
    bool open() noexcept;

    // Appends a formatted piece. False when growing failed: the block is
    // then freed and the caller's variable cleared.
    bool append(const char *format, ...) noexcept __attribute__((format(printf, 2, 3)));

    // Cuts blanks off both ends of the text.
    void stripBlanks() noexcept;

  private:
    bool growFor(std::size_t pieceLength) noexcept;
    void discard() noexcept;

    char **slot_;
    std::size_t capacity_ = 0;
    std::size_t length_ = 0;
};

}  // namespace tessar::detail
