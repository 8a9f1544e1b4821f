#include "tests/engine/parted_words.h"

#include "tests/support/sounded_parts.h"

namespace zqm::test {

using namespace protocol;
using support::soundedParts;

std::string partedWords(std::size_t sentences) {
    std::string text;
    for (std::size_t index = 0; index < sentences; ++index) {
        text += "One, nine, moon. ";
    }
    return text;
}

std::vector<double> wordLengths(std::span<const float> samples, int rate) {
    constexpr double kPause = 0.06;
    std::vector<double> lengths;
    for (const auto& part : soundedParts(samples, static_cast<std::size_t>(kPause * rate))) {
        lengths.push_back(static_cast<double>(part.end - part.begin) / rate);
    }
    return lengths;
}

double silenceAtEnd(std::span<const float> samples, int rate) {
    const auto parts = soundedParts(samples, samples.size() + 1);
    return static_cast<double>(samples.size() - (parts.empty() ? 0 : parts.back().end)) / rate;
}

Speak speakParted(std::uint64_t utterance, std::size_t sentences) {
    constexpr double kSlow = 120;
    Speak request = speak(utterance, partedWords(sentences));
    request.manner.rate = kSlow;
    return request;
}

void expectSilent(EngineProcess& engine) {
    engine.send(ListVoices{});
    const auto event = engine.next();
    EXPECT_TRUE(event && std::holds_alternative<Voices>(*event));
}

std::string boundaryName(const testing::TestParamInfo<Boundary>& boundary) {
    switch (boundary.param) {
    case Boundary::Immediate:
        return "immediate";
    case Boundary::Word:
        return "word";
    case Boundary::Sentence:
        break;
    }
    return "sentence";
}

} // namespace zqm::test
