// Runs a piece of a test in a child process, so that what the plugin keeps for the life of a process (its
// entry points, the prepared exceptions) starts afresh and stays out of the other tests.

#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

// The body's own expectations are reported from the child; a failed one, an exception or a crash fails the
// calling test.
inline void inChild(const std::function<void()>& body) {
    std::fflush(nullptr);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        int result = 1;
        try {
            body();
            result = testing::Test::HasFailure() ? 1 : 0;
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what();
        }
        std::fflush(nullptr);
        _exit(result);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
