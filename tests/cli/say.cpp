#include "tests/cli/say.h"

#include "tests/support/pulse_server.h"

#include <regex>

namespace zqm::tests {

support::ProcessOptions bareOptions() {
    support::ProcessOptions options;
    for (const char* name : {"LANG", "LC_ALL", "LC_CTYPE", "HOME", "TERM", "XDG_RUNTIME_DIR"}) {
        options.environment[name] = std::nullopt;
    }
    options.environment["PULSE_SERVER"] = support::ScopedPulseServer::unreachableAddress();
    return options;
}

std::vector<std::string> sayArguments(const std::vector<std::string>& arguments) {
    std::vector<std::string> all{"say"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return all;
}

support::ProcessResult say(const std::vector<std::string>& arguments,
                           const support::ProcessOptions& options) {
    return support::runProcess(ZQMSPEECH_PROGRAM, sayArguments(arguments), options);
}

support::ProcessResult sayInShell(const std::string& script, const std::vector<std::string>& arguments,
                                  const support::ProcessOptions& options) {
    std::vector<std::string> all{"-c", script, ZQMSPEECH_PROGRAM};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return support::runProcess("/bin/sh", all, options);
}

std::string withoutTimes(const std::string& lines) {
    static const std::regex time(" [0-9]+\\.[0-9]{3}( |\r|\n|$)");
    return std::regex_replace(lines, time, "$1");
}

} // namespace zqm::tests
