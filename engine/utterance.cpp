#include "engine/utterance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace zqm::engine {

using protocol::Boundary;

namespace {

// Beyond the end of what is to be heard silence plays, so that the sound server's idea of the time need not
// be exact: what follows a boundary by less is sure not to be heard.
constexpr int kMarginMilliseconds = 20;

// A word that goes on for longer isn't repeated after a pause.
constexpr int kLongestRepeatedSeconds = 10;

constexpr int kMilliseconds = 1000;

// Of an event that is told as a place of the sound is heard.
void setPlace(protocol::Event& event, double seconds) {
    std::visit(
        [&](auto& message) {
            if constexpr (requires { message.at; }) {
                message.at = seconds;
            }
        },
        event);
}

} // namespace

Utterance::Utterance(protocol::Speak request, const protocol::Voice& voice, Speaker& speaker,
                     std::unique_ptr<Output> output, Report report)
    : number_(request.utterance), sampleRate_(speaker.sampleRate()), output_(std::move(output)),
      report_(std::move(report)), volume_(request.manner.volume.value_or(1)),
      narration_(std::move(request), voice, speaker) {}

void Utterance::begin(const std::string& error) {
    if (!begun_) {
        begun_ = true;
        report_(protocol::Started{number_, error}, false);
        over_ = !error.empty();
    }
}

void Utterance::end(bool completed, const std::string& error) {
    over_ = true;
    report_(protocol::Finished{number_, completed, error, seconds(length())}, false);
}

void Utterance::advance() {
    if (over_ || isPaused_) {
        return;
    }
    if (!output_) {
        begin({});
        end(true, {});
        return;
    }
    output_->update();
    if (output_->state() == Output::State::Open) {
        begin({});
        reportUpTo(heard());
        placeHold();
        feed();
        reportUpTo(heard());
        reachHold();
        forgetTheRest();
    }
    if (over_ || isPaused_) {
        return;
    }
    if (output_->state() == Output::State::Failed) {
        if (begun_) {
            end(false, output_->error());
        } else {
            begin(output_->error());
        }
    } else if (output_->state() == Output::State::Ended) {
        reportUpTo(std::numeric_limits<std::uint64_t>::max());
        end(true, {});
    }
}

// ---- making sound

// A file has room without end: other work gets its turn after each stretch. It is written up to the end of
// its last word, and the pause behind that with what follows, so that the file can end with the word.
void Utterance::feed() {
    std::size_t room = output_->room();
    bool isTurnOver = false;
    while (room > 0 && !isTurnOver && output_->state() == Output::State::Open) {
        if (hold_ && hold_->at && cursor_ >= *hold_->at) {
            pad(room);
            return;
        }
        if (!exhausted_ && cursor_ >= (isLive() ? track_.end() : soundEnd_)) {
            exhausted_ = !makeMore();
            placeHold();
        } else if (cursor_ < track_.end()) {
            const std::size_t count = amountToWrite(room);
            std::vector<std::int16_t> samples = track_.copy(cursor_, count);
            volume_.scale(cursor_, samples);
            output_->write(samples);
            cursor_ += count;
            room -= count;
            isTurnOver = !isLive() && cursor_ == soundEnd_;
        } else {
            if (!finished_) {
                output_->finish();
                finished_ = true;
            }
            return;
        }
    }
}

// A device that is given nothing for a while stops, and its clock with it.
void Utterance::pad(std::size_t count) {
    if (isLive()) {
        output_->write(std::vector<std::int16_t>(count));
        isPadded_ = true;
    }
}

// Into a file up to the end of a word, if there is one.
std::size_t Utterance::amountToWrite(std::size_t room) const {
    const std::uint64_t last = hold_ && hold_->at ? std::min(*hold_->at, track_.end()) : track_.end();
    std::uint64_t end = std::min(cursor_ + room, last);
    if (!isLive()) {
        for (auto cue = cues_.rbegin(); cue != cues_.rend(); ++cue) {
            if (cue->end > cursor_ && cue->end <= end) {
                end = cue->end;
                break;
            }
        }
    }
    return static_cast<std::size_t>(end - cursor_);
}

