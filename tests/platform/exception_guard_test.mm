// The platform library's guard and pool, compiled into this program at one end of what the optimizer may do.

#include "platform/autorelease_pool.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

namespace {

struct Counted {
    explicit Counted(int& count) : ends(count) {}
    ~Counted() { ++ends; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    int& ends;
};

void raise(const char* name) {
    [NSException raise:[NSString stringWithUTF8String:name] format:@"raised by a test"];
}

std::string nameRaisedBy(void (*body)(void*), void* context) {
    NSException* const exception = zqmCatchException(body, context);
    const std::string name = exception != nil ? [[exception name] UTF8String] : "";
    [exception release];
    return name;
}

TEST(ExceptionGuard, StopsAPlatformExceptionWithDestructorsRun) {
    int ends = 0;
    EXPECT_EQ("First", nameRaisedBy(
                           [](void* context) {
                               const Counted counted(*static_cast<int*>(context));
                               raise("First");
                           },
                           &ends));
    EXPECT_EQ(1, ends);
    EXPECT_EQ("", nameRaisedBy([](void*) {}, nullptr));
}

TEST(ExceptionGuard, LetsNativeExceptionsThroughWithDestructorsRun) {
    int ends = 0;
    EXPECT_THROW(static_cast<void>(zqmCatchException(
                     [](void* context) {
                         const Counted counted(*static_cast<int*>(context));
                         throw std::runtime_error("native");
                     },
                     &ends)),
                 std::runtime_error);
    EXPECT_EQ(1, ends);
}

TEST(ExceptionGuard, RaisesAgainOutOfAPoolWhatWasRaisedInIt) {
    int ends = 0;
    EXPECT_EQ("Second", nameRaisedBy(
                            [](void* context) {
                                zqm::platform::runInPool([&] {
                                    const Counted counted(*static_cast<int*>(context));
                                    raise("Second");
                                });
                            },
                            &ends));
    EXPECT_EQ(1, ends);
}

TEST(ExceptionGuard, LetsNativeExceptionsOutOfAPool) {
    int ends = 0;
    EXPECT_THROW(zqm::platform::runInPool([&] {
                     const Counted counted(ends);
                     throw std::runtime_error("native");
                 }),
                 std::runtime_error);
    EXPECT_EQ(1, ends);
}

TEST(ExceptionGuard, WorksAThousandTimesOver) {
    constexpr int kTimes = 1000;
    int ends = 0;
    for (int count = 0; count < kTimes; ++count) {
        EXPECT_EQ("Third", nameRaisedBy(
                               [](void* context) {
                                   zqm::platform::runInPool([&] {
                                       const Counted counted(*static_cast<int*>(context));
                                       raise("Third");
                                   });
                               },
                               &ends));
    }
    EXPECT_EQ(kTimes, ends);
}

} // namespace
