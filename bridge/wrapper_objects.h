// Host objects that carry a Cocoa object: instances of the host class named after the Cocoa class with "ZQM"
// appended, whose instance data begins with the Cocoa object, retained once.

#pragma once

#include "plugin/host_interface.h"

#import <Foundation/Foundation.h>

// What the first word of a wrapper's instance data is. For some classes it is a CoreFoundation reference.
id& wrappedObject(REALobject wrapper);

// A new wrapper of the most derived class of the object that the host has a wrapper class for and whose
// objects are of the expected class; with one lock that is the caller's. Null for nil and where there is
// none.
REALobject NewNSObjectZQM(NSObject* object, Class expectedClass);

// The same without an expected class.
REALobject newWrapper(NSObject* object);

// The host object that the object belongs to, locked once more for the caller; otherwise a new wrapper of
// that host class, which it belongs to from now on. Null where the host has no such class.
REALobject sharedWrapper(NSObject* object, const char* hostClass);

// The name of a Cocoa class's host class.
class WrapperClassName {
public:
    explicit WrapperClassName(const char* cocoaClass);

    // Null for a Cocoa class whose name is too long to have one.
    const char* text() const { return length_ != 0 ? text_ : nullptr; }

private:
    static constexpr std::size_t kLongestCocoaName = 199;
    static constexpr char kSuffix[] = "ZQM";

    char text_[kLongestCocoaName + sizeof kSuffix];
    std::size_t length_ = 0;
};