bool Utterance::makeMore() {
    const std::optional<Stretch> stretch = narration_.next();
    if (!stretch) {
        return false;
    }
    stretch_ = track_.end();
    track_.append(stretch->samples);
    // A silence between words is sound of its own.
    const bool hasWords = stretch->soundEnd > 0;
    soundEnd_ = hasWords ? stretch_ + stretch->soundEnd : track_.end();
    for (const Cue& cue : stretch->cues) {
        const std::uint64_t sample = stretch_ + cue.sample;
        cues_.push_back({sample, stretch_ + cue.end, cue.event, cue.startsSentence});
        setPlace(cues_.back().event, seconds(sample));
    }
    for (const Stretch::VolumeChange& change : stretch->volumes) {
        volume_.change(stretch_ + change.sample, change.volume);
    }
    return true;
}

// Words from the first on that isn't handed over are made anew, in the manner that is set now.
void Utterance::makeRestAnew() {
    if (cursor_ == track_.end()) {
        return;
    }
    const auto from = static_cast<std::size_t>(std::max(cursor_, stretch_) - stretch_);
    const std::optional<std::size_t> begin = narration_.makeAnew(from);
    if (!begin) {
        return;
    }
    const std::uint64_t cut = stretch_ + *begin;
    track_.truncate(cut);
    volume_.truncate(cut);
    soundEnd_ = std::min(soundEnd_, cut);
    while (cues_.size() > told_ && cues_.back().sample >= cut) {
        cues_.pop_back();
    }
    if (hold_ && hold_->at > cut) {
        hold_->at.reset();
    }
}

// ---- telling

// The clock of a device may run on beyond what it was given.
std::uint64_t Utterance::heard() const {
    return std::min(origin_ + output_->heard(), cursor_);
}

std::uint64_t Utterance::length() const {
    if (!output_) {
        return 0;
    }
    return isLive() ? furthest_ : output_->heard();
}

void Utterance::reportUpTo(std::uint64_t sample) {
    furthest_ = std::max(furthest_, std::min(sample, cursor_));
    while (told_ < cues_.size() && cues_[told_].sample < sample) {
        if (std::holds_alternative<protocol::Word>(cues_[told_].event)) {
            word_ = {cues_[told_].sample, cues_[told_].end};
            dropTold();
        }
        const protocol::Event& event = cues_[told_++].event;
        report_(event, told_ < cues_.size() && cues_[told_].sample < sample);
    }
    if (!isLive()) {
        dropTold(); // it is never told again
    }
}

void Utterance::dropTold() {
    cues_.erase(cues_.begin(), cues_.begin() + static_cast<std::ptrdiff_t>(told_));
    told_ = 0;
}

// From where on sound is still needed when so much is heard: a word that is cut is heard again.
std::uint64_t Utterance::wantedFrom(std::uint64_t sample) const {
    const auto longest = static_cast<std::uint64_t>(sampleRate_) * kLongestRepeatedSeconds;
    const bool isInWord = word_ && sample < word_->end && sample - word_->begin <= longest;
    return isInWord ? word_->begin : sample;
}

void Utterance::forgetTheRest() {
    const std::uint64_t wanted = isLive() ? wantedFrom(heard()) : cursor_;
    track_.forgetBefore(wanted);
    volume_.forgetBefore(wanted);
}

// ---- being held

void Utterance::stop(Boundary boundary) {
    if (boundary == Boundary::Immediate || isPaused_) {
        stopNow();
    } else {
        hold({boundary, true});
    }
}

void Utterance::stopNow() {
    if (over_) {
        return;
    }
    begin({});
    if (output_) {
        furthest_ = std::max(furthest_, heard());
        output_->stop();
    }
    const bool failed = output_ && output_->state() == Output::State::Failed;
    end(false, failed ? output_->error() : std::string());
}

void Utterance::pause(Boundary boundary) {
    const bool willStop = hold_ && hold_->isStop;
    if (!over_ && !isPaused_ && !willStop) {
        hold({boundary, false});
    }
}

void Utterance::resume() {
    if (over_) {
        return;
    }
    report_(protocol::Continued{number_}, false);
    if (isPaused_) {
        isPaused_ = false;
        output_->resume();
    } else if (hold_ && !hold_->isStop) {
        letGo();
    }
}

void Utterance::hold(const Hold& hold) {
    letGo();
    hold_ = hold;
}

// What was to follow the boundary is heard after all.
void Utterance::letGo() {
    hold_.reset();
    if (std::exchange(isPadded_, false)) {
        output_->truncate(cursor_ - origin_);
    }
}

