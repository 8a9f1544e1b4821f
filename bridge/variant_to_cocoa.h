// Host values as Cocoa objects.

#pragma once

#include "plugin/host_interface.h"

#import <Foundation/Foundation.h>

// The Cocoa object that stands for the Variant; nil for null and for kinds that have no counterpart.
// Borrowed: what the Variant's own object carries lives as long as that, anything else is autoreleased.
//
// An index that an array loses while it is read raises "OutOfBoundsException" and counts as 0 or nil; a nil
// element makes the platform's array raise its exception, which passes through.
id GetVariantAsNSObject(REALobject variant);
