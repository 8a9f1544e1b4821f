// Host objects that hold a small value in their instance data: "NSRectZQM" (x, y, width, height) and
// "NSSizeZQM" (width, height), "NSPointZQM" (x, y), all in doubles; "NSRangeZQM" (location, length), in
// unsigned words. The platform's own types are laid out alike.

#pragma once

#include "plugin/instance_data.h"

#import <Foundation/Foundation.h>

static_assert(sizeof(NSRect) == 4 * sizeof(double) && sizeof(NSSize) == 2 * sizeof(double) &&
              sizeof(NSPoint) == 2 * sizeof(double) && sizeof(NSRange) == 2 * sizeof(std::uint64_t));

template <typename Value>
Value& hostValue(REALobject object) {
    return instanceData<Value>(object);
}