void Utterance::placeHold() {
    if (!hold_ || hold_->at) {
        return;
    }
    if (const std::optional<std::uint64_t> place = placeOf(hold_->boundary)) {
        hold_->at = std::max(*place, heard());
        if (isLive() && cursor_ > *hold_->at) {
            output_->truncate(*hold_->at - origin_);
            cursor_ = *hold_->at;
            isPadded_ = true;
            finished_ = false;
        }
    }
}

std::optional<std::uint64_t> Utterance::placeOf(Boundary boundary) const {
    if (boundary == Boundary::Immediate || !word_) {
        return heard();
    }
    return boundary == Boundary::Word ? word_->end : endOfSentence();
}

// Nothing when it is not made yet.
std::optional<std::uint64_t> Utterance::endOfSentence() const {
    std::uint64_t end = word_->end;
    for (std::size_t index = told_; index < cues_.size(); ++index) {
        if (cues_[index].startsSentence) {
            return end;
        }
        end = std::max(end, cues_[index].end);
    }
    return exhausted_ ? std::optional(end) : std::nullopt;
}

// Up to where the output has to have played.
std::uint64_t Utterance::holdReached() const {
    const int margin = isPadded_ ? sampleRate_ * kMarginMilliseconds / kMilliseconds : 0;
    return *hold_->at + static_cast<std::uint64_t>(margin);
}

void Utterance::reachHold() {
    if (!hold_ || !hold_->at || output_->state() != Output::State::Open) {
        return;
    }
    const bool isImmediate = hold_->boundary == Boundary::Immediate;
    if (isLive() && !isImmediate && origin_ + output_->heard() < holdReached()) {
        return;
    }
    if (cursor_ < *hold_->at) {
        return;
    }
    if (hold_->isStop) {
        stopNow();
    } else {
        standStill();
    }
}

void Utterance::standStill() {
    if (isLive()) {
        furthest_ = std::max(furthest_, *hold_->at);
        output_->pause();
        const std::uint64_t at = wantedFrom(*hold_->at);
        if (at < cursor_) {
            tellWordAgain();
        }
        cursor_ = at;
        origin_ = at;
        finished_ = false;
    }
    hold_.reset();
    isPadded_ = false;
    isPaused_ = true;
    report_(protocol::Paused{number_}, false);
}

// The cut word, with what belongs to it, but nothing that stands in the text.
void Utterance::tellWordAgain() {
    const auto told = cues_.begin() + static_cast<std::ptrdiff_t>(told_);
    const auto again = std::remove_if(cues_.begin(), told, [](const PlacedCue& cue) {
        return std::holds_alternative<protocol::Sync>(cue.event) ||
               std::holds_alternative<protocol::Problem>(cue.event);
    });
    cues_.erase(again, told);
    told_ = 0;
}

void Utterance::adjust(const protocol::Manner& manner) {
    if (manner.volume) {
        volume_.set(cursor_, *manner.volume);
    }
    narration_.adjust(manner);
    protocol::Manner rest = manner;
    rest.volume.reset();
    if (rest != protocol::Manner{}) {
        makeRestAnew();
    }
}

std::chrono::microseconds Utterance::idleTime() const {
    constexpr std::chrono::microseconds kForEver{-1};
    constexpr std::chrono::milliseconds kLongest{50};
    if (isPaused_) {
        return kForEver;
    }
    if (over_ || !output_ || output_->state() != Output::State::Open) {
        return kLongest;
    }
    const bool isHeld = hold_ && hold_->at && cursor_ >= *hold_->at;
    if (!isHeld && !finished_ && output_->room() > 0) {
        return std::chrono::microseconds(0);
    }
    std::optional<std::uint64_t> due;
    if (isHeld) {
        due = holdReached();
    }
    if (told_ < cues_.size()) {
        due = std::min(cues_[told_].sample + 1, due.value_or(std::numeric_limits<std::uint64_t>::max()));
    }
    if (!due) {
        return kLongest;
    }
    const std::uint64_t heard = origin_ + output_->heard();
    const std::uint64_t samples = *due > heard ? *due - heard : 0;
    const auto wait =
        std::chrono::microseconds(samples * std::micro::den / static_cast<std::uint64_t>(sampleRate_));
    return std::clamp<std::chrono::microseconds>(wait, std::chrono::milliseconds(1), kLongest);
}

} // namespace zqm::engine
