// Text as bytes and as characters.

#pragma once

#include <string>
#include <string_view>

namespace zqm::engine {

// What is no UTF-8 is read as U+FFFD.
std::u32string fromUtf8(std::string_view bytes);

std::string toUtf8(std::u32string_view text);

void appendUtf8(std::string& bytes, char32_t character);

} // namespace zqm::engine
