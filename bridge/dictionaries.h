// Dictionaries of the platform and of the host.

#pragma once

#include "plugin/host_interface.h"

@class NSDictionary;

// A new host Dictionary with every pair, converted, in the order of allKeys; with one lock that is the
// caller's. Null for nil and where the host has no Dictionary.
REALobject NSDictionaryRB(NSDictionary* dictionary);

// A platform dictionary with every pair of a host Dictionary, converted; a value or key that converts to
// nothing is NSNull, a pair without a key is left out. Autoreleased; immutable when empty, nil for null.
NSDictionary* NewNSDictionary(REALobject dictionary);
