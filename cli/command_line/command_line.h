// What reading the command line of every command has in common.

#pragma once

#include "cli/command_line/syntax.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace zqm::cli {

// A command line of this syntax, to which options can be added. The name of an option's type tells shells how
// to complete its value (value_types.h).
std::unique_ptr<CLI::App> newCommandLine(const Syntax& syntax);

CLI::Validator numberFrom(double least, double most); // in decimal
CLI::Validator notEmpty();
CLI::Validator noValue(); // of flags
CLI::Validator oneOf(std::vector<std::string> values);

// The words of a command line that belong to no option.
struct Words {
    std::vector<std::string> all;
    bool hasDashes = false; // some stood after "--"
};

// Reads the options, which may stand among the words, or answers the help when that is asked for. Throws
// UsageError.
std::variant<Words, std::string> readOptions(CLI::App& app, const Syntax& syntax,
                                             std::span<const char* const> arguments);

// With blanks between; none of no words.
std::optional<std::string> joined(const std::vector<std::string>& words);

// Takes no words. Throws UsageError.
void requireNoWords(const Words& words, const Syntax& syntax);

} // namespace zqm::cli
