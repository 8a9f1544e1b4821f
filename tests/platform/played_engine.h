// Engines whose part a test plays itself (relay_engine.cpp), so that it alone says what happens when.

#pragma once

#include "engine/protocol/channel.h"
#include "engine/protocol/protocol.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>
#include <variant>

namespace zqm::platform::test {

class PlayedEngine {
public:
    explicit PlayedEngine(protocol::Descriptor socket);

    // The next request, waited for; nothing: the host has ended the conversation. Pings are answered.
    std::optional<protocol::Request> hearAny();
    // Waits for a ping, before which there is nothing else to hear, and leaves it unanswered.
    void hearPing();

    // The next request, which must be such a one.
    template <typename Message>
    Message hear() {
        const auto request = hearAny();
        const auto* const message = request ? std::get_if<Message>(&*request) : nullptr;
        EXPECT_NE(nullptr, message) << (request ? protocol::encode(*request) : "the end");
        return message != nullptr ? *message : Message{};
    }

    void say(const protocol::Event& event) { sayLine(protocol::encode(event)); }
    void sayLine(const std::string& line);

    // Whether the host has nothing more to say, and has ended the conversation.
    bool isLeft() { return !hearAny(); }

    // Whether the host has said something that is not heard yet, or has ended the conversation.
    [[nodiscard]] bool hasMessage() const;

    // SIGKILL.
    void kill() const;

    // From now on its process works and neither hears nor says anything.
    void beginWork() const;
    void endWork() const;

    [[nodiscard]] pid_t process() const { return process_; }

private:
    std::optional<protocol::Request> nextRequest();
    void waitFor(short condition) const;

    pid_t process_ = 0;
    protocol::Channel channel_;
};

// Where such engines come to.
class EngineStage {
public:
    EngineStage();

    // The next engine that is started, waited for; null: none comes.
    std::unique_ptr<PlayedEngine> next();

    // One was started for which there was no next() yet.
    [[nodiscard]] bool hasNext() const;

private:
    support::TemporaryFolder folder_;
    support::ScopedEnvironment name_;
    protocol::Descriptor socket_;
};

} // namespace zqm::platform::test
