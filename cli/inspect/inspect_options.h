#pragma once

#include "cli/command_line/syntax.h"

#include <memory>
#include <span>
#include <string>
#include <variant>

namespace zqm::cli {

struct InspectOptions {
    std::string library;
    bool json = false;
    bool markdown = false;
};

extern const Syntax kInspectSyntax;

// The command line that sets these options.
std::unique_ptr<CLI::App> newInspectCommandLine(InspectOptions& options);

// The options of `zqmspeech inspect`, or the text of its help when that is asked for. Throws UsageError.
std::variant<InspectOptions, std::string> parseInspectOptions(std::span<const char* const> arguments);

} // namespace zqm::cli
