// CoreFoundation and CoreText objects in host objects of the classes named after their types.

#pragma once

#include "plugin/host_interface.h"

#include <optional>

@class NSObject;

// A new wrapper of the object, with one lock that is the caller's, or null where no wrapper class can take
// it. Nothing for an object that is none of CoreFoundation's, and after a platform exception, which is
// dropped.
std::optional<REALobject> cfWrapper(NSObject* object);
