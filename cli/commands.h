#pragma once

#include "cli/command_line/option_description.h"
#include "cli/command_line/syntax.h"

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zqm::cli {

// One of zqmspeech's commands.
struct Command {
    const Syntax& syntax;
    std::function<std::shared_ptr<const CLI::App>()> newCommandLine; // to read its options off
    // Reads the arguments and does what they say. Answers the exit code. Throws UsageError, Failure or an
    // error of the host runtime.
    std::function<int(std::span<const char* const> arguments)> run;
};

// All, in the order in which people are told of them.
const std::vector<Command>& commands();

std::vector<std::string> commandNames();

// None of this name: null.
const Command* findCommand(std::string_view name);

inline constexpr const char* kProgramSummary = "The platform's speech services, from the command line";

// The options of zqmspeech itself, and its help.
std::vector<OptionDescription> programOptions();
std::string programHelp(std::size_t columns);

} // namespace zqm::cli
