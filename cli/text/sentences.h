#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

// Where each sentence and the white space behind it end, in UTF-16 units, growing; the last is the end of the
// text. A blank line ends a sentence, a lone line end doesn't. The language (BCP 47) tells the abbreviations
// from the ends of sentences; what is no such tag counts as English. An empty text has no sentences.
std::vector<std::size_t> sentenceEnds(std::u16string_view text, const std::string& language = "en");

} // namespace zqm::cli
