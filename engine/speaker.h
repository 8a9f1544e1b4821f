// espeak-ng: pieces of text in, samples and the times of words out.

#pragma once

#include "engine/protocol.h"
#include "engine/text_pieces.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zqm::engine {

struct Speech {
    std::vector<std::int16_t> samples;  // one channel
    std::vector<std::size_t> wordTimes; // of each word of the piece, the sample at which it begins
};

// espeak-ng keeps one synthesizer a process, so there is one of these a process.
class Speaker {
public:
    static constexpr double kSlowest = 80;
    static constexpr double kFastest = 450;

    // Throws std::runtime_error when espeak-ng has no data.
    Speaker();
    Speaker(const Speaker&) = delete;
    Speaker& operator=(const Speaker&) = delete;

    [[nodiscard]] int sampleRate() const { return sampleRate_; }
    [[nodiscard]] const std::vector<protocol::Voice>& voices() const { return voices_; }

    // By its identifier; null when there is none.
    [[nodiscard]] const protocol::Voice* findVoice(const std::string& identifier) const;

    // One of voices(). False when its data can't be loaded.
    bool setVoice(const protocol::Voice& voice);

    // Words a minute, taken to the nearest that the synthesizer can speak; not a number: its own.
    void setRate(double wordsPerMinute);

    Speech synthesize(const Piece& piece);

private:
    int sampleRate_ = 0;
    int rate_ = 0;
    std::string current_; // identifier of the voice that is set
    std::vector<protocol::Voice> voices_;
};

} // namespace zqm::engine
