// The strings by which a synthesizer's properties, modes and dictionary keys are named.

#ifndef ZQM_NSSPEECHCONSTANTS_H
#define ZQM_NSSPEECHCONSTANTS_H

#import <AppKit/AppKitDefines.h>
#import <Foundation/Foundation.h>

typedef NSString* NSSpeechPropertyKey;
typedef NSString* NSSpeechMode;
typedef NSString* NSSpeechStatusKey;
typedef NSString* NSSpeechErrorKey;
typedef NSString* NSSpeechSynthesizerInfoKey;
typedef NSString* NSSpeechPhonemeInfoKey;
typedef NSString* NSSpeechCommandDelimiterKey;
typedef NSString* NSSpeechDictionaryKey;

// Properties of a synthesizer. The comments tell the values.

// NSDictionary of NSSpeechStatus keys; read-only.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechStatusProperty;
// NSDictionary of NSSpeechError keys, of the errors since it was last read; read-only.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechErrorsProperty;
// NSSpeechModeText or NSSpeechModePhoneme.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechInputModeProperty;
// NSSpeechModeNormal or NSSpeechModeLiteral.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechCharacterModeProperty;
// NSSpeechModeNormal or NSSpeechModeLiteral.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechNumberModeProperty;
// NSNumber, words a minute.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechRateProperty;
// NSNumber, 1 to 127: 30 to 40 for a low voice, 55 to 65 for a high one.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechPitchBaseProperty;
// NSNumber, 0 (monotone) to 127.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechPitchModProperty;
// NSNumber, 0 to 1.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechVolumeProperty;
// NSDictionary of NSSpeechSynthesizerInfo keys; read-only.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechSynthesizerInfoProperty;
// NSNumber, the synchronization message that came last, 0 before any; read-only.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechRecentSyncProperty;
// NSArray of NSDictionary of NSSpeechPhonemeInfo keys; read-only.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechPhonemeSymbolsProperty;
// NSDictionary with the NSVoiceIdentifier of a voice, as attributesForVoice: answers it; write-only. What
// setVoice: does.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechCurrentVoiceProperty;
// NSDictionary of NSSpeechCommand keys; write-only. For the texts to come.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechCommandDelimiterProperty;
// nil; write-only. Everything set on the synthesizer but the voice, the dictionaries and the command
// delimiters is as it was in the beginning.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechResetProperty;
// NSURL of a file, nil: aloud; write-only. Where startSpeakingString: speaks to.
APPKIT_EXTERN NSSpeechPropertyKey const NSSpeechOutputToFileURLProperty;

// Values of the mode properties.
APPKIT_EXTERN NSSpeechMode const NSSpeechModeText;
APPKIT_EXTERN NSSpeechMode const NSSpeechModePhoneme;
APPKIT_EXTERN NSSpeechMode const NSSpeechModeNormal;
APPKIT_EXTERN NSSpeechMode const NSSpeechModeLiteral;

// Keys of NSSpeechStatusProperty.
APPKIT_EXTERN NSSpeechStatusKey const NSSpeechStatusOutputBusy;             // NSNumber, 0 or 1
APPKIT_EXTERN NSSpeechStatusKey const NSSpeechStatusOutputPaused;           // NSNumber, 0 or 1
APPKIT_EXTERN NSSpeechStatusKey const NSSpeechStatusNumberOfCharactersLeft; // NSNumber
APPKIT_EXTERN NSSpeechStatusKey const NSSpeechStatusPhonemeCode;            // NSNumber

// Keys of NSSpeechErrorsProperty. Offsets count characters of the text spoken.
APPKIT_EXTERN NSSpeechErrorKey const NSSpeechErrorCount;                 // NSNumber
APPKIT_EXTERN NSSpeechErrorKey const NSSpeechErrorOldestCode;            // NSNumber
APPKIT_EXTERN NSSpeechErrorKey const NSSpeechErrorOldestCharacterOffset; // NSNumber
APPKIT_EXTERN NSSpeechErrorKey const NSSpeechErrorNewestCode;            // NSNumber
APPKIT_EXTERN NSSpeechErrorKey const NSSpeechErrorNewestCharacterOffset; // NSNumber

// Keys of NSSpeechSynthesizerInfoProperty.
APPKIT_EXTERN NSSpeechSynthesizerInfoKey const NSSpeechSynthesizerInfoIdentifier; // NSString
APPKIT_EXTERN NSSpeechSynthesizerInfoKey const NSSpeechSynthesizerInfoVersion;    // NSString

// Keys of each phoneme of NSSpeechPhonemeSymbolsProperty. The two offsets bound the sound within the example.
APPKIT_EXTERN NSSpeechPhonemeInfoKey const NSSpeechPhonemeInfoOpcode;      // NSNumber
APPKIT_EXTERN NSSpeechPhonemeInfoKey const NSSpeechPhonemeInfoSymbol;      // NSString
APPKIT_EXTERN NSSpeechPhonemeInfoKey const NSSpeechPhonemeInfoExample;     // NSString, a word
APPKIT_EXTERN NSSpeechPhonemeInfoKey const NSSpeechPhonemeInfoHiliteStart; // NSNumber
APPKIT_EXTERN NSSpeechPhonemeInfoKey const NSSpeechPhonemeInfoHiliteEnd;   // NSNumber

// Keys of NSSpeechCommandDelimiterProperty: one or two characters each, or both empty for a text without
// commands.
APPKIT_EXTERN NSSpeechCommandDelimiterKey const NSSpeechCommandPrefix; // NSString
APPKIT_EXTERN NSSpeechCommandDelimiterKey const NSSpeechCommandSuffix; // NSString

// Keys of a speech dictionary and of its entries, each an NSDictionary. The locale may be left out, for all
// languages; so may the date, written as "2026-01-31 23:59:00 +0100"; and one of the arrays.
APPKIT_EXTERN NSSpeechDictionaryKey const NSSpeechDictionaryLocaleIdentifier; // NSString, such as "en_US"
APPKIT_EXTERN NSSpeechDictionaryKey const NSSpeechDictionaryModificationDate; // NSString, see above
APPKIT_EXTERN NSSpeechDictionaryKey const NSSpeechDictionaryPronunciations;   // NSArray of entries
APPKIT_EXTERN NSSpeechDictionaryKey const NSSpeechDictionaryAbbreviations;    // NSArray of entries
APPKIT_EXTERN NSSpeechDictionaryKey const NSSpeechDictionaryEntrySpelling;    // NSString
APPKIT_EXTERN NSSpeechDictionaryKey const NSSpeechDictionaryEntryPhonemes;    // NSString

#endif
