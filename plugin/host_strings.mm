#include "plugin/host_strings.h"

#include "plugin/host_handles.h"
#include "plugin/native_guard.h"
#include "plugin/plugin_main.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>

namespace {

constexpr char32_t kFirstSupplementary = 0x10000;
constexpr char32_t kBeyondUnicode = 0x110000;
constexpr char16_t kReplacement = 0xFFFD;

// Only the low 32 bits of a length reach the host.
std::int32_t hostLength(std::int64_t length) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(length));
}

CFStringRef newCFString(const char* bytes, std::int64_t length, std::uint32_t encoding) {
    if (bytes == nullptr) {
        return nullptr;
    }
    if (encoding == kCFStringEncodingUnicode) {
        return CFStringCreateWithCharacters(nullptr, reinterpret_cast<const UniChar*>(bytes),
                                            length / static_cast<std::int64_t>(sizeof(UniChar)));
    }
    return CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(bytes), length, encoding, true);
}

CFStringRef newCFStringFromBytes(REALstring string, std::uint32_t encoding) {
    const OwnedString lock = locked(string);
    const std::int64_t length = hostStringByteLength(string);
    return newCFString(REALGetStringContents(string), length, encoding);
}

REALstring convertedToUTF8(REALstring string) {
    const OwnedString intermediate{string};
    return intermediate ? REALConvertString(intermediate.get(), kCFStringEncodingUTF8) : nullptr;
}

REALstring buildWithEncoding(const void* data, std::int64_t length, std::uint32_t encoding) {
    return convertedToUTF8(
        REALBuildStringWithEncoding(static_cast<const char*>(data), hostLength(length), encoding));
}

// Writes the UTF-16 form of a UTF-32 text; answers the number of units. Surrogates are dropped, numbers
// that Unicode doesn't have are replaced.
std::size_t convertToUTF16(const char* data, std::size_t unitCount, char16_t* out) {
    char16_t* end = out;
    for (std::size_t i = 0; i < unitCount; ++i) {
        char32_t unit = 0;
        std::memcpy(&unit, data + i * sizeof unit, sizeof unit);
        if (unit >= kBeyondUnicode) {
            *end++ = kReplacement;
        } else if (unit >= kFirstSupplementary) {
            const char32_t offset = unit - kFirstSupplementary;
            *end++ = static_cast<char16_t>(0xD800 + (offset >> 10));
            *end++ = static_cast<char16_t>(0xDC00 | (offset & 0x3FF));
        } else if (unit < 0xD800 || unit > 0xDFFF) {
            *end++ = static_cast<char16_t>(unit);
        }
    }
    return static_cast<std::size_t>(end - out);
}

REALstring buildFromUTF32(const void* data, std::int64_t length) {
    if (rbversion_rbversion >= kHostVersion2013) {
        return buildWithEncoding(data, length, kCFStringEncodingUTF32);
    }
    constexpr std::int64_t kLongestOnStack = 799;
    constexpr std::size_t kUnitsOnStack = kLongestOnStack / sizeof(char32_t) * 2;
    const auto unitCount = static_cast<std::size_t>(length) / sizeof(char32_t);
    std::array<char16_t, kUnitsOnStack> onStack;
    std::unique_ptr<char16_t[]> onHeap;
    char16_t* units = onStack.data();
    if (length > kLongestOnStack) {
        onHeap = std::make_unique<char16_t[]>(unitCount * 2);
        units = onHeap.get();
    }
    const std::size_t count = convertToUTF16(static_cast<const char*>(data), unitCount, units);
    return REALBuildUnicodeStringUTF16(units, static_cast<std::int64_t>(count * sizeof(char16_t)));
}

// ASCII is what it is in every encoding that extends it, and tells the host more than the encoding does.
std::uint32_t narrowed(const char* data, std::int64_t length, std::uint32_t encoding) {
    const bool extendsASCII = encoding == kCFStringEncodingMacRoman ||
                              encoding == kCFStringEncodingWindowsLatin1 || encoding == kEncodingNone;
    const bool isASCII = extendsASCII && std::all_of(data, data + length, [](char byte) {
                             return static_cast<unsigned char>(byte) < 0x80;
                         });
    return isASCII ? static_cast<std::uint32_t>(kCFStringEncodingASCII) : encoding;
}

