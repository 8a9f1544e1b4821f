// Carries a host object through Cocoa.

#include "plugin/host_handles.h"

#import <Foundation/Foundation.h>

@interface ZQMREALobjectWrapper : NSObject {
    REALobject hostObject; // with one lock
}

// Autoreleased; nil for a null object and from a host that can't lock one.
+ (id)wrap:(REALobject)object;

// With one lock that is the caller's.
- (REALobject)unwrap;

@end

@implementation ZQMREALobjectWrapper

+ (id)wrap:(REALobject)object {
    if (object == nullptr) {
        return nil;
    }
    OwnedObject lock = locked(object);
    if (!lock) {
        return nil;
    }
    ZQMREALobjectWrapper* wrapper = [[[self alloc] init] autorelease];
    wrapper->hostObject = lock.release();
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
