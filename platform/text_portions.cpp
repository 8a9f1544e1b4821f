#include "platform/text_portions.h"

namespace zqm::platform {
namespace {

bool continuesCharacter(char byte) {
    constexpr unsigned kMask = 0xC0;
    constexpr unsigned kContinuation = 0x80;
    return (static_cast<unsigned char>(byte) & kMask) == kContinuation;
}

// How much of a text that is longer than the limit comes first.
std::size_t firstPortion(std::string_view text, std::size_t limit) {
    for (const std::string_view separators : {"\n\r", " \t"}) {
        const std::size_t last = text.substr(0, limit).find_last_of(separators);
        if (last != std::string_view::npos) {
            return last + 1;
        }
    }
    std::size_t length = limit;
    while (length > 0 && continuesCharacter(text[length])) {
        --length;
    }
    if (length == 0) {
        do {
            ++length;
        } while (length < text.size() && continuesCharacter(text[length]));
    }
    return length;
}

} // namespace

std::vector<std::string> portionsOf(std::string_view text, std::size_t limit) {
    std::vector<std::string> portions;
    while (text.size() > limit) {
        const std::size_t length = firstPortion(text, limit);
        portions.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    if (!text.empty()) {
        portions.emplace_back(text);
    }
    return portions;
}

} // namespace zqm::platform
