// A host program that has loaded the built plugin, and speaks by it.

#pragma once

#include "zqmhost/zqmhost.h"

#include <stdexcept>
#include <string>

namespace zqm::bench {

inline constexpr const char* kSynthesizer = "NSSpeechSynthesizerZQM";
inline constexpr const char* kFinished = "didFinishSpeaking";
// One voice for all that is compared, by our name and by espeak-ng's, which speaks at the same rate by
// itself.
inline constexpr const char* kVoice = "gmw/en-US";
inline constexpr const char* kEspeakVoice = "en-us";
inline constexpr host::Seconds kPatience{600};

// Made at the first call.
inline host::Runtime& loadedRuntime() {
    static host::Runtime one;
    static const bool isLoaded = [] {
        one.load(ZQM_PLUGIN);
        return true;
    }();
    static_cast<void>(isLoaded);
    return one;
}

inline host::Object newSynthesizer() {
    return loadedRuntime().construct(kSynthesizer, std::string(kVoice));
}

// What is needed to hear nothing of a speech but its end.
inline void waitForEnd(const host::Object& synthesizer) {
    const auto end = loadedRuntime().runUntilRaised(synthesizer, kFinished, kPatience);
    if (!end || !end->at(0).asBool()) {
        throw std::runtime_error("the speech wasn't finished");
    }
}

inline void startFile(host::Object& synthesizer, const std::string& text, const std::string& file) {
    if (!synthesizer.call("startSpeakingString", text, "file://" + file).asBool()) {
        throw std::runtime_error("the speech could not be started");
    }
}

} // namespace zqm::bench
