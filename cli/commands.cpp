#include "cli/commands.h"

#include "cli/exit_codes.h"
#include "cli/inspect_command.h"
#include "cli/inspect_options.h"
#include "cli/listen_command.h"
#include "cli/listen_options.h"
#include "cli/say_command.h"
#include "cli/say_options.h"

#include <algorithm>
#include <cstdio>
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

constexpr const char* kHelpBegin = "The platform's speech services, from the command line.\n"
                                   "Usage: zqmspeech COMMAND [OPTIONS]\n"
                                   "\n"
                                   "Commands (zqmspeech COMMAND --help tells more of each):\n";
constexpr const char* kHelpEnd = "\n"
                                 "Options:\n"
                                 "  -h,--help   prints this help\n"
                                 "  --version   prints the version\n";
constexpr std::size_t kNameWidth = 12;

} // namespace

const std::vector<Command>& commands() {
    static const std::vector<Command> all{
        makeCommand(kSaySyntax, newSayCommandLine, parseSayOptions, say),
        makeCommand(kListenSyntax, newListenCommandLine, parseListenOptions, listen),
        makeCommand(kInspectSyntax, newInspectCommandLine, parseInspectOptions, inspect),
    };
    return all;
}

const Command* findCommand(std::string_view name) {
    const auto found =
        std::ranges::find(commands(), name, [](const Command& each) { return each.syntax.name; });
    return found == commands().end() ? nullptr : &*found;
}

std::string programHelp() {
    std::string help = kHelpBegin;
    for (const Command& command : commands()) {
        if (!command.isHidden) {
            std::string name(command.syntax.name);
            name.resize(kNameWidth, ' ');
            help.append("  ").append(name).append(command.syntax.summary).append("\n");
        }
    }
    return help + kHelpEnd;
}

} // namespace zqm::cli
