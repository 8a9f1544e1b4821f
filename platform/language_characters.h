// The characters that a language is written with.

#pragma once

#include <string>
#include <vector>

namespace zqm::platform {

struct CharacterRange {
    char32_t first;
    char32_t last;

    bool operator==(const CharacterRange&) const = default;
};

struct LanguageCharacters {
    std::vector<CharacterRange> all;     // ascending, apart from each other
    std::vector<CharacterRange> spelled; // of those, the ones that stand for themselves: no blanks, no marks
};

// For a BCP 47 tag, of which what is malformed at its end is left out. Letters are those of the language in
// both cases; where they are not known, those of its script. Digits and common punctuation are in it always.
LanguageCharacters charactersOf(const std::string& language);

} // namespace zqm::platform
