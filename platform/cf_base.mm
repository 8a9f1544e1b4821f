#include "CoreFoundation/CoreFoundation.h"
#include "platform/object_required.h"

#import <Foundation/Foundation.h>

using zqm::platform::requireObject;

const CFAllocatorRef kCFAllocatorDefault = nullptr;

CFTypeRef CFRetain(CFTypeRef object) {
    requireObject(object, "CFRetain");
    return [(id)object retain];
}

void CFRelease(CFTypeRef object) {
    requireObject(object, "CFRelease");
    [(id)object release];
}
