#include "tests/support/utf16.h"

#include <stdexcept>

#include <unicode/unistr.h>
#include <unicode/utf16.h>

namespace zqm::support {

std::u16string toUtf16(std::string_view text) {
    const icu::UnicodeString converted =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
    return {converted.getBuffer(), static_cast<std::size_t>(converted.length())};
}

std::string toUtf8(std::u16string_view text) {
    std::string converted;
    return icu::UnicodeString(false, text.data(), static_cast<std::int32_t>(text.size()))
        .toUTF8String(converted);
}

std::u16string_view cut(std::u16string_view text, std::size_t position, std::size_t length) {
    if (position > text.size() || length > text.size() - position) {
        throw std::out_of_range("a range beyond the end of the text");
    }
    return text.substr(position, length);
}

std::string cut(std::string_view text, std::size_t position, std::size_t length) {
    return toUtf8(cut(toUtf16(text), position, length));
}

bool partsSurrogatePair(std::u16string_view text, std::size_t position) {
    return position > 0 && position < text.size() && U16_IS_LEAD(text[position - 1]) &&
           U16_IS_TRAIL(text[position]);
}

} // namespace zqm::support
