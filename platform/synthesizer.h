// What a synthesizer is made of; the object that programs see only forwards to it.

#pragma once

#include "platform/event_hub.h"
#include "platform/speech_properties.h"
#include "platform/speech_session.h"

#import <AppKit/NSSpeechSynthesizer.h>

#include <map>
#include <string>

namespace zqm::platform {

class Synthesizer final : public EventSource, public PropertyOwner {
public:
    // The object is the one that programs see. The voice is one of the catalogue.
    Synthesizer(NSSpeechSynthesizer* object, const protocol::Voice& voice)
        : object_(object), voice_(&voice) {}
    Synthesizer(const Synthesizer&) = delete;
    Synthesizer& operator=(const Synthesizer&) = delete;
    ~Synthesizer() override;

    // Both log why not. The first speaks to where setOutput() says.
    BOOL start(NSString* text);
    BOOL start(NSString* text, NSURL* url);

    void stop(NSSpeechBoundary boundary);
    void pause(NSSpeechBoundary boundary);
    void resume() { session_.resume(); }
    NSString* phonemes(NSString* text);
    void addDictionary(NSDictionary* dictionary);
    NSString* voice() const;

    bool isSpeaking() override { return session_.isSpeaking(); }
    SpeechStatus status() override { return session_.status(); }
    Problems takeProblems() override { return session_.takeProblems(); }
    std::uint32_t recentSync() override { return session_.recentSync(); }
    protocol::Manner manner() const override;
    void change(const protocol::Manner& manner) override;
    bool setVoice(NSString* identifier) override;
    void setDelimiters(const protocol::Delimiters& delimiters) override { delimiters_ = delimiters; }
    void setOutput(NSURL* url) override;
    void reset() override;

    void takeMessages() override { session_.takeMessages(); }
    bool deliver() override;

    id<NSSpeechSynthesizerDelegate> delegate = nil;
    BOOL usesFeedbackWindow = NO;

private:
    BOOL start(NSString* text, std::optional<OutputFile> output);

    NSSpeechSynthesizer* object_; // whose part this is
    const protocol::Voice* voice_;
    protocol::Manner manner_{}; // what was set
    protocol::Delimiters delimiters_{};
    NSURL* output_ = nil;
    std::map<std::uint64_t, NSString*> texts_; // of the utterances not delivered to their end
    SpeechSession session_{this};
};

// nil: the default one. Null: there is no such voice.
const protocol::Voice* voiceNamed(NSString* identifier);

} // namespace zqm::platform
