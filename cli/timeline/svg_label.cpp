#include "cli/timeline/svg_label.h"

#include "cli/text/display_width.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace zqm::cli {
namespace {

template <typename Function>
void forEachCodePoint(std::string_view text, Function function) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    for (std::size_t offset = 0; offset < text.size();) {
        const std::size_t begin = offset;
        UChar32 codePoint = 0;
        U8_NEXT(bytes, offset, text.size(), codePoint);
        function(codePoint, text.substr(begin, offset - begin));
    }
}

bool isAllowedInXml(UChar32 codePoint) {
    return codePoint == '\t' || codePoint == '\n' || codePoint == '\r' ||
           (codePoint >= ' ' && U_IS_UNICODE_CHAR(codePoint));
}

struct Width {
    std::string_view characters;
    double width;
};
constexpr std::array kWidths{Width{"ijl.,:;'|! ", 0.34}, Width{"frtI-()[]", 0.44}, Width{"mwMW%@", 1.0}};
constexpr double kLetter = 0.65;
constexpr double kCapital = 0.76;
constexpr double kWide = 1.3; // as emoji are

double characterWidth(UChar32 codePoint, std::string_view bytes) {
    for (const Width& width : kWidths) {
        if (width.characters.find(bytes) != std::string_view::npos) {
            return width.width;
        }
    }
    switch (columnsOf(codePoint)) {
    case 0:
        return 0;
    case 1:
        return u_isupper(codePoint) != 0 ? kCapital : kLetter;
    default:
        return kWide;
    }
}

} // namespace

std::string escapedForXml(std::string_view text) {
    std::string escaped;
    forEachCodePoint(text, [&escaped](UChar32 codePoint, std::string_view bytes) {
        switch (codePoint) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            if (isAllowedInXml(codePoint)) {
                escaped += bytes;
            }
        }
    });
    return escaped;
}

double labelWidth(std::string_view text) {
    double width = 0;
    forEachCodePoint(text, [&width](UChar32 codePoint, std::string_view bytes) {
        width += characterWidth(codePoint, bytes);
    });
    return width;
}

} // namespace zqm::cli
