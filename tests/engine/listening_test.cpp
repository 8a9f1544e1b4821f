#include "engine/listening/listening.h"

#include "tests/support/pulse_server.h"
#include "tests/support/scoped_environment.h"

#include <chrono>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <unistd.h>

using namespace zqm::engine;
using namespace zqm::support;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace protocol = zqm::protocol;

namespace {

constexpr const char* kMissing = "the model is missing";
constexpr const char* kNoServer = "no sound server answers";

// Where the model is missing until it is installed.
class ListeningWithoutModel : public testing::Test {
protected:
    std::unique_ptr<Listener> make() {
        ++asked;
        if (!isInstalled) {
            throw std::runtime_error(kMissing);
        }
        return std::make_unique<Listener>([](const std::string&) { return std::vector<std::string>(); });
    }

    void runUntil(std::size_t count) {
        while (events.size() < count) {
            loop.run(listening.idleTime());
            listening.advance();
        }
    }

    ScopedPulseServer none{ScopedPulseServer::unreachableAddress()};
    EventLoop loop;
    SoundServer server{loop.api()};
    std::vector<protocol::Event> events;
    bool isInstalled = false;
    int asked = 0;
    Listening listening{loop, server, ::getpid(), [&] { return make(); },
                        [&](const protocol::Event& event) { events.push_back(event); }};
};

TEST_F(ListeningWithoutModel, asksForItOnlyWhenItIsNeeded) {
    listening.blockOthers(true);
    listening.stop(1);
    listening.advance();
    EXPECT_LT(listening.idleTime().count(), 0);
    EXPECT_EQ(asked, 0);
}

TEST_F(ListeningWithoutModel, saysSoOncePerSession) {
    listening.setCommands({1, {"stop"}});
    EXPECT_THAT(events, IsEmpty());
    listening.begin({1, false, false}, {});
    listening.advance();
    EXPECT_THAT(events, ElementsAre(protocol::Event(protocol::Listening{1, kMissing, true})));
    listening.begin({2, false, false}, {});
    EXPECT_EQ(events.size(), 2U);
    EXPECT_EQ(events[1], protocol::Event(protocol::Listening{2, kMissing, true}));
}

TEST_F(ListeningWithoutModel, takesTheCommandsOnceItIsThere) {
    listening.setCommands({1, {"stop"}});
    listening.begin({1, false, false}, {});
    isInstalled = true;
    runUntil(3);
    EXPECT_EQ(events[1], protocol::Event(protocol::CommandsSet{1, {}}));
    EXPECT_EQ(events[2], protocol::Event(protocol::Listening{1, kNoServer, true}));
    EXPECT_LE(listening.idleTime(), std::chrono::seconds(2));
}

TEST_F(ListeningWithoutModel, doesNotLookAtAListThatAnotherOneFollows) {
    isInstalled = true;
    listening.setCommands({1, {"stop"}});
    listening.setCommands({2, {"stop", "go on"}});
    EXPECT_EQ(listening.idleTime().count(), 0);
    listening.advance();
    EXPECT_THAT(events, ElementsAre(protocol::Event(protocol::CommandsSet{2, {}})));
    EXPECT_LT(listening.idleTime().count(), 0);
}

TEST_F(ListeningWithoutModel, hasFailedForGoodWithAFile) {
    listening.begin({1, false, true}, {});
    EXPECT_THAT(events, ElementsAre(protocol::Event(protocol::Listening{1, kMissing, true})));
    EXPECT_LT(listening.idleTime().count(), 0);
}

TEST(ListenerOfAModelThatIsMissing, namesTheFolderAndThePackage) {
    try {
        const Listener listener([](const std::string&) { return std::vector<std::string>(); },
                                "/nonexistent/model");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("/nonexistent/model"));
        EXPECT_THAT(error.what(), HasSubstr("pocketsphinx-en-us"));
    }
}

} // namespace
