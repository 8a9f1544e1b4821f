// Cocoa objects as host values.

#pragma once

#include "plugin/host_interface.h"

#import <Foundation/Foundation.h>

// The host value that best stands for the object, with one lock that is the caller's; null for nil, for
// NSNull and for what has no counterpart in the host. An object that a host object owns comes back as that
// host object.
REALobject NewVariantFromNSObject(NSObject* object);
