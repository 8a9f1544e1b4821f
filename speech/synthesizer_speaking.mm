// What a synthesizer is told to do.

#include "bridge/dictionaries.h"
#include "bridge/file_urls.h"
#include "plugin/guard.h"
#include "plugin/platform_strings.h"
#include "speech/synthesizer_data.h"
#include "speech/synthesizer_members.h"

namespace {

// Autoreleased; nil for a null string and for what is no URL.
NSURL* platformURL(REALstring string) {
    CFStringRef text = RBString2CFString(string);
    if (text == nullptr) {
        return nil;
    }
    CFURLRef url = CFURLCreateWithString(nullptr, text, nullptr);
    CFRelease(text);
    return [reinterpret_cast<NSURL*>(const_cast<void*>(static_cast<const void*>(url))) autorelease];
}

template <typename MakeURL>
bool startSpeakingTo(REALobject self, REALstring text, MakeURL&& makeURL) {
    return guarded([&]() -> bool {
        MyNSSpeechSynthesizer* synthesizer = synthesizerOf(self);
        if (synthesizer == nil) {
            return false;
        }
        NSString* string = platformString(text);
        NSURL* url = makeURL();
        [synthesizer setLastText:string];
        return [synthesizer startSpeakingString:string toURL:url];
    });
}

} // namespace

bool startSpeakingString(REALobject self, REALstring text) {
    return guarded([&]() -> bool {
        MyNSSpeechSynthesizer* synthesizer = synthesizerOf(self);
        if (synthesizer == nil) {
            return false;
        }
        NSString* string = platformString(text);
        [synthesizer setLastText:string];
        return [synthesizer startSpeakingString:string];
    });
}

bool startSpeakingStringURL(REALobject self, REALstring text, REALstring url) {
    return startSpeakingTo(self, text, [&] { return platformURL(url); });
}

bool startSpeakingStringFile(REALobject self, REALstring text, REALobject file) {
    return startSpeakingTo(self, text, [&] { return NewNSURLfile(file); });
}

void pauseSpeakingAtBoundary(REALobject self, std::int64_t boundary) {
    guarded([&] { [synthesizerOf(self) pauseSpeakingAtBoundary:static_cast<NSSpeechBoundary>(boundary)]; });
}

void stopSpeakingAtBoundary(REALobject self, std::int64_t boundary) {
    guarded([&] { [synthesizerOf(self) stopSpeakingAtBoundary:static_cast<NSSpeechBoundary>(boundary)]; });
}

void continueSpeaking(REALobject self) {
    guarded([&] { [synthesizerOf(self) continueSpeaking]; });
}

void stopSpeaking(REALobject self) {
    guarded([&] { [synthesizerOf(self) stopSpeaking]; });
}

REALstring phonemesFromText(REALobject self, REALstring text) {
    return guarded([&] { return hostString([synthesizerOf(self) phonemesFromText:platformString(text)]); });
}

void addSpeechDictionary(REALobject self, REALobject speechDictionary) {
    guarded([&] { [synthesizerOf(self) addSpeechDictionary:NewNSDictionary(speechDictionary)]; });
}
