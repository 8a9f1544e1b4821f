#include "tests/cli/listen.h"

#include <chrono>

namespace zqm::tests {
namespace {

// A list of a thousand commands takes its time where every access to memory is checked.
constexpr std::chrono::minutes kDeadline{5};

} // namespace

std::vector<std::string> listenArguments(const std::vector<std::string>& arguments) {
    std::vector<std::string> all{"listen"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return all;
}

support::ProcessResult listen(const std::vector<std::string>& arguments,
                              const support::ProcessOptions& options) {
    return support::runProcess(ZQMSPEECH_PROGRAM, listenArguments(arguments), options, kDeadline);
}

} // namespace zqm::tests
