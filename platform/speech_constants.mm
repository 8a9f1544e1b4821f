#import <AppKit/NSSpeechSynthesizer.h>

NSVoiceAttributeKey const NSVoiceName = @"VoiceName";
NSVoiceAttributeKey const NSVoiceIdentifier = @"VoiceIdentifier";
NSVoiceAttributeKey const NSVoiceAge = @"VoiceAge";
NSVoiceAttributeKey const NSVoiceGender = @"VoiceGender";
NSVoiceAttributeKey const NSVoiceDemoText = @"VoiceDemoText";
NSVoiceAttributeKey const NSVoiceLanguage = @"VoiceLanguage";
NSVoiceAttributeKey const NSVoiceLocaleIdentifier = @"VoiceLocaleIdentifier";
NSVoiceAttributeKey const NSVoiceSupportedCharacters = @"VoiceSupportedCharacters";
NSVoiceAttributeKey const NSVoiceIndividuallySpokenCharacters = @"VoiceIndividuallySpokenCharacters";

NSVoiceGenderName const NSVoiceGenderNeuter = @"VoiceGenderNeuter";
NSVoiceGenderName const NSVoiceGenderMale = @"VoiceGenderMale";
NSVoiceGenderName const NSVoiceGenderFemale = @"VoiceGenderFemale";
