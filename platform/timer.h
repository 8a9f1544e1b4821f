// Wakes an event source after a while, through the event hub.

#pragma once

#include "engine/protocol/descriptor.h"
#include "platform/event_hub.h"
#include "platform/process_identity.h"

#include <chrono>
#include <optional>

namespace zqm::platform {

class Timer {
public:
    // The source is the one to wake; it outlives this.
    explicit Timer(EventSource* source) : source_(source) {}
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer();

    // Where the system has no timer left, the run loop is asked again and again.
    void start(std::chrono::milliseconds delay);
    void stop();

    // Whether its time has come since it was last asked.
    bool takeExpiry();

private:
    void set(std::chrono::nanoseconds delay) const;

    EventSource* source_;
    protocol::Descriptor descriptor_;
    std::optional<std::chrono::steady_clock::time_point> due_; // without a descriptor
    ProcessIdentity owner_;
};

} // namespace zqm::platform
