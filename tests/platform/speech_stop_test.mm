// What is told of a speech that is stopped, or ended by the next one.

#include "tests/platform/speech_fixture.h"
#include "tests/support/sound_file.h"

#include <filesystem>

namespace {

using namespace zqm::platform::test;
using zqm::support::SoundFile;

TEST_F(Speech, AfterAStopOnlyTheEndIsTold) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    ASSERT_TRUE([speaker.synthesizer isSpeaking]);
    [speaker.synthesizer stopSpeaking];
    ASSERT_TRUE(std::filesystem::exists(path("a.wav"))) << "a stop keeps the file";
    EXPECT_EQ(1U, filesIn(folder_));
    EXPECT_GE(SoundFile(path("a.wav")).seconds(), 0);
    EXPECT_FALSE([speaker.synthesizer isSpeaking]);
    EXPECT_TRUE(speaker.heard.order.empty());
    ASSERT_TRUE(speaker.runToEnd());
    runOut();
    EXPECT_EQ(std::vector<char>{'f'}, speaker.heard.order);
    EXPECT_EQ(std::vector<bool>{false}, speaker.heard.finished);
    [speaker.synthesizer stopSpeaking];
    runOut();
    EXPECT_EQ(1U, speaker.heard.order.size()) << "a stop of nothing is heard of nowhere";
}

TEST_F(Speech, AStopDropsTheWordsOfWhatTheEngineHadCompleted) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say("One two three four", path("a.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    ASSERT_TRUE(speaker.say("five six", path("b.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    [speaker.synthesizer stopSpeaking];
    ASSERT_TRUE(speaker.runToEnd(2));
    runOut();
    EXPECT_EQ((std::vector<char>{'f', 'f'}), speaker.heard.order);
    EXPECT_EQ((std::vector<bool>{true, true}), speaker.heard.finished) << "both files are whole";
    ASSERT_TRUE(speaker.say("Hello world", path("a.wav")) && speaker.runToEnd(3));
    EXPECT_EQ(kHelloWorld, speaker.heard.words) << "a stop is for what was begun before it";
}

TEST_F(Speech, AHandlerMayStopWhatTheEngineHadCompleted) {
    Speaker speaker;
    speaker.heard.onWord = [](NSSpeechSynthesizer* sender) { [sender stopSpeaking]; };
    ASSERT_TRUE(speaker.say("One two three four", path("a.wav")));
    ASSERT_TRUE(waitUntil([&] { return ![speaker.synthesizer isSpeaking]; }));
    ASSERT_TRUE(speaker.runToEnd());
    runOut();
    EXPECT_EQ((std::vector<char>{'w', 'f'}), speaker.heard.order);
    EXPECT_EQ(std::vector<bool>{true}, speaker.heard.finished);
}

TEST_F(Speech, StartingEndsTheOneBefore) {
    Speaker speaker;
    ASSERT_TRUE(speaker.say(manyWords(50000), path("a.wav")));
    ASSERT_TRUE(speaker.say("Hello world", path("b.wav")));
    EXPECT_TRUE(speaker.heard.order.empty());
    ASSERT_TRUE(speaker.runToEnd(2));
    runOut();
    EXPECT_EQ((std::vector<char>{'f', 'w', 'w', 'f'}), speaker.heard.order);
    EXPECT_EQ((std::vector<bool>{false, true}), speaker.heard.finished);
    EXPECT_EQ(kHelloWorld, speaker.heard.words);
}

} // namespace
