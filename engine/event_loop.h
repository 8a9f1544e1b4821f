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
    // Watched until the loop ends.
    void watch(int descriptor, std::function<void()> ready);
    void wantWritable(int descriptor, bool wanted);

    // Waits until something is to be done, at most so long, and does it.
    void run(std::chrono::microseconds longest);

private:
    struct Watch;

    pa_mainloop* loop_;
    std::vector<std::unique_ptr<Watch>> watches_;
};

} // namespace zqm::engine
