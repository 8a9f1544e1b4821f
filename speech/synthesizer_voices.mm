// What the class tells about voices, without a synthesizer.

#include "plugin/guard.h"
#include "plugin/platform_strings.h"
#include "plugin/set_up.h"
#include "plugin/string_arrays.h"
#include "speech/synthesizer_members.h"
#include "speech/voice_data.h"

#import <AppKit/AppKit.h>

bool isAnyApplicationSpeaking() {
    return guarded([]() -> bool {
        CocoaInit();
        return [NSSpeechSynthesizer isAnyApplicationSpeaking];
    });
}

REALstring availableVoice(std::int64_t index) {
    return guarded([&]() -> REALstring {
        CocoaInit();
        NSArray* voices = [NSSpeechSynthesizer availableVoices];
        if (voices == nil) {
            return nullptr;
        }
        const auto count = static_cast<std::int64_t>([voices count]);
        if (index < 0 || count <= index) {
            RaiseOutOfBoundsException(index, count, "index", "availableVoice");
            return nullptr;
        }
        return hostString([voices objectAtIndex:static_cast<NSUInteger>(index)]);
    });
}

std::int64_t availableVoicesCount() {
    return guarded([] {
        CocoaInit();
        return static_cast<std::int64_t>([[NSSpeechSynthesizer availableVoices] count]);
    });
}

REALobject attributesForVoice(REALstring voice) {
    return guarded([&]() -> REALobject {
        CocoaInit();
        NSDictionary* attributes = [NSSpeechSynthesizer attributesForVoice:platformString(voice)];
        REALobject object = attributes != nil ? REALnewInstance("NSVoiceZQM") : nullptr;
        if (object != nullptr) {
            attributesOf(object) = [attributes retain];
        }
        return object;
    });
}

REALstring defaultVoice() {
    return guarded([] {
        CocoaInit();
        return hostString([NSSpeechSynthesizer defaultVoice]);
    });
}

REALarray availableVoices() {
    return guarded([] {
        CocoaInit();
        return newStringArray([] { return [NSSpeechSynthesizer availableVoices]; });
    });
}
