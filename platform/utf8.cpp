#include "platform/utf8.h"

#include "platform/surrogates.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <unicode/ustring.h>

namespace zqm::platform {
namespace {

// Converted at a time: what lies on the stack meanwhile is hot, and ICU counts in 32 bits.
constexpr std::size_t kPortion = 2048;

constexpr std::size_t kLongestCharacter = 4; // bytes
constexpr std::size_t kBytesPerUnit = 3;     // at most

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The beginning that is decoded next: whole characters, if the bytes are valid.
std::string_view nextPortion(std::string_view bytes) {
    std::size_t end = std::min(bytes.size(), kPortion);
    while (end < bytes.size() && end > kPortion - kLongestCharacter && continuesCharacter(bytes[end])) {
        --end;
    }
    return bytes.substr(0, end);
}

} // namespace

bool isAscii(std::string_view bytes) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    std::uint64_t eight = 0;
    while (bytes.size() >= sizeof eight) {
        std::memcpy(&eight, bytes.data(), sizeof eight);
        if ((eight & kHighBits) != 0) {
            return false;
        }
        bytes.remove_prefix(sizeof eight);
    }
    return std::ranges::none_of(bytes, [](char byte) { return (byte & 0x80) != 0; });
}

std::optional<std::u16string> decodeUtf8(std::string_view bytes) {
    std::array<char16_t, kPortion> units;
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::string_view portion = nextPortion(bytes);
        std::int32_t length = 0;
        UErrorCode status = U_ZERO_ERROR;
        u_strFromUTF8(units.data(), static_cast<std::int32_t>(units.size()), &length, portion.data(),
                      static_cast<std::int32_t>(portion.size()), &status);
        if (U_FAILURE(status)) {
            return std::nullopt;
        }
        text.append(units.data(), static_cast<std::size_t>(length));
        bytes.remove_prefix(portion.size());
    }
    return text;
}

std::string encodeUtf8(std::u16string_view text) {
    std::array<char, kPortion * kBytesPerUnit> bytes;
    std::string encoded;
    encoded.reserve(text.size());
    while (!text.empty()) {
        const std::u16string_view portion = wholeCharacters(text, kPortion);
        encoded.append(bytes.data(), encodeUtf8(portion, bytes).value_or(0));
        text.remove_prefix(portion.size());
    }
    return encoded;
}

std::optional<std::size_t> encodeUtf8(std::u16string_view text, std::span<char> room) {
    constexpr std::size_t kMostRoom = std::numeric_limits<std::int32_t>::max();
    const auto capacity = static_cast<std::int32_t>(std::min(room.size(), kMostRoom));
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8(room.data(), capacity, &length, text.data(), static_cast<std::int32_t>(text.size()), &status);
    return U_SUCCESS(status) ? std::optional<std::size_t>(static_cast<std::size_t>(length)) : std::nullopt;
}

} // namespace zqm::platform
