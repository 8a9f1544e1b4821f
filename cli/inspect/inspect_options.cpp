#include "cli/inspect/inspect_options.h"

#include "cli/command_line/command_line.h"
#include "cli/command_line/failure.h"
#include "cli/command_line/option_rules.h"

#include <utility>

namespace zqm::cli {
namespace {

constexpr Conflict kConflicts[] = {{"--json", "--markdown", "there is one document"}};

} // namespace

constexpr Syntax kInspectSyntax{
    .name = "inspect",
    .summary = "Prints what the classes of a plugin library declare",
    .words = "LIBRARY",
    .word = "library",
    .notes =
        "LIBRARY is the file of a plugin, such as libZQMNSSpeech.so. It is loaded, as a host program loads "
        "it; no object is made. What the host finds wrong in it goes to standard error. A library that "
        "begins with - goes after --.",
    .done = "the library was inspected, and nothing is wrong in it",
    .failed = "it can't be loaded, or something is wrong in it",
};

std::unique_ptr<CLI::App> newInspectCommandLine(InspectOptions& options) {
    auto app = newCommandLine(kInspectSyntax);
    app->add_flag("--json", options.json, "Prints a JSON document")->check(noValue());
    app->add_flag("--markdown", options.markdown, "Prints a Markdown document")->check(noValue());
    return app;
}

std::variant<InspectOptions, std::string> parseInspectOptions(std::span<const char* const> arguments) {
    InspectOptions options;
    const auto app = newInspectCommandLine(options);
    auto read = readOptions(*app, kInspectSyntax, arguments);
    if (const auto* help = std::get_if<std::string>(&read)) {
        return *help;
    }
    auto& libraries = std::get<Words>(read).all;
    if (libraries.empty() || libraries.front().empty()) {
        throw UsageError("there is no library to inspect; zqmspeech inspect --help tells how");
    }
    if (libraries.size() > 1) {
        throw UsageError("one library is inspected at a time, and " + libraries[1] + " is a second one");
    }
    require({.conflicts = kConflicts}, *app, std::get<Words>(read));
    options.library = std::move(libraries.front());
    return options;
}

} // namespace zqm::cli
