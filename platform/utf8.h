// UTF-8 to UTF-16 and back, by ICU's functions for it alone: they cost a half to a third of what its
// converters do, and for a short text, for which a converter would be opened, much less.

#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zqm::platform {

bool isAscii(std::string_view bytes);

// Nothing when the bytes are not valid.
std::optional<std::u16string> decodeUtf8(std::string_view bytes);

// Of a text without lone surrogates.
std::string encodeUtf8(std::u16string_view text);

// Puts the bytes of a text of at most 2^31 - 1 units at the beginning of the room, and answers how many they
// are. Nothing for a text with lone surrogates, and where the room is too small; both may have written to it.
std::optional<std::size_t> encodeUtf8(std::u16string_view text, std::span<char> room);

} // namespace zqm::platform
