#include "engine/listening/phones.h"

#include "engine/listening/pronunciation_dictionary.h"
#include "engine/listening/transcriber.h"
#include "engine/phonemes/phoneme_inventory.h"
#include "engine/phonemes/phoneme_text.h"

#include <algorithm>
#include <cstddef>
#include <espeak-ng/speak_lib.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <iterator>
#include <numeric>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace zqm::engine;
using testing::ElementsAreArray;

namespace {

std::vector<std::string> split(const std::string& phones) {
    std::istringstream stream(phones);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::vector<std::string> transcribe(const std::string& word) {
    static Speaker speaker;
    static const Transcriber transcriber = englishTranscriber(speaker);
    return transcriber(word);
}

// How many phones must be put in, left out or replaced.
std::size_t distance(const std::vector<std::string>& from, const std::vector<std::string>& to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0U);
    for (std::size_t left = 0; left < from.size(); ++left) {
        std::size_t corner = row[0];
        row[0] = left + 1;
        for (std::size_t right = 0; right < to.size(); ++right) {
            const std::size_t replaced = corner + (from[left] == to[right] ? 0 : 1);
            corner = row[right + 1];
            row[right + 1] = std::min({replaced, corner + 1, row[right] + 1});
        }
    }
    return row.back();
}

// The words of the model's dictionary, each once, but those that aren't written in letters.
std::vector<std::string> dictionaryWords() {
    std::vector<std::string> words;
    std::ifstream lines(ZQM_PRONUNCIATIONS);
    for (std::string line; std::getline(lines, line);) {
        const std::string word = line.substr(0, line.find(' '));
        const bool isPlain = std::all_of(word.begin(), word.end(), [](char letter) {
            return (letter >= 'a' && letter <= 'z') || letter == '\'' || letter == '-';
        });
        if (isPlain && word.front() != '\'') {
            words.push_back(word);
        }
    }
    return words;
}

const std::set<std::string> kModelVowels{"AA", "AE", "AH", "AO", "AW", "AY", "EH", "ER",
                                         "EY", "IH", "IY", "OW", "OY", "UH", "UW"};
const std::set<std::string> kModelConsonants{"B",  "CH", "D",  "DH", "F",  "G", "HH", "JH",
                                             "K",  "L",  "M",  "N",  "NG", "P", "R",  "S",
                                             "SH", "T",  "TH", "V",  "W",  "Y", "Z",  "ZH"};

struct Row {
    const char* phonemes; // parted by "|"
    std::vector<std::string> pronunciations;
};

void PrintTo(const Row& row, std::ostream* stream) {
    *stream << row.phonemes;
}

class PhonesOf : public testing::TestWithParam<Row> {};

TEST_P(PhonesOf, phonemes) {
    std::string phonemes = GetParam().phonemes;
    std::replace(phonemes.begin(), phonemes.end(), '|', kPhonemeSeparator);
    EXPECT_THAT(phonesOf(phonemes), ElementsAreArray(GetParam().pronunciations));
}

INSTANTIATE_TEST_SUITE_P(Words, PhonesOf,
                         testing::Values(Row{"k|'a|t", {"K AE T"}}, Row{"b|'3:|d", {"B ER D"}},
                                         Row{"l|'E|t#|3", {"L EH T ER"}}, Row{"b|'V|?|n-", {"B AH T AH N"}},
                                         Row{"l|'I|t#|@L", {"L IH T AH L"}}, Row{"h|'i@3", {"HH IH R"}},
                                         Row{"D|'e@", {"DH EH R"}}, Row{"f|'o@", {"F AO R"}},
                                         Row{"s|t|'A@|t", {"S T AA R T"}}, Row{"p|'U@", {"P UH R"}},
                                         Row{"tS|'aI|n|@", {"CH AY N AH"}}, Row{"dZ|'OI", {"JH OY"}},
                                         Row{"v|'I|Z|@|n", {"V IH ZH AH N"}}, Row{"s|'I|N", {"S IH NG"}},
                                         Row{"T|'I|N|k", {"TH IH NG K"}}, Row{"l|'0|x", {"L AA K", "L AO K"}},
                                         Row{"j|'u:", {"Y UW"}}, Row{"h|'aU|s", {"HH AW S"}},
                                         Row{"n|'oU", {"N OW"}}, Row{"b|'U|k", {"B UH K"}}));

INSTANTIATE_TEST_SUITE_P(Neighbours, PhonesOf,
                         testing::Values(Row{"k|'a|m|3|r|@", {"K AE M ER AH"}}, // not ER R
                                         Row{"m|'e@|r|i", {"M EH R IY"}}, Row{"b|'3:|r-", {"B ER"}},
                                         Row{"r|'eI|d|I2|;|,oU", {"R EY D IY OW"}},
                                         Row{"b|'U|k|z", {"B UH K S"}},
                                         Row{"a|d|dZ|'V|s|t", {"AE JH AH S T"}},
                                         Row{"'3:|r|@|r", {"ER ER"}}));

INSTANTIATE_TEST_SUITE_P(Variations, PhonesOf,
                         testing::Values(Row{"r|'oU|z|I#|z", {"R OW Z IH Z", "R OW Z AH Z"}},
                                         Row{"l|'0|t", {"L AA T", "L AO T"}},
                                         Row{"h|'aI3", {"HH AY ER", "HH AY R"}},
                                         Row{"k|'a|r|I2|t#", // each with each
                                             {"K EH R IH T", "K EH R AH T", "K AE R IH T", "K AE R AH T"}}));

INSTANTIATE_TEST_SUITE_P(Marks, PhonesOf,
                         testing::Values(Row{"", {}}, Row{"_:", {}},
                                         Row{",eI|tS|t|,i: ;|,E|m", {"EY CH T IY EH M"}},
                                         Row{"_:'eI", {"EY"}},
                                         Row{"(fr)|b|'o~|(en-us)|b|'3:", {"B OW NG B ER"}}));

TEST(Phones, areKnownOfEveryPhonemeOfTheVoice) {
    transcribe("a");
    const char* folder = nullptr;
    espeak_Info(&folder);
    const PhonemeInventory inventory = readPhonemeInventory(folder);
    ASSERT_EQ(phonemeSetOf(folder, "gmw/en-US", inventory), kAmericanSet);
    const std::set<std::string> silent{"_",   "_\x01", "1",   "_:", "_::", "_!", "_|", "||",
                                       "_^_", "_;_",   "_X1", ":",  ";",   "-",  "@-"};
    std::set<std::string> phones;
    for (const std::string& phoneme : inventory.at(std::string(kAmericanSet))) {
        const std::vector<std::string> pronunciations = phonesOf(phoneme);
        EXPECT_EQ(pronunciations.empty(), silent.contains(phoneme)) << "phoneme \"" << phoneme << '"';
        for (const std::string& pronunciation : pronunciations) {
            for (const std::string& phone : split(pronunciation)) {
                EXPECT_TRUE(kModelVowels.contains(phone) || kModelConsonants.contains(phone)) << phone;
                phones.insert(phone);
            }
        }
    }
    EXPECT_THAT(phones, testing::SizeIs(kModelVowels.size() + kModelConsonants.size())) << "each is reached";
}

struct Agreement {
    double first = 0;    // share of the words whose likeliest pronunciation is one of the dictionary's
    double any = 0;      // share of those with any that is
    double errors = 0;   // of the likeliest, for each phone of the dictionary's that is nearest
    double variants = 0; // pronunciations a word

