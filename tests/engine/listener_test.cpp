#include "engine/listening/listener.h"

#include "engine/listening/sound_decoder.h"
#include "engine/protocol/descriptor.h"
#include "tests/support/sound_file.h"
#include "tests/support/spoken_file.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <cmath>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <random>

using namespace zqm::engine;
using namespace zqm::support;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

namespace {

using Sound = std::vector<std::int16_t>;
using Heard = std::vector<std::optional<std::size_t>>;

constexpr const char* kSlt = "flite slt";

Sound silence(double seconds, double deviation = 12) {
    std::mt19937 generator; // the same in each run
    std::normal_distribution<double> noise(0, deviation);
    Sound sound(static_cast<std::size_t>(seconds * kListeningRate));
    for (std::int16_t& sample : sound) {
        sample = static_cast<std::int16_t>(std::clamp(noise(generator), -32768.0, 32767.0));
    }
    return sound;
}

// What a voice says, between silences.
const Sound& spoken(const std::string& text, const std::string& voice = kSlt) {
    static std::map<std::pair<std::string, std::string>, Sound> known;
    const auto [entry, isNew] = known.try_emplace({voice, text});
    if (isNew) {
        const TemporaryFolder folder;
        writeSpokenFile("", voice, text, folder / "said.wav");
        const SoundFile file(folder / "said.wav");
        EXPECT_EQ(file.rate, kListeningRate);
        // The room doesn't fall silent while somebody speaks in it.
        constexpr std::size_t kAround = kListeningRate * 7 / 10;
        Sound& sound = entry->second;
        sound = silence(file.seconds() + 1.4);
        for (std::size_t i = 0; i < file.samples.size(); ++i) {
            const double sample = sound[kAround + i] + file.samples[i] * 32767.0;
            sound[kAround + i] = static_cast<std::int16_t>(std::clamp(sample, -32768.0, 32767.0));
        }
    }
    return entry->second;
}

Sound changed(Sound sound, const auto& change) {
    for (std::int16_t& sample : sound) {
        sample = static_cast<std::int16_t>(std::clamp<double>(change(sample), -32768, 32767));
    }
    return sound;
}

// What a voice of ours says, as clean as it was made.
Sound betweenZeros(const std::string& text) {
    const TemporaryFolder folder;
    writeSpokenFile(ZQMSPEECH_PROGRAM, "espeak-ng gmw/en-US", text, folder / "said.wav");
    const zqm::protocol::Descriptor file(::open((folder / "said.wav").c_str(), O_RDONLY | O_CLOEXEC));
    Sound sound(kListeningRate);
    SoundDecoder decoder(file.get());
    while (const auto samples = decoder.next()) {
        sound.insert(sound.end(), samples->begin(), samples->end());
    }
    sound.resize(sound.size() + kListeningRate);
    return sound;
}

// The model takes a while to load, so that all tests share it.
class ListenerTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        shared = std::make_unique<Listener>([](const std::string& word) {
            return word == "zorbo" ? std::vector<std::string>{"Z AO R B OW"} : std::vector<std::string>{};
        });
    }
    static void TearDownTestSuite() { shared.reset(); }

    ListenerTest() {
        listener.reset();
        listener.onHeard([&](const HeardPhrase& phrase) { phrases.push_back(phrase); });
        listener.onCommandsSet([&](std::uint64_t list, const std::vector<UnusableCommand>& reasons) {
            lists.push_back(list);
            problems = reasons;
        });
    }

    Heard hear(const Sound& sound) {
        phrases.clear();
        listener.reset();
        listener.take(sound);
        listener.finish();
        Heard heard;
        std::transform(phrases.begin(), phrases.end(), std::back_inserter(heard),
                       [](const HeardPhrase& phrase) { return phrase.command; });
        return heard;
    }

    static std::unique_ptr<Listener> shared;
    Listener& listener = *shared;
    std::vector<HeardPhrase> phrases;
    std::vector<std::uint64_t> lists;
    std::vector<UnusableCommand> problems;
};

std::unique_ptr<Listener> ListenerTest::shared;

// What was heard, as one row for each phrase.
auto only(std::size_t command) {
    return ElementsAre(Optional(command));
}
auto rejected() {
    return ElementsAre(std::optional<std::size_t>());
}

