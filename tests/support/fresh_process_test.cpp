#include "tests/support/fresh_process.h"

#include "tests/support/scoped_environment.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace zqm::support {
namespace {

int runs = 0;

TEST(FreshProcess, ChangesNothingInThisOne) {
    inFreshProcess([] { runs = 100; });
    EXPECT_EQ(runs, 0);
}

TEST(Fork, ChangesNothingInThisProcess) {
    for (int round = 0; round < 3; ++round) {
        inFork([] { EXPECT_EQ(++runs, 1); });
    }
    EXPECT_EQ(runs, 0);
}

TEST(FreshProcess, IsANewOneEachTime) {
    for (int round = 0; round < 3; ++round) {
        inFreshProcess([] { EXPECT_EQ(++runs, 1); });
    }
}

constexpr const char* kFault = "ZQM_FRESH_PROCESS_FAULT";

void commit(const std::string& fault) {
    if (fault == "expectation") {
        EXPECT_TRUE(false);
    } else if (fault == "exception") {
        throw std::runtime_error(fault);
    } else if (fault == "exit") {
        std::_Exit(EXIT_FAILURE);
    } else if (fault == "signal") {
        std::abort();
    }
}

// This very test once more, by itself, in which the fault is committed.
TEST(FreshProcess, FailsTheTestWhereItsBodyFails) {
    if (const char* fault = std::getenv(kFault)) {
        inFreshProcess([fault] { commit(fault); });
        return;
    }
    const std::string again = '"' + testing::internal::GetArgvs().front() +
                              "\" --gtest_filter=FreshProcess.FailsTheTestWhereItsBodyFails >/dev/null 2>&1";
    for (const char* fault : {"expectation", "exception", "exit", "signal"}) {
        const ScopedEnvironment wanted(kFault, fault);
        EXPECT_NE(std::system(again.c_str()), 0) << fault;
    }
    const ScopedEnvironment wanted(kFault, "none");
    EXPECT_EQ(std::system(again.c_str()), 0);
}

} // namespace
} // namespace zqm::support
