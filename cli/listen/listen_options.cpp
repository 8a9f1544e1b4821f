#include "cli/listen/listen_options.h"

#include "cli/command_line/command_line.h"
#include "cli/command_line/failure.h"

namespace zqm::cli {

constexpr Syntax kListenSyntax{
    .name = "listen",
    .summary = "Listens for spoken commands, and prints each that is recognised on a line",
    .words = "COMMAND...",
    .word = "command",
    .notes =
        "Each COMMAND is one command: some words of English, such as \"Open the door\" or \"channel 5\". "
        "A command that begins with - goes after --.\n"
        "\n"
        "Without --once and --timeout it listens until Ctrl-C or, with --from, to the file's end. "
        "On a terminal, a meter shows how loud it is (without colours if NO_COLOR is set).",
    .done = "a command was recognised",
    .failed = "listening failed",
    .fruitless = "no command was recognised before the time was over or the file ended",
};

std::unique_ptr<CLI::App> newListenCommandLine(ListenOptions& options) {
    auto app = newCommandLine(kListenSyntax);
    app->add_option("--commands", options.commandFile,
                    "Reads commands from this file, one a line; - is standard input")
        ->check(notEmpty())
        ->type_name("FILE");
    app->add_option("--from", options.soundFile, "Hears this sound file instead of the microphone")
        ->check(notEmpty())
        ->type_name("FILE");
    app->add_flag("--once", options.once, "Ends when the first command is recognised")->check(noValue());
    app->add_option("--timeout", options.timeout, "Ends after this many seconds of listening")
        ->check(numberFrom(kShortestTimeout, kLongestTimeout))
        ->type_name("SECONDS");
    app->add_flag("--json", options.json, "Prints each event as a JSON object on a line")->check(noValue());
    return app;
}

std::variant<ListenOptions, std::string> parseListenOptions(std::span<const char* const> arguments) {
    ListenOptions options;
    const auto app = newListenCommandLine(options);
    auto read = readOptions(*app, kListenSyntax, arguments);
    if (const auto* help = std::get_if<std::string>(&read)) {
        return *help;
    }
    options.commands = std::move(std::get<Words>(read).all);
    if (options.commands.empty() && !options.commandFile) {
        throw UsageError("there is no command to listen for; zqmspeech listen --help tells how");
    }
    return options;
}

} // namespace zqm::cli
