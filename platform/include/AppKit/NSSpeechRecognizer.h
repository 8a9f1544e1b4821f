// Spoken commands. An object listens for the commands of a list and tells its delegate of each that it hears;
// several objects listen independently of each other. American English.
//
// All of it belongs to the main thread. Delegate messages come from the main thread's run loop, never from
// within a call of these methods. None of these methods waits for anything.

#ifndef ZQM_NSSPEECHRECOGNIZER_H
#define ZQM_NSSPEECHRECOGNIZER_H

#import <AppKit/AppKitDefines.h>
#import <Foundation/Foundation.h>

@protocol NSSpeechRecognizerDelegate;

// See AppKitDefines.h.
@class ZQMSpeechRecognizer;
@compatibility_alias NSSpeechRecognizer ZQMSpeechRecognizer;

// Listens for the commands of one list.
__attribute__((visibility("default")))
@interface ZQMSpeechRecognizer : NSObject {
@private
    void* _recognition;
}

// A recognizer that doesn't listen yet; also where nothing can be heard, for want of a microphone or an
// engine: startListening then logs why.
- (instancetype)init;

// Listens until stopListening or the object's end. Nothing happens if it does already. Without commands
// nothing is recognized. What keeps it from listening is logged, and tried again.
- (void)startListening;

// Nothing that was said before is told afterwards. Nothing happens if it doesn't listen.
- (void)stopListening;

// Not retained.
- (id<NSSpeechRecognizerDelegate>)delegate;
- (void)setDelegate:(id<NSSpeechRecognizerDelegate>)delegate;

// NSString each; nil: none were set. The array and its strings are copied. While it listens, a new list
// counts from the next phrase that is said. Commands that nobody can say, such as "!?", are logged and never
// heard. Raises NSInvalidArgumentException for anything but an array of strings.
- (NSArray*)commands;
- (void)setCommands:(NSArray*)commands;

// What a window with the commands would be headed; there is none here, so the title is only kept.
- (NSString*)displayedCommandsTitle;
- (void)setDisplayedCommandsTitle:(NSString*)title;

// Only kept: a program without windows is never in the foreground. YES until it is set.
- (BOOL)listensInForegroundOnly;
- (void)setListensInForegroundOnly:(BOOL)flag;

// While it listens, other programs of this user whose recognizers don't block hear nothing. NO until it is
// set.
- (BOOL)blocksOtherRecognizers;
- (void)setBlocksOtherRecognizers:(BOOL)flag;

@end

// What a delegate may implement; asked with respondsToSelector: before each message.
@protocol NSSpeechRecognizerDelegate <NSObject>
@optional

// The command is the string that was set, as it was written.
- (void)speechRecognizer:(NSSpeechRecognizer*)sender didRecognizeCommand:(NSString*)command;

@end

#endif
