#pragma once

#include "cli/command_line/syntax.h"
#include "cli/text/text_options.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace zqm::cli {

struct SayOptions : TextOptions {
    std::optional<std::string> output;    // sound file, "-" being standard output; none: played
    std::optional<std::string> format;    // extension of the sound file's format; none: the file's own
    std::optional<std::string> subtitles; // files beside the sound file
    std::optional<std::string> timeline;
    std::optional<std::string> fallback;
    std::optional<std::string> device; // to play on; none: the sound server's choice
    std::optional<double> rate;        // words a minute
    std::optional<double> volume;      // 0 to 1
    bool events = false;
    bool json = false;
    bool listsFormats = false; // instead of speaking
    bool listsDevices = false;

    bool printsEvents() const { return events || json; }
};

inline constexpr double kSlowestRate = 50;
inline constexpr double kFastestRate = 500;

extern const Syntax kSaySyntax;

// The command line that sets these options.
std::unique_ptr<CLI::App> newSayCommandLine(SayOptions& options);

// The options of `zqmspeech say`, or the text of its help when that is asked for. Throws UsageError.
std::variant<SayOptions, std::string> parseSayOptions(std::span<const char* const> arguments);

} // namespace zqm::cli
