// How the words of a language are pronounced, as a recognizer's model has them written down.

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::engine {

class PronunciationDictionary {
public:
    // A file of lines "word phone phone ...", the second pronunciation of a word as "word(2)". Throws
    // std::runtime_error when it can't be read or holds no words.
    explicit PronunciationDictionary(const std::filesystem::path& file);

    // The phones of a word in small letters, parted by single blanks: its pronunciations in the order of the
    // file, none when the word isn't there.
    [[nodiscard]] std::vector<std::string> find(std::string_view word) const;

private:
    [[nodiscard]] std::string_view line(std::uint32_t begin) const;
    [[nodiscard]] std::size_t slot(std::string_view word) const;
    void index();

    std::string text_;
    std::vector<std::uint32_t>
        slots_; // by the hash of a word, where its lines begin, counted from 1; 0: free
};

} // namespace zqm::engine
