// Where in the sound somebody says something: phrases, parted by silence.

#pragma once

#include "engine/listening/listening_rate.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <vector>

namespace zqm::engine {

// Sound of a phrase, with a little of the silence before and after it.
struct Phrase {
    std::uint64_t begin = 0; // samples since the start: where the voice begins and ends
    std::uint64_t end = 0;
    std::vector<std::int16_t> samples; // none when it was longer than a phrase may be
    std::size_t before = 0;            // how many of them are from before its begin
};

class PhraseDetector {
public:
    using Handler = std::function<void(const Phrase& phrase)>;

    explicit PhraseDetector(Handler handler) : handler_(std::move(handler)) {}

    // Samples of a phrase that is longer are dropped; it ends where it ends all the same. At first no phrase
    // is kept.
    void setLongest(std::size_t samples) { longest_ = samples; }

    void take(std::span<const std::int16_t> samples);

    // No more sound: a phrase that is going on ends here.
    void finish();

    // Starts again at 0.
    void reset();

    [[nodiscard]] bool isInPhrase() const { return now_.inPhrase; }

private:
    void takeFrame();
    [[nodiscard]] double level() const; // of the frame, in dBFS
    void follow(double level);
    void begin();
    void end();

    Handler handler_;
    std::size_t longest_ = 0; // samples

    struct State {
        std::uint64_t taken = 0;         // samples, in whole frames
        std::vector<std::int16_t> frame; // that is being filled
        std::int16_t before = 0;         // the sample before the frame
        std::deque<std::int16_t> past;   // outside of phrases: what may belong to the next one
        double floor = 0;                // what silence sounds like here, in dBFS
        bool knowsFloor = false;
        std::vector<double> window; // levels in a phrase, since the floor was last held against them
        int loudFrames = 0;         // running, outside of a phrase
        int quietFrames = 0;        // running, in a phrase
        bool inPhrase = false;
        bool isTooLong = false;
        Phrase phrase;
    };
    State now_;
};

} // namespace zqm::engine
