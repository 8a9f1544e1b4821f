// Where everything that engines say meets the main thread's run loop: all their sockets on one epoll
// descriptor, and messages that were read but not yet delivered.

#pragma once

#include "engine/protocol/descriptor.h"
#include "platform/process_identity.h"

#include <deque>
#include <memory>
#include <vector>

namespace zqm::platform {

class EventSource {
public:
    EventSource() = default;
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;
    virtual ~EventSource() = default;

    // Reads what has come, and sends what there is room for now; delivers nothing.
    virtual void takeMessages() = 0;

    // Makes the next callback that is wanted; false: none was. Must tell the hub first if there is more, as
    // the callback may destroy the source or leave by an exception.
    virtual bool deliver() = 0;
};

class EventHub {
public:
    static EventHub& shared();

    // Readable whenever there is something to read or to deliver.
    [[nodiscard]] int descriptor() const { return epoll_.get(); }

    // False when the system has no room for it.
    bool watch(int descriptor, EventSource* source);
    void unwatch(int descriptor);

    // Whether a descriptor that is watched is watched for room to write too.
    void watchForRoom(int descriptor, EventSource* source, bool wanted);

    // There is something to deliver.
    void addReady(EventSource* source);

    // Before a source ends.
    void remove(EventSource* source);

    // For one that lacks a descriptor to be woken by: its messages are taken soon, once.
    void wakeSoon(EventSource* source);
    void wakeNot(EventSource* source);

    // For the main run loop, which runs now: is told of what waits for it, from a time when there was none.
    static void runLoopRuns();

    // For the run loop: opens what could not be opened, and wakes who waits for that.
    void recover();

    // For the run loop: reads all that has come, then makes one callback. False: none was wanted.
    bool dispatch();

private:
    EventHub() = default;
    static EventHub* current(); // nullptr: this process has none yet
    static std::vector<std::unique_ptr<EventHub>>& hubs();
    void open();
    void recoverSoon();
    void signal(bool on);

    protocol::Descriptor epoll_;
    protocol::Descriptor wakeUp_; // readable while sources are ready
    std::deque<EventSource*> ready_;
    std::vector<EventSource*> waiting_; // to be woken soon
    bool signalled_ = false;
    bool isRecovering_ = false; // the run loop has been told
    ProcessIdentity owner_;
};

} // namespace zqm::platform

// The hub's descriptor, for hosts with an event loop of their own: whenever it is readable, call
// CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, 1). It stays the library's; -1 when the system has none.
extern "C" __attribute__((visibility("default"))) int ZQMPlatformEventDescriptor(void);
