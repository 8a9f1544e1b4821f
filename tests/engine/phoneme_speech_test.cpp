// The phonemes that an engine tells of, takes instead of text, and knows for the words of a lexicon.

#include "engine/protocol/phoneme_symbols.h"
#include "engine/protocol/protocol.h"
#include "tests/engine/engine_process.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/word_fixtures.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

template <typename Message>
std::vector<Message> allOf(const std::vector<Event>& events) {
    std::vector<Message> list;
    for (const Event& event : events) {
        if (const auto* const message = std::get_if<Message>(&event)) {
            list.push_back(*message);
        }
    }
    return list;
}

std::vector<int> opcodes(const std::vector<Event>& events) {
    std::vector<int> list;
    for (const Phoneme& phoneme : allOf<Phoneme>(events)) {
        list.push_back(phoneme.opcode);
    }
    return list;
}

// Everything wrong with the opcodes of one utterance.
std::vector<std::string> opcodeFaults(const std::vector<int>& opcodes) {
    std::vector<std::string> faults;
    if (opcodes.empty() || opcodes.front() != kSilenceOpcode || opcodes.back() != kSilenceOpcode) {
        faults.emplace_back("no silence at the beginning or end");
    }
    for (std::size_t index = 0; index < opcodes.size(); ++index) {
        if (opcodes[index] < 0 || opcodes[index] >= static_cast<int>(phonemeSymbols().size())) {
            faults.push_back("no opcode: " + std::to_string(opcodes[index]));
        }
        if (index > 0 && opcodes[index] == kSilenceOpcode && opcodes[index - 1] == kSilenceOpcode) {
            faults.push_back("silence twice at " + std::to_string(index));
        }
    }
    return faults;
}

class PhonemeSpeech : public testing::Test {
protected:
    std::vector<Event> say(const std::string& text, const std::string& voice = "gmw/en-US") {
        Target target(folder.path(), std::to_string(++number) + ".wav");
        Speak request = speak(number, text);
        request.voice = voice;
        request.output = target.output;
        engine.send(request, std::move(target.descriptors));
        std::vector<Event> events = engine.untilEnd(number);
        EXPECT_THAT(faults(events, number), IsEmpty());
        EXPECT_THAT(opcodeFaults(opcodes(events)), IsEmpty()) << text;
        return events;
    }

    std::string phonemes(const std::string& text, const std::string& voice = "gmw/en-US") {
        engine.send(GetPhonemes{text, voice});
        const auto answer = engine.nextOf<Phonemes>();
        return answer ? answer->text : "no answer";
    }

    TemporaryFolder folder;
    EngineProcess engine{Environment{{"PULSE_SERVER", "unix:/nonexistent/pulse"}}};
    std::uint64_t number = 0;
};

TEST_F(PhonemeSpeech, tellsOpcodesBetweenSilences) {
    EXPECT_THAT(opcodes(say("tin")), ElementsAre(0, 35, 8, 29, 0));
    EXPECT_THAT(opcodes(say("See, tin. See.")), ElementsAre(0, 33, 6, 0, 35, 8, 29, 0, 33, 6, 0));
}

TEST_F(PhonemeSpeech, isSilentWhereNothingIsSpoken) {
    EXPECT_THAT(opcodes(say(" ... ")), ElementsAre(0));
    EXPECT_THAT(opcodes(say("tin [[slnc 200]]tin")), ElementsAre(0, 35, 8, 29, 0, 35, 8, 29, 0));
}

TEST_F(PhonemeSpeech, tellsAWordBeforeItsPhonemes) {
    std::vector<int> kinds;
    for (const Event& event : say("See tin")) {
        if (std::holds_alternative<Word>(event)) {
            kinds.push_back(-1);
        } else if (const auto* const phoneme = std::get_if<Phoneme>(&event)) {
            kinds.push_back(phoneme->opcode);
        }
    }
    std::erase(kinds, kSilenceOpcode);
    EXPECT_THAT(kinds, ElementsAre(-1, 33, 6, -1, 35, 8, 29));
}

TEST_F(PhonemeSpeech, isCompleteInEveryLanguageWithMarkedWords) {
    std::map<std::string, std::string> texts;
    for (const WordFixture& fixture : wordFixtures()) {
        texts[fixture.voice] += fixture.text + "\n\n";
    }
    ASSERT_GE(texts.size(), 20U);
    for (const auto& [voice, text] : texts) {
        const std::vector<Event> events = say(text, voice);
        const auto words = allOf<Word>(events).size();
        EXPECT_GT(words, 10U) << voice;
        EXPECT_GT(opcodes(events).size(), 2 * words) << voice;
    }
}

