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
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechStatusProperty);
// NSDictionary of NSSpeechError keys, of the errors since it was last read; read-only.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechErrorsProperty);
// NSSpeechModeText or NSSpeechModePhoneme.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechInputModeProperty);
// NSSpeechModeNormal or NSSpeechModeLiteral.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechCharacterModeProperty);
// NSSpeechModeNormal or NSSpeechModeLiteral.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechNumberModeProperty);
// NSNumber, words a minute.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechRateProperty);
// NSNumber, 1 to 127: 30 to 40 for a low voice, 55 to 65 for a high one.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechPitchBaseProperty);
// NSNumber, 0 (monotone) to 127.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechPitchModProperty);
// NSNumber, 0 to 1.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechVolumeProperty);
// NSDictionary of NSSpeechSynthesizerInfo keys; read-only.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechSynthesizerInfoProperty);
// NSNumber, the synchronization message that came last, 0 before any; read-only.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechRecentSyncProperty);
// NSArray of NSDictionary of NSSpeechPhonemeInfo keys; read-only.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechPhonemeSymbolsProperty);
// NSDictionary with the NSVoiceIdentifier of a voice, as attributesForVoice: answers it; write-only. What
// setVoice: does.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechCurrentVoiceProperty);
// NSDictionary of NSSpeechCommand keys; write-only. For the texts to come.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechCommandDelimiterProperty);
// nil; write-only. Everything set on the synthesizer but the voice, the dictionaries and the command
// delimiters is as it was in the beginning.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechResetProperty);
// NSURL of a file, nil: aloud; write-only. Where startSpeakingString: speaks to.
APPKIT_CONSTANT(NSSpeechPropertyKey, NSSpeechOutputToFileURLProperty);

// Values of the mode properties.
APPKIT_CONSTANT(NSSpeechMode, NSSpeechModeText);
APPKIT_CONSTANT(NSSpeechMode, NSSpeechModePhoneme);
APPKIT_CONSTANT(NSSpeechMode, NSSpeechModeNormal);
APPKIT_CONSTANT(NSSpeechMode, NSSpeechModeLiteral);

// Keys of NSSpeechStatusProperty.
APPKIT_CONSTANT(NSSpeechStatusKey, NSSpeechStatusOutputBusy);             // NSNumber, 0 or 1
APPKIT_CONSTANT(NSSpeechStatusKey, NSSpeechStatusOutputPaused);           // NSNumber, 0 or 1
APPKIT_CONSTANT(NSSpeechStatusKey, NSSpeechStatusNumberOfCharactersLeft); // NSNumber
APPKIT_CONSTANT(NSSpeechStatusKey, NSSpeechStatusPhonemeCode);            // NSNumber

// Keys of NSSpeechErrorsProperty. Offsets count characters of the text spoken.
APPKIT_CONSTANT(NSSpeechErrorKey, NSSpeechErrorCount);                 // NSNumber
APPKIT_CONSTANT(NSSpeechErrorKey, NSSpeechErrorOldestCode);            // NSNumber
APPKIT_CONSTANT(NSSpeechErrorKey, NSSpeechErrorOldestCharacterOffset); // NSNumber
APPKIT_CONSTANT(NSSpeechErrorKey, NSSpeechErrorNewestCode);            // NSNumber
APPKIT_CONSTANT(NSSpeechErrorKey, NSSpeechErrorNewestCharacterOffset); // NSNumber

// Keys of NSSpeechSynthesizerInfoProperty.
APPKIT_CONSTANT(NSSpeechSynthesizerInfoKey, NSSpeechSynthesizerInfoIdentifier); // NSString
APPKIT_CONSTANT(NSSpeechSynthesizerInfoKey, NSSpeechSynthesizerInfoVersion);    // NSString

// Keys of each phoneme of NSSpeechPhonemeSymbolsProperty. The two offsets bound the sound within the example.
APPKIT_CONSTANT(NSSpeechPhonemeInfoKey, NSSpeechPhonemeInfoOpcode);      // NSNumber
APPKIT_CONSTANT(NSSpeechPhonemeInfoKey, NSSpeechPhonemeInfoSymbol);      // NSString
APPKIT_CONSTANT(NSSpeechPhonemeInfoKey, NSSpeechPhonemeInfoExample);     // NSString, a word
APPKIT_CONSTANT(NSSpeechPhonemeInfoKey, NSSpeechPhonemeInfoHiliteStart); // NSNumber
APPKIT_CONSTANT(NSSpeechPhonemeInfoKey, NSSpeechPhonemeInfoHiliteEnd);   // NSNumber

// Keys of NSSpeechCommandDelimiterProperty: one or two characters each, or both empty for a text without
// commands.
APPKIT_CONSTANT(NSSpeechCommandDelimiterKey, NSSpeechCommandPrefix); // NSString
APPKIT_CONSTANT(NSSpeechCommandDelimiterKey, NSSpeechCommandSuffix); // NSString

// Keys of a speech dictionary and of its entries, each an NSDictionary. The locale may be left out, for all
// languages; so may the date, written as "2026-01-31 23:59:00 +0100"; and one of the arrays.
APPKIT_CONSTANT(NSSpeechDictionaryKey, NSSpeechDictionaryLocaleIdentifier); // NSString, such as "en_US"
APPKIT_CONSTANT(NSSpeechDictionaryKey, NSSpeechDictionaryModificationDate); // NSString, see above
APPKIT_CONSTANT(NSSpeechDictionaryKey, NSSpeechDictionaryPronunciations);   // NSArray of entries
APPKIT_CONSTANT(NSSpeechDictionaryKey, NSSpeechDictionaryAbbreviations);    // NSArray of entries
APPKIT_CONSTANT(NSSpeechDictionaryKey, NSSpeechDictionaryEntrySpelling);    // NSString
APPKIT_CONSTANT(NSSpeechDictionaryKey, NSSpeechDictionaryEntryPhonemes);    // NSString

#endif
