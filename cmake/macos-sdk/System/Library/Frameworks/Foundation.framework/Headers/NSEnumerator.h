#pragma once

#import <Foundation/NSObject.h>

@interface NSEnumerator : NSObject
- (id)nextObject;
@end
