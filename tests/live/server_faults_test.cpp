// Sound servers that aren't there, or go away.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/live/speaker.h"
#include "tests/support/log_lines.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"
#include "tests/support/sounded_parts.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/word_fixtures.h"

namespace zqm::live {
namespace {

constexpr const char* kText = "⟦This⟧ ⟦goes⟧ ⟦on⟧ ⟦for⟧ ⟦a⟧ ⟦while⟧, ⟦so⟧ ⟦there⟧ ⟦is⟧ ⟦time⟧ ⟦enough⟧ ⟦for⟧ "
                              "⟦something⟧ ⟦to⟧ ⟦go⟧ ⟦wrong⟧ ⟦with⟧ ⟦it⟧.";

// A server that stands still is told of after three seconds, or twelve: a busy machine takes longer.
#ifdef __SANITIZE_ADDRESS__
constexpr double kMostSecondsToRefuse = 15;
constexpr double kMostSecondsToNotice = 36;
#else
constexpr double kMostSecondsToRefuse = 8;
constexpr double kMostSecondsToNotice = 21;
#endif

class ServerFaults : public testing::Test {
protected:
    ServerFaults() { loadPlugin(runtime_); }
    // The objects of the test have ended.
    void TearDown() override {
        EXPECT_TRUE(runtime_.reports().empty());
        constexpr host::Seconds kPatience{120};
        EXPECT_TRUE(runtime_.runUntil([] { return support::childrenThatRun("zqmspeech-engine").empty(); },
                                      kPatience));
    }

    void expectSpoken(Speaker& speaker, const support::PulseServer& server) {
        const support::MonitorRecording recording(server);
        ASSERT_TRUE(speaker.start(text_.text));
        ASSERT_TRUE(speaker.waitForEnd());
        EXPECT_EQ(speaker.finished(), true);
        EXPECT_EQ(speaker.words(), text_.words);
        ASSERT_TRUE(recording.catchUp());
        EXPECT_GT(support::heardSeconds(recording.samples(), recording.rate()), 1);
    }

    static void speakUntilWord(Speaker& speaker, std::size_t word) {
        ASSERT_TRUE(speaker.start(longText()));
        ASSERT_TRUE(speaker.waitForWords(word));
    }

    // Told once, and for good.
    static void expectEndedEarly(Speaker& speaker) {
        EXPECT_EQ(speaker.finished(), false);
        EXPECT_EQ(speaker.timesFinished(), 1U);
        EXPECT_FALSE(speaker.object().get("isSpeaking").asBool());
    }

    const support::MarkedText text_ = support::parseMarkedText(kText);
    host::Runtime runtime_;
};

TEST_F(ServerFaults, AServerKilledInMidSpeechEndsTheSpeechAndTheNextOneIsUsed) {
    support::PulseServer server;
    const support::ScopedPulseServer use(server);
    Speaker speaker(runtime_);
    ASSERT_NO_FATAL_FAILURE(speakUntilWord(speaker, 3));
    server.kill();
    ASSERT_TRUE(speaker.waitForEnd());
    expectEndedEarly(speaker);
    EXPECT_LT(speaker.words().size(), kWordsOfLongText);
    EXPECT_FALSE(speaker.start(text_.text));
    server.restart();
    expectSpoken(speaker, server);
}

TEST_F(ServerFaults, EveryObjectHearsThatTheServerIsGone) {
    support::PulseServer server;
    const support::ScopedPulseServer use(server);
    Speaker one(runtime_);
    Speaker other(runtime_);
    ASSERT_TRUE(one.start(longText()));
    ASSERT_TRUE(other.start(longText()));
    ASSERT_TRUE(one.waitForWords(2));
    ASSERT_TRUE(other.waitForWords(2));
    server.kill();
    ASSERT_TRUE(one.waitForEnd());
    ASSERT_TRUE(other.waitForEnd());
    EXPECT_EQ(one.finished(), false);
    EXPECT_EQ(other.finished(), false);
    server.restart();
    expectSpoken(one, server);
    expectSpoken(other, server);
}

TEST_F(ServerFaults, WithoutAServerSpeechDoesNotStartButFilesAreWritten) {
    const support::ScopedPulseServer use(support::ScopedPulseServer::unreachableAddress());
    const support::TemporaryFolder folder;
    Speaker speaker(runtime_);
    EXPECT_FALSE(speaker.start(text_.text));
    EXPECT_FALSE(speaker.object().get("isSpeaking").asBool());
    runtime_.runFor(host::Seconds(0.3));
    EXPECT_FALSE(speaker.finished().has_value());
    EXPECT_TRUE(speaker.words().empty());

    ASSERT_TRUE(speaker.startToFile(text_.text, folder / "speech.wav"));
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), true);
    EXPECT_EQ(speaker.words(), text_.words);
    const support::SoundFile file(folder / "speech.wav");
    EXPECT_GT(support::heardSeconds(file.samples, file.rate), 1);
}

