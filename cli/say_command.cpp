#include "cli/say_command.h"

#include "cli/exit_codes.h"
#include "cli/failure.h"
#include "cli/file_url.h"
#include "cli/interruption.h"
#include "cli/platform_log.h"
#include "cli/plugin_location.h"
#include "cli/progress_line.h"
#include "cli/spoken_text.h"
#include "cli/text_input.h"

#include <zqmhost/zqmhost.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include <unistd.h>

namespace zqm::cli {
namespace {

// How long the end of a stopped speech is waited for.
constexpr host::Seconds kStopDeadline{15};

bool isConstructed(const host::Object& synthesizer) {
    return !synthesizer.get("voice").asText().empty();
}

host::Object makeSynthesizer(host::Runtime& runtime, const std::optional<std::string>& voice) {
    host::Object synthesizer = runtime.create("NSSpeechSynthesizerZQM");
    if (voice) {
        synthesizer.call("Constructor", *voice);
        if (isConstructed(synthesizer)) {
            return synthesizer;
        }
    }
    synthesizer.call("Constructor");
    if (!isConstructed(synthesizer)) {
        throw Failure("there are no voices: the speech engine is missing or does not answer");
    }
    if (voice) {
        throw Failure("there is no voice \"" + *voice +
                      "\" (they are named such as gmw/en-US or gmw/de; README.md tells more)");
    }
    return synthesizer;
}

// Speaks one text with one synthesizer.
class Speech {
public:
    Speech(host::Runtime& runtime, const SayOptions& options, const std::string& text)
        : runtime_(runtime), options_(options), text_(text), spokenText_(text), progress_(STDERR_FILENO),
          synthesizer_(makeSynthesizer(runtime, options.voice)) {
        if (options.rate) {
            synthesizer_.set("Rate", *options.rate);
        }
        if (options.volume) {
            synthesizer_.set("Volume", *options.volume);
        }
        // On one terminal the line of progress would run into those of the events.
        hasProgress_ = progress_.isPossible() && !(options.events && isatty(STDOUT_FILENO) != 0);
        synthesizer_.on("didFinishSpeaking",
                        [this](const host::Arguments& event) { finish(event[0].asBool()); });
        listenToWords();
    }
    Speech(const Speech&) = delete;
    Speech& operator=(const Speech&) = delete;
    ~Speech() { synthesizer_.off("didFinishSpeaking"); }

    // Begins, aloud or into the file.
    bool start(const std::optional<std::string>& file) {
        const host::Value answer = file ? synthesizer_.call("startSpeakingString", text_, fileUrl(*file))
                                        : synthesizer_.call("startSpeakingString", text_);
        return answer.asBool();
    }

    // Waits for the end; stops at a signal. True when all was spoken.
    bool wait() {
        while (!isOver()) {
            runtime_.runUntil([this] { return isOver() || rests(); }, kSignalLatency);
            if (rests()) {
                restFromWords();
            }
        }
        if (!finished_) {
            synthesizer_.call("stopSpeaking");
            runtime_.runUntil([this] { return finished_.has_value(); }, kStopDeadline);
        }
        progress_.clear();
        return finished_.value_or(false);
    }

private:
    // Nor does it go on for a reader of the events who has left.
    bool isOver() const { return finished_ || Interruption::signalNumber() != 0 || std::ferror(stdout) != 0; }

    void listenToWords() {
        if (options_.events || hasProgress_) {
            synthesizer_.on("willSpeakWord", [this](const host::Arguments& event) {
                showWord(event[0].asInteger(), event[1].asInteger());
            });
        }
    }

    // Every event carries the whole text, so those that nobody would see are better not raised.
    bool rests() const { return hasProgress_ && !options_.events && !progress_.isDue(); }

    void restFromWords() {
        synthesizer_.off("willSpeakWord");
        runtime_.runUntil([this] { return isOver() || progress_.isDue(); }, kSignalLatency);
        listenToWords();
    }

    void showWord(std::int64_t position, std::int64_t length) {
        const std::string word = spokenText_.cut(position, length);
        if (options_.events) {
            std::printf("word %" PRId64 " %" PRId64 " %s\n", position, length, word.c_str());
        }
        if (hasProgress_ && progress_.isDue()) {
            progress_.show(spokenText_.shareBefore(position + length), word);
        }
    }

    void finish(bool isComplete) {
        finished_ = isComplete;
        if (options_.events) {
            std::printf("finish %s\n", isComplete ? "true" : "false");
        }
    }

    host::Runtime& runtime_;
    const SayOptions& options_;
    const std::string& text_;
    SpokenText spokenText_;
    ProgressLine progress_;
    host::Object synthesizer_;
    bool hasProgress_ = false;
    std::optional<bool> finished_;
};

// Begins, into the fallback file where no sound can be played. Answers the file that is written, if any.
std::optional<std::string> begin(Speech& speech, const SayOptions& options) {
    if (speech.start(options.output)) {
        return options.output;
    }
    if (options.output) {
        throw Failure("the speech can't be written: " + PlatformLog::reason());
    }
    const std::string noSound = "no sound can be played: " + PlatformLog::reason();
    if (!options.fallback) {
        throw Failure(noSound + " (-o FILE writes a sound file)");
    }
    if (!speech.start(options.fallback)) {
        throw Failure(noSound + "; and the speech can't be written: " + PlatformLog::reason());
    }
    std::fprintf(stderr, "No sound can be played here: the speech goes to %s\n", options.fallback->c_str());
    return options.fallback;
}

} // namespace

int say(const SayOptions& options) {
    const std::string text = readText(options);
    for (const auto& [argument, what] : {std::pair(options.voice, "the name of the voice"),
                                         std::pair(options.output, "the name of the sound file"),
                                         std::pair(options.fallback, "the name of the fallback file")}) {
        if (argument) {
            requireUtf8(*argument, what);
        }
    }
    // Whoever reads the events sees each as it comes.
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);

    const PlatformLog log;
    host::Runtime runtime;
    loadPlugin(runtime);
    const Interruption interruption;
    Speech speech(runtime, options, text);
    const std::optional<std::string> file = begin(speech, options);
    const bool isComplete = speech.wait();
    if (Interruption::signalNumber() != 0) {
        return kSignalled + Interruption::signalNumber();
    }
    const bool hasReader = std::ferror(stdout) == 0; // else the caller says so
    if (!isComplete && hasReader) {
        throw Failure("the speech broke off: " + PlatformLog::reason() +
                      (file ? "; " + *file + " is not written" : ""));
    }
    return kDone;
}

} // namespace zqm::cli
