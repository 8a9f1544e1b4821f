// How single words are pronounced, whether a dictionary has them or not.

#pragma once

#include "engine/listening/pronunciation_dictionary.h"
#include "engine/listening/transcriber.h"

#include <string>
#include <string_view>
#include <vector>

namespace zqm::engine {

class WordPronunciations {
public:
    // Both must live as long.
    WordPronunciations(const PronunciationDictionary& dictionary, const Transcriber& transcriber)
        : dictionary_(dictionary), transcriber_(transcriber) {}

    // Of the dictionary alone; of one that ends with a full stop, those without it, too.
    [[nodiscard]] std::vector<std::string> listed(std::u32string_view word) const;

    // Of a word of a command's text, listed or not, each once; none when nothing is known of its sound.
    [[nodiscard]] std::vector<std::string> of(std::u32string_view word) const;

    // Of words said one behind the other, the likeliest first. Not all there are of many words.
    [[nodiscard]] std::vector<std::string> of(const std::vector<std::string>& words) const;

private:
    [[nodiscard]] std::vector<std::string> possessive(const std::string& word) const;
    [[nodiscard]] std::string spelled(std::string_view word) const;

    const PronunciationDictionary& dictionary_;
    const Transcriber& transcriber_;
};

// Of two words said one behind the other; of the second one alone if the first is empty.
std::string bothSaid(const std::string& first, const std::string& second);

// Adds what isn't there yet.
void addPronunciations(std::vector<std::string>& pronunciations, const std::vector<std::string>& more);

} // namespace zqm::engine
