// Speech that is held at a boundary, or stopped at one, as programs ask for it.

#include "tests/engine/parted_words.h"
#include "tests/platform/speech_fixture.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/pulse_server.h"

#include <optional>

namespace {

using namespace zqm::platform::test;
using zqm::test::kWordsOfSentence;

class SpeechBoundary : public Speech {
protected:
    bool isPaused() const {
        NSDictionary* const status = [speaker_.synthesizer objectForProperty:NSSpeechStatusProperty
                                                                       error:nullptr];
        return [[status objectForKey:NSSpeechStatusOutputPaused] intValue] == 1;
    }

    Speaker speaker_;
};

class SoundBoundary : public SpeechBoundary {
protected:
    // The server is another child of this process, so it comes once the engines before are gone.
    void SetUp() override {
        SpeechBoundary::SetUp();
        server_.emplace();
        use_.emplace(*server_);
        recording_.emplace(*server_);
    }

    // Far longer than any of this takes. Heard up to the first word of a sentence.
    bool begin() {
        [speaker_.synthesizer setRate:120];
        const std::string text = zqm::test::partedWords(100);
        return [speaker_.synthesizer startSpeakingString:stringOf(text)] &&
               runUntil([&] { return speaker_.heard.words.size() > kWordsOfSentence; });
    }

    std::size_t soundsRecorded() const {
        EXPECT_TRUE(recording_->catchUp());
        return zqm::test::wordLengths(recording_->samples(), recording_->rate()).size();
    }

