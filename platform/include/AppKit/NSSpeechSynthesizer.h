// Text to speech. One object speaks one text at a time; several objects speak independently of each other.
//
// All of it belongs to the main thread. Delegate messages come from the main thread's run loop, never from
// within a call of these methods.

#ifndef ZQM_NSSPEECHSYNTHESIZER_H
#define ZQM_NSSPEECHSYNTHESIZER_H

#import <AppKit/AppKitDefines.h>
#import <AppKit/NSSpeechConstants.h>
#import <Foundation/Foundation.h>

typedef NSString* NSSpeechSynthesizerVoiceName;
typedef NSString* NSVoiceAttributeKey;
typedef NSString* NSVoiceGenderName;

// Keys of the dictionaries that attributesForVoice: answers. A range of characters is an NSDictionary with
// the NSNumbers "UnicodeCharBegin" and "UnicodeCharEnd", the first and the last of them.
APPKIT_CONSTANT(NSVoiceAttributeKey, NSVoiceName);                // NSString, for people
APPKIT_CONSTANT(NSVoiceAttributeKey, NSVoiceIdentifier);          // NSString
APPKIT_CONSTANT(NSVoiceAttributeKey, NSVoiceAge);                 // NSNumber, years; absent: not known
APPKIT_CONSTANT(NSVoiceAttributeKey, NSVoiceGender);              // one of the NSVoiceGender strings
APPKIT_CONSTANT(NSVoiceAttributeKey, NSVoiceDemoText);            // NSString, in the voice's language
APPKIT_CONSTANT(NSVoiceAttributeKey, NSVoiceLanguage);            // NSString, such as "en-US"
APPKIT_CONSTANT(NSVoiceAttributeKey, NSVoiceLocaleIdentifier);    // NSString, such as "en_US"
APPKIT_CONSTANT(NSVoiceAttributeKey, NSVoiceSupportedCharacters); // NSArray of ranges
APPKIT_CONSTANT(NSVoiceAttributeKey, NSVoiceIndividuallySpokenCharacters); // NSArray of ranges

APPKIT_CONSTANT(NSVoiceGenderName, NSVoiceGenderNeuter);
APPKIT_CONSTANT(NSVoiceGenderName, NSVoiceGenderMale);
APPKIT_CONSTANT(NSVoiceGenderName, NSVoiceGenderFemale);

// Where speech pauses or ends: at once, after the word or after the sentence that is being spoken.
typedef NS_ENUM(NSUInteger, NSSpeechBoundary) {
    NSSpeechImmediateBoundary = 0,
    NSSpeechWordBoundary,
    NSSpeechSentenceBoundary
};

@protocol NSSpeechSynthesizerDelegate;

// See AppKitDefines.h.
@class ZQMSpeechSynthesizer;
@compatibility_alias NSSpeechSynthesizer ZQMSpeechSynthesizer;

// Speaks one text at a time.
__attribute__((visibility("default")))
@interface ZQMSpeechSynthesizer : NSObject {
@private
    void* _speech;
}

// The identifiers of the voices, in a stable order; empty when there is no engine.
+ (NSArray*)availableVoices;

// The voice for the user's language (LC_ALL, LC_MESSAGES, LANG), else the one for American English, else
// the first one; nil when there is none.
+ (NSSpeechSynthesizerVoiceName)defaultVoice;

// What is known about a voice; nil for an identifier that is not one of availableVoices.
+ (NSDictionary*)attributesForVoice:(NSSpeechSynthesizerVoiceName)voice;

// YES while any program of this user speaks aloud, this one included: not into a file, not while paused.
+ (BOOL)isAnyApplicationSpeaking;

// A synthesizer with the default voice; nil when there is none.
- (instancetype)init;

// nil is the default voice. Answers nil for a voice that does not exist, and when there is no engine.
- (instancetype)initWithVoice:(NSSpeechSynthesizerVoiceName)voice;

