// What the tests of the recognizer share that play its engine. The library loaded there is a link in a folder
// of its own, with relay_engine.cpp beside it under the engine's name.

#pragma once

#include "tests/platform/played_engine.h"
#include "tests/platform/recognizer_listener.h"
#include "tests/support/log_lines.h"
#include "tests/support/process_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace zqm::platform::test {

using protocol::BlockOthers;
using protocol::CommandsSet;
using protocol::EndOfInput;
using protocol::Level;
using protocol::Listen;
using protocol::Listening;
using protocol::Rejected;
using protocol::SetCommands;
using protocol::StopListening;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

inline protocol::Heard phrase(std::uint64_t session, std::uint64_t list, std::uint64_t command,
                              double begin = 0, double end = 1) {
    return {.session = session, .list = list, .command = command, .begin = begin, .end = end};
}

class Recognition : public testing::Test {
protected:
    // The engines of earlier tests may take a moment to end.
    void SetUp() override {
        Listener other;
        waitForNoEngine(other);
    }

    // Until those that ended are noticed, without a run loop.
    static void waitForNoEngine(const Listener& listener) {
        EXPECT_TRUE(waitUntil([&] {
            [listener.recognizer setCommands:[listener.recognizer commands]];
            return support::childrenOfThisProcess().empty();
        }));
    }

    // Lets it listen, and its engine hear what it is to do.
    std::unique_ptr<PlayedEngine> start(const Listener& listener, std::uint64_t session = 1) {
        [listener.recognizer startListening];
        auto engine = stage_.next();
        if ([listener.recognizer commands] != nil) {
            const auto list = engine->hear<SetCommands>();
            engine->say(CommandsSet{list.list, {}});
        }
        EXPECT_EQ(session, engine->hear<Listen>().session);
        engine->say(Listening{session, ""});
        return engine;
    }

    EngineStage stage_;
};

} // namespace zqm::platform::test
