// Handlers that do what handlers may do.

#include "tests/endtoend/speaking.h"

#include <gmock/gmock.h>
#include <stdexcept>

namespace zqm::endtoend {
namespace {

using host::Arguments;
using host::Object;
using testing::ElementsAre;

class Handlers : public SpeakingTest {
protected:
    Speaker speaker{runtime};

    void TearDown() override {
        speaker.object = Object();
        SpeakingTest::TearDown();
    }
};

TEST_F(Handlers, MayDestroyTheirObject) {
    int words = 0;
    speaker.object.on("willSpeakWord", [&](const Arguments&) {
        ++words;
        speaker.object = Object();
    });
    ASSERT_TRUE(speaker.start("Hello world and all", file));
    EXPECT_TRUE(runtime.runUntil([&] { return words > 0; }, kDeadline));
    runtime.runFor(host::Seconds(0.2));
    EXPECT_EQ(words, 1);
    EXPECT_TRUE(speaker.ends.empty());
    EXPECT_EQ(runtime.ledger(), host::Ledger());
}

TEST_F(Handlers, MayDestroyTheirObjectAtTheEnd) {
    bool ended = false;
    speaker.object.on("didFinishSpeaking", [&](const Arguments&) {
        ended = true;
        speaker.object = Object();
    });
    ASSERT_TRUE(speaker.start("Hello world", file));
    EXPECT_TRUE(runtime.runUntil([&] { return ended; }, kDeadline));
    EXPECT_EQ(runtime.ledger(), host::Ledger());
}

TEST_F(Handlers, MayStartTheNextSpeech) {
    speaker.object.on("didFinishSpeaking", [&](const Arguments& end) {
        speaker.ends.push_back(end[0].asBool());
        if (speaker.ends.size() < 3) {
            EXPECT_TRUE(speaker.start("Next one", file));
        }
    });
    ASSERT_TRUE(speaker.start("Hello world", file));
    EXPECT_TRUE(runtime.runUntil([&] { return speaker.ends.size() == 3; }, kDeadline));
    EXPECT_THAT(speaker.ends, ElementsAre(true, true, true));
    EXPECT_EQ(speaker.words.size(), 6U);
}

TEST_F(Handlers, MayStop) {
    speaker.object.on("willSpeakWord", [&](const Arguments& word) {
        speaker.words.push_back({static_cast<std::size_t>(word[0].asInteger()), 0});
        Object sender = word.sender();
        sender.call("stopSpeaking");
    });
    // By then the engine may have completed the file or not, which is what the end tells.
    ASSERT_TRUE(speaker.start("One two three four", file));
    ASSERT_TRUE(speaker.waitForEnd());
    runtime.runFor(host::Seconds(0.2));
    EXPECT_EQ(speaker.words.size(), 1U);
    EXPECT_EQ(speaker.ends.size(), 1U);
}

TEST_F(Handlers, MayStopWhatIsCompletedButNotTold) {
    speaker.object.on("willSpeakWord", [&](const Arguments& word) {
        speaker.words.push_back({static_cast<std::size_t>(word[0].asInteger()), 0});
        Object sender = word.sender();
        sender.call("stopSpeaking");
    });
    ASSERT_TRUE(speaker.start("One two three four", file));
    ASSERT_TRUE(speaker.waitForSilence());
    ASSERT_TRUE(speaker.waitForEnd());
    runtime.runFor(host::Seconds(0.2));
    EXPECT_EQ(speaker.words.size(), 1U);
    EXPECT_THAT(speaker.ends, ElementsAre(true));
}

TEST_F(Handlers, MayRunTheRunLoop) {
    std::size_t deepest = 0;
    std::size_t depth = 0;
    speaker.object.on("willSpeakWord", [&](const Arguments& word) {
        ++depth;
        deepest = std::max(deepest, depth);
        speaker.words.push_back({word[0].asSize(), word[1].asSize()});
        if (speaker.words.size() == 1) { // four more are to come, so the second surely comes in here
            EXPECT_TRUE(runtime.runUntil([&] { return speaker.words.size() > 1; }, kDeadline));
        }
        --depth;
    });
    ASSERT_TRUE(speaker.start("One two three four five", file));
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.words.size(), 5U);
    EXPECT_THAT(speaker.ends, ElementsAre(true));
    EXPECT_GT(deepest, 1U) << "the inner run loop delivers too";
}

TEST_F(Handlers, MayThrowOutOfTheRunLoop) {
    speaker.object.on("willSpeakWord", [](const Arguments&) { throw std::runtime_error("mine"); });
    ASSERT_TRUE(speaker.start("Hello", file));
    EXPECT_THROW(speaker.waitForEnd(), std::runtime_error);
    speaker.object.off("willSpeakWord");
    EXPECT_TRUE(runtime.runUntil([&] { return speaker.ends.size() == 1; }, kDeadline));
    EXPECT_EQ(speaker.object.get("isSpeaking").asBool(), false);
}

} // namespace
} // namespace zqm::endtoend
