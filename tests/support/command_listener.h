// A host program that listens for commands, and notes what came of what it heard. One at a time.

#pragma once

#include "tests/support/monitor_recording.h"
#include "zqmhost/zqmhost.h"
#include "zqmplatform/listening.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zqm::support {

class CommandListener {
public:
    // What came of a phrase.
    struct Answer {
        std::string command; // empty: it was none
        double time;         // monotonicSeconds() of the event in the host program
    };

    // The plugin is loaded into the runtime.
    CommandListener(host::Runtime& runtime, const std::vector<std::string>& commands)
        : runtime_(runtime), object_(make(runtime)) {
        setCommands(commands);
        object_.on("DidRecognizeCommand", [this](const host::Arguments& arguments) {
            answers_.push_back({.command = arguments[0].asText(), .time = monotonicSeconds()});
        });
        ZQMPlatformObserveListening(&CommandListener::observe, this);
    }

    ~CommandListener() {
        stop();
        ZQMPlatformObserveListening(nullptr, nullptr);
    }

    CommandListener(const CommandListener&) = delete;
    CommandListener& operator=(const CommandListener&) = delete;

    void setCommands(const std::vector<std::string>& commands) {
        std::vector<host::Value> values;
        values.reserve(commands.size());
        for (const std::string& command : commands) {
            values.emplace_back(command);
        }
        object_.call("setCommands", runtime_.array(host::ElementType::String, values));
    }

    void start() { object_.call("startListening"); }
    void stop() { object_.call("stopListening"); }

    host::Object& object() { return object_; }
    const std::vector<Answer>& answers() const { return answers_; }
    std::vector<std::string> commands() const {
        std::vector<std::string> commands;
        for (const Answer& answer : answers_) {
            if (!answer.command.empty()) {
                commands.push_back(answer.command);
            }
        }
        return commands;
    }
    void forget() { answers_.clear(); }
    std::size_t timesBegan() const { return timesBegan_; }
    std::size_t timesEnded() const { return timesEnded_; }
    const std::vector<std::string>& failures() const { return failures_; }

private:
    // A class of the host program's own that has the handler, as such programs are written.
    static host::Object make(host::Runtime& runtime) {
        constexpr const char* kClass = "CommandListener";
        try {
            runtime.defineClass(
                {.name = kClass, .super = "NSSpeechRecognizerZQM", .dataSize = 2 * sizeof(void*)});
        } catch (const host::CallError&) { // an earlier listener of this host did it
        }
        return runtime.create(kClass);
    }

    static void observe(const ZQMListeningEvent* event, void* self) {
        auto& listener = *static_cast<CommandListener*>(self);
        switch (event->kind) {
        case ZQMListeningBegan:
            ++listener.timesBegan_;
            break;
        case ZQMListeningFailed:
            listener.failures_.emplace_back(event->reason);
            break;
        case ZQMListeningRejected:
            listener.answers_.push_back({.command = "", .time = monotonicSeconds()});
            break;
        case ZQMListeningEnded:
            ++listener.timesEnded_;
            break;
        default:
            break;
        }
    }

    host::Runtime& runtime_;
    host::Object object_;
    std::vector<Answer> answers_;
    std::vector<std::string> failures_;
    std::size_t timesBegan_ = 0;
    std::size_t timesEnded_ = 0;
};

} // namespace zqm::support
