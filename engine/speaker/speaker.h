// espeak-ng: pieces of text in, samples and the times of words out.

#pragma once

#include "engine/phonemes/phoneme_inventory.h"
#include "engine/phonemes/phoneme_set.h"
#include "engine/protocol/manner.h"
#include "engine/protocol/protocol.h"
#include "engine/speaker/lexicon.h"
#include "engine/speaker/pitch.h"
#include "engine/speaker/spoken_phonemes.h"
#include "engine/text/text_pieces.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zqm::engine {

// What is wrong with a text that is spoken all the same.
struct TextMistake {
    std::size_t codePoint = 0; // of the piece
    int code = 0;
    std::string message; // for people

    bool operator==(const TextMistake&) const = default;
};

struct Speech {
    std::vector<std::int16_t> samples;  // one channel
    std::vector<std::size_t> wordTimes; // of each word of the piece, the sample at which it begins
    std::vector<SpokenPhoneme> phonemes;
    std::vector<TextMistake> mistakes;
};

// espeak-ng keeps one synthesizer a process, so there is one of these a process.
class Speaker {
public:
    static constexpr double kSlowest = 80;
    static constexpr double kFastest = 450;

    // Throws std::runtime_error when espeak-ng has no data.
    Speaker();
    Speaker(const Speaker&) = delete;
    Speaker& operator=(const Speaker&) = delete;

    [[nodiscard]] int sampleRate() const { return sampleRate_; }
    [[nodiscard]] const std::vector<protocol::Voice>& voices() const { return voices_; }

    // By its identifier; null when there is none.
    [[nodiscard]] const protocol::Voice* findVoice(const std::string& identifier) const;

    // One of voices(). False when its data can't be loaded.
    bool setVoice(const protocol::Voice& voice);

    // How to speak from the next piece on: the whole manner, but for the volume. What isn't given, or no
    // number, is the voice's own; numbers are taken to the nearest that can be spoken.
    void setManner(const protocol::Manner& manner);

    // The first word may be spoken with more or less emphasis than usual.
    Speech synthesize(const Piece& piece, std::optional<bool> emphasis = std::nullopt);

    // Replaces the lexicon, once a voice is set. Entries that can't be used are left out, and answered.
    std::vector<LexiconProblem> setLexicon(std::vector<protocol::LexiconDictionary> dictionaries);

    // The phoneme symbols of a text in UTF-8, as a voice speaks it with the lexicon and the spelling modes of
    // a manner. The voice is set then.
    std::string phonemes(const std::string& text, const protocol::Voice& voice,
                         const protocol::Manner& manner = {});

    // What espeak-ng itself says of a text in UTF-8, in kPhonemeMode, as a voice speaks it. The voice is set
    // then.
    std::string phonemeNames(const std::string& text, const protocol::Voice& voice);

private:
    [[nodiscard]] PhonemeSet phonemeSet(const protocol::Voice& voice) const;
    bool load(const std::string& name);
    bool prepareToTranslate(const protocol::Voice& voice);
    void setParameter(int parameter, int value);
    void prepare();
    [[nodiscard]] int rate() const;

    int sampleRate_ = 0;
    std::vector<protocol::Voice> voices_;
    PhonemeInventory inventory_;
    protocol::Voice voice_; // that is set
    VoicePitch pitch_;      // of that voice
    PhonemeSet set_{{}, {}};
    std::vector<protocol::LexiconDictionary> dictionaries_;
    Lexicon lexicon_; // what of them is for that voice
    protocol::Manner manner_;
    std::string loaded_;            // what espeak-ng knows it by, or a variant of it
    std::map<int, int> parameters_; // of espeak-ng, as they are set since then
};

} // namespace zqm::engine
