// A command's text in the characters that matter to how it is said.

#pragma once

#include <string>

namespace zqm::engine {

// Of valid UTF-8: letters folded to small ones, compatibility forms to plain ones, digits of any script to 0
// to 9, apostrophes to ', hyphens to -, and without what isn't seen or said, as soft hyphens and trade marks.
std::u32string commandText(const std::string& command);

// Whether a letter is none of the Latin script's.
bool isForeignLetter(char32_t character);

// A word of commandText without accents and with no other letters than a to z, as far as that can be done.
std::string withoutAccents(std::u32string_view word);

} // namespace zqm::engine
