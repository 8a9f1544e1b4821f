#pragma once

#import <Foundation/NSObject.h>

typedef double NSTimeInterval;

@interface NSDate : NSObject <NSCopying>
- (NSTimeInterval)timeIntervalSinceReferenceDate;
- (instancetype)initWithTimeIntervalSinceReferenceDate:(NSTimeInterval)seconds;
@end