TEST_F(ServerFaults, AServerThatDoesNotAnswerKeepsNobodyWaiting) {
    support::PulseServer server;
    const support::ScopedPulseServer use(server);
    server.freeze();
    Speaker speaker(runtime_);
    const double begin = support::monotonicSeconds();
    EXPECT_FALSE(speaker.start(text_.text));
    EXPECT_LT(support::monotonicSeconds() - begin, kMostSecondsToRefuse);
    EXPECT_FALSE(speaker.object().get("isSpeaking").asBool());
    const support::TemporaryFolder folder;
    ASSERT_TRUE(speaker.startToFile(text_.text, folder / "speech.wav"));
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), true);
    EXPECT_EQ(speaker.words(), text_.words);
    server.restart();
    expectSpoken(speaker, server);
}

TEST_F(ServerFaults, AServerFrozenInMidSpeechIsNoReasonNotToStop) {
    support::PulseServer server;
    const support::ScopedPulseServer use(server);
    Speaker speaker(runtime_);
    ASSERT_NO_FATAL_FAILURE(speakUntilWord(speaker, 2));
    server.freeze();
    const double begin = support::monotonicSeconds();
    speaker.stop();
    EXPECT_LT(support::monotonicSeconds() - begin, kMostSecondsToRefuse);
    ASSERT_TRUE(speaker.waitForEnd());
    expectEndedEarly(speaker);
    server.thaw();
    expectSpoken(speaker, server);
}

TEST_F(ServerFaults, SpeechGoesOnWithAServerThatWasFrozenForAWhile) {
    support::PulseServer server;
    const support::ScopedPulseServer use(server);
    Speaker speaker(runtime_);
    ASSERT_TRUE(speaker.start(text_.text));
    ASSERT_TRUE(speaker.waitForWords(2));
    server.freeze();
    runtime_.runFor(host::Seconds(1));
    server.thaw();
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), true);
    EXPECT_EQ(speaker.words(), text_.words);
}

TEST_F(ServerFaults, AServerThatStaysFrozenEndsTheSpeechAndIsUsedAgainOnceItGoesOn) {
    support::PulseServer server;
    const support::ScopedPulseServer use(server);
    Speaker speaker(runtime_);
    ASSERT_NO_FATAL_FAILURE(speakUntilWord(speaker, 2));
    server.freeze();
    const double begin = support::monotonicSeconds();
    const std::vector<std::string> log = support::logged([&] { EXPECT_TRUE(speaker.waitForEnd()); });
    EXPECT_LT(support::monotonicSeconds() - begin, kMostSecondsToNotice);
    EXPECT_EQ(log, std::vector<std::string>{"Speech ended early: the sound server does not answer"});
    expectEndedEarly(speaker);
    EXPECT_FALSE(speaker.start(text_.text));
    server.thaw();
    expectSpoken(speaker, server);
}

TEST_F(ServerFaults, AServerThatComesLaterIsUsed) {
    support::PulseServer server;
    const support::ScopedPulseServer use(server);
    server.kill();
    Speaker speaker(runtime_);
    EXPECT_FALSE(speaker.start(text_.text));
    server.restart();
    expectSpoken(speaker, server);
}

} // namespace
} // namespace zqm::live
