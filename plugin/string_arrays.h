// Lists of platform strings as arrays of host strings.

#pragma once

#include "plugin/host_interface.h"

@class NSArray;

// Inserts each element of the list, which are strings, at the index that it has there. Either may be null.
void FillStringArray(REALarray array, NSArray* list);
