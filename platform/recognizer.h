// What a recognizer is made of; the object that programs see only forwards to it.

#pragma once

#import <AppKit/NSSpeechRecognizer.h>

namespace zqm::platform {

class Recognizer final {
public:
    Recognizer() = default;
    Recognizer(const Recognizer&) = delete;
    Recognizer& operator=(const Recognizer&) = delete;
    ~Recognizer();

    // Raises NSInvalidArgumentException for anything but an array of strings, and then changes nothing.
    void setCommands(NSArray* commands);
    [[nodiscard]] NSArray* commands() const { return commands_; }

    void setTitle(NSString* title);
    [[nodiscard]] NSString* title() const { return title_; }

    id<NSSpeechRecognizerDelegate> delegate = nil;
    BOOL listensInForegroundOnly = YES;
    BOOL blocksOtherRecognizers = NO;

private:
    NSArray* commands_ = nil;
    NSString* title_ = nil;
};

} // namespace zqm::platform
