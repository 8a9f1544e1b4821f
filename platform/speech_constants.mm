// All constants, and nothing else: the library can be linked without this source, as a system that lacks
// them.

#import <AppKit/NSSpeechSynthesizer.h>

#include "platform/voice_strings.h"

NSVoiceAttributeKey const NSVoiceName = ZQM_VOICE_NAME;
NSVoiceAttributeKey const NSVoiceIdentifier = ZQM_VOICE_IDENTIFIER;
NSVoiceAttributeKey const NSVoiceAge = ZQM_VOICE_AGE;
NSVoiceAttributeKey const NSVoiceGender = ZQM_VOICE_GENDER;
NSVoiceAttributeKey const NSVoiceDemoText = ZQM_VOICE_DEMO_TEXT;
NSVoiceAttributeKey const NSVoiceLanguage = ZQM_VOICE_LANGUAGE;
NSVoiceAttributeKey const NSVoiceLocaleIdentifier = ZQM_VOICE_LOCALE_IDENTIFIER;
NSVoiceAttributeKey const NSVoiceSupportedCharacters = ZQM_VOICE_SUPPORTED_CHARACTERS;
NSVoiceAttributeKey const NSVoiceIndividuallySpokenCharacters = ZQM_VOICE_INDIVIDUALLY_SPOKEN_CHARACTERS;

NSVoiceGenderName const NSVoiceGenderNeuter = ZQM_VOICE_GENDER_NEUTER;
NSVoiceGenderName const NSVoiceGenderMale = ZQM_VOICE_GENDER_MALE;
NSVoiceGenderName const NSVoiceGenderFemale = ZQM_VOICE_GENDER_FEMALE;

NSSpeechPropertyKey const NSSpeechStatusProperty = @"stat";
NSSpeechPropertyKey const NSSpeechErrorsProperty = @"erro";
NSSpeechPropertyKey const NSSpeechInputModeProperty = @"inpt";
NSSpeechPropertyKey const NSSpeechCharacterModeProperty = @"char";
NSSpeechPropertyKey const NSSpeechNumberModeProperty = @"nmbr";
NSSpeechPropertyKey const NSSpeechRateProperty = @"rate";
NSSpeechPropertyKey const NSSpeechPitchBaseProperty = @"pbas";
NSSpeechPropertyKey const NSSpeechPitchModProperty = @"pmod";
NSSpeechPropertyKey const NSSpeechVolumeProperty = @"volm";
NSSpeechPropertyKey const NSSpeechSynthesizerInfoProperty = @"vers";
NSSpeechPropertyKey const NSSpeechRecentSyncProperty = @"sync";
NSSpeechPropertyKey const NSSpeechPhonemeSymbolsProperty = @"phsy";
NSSpeechPropertyKey const NSSpeechCurrentVoiceProperty = @"cvox";
NSSpeechPropertyKey const NSSpeechCommandDelimiterProperty = @"dlim";
NSSpeechPropertyKey const NSSpeechResetProperty = @"rset";
NSSpeechPropertyKey const NSSpeechOutputToFileURLProperty = @"opaf";

NSSpeechMode const NSSpeechModeText = @"TEXT";
NSSpeechMode const NSSpeechModePhoneme = @"PHON";
NSSpeechMode const NSSpeechModeNormal = @"NORM";
NSSpeechMode const NSSpeechModeLiteral = @"LTRL";

NSSpeechStatusKey const NSSpeechStatusOutputBusy = @"OutputBusy";
NSSpeechStatusKey const NSSpeechStatusOutputPaused = @"OutputPaused";
NSSpeechStatusKey const NSSpeechStatusNumberOfCharactersLeft = @"NumberOfCharactersLeft";
NSSpeechStatusKey const NSSpeechStatusPhonemeCode = @"PhonemeCode";

NSSpeechErrorKey const NSSpeechErrorCount = @"ErrorCount";
NSSpeechErrorKey const NSSpeechErrorOldestCode = @"ErrorOldestCode";
NSSpeechErrorKey const NSSpeechErrorOldestCharacterOffset = @"ErrorOldestCharacterOffset";
NSSpeechErrorKey const NSSpeechErrorNewestCode = @"ErrorNewestCode";
NSSpeechErrorKey const NSSpeechErrorNewestCharacterOffset = @"ErrorNewestCharacterOffset";

NSSpeechSynthesizerInfoKey const NSSpeechSynthesizerInfoIdentifier = @"SynthesizerInfoIdentifier";
NSSpeechSynthesizerInfoKey const NSSpeechSynthesizerInfoVersion = @"SynthesizerInfoVersion";

NSSpeechPhonemeInfoKey const NSSpeechPhonemeInfoOpcode = @"Opcode";
NSSpeechPhonemeInfoKey const NSSpeechPhonemeInfoSymbol = @"Symbol";
NSSpeechPhonemeInfoKey const NSSpeechPhonemeInfoExample = @"Example";
NSSpeechPhonemeInfoKey const NSSpeechPhonemeInfoHiliteStart = @"HiliteStart";
NSSpeechPhonemeInfoKey const NSSpeechPhonemeInfoHiliteEnd = @"HiliteEnd";

NSSpeechCommandDelimiterKey const NSSpeechCommandPrefix = @"CommandPrefix";
NSSpeechCommandDelimiterKey const NSSpeechCommandSuffix = @"CommandSuffix";

NSSpeechDictionaryKey const NSSpeechDictionaryLocaleIdentifier = @"DictionaryLocaleIdentifier";
NSSpeechDictionaryKey const NSSpeechDictionaryModificationDate = @"DictionaryModificationDate";
NSSpeechDictionaryKey const NSSpeechDictionaryPronunciations = @"DictionaryPronunciations";
NSSpeechDictionaryKey const NSSpeechDictionaryAbbreviations = @"DictionaryAbbreviations";
NSSpeechDictionaryKey const NSSpeechDictionaryEntrySpelling = @"DictionaryEntrySpelling";
NSSpeechDictionaryKey const NSSpeechDictionaryEntryPhonemes = @"DictionaryEntryPhonemes";
