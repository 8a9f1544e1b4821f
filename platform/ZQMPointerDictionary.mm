#import "platform/ZQMPointerDictionary.h"

#include "platform/pointer_map.h"

using zqm::platform::PointerMap;

@implementation ZQMPointerDictionary

- (instancetype)initWithKeyCallBacks:(const CFDictionaryKeyCallBacks*)keyCallBacks
                      valueCallBacks:(const CFDictionaryValueCallBacks*)valueCallBacks {
    self = [super init];
    if (self != nil) {
        _pairs = new PointerMap(keyCallBacks, valueCallBacks);
    }
    return self;
}

// What Foundation's own methods (mutableCopy, say) begin with: a dictionary of objects.
- (instancetype)initWithCapacity:(NSUInteger)capacity {
    (void)capacity;
    return [self initWithKeyCallBacks:&kCFTypeDictionaryKeyCallBacks
                       valueCallBacks:&kCFTypeDictionaryValueCallBacks];
}

- (void)dealloc {
    delete static_cast<PointerMap*>(_pairs);
    [super dealloc];
}

- (const void*)valueOfKey:(const void*)key {
    return static_cast<PointerMap*>(_pairs)->value(key);
}

- (void)setValue:(const void*)value ofKey:(const void*)key {
    static_cast<PointerMap*>(_pairs)->set(key, value);
}

- (void)removeKey:(const void*)key {
    static_cast<PointerMap*>(_pairs)->remove(key);
}

// ---- the primitives of Foundation's dictionaries

- (NSUInteger)count {
    return static_cast<PointerMap*>(_pairs)->size();
}

- (id)objectForKey:(id)key {
    return (id)[self valueOfKey:key];
}

- (NSEnumerator*)keyEnumerator {
    NSMutableArray* const keys = [NSMutableArray array];
    for (const void* key : static_cast<PointerMap*>(_pairs)->keys()) {
        [keys addObject:(id)key];
    }
    return [keys objectEnumerator];
}

- (void)setObject:(id)object forKey:(id)key {
    [self setValue:object ofKey:key];
}

- (void)removeObjectForKey:(id)key {
    [self removeKey:key];
}

@end
