// zqmspeech, the command for people.

#include "cli/command_line/closest.h"
#include "cli/command_line/exit_codes.h"
#include "cli/command_line/failure.h"
#include "cli/command_line/help.h"
#include "cli/command_line/message.h"
#include "cli/commands.h"
#include "cli/system/standard_descriptors.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <span>
#include <string>
#include <string_view>

namespace {

using namespace zqm::cli;

int runCommand(std::span<const char* const> arguments) {
    if (arguments.empty()) {
        throw UsageError("a command is missing; zqmspeech --help lists them");
    }
    const std::string_view name = arguments.front();
    const bool isHelp = name == "--help" || name == "-h";
    if ((isHelp || name == "--version") && arguments.size() > 1) {
        throw UsageError(std::string(name) + " stands alone; zqmspeech COMMAND --help tells of a command");
    }
    if (isHelp) {
        std::fputs(programHelp(helpColumns()).c_str(), stdout);
        return kDone;
    }
    if (name == "--version") {
        std::puts("zqmspeech " ZQM_VERSION);
        return kDone;
    }
    const Command* command = findCommand(name);
    if (command == nullptr) {
        const std::string near = nearest(name, commandNames());
        throw UsageError(std::string(name) + " is not a command" +
                         (near.empty() ? "" : " (near it: " + near + ")") + "; zqmspeech --help lists them");
    }
    return command->run(arguments.subspan(1));
}

int report(const std::exception& error, int code) {
    tell(error.what());
    return code;
}

} // namespace

int main(int count, char** arguments) {
    occupyStandardDescriptors();
    std::signal(SIGCHLD, SIG_DFL); // where it is ignored nobody learns how a process has ended
    std::signal(SIGPIPE, SIG_IGN); // a reader who has left shows when something is written
    std::signal(SIGXFSZ, SIG_IGN); // and so does a limit of files' sizes
    try {
        const int code =
            runCommand(std::span<const char* const>(arguments, static_cast<std::size_t>(count)).subspan(1));
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
            throw Failure("can't write to standard output");
        }
        return code;
    } catch (const UsageError& error) {
        return report(error, kWrongUsage);
    } catch (const std::exception& error) {
        return report(error, kFailed);
    }
}
