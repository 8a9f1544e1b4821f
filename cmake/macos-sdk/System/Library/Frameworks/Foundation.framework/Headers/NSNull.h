#pragma once

#import <Foundation/NSObject.h>

@interface NSNull : NSObject <NSCopying>
+ (NSNull*)null;
@end
