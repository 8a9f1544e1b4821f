#include "CoreFoundation/CoreFoundation.h"
#include "platform/autorelease_pool.h"
#include "platform/event_hub.h"
#include "platform/handled_sources.h"
#include "platform/run_loop_watch.h"
#include "platform/run_loops.h"

#include <algorithm>
#include <chrono>
#include <thread>

// Foundation's own name of the mode, so that both can be given to either.
const CFRunLoopMode kCFRunLoopDefaultMode = (CFStringRef) @"NSDefaultRunLoopMode";

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kLongest = 1.0e9; // seconds; beyond is "for ever", and clocks would overflow
// After which a run loop for which there are no descriptors is tried again.
constexpr std::chrono::milliseconds kMoment{100};

} // namespace

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled) {
    const double wait = seconds > 0 ? std::min(seconds, kLongest) : 0; // none for what is no number
    const auto end =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(wait));
    zqm::platform::ExceptionKeeper keeper;
    const std::uint64_t before = zqm::platform::handledSources();
    for (;;) {
        const std::chrono::duration<double> left = end - Clock::now();
        bool isThere = false;
        bool watching = false;
        zqm::platform::runInPool([&] {
            NSDate* const limit = [NSDate dateWithTimeIntervalSinceNow:std::max(left.count(), 0.0)];
            NSRunLoop* const runLoop = zqm::platform::currentRunLoop();
            isThere = runLoop != nil;
            if (isThere && [NSThread isMainThread]) {
                zqm::platform::EventHub::runLoopRuns();
            }
            watching = [runLoop runMode:(NSString*)mode beforeDate:limit];
        });
        keeper.rethrowKept();
        if (returnAfterSourceHandled != 0 && zqm::platform::handledSources() != before) {
            return kCFRunLoopRunHandledSource;
        }
        if (!watching) {
            std::this_thread::sleep_until(isThere ? end : std::min(end, Clock::now() + kMoment));
        }
        if (Clock::now() >= end) {
            return kCFRunLoopRunTimedOut;
        }
    }
}
