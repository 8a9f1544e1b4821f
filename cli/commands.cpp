#include "cli/commands.h"

#include "cli/command_line/command_line.h"
#include "cli/command_line/exit_codes.h"
#include "cli/command_line/help.h"
#include "cli/documents/completion_command.h"
#include "cli/documents/manual_page_command.h"
#include "cli/inspect/inspect_command.h"
#include "cli/inspect/inspect_options.h"
#include "cli/listen/listen_command.h"
#include "cli/listen/listen_options.h"
#include "cli/say/say_command.h"
#include "cli/say/say_options.h"
#include "cli/text/wrapped_text.h"
#include "cli/validate/validate_command.h"
#include "cli/validate/validate_options.h"
#include "cli/voices/phonemes_command.h"
#include "cli/voices/voice_command.h"
#include "cli/voices/voices_command.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <variant>

namespace zqm::cli {
namespace {

// A command line outlives the options that it would set.
template <typename Options>
struct BoundCommandLine {
    Options options;
    std::unique_ptr<CLI::App> app;
};

template <typename Options>
Command makeCommand(const Syntax& syntax, std::unique_ptr<CLI::App> (*newCommandLine)(Options&),
                    std::variant<Options, std::string> (*parse)(std::span<const char* const>),
                    int (*run)(const Options&)) {
    return {syntax,
            [newCommandLine] {
                auto bound = std::make_shared<BoundCommandLine<Options>>();
                bound->app = newCommandLine(bound->options);
                return std::shared_ptr<const CLI::App>(bound, bound->app.get());
            },
            [parse, run](std::span<const char* const> arguments) {
                const auto parsed = parse(arguments);
                if (const auto* help = std::get_if<std::string>(&parsed)) {
                    std::fputs(help->c_str(), stdout);
                    return kDone;
                }
                return run(std::get<Options>(parsed));
            }};
}

} // namespace

const std::vector<Command>& commands() {
    static const std::vector<Command> all{
        makeCommand(kSaySyntax, newSayCommandLine, parseSayOptions, say),
        makeCommand(kListenSyntax, newListenCommandLine, parseListenOptions, listen),
        makeCommand(kVoicesSyntax, newVoicesCommandLine, parseVoicesOptions, listVoices),
        makeCommand(kVoiceSyntax, newVoiceCommandLine, parseVoiceOptions, showVoice),
        makeCommand(kPhonemesSyntax, newPhonemesCommandLine, parsePhonemesOptions, printPhonemes),
        makeCommand(kInspectSyntax, newInspectCommandLine, parseInspectOptions, inspect),
        makeCommand(kValidateSyntax, newValidateCommandLine, parseValidateOptions, validate),
        makeCommand(kCompletionSyntax, newCompletionCommandLine, parseCompletionOptions, printCompletion),
        makeCommand(kManualPageSyntax, newManualPageCommandLine, parseManualPageOptions, printManualPage),
    };
    return all;
}

std::vector<std::string> commandNames() {
    std::vector<std::string> names;
    for (const Command& command : commands()) {
        names.emplace_back(command.syntax.name);
    }
    return names;
}

const Command* findCommand(std::string_view name) {
    const auto found =
        std::ranges::find(commands(), name, [](const Command& each) { return each.syntax.name; });
    return found == commands().end() ? nullptr : &*found;
}

std::vector<OptionDescription> programOptions() {
    return {{{"-h", "--help"}, "", "", "Prints this help"}, {{"--version"}, "", "", "Prints the version"}};
}

std::string programHelp(std::size_t columns) {
    std::vector<std::pair<std::string, std::string>> names;
    for (const Command& command : commands()) {
        names.emplace_back(command.syntax.name, command.syntax.summary);
    }
    std::vector<std::pair<std::string, std::string>> options;
    for (const OptionDescription& option : programOptions()) {
        options.emplace_back(nameOf(option), option.summary);
    }
    return wrapped(std::string(kProgramSummary) + ".", columns) + "Usage: zqmspeech COMMAND [OPTIONS]\n\n" +
           wrapped("Commands (zqmspeech COMMAND --help tells more of each):", columns) +
           nameList(names, columns) + "\nOptions:\n" + nameList(options, columns);
}

} // namespace zqm::cli
