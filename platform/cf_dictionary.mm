#include "CoreFoundation/CoreFoundation.h"
#import "platform/ZQMPointerDictionary.h"

namespace {

const void* retainObject(CFAllocatorRef /*allocator*/, const void* object) {
    return [(id)object retain];
}

void releaseObject(CFAllocatorRef /*allocator*/, const void* object) {
    [(id)object release];
}

CFStringRef copyObjectDescription(const void* object) {
    return (CFStringRef)[[(id)object description] copy];
}

Boolean areObjectsEqual(const void* left, const void* right) {
    return static_cast<Boolean>([(id)left isEqual:(id)right]);
}

CFHashCode hashOfObject(const void* object) {
    return [(id)object hash];
}

ZQMPointerDictionary* pointerDictionary(CFDictionaryRef dictionary) {
    static const Class ours = [ZQMPointerDictionary class]; // the runtime would look for its name each time
    const bool is = [(id)dictionary isKindOfClass:ours];
    return is ? (ZQMPointerDictionary*)dictionary : nil;
}

} // namespace

const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {
    0, retainObject, releaseObject, copyObjectDescription, areObjectsEqual, hashOfObject};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {0, retainObject, releaseObject,
                                                                    copyObjectDescription, areObjectsEqual};

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks) {
    return (CFMutableDictionaryRef)[[ZQMPointerDictionary alloc] initWithKeyCallBacks:keyCallBacks
                                                                       valueCallBacks:valueCallBacks];
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
    return static_cast<CFIndex>([(NSDictionary*)dictionary count]);
}

// Foundation's own dictionaries take objects for keys and raise for nil: plain pointers are only for ours.
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    if (ZQMPointerDictionary* const own = pointerDictionary(dictionary); own != nil) {
        return [own valueOfKey:key];
    }
    return [(NSDictionary*)dictionary objectForKey:(id)key];
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
    if (ZQMPointerDictionary* const own = pointerDictionary(dictionary); own != nil) {
        [own setValue:value ofKey:key];
    } else {
        [(NSMutableDictionary*)dictionary setObject:(id)value forKey:(id)key];
    }
}

void CFDictionaryRemoveValue(CFMutableDictionaryRef dictionary, const void* key) {
    if (ZQMPointerDictionary* const own = pointerDictionary(dictionary); own != nil) {
        [own removeKey:key];
    } else {
        [(NSMutableDictionary*)dictionary removeObjectForKey:(id)key];
    }
}
