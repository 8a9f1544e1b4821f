#include "tests/endtoend/speaking.h"
#include "tests/support/sound_file.h"
#include "tests/support/unread_pipe.h"

#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

using host::Arguments;
using testing::ElementsAre;

class Events : public SpeakingTest {};

TEST_F(Events, OnlyThoseWithAHandlerAreRaised) {
    Speaker speaker(runtime);
    speaker.object.off("willSpeakWord");
    speaker.speak("Hello world", file);
    EXPECT_TRUE(speaker.words.empty());
    EXPECT_EQ(speaker.object.timesRaised("willSpeakWord"), 0U);
    EXPECT_EQ(speaker.object.timesRaised("didFinishSpeaking"), 1U);
}

TEST_F(Events, ComeFromTheRunLoopOnly) {
    Speaker speaker(runtime);
    ASSERT_TRUE(speaker.start("Hello world", file));
    ASSERT_TRUE(speaker.waitForSilence());
    EXPECT_TRUE(speaker.words.empty());
    EXPECT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.words.size(), 2U);
}

TEST_F(Events, StopEndsWithFalse) {
    Speaker speaker(runtime);
    ASSERT_TRUE(speaker.start(longText(), file));
    EXPECT_TRUE(speaker.object.get("isSpeaking").asBool());
    ASSERT_TRUE(speaker.waitForWord());
    speaker.object.call("stopSpeaking");
    ASSERT_TRUE(std::filesystem::exists(file));
    EXPECT_GT(support::SoundFile(file).frames(), 0U);
    const std::size_t words = speaker.words.size();
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_THAT(speaker.ends, ElementsAre(false));
    EXPECT_EQ(speaker.words.size(), words);
    speaker.speak("Hello again", file);
}

TEST_F(Events, StopBeforeThePipeIsReadEndsWithFalse) {
    const support::UnreadPipe pipe(folder / "speech.ogg");
    ASSERT_TRUE(pipe.isMade());
    Speaker speaker(runtime);
    ASSERT_TRUE(speaker.start(longText(), folder / "speech.ogg"));
    ASSERT_TRUE(speaker.waitForWord());
    ASSERT_TRUE(pipe.fillsUp());
    EXPECT_TRUE(speaker.object.get("isSpeaking").asBool());
    speaker.object.call("stopSpeaking");
    EXPECT_FALSE(speaker.object.get("isSpeaking").asBool());
    const std::size_t words = speaker.words.size();
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_THAT(speaker.ends, ElementsAre(false));
    EXPECT_EQ(speaker.words.size(), words);
    speaker.speak("Hello again", file);
}

TEST_F(Events, StartWhileSpeakingEndsTheOldOneFirst) {
    const support::UnreadPipe pipe(folder / "first.ogg");
    ASSERT_TRUE(pipe.isMade());
    Speaker speaker(runtime);
    ASSERT_TRUE(speaker.start(longText(), folder / "first.ogg"));
    ASSERT_TRUE(speaker.waitForWord());
    ASSERT_TRUE(speaker.start("Hello world", folder / "second.wav"));
    ASSERT_TRUE(speaker.waitForEnd());
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_THAT(speaker.ends, ElementsAre(false, true));
    EXPECT_EQ(speaker.texts.back(), "Hello world");
}

TEST_F(Events, EmptyTextFinishesAndNoTextDoesNotStart) {
    Speaker speaker(runtime);
    EXPECT_FALSE(speaker.object.call("startSpeakingString", host::String(), fileUrl(file)).asBool());
    ASSERT_TRUE(speaker.object.call("startSpeakingString", runtime.string(""), fileUrl(file)).asBool());
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_THAT(speaker.ends, ElementsAre(true));
    EXPECT_TRUE(speaker.words.empty());
}

TEST_F(Events, OfTwoObjectsAtOnceStayApart) {
    Speaker one(runtime);
    Speaker other(runtime);
    ASSERT_TRUE(one.start("First of two speakers", file));
    ASSERT_TRUE(other.start("Another one", folder / "other.wav"));
    EXPECT_TRUE(one.waitForEnd());
    EXPECT_TRUE(other.waitForEnd());
    EXPECT_THAT(one.ends, ElementsAre(true));
    EXPECT_THAT(other.ends, ElementsAre(true));
    EXPECT_EQ(one.words.size(), 4U);
    EXPECT_EQ(other.words.size(), 2U);
    EXPECT_THAT(one.texts, testing::Each(std::string("First of two speakers")));
    EXPECT_THAT(other.texts, testing::Each(std::string("Another one")));
    EXPECT_GT(support::SoundFile(file).seconds(), 0.5);
    EXPECT_GT(support::SoundFile(folder / "other.wav").seconds(), 0.3);
}

} // namespace
} // namespace zqm::endtoend
