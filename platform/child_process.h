// A child of the host by a descriptor of it. That never means another process, unlike its number, which is
// free again as soon as the child was waited for: by a host that waits for all its children, or by the system
// for one that ignores them.

#pragma once

#include "engine/protocol/descriptor.h"

#include <chrono>
#include <sys/types.h>

namespace zqm::platform {

class ChildProcess {
public:
    // Of a child that was started just now. Check isKnown(); errno then says why it isn't.
    explicit ChildProcess(pid_t number);

    [[nodiscard]] bool isKnown() const { return static_cast<bool>(descriptor_); }

    // Readable once it has ended.
    [[nodiscard]] int descriptor() const { return descriptor_.get(); }

    // Whether it has ended and nothing is left of it; reaps it if it has.
    [[nodiscard]] bool isReaped() const;

    // How much it has had; 0 where that can't be known.
    [[nodiscard]] std::chrono::nanoseconds processorTime() const;

    // SIGKILL.
    void kill() const;

private:
    enum class End { None, OfChild, OfNoChild };

    [[nodiscard]] End lookForEnd(int options) const;
    [[nodiscard]] bool hasEnded() const;

    pid_t number_;
    protocol::Descriptor descriptor_;
};

} // namespace zqm::platform
