// The texts whose words were marked by hand: tests/fixtures/words/, described in the README there.

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/word_check.h"

namespace zqm::support {

struct MarkedText {
    std::string text;                // without the marks, in UTF-8
    std::vector<WordRange> words;    // in UTF-16 units of the text
    std::vector<std::string> cutOut; // the same words as text, in UTF-8
};

// Reads a line with marks: ⟦word⟧, and the escapes \n \t \\ \u{hex}. Throws std::runtime_error that says
// what is wrong with it.
MarkedText parseMarkedText(std::string_view line);

struct WordFixture : MarkedText {
    std::string language; // of the file's header, such as "English"
    std::string script;
    std::string voice;
    std::string place; // "en.txt:12", for messages
};

// All sentences of one file, or of all files in the fixtures' folder (by name). Throws std::runtime_error
// with file and line when one is malformed.
std::vector<WordFixture> readWordFixtures(const std::filesystem::path& file);
const std::vector<WordFixture>& wordFixtures();

// The fixtures of each voice as one text, a line each.
std::vector<WordFixture> wordFixtureParagraphs();

} // namespace zqm::support