TEST_F(ListenerTest, namesTheMissingModelAndItsPackage) {
    const TemporaryFolder folder;
    try {
        const Listener missing([](const std::string&) { return std::vector<std::string>{}; },
                               folder.path().string());
        FAIL() << "no model, and no complaint";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr(folder.path().string()));
    }
    std::filesystem::copy(Listener::installedModel() + "/cmudict-en-us.dict", folder.path());
    try {
        const Listener missing([](const std::string&) { return std::vector<std::string>{}; },
                               folder.path().string());
        FAIL() << "half a model, and no complaint";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("mdef"));
        EXPECT_THAT(error.what(), HasSubstr("pocketsphinx-en-us"));
    }
}

TEST_F(ListenerTest, hearsCommandsAndRejectsOtherSentences) {
    const std::vector<std::string> commands{"open the window", "play music", "cancel",       "lock screen",
                                            "shut down",       "good night", "read it again"};
    listener.setCommands(1, commands);
    for (const char* voice : {"flite slt", "flite rms"}) {
        int right = 0;
        for (std::size_t i = 0; i < commands.size(); ++i) {
            right += hear(spoken(commands[i], voice)) == Heard{i} ? 1 : 0;
        }
        EXPECT_GE(right, 6) << voice;
    }
    int falselyHeard = 0;
    for (const char* sentence :
         {"I have never been to London before", "where did you put my keys", "she bought three apples",
          "let us have dinner at seven", "the meeting starts at half past ten", "it rained all afternoon",
          "please open the window in the morning", "close the door", "thank you very much"}) {
        const Heard heard = hear(spoken(sentence));
        falselyHeard +=
            std::any_of(heard.begin(), heard.end(), [](const auto& command) { return command.has_value(); })
                ? 1
                : 0;
    }
    EXPECT_LE(falselyHeard, 1);
}

TEST_F(ListenerTest, tellsWhenAPhraseWasSaidAndOfWhichList) {
    listener.setCommands(7, {"open the window"});
    const Sound& sound = spoken("open the window");
    ASSERT_THAT(hear(sound), only(0));
    const double end = static_cast<double>(sound.size()) / kListeningRate;
    EXPECT_EQ(phrases[0].list, 7U);
    EXPECT_NEAR(phrases[0].begin, 0.8, 0.2);
    EXPECT_NEAR(phrases[0].end, end - 0.8, 0.25);
}

TEST_F(ListenerTest, decidesWithinFourTenthsOfASecondOfSound) {
    listener.setCommands(1, {"open the window"});
    const Sound& sound = spoken("open the window");
    listener.reset();
    std::size_t taken = 0;
    while (phrases.empty() && taken < sound.size()) {
        listener.take({&sound[taken], 1});
        ++taken;
    }
    ASSERT_EQ(phrases.size(), 1U);
    EXPECT_LT(static_cast<double>(taken) / kListeningRate - phrases[0].end, 0.4);
}

TEST_F(ListenerTest, hearsTheSameInPortionsOfAnySize) {
    listener.setCommands(1, {"play music", "stop"});
    Sound sound = spoken("play music");
    const Sound& stop = spoken("stop");
    sound.insert(sound.end(), stop.begin(), stop.end());
    ASSERT_THAT(hear(sound), ElementsAre(Optional(0U), Optional(1U)));
    const std::vector<HeardPhrase> whole = phrases;
    phrases.clear();
    listener.reset();
    for (std::size_t at = 0; at < sound.size(); at += 777) {
        listener.take({&sound[at], std::min<std::size_t>(777, sound.size() - at)});
    }
    listener.finish();
    EXPECT_EQ(phrases, whole);
}

TEST_F(ListenerTest, decidesWhatIsInTheAirAtTheEnd) {
    listener.setCommands(1, {"play music"});
    Sound sound = spoken("play music");
    sound.resize(sound.size() - static_cast<std::size_t>(0.65 * kListeningRate));
    EXPECT_THAT(hear(sound), only(0));
}

TEST_F(ListenerTest, hearsTheFirstOfEqualCommands) {
    listener.setCommands(1, {"good night", "play music", "Play Music!", "write", "right"});
    EXPECT_THAT(hear(spoken("play music")), only(1));
    EXPECT_THAT(hear(spoken("right")), only(3));
}

TEST_F(ListenerTest, tellsACommandFromALongerOneThatBeginsSo) {
    listener.setCommands(1, {"stop", "stop the music now"});
    EXPECT_THAT(hear(spoken("stop")), only(0));
    EXPECT_THAT(hear(spoken("stop the music now")), only(1));
}

