#include "platform/text_converter.h"

#include <array>
#include <cstdint>
#include <unicode/ucnv.h>

namespace zqm::platform {
namespace {

constexpr std::size_t kChunk = 4096;

class IcuConverter : public TextConverter {
public:
    explicit IcuConverter(UConverter* converter) : converter_(converter) {}
    IcuConverter(const IcuConverter&) = delete;
    IcuConverter& operator=(const IcuConverter&) = delete;
    ~IcuConverter() override { ucnv_close(converter_); }

    std::optional<std::u16string> decode(std::string_view bytes) override {
        std::u16string text;
        text.reserve(bytes.size());
        ucnv_resetToUnicode(converter_);
        const char* source = bytes.data();
        const char* const end = source + bytes.size();
        std::array<char16_t, kChunk> chunk{};
        UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
        while (status == U_BUFFER_OVERFLOW_ERROR) {
            status = U_ZERO_ERROR;
            char16_t* target = chunk.data();
            ucnv_toUnicode(converter_, &target, chunk.data() + chunk.size(), &source, end, nullptr, 1,
                           &status);
            text.append(chunk.data(), target);
        }
        if (U_FAILURE(status)) {
            return std::nullopt;
        }
        return text;
    }

    EncodedText encode(std::u16string_view text) override {
        EncodedText result;
        result.bytes.reserve(text.size());
        ucnv_resetFromUnicode(converter_);
        const char16_t* source = text.data();
        const char16_t* const end = source + text.size();
        std::array<char, kChunk> chunk{};
        UErrorCode status = U_BUFFER_OVERFLOW_ERROR;
        while (status == U_BUFFER_OVERFLOW_ERROR) {
            status = U_ZERO_ERROR;
            char* target = chunk.data();
            ucnv_fromUnicode(converter_, &target, chunk.data() + chunk.size(), &source, end, nullptr, 1,
                             &status);
            result.bytes.append(chunk.data(), target);
        }
        result.consumed = static_cast<std::size_t>(source - text.data()) - refusedUnits(status);
        // Where it was stopped, the bytes may end shifted; those of the text before that alone don't.
        return result.consumed < text.size() ? encode(text.substr(0, result.consumed)) : result;
    }

private:
    // How many units before the place where it stopped belong to the character that has no place.
    std::size_t refusedUnits(UErrorCode status) {
        if (U_SUCCESS(status)) {
            return 0;
        }
        std::array<char16_t, 32> units{};
        auto length = static_cast<std::int8_t>(units.size());
        UErrorCode ignored = U_ZERO_ERROR;
        ucnv_getInvalidUChars(converter_, units.data(), &length, &ignored);
        return static_cast<std::size_t>(length);
    }

    UConverter* converter_;
};

// ICU's own way to stop leaves out a character that shows nothing, such as a soft hyphen, and goes on.
void stopAtAny(const void* /*context*/, UConverterFromUnicodeArgs* /*arguments*/, const char16_t* /*units*/,
               std::int32_t /*length*/, UChar32 /*character*/, UConverterCallbackReason /*reason*/,
               UErrorCode* /*status*/) {}

} // namespace

std::unique_ptr<TextConverter> openIcuConverter(const char* name) {
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open(name, &status);
    if (U_FAILURE(status)) {
        return nullptr;
    }
    ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ucnv_setFromUCallBack(converter, &stopAtAny, nullptr, nullptr, nullptr, &status);
    return std::make_unique<IcuConverter>(converter);
}

} // namespace zqm::platform
