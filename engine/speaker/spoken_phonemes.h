// The phonemes of a piece of speech, by opcode and time.

#pragma once

#include "engine/phonemes/phoneme_set.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zqm::engine {

struct SpokenPhoneme {
    std::size_t sample = 0; // at which it begins
    std::int16_t opcode = 0;

    bool operator==(const SpokenPhoneme&) const = default;
};

// As espeak-ng tells it, pauses included.
struct PhonemeMark {
    std::size_t sample = 0;
    std::string phoneme;

    [[nodiscard]] bool isPause() const { return phoneme.starts_with('_'); }
};

// In speech of so many samples. A phoneme of espeak-ng that several opcodes stand for is parted among them;
// pauses too short to be heard as silence are left out.
std::vector<SpokenPhoneme> spokenPhonemes(const std::vector<PhonemeMark>& marks, std::size_t samples,
                                          std::size_t shortestSilence, PhonemeOpcodes opcodes);

} // namespace zqm::engine
