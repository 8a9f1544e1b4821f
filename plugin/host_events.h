// How a platform callback becomes an event of the host object that it belongs to.

#pragma once

#include "plugin/host_handles.h"
#include "plugin/host_strings.h"
#include "plugin/platform_guard.h"

#import <Foundation/Foundation.h>

// The host program's handler of the event on this object; null when it has none.
void* eventHandler(REALobject target, const EventRecord& event);

// Logs and drops a platform exception that escaped a delivery; nil is none. Nobody above a callback could
// deal with it: neither the host, which is not being called, nor the platform's speech machinery.
void dropPlatformException(NSException* exception);

// A platform string on its way to a handler, as a host string until the handler has returned. Unlike an
// owner's its unlocking may raise, which ends the delivery as any step of it may.
class HandedString {
public:
    explicit HandedString(NSString* text) : string_(CFString2RBString(reinterpret_cast<CFStringRef>(text))) {}
    HandedString(const HandedString&) = delete;
    HandedString& operator=(const HandedString&) = delete;
    ~HandedString() noexcept(false) {
        if (string_ != nullptr) {
            REALUnlockString(string_);
        }
    }

    REALstring get() const { return string_; }

private:
    REALstring string_;
};

// What a handler gets for an argument: numbers as they are, platform strings as host strings.
class EventArgument {
public:
    static std::int64_t passed(std::int64_t value) { return value; }
    static REALstring passed(const HandedString& text) { return text.get(); }

    static std::int64_t converted(std::int64_t value) { return value; }
    static HandedString converted(NSString* text) { return HandedString{text}; }
};

// Raises one event: looks the handler up, keeps the object locked around it, converts the arguments and
// calls it. Does nothing where `target` is null or the host program has no handler.
template <typename... Arguments>
void raiseEvent(REALobject target, const EventRecord& event, Arguments... arguments) {
    if (target == nullptr) {
        return;
    }
    dropPlatformException(runUnderPlatformGuard([&] {
        void* handler = eventHandler(target, event);
        if (handler == nullptr) {
            return;
        }
        const OwnedObject lock = locked(target);
        [&](const auto&... converted) {
            using Handler = void (*)(REALobject, decltype(EventArgument::passed(converted))...);
            reinterpret_cast<Handler>(handler)(target, EventArgument::passed(converted)...);
        }(EventArgument::converted(arguments)...);
    }));
}
