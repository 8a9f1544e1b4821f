// Surrogates in UTF-16 text.

#pragma once

#include <cstddef>
#include <string_view>

namespace zqm::platform {

constexpr bool isHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

constexpr bool isLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// The units of the character that begins there: 2 for a surrogate pair.
constexpr std::size_t characterLength(std::u16string_view text, std::size_t index) {
    const bool isPair =
        isHighSurrogate(text[index]) && index + 1 < text.size() && isLowSurrogate(text[index + 1]);
    return isPair ? 2 : 1;
}

// Where the first lone surrogate at or after a character stands; the text's size if there is none.
constexpr std::size_t findLoneSurrogate(std::u16string_view text, std::size_t index = 0) {
    while (index < text.size()) {
        const std::size_t length = characterLength(text, index);
        if (length == 1 && (text[index] & 0xF800) == 0xD800) {
            break;
        }
        index += length;
    }
    return index;
}

// The longest beginning of so many units at most, one or more, that splits no surrogate pair.
constexpr std::u16string_view wholeCharacters(std::u16string_view text, std::size_t most) {
    if (text.size() > most && most > 1 && isHighSurrogate(text[most - 1]) && isLowSurrogate(text[most])) {
        return text.substr(0, most - 1);
    }
    return text.substr(0, most);
}

} // namespace zqm::platform
