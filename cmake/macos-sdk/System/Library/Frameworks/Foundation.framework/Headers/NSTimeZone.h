#pragma once

#import <Foundation/NSObject.h>

@interface NSTimeZone : NSObject <NSCopying>
+ (NSTimeZone*)localTimeZone;
@end
