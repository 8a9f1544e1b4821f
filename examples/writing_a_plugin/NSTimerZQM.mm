// A plugin with one class, "NSTimerZQM": it raises an event again and again.

#include "plugin/autorelease_pool.h"
#include "plugin/class_records.h"
#include "plugin/guard.h"
#include "plugin/host_events.h"
#include "plugin/instance_data.h"
#include "plugin/set_up.h"

#import <Foundation/Foundation.h>
#include <array>
#include <iterator>

// ---- what the platform calls

namespace {

EventRecord timerEvents[] = {
    {"Fired(count as integer)"},
};

} // namespace

@interface ZQMTick : NSObject {
@public
    REALobject target; // the host object, not locked: it owns this; null once it has ended
    std::int64_t count;
}
- (void)tick:(NSTimer*)timer;
@end

@implementation ZQMTick

- (void)tick:(NSTimer*)timer {
    ++count;
    raiseEvent(target, timerEvents[0], count);
}

@end

namespace {

// ---- what the host keeps for each object: first the Cocoa object that it stands for

struct TimerData {
    NSTimer* timer; // one retain is the host object's; nil until it is constructed
    ZQMTick* tick;  // the same
};

TimerData& dataOf(REALobject self) {
    return instanceData<TimerData>(self);
}

// ---- life cycle

void NSTimerConstructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        dataOf(self) = {};
    });
}

void NSTimerDestructor(REALobject self) {
    guarded([&] {
        CocoaInit();
        TimerData& data = dataOf(self);
        releaseInstance(data.timer);
        [data.tick release];
        data.tick = nil;
    });
}

void initWithMilliseconds(REALobject self, std::int64_t milliseconds) {
    guarded([&] {
        TimerData& data = dataOf(self);
        if (isAlreadyInitialized(data.timer)) {
            return;
        }
        if (milliseconds < 1) {
            RaiseException("OutOfBoundsException", "A timer takes 1 millisecond or more.", 0, 0);
            return;
        }
        CocoaInit();
        data.tick = [[ZQMTick alloc] init];
        data.tick->target = self;
        data.timer = [[NSTimer scheduledTimerWithTimeInterval:static_cast<double>(milliseconds) / 1000
                                                       target:data.tick
                                                     selector:@selector(tick:)
                                                     userInfo:nil
                                                      repeats:YES] retain];
        rememberInstance(data.timer, self);
    });
}

// The run loop holds the timer, and that the tick, until it is invalidated.
void Destructor(REALobject self) {
    guarded([&] {
        const TimerData& data = dataOf(self);
        if (data.tick != nil) {
            data.tick->target = nullptr;
        }
        [data.timer invalidate];
    });
}

// ---- members

void stop(REALobject self) {
    guarded([&] { [dataOf(self).timer invalidate]; });
}

bool isRunning(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> bool { return [dataOf(self).timer isValid]; });
}

std::int64_t count(REALobject self, std::int64_t /*parameter*/) {
    const ZQMTick* tick = dataOf(self).tick;
    return tick != nil ? tick->count : 0;
}

// ---- record

constexpr PropertyRecord kProperties[] = {
    {.name = "isRunning", .type = "Boolean", .getter = isRunning},
    {.name = "Count", .type = "Integer", .getter = count},
};

constexpr MethodRecord kMethods[] = {
    {.function = initWithMilliseconds, .declaration = "Constructor(milliseconds as integer)"},
    {.function = Destructor, .declaration = "Destructor"},
    {.function = stop, .declaration = "Stop"},
};

constinit ClassRecord NSTimerClass = {
    .version = 13,
    .name = "NSTimerZQM",
    .dataSize = sizeof(TimerData),
    .constructor = NSTimerConstructor,
    .destructor = NSTimerDestructor,
    .properties = kProperties,
    .propertyCount = std::size(kProperties),
    .methods = kMethods,
    .methodCount = std::size(kMethods),
    .events = timerEvents,
    .eventCount = std::size(timerEvents),
};

} // namespace

// ---- what the frame registers

const char* const kPartName = "Timer";

std::span<ClassRecord* const> classRecords() {
    static constexpr std::array records{&NSTimerClass};
    return records;
}
