// Text to symbols and the symbols spoken again: the same phonemes, for English.

#include "engine/phonemes/phoneme_text.h"
#include "engine/phonemes/text_phonemes.h"
#include "tests/engine/espeak_phonemes.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <vector>

using namespace zqm::engine;

namespace {

// A word of espeak-ng's dictionary, six bits a letter.
std::string unpacked(const std::string& packed) {
    constexpr unsigned kBits = 6;
    constexpr unsigned kByte = 8;
    std::string word;
    unsigned buffer = 0;
    unsigned bits = 0;
    for (const char byte : packed) {
        buffer = buffer << kByte | static_cast<unsigned char>(byte);
        for (bits += kByte; bits >= kBits; bits -= kBits) {
            const unsigned letter = buffer >> (bits - kBits) & ((1U << kBits) - 1);
            word += letter == 0 ? '\0' : static_cast<char>('a' + letter - 1);
        }
    }
    return word.substr(0, word.find('\0'));
}

// The words that the English rules get wrong, so that the rarest phonemes are among them.
std::vector<std::string> exceptionalWords() {
    constexpr std::size_t kHeader = 8;
    constexpr int kChains = 1024;
    constexpr unsigned char kPacked = 0x40;
    constexpr unsigned char kLength = 0x3F;
    std::ifstream file(espeakData() / "en_dict", std::ios::binary);
    const std::string data{std::istreambuf_iterator<char>(file), {}};
    std::set<std::string> words;
    std::size_t at = kHeader;
    for (int chain = 0; chain < kChains; ++chain, ++at) {
        for (; data.at(at) != '\0'; at += static_cast<unsigned char>(data.at(at))) {
            const auto flags = static_cast<unsigned char>(data.at(at + 1));
            const std::string word = unpacked(data.substr(at + 2, flags & kLength));
            if ((flags & kPacked) != 0 && word.size() > 1 &&
                std::all_of(word.begin(), word.end(),
                            [](char letter) { return letter >= 'a' && letter <= 'z'; })) {
                words.insert(word);
            }
        }
    }
    return {words.begin(), words.end()};
}

const std::vector<std::string> kSentences = {
    "The quick brown fox jumps over the lazy dog.",
    "When the sunlight strikes raindrops in the air, they act as a prism and form a rainbow.",
    "In 1984, twenty-five people saw 3.5 million birds; nobody could say why!",
    "\"Better late than never,\" she said, \"but is it better never late?\"",
    "Dr. Smith and Mrs. Jones didn't hear the orchestra's encore: they had left early.",
    "A button, a bottle and a little water are better than a bitter battle.",
    "Our hour is near, their chair is there, and the car goes far.",
};

class EnglishVoice : public testing::TestWithParam<std::string> {};

struct Trips {
    std::size_t all = 0;
    std::size_t same = 0;
    std::string different;
};

// A pause belongs to no word, so nothing is parted by it.
std::string withoutSeparatorsAtPauses(const std::string& phonemes) {
    static const std::regex kPauses("[ |]*(_:)[ |]*");
    return phonemes.find("_:") == std::string::npos ? phonemes : std::regex_replace(phonemes, kPauses, "$1");
}

Trips go(const std::vector<std::string>& texts, const std::string& voice) {
    const PhonemeSet& set = speakWith(voice);
    std::vector<std::string> phonemes;
    std::vector<std::string> symbols;
    for (const std::string& text : texts) {
        phonemes.push_back(phonemesOf(text));
        symbols.push_back(textPhonemes(text, set));
    }
    Trips trips;
    for (std::size_t index = 0; index < texts.size(); ++index) {
        const PhonemeInput input =
            phonemeInput(std::u32string(symbols[index].begin(), symbols[index].end()), set);
        const std::string again = phonemesOf(asText(input.words), Reading::Phonemes);
        const bool same = withoutSeparatorsAtPauses(again) == withoutSeparatorsAtPauses(phonemes[index]) &&
                          input.mistakes.empty();
        ++trips.all;
        trips.same += same ? 1U : 0U;
        trips.different += same ? ""
                                : texts[index] + " " + phonemes[index] + " " + symbols[index] + " " +
                                      asText(input.words) + " " + again + "\n";
    }
    return trips;
}

TEST_P(EnglishVoice, SaysWordsTheSameFromTheirSymbols) {
    constexpr double kShare = 0.995;
    const Trips trips = go(exceptionalWords(), GetParam());
    ASSERT_GT(trips.all, 4000U);
    const double share = static_cast<double>(trips.same) / static_cast<double>(trips.all);
    RecordProperty("share", std::to_string(share));
    EXPECT_GE(share, kShare) << trips.different;
}

TEST_P(EnglishVoice, SaysSentencesTheSameFromTheirSymbols) {
    const Trips trips = go(kSentences, GetParam());
    EXPECT_EQ(trips.same, trips.all) << trips.different;
}

std::vector<std::string> englishVoices() {
    std::vector<std::string> english;
    std::copy_if(voiceIdentifiers().begin(), voiceIdentifiers().end(), std::back_inserter(english),
                 [](const std::string& voice) { return voice.starts_with("gmw/en"); });
    return english;
}

INSTANTIATE_TEST_SUITE_P(All, EnglishVoice, testing::ValuesIn(englishVoices()), [](const auto& voice) {
    std::string name = voice.param.substr(voice.param.find('/') + 1);
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

} // namespace
