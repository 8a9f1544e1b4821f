#include "engine/speaker/speaker.h"

#include "engine/phonemes/phoneme_text.h"
#include "engine/phonemes/text_phonemes.h"
#include "engine/speaker/spoken_text.h"
#include "engine/speaker/timeline.h"
#include "engine/speaker/voices.h"
#include "engine/text/utf8.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <espeak-ng/speak_lib.h>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <utility>

namespace zqm::engine {

namespace {

// espeak-ng looks for a sound device when it is initialised, also where it is only to hand out samples: it
// connects to the sound server, and waits for one that doesn't answer. So for that time there is none.
class NoServer {
public:
    NoServer() {
        if (const char* const value = std::getenv(kName)) {
            before_ = value;
        }
        ::setenv(kName, "unix:/nonexistent", 1);
    }
    ~NoServer() {
        if (before_) {
            ::setenv(kName, before_->c_str(), 1);
        } else {
            ::unsetenv(kName);
        }
    }
    NoServer(const NoServer&) = delete;
    NoServer& operator=(const NoServer&) = delete;

private:
    static constexpr const char* kName = "PULSE_SERVER";
    std::optional<std::string> before_;
};

std::filesystem::path dataFolder() {
    const char* folder = nullptr;
    espeak_Info(&folder);
    return folder;
}

// The code of a mistake in phoneme symbols.
constexpr int kBadInputText = -247;

constexpr unsigned int kSynthFlags = espeakCHARS_UTF8 | espeakPHONEMES;

// Seconds of a pause that is told.
constexpr double kShortestSilence = 0.05;

// What one call of espeak_Synth brings. espeak-ng hands a pointer through to its events alone, and some
// buffers have none, so what the callback fills stands here.
struct Collector {
    const EspeakText* spoken = nullptr;
    std::vector<std::int16_t> samples{};
    std::vector<Mark> words{};
    std::vector<PhonemeMark> phonemes{};
};

Collector* collector = nullptr;

// Not given, or none: the voice's own.
double number(std::optional<double> given, double own) {
    return given && !std::isnan(*given) ? *given : own;
}

SpellingModes spellingModes(const protocol::Manner& manner) {
    return {manner.characters.value_or(protocol::SpellingMode::Normal),
            manner.numbers.value_or(protocol::SpellingMode::Normal)};
}

void collectEvent(const espeak_EVENT& event) {
    const auto sample = static_cast<std::size_t>(std::max(event.sample, 0));
    if (event.type == espeakEVENT_WORD) {
        const std::vector<std::size_t>& origins = collector->spoken->origins();
        const auto position = static_cast<std::size_t>(std::max(event.text_position - 1, 0));
        if (position < origins.size()) {
            collector->words.push_back({origins[position], sample});
        }
    } else if (event.type == espeakEVENT_PHONEME) {
        const char* const name = event.id.string; // as long as there is room, it ends with a zero byte
        collector->phonemes.push_back({sample, std::string(name, ::strnlen(name, sizeof event.id.string))});
    }
}

// The times of sounds, and when the last of them ends: at the pause behind it if there is one.
Marks soundMarks(Collector& collected) {
    Marks marks{std::move(collected.words), {}, 0};
    for (const PhonemeMark& phoneme : collected.phonemes) {
        if (!phoneme.isPause()) {
            marks.phonemes.push_back(phoneme.sample);
        } else if (!marks.phonemes.empty() && marks.end <= marks.phonemes.back()) {
            marks.end = phoneme.sample;
        }
    }
    if (!marks.phonemes.empty()) {
        marks.end = std::max(marks.end, marks.phonemes.back());
    }
    marks.end = std::min(marks.end, collected.samples.size());
    return marks;
}

int collect(short* samples, int count, espeak_EVENT* events) {
    for (const espeak_EVENT* event = events; event->type != espeakEVENT_LIST_TERMINATED; ++event) {
        collectEvent(*event);
    }
    if (samples != nullptr && count > 0) {
        collector->samples.insert(collector->samples.end(), samples, samples + count);
    }
    return 0;
}

Collector spoken(const EspeakText& text, unsigned int flags) {
    Collector collected{.spoken = &text};
    collector = &collected;
    espeak_Synth(text.text().c_str(), text.text().size() + 1, 0, POS_CHARACTER, 0, flags, nullptr, nullptr);
    collector = nullptr;
    return collected;
}

} // namespace

Speaker::Speaker() {
    const NoServer noServer;
    sampleRate_ = espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr,
                                    espeakINITIALIZE_PHONEME_EVENTS | espeakINITIALIZE_DONT_EXIT);
    if (sampleRate_ <= 0) {
        throw std::runtime_error("espeak-ng can't be initialised: its data is missing or of another version");
    }
    espeak_SetSynthCallback(collect);
    voices_ = listVoices();
    inventory_ = readPhonemeInventory(dataFolder());
}

const protocol::Voice* Speaker::findVoice(const std::string& identifier) const {
    const auto voice = std::find_if(voices_.begin(), voices_.end(), [&](const protocol::Voice& candidate) {
        return candidate.identifier == identifier;
    });
    return voice == voices_.end() ? nullptr : &*voice;
}

