#pragma once

#include <cstddef>
#include <string_view>

#include <unicode/umachine.h>

namespace zqm::cli {

// How many columns of a terminal a character takes: 0, 1 or 2. Some terminals join what is counted as several
// characters here; a text then only takes less room.
std::size_t columnsOf(UChar32 codePoint);

// The same of a text in valid UTF-8.
std::size_t columnsOf(std::string_view text);

// False for what would spoil the line that it is drawn in: controls, and marks that turn the direction of
// writing.
bool isDrawable(UChar32 codePoint);

} // namespace zqm::cli
