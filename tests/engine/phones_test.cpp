#include "engine/listening/phones.h"

#include "engine/listening/pronunciation_dictionary.h"
#include "engine/listening/transcriber.h"
#include "engine/phonemes/phoneme_inventory.h"

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iostream>
#include <iterator>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

using namespace zqm::engine;
using testing::ElementsAre;
using testing::IsEmpty;

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
    constexpr std::size_t kStep = 1; // every so many words
    const Agreement agreement(kStep);
    std::cout << "alike " << agreement.first << ", with variants " << agreement.any << ", phone errors "
              << agreement.errors << ", pronunciations a word " << agreement.variants << '\n';
    EXPECT_GT(agreement.first, 0.6);
}

} // namespace
