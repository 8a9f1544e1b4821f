// recognition_measure live|offline HALF LIST [VOICE...]: lets a host program of the plugin hear a list's
// phrases, or those of these voices, and prints an outcome for each. All commands of the list are listened
// for.

#include "bench/recognition/outcome.h"
#include "bench/recognition/phrase.h"
#include "bench/recognition/run.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace zqm::recognition {
namespace {

void measure(const std::string& way, const std::string& half, const std::string& list,
             const std::vector<std::string>& voices) {
    const std::vector<Phrase> phrases = readPhrases(list, half);
    const std::vector<std::string> commands = commandsOf(phrases);
    // A user and a server of its own, so that several can run side by side.
    const support::TemporaryFolder folder;
    const support::ScopedEnvironment user("XDG_RUNTIME_DIR", folder.path().string());
    std::optional<support::PulseServer> server;
    std::optional<support::ScopedPulseServer> use;
    host::Runtime runtime;
    runtime.load(ZQM_PLUGIN);
    std::unique_ptr<Run> run;
    if (way == "live") {
        use.emplace(server.emplace());
        run = std::make_unique<LiveRun>(runtime, *server, commands);
    } else {
        run = std::make_unique<FileRun>(runtime, commands);
    }
    for (const Phrase& phrase : phrases) {
        if (voices.empty() || std::ranges::find(voices, phrase.voice) != voices.end()) {
            run->hear(phrase);
        }
    }
    for (const Outcome& outcome : run->outcomes()) {
        writeOutcome(std::cout, outcome);
    }
    for (const host::Report& report : runtime.reports()) {
        throw std::runtime_error("the plugin breaks the host's rules: " + report.text);
    }
}

} // namespace
} // namespace zqm::recognition

int main(int count, char** values) {
    const std::vector<std::string> arguments(values + 1, values + count);
    if (arguments.size() < 3 || (arguments[0] != "live" && arguments[0] != "offline")) {
        std::cerr << "recognition_measure live|offline HALF LIST [VOICE...]\n";
        return 2;
    }
    try {
        zqm::recognition::measure(arguments[0], arguments[1], arguments[2],
                                  {arguments.begin() + 3, arguments.end()});
    } catch (const std::exception& exception) {
        std::cerr << "recognition_measure: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
