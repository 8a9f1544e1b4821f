#pragma once

#import <Foundation/NSObject.h>

@interface NSURL : NSObject <NSCopying>
- (NSString*)absoluteString;
@end
