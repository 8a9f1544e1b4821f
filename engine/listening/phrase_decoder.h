// PocketSphinx: the sound of a phrase in, what was most likely said out.

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <vector>

struct ps_decoder_s;

namespace zqm::engine {

// Words in a row, each a list of pronunciations: phones of the model parted by blanks.
using SpokenWords = std::vector<std::vector<std::string>>;

// How well something fits the sound. The scores are logarithms of likelihoods, higher is better.
struct Fit {
    struct Word {
        int frames = 0;
        double score = 0;
        int phones = 0; // 0: silence
    };

    int frames = 0; // of the whole phrase, a hundredth of a second each; 0 when nothing fits
    double score = 0;
    std::vector<Word> words;
    std::string phones; // of the words, parted by blanks; silence not
};

class PhraseDecoder {
public:
    // The folder of a model of PocketSphinx. Throws std::runtime_error when it isn't there or isn't whole.
    explicit PhraseDecoder(const std::string& modelFolder);

    // The number by which a word, however often it occurs, is known until clear().
    std::size_t number(const std::vector<std::string>& pronunciations);

    // How many numbers were given out: they take memory.
    [[nodiscard]] std::size_t words() const { return numbers_.size(); }

    // Forgets all words and sentences.
    void clear();

    // What may be said: rows of numbers of words, none of them empty.
    void setSentences(const std::vector<std::vector<std::size_t>>& sentences);

    // The best of the sentences, as the whole of the phrase.
    Fit bestSentence(std::span<const std::int16_t> samples);

    // The best of all rows of sounds, the words of the sentences among them.
    Fit bestSounds(std::span<const std::int16_t> samples);

private:
    struct Release {
        void operator()(ps_decoder_s* decoder) const;
    };

    void start();
    void setSounds(const std::set<std::size_t>& words);
    Fit decode(const char* search, std::span<const std::int16_t> samples);

    std::string modelFolder_;
    std::unique_ptr<ps_decoder_s, Release> decoder_;
    std::map<std::vector<std::string>, std::size_t> numbers_;
    bool hasSentences_ = false;
};

} // namespace zqm::engine
