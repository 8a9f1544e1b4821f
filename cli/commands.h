#pragma once

#include "cli/command_line.h"

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
    bool isHidden = false; // from the help: programs call it
};

// All, in the order in which people are told of them.
const std::vector<Command>& commands();

// None of this name: null.
const Command* findCommand(std::string_view name);

// The help of zqmspeech itself.
std::string programHelp();

} // namespace zqm::cli
