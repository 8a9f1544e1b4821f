// Carries a host object through Cocoa.

#include "plugin/entry_points.h"

#import <Foundation/Foundation.h>

@interface ZQMREALobjectWrapper : NSObject {
    REALobject hostObject; // with one lock
}

// Autoreleased; nil for a null object.
+ (id)wrap:(REALobject)object;

// With one lock that is the caller's.
- (REALobject)unwrap;

@end

@implementation ZQMREALobjectWrapper

+ (id)wrap:(REALobject)object {
    if (object == nullptr) {
        return nil;
    }
    ZQMREALobjectWrapper* wrapper = [[[self alloc] init] autorelease];
    REALLockObject(object);
    wrapper->hostObject = object;
    return wrapper;
}

- (REALobject)unwrap {
    REALLockObject(hostObject);
    return hostObject;
}

- (void)dealloc {
    if (hostObject != nullptr) {
        REALUnlockObject(hostObject);
    }
    [super dealloc];
}

@end
