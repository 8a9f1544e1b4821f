#include "engine/speaker/spoken_phonemes.h"

#include "engine/protocol/phoneme_symbols.h"

#include <algorithm>

namespace zqm::engine {

std::vector<SpokenPhoneme> spokenPhonemes(const std::vector<PhonemeMark>& marks, std::size_t samples,
                                          std::size_t shortestSilence, PhonemeOpcodes opcodes) {
    std::vector<SpokenPhoneme> spoken;
    for (auto mark = marks.begin(); mark != marks.end();) {
        auto next = mark + 1;
        if (mark->isPause()) {
            next = std::find_if(next, marks.end(), [](const PhonemeMark& other) { return !other.isPause(); });
        }
        const std::size_t end = std::max(next == marks.end() ? samples : next->sample, mark->sample);
        if (!mark->isPause()) {
            const std::vector<std::int16_t> sequence = opcodes.next(mark->phoneme);
            for (std::size_t index = 0; index < sequence.size(); ++index) {
                spoken.push_back(
                    {mark->sample + (end - mark->sample) * index / sequence.size(), sequence[index]});
            }
        } else if (end - mark->sample >= shortestSilence) {
            spoken.push_back({mark->sample, protocol::kSilenceOpcode});
        }
        mark = next;
    }
    return spoken;
}

} // namespace zqm::engine
