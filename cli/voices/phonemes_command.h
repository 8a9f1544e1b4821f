#pragma once

#include "cli/command_line/syntax.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace zqm::cli {

struct PhonemesOptions {
    std::optional<std::string> text;  // none: from the input
    std::string input = "-";          // file to read the text from; "-" is standard input
    std::optional<std::string> voice; // identifier; none: the default voice
};

extern const Syntax kPhonemesSyntax;

// The command line that sets these options.
std::unique_ptr<CLI::App> newPhonemesCommandLine(PhonemesOptions& options);

// The options of `zqmspeech phonemes`, or the text of its help when that is asked for. Throws UsageError.
std::variant<PhonemesOptions, std::string> parsePhonemesOptions(std::span<const char* const> arguments);

// Prints how the text is pronounced. Answers kDone.
int printPhonemes(const PhonemesOptions& options);

} // namespace zqm::cli
