#pragma once

#include "cli/command_line/syntax.h"

#include <memory>
#include <span>
#include <string>
#include <variant>

namespace zqm::cli {

struct CompletionOptions {
    std::string shell;
};

extern const Syntax kCompletionSyntax;

std::unique_ptr<CLI::App> newCompletionCommandLine(CompletionOptions& options);

// The options of `zqmspeech completion`, or the text of its help when that is asked for. Throws UsageError.
std::variant<CompletionOptions, std::string> parseCompletionOptions(std::span<const char* const> arguments);

// Prints the script for the shell. Answers kDone.
int printCompletion(const CompletionOptions& options);

} // namespace zqm::cli
