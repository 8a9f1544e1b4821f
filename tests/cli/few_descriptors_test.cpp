// A command that may hardly open a file says so, and neither hangs nor crashes.

#include "tests/cli/one_line.h"
#include "tests/cli/zqmspeech.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zqm::tests {
namespace {

using support::ProcessResult;
using Words = std::vector<std::string>;

class FewDescriptors : public testing::TestWithParam<Words> {};

TEST_P(FewDescriptors, AreSaid) {
    for (const char* const limit : {"4", "5", "7", "10"}) { // three are the standard ones
        Words words{"-c", "ulimit -n \"$0\"; exec \"$@\"", limit, ZQMSPEECH_PROGRAM};
        words.insert(words.end(), GetParam().begin(), GetParam().end());
        const ProcessResult result = support::runProcess("/bin/sh", words, bareOptions());
        expectOneLine(result, 1, "files more, and 8 are needed to run the plugin: Too many open files");
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, FewDescriptors,
                         testing::Values(Words{"say", "-o", "hello.wav", "hello"},
                                         Words{"listen", "--from", "hello.wav", "hello"},
                                         Words{"phonemes", "hello"}, Words{"voices"}, Words{"voice", "en"}),
                         [](const auto& command) { return command.param.front(); });

} // namespace
} // namespace zqm::tests
