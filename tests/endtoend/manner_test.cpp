// What a host program does to the way a text is spoken: boundaries, commands, dictionaries, phonemes.

#include "tests/endtoend/speaking.h"
#include "tests/support/sound_file.h"
#include "tests/support/speech_dictionary.h"
#include "tests/support/unread_pipe.h"

#include <fstream>
#include <gmock/gmock.h>

namespace zqm::endtoend {
namespace {

using testing::ElementsAre;

class Manner : public SpeakingTest {
protected:
    static constexpr int kImmediate = 0;
    static constexpr int kWord = 1;
    static constexpr int kSentence = 2;

    static std::string sentences(int count) {
        std::string text;
        for (int sentence = 0; sentence < count; ++sentence) {
            text += "One and two. ";
        }
        return text;
    }
    static std::vector<float> samples(const std::filesystem::path& path) {
        return support::SoundFile(path).samples;
    }
};

TEST_F(Manner, AFolderItemNamesTheFile) {
    Speaker speaker(runtime);
    const auto named = folder / "spoken here.flac";
    ASSERT_TRUE(speaker.object.call("startSpeakingString", "Hello world", runtime.folderItem(named.string()))
                    .asBool());
    ASSERT_TRUE(speaker.waitForEnd());
    EXPECT_THAT(speaker.ends, ElementsAre(true));
    EXPECT_EQ(speaker.words.size(), 2U);
    EXPECT_GT(support::SoundFile(named).seconds(), 0.5);
    EXPECT_FALSE(speaker.object
                     .call("startSpeakingString", "Hello world",
                           runtime.folderItem((folder / "none" / "a.wav").string()))
                     .asBool());
    EXPECT_FALSE(speaker.object.call("startSpeakingString", "Hello world", host::Object()).asBool());
}

// Of a pipe, since that surely isn't over when it is stopped.
TEST_F(Manner, StopAtABoundaryEndsTheFileThere) {
    const std::size_t words = std::size_t{3} * 2000;
    for (const int boundary : {kImmediate, kWord, kSentence}) {
        SCOPED_TRACE(boundary);
        const auto path = folder / (std::to_string(boundary) + ".ogg");
        const support::UnreadPipe pipe(path);
        ASSERT_TRUE(pipe.isMade());
        Speaker speaker(runtime);
        ASSERT_TRUE(speaker.start(sentences(2000), path));
        ASSERT_TRUE(pipe.fillsUp());
        speaker.object.call("stopSpeakingAtBoundary", boundary);
        std::ofstream copy(folder / "copy.ogg", std::ios::binary);
        ASSERT_TRUE(runtime.runUntil(
            [&] {
                copy << pipe.read();
                return !speaker.ends.empty();
            },
            kDeadline));
        copy.close();
        EXPECT_THAT(speaker.ends, ElementsAre(false));
        EXPECT_LT(speaker.words.size(), words);
        EXPECT_FALSE(speaker.object.get("isSpeaking").asBool());
        if (boundary != kImmediate) { // that waits for nobody, and what isn't read yet is lost
            EXPECT_GT(support::SoundFile(folder / "copy.ogg").frames(), 0U);
        }
    }
}

// Each with an engine of its own: what one has spoken before is heard in the noise of what follows.
TEST_F(Manner, APauseHoldsTheSpeechAndContinuingLosesNothing) {
    const std::string text = sentences(200);
    Speaker undisturbed(runtime);
    const auto whole = folder / "whole.wav";
    undisturbed.speak(text, whole);
    for (const int boundary : {kImmediate, kWord, kSentence}) {
        SCOPED_TRACE(boundary);
        Speaker speaker(runtime);
        ASSERT_TRUE(speaker.start(text, file));
        speaker.object.call("pauseSpeakingAtBoundary", boundary);
        speaker.object.call("continueSpeaking");
        ASSERT_TRUE(speaker.waitForEnd());
        EXPECT_THAT(speaker.ends, ElementsAre(true));
        EXPECT_EQ(speaker.words, undisturbed.words);
        EXPECT_TRUE(samples(file) == samples(whole));
    }
}

TEST_F(Manner, CommandsAreObeyedAndTold) {
    Speaker speaker(runtime);
    std::vector<std::string> told;
    speaker.object.on("didEncounterSyncMessage",
                      [&](const host::Arguments& event) { told.push_back("sync " + event[0].asText()); });
    speaker.object.on("didEncounterErrorAtIndex", [&](const host::Arguments& event) {
        told.push_back("error " + std::to_string(event[0].asInteger()));
        EXPECT_FALSE(event[2].asText().empty());
        EXPECT_EQ(event[1].asText(), "One [[sync 0x41]]two [[nope]][[slnc 2000]]three.");
    });
    speaker.speak("One [[sync 0x41]]two [[nope]][[slnc 2000]]three.", file);
    EXPECT_THAT(told, ElementsAre("sync A", testing::StartsWith("error 2")));
    EXPECT_EQ(speaker.words, (std::vector<support::WordRange>{{0, 3}, {17, 3}, {42, 5}}));
    const auto plain = folder / "plain.wav";
    speaker.speak("One two three.", plain);
    EXPECT_GT(support::SoundFile(file).seconds(), support::SoundFile(plain).seconds() + 1.5);
}

TEST_F(Manner, PhonemesAreToldFromSilenceToSilence) {
    Speaker speaker(runtime, "gmw/en-US");
    std::vector<std::int64_t> opcodes;
    speaker.object.on("willSpeakPhoneme",
                      [&](const host::Arguments& event) { opcodes.push_back(event[0].asInteger()); });
    speaker.speak("dog", file);
    EXPECT_THAT(opcodes, ElementsAre(0, 20, 4, 23, 0));
    EXPECT_EQ(speaker.object.call("phonemesFromText", "dog").asText(), "_d1AOg.");
    EXPECT_TRUE(speaker.object.call("phonemesFromText", host::String()).isNull());
}

TEST_F(Manner, ADictionaryChangesAPronunciation) {
    const auto before = folder / "before.wav";
    const auto wanted = folder / "wanted.wav";
    Speaker(runtime, "gmw/en-US").speak("zqm", before);
    Speaker(runtime, "gmw/en-US").speak("[[inpt PHON]]dAOg", wanted);

    Speaker speaker(runtime, "gmw/en-US");
    speaker.object.call("addSpeechDictionary", support::speechDictionary(runtime, "zqm", "dAOg"));
    speaker.speak("zqm", file);
    EXPECT_FALSE(samples(file) == samples(before));
    EXPECT_TRUE(samples(file) == samples(wanted));
    speaker.object.call("addSpeechDictionary", host::Object());
}

TEST_F(Manner, SetVoiceAnswersWhetherItWasTaken) {
    Speaker speaker(runtime);
    EXPECT_TRUE(speaker.object.call("setVoice", "gmw/de").asBool());
    EXPECT_EQ(speaker.object.get("voice").asText(), "gmw/de");
    EXPECT_FALSE(speaker.object.call("setVoice", "no such voice").asBool());
    EXPECT_EQ(speaker.object.get("voice").asText(), "gmw/de");
    EXPECT_TRUE(speaker.object.call("setVoice", host::String()).asBool());
    EXPECT_EQ(speaker.object.get("voice").asText(),
              runtime.callShared(kSynthesizer, "defaultVoice").asText());
}

} // namespace
} // namespace zqm::endtoend
