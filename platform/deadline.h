// How long the host waits for an engine before it gives it up.

#pragma once

#include <chrono>

namespace zqm::platform {

using Clock = std::chrono::steady_clock;

inline constexpr std::chrono::seconds kEngineDeadline{10};

inline Clock::time_point engineDeadline() {
    return Clock::now() + kEngineDeadline;
}

} // namespace zqm::platform
