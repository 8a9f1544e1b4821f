// The phones of the recognizer's model, and how espeak-ng's phonemes come nearest to them.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zqm::engine {

// The set of the voice whose phonemes are written as phones.
constexpr std::string_view kAmericanSet = "en-us";

// What espeak-ng's American voice says of a word, in kPhonemeMode, as phones parted by blanks: the likeliest
// pronunciation, then others. None when the word has no sound.
std::vector<std::string> phonesOf(std::string_view phonemes);

} // namespace zqm::engine
