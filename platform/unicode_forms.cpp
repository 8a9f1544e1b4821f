#include "platform/unicode_forms.h"

#include "platform/surrogates.h"

#include <limits>
#include <unicode/normalizer2.h>

namespace zqm::platform {
namespace {

const icu::Normalizer2* normalizer(UnicodeForm form, UErrorCode& status) {
    switch (form) {
    case UnicodeForm::Decomposed:
        return icu::Normalizer2::getNFDInstance(status);
    case UnicodeForm::CompatiblyDecomposed:
        return icu::Normalizer2::getNFKDInstance(status);
    case UnicodeForm::Composed:
        return icu::Normalizer2::getNFCInstance(status);
    case UnicodeForm::CompatiblyComposed:
        return icu::Normalizer2::getNFKCInstance(status);
    }
    return nullptr;
}

std::u16string textOf(const icu::UnicodeString& string) {
    return {string.getBuffer(), static_cast<std::size_t>(string.length())};
}

} // namespace

std::u16string inForm(UnicodeForm form, std::u16string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const toForm = normalizer(form, status);
    if (U_FAILURE(status) || toForm == nullptr || text.size() > std::numeric_limits<int32_t>::max()) {
        return std::u16string(text);
    }
    const icu::UnicodeString source(text.data(), static_cast<int32_t>(text.size()));
    const icu::UnicodeString result = toForm->normalize(source, status);
    return U_SUCCESS(status) ? textOf(result) : std::u16string(text);
}

std::optional<std::u16string> utf16Of(std::string_view utf8) {
    const icu::UnicodeString string =
        icu::UnicodeString::fromUTF8({utf8.data(), static_cast<int32_t>(utf8.size())});
    std::string roundTrip;
    if (string.toUTF8String(roundTrip) != utf8) {
        return std::nullopt;
    }
    return textOf(string);
}

std::optional<std::string> utf8Of(std::u16string_view text) {
    if (findLoneSurrogate(text) < text.size()) {
        return std::nullopt;
    }
    std::string utf8;
    icu::UnicodeString(text.data(), static_cast<int32_t>(text.size())).toUTF8String(utf8);
    return utf8;
}

} // namespace zqm::platform
