// Base types of Foundation.

#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <objc/objc.h>

typedef long NSInteger;
typedef unsigned long NSUInteger;

typedef struct _NSZone NSZone;

@class NSArray, NSDictionary, NSError, NSString, NSURL;

MACOS_C_BEGIN

void NSLog(NSString* format, ...) __attribute__((format(NSString, 1, 2)));

MACOS_C_END
