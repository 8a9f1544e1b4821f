#import <AppKit/NSSpeechSynthesizer.h>

#include "engine/protocol/speaking_lock.h"
#include "platform/foundation_text.h"
#include "platform/synthesizer.h"
#include "platform/voice_attributes.h"
#include "platform/voice_catalogue.h"

using zqm::platform::stringOf;
using zqm::platform::Synthesizer;
using zqm::platform::voiceNamed;
using zqm::protocol::Voice;

namespace {

Synthesizer& of(void* speech) {
    return *static_cast<Synthesizer*>(speech);
}

} // namespace

@implementation ZQMSpeechSynthesizer

+ (NSArray*)availableVoices {
    NSMutableArray* const identifiers = [NSMutableArray array];
    for (const Voice& voice : zqm::platform::availableVoices()) {
        [identifiers addObject:stringOf(voice.identifier)];
    }
    return identifiers;
}

+ (NSSpeechSynthesizerVoiceName)defaultVoice {
    const Voice* const voice = voiceNamed(nil);
    return voice != nullptr ? stringOf(voice->identifier) : nil;
}

+ (NSDictionary*)attributesForVoice:(NSSpeechSynthesizerVoiceName)voice {
    const Voice* const found = voice != nil ? voiceNamed(voice) : nullptr;
    return found != nullptr ? zqm::platform::attributesOf(*found) : nil;
}

+ (BOOL)isAnyApplicationSpeaking {
    return zqm::protocol::SpeakingLock::isHeld() ? YES : NO;
}

- (instancetype)init {
    return [self initWithVoice:nil];
}

- (instancetype)initWithVoice:(NSSpeechSynthesizerVoiceName)identifier {
    self = [super init];
    if (self == nil) {
        return nil;
    }
    const Voice* const voice = voiceNamed(identifier);
    if (voice == nullptr) {
        [self release];
        return nil;
    }
    _speech = new Synthesizer(self, *voice);
    return self;
}

- (void)dealloc {
    delete static_cast<Synthesizer*>(_speech);
    [super dealloc];
}

- (BOOL)startSpeakingString:(NSString*)string {
    return of(_speech).start(string);
}

- (BOOL)startSpeakingString:(NSString*)string toURL:(NSURL*)url {
    return of(_speech).start(string, url);
}

- (BOOL)isSpeaking {
    return of(_speech).isSpeaking() ? YES : NO;
}

- (void)stopSpeaking {
    of(_speech).stop(NSSpeechImmediateBoundary);
}

- (void)stopSpeakingAtBoundary:(NSSpeechBoundary)boundary {
    of(_speech).stop(boundary);
}

- (void)pauseSpeakingAtBoundary:(NSSpeechBoundary)boundary {
    of(_speech).pause(boundary);
}

- (void)continueSpeaking {
    of(_speech).resume();
}

- (NSString*)phonemesFromText:(NSString*)text {
    return of(_speech).phonemes(text);
}

- (void)addSpeechDictionary:(NSDictionary*)speechDictionary {
    of(_speech).addDictionary(speechDictionary);
}

- (id)objectForProperty:(NSSpeechPropertyKey)property error:(NSError**)outError {
    return zqm::platform::readProperty(of(_speech), property, outError);
}

- (BOOL)setObject:(id)object forProperty:(NSSpeechPropertyKey)property error:(NSError**)outError {
    return zqm::platform::writeProperty(of(_speech), property, object, outError);
}

- (id<NSSpeechSynthesizerDelegate>)delegate {
    return of(_speech).delegate;
}

- (void)setDelegate:(id<NSSpeechSynthesizerDelegate>)delegate {
    of(_speech).delegate = delegate;
}

- (NSSpeechSynthesizerVoiceName)voice {
    return of(_speech).voice();
}

- (BOOL)setVoice:(NSSpeechSynthesizerVoiceName)voice {
    return of(_speech).setVoice(voice) ? YES : NO;
}

- (float)rate {
    return static_cast<float>(*of(_speech).manner().rate);
}

- (void)setRate:(float)rate {
    of(_speech).change({.rate = rate});
}

- (float)volume {
    return static_cast<float>(*of(_speech).manner().volume);
}

- (void)setVolume:(float)volume {
    of(_speech).change({.volume = volume});
}

- (BOOL)usesFeedbackWindow {
    return of(_speech).usesFeedbackWindow;
}

- (void)setUsesFeedbackWindow:(BOOL)flag {
    of(_speech).usesFeedbackWindow = flag;
}

@end
