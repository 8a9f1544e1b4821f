#include "engine/listening/phrase_judge.h"

#include <algorithm>

namespace zqm::engine {

namespace {

constexpr double kFramesPerSecond = 100;

// A word of few frames is easily worse than the sounds by chance: so many frames without a doubt are added.
constexpr double kEvidence = 4;

// Found with bench/recognition, on its tuning half.
constexpr Doubts kMost{27, 36, 0.3};

// What each frame of a phrase has: the score of the word it is in, spread evenly, and whether that is
// silence.
struct Frame {
    double score = 0;
    bool isSilence = true;
};

std::vector<Frame> framesOf(const Fit& fit) {
    std::vector<Frame> frames;
    for (const Fit::Word& word : fit.words) {
        frames.insert(frames.end(), static_cast<std::size_t>(word.frames),
                      {word.score / word.frames, word.isSilence});
    }
    return frames;
}

} // namespace

Doubts doubtsOf(const Fit& command, const Fit& sounds) {
    const std::vector<Frame> ofCommand = framesOf(command);
    const std::vector<Frame> ofSounds = framesOf(sounds);
    const std::size_t frames = std::min(ofCommand.size(), ofSounds.size());

    Doubts doubts;
    double spoken = 0;
    for (std::size_t i = 0; i < frames; ++i) {
        spoken += ofCommand[i].isSilence ? 0 : 1;
        doubts.aside += ofCommand[i].isSilence && !ofSounds[i].isSilence ? 1 / kFramesPerSecond : 0;
    }
    doubts.whole = (sounds.score - command.score) / std::max(spoken, 1.0);

    std::size_t begin = 0;
    for (const Fit::Word& word : command.words) {
        const std::size_t end = std::min(begin + static_cast<std::size_t>(word.frames), frames);
        double difference = 0;
        for (std::size_t i = begin; i < end; ++i) {
            difference += ofSounds[i].score - ofCommand[i].score;
        }
        if (!word.isSilence) {
            doubts.worstWord = std::max(doubts.worstWord, difference / (word.frames + kEvidence));
        }
        begin = end;
    }
    return doubts;
}

bool isCommand(const Doubts& doubts) {
    return doubts.whole <= kMost.whole && doubts.worstWord <= kMost.worstWord && doubts.aside <= kMost.aside;
}

} // namespace zqm::engine
