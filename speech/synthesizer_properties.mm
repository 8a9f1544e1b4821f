// The properties of the host class "NSSpeechSynthesizerZQM". A message to nil answers zero, but not reliably
// where the answer is a float.

#include "plugin/guard.h"
#include "plugin/platform_strings.h"
#include "speech/synthesizer_data.h"
#include "speech/synthesizer_members.h"

double volume(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> double {
        MyNSSpeechSynthesizer* synthesizer = synthesizerOf(self);
        return synthesizer != nil ? [synthesizer volume] : 0.0F;
    });
}

void setVolume(REALobject self, std::int64_t /*parameter*/, double value) {
    guarded([&] { [synthesizerOf(self) setVolume:static_cast<float>(value)]; });
}

double rate(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> double {
        MyNSSpeechSynthesizer* synthesizer = synthesizerOf(self);
        return synthesizer != nil ? [synthesizer rate] : 0.0F;
    });
}

void setRate(REALobject self, std::int64_t /*parameter*/, double value) {
    guarded([&] { [synthesizerOf(self) setRate:static_cast<float>(value)]; });
}

bool isSpeaking(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> bool { return [synthesizerOf(self) isSpeaking]; });
}

bool usesFeedbackWindow(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&]() -> bool { return [synthesizerOf(self) usesFeedbackWindow]; });
}

void setUsesFeedbackWindow(REALobject self, std::int64_t /*parameter*/, bool value) {
    guarded([&] { [synthesizerOf(self) setUsesFeedbackWindow:value]; });
}

REALstring voice(REALobject self, std::int64_t /*parameter*/) {
    return guarded([&] { return hostString([synthesizerOf(self) voice]); });
}

void setVoice2(REALobject self, std::int64_t /*parameter*/, REALstring value) {
    guarded([&] { [synthesizerOf(self) setVoice:platformString(value)]; });
}

bool setVoice(REALobject self, REALstring value) {
    return guarded([&]() -> bool {
        MyNSSpeechSynthesizer* synthesizer = synthesizerOf(self);
        return synthesizer != nil && [synthesizer setVoice:platformString(value)];
    });
}
