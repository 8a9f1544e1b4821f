#include "cli/text/spoken_text.h"

#include <algorithm>
#include <cstdint>

#include <unicode/unistr.h>
#include <unicode/utf16.h>

namespace zqm::cli {

SpokenText::SpokenText(std::string_view utf8) {
    const icu::UnicodeString text =
        icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<std::int32_t>(utf8.size())));
    units_.assign(text.getBuffer(), static_cast<std::size_t>(text.length()));
}

std::string SpokenText::cut(std::size_t position, std::size_t length) const {
    const std::size_t begin = std::min(position, units_.size());
    const std::size_t count = std::min(length, units_.size() - begin);
    const icu::UnicodeString words(false, units_.data() + begin, static_cast<std::int32_t>(count)); // aliased
    std::string utf8;
    return words.toUTF8String(utf8);
}

std::size_t SpokenText::codePointsBefore(std::size_t position) const {
    position = std::min(position, units_.size());
    while (counted_ < position) {
        U16_FWD_1(units_, counted_, units_.size());
        ++codePoints_;
    }
    while (counted_ > position) {
        U16_BACK_1(units_, 0, counted_);
        --codePoints_;
    }
    return codePoints_;
}

double SpokenText::shareBefore(std::size_t position) const {
    if (units_.empty()) {
        return 1;
    }
    return static_cast<double>(std::min(position, units_.size())) / static_cast<double>(units_.size());
}

} // namespace zqm::cli
