#pragma once

#import <Foundation/NSEnumerator.h>
#import <Foundation/NSObject.h>

@interface NSArray : NSObject <NSCopying>
- (NSUInteger)count;
- (id)objectAtIndex:(NSUInteger)index;
- (NSEnumerator*)objectEnumerator;
+ (instancetype)array;
@end

@interface NSMutableArray : NSArray
+ (instancetype)arrayWithCapacity:(NSUInteger)numItems;
- (void)addObject:(id)anObject;
@end
