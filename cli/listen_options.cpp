#include "cli/listen_options.h"

#include "cli/command_line.h"
#include "cli/failure.h"

namespace zqm::cli {

std::variant<ListenOptions, std::string> parseListenOptions(std::span<const char* const> arguments) {
    ListenOptions options;
    CLI::App app("Listens for spoken commands, and prints each that is recognised on a line.");
    app.footer(
        "Each COMMAND is one command: some words of English, such as \"Open the door\" or \"channel 5\".\n"
        "A command that begins with - goes after --.\n"
        "\n"
        "Without --once and --timeout it listens until Ctrl-C or, with --from, to the file's end.\n"
        "On a terminal, a meter shows how loud it is (without colours if NO_COLOR is set).\n"
        "\n"
        "Exit code: 0 when a command was recognised, 3 when none was before the time was over or the\n"
        "file ended, 1 when listening failed, 2 when the command line is wrong, 128 and the signal's\n"
        "number when a signal ended it (130 for Ctrl-C).");

    app.add_option("--commands", options.commandFile,
                   "Reads commands from this file, one a line; - is standard input")
        ->check(notEmpty())
        ->type_name("FILE");
    app.add_option("--from", options.soundFile, "Hears this sound file instead of the microphone")
        ->check(notEmpty())
        ->type_name("FILE");
    app.add_flag("--once", options.once, "Ends when the first command is recognised")->check(noValue());
    app.add_option("--timeout", options.timeout, "Ends after this many seconds of listening")
        ->check(numberFrom(kShortestTimeout, kLongestTimeout))
        ->type_name("SECONDS");
    app.add_flag("--json", options.json, "Prints each event as a JSON object on a line")->check(noValue());

    auto read = readOptions(app, "listen [OPTIONS] COMMAND...", "command", arguments);
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