PhonemeSet Speaker::phonemeSet(const protocol::Voice& voice) const {
    const std::string name = phonemeSetOf(dataFolder(), voice.identifier, inventory_);
    const auto phonemes = inventory_.find(name);
    return {name, phonemes == inventory_.end() ? std::vector<std::string>() : phonemes->second};
}

bool Speaker::setVoice(const protocol::Voice& voice) {
    if (voice.identifier != voice_.identifier) {
        if (!load(voice.identifier)) {
            return false;
        }
        voice_ = voice;
        pitch_ = voicePitch(voice.identifier);
        set_ = phonemeSet(voice);
        lexicon_ = Lexicon(dictionaries_, voice.language, set_);
    }
    return true;
}

std::vector<LexiconProblem> Speaker::setLexicon(std::vector<protocol::LexiconDictionary> dictionaries) {
    dictionaries_ = std::move(dictionaries);
    lexicon_ = Lexicon(dictionaries_, voice_.language, set_);
    return lexiconProblems(dictionaries_, set_);
}

// It takes phonemes in what it translates as it was told when it spoke last.
bool Speaker::prepareToTranslate(const protocol::Voice& voice) {
    if (!setVoice(voice) || !load(voice.identifier)) {
        return false;
    }
    spoken({}, kSynthFlags);
    return true;
}

std::string Speaker::phonemeNames(const std::string& text, const protocol::Voice& voice) {
    if (!prepareToTranslate(voice)) {
        return {};
    }
    std::string names;
    for (const void* rest = text.c_str(); rest != nullptr;) {
        const char* const clause = espeak_TextToPhonemes(&rest, espeakCHARS_UTF8, kPhonemeMode);
        names += names.empty() ? "" : " ";
        names += clause == nullptr ? "" : clause;
    }
    return names;
}

std::string Speaker::phonemes(const std::string& text, const protocol::Voice& voice,
                              const protocol::Manner& manner) {
    if (!prepareToTranslate(voice)) {
        return {};
    }
    Piece whole{.text = fromUtf8(text), .words = {}};
    // Each bracket would be a pause.
    std::replace_if(
        whole.text.begin(), whole.text.end(),
        [](char32_t character) { return character == U'[' || character == U']'; }, U' ');
    whole.words = WordFinder().find(whole.text);
    return textPhonemes(spokenText(whole, {.spelling = spellingModes(manner)}, lexicon_).text(), set_);
}

bool Speaker::load(const std::string& name) {
    if (name == loaded_) {
        return true;
    }
    loaded_.clear();
    parameters_.clear();
    if (espeak_SetVoiceByName(name.c_str()) != EE_OK) {
        return false;
    }
    loaded_ = name;
    return true;
}

void Speaker::setParameter(int parameter, int value) {
    const auto known = parameters_.find(parameter);
    if (known == parameters_.end() || known->second != value) {
        espeak_SetParameter(static_cast<espeak_PARAMETER>(parameter), value, 0);
        parameters_[parameter] = value;
    }
}

void Speaker::setManner(const protocol::Manner& manner) {
    manner_ = manner;
}

int Speaker::rate() const {
    return static_cast<int>(
        std::lround(std::clamp(number(manner_.rate, espeakRATE_NORMAL), kSlowest, kFastest)));
}

// Brings espeak-ng to the manner in which is to be spoken.
void Speaker::prepare() {
    const PitchParameters pitch = pitchParameters(pitch_, number(manner_.pitchBase, ownPitchBase(pitch_)),
                                                  number(manner_.pitchModulation, kOwnPitchModulation));
    if (!load(pitch.higher ? voice_.identifier + kHigherVariant : voice_.identifier)) {
        load(voice_.identifier);
    }
    setParameter(espeakRATE, rate());
    setParameter(espeakPITCH, pitch.pitch);
    setParameter(espeakRANGE, pitch.range);
}

Speech Speaker::synthesize(const Piece& piece, std::optional<bool> emphasis) {
    prepare();
    const SpokenManner manner{spellingModes(manner_), emphasis, rate()};
    std::vector<SymbolMistake> mistakes;
    const bool isText = manner_.input.value_or(protocol::InputMode::Text) == protocol::InputMode::Text;
    const EspeakText text =
        isText ? spokenText(piece, manner, lexicon_) : spokenSymbols(piece, manner, set_, mistakes);

    const unsigned int flags = kSynthFlags | (piece.endsSentence ? espeakENDPAUSE : 0U);
    Collector collected = spoken(text, flags);

    Speech speech;
    speech.phonemes =
        spokenPhonemes(collected.phonemes, collected.samples.size(),
                       static_cast<std::size_t>(kShortestSilence * sampleRate_), PhonemeOpcodes(set_.name()));
    speech.wordTimes = wordTimes(piece.words, soundMarks(collected));
    speech.samples = std::move(collected.samples);
    for (SymbolMistake& mistake : mistakes) {
        speech.mistakes.push_back({mistake.at, kBadInputText, std::move(mistake.message)});
    }
    return speech;
}

} // namespace zqm::engine
