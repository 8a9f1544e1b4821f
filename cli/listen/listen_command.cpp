#include "cli/listen/listen_command.h"

#include "cli/command_line/exit_codes.h"
#include "cli/command_line/failure.h"
#include "cli/command_line/message.h"
#include "cli/listen/command_list.h"
#include "cli/listen/level_line.h"
#include "cli/listen/listening_lines.h"
#include "cli/listen/listening_observer.h"
#include "cli/system/interruption.h"
#include "cli/system/platform_log.h"
#include "cli/system/plugin_location.h"
#include "cli/system/standard_output.h"
#include "cli/text/text_input.h"

#include <zqmhost/zqmhost.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <unistd.h>

namespace zqm::cli {
namespace {

using Clock = std::chrono::steady_clock;
using Commands = std::vector<std::string>;

constexpr double kSilence = -std::numeric_limits<double>::infinity();

// Those of the command line first.
Commands commandsOf(const ListenOptions& options) {
    Commands commands = options.commands;
    for (std::size_t index = 0; index < commands.size(); ++index) {
        requireUtf8(commands[index], "command " + std::to_string(index + 1));
    }
    if (options.commandFile) {
        const Commands more = readCommands(*options.commandFile);
        commands.insert(commands.end(), more.begin(), more.end());
        if (commands.empty()) {
            throw Failure("there is nothing to listen for: " + inputName(*options.commandFile) +
                          " has no command in it");
        }
    }
    return commands;
}

// Listens for these commands with one recognizer, telling what happens.
class Listening {
public:
    Listening(host::Runtime& runtime, const ListenOptions& options, const Commands& commands)
        : runtime_(runtime), options_(options), commands_(commands), meter_(STDERR_FILENO),
          observer_([this](const ListeningEvent& event) { observe(event); }),
          recognizer_(runtime.create("NSSpeechRecognizerZQM")) {
        recognizer_.on("DidRecognizeCommand",
                       [this](const host::Arguments& event) { recognize(event[0].asText()); });
        recognizer_.call("setCommands",
                         runtime.array(host::ElementType::String, {commands.begin(), commands.end()}));
    }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;
    ~Listening() { recognizer_.off("DidRecognizeCommand"); }

    // Listens to the end, or to a signal. Answers how many commands were recognised.
    std::size_t run() {
        show("starting");
        setDeadline();
        recognizer_.call("startListening");
        while (!isOver()) {
            runtime_.runUntil([this] { return isOver(); }, kSignalLatency);
        }
        recognizer_.call("stopListening");
        meter_.clear();
        if (!failure_.empty()) {
            printEvent(failedLine(failure_));
            throw Failure(failure_);
        }
        printEvent(endedLine());
        return recognizedCount_;
    }

private:
    bool isOver() const {
        return isEnded_ || !failure_.empty() || (options_.once && recognizedCount_ > 0) ||
               Interruption::signalNumber() != 0 || Clock::now() >= deadline_ || !hasReader();
    }

    void setDeadline() {
        if (options_.timeout) {
            deadline_ = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                           std::chrono::duration<double>(*options_.timeout));
        }
    }

    void observe(const ListeningEvent& event) {
        if (isOver()) {
            return;
        }
        switch (event.kind) {
        case ListeningEvent::Kind::Began:
            begin();
            break;
        case ListeningEvent::Kind::Failed:
            failure_ = "nothing can be heard: " + std::string(event.reason);
            break;
        case ListeningEvent::Kind::Level:
            decibels_ = event.decibels;
            if (meter_.isDue()) {
                meter_.show(decibels_, state_);
            }
            break;
        case ListeningEvent::Kind::Recognized:
            range_ = {event.begin, event.end};
            break;
        case ListeningEvent::Kind::Rejected:
            printEvent(rejectedLine({event.begin, event.end}));
            show("listening; last: none of the commands");
            break;
        case ListeningEvent::Kind::Ended:
            isEnded_ = true;
            break;
        case ListeningEvent::Kind::Refused:
            refuse("\"" + std::string(event.command) +
                       "\" can't be listened for: " + std::string(event.reason),
                   refusedLine(event.command, event.reason), 1);
            break;
        case ListeningEvent::Kind::MoreRefused:
            refuse(std::to_string(event.count) + " more of the commands can't be listened for",
                   moreRefusedLine(event.count), event.count);
            break;
        }
    }

    // Loading what it needs is no part of the time to listen. An engine in place of another begins again.
    void begin() {
        if (!std::exchange(hasBegun_, true)) {
            setDeadline();
        }
        printEvent(beganLine());
        show("listening");
    }

    void recognize(const std::string& command) {
        if (isOver()) {
            return;
        }
        const auto index =
            static_cast<std::size_t>(std::ranges::find(commands_, command) - commands_.begin());
        print(options_.json ? recognizedLine(command, index, range_) : oneLine(command));
        range_.reset();
        ++recognizedCount_;
        show("listening; last: " + command);
    }

    // So many commands.
    void refuse(const std::string& message, const std::string& line, std::size_t count) {
        printEvent(line);
        meter_.clear();
        tell(message);
        refusedCount_ += count;
        if (refusedCount_ == commands_.size()) {
            failure_ = "none of the commands can be listened for";
        }
    }

    void show(std::string state) {
        state_ = std::move(state);
        meter_.show(decibels_, state_);
    }

    void printEvent(const std::string& line) {
        if (options_.json) {
            print(line);
        }
    }

    // The meter may be on the same terminal.
    void print(const std::string& line) {
        meter_.clear();
        printLine(line);
    }

    host::Runtime& runtime_;
    const ListenOptions& options_;
    const Commands& commands_;
    LevelLine meter_;
    ListeningObserver observer_;
    host::Object recognizer_;
    Clock::time_point deadline_ = Clock::time_point::max();
    std::string state_;
    double decibels_ = kSilence;
    std::optional<TimeRange> range_; // of the command whose event comes next
    std::size_t recognizedCount_ = 0;
    std::size_t refusedCount_ = 0;
    bool hasBegun_ = false;
    bool isEnded_ = false;
    std::string failure_;
};

} // namespace

int listen(const ListenOptions& options) {
    const Commands commands = commandsOf(options);
    if (options.soundFile) {
        requireUtf8(*options.soundFile, "the name of the sound file");
    }
    const PlatformLog log;
    host::Runtime runtime;
    loadPlugin(runtime);
    if (options.soundFile) {
        listenToFile(*options.soundFile);
    }
    const Interruption interruption;
    const std::size_t recognized = Listening(runtime, options, commands).run();
    if (Interruption::signalNumber() != 0) {
        return kSignalled + Interruption::signalNumber();
    }
    if (!hasReader()) {
        throw Failure("can't write to standard output");
    }
    return recognized > 0 ? kDone : kFruitless;
}

} // namespace zqm::cli
