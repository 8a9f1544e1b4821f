#include "engine/event_loop.h"

#include <pulse/mainloop.h>
#include <stdexcept>
#include <utility>

namespace zqm::engine {

struct EventLoop::Watch {
    int descriptor;
    std::function<void()> ready;
    pa_io_event* event = nullptr;
};

namespace {

constexpr auto kReadable =
    static_cast<pa_io_event_flags_t>(PA_IO_EVENT_INPUT | PA_IO_EVENT_HANGUP | PA_IO_EVENT_ERROR);
constexpr auto kWritable =
    static_cast<pa_io_event_flags_t>(PA_IO_EVENT_OUTPUT | PA_IO_EVENT_HANGUP | PA_IO_EVENT_ERROR);
constexpr auto kReadableOrWritable = static_cast<pa_io_event_flags_t>(kReadable | PA_IO_EVENT_OUTPUT);

} // namespace

EventLoop::EventLoop() : loop_(pa_mainloop_new()) {
    if (loop_ == nullptr) {
        throw std::runtime_error("no event loop can be made");
    }
}

EventLoop::~EventLoop() {
    for (const auto& watch : watches_) {
        api()->io_free(watch->event);
    }
    pa_mainloop_free(loop_);
}

pa_mainloop_api* EventLoop::api() const {
    return pa_mainloop_get_api(loop_);
}

void EventLoop::watch(int descriptor, std::function<void()> ready) {
    add(descriptor, kReadable, std::move(ready));
}

void EventLoop::wakeWhenWritable(int descriptor) {
    add(descriptor, kWritable, [] {});
}

void EventLoop::unwatch(int descriptor) {
    std::erase_if(watches_, [&](const std::unique_ptr<Watch>& watch) {
        if (watch->descriptor != descriptor) {
            return false;
        }
        api()->io_free(watch->event);
        return true;
    });
}

void EventLoop::add(int descriptor, pa_io_event_flags_t flags, std::function<void()> ready) {
    auto watch = std::make_unique<Watch>(Watch{descriptor, std::move(ready)});
    watch->event = api()->io_new(
        api(), descriptor, flags,
        [](pa_mainloop_api*, pa_io_event*, int, pa_io_event_flags_t, void* context) {
            static_cast<Watch*>(context)->ready();
        },
        watch.get());
    watches_.push_back(std::move(watch));
}

void EventLoop::wantWritable(int descriptor, bool wanted) {
    for (const auto& watch : watches_) {
        if (watch->descriptor == descriptor) {
            api()->io_enable(watch->event, wanted ? kReadableOrWritable : kReadable);
        }
    }
}

void EventLoop::run(std::chrono::microseconds longest) {
    if (pa_mainloop_prepare(loop_, static_cast<int>(longest.count())) >= 0 && pa_mainloop_poll(loop_) >= 0) {
        pa_mainloop_dispatch(loop_);
    }
}

} // namespace zqm::engine
