// What the observer of speaking is told.

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>
#include <zqmplatform/speaking.h>

namespace zqm::platform::test {

struct SpokenEvent {
    ZQMSpeakingEventKind kind{};
    double time = 0;
    std::size_t position = 0;
    std::size_t length = 0;
    int opcode = 0;
    std::string symbol{};
    std::string text{};
    std::uint32_t message = 0;
    bool completed = false;
};

// Observes for as long as it lives.
class ObservedSpeaking {
public:
    ObservedSpeaking();
    ObservedSpeaking(const ObservedSpeaking&) = delete;
    ObservedSpeaking& operator=(const ObservedSpeaking&) = delete;
    ~ObservedSpeaking();

    // Runs the run loop until so many utterances are over; false: they don't end.
    [[nodiscard]] bool runToEnd(std::size_t finishes = 1) const;

    [[nodiscard]] std::vector<SpokenEvent> of(ZQMSpeakingEventKind kind) const;

    std::vector<SpokenEvent> events;
    std::function<void(const SpokenEvent&)> onEvent;
};

} // namespace zqm::platform::test
