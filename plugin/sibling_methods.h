// What another library of the family may add to NSException at run time. Each is asked for with
// respondsToSelector: before use.

#pragma once

#include "plugin/host_interface.h"

#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

@interface NSException (ZQMSiblingMethods)

// The family's dictionary from platform objects to the host objects that own them. Its pairs are plain
// pointers, neither retained nor locked. Borrowed, for the life of the process; nil before there is one.
+ (CFMutableDictionaryRef)GetInstancesDictionaryZQM;

// Prepares the sibling for NewNSExceptionZQM:. Called once.
+ (void)PrepareNSExceptionZQM;

// A new host object of class "NSExceptionZQM" with one lock that the caller owns, or null.
+ (REALobject)NewNSExceptionZQM:(NSException*)exception;

@end
