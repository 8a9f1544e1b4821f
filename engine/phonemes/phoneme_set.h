// One phoneme set of espeak-ng, translated to symbols and back.

#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::engine {

// The symbols for a phoneme of a set, empty for one that makes no sound of its own; none when nothing is
// known of any part of it.
std::optional<std::string> symbolsOf(std::string_view set, std::string_view phoneme);

// One by one, each with the length marks before it; what is no symbol ends it.
std::vector<std::string> splitSymbols(std::string_view symbols);

// The opcodes of the phonemes that come nearest to one of espeak-ng's, as its events name them, in order.
// A text may change to another language and back: the events tell by a phoneme "(de)".
class PhonemeOpcodes {
public:
    explicit PhonemeOpcodes(std::string set) : set_(std::move(set)) {}

    // Empty for what makes no sound of its own.
    std::vector<std::int16_t> next(std::string_view phoneme);

private:
    std::string set_;
};

// Whether espeak-ng tells by this phoneme, "(de)", that those of another set follow.
bool isLanguageChange(std::string_view phoneme);
std::string_view languageChangedTo(std::string_view phoneme);

// From symbols to phonemes.
class PhonemeSet {
public:
    // The longest key in symbols.
    static constexpr std::size_t kLongest = 3;

    PhonemeSet(std::string name, const std::vector<std::string>& phonemes);

    [[nodiscard]] const std::string& name() const { return name_; }

    // The phoneme written with these symbols and length marks; null when there is none.
    [[nodiscard]] const std::string* find(const std::string& symbols) const;

    // For one symbol without marks: the nearest phonemes, never none.
    [[nodiscard]] const std::vector<std::string>& nearest(const std::string& symbol) const;

private:
    std::string name_;
    std::map<std::string, std::string> bySymbols_;
    std::map<std::string, std::vector<std::string>> bySymbol_;
};

} // namespace zqm::engine
