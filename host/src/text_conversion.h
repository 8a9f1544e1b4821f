// Conversion between encodings, by the platform's CoreFoundation.

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zqm::host {

// One reference, the caller's. Null when the bytes are no text of the encoding. Bytes without an encoding are
// read as MacRoman.
CFStringRef createCFString(std::string_view bytes, std::uint32_t encoding);

// Characters that the target encoding lacks become question marks; nothing when the bytes are no text of
// their encoding, or an encoding is not known.
std::optional<std::string> convertText(std::string_view bytes, std::uint32_t from, std::uint32_t to);

} // namespace zqm::host
