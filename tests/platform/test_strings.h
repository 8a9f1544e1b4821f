// Foundation's strings in tests.

#pragma once

#include <CoreFoundation/CoreFoundation.h>

#import <Foundation/Foundation.h>

#include <string>

namespace zqm::platform::test {

inline NSString* stringOf(const std::string& utf8) {
    return [[[NSString alloc] initWithBytes:utf8.data() length:utf8.size()
                                   encoding:NSUTF8StringEncoding] autorelease];
}

// Whatever the units are.
inline NSString* stringOf(const UniChar* units, CFIndex count) {
    return [reinterpret_cast<NSString*>(const_cast<void*>(static_cast<const void*>(
        CFStringCreateWithCharacters(kCFAllocatorDefault, units, count)))) autorelease];
}

// Empty for what has no such form.
inline std::string utf8Of(NSString* string) {
    NSData* const data = [string dataUsingEncoding:NSUTF8StringEncoding];
    return data != nil ? std::string(static_cast<const char*>([data bytes]), [data length]) : std::string();
}

} // namespace zqm::platform::test