TEST_F(ListenerTest, hearsWordsThatOnlyTheTranscriberKnows) {
    listener.setCommands(1, {"call Zorbo", "call home"});
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_THAT(hear(spoken("call zorbo")), only(0));
}

TEST_F(ListenerTest, reportsCommandsThatCantBeSaidAndHearsTheOthers) {
    listener.setCommands(3, {"!!!", "play music"});
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].command, 0U);
    EXPECT_FALSE(problems[0].reason.empty());
    EXPECT_THAT(hear(spoken("play music")), only(1));
}

TEST_F(ListenerTest, rejectsAllWithoutCommands) {
    listener.setCommands(1, {"play music"});
    listener.setCommands(2, {});
    EXPECT_THAT(hear(spoken("play music")), rejected());
    listener.setCommands(3, {"?"});
    EXPECT_THAT(hear(spoken("play music")), rejected());
    EXPECT_THAT(lists, ElementsAre(1, 2, 3));
}

TEST_F(ListenerTest, changesTheCommandsBetweenPhrasesOnly) {
    listener.setCommands(1, {"play music"});
    const Sound& sound = spoken("play music");
    lists.clear();
    listener.take({sound.data(), sound.size() / 2});
    listener.setCommands(2, {"open the window"});
    EXPECT_THAT(lists, IsEmpty());
    listener.setCommands(3, {"good night", "play music"});
    listener.take({&sound[sound.size() / 2], sound.size() - sound.size() / 2});
    ASSERT_EQ(phrases.size(), 1U);
    EXPECT_EQ(phrases[0].list, 1U);
    EXPECT_THAT(phrases[0].command, Optional(0U));
    EXPECT_THAT(lists, ElementsAre(3));
    EXPECT_THAT(hear(sound), only(1));
}

TEST_F(ListenerTest, takesTheNewCommandsWhenAPhraseIsDropped) {
    listener.setCommands(1, {"play music"});
    const Sound& sound = spoken("play music");
    listener.take({sound.data(), sound.size() / 2});
    listener.setCommands(2, {"play music"});
    listener.reset();
    EXPECT_THAT(lists, ElementsAre(1, 2));
    listener.finish();
    EXPECT_THAT(phrases, IsEmpty());
}

TEST_F(ListenerTest, hearsNothingInSilence) {
    listener.setCommands(1, {"no", "up"});
    EXPECT_THAT(hear(silence(5)), IsEmpty());
    EXPECT_THAT(hear(Sound(std::size_t{5} * kListeningRate)), IsEmpty());
}

TEST_F(ListenerTest, takesNoNoiseAndNoMusicForACommand) {
    listener.setCommands(1, {"no", "up", "stop", "play music"});
    const Sound noise = silence(3, 1500);
    Sound chord;
    for (int i = 0; i < 2 * kListeningRate; ++i) {
        const double time = static_cast<double>(i) / kListeningRate;
        double sum = 0;
        for (const double frequency : {262.0, 330.0, 392.0}) {
            sum += std::sin(2 * M_PI * frequency * time);
        }
        chord.push_back(static_cast<std::int16_t>(4000 * sum));
    }
    for (Sound sound : {noise, chord}) {
        const Sound quiet = silence(1);
        sound.insert(sound.begin(), quiet.begin(), quiet.end());
        sound.insert(sound.end(), quiet.begin(), quiet.end());
        for (const auto& command : hear(sound)) {
            EXPECT_EQ(command, std::nullopt);
        }
    }
}

// As files and sound servers have them where nobody speaks.
TEST_F(ListenerTest, hearsCommandsBetweenZeros) {
    const std::vector<std::string> commands{"next track", "save file", "select all", "good night",
                                            "minimize",   "help",      "stop"};
    listener.setCommands(1, commands);
    int right = 0;
    for (std::size_t i = 0; i < commands.size(); ++i) {
        right += hear(betweenZeros(commands[i])) == Heard{i} ? 1 : 0;
    }
    EXPECT_GE(right, 6);
}

TEST_F(ListenerTest, hearsCommandsSoonAfterANoiseBegan) {
    listener.setCommands(1, {"good night", "play music", "open the window"});
    Sound sound(kListeningRate);
    const Sound noise = silence(4, 60);
    sound.insert(sound.end(), noise.begin(), noise.end());
    Sound speech = spoken("play music");
    for (std::size_t i = 0; i < speech.size(); ++i) {
        speech[i] = static_cast<std::int16_t>(std::clamp(speech[i] + noise[i], -32768, 32767));
    }
    sound.insert(sound.end(), speech.begin(), speech.end());
    const Heard heard = hear(sound);
    ASSERT_FALSE(heard.empty());
    EXPECT_THAT(heard.back(), Optional(1U));
}

