// In which words people say a number.

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::engine {

using Reading = std::vector<std::string>; // words, one behind the other

struct SpokenNumber {
    std::size_t length = 0;        // characters of the text
    std::vector<Reading> readings; // never none: English words, the likeliest first
};

// The number that begins at a character of a command's text: amounts ($5.50), times (7:30), fractions (1/2),
// decimals, ordinals (5th), decades (80s), years and others. Long ones that aren't round come digit by digit.
// None where no number begins.
std::optional<SpokenNumber> numberAt(std::u32string_view text, std::size_t at);

} // namespace zqm::engine