// Starts to speak aloud, or into the file of NSSpeechOutputToFileURLProperty. NO for a nil text or when it
// can't be spoken; the reason is then logged. A text already being spoken is ended first. Commands within the
// text, such as "[[rate 300]]", are carried out, not spoken.
- (BOOL)startSpeakingString:(NSString*)string;

// The same into a sound file, whose format follows from its extension (wav, aiff, flac, ogg). An existing
// file is replaced when the new one is whole. NO as well for what is no file URL, for a file that can't be
// written, for an unknown extension.
- (BOOL)startSpeakingString:(NSString*)string toURL:(NSURL*)url;

// YES from a successful start until the end of the sound or file, also while paused.
- (BOOL)isSpeaking;

// Ends the speech at once; the delegate hears of it later, from the run loop.
- (void)stopSpeaking;

// The same at a boundary; beyond the end of the text there is none, so it is then spoken to its end. Nothing
// happens for a boundary that does not exist.
- (void)stopSpeakingAtBoundary:(NSSpeechBoundary)boundary;

// Pauses the sound, or the writing of the file. A word that is cut by an immediate pause is spoken and told
// again afterwards.
- (void)pauseSpeakingAtBoundary:(NSSpeechBoundary)boundary;

// Goes on after a pause, or takes back one that is still to come.
- (void)continueSpeaking;

// The phonemes that the voice speaks for a text, in the symbols of NSSpeechPhonemeSymbolsProperty; nil for
// nil and without an engine. They can be spoken in the input mode NSSpeechModePhoneme.
- (NSString*)phonemesFromText:(NSString*)text;

// Words and abbreviations to be pronounced otherwise from the next start or phonemesFromText: on, as the
// NSSpeechDictionary keys tell. Dictionaries add up; of several that have the same word the newest counts.
// One that is malformed is logged and changes nothing.
- (void)addSpeechDictionary:(NSDictionary*)speechDictionary;

// A property of NSSpeechConstants.h. nil with an error for an unknown or write-only one. outError may be
// null; it is left alone when there is no error.
- (id)objectForProperty:(NSSpeechPropertyKey)property error:(NSError**)outError;

// NO with an error for an unknown or read-only property and for a value that it can't take; then nothing has
// changed. What tells how to speak is for the texts to come and the rest of the one being spoken.
- (BOOL)setObject:(id)object forProperty:(NSSpeechPropertyKey)property error:(NSError**)outError;

// Not retained.
- (id<NSSpeechSynthesizerDelegate>)delegate;
- (void)setDelegate:(id<NSSpeechSynthesizerDelegate>)delegate;

// The identifier of the voice that speaks.
- (NSSpeechSynthesizerVoiceName)voice;

// nil is the default voice. NO while speaking and for a voice that does not exist. Resets rate, volume and
// pitch.
- (BOOL)setVoice:(NSSpeechSynthesizerVoiceName)voice;

// Words a minute.
- (float)rate;
- (void)setRate:(float)rate;

// 0 to 1.
- (float)volume;
- (void)setVolume:(float)volume;

// Kept, without effect: there is no feedback window.
- (BOOL)usesFeedbackWindow;
- (void)setUsesFeedbackWindow:(BOOL)flag;

@end

// What a delegate may implement; asked with respondsToSelector: before each message.
@protocol NSSpeechSynthesizerDelegate <NSObject>
@optional

// finishedSpeaking is NO when the speech was stopped or failed.
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender didFinishSpeaking:(BOOL)finishedSpeaking;

// characterRange counts UTF-16 units of string, which is the text given at the start.
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender
            willSpeakWord:(NSRange)characterRange
                 ofString:(NSString*)string;

// The opcode is one of NSSpeechPhonemeSymbolsProperty.
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender willSpeakPhoneme:(short)phonemeOpcode;

// The index counts UTF-16 units of string; the message is for people.
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender
    didEncounterErrorAtIndex:(NSUInteger)characterIndex
                    ofString:(NSString*)string
                     message:(NSString*)message;

// The characters of the number that the text has there.
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender didEncounterSyncMessage:(NSString*)message;

@end

#endif
