// What is wrong in ICU's dictionaries, and matters because the words are common.

#pragma once

#include <string_view>
#include <vector>

namespace zqm::engine {

// Corrects the beginnings of words (one flag a character, and one for the end) that ICU found in a text.
void correctDictionaryWords(std::u32string_view text, std::vector<bool>& starts);

} // namespace zqm::engine
