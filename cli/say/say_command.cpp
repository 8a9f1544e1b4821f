#include "cli/say/say_command.h"

#include "cli/command_line/exit_codes.h"
#include "cli/command_line/failure.h"
#include "cli/command_line/message.h"
#include "cli/say/say_lines.h"
#include "cli/say/speech.h"
#include "cli/say/speech_record.h"
#include "cli/say/speech_view.h"
#include "cli/say/text_pieces.h"
#include "cli/sound/sound_devices.h"
#include "cli/sound/sound_formats.h"
#include "cli/sound/sound_joiner.h"
#include "cli/system/interruption.h"
#include "cli/system/platform_log.h"
#include "cli/system/plugin_location.h"
#include "cli/system/standard_output.h"
#include "cli/system/temporary_folder.h"
#include "cli/text/spoken_text.h"
#include "cli/text/text_input.h"

#include <zqmhost/zqmhost.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include <unistd.h>

namespace zqm::cli {
namespace {

std::string reason() {
    return PlatformLog::reason();
}

// What the engine says when the file of a piece takes no more of it.
bool isOfFile(const std::string& why) {
    constexpr std::array kErrors{ENOSPC, EDQUOT, EFBIG, EIO};
    return std::ranges::any_of(kErrors, [&](int error) { return why == std::strerror(error); });
}

// Speaks one text, aloud or into a file, and tells how it goes.
class Saying {
public:
    Saying(host::Runtime& runtime, const SayOptions& options, const std::string& text)
        : options_(options), text_(text), spokenText_(text), view_(STDERR_FILENO, spokenText_.units()),
          speech_(runtime, options, [this](const SpeakingEvent& event) { take(event); }) {
        // On one terminal the view would run into the lines of the events.
        hasView_ = view_.isPossible() && !(options.printsEvents() && isatty(STDOUT_FILENO) != 0);
    }
    Saying(const Saying&) = delete;
    Saying& operator=(const Saying&) = delete;

    // True when all was spoken. Throws Failure when it can't be, but for a signal or without a reader of the
    // events.
    bool run() {
        try {
            const bool isComplete = options_.output ? write(*options_.output) : play();
            finish(isComplete);
            return isComplete;
        } catch (...) {
            finish(false);
            throw;
        }
    }

private:
    // Nor does it go on for a reader who has left.
    bool isWanted() {
        if (hasView_) {
            view_.refresh();
        }
        const bool isRead = isPiped() ? hasReader() : std::ferror(stdout) == 0;
        return isRead && Interruption::signalNumber() == 0;
    }

    bool isPiped() const { return options_.output == "-"; }

    bool play() {
        if (!speech_.start(text_, std::nullopt)) {
            return fallBack("no sound can be played: " + reason());
        }
        const bool isComplete = speech_.wait([this] { return isWanted(); });
        seconds_ = speech_.seconds();
        if (!isComplete && isWanted()) {
            throw Failure("the speech broke off: " + reason());
        }
        return isComplete;
    }

    bool fallBack(const std::string& noSound) {
        if (!options_.fallback) {
            throw Failure(noSound + " (-o FILE writes a sound file)");
        }
        const std::string& path = *options_.fallback;
        std::optional<SoundJoiner> joiner;
        try {
            joiner.emplace(path, std::nullopt);
        } catch (const Failure& failure) {
            throw Failure(noSound + "; and " + failure.what());
        }
        std::fprintf(stderr, "No sound can be played here: the speech goes to %s\n", oneLine(path).c_str());
        return write(*joiner);
    }

    bool write(const std::string& path) {
        SoundJoiner joiner(path, options_.format);
        return write(joiner);
    }

    // Piece by piece, so that what is held of the sound does not grow with the text.
    bool write(SoundJoiner& joiner) {
        SpeechRecord record(options_, spokenText_.units(), speech_.language());
        record_ = &record;
        const TemporaryFolder folder(kLosslessFile);
        TextPieces pieces(spokenText_.units(), speech_.language(),
                          hasCommands(text_) ? std::numeric_limits<std::size_t>::max()
                                             : TextPieces::kMostWords);
        bool isComplete = true;
        for (auto piece = pieces.next(); piece && isComplete; piece = pieces.next()) {
            position_ = piece->position;
            begin_ = joiner.seconds();
            isComplete =
                isWanted() && writePiece(spokenText_.cut(piece->position, piece->length), folder.file());
            if (access(folder.file().c_str(), F_OK) == 0) {
                joiner.append(folder.file());
                folder.removeFile();
            }
            seconds_ = joiner.seconds();
        }
        if (isComplete || isWorthKeeping(joiner)) {
            joiner.finish();
            if (record.needsSound()) {
                record.takeSound(joiner.reader());
            }
            joiner.putInPlace();
            record.write(joiner.seconds());
        }
        record_ = nullptr;
        return isComplete;
    }

