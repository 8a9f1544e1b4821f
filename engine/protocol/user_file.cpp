#include "engine/protocol/user_file.h"

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zqm::protocol {
namespace {

// With the sticky bit, by which those who clear out old files know that this one stays.
constexpr mode_t kFileMode = S_ISVTX | S_IRUSR | S_IWUSR;
constexpr mode_t kWritableByOthers = S_IWGRP | S_IWOTH;

// Nothing unless only this user can put something there.
Descriptor openFolder(const std::string& path) {
    Descriptor folder(::open(path.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    const bool isSafe = folder && ::fstat(folder.get(), &status) == 0 && status.st_uid == ::geteuid() &&
                        (status.st_mode & kWritableByOthers) == 0;
    return isSafe ? std::move(folder) : Descriptor();
}

// The same for all programs of a user, as far as they agree on XDG_RUNTIME_DIR.
Descriptor userFolder(IfAbsent ifAbsent) {
    const std::string user = std::to_string(::geteuid());
    const char* const named = std::getenv("XDG_RUNTIME_DIR"); // NOLINT(concurrency-mt-unsafe): no one sets it
    if (named != nullptr && *named == '/') {
        if (Descriptor folder = openFolder(named)) {
            return folder;
        }
    }
    if (Descriptor folder = openFolder("/run/user/" + user)) {
        return folder;
    }
    const std::string temporary = "/tmp/zqmspeech-" + user;
    if (ifAbsent == IfAbsent::Create) {
        ::mkdir(temporary.c_str(), S_IRWXU);
    }
    return openFolder(temporary);
}

} // namespace

Descriptor openUserFile(const char* name, IfAbsent ifAbsent) {
    const Descriptor folder = userFolder(ifAbsent);
    const int creation = ifAbsent == IfAbsent::Create ? O_CREAT : 0;
    return folder ? Descriptor(
                        ::openat(folder.get(), name, O_RDWR | O_NOFOLLOW | O_CLOEXEC | creation, kFileMode))
                  : Descriptor();
}

} // namespace zqm::protocol
