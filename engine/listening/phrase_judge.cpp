#include "engine/listening/phrase_judge.h"

#include <algorithm>

namespace zqm::engine {

namespace {

constexpr double kFramesPerSecond = 100;
constexpr std::size_t kSamplesPerFrame = kListeningRate / 100;

// A word of few frames is easily worse than the sounds by chance: so many frames without a doubt are added.
constexpr double kEvidence = 4;

// Found with the tuning half of bench/recognition. The first two are where 95 of 100 commands are heard, and
// 2 of 100 other sentences. All commands of that half stay below the others, with a margin for people's
// pauses and drawn-out words; noises and chords mostly don't.
constexpr Doubts kMost{.whole = 27, .worstWord = 36, .aside = 0.35, .poorestWord = 100, .slowestPhone = 0.26};

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
                      {word.score / word.frames, word.phones == 0});
    }
    return frames;
}

} // namespace

Doubts doubtsOf(const Phrase& phrase, const Fit& command, const Fit& sounds) {
    const std::vector<Frame> ofCommand = framesOf(command);
    const std::vector<Frame> ofSounds = framesOf(sounds);
    const std::size_t frames = std::min(ofCommand.size(), ofSounds.size());

    Doubts doubts;
    double spoken = 0;
    int aside = 0;
    const std::size_t voiceBegin = phrase.before / kSamplesPerFrame;
    const std::size_t voiceEnd = voiceBegin + (phrase.end - phrase.begin) / kSamplesPerFrame;
    for (std::size_t i = 0; i < frames; ++i) {
        spoken += ofCommand[i].isSilence ? 0 : 1;
        aside = ofCommand[i].isSilence && i >= voiceBegin && i < voiceEnd ? aside + 1 : 0;
        doubts.aside = std::max(doubts.aside, aside / kFramesPerSecond);
    }
    doubts.whole = (sounds.score - command.score) / std::max(spoken, 1.0);

    std::size_t begin = 0;
    for (const Fit::Word& word : command.words) {
        const std::size_t end = std::min(begin + static_cast<std::size_t>(word.frames), frames);
        double difference = 0;
        for (std::size_t i = begin; i < end; ++i) {
            difference += ofSounds[i].score - ofCommand[i].score;
        }
        if (word.phones > 0) {
            doubts.worstWord = std::max(doubts.worstWord, difference / (word.frames + kEvidence));
            doubts.poorestWord = std::max(doubts.poorestWord, -word.score / word.frames);
            doubts.slowestPhone = std::max(doubts.slowestPhone, word.frames / kFramesPerSecond / word.phones);
        }
        begin = end;
    }
    return doubts;
}

bool isCommand(const Doubts& doubts) {
    return doubts.whole <= kMost.whole && doubts.worstWord <= kMost.worstWord &&
           doubts.aside <= kMost.aside && doubts.poorestWord <= kMost.poorestWord &&
           doubts.slowestPhone <= kMost.slowestPhone;
}

} // namespace zqm::engine
