// Wakes an event source after a while, through the event hub.

#pragma once

#include "engine/protocol/descriptor.h"
#include "platform/event_hub.h"
#include "platform/process_identity.h"

#include <chrono>

namespace zqm::platform {

class Timer {
public:
    // The source is the one to wake; it outlives this.
    explicit Timer(EventSource* source) : source_(source) {}
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer();

    // Not at all where the system has no timers left.
    void start(std::chrono::milliseconds delay);
    void stop();

    // Whether its time has come since it was last asked.
    bool takeExpiry();

private:
    void set(std::chrono::nanoseconds delay) const;

    EventSource* source_;
    protocol::Descriptor descriptor_;
    ProcessIdentity owner_;
};

} // namespace zqm::platform
