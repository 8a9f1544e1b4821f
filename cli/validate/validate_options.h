#pragma once

#include "cli/command_line/syntax.h"
#include "cli/validate/check.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zqm::cli {

struct ValidateOptions {
    std::string library; // empty: only the list of checks is wanted
    bool list = false;
    std::vector<const Check*> only = {}; // empty: all
    std::optional<std::uint64_t> seed;
    double timeLimit = 20; // seconds
    bool json = false;
};

extern const Syntax kValidateSyntax;

std::vector<std::string> checkNames();

// The command line that sets these options.
std::unique_ptr<CLI::App> newValidateCommandLine(ValidateOptions& options);

// The options of `zqmspeech validate`, or the text of its help when that is asked for. Throws UsageError.
std::variant<ValidateOptions, std::string> parseValidateOptions(std::span<const char* const> arguments);

} // namespace zqm::cli
