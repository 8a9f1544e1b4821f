// Structs that Cocoa carries in an NSValue, as host objects.

#pragma once

#include "plugin/host_interface.h"

@class NSValue;

// A new host object that holds the value, with one lock that is the caller's; null for a struct that has none
// and where the library of its host class is absent.
REALobject hostObjectOfValue(NSValue* value);
