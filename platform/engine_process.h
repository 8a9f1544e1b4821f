// An engine as a process: started with nothing of the host's but its socket, ended by closing that.

#pragma once

#include "engine/protocol/descriptor.h"
#include "platform/process_identity.h"

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>

namespace zqm::platform {

class EngineProcess {
public:
    // Nothing when it can't be started; `error` then says why.
    static std::optional<EngineProcess> start(const std::string& path, protocol::Descriptor& socket,
                                              std::string& error);

    EngineProcess(EngineProcess&& other) noexcept;
    EngineProcess& operator=(EngineProcess&&) = delete;
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    // Leaves it to end by itself, which it does once its socket is closed; never waits. It is reaped now or
    // at a later call, and killed then if it has not ended in time.
    ~EngineProcess();

    [[nodiscard]] pid_t number() const { return process_; }

    // How much it has had; 0 where that can't be known.
    [[nodiscard]] std::chrono::nanoseconds processorTime() const;

    // SIGKILL.
    void kill() const;

private:
    explicit EngineProcess(pid_t process) : process_(process) {}

    pid_t process_;
    ProcessIdentity owner_;
};

// Reaps the engines that have ended meanwhile.
void reapEngines();

// A copy of a descriptor above the standard ones if it is one of those: they are the host's, open or not.
protocol::Descriptor aboveStandardDescriptors(protocol::Descriptor descriptor);

} // namespace zqm::platform
