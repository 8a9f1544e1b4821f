// zqmspeech, the command for people.

#include "cli/failure.h"
#include "cli/listen_command.h"
#include "cli/listen_options.h"
#include "cli/message.h"
#include "cli/say_command.h"
#include "cli/say_options.h"
#include "cli/standard_descriptors.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace {

using namespace zqm::cli;

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;

constexpr const char* kHelp = "The platform's speech services, from the command line.\n"
                              "Usage: zqmspeech COMMAND [OPTIONS]\n"
                              "\n"
                              "Commands:\n"
                              "  say        speaks a text; zqmspeech say --help tells how\n"
                              "  listen     listens for spoken commands; zqmspeech listen --help tells how\n"
                              "\n"
                              "Options:\n"
                              "  -h,--help  prints this help\n"
                              "  --version  prints the version\n";

template <typename Options>
int runWith(std::variant<Options, std::string> parsed, int (*command)(const Options&)) {
    if (const auto* help = std::get_if<std::string>(&parsed)) {
        std::fputs(help->c_str(), stdout);
        return 0;
    }
    return command(std::get<Options>(parsed));
}

int runCommand(std::span<const char* const> arguments) {
    if (arguments.empty()) {
        throw UsageError("a command is missing; zqmspeech --help lists them");
    }
    const std::string_view command = arguments.front();
    if (command == "say") {
        return runWith(parseSayOptions(arguments.subspan(1)), say);
    }
    if (command == "listen") {
        return runWith(parseListenOptions(arguments.subspan(1)), listen);
    }
    if (command == "--help" || command == "-h") {
        std::fputs(kHelp, stdout);
        return 0;
    }
    if (command == "--version") {
        std::puts("zqmspeech " ZQM_VERSION);
        return 0;
    }
    throw UsageError(std::string(command) + " is not a command; zqmspeech --help lists them");
}

int report(const std::exception& error, int code) {
    tell(error.what());
    return code;
}

} // namespace

int main(int count, char** arguments) {
    occupyStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN); // a reader who has left shows when something is written
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
