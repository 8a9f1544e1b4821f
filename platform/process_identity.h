// What belongs to the process that made it, and to no fork of it.

#pragma once

#include <unistd.h>

namespace zqm::platform {

class ProcessIdentity {
public:
    // False in a fork of the process in which this was made: sockets, engines and the event descriptor are
    // shared with the parent there, and are the parent's.
    [[nodiscard]] bool isCurrent() const { return process_ == ::getpid(); }

private:
    pid_t process_ = ::getpid();
};

} // namespace zqm::platform
