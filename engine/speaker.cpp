#include "engine/speaker.h"

#include "engine/characters.h"
#include "engine/timeline.h"
#include "engine/voices.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <espeak-ng/speak_lib.h>
#include <optional>
#include <stdexcept>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

namespace zqm::engine {

namespace {

// A piece as espeak-ng gets it, and where each of its characters comes from.
struct Spoken {
    std::string text; // UTF-8
    std::vector<std::size_t> origin;
};

constexpr char32_t kSkipped = U'\0';

// What is given to the synthesizer for a character. Some garble what follows them (U+FFFD), end the text
// (NUL) or mean something else to it (private use).
char32_t spokenFor(char32_t character) {
    constexpr char32_t kJoiner = U'\u200D';
    constexpr char32_t kNonJoiner = U'\u200C';
    constexpr char32_t kReplacement = U'\uFFFD';
    if (character == U'\n' || character == U'\u2028' || character == U'\u2029' || character == U'\u0085') {
        return U'\n';
    }
    if (isInvisible(character)) {
        return character == kJoiner || character == kNonJoiner ? character : kSkipped;
    }
    constexpr std::uint32_t kUnspeakable = U_GC_CC_MASK | U_GC_CN_MASK | U_GC_CO_MASK | U_GC_CS_MASK;
    const bool unspeakable = (U_GET_GC_MASK(static_cast<UChar32>(character)) & kUnspeakable) != 0;
    return unspeakable || character == kReplacement ? U' ' : character;
}

Spoken spokenText(std::u32string_view text) {
    Spoken spoken;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char32_t character = spokenFor(text[index]);
        if (character == kSkipped) {
            continue;
        }
        std::array<char, U8_MAX_LENGTH> bytes{};
        std::size_t length = 0;
        U8_APPEND_UNSAFE(bytes, length, static_cast<UChar32>(character));
        spoken.text.append(bytes.data(), length);
        spoken.origin.push_back(index);
    }
    return spoken;
}

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
    const Spoken* spoken = nullptr;
};

Collector* collector = nullptr;

bool isPause(const espeak_EVENT& event) {
    return event.id.string[0] == '_';
}

void collectEvent(const espeak_EVENT& event) {
    const auto sample = static_cast<std::size_t>(std::max(event.sample, 0));
    Marks& marks = collector->marks;
    if (event.type == espeakEVENT_WORD) {
        const std::vector<std::size_t>& origin = collector->spoken->origin;
        const auto position = static_cast<std::size_t>(std::max(event.text_position - 1, 0));
        if (position < origin.size()) {
            marks.words.push_back({origin[position], sample});
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
    if (voice.identifier == current_) {
        return true;
    }
    current_.clear();
    if (espeak_SetVoiceByName(voice.identifier.c_str()) != EE_OK) {
        return false;
    }
    current_ = voice.identifier;
    rate_ = 0;
    return true;
}

void Speaker::setRate(double wordsPerMinute) {
    const double rate = std::isnan(wordsPerMinute) ? espeakRATE_NORMAL : wordsPerMinute;
    const int rounded = static_cast<int>(std::lround(std::clamp(rate, kSlowest, kFastest)));
    if (rounded != rate_) {
        espeak_SetParameter(espeakRATE, rounded, 0);
        rate_ = rounded;
    }
}

Speech Speaker::synthesize(const Piece& piece) {
    const Spoken spoken = spokenText(piece.text);
    Collector collected;
    collected.spoken = &spoken;
    collector = &collected;
    const unsigned int flags = espeakCHARS_UTF8 | (piece.endsSentence ? espeakENDPAUSE : 0U);
    espeak_Synth(spoken.text.c_str(), spoken.text.size() + 1, 0, POS_CHARACTER, 0, flags, nullptr, nullptr);
    collector = nullptr;

    Marks& marks = collected.marks;
    if (!marks.phonemes.empty()) {
        marks.end = std::max(marks.end, marks.phonemes.back());
    }
    marks.end = std::min(marks.end, collected.samples.size());
    return {std::move(collected.samples), wordTimes(piece.words, marks)};
}

} // namespace zqm::engine
