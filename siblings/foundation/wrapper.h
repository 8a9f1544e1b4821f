// What every wrapper class is made of: its instance data begins with the Cocoa object, which it retains once.

#pragma once

#include "plugin/host_interface.h"

struct WrapperData {
    void*
        object; // a Cocoa object or CoreFoundation reference; null until the library that made it fills it in
};

// The destructor of wrapper classes: gives the object up, and its pair in the instances dictionary.
void releaseWrapped(REALobject self);

// The constructor of wrapper classes.
void startEmpty(REALobject self);

// Declared so that host code can't construct the classes: their objects come from the libraries.
void DummyConstructor(REALobject self);

// What the object says of itself; null for an empty wrapper.
REALstring description(REALobject self);

// Every wrapper class has these.
extern const MethodRecord kWrapperMethods[];
inline constexpr std::uint64_t kWrapperMethodCount = 2;

constexpr ClassRecord wrapperClass(const char* name) {
    return {
        .version = 13,
        .name = name,
        .dataSize = sizeof(WrapperData),
        .constructor = startEmpty,
        .destructor = releaseWrapped,
        .methods = kWrapperMethods,
        .methodCount = kWrapperMethodCount,
    };
}
