// Host arrays as Cocoa arrays.

#pragma once

#include "plugin/host_interface.h"

@class NSMutableArray;

// The array's elements, converted by the type code of the array's Variant; nil for a code that is no array's
// or none that is known. Autoreleased.
NSMutableArray* arrayOfElementType(REALarray array, std::int64_t typeCode);
