// What a synthesizer of a host program told of its speech.

#pragma once

#include "tests/support/phoneme_check.h"
#include "tests/support/word_check.h"
#include "zqmhost/zqmhost.h"

#include <vector>

namespace zqm::support {

struct ToldEvents {
    std::vector<WordRange> words;
    std::vector<ToldPhoneme> phonemes;
    std::vector<bool> ends;

    // From now on, for as long as the object tells anything.
    void listenTo(host::Object& object) {
        object.on("willSpeakWord", [this](const host::Arguments& word) {
            words.push_back({.position = word[0].asSize(), .length = word[1].asSize()});
        });
        object.on("willSpeakPhoneme", [this](const host::Arguments& phoneme) {
            phonemes.push_back({.opcode = phoneme[0].asInteger(), .word = words.size()});
        });
        object.on("didFinishSpeaking",
                  [this](const host::Arguments& end) { ends.push_back(end[0].asBool()); });
    }
};

} // namespace zqm::support
