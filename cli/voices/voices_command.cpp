#include "cli/voices/voices_command.h"

#include "cli/command_line/command_line.h"
#include "cli/command_line/exit_codes.h"
#include "cli/command_line/message.h"
#include "cli/system/platform_log.h"
#include "cli/system/plugin_location.h"
#include "cli/terminal/colours.h"
#include "cli/terminal/terminal_line.h"
#include "cli/voices/voice.h"
#include "cli/voices/voice_json.h"
#include "cli/voices/voice_text.h"

#include <zqmhost/zqmhost.h>

#include <cstdio>

#include <unistd.h>

namespace zqm::cli {
namespace {

bool isWanted(const Voice& voice, const VoicesOptions& options) {
    return (!options.language || speaks(voice, *options.language)) &&
           (!options.gender || voice.gender == *options.gender);
}

std::string textOf(const std::vector<Voice>& voices, const VoicesOptions& options) {
    if (options.json) {
        return voicesJson(voices);
    }
    return isatty(STDOUT_FILENO) != 0 && !voices.empty()
               ? voicesTable(voices, lineColumns(STDOUT_FILENO), areColoursWanted(STDOUT_FILENO))
               : voicesLines(voices);
}

} // namespace

constexpr Syntax kVoicesSyntax{
    .name = "voices",
    .summary = "Lists the voices",
    .words = "",
    .word = "",
    .notes =
        "On a terminal it is a table, in which * marks the voice that speaks when none is named. Elsewhere "
        "each voice is a line: identifier, language, gender and name, with tabs between.",
    .done = "there are voices",
    .failed = "they can't be listed",
    .fruitless = "no voice is of that language and gender",
};

std::unique_ptr<CLI::App> newVoicesCommandLine(VoicesOptions& options) {
    auto app = newCommandLine(kVoicesSyntax);
    app->add_option("--language", options.language,
                    "Lists only voices of this language, as en-GB, or of all its kinds, as en")
        ->check(notEmpty())
        ->type_name("LANGUAGE");
    app->add_option("--gender", options.gender, "Lists only voices of this gender")
        ->check(oneOf(genderNames()))
        ->type_name("GENDER");
    app->add_flag("--json", options.json, "Prints them as a JSON array")->check(noValue());
    return app;
}

std::variant<VoicesOptions, std::string> parseVoicesOptions(std::span<const char* const> arguments) {
    VoicesOptions options;
    const auto app = newVoicesCommandLine(options);
    const auto read = readOptions(*app, kVoicesSyntax, arguments);
    if (const auto* help = std::get_if<std::string>(&read)) {
        return *help;
    }
    requireNoWords(std::get<Words>(read), kVoicesSyntax);
    return options;
}

int listVoices(const VoicesOptions& options) {
    const PlatformLog log;
    host::Runtime runtime;
    loadPlugin(runtime);
    std::vector<Voice> voices = installedVoices(runtime);
    std::erase_if(voices, [&](const Voice& voice) { return !isWanted(voice, options); });
    std::fputs(textOf(voices, options).c_str(), stdout);
    if (voices.empty()) {
        tell(std::string("no voice") + (options.language ? " speaks " + *options.language : "") +
             (options.language && options.gender ? " and" : "") +
             (options.gender ? " is " + *options.gender : "") +
             "; zqmspeech voices lists all, with tags of languages such as en-GB");
    }
    return voices.empty() ? kFruitless : kDone;
}

} // namespace zqm::cli