TEST_F(PhonemeSpeech, speaksSymbols) {
    const std::vector<int> text = opcodes(say("dog"));
    EXPECT_EQ(opcodes(say("[[inpt PHON]]" + phonemes("dog"))), text);
    EXPECT_EQ(opcodes(say("[[inpt PHON]]" + phonemes("dog") + "[[inpt TEXT]]")), text);
}

TEST_F(PhonemeSpeech, tellsTheWordsOfSymbolsInTheirTime) {
    const std::string prefix = "\xF0\x9F\x98\x80 yes [[inpt PHON]]"; // two units for the emoji
    const std::string symbols = "_h1EHl=OW % ~tIHn, . _s1IY.";
    const std::string text = prefix + symbols + "[[inpt TEXT]] e-mail";
    const std::vector<Event> events = say(text);
    ASSERT_THAT(cutOut(text, events),
                ElementsAre("\xF0\x9F\x98\x80", "yes", "_h1EHl=OW", "~tIHn,", "_s1IY.", "e-mail"));
    std::vector<int> kinds;
    for (const Event& event : events) {
        if (const auto* const word = std::get_if<Word>(&event)) {
            kinds.push_back(-1 - static_cast<int>(word->position));
        } else if (const auto* const phoneme = std::get_if<Phoneme>(&event)) {
            kinds.push_back(phoneme->opcode);
        }
    }
    std::erase(kinds, kSilenceOpcode);
    const int at = static_cast<int>(prefix.size()) - 2; // UTF-16 units
    const auto begin = std::find(kinds.begin(), kinds.end(), -1 - at);
    const auto end = std::find(kinds.begin(), kinds.end(), -1 - static_cast<int>(text.find("e-mail") - 2));
    EXPECT_THAT(std::vector<int>(begin, end),
                ElementsAre(-1 - at, 24, 7, 27, 15, -1 - (at + 12), 35, 8, 29, -1 - (at + 21), 33, 6));
}

TEST_F(PhonemeSpeech, tellsWhatIsNoSymbolByItsPlaceInTheText) {
    const std::string prefix = "A \xF0\x9F\x98\x80 [[inpt PHON]]"; // two units for the emoji
    const std::vector<Problem> problems =
        allOf<Problem>(say(prefix + "_d1AOg \xC3\xA9 _d1AOg[[inpt TEXT]] yes"));
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].position, 2U + 2 + 1 + 13 + 7);
    EXPECT_EQ(problems[0].code, -247);
    EXPECT_NE(problems[0].message, "");
}

TEST_F(PhonemeSpeech, tellsThePhonemesOfATextWhileItSpeaks) {
    EXPECT_EQ(phonemes(""), "");
    EXPECT_EQ(phonemes("dog", "no such voice"), "");
    const std::string dog = phonemes("dog");
    EXPECT_THAT(dog, testing::MatchesRegex("_d1A[OA]g\\."));
    EXPECT_NE(phonemes("Hund", "gmw/de"), phonemes("Hund"));
    EXPECT_THAT(opcodes(say("tin")), ElementsAre(0, 35, 8, 29, 0));
}

TEST_F(PhonemeSpeech, saysTheWordsOfALexiconAsItSays) {
    const std::vector<int> usual = opcodes(say("dog"));
    engine.send(SetLexicon{{{"en_US", "2021-01-01 00:00:00 +0000", {{"dog", "AXbUWt"}, {"cat", "4444"}}, {}},
                            {"en_US", "2020-01-01 00:00:00 +0000", {{"dog", "tIHn"}, {"cow", "tIHn"}}, {}}}});
    EXPECT_THAT(opcodes(say("dog")), ElementsAre(0, 5, 18, 12, 35, 0));
    EXPECT_THAT(opcodes(say("cow")), ElementsAre(0, 35, 8, 29, 0));
    EXPECT_THAT(cutOut("A dog, a cow.", say("A dog, a cow.")), ElementsAre("A", "dog", "a", "cow"));
    engine.send(SetLexicon{});
    EXPECT_EQ(opcodes(say("dog")), usual);
}

} // namespace
