#import "platform/ZQMUnicodeString.h"

#include <algorithm>

@implementation ZQMUnicodeString

- (instancetype)initWithUnits:(const unichar*)units count:(NSUInteger)count {
    self = [super init];
    if (self != nil) {
        _units = new unichar[count];
        _length = count;
        std::copy_n(units, count, _units);
    }
    return self;
}

- (void)dealloc {
    delete[] _units;
    [super dealloc];
}

- (NSUInteger)length {
    return _length;
}

- (unichar)characterAtIndex:(NSUInteger)index {
    if (index >= _length) {
        [NSException raise:NSRangeException format:@"Index %lu is beyond the end of the string.", index];
    }
    return _units[index];
}

- (void)getCharacters:(unichar*)buffer range:(NSRange)range {
    if (range.location > _length || range.length > _length - range.location) {
        [NSException raise:NSRangeException
                    format:@"Range %@ is beyond the end of the string.", NSStringFromRange(range)];
    }
    std::copy_n(_units + range.location, range.length, buffer);
}

// It can't change.
- (id)copyWithZone:(NSZone*)zone {
    (void)zone;
    return [self retain];
}

@end
