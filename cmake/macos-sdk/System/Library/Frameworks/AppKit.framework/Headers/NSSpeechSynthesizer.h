#pragma once

#import <Foundation/Foundation.h>

@protocol NSSpeechSynthesizerDelegate;

typedef enum NSSpeechBoundary : NSUInteger {
    NSSpeechImmediateBoundary = 0,
    NSSpeechWordBoundary,
    NSSpeechSentenceBoundary
} NSSpeechBoundary;

@interface NSSpeechSynthesizer : NSObject
+ (BOOL)isAnyApplicationSpeaking;
+ (NSString*)defaultVoice;
+ (NSArray*)availableVoices;
+ (NSDictionary*)attributesForVoice:(NSString*)voice;
- (id)initWithVoice:(NSString*)voice;
- (BOOL)startSpeakingString:(NSString*)string;
- (BOOL)startSpeakingString:(NSString*)string toURL:(NSURL*)url;
- (BOOL)isSpeaking;
- (void)stopSpeaking;
- (void)stopSpeakingAtBoundary:(NSSpeechBoundary)boundary MACOS_AVAILABLE(introduced = 10.5);
- (void)pauseSpeakingAtBoundary:(NSSpeechBoundary)boundary MACOS_AVAILABLE(introduced = 10.5);
- (void)continueSpeaking MACOS_AVAILABLE(introduced = 10.5);
- (id<NSSpeechSynthesizerDelegate>)delegate;
- (void)setDelegate:(id<NSSpeechSynthesizerDelegate>)anObject;
- (NSString*)voice;
- (BOOL)setVoice:(NSString*)voice;
- (float)rate MACOS_AVAILABLE(introduced = 10.5);
- (void)setRate:(float)rate MACOS_AVAILABLE(introduced = 10.5);
- (float)volume MACOS_AVAILABLE(introduced = 10.5);
- (void)setVolume:(float)volume MACOS_AVAILABLE(introduced = 10.5);
- (BOOL)usesFeedbackWindow;
- (void)setUsesFeedbackWindow:(BOOL)flag;
- (void)addSpeechDictionary:(NSDictionary*)speechDictionary MACOS_AVAILABLE(introduced = 10.5);
- (NSString*)phonemesFromText:(NSString*)text MACOS_AVAILABLE(introduced = 10.5);
- (id)objectForProperty:(NSString*)property error:(NSError**)outError MACOS_AVAILABLE(introduced = 10.5);
- (BOOL)setObject:(id)object
      forProperty:(NSString*)property
            error:(NSError**)outError MACOS_AVAILABLE(introduced = 10.5);
@end

@protocol NSSpeechSynthesizerDelegate <NSObject>
@optional
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender didFinishSpeaking:(BOOL)finishedSpeaking;
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender
            willSpeakWord:(NSRange)characterRange
                 ofString:(NSString*)string;
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender willSpeakPhoneme:(short)phonemeOpcode;
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender
    didEncounterErrorAtIndex:(NSUInteger)characterIndex
                    ofString:(NSString*)string
                     message:(NSString*)message MACOS_AVAILABLE(introduced = 10.5);
- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender
    didEncounterSyncMessage:(NSString*)message MACOS_AVAILABLE(introduced = 10.5);
@end

MACOS_C_BEGIN

extern NSString* const NSVoiceName;
extern NSString* const NSVoiceIdentifier;
extern NSString* const NSVoiceAge;
extern NSString* const NSVoiceGender;
extern NSString* const NSVoiceDemoText;
extern NSString* const NSVoiceLocaleIdentifier MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSVoiceSupportedCharacters MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSVoiceIndividuallySpokenCharacters MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSVoiceLanguage MACOS_AVAILABLE(introduced = 10.0, deprecated = 10.5);
extern NSString* const NSVoiceGenderNeuter;
extern NSString* const NSVoiceGenderMale;
extern NSString* const NSVoiceGenderFemale;

extern NSString* const NSSpeechStatusProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechErrorsProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechInputModeProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechCharacterModeProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechNumberModeProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechRateProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechPitchBaseProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechPitchModProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechVolumeProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechSynthesizerInfoProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechRecentSyncProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechPhonemeSymbolsProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechCurrentVoiceProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechCommandDelimiterProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechResetProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechOutputToFileURLProperty MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechModeText MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechModePhoneme MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechModeNormal MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechModeLiteral MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechStatusOutputBusy MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechStatusOutputPaused MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechStatusNumberOfCharactersLeft MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechStatusPhonemeCode MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechErrorCount MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechErrorOldestCode MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechErrorOldestCharacterOffset MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechErrorNewestCode MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechErrorNewestCharacterOffset MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechSynthesizerInfoIdentifier MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechSynthesizerInfoVersion MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechPhonemeInfoOpcode MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechPhonemeInfoSymbol MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechPhonemeInfoExample MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechPhonemeInfoHiliteStart MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechPhonemeInfoHiliteEnd MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechCommandPrefix MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechCommandSuffix MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechDictionaryLocaleIdentifier MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechDictionaryModificationDate MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechDictionaryPronunciations MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechDictionaryAbbreviations MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechDictionaryEntrySpelling MACOS_AVAILABLE(introduced = 10.5);
extern NSString* const NSSpeechDictionaryEntryPhonemes MACOS_AVAILABLE(introduced = 10.5);

MACOS_C_END
