#include "engine/speaker.h"

#include "engine/spoken_text.h"
#include "engine/timeline.h"
#include "engine/voices.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <espeak-ng/speak_lib.h>
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

// What one call of espeak_Synth brings. espeak-ng hands a pointer through to its events alone, and some
// buffers have none, so what the callback fills stands here.
struct Collector {
    std::vector<std::int16_t> samples;
    Marks marks;
    const EspeakText* spoken = nullptr;
};

Collector* collector = nullptr;

// Not given, or none: the voice's own.
double number(std::optional<double> given, double own) {
    return given && !std::isnan(*given) ? *given : own;
}

bool isPause(const espeak_EVENT& event) {
    return event.id.string[0] == '_';
}

void collectEvent(const espeak_EVENT& event) {
    const auto sample = static_cast<std::size_t>(std::max(event.sample, 0));
    Marks& marks = collector->marks;
    if (event.type == espeakEVENT_WORD) {
        const std::vector<std::size_t>& origins = collector->spoken->origins();
        const auto position = static_cast<std::size_t>(std::max(event.text_position - 1, 0));
        if (position < origins.size()) {
            marks.words.push_back({origins[position], sample});
        }
    } else if (event.type == espeakEVENT_PHONEME) {
        if (!isPause(event)) {
            marks.phonemes.push_back(sample);
        } else if (!marks.phonemes.empty() && marks.end <= marks.phonemes.back()) {
            marks.end = sample;
        }
    }
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
}

const protocol::Voice* Speaker::findVoice(const std::string& identifier) const {
    const auto voice = std::find_if(voices_.begin(), voices_.end(), [&](const protocol::Voice& candidate) {
        return candidate.identifier == identifier;
    });
    return voice == voices_.end() ? nullptr : &*voice;
}

bool Speaker::setVoice(const protocol::Voice& voice) {
    if (voice.identifier != voice_) {
        if (!load(voice.identifier)) {
            return false;
        }
        voice_ = voice.identifier;
        pitch_ = voicePitch(voice_);
    }
    return true;
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
    PitchParameters pitch = pitchParameters(pitch_, number(manner_.pitchBase, ownPitchBase(pitch_)),
                                            number(manner_.pitchModulation, kOwnPitchModulation));
    if (!load(pitch.higher ? voice_ + kHigherVariant : voice_)) {
        load(voice_);
    }
    setParameter(espeakRATE, rate());
    setParameter(espeakPITCH, pitch.pitch);
    setParameter(espeakRANGE, pitch.range);
}

Speech Speaker::synthesize(const Piece& piece, std::optional<bool> emphasis) {
    prepare();
    const SpellingModes spelling{manner_.characters.value_or(protocol::SpellingMode::Normal),
                                 manner_.numbers.value_or(protocol::SpellingMode::Normal)};
    const EspeakText spoken = spokenText(piece, {spelling, emphasis, rate()});
    Collector collected;
    collected.spoken = &spoken;
    collector = &collected;
    const unsigned int flags = espeakCHARS_UTF8 | espeakPHONEMES | (piece.endsSentence ? espeakENDPAUSE : 0U);
    espeak_Synth(spoken.text().c_str(), spoken.text().size() + 1, 0, POS_CHARACTER, 0, flags, nullptr,
                 nullptr);
    collector = nullptr;

    Marks& marks = collected.marks;
    if (!marks.phonemes.empty()) {
        marks.end = std::max(marks.end, marks.phonemes.back());
    }
    marks.end = std::min(marks.end, collected.samples.size());
    return {std::move(collected.samples), wordTimes(piece.words, marks)};
}

} // namespace zqm::engine
