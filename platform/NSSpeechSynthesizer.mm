#import <AppKit/NSSpeechSynthesizer.h>

#include "engine/speaking_lock.h"
#include "platform/autorelease_pool.h"
#include "platform/foundation_text.h"
#include "platform/speech_session.h"
#include "platform/voice_attributes.h"
#include "platform/voice_catalogue.h"

#include <algorithm>
#include <array>
#include <climits>
#include <map>

using zqm::platform::EventSource;
using zqm::platform::OutputFile;
using zqm::platform::SpeechEvent;
using zqm::platform::SpeechRequest;
using zqm::platform::SpeechSession;
using zqm::platform::stringOf;
using zqm::platform::utf8Of;
using zqm::protocol::Voice;

namespace {

constexpr float kDefaultRate = 175; // the engine's own
constexpr float kDefaultVolume = 1;

// A number of four characters as such, without the leading ones that are not there: 0x41 is "A".
NSString* charactersOf(std::uint32_t number) {
    std::array<char, sizeof number> bytes{};
    for (std::size_t index = bytes.size(); index > 0; number >>= CHAR_BIT) {
        bytes[--index] = static_cast<char>(number & UCHAR_MAX);
    }
    const auto first = std::find_if(bytes.begin(), bytes.end(), [](char byte) { return byte != 0; });
    return [[[NSString alloc] initWithBytes:first
                                     length:static_cast<NSUInteger>(bytes.end() - first)
                                   encoding:NSMacOSRomanStringEncoding] autorelease];
}

const Voice* defaultVoice() {
    return zqm::platform::voiceForLocale(zqm::platform::availableVoices(), zqm::platform::messageLocale());
}

// nil: the default one. Null: there is no such voice.
const Voice* voiceNamed(NSString* identifier) {
    return identifier != nil ? zqm::platform::findVoice(utf8Of(identifier)) : defaultVoice();
}

bool sameButCase(NSString* left, NSString* right) {
    return left != nil && [left caseInsensitiveCompare:right] == NSOrderedSame;
}

// Nothing when it is no file URL of this machine. Foundation's own test for one minds the case.
std::optional<std::string> pathOf(NSURL* url) {
    NSString* const path = sameButCase([url scheme], @"file") ? [url path] : nil;
    NSString* const host = [url host];
    const bool isLocal = [host length] == 0 || sameButCase(host, @"localhost");
    std::string bytes = path != nil ? utf8Of(path) : std::string();
    // Foundation ends a path at a NUL: another file than the one named.
    const bool holdsNul = [[url absoluteString] rangeOfString:@"%00"].location != NSNotFound;
    if (!isLocal || holdsNul || !bytes.starts_with('/')) {
        return std::nullopt;
    }
    if ([[url absoluteString] hasSuffix:@"/"] && !bytes.ends_with('/')) {
        bytes += '/'; // a folder, which Foundation's path does not tell
    }
    return bytes;
}

// An object that lives at least as long as this.
class Retained {
public:
    explicit Retained(id object) : object_([object retain]) {}
    Retained(const Retained&) = delete;
    Retained& operator=(const Retained&) = delete;
    ~Retained() { [object_ release]; }

private:
    id object_;
};

// What a synthesizer is made of; the object that programs see only forwards to it.
class Synthesizer : public EventSource {
public:
    Synthesizer(NSSpeechSynthesizer* object, const Voice& voice)
        : object_(object), voice_(voice.identifier) {}
    Synthesizer(const Synthesizer&) = delete;
    Synthesizer& operator=(const Synthesizer&) = delete;
    ~Synthesizer() override {
        for (const auto& [number, text] : texts_) {
            [text release];
        }
    }

    BOOL start(NSString* text, NSURL* url, bool intoFile) {
        if (text == nil || (intoFile && url == nil)) {
            return NO;
        }
        std::string error;
        std::optional<OutputFile> output;
        if (intoFile) {
            const auto path = pathOf(url);
            if (path) {
                output = OutputFile::open(*path, error);
            } else {
                error = "not the URL of a file here: " + utf8Of([url absoluteString]);
            }
            if (!output) {
                return refuse(error);
            }
        }
        const SpeechRequest request{.text = utf8Of(text),
                                    .length = [text length],
                                    .voice = voice_,
                                    .manner = {.rate = rate_, .volume = volume_}};
        const std::uint64_t number = session_.start(request, std::move(output), error);
        if (number == 0) {
            return refuse(error);
        }
        texts_.emplace(number, [text copy]);
        return YES;
    }

    void stop() { session_.stop(); }
    BOOL isSpeaking() { return session_.isSpeaking() ? YES : NO; }

    BOOL setVoice(NSString* identifier) {
        const Voice* const voice = session_.isSpeaking() ? nullptr : voiceNamed(identifier);
        if (voice == nullptr) {
            return NO;
        }
        voice_ = voice->identifier;
        rate_ = kDefaultRate;
        volume_ = kDefaultVolume;
        return YES;
    }

    void setRate(float rate) {
        rate_ = rate;
        session_.adjust({.rate = rate});
    }

    void setVolume(float volume) {
        volume_ = volume;
        session_.adjust({.volume = volume});
    }

    NSString* voice() const { return stringOf(voice_); }
    float rate() const { return rate_; }
    float volume() const { return volume_; }

