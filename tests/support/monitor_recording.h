#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/pulse_server.h"

namespace zqm::support {

// Seconds of the clock that recordings and events are compared on (CLOCK_MONOTONIC).
double monotonicSeconds();

// Records what a null sink of a server plays, from the moment of construction on, in a thread of its own.
class MonitorRecording {
public:
    // Returns when the first sound (silence included) has arrived. Throws std::runtime_error when the server
    // doesn't let us record.
    explicit MonitorRecording(const PulseServer& server, const std::string& sink = kPulseSink);
    ~MonitorRecording();
    MonitorRecording(const MonitorRecording&) = delete;
    MonitorRecording& operator=(const MonitorRecording&) = delete;

    int rate() const;
    // Everything recorded so far, one channel, from -1 to 1. A recording whose server dies keeps what it has.
    std::vector<float> samples() const;
    // Waits until what is played at this moment has been recorded; false when that doesn't happen.
    bool catchUp() const;
    // The time at which a sample of the recording was heard, corrected by the latencies on the way; the null
    // sink's clock and ours are the same. Throws std::logic_error when nothing was caught up with yet.
    double timeOf(std::size_t sample) const;
    // When the last sound between two times was heard; nothing when there was none. Throws as timeOf() does.
    std::optional<double> lastSound(double begin, double end) const;

private:
    class Stream;
    std::unique_ptr<Stream> stream_;
};

} // namespace zqm::support
