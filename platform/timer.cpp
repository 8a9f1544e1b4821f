#include "platform/timer.h"

#include "platform/engine_process.h"

#include <algorithm>
#include <cstdint>
#include <sys/timerfd.h>
#include <unistd.h>

namespace zqm::platform {

using protocol::Descriptor;

Timer::~Timer() {
    if (!owner_.isCurrent()) {
        return;
    }
    stop();
    if (descriptor_) {
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
    if (!descriptor_) {
        due_ = std::chrono::steady_clock::now() + delay;
        EventHub::shared().wakeSoon(source_);
    }
    // A time of 0 would stop it.
    set(std::max<std::chrono::nanoseconds>(delay, std::chrono::nanoseconds(1)));
}

void Timer::stop() {
    set(std::chrono::nanoseconds::zero());
    if (due_) {
        due_.reset();
        EventHub::shared().wakeNot(source_);
    }
}

bool Timer::takeExpiry() {
    if (due_) {
        if (std::chrono::steady_clock::now() >= *due_) {
            stop();
            return true;
        }
        EventHub::shared().wakeSoon(source_);
        return false;
    }
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
