#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zqm::cli {

// What is heard when, in seconds of the whole sound. Positions and lengths count UTF-16 units of the whole
// text. A word ends where the next one begins, or at the silence before that.

struct TimedWord {
    std::size_t position;
    std::size_t length;
    double begin;
    double end;
};

struct TimedPhoneme {
    std::string symbol; // UTF-8; empty where it has none
    int opcode;         // 0: silence
    double begin;
    double end;
};

// The words and the phonemes in the order in which they are heard.
struct SpeechTiming {
    std::u16string text;
    std::string language = "en"; // BCP 47, by which its sentences are found
    std::vector<TimedWord> words = {};
    std::vector<TimedPhoneme> phonemes = {};
    double duration = 0;
};

} // namespace zqm::cli
