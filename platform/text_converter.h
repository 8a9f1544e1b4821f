// Bytes of a legacy or Unicode encoding to UTF-16 and back, by ICU or iconv, strictly: nothing is replaced.

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zqm::platform {

struct EncodedText {
    std::string bytes;
    std::size_t consumed = 0; // UTF-16 units; fewer than given: the character there has no place
};

class TextConverter {
public:
    TextConverter() = default;
    TextConverter(const TextConverter&) = delete;
    TextConverter& operator=(const TextConverter&) = delete;
    virtual ~TextConverter() = default;

    // Nothing when the bytes are not valid or end within a character.
    virtual std::optional<std::u16string> decode(std::string_view bytes) = 0;

    // Up to the first character without a place, a lone surrogate included.
    virtual EncodedText encode(std::u16string_view text) = 0;
};

// Null when the library has no converter of that name.
std::unique_ptr<TextConverter> openIcuConverter(const char* name);
std::unique_ptr<TextConverter> openIconvConverter(const char* name);

} // namespace zqm::platform
