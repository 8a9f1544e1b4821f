// Base types of CoreFoundation.

#pragma once

#include <stdlib.h>
#include <string.h>
#include <sys/types.h>

typedef unsigned char Boolean;
typedef unsigned char UInt8;
typedef signed char SInt8;
typedef unsigned short UInt16;
typedef signed short SInt16;
typedef unsigned int UInt32;
typedef signed int SInt32;
typedef UInt16 UniChar;
typedef SInt16 OSErr;
typedef SInt32 OSStatus;

typedef signed long CFIndex;
typedef unsigned long CFHashCode;
typedef unsigned long CFTypeID;

typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFString* CFMutableStringRef;

typedef struct {
    CFIndex location;
    CFIndex length;
} CFRange;

static inline CFRange CFRangeMake(CFIndex loc, CFIndex len) {
    CFRange range = {loc, len};
    return range;
}

MACOS_C_BEGIN

extern const CFAllocatorRef kCFAllocatorDefault;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef cf);

MACOS_C_END
