#pragma once

#import <Foundation/NSObject.h>

__attribute__((objc_exception))
@interface NSException : NSObject<NSCopying>
- (NSString*)name;
- (NSString*)reason;
- (NSDictionary*)userInfo;
- (void)raise;
@end
