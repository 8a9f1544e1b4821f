// The library's exported names, pinned: what its headers declare, and nothing else.

#include "tests/support/process.h"

#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>

namespace {

const std::set<std::string> kExpected{
    "CFArrayGetTypeID",
    "CFAttributedStringGetTypeID",
    "CFBagGetTypeID",
    "CFBooleanGetTypeID",
    "CFBundleGetTypeID",
    "CFCharacterSetGetTypeID",
    "CFDataGetTypeID",
    "CFDateGetTypeID",
    "CFDictionaryCreateMutable",
    "CFDictionaryGetCount",
    "CFDictionaryGetTypeID",
    "CFDictionaryGetValue",
    "CFDictionaryRemoveValue",
    "CFDictionarySetValue",
    "CFErrorGetTypeID",
    "CFGetTypeID",
    "CFNumberGetTypeID",
    "CFRelease",
    "CFRetain",
    "CFRunLoopRunInMode",
    "CFSetGetTypeID",
    "CFStringCreateMutableCopy",
    "CFStringCreateWithBytes",
    "CFStringCreateWithCharacters",
    "CFStringGetBytes",
    "CFStringGetCString",
    "CFStringGetCharacters",
    "CFStringGetLength",
    "CFStringGetTypeID",
    "CFStringNormalize",
    "CFTimeZoneGetTypeID",
    "CFURLCopyFileSystemPath",
    "CFURLCopyLastPathComponent",
    "CFURLCreateCopyAppendingPathComponent",
    "CFURLCreateCopyDeletingLastPathComponent",
    "CFURLCreateFromFSRef",
    "CFURLCreateFromFileSystemRepresentation",
    "CFURLCreateWithString",
    "CFURLGetFSRef",
    "CFURLGetString",
    "CFURLGetTypeID",
    "CFUUIDGetTypeID",
    "CTFontCollectionGetTypeID",
    "CTFontGetTypeID",
    "CTFrameGetTypeID",
    "CTFramesetterGetTypeID",
    "CTGlyphInfoGetTypeID",
    "CTLineGetTypeID",
    "CTParagraphStyleGetTypeID",
    "CTRunDelegateGetTypeID",
    "CTRunGetTypeID",
    "CTTypesetterGetTypeID",
    "FSGetCatalogInfo",
    "FSPathMakeRef",
    "FSRefMakePath",
    "ZQMNSSpeechCharacterModeProperty",
    "ZQMNSSpeechCommandDelimiterProperty",
    "ZQMNSSpeechCommandPrefix",
    "ZQMNSSpeechCommandSuffix",
    "ZQMNSSpeechCurrentVoiceProperty",
    "ZQMNSSpeechDictionaryAbbreviations",
    "ZQMNSSpeechDictionaryEntryPhonemes",
    "ZQMNSSpeechDictionaryEntrySpelling",
    "ZQMNSSpeechDictionaryLocaleIdentifier",
    "ZQMNSSpeechDictionaryModificationDate",
    "ZQMNSSpeechDictionaryPronunciations",
    "ZQMNSSpeechErrorCount",
    "ZQMNSSpeechErrorNewestCharacterOffset",
    "ZQMNSSpeechErrorNewestCode",
    "ZQMNSSpeechErrorOldestCharacterOffset",
    "ZQMNSSpeechErrorOldestCode",
    "ZQMNSSpeechErrorsProperty",
    "ZQMNSSpeechInputModeProperty",
    "ZQMNSSpeechModeLiteral",
    "ZQMNSSpeechModeNormal",
    "ZQMNSSpeechModePhoneme",
    "ZQMNSSpeechModeText",
    "ZQMNSSpeechNumberModeProperty",
    "ZQMNSSpeechOutputToFileURLProperty",
    "ZQMNSSpeechPhonemeInfoExample",
    "ZQMNSSpeechPhonemeInfoHiliteEnd",
    "ZQMNSSpeechPhonemeInfoHiliteStart",
    "ZQMNSSpeechPhonemeInfoOpcode",
    "ZQMNSSpeechPhonemeInfoSymbol",
    "ZQMNSSpeechPhonemeSymbolsProperty",
    "ZQMNSSpeechPitchBaseProperty",
    "ZQMNSSpeechPitchModProperty",
    "ZQMNSSpeechRateProperty",
    "ZQMNSSpeechRecentSyncProperty",
    "ZQMNSSpeechResetProperty",
    "ZQMNSSpeechStatusNumberOfCharactersLeft",
    "ZQMNSSpeechStatusOutputBusy",
    "ZQMNSSpeechStatusOutputPaused",
    "ZQMNSSpeechStatusPhonemeCode",
    "ZQMNSSpeechStatusProperty",
    "ZQMNSSpeechSynthesizerInfoIdentifier",
    "ZQMNSSpeechSynthesizerInfoProperty",
    "ZQMNSSpeechSynthesizerInfoVersion",
    "ZQMNSSpeechVolumeProperty",
    "ZQMNSVoiceAge",
    "ZQMNSVoiceDemoText",
    "ZQMNSVoiceGender",
    "ZQMNSVoiceGenderFemale",
    "ZQMNSVoiceGenderMale",
    "ZQMNSVoiceGenderNeuter",
    "ZQMNSVoiceIdentifier",
    "ZQMNSVoiceIndividuallySpokenCharacters",
    "ZQMNSVoiceLanguage",
    "ZQMNSVoiceLocaleIdentifier",
    "ZQMNSVoiceName",
    "ZQMNSVoiceSupportedCharacters",
    "ZQMPlatformCreateInstanceOfType",
    "ZQMPlatformEventDescriptor",
    "ZQMPlatformListenToFile",
    "ZQMPlatformObserveListening",
    "ZQMPlatformObserveSpeaking",
    "__objc_class_name_ZQMSpeechRecognizer",
    "__objc_class_name_ZQMSpeechSynthesizer",
    "kCFAllocatorDefault",
    "kCFBooleanFalse",
    "kCFBooleanTrue",
    "kCFRunLoopDefaultMode",
    "kCFTypeDictionaryKeyCallBacks",
    "kCFTypeDictionaryValueCallBacks",
};

TEST(Exports, AreThoseOfTheHeaders) {
    const auto result = zqm::support::runProcess("nm", {"-D", "--defined-only", ZQM_PLATFORM_LIBRARY});
    ASSERT_TRUE(result.succeeded()) << result.errors;
    std::set<std::string> names;
    std::istringstream lines(result.output);
    for (std::string address, kind, name; lines >> address >> kind >> name;) {
        names.insert(name);
    }
    EXPECT_EQ(kExpected, names);
}

TEST(Exports, TheLibraryIsNeverUnloadedAndNeedsNoSpeechLibrary) {
    const auto result = zqm::support::runProcess("readelf", {"-d", ZQM_PLATFORM_LIBRARY});
    ASSERT_TRUE(result.succeeded()) << result.errors;
    EXPECT_NE(std::string::npos, result.output.find("NODELETE"));
    for (const char* const library : {"espeak", "pulse", "sndfile"}) {
        EXPECT_EQ(std::string::npos, result.output.find(library)) << library;
    }
}

} // namespace
