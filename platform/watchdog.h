// Notices that an engine stands still of which nothing is awaited: one that neither says nor does anything,
// not even answer. One that works for ever isn't told from one that has much to do.

#pragma once

#include "platform/deadline.h"
#include "platform/engine_process.h"
#include "platform/timer.h"

#include <chrono>

namespace zqm::platform {

// Looks at the engine now and then, and only while it is started. It goes by how often it looked, never by
// how long ago that was: a host that does not run its run loop, or is suspended with its engine, learns
// nothing.
class Watchdog {
public:
    enum class Finding {
        Nothing,    // it works, as far as is known
        Silence,    // it may: ask it
        Standstill, // it was asked, and the deadline is over
    };

    // The source is woken to look; it outlives this.
    explicit Watchdog(EventSource* source);

    void start();
    void stop();

    void noteEvent() { wasHeard_ = true; }

    // What the engine has said is read by then.
    Finding look(const EngineProcess& engine);

private:
    static constexpr std::chrono::seconds kInterval = kEngineDeadline / 2;

    Timer timer_;
    bool isStarted_ = false;
    bool wasHeard_ = false; // since it was looked at
    std::chrono::nanoseconds processorTime_{0};
    int silentLooks_ = 0; // since it was heard
};

} // namespace zqm::platform
