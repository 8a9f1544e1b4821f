// Which converter serves which CoreFoundation string encoding. UTF-16 is not here: strings are made of it.

#pragma once

#include <cstdint>
#include <span>

namespace zqm::platform {

enum class ConverterLibrary : std::uint8_t { Icu, Iconv };

struct EncodingRow {
    std::uint32_t encoding; // CoreFoundation's number
    ConverterLibrary library;
    const char* converter; // its name there
};

// In the order of the numbers.
std::span<const EncodingRow> encodingTable();

} // namespace zqm::platform
