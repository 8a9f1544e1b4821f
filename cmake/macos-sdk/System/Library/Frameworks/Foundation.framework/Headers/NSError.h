#pragma once

#import <Foundation/NSObject.h>

@interface NSError : NSObject <NSCopying>
- (NSString*)domain;
- (NSInteger)code;
- (NSString*)localizedDescription;
@end
