#include "tests/cli/listen.h"

namespace zqm::tests {

std::vector<std::string> listenArguments(const std::vector<std::string>& arguments) {
    std::vector<std::string> all{"listen"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return all;
}

support::ProcessResult listen(const std::vector<std::string>& arguments,
                              const support::ProcessOptions& options) {
    return support::runProcess(ZQMSPEECH_PROGRAM, listenArguments(arguments), options);
}

} // namespace zqm::tests
