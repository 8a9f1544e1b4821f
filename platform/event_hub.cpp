#include "platform/event_hub.h"

#include "platform/engine_process.h"
#include "platform/run_loop_watch.h"

#include <algorithm>
#include <array>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace zqm::platform {

using protocol::Descriptor;

// A fork has the parent's descriptors, which it must leave alone, and gets a hub of its own when it needs
// one. The parent's stays, since the run loop that came along watches it too.
EventHub& EventHub::shared() {
    if (current() == nullptr) {
        hubs().emplace_back(new EventHub);
    }
    EventHub* const hub = current();
    if (!hub->epoll_) {
        hub->open();
    }
    return *hub;
}

EventHub* EventHub::current() {
    return hubs().empty() || !hubs().back()->owner_.isCurrent() ? nullptr : hubs().back().get();
}

std::vector<std::unique_ptr<EventHub>>& EventHub::hubs() {
    static auto& hubs = *new std::vector<std::unique_ptr<EventHub>>; // for the life of the process
    return hubs;
}

void EventHub::runLoopRuns() {
    EventHub* const hub = current();
    if (hub != nullptr && (!hub->epoll_ || !hub->waiting_.empty())) {
        hub->recoverSoon();
    }
}

void EventHub::open() {
    wakeUp_ = aboveStandardDescriptors(Descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)));
    epoll_ = wakeUp_ ? aboveStandardDescriptors(Descriptor(::epoll_create1(EPOLL_CLOEXEC))) : Descriptor();
    if (epoll_ && !(watch(wakeUp_.get(), nullptr) && watchOnMainRunLoop(epoll_.get()))) {
        epoll_.reset();
    }
    if (!epoll_) {
        wakeUp_.reset();
        recoverSoon();
        return;
    }
    signalled_ = false;
    signal(!ready_.empty());
}

bool EventHub::watch(int descriptor, EventSource* source) {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.ptr = source;
    return ::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

void EventHub::unwatch(int descriptor) {
    ::epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, descriptor, nullptr);
}

void EventHub::watchForRoom(int descriptor, EventSource* source, bool wanted) {
    epoll_event event{};
    event.events = wanted ? EPOLLIN | EPOLLOUT : EPOLLIN;
    event.data.ptr = source;
    ::epoll_ctl(epoll_.get(), EPOLL_CTL_MOD, descriptor, &event);
}

void EventHub::addReady(EventSource* source) {
    if (std::ranges::find(ready_, source) == ready_.end()) {
        ready_.push_back(source);
    }
    signal(true);
}

void EventHub::remove(EventSource* source) {
    std::erase(ready_, source);
    signal(!ready_.empty());
}

void EventHub::wakeSoon(EventSource* source) {
    wakeNot(source);
    waiting_.push_back(source);
    recoverSoon();
}

void EventHub::wakeNot(EventSource* source) {
    std::erase(waiting_, source);
}

void EventHub::recover() {
    isRecovering_ = false;
    if (!epoll_) {
        open();
    }
    for (EventSource* const source : std::exchange(waiting_, {})) {
        source->takeMessages();
    }
}

void EventHub::recoverSoon() {
    isRecovering_ = isRecovering_ || recoverOnMainRunLoop();
}

bool EventHub::dispatch() {
    std::array<epoll_event, 64> events{};
    const int count = ::epoll_wait(epoll_.get(), events.data(), static_cast<int>(events.size()), 0);
    for (int index = 0; index < count; ++index) {
        if (auto* const source =
                static_cast<EventSource*>(events.at(static_cast<std::size_t>(index)).data.ptr)) {
            source->takeMessages();
        }
    }
    while (!ready_.empty()) {
        // A source with more to deliver comes back at once, so that it isn't worth two calls of the system to
        // say meanwhile that there is none.
        EventSource* const source = ready_.front();
        ready_.pop_front();
        if (source->deliver()) {
            return true;
        }
    }
    signal(false);
    return false;
}

void EventHub::signal(bool on) {
    if (on == signalled_ || !wakeUp_) {
        return;
    }
    signalled_ = on;
    std::uint64_t value = 1;
    // Neither can fail: the counter never holds more than 1, and is 1 when it is read.
    [[maybe_unused]] const ssize_t bytes =
        on ? ::write(wakeUp_.get(), &value, sizeof value) : ::read(wakeUp_.get(), &value, sizeof value);
}

} // namespace zqm::platform

int ZQMPlatformEventDescriptor(void) {
    return zqm::platform::EventHub::shared().descriptor();
}