    void takeMessages() override { session_.takeMessages(); }

    // The last thing that is done with this object here is the callback, which may end it.
    bool deliver() override {
        while (auto event = session_.nextEvent()) {
            if (const std::string failure = session_.takeFailure(); !failure.empty()) {
                NSLog(@"Speech ended early: %s", failure.c_str());
            }
            const auto text = texts_.find(event->utterance);
            NSString* const string = [[text->second retain] autorelease];
            if (event->kind == SpeechEvent::Kind::Finished) {
                [text->second release];
                texts_.erase(text);
            }
            if ([delegate respondsToSelector:selectorOf(event->kind)]) {
                tell(*event, string);
                return true;
            }
        }
        return false;
    }

    id<NSSpeechSynthesizerDelegate> delegate = nil;
    BOOL usesFeedbackWindow = NO;

private:
    static BOOL refuse(const std::string& reason) {
        NSLog(@"Speech can't be started: %s", reason.c_str());
        return NO;
    }

    static SEL selectorOf(SpeechEvent::Kind kind) {
        switch (kind) {
        case SpeechEvent::Kind::Word:
            return @selector(speechSynthesizer:willSpeakWord:ofString:);
        case SpeechEvent::Kind::Phoneme:
            return @selector(speechSynthesizer:willSpeakPhoneme:);
        case SpeechEvent::Kind::Problem:
            return @selector(speechSynthesizer:didEncounterErrorAtIndex:ofString:message:);
        case SpeechEvent::Kind::Sync:
            return @selector(speechSynthesizer:didEncounterSyncMessage:);
        case SpeechEvent::Kind::Finished:
            break;
        }
        return @selector(speechSynthesizer:didFinishSpeaking:);
    }

    void tell(const SpeechEvent& event, NSString* string) {
        NSSpeechSynthesizer* const object = object_;
        const Retained keep(object);
        switch (event.kind) {
        case SpeechEvent::Kind::Word:
            [delegate speechSynthesizer:object
                          willSpeakWord:NSMakeRange(event.position, event.length)
                               ofString:string];
            break;
        case SpeechEvent::Kind::Phoneme:
            [delegate speechSynthesizer:object willSpeakPhoneme:static_cast<short>(event.value)];
            break;
        case SpeechEvent::Kind::Problem:
            [delegate speechSynthesizer:object
                didEncounterErrorAtIndex:event.position
                                ofString:string
                                 message:stringOf(event.message)];
            break;
        case SpeechEvent::Kind::Sync:
            [delegate speechSynthesizer:object didEncounterSyncMessage:charactersOf(event.value)];
            break;
        case SpeechEvent::Kind::Finished:
            [delegate speechSynthesizer:object didFinishSpeaking:event.completed ? YES : NO];
            break;
        }
    }

    NSSpeechSynthesizer* object_; // whose part this is
    std::string voice_;
    float rate_ = kDefaultRate;
    float volume_ = kDefaultVolume;
    std::map<std::uint64_t, NSString*> texts_; // of the utterances not delivered to their end
    SpeechSession session_{this};
};

Synthesizer& of(void* speech) {
    return *static_cast<Synthesizer*>(speech);
}

} // namespace

@implementation NSSpeechSynthesizer

+ (NSArray*)availableVoices {
    NSMutableArray* const identifiers = [NSMutableArray array];
    for (const Voice& voice : zqm::platform::availableVoices()) {
        [identifiers addObject:stringOf(voice.identifier)];
    }
    return identifiers;
}

+ (NSSpeechSynthesizerVoiceName)defaultVoice {
    const Voice* const voice = defaultVoice();
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
    return of(_speech).start(string, nil, false);
}

- (BOOL)startSpeakingString:(NSString*)string toURL:(NSURL*)url {
    return of(_speech).start(string, url, true);
}

- (BOOL)isSpeaking {
    return of(_speech).isSpeaking();
}

- (void)stopSpeaking {
    of(_speech).stop();
}

- (void)stopSpeakingAtBoundary:(NSSpeechBoundary)boundary {
    if (boundary == NSSpeechImmediateBoundary) {
        [self stopSpeaking];
    }
}

- (void)pauseSpeakingAtBoundary:(NSSpeechBoundary)boundary {
}

- (void)continueSpeaking {
}

- (NSString*)phonemesFromText:(NSString*)text {
    return nil;
}

- (void)addSpeechDictionary:(NSDictionary*)speechDictionary {
}

- (id)objectForProperty:(NSSpeechPropertyKey)property error:(NSError**)outError {
    return nil;
}

- (BOOL)setObject:(id)object forProperty:(NSSpeechPropertyKey)property error:(NSError**)outError {
    return NO;
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
    return of(_speech).setVoice(voice);
}

- (float)rate {
    return of(_speech).rate();
}

- (void)setRate:(float)rate {
    of(_speech).setRate(rate);
}

- (float)volume {
    return of(_speech).volume();
}

- (void)setVolume:(float)volume {
    of(_speech).setVolume(volume);
}

- (BOOL)usesFeedbackWindow {
    return of(_speech).usesFeedbackWindow;
}

- (void)setUsesFeedbackWindow:(BOOL)flag {
    of(_speech).usesFeedbackWindow = flag;
}

@end
