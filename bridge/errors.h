// Platform errors as host objects.

#pragma once

#include "plugin/host_interface.h"

@class NSError;

// The host object of the error, with one lock that is the caller's: the one it has already, or a new
// "NSErrorZQM". Null for nil and where no sibling library defines that class.
REALobject NewNSErrorZQM(NSError* error);
