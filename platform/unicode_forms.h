// The forms in which Unicode writes the same text, and the conversion of file names to and from UTF-16.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zqm::platform {

// In the order of CoreFoundation's numbers.
enum class UnicodeForm { Decomposed, CompatiblyDecomposed, Composed, CompatiblyComposed };

// Lone surrogates stay as they are.
std::u16string inForm(UnicodeForm form, std::u16string_view text);

// Nothing for bytes that are no UTF-8.
std::optional<std::u16string> utf16Of(std::string_view utf8);

// Nothing for a text with a lone surrogate.
std::optional<std::string> utf8Of(std::u16string_view text);

} // namespace zqm::platform
