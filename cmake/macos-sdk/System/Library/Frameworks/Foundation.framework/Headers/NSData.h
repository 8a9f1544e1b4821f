#pragma once

#import <Foundation/NSObject.h>

@interface NSData : NSObject <NSCopying>
- (NSUInteger)length;
- (const void*)bytes;
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length;
@end
