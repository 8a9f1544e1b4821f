#include "cli/system/unnamed_file.h"

#include <fcntl.h>
#include <unistd.h>

namespace zqm::cli {
namespace {

constexpr mode_t kNewFileMode = 0666;

} // namespace

int openUnnamedFile(int folder) {
    if (access("/proc/self/fd", X_OK) != 0) { // it could not be named
        return -1;
    }
    return openat(folder, ".", O_RDWR | O_TMPFILE | O_CLOEXEC, kNewFileMode);
}

bool nameFile(int file, int folder, const std::string& name) {
    const std::string opened = "/proc/self/fd/" + std::to_string(file);
    return linkat(AT_FDCWD, opened.c_str(), folder, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

} // namespace zqm::cli
