#include "cli/say_options.h"

#include "cli/failure.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace zqm::cli {
namespace {

class SayFormatter : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* /*app*/, std::string /*name*/) const override {
        return "Usage: zqmspeech say [OPTIONS] [TEXT...]\n";
    }
};

CLI::Validator numberFrom(double least, double most) {
    const std::string range = CLI::detail::to_string(least) + " to " + CLI::detail::to_string(most);
    return {[least, most, range](const std::string& argument) -> std::string {
                double value = 0;
                const bool isNumber = CLI::detail::lexical_cast(argument, value) && std::isfinite(value);
                return isNumber && value >= least && value <= most
                           ? ""
                           : argument + " is not a number from " + range;
            },
            range};
}

CLI::Validator notEmpty() {
    return {[](const std::string& argument) { return std::string(argument.empty() ? "it is empty" : ""); },
            ""};
}

// Every word of the text, wherever it stands among the options. The parser leaves words alone that it
// doesn't know; as an argument it would take "[a,b]" and "{}" for lists.
std::vector<std::string> textWords(const CLI::App& app, std::span<const char* const> afterDashes) {
    std::vector<std::string> words = app.remaining();
    for (const std::string& word : words) {
        if (word.size() > 1 && word.front() == '-') {
            throw UsageError(word + " is not an option (a text that begins with - goes after --)");
        }
    }
    words.insert(words.end(), afterDashes.begin(), afterDashes.end());
    return words;
}

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

std::variant<SayOptions, std::string> parseSayOptions(std::span<const char* const> arguments) {
    SayOptions options;
    CLI::App app("Speaks a text, aloud or into a sound file.");
    app.formatter(std::make_shared<SayFormatter>());
    app.allow_extras();
    app.footer(
        "TEXT is joined with blanks. Without TEXT, or with - alone, the text is read from standard input.\n"
        "Texts are UTF-8. A text that begins with - goes after --.\n"
        "\n"
        "Exit code: 0 when all was spoken, 1 when that failed, 2 when the command line is wrong,\n"
        "128 and the signal's number when a signal ended it (130 for Ctrl-C).");

    auto* file = app.add_option("-f,--file", options.input, "Reads the text from this file")
                     ->check(notEmpty())
                     ->type_name("FILE");
    app.add_option("-o,--output", options.output,
                   "Writes a sound file instead of playing; its extension picks the format")
        ->check(notEmpty())
        ->type_name("FILE");
    app.add_option("--fallback", options.fallback, "Writes this sound file where no sound can be played")
        ->check(notEmpty())
        ->type_name("FILE")
        ->take_last();
    app.add_option("-v,--voice", options.voice, "Speaks with this voice")
        ->check(notEmpty())
        ->type_name("VOICE");
    app.add_option("--rate", options.rate, "Words a minute")
        ->check(numberFrom(kSlowestRate, kFastestRate))
        ->type_name("NUMBER");
    app.add_option("--volume", options.volume, "Loudness")->check(numberFrom(0, 1))->type_name("NUMBER");
    app.add_flag("--events", options.events,
                 "Prints each event: \"word POSITION LENGTH WORD\", counted in UTF-16 units, and\n"
                 "\"finish true\", or false when it ended early");

    const auto dashes = std::ranges::find(arguments, std::string_view("--"));
    const auto optionCount = static_cast<std::size_t>(dashes - arguments.begin());
    const std::span<const char* const> afterDashes =
        arguments.subspan(std::min(optionCount + 1, arguments.size()));
    std::vector<std::string> toParse(arguments.begin(), dashes);
    std::ranges::reverse(toParse); // as the parser wants them
    try {
        app.parse(std::move(toParse));
    } catch (const CLI::CallForHelp&) {
        return app.help();
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }

    const std::vector<std::string> words = textWords(app, afterDashes);
    if (!words.empty() && file->count() > 0) {
        throw UsageError("a text and --file can't both be given");
    }
    const bool isStandardInput = words.size() == 1 && words.front() == "-" && afterDashes.empty();
    if (!words.empty() && !isStandardInput) {
        options.text = joined(words);
    }
    return options;
}

} // namespace zqm::cli
