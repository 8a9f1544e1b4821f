// A command that may hardly open a file says so, and neither hangs nor crashes.

#include "tests/cli/one_line.h"
#include "tests/cli/zqmspeech.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace zqm::tests {
namespace {

using support::ProcessResult;
using Words = std::vector<std::string>;

// Of which three are the standard ones. The sanitizers look through a pipe whether memory is there, and take
// its lack for a fault.
#ifdef __SANITIZE_ADDRESS__
constexpr std::array kLimits{"6", "7", "10"};
#else
constexpr std::array kLimits{"4", "5", "7", "10"};
#endif

class FewDescriptors : public testing::TestWithParam<Words> {};

TEST_P(FewDescriptors, AreSaid) {
    for (const char* const limit : kLimits) {
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
