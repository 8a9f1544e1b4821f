#pragma once

#include <string>
#include <string_view>

namespace zqm::cli {

// The text with ? for each control character, so that it stays one line whatever names it cites.
std::string oneLine(std::string_view text);

// "zqmspeech: text" on a line of standard error.
void tell(std::string_view text);

} // namespace zqm::cli
