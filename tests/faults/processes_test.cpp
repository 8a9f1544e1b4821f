// A user who may have no more processes.

#include "tests/faults/program.h"
#include "tests/support/fresh_process.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace zqm::faults {
namespace {

constexpr uid_t kNobodyElse = 54321; // whose limit is nobody else's, and holds, as root's does not

// The leak sanitizer can't look at a process that has become another user's.
#ifndef __SANITIZE_ADDRESS__

TEST(NoProcesses, MeansARefusalAndIsNotRemembered) {
    support::inFork([] {
        Program program;
        if (::geteuid() == 0) {
            ASSERT_EQ(::chown(program.folder.path().c_str(), kNobodyElse, kNobodyElse), 0);
            ASSERT_EQ(::setresgid(kNobodyElse, kNobodyElse, kNobodyElse), 0);
            ASSERT_EQ(::setresuid(kNobodyElse, kNobodyElse, kNobodyElse), 0);
        }
        const auto noProcesses = [] { return std::make_shared<ScopedLimit>(RLIMIT_NPROC, 0); };
        // First without a voice known, then without an engine.
        EXPECT_EQ(program.speak("speech.wav", noProcesses), Seen::Refused);
        program.expectWorks();
        EXPECT_EQ(program.speak("speech.wav", noProcesses), Seen::Refused);
        program.expectWorks();
        {
            live::Speaker speaker(program.runtime);
            program.expectWorks(speaker);
            const auto limit = noProcesses();
            program.expectWorks(speaker); // which has its engine
        }
        program.expectNoEngine();
    });
}

#endif

} // namespace
} // namespace zqm::faults
