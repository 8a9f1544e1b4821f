#include "cli/voices/voice_command.h"

#include "cli/command_line/command_line.h"
#include "cli/command_line/exit_codes.h"
#include "cli/command_line/failure.h"
#include "cli/say/say_command.h"
#include "cli/system/platform_log.h"
#include "cli/system/plugin_location.h"
#include "cli/terminal/colours.h"
#include "cli/terminal/terminal_line.h"
#include "cli/text/text_input.h"
#include "cli/voices/voice.h"
#include "cli/voices/voice_json.h"
#include "cli/voices/voice_text.h"

#include <zqmhost/zqmhost.h>

#include <algorithm>
#include <cstdio>

#include <unistd.h>

namespace zqm::cli {
namespace {

Voice readVoice(const std::optional<std::string>& name) {
    const PlatformLog log;
    host::Runtime runtime;
    loadPlugin(runtime);
    const std::vector<Voice> voices = installedVoices(runtime);
    if (name) {
        return findVoice(voices, *name);
    }
    const auto found = std::ranges::find_if(voices, &Voice::isDefault);
    return found == voices.end() ? voices.front() : *found;
}

} // namespace

constexpr Syntax kVoiceSyntax{
    .name = "voice",
    .summary = "Tells all about a voice, and lets it speak",
    .words = "[VOICE]",
    .word = "voice",
    .notes =
        "VOICE is the voice's identifier or name, as zqmspeech voices lists them. Without it, the voice is "
        "meant that speaks when none is named.",
    .done = "all was told, and spoken",
    .failed = "that failed, or there is no such voice",
};

std::unique_ptr<CLI::App> newVoiceCommandLine(VoiceOptions& options) {
    auto app = newCommandLine(kVoiceSyntax);
    app->add_flag("--sample", options.sample, "Speaks the voice's demo text as well")->check(noValue());
    app->add_option("-o,--output", options.output, "Writes the spoken demo text into this sound file")
        ->check(notEmpty())
        ->type_name("FILE");
    app->add_flag("--json", options.json, "Prints the attributes as a JSON object")->check(noValue());
    return app;
}

std::variant<VoiceOptions, std::string> parseVoiceOptions(std::span<const char* const> arguments) {
    VoiceOptions options;
    const auto app = newVoiceCommandLine(options);
    const auto read = readOptions(*app, kVoiceSyntax, arguments);
    if (const auto* help = std::get_if<std::string>(&read)) {
        return *help;
    }
    options.voice = joined(std::get<Words>(read).all);
    if (options.output == "-") {
        throw UsageError("the attributes and the sound can't both go to standard output");
    }
    return options;
}

int showVoice(const VoiceOptions& options) {
    if (options.voice) {
        requireUtf8(*options.voice, "the name of the voice");
    }
    const Voice voice = readVoice(options.voice);
    std::fputs((options.json ? voiceJson(voice)
                             : voiceText(voice, lineColumns(STDOUT_FILENO), areColoursWanted(STDOUT_FILENO)))
                   .c_str(),
               stdout);
    if (!options.sample && !options.output) {
        return kDone;
    }
    std::fflush(stdout);
    if (voice.demoText.empty()) {
        throw Failure("the voice has no demo text; zqmspeech say --voice \"" + voice.identifier +
                      "\" speaks others");
    }
    SayOptions sample;
    sample.text = voice.demoText;
    sample.voice = voice.identifier;
    sample.output = options.output;
    return say(sample);
}

} // namespace zqm::cli
