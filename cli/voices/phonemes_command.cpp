#include "cli/voices/phonemes_command.h"

#include "cli/command_line/command_line.h"
#include "cli/command_line/exit_codes.h"
#include "cli/command_line/failure.h"
#include "cli/system/platform_log.h"
#include "cli/system/plugin_location.h"
#include "cli/system/standard_output.h"
#include "cli/text/text_input.h"
#include "cli/voices/synthesizer.h"

#include <zqmhost/zqmhost.h>

namespace zqm::cli {

constexpr Syntax kPhonemesSyntax{
    .name = "phonemes",
    .summary = "Prints how a text is pronounced, in phonemes",
    .words = kTextWords,
    .word = "text",
    .wordNotes = kTextNotes,
    .notes = "The phonemes can be spoken again: zqmspeech say \"[[inpt PHON]]...\".",
    .done = "they were printed",
    .failed = "that failed",
};

std::unique_ptr<CLI::App> newPhonemesCommandLine(PhonemesOptions& options) {
    auto app = newCommandLine(kPhonemesSyntax);
    addTextOptions(*app, options, "Pronounces as this voice does");
    return app;
}

std::variant<PhonemesOptions, std::string> parsePhonemesOptions(std::span<const char* const> arguments) {
    PhonemesOptions options;
    const auto app = newPhonemesCommandLine(options);
    const auto read = readOptions(*app, kPhonemesSyntax, arguments);
    if (const auto* help = std::get_if<std::string>(&read)) {
        return *help;
    }
    takeText(options, *app, std::get<Words>(read));
    return options;
}

int printPhonemes(const PhonemesOptions& options) {
    const std::string text = readText(options);
    if (options.voice) {
        requireUtf8(*options.voice, "the name of the voice");
    }
    const PlatformLog log;
    host::Runtime runtime;
    loadPlugin(runtime);
    const std::string phonemes =
        makeSynthesizer(runtime, options.voice).call("phonemesFromText", text).asText();
    if (phonemes.empty()) {
        throw Failure(PlatformLog::hasReason() ? "the phonemes can't be told: " + PlatformLog::reason()
                                               : "the text has no phonemes");
    }
    printLine(phonemes);
    return kDone;
}

} // namespace zqm::cli
