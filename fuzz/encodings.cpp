// Text in the encodings of host strings: what is read of bytes is written and read again the same.

#include "platform/text_encoding.h"

#include "fuzz/byte_source.h"
#include "fuzz/check.h"
#include "fuzz/target.h"
#include "platform/encoding_table.h"

#include <vector>

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

// What is written of a text stands for exactly as much of it as is said.
void checkWritten(std::uint32_t encoding, const std::u16string& text, ByteOrderMark mark) {
    const auto written = platform::encodeText(encoding, text, mark);
    if (!written) {
        fuzz::check(!platform::decodeText(encoding, "", mark), "an unknown encoding is unknown both ways",
                    numberOf(encoding));
        return;
    }
    fuzz::check(written->consumed <= text.size(), "no more is written than there is", numberOf(encoding));
    const auto again = platform::decodeText(encoding, written->bytes, mark);
    fuzz::check(again.has_value(), "what is written can be read", numberOf(encoding));
    const auto second = platform::encodeText(encoding, *again, mark);
    fuzz::check(second && second->consumed == again->size(), "what was read can be written again",
                numberOf(encoding));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    fuzz::ByteSource source(bytes, size);
    const std::uint32_t encoding = encodingFrom(source);
    const auto mark = source.flag() ? ByteOrderMark::IsEncoding : ByteOrderMark::IsText;
    const std::string given = source.rest();
    const auto text = platform::decodeText(encoding, given, mark);
    if (text) {
        checkWritten(encoding, *text, mark);
    }
    std::u16string units(given.size() / sizeof(char16_t), u'\0');
    given.copy(reinterpret_cast<char*>(units.data()), units.size() * sizeof(char16_t));
    checkWritten(encoding, units, mark);
    return 0;
}
