#include "engine/protocol/user_file.h"

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace zqm::protocol {
namespace {

// With the sticky bit, by which those who clear out old files know that this one stays.
constexpr mode_t kFileMode = S_ISVTX | S_IRUSR | S_IWUSR;
constexpr mode_t kWritableByOthers = S_IWGRP | S_IWOTH;

// Whether it is a folder that only this user can put something into. It isn't opened for that, which an
// engine may not, and stays where it is: others can't move it in /run/user or in /tmp, nor where
// XDG_RUNTIME_DIR is as it has to be.
bool isSafe(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & kWritableByOthers) == 0;
}

// The same for all programs of a user, as far as they agree on XDG_RUNTIME_DIR. Empty: there is none.
std::string userFolder(IfAbsent ifAbsent) {
    const std::string user = std::to_string(::geteuid());
    const char* const named = std::getenv("XDG_RUNTIME_DIR"); // NOLINT(concurrency-mt-unsafe): no one sets it
    if (named != nullptr && *named == '/' && isSafe(named)) {
        return named;
    }
    std::string ofSystem = "/run/user/" + user;
    if (isSafe(ofSystem)) {
        return ofSystem;
    }
    const std::string temporary = "/tmp/zqmspeech-" + user;
    if (ifAbsent == IfAbsent::Create) {
        ::mkdir(temporary.c_str(), S_IRWXU);
    }
    return isSafe(temporary) ? temporary : "";
}

} // namespace

Descriptor openUserFile(const char* name, IfAbsent ifAbsent) {
    const std::string folder = userFolder(ifAbsent);
    if (folder.empty()) {
        return {};
    }
    const std::string path = folder + "/" + name;
    const int creation = ifAbsent == IfAbsent::Create ? O_CREAT : 0;
    return Descriptor(::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | creation, kFileMode));
}

} // namespace zqm::protocol
