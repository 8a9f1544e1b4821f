// The strings of the speech constants, for the library's own use; see voice_strings.h for why they are
// macros.

#pragma once

#define ZQM_SPEECH_STATUS_PROPERTY @"stat"
#define ZQM_SPEECH_ERRORS_PROPERTY @"erro"
#define ZQM_SPEECH_INPUT_MODE_PROPERTY @"inpt"
#define ZQM_SPEECH_CHARACTER_MODE_PROPERTY @"char"
#define ZQM_SPEECH_NUMBER_MODE_PROPERTY @"nmbr"
#define ZQM_SPEECH_RATE_PROPERTY @"rate"
#define ZQM_SPEECH_PITCH_BASE_PROPERTY @"pbas"
#define ZQM_SPEECH_PITCH_MOD_PROPERTY @"pmod"
#define ZQM_SPEECH_VOLUME_PROPERTY @"volm"
#define ZQM_SPEECH_SYNTHESIZER_INFO_PROPERTY @"vers"
#define ZQM_SPEECH_RECENT_SYNC_PROPERTY @"sync"
#define ZQM_SPEECH_PHONEME_SYMBOLS_PROPERTY @"phsy"
#define ZQM_SPEECH_CURRENT_VOICE_PROPERTY @"cvox"
#define ZQM_SPEECH_COMMAND_DELIMITER_PROPERTY @"dlim"
#define ZQM_SPEECH_RESET_PROPERTY @"rset"
#define ZQM_SPEECH_OUTPUT_TO_FILE_URL_PROPERTY @"opaf"

#define ZQM_SPEECH_MODE_TEXT @"TEXT"
#define ZQM_SPEECH_MODE_PHONEME @"PHON"
#define ZQM_SPEECH_MODE_NORMAL @"NORM"
#define ZQM_SPEECH_MODE_LITERAL @"LTRL"

#define ZQM_SPEECH_STATUS_OUTPUT_BUSY @"OutputBusy"
#define ZQM_SPEECH_STATUS_OUTPUT_PAUSED @"OutputPaused"
#define ZQM_SPEECH_STATUS_NUMBER_OF_CHARACTERS_LEFT @"NumberOfCharactersLeft"
#define ZQM_SPEECH_STATUS_PHONEME_CODE @"PhonemeCode"

#define ZQM_SPEECH_ERROR_COUNT @"ErrorCount"
#define ZQM_SPEECH_ERROR_OLDEST_CODE @"ErrorOldestCode"
#define ZQM_SPEECH_ERROR_OLDEST_CHARACTER_OFFSET @"ErrorOldestCharacterOffset"
#define ZQM_SPEECH_ERROR_NEWEST_CODE @"ErrorNewestCode"
#define ZQM_SPEECH_ERROR_NEWEST_CHARACTER_OFFSET @"ErrorNewestCharacterOffset"

#define ZQM_SPEECH_SYNTHESIZER_INFO_IDENTIFIER @"SynthesizerInfoIdentifier"
#define ZQM_SPEECH_SYNTHESIZER_INFO_VERSION @"SynthesizerInfoVersion"

#define ZQM_SPEECH_PHONEME_INFO_OPCODE @"Opcode"
#define ZQM_SPEECH_PHONEME_INFO_SYMBOL @"Symbol"
#define ZQM_SPEECH_PHONEME_INFO_EXAMPLE @"Example"
#define ZQM_SPEECH_PHONEME_INFO_HILITE_START @"HiliteStart"
#define ZQM_SPEECH_PHONEME_INFO_HILITE_END @"HiliteEnd"

#define ZQM_SPEECH_COMMAND_PREFIX @"CommandPrefix"
#define ZQM_SPEECH_COMMAND_SUFFIX @"CommandSuffix"

#define ZQM_SPEECH_DICTIONARY_LOCALE_IDENTIFIER @"DictionaryLocaleIdentifier"
#define ZQM_SPEECH_DICTIONARY_MODIFICATION_DATE @"DictionaryModificationDate"
#define ZQM_SPEECH_DICTIONARY_PRONUNCIATIONS @"DictionaryPronunciations"
#define ZQM_SPEECH_DICTIONARY_ABBREVIATIONS @"DictionaryAbbreviations"
#define ZQM_SPEECH_DICTIONARY_ENTRY_SPELLING @"DictionaryEntrySpelling"
#define ZQM_SPEECH_DICTIONARY_ENTRY_PHONEMES @"DictionaryEntryPhonemes"
