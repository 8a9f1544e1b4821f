#import "platform/ZQMCFType.h"

@implementation ZQMCFType

- (instancetype)initWithType:(CFTypeID)type {
    self = [super init];
    if (self != nil) {
        _type = type;
    }
    return self;
}

- (CFTypeID)_cfTypeID {
    return _type;
}

@end
