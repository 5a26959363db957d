// Buffers: a heap text that grows by appending, and a line reader over a
// stream.
#include <cstdio>
#include <cstring>

#include <tessar/frame.h>
#include <tessar/memory.h>
#include <tessar/text.h>

int32_t tsString_addToBuffer(const char *text, int32_t newline, char **buffer, size_t *size)
{
    if (text == nullptr || buffer == nullptr) return TESSAR_FAILURE;
    const std::size_t length = std::strlen(text);
    const std::size_t lineFeed = newline != 0 ? 1 : 0;
    std::size_t added = length + lineFeed;
    std::size_t current = 0;
    std::size_t position = 0;
    if (*buffer == nullptr) {
        ++added;  // a new text needs its terminator too
    } else {
        current = size != nullptr ? *size : std::strlen(*buffer) + 1;
        // Writing starts on the old terminator (an existing buffer said to
        // be empty is written from its start).
        position = current > 0 ? current - 1 : 0;
    }
    if (added == 0) return 0;
    // The design leaves a failed reallocation untested; here it fails the
    // call and leaves the caller's buffer and size as they were.
    auto *grown = static_cast<char *>(tsMem_realloc(*buffer, current + added));
    if (grown == nullptr) return TESSAR_FAILURE;
    *buffer = grown;
    std::memcpy(grown + position, text, length);
    if (lineFeed != 0) grown[position + length] = '\n';
    grown[position + length + lineFeed] = '\0';
    if (size != nullptr) *size = current + added;
    return 0;
}

int32_t tsString_fgets(char *buffer, int32_t size, FILE *stream)
{
    constexpr unsigned char kStop = 0xFF;  // also what end of file stores
    int32_t stored = 0;
    for (;;) {
        const char c = static_cast<char>(std::fgetc(stream));
        buffer[stored++] = c;
        if (c == '\n') {
            // The line feed becomes the terminator, and a carriage return
            // just before it goes as well.
            buffer[stored - 1] = '\0';
            if (stored >= 2 && buffer[stored - 2] == '\r') buffer[stored - 2] = '\0';
            return 1;
        }
        if (static_cast<unsigned char>(c) == kStop || stored >= size) break;
    }
    // At end of file nothing is terminated: a last line without a line feed
    // is not delivered.
    if (std::feof(stream) != 0) return 0;
    // Otherwise the byte before the last one stored becomes the terminator,
    // so a long line loses its last two stored bytes (a true 0xFF byte takes
    // the character before it along). With a single byte stored, that byte
    // is the one that becomes the terminator.
    buffer[stored >= 2 ? stored - 2 : 0] = '\0';
    return 1;
}
