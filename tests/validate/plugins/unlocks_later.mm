// Nothing is wrong with it: it keeps a lock on every string that it makes for a moment, until a timer fires.
#include "counter_plugin.h"

#import <Foundation/Foundation.h>

@interface ZQMLaterUnlock : NSObject
+ (void)unlock:(NSTimer*)timer;
@end

@implementation ZQMLaterUnlock

+ (void)unlock:(NSTimer*)timer {
    host<void>("REALUnlockString", static_cast<REALstring>([[timer userInfo] pointerValue]));
}

@end

namespace {
constexpr NSTimeInterval kMoment = 0.05;

REALstring describeAndUnlockLater(REALobject self, REALstring prefix) {
    REALstring made = describe(self, prefix);
    if (made != nullptr) {
        NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
        host<void>("REALLockString", made);
        [NSTimer scheduledTimerWithTimeInterval:kMoment
                                         target:[ZQMLaterUnlock class]
                                       selector:@selector(unlock:)
                                       userInfo:[NSValue valueWithPointer:made]
                                        repeats:NO];
        [pool drain];
    }
    return made;
}
} // namespace

void REALPluginMain(REALresolver resolver) {
    counterPlugin().method("Describe").function = describeAndUnlockLater;
    counterPlugin().start(resolver);
}
