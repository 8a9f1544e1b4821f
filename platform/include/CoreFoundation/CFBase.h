// The base types of CoreFoundation, and what all its objects have in common.

#ifndef ZQM_CFBASE_H
#define ZQM_CFBASE_H

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
typedef unsigned long CFTypeID;
typedef unsigned long CFHashCode;
typedef double CFTimeInterval;

typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFString* CFMutableStringRef;

// So many elements from this one on.
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

// What kind of object this is: the number that the function CF...GetTypeID or CT...GetTypeID of its kind
// answers, 1 or more. 0 for an object that is of none of those kinds. Null ends the process with a message,
// as Apple's does.
CF_EXPORT CFTypeID CFGetTypeID(CFTypeRef object);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
