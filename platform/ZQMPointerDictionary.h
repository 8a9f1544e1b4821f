// A mutable dictionary whose keys and values are what its callbacks say: objects, or plain pointers.

#pragma once

#include "CoreFoundation/CoreFoundation.h"

#import <Foundation/Foundation.h>

__attribute__((visibility("hidden")))
@interface ZQMPointerDictionary : NSMutableDictionary {
@private
    void* _pairs;
}

// Null callbacks: plain pointers. They are copied.
- (instancetype)initWithKeyCallBacks:(const CFDictionaryKeyCallBacks*)keyCallBacks
                      valueCallBacks:(const CFDictionaryValueCallBacks*)valueCallBacks;

- (const void*)valueOfKey:(const void*)key;
- (void)setValue:(const void*)value ofKey:(const void*)key;
- (void)removeKey:(const void*)key;

@end
