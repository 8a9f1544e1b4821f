// The Cocoa classes whose objects become host objects of their own wrapper classes.

#pragma once

#import <Foundation/Foundation.h>
#include <cstdint>

enum class WrapRule : std::uint8_t {
    Direct, // the wrapper class of this very class, shared by all conversions of the object
    Chain,  // the wrapper class of the most derived class that has one
    Error,
    View,
};

struct CocoaClass {
    const char* name;
    WrapRule rule;
};

// The first class of the table that the object is one of; null for an object of none of them. On a given
// system any of the classes may be absent.
const CocoaClass* cocoaClassOf(NSObject* object);
