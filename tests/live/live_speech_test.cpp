// Speech as it is heard.

#include <algorithm>
#include <chrono>
#include <list>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/live/speaker.h"
#include "tests/support/monitor_recording.h"
#include "tests/support/process.h"
#include "tests/support/process_table.h"
#include "tests/support/pulse_server.h"
#include "tests/support/sound_file.h"
#include "tests/support/sounded_parts.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/told_events.h"
#include "tests/support/word_fixtures.h"

namespace zqm::live {
namespace {

using namespace std::chrono_literals;

constexpr const char* kMixed = "⟦It⟧ ⟦costs⟧ ⟦$25.50⟧ ⟦for⟧ ⟦the⟧ ⟦e-mail⟧ ⟦service⟧, ⟦don't⟧ ⟦you⟧ ⟦think⟧? "
                               "⟦The⟧ ⟦café⟧ ⟦😀⟧ ⟦is⟧ ⟦open⟧.\\n"
                               "⟦A⟧ ⟦second⟧ ⟦paragraph⟧ ⟦follows⟧.";
constexpr const char* kOther =
    "⟦While⟧ ⟦one⟧ ⟦speaks⟧, ⟦another⟧ ⟦one⟧ ⟦speaks⟧ ⟦of⟧ ⟦something⟧ ⟦else⟧ ⟦entirely⟧.";

// Of the sound; what a busy machine makes a server stretch it by included.
constexpr double kTolerance = 0.3;

constexpr host::Seconds kPatience{300};

// Only the sound server is left.
bool hasNoEngine() {
    return support::childrenOfThisProcess().size() == support::childrenThatRun("pulseaudio").size();
}

class LiveSpeech : public testing::Test {
protected:
    LiveSpeech() { loadPlugin(runtime_); }
    void TearDown() override { EXPECT_TRUE(runtime_.reports().empty()); }

    // Seconds from the first to the last sound of a text spoken into a file.
    double secondsInFile(const std::string& text) {
        Speaker speaker(runtime_);
        const std::filesystem::path path = folder_ / "speech.wav";
        EXPECT_TRUE(speaker.startToFile(text, path));
        EXPECT_TRUE(speaker.waitForEnd());
        const support::SoundFile file(path);
        return support::heardSeconds(file.samples, file.rate);
    }

    support::TemporaryFolder folder_;
    support::PulseServer server_;
    support::ScopedPulseServer use_{server_};
    host::Runtime runtime_;
};

TEST_F(LiveSpeech, IsHeardAsLongAsInAFile) {
    const support::MarkedText text = support::parseMarkedText(kMixed);
    const support::MonitorRecording recording(server_);
    Speaker speaker(runtime_);
    ASSERT_TRUE(speaker.start(text.text));
    EXPECT_TRUE(speaker.object().get("isSpeaking").asBool());
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_FALSE(speaker.object().get("isSpeaking").asBool());
    ASSERT_TRUE(recording.catchUp());
    EXPECT_EQ(speaker.finished(), true);
    EXPECT_EQ(speaker.timesFinished(), 1U);
    EXPECT_EQ(speaker.words(), text.words);
    EXPECT_TRUE(speaker.textsWereWhole());
    const std::vector<float> samples = recording.samples();
    EXPECT_NEAR(support::heardSeconds(samples, recording.rate()), secondsInFile(text.text), kTolerance);
    EXPECT_GT(support::rms(samples), 0.01);
}

TEST_F(LiveSpeech, OfTwoObjectsIsHeardAtOnce) {
    const support::MarkedText first = support::parseMarkedText(kMixed);
    const support::MarkedText second = support::parseMarkedText(kOther);
    const support::MonitorRecording recording(server_);
    Speaker one(runtime_);
    Speaker other(runtime_);
    ASSERT_TRUE(one.start(first.text));
    ASSERT_TRUE(other.start(second.text));
    ASSERT_TRUE(one.waitForEnd());
    ASSERT_TRUE(other.waitForEnd());
    ASSERT_TRUE(recording.catchUp());
    EXPECT_EQ(one.finished(), true);
    EXPECT_EQ(other.finished(), true);
    EXPECT_EQ(one.words(), first.words);
    EXPECT_EQ(other.words(), second.words);
    // One after the other would be as long as both together.
    const double longer = std::max(secondsInFile(first.text), secondsInFile(second.text));
    EXPECT_NEAR(support::heardSeconds(recording.samples(), recording.rate()), longer, kTolerance);
}

TEST_F(LiveSpeech, OfEightObjectsAtOnceLosesNoEvent) {
    constexpr std::size_t kSpeakers = 8;
    struct Object {
        explicit Object(host::Runtime& runtime, const std::string& voice)
            : object(runtime.construct("NSSpeechSynthesizerZQM", voice)) {
            told.listenTo(object);
        }
        support::ToldEvents told;
        host::Object object;
    };
    // Short enough to be listened to.
    std::vector<support::WordFixture> paragraphs = support::wordFixtureParagraphs();
    std::ranges::sort(paragraphs, {}, [](const support::WordFixture& each) { return each.words.size(); });
    paragraphs.resize(kSpeakers);

    // From the first speech on the process keeps some open for those to come, and some until an engine has
    // ended.
    secondsInFile(paragraphs.front().text);
    ASSERT_TRUE(runtime_.runUntil([] { return hasNoEngine(); }, kPatience));
    const std::size_t descriptors = support::openDescriptors();
    {
        std::list<Object> inFiles;
        std::list<Object> aloud;
        for (const support::WordFixture& paragraph : paragraphs) {
            const std::string url = "file://" + (folder_ / paragraph.place).string() + ".wav";
            inFiles.emplace_back(runtime_, paragraph.voice);
            ASSERT_TRUE(inFiles.back().object.call("startSpeakingString", paragraph.text, url).asBool());
            aloud.emplace_back(runtime_, paragraph.voice);
        }
        auto paragraph = paragraphs.begin();
        for (Object& each : aloud) {
            ASSERT_TRUE(each.object.call("startSpeakingString", paragraph++->text).asBool());
        }
        const auto isOver = [](const Object& each) { return !each.told.ends.empty(); };
        ASSERT_TRUE(runtime_.runUntil(
            [&] { return std::ranges::all_of(aloud, isOver) && std::ranges::all_of(inFiles, isOver); },
            kPatience));
        for (paragraph = paragraphs.begin(); !aloud.empty(); ++paragraph) {
            SCOPED_TRACE(paragraph->voice);
            const support::ToldEvents& told = aloud.front().told;
            EXPECT_EQ(told.words, paragraph->words);
            EXPECT_EQ(told.phonemes, inFiles.front().told.phonemes);
            EXPECT_EQ(told.ends, std::vector<bool>{true});
            aloud.pop_front();
            inFiles.pop_front();
        }
    }
    EXPECT_TRUE(runtime_.runUntil([] { return hasNoEngine(); }, kPatience));
    EXPECT_EQ(support::openDescriptors(), descriptors);
}

TEST_F(LiveSpeech, GoesOnWithoutARunLoop) {
    const support::MarkedText text = support::parseMarkedText(kOther);
    const support::MonitorRecording recording(server_);
    Speaker speaker(runtime_);
    ASSERT_TRUE(speaker.start(text.text));
    while (speaker.object().get("isSpeaking").asBool()) {
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_TRUE(speaker.words().empty());
    EXPECT_FALSE(speaker.finished().has_value());
    ASSERT_TRUE(recording.catchUp());
    EXPECT_NEAR(support::heardSeconds(recording.samples(), recording.rate()), secondsInFile(text.text),
                kTolerance);
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), true);
    EXPECT_EQ(speaker.words(), text.words);
}

TEST_F(LiveSpeech, FallsSilentWhenItIsStopped) {
    const std::string text = longText();
    const support::MonitorRecording recording(server_);
    Speaker speaker(runtime_);
    ASSERT_TRUE(speaker.start(text));
    ASSERT_TRUE(speaker.waitForWords(4));
    speaker.stop();
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), false);
    EXPECT_LT(speaker.words().size(), kWordsOfLongText);
    std::this_thread::sleep_for(2s);
    ASSERT_TRUE(recording.catchUp());
    const double heard = support::heardSeconds(recording.samples(), recording.rate());
    EXPECT_GT(heard, 0.2);
    EXPECT_LT(heard, secondsInFile(text) / 2);
    EXPECT_EQ(speaker.timesFinished(), 1U);
}

