#pragma once

#include "cli/say/speaking_observer.h"
#include "cli/say/speech_timing.h"

#include <optional>
#include <string>
#include <utility>

namespace zqm::cli {

// Keeps what is heard when, event by event, of positions and times of the whole.
class SayTiming {
public:
    explicit SayTiming(std::u16string text, std::string language = "en") {
        timing_.text = std::move(text);
        timing_.language = std::move(language);
    }

    void add(const SpeakingEvent& event);
    // The sound ended.
    const SpeechTiming& finish(double duration);

private:
    void endWord(double time);
    void endPhoneme(double time);

    SpeechTiming timing_;
    bool isInWord_ = false; // the last one goes on
    bool isInPhoneme_ = false;
    std::optional<double> silence_; // in the last word, and when sound came after it
    std::optional<double> sound_;
};

} // namespace zqm::cli
