#pragma once

#include "cli/command_line/command_line.h"

#include <optional>
#include <string>
#include <string_view>

namespace zqm::cli {

// Where a text comes from and in which voice it is meant, of every command that takes one.
struct TextOptions {
    std::optional<std::string> text;  // none: from the input
    std::string input = "-";          // file to read the text from; "-" is standard input
    std::optional<std::string> voice; // identifier; none: the default voice
};

inline constexpr std::string_view kTextWords = "[TEXT...]";
inline constexpr std::string_view kTextNotes =
    "TEXT is joined with blanks. Without TEXT, or with - alone, the text is read from standard input. Texts "
    "are UTF-8. A text that begins with - goes after --.";

// Adds -f and -v, which set these options.
void addTextOptions(CLI::App& app, TextOptions& options, const std::string& voiceSummary);

// Takes the text from the command line that was read. Throws UsageError when it names a file as well.
void takeText(TextOptions& options, const CLI::App& app, const Words& words);

} // namespace zqm::cli
