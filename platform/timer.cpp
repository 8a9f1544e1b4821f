#include "platform/timer.h"

#include "platform/engine_process.h"

#include <algorithm>
#include <cstdint>
#include <sys/timerfd.h>
#include <unistd.h>

namespace zqm::platform {

using protocol::Descriptor;

Timer::~Timer() {
    if (descriptor_ && owner_.isCurrent()) {
        EventHub::shared().unwatch(descriptor_.get());
    }
}

void Timer::start(std::chrono::milliseconds delay) {
    if (!descriptor_) {
        descriptor_ = aboveStandardDescriptors(
            Descriptor(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)));
        if (descriptor_ && !EventHub::shared().watch(descriptor_.get(), source_)) {
            descriptor_.reset();
        }
    }
    // A time of 0 would stop it.
    set(std::max<std::chrono::nanoseconds>(delay, std::chrono::nanoseconds(1)));
}

void Timer::stop() {
    set(std::chrono::nanoseconds::zero());
}

bool Timer::takeExpiry() {
    std::uint64_t count = 0;
    return descriptor_ && ::read(descriptor_.get(), &count, sizeof count) == sizeof count;
}

void Timer::set(std::chrono::nanoseconds delay) const {
    if (!descriptor_) {
        return;
    }
    const auto seconds = std::chrono::floor<std::chrono::seconds>(delay);
    itimerspec setting{};
    setting.it_value.tv_sec = seconds.count();
    setting.it_value.tv_nsec = (delay - seconds).count();
    ::timerfd_settime(descriptor_.get(), 0, &setting, nullptr);
}

} // namespace zqm::platform
