#import <Foundation/Foundation.h>

#include <gtest/gtest.h>

// Of the leak checker; absent without it.
extern "C" void __lsan_disable(void) __attribute__((weak)); // NOLINT(bugprone-reserved-identifier)
extern "C" void __lsan_enable(void) __attribute__((weak));  // NOLINT(bugprone-reserved-identifier)

namespace {

// Setting up its dictionary classes, GNUstep's Foundation makes an object that it never frees. The library
// carries no names there by which a suppression could tell it from other memory.
void initializeFoundation() {
    if (__lsan_disable != nullptr) {
        __lsan_disable();
    }
    [[[NSMutableDictionary alloc] init] release];
    if (__lsan_enable != nullptr) {
        __lsan_enable();
    }
}

} // namespace

int main(int argc, char** argv) {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    initializeFoundation();
    ::testing::InitGoogleTest(&argc, argv);
    const int result = RUN_ALL_TESTS();
    [pool drain];
    return result;
}
