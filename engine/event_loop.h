// The engine's one loop: PulseAudio's, which also watches our own descriptors.

#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <pulse/mainloop-api.h>
#include <vector>

struct pa_mainloop;

namespace zqm::engine {

class EventLoop {
public:
    EventLoop();
    ~EventLoop();
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    [[nodiscard]] pa_mainloop_api* api() const;

    // Calls back whenever the descriptor can be read, has ended, or can be written if that was asked for.
    // Watched until the loop ends, or it is unwatched.
    void watch(int descriptor, std::function<void()> ready);
    void wantWritable(int descriptor, bool wanted);

    // Ends waits as soon as the descriptor can be written to, or has failed, until it is unwatched, which it
    // has to be before it is closed.
    void wakeWhenWritable(int descriptor);
    void unwatch(int descriptor);

    // Waits until something is to be done, at most so long, and does it.
    void run(std::chrono::microseconds longest);

private:
    struct Watch;

    void add(int descriptor, pa_io_event_flags_t flags, std::function<void()> ready);

    pa_mainloop* loop_;
    std::vector<std::unique_ptr<Watch>> watches_;
};

} // namespace zqm::engine
