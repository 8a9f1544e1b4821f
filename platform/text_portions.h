// A long text in portions.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::platform {

// Of at most so many bytes of UTF-8, but never less than a character; they begin where lines do, or else
// words, wherever there are such places. Together they are the text.
std::vector<std::string> portionsOf(std::string_view text, std::size_t limit);

} // namespace zqm::platform
