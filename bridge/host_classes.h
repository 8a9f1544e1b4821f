// Whether a host object is of a host class, which any library of the family may bring, or none.

#pragma once

#include "plugin/host_interface.h"

// The host is asked for the class at every call.
bool isOfHostClass(REALobject object, const char* name);

// Whether the object is of one of the wrapper classes whose references are kept. Each is asked for once, when
// a test first comes to it; a class that is absent then stays unknown.
bool isOfKeptWrapperClass(REALobject object);
