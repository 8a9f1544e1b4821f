// What the run loop tells when the event hub's descriptor is readable, or when the hub may try to get one.

#pragma once

#import <Foundation/Foundation.h>

__attribute__((visibility("hidden")))
@interface ZQMEventWatcher : NSObject<RunLoopEvents> {
@private
    int _descriptor;
}

+ (void)recover:(NSTimer*)timer;

- (instancetype)initWithDescriptor:(int)descriptor;

@end
