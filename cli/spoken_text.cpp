#include "cli/spoken_text.h"

#include <algorithm>
#include <cstddef>

#include <unicode/unistr.h>

namespace zqm::cli {

SpokenText::SpokenText(std::string_view utf8) {
    const icu::UnicodeString text =
        icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<std::int32_t>(utf8.size())));
    units_.assign(text.getBuffer(), static_cast<std::size_t>(text.length()));
}

std::string SpokenText::cut(std::int64_t position, std::int64_t length) const {
    const auto size = static_cast<std::int64_t>(units_.size());
    const std::int64_t begin = std::clamp<std::int64_t>(position, 0, size);
    const std::int64_t count = std::clamp<std::int64_t>(length, 0, size - begin);
    const icu::UnicodeString word(units_.data() + begin, static_cast<std::int32_t>(count));
    std::string utf8;
    return word.toUTF8String(utf8);
}

double SpokenText::shareBefore(std::int64_t position) const {
    if (units_.empty()) {
        return 1;
    }
    return std::clamp(static_cast<double>(position) / static_cast<double>(units_.size()), 0.0, 1.0);
}

} // namespace zqm::cli