    std::optional<zqm::support::PulseServer> server_;
    std::optional<zqm::support::ScopedPulseServer> use_;
    std::optional<zqm::support::MonitorRecording> recording_;
};

TEST_F(SoundBoundary, AStopAtTheEndOfAWordIsToldUpToIt) {
    ASSERT_TRUE(begin());
    [speaker_.synthesizer stopSpeakingAtBoundary:NSSpeechWordBoundary];
    ASSERT_TRUE(speaker_.runToEnd());
    EXPECT_EQ(std::vector<bool>{false}, speaker_.heard.finished);
    EXPECT_EQ('f', speaker_.heard.order.back());
    EXPECT_EQ(speaker_.heard.words.size(), soundsRecorded());
}

TEST_F(SoundBoundary, AStopAtTheEndOfASentenceIsToldUpToIt) {
    ASSERT_TRUE(begin());
    [speaker_.synthesizer stopSpeakingAtBoundary:NSSpeechSentenceBoundary];
    ASSERT_TRUE(speaker_.runToEnd());
    EXPECT_EQ(std::vector<bool>{false}, speaker_.heard.finished);
    EXPECT_EQ('f', speaker_.heard.order.back());
    EXPECT_EQ(0U, speaker_.heard.words.size() % kWordsOfSentence);
    EXPECT_EQ(speaker_.heard.words.size(), soundsRecorded());
}

TEST_F(SoundBoundary, AnImmediateStopIsAStop) {
    ASSERT_TRUE(begin());
    [speaker_.synthesizer stopSpeakingAtBoundary:NSSpeechImmediateBoundary];
    EXPECT_FALSE([speaker_.synthesizer isSpeaking]);
    speaker_.heard.order.clear();
    ASSERT_TRUE(speaker_.runToEnd());
    EXPECT_EQ(std::vector<char>{'f'}, speaker_.heard.order);
}

TEST_F(SoundBoundary, APauseIsHeardAndNothingIsToldInIt) {
    ASSERT_TRUE(begin());
    [speaker_.synthesizer pauseSpeakingAtBoundary:NSSpeechSentenceBoundary];
    ASSERT_TRUE(runUntil([&] { return isPaused(); }));
    runOut();
    const std::size_t words = speaker_.heard.words.size();
    EXPECT_EQ(0U, words % kWordsOfSentence);
    EXPECT_EQ(words, soundsRecorded());
    EXPECT_TRUE([speaker_.synthesizer isSpeaking]);

    [speaker_.synthesizer continueSpeaking];
    EXPECT_FALSE(isPaused());
    ASSERT_TRUE(runUntil([&] { return speaker_.heard.words.size() > words; }));
    EXPECT_EQ(zqm::test::partedWords(words / kWordsOfSentence).size(), speaker_.heard.words[words].position);
    [speaker_.synthesizer stopSpeaking];
    ASSERT_TRUE(speaker_.runToEnd());
}

TEST_F(SoundBoundary, AHandlerMayPauseAndAPausedSpeechBeStopped) {
    speaker_.heard.onWord = [](NSSpeechSynthesizer* sender) {
        [sender pauseSpeakingAtBoundary:NSSpeechWordBoundary];
    };
    ASSERT_TRUE([speaker_.synthesizer startSpeakingString:stringOf(zqm::test::partedWords(100))]);
    ASSERT_TRUE(runUntil([&] { return isPaused(); }));
    runOut();
    [speaker_.synthesizer stopSpeakingAtBoundary:NSSpeechSentenceBoundary];
    ASSERT_TRUE(speaker_.runToEnd());
    EXPECT_EQ(std::vector<bool>{false}, speaker_.heard.finished);
    EXPECT_FALSE(isPaused());
}

TEST_F(SoundBoundary, ANewSpeechEndsAPausedOne) {
    ASSERT_TRUE(begin());
    [speaker_.synthesizer pauseSpeakingAtBoundary:NSSpeechImmediateBoundary];
    ASSERT_TRUE(runUntil([&] { return isPaused(); }));
    ASSERT_TRUE([speaker_.synthesizer startSpeakingString:@"Hello world"]);
    EXPECT_FALSE(isPaused());
    ASSERT_TRUE(speaker_.runToEnd(2));
    EXPECT_EQ((std::vector<bool>{false, true}), speaker_.heard.finished);
}

TEST_F(SoundBoundary, APausedSynthesizerCanBeDropped) {
    ASSERT_TRUE(begin());
    [speaker_.synthesizer pauseSpeakingAtBoundary:NSSpeechImmediateBoundary];
    ASSERT_TRUE(runUntil([&] { return isPaused(); }));
    speaker_.release();
    runOut();
    EXPECT_TRUE(speaker_.heard.finished.empty());
}

TEST_F(SpeechBoundary, APausedFileIsNotWritten) {
    const UnreadPipe pipe(path("a.ogg"));
    ASSERT_TRUE(pipe.isMade());
    ASSERT_TRUE(speaker_.say(manyWords(20'000), path("a.ogg")));
    ASSERT_TRUE(pipe.fillsUp());
    [speaker_.synthesizer pauseSpeakingAtBoundary:NSSpeechWordBoundary];
    while (!isPaused()) {
        pipe.read();
        ASSERT_TRUE(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.01, 1) >= 0);
    }
    pipe.read();
    runOut();
    const std::size_t words = speaker_.heard.words.size();
    EXPECT_EQ(pipe.read(), "");
    EXPECT_GT(words, 0U);
    [speaker_.synthesizer continueSpeaking];
    ASSERT_TRUE(runUntil([&] {
        pipe.read();
        return speaker_.heard.words.size() > words;
    }));
    [speaker_.synthesizer stopSpeaking];
    ASSERT_TRUE(speaker_.runToEnd());
    EXPECT_EQ(std::vector<bool>{false}, speaker_.heard.finished);
}

TEST_F(SpeechBoundary, WithoutSpeechThereIsNothingToHold) {
    for (const NSSpeechBoundary boundary :
         {NSSpeechImmediateBoundary, NSSpeechWordBoundary, NSSpeechSentenceBoundary}) {
        [speaker_.synthesizer pauseSpeakingAtBoundary:boundary];
        [speaker_.synthesizer stopSpeakingAtBoundary:boundary];
        [speaker_.synthesizer continueSpeaking];
        EXPECT_FALSE([speaker_.synthesizer isSpeaking]);
    }
    ASSERT_TRUE(speaker_.say("Hello world", path("a.wav")) && speaker_.runToEnd());
    EXPECT_EQ(kHelloWorld, speaker_.heard.words);
}

} // namespace
