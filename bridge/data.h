// Bytes of the platform as MemoryBlocks of the host.

#pragma once

#include "plugin/host_interface.h"

@class NSData;

// A new MemoryBlock with a copy of the bytes, with one lock that is the caller's. Null for nil and for empty
// data; null with an "OutOfMemoryException" raised when the host can't make a block of that size.
REALobject NSDataRB(NSData* data);
