// What the host classes share with the sibling libraries of the family.

#pragma once

#include "plugin/host_interface.h"

#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>
#include <optional>

// Maps each platform object that a host object owns to that host object: plain pointers, neither retained
// nor locked. Supplied by a sibling; null while there is none.
extern CFMutableDictionaryRef instances;

// Fetches the instances dictionary and prepares platform exceptions, each once, as soon as a sibling offers
// it; until then every call tries again.
void CocoaInit();

// Enters or removes a platform object, where there is a dictionary.
void rememberInstance(const void* platformObject, const void* hostObject);
void forgetInstance(const void* platformObject);

// Whether a constructor is called for an object that retains its platform object already, which is raised.
bool isAlreadyInitialized(const void* platformObject);

// What a host object does at its end with the platform object that it retains, if it has one: removes it from
// the dictionary, releases it, and leaves nil in its place.
template <typename Pointer>
void releaseInstance(Pointer& platformObject) {
    if (platformObject != nil) {
        forgetInstance(platformObject);
        [platformObject release];
        platformObject = nil;
    }
}

// The host object that owns the platform object, locked once more for the caller, or null from a host that
// can't lock it. Nothing where there is none.
std::optional<REALobject> lockedInstance(const void* platformObject);
