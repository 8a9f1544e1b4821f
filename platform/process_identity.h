// What belongs to the process that made it, and to no fork of it.

#pragma once

#include <sys/types.h>

namespace zqm::platform {

// The number of the calling process.
pid_t currentProcess();

class ProcessIdentity {
public:
    // False in a fork of the process in which this was made: sockets, engines and the event descriptor are
    // shared with the parent there, and are the parent's.
    [[nodiscard]] bool isCurrent() const { return process_ == currentProcess(); }

private:
    pid_t process_ = currentProcess();
};

} // namespace zqm::platform
