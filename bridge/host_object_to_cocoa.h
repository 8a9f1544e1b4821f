// Host objects as Cocoa objects.

#pragma once

#include "plugin/host_interface.h"

#import <Foundation/Foundation.h>

// The Cocoa object that the host object stands for, or one that carries it; nil where there is neither.
// Borrowed: what a wrapper carries lives as long as the wrapper, anything else is autoreleased.
id GetObjectAsNSObject(REALobject object);
