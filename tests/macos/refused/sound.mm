// refused by: nothing
// Says nothing that macOS does not have, and names __APPLE__, @try and NSVoiceLanguage only in this comment.
#import <AppKit/AppKit.h>

namespace {

constexpr const char* kText = "NSVoiceLanguage, @try and __APPLE__";

} // namespace

const char* finish(NSSpeechSynthesizer* synthesizer) {
    [synthesizer stopSpeaking];
    return kText;
}
