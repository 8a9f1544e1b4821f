// Cocoa objects whose ends are counted, and Cocoa classes that the system lacks.

#pragma once

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

// The class of that name; one without members, made for the rest of the process, when there is none.
Class cocoaClass(const char* name, Class super = [NSObject class]);

// A new object of a subclass of that class, with one reference that is the caller's. It has not been
// initialised: it is good for being carried around and asked for its class.
id newCounted(Class type);

// How many of them are alive.
int countedAlive();
