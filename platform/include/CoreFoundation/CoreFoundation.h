// The part of CoreFoundation that this project uses, under Apple's names, for systems that have no
// CoreFoundation of their own. Plain C: a host needs no Objective-C to use it.
//
// Objects are GNUstep's Foundation objects ("toll-free"): a CFStringRef is an NSString, a CFDictionaryRef an
// NSDictionary, a CFURLRef an NSURL, and the functions take any object of those classes. A function with
// Create or Copy in its name gives one reference that the caller releases; nothing else gives one away.
// Allocators are accepted and ignored.

#ifndef ZQM_COREFOUNDATION_H
#define ZQM_COREFOUNDATION_H

#include <stdint.h>

#ifdef __cplusplus
#define CF_EXTERN_C_BEGIN extern "C" {
#define CF_EXTERN_C_END }
#else
#define CF_EXTERN_C_BEGIN
#define CF_EXTERN_C_END
#endif
#define CF_EXPORT extern __attribute__((visibility("default")))

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

// ---- base types

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef signed char SInt8;
typedef unsigned short UInt16;
typedef signed short SInt16;
typedef unsigned int UInt32;
typedef signed int SInt32;
typedef UInt16 UniChar;

typedef signed long CFIndex;
typedef unsigned long CFHashCode;
typedef double CFTimeInterval;

typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;
typedef const struct __CFURL* CFURLRef;

typedef struct {
    CFIndex location;
    CFIndex length;
} CFRange;

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
    CFRange range;
    range.location = location;
    range.length = length;
    return range;
}

CF_EXPORT const CFAllocatorRef kCFAllocatorDefault;

// Adds a reference to any object and returns it. Null ends the process with a message, as Apple's does.
CF_EXPORT CFTypeRef CFRetain(CFTypeRef object);

// Gives up a reference. Null ends the process with a message, as Apple's does.
CF_EXPORT void CFRelease(CFTypeRef object);

// ---- strings

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

// ---- dictionaries

typedef const void* (*CFDictionaryRetainCallBack)(CFAllocatorRef allocator, const void* value);
typedef void (*CFDictionaryReleaseCallBack)(CFAllocatorRef allocator, const void* value);
typedef CFStringRef (*CFDictionaryCopyDescriptionCallBack)(const void* value);
typedef Boolean (*CFDictionaryEqualCallBack)(const void* value1, const void* value2);
typedef CFHashCode (*CFDictionaryHashCallBack)(const void* value);

typedef struct {
    CFIndex version;
    CFDictionaryRetainCallBack retain;
    CFDictionaryReleaseCallBack release;
    CFDictionaryCopyDescriptionCallBack copyDescription;
    CFDictionaryEqualCallBack equal;
    CFDictionaryHashCallBack hash;
} CFDictionaryKeyCallBacks;

typedef struct {
    CFIndex version;
    CFDictionaryRetainCallBack retain;
    CFDictionaryReleaseCallBack release;
    CFDictionaryCopyDescriptionCallBack copyDescription;
    CFDictionaryEqualCallBack equal;
} CFDictionaryValueCallBacks;

// For keys and values that are objects: retained while they are in the dictionary, compared by isEqual:.
CF_EXPORT const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
CF_EXPORT const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

// An empty dictionary. Null callbacks: plain pointers, compared by address and neither retained nor
// released; null is then a legal key and value. The capacity is a hint; 0 and any other is unlimited.
CF_EXPORT CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                           const CFDictionaryKeyCallBacks* keyCallBacks,
                                                           const CFDictionaryValueCallBacks* valueCallBacks);

CF_EXPORT CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);

// The value of a key, not retained; null when there is none (or the value is null).
CF_EXPORT const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);

// Adds a pair, or replaces the value of an equal key, which keeps its place.
CF_EXPORT void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value);

// Removes a pair; nothing happens when there is none.
CF_EXPORT void CFDictionaryRemoveValue(CFMutableDictionaryRef dictionary, const void* key);

// ---- URLs

// A URL, relative to baseURL unless that is null. Null for a text that is no URL: it is empty, or holds a
// character that must be escaped (a space, anything beyond ASCII) or a percent sign without two hex digits.
CF_EXPORT CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef string, CFURLRef baseURL);

// ---- run loop

typedef CFStringRef CFRunLoopMode;
typedef SInt32 CFRunLoopRunResult;

enum {
    kCFRunLoopRunFinished = 1,
    kCFRunLoopRunStopped = 2,
    kCFRunLoopRunTimedOut = 3,
    kCFRunLoopRunHandledSource = 4
};

CF_EXPORT const CFRunLoopMode kCFRunLoopDefaultMode;

// Runs the calling thread's run loop for so many seconds; 0 or less handles what is ready and returns. A
// mode in which nothing is watched waits out its time. With returnAfterSourceHandled it returns as soon as
// one speech callback was delivered, with kCFRunLoopRunHandledSource; otherwise with kCFRunLoopRunTimedOut.
// Each round has an autorelease pool of its own. May be called from within a callback. An exception out of
// a callback, Objective-C or native, comes out of here.
CF_EXPORT CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                                Boolean returnAfterSourceHandled);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
