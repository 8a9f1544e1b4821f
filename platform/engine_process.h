// An engine as a process: started with nothing of the host's but its socket, ended by closing that.

#pragma once

#include "engine/protocol/descriptor.h"
#include "platform/child_process.h"
#include "platform/process_identity.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace zqm::platform {

inline constexpr const char* kEngineEnded = "the speech engine ended unexpectedly";

class EngineProcess {
public:
    // Nothing when it can't be started; `error` then says why.
    static std::optional<EngineProcess> start(const std::string& path, protocol::Descriptor& socket,
                                              std::string& error);

    EngineProcess(EngineProcess&&) noexcept = default;
    EngineProcess& operator=(EngineProcess&&) = delete;
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    // Leaves it to end by itself, which it does once its socket is closed; never waits (ending_engines.h).
    ~EngineProcess();

    // How much it has had; 0 where that can't be known.
    [[nodiscard]] std::chrono::nanoseconds processorTime() const { return child_.processorTime(); }

    // SIGKILL.
    void kill() const;

    // To be done once this object has let go of it and it has ended, however it does.
    void afterEnd(std::function<void()> task) { afterEnd_ = std::move(task); }

private:
    explicit EngineProcess(ChildProcess child) : child_(std::move(child)) {}

    ChildProcess child_;
    std::function<void()> afterEnd_;
    ProcessIdentity owner_;
};

// A copy of a descriptor above the standard ones if it is one of those: they are the host's, open or not.
protocol::Descriptor aboveStandardDescriptors(protocol::Descriptor descriptor);

} // namespace zqm::platform
