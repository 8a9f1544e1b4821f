#pragma once

#include "cli/command_line/syntax.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace zqm::cli {

struct VoicesOptions {
    std::optional<std::string> language; // only voices of this one
    std::optional<std::string> gender;   // and this one
    bool json = false;
};

extern const Syntax kVoicesSyntax;

// The command line that sets these options.
std::unique_ptr<CLI::App> newVoicesCommandLine(VoicesOptions& options);

// The options of `zqmspeech voices`, or the text of its help when that is asked for. Throws UsageError.
std::variant<VoicesOptions, std::string> parseVoicesOptions(std::span<const char* const> arguments);

// Lists the voices. Answers kDone, or kFruitless when there is none as the options want it.
int listVoices(const VoicesOptions& options);

} // namespace zqm::cli
