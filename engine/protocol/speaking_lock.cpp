#include "engine/protocol/speaking_lock.h"

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace zqm::protocol {
namespace {

constexpr const char* kFileName = "zqmspeech-speaking";
// With the sticky bit, by which those who clear out old files know that this one stays.
constexpr mode_t kFileMode = S_ISVTX | S_IRUSR | S_IWUSR;
constexpr mode_t kWritableByOthers = S_IWGRP | S_IWOTH;

enum class IfAbsent : bool { Leave, Create };

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

Descriptor openFile(IfAbsent ifAbsent) {
    const Descriptor folder = userFolder(ifAbsent);
    const int creation = ifAbsent == IfAbsent::Create ? O_CREAT : 0;
    return folder ? Descriptor(::openat(folder.get(), kFileName, O_RDWR | O_NOFOLLOW | O_CLOEXEC | creation,
                                        kFileMode))
                  : Descriptor();
}

// A lock of the open file, not of the process: asking never takes it, so that askers don't see each other.
struct flock wholeFile(short type) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    return lock;
}

} // namespace

void SpeakingLock::hold() {
    Descriptor file = openFile(IfAbsent::Create);
    struct flock lock = wholeFile(F_RDLCK);
    if (file && ::fcntl(file.get(), F_OFD_SETLK, &lock) == 0) {
        file_ = std::move(file);
    }
}

bool SpeakingLock::isHeld() {
    const Descriptor file = openFile(IfAbsent::Leave);
    struct flock lock = wholeFile(F_WRLCK);
    return file && ::fcntl(file.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

} // namespace zqm::protocol