    // What was stopped before anything was heard replaces nothing, nor does what nobody asked to stop: its
    // events could not be written. That a pipe's reader has left is found when it is written.
    bool isWorthKeeping(const SoundJoiner& joiner) const {
        return Interruption::signalNumber() != 0 ? joiner.hasSound() : isPiped();
    }

    bool writePiece(const std::string& text, const std::string& file) {
        if (!speech_.start(text, file)) {
            throw Failure("the speech can't be written: " + reason());
        }
        const bool isComplete = speech_.wait([this] { return isWanted(); });
        if (!isComplete && isWanted()) {
            const std::string why = reason();
            throw Failure(isOfFile(why)
                              ? "the speech can't be written: " + temporaryPlaceName() + ": " + why
                              : "the speech broke off: " + why + "; " + outputName() + " is not written");
        }
        return isComplete;
    }

    std::string outputName() const {
        const std::string& path = options_.output ? *options_.output : *options_.fallback;
        return path == "-" ? "standard output" : path;
    }

    // Of a piece; from here on it is of the whole.
    void take(SpeakingEvent event) {
        event.position += position_;
        if (event.time) {
            *event.time += begin_;
        }
        print(event);
        if (record_ != nullptr) {
            record_->take(event);
        }
        if (hasView_ && event.kind == SpeakingEvent::Kind::Word) {
            view_.show(event.position, event.length);
        }
    }

    void finish(bool isComplete) {
        view_.clear();
        print({.kind = SpeakingEvent::Kind::Finished, .time = seconds_, .completed = isComplete});
    }

    void print(const SpeakingEvent& event) const {
        if (options_.printsEvents()) {
            const std::string line =
                options_.json ? jsonLine(event, spokenText_) : textLine(event, spokenText_);
            if (!line.empty()) {
                printLine(line);
            }
        }
    }

    const SayOptions& options_;
    const std::string& text_;
    SpokenText spokenText_;
    SpeechView view_;
    Speech speech_;
    bool hasView_ = false;
    SpeechRecord* record_ = nullptr; // while a file is written
    std::size_t position_ = 0;       // of the piece being spoken, in the text and in the sound
    double begin_ = 0;
    std::optional<double> seconds_ = 0; // of sound so far
};

int listFormats() {
    for (const SoundFormat& format : soundFormats()) {
        std::printf("%-6s  %s\n", format.extension.c_str(), format.description.c_str());
    }
    return kDone;
}

int listDevices() {
    const auto devices = soundDevices();
    if (!devices) {
        throw Failure("no sound server answers");
    }
    for (const SoundDevice& device : *devices) {
        std::printf("%s  %s\n", device.name.c_str(), device.description.c_str());
    }
    return kDone;
}

// A terminal would show the bytes of a sound file.
void checkStandardOutput(const SayOptions& options) {
    if (options.output == "-" && isatty(STDOUT_FILENO) != 0) {
        throw Failure(
            "a sound file is nothing for a terminal: -o FILE names a file, and -o - goes into a pipe");
    }
}

} // namespace

int say(const SayOptions& options) {
    if (options.listsFormats) {
        return listFormats();
    }
    if (options.listsDevices) {
        return listDevices();
    }
    checkStandardOutput(options);
    const std::string text = readText(options);
    for (const auto& [argument, what] : {std::pair(options.voice, "the name of the voice"),
                                         std::pair(options.output, "the name of the sound file"),
                                         std::pair(options.fallback, "the name of the fallback file")}) {
        if (argument) {
            requireUtf8(*argument, what);
        }
    }
    const Interruption interruption;
    const PlatformLog log;
    host::Runtime runtime;
    loadPlugin(runtime);
    if (options.device) {
        playOn(*options.device);
    }
    const bool isComplete = Saying(runtime, options, text).run();
    const int signal = Interruption::signalNumber();
    return isComplete || signal == 0 ? kDone : kSignalled + signal; // one that came later stopped nothing
}

} // namespace zqm::cli
