// Host strings as arguments of platform messages, and platform answers as host strings.

#pragma once

#include "plugin/host_strings.h"

#import <Foundation/Foundation.h>

// Takes over the caller's reference: autoreleased; nil for null.
inline NSString* autoreleasedString(CFStringRef string) {
    return [reinterpret_cast<NSString*>(const_cast<void*>(static_cast<const void*>(string))) autorelease];
}

// Autoreleased; nil for a null string.
inline NSString* platformString(REALstring string) {
    return autoreleasedString(RBString2CFString(string));
}

// With one lock that is the caller's; null for nil.
inline REALstring hostString(NSString* string) {
    return CFString2RBString(reinterpret_cast<CFStringRef>(string));
}
