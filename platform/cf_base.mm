#include "CoreFoundation/CoreFoundation.h"

#import <Foundation/Foundation.h>

#include <cstdio>
#include <cstdlib>

const CFAllocatorRef kCFAllocatorDefault = nullptr;

namespace {

// A reference count that went wrong is a fault of the program; on Apple's systems it ends there too.
void requireObject(CFTypeRef object, const char* function) {
    if (object == nullptr) {
        std::fprintf(stderr, "%s was called with null.\n", function);
        std::abort();
    }
}

} // namespace

CFTypeRef CFRetain(CFTypeRef object) {
    requireObject(object, "CFRetain");
    return [(id)object retain];
}

void CFRelease(CFTypeRef object) {
    requireObject(object, "CFRelease");
    [(id)object release];
}
