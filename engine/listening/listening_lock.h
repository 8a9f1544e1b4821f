// Who of a user's programs is heard when one of them wants to be heard alone. They queue for that in a file:
// each holds a lock on bytes of its own behind those of whoever came before, and the first in the file has
// the floor. The kernel drops the lock with the process, so that nothing is left behind by one that was
// killed.

#pragma once

#include "engine/protocol/descriptor.h"

#include <cstdint>
#include <optional>
#include <sys/types.h>

namespace zqm::engine {

class ListeningLock {
public:
    static constexpr const char* kFileName = "zqmspeech-listening";

    // For a process that may listen with several engines, which don't get into each other's way.
    explicit ListeningLock(pid_t host) : host_(host) {}

    // Joins the end of the queue, unless it is in it. Where there is no folder for the file there is no
    // queue; and another may be joining at this moment: to be called again then.
    void join();
    void leave();
    [[nodiscard]] bool isQueued() const { return static_cast<bool>(file_); }

    // Whether someone else has the floor.
    [[nodiscard]] bool isShutOut() const;

private:
    pid_t host_;
    protocol::Descriptor file_; // while it is in the queue
    std::int64_t place_ = 0;
};

} // namespace zqm::engine
