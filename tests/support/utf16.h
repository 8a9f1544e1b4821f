// Between UTF-8, in which tests write their texts, and UTF-16, in whose units positions count.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zqm::support {

// What is no valid UTF-8 becomes U+FFFD.
std::u16string toUtf16(std::string_view text);

// Each lone surrogate becomes U+FFFD.
std::string toUtf8(std::u16string_view text);

// The part of a text from a position on, both in UTF-16 units. Throws std::out_of_range when the text
// isn't that long.
std::u16string_view cut(std::u16string_view text, std::size_t position, std::size_t length);
std::string cut(std::string_view text, std::size_t position, std::size_t length);

// Whether a cut at that position would part the two halves of a surrogate pair.
bool partsSurrogatePair(std::u16string_view text, std::size_t position);

} // namespace zqm::support
