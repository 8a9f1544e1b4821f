#include "engine/listening/phrase_detector.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zqm::engine {

namespace {

constexpr std::size_t kFrame = kListeningRate / 100;
constexpr int kOnset = 4;              // frames that are loud before a phrase begins: no click is one
constexpr int kPause = 30;             // frames of silence that end a phrase
constexpr std::size_t kBefore = 25;    // frames kept from before its onset
constexpr std::size_t kAfter = 15;     // and from after its end
constexpr double kAboveFloor = 9;      // dB
constexpr double kStaysAboveFloor = 6; // dB, once a phrase is going on
constexpr double kQuietest = -62;      // dBFS: nobody speaks into a microphone as softly as this
constexpr double kLoudestFloor = -25;  // dBFS
constexpr double kLowestFloor = kQuietest - kAboveFloor; // dBFS: digital silence isn't what comes after it
constexpr double kFalling = 0.2;                         // of the way, each frame
constexpr double kRising = 0.02;                         // the same, outside of a phrase

// In a phrase the quietest of so many frames is still no voice: so a noise that begins soon is silence.
constexpr int kWindow = 100;
constexpr double kBelowQuietest = 2; // dB: and silence isn't quite as loud as that

} // namespace

void PhraseDetector::take(std::span<const std::int16_t> samples) {
    for (const std::int16_t sample : samples) {
        now_.frame.push_back(sample);
        if (now_.frame.size() == kFrame) {
            takeFrame();
            now_.before = sample;
            now_.frame.clear();
        }
    }
}

void PhraseDetector::finish() {
    if (now_.inPhrase) {
        end();
    }
}

void PhraseDetector::reset() {
    now_ = {};
}

// Of the differences between samples: a constant offset and the hum of a mains supply count for nothing.
double PhraseDetector::level() const {
    double sum = 0;
    double previous = now_.before;
    for (const std::int16_t sample : now_.frame) {
        sum += (sample - previous) * (sample - previous);
        previous = sample;
    }
    constexpr double kFullScale = 32768.0 * 32768.0;
    return 10 * std::log10(sum / static_cast<double>(now_.frame.size()) / kFullScale + 1e-10);
}

void PhraseDetector::follow(double level) {
    if (!now_.knowsFloor) {
        now_.floor = std::min(level, kQuietest);
        now_.knowsFloor = true;
    } else if (level < now_.floor) {
        now_.floor += kFalling * (level - now_.floor);
    } else if (!now_.inPhrase) {
        now_.floor += std::min(kRising * (level - now_.floor), 1.0);
    }
    if (now_.inPhrase) {
        now_.window.push_back(level);
        if (now_.window.size() == kWindow) {
            const double quietest = *std::min_element(now_.window.begin(), now_.window.end());
            now_.floor = std::max(now_.floor, quietest - kBelowQuietest);
            now_.window.clear();
        }
    }
    now_.floor = std::clamp(now_.floor, kLowestFloor, kLoudestFloor);
}

void PhraseDetector::takeFrame() {
    const double loudness = level();
    const double margin = now_.inPhrase ? kStaysAboveFloor : kAboveFloor;
    const bool isLoud = loudness > std::max(now_.floor + margin, kQuietest);
    follow(loudness);
    now_.taken += kFrame;

    if (!now_.inPhrase) {
        now_.past.insert(now_.past.end(), now_.frame.begin(), now_.frame.end());
        now_.loudFrames = isLoud ? now_.loudFrames + 1 : 0;
        if (now_.loudFrames == kOnset) {
            begin();
        } else if (now_.past.size() > (kBefore + kOnset) * kFrame) {
            now_.past.erase(now_.past.begin(), now_.past.begin() + kFrame);
        }
        return;
    }

    if (!now_.isTooLong) {
        now_.phrase.samples.insert(now_.phrase.samples.end(), now_.frame.begin(), now_.frame.end());
        if (now_.phrase.samples.size() > longest_ + (kBefore + kPause) * kFrame) {
            now_.isTooLong = true;
            now_.phrase.samples = {};
        }
    }
    now_.quietFrames = isLoud ? 0 : now_.quietFrames + 1;
    if (now_.quietFrames == kPause) {
        end();
    }
}

void PhraseDetector::begin() {
    now_.inPhrase = true;
    now_.isTooLong = false;
    now_.window.clear();
    now_.phrase.begin = now_.taken - kOnset * kFrame;
    now_.phrase.samples.assign(now_.past.begin(), now_.past.end());
    now_.phrase.before = now_.past.size() - kOnset * kFrame;
    now_.past.clear();
    now_.quietFrames = 0;
}

void PhraseDetector::end() {
    const std::size_t quiet = static_cast<std::size_t>(now_.quietFrames) * kFrame;
    now_.phrase.end = now_.taken - quiet;
    if (!now_.isTooLong && now_.quietFrames > static_cast<int>(kAfter)) {
        now_.phrase.samples.resize(now_.phrase.samples.size() - (quiet - kAfter * kFrame));
    }
    const std::size_t kept = std::min(now_.phrase.samples.size(), std::min(quiet, kAfter * kFrame));
    now_.past.assign(now_.phrase.samples.end() - static_cast<std::ptrdiff_t>(kept),
                     now_.phrase.samples.end());
    now_.inPhrase = false;
    now_.loudFrames = 0;
    const Phrase phrase = std::exchange(now_.phrase, {});
    handler_(phrase);
}

} // namespace zqm::engine
