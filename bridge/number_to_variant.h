// Numbers and truth values of the platform as host Variants, with one lock that is the caller's.

#pragma once

#include "plugin/host_interface.h"

#import <Foundation/Foundation.h>

// Whether the object is one of the two that stand for true and false.
bool isBoolean(NSObject* object);
REALobject booleanVariant(NSObject* boolean);

// By the C type that the number says it holds.
REALobject numberVariant(NSNumber* number);
