#include "tests/support/fresh_process.h"

#include <cstdlib>
#include <exception>
#include <gtest/gtest.h>
#include <iostream>

namespace zqm::support {

namespace {

// The framework keeps a child's failures to itself.
void printFailures() {
    const testing::TestResult* result = testing::UnitTest::GetInstance()->current_test_info()->result();
    for (int part = 0; part < result->total_part_count(); ++part) {
        const testing::TestPartResult& one = result->GetTestPartResult(part);
        if (one.failed()) {
            std::cerr << (one.file_name() == nullptr ? "" : one.file_name()) << ':' << one.line_number()
                      << ": " << one.message() << '\n';
        }
    }
}

void inChild(const char* style, const std::function<void()>& body) {
    testing::GTEST_FLAG(death_test_style) = style;
    EXPECT_EXIT(
        {
            try {
                body();
            } catch (const std::exception& error) {
                ADD_FAILURE() << error.what();
            }
            printFailures();
            std::exit(testing::Test::HasFailure() ? EXIT_FAILURE : EXIT_SUCCESS);
        },
        testing::ExitedWithCode(EXIT_SUCCESS), "");
}

} // namespace

void inFreshProcess(const std::function<void()>& body) {
    inChild("threadsafe", body);
}

void inFork(const std::function<void()>& body) {
#ifdef __APPLE__
    inFreshProcess(body);
#else
    inChild("fast", body);
#endif
}

} // namespace zqm::support
