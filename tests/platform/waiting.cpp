#include "tests/platform/waiting.h"

#include <CoreFoundation/CoreFoundation.h>

#include <chrono>
#include <thread>

namespace zqm::platform::test {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kPatience{300};

} // namespace

bool runUntil(const std::function<bool()>& condition) {
    const auto end = Clock::now() + kPatience;
    while (!condition() && Clock::now() < end) {
        CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.2, 1);
    }
    return condition();
}

void runOut() {
    while (CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.3, 1) == kCFRunLoopRunHandledSource) {
    }
}

bool waitUntil(const std::function<bool()>& condition) {
    const auto end = Clock::now() + kPatience;
    while (!condition() && Clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return condition();
}

} // namespace zqm::platform::test
