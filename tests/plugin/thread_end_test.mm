// The end of a thread unwinds its frames on Linux, as an exception would. On macOS it doesn't.

#include "plugin/native_guard.h"
#include "tests/plugin/plugin_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pthread.h>

namespace {

struct CountsItsEnd {
    explicit CountsItsEnd(int& ends) : ends_(ends) {}
    ~CountsItsEnd() { ++ends_; }
    int& ends_;
};

void* endThread(void* ends) {
    nativeGuarded([&]() -> int {
        const CountsItsEnd local(*static_cast<int*>(ends));
        pthread_exit(nullptr);
    });
    *static_cast<int*>(ends) = -1; // the thread went on
    return nullptr;
}

TEST(ThreadEnd, GoesThroughTheNativeGuard) {
    PluginHost host;
    int ends = 0;
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, nullptr, endThread, &ends), 0);
    pthread_join(thread, nullptr);
    EXPECT_EQ(ends, 1);
    EXPECT_THAT(host->takeRaised(), testing::IsEmpty());
}

} // namespace
