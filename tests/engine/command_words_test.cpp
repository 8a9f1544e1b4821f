#include "engine/listening/command_words.h"

#include "engine/text/utf8.h"
#include "tests/support/generated_text.h"
#include "tests/support/utf16.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace zqm::engine;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::SizeIs;

namespace zqm::engine {

void PrintTo(const CommandWord& word, std::ostream* stream) {
    *stream << '"' << word.text << '"';
    for (const std::string& phones : word.pronunciations) {
        *stream << " /" << phones << '/';
    }
}

} // namespace zqm::engine

namespace {

const std::string kNoWords = "it has no words";
const std::string kForeign = "it has letters that the recognizer doesn't know: it understands English";

CommandWords answer(const std::string& command) {
    static const PronunciationDictionary dictionary(ZQM_PRONUNCIATIONS);
    static Speaker speaker;
    static const CommandReader reader(dictionary, englishTranscriber(speaker));
    return reader.wordsOf(command);
}

std::vector<CommandWord> wordsOf(const std::string& command) {
    const CommandWords words = answer(command);
    if (const auto* const problem = std::get_if<std::string>(&words)) {
        ADD_FAILURE() << command << ": " << *problem;
        return {};
    }
    return std::get<std::vector<CommandWord>>(words);
}

std::string problemOf(const std::string& command) {
    const CommandWords words = answer(command);
    return std::holds_alternative<std::string>(words) ? std::get<std::string>(words) : std::string();
}

std::vector<std::vector<std::string>> soundsOf(const std::string& command) {
    std::vector<std::vector<std::string>> sounds;
    for (CommandWord& word : wordsOf(command)) {
        sounds.push_back(std::move(word.pronunciations));
    }
    return sounds;
}

// The likeliest pronunciation of each word, parted by "/".
std::string likeliest(const std::string& command) {
    std::string line;
    for (const std::vector<std::string>& pronunciations : soundsOf(command)) {
        line += (line.empty() ? "" : " / ") + pronunciations.front();
    }
    return line;
}

struct Said {
    const char* command;
    const char* phones;
};

void PrintTo(const Said& said, std::ostream* stream) {
    *stream << said.command;
}

class Command : public testing::TestWithParam<Said> {};

TEST_P(Command, soundsAsPeopleSayIt) {
    EXPECT_EQ(likeliest(GetParam().command), GetParam().phones);
}

INSTANTIATE_TEST_SUITE_P(
    OfListedWords, Command,
    testing::Values(Said{"stop", "S T AA P"}, Said{"STOP", "S T AA P"}, Said{"Stop.", "S T AA P"},
                    Said{"  stop\tplay\n", "S T AA P / P L EY"}, Said{"'play'", "P L EY"},
                    Said{"(play!)", "P L EY"}, Said{"play, stop", "P L EY / S T AA P"},
                    Said{"play\u2026stop", "P L EY / S T AA P"}, Said{"play\u2014stop", "P L EY / S T AA P"},
                    Said{"don't", "D OW N T"}, Said{"don\u2019t", "D OW N T"},
                    Said{"\u2018don\u2019t\u2019", "D OW N T"}, Said{"'cause", "K AH Z"},
                    Said{"o'clock", "AH K L AA K"}, Said{"e-mail", "IY M EY L"},
                    Said{"e\u2011mail", "IY M EY L"}, Said{"wi-fi stop", "W AY F AY / S T AA P"},
                    Said{"stop-play", "S T AA P / P L EY"}));

INSTANTIATE_TEST_SUITE_P(OfInitialsAndAbbreviations, Command,
                         testing::Values(Said{"TV", "T IY V IY"}, Said{"usb", "Y UW EH S B IY"},
                                         Said{"U.S.A.", "Y UW EH S EY"}, Said{"u.s.a", "Y UW EH S EY"},
                                         Said{"U.S", "Y UW EH S"}, Said{"B.B.C.", "B IY / B IY / S IY"},
                                         Said{"Mr. Who", "M IH S T ER / HH UW"},
                                         Said{"9 a.m.", "N AY N / EY EH M"},
                                         Said{"iPhone 12", "AY F OW N / T W EH L V"}));

INSTANTIATE_TEST_SUITE_P(OfLettersWithMarks, Command,
                         testing::Values(Said{"caf\u00E9", "K AH F EY"}, Said{"cafe\u0301", "K AH F EY"},
                                         Said{"na\u00EFve", "N AY IY V"}, Said{"Z\u00DCRICH", "Z UH R IH K"},
                                         Said{"\uFF50\uFF4C\uFF41\uFF59", "P L EY"},
                                         Said{"so\u00ADft", "S AA F T"}, Said{"st\u200Bop", "S T AA P"},
                                         Said{"Play\u2122", "P L EY"},
                                         Said{"\U0001F3B5 play \U0001F3B5", "P L EY"}));

INSTANTIATE_TEST_SUITE_P(
    OfSigns, Command,
    testing::Values(
        Said{"this & that", "DH IH S / AH N D / DH AE T"}, Said{"Q&A", "K Y UW / AH N D / AH"},
        Said{"C++", "S IY / P L AH S / P L AH S"}, Said{"C#", "S IY / SH AA R P"},
        Said{"#5", "N AH M B ER / F AY V"}, Said{"#", "HH AE SH"}, Said{"a@b", "AH / AE T / B IY"},
        Said{"10%", "T EH N / P ER S EH N T"}, Said{"-5", "M AY N AH S / F AY V"},
        Said{"\u22125", "M AY N AH S / F AY V"}, Said{"2+3", "T UW / P L AH S / TH R IY"},
        Said{"20\u00B0", "T W EH N T IY / D IH G R IY Z"}, Said{"\u2116 5", "N AH M B ER / F AY V"},
        Said{"press *", "P R EH S / S T AA R"}, Said{"play**", "P L EY"}, Said{"/", "S L AE SH"},
        Said{"5 m\u00B2", "F AY V / EH M / S K W EH R D"}, Said{"10\u2076", "T EH N / S IH K S"}));

INSTANTIATE_TEST_SUITE_P(OfNumbers, Command,
                         testing::Values(Said{"Channel 5", "CH AE N AH L / F AY V"},
                                         Said{"\u0663\u0664", "TH ER D IY F AO R"},
                                         Said{"mp3", "EH M P IY / TH R IY"}, Said{"3D", "TH R IY / D IY"},
                                         Said{"take 25", "T EY K / T W EH N T IY F AY V"}));

// Words that only espeak-ng knows how to say.
INSTANTIATE_TEST_SUITE_P(OfOtherWords, Command,
                         testing::Values(Said{"grafana", "G R AE F AA N AH"},
                                         Said{"mastodons", "M AE S T AH D AA N Z"},
                                         Said{"Alexa's", "AH L EH K S AH Z"},
                                         Said{"reboot's", "R IY B UW T S"}));

TEST(CommandWords, haveAllPronunciationsOfAWord) {
    EXPECT_THAT(soundsOf("the Dr."),
                ElementsAre(ElementsAre("DH AH", "DH IY"), ElementsAre("D R AY V", "D AA K T ER")));
}

TEST(CommandWords, ofANumberAreOneThatIsSaidInSeveralWays) {
    const std::vector<std::vector<std::string>> sounds = soundsOf("1066");
    ASSERT_THAT(sounds, SizeIs(1));
    EXPECT_THAT(sounds.front(),
                IsSupersetOf({"T EH N S IH K S T IY S IH K S", "W AH N TH AW Z AH N D S IH K S T IY S IH K S",
                              "W AH N Z IH R OW S IH K S S IH K S", "W AH N OW S IH K S S IH K S"}));
}

TEST(CommandWords, mayLeaveASignOut) {
    EXPECT_THAT(soundsOf("play/stop"),
                ElementsAre(ElementsAre("P L EY"), ElementsAre("S T AA P", "S L AE SH S T AA P")));
    EXPECT_THAT(soundsOf("youtube.com").at(1), IsSupersetOf({"K AA M", "D AA T K AA M"}));
    EXPECT_THAT(soundsOf("5-10").at(1), IsSupersetOf({"T EH N", "T UW T EH N"}));
}

TEST(CommandWords, ofAPartBehindANumberMayBeJoined) {
    for (const char* const command : {"2\u00BD", "2 1/2"}) {
        EXPECT_THAT(soundsOf(command).at(1), IsSupersetOf({"AH HH AE F", "AH N D AH HH AE F"})) << command;
    }
    EXPECT_THAT(soundsOf("2 and 1/2"), SizeIs(3));
    EXPECT_THAT(soundsOf("1/2").front(), Not(testing::Contains("AH N D AH HH AE F")));
}

TEST(CommandWords, nameTheScaleOfATemperature) {
    EXPECT_THAT(soundsOf("20 \u00B0C").at(2), ElementsAre("S IY", "S EH L S IY AH S"));
    EXPECT_THAT(soundsOf("20\u2109").at(2), ElementsAre("EH F", "F EH R AH N HH AY T"));
    EXPECT_THAT(soundsOf("20 \u00B0X").at(2), ElementsAre("EH K S"));
}

TEST(CommandWords, thatMayBeInitialsAreAlsoSpelled) {
    EXPECT_THAT(soundsOf("qbzx"), ElementsAre(testing::Contains("K Y UW B IY Z IY EH K S")));
    EXPECT_THAT(soundsOf("iqea").front(), testing::Contains("AY K Y UW IY EY"));
}

TEST(CommandWords, areMissingWhereNothingIsSaid) {
    for (const char* const command : {"", " ", "\t\n", "?!", "...", "\u2014", "' '", "\u00AD", "\u200B",
                                      "\U0001F3B5", "\U0001F468\u200D\U0001F469", "\u0301"}) {
        EXPECT_EQ(problemOf(command), kNoWords) << command;
    }
}

TEST(CommandWords, areNotKnownInOtherScripts) {
    for (const char* const command : {"\u041F\u0440\u0438\u0432\u0435\u0442", "play \u97F3\u697D", "\u03B1",
                                      "\u05E9", "\u3042", "\u0E01", "p\u0430ge"}) {
        EXPECT_EQ(problemOf(command), kForeign) << command;
    }
}

TEST(CommandWords, sayWhichWordHasNoKnownSound) {
    const PronunciationDictionary dictionary(ZQM_PRONUNCIATIONS);
    const CommandReader reader(dictionary, [](const std::string&) { return std::vector<std::string>(); });
    EXPECT_EQ(reader.wordsOf("play grafana"), CommandWords("it isn't known how \"grafana\" is pronounced"));
}

TEST(CommandWords, areTheSameInAnyLetters) {
    for (const char* const command : {"play all", "tv", "us", "grafana", "u.s.a.", "5th avenue"}) {
        std::string capitals(command);
        std::transform(capitals.begin(), capitals.end(), capitals.begin(), [](char letter) {
            return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
        });
        EXPECT_EQ(answer(command), answer(capitals));
    }
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t index = 0; index < count; ++index) {
        result += text;
    }
    return result;
}

