// Dictionaries.

#ifndef ZQM_CFDICTIONARY_H
#define ZQM_CFDICTIONARY_H

#include <CoreFoundation/CFBase.h>

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): Apple's names

CF_EXTERN_C_BEGIN

typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;

// The number of this kind of object, as CFGetTypeID answers it.
CF_EXPORT CFTypeID CFDictionaryGetTypeID(void);

typedef const void* (*CFDictionaryRetainCallBack)(CFAllocatorRef allocator, const void* value);
typedef void (*CFDictionaryReleaseCallBack)(CFAllocatorRef allocator, const void* value);
typedef CFStringRef (*CFDictionaryCopyDescriptionCallBack)(const void* value);
typedef Boolean (*CFDictionaryEqualCallBack)(const void* value1, const void* value2);
typedef CFHashCode (*CFDictionaryHashCallBack)(const void* value);

// What is done with keys; null: nothing, and they are compared by address.
typedef struct {
    CFIndex version;
    CFDictionaryRetainCallBack retain;
    CFDictionaryReleaseCallBack release;
    CFDictionaryCopyDescriptionCallBack copyDescription;
    CFDictionaryEqualCallBack equal;
    CFDictionaryHashCallBack hash;
} CFDictionaryKeyCallBacks;

// The same of values.
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

// How many pairs there are.
CF_EXPORT CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);

// The value of a key, not retained; null when there is none (or the value is null).
CF_EXPORT const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);

// Adds a pair, or replaces the value of an equal key, which keeps its place.
CF_EXPORT void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value);

// Removes a pair; nothing happens when there is none.
CF_EXPORT void CFDictionaryRemoveValue(CFMutableDictionaryRef dictionary, const void* key);

CF_EXTERN_C_END

// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

#endif
