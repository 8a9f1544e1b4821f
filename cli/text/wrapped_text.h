#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zqm::cli {

// The text in lines of at most so many columns, broken at its blanks, each behind so many blanks; a word that
// is longer than a line has one of its own. Every line ends with a line break. Line breaks of the text stay,
// and so do the blanks at the beginning of its lines.
std::string wrapped(std::string_view text, std::size_t columns, std::size_t indent = 0);

} // namespace zqm::cli
