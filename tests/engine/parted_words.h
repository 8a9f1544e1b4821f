// What the tests of pauses and stops have in common: a text whose words can be told apart in its sound.

#pragma once

#include "tests/engine/engine_process.h"

#include <gtest/gtest.h>
#include <span>
#include <string>
#include <vector>

namespace zqm::test {

// Short words, each followed by a pause; three make a sentence.
std::string partedWords(std::size_t sentences);

// Seconds of the sound of each word of such a text.
std::vector<double> wordLengths(std::span<const float> samples, int rate);
// Seconds of silence at the end.
double silenceAtEnd(std::span<const float> samples, int rate);

inline constexpr std::size_t kWordsOfSentence = 3;

// Speech of that text, slow enough for its pauses to be plain.
protocol::Speak speakParted(std::uint64_t utterance, std::size_t sentences);

// Nothing happens while it is paused: what it says next is the answer to a question.
void expectSilent(EngineProcess& engine);

// For the names of tests.
std::string boundaryName(const testing::TestParamInfo<protocol::Boundary>& boundary);

// Events up to the first of a kind.
template <typename Message>
std::vector<protocol::Event> until(EngineProcess& engine) {
    std::vector<protocol::Event> events;
    while (auto event = engine.next()) {
        events.push_back(*event);
        if (std::holds_alternative<Message>(*event)) {
            break;
        }
    }
    return events;
}

} // namespace zqm::test
