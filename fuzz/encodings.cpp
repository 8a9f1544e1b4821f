// Text in the encodings of host strings: what is read of bytes can be written, and what is written of any
// text is read again the same.

#include "platform/text_encoding.h"

#include "fuzz/byte_source.h"
#include "fuzz/check.h"
#include "fuzz/target.h"
#include "platform/encoding_table.h"

#include <algorithm>
#include <span>
#include <string>

namespace {

using namespace zqm;
using platform::ByteOrderMark;

constexpr std::uint32_t kUtf16[]{0x0100, 0x10000100, 0x14000100};

std::string numberOf(std::uint32_t encoding) {
    return std::to_string(encoding);
}

std::uint32_t encodingFrom(fuzz::ByteSource& source) {
    const auto table = platform::encodingTable();
    const std::size_t choice = source.number<std::uint16_t>() % (table.size() + std::size(kUtf16) + 1);
    if (choice < table.size()) {
        return table[choice].encoding;
    }
    return choice < table.size() + std::size(kUtf16) ? kUtf16[choice - table.size()]
                                                     : source.number<std::uint32_t>();
}

// UTF-16 units of which an encoding keeps less than it promises, for a cause that is not ours.
struct Loss {
    std::uint32_t encoding;
    char16_t first;
    char16_t last;
};

// Read, and not written.
constexpr Loss kOnlyRead[]{
    // ICU reads half-width katakana and more of the Japanese tables than these three may be written with.
    {0x0820, 0x0000, 0xFFFF},
    {0x0821, 0x0000, 0xFFFF},
    {0x0822, 0x0000, 0xFFFF},
    // iconv reads shifts that are none of this encoding's as characters.
    {0x0823, 0x000E, 0x000F},
    {0x0823, 0x001B, 0x001B},
    // ICU reads two codes as these and writes neither.
    {0x0920, 0x00A2, 0x00A3},
    {0x0920, 0x00A6, 0x00A6},
    {0x0920, 0x00AC, 0x00AC},
    {0x0931, 0xFF5C, 0xFF5C},
};

// Written as another character.
constexpr Loss kReplaced[]{
    // For private use: ICU writes what has stood there before Unicode had the character.
    {0x0006, 0xF8A0, 0xF8A0},
    {0x0420, 0xF86F, 0xF86F},
    {0x0820, 0xF86F, 0xF86F},
    {0x0821, 0xF86F, 0xF86F},
    {0x0822, 0xF86F, 0xF86F},
    {0x0A01, 0xF86F, 0xF86F},
    {0x0A06, 0xE000, 0xF8FF},
    // Backslash and tilde: iconv writes what is the yen sign and the overline there.
    {0x0628, u'\\', u'\\'},
    {0x0628, u'~', u'~'},
};

bool isOf(std::span<const Loss> losses, std::uint32_t encoding, char16_t unit) {
    return std::ranges::any_of(losses, [&](const Loss& loss) {
        return loss.encoding == encoding && unit >= loss.first && unit <= loss.last;
    });
}

// What comes back of a text that can be written.
std::u16string expectedOf(std::uint32_t encoding, std::u16string text, ByteOrderMark mark) {
    constexpr std::uint32_t kUtf8 = 0x08000100;
    // Only a mark that is written can't be taken for one that is text.
    if (encoding == kUtf8 && mark == ByteOrderMark::IsEncoding && text.starts_with(u'\uFEFF')) {
        text.erase(0, 1);
    }
    return text;
}

enum class Origin : bool { Any, Read };

// What is written of a text stands for exactly as much of it as is said, which is all of what was read.
void checkWritten(std::uint32_t encoding, const std::u16string& text, ByteOrderMark mark, Origin origin) {
    const auto written = platform::encodeText(encoding, text, mark);
    if (!written) {
        fuzz::check(!platform::decodeText(encoding, "", mark), "an unknown encoding is unknown both ways",
                    numberOf(encoding));
        return;
    }
    const std::size_t consumed = written->consumed;
    fuzz::check(consumed <= text.size(), "no more is written than there is", numberOf(encoding));
    fuzz::check(origin == Origin::Any || consumed == text.size() || isOf(kOnlyRead, encoding, text[consumed]),
                "what was read can be written", numberOf(encoding));
    const auto again = platform::decodeText(encoding, written->bytes, mark);
    fuzz::check(again.has_value(), "what is written can be read", numberOf(encoding));
    const std::u16string kept = text.substr(0, consumed);
    if (std::ranges::any_of(kept, [&](char16_t unit) { return isOf(kReplaced, encoding, unit); })) {
        return;
    }
    fuzz::check(*again == expectedOf(encoding, kept, mark), "what is written is read the same",
                numberOf(encoding));
    const auto second = platform::encodeText(encoding, kept, mark);
    fuzz::check(second && second->consumed == consumed && second->bytes == written->bytes,
                "what was written alone is written the same", numberOf(encoding));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    fuzz::ByteSource source(bytes, size);
    const std::uint32_t encoding = encodingFrom(source);
    const auto mark = source.flag() ? ByteOrderMark::IsEncoding : ByteOrderMark::IsText;
    const std::string given = source.rest();
    const auto text = platform::decodeText(encoding, given, mark);
    if (text) {
        checkWritten(encoding, *text, mark, Origin::Read);
    }
    std::u16string units(given.size() / sizeof(char16_t), u'\0');
    given.copy(reinterpret_cast<char*>(units.data()), units.size() * sizeof(char16_t));
    checkWritten(encoding, units, mark, Origin::Any);
    return 0;
}
