// A text with its commands, turned into sound stretch by stretch.

#pragma once

#include "engine/protocol/protocol.h"
#include "engine/speaker/speaker.h"
#include "engine/text/embedded_text.h"
#include "engine/text/text_pieces.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace zqm::engine {

// Something to be told as a sample is heard.
struct Cue {
    std::size_t sample = 0;
    protocol::Event event;
    std::size_t end = 0;         // of a word's sound
    bool startsSentence = false; // of a word
};

// Samples count from the beginning of the stretch.
struct Stretch {
    struct VolumeChange {
        std::size_t sample = 0;
        Number volume;
    };

    std::vector<std::int16_t> samples;
    std::size_t soundEnd = 0; // of the last word; only a pause follows
    std::vector<Cue> cues;    // in order
    std::vector<VolumeChange> volumes;
};

class Narration {
public:
    Narration(protocol::Speak request, const protocol::Voice& voice, Speaker& speaker);

    // None at the end.
    std::optional<Stretch> next();

    // For what is made from now on.
    void adjust(const protocol::Manner& manner);

    // Has the words of the last stretch made anew that begin at a sample of it or later. Where they began;
    // nothing when there are none.
    std::optional<std::size_t> makeAnew(std::size_t from);

private:
    void carryOver();
    void takeCommandsOf(const Piece& piece);
    std::size_t nextCut();
    bool executeCut();
    void execute(const PlacedCommand& placed);
    std::optional<Stretch> silence();
    Stretch speak();
    std::optional<Stretch> leftOvers();
    void addCue(Stretch& stretch, const PlacedCommand& placed, std::size_t sample) const;
    void addWords(Stretch& stretch) const;
    void addMistakes(Stretch& stretch) const;
    void addPhonemes(Stretch& stretch);
    void addPhoneme(Stretch& stretch, std::size_t sample, std::int16_t opcode);
    [[nodiscard]] std::size_t endOfWord(std::size_t word, std::size_t next) const;
    [[nodiscard]] std::size_t wordFor(const PlacedCommand& placed) const;

    std::uint64_t utterance_;
    const protocol::Voice& voice_;
    Speaker& speaker_;
    EmbeddedText text_;
    TextPieces pieces_;
    protocol::Manner initial_; // what a reset goes back to
    protocol::Manner manner_;
    std::size_t command_ = 0;                  // of the text's, not executed yet
    std::size_t cut_ = 0;                      // the next of them that parts the text, as far as is known
    std::uint64_t silence_ = 0;                // samples still to be made
    std::optional<bool> emphasis_;             // of the next word
    Piece piece_;                              // the last one spoken
    std::optional<bool> pieceEmphasis_;        // of its first word
    std::vector<PlacedCommand> placed_;        // what acts with one of its words, or waits for a word
    Speech speech_;                            // of it
    std::optional<std::int16_t> opcode_;       // the last one; none at the beginning
    std::optional<std::int16_t> opcodeBefore_; // the last one before the piece
    bool isRespoken_ = false;                  // it is to be made anew
};

} // namespace zqm::engine
