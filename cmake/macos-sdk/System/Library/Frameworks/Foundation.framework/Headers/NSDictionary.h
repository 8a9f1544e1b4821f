#pragma once

#import <Foundation/NSObject.h>

@interface NSDictionary : NSObject <NSCopying>
- (NSUInteger)count;
- (id)objectForKey:(id)aKey;
- (NSArray*)allKeys;
+ (instancetype)dictionary;
@end

@interface NSMutableDictionary : NSDictionary
- (void)setObject:(id)anObject forKey:(id<NSCopying>)aKey;
+ (instancetype)dictionaryWithCapacity:(NSUInteger)numItems;
@end
