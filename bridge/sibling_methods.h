// What other libraries of the family may add to the platform's classes at run time. Each is asked for with
// respondsToSelector: before use.

#pragma once

#include "plugin/host_interface.h"

#import <Foundation/Foundation.h>

// Time values. The objects that come back carry one lock that is the caller's.
@interface NSValue (ZQMSiblingMethods)

+ (NSValue*)valueWithQTTimeZQM:(REALobject)time;
+ (NSValue*)valueWithQTTimeRangeZQM:(REALobject)range;
+ (NSValue*)valueWithCMTimeZQM:(REALobject)time;
+ (NSValue*)valueWithCMTimeRangeZQM:(REALobject)range;
+ (NSValue*)valueWithCMTimeMappingZQM:(REALobject)mapping;

- (REALobject)QTTimeValueZQM;
- (REALobject)QTTimeRangeValueZQM;
- (REALobject)CMTimeValueZQM;
- (REALobject)CMTimeRangeValueZQM;
- (REALobject)CMTimeMappingValueZQM;

// The host object of a view that the sibling knows better; null for any other.
+ (REALobject)NewQTKitNSViewZQM:(id)view;

@end

// The class "ZQMREALobjectWrapper": a Cocoa object that carries a host object through Cocoa.
@protocol ZQMHostObjectCarrier

// Autoreleased.
+ (id)wrap:(REALobject)object;

// With one lock that is the caller's.
- (REALobject)unwrap;

@end

// Nil while no sibling has brought it.
Class hostObjectCarrierClass();
