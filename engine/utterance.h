// One text on its way from request to sound, with the events that tell of it.

#pragma once

#include "engine/output.h"
#include "engine/protocol.h"
#include "engine/speaker.h"
#include "engine/text_pieces.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>

namespace zqm::engine {

class Utterance {
public:
    using Report = std::function<void(const protocol::Event&)>;

    // The voice is set. The output of an empty text that is only to be heard may be null.
    Utterance(const protocol::Speak& request, const protocol::Voice& voice, Speaker& speaker,
              std::unique_ptr<Output> output, Report report);

    [[nodiscard]] std::uint64_t number() const { return number_; }

    // Whether its last word is said: then it is to be dropped.
    [[nodiscard]] bool isOver() const { return over_; }

    // Does what can be done now: makes sound as far as the output takes it, reports words being heard.
    void advance();

    // How long nothing will be to do, unless the output has news.
    [[nodiscard]] std::chrono::microseconds idleTime() const;

    void stop();
    void adjust(const protocol::Adjust& change);

private:
    struct PendingWord {
        Range utf16;
        std::uint64_t sample = 0; // of the utterance
    };

    void begin(const std::string& error);
    void end(bool completed, const std::string& error);
    void feed();
    bool nextPiece();
    void respeakRest();
    void reportWords(std::uint64_t heard);
    void scale(std::vector<std::int16_t>& samples) const;

    std::uint64_t number_;
    double volume_;
    Speaker& speaker_;
    std::unique_ptr<Output> output_;
    Report report_;
    TextPieces pieces_;

    Piece piece_;                     // whose sound is being handed over
    std::optional<Piece> respoken_;   // what is left of a piece after a change of rate
    Speech speech_;                   // of piece_
    std::size_t handedOver_ = 0;      // samples of speech_
    std::uint64_t written_ = 0;       // samples of the utterance
    std::deque<PendingWord> pending_; // spoken, but not heard yet
    bool exhausted_ = false;
    bool begun_ = false;
    bool over_ = false;
};

} // namespace zqm::engine
