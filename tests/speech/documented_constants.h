// The platform's constants as host programs get them, in the order of the shared methods of each class.

#pragma once

#include <ostream>
#include <string>

struct DocumentedConstant {
    const char* className;
    const char* method;   // shared, without arguments
    const char* constant; // the platform's symbol
    const char* string;   // its value on the systems that have the project's own platform library
};

inline std::ostream& operator<<(std::ostream& out, const DocumentedConstant& row) {
    return out << row.constant;
}

// What the project's own platform library calls it for the linker.
inline std::string linkName(const DocumentedConstant& row) {
    return std::string("ZQM") + row.constant;
}

inline constexpr DocumentedConstant kDocumentedConstants[] = {
    {"NSSpeechSynthesizerZQM", "NSSpeechStatusProperty", "NSSpeechStatusProperty", "stat"},
    {"NSSpeechSynthesizerZQM", "NSSpeechErrorsProperty", "NSSpeechErrorsProperty", "erro"},
    {"NSSpeechSynthesizerZQM", "NSSpeechInputModeProperty", "NSSpeechInputModeProperty", "inpt"},
    {"NSSpeechSynthesizerZQM", "NSSpeechCharacterModeProperty", "NSSpeechCharacterModeProperty", "char"},
    {"NSSpeechSynthesizerZQM", "NSSpeechNumberModeProperty", "NSSpeechNumberModeProperty", "nmbr"},
    {"NSSpeechSynthesizerZQM", "NSSpeechRateProperty", "NSSpeechRateProperty", "rate"},
    {"NSSpeechSynthesizerZQM", "NSSpeechPitchBaseProperty", "NSSpeechPitchBaseProperty", "pbas"},
    {"NSSpeechSynthesizerZQM", "NSSpeechPitchModProperty", "NSSpeechPitchModProperty", "pmod"},
    {"NSSpeechSynthesizerZQM", "NSSpeechVolumeProperty", "NSSpeechVolumeProperty", "volm"},
    {"NSSpeechSynthesizerZQM", "NSSpeechSynthesizerInfoProperty", "NSSpeechSynthesizerInfoProperty", "vers"},
    {"NSSpeechSynthesizerZQM", "NSSpeechRecentSyncProperty", "NSSpeechRecentSyncProperty", "sync"},
    {"NSSpeechSynthesizerZQM", "NSSpeechPhonemeSymbolsProperty", "NSSpeechPhonemeSymbolsProperty", "phsy"},
    {"NSSpeechSynthesizerZQM", "NSSpeechCurrentVoiceProperty", "NSSpeechCurrentVoiceProperty", "cvox"},
    {"NSSpeechSynthesizerZQM", "NSSpeechCommandDelimiterProperty", "NSSpeechCommandDelimiterProperty",
     "dlim"},
    {"NSSpeechSynthesizerZQM", "NSSpeechResetProperty", "NSSpeechResetProperty", "rset"},
    {"NSSpeechSynthesizerZQM", "NSSpeechOutputToFileURLProperty", "NSSpeechOutputToFileURLProperty", "opaf"},
    {"NSSpeechSynthesizerZQM", "NSSpeechModeText", "NSSpeechModeText", "TEXT"},
    {"NSSpeechSynthesizerZQM", "NSSpeechModePhoneme", "NSSpeechModePhoneme", "PHON"},
    {"NSSpeechSynthesizerZQM", "NSSpeechModeNormal", "NSSpeechModeNormal", "NORM"},
    {"NSSpeechSynthesizerZQM", "NSSpeechModeLiteral", "NSSpeechModeLiteral", "LTRL"},
    {"NSSpeechSynthesizerZQM", "NSSpeechStatusOutputBusy", "NSSpeechStatusOutputBusy", "OutputBusy"},
    {"NSSpeechSynthesizerZQM", "NSSpeechStatusOutputPaused", "NSSpeechStatusOutputPaused", "OutputPaused"},
    {"NSSpeechSynthesizerZQM", "NSSpeechStatusNumberOfCharactersLeft", "NSSpeechStatusNumberOfCharactersLeft",
     "NumberOfCharactersLeft"},
    {"NSSpeechSynthesizerZQM", "NSSpeechStatusPhonemeCode", "NSSpeechStatusPhonemeCode", "PhonemeCode"},
    {"NSSpeechSynthesizerZQM", "NSSpeechErrorCount", "NSSpeechErrorCount", "ErrorCount"},
    {"NSSpeechSynthesizerZQM", "NSSpeechErrorOldestCode", "NSSpeechErrorOldestCode", "ErrorOldestCode"},
    {"NSSpeechSynthesizerZQM", "NSSpeechErrorOldestCharacterOffset", "NSSpeechErrorOldestCharacterOffset",
     "ErrorOldestCharacterOffset"},
    {"NSSpeechSynthesizerZQM", "NSSpeechErrorNewestCode", "NSSpeechErrorNewestCode", "ErrorNewestCode"},
    {"NSSpeechSynthesizerZQM", "NSSpeechErrorNewestCharacterOffset", "NSSpeechErrorNewestCharacterOffset",
     "ErrorNewestCharacterOffset"},
    {"NSSpeechSynthesizerZQM", "NSSpeechSynthesizerInfoIdentifier", "NSSpeechSynthesizerInfoIdentifier",
     "SynthesizerInfoIdentifier"},
    {"NSSpeechSynthesizerZQM", "NSSpeechSynthesizerInfoVersion", "NSSpeechSynthesizerInfoVersion",
     "SynthesizerInfoVersion"},
    {"NSSpeechSynthesizerZQM", "NSSpeechPhonemeInfoOpcode", "NSSpeechPhonemeInfoOpcode", "Opcode"},
    {"NSSpeechSynthesizerZQM", "NSSpeechPhonemeInfoSymbol", "NSSpeechPhonemeInfoSymbol", "Symbol"},
    {"NSSpeechSynthesizerZQM", "NSSpeechPhonemeInfoExample", "NSSpeechPhonemeInfoExample", "Example"},
    {"NSSpeechSynthesizerZQM", "NSSpeechPhonemeInfoHiliteStart", "NSSpeechPhonemeInfoHiliteStart",
     "HiliteStart"},
    {"NSSpeechSynthesizerZQM", "NSSpeechPhonemeInfoHiliteEnd", "NSSpeechPhonemeInfoHiliteEnd", "HiliteEnd"},
    {"NSSpeechSynthesizerZQM", "NSSpeechCommandPrefix", "NSSpeechCommandPrefix", "CommandPrefix"},
    {"NSSpeechSynthesizerZQM", "NSSpeechCommandSuffix", "NSSpeechCommandSuffix", "CommandSuffix"},
    {"NSSpeechSynthesizerZQM", "NSSpeechDictionaryLocaleIdentifier", "NSSpeechDictionaryLocaleIdentifier",
     "DictionaryLocaleIdentifier"},
    {"NSSpeechSynthesizerZQM", "NSSpeechDictionaryModificationDate", "NSSpeechDictionaryModificationDate",
     "DictionaryModificationDate"},
    {"NSSpeechSynthesizerZQM", "NSSpeechDictionaryPronunciations", "NSSpeechDictionaryPronunciations",
     "DictionaryPronunciations"},
    {"NSSpeechSynthesizerZQM", "NSSpeechDictionaryAbbreviations", "NSSpeechDictionaryAbbreviations",
     "DictionaryAbbreviations"},
    {"NSSpeechSynthesizerZQM", "NSSpeechDictionaryEntrySpelling", "NSSpeechDictionaryEntrySpelling",
     "DictionaryEntrySpelling"},
    {"NSSpeechSynthesizerZQM", "NSSpeechDictionaryEntryPhonemes", "NSSpeechDictionaryEntryPhonemes",
     "DictionaryEntryPhonemes"},
    {"NSVoiceZQM", "NSVoiceName", "NSVoiceName", "VoiceName"},
    {"NSVoiceZQM", "NSVoiceIdentifier", "NSVoiceIdentifier", "VoiceIdentifier"},
    {"NSVoiceZQM", "NSVoiceAge", "NSVoiceAge", "VoiceAge"},
    {"NSVoiceZQM", "NSVoiceGender", "NSVoiceGender", "VoiceGender"},
    {"NSVoiceZQM", "NSVoiceDemoText", "NSVoiceDemoText", "VoiceDemoText"},
    {"NSVoiceZQM", "NSVoiceLocaleIdentifier", "NSVoiceLocaleIdentifier", "VoiceLocaleIdentifier"},
    {"NSVoiceZQM", "NSVoiceSupportedCharacters", "NSVoiceSupportedCharacters", "VoiceSupportedCharacters"},
    {"NSVoiceZQM", "NSVoiceIndividuallySpokenCharacters", "NSVoiceIndividuallySpokenCharacters",
     "VoiceIndividuallySpokenCharacters"},
    {"NSVoiceZQM", "NSVoiceLanguage", "NSVoiceLanguage", "VoiceLanguage"},
    {"NSVoiceZQM", "GenderNeuter", "NSVoiceGenderNeuter", "VoiceGenderNeuter"},
    {"NSVoiceZQM", "GenderMale", "NSVoiceGenderMale", "VoiceGenderMale"},
    {"NSVoiceZQM", "GenderFemale", "NSVoiceGenderFemale", "VoiceGenderFemale"},
};
