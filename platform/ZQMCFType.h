// An object of a kind that CoreFoundation or CoreText has, and Foundation has no class for.

#pragma once

#include "CoreFoundation/CoreFoundation.h"

#import <Foundation/Foundation.h>

__attribute__((visibility("hidden")))
@interface ZQMCFType : NSObject {
@private
    CFTypeID _type;
}

- (instancetype)initWithType:(CFTypeID)type;

// Apple's name for it.
- (CFTypeID)_cfTypeID;

@end
