// Words that are spoken as a program says, not as the synthesizer would.

#pragma once

#include "engine/phonemes/phoneme_set.h"
#include "engine/protocol/protocol.h"
#include "engine/text/text_pieces.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace zqm::engine {

// What is wrong with an entry, which is left out.
struct LexiconProblem {
    std::size_t dictionary = 0; // its index
    bool isAbbreviation = false;
    std::size_t entry = 0; // its index among the pronunciations or abbreviations of the dictionary
    std::string message;   // for people

    bool operator==(const LexiconProblem&) const = default;
};

// What is to be said of words for one voice. Of several entries for a word that of the newest dictionary
// counts, then the last. An entry in small letters alone is for the word in any letters.
class Lexicon {
public:
    Lexicon() = default;

    // Out of the dictionaries for a language (BCP 47), whatever its region, and for all. Dictionaries whose
    // date can't be read count as the oldest.
    Lexicon(const std::vector<protocol::LexiconDictionary>& dictionaries, const std::string& language,
            const PhonemeSet& set);

    struct Match {
        std::size_t words = 0;                              // how many there are
        bool takesStop = false;                             // a full stop behind them is theirs
        const std::vector<std::string>* phonemes = nullptr; // words in espeak-ng's mnemonics
    };

    // The longest entry for what begins with a word of a piece.
    [[nodiscard]] std::optional<Match> find(const Piece& piece, std::size_t word) const;

private:
    struct Entry {
        std::size_t rank = 0; // among all, the newest highest
        bool takesStop = false;
        std::vector<std::string> phonemes;
    };
    using Entries = std::unordered_map<std::string, Entry>;

    Entries exact_;
    Entries anyCase_;         // by folded spelling
    std::size_t longest_ = 0; // in words
};

// Everything that is wrong in dictionaries of any language.
std::vector<LexiconProblem> lexiconProblems(const std::vector<protocol::LexiconDictionary>& dictionaries,
                                            const PhonemeSet& set);

} // namespace zqm::engine
