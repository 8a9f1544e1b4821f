#pragma once

#include "cli/command_line/syntax.h"

#include <memory>
#include <span>
#include <string>
#include <variant>

namespace zqm::cli {

struct ManualPageOptions {};

extern const Syntax kManualPageSyntax;

std::unique_ptr<CLI::App> newManualPageCommandLine(ManualPageOptions& options);

// No options, or the text of the help when that is asked for. Throws UsageError.
std::variant<ManualPageOptions, std::string> parseManualPageOptions(std::span<const char* const> arguments);

// Answers kDone.
int printManualPage(const ManualPageOptions& options);

} // namespace zqm::cli
