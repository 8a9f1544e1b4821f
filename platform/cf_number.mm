#include "CoreFoundation/CoreFoundation.h"

#import <Foundation/Foundation.h>

// Set as this library is loaded, which is before any other that uses them. Foundation has them by then.
const CFBooleanRef kCFBooleanTrue = (CFBooleanRef)[NSNumber numberWithBool:YES];
const CFBooleanRef kCFBooleanFalse = (CFBooleanRef)[NSNumber numberWithBool:NO];
