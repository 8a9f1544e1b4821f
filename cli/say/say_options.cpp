#include "cli/say/say_options.h"

#include "cli/command_line/command_line.h"
#include "cli/command_line/failure.h"
#include "cli/command_line/option_rules.h"
#include "cli/sound/sound_formats.h"
#include "cli/subtitles/subtitles.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace zqm::cli {
namespace {

CLI::Validator soundFormat() {
    return {[](const std::string& argument) {
                return !argument.empty() && findSoundFormat(argument)
                           ? ""
                           : argument + " is not a sound file format; zqmspeech say --formats lists them";
            },
            ""};
}

CLI::Validator subtitleFile() {
    return {[](const std::string& argument) {
                return subtitleFormat(argument) ? "" : argument + " does not end in .vtt, .srt or .lrc";
            },
            ""};
}

CLI::Validator timelineFile() {
    return {[](const std::string& argument) {
                return hasExtension(argument, ".svg") ? "" : argument + " does not end in .svg";
            },
            ""};
}

constexpr const char* kStandardOutput = "-";

CLI::Validator noStandardOutput() {
    return {[](const std::string& argument) {
                return argument == kStandardOutput ? "it is a file, not standard output" : "";
            },
            ""};
}

constexpr Conflict kConflicts[] = {
    {"--device", "--output", "a file is not played"},
    {"--fallback", "--output", "the one is written only where no sound can be played"},
    {"--events", "--json", "each prints the events in its own form"},
};
constexpr Need kNeeds[] = {{"--format", "--output"}, {"--subtitles", "--output"}, {"--timeline", "--output"}};
constexpr const char* kLists[] = {"--formats", "--devices"};
constexpr const char* kFiles[] = {"--file", "--output", "--subtitles", "--timeline", "--fallback"};

// Whichever way each is named, as far as they are there. A device can be many things at once.
bool nameOneFile(const std::string& one, const std::string& other) {
    namespace fs = std::filesystem;
    std::error_code error;
    if (fs::exists(one, error) && !fs::is_regular_file(one, error)) {
        return false;
    }
    const auto place = [&](const std::string& file) {
        return fs::weakly_canonical(fs::absolute(file, error), error);
    };
    const fs::path first = place(one);
    return fs::equivalent(one, other, error) || (!first.empty() && first == place(other));
}

void requireDifferentFiles(const CLI::App& app) {
    std::vector<std::pair<std::string, std::string>> files; // the options and what they name
    for (const char* const option : kFiles) {
        if (app.count(option) == 0 || app[option]->results().front() == "-") {
            continue;
        }
        const std::string file = app[option]->results().front();
        for (const auto& [earlier, name] : files) {
            if (nameOneFile(file, name)) {
                throw UsageError(earlier + " and " + option + " name the same file");
            }
        }
        files.emplace_back(option, file);
    }
}

void check(const SayOptions& options, const CLI::App& app, const Words& words) {
    require({kConflicts, kNeeds, kLists}, app, words);
    requireDifferentFiles(app);
    if (options.output == kStandardOutput && options.printsEvents()) {
        throw UsageError("the sound and the events can't both go to standard output");
    }
}

constexpr std::array kEventLines{
    Explanation{"word POSITION LENGTH TIME WORD", "a word begins"},
    Explanation{"sync MESSAGE TIME", "a command [[sync MESSAGE]] is reached"},
    Explanation{"problem POSITION TIME REASON", "a command that is wrong is reached"},
    Explanation{"finish COMPLETED TIME",
                "last: true, or false when it ended early, and how long the sound is"},
};

// Of whoever starts this for others, as ./speak does.
std::optional<std::string> usualFallback() {
    const char* file = std::getenv("ZQMSPEECH_FALLBACK");
    return file != nullptr && *file != '\0' ? std::optional<std::string>(file) : std::nullopt;
}

} // namespace

constexpr Syntax kSaySyntax{
    .name = "say",
    .summary = "Speaks a text, aloud or into a sound file",
    .words = kTextWords,
    .word = "text",
    .wordNotes = kTextNotes,
    .notes =
        "With -o, a text of more than 2,000 words is spoken in pieces that end with sentences and are "
        "joined into the one file; a text with commands, as in [[rate 250]], is never parted. A file that is "
        "there is replaced when the new one is whole. Ctrl-C ends the speech, and the file ends there, "
        "if anything can be heard in it; a second one ends it at once, without a file.\n"
        "\n"
        "--events prints the lines below on standard output, places in UTF-16 units of the text, times in "
        "seconds of sound. --json prints the same and phonemes, a JSON object on each line.",
    .listTitle = "Lines of --events",
    .list = kEventLines,
    .done = "all was spoken",
    .failed = "that failed",
};

std::unique_ptr<CLI::App> newSayCommandLine(SayOptions& options) {
    auto app = newCommandLine(kSaySyntax);
    addTextOptions(*app, options, "Speaks with this voice; zqmspeech voices lists them");
    app->add_option("-o,--output", options.output,
                    "Writes a sound file instead of playing; its extension picks the format.\n"
                    "- is standard output")
        ->check(notEmpty())
        ->type_name("FILE");
    app->add_option("--format", options.format,
                    "Writes this format, whatever the file's extension; on standard output it is\n"
                    "wav without this; needs -o")
        ->check(soundFormat())
        ->type_name("FORMAT");
    app->add_flag("--formats", options.listsFormats, "Lists the formats")->check(noValue());
    app->add_option("--subtitles", options.subtitles,
                    "Writes what is heard when beside the sound file, with the times of sentences and\n"
                    "words: WebVTT (.vtt), SubRip (.srt) or LRC (.lrc), by its extension; needs -o")
        ->check(subtitleFile())
        ->type_name("FILE");
    app->add_option("--timeline", options.timeline,
                    "Draws the sound with its words and phonemes beside the sound file (.svg); needs -o")
        ->check(timelineFile())
        ->type_name("FILE");
    app->add_option("--fallback", options.fallback,
                    "Writes this sound file where no sound can be played; without it and -o, the one\n"
                    "that ZQMSPEECH_FALLBACK names")
        ->check(notEmpty())
        ->check(noStandardOutput())
        ->type_name("FILE");
    app->add_option("--device", options.device, "Plays on this device; --devices lists them")
        ->check(notEmpty())
        ->type_name("DEVICE");
    app->add_flag("--devices", options.listsDevices, "Lists the devices")->check(noValue());
    app->add_option("--rate", options.rate, "Words a minute")
        ->check(numberFrom(kSlowestRate, kFastestRate))
        ->type_name("NUMBER");
    app->add_option("--volume", options.volume, "Loudness")->check(numberFrom(0, 1))->type_name("NUMBER");
    app->add_flag("--events", options.events, "Prints each event on a line, as told below")->check(noValue());
    app->add_flag("--json", options.json, "Prints each event as a JSON object on a line instead")
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
    const auto& words = std::get<Words>(read);
    check(options, *app, words);
    takeText(options, *app, words);
    if (!options.output && !options.fallback) {
        options.fallback = usualFallback();
    }
    return options;
}

} // namespace zqm::cli
