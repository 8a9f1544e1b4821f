// What a synthesizer tells its delegate, and who observes it.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace zqm::platform {

struct SpeechEvent {
    enum class Kind : std::uint8_t { Word, Phoneme, Problem, Sync, Finished };

    std::uint64_t utterance = 0;
    Kind kind = Kind::Word;
    double time = 0;          // in the utterance's sound, in seconds
    std::size_t position = 0; // of a word or problem, in UTF-16 units
    std::size_t length = 0;   // of a word
    std::uint32_t value = 0;  // a phoneme's opcode, a sync message
    std::string message{};    // of a problem, in UTF-8
    bool completed = false;   // of the finish
    std::string failure{};    // why the utterance failed, if it did
};

} // namespace zqm::platform
