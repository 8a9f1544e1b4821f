// A string of any UTF-16 units. Foundation's own initialisers refuse texts with lone surrogates; this class
// holds those.

#pragma once

#import <Foundation/Foundation.h>

__attribute__((visibility("hidden")))
@interface ZQMUnicodeString : NSString {
@private
    unichar* _units;
    NSUInteger _length;
}

- (instancetype)initWithUnits:(const unichar*)units count:(NSUInteger)count;

@end
