#include "platform/text_encoding.h"

#include "platform/encoding_table.h"
#include "platform/surrogates.h"
#include "platform/utf8.h"

#include <algorithm>
#include <cstring>

namespace zqm::platform {
namespace {

constexpr std::uint32_t kUtf8 = 0x08000100;
constexpr std::uint32_t kUtf16 = 0x0100;
constexpr std::uint32_t kUtf16BigEndian = 0x10000100;
constexpr std::uint32_t kUtf16LittleEndian = 0x14000100;
constexpr std::uint32_t kUtf32 = 0x0C000100;
constexpr std::uint32_t kUtf32BigEndian = 0x18000100;
constexpr std::uint32_t kUtf32LittleEndian = 0x1C000100;

constexpr std::string_view kUtf8Mark("\xEF\xBB\xBF", 3);
constexpr std::string_view kBigEndian16Mark("\xFE\xFF", 2);
constexpr std::string_view kLittleEndian16Mark("\xFF\xFE", 2);
constexpr std::string_view kBigEndian32Mark("\0\0\xFE\xFF", 4);
constexpr std::string_view kLittleEndian32Mark("\xFF\xFE\0\0", 4);

std::unique_ptr<TextConverter> openConverter(std::uint32_t encoding) {
    const auto table = encodingTable();
    const auto row = std::ranges::lower_bound(table, encoding, {}, &EncodingRow::encoding);
    if (row == table.end() || row->encoding != encoding) {
        return nullptr;
    }
    return row->library == ConverterLibrary::Icu ? openIcuConverter(row->converter)
                                                 : openIconvConverter(row->converter);
}

bool dropPrefix(std::string_view& bytes, std::string_view prefix) {
    if (!bytes.starts_with(prefix)) {
        return false;
    }
    bytes.remove_prefix(prefix.size());
    return true;
}

// The encoding with its order named, once a mark was looked for and dropped.
std::uint32_t resolveOrder(std::uint32_t encoding, std::string_view& bytes, ByteOrderMark mark) {
    const bool look = mark == ByteOrderMark::IsEncoding;
    switch (encoding) {
    case kUtf8:
        if (look) {
            dropPrefix(bytes, kUtf8Mark);
        }
        return encoding;
    case kUtf16:
        if (look && dropPrefix(bytes, kBigEndian16Mark)) {
            return kUtf16BigEndian;
        }
        if (look) {
            dropPrefix(bytes, kLittleEndian16Mark);
        }
        return kUtf16LittleEndian;
    case kUtf32:
        if (look && dropPrefix(bytes, kBigEndian32Mark)) {
            return kUtf32BigEndian;
        }
        if (look) {
            dropPrefix(bytes, kLittleEndian32Mark);
        }
        return kUtf32LittleEndian;
    default:
        return encoding;
    }
}

bool isUtf16(std::uint32_t encoding) {
    return encoding == kUtf16 || encoding == kUtf16BigEndian || encoding == kUtf16LittleEndian;
}

void swapBytes(std::u16string& text) {
    for (char16_t& unit : text) {
        unit = static_cast<char16_t>(unit << 8 | unit >> 8);
    }
}

// Every sequence of units is text here, lone surrogates included.
std::optional<std::u16string> decodeUtf16(std::string_view bytes, bool bigEndian) {
    if (bytes.size() % sizeof(char16_t) != 0) {
        return std::nullopt;
    }
    std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), bytes.data(), bytes.size());
    if (bigEndian) {
        swapBytes(text);
    }
    return text;
}

EncodedText encodeUtf16(std::u16string_view text, bool bigEndian) {
    std::u16string units(text);
    if (bigEndian) {
        swapBytes(units);
    }
    return {std::string(reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t)),
            text.size()};
}

} // namespace

std::optional<std::u16string> decodeText(std::uint32_t encoding, std::string_view bytes, ByteOrderMark mark) {
    const std::uint32_t ordered = resolveOrder(encoding, bytes, mark);
    if (isUtf16(ordered)) {
        return decodeUtf16(bytes, ordered == kUtf16BigEndian);
    }
    if (ordered == kUtf8) {
        return decodeUtf8(bytes);
    }
    const auto converter = openConverter(ordered);
    if (!converter) {
        return std::nullopt;
    }
    return converter->decode(bytes);
}

std::optional<EncodedText> encodeText(std::uint32_t encoding, std::u16string_view text, ByteOrderMark mark) {
    std::string_view none;
    const std::uint32_t ordered = resolveOrder(encoding, none, ByteOrderMark::IsText);
    EncodedText result;
    if (isUtf16(ordered)) {
        result = encodeUtf16(text, ordered == kUtf16BigEndian);
    } else if (ordered == kUtf8) {
        result.consumed = findLoneSurrogate(text);
        result.bytes = encodeUtf8(text.substr(0, result.consumed));
    } else {
        const auto converter = openConverter(ordered);
        if (!converter) {
            return std::nullopt;
        }
        result = converter->encode(text.substr(0, findLoneSurrogate(text)));
    }
    if (mark == ByteOrderMark::IsEncoding && (encoding == kUtf16 || encoding == kUtf32)) {
        result.bytes.insert(0, encoding == kUtf16 ? kLittleEndian16Mark : kLittleEndian32Mark);
    }
    return result;
}

bool isEightBit(std::uint32_t encoding) {
    return !isUtf16(encoding) && encoding != kUtf32 && encoding != kUtf32BigEndian &&
           encoding != kUtf32LittleEndian;
}

} // namespace zqm::platform
