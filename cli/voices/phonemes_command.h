#pragma once

#include "cli/command_line/syntax.h"
#include "cli/text/text_options.h"

#include <memory>
#include <span>
#include <string>
#include <variant>

namespace zqm::cli {

struct PhonemesOptions : TextOptions {};

extern const Syntax kPhonemesSyntax;

// The command line that sets these options.
std::unique_ptr<CLI::App> newPhonemesCommandLine(PhonemesOptions& options);

// The options of `zqmspeech phonemes`, or the text of its help when that is asked for. Throws UsageError.
std::variant<PhonemesOptions, std::string> parsePhonemesOptions(std::span<const char* const> arguments);

// Prints how the text is pronounced. Answers kDone.
int printPhonemes(const PhonemesOptions& options);

} // namespace zqm::cli
