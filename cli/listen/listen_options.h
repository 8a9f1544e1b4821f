#pragma once

#include "cli/command_line/syntax.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace zqm::cli {

struct ListenOptions {
    std::vector<std::string> commands;
    std::optional<std::string> commandFile; // file to read more of them from; "-" is standard input
    std::optional<std::string> soundFile;   // what is heard; none: the microphone
    std::optional<double> timeout;          // seconds
    bool once = false;
    bool json = false;
};

inline constexpr double kShortestTimeout = 0.1;
inline constexpr double kLongestTimeout = 86400;

extern const Syntax kListenSyntax;

// The command line that sets these options.
std::unique_ptr<CLI::App> newListenCommandLine(ListenOptions& options);

// The options of `zqmspeech listen`, or the text of its help when that is asked for. Throws UsageError.
std::variant<ListenOptions, std::string> parseListenOptions(std::span<const char* const> arguments);

} // namespace zqm::cli