REALstring buildLabelled(const char* data, std::int64_t length, std::uint32_t encoding) {
    REALstring string = originalREALBuildString(data, hostLength(length));
    if (string != nullptr) {
        REALSetStringEncoding(string, narrowed(data, length, encoding));
    }
    return string;
}

REALstring newStringFromUTF8(CFStringRef string, char* buffer, CFIndex size) {
    if (!CFStringGetCString(string, buffer, size, kCFStringEncodingUTF8)) {
        return nullptr;
    }
    return REALBuildUnicodeString(buffer, static_cast<std::int64_t>(std::strlen(buffer)),
                                  kCFStringEncodingUTF8);
}

} // namespace

std::int64_t hostStringByteLength(REALstring string) {
    using LenB = std::int64_t (*)(REALstring);
    static LenB lenB = nullptr;
    if (lenB == nullptr) {
        lenB = reinterpret_cast<LenB>(REALLoadFrameworkMethod(nullptr, "LenB( s as string ) as integer"));
    }
    return lenB != nullptr ? lenB(string) : 0;
}

CFStringRef RBString2CFString(REALstring string) {
    if (string == nullptr) {
        return nullptr;
    }
    const std::uint32_t encoding = REALGetStringEncoding(string);
    if (encoding == kEncodingNone) {
        return newCFStringFromBytes(string, kCFStringEncodingMacRoman);
    }
    if (rbversion_rbversion >= kHostVersion2012) {
        if (CFStringRef answer = REALCopyStringCFString(string, 0)) {
            return answer;
        }
    }
    if (CFStringRef answer = REALGetStringCFString(string, 0)) {
        return answer;
    }
    return newCFStringFromBytes(string, encoding);
}

REALstring CFString2RBString(CFStringRef string) {
    constexpr CFIndex kLongestOnStack = 99; // UTF-16 units
    constexpr CFIndex kBytesOnStack = 600;
    constexpr CFIndex kBytesPerUnit = 6;

    if (string == nullptr) {
        return nullptr;
    }
    const CFIndex length = CFStringGetLength(string);
    if (length <= 0) {
        return nullptr;
    }
    if (length <= kLongestOnStack) {
        std::array<char, kBytesOnStack + 1> buffer;
        return newStringFromUTF8(string, buffer.data(), kBytesOnStack);
    }
    return nativeGuarded([&] {
        const CFIndex size = length * kBytesPerUnit;
        const std::unique_ptr<char[]> buffer{new char[static_cast<std::size_t>(size)]}; // not zeroed
        return newStringFromUTF8(string, buffer.get(), size);
    });
}

REALstring REALBuildUnicodeStringUTF16(const void* data, std::int64_t length) {
    return nativeGuarded([&]() -> REALstring {
        if (rbversion_rbversion >= kHostVersion2012) {
            return buildWithEncoding(data, length, kCFStringEncodingUnicode);
        }
        REALstring string = originalREALBuildString(static_cast<const char*>(data), hostLength(length));
        if (string != nullptr) {
            REALSetStringEncoding(string, kCFStringEncodingUnicode);
        }
        return convertedToUTF8(string);
    });
}

REALstring REALBuildUnicodeString(const void* data, std::int64_t length, std::uint32_t encoding) {
    return nativeGuarded([&]() -> REALstring {
        if (data == nullptr || length < 1 || length > std::numeric_limits<std::int32_t>::max()) {
            return nullptr;
        }
        switch (encoding) {
        case kCFStringEncodingUTF32:
            return buildFromUTF32(data, length);
        case kCFStringEncodingUnicode:
            return REALBuildUnicodeStringUTF16(data, length);
        default:
            return buildLabelled(static_cast<const char*>(data), length, encoding);
        }
    });
}
