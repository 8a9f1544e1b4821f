#include "cli/documents/manual_page_command.h"

#include "cli/command_line/command_line.h"
#include "cli/command_line/exit_codes.h"
#include "cli/commands.h"
#include "cli/documents/manual_page.h"

#include <cstdio>

namespace zqm::cli {

constexpr Syntax kManualPageSyntax{
    .name = "manual-page",
    .summary = "Prints the manual page of zqmspeech, for man",
    .words = "",
    .word = "",
    .notes = "An installation brings the page; without one:\n"
             "\n"
             "zqmspeech manual-page | man -l -",
    .done = "it was printed",
    .failed = "that failed",
};

std::unique_ptr<CLI::App> newManualPageCommandLine(ManualPageOptions& /*options*/) {
    return newCommandLine(kManualPageSyntax);
}

std::variant<ManualPageOptions, std::string> parseManualPageOptions(std::span<const char* const> arguments) {
    ManualPageOptions options;
    const auto app = newManualPageCommandLine(options);
    const auto read = readOptions(*app, kManualPageSyntax, arguments);
    if (const auto* help = std::get_if<std::string>(&read)) {
        return *help;
    }
    requireNoWords(std::get<Words>(read), kManualPageSyntax);
    return options;
}

int printManualPage(const ManualPageOptions& /*options*/) {
    std::fputs(manualPage(commands(), ZQM_VERSION).c_str(), stdout);
    return kDone;
}

} // namespace zqm::cli
