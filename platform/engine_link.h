// A conversation with an engine of one's own. Every wait has a deadline; whoever exceeds it is killed.

#pragma once

#include "engine/protocol/channel.h"
#include "engine/protocol/protocol.h"
#include "platform/deadline.h"
#include "platform/engine_process.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zqm::platform {

class EngineLink {
public:
    enum class Input {
        Event,
        Nothing, // no whole message is there
        Lost,    // the engine is gone, or said something that is no message; the end of the conversation
    };

    // Starts an engine. Null when that can't be done; `error` then says why.
    static std::unique_ptr<EngineLink> open(std::string& error);

    EngineLink(EngineProcess process, protocol::Descriptor socket);
    EngineLink(const EngineLink&) = delete;
    EngineLink& operator=(const EngineLink&) = delete;

    // Closes the socket, upon which the engine ends.
    ~EngineLink() = default;

    [[nodiscard]] int descriptor() const { return channel_.descriptor(); }

    // Sends all of it before the deadline; false: it could not, and the engine is of no more use.
    bool send(const protocol::Request& request, std::vector<protocol::Descriptor> descriptors,
              Clock::time_point deadline);

    // Sends what the socket takes now, the rest with what is sent or read later.
    void post(const protocol::Request& request, std::vector<protocol::Descriptor> descriptors = {});

    // Bytes posted and not yet sent.
    [[nodiscard]] std::size_t backlog() const { return channel_.backlog(); }

    // Never waits.
    Input read(protocol::Event& event);

    // Waits for a message until the deadline; Nothing: none came.
    Input wait(protocol::Event& event, Clock::time_point deadline);

    [[nodiscard]] const EngineProcess& process() const { return process_; }

    void kill() const { process_.kill(); }

    // To be done when this conversation and the engine have ended.
    void afterEnd(std::function<void()> task) { process_.afterEnd(std::move(task)); }

private:
    bool waitFor(short condition, Clock::time_point deadline) const;

    EngineProcess process_; // outlives the socket, so that closing that comes first
    protocol::Channel channel_;
    std::string line_;
};

} // namespace zqm::platform
