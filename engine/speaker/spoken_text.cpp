#include "engine/speaker/spoken_text.h"

#include "engine/text/characters.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <unicode/uchar.h>
#include <utility>

namespace zqm::engine {

namespace {

using Command = EspeakText::Command;

constexpr int kFullAmplitude = 100;

// An emphatic word is louder and longer, a destressed one softer and shorter.
struct Prominence {
    int amplitude;
    double rate;
};
constexpr Prominence kMore{160, 0.8};
constexpr Prominence kLess{55, 1.25};

// Values of espeak-ng's "say as".
constexpr int kSayAsUsual = 0;
constexpr int kSayCharacters = 0x12;
constexpr int kSayDigits = 0xC1;

// espeak-ng reports the word behind a command at the character before it.
void endCommands(EspeakText& spoken, std::size_t origin) {
    spoken.add(U' ', origin);
}

// Has something said, which stands in a range of the piece, with more or less emphasis.
void emphasize(EspeakText& spoken, const Range& range, const SpokenManner& manner,
               const std::function<void()>& say) {
    const Prominence& prominence = *manner.emphasis ? kMore : kLess;
    const auto rate = static_cast<int>(std::lround(manner.rate * prominence.rate));
    spoken.addCommand(Command::Amplitude, prominence.amplitude, range.begin);
    spoken.addCommand(Command::Rate, rate, range.begin);
    say();
    endCommands(spoken, range.end);
    spoken.addCommand(Command::Amplitude, kFullAmplitude, range.end);
    spoken.addCommand(Command::Rate, manner.rate, range.end);
}

// A voice may not know the digits of other scripts.
char32_t plainDigit(char32_t character) {
    return isDigit(character)
               ? U'0' + static_cast<char32_t>(u_charDigitValue(static_cast<UChar32>(character)))
               : character;
}

class Words {
public:
    Words(const Piece& piece, const SpokenManner& manner, const Lexicon& lexicon)
        : piece_(piece), manner_(manner), lexicon_(lexicon) {}

    EspeakText spoken() {
        for (std::size_t index = 0; index < piece_.words.size();) {
            const Utterable next = utterableAt(index);
            copy({at_, next.range.begin});
            if (index == 0 && manner_.emphasis) {
                emphasize(spoken_, next.range, manner_, [&] { say(next); });
            } else {
                say(next);
            }
            at_ = next.range.end;
            index += next.words;
        }
        copy({at_, piece_.text.size()});
        return std::move(spoken_);
    }

private:
    // A word, or several that stand in the lexicon together.
    struct Utterable {
        Range range;
        std::size_t words = 1;
        const std::vector<std::string>* phonemes = nullptr;
    };

    [[nodiscard]] Utterable utterableAt(std::size_t index) const {
        const auto match = lexicon_.find(piece_, index);
        if (!match) {
            return {piece_.words[index].codePoints, 1, nullptr};
        }
        const std::size_t end = piece_.words[index + match->words - 1].codePoints.end;
        const bool takesStop = match->takesStop && end < piece_.text.size() && piece_.text[end] == U'.';
        return {
            {piece_.words[index].codePoints.begin, takesStop ? end + 1 : end}, match->words, match->phonemes};
    }

    void copy(const Range& range) {
        for (std::size_t at = range.begin; at < range.end; ++at) {
            spoken_.add(piece_.text[at], at);
        }
    }

    void say(const Utterable& utterable) {
        const Range& range = utterable.range;
        if (utterable.phonemes != nullptr) {
            for (const std::string& mnemonics : *utterable.phonemes) {
                spoken_.addPhonemes(mnemonics, range.begin);
            }
            return;
        }
        std::size_t at = range.begin;
        for (const SpelledRun& run : spelledRuns(piece_.text, range, manner_.spelling)) {
            copy({at, run.codePoints.begin});
            spell(run);
            at = run.codePoints.end;
        }
        copy({at, range.end});
    }

    void spell(const SpelledRun& run) {
        const Range& range = run.codePoints;
        if (run.spelling == Spelling::Apart) {
            for (std::size_t at = range.begin; at < range.end; ++at) {
                spoken_.add(piece_.text[at], at);
                spoken_.add(U' ', at + 1);
            }
            return;
        }
        const bool digits = run.spelling == Spelling::Digits;
        spoken_.addCommand(Command::SayAs, digits ? kSayDigits : kSayCharacters, range.begin);
        for (std::size_t at = range.begin; at < range.end; ++at) {
            spoken_.add(digits ? plainDigit(piece_.text[at]) : piece_.text[at], at);
        }
        endCommands(spoken_, range.end);
        spoken_.addCommand(Command::SayAs, kSayAsUsual, range.end);
    }

    const Piece& piece_;
    const SpokenManner& manner_;
    const Lexicon& lexicon_;
    EspeakText spoken_;
    std::size_t at_ = 0; // in the piece, before which all is said
};

} // namespace

EspeakText spokenText(const Piece& piece, const SpokenManner& manner, const Lexicon& lexicon) {
    return Words(piece, manner, lexicon).spoken();
}

EspeakText spokenSymbols(const Piece& piece, const SpokenManner& manner, const PhonemeSet& set,
                         std::vector<SymbolMistake>& mistakes) {
    PhonemeInput input = phonemeInput(piece.text, set);
    mistakes = std::move(input.mistakes);
    EspeakText spoken;
    bool isFirst = true;
    for (std::size_t index = 0; index < input.words.size(); ++index) {
        const PhonemeWord& word = input.words[index];
        const auto say = [&] { spoken.addPhonemes(word.mnemonics, word.at); };
        if (word.mnemonics.empty()) {
            spoken.add(static_cast<unsigned char>(word.punctuation), word.at);
            spoken.add(U' ', word.at);
        } else if (std::exchange(isFirst, false) && manner.emphasis) {
            const bool isLast = index + 1 == input.words.size();
            emphasize(spoken, {word.at, isLast ? piece.text.size() : input.words[index + 1].at}, manner, say);
        } else {
            say();
        }
    }
    return spoken;
}

} // namespace zqm::engine
