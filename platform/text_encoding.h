// Text in an encoding with a CoreFoundation number, to UTF-16 and back.

#pragma once

#include "platform/text_converter.h"

#include <cstdint>

namespace zqm::platform {

// Whether a byte-order mark belongs to the encoding or to the text.
enum class ByteOrderMark : bool { IsText, IsEncoding };

// Nothing when the encoding is not known or the bytes are not valid in it. IsEncoding: a mark at the
// beginning is dropped, and decides the order of UTF-16 and UTF-32, which otherwise is the machine's.
std::optional<std::u16string> decodeText(std::uint32_t encoding, std::string_view bytes, ByteOrderMark mark);

// Nothing when the encoding is not known; otherwise as far as the text can be represented. IsEncoding:
// UTF-16 and UTF-32 (without an order in their name) begin with a mark.
std::optional<EncodedText> encodeText(std::uint32_t encoding, std::u16string_view text, ByteOrderMark mark);

// UTF-16 and UTF-32 are not: a NUL byte is no end of text in them.
bool isEightBit(std::uint32_t encoding);

} // namespace zqm::platform
