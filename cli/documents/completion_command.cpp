#include "cli/documents/completion_command.h"

#include "cli/command_line/command_line.h"
#include "cli/command_line/exit_codes.h"
#include "cli/command_line/failure.h"
#include "cli/commands.h"
#include "cli/documents/completion.h"

#include <algorithm>
#include <cstdio>

namespace zqm::cli {

constexpr Syntax kCompletionSyntax{
    .name = "completion",
    .summary = "Prints a script that completes command lines of zqmspeech in a shell",
    .words = "SHELL",
    .word = "shell",
    .notes = "SHELL is bash, zsh or fish. An installation brings the scripts; without one, in bash:\n"
             "\n"
             "source <(zqmspeech completion bash)",
    .done = "the script was printed",
    .failed = "that failed",
};

std::unique_ptr<CLI::App> newCompletionCommandLine(CompletionOptions& /*options*/) {
    return newCommandLine(kCompletionSyntax);
}

std::variant<CompletionOptions, std::string> parseCompletionOptions(std::span<const char* const> arguments) {
    CompletionOptions options;
    const auto app = newCompletionCommandLine(options);
    const auto read = readOptions(*app, kCompletionSyntax, arguments);
    if (const auto* help = std::get_if<std::string>(&read)) {
        return *help;
    }
    options.shell = joined(std::get<Words>(read).all).value_or("");
    if (std::ranges::find(shells(), options.shell, &Shell::name) == shells().end()) {
        throw UsageError(options.shell.empty() ? "the shell is missing: bash, zsh or fish"
                                               : options.shell + " is not bash, zsh or fish");
    }
    return options;
}

int printCompletion(const CompletionOptions& options) {
    const auto shell = std::ranges::find(shells(), options.shell, &Shell::name);
    std::fputs(shell->completion(commands()).c_str(), stdout);
    return kDone;
}

} // namespace zqm::cli
