#pragma once

#include "cli/say/say_options.h"
#include "cli/say/speaking_observer.h"

#include <zqmhost/zqmhost.h>

#include <functional>
#include <optional>
#include <string>

namespace zqm::cli {

// Speaks texts one after the other with one synthesizer, in the voice and manner of the options.
class Speech {
public:
    // The handler is told of all but the finish. Throws Failure without such a voice.
    Speech(host::Runtime& runtime, const SayOptions& options, SpeakingObserver::Handler handler);
    Speech(const Speech&) = delete;
    Speech& operator=(const Speech&) = delete;
    ~Speech();

    std::string language() const; // of the voice, BCP 47 where its name tells it

    // Begins, aloud or into the file. False when that fails; the platform's log says why.
    bool start(const std::string& text, const std::optional<std::string>& file);
    // Waits for the end; stops when it is not wanted any more. True when all was spoken.
    bool wait(const std::function<bool()>& isWanted);
    // How long the sound of that was, where it was told.
    std::optional<double> seconds() const { return seconds_; }

private:
    host::Runtime& runtime_;
    host::Object synthesizer_;
    std::optional<bool> finished_;
    std::optional<double> seconds_;
    SpeakingObserver observer_;
};

} // namespace zqm::cli
