#include "cli/say_options.h"

#include "cli/failure.h"

#include <vector>

namespace zqm::cli {
namespace {

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        if (&word != &words.front()) {
            text += ' ';
        }
        text += word;
    }
    return text;
}

} // namespace

constexpr Syntax kSaySyntax{
    .name = "say",
    .summary = "Speaks a text, aloud or into a sound file",
    .words = "[TEXT...]",
    .word = "text",
    .notes =
        "TEXT is joined with blanks. Without TEXT, or with - alone, the text is read from standard input.\n"
        "Texts are UTF-8. A text that begins with - goes after --.",
    .done = "all was spoken",
    .failed = "that failed",
};

std::unique_ptr<CLI::App> newSayCommandLine(SayOptions& options) {
    auto app = newCommandLine(kSaySyntax);
    app->add_option("-f,--file", options.input, "Reads the text from this file")
        ->check(notEmpty())
        ->type_name("FILE");
    app->add_option("-o,--output", options.output,
                    "Writes a sound file instead of playing; its extension picks the format")
        ->check(notEmpty())
        ->type_name("FILE");
    app->add_option("--fallback", options.fallback, "Writes this sound file where no sound can be played")
        ->check(notEmpty())
        ->type_name("FILE")
        ->take_last();
    app->add_option("-v,--voice", options.voice, "Speaks with this voice")
        ->check(notEmpty())
        ->type_name("VOICE");
    app->add_option("--rate", options.rate, "Words a minute")
        ->check(numberFrom(kSlowestRate, kFastestRate))
        ->type_name("NUMBER");
    app->add_option("--volume", options.volume, "Loudness")->check(numberFrom(0, 1))->type_name("NUMBER");
    app->add_flag("--events", options.events,
                  "Prints each event: \"word POSITION LENGTH WORD\", counted in UTF-16 units, and\n"
                  "\"finish true\", or false when it ended early")
        ->check(noValue());
    return app;
}

std::variant<SayOptions, std::string> parseSayOptions(std::span<const char* const> arguments) {
    SayOptions options;
    const auto app = newSayCommandLine(options);
    const auto read = readOptions(*app, kSaySyntax, arguments);
    if (const auto* help = std::get_if<std::string>(&read)) {
        return *help;
    }
    const auto& [words, hasDashes] = std::get<Words>(read);
    if (!words.empty() && app->count("--file") > 0) {
        throw UsageError("a text and --file can't both be given");
    }
    const bool isStandardInput = words.size() == 1 && words.front() == "-" && !hasDashes;
    if (!words.empty() && !isStandardInput) {
        options.text = joined(words);
    }
    return options;
}

} // namespace zqm::cli
