#pragma once

#include "cli/text/text_options.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace zqm::cli {

// Longer texts are refused, so that an endless input is not read for ever.
inline constexpr std::size_t kLongestText = std::size_t{128} * 1024 * 1024;

// What people call the file of this path; "-" is standard input.
std::string inputName(const std::string& path);

// All of that file. Throws Failure when it can't be read or is too long.
std::string readInput(const std::string& path);

// The text to be spoken, from where the options say: UTF-8, without a byte-order mark. Throws Failure when
// it can't be read, is no UTF-8, is too long or holds nothing but white space.
std::string readText(const TextOptions& options);

// How many bytes at its beginning are valid UTF-8.
std::size_t validUtf8(std::string_view text);

// Throws Failure with the offset of the first byte that is no UTF-8; `what` begins the message.
void requireUtf8(std::string_view text, std::string_view what);

std::string_view withoutByteOrderMark(std::string_view text);

// Without white space at both ends. The text is valid UTF-8.
std::string_view trimmed(std::string_view text);

} // namespace zqm::cli
