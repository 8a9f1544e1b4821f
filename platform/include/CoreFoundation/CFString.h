// Strings.

#ifndef ZQM_CFSTRING_H
#define ZQM_CFSTRING_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFStringGetTypeID(void);

typedef UInt32 CFStringEncoding;

#define kCFStringEncodingInvalidId (0xFFFFFFFFU)

enum {
    kCFStringEncodingMacRoman = 0,
    kCFStringEncodingWindowsLatin1 = 0x0500,
    kCFStringEncodingISOLatin1 = 0x0201,
    kCFStringEncodingNextStepLatin = 0x0B01,
    kCFStringEncodingASCII = 0x0600,
    kCFStringEncodingUnicode = 0x0100,
    kCFStringEncodingUTF8 = 0x08000100,
    kCFStringEncodingNonLossyASCII = 0x0BFF,
    kCFStringEncodingUTF16 = 0x0100,
    kCFStringEncodingUTF16BE = 0x10000100,
    kCFStringEncodingUTF16LE = 0x14000100,
    kCFStringEncodingUTF32 = 0x0C000100,
    kCFStringEncodingUTF32BE = 0x18000100,
    kCFStringEncodingUTF32LE = 0x1C000100
};

// A string of numBytes bytes. Null when the encoding is not known or the bytes are not valid in it.
// With isExternalRepresentation a byte-order mark is no part of the text: it decides the order of UTF-16
// and UTF-32 and is dropped, as in UTF-8. Without a mark those two are in the machine's order.
CF_EXPORT CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex numBytes,
                                              CFStringEncoding encoding, Boolean isExternalRepresentation);

// A string of numChars UTF-16 units, kept as they are, lone surrogates included.
CF_EXPORT CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* characters,
                                                   CFIndex numChars);

// The length in UTF-16 units.
CF_EXPORT CFIndex CFStringGetLength(CFStringRef string);

// Copies the UTF-16 units of the range into the buffer. A range beyond the end raises NSRangeException.
CF_EXPORT void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);

// Writes the string and a NUL after it in an 8-bit encoding. False when the encoding is not known or not
// 8-bit, when it has no place for a character (a lone surrogate is one for every encoding), or when the
// bytes and their NUL do not fit into bufferSize; the buffer's contents are then undefined.
CF_EXPORT Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize,
                                     CFStringEncoding encoding);

// Writes the range in an encoding, no NUL after it, and returns how many UTF-16 units were converted: fewer
// than the range has when the next character does not fit into maxBufLen or has no place in the encoding.
// A lossByte other than 0 is written for each character without a place. With isExternalRepresentation,
// UTF-16 and UTF-32 (in the machine's order) begin with a byte-order mark. A null buffer only counts.
// usedBufLen, if not null, receives the bytes written (or needed). 0 for an encoding that is not known.
CF_EXPORT CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                                   UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer,
                                   CFIndex maxBufLen, CFIndex* usedBufLen);

// A string that can be changed, with the same text. maxLength is accepted and ignored: it grows as it must.
// Null for null.
CF_EXPORT CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef allocator, CFIndex maxLength,
                                                       CFStringRef string);

typedef CFIndex CFStringNormalizationForm;

enum {
    kCFStringNormalizationFormD = 0,
    kCFStringNormalizationFormKD = 1,
    kCFStringNormalizationFormC = 2,
    kCFStringNormalizationFormKC = 3
};

// Brings the text into one of Unicode's forms. Lone surrogates stay; null and any other form change nothing.
CF_EXPORT void CFStringNormalize(CFMutableStringRef string, CFStringNormalizationForm form);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
