#pragma once

#include <CoreFoundation/CFBase.h>

typedef UInt32 CFStringEncoding;

#define kCFStringEncodingInvalidId (0xFFFFFFFFU)

enum : CFStringEncoding {
    kCFStringEncodingMacRoman = 0,
    kCFStringEncodingWindowsLatin1 = 0x0500,
    kCFStringEncodingASCII = 0x0600,
    kCFStringEncodingUnicode = 0x0100,
    kCFStringEncodingUTF8 = 0x08000100,
    kCFStringEncodingUTF32 = 0x0C000100
};

typedef enum CFStringNormalizationForm : CFIndex {
    kCFStringNormalizationFormD = 0,
    kCFStringNormalizationFormKD = 1,
    kCFStringNormalizationFormC = 2,
    kCFStringNormalizationFormKC = 3
} CFStringNormalizationForm;

MACOS_C_BEGIN

CFTypeID CFStringGetTypeID(void);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* characters,
                                         CFIndex numChars);
CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef alloc, CFIndex maxLength, CFStringRef theString);
CFIndex CFStringGetLength(CFStringRef string);
void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer);
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding encoding);
void CFStringNormalize(CFMutableStringRef theString, CFStringNormalizationForm theForm);

MACOS_C_END
