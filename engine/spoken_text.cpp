#include "engine/spoken_text.h"

#include "engine/characters.h"

#include <cmath>
#include <unicode/uchar.h>

namespace zqm::engine {

namespace {

using Command = EspeakText::Command;

constexpr int kFullAmplitude = 100;

// An emphatic word is louder and longer, a destressed one softer and shorter.
struct Emphasis {
    int amplitude;
    double rate;
};
constexpr Emphasis kMore{160, 0.8};
constexpr Emphasis kLess{55, 1.25};

// Values of espeak-ng's "say as".
constexpr int kSayAsUsual = 0;
constexpr int kSayCharacters = 0x12;
constexpr int kSayDigits = 0xC1;

class Writer {
public:
    Writer(const Piece& piece, const SpokenManner& manner) : piece_(piece), manner_(manner) {}

    EspeakText write() {
        std::size_t at = 0;
        for (std::size_t index = 0; index < piece_.words.size(); ++index) {
            const Range& word = piece_.words[index].codePoints;
            copy({at, word.begin});
            if (index == 0 && manner_.emphasis) {
                emphasize(word, *manner_.emphasis ? kMore : kLess);
            } else {
                say(word);
            }
            at = word.end;
        }
        copy({at, piece_.text.size()});
        return std::move(spoken_);
    }

private:
    void copy(const Range& range) {
        for (std::size_t at = range.begin; at < range.end; ++at) {
            spoken_.add(piece_.text[at], at);
        }
    }

    void emphasize(const Range& word, const Emphasis& emphasis) {
        spoken_.addCommand(Command::Amplitude, emphasis.amplitude, word.begin);
        spoken_.addCommand(Command::Rate, static_cast<int>(std::lround(manner_.rate * emphasis.rate)),
                           word.begin);
        say(word);
        endCommands(word.end);
        spoken_.addCommand(Command::Amplitude, kFullAmplitude, word.end);
        spoken_.addCommand(Command::Rate, manner_.rate, word.end);
    }

    void say(const Range& word) {
        std::size_t at = word.begin;
        for (const SpelledRun& run : spelledRuns(piece_.text, word, manner_.spelling)) {
            copy({at, run.codePoints.begin});
            spell(run);
            at = run.codePoints.end;
        }
        copy({at, word.end});
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
        endCommands(range.end);
        spoken_.addCommand(Command::SayAs, kSayAsUsual, range.end);
    }

    // espeak-ng reports the word behind a command at the character before it.
    void endCommands(std::size_t origin) { spoken_.add(U' ', origin); }

    // A voice may not know the digits of other scripts.
    static char32_t plainDigit(char32_t character) {
        return isDigit(character)
                   ? U'0' + static_cast<char32_t>(u_charDigitValue(static_cast<UChar32>(character)))
                   : character;
    }

    const Piece& piece_;
    const SpokenManner& manner_;
    EspeakText spoken_;
};

} // namespace

EspeakText spokenText(const Piece& piece, const SpokenManner& manner) {
    return Writer(piece, manner).write();
}

} // namespace zqm::engine
