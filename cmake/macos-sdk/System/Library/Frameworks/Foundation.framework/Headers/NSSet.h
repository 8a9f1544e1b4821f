#pragma once

#import <Foundation/NSObject.h>

@interface NSSet : NSObject <NSCopying>
- (NSArray*)allObjects;
@end
