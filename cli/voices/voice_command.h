#pragma once

#include "cli/command_line/syntax.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace zqm::cli {

struct VoiceOptions {
    std::optional<std::string> voice;  // identifier or name; none: the default voice
    std::optional<std::string> output; // sound file for the sample
    bool sample = false;
    bool json = false;
};

extern const Syntax kVoiceSyntax;

// The command line that sets these options.
std::unique_ptr<CLI::App> newVoiceCommandLine(VoiceOptions& options);

// The options of `zqmspeech voice`, or the text of its help when that is asked for. Throws UsageError.
std::variant<VoiceOptions, std::string> parseVoiceOptions(std::span<const char* const> arguments);

// Tells of the voice, and lets it speak if that is wanted. Answers the process's exit code.
int showVoice(const VoiceOptions& options);

} // namespace zqm::cli
