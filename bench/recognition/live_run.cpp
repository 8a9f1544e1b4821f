#include "bench/recognition/run.h"

#include "bench/recognition/engine.h"
#include "tests/support/played_file.h"
#include "tests/support/process_table.h"

#include <stdexcept>
#include <utility>

namespace zqm::recognition {

namespace {

constexpr host::Seconds kPatience{120};
// Some sounds are no phrases: then nothing is ever answered.
constexpr host::Seconds kLongestAnswer{2.5};
// A phrase may be answered in parts, and nobody says which is the last.
constexpr host::Seconds kPause{0.6};
// The end of a phrase is noticed a little after its last sound.
constexpr double kClosing = 0.1;

} // namespace

LiveRun::LiveRun(host::Runtime& runtime, const support::PulseServer& server,
                 const std::vector<std::string>& commands)
    : runtime_(runtime), server_(server), recording_(server), listener_(runtime, commands) {
    listener_.start();
    if (!runtime.runUntil([&] { return listener_.timesBegan() > 0; }, kPatience)) {
        throw std::runtime_error("nothing can be heard" +
                                 (listener_.failures().empty() ? "" : ": " + listener_.failures().back()));
    }
    engine_ = theEngine();
}

void LiveRun::hear(const Phrase& phrase) {
    Played played{.phrase = phrase, .begin = support::monotonicSeconds(), .firstAnswer = answers().size()};
    const double spent = support::processorSecondsOf(engine_);
    const support::PlayedFile file(server_, phrase.file);
    if (!runtime_.runUntil([&] { return file.isOver(); }, kPatience)) {
        throw std::runtime_error(phrase.file.string() + " isn't played to its end");
    }
    const double end = support::monotonicSeconds();
    const auto isAnswered = [&] { return !answers().empty() && answers().back().time > end - kClosing; };
    runtime_.runUntil(isAnswered, kLongestAnswer);
    runtime_.runFor(kPause);
    played.end = support::monotonicSeconds();
    played.processorSeconds = support::processorSecondsOf(engine_) - spent;
    played_.push_back(std::move(played));
}

std::vector<Outcome> LiveRun::outcomes() const {
    if (!listener_.failures().empty() || theEngine() != engine_) {
        throw std::runtime_error("listening was interrupted");
    }
    if (!recording_.catchUp()) {
        throw std::runtime_error("the sound server is too slow");
    }
    std::vector<Outcome> outcomes;
    for (std::size_t index = 0; index < played_.size(); ++index) {
        const bool isLast = index + 1 == played_.size();
        outcomes.push_back(
            outcomeOf(played_[index], isLast ? answers().size() : played_[index + 1].firstAnswer));
    }
    return outcomes;
}

Outcome LiveRun::outcomeOf(const Played& played, std::size_t answersEnd) const {
    Outcome outcome{.way = "live",
                    .phrase = played.phrase,
                    .seconds = played.end - played.begin,
                    .processorSeconds = played.processorSeconds};
    for (std::size_t index = played.firstAnswer; index < answersEnd; ++index) {
        const auto& answer = answers()[index];
        if (answer.command.empty()) {
            continue;
        }
        outcome.heard.push_back(answer.command);
        const auto lastSound = recording_.lastSound(played.begin, played.end);
        if (!outcome.delay && lastSound) {
            outcome.delay = answer.time - *lastSound;
        }
    }
    return outcome;
}

} // namespace zqm::recognition
