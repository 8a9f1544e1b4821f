#include "cli/text/display_width.h"

#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace zqm::cli {

std::size_t columnsOf(UChar32 codePoint) {
    constexpr UChar32 kEmojiForm = 0xFE0F; // makes the character before it a wide one
    if (codePoint == kEmojiForm) {
        return 1;
    }
    switch (u_charType(codePoint)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
        return 0;
    default:
        break;
    }
    const int width = u_getIntPropertyValue(codePoint, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_FULLWIDTH || width == U_EA_WIDE ? 2 : 1;
}

bool isDrawable(UChar32 codePoint) {
    switch (u_charType(codePoint)) {
    case U_CONTROL_CHAR:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
        return false;
    default:
        return u_hasBinaryProperty(codePoint, UCHAR_BIDI_CONTROL) == 0;
    }
}

std::size_t columnsOf(std::string_view text) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t columns = 0;
    for (std::size_t offset = 0; offset < text.size();) {
        UChar32 codePoint = 0;
        U8_NEXT(bytes, offset, text.size(), codePoint);
        columns += columnsOf(codePoint);
    }
    return columns;
}

} // namespace zqm::cli
