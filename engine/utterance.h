// One text on its way from request to sound, with the events that tell of it.

#pragma once

#include "engine/narration.h"
#include "engine/output/output.h"
#include "engine/protocol/protocol.h"
#include "engine/track.h"
#include "engine/volume_curve.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace zqm::engine {

class Utterance {
public:
    // With whether more follow at once: then this one need not be sent by itself.
    using Report = std::function<void(const protocol::Event&, bool moreFollow)>;

    // The output of an empty text that is only to be heard may be null.
    Utterance(protocol::Speak request, const protocol::Voice& voice, Speaker& speaker,
              std::unique_ptr<Output> output, Report report);

    // Something to be told as the sound begins, with as little as there is of it.
    void announce(const protocol::Event& event) { cues_.push_back({0, 0, event, false}); }

    [[nodiscard]] std::uint64_t number() const { return number_; }

    // Whether its last word is said: then it is to be dropped.
    [[nodiscard]] bool isOver() const { return over_; }

    // Does what can be done now: makes sound as far as the output takes it, reports what is being heard.
    void advance();

    // How long nothing will be to do, unless the output has news; negative: for ever.
    [[nodiscard]] std::chrono::microseconds idleTime() const;

    void stop(protocol::Boundary boundary);
    void pause(protocol::Boundary boundary);
    void resume();
    void adjust(const protocol::Manner& manner);

private:
    // Where the utterance is to be held, for good or until it goes on.
    struct Hold {
        protocol::Boundary boundary;
        bool isStop;
        std::optional<std::uint64_t> at{}; // sample; none: not known yet
    };
    struct PlacedCue {
        std::uint64_t sample;
        std::uint64_t end;
        protocol::Event event;
        bool startsSentence;
    };
    struct HeardWord {
        std::uint64_t begin;
        std::uint64_t end;
    };

    void begin(const std::string& error);
    void end(bool completed, const std::string& error);
    void stopNow();
    [[nodiscard]] bool isLive() const { return output_ && output_->isLive(); }

    void feed();
    bool makeMore();
    void pad(std::size_t count);
    [[nodiscard]] std::size_t amountToWrite(std::size_t room) const;
    void makeRestAnew();
    [[nodiscard]] std::uint64_t heard() const;
    void reportUpTo(std::uint64_t sample);
    void dropTold();
    [[nodiscard]] std::uint64_t wantedFrom(std::uint64_t sample) const;
    void forgetTheRest();
    [[nodiscard]] double seconds(std::uint64_t sample) const {
        return static_cast<double>(sample) / sampleRate_;
    }
    // Of the sound that was heard or written.
    [[nodiscard]] std::uint64_t length() const;

    void hold(const Hold& hold);
    void letGo();
    void placeHold();
    [[nodiscard]] std::optional<std::uint64_t> placeOf(protocol::Boundary boundary) const;
    [[nodiscard]] std::optional<std::uint64_t> endOfSentence() const;
    [[nodiscard]] std::uint64_t holdReached() const;
    void reachHold();
    void standStill();
    void tellWordAgain();

    std::uint64_t number_;
    int sampleRate_;
    std::unique_ptr<Output> output_;
    Report report_;
    VolumeCurve volume_;
    Narration narration_;

    Track track_;
    std::uint64_t stretch_ = 0;     // where the last one begins
    std::uint64_t soundEnd_ = 0;    // of its last word
    std::uint64_t cursor_ = 0;      // what comes before was handed over
    std::uint64_t furthest_ = 0;    // heard up to there, and told
    std::uint64_t origin_ = 0;      // where the output began, or began again
    std::deque<PlacedCue> cues_;    // since the word being heard, and to come
    std::size_t told_ = 0;          // of them
    std::optional<HeardWord> word_; // told last
    std::optional<Hold> hold_;
    bool isPadded_ = false; // silence was handed over beyond the cursor
    bool isPaused_ = false;
    bool exhausted_ = false; // all is made
    bool finished_ = false;  // and the output knows
    bool begun_ = false;
    bool over_ = false;
};

} // namespace zqm::engine
