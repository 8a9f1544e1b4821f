// What the tests of the synthesizer with engines that misbehave share. The library loaded there is a link in
// a folder of its own, with bad_engine.cpp beside it under the engine's name.

#pragma once

#include "tests/platform/speech_listener.h"
#include "tests/support/process_table.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace zqm::platform::test {

class EngineFault : public testing::TestWithParam<const char*> {
protected:
    // What is counted here begins at none; the engines of earlier tests may take a moment to end.
    void SetUp() override {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        ASSERT_TRUE(hasNoEngine());
    }

    static bool hasNoEngine() {
        if (support::childrenOfThisProcess().empty()) {
            return true; // and a process without a catalogue remains so
        }
        const Speaker other; // later calls reap
        return waitUntil([&] {
            [other.synthesizer isSpeaking];
            return support::childrenOfThisProcess().empty();
        });
    }

    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }
    bool isFolderEmpty() const { return std::filesystem::is_empty(folder_.path()); }

    support::TemporaryFolder folder_;
};

} // namespace zqm::platform::test
