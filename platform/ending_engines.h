// Engines that nobody needs any more, from when their sockets are closed until nothing is left of them.

#pragma once

#include "platform/child_process.h"
#include "platform/deadline.h"
#include "platform/event_hub.h"
#include "platform/process_identity.h"
#include "platform/timer.h"

#include <functional>
#include <vector>

namespace zqm::platform {

// Reaps them and kills those that don't end in time: in the run loop, and at later calls for a host without
// one.
class EndingEngines : public EventSource {
public:
    static EndingEngines& shared();

    // What is to be done once it has ended comes along, if anything.
    void add(ChildProcess process, std::function<void()> afterEnd);

    // Looks at all of them.
    void takeMessages() override;

    bool deliver() override { return false; }

private:
    struct Engine {
        ChildProcess process;
        Clock::time_point deadline;
        std::function<void()> afterEnd;
    };

    EndingEngines() : timer_(this) {}
    void lookAgain();

    std::vector<Engine> engines_;
    Timer timer_; // for the next deadline
    ProcessIdentity owner_;
};

} // namespace zqm::platform