TEST(CommandWords, mayBeVeryMany) {
    constexpr std::size_t kCount = 2000;
    EXPECT_THAT(wordsOf(repeated("play ", kCount)), SizeIs(kCount));
    EXPECT_THAT(wordsOf(repeated("7", kCount)), SizeIs(kCount));
    EXPECT_THAT(wordsOf(repeated("play-", kCount)), SizeIs(kCount));
    EXPECT_THAT(wordsOf(repeated("a.", kCount)), SizeIs(kCount));
    EXPECT_THAT(wordsOf(repeated("zxqv", kCount)), Not(IsEmpty())) << "one word without blanks";
    EXPECT_THAT(wordsOf("1" + repeated(".1", kCount)), SizeIs(kCount / 4 + 1)) << "four at a time";
    EXPECT_THAT(wordsOf("$" + repeated("9", kCount)), SizeIs(kCount + 1));
}

// The phones of the model, but for silence.
const std::set<std::string> kModelPhones{"AA", "AE", "AH", "AO", "AW", "AY", "B",  "CH", "D",  "DH",
                                         "EH", "ER", "EY", "F",  "G",  "HH", "IH", "IY", "JH", "K",
                                         "L",  "M",  "N",  "NG", "OW", "OY", "P",  "R",  "S",  "SH",
                                         "T",  "TH", "UH", "UW", "V",  "W",  "Y",  "Z",  "ZH"};

