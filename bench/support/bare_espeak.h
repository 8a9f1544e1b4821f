// What libespeak-ng gives a program that calls it and nothing else: the least that speech can cost.

#pragma once

#include <cstddef>
#include <espeak-ng/speak_lib.h>
#include <functional>
#include <stdexcept>
#include <string>

namespace zqm::bench {

class BareEspeak {
public:
    using Take = std::function<void(const short* samples, std::size_t count)>;

    // The one of this process; ready to speak.
    static BareEspeak& instance(const char* voice) {
        static BareEspeak one(voice);
        return one;
    }
    BareEspeak(const BareEspeak&) = delete;
    BareEspeak& operator=(const BareEspeak&) = delete;

    [[nodiscard]] int rate() const { return rate_; }

    // Hands out the sound of a text while it is made.
    void speak(const std::string& text, Take take) {
        take_ = std::move(take);
        if (espeak_Synth(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0,
                         espeakCHARS_UTF8 | espeakENDPAUSE, nullptr, nullptr) != EE_OK) {
            throw std::runtime_error("espeak-ng doesn't speak");
        }
    }

private:
    explicit BareEspeak(const char* voice)
        : rate_(espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr, espeakINITIALIZE_DONT_EXIT)) {
        if (rate_ <= 0 || espeak_SetVoiceByName(voice) != EE_OK) {
            throw std::runtime_error("espeak-ng can't be initialised");
        }
        espeak_SetSynthCallback(callback);
    }
    ~BareEspeak() { espeak_Terminate(); }

    static int callback(short* samples, int count, espeak_EVENT*) {
        if (samples != nullptr && count > 0) {
            take_(samples, static_cast<std::size_t>(count));
        }
        return 0;
    }

    static inline Take take_;
    int rate_;
};

} // namespace zqm::bench
