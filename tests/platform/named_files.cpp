#include "tests/platform/named_files.h"

#include <cerrno>
#include <cstdarg>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

bool hasUnnamedFiles = true;

} // namespace

namespace zqm::platform::test {

NamedFilesOnly::NamedFilesOnly() {
    hasUnnamedFiles = false;
}

NamedFilesOnly::~NamedFilesOnly() {
    hasUnnamedFiles = true;
}

} // namespace zqm::platform::test

// In the place of the C library's, for all that this program has loaded.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): the C library names them for itself
extern "C" __attribute__((visibility("default"))) int openat(int folder, const char* path, int flags, ...) {
    if (!hasUnnamedFiles && (flags & O_TMPFILE) == O_TMPFILE) {
        errno = EOPNOTSUPP;
        return -1;
    }
    std::va_list rest;
    va_start(rest, flags);
    const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : mode_t{0};
    va_end(rest);
    return static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode));
}