TEST_F(ListenerTest, hearsLoudSoftShiftedAndCutOffSound) {
    listener.setCommands(1, {"good night", "play music", "open the window"});
    const Sound& sound = spoken("play music");
    EXPECT_THAT(hear(changed(sound, [](double sample) { return sample / 8; })), only(1)) << "soft";
    EXPECT_THAT(hear(changed(sound, [](double sample) { return sample + 6000; })), only(1)) << "shifted";
    EXPECT_THAT(hear(changed(sound, [](double sample) { return 2 * sample; })), only(1)) << "cut off";
}

TEST_F(ListenerTest, hearsACommandOfFiveHundredCharacters) {
    std::string text;
    for (int i = 0; text.size() < 500; ++i) {
        text += i % 2 == 0 ? "the music plays in the garden and " : "we open the window at night and ";
    }
    text += "stop";
    listener.setCommands(1, {"stop", text});
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_THAT(hear(spoken(text)), only(1));
}

TEST_F(ListenerTest, rejectsSpeechThatIsLongerThanAnyCommandAsOnePhrase) {
    listener.setCommands(1, {"stop"});
    Sound speech;
    for (int i = 0; i < 30; ++i) {
        const Sound& sound = spoken("where did you put my keys");
        constexpr std::size_t kAround = kListeningRate * 7 / 10;
        speech.insert(speech.end(), sound.begin() + kAround, sound.end() - kAround);
    }
    const Sound quiet = silence(1);
    speech.insert(speech.begin(), quiet.begin(), quiet.end());
    const Sound& stop = spoken("stop");
    speech.insert(speech.end(), stop.begin(), stop.end());
    const Heard heard = hear(speech);
    ASSERT_FALSE(heard.empty());
    EXPECT_THAT(heard.back(), Optional(0U));
    EXPECT_TRUE(
        std::none_of(heard.begin(), heard.end() - 1, [](const auto& one) { return one.has_value(); }));
}

TEST_F(ListenerTest, takesAThousandCommands) {
    const std::vector<std::string> verbs{"open", "close", "find", "copy", "print",
                                         "send", "save",  "show", "move", "lock"};
    const std::vector<std::string> kinds{"red",    "blue", "old",   "new",  "first",
                                         "second", "big",  "small", "left", "right"};
    const std::vector<std::string> things{"window", "folder", "letter", "picture", "table",
                                          "door",   "radio",  "number", "page",    "song"};
    std::vector<std::string> commands;
    for (const std::string& verb : verbs) {
        for (const std::string& kind : kinds) {
            for (const std::string& thing : things) {
                commands.push_back(verb);
                commands.back().append(" the ").append(kind).append(" ").append(thing);
            }
        }
    }
    listener.setCommands(1, commands);
    EXPECT_THAT(problems, IsEmpty());
    EXPECT_THAT(hear(spoken("print the blue letter")), only(412));
}

TEST_F(ListenerTest, forgetsTheWordsOfEarlierLists) {
    const std::vector<std::string> syllables{"B AA", "D IY", "G UW", "K EH", "L OW",
                                             "M AH", "N AE", "P ER", "S IH", "T AO"};
    Listener inventive([&](const std::string& word) {
        std::string phones;
        for (const char letter : word) {
            phones += phones.empty() ? "" : " ";
            phones += syllables[static_cast<std::size_t>(letter - 'a')];
        }
        return std::vector<std::string>{phones};
    });
    std::vector<HeardPhrase> heard;
    inventive.onHeard([&](const HeardPhrase& phrase) { heard.push_back(phrase); });
    for (int list = 0; list < 60; ++list) {
        std::vector<std::string> commands;
        for (int i = 0; i < 100; ++i) {
            std::string word;
            for (int number = 100000 + list * 100 + i; number > 0; number /= 10) {
                word += static_cast<char>('a' + number % 10);
            }
            commands.push_back(word);
        }
        commands.push_back("play music");
        inventive.setCommands(static_cast<std::uint64_t>(list), commands);
    }
    inventive.take(spoken("play music"));
    ASSERT_EQ(heard.size(), 1U);
    EXPECT_THAT(heard[0].command, Optional(100U));
}

} // namespace