    explicit Agreement(std::size_t step) {
        const PronunciationDictionary dictionary(ZQM_PRONUNCIATIONS);
        const std::vector<std::string> words = dictionaryWords();
        double count = 0;
        double phones = 0;
        for (std::size_t index = 0; index < words.size(); index += step) {
            const std::vector<std::string> ours = transcribe(words[index]);
            const std::vector<std::string> theirs = dictionary.find(words[index]);
            if (ours.empty()) {
                ADD_FAILURE() << words[index] << " has no sound";
                continue;
            }
            const auto isTheirs = [&](const std::string& phonesOfOurs) {
                return std::find(theirs.begin(), theirs.end(), phonesOfOurs) != theirs.end();
            };
            const auto nearest = std::min_element(theirs.begin(), theirs.end(),
                                                  [&](const std::string& left, const std::string& right) {
                                                      return distance(split(ours.front()), split(left)) <
                                                             distance(split(ours.front()), split(right));
                                                  });
            first += isTheirs(ours.front()) ? 1 : 0;
            any += std::any_of(ours.begin(), ours.end(), isTheirs) ? 1 : 0;
            errors += static_cast<double>(distance(split(ours.front()), split(*nearest)));
            phones += static_cast<double>(split(*nearest).size());
            variants += static_cast<double>(ours.size());
            ++count;
        }
        first /= count;
        any /= count;
        variants /= count;
        errors /= phones;
    }
};

// The rest is where espeak-ng reads a word, often a name, otherwise than the dictionary.
TEST(Phones, agreeWithTheDictionaryOfTheModel) {
    constexpr std::size_t kStep = 9; // every so many words
    const Agreement agreement(kStep);
    std::cout << "alike " << agreement.first << ", with variants " << agreement.any << ", phone errors "
              << agreement.errors << ", pronunciations a word " << agreement.variants << '\n';
    EXPECT_GT(agreement.first, 0.615);
    EXPECT_GT(agreement.any, 0.65);
    EXPECT_LT(agreement.errors, 0.096);
    EXPECT_LT(agreement.variants, 1.5) << "each costs the recognizer time";
}

} // namespace