void expectSoundness(const std::vector<CommandWord>& words, const std::string& command,
                     std::map<std::string, std::vector<std::string>>& soundsByText) {
    EXPECT_THAT(words, Not(IsEmpty())) << command;
    for (const CommandWord& word : words) {
        EXPECT_THAT(word.text, Not(IsEmpty())) << command;
        EXPECT_THAT(word.pronunciations, Not(IsEmpty())) << command;
        const auto [known, isNew] = soundsByText.emplace(word.text, word.pronunciations);
        EXPECT_EQ(known->second, word.pronunciations) << word.text;
        EXPECT_EQ(std::set<std::string>(word.pronunciations.begin(), word.pronunciations.end()).size(),
                  word.pronunciations.size())
            << word.text;
        for (const std::string& phones : word.pronunciations) {
            std::istringstream stream(phones);
            std::string joined;
            for (std::string phone; stream >> phone;) {
                EXPECT_TRUE(kModelPhones.contains(phone)) << phone << " of " << word.text;
                joined += joined.empty() ? phone : ' ' + phone;
            }
            EXPECT_EQ(joined, phones);
            EXPECT_THAT(phones, Not(IsEmpty())) << word.text;
        }
    }
}

TEST(CommandWords, orAProblemAreFoundInAnyText) {
    constexpr std::size_t kTexts = 1500;
    constexpr std::size_t kLongest = 60;
    std::map<std::string, std::vector<std::string>> soundsByText;
    std::size_t understood = 0;
    zqm::support::TextGenerator generator(6);
    for (std::size_t index = 0; index < kTexts; ++index) {
        const std::string text = zqm::support::toUtf8(generator.next(generator.below(kLongest)));
        // The generator mixes scripts: what of a text is Latin is tried, too.
        std::string latin;
        for (const char32_t character : fromUtf8(text)) {
            if (character < 0x250 || (character >= 0x2000 && character < 0x2C00)) {
                appendUtf8(latin, character);
            }
        }
        for (const std::string& command : {text, latin}) {
            const CommandWords words = answer(command);
            if (const auto* const problem = std::get_if<std::string>(&words)) {
                EXPECT_THAT(*problem, Not(IsEmpty()));
            } else {
                expectSoundness(std::get<std::vector<CommandWord>>(words), command, soundsByText);
                ++understood;
            }
        }
    }
    EXPECT_GT(understood, kTexts / 2);
}

} // namespace
