#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include "tests/support/few_descriptors.h"
#include "tests/support/fresh_process.h"

#include <chrono>
#include <future>
#include <gtest/gtest.h>
#include <limits>
#include <thread>

namespace {

double secondsOf(CFTimeInterval seconds, Boolean returnAfterSourceHandled,
                 CFRunLoopMode mode = kCFRunLoopDefaultMode) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(kCFRunLoopRunTimedOut, CFRunLoopRunInMode(mode, seconds, returnAfterSourceHandled));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

TEST(CFRunLoop, WaitsOutItsTimeWithNothingToWatch) {
    EXPECT_GE(secondsOf(0.2, 0), 0.2);
    EXPECT_GE(secondsOf(0.2, 1), 0.2);
    EXPECT_GE(secondsOf(0.2, 1, (CFStringRef) @"a mode in which nothing is watched"), 0.2);
}

TEST(CFRunLoop, ReturnsWithoutTime) {
    secondsOf(0, 1);
    secondsOf(-1, 1);
    secondsOf(-std::numeric_limits<double>::infinity(), 1);
    secondsOf(std::numeric_limits<double>::quiet_NaN(), 1);
}

TEST(CFRunLoop, ItsModeIsFoundations) {
    EXPECT_TRUE([(NSString*)kCFRunLoopDefaultMode isEqualToString:NSDefaultRunLoopMode]);
}

} // namespace

@interface ZQMTestTimerTarget : NSObject {
@public
    int fired;
    CFRunLoopRunResult inner;
}
- (void)fire:(NSTimer*)timer;
@end

@implementation ZQMTestTimerTarget

- (void)fire:(NSTimer*)timer {
    (void)timer;
    [[[NSObject alloc] init] autorelease];
    if (++fired == 1) {
        inner = CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.05, 1);
    }
}

@end

namespace {

TEST(CFRunLoop, RunsTimersAndMayBeRunFromWithin) {
    ZQMTestTimerTarget* const target = [[[ZQMTestTimerTarget alloc] init] autorelease];
    NSTimer* const timer = [NSTimer scheduledTimerWithTimeInterval:0.01
                                                            target:target
                                                          selector:@selector(fire:)
                                                          userInfo:nil
                                                           repeats:YES];
    EXPECT_EQ(kCFRunLoopRunTimedOut, CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.3, 1))
        << "a timer is no source";
    [timer invalidate];
    EXPECT_GT(target->fired, 1);
    EXPECT_EQ(kCFRunLoopRunTimedOut, target->inner);
}

// The sanitizers look through a pipe whether memory is there, and take its lack for a fault.
#ifndef __SANITIZE_ADDRESS__
// Foundation raises then, and keeps a lock that other threads need.
TEST(CFRunLoop, WaitsWithoutDescriptors) {
    zqm::support::inFreshProcess([] {
        {
            const zqm::support::FewDescriptors none(0);
            EXPECT_GE(secondsOf(0.2, 1), 0.2);
            EXPECT_EQ(kCFRunLoopRunTimedOut, CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, 1));
        }
        std::promise<bool> isThere;
        std::thread other([&] {
            NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
            isThere.set_value([NSRunLoop currentRunLoop] != nil);
            [pool drain];
        });
        ASSERT_EQ(std::future_status::ready, isThere.get_future().wait_for(std::chrono::seconds(30)));
        other.join();
        secondsOf(0.01, 1);
    });
}
#endif

} // namespace
