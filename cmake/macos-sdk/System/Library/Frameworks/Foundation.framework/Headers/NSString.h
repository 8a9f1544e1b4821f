#pragma once

#import <Foundation/NSObject.h>

@interface NSString : NSObject <NSCopying>
- (NSUInteger)length;
@end
