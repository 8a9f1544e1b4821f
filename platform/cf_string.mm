#include "CoreFoundation/CoreFoundation.h"
#import "platform/ZQMUnicodeString.h"
#include "platform/surrogates.h"
#include "platform/text_encoding.h"
#include "platform/unicode_forms.h"
#include "platform/utf8.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

using zqm::platform::ByteOrderMark;
using zqm::platform::characterLength;
using zqm::platform::EncodedText;
using zqm::platform::isHighSurrogate;
using zqm::platform::isLowSurrogate;
using zqm::platform::UnicodeForm;

namespace {

// The runtime would look for its name each time, which is a tenth of what a short string costs.
Class stringClass() {
    static const Class found = [NSString class];
    return found;
}

// Foundation's own initialisers refuse lone surrogates and take a byte-order mark for one even here.
CFStringRef newString(std::u16string_view text) {
    const auto* units = reinterpret_cast<const unichar*>(text.data());
    NSString* string = [[stringClass() alloc] initWithCharacters:units length:text.size()];
    if (string == nil || [string length] != text.size()) {
        [string release];
        string = [[ZQMUnicodeString alloc] initWithUnits:units count:text.size()];
    }
    return (CFStringRef)string;
}

std::u16string unitsOf(CFStringRef string, CFRange range) {
    std::u16string text(static_cast<std::size_t>(range.length), u'\0');
    CFStringGetCharacters(string, range, reinterpret_cast<UniChar*>(text.data()));
    return text;
}

// As Foundation holds it, without UTF-16 in between.
CFStringRef newAsciiString(std::string_view bytes) {
    return (CFStringRef)[[stringClass() alloc] initWithBytes:bytes.data()
                                                      length:bytes.size()
                                                    encoding:NSASCIIStringEncoding];
}

bool extendsAscii(CFStringEncoding encoding) {
    return encoding == kCFStringEncodingUTF8 || encoding == kCFStringEncodingASCII;
}

// Portion by portion, so that a long text is held no second time. Answers false for a text with lone
// surrogates, and where the room is too small.
bool writeUtf8(NSString* string, std::span<char> room) {
    constexpr NSUInteger kUnits = 1024;
    std::array<char16_t, kUnits> units;
    const NSUInteger length = [string length];
    for (NSUInteger begin = 0; begin < length;) {
        const NSUInteger count = std::min(length - begin, kUnits);
        [string getCharacters:reinterpret_cast<unichar*>(units.data()) range:NSMakeRange(begin, count)];
        std::u16string_view portion(units.data(), count);
        if (begin + count < length && isHighSurrogate(portion.back())) {
            portion.remove_suffix(1); // with its other half in the next one
        }
        const auto bytes = zqm::platform::encodeUtf8(portion, room);
        if (!bytes) {
            return false;
        }
        room = room.subspan(*bytes);
        begin += portion.size();
    }
    if (room.empty()) {
        return false;
    }
    room.front() = '\0';
    return true;
}

ByteOrderMark markOf(Boolean isExternalRepresentation) {
    return isExternalRepresentation != 0 ? ByteOrderMark::IsEncoding : ByteOrderMark::IsText;
}

// Each character without a place gives way to the loss byte. Returns the places in the new text where one
// unit now stands for a surrogate pair.
std::vector<std::size_t> replaceLost(std::u16string& text, CFStringEncoding encoding, UInt8 lossByte) {
    std::vector<std::size_t> shortened;
    std::size_t begin = 0;
    while (begin < text.size()) {
        const auto rest = std::u16string_view(text).substr(begin);
        const auto part = encodeText(encoding, rest, ByteOrderMark::IsText);
        if (!part || part->consumed >= rest.size()) {
            break;
        }
        begin += part->consumed;
        const std::size_t length = characterLength(text, begin);
        text.replace(begin, length, 1, lossByte);
        if (length == 2) {
            shortened.push_back(begin);
        }
        ++begin;
    }
    return shortened;
}

// The longest beginning of the text whose bytes fit.
EncodedText fitting(CFStringEncoding encoding, std::u16string_view text, ByteOrderMark mark,
                    std::size_t room) {
    std::size_t fits = 0;
    std::size_t tooLong = text.size() + 1;
    EncodedText best;
    while (tooLong - fits > 1) {
        std::size_t middle = fits + (tooLong - fits) / 2;
        const bool splitsPair =
            middle < text.size() && isLowSurrogate(text[middle]) && isHighSurrogate(text[middle - 1]);
        if (splitsPair && --middle == fits) {
            middle += 2;
            if (middle >= tooLong) {
                break;
            }
        }
        EncodedText part = *encodeText(encoding, text.substr(0, middle), mark);
        if (part.bytes.size() <= room) {
            fits = middle;
            best = std::move(part);
        } else {
            tooLong = middle;
        }
    }
    return best;
}

} // namespace

