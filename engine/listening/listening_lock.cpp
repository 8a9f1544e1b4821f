#include "engine/listening/listening_lock.h"

#include "engine/protocol/user_file.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace zqm::engine {

namespace {

// A place in the queue is a stretch of the file. How many of its bytes are locked tells whose it is, since
// the kernel doesn't say whose a lock of an open file is.
constexpr std::int64_t kStretch = std::int64_t{1} << 23; // beyond any process number
constexpr std::int64_t kDoor = 0;                        // the byte that is locked by who is joining
constexpr std::int64_t kFirst = kStretch;
constexpr std::int64_t kEnd = 0; // as the length of a range: to the end of the file, wherever that is

struct flock lockOf(std::int64_t begin, std::int64_t length) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = begin;
    lock.l_len = length;
    return lock;
}

bool take(int file, std::int64_t begin, std::int64_t length) {
    struct flock lock = lockOf(begin, length);
    return ::fcntl(file, F_OFD_SETLK, &lock) == 0;
}

void giveBack(int file, std::int64_t begin, std::int64_t length) {
    struct flock lock = lockOf(begin, length);
    lock.l_type = F_UNLCK;
    ::fcntl(file, F_OFD_SETLK, &lock);
}

struct Place {
    std::int64_t begin;
    pid_t host;
};

// Any of the places of others that lie in a range.
std::optional<Place> placeIn(int file, std::int64_t begin, std::int64_t length) {
    struct flock lock = lockOf(begin, length);
    if (::fcntl(file, F_OFD_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) {
        return std::nullopt;
    }
    return Place{lock.l_start, static_cast<pid_t>(lock.l_len)};
}

// Of the places before another, or of all: that of who has the floor.
std::optional<Place> firstPlace(int file, std::optional<std::int64_t> before) {
    std::optional<Place> first;
    while (const auto place = before && *before == kFirst
                                  ? std::nullopt
                                  : placeIn(file, kFirst, before ? *before - kFirst : kEnd)) {
        first = place;
        before = place->begin;
    }
    return first;
}

std::int64_t endOfQueue(int file) {
    std::int64_t end = kFirst;
    while (const auto place = placeIn(file, end, kEnd)) {
        end = place->begin + kStretch;
    }
    return end;
}

} // namespace

void ListeningLock::join() {
    if (file_) {
        return;
    }
    protocol::Descriptor file = protocol::openUserFile(kFileName, protocol::IfAbsent::Create);
    if (!file || !take(file.get(), kDoor, 1)) {
        return;
    }
    place_ = endOfQueue(file.get());
    if (take(file.get(), place_, host_)) {
        giveBack(file.get(), kDoor, 1);
        file_ = std::move(file);
    }
}

void ListeningLock::leave() {
    file_.reset();
}

bool ListeningLock::isShutOut() const {
    std::optional<Place> first;
    if (file_) {
        first = firstPlace(file_.get(), place_);
    } else if (const auto file = protocol::openUserFile(kFileName, protocol::IfAbsent::Leave)) {
        first = firstPlace(file.get(), std::nullopt);
    }
    return first && first->host != host_;
}

} // namespace zqm::engine
