#include "cli/say/say_options.h"

#include "cli/command_line/command_line.h"
#include "cli/command_line/failure.h"
#include "cli/sound/sound_formats.h"
#include "cli/subtitles/subtitles.h"

#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

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

// What can't be had together.
// Whichever way each is named, as far as they are there.
bool nameOneFile(const std::string& one, const std::string& other) {
    namespace fs = std::filesystem;
    std::error_code error;
    const auto place = [&](const std::string& file) {
        return fs::weakly_canonical(fs::absolute(file, error), error);
    };
    const fs::path first = place(one);
    return fs::equivalent(one, other, error) || (!first.empty() && first == place(other));
}

void check(const SayOptions& options) {
    if (options.format && !options.output) {
        throw UsageError("--format needs -o FILE");
    }
    if (options.subtitles && !options.output) {
        throw UsageError("--subtitles needs -o FILE");
    }
    if (options.timeline && !options.output) {
        throw UsageError("--timeline needs -o FILE");
    }
    for (const auto& [name, file] :
         {std::pair("--subtitles", options.subtitles), std::pair("--timeline", options.timeline)}) {
        if (file && nameOneFile(*file, *options.output)) {
            throw UsageError(std::string(name) + " and --output name the same file");
        }
    }
    if (options.device && options.output) {
        throw UsageError("--device and --output can't both be given: a file is not played");
    }
    if (options.output == "-" && options.printsEvents()) {
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

} // namespace

constexpr Syntax kSaySyntax{
    .name = "say",
    .summary = "Speaks a text, aloud or into a sound file",
    .words = "[TEXT...]",
    .word = "text",
    .notes =
        "TEXT is joined with blanks. Without TEXT, or with - alone, the text is read from standard input. "
        "Texts are UTF-8. A text that begins with - goes after --.\n"
        "\n"
        "With -o, a text of more than 2,000 words is spoken in pieces that end with sentences and are "
        "joined into the one file; a text with commands, as in [[rate 250]], is never parted. A file that is "
        "there is replaced when the new one is whole. Ctrl-C ends the speech, and the file ends there.\n"
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
    app->add_option("-f,--file", options.input, "Reads the text from this file")
        ->check(notEmpty())
        ->type_name("FILE");
    app->add_option("-o,--output", options.output,
                    "Writes a sound file instead of playing; its extension picks the format.\n"
                    "- is standard output")
        ->check(notEmpty())
        ->type_name("FILE");
    app->add_option("--format", options.format,
                    "Writes this format, whatever the file's extension; on standard output it is\n"
                    "wav without this")
        ->check(soundFormat())
        ->type_name("FORMAT");
    app->add_flag("--formats", options.listsFormats, "Lists the formats")->check(noValue());
    app->add_option("--subtitles", options.subtitles,
                    "Writes what is heard when beside the sound file, with the times of sentences and\n"
                    "words: WebVTT (.vtt), SubRip (.srt) or LRC (.lrc), by its extension")
        ->check(subtitleFile())
        ->type_name("FILE");
    app->add_option("--timeline", options.timeline,
                    "Draws the sound with its words and phonemes beside the sound file (.svg)")
        ->check(timelineFile())
        ->type_name("FILE");
    app->add_option("--fallback", options.fallback, "Writes this sound file where no sound can be played")
        ->check(notEmpty())
        ->type_name("FILE")
        ->take_last();
    app->add_option("--device", options.device, "Plays on this device")
        ->check(notEmpty())
        ->type_name("DEVICE");
    app->add_flag("--devices", options.listsDevices, "Lists the devices")->check(noValue());
    app->add_option("-v,--voice", options.voice, "Speaks with this voice")
        ->check(notEmpty())
        ->type_name("VOICE");
    app->add_option("--rate", options.rate, "Words a minute")
        ->check(numberFrom(kSlowestRate, kFastestRate))
        ->type_name("NUMBER");
    app->add_option("--volume", options.volume, "Loudness")->check(numberFrom(0, 1))->type_name("NUMBER");
    app->add_flag("--events", options.events, "Prints each event on a line, as told below")->check(noValue());
    app->add_flag("--json", options.json, "Prints each event as a JSON object on a line")->check(noValue());
    return app;
}

std::variant<SayOptions, std::string> parseSayOptions(std::span<const char* const> arguments) {
    SayOptions options;
    const auto app = newSayCommandLine(options);
    const auto read = readOptions(*app, kSaySyntax, arguments);
    if (const auto* help = std::get_if<std::string>(&read)) {
        return *help;
    }
    options.text = textOf(std::get<Words>(read), app->count("--file") > 0);
    check(options);
    return options;
}

} // namespace zqm::cli
