// What the run loop tells when the event hub's descriptor is readable.

#pragma once

#import <Foundation/Foundation.h>

__attribute__((visibility("hidden")))
@interface ZQMEventWatcher : NSObject<RunLoopEvents> {
@private
    int _descriptor;
}

- (instancetype)initWithDescriptor:(int)descriptor;

@end
