// Timings for texts whose words are marked: ⟦word⟧.

#pragma once

#include "cli/say/speech_timing.h"

#include "tests/support/utf16.h"
#include "tests/support/word_fixtures.h"

#include <string_view>

namespace zqm::tests {

// Each word takes half a second, the first begins at `begin`.
inline cli::SpeechTiming markedTiming(std::string_view marked, double begin = 0) {
    constexpr double kSecondsPerWord = 0.5;
    const support::MarkedText text = support::parseMarkedText(marked);
    cli::SpeechTiming timing{.text = support::toUtf16(text.text), .duration = begin};
    for (const support::WordRange& word : text.words) {
        const double end = timing.duration + kSecondsPerWord;
        timing.words.push_back({word.position, word.length, timing.duration, end});
        timing.duration = end;
    }
    return timing;
}

} // namespace zqm::tests
