// espeak-ng: pieces of text in, samples and the times of words out.

#pragma once

#include "engine/manner.h"
#include "engine/pitch.h"
#include "engine/protocol.h"
#include "engine/text_pieces.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
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

    // How to speak from the next piece on: the whole manner, but for the volume. What isn't given, or no
    // number, is the voice's own; numbers are taken to the nearest that can be spoken.
    void setManner(const protocol::Manner& manner);

    // The first word may be spoken with more or less emphasis than usual.
    Speech synthesize(const Piece& piece, std::optional<bool> emphasis = std::nullopt);

private:
    bool load(const std::string& name);
    void setParameter(int parameter, int value);
    void prepare();
    [[nodiscard]] int rate() const;

    int sampleRate_ = 0;
    std::vector<protocol::Voice> voices_;
    std::string voice_; // identifier of the voice that is set
    VoicePitch pitch_;  // of that voice
    protocol::Manner manner_;
    std::string loaded_;            // what espeak-ng knows it by, or a variant of it
    std::map<int, int> parameters_; // of espeak-ng, as they are set since then
};

} // namespace zqm::engine
