#include "tests/engine/espeak_phonemes.h"

#include <algorithm>
#include <cstdlib>
#include <espeak-ng/speak_lib.h>
#include <map>
#include <optional>
#include <stdexcept>

namespace zqm::engine {

namespace {

std::vector<std::string> events;

int collect(short* /*samples*/, int /*count*/, espeak_EVENT* event) {
    for (; event->type != espeakEVENT_LIST_TERMINATED; ++event) {
        if (event->type == espeakEVENT_PHONEME) {
            const char* const name = event->id.string;
            events.emplace_back(name, std::find(name, name + sizeof(event->id.string), '\0'));
        }
    }
    return 0;
}

std::optional<Reading> lastReading;

void synthesize(const std::string& text, Reading reading) {
    lastReading = reading;
    const unsigned int flags = espeakCHARS_UTF8 | (reading == Reading::Phonemes ? espeakPHONEMES : 0U);
    espeak_Synth(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, flags, nullptr, nullptr);
}

// What it was told when it spoke last holds for what it translates, too.
void readAs(Reading reading) {
    if (lastReading != reading) {
        synthesize("a", reading);
    }
}

// To the end: what is left would come out with the next text.
std::string translated(const std::string& text, Reading reading, int mode) {
    readAs(reading);
    std::string phonemes;
    const void* rest = text.c_str();
    while (rest != nullptr) {
        const std::string clause = espeak_TextToPhonemes(&rest, espeakCHARS_UTF8, mode);
        phonemes += phonemes.empty() || clause.empty() ? "" : " ";
        phonemes += clause;
    }
    return phonemes;
}

struct Data {
    std::filesystem::path path;
    PhonemeInventory inventory;
    std::vector<std::string> voices;

    Data() {
        ::setenv("PULSE_SERVER", "unix:/nonexistent", 1); // it would connect, only to hand out samples
        if (espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr,
                              espeakINITIALIZE_PHONEME_EVENTS | espeakINITIALIZE_DONT_EXIT) <= 0) {
            throw std::runtime_error("espeak-ng can't be initialised");
        }
        espeak_SetSynthCallback(collect);
        const char* folder = nullptr;
        espeak_Info(&folder);
        path = folder;
        inventory = readPhonemeInventory(path);
        for (const espeak_VOICE** voice = espeak_ListVoices(nullptr); *voice != nullptr; ++voice) {
            const std::string identifier = (*voice)->identifier;
            if (!identifier.starts_with("mb/")) {
                voices.push_back(identifier);
            }
        }
        std::sort(voices.begin(), voices.end());
    }
};

const Data& data() {
    static const Data instance;
    return instance;
}

} // namespace

const std::vector<std::string>& voiceIdentifiers() {
    return data().voices;
}

const std::filesystem::path& espeakData() {
    return data().path;
}

const PhonemeInventory& phonemeInventory() {
    return data().inventory;
}

const PhonemeSet& speakWith(const std::string& voice) {
    static std::map<std::string, PhonemeSet> sets;
    const std::string name = phonemeSetOf(espeakData(), voice, phonemeInventory());
    if (espeak_SetVoiceByName(voice.c_str()) != EE_OK || !phonemeInventory().contains(name)) {
        throw std::runtime_error("espeak-ng has no voice " + voice);
    }
    // Voices that are set wait in a queue, which must not fill, for the next to be said.
    synthesize("a", lastReading.value_or(Reading::Text));
    return sets.try_emplace(name, name, phonemeInventory().at(name)).first->second;
}

std::string asText(const std::vector<PhonemeWord>& words) {
    std::string text;
    for (const PhonemeWord& word : words) {
        if (word.mnemonics.empty()) {
            text += word.punctuation;
        } else {
            text += (text.empty() ? "[[" : " [[") + word.mnemonics + "]]";
        }
    }
    return text;
}

std::string phonemesOf(const std::string& text, Reading reading) {
    std::string phonemes = translated(text, reading, kPhonemeMode);
    std::replace(phonemes.begin(), phonemes.end(), kPhonemeSeparator, '|');
    return phonemes;
}

std::string internationalName(const std::string& phoneme) {
    constexpr int kInternational = 2;
    return translated("[[" + phoneme + "]]", Reading::Phonemes, kInternational);
}

std::vector<std::string> phonemeEvents(const std::string& text, Reading reading) {
    events.clear();
    synthesize(text, reading);
    return events;
}

} // namespace zqm::engine
