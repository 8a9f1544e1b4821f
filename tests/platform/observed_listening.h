// What the observer of listening is told.

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>
#include <zqmplatform/listening.h>

namespace zqm::platform::test {

struct ObservedEvent {
    ZQMListeningEventKind kind{};
    double begin = 0;
    double end = 0;
    double level = 0;
    std::string command{};
    std::string reason{};
    std::size_t count = 0;

    bool operator==(const ObservedEvent&) const = default;
};

// Observes for as long as it lives.
class Observed {
public:
    Observed();
    Observed(const Observed&) = delete;
    Observed& operator=(const Observed&) = delete;
    ~Observed();

    // Runs the run loop until there was such an event; false: there was none.
    bool runUntil(ZQMListeningEventKind kind, std::size_t count = 1) const;

    [[nodiscard]] std::vector<ZQMListeningEventKind> kinds() const;
    [[nodiscard]] std::vector<ObservedEvent> of(ZQMListeningEventKind kind) const;

    std::vector<ObservedEvent> events;
    std::function<void(const ObservedEvent&)> onEvent;
};

} // namespace zqm::platform::test
