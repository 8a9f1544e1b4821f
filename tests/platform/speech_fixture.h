// What the tests of the synthesizer with the real engine share, which speaks mostly into files.

#pragma once

#include "tests/platform/speech_listener.h"
#include "tests/support/process_table.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/unread_pipe.h"

#include <cstddef>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

namespace zqm::platform::test {

using support::TemporaryFolder;
using support::UnreadPipe;
using support::waitingIn;

// Where every access to memory is checked, long texts are shorter by this, and take about as long.
#ifdef __SANITIZE_ADDRESS__
inline constexpr int kSlowness = 10;
#else
inline constexpr int kSlowness = 1;
#endif

inline const std::vector<HeardWord> kHelloWorld{{0, 5}, {6, 5}};

inline std::string manyWords(int count) {
    std::string text;
    for (int index = 0; index < count; ++index) {
        text += index % 10 == 9 ? "end. " : "word ";
    }
    return text;
}

inline std::size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

class Speech : public testing::Test {
protected:
    // The engines of earlier tests may take a moment to end; what is counted here begins at none.
    void SetUp() override {
        Speaker other; // later calls reap
        ASSERT_TRUE(waitUntil([&] {
            [other.synthesizer isSpeaking];
            return zqm::support::childrenOfThisProcess().empty();
        }));
    }

    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }

    TemporaryFolder folder_;
};

} // namespace zqm::platform::test
