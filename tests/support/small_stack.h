// A call on a thread with little stack, as some host programs have.

#pragma once

#include <cstddef>
#include <functional>

#include <gtest/gtest.h>
#include <pthread.h>

namespace zqm::support {

inline constexpr std::size_t kSmallStackBytes = std::size_t{48} << 10;

// What goes beyond the stack ends the process: nothing on it is larger than what guards it.
inline constexpr std::size_t kStackGuardBytes = std::size_t{1} << 20;

inline void runOnSmallStack(std::function<void()> body) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    EXPECT_EQ(pthread_attr_setstacksize(&attributes, kSmallStackBytes), 0);
    EXPECT_EQ(pthread_attr_setguardsize(&attributes, kStackGuardBytes), 0);
    pthread_t thread{};
    const auto call = [](void* context) -> void* {
        (*static_cast<std::function<void()>*>(context))();
        return nullptr;
    };
    const int result = pthread_create(&thread, &attributes, call, &body);
    pthread_attr_destroy(&attributes);
    ASSERT_EQ(result, 0);
    pthread_join(thread, nullptr);
}

} // namespace zqm::support
