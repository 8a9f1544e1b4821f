// The strings of those voice constants that describe a voice, for the library's own use: nothing in it but
// their definition depends on the constants, so that it can be linked without them, as an older system that
// lacks them. Macros, because GCC computes a constant at load time when it starts from another constant.

#pragma once

#define ZQM_VOICE_NAME @"VoiceName"
#define ZQM_VOICE_IDENTIFIER @"VoiceIdentifier"
#define ZQM_VOICE_AGE @"VoiceAge"
#define ZQM_VOICE_GENDER @"VoiceGender"
#define ZQM_VOICE_DEMO_TEXT @"VoiceDemoText"
#define ZQM_VOICE_LANGUAGE @"VoiceLanguage"
#define ZQM_VOICE_LOCALE_IDENTIFIER @"VoiceLocaleIdentifier"
#define ZQM_VOICE_SUPPORTED_CHARACTERS @"VoiceSupportedCharacters"
#define ZQM_VOICE_INDIVIDUALLY_SPOKEN_CHARACTERS @"VoiceIndividuallySpokenCharacters"
#define ZQM_VOICE_GENDER_NEUTER @"VoiceGenderNeuter"
#define ZQM_VOICE_GENDER_MALE @"VoiceGenderMale"
#define ZQM_VOICE_GENDER_FEMALE @"VoiceGenderFemale"

// Of a range of characters; these have no constants.
#define ZQM_CHARACTER_RANGE_BEGIN @"UnicodeCharBegin"
#define ZQM_CHARACTER_RANGE_END @"UnicodeCharEnd"
