#include "plugin/host_events.h"

#include "plugin/entry_points.h"
#include "plugin/plugin_main.h"

#import <Foundation/Foundation.h>

namespace {

// The host's name for an event of a registered class.
std::uint64_t eventToken(const EventRecord& event) {
    if (CurrentREALControlVersion != kIndirectTokenRevision || event.hostToken == 0) {
        return event.hostToken;
    }
    return reinterpret_cast<const EventRecord*>(event.hostToken)->hostToken;
}

} // namespace

void* eventHandler(REALobject target, const EventRecord& event) {
    return REALGetEventInstance(target, eventToken(event));
}

void dropPlatformException(NSException* exception) {
    if (exception != nil) {
        // Its description may raise in its turn.
        runUnderPlatformGuard([&] { NSLog(@"%@", exception); });
    }
}