TEST_F(LiveSpeech, FallsSilentWhenItsObjectGoes) {
    const std::string text = longText();
    const support::MonitorRecording recording(server_);
    {
        Speaker speaker(runtime_);
        ASSERT_TRUE(speaker.start(text));
        ASSERT_TRUE(speaker.waitForWords(4));
    }
    std::this_thread::sleep_for(2s);
    ASSERT_TRUE(recording.catchUp());
    EXPECT_LT(support::heardSeconds(recording.samples(), recording.rate()), secondsInFile(text) / 2);
}

TEST_F(LiveSpeech, IsAsLoudAsTheVolumeSays) {
    const std::string text = support::parseMarkedText(kOther).text;
    const auto loudnessAt = [&](double volume) {
        const support::MonitorRecording recording(server_);
        Speaker speaker(runtime_);
        speaker.object().set("Volume", volume);
        EXPECT_TRUE(speaker.start(text));
        EXPECT_TRUE(speaker.waitForEnd());
        EXPECT_EQ(speaker.finished(), true);
        EXPECT_TRUE(recording.catchUp());
        const std::vector<float> samples = recording.samples();
        const std::vector<support::SoundedPart> whole =
            support::soundedParts(samples, samples.size() + 1, 0.0005F);
        return whole.empty()
                   ? 0
                   : support::rms(std::span(samples).subspan(whole[0].begin, whole[0].end - whole[0].begin));
    };
    const double full = loudnessAt(1);
    EXPECT_GT(full, 0.02);
    EXPECT_NEAR(loudnessAt(0.25) / full, 0.25, 0.05);
    EXPECT_DOUBLE_EQ(loudnessAt(0), 0);
}

TEST_F(LiveSpeech, LeavesTheServerWhenItIsOver) {
    const auto isPlaying = [this] { return !server_.control({"list", "short", "sink-inputs"}).empty(); };
    Speaker speaker(runtime_);
    ASSERT_TRUE(speaker.start(longText()));
    ASSERT_TRUE(speaker.waitForWords(2));
    EXPECT_TRUE(isPlaying());
    speaker.stop();
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_TRUE(runtime_.runUntil([&] { return !isPlaying(); }, kPatience));
    ASSERT_TRUE(speaker.start(support::parseMarkedText(kOther).text));
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_EQ(speaker.finished(), true);
    EXPECT_TRUE(runtime_.runUntil([&] { return !isPlaying(); }, kPatience));
}

} // namespace
} // namespace zqm::live
