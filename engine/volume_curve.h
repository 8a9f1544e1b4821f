// How loud an utterance is, sample by sample: as its text says at some places, and as its host says
// meanwhile.

#pragma once

#include "engine/text/embedded_text.h"

#include <cstdint>
#include <span>
#include <vector>

namespace zqm::engine {

class VolumeCurve {
public:
    // Volumes are taken to the nearest from 0 to 1; what is not a number is 1.
    explicit VolumeCurve(double volume);

    // By the text, in the order of its sound.
    void change(std::uint64_t sample, const Number& volume);
    // By the host; a later change by the text counts all the same.
    void set(std::uint64_t sample, double volume);

    // What the text says of the sound from there on is yet to come again.
    void truncate(std::uint64_t end);
    // The sound from there on is heard again: what the host has said since holds for all of it.
    void rewind(std::uint64_t sample);
    // What comes before is done with.
    void forgetBefore(std::uint64_t sample);

    void scale(std::uint64_t from, std::span<std::int16_t> samples) const;

private:
    struct Change {
        std::uint64_t sample;
        Number volume;
        bool byHost;
    };

    double volume_;               // before the first of the changes
    std::vector<Change> changes_; // in the order of their samples
};

} // namespace zqm::engine
