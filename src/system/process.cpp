// The operating-system query and process creation.
//
// The query stands in for the version record of the system the design was
// made for: it succeeds when uname does, and reports the platform
// identifier of "all others" with no version of that system, so the
// library reads as running on another line than the old consumer one, and
// not on version 5.1.
#include <spawn.h>
#include <sys/utsname.h>

#include <cstdint>

#include <tessar/frame.h>
#include <tessar/system.h>

extern char **environ;

namespace {

// Platform identifiers of the version record.
constexpr uint32_t kConsumerPlatform = 1;
constexpr uint32_t kOtherPlatform = 2;

// The version that tsUtil_isOperatingSystemWindowsXP looks for.
constexpr uint32_t kXpMajor = 5;
constexpr uint32_t kXpMinor = 1;

struct VersionRecord {
    uint32_t platform = 0;
    uint32_t major = 0;
    uint32_t minor = 0;
};

// Fills the record; false when the system cannot be asked.
bool queryVersion(VersionRecord &record) noexcept
{
    utsname system{};
    if (uname(&system) != 0) return false;
    record.platform = kOtherPlatform;
    record.major = 0;
    record.minor = 0;
    return true;
}

}  // namespace

int32_t tsUtil_getOperatingSystem(void)
{
    VersionRecord record;
    if (!queryVersion(record)) return 0;
    return record.platform == kConsumerPlatform ? 1 : 2;
}

int32_t tsUtil_isOperatingSystemWindowsXP(void)
{
    // A failed query leaves the record zeroed, which is no such version.
    VersionRecord record;
    (void)queryVersion(record);
    return record.major == kXpMajor && record.minor == kXpMinor ? 1 : 0;
}

int32_t tsUtil_createWindowsProcess(const char *commandLine)
{
    if (commandLine == nullptr) return TESSAR_FAILURE;
    // The command line goes to the shell, in a session of its own, detached
    // from the caller's terminal. The child is not waited for.
    posix_spawnattr_t attributes;
    if (posix_spawnattr_init(&attributes) != 0) return TESSAR_FAILURE;
    int status = posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
    if (status == 0) {
        char shell[] = "/bin/sh";
        char option[] = "-c";
        char *arguments[] = {shell, option, const_cast<char *>(commandLine), nullptr};
        pid_t child = 0;
        status = posix_spawn(&child, shell, nullptr, &attributes, arguments, environ);
    }
    posix_spawnattr_destroy(&attributes);
    return status == 0 ? 0 : TESSAR_FAILURE;
}
