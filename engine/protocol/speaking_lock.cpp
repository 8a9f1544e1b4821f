#include "engine/protocol/speaking_lock.h"

#include "engine/protocol/user_file.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace zqm::protocol {
namespace {

// A lock of the open file, not of the process: asking never takes it, so that askers don't see each other.
struct flock wholeFile(short type) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    return lock;
}

} // namespace

void SpeakingLock::hold() {
    Descriptor file = openUserFile(kFileName, IfAbsent::Create);
    struct flock lock = wholeFile(F_RDLCK);
    if (file && ::fcntl(file.get(), F_OFD_SETLK, &lock) == 0) {
        file_ = std::move(file);
    }
}

bool SpeakingLock::isHeld() {
    const Descriptor file = openUserFile(kFileName, IfAbsent::Leave);
    struct flock lock = wholeFile(F_WRLCK);
    return file && ::fcntl(file.get(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

} // namespace zqm::protocol
