#include "engine/utterance.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

namespace zqm::engine {

namespace {

double validVolume(double volume) {
    return std::isnan(volume) ? 1.0 : std::clamp(volume, 0.0, 1.0);
}

} // namespace

Utterance::Utterance(const protocol::Speak& request, const protocol::Voice& voice, Speaker& speaker,
                     std::unique_ptr<Output> output, Report report)
    : number_(request.utterance), volume_(validVolume(request.manner.volume.value_or(1))), speaker_(speaker),
      output_(std::move(output)), report_(std::move(report)), pieces_(request.text, voice.language) {}

void Utterance::begin(const std::string& error) {
    if (!begun_) {
        begun_ = true;
        report_(protocol::Started{number_, error});
        over_ = !error.empty();
    }
}

void Utterance::end(bool completed, const std::string& error) {
    over_ = true;
    report_(protocol::Finished{number_, completed, error});
}

void Utterance::advance() {
    if (over_) {
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
        feed();
        // The clock of a device may run on beyond what it was given.
        reportWords(std::min(output_->heard(), written_));
    }
    if (output_->state() == Output::State::Failed) {
        if (begun_) {
            end(false, output_->error());
        } else {
            begin(output_->error());
        }
    } else if (output_->state() == Output::State::Ended) {
        reportWords(std::numeric_limits<std::uint64_t>::max());
        end(true, {});
    }
}

void Utterance::feed() {
    std::size_t room = output_->room();
    bool fed = false;
    while (room > 0 && !exhausted_ && output_->state() == Output::State::Open) {
        if (handedOver_ == speech_.samples.size()) {
            // A file has room without end: other work gets its turn after each piece.
            if (fed) {
                return;
            }
            if (!nextPiece()) {
                exhausted_ = true;
                output_->finish();
                return;
            }
            continue;
        }
        const std::size_t count = std::min(room, speech_.samples.size() - handedOver_);
        const auto begin = speech_.samples.begin() + static_cast<std::ptrdiff_t>(handedOver_);
        std::vector<std::int16_t> samples(begin, begin + static_cast<std::ptrdiff_t>(count));
        scale(samples);
        output_->write(samples);
        handedOver_ += count;
        written_ += count;
        room -= count;
        fed = true;
    }
}

bool Utterance::nextPiece() {
    std::optional<Piece> next = respoken_ ? std::exchange(respoken_, std::nullopt) : pieces_.next();
    if (!next) {
        return false;
    }
    piece_ = std::move(*next);
    speech_ = speaker_.synthesize(piece_);
    handedOver_ = 0;
    for (std::size_t index = 0; index < piece_.words.size(); ++index) {
        pending_.push_back({piece_.words[index].utf16, written_ + speech_.wordTimes[index]});
    }
    return true;
}

// Words from the first on that isn't handed over are made anew, with the rate that is set now.
void Utterance::respeakRest() {
    const auto next = std::lower_bound(speech_.wordTimes.begin(), speech_.wordTimes.end(), handedOver_);
    if (handedOver_ == speech_.samples.size() || next == speech_.wordTimes.end()) {
        return;
    }
    const auto word = static_cast<std::size_t>(next - speech_.wordTimes.begin());
    respoken_ = piece_.from(word);
    pending_.resize(pending_.size() - respoken_->words.size());
    speech_.samples.resize(*next);
    speech_.wordTimes.resize(word);
}

void Utterance::reportWords(std::uint64_t heard) {
    while (!pending_.empty() && pending_.front().sample < heard) {
        const Range& word = pending_.front().utf16;
        report_(protocol::Word{number_, word.begin, word.length()});
        pending_.pop_front();
    }
}

void Utterance::scale(std::vector<std::int16_t>& samples) const {
    if (volume_ < 1) {
        for (std::int16_t& sample : samples) {
            sample = static_cast<std::int16_t>(std::lround(sample * volume_));
        }
    }
}

std::chrono::microseconds Utterance::idleTime() const {
    constexpr std::chrono::milliseconds kLongest{50};
    if (over_ || !output_ || output_->state() != Output::State::Open) {
        return kLongest;
    }
    if (!exhausted_ && output_->room() > 0) {
        return std::chrono::microseconds(0);
    }
    if (pending_.empty()) {
        return kLongest;
    }
    const std::uint64_t heard = output_->heard();
    const std::uint64_t due = pending_.front().sample + 1;
    const std::uint64_t samples = due > heard ? due - heard : 0;
    const auto wait = std::chrono::microseconds(samples * std::micro::den /
                                                static_cast<std::uint64_t>(speaker_.sampleRate()));
    return std::clamp<std::chrono::microseconds>(wait, std::chrono::milliseconds(1), kLongest);
}

void Utterance::stop() {
    if (over_) {
        return;
    }
    begin({});
    if (output_) {
        output_->stop();
    }
    const bool failed = output_ && output_->state() == Output::State::Failed;
    end(false, failed ? output_->error() : std::string());
}

void Utterance::adjust(const protocol::Adjust& change) {
    if (change.manner.volume) {
        volume_ = validVolume(*change.manner.volume);
    }
    if (change.manner.rate) {
        speaker_.setManner(change.manner);
        respeakRest();
    }
}

} // namespace zqm::engine