CFStringRef CFStringCreateWithBytes(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
    if (numBytes < 0 || (bytes == nullptr && numBytes > 0)) {
        return nullptr;
    }
    const std::string_view view(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(numBytes));
    if (extendsAscii(encoding) && zqm::platform::isAscii(view)) {
        return newAsciiString(view);
    }
    const auto text = zqm::platform::decodeText(encoding, view, markOf(isExternalRepresentation));
    return text ? newString(*text) : nullptr;
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef /*allocator*/, const UniChar* characters,
                                         CFIndex numChars) {
    if (numChars < 0 || (characters == nullptr && numChars > 0)) {
        return nullptr;
    }
    return newString({reinterpret_cast<const char16_t*>(characters), static_cast<std::size_t>(numChars)});
}

CFIndex CFStringGetLength(CFStringRef string) {
    return static_cast<CFIndex>([(NSString*)string length]);
}

// NOLINTNEXTLINE(readability-non-const-parameter): getCharacters:range: writes into it
void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
    [(NSString*)string getCharacters:buffer
                               range:NSMakeRange(static_cast<NSUInteger>(range.location),
                                                 static_cast<NSUInteger>(range.length))];
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding encoding) {
    if (string == nullptr || buffer == nullptr || bufferSize <= 0 || !zqm::platform::isEightBit(encoding)) {
        return 0;
    }
    if (encoding == kCFStringEncodingUTF8) {
        return writeUtf8((NSString*)string, {buffer, static_cast<std::size_t>(bufferSize)}) ? 1 : 0;
    }
    const std::u16string text = unitsOf(string, CFRangeMake(0, CFStringGetLength(string)));
    const auto encoded = zqm::platform::encodeText(encoding, text, ByteOrderMark::IsText);
    if (!encoded || encoded->consumed < text.size() ||
        encoded->bytes.size() >= static_cast<std::size_t>(bufferSize)) {
        return 0;
    }
    buffer[encoded->bytes.copy(buffer, encoded->bytes.size())] = '\0';
    return 1;
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex maxBufLen,
                         CFIndex* usedBufLen) {
    const ByteOrderMark mark = markOf(isExternalRepresentation);
    const auto room = static_cast<std::size_t>(std::max<CFIndex>(maxBufLen, 0));
    std::u16string text = unitsOf(string, range);
    std::vector<std::size_t> shortened;
    if (lossByte != 0) {
        shortened = replaceLost(text, encoding, lossByte);
    }
    auto encoded = zqm::platform::encodeText(encoding, text, mark);
    if (encoded && buffer != nullptr && encoded->bytes.size() > room) {
        encoded = fitting(encoding, text, mark, room);
    }
    if (usedBufLen != nullptr) {
        *usedBufLen = encoded ? static_cast<CFIndex>(encoded->bytes.size()) : 0;
    }
    if (!encoded) {
        return 0;
    }
    if (buffer != nullptr) {
        encoded->bytes.copy(reinterpret_cast<char*>(buffer), encoded->bytes.size());
    }
    const auto pairs = std::ranges::lower_bound(shortened, encoded->consumed) - shortened.begin();
    return static_cast<CFIndex>(encoded->consumed) + pairs;
}

// Built up from the units: Foundation's own copy refuses texts with lone surrogates.
CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef /*allocator*/, CFIndex /*maxLength*/,
                                             CFStringRef string) {
    if (string == nullptr) {
        return nullptr;
    }
    NSMutableString* const copy = [[NSMutableString alloc] init];
    [copy setString:(NSString*)string];
    return (CFMutableStringRef)copy;
}

void CFStringNormalize(CFMutableStringRef string, CFStringNormalizationForm form) {
    if (string == nullptr || form < kCFStringNormalizationFormD || form > kCFStringNormalizationFormKC) {
        return;
    }
    const std::u16string text = unitsOf(string, CFRangeMake(0, CFStringGetLength(string)));
    CFStringRef const normalized = newString(inForm(static_cast<UnicodeForm>(form), text));
    [(NSMutableString*)string setString:(NSString*)normalized];
    CFRelease(normalized);
}
