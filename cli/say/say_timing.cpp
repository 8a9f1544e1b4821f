#include "cli/say/say_timing.h"

#include <algorithm>
#include <utility>

namespace zqm::cli {

using Kind = SpeakingEvent::Kind;

void SayTiming::add(const SpeakingEvent& event) {
    if (!event.time) {
        return;
    }
    const double time = *event.time;
    if (event.kind == Kind::Word) {
        endWord(time);
        timing_.words.push_back({event.position, event.length, time, time});
        isInWord_ = true;
    } else if (event.kind == Kind::Phoneme) {
        endPhoneme(time);
        timing_.phonemes.push_back({std::string(event.symbol), event.opcode, time, time});
        isInPhoneme_ = true;
        if (event.opcode == 0) {
            silence_ = time;
            sound_.reset();
        } else if (!sound_) {
            sound_ = time;
        }
    }
}

const SpeechTiming& SayTiming::finish(double duration) {
    endWord(duration);
    endPhoneme(duration);
    timing_.duration = duration;
    return timing_;
}

// At the silence before this time, but not at one in the middle of the word: "1,000,000" has some. What is
// told may go beyond the end of a sound that was stopped.
void SayTiming::endWord(double time) {
    if (std::exchange(isInWord_, false)) {
        TimedWord& word = timing_.words.back();
        const bool isSilent = silence_ && *silence_ > word.begin && (!sound_ || *sound_ >= time);
        word.end = std::max(isSilent ? std::min(*silence_, time) : time, word.begin);
    }
    silence_.reset();
    sound_.reset();
}

void SayTiming::endPhoneme(double time) {
    if (std::exchange(isInPhoneme_, false)) {
        timing_.phonemes.back().end = std::max(time, timing_.phonemes.back().begin);
    }
}

} // namespace zqm::cli
