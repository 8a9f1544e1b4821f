#include "platform/watchdog.h"

#include <utility>

namespace zqm::platform {

// What a timer takes of the system is taken now, so that a host holds as much of it before an engine's first
// work as behind it.
Watchdog::Watchdog(EventSource* source) : timer_(source) {
    start();
    stop();
}

void Watchdog::start() {
    if (!std::exchange(isStarted_, true)) {
        wasHeard_ = true; // it is about to
        timer_.start(kInterval);
    }
}

void Watchdog::stop() {
    if (std::exchange(isStarted_, false)) {
        timer_.stop();
    }
}

// An engine at work may have no time to answer: a long list of commands takes it more than a minute. As long
// as it works, its silence is none, but it still owes the answer.
Watchdog::Finding Watchdog::look(const EngineProcess& engine) {
    if (!isStarted_ || !timer_.takeExpiry()) {
        return Finding::Nothing;
    }
    timer_.start(kInterval);
    const auto processorTime = engine.processorTime();
    const bool hasWorked = processorTime != std::exchange(processorTime_, processorTime);
    if (std::exchange(wasHeard_, false)) {
        silentLooks_ = 0;
        return Finding::Nothing;
    }
    if (hasWorked) {
        return Finding::Nothing;
    }
    ++silentLooks_;
    if (silentLooks_ == 1) {
        return Finding::Silence;
    }
    return silentLooks_ > kEngineDeadline / kInterval ? Finding::Standstill : Finding::Nothing;
}

} // namespace zqm::platform
