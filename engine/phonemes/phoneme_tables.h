// How the phonemes of espeak-ng's sets are written in symbols.

#pragma once

#include <span>
#include <string_view>

namespace zqm::engine {

constexpr char kWordEnd = '_';

// A phoneme's symbols, nearest in sound. Length marks before them (> <) tell apart what one symbol stands
// for, so that what was written can be read again; where phonemes share their symbols, the first is read.
struct PhonemeRow {
    std::string_view phoneme;
    std::string_view symbols;
};

struct PhonemeTable {
    std::string_view set;
    std::string_view parent; // the table that holds what this one doesn't; empty: the common one
    std::span<const PhonemeRow> rows;
};

// The sets that differ from the common table. A set that isn't listed has the common table alone.
std::span<const PhonemeTable> phonemeTables();

// What is the same in most sets.
std::span<const PhonemeRow> commonPhonemes();

// For a symbol that no phoneme of a set is written with: phonemes that come near it, parted by blanks, the
// best first. Every set has the last, which may be two phonemes joined by a plus sign.
std::span<const PhonemeRow> symbolSubstitutes();

} // namespace zqm::engine
