// What a recognizer is made of; the object that programs see only forwards to it.

#pragma once

#include "platform/event_hub.h"
#include "platform/listening_session.h"

#import <AppKit/NSSpeechRecognizer.h>

namespace zqm::platform {

class Recognizer final : public EventSource {
public:
    // The object is the one that programs see.
    explicit Recognizer(NSSpeechRecognizer* object);
    Recognizer(const Recognizer&) = delete;
    Recognizer& operator=(const Recognizer&) = delete;
    ~Recognizer() override;

    void start();
    void stop() { session_.stop(); }

    // Raises NSInvalidArgumentException for anything but an array of strings, and then changes nothing.
    void setCommands(NSArray* commands);
    [[nodiscard]] NSArray* commands() const { return commands_; }

    void setTitle(NSString* title);
    [[nodiscard]] NSString* title() const { return title_; }

    void setBlocksOthers(BOOL flag);
    [[nodiscard]] BOOL blocksOthers() const { return blocksOthers_; }

    void takeMessages() override { session_.takeMessages(); }
    bool deliver() override;

    id<NSSpeechRecognizerDelegate> delegate = nil;
    BOOL listensInForegroundOnly = YES;

private:
    bool tell(const Observation& observation);
    bool tell(const HeardCommand& command);

    NSSpeechRecognizer* object_; // whose part this is
    NSArray* commands_ = nil;
    NSString* title_ = nil;
    BOOL blocksOthers_ = NO;
    ListeningSession session_;
};

} // namespace zqm::platform
