// The library's one log stream: opened and closed by the caller, one line
// per write, flushed at once. It is a single process-wide variable without
// a lock.
#include <cstdarg>
#include <cstdio>

#include <tessar/frame.h>
#include <tessar/system.h>

namespace {

std::FILE *logStream = nullptr;

}  // namespace

int32_t tsLogFile_open(const char *path)
{
    // The stream variable is replaced, not closed first: an earlier stream
    // is abandoned, and a failed open leaves no log open.
    logStream = path != nullptr ? std::fopen(path, "w+") : nullptr;
    return logStream != nullptr ? 0 : TESSAR_FAILURE;
}

int32_t tsLogFile_close(void)
{
    if (logStream == nullptr) return TESSAR_FAILURE;
    std::fclose(logStream);
    logStream = nullptr;
    return 0;
}

int32_t tsLogFile_write(const char *format, ...)
{
    if (logStream == nullptr) return TESSAR_FAILURE;
    std::va_list values;
    va_start(values, format);
    std::vfprintf(logStream, format, values);
    va_end(values);
    std::fputc('\n', logStream);
    // Flushed line by line, so that a crash loses no line.
    std::fflush(logStream);
    return 0;
}
