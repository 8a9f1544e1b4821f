#include "engine/text/utf8.h"

#include <array>
#include <cstdint>
#include <unicode/utf8.h>

namespace zqm::engine {

std::u32string fromUtf8(std::string_view bytes) {
    std::u32string characters;
    for (std::size_t at = 0; at < bytes.size();) {
        UChar32 character = 0;
        U8_NEXT_OR_FFFD(reinterpret_cast<const std::uint8_t*>(bytes.data()), at, bytes.size(), character);
        characters.push_back(static_cast<char32_t>(character));
    }
    return characters;
}

std::string toUtf8(std::u32string_view text) {
    std::string bytes;
    for (const char32_t character : text) {
        appendUtf8(bytes, character);
    }
    return bytes;
}

void appendUtf8(std::string& bytes, char32_t character) {
    std::array<char, U8_MAX_LENGTH> encoded{};
    std::size_t length = 0;
    U8_APPEND_UNSAFE(encoded, length, static_cast<UChar32>(character));
    bytes.append(encoded.data(), length);
}

} // namespace zqm::engine
